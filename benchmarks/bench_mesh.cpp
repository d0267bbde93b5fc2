// Loading a sphere of a million triangles from an OBJ without normals: the scene editor's time, including its reader
// process, beside the libraries alone in one process.
#include <benchmarks/spheremesh.h>
#include <examples/SceneEditor/document/MeshLoader.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>

#include <assimp/config.h>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>

#include <fstream>
#include <sys/resource.h>
#include <tiny_obj_loader.h>

namespace
{
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
