#include <examples/SceneEditor/document/MeshLoader.h>

#include <examples/SceneEditor/document/MeshCheck.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMutex>
#include <QtCore/QRunnable>
#include <QtCore/QThreadPool>

#include <assimp/config.h>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/ProgressHandler.hpp>
#include <assimp/scene.h>

#include <atomic>
#include <cmath>
#include <exception>

namespace sceneeditor
{
namespace
{
// Facets that meet at a sharper angle keep their edge when normals have to be made up.
constexpr float creaseAngle = 40.0f;

// Shares of the progress; reading text files takes most of the time.
constexpr double readShare = 0.7;
constexpr double processShare = 0.9;

const char* const extensions[] = {"obj", "ply", "stl", "gltf", "glb"};

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MeshLoader)
};

struct Stopped : std::exception
{
    const char* what() const noexcept override { return "stopped"; }
};

struct Failure
{
    QString text;
};

// Owned by the importer.
class Progress final : public Assimp::ProgressHandler
{
public:
    explicit Progress(const MeshProgress& progress) : m_progress(progress) {}

    bool Update(float /*percentage*/) override { return !m_stopped; }

    void UpdateFileRead(int step, int steps) override { report(step, steps, 0.0, readShare); }
    void UpdatePostProcess(int step, int steps) override { report(step, steps, readShare, processShare); }

    void report(double fraction)
    {
        fraction = qBound(m_last, fraction, 1.0);
        m_last = fraction;
        m_stopped = m_stopped || (m_progress && !m_progress(fraction));
        // Most importers look at no result; an exception reaches the importer's own failure path from everywhere.
        if (m_stopped)
            throw Stopped();
    }

    bool stopped() const { return m_stopped; }

private:
    void report(int step, int steps, double from, double to)
    {
        if (steps > 0)
            report(from + (to - from) * qBound(0.0, double(step) / steps, 1.0));
    }

    const MeshProgress& m_progress;
    double m_last = 0.0;
    bool m_stopped = false;
};

bool isFinite(const aiVector3D& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Before any processing step works on the data: those trust the indices.
void checkMeshes(const aiScene& scene)
{
    quint64 triangles = 0;
    for (unsigned int m = 0; m < scene.mNumMeshes; ++m)
    {
        const aiMesh& mesh = *scene.mMeshes[m];
        for (unsigned int v = 0; v < mesh.mNumVertices; ++v)
        {
            if (!isFinite(mesh.mVertices[v]))
                throw Failure{Text::tr("vertex %1 is not finite, expected three finite numbers").arg(v)};
        }
        for (unsigned int f = 0; f < mesh.mNumFaces; ++f)
        {
            const aiFace& face = mesh.mFaces[f];
            for (unsigned int i = 0; i < face.mNumIndices; ++i)
            {
                if (face.mIndices[i] >= mesh.mNumVertices)
                    throw Failure{Text::tr("face %1 uses vertex %2, expected one below %3")
                                      .arg(f)
                                      .arg(face.mIndices[i])
                                      .arg(mesh.mNumVertices)};
            }
            triangles += face.mNumIndices > 2 ? face.mNumIndices - 2 : 0;
        }
    }
    if (triangles == 0)
        throw Failure{Text::tr("has no faces, expected at least one triangle")};
    if (triangles > maximumTriangleCount)
        throw Failure{Text::tr("has %1 %2, expected at most %3")
                          .arg(triangles)
                          .arg(Text::tr("triangles"))
                          .arg(maximumTriangleCount)};
}

QVector3D toVector(const aiVector3D& v)
{
    return {v.x, v.y, v.z};
}

std::shared_ptr<MeshData> convert(const aiScene& scene)
{
    auto data = std::make_shared<MeshData>();
    size_t vertexCount = 0;
    for (unsigned int m = 0; m < scene.mNumMeshes; ++m)
        vertexCount += scene.mMeshes[m]->mNumVertices;
    data->vertices.reserve(vertexCount);

    for (unsigned int m = 0; m < scene.mNumMeshes; ++m)
    {
        const aiMesh& mesh = *scene.mMeshes[m];
        if ((mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE) == 0)
            continue;
        const quint32 base = static_cast<quint32>(data->vertices.size());
        for (unsigned int v = 0; v < mesh.mNumVertices; ++v)
        {
            // Degenerate triangles have no normal of their own; any will do.
            QVector3D normal = mesh.HasNormals() ? toVector(mesh.mNormals[v]).normalized() : QVector3D();
            if (!(normal.lengthSquared() > 0.5f))
                normal = QVector3D(0.0f, 1.0f, 0.0f);
            data->vertices.push_back({toVector(mesh.mVertices[v]), normal});
        }
        for (unsigned int f = 0; f < mesh.mNumFaces; ++f)
        {
            if (mesh.mFaces[f].mNumIndices == 3)
                for (unsigned int i = 0; i < 3; ++i)
                    data->indices.push_back(base + mesh.mFaces[f].mIndices[i]);
        }
    }
    if (data->indices.empty())
        throw Failure{Text::tr("has no faces, expected at least one triangle")};

    data->minimum = data->maximum = data->vertices.front().position;
    for (const MeshData::Vertex& vertex : data->vertices)
    {
        for (int i = 0; i < 3; ++i)
        {
            // Node transforms of large numbers can overflow even where the file's own numbers are finite.
            if (!std::isfinite(vertex.position[i]))
                throw Failure{Text::tr("a transformed vertex is not finite")};
            data->minimum[i] = qMin(data->minimum[i], vertex.position[i]);
            data->maximum[i] = qMax(data->maximum[i], vertex.position[i]);
        }
    }
    return data;
}

void checkFile(const QFileInfo& info)
{
    if (!info.exists())
        throw Failure{Text::tr("does not exist, expected a mesh file")};
    if (info.isDir())
        throw Failure{Text::tr("is a directory, expected a mesh file")};
    if (!info.isFile())
        throw Failure{Text::tr("is not a regular file, expected a mesh file")};
    bool known = false;
    for (const char* extension : extensions)
        known = known || info.suffix().compare(QLatin1String(extension), Qt::CaseInsensitive) == 0;
    if (!known)
        throw Failure{
            Text::tr("is of an unknown kind, expected %1").arg(meshFilePatterns().join(QStringLiteral(", ")))};
    if (info.size() > maximumMeshFileSize)
        throw Failure{Text::tr("is too large, expected at most %1 MiB").arg(maximumMeshFileSize / 1024 / 1024)};
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{Text::tr("cannot be read: %1").arg(file.errorString())};
    const QString fault = meshFileFault(file.readAll(), info.suffix().toLower());
    if (!fault.isEmpty())
        throw Failure{fault};
}

std::shared_ptr<MeshData> import(const QFileInfo& info, const MeshProgress& progress)
{
    checkFile(info);
    Assimp::Importer importer;
    Progress* const handler = new Progress(progress);
    importer.SetProgressHandler(handler);
    handler->report(0.0);

    const auto refused = [&]()
    {
        if (handler->stopped())
            throw Stopped();
        throw Failure{Text::tr("is not a mesh that can be read, expected %1 (%2)")
                          .arg(info.suffix().toUpper(), QString::fromUtf8(importer.GetErrorString()).simplified())};
    };
    const QByteArray path = info.absoluteFilePath().toUtf8();
    const aiScene* scene = importer.ReadFile(path.constData(), 0);
    if (scene == nullptr)
        refused();
    checkMeshes(*scene);

    // Facet files give each triangle one normal, which would show every facet of a curved surface.
    int dropped = aiComponent_TEXCOORDS | aiComponent_COLORS | aiComponent_TANGENTS_AND_BITANGENTS |
                  aiComponent_BONEWEIGHTS | aiComponent_ANIMATIONS | aiComponent_TEXTURES | aiComponent_LIGHTS |
                  aiComponent_CAMERAS;
    if (info.suffix().compare(QLatin1String("stl"), Qt::CaseInsensitive) == 0)
        dropped |= aiComponent_NORMALS;
    importer.SetPropertyInteger(AI_CONFIG_PP_RVC_FLAGS, dropped);
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, creaseAngle);
    scene = importer.ApplyPostProcessing(aiProcess_RemoveComponent | aiProcess_PreTransformVertices |
                                         aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_GenSmoothNormals |
                                         aiProcess_JoinIdenticalVertices);
    if (scene == nullptr)
        refused();
    handler->report(processShare);
    std::shared_ptr<MeshData> data = convert(*scene);
    handler->report(1.0);
    return data;
}
} // namespace

