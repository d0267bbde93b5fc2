#include "hour.h"

#include <Orvek/Base/BaseMouseHandler.h>
#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/EditorAccessibility.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <snippets/snippets.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyleOptionSlider>
#include <QtWidgets/QUndoView>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

#include <memory>

using namespace orvek::host;

namespace
{
QWidget* captioned(const char* caption, QWidget* widget)
{
    auto* both = new QWidget;
    auto* rows = new QVBoxLayout(both);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(4);
    auto* label = new QLabel(QLatin1String(caption));
    label->setStyleSheet(QStringLiteral("font-weight: bold"));
    rows->addWidget(label);
    rows->addWidget(widget, 1);
    return both;
}

QWidget* arranged(QBoxLayout::Direction direction, const QList<QWidget*>& widgets)
{
    auto* all = new QWidget;
    auto* layout = new QBoxLayout(direction, all);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(direction == QBoxLayout::LeftToRight ? 20 : 6);
    for (QWidget* widget : widgets)
        layout->addWidget(widget, 1);
    return all;
}

QWidget* named(QWidget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QSliderEdit* number(const char* title)
{
    auto* edit = new QSliderEdit;
    edit->setObjectName(QLatin1String(title));
    edit->setTitle(QLatin1String(title));
    edit->setMaximum(10.0);
    edit->setLiveUpdate(true);
    edit->setValue(1.0);
    return edit;
}

QWidget* with(QWidget* picture)
{
    return picture->findChild<QWidget*>(QStringLiteral("with"));
}

QWidget* without(QWidget* picture)
{
    return picture->findChild<QWidget*>(QStringLiteral("without"));
}

void key(QWidget* widget, int code, const QString& text = {}, bool repeated = false)
{
    QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, 0, quint32(code), 0, text, repeated);
    QApplication::sendEvent(widget, &press);
}

void mouse(QWidget* widget, QEvent::Type type, const QPoint& position)
{
    const bool move = type == QEvent::MouseMove;
    QMouseEvent event(type, position, widget->mapToGlobal(position), move ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

QLineEdit* field(QWidget* editor)
{
    return editor->findChild<QLineEdit*>(QStringLiteral("lineEdit"));
}

void type(QLineEdit* line, const QString& text)
{
    line->selectAll();
    for (const QChar& letter : text)
        key(line, 0, letter);
}

void search(QWidget* panel, const QString& text)
{
    panel->findChild<QLineEdit*>(QStringLiteral("search"))->setText(text);
}

QAccordion* advancedOf(QWidget* panel, const char* section)
{
    return panel->findChild<QAccordion*>(QLatin1String(section))->findChild<QAccordion*>(QStringLiteral("advanced"));
}

// -- Names ------------------------------------------------------------------------------------------------------------

QString roleOf(const QAccessibleInterface& part)
{
    switch (part.role())
    {
    case QAccessible::EditableText:
        return QStringLiteral("text field");
    case QAccessible::Slider:
        return QStringLiteral("slider");
    case QAccessible::CheckBox:
        return QStringLiteral("check box");
    case QAccessible::PushButton:
        return QStringLiteral("button");
    default:
        return QStringLiteral("other");
    }
}

// One line for each part in tab order, as a screen reader says it.
void listParts(QAccessibleInterface* part, QListWidget* list)
{
    const auto* widget = qobject_cast<QWidget*>(part->object());
    if (widget && widget->focusPolicy() & Qt::TabFocus && part->childCount() == 0)
    {
        const QString name = part->text(QAccessible::Name);
        list->addItem(QStringLiteral("%1 [%2] %3")
                          .arg(name.isEmpty() ? QStringLiteral("(no name)") : name, roleOf(*part),
                               part->text(QAccessible::Value)));
    }
    for (int i = 0; i < part->childCount(); ++i)
        if (QAccessibleInterface* child = part->child(i))
            listParts(child, list);
}

QListWidget* listOfParts()
{
    auto* list = new QListWidget;
    const std::unique_ptr<QWidget> panel(materialPanel());
    listParts(QAccessible::queryAccessibleInterface(panel.get()), list);
    return list;
}

// -- View -------------------------------------------------------------------------------------------------------------

// Lists the calls that an engine's handler receives.
class Recorder final : public QObject, public orvek::base::BaseMouseHandler
{
public:
    Recorder(QListWidget* list, QObject* parent) : QObject(parent), m_list(list) {}
    void MouseDown(int button, int, int) override { add(QStringLiteral("MouseDown: button %1").arg(button)); }
    void MouseUp(int button, int, int) override { add(QStringLiteral("MouseUp: button %1").arg(button)); }
    void MouseDoubleClick(int, int, int) override {}
    void MouseMove(int, int) override {}
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int key, bool pressed, int) override
    {
        add(QStringLiteral("KeyboardInput: %1 %2").arg(QChar(key), pressed ? "pressed" : "released"));
    }

private:
    void add(const QString& call) { m_list->addItem(call); }

    QListWidget* const m_list; // not owned
};

QWidget* view(const char* name)
{
    auto* list = new QListWidget;
    list->setMinimumHeight(140);
    return named(arranged(QBoxLayout::TopToBottom, {renderWidget(), list}), name);
}

void holdAndOpenDialog(QRenderWidget* view)
{
    view->setFocus();
    mouse(view, QEvent::MouseButtonPress, {40, 40});
    key(view, Qt::Key_W, QStringLiteral("w"));
    for (int i = 0; i < 5; ++i)
        key(view, Qt::Key_W, QStringLiteral("w"), true);
    QDialog dialog(view->window());
    dialog.open();
    QApplication::processEvents();
}
} // namespace

QWidget* namesOfParts()
{
    QAccessible::setActive(true);
    QWidget* before = captioned("Without", listOfParts());
    EditorAccessibility::install();
    return arranged(QBoxLayout::LeftToRight, {before, captioned("With an EditorAccessibility", listOfParts())});
}

QWidget* typing()
{
    QWidget* both = arranged(QBoxLayout::TopToBottom, {number("Angle"), number("Height")});
    both->layout()->setContentsMargins(0, 0, 0, 0);
    return arranged(QBoxLayout::TopToBottom,
                    {captioned("Without: Tab has gone through the field", named(shading(), "without")),
                     captioned("With an EditorInput: the same; arithmetic; no value", named(shading(), "with")), both});
}

void prepareTyping(QWidget* picture)
{
    picture->activateWindow();
    QApplication::processEvents();
    picture->setStyleSheet(QStringLiteral("QLineEdit[invalid=\"true\"] { border: 1px dashed palette(text); "
                                          "text-decoration: line-through; }"));
    for (QWidget* editor : {with(picture), picture->findChild<QWidget*>(QStringLiteral("Angle")),
                            picture->findChild<QWidget*>(QStringLiteral("Height"))})
        new EditorInput(editor, picture);
    for (QWidget* editor : {without(picture), with(picture)})
    {
        field(editor)->setFocus();
        key(field(editor), Qt::Key_Tab);
    }
    type(field(picture->findChild<QWidget*>(QStringLiteral("Angle"))), QStringLiteral("2pi/3"));
    type(field(picture->findChild<QWidget*>(QStringLiteral("Height"))), QStringLiteral("1..5"));
}

QWidget* acts()
{
    auto* steps = new QUndoView(new QUndoStack);
    steps->stack()->setParent(steps);
    QWidget* editors = arranged(QBoxLayout::TopToBottom, {number("Angle"), number("Height")});
    static_cast<QBoxLayout*>(editors->layout())->addStretch(10);
    return arranged(QBoxLayout::LeftToRight,
                    {captioned("A drag, 20 arrow keys, a number", named(editors, "with")),
                     captioned("What is announced", new QListWidget), captioned("With an EditorUndo", steps)});
}

void prepareActs(QWidget* picture)
{
    const auto editors = with(picture)->findChildren<QSliderEdit*>();
    auto* announced = picture->findChildren<QListWidget*>().value(0);
    for (QSliderEdit* editor : editors)
        QObject::connect(editor, &QSliderEdit::valueChanged, announced,
                         [announced, editor]
                         {
                             const int count = announced->count() + 1;
                             announced->addItem(QStringLiteral("%1. %2 changed").arg(count).arg(editor->title()));
                             announced->scrollToBottom();
                         });
    auto* undo = new EditorUndo(picture->findChild<QUndoStack*>(), picture);
    undo->follow(with(picture));
    QApplication::processEvents();
    auto* slider = editors[0]->findChild<QSlider*>(QStringLiteral("slider"));
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.maximum = slider->maximum();
    option.sliderPosition = slider->value();
    const QPoint handle =
        slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider).center();
    mouse(slider, QEvent::MouseButtonPress, handle);
    for (int i = 1; i <= 20; ++i)
        mouse(slider, QEvent::MouseMove, handle + QPoint(i, 0));
    mouse(slider, QEvent::MouseButtonRelease, handle + QPoint(20, 0));
    for (int i = 0; i < 20; ++i)
        key(editors[1]->findChild<QSlider*>(QStringLiteral("slider")), Qt::Key_Right);
    type(field(editors[0]), QStringLiteral("2.5"));
    key(field(editors[0]), Qt::Key_Return);
}

