// Random use: user events, property writes and host actions on trees of all the widgets, with checks after each step.
// Each world has a number, which determines all of its steps; a step does the same whichever others are left out. So
// when a world, in a process of its own, breaks, the steps that do not matter can be found and removed.
//
//     soak [--seed WORLD] [--seconds LIMIT] [--worlds COUNT] [--steps IN_EACH_WORLD]
//                                                              random use; shrinks what breaks
//     soak --world WORLD [--steps COUNT] [--only 3,17,40]              shows the steps of one world

#include "World.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{
struct Options
{
    quint64 seed = 1;
    int seconds = 20;
    int worlds = 0; // unlimited
    int steps = 300;
};

// The position of a worker; outlives its crash.
class Progress
{
public:
    explicit Progress(const QString& path) : m_file(path)
    {
        if (!path.isEmpty() && !m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
            qFatal("cannot write %s", qPrintable(path));
    }
    void write(quint64 world, int step)
    {
        if (!m_file.isOpen())
            return;
        m_file.seek(0);
        m_file.write(QByteArray::number(world).rightJustified(20) + QByteArray::number(step).rightJustified(12));
    }
    static QPair<quint64, int> read(const QString& path)
    {
        QFile file(path);
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return {text.left(20).trimmed().toULongLong(), text.mid(20).trimmed().toInt()};
    }

private:
    QFile m_file;
};

QVector<int> firstSteps(int count)
{
    QVector<int> steps(count);
    for (int i = 0; i < count; ++i)
        steps[i] = i;
    return steps;
}

QString joined(const QVector<int>& steps)
{
    QStringList texts;
    for (const int step : steps)
        texts << QString::number(step);
    return texts.join(QLatin1Char(','));
}

// Collects the worker's output; returns 0 only if its world survived.
int run(const QStringList& arguments, int seconds, QByteArray* words)
{
    QProcess worker;
    // Leaks at exit belong to no step.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (arguments.contains(QStringLiteral("--only")))
        environment.insert(QStringLiteral("ASAN_OPTIONS"),
                           environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":detect_leaks=0"));
    worker.setProcessEnvironment(environment);
    worker.setProcessChannelMode(QProcess::MergedChannels);
    worker.start(QCoreApplication::applicationFilePath(), arguments);
    if (!worker.waitForFinished(seconds * 1000))
    {
        worker.kill();
        worker.waitForFinished();
        *words = worker.readAll() + "did not come to an end\n";
        return 1;
    }
    *words = worker.readAll();
    return worker.exitStatus() == QProcess::NormalExit ? worker.exitCode() : 1;
}

// Removes ever smaller runs of steps as long as the world breaks without them.
QVector<int> shrunk(quint64 world, QVector<int> steps, int secondsForOne)
{
    QElapsedTimer time;
    time.start();
    QByteArray words;
    const auto breaks = [&](const QVector<int>& some)
    {
        return run({QStringLiteral("--world"), QString::number(world), QStringLiteral("--only"), joined(some)},
                   secondsForOne, &words) != 0;
    };
    for (int size = qMax(1, steps.size() / 2);; size = qMax(1, size / 2))
    {
        bool fewer = false;
        // From the end, as the last step is the one that breaks.
        for (int end = steps.size() - 1; end > 0 && time.elapsed() < 180000; end -= size)
        {
            QVector<int> rest = steps;
            const int begin = qMax(0, end - size);
            rest.remove(begin, end - begin);
            if (breaks(rest))
            {
                steps = rest;
                fewer = true;
            }
        }
        if ((size == 1 && !fewer) || time.elapsed() >= 180000)
            return steps;
    }
}

