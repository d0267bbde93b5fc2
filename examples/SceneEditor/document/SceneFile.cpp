#include <examples/SceneEditor/document/SceneFile.h>

#include <examples/SceneEditor/document/SceneDescription.h>
#include <Orvek/Host/ObjectFile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>

using namespace orvek::host;

namespace sceneeditor
{
namespace
{
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SceneFile)
};

// File names are absolute in the scene, and relative to the file's folder in the file.
void prepare(ObjectFile& file, const QString& fileName)
{
    const QDir folder(QFileInfo(fileName).absolutePath());
    file.setHeader({{QStringLiteral("format"), QStringLiteral("orvek-scene")}, {QStringLiteral("version"), 1}});
    file.setMaximumSize(maximumSceneFileSize);
    file.setFileNames(
        [folder](const QString& inFile)
        {
            // Qt would take a name with a colon for that of a resource.
            const QString name = inFile.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + inFile : inFile;
            return QDir::cleanPath(folder.absoluteFilePath(name));
        },
        [folder](const QString& inScene) { return folder.relativeFilePath(inScene); });
}
} // namespace

std::optional<Scene> readScene(const QString& fileName, QString* error, QStringList* warnings)
{
    // A pipe that nobody writes to would never open.
    if (const QFileInfo info(fileName); info.exists() && !info.isFile() && !info.isDir())
    {
        *error = Text::tr("%1: is not a regular file, expected a scene").arg(QDir::toNativeSeparators(fileName));
        return std::nullopt;
    }
    ObjectFile file(sceneType());
    prepare(file, fileName);
    Scene scene;
    const bool isRead = file.read(fileName, &scene);
    *error = file.errorString();
    if (warnings)
        *warnings = file.warnings();
    return isRead ? std::optional<Scene>(std::move(scene)) : std::nullopt;
}

bool writeScene(const Scene& scene, const QString& fileName, QString* error)
{
    ObjectFile file(sceneType());
    prepare(file, fileName);
    const bool isWritten = file.write(fileName, &scene);
    *error = file.errorString();
    return isWritten;
}
} // namespace sceneeditor
