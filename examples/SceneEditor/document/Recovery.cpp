#include <examples/SceneEditor/document/Recovery.h>

#include <examples/SceneEditor/document/SceneFile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtCore/QSaveFile>
#include <QtCore/QStandardPaths>
#include <QtCore/QUuid>

namespace sceneeditor
{
namespace
{
const QLatin1String sceneSuffix(".json");
const QLatin1String documentSuffix(".document"); // the document's name
const QLatin1String lockSuffix(".lock");
constexpr int longestName = 16 * 1024; // bytes
constexpr int OrphanDays = 7;

struct RecoveryText
{
    Q_DECLARE_TR_FUNCTIONS(Recovery)
};

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/recovery");
}

// Null while another running process holds the lock.
std::unique_ptr<QLockFile> lockOf(const QString& base)
{
    auto lock = std::make_unique<QLockFile>(base + lockSuffix);
    // A scene may stay open for days.
    lock->setStaleLockTime(0);
    return lock->tryLock(0) ? std::move(lock) : nullptr;
}

// Removes what programs left that ended while storing or clearing a copy: old files that belong to no scene.
void removeOrphans(const QDir& directory)
{
    const QDateTime old = QDateTime::currentDateTime().addDays(-OrphanDays);
    const QFileInfoList files = directory.entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo& file : files)
    {
        const QString base = directory.filePath(file.fileName().section(QLatin1Char('.'), 0, 0));
        const QString suffix = QLatin1Char('.') + file.completeSuffix();
        const bool isOfCopy = suffix == sceneSuffix || suffix == documentSuffix || suffix == lockSuffix;
        if (file.lastModified() > old || (isOfCopy && QFile::exists(base + sceneSuffix)))
            continue;
        if (const std::unique_ptr<QLockFile> lock = lockOf(base))
            QFile::remove(file.filePath());
    }
}
} // namespace

std::unique_ptr<QLockFile> lockOfScene(const QString& fileName)
{
    QDir().mkpath(folder());
    const QByteArray name = QFileInfo(fileName).canonicalFilePath().toUtf8();
    const QString hash = QString::fromLatin1(QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex());
    auto lock = std::make_unique<QLockFile>(folder() + QLatin1Char('/') + hash + lockSuffix);
    lock->setStaleLockTime(0);
    static_cast<void>(lock->tryLock(0)); // whether it is held is for the caller to ask
    return lock;
}

Recovery::Recovery() = default;
Recovery::~Recovery() = default;

bool Recovery::store(const Scene& scene, const QString& document, QString* error)
{
    if (m_base.isEmpty())
    {
        const QString base = folder() + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces);
        QDir().mkpath(folder());
        m_lock = lockOf(base);
        if (!m_lock)
        {
            *error = RecoveryText::tr("%1: cannot be written").arg(QDir::toNativeSeparators(folder()));
            return false;
        }
        m_base = base;
    }
    QSaveFile file(m_base + documentSuffix);
    const QByteArray name = document.toUtf8();
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(name) == name.size() && file.commit())
        return writeScene(scene, copyFile(), error);
    *error = RecoveryText::tr("%1: cannot be written").arg(QDir::toNativeSeparators(file.fileName()));
    return false;
}

void Recovery::clear()
{
    if (m_base.isEmpty())
        return;
    // The scene first: without it, the other files do not count as a copy.
    QFile::remove(copyFile());
    QFile::remove(m_base + documentSuffix);
    m_base.clear();
    m_lock.reset();
}

std::shared_ptr<Recovery> Recovery::takeAbandoned()
{
    const QDir directory(folder());
    removeOrphans(directory);
    const QStringList copies =
        directory.entryList({QLatin1Char('*') + sceneSuffix}, QDir::Files, QDir::Time | QDir::Reversed);
    for (const QString& copy : copies)
    {
        const QString base = directory.filePath(copy.chopped(sceneSuffix.size()));
        if (std::unique_ptr<QLockFile> lock = lockOf(base))
        {
            auto taken = std::make_shared<Recovery>();
            taken->m_lock = std::move(lock);
            taken->m_base = base;
            return taken;
        }
    }
    return nullptr;
}

QString Recovery::copyFile() const
{
    return m_base.isEmpty() ? QString() : m_base + sceneSuffix;
}

QString Recovery::document() const
{
    QFile file(m_base + documentSuffix);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(longestName)) : QString();
}
} // namespace sceneeditor
