// Takes the pictures of the documentation from the widgets on the screen: DocPictures DIRECTORY
// Start it with QT_SCALE_FACTOR=2 and the style Fusion; scripts/pictures does.
#include <snippets/snippets.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <memory>

namespace
{
constexpr int Width = 480; // of each picture, in pixels of the widgets

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// From the screen, so that native windows are in it. Text cursors and focus frames are not.
bool takePicture(QWidget* widget, int height, const QString& file)
{
    wait(100);
    widget->resize(Width, qMax(height, widget->minimumHeight()));
    widget->move(0, 0);
    if (QWidget* focus = QApplication::focusWidget())
        focus->clearFocus();
    wait(400);
    const QPixmap picture = widget->screen()->grabWindow(widget->winId());
    const bool saved = picture.toImage().convertToFormat(QImage::Format_RGB32).save(file, "PNG", 0);
    if (!saved)
        qCritical("%s could not be written", qUtf8Printable(file));
    return saved;
}

void type(QWidget* panel, const QString& text)
{
    panel->findChild<QLineEdit*>(QStringLiteral("search"))->setText(text);
    wait(50);
}
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString directory = application.arguments().value(1, QStringLiteral("."));
    bool good = true;
    const auto take = [&](QWidget* made, int height, const char* name, void (*prepare)(QWidget*) = nullptr)
    {
        const std::unique_ptr<QWidget> widget(made);
        widget->setWindowFlag(Qt::FramelessWindowHint);
        if (widget->layout() && height < 100)
            widget->setMinimumHeight(0);
        widget->resize(Width, height);
        widget->show();
        if (prepare)
            prepare(made);
        good = takePicture(made, height, directory + QLatin1Char('/') + QLatin1String(name)) && good;
    };

    take(sliderEdit(), 38, "qslideredit.png");
    take(intSliderEdit(), 76, "qintslideredit.png");
    take(vectorEdit(), 38, "qvectoredit.png");
    take(colourEdit(), 44, "qcolouredit.png");
    take(labelEdit(), 38, "qlabeledit.png");
    take(fileEdit(), 38, "qfileedit.png");
    take(section(), 160, "qaccordion.png");
    take(panel(), 320, "qpropertypanel.png");
    take(panel(), 320, "search.png", [](QWidget* widget) { type(widget, QStringLiteral("a")); });
    take(panel(), 320, "styling.png",
         [](QWidget* widget)
         {
             styleMatches(widget);
             type(widget, QStringLiteral("po"));
         });
    take(renderWidget(), 270, "qrenderwidget.png");
    take(renderWidgetWithoutEngine(), 120, "qrenderwidget-message.png");
    return good ? 0 : 1;
}
