#include <Orvek/Host/LoopWatch.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QPointer>

#include <utility>

namespace orvek::host
{
// Owned by the dispatcher, and so by the application; a second application in one program, as in tests, gets its own.
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
    // A loop that is run by hand, or never idle, only emits awake().
    connect(dispatcher, &QAbstractEventDispatcher::awake, this,
            [this]
            {
                if (!std::exchange(m_waits, false))
                    Q_EMIT cameRound();
            });
}
} // namespace orvek::host
