#include <examples/SceneEditor/document/MeshLoader.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QProcess>
#include <QtCore/QThreadPool>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace sceneeditor
{
namespace
{
constexpr int pollInterval = 20;                 // milliseconds, at most, until a cancelled load ends
constexpr quint32 maximumTextSize = 16 * 1024;   // bytes
constexpr quint32 maximumSummarySize = 64 << 20; // bytes
constexpr double readShare = 0.9;                // of the progress; the rest is for handing the mesh over

struct MeshLoaderText
{
    Q_DECLARE_TR_FUNCTIONS(MeshLoader)
};

// The context of the texts that the reader process sends.
constexpr char context[] = "MeshLoader";

struct Failure
{
    QString text;
};

struct Stopped
{
};

// A build has the program in the same place as an installation.
QString readerProgram()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../" SCENE_EDITOR_LIBEXEC "/orvek-mesh-reader"));
}

// The output of a broken reader must not break this program.
void check(bool sound)
{
    if (!sound)
        throw Failure{MeshLoaderText::tr("cannot be read: it broke the program that reads meshes")};
}

void checkMesh(MeshData& mesh)
{
    mesh.minimum = mesh.maximum = mesh.vertices.front().position;
    for (const MeshData::Vertex& vertex : mesh.vertices)
    {
        for (int i = 0; i < 3; ++i)
        {
            const float number = vertex.position[i];
            check(std::isfinite(number) && std::isfinite(vertex.normal[i]));
            mesh.minimum[i] = qMin(mesh.minimum[i], number);
            mesh.maximum[i] = qMax(mesh.maximum[i], number);
        }
    }
    for (const QVector2D& place : mesh.textureCoordinates)
        check(std::isfinite(place.x()) && std::isfinite(place.y()));
    const size_t count = mesh.vertices.size();
    for (const quint32 index : mesh.indices)
        check(index < count);
    quint64 triangles = 0;
    const int images = int(mesh.images.size());
    for (const MeshMaterial& m : mesh.materials)
    {
        triangles += m.triangleCount;
        check(std::max({m.baseColourImage, m.metallicRoughnessImage, m.emissionImage, m.normalImage}) < images);
    }
    check(triangles <= quint64(mesh.triangleCount()));
}
} // namespace

QString meshFileFilter()
{
    return MeshLoaderText::tr("Meshes (%1);;All files (*)").arg(meshFilePatterns().join(QLatin1Char(' ')));
}

// Shared by the loader and the thread. The loader may be deleted at any time, so the thread uses it only under the
// lock. A thread reads the process's output, as the event loop would be slow while a view is being drawn.
struct MeshLoader::Job : std::enable_shared_from_this<MeshLoader::Job>
{
    QMutex mutex;
    bool abandoned = false;       // guarded by the mutex; the loader may be gone
    MeshLoader* loader = nullptr; // set before the thread starts
    QString fileName;
    int patience = 0;
    std::atomic<bool> stop{false};
    std::unique_ptr<QProcess> process; // from here on for the thread only
    int reported = -1;                 // percent

    template <typename Function>
    void post(Function function)
    {
        const QMutexLocker locker(&mutex);
        if (!abandoned)
            QMetaObject::invokeMethod(loader, function, Qt::QueuedConnection);
    }

    void abandon()
    {
        stop = true;
        const QMutexLocker locker(&mutex);
        abandoned = true;
    }

    void report(double fraction)
    {
        const int percent = static_cast<int>(fraction * 100.0);
        if (percent <= reported)
            return;
        reported = percent;
        post(
            [job = shared_from_this(), owner = loader, fraction]()
            {
                if (owner->m_job == job)
                    Q_EMIT owner->progress(fraction);
            });
    }

    // Waits until the process has written that much.
    void take(void* data, qint64 size)
    {
        QElapsedTimer silence;
        silence.start();
        for (char* at = static_cast<char*>(data); size > 0;)
        {
            const qint64 taken = process->read(at, size);
            if (stop)
                throw Stopped();
            if (taken > 0)
            {
                silence.restart();
                at += taken;
                size -= taken;
            }
            else if (silence.hasExpired(patience))
            {
                throw Failure{
                    MeshLoaderText::tr("cannot be read: nothing came of it for %1 seconds").arg(patience / 1000.0)};
            }
            else if (!process->waitForReadyRead(pollInterval))
            {
                // Its last output has arrived by now.
                check(process->state() != QProcess::NotRunning || process->bytesAvailable() > 0);
            }
        }
    }

    template <typename Item>
    void take(std::vector<Item>& items, quint32 count, quint32 maximum)
    {
        check(count <= maximum);
        items.resize(count);
        take(items.data(), qint64(count) * qint64(sizeof(Item)));
    }

