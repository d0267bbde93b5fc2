// Takes the pictures of the documentation from the widgets on the screen: DocPictures DIRECTORY [NAME.png...]
// Start it with QT_SCALE_FACTOR=2 and the style Fusion; scripts/pictures does.
#include <pictures/hour.h>
#include <snippets/snippets.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QUndoStack>

#include <memory>

namespace
{
// In pixels of the widgets.
constexpr int Width = 480;
constexpr int WidthOfTwo = 920; // side by side

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// From the screen, so that native windows are included. Text cursors and focus frames are not.
bool takePicture(QWidget* widget, int width, int height, const QString& file)
{
    wait(100);
    widget->resize(width, qMax(height, widget->minimumHeight()));
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
    const QStringList names = application.arguments().mid(2);
    bool good = true;
    const auto takeWide =
        [&](QWidget* made, int width, int height, const char* name, void (*prepare)(QWidget*) = nullptr)
    {
        const std::unique_ptr<QWidget> widget(made);
        if (!names.isEmpty() && !names.contains(QLatin1String(name)))
            return;
        widget->setWindowFlag(Qt::FramelessWindowHint);
        if (widget->layout() && height < 100)
            widget->setMinimumHeight(0);
        widget->resize(width, height);
        widget->show();
        if (prepare)
            prepare(made);
        good = takePicture(made, width, height, directory + QLatin1Char('/') + QLatin1String(name)) && good;
    };
    const auto take = [&](QWidget* made, int height, const char* name, void (*prepare)(QWidget*) = nullptr)
    { takeWide(made, Width, height, name, prepare); };

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

    QUndoStack stack;
    take(lightInspector(stack), 380, "inspector.png");

    // The guide "An Hour in a Panel". The accessible names come first: after the second of those pictures all widgets
    // have them.
    takeWide(namesOfParts(), WidthOfTwo, 306, "hour-editoraccessibility.png");
    take(typing(), 232, "hour-editorinput.png", prepareTyping);
    takeWide(acts(), WidthOfTwo, 200, "hour-editorundo.png", prepareActs);
    takeWide(twoPanels("With a PanelSearch"), WidthOfTwo, 230, "hour-panelsearch.png", prepareSearch);
    takeWide(twoPanels("With a SectionStates"), WidthOfTwo, 494, "hour-sectionstates.png", prepareStates);
    takeWide(twoPanels("With a ColumnAligner"), WidthOfTwo, 494, "hour-columnaligner.png", prepareColumns);
    take(colours(), 180, "hour-colourbutton.png");
    take(choices(), 206, "hour-choicebutton.png", prepareChoices);
    takeWide(views(), WidthOfTwo, 290, "hour-viewinput.png", prepareViews);
    takeWide(twoPanels("With a PanelHost"), WidthOfTwo, 494, "hour.png", preparePanels);
    return good ? 0 : 1;
}
