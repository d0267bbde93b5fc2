// Reads one mesh file, named by its argument, and writes a MeshMessage to the standard output. A separate program, as
// files from anywhere can crash the libraries that read them.
#include <examples/SceneEditor/meshreader/MeshBuilder.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <clocale>
#include <cstdio>
#include <new>
#include <stdexcept>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <qt_windows.h>
#else
#include <sys/resource.h>
#endif

using namespace sceneeditor;

#ifdef ORVEK_SANITIZE
// The sanitizers reserve terabytes of addresses, so they must limit the memory in use. The name is theirs.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "hard_rss_limit_mb=3072:max_allocation_size_mb=3072";
}
#endif

namespace
{
constexpr quint64 maximumMemory = quint64(3) << 30; // bytes
constexpr unsigned int maximumSeconds = 600;        // of processor time, in case nothing ends it

// macOS does not enforce the memory limit: only the time is limited there.
void limitResources()
{
#ifdef Q_OS_WIN
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    limits.ProcessMemoryLimit = SIZE_T(maximumMemory);
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    AssignProcessToJobObject(job, GetCurrentProcess());
    _setmode(_fileno(stdout), _O_BINARY);
#else
    const auto limit = [](int resource, rlim_t most)
    {
        const rlimit limits{most, most};
        setrlimit(resource, &limits);
    };
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, maximumSeconds);
#ifndef ORVEK_SANITIZE
    limit(RLIMIT_AS, maximumMemory);
#endif
#endif
}

class Output
{
public:
    Output() { m_file.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered); }

    // If it fails, nothing is reading any more, and nothing is left to do.
    void write(const void* data, size_t size)
    {
        if (m_file.write(static_cast<const char*>(data), qint64(size)) != qint64(size))
            std::exit(EXIT_FAILURE);
    }

    template <typename Item>
    void write(const std::vector<Item>& items)
    {
        write(items.data(), items.size() * sizeof(Item));
    }

    template <typename... Parts>
    void write(MeshMessage::Kind kind, const Parts&... parts)
    {
        QByteArray data;
        QDataStream stream(&data, QIODevice::WriteOnly);
        (stream << ... << parts);
        const MeshMessage message{kind, quint32(data.size())};
        write(&message, sizeof message);
        write(data.constData(), size_t(data.size()));
    }

    void writeProgress(double fraction)
    {
        const MeshMessage message{MeshMessage::Progress, quint32(fraction * 100.0)};
        if (message.size > m_progress)
            write(&message, sizeof message);
        m_progress = qMax(m_progress, message.size);
    }

    void write(const MeshData& mesh)
    {
        MeshSummary summary;
        summary.vertexCount = quint32(mesh.vertices.size());
        summary.indexCount = quint32(mesh.indices.size());
        summary.coordinateCount = quint32(mesh.textureCoordinates.size());
        for (const MeshMaterial& material : mesh.materials)
            summary.materials << material;
        for (const QImage& image : mesh.images)
            summary.imageSizes << image.size();
        write(MeshMessage::Mesh, summary);
        write(mesh.vertices);
        write(mesh.indices);
        write(mesh.textureCoordinates);
        for (const QImage& image : mesh.images)
            write(image.constBits(), size_t(image.sizeInBytes()));
    }

private:
    QFile m_file;
    quint32 m_progress = 0;
};

MeshData read(const QFileInfo& file, const MeshProgress& progress)
{
    if (!file.exists())
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "does not exist, expected a mesh file"), {}};
    if (!file.isFile())
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "is not a regular file, expected a mesh file"), {}};
    if (!meshFilePatterns().contains(QStringLiteral("*.") + file.suffix(), Qt::CaseInsensitive))
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "is of an unknown kind, expected %1"),
                          {meshFilePatterns().join(QStringLiteral(", "))}};
    MeshBuilder builder;
    const auto reader = file.suffix().compare(QLatin1String("obj"), Qt::CaseInsensitive) == 0 ? readObj : readOther;
    reader(file, builder, progress);
    return builder.finish();
}

MeshFailure describe(const std::exception& exception)
{
    if (dynamic_cast<const std::bad_alloc*>(&exception) || dynamic_cast<const std::length_error*>(&exception))
        return {QT_TRANSLATE_NOOP("MeshLoader", "asks for more memory than a mesh may take, %1 GiB"),
                {QString::number(maximumMemory >> 30)}};
    return {QT_TRANSLATE_NOOP("MeshLoader", "cannot be read: %1"), {QString::fromLocal8Bit(exception.what())}};
}
} // namespace

int main(int argc, char* argv[])
{
    limitResources();
    const QCoreApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // Qt has set the user's, which may have a decimal comma
    Output output;
    MeshFailure failure{};
    try
    {
        const QFileInfo file(QCoreApplication::arguments().value(1));
        output.write(read(file, [&output](double fraction) { output.writeProgress(fraction); }));
        return EXIT_SUCCESS;
    }
    catch (const MeshFailure& thrown)
    {
        failure = thrown;
    }
    catch (const std::exception& exception)
    {
        failure = describe(exception);
    }
    output.write(MeshMessage::Failure, QByteArray(failure.text), failure.arguments);
    return EXIT_SUCCESS;
}
