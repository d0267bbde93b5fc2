#pragma once

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
};
} // namespace orvek::host
