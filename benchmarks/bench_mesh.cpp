// Loading a sphere of a million triangles from an OBJ without normals: the scene editor's time, including its reader
// process, beside the libraries alone in one process.
#include <examples/SceneEditor/document/MeshLoader.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTemporaryFile>

#include <assimp/config.h>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>

#include <cmath>
#include <fstream>
#include <memory>
#include <sys/resource.h>
#include <tiny_obj_loader.h>

namespace
{
QString sphere()
{
    static const std::unique_ptr<QTemporaryFile> file = []
    {
        constexpr int side = 708;
        auto out = std::make_unique<QTemporaryFile>(QStringLiteral("sphere-XXXXXX.obj"));
        if (!out->open())
            qFatal("no temporary file");
        for (int row = 0; row <= side; ++row)
        {
            const double elevation = M_PI * row / side;
            for (int column = 0; column < side; ++column)
            {
                const double azimuth = 2.0 * M_PI * column / side;
                out->write(QByteArray("v ") + QByteArray::number(std::sin(elevation) * std::cos(azimuth), 'f') + ' ' +
                           QByteArray::number(std::cos(elevation), 'f') + ' ' +
                           QByteArray::number(std::sin(elevation) * std::sin(azimuth), 'f') + '\n');
            }
        }
        const auto face = [&out](int a, int b, int c)
        {
            out->write("f " + QByteArray::number(a + 1) + ' ' + QByteArray::number(b + 1) + ' ' +
                       QByteArray::number(c + 1) + '\n');
        };
        for (int i = 0; i < side * side; ++i)
        {
            const int next = i % side + 1 < side ? i + 1 : i + 1 - side;
            face(i, next, next + side);
            face(i, next + side, i + side);
        }
        out->flush();
        return out;
    }();
    return file->fileName();
}

// Processor time so far in seconds, including that of processes that have ended.
double processorTime()
{
    double seconds = 0.0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN})
    {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            seconds += double(time.tv_sec) + double(time.tv_usec) / 1.0e6;
    }
    return seconds;
}

void measure(benchmark::State& state, void (*read)(const QString& fileName))
{
    const QString fileName = sphere();
    for ([[maybe_unused]] auto _ : state)
    {
        const double start = processorTime();
        read(fileName);
        state.SetIterationTime(processorTime() - start);
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}

void ours(const QString& fileName)
{
    sceneeditor::MeshLoader loader;
    QEventLoop loop;
    QObject::connect(&loader, &sceneeditor::MeshLoader::loaded, &loop, &QEventLoop::quit);
    QObject::connect(&loader, &sceneeditor::MeshLoader::failed, &loop,
                     [](const QString& error) { qFatal("%s", qPrintable(error)); });
    loader.load(fileName);
    loop.exec();
}

void tinyobjloader(const QString& fileName)
{
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::string messages;
    std::ifstream stream(fileName.toStdString());
    tinyobj::LoadObj(&attributes, &shapes, nullptr, &messages, &messages, &stream, nullptr, true, false);
    benchmark::DoNotOptimize(shapes.data());
}

void assimp(const QString& fileName)
{
    Assimp::Importer importer;
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, 40.0f);
    benchmark::DoNotOptimize(
        importer.ReadFile(fileName.toStdString(), aiProcess_JoinIdenticalVertices | aiProcess_GenSmoothNormals));
}
} // namespace

BENCHMARK_CAPTURE(measure, ours, ours)->Name("meshOurs")->UseManualTime();
BENCHMARK_CAPTURE(measure, tinyobjloader, tinyobjloader)->Name("meshFloor")->UseManualTime();
BENCHMARK_CAPTURE(measure, assimp, assimp)->Name("meshLiteral")->UseManualTime();

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
