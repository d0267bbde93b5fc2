#include <Orvek/Host/PanelHost.h>

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorAccessibility.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorTree.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>

#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <utility>

namespace orvek::host
{
namespace
{
template <typename Button>
bool has(const QWidget* editor)
{
    return editor->findChild<Button*>(QString(), Qt::FindDirectChildrenOnly);
}
} // namespace

struct PanelHost::Private
{
    Private(QWidget* panel, QUndoStack* undoStack) : tree(EditorTree::of(panel)), search(panel), states(panel)
    {
        EditorAccessibility::install();
        if (undoStack)
        {
            undo = std::make_unique<EditorUndo>(undoStack);
            undo->follow(panel);
        }
        input = std::make_unique<EditorInput>(panel);
        addButtons();
        columns = std::make_unique<ColumnAligner>(panel);
    }
    ~Private()
    {
        qDeleteAll(swatches);
        qDeleteAll(lists);
    }
    void addButtons()
    {
        const QVector<QWidget*> widgets = tree->widgets();
        for (QWidget* widget : widgets)
            addButton(widget);
    }
    void addButton(QWidget* widget)
    {
        if (colourButtons && isColour(widget) && !has<ColourButton>(widget))
            swatches << ColourButton::addTo(widget);
        auto* integer = qobject_cast<QIntSliderEdit*>(widget);
        if (choiceButtons && integer && !integer->enums().isEmpty() && !has<ChoiceButton>(widget))
            lists << ChoiceButton::addTo(integer);
    }

    const std::shared_ptr<EditorTree> tree;
    bool colourButtons = true;
    bool choiceButtons = true;
    QVector<QPointer<ColourButton>> swatches;
    QVector<QPointer<ChoiceButton>> lists;
    PanelSearch search;
    SectionStates states;
    std::unique_ptr<EditorUndo> undo;
    std::unique_ptr<EditorInput> input;
    std::unique_ptr<ColumnAligner> columns;
};

PanelHost::PanelHost(QWidget* panel, QUndoStack* undoStack, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(panel, undoStack))
{
    connect(d->tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->addButton(widget); });
}

PanelHost::~PanelHost() = default;

EditorInput* PanelHost::input() const
{
    return d->input.get();
}

EditorUndo* PanelHost::undo() const
{
    return d->undo.get();
}

PanelSearch* PanelHost::search() const
{
    return &d->search;
}

SectionStates* PanelHost::states() const
{
    return &d->states;
}

ColumnAligner* PanelHost::columns() const
{
    return d->columns.get();
}

bool PanelHost::colourButtons() const
{
    return d->colourButtons;
}

void PanelHost::setColourButtons(bool on)
{
    d->colourButtons = on;
    if (!on)
        qDeleteAll(std::exchange(d->swatches, {}));
    d->addButtons();
}

bool PanelHost::choiceButtons() const
{
    return d->choiceButtons;
}

void PanelHost::setChoiceButtons(bool on)
{
    d->choiceButtons = on;
    if (!on)
        qDeleteAll(std::exchange(d->lists, {}));
    d->addButtons();
}
} // namespace orvek::host
