#include <examples/SceneEditor/Looks.h>

#include <QtCore/QFile>
#include <QtCore/QMetaEnum>
#include <QtCore/QSettings>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

// A static library's resources are initialised by name, outside of any namespace.
static void initialiseStyles()
{
    Q_INIT_RESOURCE(styles);
}

namespace sceneeditor
{
namespace
{
QString styleFile(const QString& name)
{
    initialiseStyles();
    return QStringLiteral(":/styles/") + name;
}

QString readStyleSheet(const QString& name)
{
    QFile file(styleFile(name + QStringLiteral(".qss")));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Reads a palette from a file in examples/styles. Inactive windows get the colours of the active one.
QPalette readPalette(const QString& fileName)
{
    QPalette palette;
    QSettings file(fileName, QSettings::IniFormat);
    const auto roles = QMetaEnum::fromType<QPalette::ColorRole>();
    const auto read = [&](const QString& group, std::initializer_list<QPalette::ColorGroup> colourGroups)
    {
        file.beginGroup(group);
        const QStringList keys = file.childKeys();
        for (const QString& key : keys)
        {
            for (QPalette::ColorGroup colourGroup : colourGroups)
                palette.setColor(colourGroup, QPalette::ColorRole(roles.keyToValue(key.toLatin1().constData())),
                                 QColor(file.value(key).toString()));
        }
        file.endGroup();
    };
    // Disabled widgets have the active colours unless the file has others for them.
    read(QStringLiteral("Active"), {QPalette::Active, QPalette::Inactive, QPalette::Disabled});
    read(QStringLiteral("Disabled"), {QPalette::Disabled});
    return palette;
}
} // namespace

QStringList lookNames()
{
    return {QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark"), QStringLiteral("highcontrast")};
}

QString lookTitle(const QString& name)
{
    const QHash<QString, QString> titles{
        {QStringLiteral("light"), QCoreApplication::translate("Looks", "&Light")},
        {QStringLiteral("dark"), QCoreApplication::translate("Looks", "&Dark")},
        {QStringLiteral("highcontrast"), QCoreApplication::translate("Looks", "&High contrast")},
    };
    return titles.value(name, QCoreApplication::translate("Looks", "&System"));
}

void applyLook(const QString& name)
{
    // The platform's own style, as found by the first call.
    static const QString systemStyle = QApplication::style()->objectName();

    const QString palette = styleFile(name + QStringLiteral(".ini"));
    const bool own = lookNames().contains(name) && QFile::exists(palette);
    // Set the palette before the style sheet, which looks up its colour roles in it.
    QApplication::setStyle(own ? QStringLiteral("fusion") : systemStyle);
    QApplication::setPalette(own ? readPalette(palette) : QApplication::style()->standardPalette());
    const bool isDark = QApplication::palette().color(QPalette::Midlight).lightnessF() < 0.5;
    const QString chevrons =
        readStyleSheet(QStringLiteral("chevrons"))
            .replace(QLatin1String("TONE"), isDark ? QLatin1String("light") : QLatin1String("dark"));
    qApp->setStyleSheet(readStyleSheet(QStringLiteral("editors")) + (own ? readStyleSheet(name) : QString()) +
                        chevrons);
}
} // namespace sceneeditor
