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

//! Everything of this library for one panel, in one line.
//!
//! It makes one of each class that serves a panel, all on the same panel, and puts a swatch beside every colour and a
//! list into every integer editor with names. Each part can be reached, and its switches set, through the operations
//! below. ViewInput is not among them: it belongs to a view.
class ORVEKQTHOST_EXPORT PanelHost : public QObject
{
    Q_OBJECT
    //! Whether editors of colours (a QColourEdit, a QVectorEdit with colourEdit) have a ColourButton. Default true. One
    //! that the host has added itself stays.
    Q_PROPERTY(bool colourButtons READ colourButtons WRITE setColourButtons)
    //! Whether integer editors with names have a ChoiceButton in place of slider and field. Default true.
    Q_PROPERTY(bool choiceButtons READ choiceButtons WRITE setChoiceButtons)

public:
    //! Serves the panel, a QPropertyPanel as a rule, and what comes into it later. Neither it nor undoStack is owned,
    //! and either may die first. The panel must not be null; if undoStack is, nothing is recorded for undo.
    explicit PanelHost(QWidget* panel, QUndoStack* undoStack = nullptr, QObject* parent = nullptr);
    //! The panel behaves again as without it.
    ~PanelHost() override;

    //! The parts. They belong to this object; none is null, except undo() without a stack.
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
