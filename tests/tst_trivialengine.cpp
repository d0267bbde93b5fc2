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
    void anotherManagerShowsThePicture()
    {
        View view;
        QTRY_VERIFY(view.isUpToDate());
        view.wheel.MouseWheel(60, 0);
        QVERIFY(!view.isUpToDate());
        view.SetDisplaySurfaceManagerInterface(&view.others); // which is told of no size
        view.Update();
        QTRY_VERIFY(view.isUpToDate());
    }

    void framesOfUnknownWindowsAreLeftOut()
    {
        for (const bool madeAgain : {false, true}) // otherwise shut down
        {
            View view;
            QTRY_VERIFY(view.isUpToDate());
            const HWND before = view.GetHWND();
            if (madeAgain)
            {
                view.hide();
                view.destroy();
                view.SetPlatformRendererInterface(nullptr); // registers the window that is gone
                view.show();
                QTRY_VERIFY(view.GetHWND() != before);
            }
            else
            {
                view.shutdown();
            }
            view.wheel.MouseWheel(60, 0);
            view.repaint();
            QVERIFY(!view.isUpToDate());
            view.SetPlatformRendererInterface(&view.wheel);
            view.Update();
            QTRY_VERIFY(view.isUpToDate());
        }
    }
};

QTEST_MAIN(tst_TrivialEngine)
#include "tst_trivialengine.moc"
