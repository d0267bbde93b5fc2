#include <examples/SceneEditor/Languages.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <algorithm>

namespace sceneeditor
{
namespace
{
// Beside the program's folder in a build, otherwise the installed one.
QStringList translationFolders()
{
    const QString program = QCoreApplication::applicationDirPath();
    return {program + QStringLiteral("/../translations"), program + QStringLiteral("/../" ORVEK_SHARE "/translations")};
}
} // namespace

QStringList languages()
{
    const QString prefix = QStringLiteral("sceneeditor_");
    QStringList codes;
    const QStringList folders = translationFolders();
    for (const QString& folder : folders)
    {
        const QStringList files = QDir(folder).entryList({prefix + QStringLiteral("*.qm")}, QDir::Files);
        for (const QString& file : files)
            codes << file.mid(prefix.size()).chopped(3);
    }
    codes.removeDuplicates();
    codes.sort();
    return QStringList(QStringLiteral("en")) + codes;
}

void installLanguage(const QString& code)
{
    // The texts in the sources are English; loading by locale would fall back to the user's next language.
    const QLocale locale = code.isEmpty() ? QLocale() : QLocale(code);
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return;
    const QStringList folders = translationFolders() << QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    for (const QString& name : {QStringLiteral("qtbase"), QStringLiteral("orvekqtwidgets"),
                                QStringLiteral("orvekqthost"), QStringLiteral("sceneeditor")})
    {
        auto* translator = new QTranslator(qApp);
        const auto loads = [&](const QString& folder)
        { return translator->load(locale, name, QStringLiteral("_"), folder); };
        if (std::any_of(folders.cbegin(), folders.cend(), loads))
            QCoreApplication::installTranslator(translator);
        else
            delete translator;
    }
}
} // namespace sceneeditor