QWidget* twoPanels(const char* hosted)
{
    return arranged(QBoxLayout::LeftToRight, {captioned("Without", named(materialPanel(), "without")),
                                              captioned(hosted, named(materialPanel(), "with"))});
}

void prepareSearch(QWidget* picture)
{
    for (QWidget* panel : {without(picture), with(picture)})
        advancedOf(panel, "surface")->setOpen(false);
    new PanelSearch(with(picture), picture);
    for (QWidget* panel : {without(picture), with(picture)})
        search(panel, QStringLiteral("gloss"));
}

void prepareStates(QWidget* picture)
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("sections.ini")), QSettings::IniFormat);
    for (QWidget* panel : {without(picture), with(picture)})
        advancedOf(panel, "surface")->setOpen(false);
    saveSections(without(picture), settings);
    SectionStates states(with(picture));
    states.save(settings);
    advancedOf(with(picture), "surface")->setOpen(true); // at the next start
    restoreSections(without(picture), settings);
    states.restore(settings);
}

void prepareColumns(QWidget* picture)
{
    new ColumnAligner(with(picture), picture);
}

void preparePanels(QWidget* picture)
{
    new PanelHost(with(picture), nullptr, picture);
}

QWidget* colours()
{
    QWidget* vector = baseColour();
    ColourButton::addTo(vector);
    QWidget* colour = colourEdit();
    ColourButton::addTo(colour);
    QWidget* both = arranged(QBoxLayout::TopToBottom, {vector, colour});
    both->layout()->setContentsMargins(0, 0, 0, 0);
    return arranged(QBoxLayout::TopToBottom,
                    {captioned("Without", baseColour()), captioned("With a ColourButton", both)});
}

