#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <memory>

class QUndoStack;
class QWidget;

namespace orvek::host
{
class EditorFollower;

//! The values behind an editor, if they are not the editor's own: those of several objects, for example. Derive from it
//! and pass it to EditorUndo::add(). Steps store its states instead of the editor's value, and keep the source alive.
class EditorSource
{
public:
    //! Steps may keep it alive longer than the editor.
    virtual ~EditorSource() = default;
    //! Its name in the texts of undo steps.
    virtual QString title() const = 0;
    //! Everything that an act on the editor can change, as it is now. Read around each change only.
    virtual QVariant state() const = 0;
    //! Returns whether a and b, states of this source, are the same to the last bit.
    virtual bool isSame(const QVariant& a, const QVariant& b) const = 0;
    //! The user has changed the editor: stores what it shows now. May be called twice for one change.
    virtual void take() = 0;
    //! Makes the editor show what is stored.
    virtual void show() = 0;
    //! Stores the state again, and shows it if the editor still exists.
    virtual void restore(const QVariant& state) = 0;
};

//! Puts what the user does to editors and check boxes on an undo stack: one step for each act.
//!
//! A press of the mouse until its release is one step, however often it changes the value: a drag with the left or the
//! middle button, or a button that repeats. So are presses of an arrow key in quick succession, and a typed value,
//! although a slider editor emits valueChanged() twice. An act that ends where it began is not a step. Nor is entering
//! and leaving a field: the field shows six digits, and the value keeps the others.
//!
//! The value before an act is read when the act begins, so values that the host sets before that cost nothing.
class ORVEKQTHOST_EXPORT EditorUndo : public QObject
{
    Q_OBJECT
    //! Presses of arrow keys, page keys, Home and End in one editor are one act if less than this many milliseconds
    //! pass between them. Default 1000. With 0 or less, each press is a step.
    Q_PROPERTY(int repeatInterval READ repeatInterval WRITE setRepeatInterval)
    //! Whether committing a field that nobody typed into leaves the value as it is. Default true.
    Q_PROPERTY(bool keepsUntouched READ keepsUntouched WRITE setKeepsUntouched)
    //! Whether the undo and redo keys go to the window, except while a field has typed text that is not committed yet.
    //! Default true; otherwise fields always keep them.
    Q_PROPERTY(bool passesUndoKeys READ passesUndoKeys WRITE setPassesUndoKeys)

public:
    //! The stack is not owned; if it is null or destroyed, nothing is recorded. Steps that outlive this object or their
    //! editor do nothing, unless they have an EditorSource.
    explicit EditorUndo(QUndoStack* stack, QObject* parent = nullptr);
    ~EditorUndo() override;

    //! Follows every editor below root, and every check box that is not part of a section or an editor, including later
    //! ones, as long as they are below it. The root is not owned and may die first; null is ignored. Several roots can
    //! be followed.
    void follow(QWidget* root);
    //! Follows one editor until it is destroyed: any widget with a signal valueChanged() and a property "value" or
    //! "filename", a QColourEdit, or a check box or other checkable button. A value of an unknown type is compared as a
    //! QVariant. Anything else is refused with a warning that names it. Returns whether the editor is followed.
    bool add(QWidget* editor);
    //! The same for an editor that only shows the values of the source; replaces an earlier source. Its steps work even
    //! after the editor is destroyed.
    bool add(QWidget* editor, std::shared_ptr<EditorSource> source);
    //! Ignores the editor from now on, even if it is below a followed root.
    void remove(QWidget* editor);

    //! Reads all values again. Only needed if the host has set values and the next change comes without any input, for
    //! example from a slot that code calls.
    void reread();
    //! The context describes what the editors show, for example by an index into a list of objects. It is stored with
    //! each step. Default invalid.
    void setContext(const QVariant& context);

    //! All changes of the editor until endAct() are one act, put on the stack at its end. For host dialogs that show
    //! each choice at once. Acts of one editor do not nest; editors that are not followed are ignored.
    void beginAct(QWidget* editor);
    void endAct(QWidget* editor);

    int repeatInterval() const;
    void setRepeatInterval(int milliseconds);
    bool keepsUntouched() const;
    void setKeepsUntouched(bool keep);
    bool passesUndoKeys() const;
    void setPassesUndoKeys(bool pass);

Q_SIGNALS:
    //! The editor has a new value, from the user or from undo and redo. A host that rejects the value sets another
    //! before it returns, and the step stores that one.
    void edited(QWidget* editor);
    //! A step of the editor is about to be undone or redone: make the editors show again what the context describes.
    //! The editor is null if a step of a source has outlived it.
    void aboutToRestore(QWidget* editor, const QVariant& context);

private:
    class Step;
    struct Private;
    friend class EditorFollower;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
