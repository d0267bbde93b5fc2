#include <examples/SceneEditor/MainWindow.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{
constexpr int usageError = 2;
constexpr int screenshotTimeout = 5000; // milliseconds, for platforms that never show a window

// The shipped scene: in the sources while they are there, otherwise where an installation has it.
QString studioScene()
{
    const QString name = QStringLiteral("studio.json");
    const QDir sources(QStringLiteral(SCENE_EDITOR_ASSETS));
    if (sources.exists(name))
        return sources.filePath(name);
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/OrvekQtWidgets/SceneEditor/") + name);
}

int fail(const QString& text)
{
    std::fprintf(stderr, "SceneEditor: %s\n", qPrintable(text));
    return usageError;
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
    // Native siblings of the view would mean that every editor has a window of its own.
    QApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Orvek"));
    QApplication::setApplicationName(QStringLiteral("SceneEditor"));
    QApplication::setApplicationVersion(QStringLiteral(SCENE_EDITOR_VERSION));

    const auto tr = [](const char* text) { return QCoreApplication::translate("main", text); };
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("Edits the objects, material, light and camera of a small 3D scene."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        tr("Save a picture of the window as a PNG file and exit."), tr("file"));
    const QCommandLineOption size(QStringLiteral("size"), tr("Size of the window in pixels."), tr("WxH"));
    const QCommandLineOption search(QStringLiteral("search"), tr("Show only the properties with this text."),
                                    tr("text"));
    parser.addOptions({screenshot, size, search});
    parser.addPositionalArgument(QStringLiteral("scene"), tr("Scene to open instead of the shipped one."),
                                 QStringLiteral("[scene.json]"));
    parser.process(app);
    if (parser.positionalArguments().size() > 1)
        return fail(tr("expected one scene, found %1").arg(parser.positionalArguments().size()));
    const QSize wantedSize = parseSize(parser.value(size));
    if (parser.isSet(size) && wantedSize.isEmpty())
        return fail(tr("--size: expected WIDTHxHEIGHT such as 1400x900, found %1").arg(parser.value(size)));

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
    const auto takePicture = [&]
    {
        if (window.picture().save(pictureFile, "PNG"))
            QApplication::exit(0);
        else
            QApplication::exit(fail(tr("%1: cannot be written").arg(QDir::toNativeSeparators(pictureFile))));
    };
    // A scene that cannot be opened opens no window either.
    QObject::connect(&window, &sceneeditor::MainWindow::loadFailed, &window,
                     [&](const QString& text)
                     {
                         if (!window.isVisible())
                             QApplication::exit(fail(text));
                     });
    QObject::connect(&window, &sceneeditor::MainWindow::sceneOpened, &window,
                     [&]
                     {
                         if (window.isVisible())
                             return;
                         window.show();
                         if (!parser.isSet(screenshot))
                             return;
                         QObject::connect(&window, &sceneeditor::MainWindow::viewDrawn, &window, takePicture,
                                          Qt::QueuedConnection);
                         QTimer::singleShot(screenshotTimeout, &window, takePicture);
                     });
    const QString scene = parser.positionalArguments().value(0, studioScene());
    QTimer::singleShot(0, &window, [&window, scene] { window.openScene(scene); });
    return QApplication::exec();
}
