#pragma once

#include <Orvek/Host/Expression.h>

#include <QtCore/QObject>

class QWidget;

// Classes of this library that change an editor's value for the user emit these signals around its valueChanged(), so
// that every EditorUndo knows where the act begins and ends. Private.
namespace orvek::host
{
class EditorActs final : public QObject
{
    Q_OBJECT
public:
    //! One for all widgets.
    static EditorActs* instance();

Q_SIGNALS:
    //! A single change is about to be made; the editor still has its old value.
    void aboutToChange(QWidget* editor);
    //! Until ended() all changes are one act of the user: a dialog is open, for example.
    void begun(QWidget* editor);
    void ended(QWidget* editor);
    //! The user has typed an edit of the value that is there into one of the editor's fields, counted by component.
    //! Whoever knows more values behind the editor than the one in it changes them and sets isDone.
    void relativeEdit(QWidget* editor, int component, const orvek::host::Relative& edit, bool* isDone);
};
} // namespace orvek::host
