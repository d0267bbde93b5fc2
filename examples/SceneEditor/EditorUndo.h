#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <map>

class QAbstractSlider;
class QUndoStack;
class QWidget;

namespace sceneeditor
{
//! Puts what the user does to the library's editors, and to check boxes, on an undo stack: one step for one act. It
//! needs nothing of the editors but their signals, properties and children's names, so it can be copied to any host.
//!
//! A drag is one step, however often it changes the value. A typed value is one step, although a slider editor
//! announces it twice. What ends where it began is none, and neither is a field that was only entered and left: it
//! shows six digits, and the value keeps the others.
class EditorUndo final : public QObject
{
    Q_OBJECT
public:
    //! The stack is not owned and has to outlive this object.
    explicit EditorUndo(QUndoStack* stack, QObject* parent = nullptr);

    //! Follows the editor until it is destroyed: one of the library's, or a check box.
    void add(QWidget* editor);
    //! Call it whenever the host has set editors itself; the next act starts from what they have now.
    void reread();
    //! Tells what the editors show, an index into a list of objects for example. Kept with each step.
    void setContext(const QVariant& context);

Q_SIGNALS:
    //! The editor has a new value, by the user or by undoing and redoing. A host that does not want the value sets
    //! another before it returns, and the step takes that one.
    void edited(QWidget* editor);
    //! A step is about to be undone or redone: time to let the editors show again what they showed then.
    void aboutToRestore(QWidget* editor, const QVariant& context);

protected:
    //! Leaves the undo keys to the window while a field holds nothing that was typed and not taken over yet.
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onStartedEdit();
    void onValueChanged();

private:
    class Step;
    //! Numbers or a text, compared exactly; a QVariant compares numbers with tolerance.
    struct Value
    {
        QVector<double> numbers;
        QString text;
    };
    struct State
    {
        QAbstractSlider* slider = nullptr; // the editor's; null if it has none
        Value value;
        QStringList texts; // of the fields, when the value was read
    };

    static bool equal(const Value& a, const Value& b);
    static Value read(const QWidget* editor);
    static void write(QWidget* editor, const Value& value);
    static bool onlyConfirmed(const QWidget* editor, const State& before, const Value& after);
    void restore(QWidget* editor, const QVariant& context, const Value& value);
    void remember(QWidget* editor);

    QUndoStack* const m_stack;
    std::map<QWidget*, State> m_states;
    QVariant m_context;
    QWidget* m_dragged = nullptr; // whose handle the user holds
    int m_act = 0;                // changes within one act are one step
};
} // namespace sceneeditor