QWidget* choices()
{
    auto* bare = qobject_cast<QIntSliderEdit*>(shading());
    auto* hosted = qobject_cast<QIntSliderEdit*>(named(shading(), "with"));
    for (QIntSliderEdit* editor : {bare, hosted})
        editor->setValue(0); // so the open list extends down from its row
    auto* picture = arranged(QBoxLayout::TopToBottom,
                             {captioned("Without", bare), captioned("With a ChoiceButton", hosted), new QWidget});
    picture->layout()->itemAt(2)->widget()->setFixedHeight(60);
    return picture;
}

void prepareChoices(QWidget* picture)
{
    ChoiceButton* button = ChoiceButton::addTo(qobject_cast<QIntSliderEdit*>(with(picture)));
    QApplication::processEvents();
    button->showPopup();
}

QWidget* views()
{
    return arranged(QBoxLayout::LeftToRight,
                    {captioned("Without", view("without")), captioned("With a ViewInput", view("with"))});
}

void prepareViews(QWidget* picture)
{
    picture->activateWindow();
    QApplication::processEvents();
    for (QWidget* half : {without(picture), with(picture)})
    {
        auto* view = half->findChild<QRenderWidget*>();
        auto* handler = new Recorder(half->findChild<QListWidget*>(), picture);
        if (half == with(picture))
            new ViewInput(view, handler, view);
        else
            view->SetHandleMouseInterface(handler);
        holdAndOpenDialog(view);
    }
}
