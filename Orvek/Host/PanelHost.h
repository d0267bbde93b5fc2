#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

class QUndoStack;
class QWidget;

namespace orvek::host
{
class ColumnAligner;
class EditorInput;
class EditorUndo;
class PanelSearch;
class SectionStates;

//! Everything in this library for one panel, in one line.
//!
//! It creates one of each class that serves a panel, and adds a swatch to every colour and a list to every integer
//! editor with names. Each part can be reached, and its switches set, through the operations below. ViewInput is not
//! included: it belongs to a view.
class ORVEKQTHOST_EXPORT PanelHost : public QObject
{
    Q_OBJECT
    //! Whether editors of colours (a QColourEdit, a QVectorEdit with colourEdit) have a ColourButton. Default true.
    //! Buttons that the host added itself stay.
    Q_PROPERTY(bool colourButtons READ colourButtons WRITE setColourButtons)
    //! Whether integer editors with names have a ChoiceButton instead of slider and field. Default true.
    Q_PROPERTY(bool choiceButtons READ choiceButtons WRITE setChoiceButtons)

public:
    //! Serves the panel, usually a QPropertyPanel, and whatever is added to it later. Neither it nor undoStack is
    //! owned, and either may die first. The panel must not be null; if undoStack is, nothing is recorded for undo.
    explicit PanelHost(QWidget* panel, QUndoStack* undoStack = nullptr, QObject* parent = nullptr);
    //! The panel behaves again as without this object.
    ~PanelHost() override;

    //! The parts. They belong to this object; none is null, except undo() if there is no stack.
    EditorInput* input() const;
    EditorUndo* undo() const;
    PanelSearch* search() const;
    SectionStates* states() const;
    ColumnAligner* columns() const;

    bool colourButtons() const;
    void setColourButtons(bool on);
    bool choiceButtons() const;
    void setChoiceButtons(bool on);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
