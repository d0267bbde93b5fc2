#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/Description.h>
#include <Orvek/Host/Inspector.h>
#include <Orvek/Host/ObjectFile.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/QObjectType.h>

using namespace orvek::host;
using hostsupport::fieldsOf;

namespace
{
enum class Shape
{
    Point,
    Spot,
    Sun = 7
};

struct Filter
{
    float weight = 1.0F;
};

struct Lamp
{
    QString name = "Lamp";
    double power = 100.0;
    float falloff = 2.0F;
    int samples = 16;
    int shadowSize = 1024;
    Shape shape = Shape::Spot;
    QVector3D position;
    QVector3D colour{1.0F, 1.0F, 1.0F};
    QColor tint{255, 255, 255, 255};
    bool shadows = true;
    QString profile;
    QVector<Filter> filters;
};

std::shared_ptr<const ObjectType> filterType()
{
    Description<Filter> filter("Filter");
    filter.number("weight", &Filter::weight).range(0, 10);
    return filter.type();
}

std::shared_ptr<const ObjectType> lampType()
{
    Description<Lamp> lamp("Lamp");
    lamp.text("name", &Lamp::name);
    lamp.section("Light");
    lamp.number("power", &Lamp::power).range(0, 1000).units("W");
    lamp.number("falloff", &Lamp::falloff).range(0, 8).step(0.5);
    lamp.integer("samples", &Lamp::samples).range(1, 256);
    lamp.choice("shape", &Lamp::shape)
        .entry("point", "Point light", Shape::Point)
        .entry("spot", "Spot light", Shape::Spot)
        .entry("sun", "Sun", Shape::Sun);
    lamp.vector("position", &Lamp::position);
    lamp.colour("colour", &Lamp::colour);
    lamp.colourWithAlpha("tint", &Lamp::tint);
    lamp.section("Shadow");
    lamp.flag("shadows", &Lamp::shadows);
    lamp.powerOfTwo("shadowSize", &Lamp::shadowSize)
        .title("Map size")
        .range(256, 4096)
        .enabledWhen([](const Lamp& one) { return one.shadows; })
        .shownWhen([](const Lamp& one) { return one.samples < 256; });
    lamp.file("profile", &Lamp::profile).shownWhen([](const Lamp& one) { return one.shape == Shape::Spot; });
    lamp.list("filters", &Lamp::filters, filterType());
    return lamp.type();
}

// An engine's own reflection, of constants.
class Numbers final : public ObjectType
{
public:
    explicit Numbers(const QVector<Property>& properties) : ObjectType("Numbers", properties) {}
    QVariant read(const void*, int) const override { return 0.0; }
    bool write(void*, int, const QVariant&) const override { return false; }
};

// Five lamps, all of whose values are odd ones, of which three are selected.
struct Lamps
{
    explicit Lamps(int selected = 3)
    {
        for (int i = 0; i < 5; ++i)
        {
            Lamp& lamp = lamps[std::size_t(i)];
            lamp.power = 100.0 + i / 3.0;
            lamp.samples = 10 + i;
            lamp.shape = i == 1 ? Shape::Sun : Shape::Spot;
            lamp.position = QVector3D(float(i) / 3.0F, 1.0F / 7.0F, float(i));
            lamp.colour = QVector3D(0.1F, float(i) / 9.0F, 0.3F);
            lamp.tint = QColor(10 * i, 20, 30, 40 + i);
            lamp.shadows = i != 2;
            lamp.name = QString("Lamp %1").arg(i);
        }
        before = lamps;
        inspector.setFrameInterval(0);
        select(selected);
        panel.resize(420, 800);
        showActive(panel);
        QCoreApplication::processEvents();
    }
    void select(int count)
    {
        QVector<void*> objects;
        for (int i = 0; i < count; ++i)
            objects << &lamps[std::size_t(i)];
        QVERIFY(inspector.setObjects(type, objects));
    }
    template <typename Editor = QSliderEdit>
    Editor* editor(const QString& name)
    {
        return qobject_cast<Editor*>(inspector.editor(name));
    }
    QLineEdit* field(const QString& name, int component = 0) { return fieldsOf(*inspector.editor(name)).at(component); }
    static void type_(QLineEdit* field, const QString& text)
    {
        field->setFocus();
        commitText(field, text);
    }
    // Every bit of the stored values.
    bool equal(const std::array<Lamp, 5>& others) const
    {
        const auto isEqual = [this](const Lamp& one, const Lamp& other) { return type->equal(&one, &other); };
        return std::equal(lamps.begin(), lamps.end(), others.begin(), isEqual);
    }
    bool areUnchanged() const { return equal(before); }

