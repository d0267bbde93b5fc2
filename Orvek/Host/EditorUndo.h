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

//! Where the value behind an editor lies if it is not the editor itself: in several objects, for example. Derive
//! from it and hand it to EditorUndo::add(). Steps keep its states in place of the editor's value, and keep the source
//! alive.
class EditorSource
{
public:
    //! Steps may keep it longer than the editor lives.
    virtual ~EditorSource() = default;
    //! What the texts of its steps call it.
    virtual QString title() const = 0;
    //! All that an act on the editor can change, as it is now. Asked around each change, not while nothing happens.
    virtual QVariant state() const = 0;
    //! Returns whether a and b, states of this source, are the same to the last bit.
    virtual bool isSame(const QVariant& a, const QVariant& b) const = 0;
    //! The user has changed the editor: stores what it shows now. May be called twice for one change.
    virtual void take() = 0;
    //! Lets the editor show what is stored.
    virtual void show() = 0;
    //! Stores the state again, and shows it if the editor still exists.
    virtual void restore(const QVariant& state) = 0;
};

//! Puts what the user does to editors and check boxes on an undo stack: one step for one act.
//!
//! A press of the mouse is one step until its release, however often it changes the value: a drag with the left or the
//! middle button, a button that repeats. So are presses of an arrow key that follow each other quickly, and a typed
//! value, although a slider editor emits valueChanged() twice. An act that ends where it began is not a step, nor is a
//! field that was only entered and left: it shows six digits, and the value keeps the others.
//!
//! The value before an act is read when the act begins, so the values that a host sets until then cost nothing.
class ORVEKQTHOST_EXPORT EditorUndo : public QObject
{
    Q_OBJECT
    //! Presses of arrow keys, page keys, Home and End of one editor are one act if less than this many milliseconds lie
    //! between them. Default 1000. With 0 or less each press is a step.
    Q_PROPERTY(int repeatInterval READ repeatInterval WRITE setRepeatInterval)
    //! Whether committing a field that nobody typed into leaves the value as it is. Default true.
    Q_PROPERTY(bool keepsUntouched READ keepsUntouched WRITE setKeepsUntouched)
    //! Whether the window gets the keys for undo and redo, except while a field has typed text that is not committed
    //! yet. Default true; otherwise fields always keep them.
    Q_PROPERTY(bool passesUndoKeys READ passesUndoKeys WRITE setPassesUndoKeys)

public:
    //! The stack is not owned; if it is null or destroyed, nothing is recorded. Steps that outlive this object or their
    //! editor do nothing, unless they have an EditorSource.
    explicit EditorUndo(QUndoStack* stack, QObject* parent = nullptr);
    ~EditorUndo() override;

    //! Follows every editor below root, and every check box that is not a part of a section or an editor, also those
    //! that come later, for as long as they are below it. The root is not owned and may die first; null is ignored.
    //! Several roots can be followed.
    void follow(QWidget* root);
    //! Follows one editor until it is destroyed: any widget with a signal valueChanged() and a property "value" or
    //! "filename", a QColourEdit, or a check box or other checkable button. A value of a type that is not known here is
    //! compared as a QVariant. Anything else is refused with a warning that names it. Returns whether it is followed.
    bool add(QWidget* editor);
    //! The same for an editor that only shows what the source has, which takes the place of one given before. Its steps
    //! work also after the editor is destroyed.
    bool add(QWidget* editor, std::shared_ptr<EditorSource> source);
    //! Leaves the editor alone from now on, also where it is below a root that is followed.
    void remove(QWidget* editor);

    //! Reads all values again. Only needed if the host has set values and the next change comes without any input: from
    //! a slot that code calls, for example.
    void reread();
    //! The context tells what the editors show, an index into a list of objects for example. It is kept with each step.
    //! Default invalid.
    void setContext(const QVariant& context);

    //! Until endAct() all changes of the editor are one act, put on the stack at its end. For a dialog of the host's
    //! that shows its choice at once. Acts of one editor do not nest; editors that are not followed are ignored.
    void beginAct(QWidget* editor);
    void endAct(QWidget* editor);

    int repeatInterval() const;
    void setRepeatInterval(int milliseconds);
    bool keepsUntouched() const;
    void setKeepsUntouched(bool keep);
    bool passesUndoKeys() const;
    void setPassesUndoKeys(bool pass);

Q_SIGNALS:
    //! The editor has a new value, by the user or by undoing and redoing. A host that does not want the value sets
    //! another before it returns, and the step takes that one.
    void edited(QWidget* editor);
    //! A step of the editor is about to be undone or redone: time to let the editors show again what they showed then,
    //! which the context tells. The editor is null if a step of a source has outlived it.
    void aboutToRestore(QWidget* editor, const QVariant& context);

private:
    class Step;
    struct Private;
    friend class EditorFollower;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
