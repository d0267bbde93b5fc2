// The minimum that an engine must do for a render widget: draw frames in its window, and turn the picture when the user
// drags.
#include <examples/Screenshot.h>
#include <examples/TrivialEngine/Engine.h>

#include <QtWidgets/QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    // Created before the widget, which uses them until it is destroyed.
    Surfaces surfaces;
    Wheel wheel;
    QRenderWidget view;
    view.setWindowTitle(QStringLiteral("Trivial Engine"));
    view.SetPlatformRendererInterface(&wheel);
    view.SetDisplaySurfaceManagerInterface(&surfaces);
    view.SetHandleMouseInterface(&wheel);
    view.resize(480, 360);
    view.show();
    takeScreenshotOnRequest(&view);
    return QApplication::exec();
}