    QByteArray takeBytes(quint32 size, quint32 maximum)
    {
        check(size <= maximum);
        QByteArray data(int(size), Qt::Uninitialized);
        take(data.data(), size);
        return data;
    }

    [[noreturn]] void takeFailure(quint32 size)
    {
        QByteArray source;
        QStringList arguments;
        QDataStream stream(takeBytes(size, maximumTextSize));
        stream >> source >> arguments;
        QString text = QCoreApplication::translate(context, source.constData());
        for (const QString& argument : std::as_const(arguments))
            text = text.arg(argument);
        throw Failure{text};
    }

    MeshPointer takeMesh(quint32 size)
    {
        MeshSummary summary;
        QDataStream stream(takeBytes(size, maximumSummarySize));
        stream >> summary;
        check(summary.vertexCount > 0 && summary.indexCount > 0 && summary.indexCount % 3 == 0);
        check(summary.coordinateCount == 0 || summary.coordinateCount == summary.vertexCount);
        auto mesh = std::make_shared<MeshData>();
        take(mesh->vertices, summary.vertexCount, 3 * maximumTriangleCount);
        take(mesh->indices, summary.indexCount, 3 * maximumTriangleCount);
        take(mesh->textureCoordinates, summary.coordinateCount, 3 * maximumTriangleCount);
        report((1.0 + readShare) / 2.0);
        mesh->materials.assign(summary.materials.cbegin(), summary.materials.cend());
        qint64 bytes = 0;
        for (const QSize& pixels : std::as_const(summary.imageSizes))
        {
            check(QRect(0, 0, maximumTextureSize, maximumTextureSize).contains(QRect(QPoint(0, 0), pixels)));
            QImage image(pixels, QImage::Format_RGBA8888);
            check((bytes += image.sizeInBytes()) <= maximumTextureBytes && !image.isNull());
            take(image.bits(), image.sizeInBytes());
            mesh->images.push_back(image);
        }
        checkMesh(*mesh);
        report(1.0);
        return mesh;
    }

    MeshPointer read()
    {
        report(0.0);
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(readerProgram(), {fileName}, QIODevice::ReadOnly);
        if (!process->waitForStarted(patience))
            throw Failure{MeshLoaderText::tr("cannot be read: %1 does not start (%2)")
                              .arg(QDir::toNativeSeparators(readerProgram()), process->errorString())};
        for (MeshMessage message;;)
        {
            take(&message, sizeof message);
            switch (message.kind)
            {
            case MeshMessage::Progress:
                check(message.size <= 100);
                report(message.size / 100.0 * readShare);
                break;
            case MeshMessage::Failure:
                takeFailure(message.size);
            case MeshMessage::Mesh:
                return takeMesh(message.size);
            default:
                check(false);
            }
        }
    }

    void run()
    {
        MeshPointer mesh;
        QString error;
        process = std::make_unique<QProcess>();
        try
        {
            mesh = read();
        }
        catch (const Stopped&)
        {
        }
        catch (const Failure& failure)
        {
            error = MeshLoaderText::tr("%1: %2").arg(QDir::toNativeSeparators(fileName), failure.text);
        }
        catch (const std::bad_alloc&)
        {
            error = MeshLoaderText::tr("%1: %2").arg(QDir::toNativeSeparators(fileName),
                                                     MeshLoaderText::tr("needs more memory than there is"));
        }
        process->kill();
        process->waitForFinished();
        process.reset();
        post([job = shared_from_this(), owner = loader, mesh, error]() { owner->finish(job, mesh, error); });
    }
};

MeshLoader::MeshLoader(QObject* parent) : QObject(parent) {}

MeshLoader::~MeshLoader()
{
    if (m_job)
        m_job->abandon();
}

void MeshLoader::setPatience(int milliseconds)
{
    m_patience = qMax(1, milliseconds);
}

void MeshLoader::load(const QString& fileName)
{
    cancel();
    m_fileName = fileName;
    m_job = std::make_shared<Job>();
    m_job->loader = this;
    m_job->fileName = fileName;
    m_job->patience = m_patience;
    // The application waits for this pool when it ends, so no thread still runs while libraries are unloaded.
    QThreadPool::globalInstance()->start([job = m_job]() { job->run(); });
}

void MeshLoader::cancel()
{
    if (!m_job)
        return;
    m_job->abandon();
    m_job.reset();
    QMetaObject::invokeMethod(this, &MeshLoader::cancelled, Qt::QueuedConnection);
}

bool MeshLoader::isLoading() const
{
    return m_job != nullptr;
}

QString MeshLoader::fileName() const
{
    return m_fileName;
}

void MeshLoader::finish(const std::shared_ptr<Job>& job, const MeshPointer& mesh, const QString& error)
{
    if (m_job != job)
        return;
    m_job.reset();
    if (mesh)
        Q_EMIT loaded(mesh);
    else
        Q_EMIT failed(error);
}
} // namespace sceneeditor
