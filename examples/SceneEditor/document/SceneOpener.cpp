#include <examples/SceneEditor/document/SceneOpener.h>

#include <examples/SceneEditor/document/EnvironmentImage.h>
#include <examples/SceneEditor/document/SceneFile.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace sceneeditor
{
SceneOpener::SceneOpener(QObject* parent) : QObject(parent) {}

SceneOpener::~SceneOpener() = default;

void SceneOpener::readScene(const QString& fileName)
{
    OpenedScene opened;
    opened.fileName = QFileInfo(fileName).absoluteFilePath();
    read(opened.fileName, opened);
}

void SceneOpener::readScene(const std::shared_ptr<Recovery>& copy)
{
    OpenedScene opened;
    opened.copy = copy;
    opened.fileName = copy->document();
    read(copy->copyFile(), opened);
}

void SceneOpener::readMeshes(const QStringList& fileNames, const QVariant& purpose)
{
    cancel();
    m_isScene = false;
    m_purpose = purpose;
    m_opened = {};
    QStringList absolute;
    for (const QString& fileName : fileNames)
        absolute << QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
    start(absolute);
}

void SceneOpener::cancel()
{
    if (!m_isBusy)
        return;
    finish();
    Q_EMIT cancelled();
}

void SceneOpener::read(const QString& sceneFile, OpenedScene opened)
{
    cancel();
    m_isScene = true;
    m_sceneFile = sceneFile;
    m_meshFiles.clear();
    m_warnings.clear();
    QString error;
    std::optional<Scene> scene = sceneeditor::readScene(sceneFile, &error, &m_warnings);
    if (!scene)
        return fail(error);
    opened.scene = std::move(*scene);
    const QString& image = opened.scene.view.environmentImage;
    if (!image.isEmpty())
    {
        opened.environment = readEnvironmentImage(image, &error);
        if (opened.environment.isNull())
            return fail(tr("%1: view.environmentImage: %2").arg(QDir::toNativeSeparators(sceneFile), error));
    }
    QStringList meshFiles;
    for (const Object& object : opened.scene.objects)
        if (!object.meshFile.isEmpty() && !meshFiles.contains(object.meshFile))
            meshFiles << object.meshFile;
    m_opened = std::move(opened);
    start(meshFiles);
}

void SceneOpener::start(const QStringList& meshFiles)
{
    m_isBusy = true;
    m_meshFiles = meshFiles;
    m_meshCount = meshFiles.size();
    m_loader = new MeshLoader(this);
    connect(m_loader, &MeshLoader::progress, this, &SceneOpener::report);
    connect(m_loader, &MeshLoader::loaded, this,
            [this](const MeshPointer& mesh)
            {
                m_opened.meshes.insert(m_meshFiles.takeFirst(), mesh);
                next();
            });
    connect(m_loader, &MeshLoader::failed, this,
            [this](const QString& error)
            {
                // The place in the scene that names the unreadable file.
                const std::vector<Object>& objects = m_opened.scene.objects;
                for (size_t i = 0; i < objects.size(); ++i)
                    if (objects[i].meshFile == m_meshFiles.first())
                        return fail(tr("%1: objects[%2].mesh: %3")
                                        .arg(QDir::toNativeSeparators(m_sceneFile), QString::number(i), error));
                fail(error);
            });
    next();
}

void SceneOpener::next()
{
    if (!m_meshFiles.isEmpty())
    {
        report(0.0);
        m_loader->load(m_meshFiles.first());
        return;
    }
    finish();
    if (m_isScene)
        Q_EMIT sceneRead(m_opened, m_warnings);
    else
        Q_EMIT meshesRead(m_opened.meshes, m_purpose);
}

// The fraction is that of the mesh being read.
void SceneOpener::report(double fraction)
{
    const int done = m_meshCount - m_meshFiles.size();
    Q_EMIT progressed(tr("Reading %1").arg(QFileInfo(m_meshFiles.first()).fileName()), (done + fraction) / m_meshCount);
}

void SceneOpener::finish()
{
    m_isBusy = false;
    if (!m_loader)
        return;
    // Not deleted at once: this may be a slot of its signal.
    m_loader->disconnect(this);
    m_loader->cancel();
    m_loader->deleteLater();
    m_loader = nullptr;
}

void SceneOpener::fail(const QString& text)
{
    finish();
    Q_EMIT failed(text);
}
} // namespace sceneeditor