int supervise(const Options& options)
{
    const QTemporaryDir directory;
    const QString progress = directory.filePath(QStringLiteral("progress"));
    QByteArray words;
    const int code = run({QStringLiteral("--worker"), QStringLiteral("--seed"), QString::number(options.seed),
                          QStringLiteral("--seconds"), QString::number(options.seconds), QStringLiteral("--worlds"),
                          QString::number(options.worlds), QStringLiteral("--steps"), QString::number(options.steps),
                          QStringLiteral("--progress"), progress},
                         options.seconds + 120, &words);
    std::fprintf(stderr, "%s", words.constData());
    if (code == 0 || words.contains("LeakSanitizer"))
        return code;
    const auto [world, step] = Progress::read(progress);
    std::fprintf(stderr, "world %llu broke at step %d; looking for the steps that matter\n", world, step);
    const QVector<int> steps = shrunk(world, firstSteps(step + 1), 60);
    const bool again = run({QStringLiteral("--world"), QString::number(world), QStringLiteral("--only"), joined(steps)},
                           60, &words) != 0;
    std::fprintf(stderr, "%s%s\n--world %llu --only %s\n", words.constData(),
                 again ? "" : "Alone the world stays whole; it needs those before it.", world,
                 qPrintable(joined(steps)));
    return 1;
}

int work(const Options& options, Progress& progress)
{
    QElapsedTimer time;
    time.start();
    quint64 worlds = 0;
    while (time.elapsed() < options.seconds * 1000LL &&
           (options.worlds <= 0 || worlds < static_cast<quint64>(options.worlds)))
    {
        const quint64 world = options.seed + worlds++;
        if (!live(world, firstSteps(options.steps), false, [&](int step) { progress.write(world, step); }))
            return 1;
    }
    std::fprintf(stderr, "worlds %llu to %llu of %d steps each stayed whole, in %lld s\n", options.seed,
                 options.seed + worlds - 1, options.steps, time.elapsed() / 1000);
    std::fprintf(stderr, "%lld user acts, %lld property writes, %lld host acts\n", counts.user, counts.writes,
                 counts.host);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("seed"), QStringLiteral("Number of the first world."), QStringLiteral("world"),
          QStringLiteral("1")},
         {QStringLiteral("seconds"), QStringLiteral("No world is begun later."), QStringLiteral("limit"),
          QStringLiteral("20")},
         {QStringLiteral("worlds"), QStringLiteral("Runs no more worlds than these."), QStringLiteral("count"),
          QStringLiteral("0")},
         {QStringLiteral("steps"), QStringLiteral("Steps in each world."), QStringLiteral("count"),
          QStringLiteral("300")},
         {QStringLiteral("world"), QStringLiteral("Runs one world and shows its steps."), QStringLiteral("number")},
         {QStringLiteral("only"), QStringLiteral("Leaves out all other steps."), QStringLiteral("numbers")},
         {QStringLiteral("worker"), QStringLiteral("Used by the program itself.")},
         {QStringLiteral("progress"), QStringLiteral("Used by the program itself."), QStringLiteral("file")}});
    parser.addHelpOption();
    parser.process(application);
    Options options;
    options.seed = parser.value(QStringLiteral("seed")).toULongLong();
    options.seconds = parser.value(QStringLiteral("seconds")).toInt();
    options.worlds = parser.value(QStringLiteral("worlds")).toInt();
    options.steps = parser.value(QStringLiteral("steps")).toInt();
    const bool single = parser.isSet(QStringLiteral("world"));
    if (!single && !parser.isSet(QStringLiteral("worker")))
        return supervise(options);

    // The property panel writes the names of its children there.
    if (!std::freopen("/dev/null", "w", stdout))
        return 2;
    watchWarnings();
    Progress progress(parser.value(QStringLiteral("progress")));
    if (!single)
        return work(options, progress);
    QVector<int> steps = firstSteps(options.steps);
    if (parser.isSet(QStringLiteral("only")))
    {
        steps.clear();
        const QStringList numbers = parser.value(QStringLiteral("only")).split(QLatin1Char(','));
        for (const QString& number : numbers)
            steps << number.toInt();
    }
    const quint64 world = parser.value(QStringLiteral("world")).toULongLong();
    return live(world, steps, true, [&](int step) { progress.write(world, step); }) ? 0 : 1;
}
