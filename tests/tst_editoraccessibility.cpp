#include "hostsupport.h"

#include <Orvek/Host/EditorAccessibility.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QSocketNotifier>
#include <QtGui/QAccessible>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>

#include <cstdio>

using hostsupport::Panel;
using orvek::host::EditorAccessibility;

namespace
{
// Shows a share of 1 in percent.
class PercentEdit final : public QSliderEdit
{
public:
    QString valueToText(double value) override { return QStringLiteral("%1 %").arg(value * 100); }
};

QAccessibleInterface* ask(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject* object)
{
    return ask(object)->text(QAccessible::Name);
}

void setTitle(QWidget* editor, const QString& title)
{
    editor->setProperty(editor->metaObject()->indexOfProperty("title") < 0 ? "label" : "title", title);
}

// What a tool reads when it walks through the tree.
QStringList focusableNames(QAccessibleInterface* root)
{
    QStringList names;
    for (int i = 0; i < root->childCount(); ++i)
    {
        QAccessibleInterface* child = root->child(i);
        if (root->indexOfChild(child) != i || child->parent() != root)
            names << QStringLiteral("lost");
        if (child->state().focusable && !child->state().invisible)
            names << child->text(QAccessible::Name);
        names << focusableNames(child);
    }
    return names;
}

// Each test function ends as it began, also where it fails.
struct Restorer
{
    ~Restorer() { EditorAccessibility::uninstall(); }
};

// All that Qt's own interface of a field answers.
QVariantList answersOf(QLineEdit* field)
{
    QAccessibleInterface* interface = ask(field);
    QAccessibleTextInterface* text = interface->textInterface();
    int start = -1;
    int end = -1;
    text->selection(0, &start, &end);
    const QAccessible::State state = interface->state();
    const QRect third = text->characterRect(2);
    const int found = text->offsetAtPoint(third.center());
    return {int(interface->role()),
            interface->text(QAccessible::Value),
            text->characterCount(),
            text->text(1, 3),
            text->cursorPosition(),
            text->selectionCount(),
            start,
            end,
            found,
            bool(state.editable),
            bool(state.readOnly),
            bool(state.selectableText),
            bool(state.focusable),
            bool(state.focused),

            interface->rect(),
            interface->actionInterface()->actionNames(),
            text->textAtOffset(2, QAccessible::WordBoundary, &start, &end),
            start,
            end,
            interface->editableTextInterface() != nullptr};
}
} // namespace

