#include "hostsupport.h"

#include <examples/DerivedEditor/PercentEdit.h>
#include <Orvek/Host/EditorAccessibility.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

using hostsupport::Panel;
using orvek::host::EditorAccessibility;

namespace
{
QAccessibleInterface* ask(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject* object)
{
    return ask(object)->text(QAccessible::Name);
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

struct Installed
{
    Installed() { EditorAccessibility::install(); }
    ~Installed() { EditorAccessibility::uninstall(); }
};

// What Qt's own interface of a field answers, too.
QVariantList answersOf(QLineEdit* field)
{
    QAccessibleInterface* interface = ask(field);
    QAccessibleTextInterface* text = interface->textInterface();
    const QAccessible::State state = interface->state();
    QVariantList answers;
    answers << int(interface->role()) << interface->text(QAccessible::Value) << interface->rect()
            << interface->actionInterface()->actionNames() << bool(state.editable) << bool(state.readOnly)
            << bool(state.selectableText) << bool(state.focusable) << bool(state.focused);
    int start = -1;
    int end = -1;
    text->selection(0, &start, &end);
    answers << start << end << text->selectionCount() << text->cursorPosition() << text->characterCount();
    const QString word = text->textAtOffset(2, QAccessible::WordBoundary, &start, &end);
    return answers << word << start << end << text->text(1, 3) << text->offsetAtPoint(text->characterRect(2).center());
}
} // namespace

class tst_EditorAccessibility : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everythingHasAName_data() { hostsupport::everyKind(); }
    void everythingHasAName()
    {
        const hostsupport::Hosted hosted;
        QWidget* row = hosted.editor;
        row->setProperty("showButtons", true);
        hostsupport::setTitle(row, "Roughness");
        showActive(*hosted.window);
        const QStringList without = focusableNames(ask(row));
        QVERIFY(!without.isEmpty() && without.filter("Roughness").isEmpty());
        for (int round = 0; round < 2; ++round)
        {
            const Installed installed;
            for (const QString title : {"Roughness", "50%1 & <more>"})
            {
                hostsupport::setTitle(row, title);
                const QStringList with = focusableNames(ask(row));
                QCOMPARE(with.size(), without.size());
                QCOMPARE(with.filter(title + ", ").size(), with.size());
                QCOMPARE(QSet<QString>(with.begin(), with.end()).size(), with.size());
                QCOMPARE(nameOf(row), title);
            }
        }
        QCOMPARE(focusableNames(ask(row)), without);
    }

    void namesSayTheRole()
    {
        Panel panel;
        QAccordion* section = panel.addSection("Surface");
        Panel::addRow<QSliderEdit>(section, "Roughness")->setShowButtons(true);
        Panel::addRow<QVectorEdit>(section, "Position");
        Panel::addRow<QVectorEdit>(section, "Tint")->setColourEdit(true);
        auto* colour = Panel::addRow<QColourEdit>(section, "Glow");
        Panel::addRow<QFileEdit>(section, "Mesh");
        Panel::contentsOf(section)->layout()->addWidget(new QFileEdit);
        showActive(panel.panel);
        QCOMPARE(ask(colour)->child(0)->object()->objectName(), QString("blue")); // without it
        const Installed installed;
        const QStringList rows[] = {{"Surface", "section"},
                                    {"Roughness", "decrease", "slider", "increase", "value", "reset to default"},
                                    {"Position", "X", "Y", "Z", "reset to default"},
                                    {"Tint", "red", "green", "blue", "reset to default"},
                                    {"Glow", "red", "green", "blue", "alpha"},
                                    {"Mesh", "value", "browse", "reset to default"},
                                    {"File name", "value", "browse", "reset to default"}};
        QStringList expected;
        for (const QStringList& row : rows)
            for (const QString& part : row.mid(1))
                expected << row.first() + ", " + part;
        QCOMPARE(focusableNames(ask(section)), expected);
        QCOMPARE(nameOf(panel.search()), QString("Search"));
        QRenderWidget view;
        view.setWindowTitle("Camera");
        QCOMPARE(nameOf(&view), QString("Camera, rendered view"));
        view.setAccessibleName("Camera 2"); // a host's own names hold
        QCOMPARE(nameOf(&view), QString("Camera 2"));
    }

