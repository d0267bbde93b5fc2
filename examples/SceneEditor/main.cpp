#include <examples/SceneEditor/Languages.h>
#include <examples/SceneEditor/Looks.h>
#include <examples/SceneEditor/MainWindow.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace
{
constexpr int startError = 1;
constexpr int usageError = 2;
constexpr int screenshotTimeout = 5000; // milliseconds, for platforms that never show a window

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SceneEditor)
};

// The shipped scene. A build has the folder in the same place as an installation.
QString studioScene()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../" ORVEK_SHARE "/SceneEditor/studio.json"));
}

int fail(const QString& text)
{
    std::fprintf(stderr, "SceneEditor: %s\n", qPrintable(text));
    return usageError;
}

// Without a display, Qt advises reinstalling the program and then ends it as if it had crashed.
void reportStart(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type != QtFatalMsg)
    {
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
        return;
    }
    std::fprintf(stderr, "SceneEditor: there is no display to show a window on; expected one that DISPLAY or "
                         "WAYLAND_DISPLAY names, or another platform of Qt in QT_QPA_PLATFORM\n");
    std::_Exit(startError);
}

// On Wayland, Qt 5 never exposes a native window inside another, so the view would stay black.
void preferX11()
{
    if (qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

// Qt 6 always does.
void scaleByTheScreen()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps); // otherwise icons are magnified
#endif
}

QSize parseSize(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^([0-9]{2,5})x([0-9]{2,5})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    return match.hasMatch() ? QSize(match.captured(1).toInt(), match.captured(2).toInt()) : QSize();
}
} // namespace

int main(int argc, char* argv[])
{
    // If the view's siblings became native, every editor would get a window of its own.
    QApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    scaleByTheScreen();
    qInstallMessageHandler(reportStart);
#ifdef Q_OS_LINUX
    preferX11();
#endif
    QApplication app(argc, argv);
    qInstallMessageHandler(nullptr);
    QApplication::setOrganizationName(QStringLiteral("Orvek"));
    QApplication::setApplicationName(QStringLiteral("SceneEditor"));
    QApplication::setApplicationVersion(QStringLiteral(SCENE_EDITOR_VERSION));
    // Both exist only when the program is installed.
    QGuiApplication::setDesktopFileName(QStringLiteral(SCENE_EDITOR_ID));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral(SCENE_EDITOR_ID)));

    // Before the first text, as those of the options are translated too.
    sceneeditor::installLanguage(QSettings().value(QStringLiteral("language")).toString());

    QCommandLineParser parser;
    parser.setApplicationDescription(Text::tr("Edits the objects, material, light and camera of a small 3D scene."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        Text::tr("Save a picture of the window as a PNG file and exit."),
                                        Text::tr("file"));
    const QCommandLineOption size(QStringLiteral("size"), Text::tr("Size of the window in pixels."), Text::tr("WxH"));
    const QCommandLineOption search(QStringLiteral("search"), Text::tr("Show only the properties with this text."),
                                    Text::tr("text"));
    const QCommandLineOption look(
        QStringLiteral("look"),
        Text::tr("Look of this run: %1.").arg(sceneeditor::lookNames().join(QStringLiteral(", "))), Text::tr("name"));
    parser.addOptions({screenshot, size, search, look});
    parser.addPositionalArgument(QStringLiteral("scene"), Text::tr("Scene to open instead of the shipped one."),
                                 QStringLiteral("[scene.json]"));
    parser.process(app);
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        std::fprintf(stderr, "SceneEditor: %s\n",
                     qPrintable(Text::tr("on Wayland the view stays black; expected an X11 server, also Xwayland")));
    if (parser.positionalArguments().size() > 1)
        return fail(Text::tr("expected one scene, found %1").arg(parser.positionalArguments().size()));
    const QSize wantedSize = parseSize(parser.value(size));
    if (parser.isSet(size) && wantedSize.isEmpty())
        return fail(Text::tr("--size: expected WIDTHxHEIGHT such as 1400x900, found %1").arg(parser.value(size)));

    if (parser.isSet(look) && !sceneeditor::lookNames().contains(parser.value(look)))
        return fail(Text::tr("--look: expected one of %1, found %2")
                        .arg(sceneeditor::lookNames().join(QStringLiteral(", ")), parser.value(look)));

    sceneeditor::applyLook(parser.isSet(look) ? parser.value(look)
                                              : QSettings().value(QStringLiteral("look")).toString());
    sceneeditor::MainWindow window;
    if (parser.isSet(size))
    {
        // The restored geometry may be that of a maximised window.
        window.setWindowState(Qt::WindowNoState);
        window.resize(wantedSize);
    }
    if (parser.isSet(search))
        window.setSearchText(parser.value(search));

    const QString pictureFile = parser.value(screenshot);
    bool isTaken = false;
    const auto takePicture = [&]
    {
        // Grabbing the window draws the view, which calls this again before the program has ended.
        if (std::exchange(isTaken, true))
            return;
        if (window.picture().save(pictureFile, "PNG"))
            QApplication::exit(0);
        else
            QApplication::exit(fail(Text::tr("%1: cannot be written").arg(QDir::toNativeSeparators(pictureFile))));
    };
    const QString scene = parser.positionalArguments().value(0, studioScene());
    const bool hasScreenshot = parser.isSet(screenshot);
    bool isFailed = false;
    // A visible window shows the error; otherwise the program prints it and ends.
    QObject::connect(&window, &sceneeditor::MainWindow::loadFailed, &window,
                     [&](const QString& text)
                     {
                         isFailed = true;
                         if (hasScreenshot || !window.isVisible())
                             QApplication::exit(fail(text));
                     });
    if (hasScreenshot)
        QObject::connect(&window, &sceneeditor::MainWindow::sceneOpened, &window,
                         [&]
                         {
                             QObject::connect(&window, &sceneeditor::MainWindow::viewDrawn, &window, takePicture,
                                              Qt::QueuedConnection);
                             QTimer::singleShot(screenshotTimeout, &window, takePicture);
                         });
    QTimer::singleShot(0, &window,
                       [&]
                       {
                           // With --screenshot or a scene argument, do not offer recovery.
                           if (parser.positionalArguments().isEmpty() && !hasScreenshot)
                           {
                               window.show();
                               if (!window.offerUnsavedChanges())
                                   window.openScene(scene);
                               return;
                           }
                           // Meshes are read while the window is there; what is wrong with the scene itself is known
                           // before.
                           window.openScene(scene);
                           if (!isFailed)
                               window.show();
                       });
    return QApplication::exec();
}