    const std::shared_ptr<const ObjectType> type = lampType();
    std::array<Lamp, 5> lamps;
    std::array<Lamp, 5> before; // of any edit
    QUndoStack stack;
    QPropertyPanel panel;
    std::unique_ptr<Inspector> owned = std::make_unique<Inspector>(&panel, &stack);
    Inspector& inspector = *owned;
};

// What the user does, and whether a lamp is then as it should be.
using Act = std::function<void(Lamps&)>;
using Edits = Table<Act, bool (*)(const Lamp&, const Lamp&)>;
#define CHECK(condition) [](const Lamp& now, [[maybe_unused]] const Lamp& before) { return condition; }

Act typed(const char* name, const char* text, int component = 0)
{
    return [=](Lamps& lamps) { lamps.type_(lamps.field(name, component), text); };
}

// A child of the editor, or its list of choices.
Act pressed(const char* name, const char* part, Qt::Key key, int times = 1)
{
    return [=](Lamps& lamps)
    {
        QWidget* editor = lamps.inspector.editor(name);
        QWidget* target = editor->objectName() == part ? editor : editor->findChild<QWidget*>(part);
        target = target ? target : editor->findChild<ChoiceButton*>();
        target->setFocus();
        for (int i = 0; i < times; ++i)
            QTest::keyClick(target, key);
    };
}

bool isMixed(const QWidget* widget)
{
    return widget->property("mixed").toBool();
}

void clickBox(QCheckBox* box)
{
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}
} // namespace

