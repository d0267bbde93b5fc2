#include <examples/SceneEditor/document/EnvironmentImage.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>

namespace sceneeditor
{
namespace
{
constexpr qint64 MaximumPixels = 34'000'000; // 8192 x 4096 and a little more

struct EnvironmentImageText
{
    Q_DECLARE_TR_FUNCTIONS(EnvironmentImage)
};
} // namespace

QImage readEnvironmentImage(const QString& fileName, QString* error)
{
    const QString name = QDir::toNativeSeparators(fileName);
    // A pipe or a device could be read for ever.
    if (const QFileInfo info(fileName); info.exists() && !info.isFile())
    {
        *error =
            EnvironmentImageText::tr("%1: is not a regular file, expected a picture of the surroundings").arg(name);
        return {};
    }
    QImageReader reader(fileName);
    // A picture of a few bytes can claim to be of any size.
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > MaximumPixels)
    {
        *error = EnvironmentImageText::tr("%1: expected a picture of at most %2 million pixels, found %3 × %4")
                     .arg(name)
                     .arg(MaximumPixels / 1000000)
                     .arg(size.width())
                     .arg(size.height());
        return {};
    }
    QImage image = reader.read();
    if (image.isNull())
        *error =
            EnvironmentImageText::tr("%1: expected a picture of the surroundings: %2").arg(name, reader.errorString());
    return image;
}
} // namespace sceneeditor
