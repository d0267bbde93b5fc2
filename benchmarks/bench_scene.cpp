// The scene editor with software OpenGL: its start beside that of an empty main window with the same view and engine,
// what a large mesh adds to its memory beside the mesh's data, and a frame while the camera orbits, drawn as a draft,
// beside a sharp one.
#include <benchmarks/spheremesh.h>
#include <examples/SceneEditor/document/SceneFile.h>
#include <examples/SceneEditor/document/SceneOpener.h>
#include <examples/SceneEditor/engine/GpuResources.h>
#include <examples/SceneEditor/engine/SceneRenderer.h>
#include <examples/SceneEditor/Looks.h>
#include <examples/SceneEditor/MainWindow.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QOpenGLFramebufferObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QOffscreenSurface>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <sys/resource.h>
#include <utility>

using namespace sceneeditor;

namespace
{
constexpr QSize ViewSize(1400, 900); // pixels
constexpr int Patience = 120'000;    // milliseconds
const QString Studio = QStringLiteral(SCENE_EDITOR_ASSETS "/studio.json");

// Seconds so far.
double processorTime(__rusage_who who)
{
    rusage usage{};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1.0e6;
}

// Ends the program once the view rests: a slow frame comes in several parts. Waiting takes no processor time.
void quitWhenDrawn(QRenderWidget* view)
{
    auto* rest = new QTimer(view);
    rest->setSingleShot(true);
    rest->setInterval(300);
    QObject::connect(view, &QRenderWidget::viewUpdated, rest, QOverload<>::of(&QTimer::start));
    QObject::connect(rest, &QTimer::timeout, qApp, &QCoreApplication::quit);
}

// The peak memory of this process in bytes. Not from getrusage(), which includes the program before exec().
qint64 peakMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray status = file.readAll();
    return status.mid(status.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toLongLong() * 1024;
}

// Prints the width and height of its view, the bytes of its meshes' vertices and indices, and its peak memory.
int startEditor(const QString& scene)
{
    applyLook(QString());
    MainWindow window;
    auto* view = window.findChild<QRenderWidget*>();
    QObject::connect(&window, &MainWindow::sceneOpened, qApp, [view] { quitWhenDrawn(view); });
    window.openScene(scene);
    window.show();
    const int result = QApplication::exec();
    qint64 data = 0;
    for (const MeshPointer& mesh : window.document().meshes())
        data += qint64(mesh->vertices.size() * sizeof(MeshData::Vertex) + mesh->indices.size() * sizeof(quint32));
    std::fprintf(stderr, "\n%d %d %lld %lld", view->width(), view->height(), data, peakMemory());
    return result;
}

int startWindow(const QSize& viewSize)
{
    QMainWindow window;
    auto* widget = new QRenderWidget;
    widget->setFixedSize(viewSize);
    window.setCentralWidget(widget);
    SurfaceManager surfaces;
    const auto view = std::make_unique<SceneView>(&surfaces, widget, nullptr);
    SceneOpener opener;
    QObject::connect(&opener, &SceneOpener::sceneRead, qApp,
                     [&](const OpenedScene& opened)
                     {
                         view->setMeshes(opened.meshes);
                         view->setEnvironmentImage(opened.environment);
                         view->setScene(opened.scene);
                         view->cameraController().setCamera(opened.scene.camera);
                         quitWhenDrawn(widget);
                     });
    opener.readScene(Studio);
    window.show();
    const int result = QApplication::exec();
    delete widget;
    return result;
}

// Runs this program; returns what it prints last.
QStringList run(const QStringList& arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(Patience) || process.exitCode() != 0)
        qFatal("the window was not drawn");
    const QString printed = QString::fromLatin1(process.readAllStandardError());
    return printed.section(QLatin1Char('\n'), -1).split(QLatin1Char(' '));
}

