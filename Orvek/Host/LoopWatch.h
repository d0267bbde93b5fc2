#pragma once

#include <QtCore/QObject>

// The editors' setters emit nothing, and setColour() of a QColourEdit does not even change its fields. A widget that
// shows an editor's value compares it each time the event loop comes round, as nothing is painted before that. Private.
namespace orvek::host
{
class LoopWatch final : public QObject
{
    Q_OBJECT
public:
    //! One for all widgets. Connect only while the widget is shown: each slot runs with every event.
    static LoopWatch* instance();

Q_SIGNALS:
    //! The event loop is about to wait, or has handled events without waiting. Never while nothing happens.
    void cameRound();

private:
    LoopWatch();

    bool m_waits = false;
};
} // namespace orvek::host
