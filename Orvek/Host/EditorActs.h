#pragma once

#include <Orvek/Host/Expression.h>

#include <QtCore/QObject>

class QWidget;

// Classes of this library that change an editor's value for the user emit these signals around its valueChanged(), so
// every EditorUndo knows where the act begins and ends. Private.
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
    //! All changes until ended() are one act of the user, for example while a dialog is open.
    void begun(QWidget* editor);
    void ended(QWidget* editor);
    //! The user typed an edit relative to the current value into one of the editor's fields, counted by component. A
    //! receiver that has several values behind the editor changes each of them and sets isDone.
    void relativeEdit(QWidget* editor, int component, const orvek::host::Relative& edit, bool* isDone);
};
} // namespace orvek::host