class tst_Inspector : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void whatDiffersIsBlank()
    {
        Lamps lamps;
        QCOMPARE(lamps.field("power")->text(), QString());
        QVERIFY(isMixed(lamps.field("power")) && !lamps.field("power")->placeholderText().isEmpty());
        QCOMPARE(lamps.field("falloff")->text(), QString("2"));
        QVERIFY(!isMixed(lamps.field("falloff")) && !isMixed(lamps.editor<>("falloff")));
        QCOMPARE(lamps.editor<>("falloff")->step(), 0.5);
        QCOMPARE(lamps.field("position", 0)->text() + lamps.field("position", 2)->text(), QString());
        QCOMPARE(lamps.field("position", 1)->text(), QString("0.142857"));
        QVERIFY(isMixed(lamps.field("colour", 1)) && !isMixed(lamps.field("colour", 0)));
        QVERIFY(isMixed(lamps.field("tint", 3)) && !isMixed(lamps.field("tint", 1)));
        QCOMPARE(lamps.field("tint", 3)->text(), QString());
        QCOMPARE(lamps.editor<QCheckBox>("shadows")->checkState(), Qt::PartiallyChecked);
        auto* shapes = lamps.inspector.editor("shape")->findChild<ChoiceButton*>();
        QCOMPARE(shapes->currentText(), QString(QChar(0x2014)));
        QVERIFY(isMixed(shapes));
        QCOMPARE(lamps.field("name")->text(), QString());
        // A smaller selection has the values of its own.
        lamps.select(1);
        QCOMPARE(lamps.field("power")->text(), QString("100"));
        QVERIFY(!isMixed(lamps.field("power")) && lamps.field("power")->placeholderText().isEmpty());
        QCOMPARE(lamps.editor<QCheckBox>("shadows")->checkState(), Qt::Checked);
        QCOMPARE(lamps.stack.count(), 0);
    }

    void editsChangeAllAndUndoGivesEachItsOwn_data()
    {
        const Edits row;
        row("number", typed("power", "55"), CHECK(now.power == 55.0));
        row("number of the first one", typed("power", "100"), CHECK(now.power == 100.0));
        row("slider", pressed("power", "slider", Qt::Key_End), CHECK(now.power == 1000.0));
        row("reset", pressed("power", "reset", Qt::Key_Space), CHECK(now.power == 100.0));
        row("whole number", typed("samples", "10"), CHECK(now.samples == 10));
        row("component", typed("position", "1.5"),
            CHECK(now.position == QVector3D(1.5F, before.position.y(), before.position.z())));
        row("component of a colour", typed("colour", "0.25", 1),
            CHECK(now.colour == QVector3D(before.colour.x(), 0.25F, before.colour.z())));
        row("beyond the range of a component", typed("colour", "4", 1), CHECK(now.colour.y() == 1.0F));
        row("beyond the range of a channel", typed("tint", "1.5"),
            CHECK(now.tint.red() == 255 && now.tint.green() == before.tint.green()));
        row("alpha", typed("tint", "0", 3), CHECK(now.tint.alpha() == 0 && now.tint.red() == before.tint.red()));
        row("choice", pressed("shape", "choice", Qt::Key_Home), CHECK(now.shape == Shape::Point));
        row("flag", pressed("shadows", "shadows", Qt::Key_Space), CHECK(now.shadows));
        row("text", typed("name", "Sun"), CHECK(now.name == "Sun"));
        row("+=", typed("power", "+=2"), CHECK(now.power == before.power + 2.0));
        row("-= in the range", typed("samples", "-=10"), CHECK(now.samples == qMax(1, before.samples - 10)));
        row("*= of a component", typed("position", "*=3", 2),
            CHECK(now.position == before.position * QVector3D(1.0F, 1.0F, 3.0F)));
        row("/= of equal ones", typed("falloff", "/=4"), CHECK(now.falloff == before.falloff / 4.0F));
        row("arrow key", pressed("samples", "lineEdit", Qt::Key_Up, 2), CHECK(now.samples == before.samples + 2));
    }

    void editsChangeAllAndUndoGivesEachItsOwn()
    {
        const auto [act, check] = Edits::current();
        Lamps lamps;
        QSignalSpy edited(&lamps.inspector, &Inspector::edited);
        act(lamps);
        QCoreApplication::processEvents();
        QCOMPARE(lamps.stack.count(), 1);
        QVERIFY(edited.count() >= 1);
        QCOMPARE(edited.last().first().value<QVector<void*>>().size(), 3);
        for (int i = 0; i < 5; ++i)
            QVERIFY2(i < 3 ? check(lamps.lamps[i], lamps.before[i])
                           : lamps.type->equal(&lamps.lamps[i], &lamps.before[i]),
                     qPrintable(QString::number(i)));
        const auto after = lamps.lamps;
        lamps.stack.undo();
        QVERIFY(lamps.areUnchanged());
        lamps.stack.redo();
        QVERIFY(lamps.equal(after));
        // Steps find their objects whatever is shown.
        lamps.select(0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        lamps.stack.undo();
        QVERIFY(lamps.areUnchanged());
    }

    // A file that cannot be read, for example.
    void whatTheHostRefusesIsNotShown()
    {
        Lamps lamps(1);
        connect(&lamps.inspector, &Inspector::edited, this, [&lamps] { lamps.lamps[0].name = QString("Lamp 0"); });
        lamps.type_(lamps.field("name"), "Refused");
        QCOMPARE(lamps.field("name")->text(), QString("Lamp 0"));
        QCOMPARE(lamps.stack.count(), 0);
    }

    void untouchedFieldsChangeNothing()
    {
        Lamps lamps;
        for (const char* name : {"power", "position", "name", "samples", "tint"})
        {
            const QVector<QLineEdit*> fields = fieldsOf(*lamps.inspector.editor(name));
            for (QLineEdit* field : fields)
            {
                field->setFocus();
                QTest::keyClick(field, Qt::Key_Return);
            }
            QVERIFY2(lamps.areUnchanged(), name);
        }
        lamps.panel.setFocus();
        QVERIFY(lamps.areUnchanged());
        QCOMPARE(lamps.stack.count(), 0);
        lamps.type_(lamps.field("power"), "+=x");
        QVERIFY(lamps.field("power")->property("invalid").toBool() && lamps.areUnchanged());
    }

    void cancelledDialogPutsEachBack()
    {
        Lamps lamps;
        auto* button = lamps.inspector.editor("colour")->findChild<ColourButton*>();
        const auto pickRed = [button]
        {
            button->openDialog();
            button->dialog()->setCurrentColor(Qt::red);
        };
        pickRed();
        QCOMPARE(lamps.lamps[2].colour, QVector3D(1.0F, 0.0F, 0.0F));
        button->dialog()->reject();
        QVERIFY(lamps.areUnchanged());
        QCOMPARE(lamps.stack.count(), 0);
        QVERIFY(isMixed(lamps.field("colour", 1)));
        pickRed();
        button->dialog()->accept();
        QCOMPARE(lamps.stack.count(), 1);
        lamps.stack.undo();
        QVERIFY(lamps.areUnchanged());
        // So does one that is open at the end.
        pickRed();
        QVERIFY(!lamps.areUnchanged());
        lamps.owned.reset();
        QVERIFY(lamps.areUnchanged());
    }

    // One drag is one step, and each move reaches the objects.
    void liveDragIsOneStep()
    {
        Lamps lamps;
        auto* slider = child<QSlider>(*lamps.inspector.editor("power"), "slider");
        QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(4, slider->height() / 2));
        double last = -1.0;
        for (const int x : {20, 40, 60})
        {
            hostsupport::moveMouse(slider, QPoint(x, slider->height() / 2));
            QCoreApplication::processEvents();
            QVERIFY(lamps.lamps[0].power > last);
            QCOMPARE(lamps.lamps[0].power, lamps.lamps[2].power);
            last = lamps.lamps[0].power;
        }
        QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(60, slider->height() / 2));
        QCOMPARE(lamps.stack.count(), 1);
        QCOMPARE(lamps.stack.undoText(), QString("Change of Power"));
        lamps.stack.undo();
        QCOMPARE(lamps.lamps[2].power, 100.0 + 2 / 3.0);
    }

    void usedEditorsAreLeftAlone()
    {
        Lamps lamps(1);
        QSignalSpy changes(lamps.editor<>("power"), &QSliderEdit::valueChanged);
        auto* field = lamps.field("power");
        field->setFocus();
        QTest::keyClicks(field, "7");
        const QString typed = field->text();
        lamps.lamps[0].power = 33.0;
        lamps.lamps[0].falloff = 3.0F;
        lamps.inspector.refresh();
        QCOMPARE(field->text(), typed);
        QCOMPARE(lamps.field("falloff")->text(), QString("3"));
        QTest::keyClick(field, Qt::Key_Escape);
        QTRY_COMPARE(field->text(), QString("33"));
        QCOMPARE(changes.count(), 0);
        QCOMPARE(lamps.stack.count(), 0);
    }

    void conditionsAndListsFollow()
    {
        Lamps lamps(1);
        QVERIFY(lamps.inspector.editor("shadowSize")->isEnabled() && !lamps.inspector.editor("profile")->isHidden());
        clickBox(lamps.editor<QCheckBox>("shadows"));
        lamps.lamps[0].shape = Shape::Sun;
        lamps.lamps[0].filters.resize(2);
        lamps.inspector.refresh();
        QVERIFY(!lamps.inspector.editor("shadowSize")->isEnabled() && lamps.inspector.editor("profile")->isHidden());
        QCoreApplication::processEvents();
        QSignalSpy edited(&lamps.inspector, &Inspector::edited);
        lamps.type_(lamps.field("filters[1].weight"), "3");
        QCOMPARE(lamps.lamps[0].filters[1].weight, 3.0F);
        QCOMPARE(edited.last().at(1).toString(), QString("filters[1].weight"));
        QCOMPARE(edited.last().at(0).value<QVector<void*>>().first(), static_cast<void*>(&lamps.lamps[0]));
        // The step looks for the element where it is then, and does nothing without one.
        lamps.lamps[0].filters = QVector<Filter>(lamps.lamps[0].filters);
        lamps.lamps[0].filters.detach();
        lamps.stack.undo();
        QCOMPARE(lamps.lamps[0].filters[1].weight, 1.0F);
        lamps.lamps[0].filters.resize(1);
        lamps.stack.redo();
        lamps.inspector.refresh();
        QVERIFY(!lamps.inspector.editor("filters[1].weight"));
        // Each of several objects has a say.
        lamps.lamps[1].samples = 256;
        lamps.select(2);
        QVERIFY(lamps.inspector.editor("shadowSize")->isHidden());
    }

    void closedSectionsAreFilledWhenSeen()
    {
        QPropertyPanel panel;
        Inspector inspector(&panel);
        inspector.setOpensSections(false);
        Lamp lamp;
        inspector.setObjects(lampType(), {&lamp});
        showActive(panel);
        QCoreApplication::processEvents();
        QVERIFY(!panel.findChild<QWidget*>("power") && !panel.findChild<QWidget*>("shadowSize"));
        auto* search = child<QLineEdit>(panel, "search");
        search->setFocus();
        QApplication::clipboard()->setText("map s"); // "m" alone would find more
        QTest::keyClick(search, Qt::Key_V, Qt::ControlModifier);
        auto* size = panel.findChild<QIntSliderEdit*>("shadowSize");
        QVERIFY(size && size->isVisible() && !panel.findChild<QCheckBox*>("shadows")->isVisible());
        QVERIFY(!panel.findChild<QWidget*>("power"));
        search->clear();
        QVERIFY(!size->isVisible());
        auto* section = panel.findChild<QAccordion*>("Light");
        QTest::mouseClick(child<QCheckBox>(*section, "accordionCheckBox"), Qt::LeftButton, {}, QPoint(8, 8));
        QCoreApplication::processEvents();
        auto* power = panel.findChild<QSliderEdit*>("power");
        QVERIFY(power && power->isVisible());
        QCOMPARE(power->value().toDouble(), 100.0);
    }

    // More than what a search builds before it paints.
    void longSearchGoesOn()
    {
        QVector<Property> properties(1000);
        for (int i = 0; i < 1000; ++i)
        {
            properties[i].name = QString("number%1").arg(i);
            properties[i].section = QString("Section ") + QChar(0x61 + i / 100);
        }
        QPropertyPanel panel;
        Inspector inspector(&panel);
        inspector.setOpensSections(false);
        inspector.setObjects(std::make_shared<Numbers>(properties), {this});
        showActive(panel);
        child<QLineEdit>(panel, "search")->setText("9");
        QVERIFY(!panel.findChild<QWidget*>("number999"));
        QTRY_VERIFY(panel.findChild<QWidget*>("number999"));
        QTRY_VERIFY(panel.findChild<QWidget*>("number999")->isVisible());
        QVERIFY(panel.findChild<QWidget*>("number998")->isVisible());
        QVERIFY(!panel.findChild<QWidget*>("number888")->isVisible());
    }

    void objectsOfSeveralKindsShowWhatTheyShare()
    {
        struct Mesh
        {
            QString name;
            QVector3D position;
            int power = 3; // of another kind
        };
        Description<Mesh> mesh("Mesh");
        mesh.text("name", &Mesh::name);
        mesh.vector("position", &Mesh::position);
        mesh.integer("power", &Mesh::power);
        Lamps lamps;
        Mesh box{"Box", {5.0F, 1.0F / 7.0F, 6.0F}};
        QVERIFY(lamps.inspector.setObjects({{lamps.type, {&lamps.lamps[0]}}, {mesh.type(), {&box}}}));
        QVERIFY(!lamps.inspector.editor("power"));
        QVERIFY(isMixed(lamps.field("position", 0)) && !isMixed(lamps.field("position", 1)));
        lamps.type_(lamps.field("position", 0), "+=1");
        QCOMPARE(box.position.x(), 6.0F);
        QCOMPARE(lamps.lamps[0].position.x(), 1.0F);
        lamps.stack.undo();
        QCOMPARE(box.position.x(), 5.0F);
        QCOMPARE(lamps.lamps[0].position.x(), 0.0F);
    }

    // Selected objects and what is always there; a change of one group leaves the rows of the other alone.
    void groupsAreShownOneAfterTheOther()
    {
        Lamps lamps;
        Filter scene;
        const QVector<Inspector::Objects> always{{filterType(), {&scene}}};
        QVERIFY(lamps.inspector.setGroups({{{lamps.type, {&lamps.lamps[0], &lamps.lamps[1]}}}, always}));
        QCoreApplication::processEvents();
        const QPointer<QWidget> weight = lamps.inspector.editor("weight");
        const auto isBelow = [&]
        { return weight->mapTo(&lamps.panel, QPoint()).y() > lamps.field("power")->mapTo(&lamps.panel, QPoint()).y(); };
        QVERIFY(isMixed(lamps.field("power")) && isBelow());
        QSignalSpy edited(&lamps.inspector, &Inspector::edited);
        lamps.type_(lamps.field("weight"), "4");
        QCOMPARE(edited.last().first().value<QVector<void*>>(), QVector<void*>{&scene});
        QVERIFY(lamps.inspector.setGroups({{}, always}) && !lamps.inspector.editor("power"));
        QCOMPARE(lamps.inspector.editor("weight"), weight.data());
        lamps.stack.undo();
        QCOMPARE(scene.weight, 1.0F);
        QVERIFY(lamps.inspector.setGroups({{{lamps.type, {&lamps.lamps[0]}}}, always}));
        QCoreApplication::processEvents();
        QVERIFY(isBelow());
    }

    void objectsThatMoveAreFoundByTheirKeys()
    {
        QPropertyPanel panel;
        QUndoStack stack;
        Inspector inspector(&panel, &stack);
        std::vector<Lamp> lamps(2);
        inspector.setKeys([&](void* object) { return int(static_cast<Lamp*>(object) - lamps.data()); },
                          [&](const QVariant& key) -> void*
                          { return key.toInt() < int(lamps.size()) ? &lamps[std::size_t(key.toInt())] : nullptr; });
        inspector.setObjects(lampType(), {&lamps[1]});
        showActive(panel);
        Lamps::type_(fieldsOf(*inspector.editor("power")).first(), "5");
        QCOMPARE(lamps[1].power, 5.0);
        lamps.resize(100);
        stack.undo();
        QCOMPARE(lamps[1].power, 100.0);
        lamps.resize(1);
        stack.redo(); // its lamp is gone
        QCOMPARE(lamps[0].power, 100.0);
    }

    void notifiedValuesArriveOnceAFrame()
    {
        QPropertyPanel panel;
        Inspector inspector(&panel);
        auto window = std::make_unique<QWidget>();
        QWidget other;
        const auto type = std::make_shared<QObjectType>(&QWidget::staticMetaObject);
        QVERIFY(inspector.setObjects(type, {window.get(), &other}));
        showActive(panel);
        auto* title = fieldsOf(*inspector.editor("windowTitle")).first();
        QSignalSpy texts(title, &QLineEdit::textChanged);
        for (int i = 0; i < 10; ++i)
        {
            window->setWindowTitle(QString::number(i));
            other.setWindowTitle(QString::number(i));
        }
        QTRY_COMPARE(title->text(), QString("9"));
        QCOMPARE(texts.count(), 1);
        window.reset();
        QTRY_COMPARE(inspector.objects(), QVector<void*>{&other});
    }

    void formsAreBoundByName()
    {
        QWidget form;
        form.setObjectName("LampForm");
        auto* rows = new QVBoxLayout(&form);
        const auto add = [rows](QWidget* editor, const char* name)
        {
            editor->setObjectName(name);
            rows->addWidget(editor);
            return editor;
        };
        auto* power = static_cast<QSliderEdit*>(add(new QSliderEdit, "power"));
        auto* shadows = static_cast<QCheckBox*>(add(new QCheckBox, "shadows"));
        auto* shape = static_cast<QIntSliderEdit*>(add(new QIntSliderEdit, "shape"));
        add(new QVectorEdit, "falloff");
        add(new QSliderEdit, "powre");
        QUndoStack stack;
        Lamp lamps[2];
        lamps[1].power = 7.0;
        Inspector inspector(nullptr, &stack);
        inspector.setObjects(lampType(), {&lamps[0], &lamps[1]});
        for (int i = 0; i < 10; ++i)
            expectWarning("^Form LampForm: ");
        const QString missing = inspector.bind(&form).join('\n');
        for (const char* name : {"powre", "falloff", "position"})
            QVERIFY2(missing.contains(name), name);
        QVERIFY(!missing.contains("shadows\n") && !missing.contains("shape\n"));
        showActive(form);
        QCOMPARE(power->maximum(), 1000.0);
        QVERIFY(isMixed(power));
        clickBox(shadows);
        QVERIFY(!lamps[0].shadows && !lamps[1].shadows);
        QCOMPARE(shape->value().toInt(), 1);
        inspector.setObjects(lampType(), {&lamps[1]});
        QCOMPARE(power->value().toDouble(), 7.0);
        stack.undo();
        QVERIFY(lamps[0].shadows && lamps[1].shadows && shadows->isChecked());
    }

    void hostsPutInWhatIsTheirOwn()
    {
        Lamps lamps;
        lamps.inspector.setEditorFactory(PropertyKind::Integer,
                                         [](const Property&) -> QWidget* { return new QSliderEdit; });
        auto* button = new QPushButton("Bake");
        lamps.inspector.addRow(button, "Light", "power");
        lamps.select(2);
        QCoreApplication::processEvents();
        QVERIFY(button->isVisible() && button->y() > lamps.inspector.editor("power")->y());
        QVERIFY(button->y() < lamps.inspector.editor("falloff")->y());
        auto* samples = lamps.editor<QSliderEdit>("samples");
        QVERIFY(samples);
        lamps.type_(fieldsOf(*samples).first(), "12");
        QCOMPARE(lamps.lamps[1].samples, 12);
        lamps.select(0);
        lamps.select(1);
        QCoreApplication::processEvents();
        QVERIFY(button->isVisibleTo(&lamps.panel));
    }

    void wrongDescriptionsAreRefusedAtOnce()
    {
        Lamps lamps;
        for (const char* which : {"0", "1"})
            expectWarning(QString("Inspector: Numbers.*property ") + which);
        const auto wrong = std::make_shared<Numbers>(QVector<Property>(2)); // without names
        QVERIFY(!lamps.inspector.setObjects(wrong, {&lamps.lamps[0]}) && lamps.inspector.objects().isEmpty());
        QVERIFY(!lamps.inspector.editor("power"));
    }

    void newPropertyIsOneLine()
    {
        Lamps lamps;
        struct Sun : Lamp
        {
            double temperature = 6500.0;
        };
        Description<Sun> sun("Sun");
        sun.number("power", &Sun::power).range(0, 1000);
        sun.number("temperature", &Sun::temperature).range(1000, 12000);
        Sun suns[2];
        suns[1].temperature = 3000.0;
        const auto type = sun.type();
        QVERIFY(!type->equal(&suns[0], &suns[1]) && lamps.inspector.setObjects(type, {&suns[0], &suns[1]}));
        lamps.type_(lamps.field("temperature"), "*=2");
        QCOMPARE(suns[0].temperature, 12000.0);
        QCOMPARE(suns[1].temperature, 6000.0);
        lamps.stack.undo();
        QCOMPARE(suns[1].temperature, 3000.0);
        QCOMPARE(lamps.stack.redoText(), QString("Change of Temperature"));
        ObjectFile file(type);
        QJsonObject json;
        QVERIFY(file.toJson(&suns[1], &json) && file.fromJson(json, &suns[0]) && type->equal(&suns[0], &suns[1]));
    }
};

QTEST_MAIN(tst_Inspector)
#include "tst_inspector.moc"
