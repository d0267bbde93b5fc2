#pragma once

#include <QtCore/QObject>

// The editors' setters emit nothing, and QColourEdit::setColour() does not even change the fields. A widget that shows
// an editor's value therefore compares it on each turn of the event loop, as nothing is painted before that. Private.
namespace orvek::host
{
class LoopWatch final : public QObject
{
    Q_OBJECT
public:
    //! One for all widgets. Connect only while the widget is shown: each slot runs with every event.
    static LoopWatch* instance();

Q_SIGNALS:
    //! The event loop is about to wait, or has handled events without waiting. Not emitted while nothing happens.
    void cameRound();

private:
    LoopWatch();

    bool m_waits = false;
};
} // namespace orvek::host