    void slidersSpeakTheValue()
    {
        QUndoStack stack;
        orvek::host::EditorUndo undo(&stack);
        PercentEdit percent;
        undo.add(&percent);
        percent.setMaximum(10);
        percent.setValue(2.5);
        auto* slider = child<QSlider>(percent, "slider");
        QCOMPARE(ask(slider)->valueInterface()->currentValue(), QVariant(250)); // without it: the position
        const Installed installed;
        QAccessibleValueInterface* value = ask(slider)->valueInterface();
        QCOMPARE(ask(slider)->role(), QAccessible::Slider);
        QCOMPARE(ask(slider)->text(QAccessible::Value), QString("250 %"));
        QCOMPARE(value->currentValue(), QVariant(2.5));
        QCOMPARE(value->minimumValue(), QVariant(0.0));
        QCOMPARE(value->maximumValue(), QVariant(10.0));
        QCOMPARE(value->minimumStepSize().toDouble(), 0.01);
        QSignalSpy changed(&percent, &QSliderEdit::valueChanged);
        value->setCurrentValue(1.0 / 3);
        QCOMPARE(percent.value().toDouble(), 1.0 / 3); // not a multiple of anything
        QCOMPARE(changed.count(), 1);
        for (const QVariant& bad : {QVariant(77), QVariant(77), QVariant("much"), QVariant(qQNaN())})
            value->setCurrentValue(bad);
        QCOMPARE(percent.value().toDouble(), 10.0);
        percent.setEnabled(false);
        value->setCurrentValue(1);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(stack.count(), 2);
        stack.setIndex(0);
        QCOMPARE(percent.value().toDouble(), 2.5); // which the host had set silently

        QIntSliderEdit names;
        undo.add(&names);
        names.setMaximum(2);
        names.setEnums({"Low", "Medium", "High"});
        names.setValue(2);
        QAccessibleInterface* choice = ask(child<QSlider>(names, "slider"));
        choice->valueInterface()->setCurrentValue(1);
        QCOMPARE(choice->text(QAccessible::Value), QString("Medium"));
        QCOMPARE(choice->text(QAccessible::Description), QString("Medium"));
        QCOMPARE(child<QLineEdit>(names, "lineEdit")->text(), QString("Medium"));
        stack.undo();
        QCOMPARE(names.value().toInt(), 2);
        names.setPowerOfTwo(true);
        names.setMaximum(1024);
        QSignalSpy doubled(&names, &QIntSliderEdit::valueChanged);
        for (const auto& [number, power] : {std::pair(100, 128), std::pair(-5, 1)})
        {
            choice->valueInterface()->setCurrentValue(number);
            QCOMPARE(names.value().toInt(), power);
            QCOMPARE(choice->valueInterface()->currentValue().toInt(), power);
        }
        QCOMPARE(doubled.count(), 2);
    }

    void sectionsUnfold()
    {
        Panel panel;
        QAccordion* section = panel.addSection("Surface");
        QWidget* line = child<QCheckBox>(*section, "accordionCheckBox");
        QVERIFY(!ask(section)->state().expandable && !ask(line)->state().expandable);
        const Installed installed;
        QCOMPARE(ask(line)->role(), QAccessible::CheckBox);
        for (QWidget* widget : {static_cast<QWidget*>(section), line})
            for (const QString& action :
                 {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()})
            {
                QAccessibleInterface* interface = ask(widget);
                const bool open = section->isOpen();
                const QAccessible::State state = interface->state();
                QVERIFY(state.expandable && state.expanded == open && state.collapsed != open);
                QCOMPARE(bool(ask(line)->state().checked), open);
                QVERIFY(interface->actionInterface()->actionNames().contains(action));
                interface->actionInterface()->doAction(action);
                interface->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
                QCOMPARE(section->isOpen(), !open);
            }
        section->setTitle("Coat");
        QCOMPARE(nameOf(section), QString("Coat"));
    }