class tst_EditorAccessibility : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void everythingHasAName_data() { hostsupport::addKinds(); }
    void everythingHasAName()
    {
        const Restorer restorer;
        QFETCH(hostsupport::Create, window);
        QFETCH(hostsupport::Create, editor);
        const std::unique_ptr<QWidget> top(window());
        auto* column = new QVBoxLayout(top.get());
        QWidget* rows[] = {editor(), editor()};
        for (QWidget* row : rows)
        {
            column->addWidget(row);
            setTitle(row, "Roughness");
            row->setProperty("showButtons", true);
        }
        hostsupport::showActive(*top);
        const QStringList without = focusableNames(ask(rows[0]));
        QVERIFY(!without.isEmpty() && without.filter("Roughness").isEmpty());

        EditorAccessibility::install();
        EditorAccessibility::install();
        QWidget* row = rows[1];
        QStringList with = focusableNames(ask(row));
        QCOMPARE(with.size(), without.size());
        QCOMPARE(with.filter(QRegularExpression("^Roughness, .")).size(), with.size());
        QCOMPARE(QSet<QString>(with.begin(), with.end()).size(), with.size());
        QCOMPARE(nameOf(row), QString("Roughness"));

        // The title is live.
        setTitle(row, "50%1 & <more>");
        with = focusableNames(ask(row));
        QCOMPARE(with.filter("50%1 & <more>, ").size(), with.size());

        EditorAccessibility::uninstall();
        QCOMPARE(focusableNames(ask(row)), without);
    }

    void namesSayTheRole()
    {
        const Restorer restorer;
        EditorAccessibility::install();
        Panel panel;
        QAccordion* section = panel.addSection("Surface");
        auto* slider = Panel::addRow<QSliderEdit>(section, "Roughness");
        auto* vector = Panel::addRow<QVectorEdit>(section, "Position");
        auto* colour = Panel::addRow<QColourEdit>(section, "Tint");
        auto* file = Panel::addRow<QFileEdit>(section, "Mesh");
        QCOMPARE(nameOf(child<QLineEdit>(*slider, "lineEdit")), QString("Roughness, value"));
        QCOMPARE(nameOf(child<QPushButton>(*slider, "reset")), QString("Roughness, reset to default"));
        QCOMPARE(nameOf(child<QSlider>(*slider, "slider")), QString("Roughness, slider"));
        QCOMPARE(nameOf(child<QLineEdit>(*vector, "y")), QString("Position, Y"));
        vector->setColourEdit(true);
        QCOMPARE(nameOf(child<QLineEdit>(*vector, "y")), QString("Position, green"));
        QCOMPARE(nameOf(child<QLineEdit>(*colour, "alpha")), QString("Tint, alpha"));
        QCOMPARE(nameOf(child<QPushButton>(*file, "browse")), QString("Mesh, browse"));
        QCOMPARE(nameOf(child<QCheckBox>(*section, "accordionCheckBox")), QString("Surface, section"));
        QCOMPARE(nameOf(panel.search()), QString("Search"));
        QRenderWidget view;
        view.setWindowTitle("Camera");
        QCOMPARE(nameOf(&view), QString("Camera, rendered view"));
        // A host's own names hold.
        view.setAccessibleName("Camera 2");
        QCOMPARE(nameOf(&view), QString("Camera 2"));
        QFileEdit untitled;
        QCOMPARE(nameOf(child<QLineEdit>(untitled, "lineEdit")), QString("File name, value"));

        // Red comes first, whatever was created first; so with every editor the parts are in the order that one sees.
        QStringList parts;
        for (int i = 0; i < ask(colour)->childCount(); ++i)
            parts << ask(colour)->child(i)->object()->objectName();
        QCOMPARE(parts, QStringList({"label", "red", "green", "blue", "alpha"}));
        QVERIFY(!ask(colour)->child(5) && !ask(colour)->child(-1));
        EditorAccessibility::uninstall();
        QCOMPARE(ask(colour)->child(0)->object()->objectName(), QString("blue"));
    }

    void slidersSpeakTheValue()
    {
        const Restorer restorer;
        PercentEdit other;
        other.setValue(0.25);
        QCOMPARE(ask(child<QSlider>(other, "slider"))->valueInterface()->currentValue(), QVariant(250)); // the position
        EditorAccessibility::install();
        PercentEdit percent;
        percent.setTitle("Opacity");
        percent.setMaximum(10);
        percent.setValue(2.5);
        auto* slider = child<QSlider>(percent, "slider");
        QAccessibleInterface* interface = ask(slider);
        QAccessibleValueInterface* value = interface->valueInterface();
        QCOMPARE(interface->role(), QAccessible::Slider);
        QCOMPARE(interface->text(QAccessible::Value), QString("250 %"));
        QCOMPARE(value->currentValue(), QVariant(2.5));
        QCOMPARE(value->minimumValue(), QVariant(0.0));
        QCOMPARE(value->maximumValue(), QVariant(10.0));
        QCOMPARE(value->minimumStepSize().toDouble(), 0.01);
        QSignalSpy changed(&percent, &QSliderEdit::valueChanged);
        value->setCurrentValue(1.0 / 3);
        QCOMPARE(percent.value().toDouble(), 1.0 / 3); // not a multiple of anything
        QCOMPARE(changed.count(), 1);
        value->setCurrentValue(77);
        QCOMPARE(percent.value().toDouble(), 10.0);
        value->setCurrentValue(77);
        value->setCurrentValue("much");
        value->setCurrentValue(qQNaN());
        QCOMPARE(changed.count(), 2);
        percent.setEnabled(false);
        value->setCurrentValue(1);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(percent.value().toDouble(), 10.0);
        percent.setEnabled(true);

        QIntSliderEdit names;
        names.setMaximum(2);
        names.setEnums({"Low", "Medium", "High"});
        QAccessibleInterface* choice = ask(child<QSlider>(names, "slider"));
        choice->valueInterface()->setCurrentValue(1);
        QCOMPARE(choice->text(QAccessible::Value), QString("Medium"));
        QCOMPARE(choice->text(QAccessible::Description), QString("Medium"));
        QCOMPARE(child<QLineEdit>(names, "lineEdit")->text(), QString("Medium"));
        QIntSliderEdit powers;
        powers.setMaximum(1024);
        powers.setPowerOfTwo(true);
        QSignalSpy doubled(&powers, &QIntSliderEdit::valueChanged);
        QAccessibleValueInterface* power = ask(child<QSlider>(powers, "slider"))->valueInterface();
        power->setCurrentValue(100);
        QCOMPARE(powers.value().toInt(), 128);
        QCOMPARE(power->currentValue().toInt(), 128);
        power->setCurrentValue(-5);
        QCOMPARE(powers.value().toInt(), 1);
        QCOMPARE(doubled.count(), 2);
    }

    void sectionsUnfold()
    {
        const Restorer restorer;
        Panel panel;
        QAccordion* other = panel.addSection("Other");
        QVERIFY(!ask(other)->state().expandable);
        QVERIFY(!ask(child<QCheckBox>(*other, "accordionCheckBox"))->state().expandable);
        EditorAccessibility::install();
        QAccordion* section = panel.addSection("Surface");
        auto* line = child<QCheckBox>(*section, "accordionCheckBox");
        for (QWidget* widget : {static_cast<QWidget*>(section), static_cast<QWidget*>(line)})
        {
            QAccessibleInterface* interface = ask(widget);
            for (const QString& action :
                 {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()})
            {
                QVERIFY(interface->actionInterface()->actionNames().contains(action));
                const bool open = section->isOpen();
                QVERIFY(interface->state().expandable);
                QCOMPARE(bool(interface->state().expanded), open);
                QCOMPARE(bool(interface->state().collapsed), !open);
                interface->actionInterface()->doAction(action);
                QCOMPARE(section->isOpen(), !open);
            }
        }
        QCOMPARE(ask(line)->role(), QAccessible::CheckBox);
        QVERIFY(ask(line)->state().checkable && ask(line)->state().checked);
        section->setTitle("Coat");
        QCOMPARE(nameOf(section), QString("Coat"));
    }

    void fieldsAnswerAsQtsOwn()
    {
        const Restorer restorer;
        QWidget window;
        auto* editor = new QLabelEdit(&window);
        editor->setMinimumWidth(500);
        editor->setValue("some words in a field");
        window.resize(520, 60);
        hostsupport::showActive(window);
        auto* field = child<QLineEdit>(*editor, "lineEdit");
        field->setFocus();
        EditorAccessibility::install();
        const auto steps = [&]
        {
            QVariantList answers;
            field->deselect();
            field->setCursorPosition(4);
            answers << answersOf(field);
            ask(field)->textInterface()->setSelection(0, 5, 10);
            answers << answersOf(field);
            ask(field)->textInterface()->removeSelection(0);
            ask(field)->textInterface()->setCursorPosition(2);
            answers << answersOf(field);
            editor->setReadOnly(true);
            answers << answersOf(field);
            editor->setReadOnly(false);
            return answers;
        };
        const QVariantList answers = steps();
        const QRect ours = ask(field)->textInterface()->characterRect(7);
        EditorAccessibility::uninstall();
        const QVariantList expected = steps();
        QCOMPARE(answers.size(), expected.size());
        for (int i = 0; i < answers.size(); ++i)
            QVERIFY2(answers[i] == expected[i], qPrintable(QString::number(i)));
        QVERIFY(ask(field)->rect().contains(ours));
        QCOMPARE(ask(field)->textInterface()->offsetAtPoint(ours.topLeft() + QPoint(1, 1)), 7);
        EditorAccessibility::install();

        // Text from a tool is the user's: it commits on Return and can be undone.
        QSignalSpy changed(editor, &QLabelEdit::valueChanged);
        ask(field)->editableTextInterface()->replaceText(0, 4, "two");
        ask(field)->editableTextInterface()->deleteText(3, 9);
        ask(field)->editableTextInterface()->insertText(3, "!");
        QCOMPARE(field->text(), QString("two! in a field"));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(changed.count(), 1);
        QVERIFY(field->isUndoAvailable());
        editor->setReadOnly(true);
        ask(field)->editableTextInterface()->deleteText(0, 3);
        QCOMPARE(field->text(), QString("two! in a field"));
    }

    void livesWithWhatLeaves()
    {
        EditorAccessibility::install();
        QVector<QAccessible::Id> ids;
        for (const hostsupport::Kind& kind : hostsupport::editorKinds)
        {
            const std::unique_ptr<QWidget> editor(kind.create());
            focusableNames(ask(editor.get()));
            const auto widgets = editor->findChildren<QWidget*>() << editor.get();
            for (QWidget* widget : widgets)
                ids << QAccessible::uniqueId(ask(widget));
            delete editor->findChild<QLabel*>("label");
            QVERIFY(!nameOf(editor.get()).isNull());
        }
        for (const QAccessible::Id id : qAsConst(ids))
            QVERIFY(!QAccessible::accessibleInterface(id));
        QSliderEdit alive;
        ask(child<QSlider>(alive, "slider"));
        EditorAccessibility::uninstall();
        EditorAccessibility::uninstall();
        QVERIFY(!EditorAccessibility::isInstalled());
        alive.on_reset_clicked(); // nothing of ours listens any more
        alive.setTitle("Other");
    }
};

// With --tree: shows editors for another process to read, until it is ended. A line on the standard input renames one.
int showTree(int argc, char** argv)
{
    const QApplication application(argc, argv);
    EditorAccessibility::install();
    Panel panel;
    QAccordion* section = panel.addSection("Surface");
    auto* slider = Panel::addRow<QSliderEdit>(section, "Roughness");
    slider->setMaximum(4);
    Panel::addRow<QColourEdit>(section, "Tint");
    Panel::addRow<QLabelEdit>(section, "Name");
    Panel::addRow<QFileEdit>(section, "Mesh");
    panel.panel.show();
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, slider,
                     [slider]
                     {
                         std::getchar();
                         slider->setTitle("Gloss");
                     });
    return QApplication::exec();
}

int main(int argc, char** argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--tree") == 0)
        return showTree(argc, argv);
    QApplication application(argc, argv);
    tst_EditorAccessibility test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_editoraccessibility.moc"