void start(benchmark::State& state, bool isEditor)
{
    const QStringList editor{QStringLiteral("editor"), Studio};
    static const QStringList viewSize = run(editor).mid(0, 2);
    const QStringList arguments = isEditor ? editor : QStringList(QStringLiteral("window")) + viewSize;
    for ([[maybe_unused]] auto _ : state)
    {
        const double before = processorTime(RUSAGE_CHILDREN);
        run(arguments);
        state.SetIterationTime(processorTime(RUSAGE_CHILDREN) - before);
    }
    state.SetItemsProcessed(state.iterations());
}

// What a mesh of a million triangles adds to the editor's peak, or the data of the mesh alone.
void memory(benchmark::State& state, bool isEditor)
{
    static const auto addedAndData = []
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("scene.json"));
        const auto peak = [&](const Scene& scene)
        {
            QString error;
            if (!writeScene(scene, file, &error))
                qFatal("%s", qPrintable(error));
            return run({QStringLiteral("editor"), file});
        };
        Scene scene;
        const qint64 without = peak(scene).value(3).toLongLong();
        scene.objects.resize(1);
        scene.objects[0].meshFile = sphere();
        const QStringList with = peak(scene);
        return std::make_pair(with.value(3).toLongLong() - without, with.value(2).toLongLong());
    }();
    for ([[maybe_unused]] auto _ : state)
        state.SetIterationTime(1.0);
    state.SetItemsProcessed(state.iterations());
    state.counters["heap"] = double(isEditor ? addedAndData.first : addedAndData.second);
}

// Around the studio scene, without showing it.
void orbit(benchmark::State& state, bool isMoving)
{
    OpenedScene opened;
    SceneOpener opener;
    QEventLoop loop;
    QObject::connect(&opener, &SceneOpener::sceneRead, &loop,
                     [&](const OpenedScene& read)
                     {
                         opened = read;
                         loop.quit();
                     });
    opener.readScene(Studio);
    loop.exec();

    QSurfaceFormat format;
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setVersion(3, 3);
    QOpenGLContext context;
    context.setFormat(format);
    QOffscreenSurface surface;
    surface.setFormat(format);
    surface.create();
    QString error;
    if (!context.create() || !context.makeCurrent(&surface))
        return state.SkipWithError("no OpenGL");
    const std::unique_ptr<GpuResources> gpu = GpuResources::create(&error);
    if (!gpu)
        return state.SkipWithError(qPrintable(error));
    SceneRenderer renderer;
    renderer.setScene(opened.scene);
    renderer.setMeshes(opened.meshes);
    renderer.setEnvironmentImage(opened.environment);
    QOpenGLFramebufferObject frame(ViewSize);
    Camera camera = opened.scene.camera;
    const auto draw = [&]
    {
        camera.azimuth = camera.azimuth < 180.0 ? camera.azimuth + 3.0 : -180.0;
        renderer.setCamera(camera);
        if (renderer.draw(*gpu, ViewSize, frame.handle(), isMoving) == SceneRenderer::Drawn::Failed)
            state.SkipWithError(qPrintable(renderer.errorText()));
        gpu->gl()->glFinish();
    };
    // The first ones upload meshes and compile shaders.
    draw();
    draw();
    for ([[maybe_unused]] auto _ : state)
    {
        const double before = processorTime(RUSAGE_SELF);
        draw();
        state.SetIterationTime(processorTime(RUSAGE_SELF) - before);
    }
    state.SetItemsProcessed(state.iterations());
    renderer.releaseGraphics(*gpu);
}

BENCHMARK_CAPTURE(start, editor, true)->Name("startEditor")->UseManualTime()->Iterations(2);
BENCHMARK_CAPTURE(start, window, false)->Name("startWindow")->UseManualTime()->Iterations(2);
BENCHMARK_CAPTURE(memory, editor, true)->Name("memoryEditor")->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(memory, data, false)->Name("memoryData")->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(orbit, moving, true)->Name("orbitMoving")->UseManualTime();
BENCHMARK_CAPTURE(orbit, resting, false)->Name("orbitResting")->UseManualTime();
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == QLatin1String("editor"))
        return startEditor(arguments.value(2));
    if (arguments.value(1) == QLatin1String("window"))
        return startWindow({arguments.value(2).toInt(), arguments.value(3).toInt()});
    // Not the settings of the person who measures.
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
