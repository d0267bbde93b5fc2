#pragma once

#include <QtCore/QObject>

// The editors' setters send nothing, and those of a QColourEdit change nothing that is shown. Whoever shows a value in
// another form compares it when the event loop has come round: nobody can see the value change before that. Private.
namespace orvek::host
{
class LoopWatch final : public QObject
{
    Q_OBJECT
public:
    //! One for all widgets; it works while somebody is connected, so connect only what is shown.
    static LoopWatch* instance();

Q_SIGNALS:
    //! The event loop is about to wait, or has handled events without waiting. Never while nothing happens.
    void cameRound();

private:
    LoopWatch();

    bool m_waits = false;
};
} // namespace orvek::host
