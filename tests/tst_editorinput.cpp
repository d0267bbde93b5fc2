#include "hostsupport.h"

#include <examples/DerivedEditor/PercentEdit.h>
#include <Orvek/Host/EditorInput.h>

#include <QtGui/QClipboard>
#include <QtTest/qtestspontaneevent.h>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

#include <functional>

using orvek::host::EditorInput;
using Setup = std::function<void(QWidget*)>;
Q_DECLARE_METATYPE(Setup)

namespace
{
constexpr double third = 1.0 / 3.0;

// A host's own, connected in its own way, with conversions that can be invoked by name.
class OwnEditor : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double value MEMBER m_value)
public:
    OwnEditor()
    {
        auto* field = new QLineEdit(QStringLiteral("0 px"), this);
        field->setObjectName("lineEdit");
        connect(field, &QLineEdit::editingFinished, this,
                [this, field]
                {
                    m_value = qMin(9.0, textToValue(field->text(), nullptr));
                    Q_EMIT valueChanged();
                });
    }
    Q_INVOKABLE double textToValue(QString text, bool* ok)
    {
        return text.remove(QStringLiteral("px")).trimmed().toDouble(ok);
    }
    Q_INVOKABLE QString valueToText(double value) { return QString::number(value) + QStringLiteral(" px"); }
Q_SIGNALS:
    void valueChanged();

private:
    double m_value = 0.0;
};

// An editor and another field in a scroll area in a window, with a button that Return presses in a dialog.
struct Scene
{
    Scene(hostsupport::Create createWindow, hostsupport::Create createEditor, bool isControl = false)
        : window(createWindow()), editor(createEditor())
    {
        auto* column = new QWidget;
        auto* rows = new QVBoxLayout(column);
        rows->addWidget(editor);
        rows->addWidget(after = new QLineEdit);
        column->setMinimumHeight(900);
        area = new QScrollArea;
        area->setWidgetResizable(true);
        area->setWidget(column);
        auto* outer = new QVBoxLayout(window.get());
        outer->addWidget(area);
        outer->addWidget(button = new QPushButton("OK"));
        window->resize(600, 300);
        field = hostsupport::fieldsOf(*editor).first();
        if (!isControl)
            input = std::make_unique<EditorInput>(window.get());
        hostsupport::showActive(*window);
    }
    void type(const QString& text)
    {
        field->setFocus(Qt::TabFocusReason);
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }
    QVariant value() const
    {
        if (const auto* colour = qobject_cast<QColourEdit*>(editor))
            return QVector3D(float(colour->colour()[0]), float(colour->colour()[1]), float(colour->colour()[2]));
        return editor->property(qobject_cast<QFileEdit*>(editor) ? "filename" : "value");
    }
    const std::unique_ptr<QWidget> window;
    QWidget* const editor;
    std::unique_ptr<EditorInput> input;
    QScrollArea* area = nullptr;
    QLineEdit* field = nullptr;
    QLineEdit* after = nullptr;
    QPushButton* button = nullptr;
};

// A value whose texts do not say all of it, in fields that have been written since they were left.
void setOddValue(QWidget* editor)
{
    if (auto* colour = qobject_cast<QColourEdit*>(editor))
        colour->setColour(third, third, third, third);
    else if (auto* vector = qobject_cast<QVectorEdit*>(editor))
        vector->setValue({float(third), float(third), float(third)});
    else if (auto* integer = qobject_cast<QIntSliderEdit*>(editor))
    {
        integer->setEnums({"none", "some", "all"});
        integer->setValue(1);
    }
    else
        editor->setProperty(qobject_cast<QFileEdit*>(editor) ? "filename" : "value", QVariant(third));
    for (QLineEdit* field : hostsupport::fieldsOf(*editor))
        field->setText(qobject_cast<QColourEdit*>(editor) ? QStringLiteral("0.333333") : field->text());
}

void wheel(QWidget* widget, Qt::ScrollPhase phase)
{
    const QPointF centre = widget->rect().center();
    QWheelEvent event(centre, widget->mapToGlobal(centre.toPoint()), {0, -15}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      phase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(widget, &event);
}
} // namespace