    void fieldsAnswerAsQtsOwn()
    {
        QLabelEdit editor;
        editor.resize(500, 40);
        showActive(editor);
        auto* field = child<QLineEdit>(editor, "lineEdit");
        field->setFocus();
        const auto steps = [&]
        {
            editor.setValue("some words in a field");
            ask(field)->textInterface()->setCursorPosition(4);
            QVariantList answers = answersOf(field);
            editor.setReadOnly(true);
            ask(field)->textInterface()->setSelection(0, 5, 10);
            answers << answersOf(field);
            editor.setReadOnly(false);
            return answers;
        };
        const QVariantList expected = steps();
        const Installed installed;
        QCOMPARE(steps(), expected);
        const QRect rect = ask(field)->textInterface()->characterRect(7);
        QVERIFY(ask(field)->rect().contains(rect));
        QCOMPARE(ask(field)->textInterface()->offsetAtPoint(rect.topLeft() + QPoint(1, 1)), 7);

        // Text from a tool is the user's: it commits on Return and can be undone.
        QSignalSpy changed(&editor, &QLabelEdit::valueChanged);
        QAccessibleEditableTextInterface* text = ask(field)->editableTextInterface();
        text->replaceText(0, 4, "two");
        text->deleteText(3, 9);
        text->insertText(3, "!");
        QCOMPARE(field->text(), QString("two! in a field"));
        QVERIFY(field->isUndoAvailable());
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(changed.count(), 1);
        for (const char* property : {"readOnly", "enabled"})
        {
            const QVariant before = editor.property(property);
            editor.setProperty(property, !before.toBool());
            text->deleteText(0, 3);
            editor.setProperty(property, before);
        }
        QCOMPARE(field->text(), QString("two! in a field"));
        ask(field)->setText(QAccessible::Value, "new");
        QCOMPARE(field->text(), QString("new"));
    }

    void livesWithWhatLeaves()
    {
        QSliderEdit alive;
        {
            const Installed installed;
            ask(child<QSlider>(alive, "slider"));
            for (const hostsupport::Kind& kind : hostsupport::editorKinds)
            {
                std::unique_ptr<QWidget> editor(kind.create());
                delete editor->findChild<QLabel*>("label");
                QVERIFY(!nameOf(editor.get()).isNull());
                QVector<QAccessible::Id> ids;
                const auto widgets = editor->findChildren<QWidget*>() << editor.get();
                for (QWidget* widget : widgets)
                    ids << QAccessible::uniqueId(ask(widget));
                editor.reset();
                for (const QAccessible::Id id : qAsConst(ids))
                    QVERIFY(!QAccessible::accessibleInterface(id));
            }
        }
        alive.on_reset_clicked(); // nothing follows it any more
        alive.setTitle("Other");
    }
};

// With --tree: shows editors for another process to read, until it is ended. The title follows the name.
int showTree(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const Installed installed;
    Panel panel;
    QAccordion* section = panel.addSection("Surface");
    auto* slider = Panel::addRow<QSliderEdit>(section, "Roughness");
    slider->setMaximum(4);
    Panel::addRow<QColourEdit>(section, "Tint");
    Panel::addRow<QFileEdit>(section, "Mesh");
    auto* name = child<QLineEdit>(*Panel::addRow<QLabelEdit>(section, "Name"), "lineEdit");
    QObject::connect(name, &QLineEdit::textChanged, slider, &QSliderEdit::setTitle);
    panel.panel.show();
    return QApplication::exec();
}

int main(int argc, char** argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--tree") == 0)
        return showTree(argc, argv);
    const QApplication application(argc, argv);
    return runTest<tst_EditorAccessibility>(argc, argv);
}

#include "tst_editoraccessibility.moc"
