// Any bytes that can be read as a scene can be saved, and the saved scene reads back as the same.
#include <examples/SceneEditor/document/SceneFile.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <cstdint>

using namespace sceneeditor;

namespace
{
QString pathOf(const char* name)
{
    // In memory if possible: each input writes and synchronises a file.
    static const QTemporaryDir directory(QFile::exists(QStringLiteral("/dev/shm"))
                                             ? QStringLiteral("/dev/shm/fuzz-XXXXXX")
                                             : QStringLiteral("fuzz-XXXXXX"));
    return directory.filePath(QLatin1String(name));
}

void require(bool condition, const QString& text)
{
    if (!condition)
        qFatal("%s", qPrintable(text));
}
} // namespace

// The name is given by libFuzzer.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QString read = pathOf("read.json");
    static const QString written = pathOf("written.json");
    QFile file(read);
    require(file.open(QIODevice::WriteOnly) && file.write(reinterpret_cast<const char*>(data), qint64(size)) >= 0,
            file.errorString());
    file.close();

    QString error;
    QStringList warnings;
    const std::optional<Scene> scene = readScene(read, &error, &warnings);
    require(scene.has_value() == error.isEmpty(), QStringLiteral("an error or a scene"));
    require(!error.contains(QLatin1Char('\n')), error);
    if (!scene)
        return 0;
    require(writeScene(*scene, written, &error), error);
    warnings.clear();
    const std::optional<Scene> again = readScene(written, &error, &warnings);
    require(again.has_value() && warnings.isEmpty(), error);
    require(*again == *scene, QStringLiteral("another scene"));
    return 0;
}
