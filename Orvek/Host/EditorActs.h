#pragma once

#include <QtCore/QObject>

class QWidget;

// How the classes of this library that change an editor's value for the user say so, whoever follows the editor. All
// are to be emitted around the editor's valueChanged(). Private.
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
    //! From here on until ended() all changes are one act of the user: a dialog is open, for example.
    void begun(QWidget* editor);
    void ended(QWidget* editor);
};
} // namespace orvek::host