QStringList meshFilePatterns()
{
    QStringList patterns;
    for (const char* extension : extensions)
        patterns << QStringLiteral("*.") + QLatin1String(extension);
    return patterns;
}

MeshPointer loadMesh(const QString& fileName, QString* error, const MeshProgress& progress)
{
    QString message;
    try
    {
        return import(QFileInfo(fileName), progress);
    }
    catch (const Stopped&)
    {
        if (error != nullptr)
            error->clear();
        return nullptr;
    }
    catch (const Failure& failure)
    {
        message = failure.text;
    }
    catch (const std::bad_alloc&)
    {
        message = Text::tr("needs more memory than there is");
    }
    catch (const std::exception& exception)
    {
        message = Text::tr("cannot be read: %1").arg(QString::fromLocal8Bit(exception.what()));
    }
    if (error != nullptr)
        *error = Text::tr("%1: %2").arg(QDir::toNativeSeparators(fileName), message);
    return nullptr;
}

// What the loader and the thread share. The loader can go away at any time, so the thread reaches it only under the
// lock.
struct MeshLoader::Job : std::enable_shared_from_this<MeshLoader::Job>
{
    QMutex mutex;
    bool abandoned = false;       // guarded by the mutex; the loader may be gone
    MeshLoader* loader = nullptr; // set before the thread starts
    QString fileName;
    std::atomic<bool> stop{false};

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

    void run()
    {
        int reported = -1;
        const auto report = [&](double fraction)
        {
            const int percent = static_cast<int>(fraction * 100.0);
            if (!stop && percent > reported)
            {
                reported = percent;
                post(
                    [job = shared_from_this(), owner = loader, fraction]()
                    {
                        if (owner->m_job == job)
                            Q_EMIT owner->progress(fraction);
                    });
            }
            return !stop;
        };
        QString error;
        const MeshPointer mesh = loadMesh(fileName, &error, report);
        post([job = shared_from_this(), owner = loader, mesh, error]() { owner->finish(job, mesh, error); });
    }
};

MeshLoader::MeshLoader(QObject* parent) : QObject(parent) {}

MeshLoader::~MeshLoader()
{
    if (m_job)
        m_job->abandon();
}

void MeshLoader::load(const QString& fileName)
{
    cancel();
    m_fileName = fileName;
    m_job = std::make_shared<Job>();
    m_job->loader = this;
    m_job->fileName = fileName;
    // The application waits for this pool at its end, so no thread is left over with half of the libraries unloaded.
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
