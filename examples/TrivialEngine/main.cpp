// The least that an engine has to do for a render widget: draw frames on its window, and turn the picture when the user
// drags.
#include <examples/Screenshot.h>
#include <examples/TrivialEngine/Engine.h>

#include <QtWidgets/QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    // Before the widget, which uses them until its end.
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
