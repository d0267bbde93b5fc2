#include <Orvek/Host/LoopWatch.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QPointer>

#include <utility>

namespace orvek::host
{
// The dispatcher is the application's; a second application in one program, as in tests, has another.
LoopWatch* LoopWatch::instance()
{
    static QPointer<LoopWatch> watch;
    if (!watch)
        watch = new LoopWatch;
    return watch;
}

LoopWatch::LoopWatch() : QObject(QAbstractEventDispatcher::instance())
{
    const auto* dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
            [this]
            {
                m_waits = true;
                Q_EMIT cameRound();
            });
    // A loop that is run by hand or has no time to wait only wakes up.
    connect(dispatcher, &QAbstractEventDispatcher::awake, this,
            [this]
            {
                if (!std::exchange(m_waits, false))
                    Q_EMIT cameRound();
            });
}
} // namespace orvek::host