class tst_EditorInput : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void untouchedFieldsKeepTheValue_data() { hostsupport::addKinds(); }
    void untouchedFieldsKeepTheValue()
    {
        QFETCH(hostsupport::Create, window);
        QFETCH(hostsupport::Create, editor);
        QWidget other;
        const std::function<void(Scene&)> leaves[] = {[](Scene& scene)
                                                      { QTest::keyClick(scene.field, Qt::Key_Return); },
                                                      [](Scene& scene) { QTest::keyClick(scene.field, Qt::Key_Tab); },
                                                      [](Scene& scene) { scene.after->setFocus(Qt::MouseFocusReason); },
                                                      [&other](Scene&) { hostsupport::showActive(other); }};
        for (const bool isControl : {true, false})
        {
            Scene scene(window, editor, isControl);
            const bool isText = scene.editor->metaObject()->indexOfProperty("readOnly") >= 0;
            QSignalSpy changes(scene.editor, SIGNAL(valueChanged()));
            for (const auto& leave : leaves)
            {
                hostsupport::showActive(*scene.window);
                setOddValue(scene.editor);
                const QVariant before = scene.value();
                scene.field->setFocus(Qt::TabFocusReason);
                leave(scene);
                QCOMPARE(changes.isEmpty(), !isControl);
                QCOMPARE(scene.value() == before, !isControl || isText);
                changes.clear();
            }
            // Another window gets what was typed, but half an expression may still be finished.
            for (const QString& text : {QStringLiteral("2*("), QStringLiteral("1")})
            {
                hostsupport::showActive(*scene.window);
                scene.type(text);
                changes.clear();
                hostsupport::showActive(other);
                QVERIFY(text == "1" ? !changes.isEmpty() : scene.field->text() == text);
            }
        }
    }

    void keysAndWheelDoNoHarm_data() { hostsupport::addKinds(); }
    void keysAndWheelDoNoHarm()
    {
        QFETCH(hostsupport::Create, window);
        QFETCH(hostsupport::Create, editor);
        for (const bool isControl : {true, false})
        {
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return})
            {
                Scene scene(window, editor, isControl);
                setOddValue(scene.editor);
                QSignalSpy presses(scene.button, &QPushButton::clicked);
                const bool isTrapped = isControl && qobject_cast<QDialog*>(scene.window.get());
                const QString shown = scene.field->text();
                const QVariant before = scene.value();
                for (QWidget* part : scene.editor->findChildren<QWidget*>())
                {
                    const bool stalls = isControl && qobject_cast<QSlider*>(part);
                    for (const Qt::ScrollPhase phase : {Qt::NoScrollPhase, Qt::ScrollBegin, Qt::ScrollUpdate})
                    {
                        scene.area->verticalScrollBar()->setValue(0);
                        wheel(part, phase);
                        QCOMPARE(scene.area->verticalScrollBar()->value() == 0, stalls);
                        wheel(part, Qt::ScrollEnd);
                    }
                }
                QCOMPARE(scene.value(), before);
                scene.type("2");
                QTest::keyClick(scene.field, key);
                QCOMPARE(scene.field->text() == shown, !isControl && key == Qt::Key_Escape);
                QCOMPARE(scene.window->isVisible(), !isTrapped || key == Qt::Key_Return);
                QCOMPARE(presses.size(), isTrapped && key == Qt::Key_Return ? 1 : 0);
                if (isControl)
                    continue;
                QVERIFY(scene.field->hasFocus());
                QCOMPARE(scene.value() == before, key == Qt::Key_Escape);
                QTest::keyClick(scene.field, Qt::Key_Escape); // nothing to take back
                QCOMPARE(scene.window->isVisible(), !qobject_cast<QDialog*>(scene.window.get()));
            }
        }
    }

    void textsBecomeValues_data()
    {
        QTest::addColumn<hostsupport::Create>("editor");
        QTest::addColumn<Setup>("setup");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QVariant>("value"); // invalid: the text is no value
        QTest::addColumn<QString>("shown");
        const hostsupport::Create slider = hostsupport::create<QSliderEdit>;
        const hostsupport::Create integer = hostsupport::create<QIntSliderEdit>;
        const hostsupport::Create percent = hostsupport::create<PercentEdit>;
        const hostsupport::Create vector = hostsupport::create<QVectorEdit>;
        const hostsupport::Create own = hostsupport::create<OwnEditor>;
        const Setup none = [](QWidget*) {};
        const Setup toTen = [](QWidget* editor) { editor->setProperty("maximum", 10); };
        const Setup metres = [](QWidget* editor) { editor->setProperty("units", "m"); };
        const Setup powers = [](QWidget* editor) { editor->setProperty("powerOfTwo", true); };
        const Setup names = [](QWidget* editor) { editor->setProperty("enums", QStringList{"1", "2", "4", "Off"}); };
        const auto add =
            [](auto editor, const Setup& setup, const char* typed, const QVariant& value, const char* shown)
        { QTest::newRow(typed) << editor << setup << QString(typed) << value << QString(shown); };
        add(slider, none, "0.50", 0.5, "0.50");
        add(slider, none, "5", 1.0, "1");
        for (const char* text : {"abc", "0,5", "", "1/0", "2*(3", "1 2"})
            add(slider, none, text, {}, "0");
        add(slider, toTen, "3*2", 6.0, "6");
        add(slider, none, "1/3", third, "0.333333");
        add(slider, toTen, "sqrt(2)", std::sqrt(2.0), "1.41421");
        add(slider, toTen, "2pi - (1+1)2 + 2 sqrt(1)", 2 * M_PI - 4 + 2, "4.28319");
        add(slider, toTen, "1e0 + log10(1e2)", 3.0, "3");
        add(slider, metres, "2min(0.2,0.4)", 0.4, "0.4");
        add(slider, metres, "0.2m*2", 0.4, "0.4");
        add(percent, none, "50/2", 0.25, "25 %");
        add(percent, none, "50 %/2", 0.25, "25 %");
        add(percent, none, "300", 1.0, "100 %");
        add(integer, none, "2.6*10", 26, "26");
        add(integer, none, "99999999999", 100, "100");
        add(integer, none, "letters", {}, "0");
        add(integer, powers, "48", 64, "64");
        add(integer, names, "off", 3, "Off");
        add(integer, names, "4", 2, "4");
        add(vector, none, "1./3", QVector3D(float(third), 0, 0), "0.333333");
        add(vector, none, "nan", {}, "0");
        add(vector, none, "1 2.5 -3", QVector3D(1, 2.5, -3), "1");
        add(own, none, "2 px", 2.0, "2 px");
        add(own, none, "2*8 px", 9.0, "9 px");
        add(own, none, "px px", {}, "0 px");
        add(hostsupport::create<QLabelEdit>, none, "3 *2", "3 *2", "3 *2");
    }
    void textsBecomeValues()
    {
        QFETCH(hostsupport::Create, editor);
        QFETCH(Setup, setup);
        QFETCH(QString, typed);
        QFETCH(QVariant, value);
        QFETCH(QString, shown);
        for (const Qt::Key leave : {Qt::Key_Tab, Qt::Key_Return})
        {
            Scene scene(hostsupport::create<QDialog>, editor);
            setup(scene.editor);
            const QVariant before = scene.value();
            QSignalSpy changes(scene.editor, SIGNAL(valueChanged()));
            scene.type(typed);
            QCOMPARE(scene.field->property("invalid").toBool(), !value.isValid());
            QTest::keyClick(scene.field, leave);
            const bool isRejected = !value.isValid() && leave == Qt::Key_Return;
            QCOMPARE(scene.field->text(), isRejected ? typed : shown);
            QCOMPARE(scene.field->property("invalid").isValid(), isRejected);
            QCOMPARE(scene.value(), value.isValid() ? value : before);
            if (value.userType() == QMetaType::Double)
                QVERIFY(scene.value().toDouble() == value.toDouble()); // all bits
            QCOMPARE(changes.isEmpty(), !value.isValid());
        }
    }

    void arrowsStep()
    {
        const struct
        {
            hostsupport::Create create;
            QVector<double> values; // after Up, Shift+Up, Ctrl+Up, Down
            QVector<QPair<const char*, double>> properties;
        } cases[] = {
            {hostsupport::create<QSliderEdit>, {0.01, 0.11, 0.111, 0.101}, {}},
            {hostsupport::create<QSliderEdit>, {0.1, 1, 1, 0.9}, {{"step", 0.1}}},
            {hostsupport::create<QSliderEdit>,
             {10.1, 11.1567, 11.1678, 11.0572},
             {{"maximum", 27.0481382942153}, {"minimum", 10}, {"logarithmic", 1}}}, // 1.01 to the power of 100
            {hostsupport::create<QIntSliderEdit>, {1, 11, 12, 11}, {}},
            {hostsupport::create<QIntSliderEdit>, {2, 2048, 4096, 2048}, {{"maximum", 1 << 20}, {"powerOfTwo", 1}}},
            {hostsupport::create<QVectorEdit>, {0.1, 1.1, 1.11, 1.01}, {}},
            {hostsupport::create<QColourEdit>, {0.01, 0.11, 0.111, 0.101}, {}}};
        for (const auto& test : cases)
        {
            const std::unique_ptr<QWidget> editor(test.create());
            for (const auto& property : test.properties)
                editor->setProperty(property.first, property.second);
            QLineEdit* field = hostsupport::fieldsOf(*editor).first();
            QSignalSpy changes(editor.get(), SIGNAL(valueChanged()));
            QTest::keyClick(field, Qt::Key_Up);
            QVERIFY(changes.isEmpty());
            const EditorInput input(editor.get()); // also of an editor alone
            const Qt::KeyboardModifiers modifiers[] = {Qt::KeypadModifier, Qt::ShiftModifier, Qt::ControlModifier, {}};
            for (int i = 0; i < 4; ++i)
            {
                changes.clear();
                QTest::keyClick(field, i < 3 ? Qt::Key_Up : Qt::Key_Down, modifiers[i]);
                QCOMPARE(field->text(), QString("%1").arg(test.values[i]));
                QCOMPARE(changes.size(), i > 0 && test.values[i] == test.values[i - 1] ? 0 : 1);
            }
            field->setReadOnly(true);
            QTest::keyClick(field, Qt::Key_Up);
            QCOMPARE(field->text(), QString("%1").arg(test.values[3]));
        }
    }

    void keypadTypesPoint()
    {
        QWidget root;
        auto* number = new QSliderEdit(&root);
        auto* text = new QLabelEdit(&root);
        const auto type = [](const QWidget* editor)
        {
            auto* field = child<QLineEdit>(*editor, "lineEdit");
            field->clear();
            for (const Qt::Key key : {Qt::Key_Comma, Qt::Key_Period})
                QTest::sendKeyEvent(QTest::Click, field, key, ",", Qt::KeypadModifier);
            return field->text();
        };
        QCOMPARE(type(number), QStringLiteral(",,"));
        const EditorInput input(&root);
        QCOMPARE(type(number), QStringLiteral(".."));
        QCOMPARE(type(text), QStringLiteral(",,"));
    }

    void wholeValuesAreCopiedAndPasted()
    {
        QWidget root;
        QVectorEdit from(&root);
        QVectorEdit to(&root);
        QColourEdit colour(&root);
        QSliderEdit slider(&root);
        const auto press = [](const QWidget& editor, QKeySequence::StandardKey key)
        { QTest::keySequence(hostsupport::fieldsOf(editor).last(), key); };
        QClipboard* clipboard = QApplication::clipboard();
        from.setValue({0.1F, -2, float(third)});
        clipboard->setText("before");
        press(from, QKeySequence::Copy);
        QCOMPARE(clipboard->text(), QStringLiteral("before"));

        const EditorInput input(&root);
        QSignalSpy changes(&to, SIGNAL(valueChanged()));
        press(from, QKeySequence::Copy);
        QCOMPARE(clipboard->text(), QStringLiteral("0.1 -2 0.33333334"));
        press(to, QKeySequence::Paste);
        QCOMPARE(to.value(), from.value());
        QCOMPARE(changes.size(), 1);
        clipboard->setText("#ff8000");
        press(to, QKeySequence::Paste); // no colour
        QCOMPARE(changes.size(), 1);
        QCOMPARE(hostsupport::fieldsOf(to).last()->property("invalid"), QVariant(true));
        to.setColourEdit(true);
        press(to, QKeySequence::Paste);
        QCOMPARE(to.value(), QVector3D(1, 128.0F / 255.0F, 0));

        colour.setColour(0, 0, 0, 1);
        press(colour, QKeySequence::Paste);
        QCOMPARE(colour.colour()[1], 128.0 / 255.0);
        QCOMPARE(hostsupport::fieldsOf(colour).last()->text(), QStringLiteral("1"));
        colour.setColour(0.4, 0.4, third, 1);
        press(colour, QKeySequence::Copy);
        QCOMPARE(clipboard->text(), QStringLiteral("#666655"));
        colour.setColour(0, 0, 0, 0);
        press(colour, QKeySequence::Paste);
        QVERIFY(colour.colour()[2] == third && colour.colour()[3] == 1.0);
        clipboard->setText("(2, 0.5; 1)");
        press(colour, QKeySequence::Paste);
        press(colour, QKeySequence::Copy);
        QCOMPARE(clipboard->text(), QStringLiteral("2 0.5 1 1"));

        slider.setValue(QVariant(third));
        press(slider, QKeySequence::Copy);
        slider.setValue(0.0);
        slider.setDefaultValue(0.25);
        const auto choose = [&slider](const char* text)
        {
            auto* label = child<QLabel>(slider, "label");
            QContextMenuEvent event(QContextMenuEvent::Mouse, {2, 2}, label->mapToGlobal(QPoint(2, 2)));
            QCoreApplication::sendEvent(label, &event);
            auto* menu = slider.findChild<QMenu*>();
            for (QAction* action : menu->actions())
                if (action->text() == QLatin1String(text) && action->isEnabled())
                    action->trigger();
            delete menu;
        };
        choose("Paste");
        QVERIFY(slider.value().toDouble() == third);
        choose("Reset");
        QCOMPARE(slider.value(), QVariant(0.25));
        choose("Copy");
        QCOMPARE(clipboard->text(), QStringLiteral("0.25"));
        clipboard->setText("letters");
        choose("Paste");
        QCOMPARE(slider.value(), QVariant(0.25));
    }

    void editorsComeAndGo()
    {
        hostsupport::Panel panel;
        auto* section = panel.addSection("Fog");
        auto* editor = hostsupport::Panel::addRow(section, "Density");
        auto input = std::make_unique<EditorInput>(&panel.panel);
        const EditorInput inner(section);
        panel.panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel.panel));
        auto* field = child<QLineEdit>(*editor, "lineEdit");
        const auto pressAndCount = [field, editor](Qt::Key key)
        {
            QSignalSpy changes(editor, SIGNAL(valueChanged()));
            QTest::keyClick(field, key);
            return changes.size();
        };
        QCOMPARE(pressAndCount(Qt::Key_Up), 1);
        QCOMPARE(editor->value().toDouble(), 0.01); // of two one
        input->setStepsWithArrows(false);
        input->setKeepsUntouched(false);
        QCOMPARE(pressAndCount(Qt::Key_Up), 0);
        QCOMPARE(pressAndCount(Qt::Key_Return), 2);
        QTest::keyClicks(field, "x");
        QVERIFY(field->property("invalid").toBool());
        input.reset(); // the inner one follows
        QTest::keyClick(field, Qt::Key_Escape);
        QCOMPARE(field->text(), QStringLiteral("0.01"));
        QCOMPARE(pressAndCount(Qt::Key_Up), 1);

        QTest::keyClicks(field, "x");
        QWidget elsewhere;
        editor->setParent(&elsewhere);
        QVERIFY(!field->property("invalid").isValid());
        field->setText("0.5");
        QCOMPARE(pressAndCount(Qt::Key_Up), 0);
        QCOMPARE(pressAndCount(Qt::Key_Return), 2);
        hostsupport::Panel::contentsOf(section)->layout()->addWidget(editor);
        QCoreApplication::processEvents();
        QCOMPARE(pressAndCount(Qt::Key_Up), 1);
        // A host's slot may delete the editor, and with it all else.
        connect(editor, &QSliderEdit::valueChanged, editor, &QObject::deleteLater);
        QTest::keyClicks(field, "1");
        QTest::keyClick(field, Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!section->findChild<QSliderEdit*>());
    }
};

QTEST_MAIN(tst_EditorInput)
#include "tst_editorinput.moc"
