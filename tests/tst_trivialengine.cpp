#include "testsupport.h"

#include <examples/TrivialEngine/Engine.h>

namespace
{
// A view that shows the wheel, with another manager at hand.
class View : public QRenderWidget
{
public:
    View()
    {
        SetPlatformRendererInterface(&wheel);
        SetDisplaySurfaceManagerInterface(&surfaces);
        resize(240, 180);
        show();
    }
    ~View() override { SetDisplaySurfaceManagerInterface(nullptr); }
    using QWidget::destroy;

    // Whether the wheel's present picture is on the screen.
    bool isUpToDate() const
    {
        const QPoint corner = mapToGlobal(QPoint());
        const QPixmap shown = screen()->grabWindow(0, corner.x(), corner.y(), width(), height());
        QImage expected(size(), QImage::Format_RGB32);
        QPainter painter(&expected);
        wheel.draw(painter, expected.rect());
        painter.end();
        return shown.toImage().convertToFormat(QImage::Format_RGB32) == expected;
    }

    Surfaces surfaces;
    Surfaces others;
    Wheel wheel;
};
} // namespace

class tst_TrivialEngine : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void staysUpToDate()
    {
        for (const char* act : {"another manager", "shut down", "made again"})
        {
            View view;
            QTRY_VERIFY2(view.isUpToDate(), act);
            const HWND before = view.GetHWND();
            if (*act == 'a')
                view.SetDisplaySurfaceManagerInterface(&view.others); // which receives no size
            else if (*act == 's')
                view.shutdown();
            else
            {
                view.hide();
                view.destroy();
                view.SetPlatformRendererInterface(nullptr); // registers the window that is gone
                view.show();
                QTRY_VERIFY(view.GetHWND() != before);
            }
            view.wheel.MouseWheel(60, 0);
            if (*act != 'a')
                view.repaint(); // a frame of a window that the engine does not know
            QVERIFY2(!view.isUpToDate(), act);
            view.SetPlatformRendererInterface(&view.wheel);
            view.Update();
            QTRY_VERIFY2(view.isUpToDate(), act);
        }
    }
};

QTEST_MAIN(tst_TrivialEngine)
#include "tst_trivialengine.moc"
