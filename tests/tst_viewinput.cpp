#include "testsupport.h"

#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtGui/QBackingStore>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

#include <memory>

using orvek::host::ViewInput;

namespace
{
class Handler final : public orvek::base::BaseMouseHandler
{
public:
    void MouseDown(int button, int, int) override { log << QString("down%1").arg(button); }
    void MouseUp(int button, int x, int y) override { log << QString("up%1@%2,%3").arg(button).arg(x).arg(y); }
    void MouseDoubleClick(int button, int, int) override { log << QString("double%1").arg(button); }
    void MouseMove(int, int) override { log << "move"; }
    void MouseWheel(int, int) override { log << "wheel"; }
    void KeyboardInput(unsigned int key, bool pressed, int) override
    {
        log << QString(pressed ? "+%1" : "-%1").arg(key);
    }
    QString take()
    {
        const QString text = log.join(' ');
        log.clear();
        return text;
    }
    QStringList log;
};

// Fills the windows that it knows with red.
class Manager final : public orvek::crossplatform::DisplaySurfaceManagerInterface
{
public:
    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface*, int) override { windows << window; }
    void RemoveWindow(HWND window) override { windows.removeAll(window); }
    void ResizeSurface(HWND) override {}
    void Render(HWND handle) override
    {
        QWindow* window = windows.contains(handle) ? QWidget::find(handle)->windowHandle() : nullptr;
        if (!window || window->winId() != handle)
            return;
        const QRect area(QPoint(), window->size());
        QBackingStore store(window);
        store.resize(area.size());
        store.beginPaint(area);
        QPainter(store.paintDevice()).fillRect(area, Qt::red);
        store.endPaint();
        store.flush(area);
    }
    int GetWindowViewId(HWND) override { return 0; }
    QVector<HWND> windows;
};

// A view beside a field; with the class, or for the control run without it.
struct Host
{
    explicit Host(bool with, bool ownWindow = false) : view(new QRenderWidget(ownWindow ? nullptr : &frame))
    {
        if (with)
        {
            input = new ViewInput(view, &handler, view);
            input->setManager(&manager);
        }
        else
        {
            view->SetHandleMouseInterface(&handler);
            view->SetDisplaySurfaceManagerInterface(&manager);
        }
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&field);
        column->addWidget(&tabs);
        tabs.addTab(&frame, "View");
        tabs.addTab(&back, "Back");
        if (!ownWindow)
            (new QVBoxLayout(&frame))->addWidget(view);
        window.resize(300, 300);
        cover.setAutoFillBackground(true);
        cover.resize(300, 300);
        cover.hide();
    }
    ~Host() { delete view; }
    void show()
    {
        view->window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(view->window()));
        view->window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view->window()));
        view->setFocus();
        QVERIFY(view->hasFocus());
        handler.take();
    }
    void key(bool press, uint code, uint scan, bool repeat = false, ulong time = 0)
    {
        QKeyEvent event(press ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Q, Qt::NoModifier, scan, code, 0,
                        QString(), repeat);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(view, &event);
    }
    bool isRed() const
    {
        const QImage image = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        const QRect area(view->mapToGlobal(QPoint()), view->size());
        return image.pixelColor(area.topLeft() + QPoint(2, 2)) == QColor(Qt::red) &&
               image.pixelColor(area.bottomRight() - QPoint(2, 2)) == QColor(Qt::red);
    }

    Manager manager;
    Handler handler;
    QWidget window;
    QLineEdit field;
    QTabWidget tabs;
    QWidget frame;
    QWidget back;
    QWidget cover{&frame};
    QRenderWidget* view; // deleted first, as its window is the manager's
    ViewInput* input = nullptr;
};

using Act = void (*)(Host&);
} // namespace
Q_DECLARE_METATYPE(Act)

class tst_ViewInput : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void releasesWhatIsHeld_data()
    {
        QTest::addColumn<Act>("act");
        QTest::newRow("focus") << Act([](Host& host) { host.field.setFocus(); });
        QTest::newRow("window") << Act(
            [](Host& host)
            {
                auto* dialog = new QDialog(&host.window);
                dialog->show();
                dialog->activateWindow();
            });
        QTest::newRow("modal dialog") << Act([](Host& host) { (new QDialog(&host.window))->open(); });
        QTest::newRow("menu") << Act([](Host& host) { (new QMenu(&host.window))->popup(QPoint()); });
        QTest::newRow("another tab") << Act([](Host& host) { host.tabs.setCurrentIndex(1); });
        QTest::newRow("disabled") << Act([](Host& host) { host.window.setEnabled(false); });
    }

    void releasesWhatIsHeld()
    {
        QFETCH(Act, act);
        for (const bool with : {false, true})
        {
            Host host(with);
            host.show();
            QTest::mousePress(host.view, Qt::LeftButton, {}, QPoint(10, 20));
            QTest::mouseDClick(host.view, Qt::RightButton, {}, QPoint(11, 21));
            QTest::mousePress(host.view, Qt::RightButton, {}, QPoint(12, 22));
            host.key(true, 113, 24);
            host.handler.log.clear();
            act(host);
            QTRY_COMPARE(host.handler.log.join(' '), QString(with ? "up1@12,22 up2@12,22 -113" : ""));
            // The true ones come late.
            host.window.setEnabled(true);
            host.handler.log.clear();
            for (const auto type : {QEvent::MouseMove, QEvent::MouseButtonRelease})
            {
                QMouseEvent event(type, QPointF(5, 6), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
                QCoreApplication::sendEvent(host.view, &event);
            }
            host.key(false, 113, 24);
            QCOMPARE(host.handler.take(), QString(with ? "move" : "move up1@5,6 -113"));
        }
    }

    void omitsRepeats()
    {
        for (const bool with : {false, true})
        {
            Host host(with);
            host.key(true, 'w', 25);
            host.key(true, 'w', 25, true);
            host.key(false, 'w', 25, true);
            host.key(true, 'w', 25, true);
            host.key(true, 'w', 25);
            QCOMPARE(host.handler.take(), QString(with ? "+119" : "+119 +119 -119 +119 +119"));
            // With Shift the same key has another code.
            host.key(false, 'W', 25);
            QCOMPARE(host.handler.take(), QString(with ? "-119" : "-87"));
            // Pairs that Qt did not recognise, and the true end.
            host.key(true, 'e', 26, false, 1000);
            for (const ulong time : {1600, 1640})
            {
                host.key(false, 'e', 26, false, time);
                host.key(true, 'e', 26, false, time);
            }
            host.key(false, 'e', 26, false, 1660);
            QTRY_COMPARE(host.handler.log.join(' '), QString(with ? "+101 -101" : "+101 -101 +101 -101 +101 -101"));
            host.key(true, 'e', 26, false, 2000);
            host.key(false, 'e', 26, false, 2500);
            host.key(true, 'e', 26, false, 2501);
            QVERIFY(host.handler.log.join(' ').endsWith("+101 -101 +101"));
        }
        Host host(true);
        host.input->setOmitsRepeats(false);
        host.key(true, 'w', 25);
        host.key(true, 'w', 25, true);
        QCOMPARE(host.handler.take(), QString("+119 +119"));
    }

    void passesTab()
    {
        for (const bool passes : {false, true})
        {
            Host host(true);
            host.input->setPassesTab(passes);
            host.show();
            for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab})
            {
                host.view->setFocus();
                QTest::keyClick(host.window.windowHandle(), key);
                QCOMPARE(host.view->hasFocus(), passes);
                QCOMPARE(host.handler.take(), QString(passes ? "+0 -0" : ""));
            }
        }
    }

    void handsTheViewBack()
    {
        Host host(true);
        Handler second;
        QTest::mousePress(host.view, Qt::LeftButton, {}, QPoint(1, 2));
        host.input->setHandler(&second);
        QCOMPARE(host.handler.take(), QString("down1 up1@1,2"));
        QTest::mouseRelease(host.view, Qt::LeftButton, {}, QPoint(1, 2));
        QTest::mousePress(host.view, Qt::MiddleButton, {}, QPoint(1, 2));
        delete host.input;
        QTest::mouseRelease(host.view, Qt::MiddleButton, {}, QPoint(3, 4));
        QCOMPARE(second.take(), QString("down4 up4@1,2 up4@3,4"));
        // The view may go first.
        auto* view = new QRenderWidget;
        ViewInput input(view, &second);
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(1, 2));
        delete view;
        input.setContinuousUpdate(true);
        QVERIFY(!input.view() && !input.isSeen());
    }

    void holdsTheRateOfTheScreen()
    {
        for (const bool with : {false, true})
        {
            Host host(with);
            host.show();
            if (with)
                host.input->setContinuousUpdate(true);
            else
                host.view->setContinuousUpdate(true);
            const QScreen* screen = host.window.windowHandle()->screen();
            const double rate = screen->refreshRate() >= 1.0 ? screen->refreshRate() : 60.0;
            const auto* timer = (with ? static_cast<QObject*>(host.input) : host.view)->findChild<QTimer*>();
            int requests = 0;
            connect(timer, &QTimer::timeout, this, [&requests] { ++requests; });
            QElapsedTimer time;
            time.start();
            QTest::qWait(500);
            const double refreshes = double(time.elapsed()) * rate / 1000.0;
            QVERIFY2((requests <= refreshes + 2) == with && requests > 5, qPrintable(QString::number(requests)));
        }
    }

    void pausesWhileUnseen_data()
    {
        QTest::addColumn<Act>("leave");
        QTest::addColumn<Act>("come");
        QTest::newRow("minimised") << Act([](Host& host) { host.window.showMinimized(); })
                                   << Act([](Host& host) { host.window.showNormal(); });
        QTest::newRow("another tab") << Act([](Host& host) { host.tabs.setCurrentIndex(1); })
                                     << Act([](Host& host) { host.tabs.setCurrentIndex(0); });
        if (QGuiApplication::platformName() != QLatin1String("offscreen")) // which does not tell what is uncovered
            QTest::newRow("covered") << Act([](Host& host) { host.cover.raise(), host.cover.show(); })
                                     << Act([](Host& host) { host.cover.hide(); });
    }

    void pausesWhileUnseen()
    {
        QFETCH(Act, leave);
        QFETCH(Act, come);
        Host host(true);
        host.show();
        host.input->setContinuousUpdate(true);
        const auto* timer = host.input->findChild<QTimer*>();
        QTRY_VERIFY(timer->isActive() && host.input->isSeen());
        for (int round = 0; round < 2; ++round)
        {
            leave(host);
            QTRY_VERIFY(!timer->isActive() && !host.input->isSeen());
            come(host);
            QTRY_VERIFY(timer->isActive() && host.input->isSeen());
        }
        host.input->setContinuousUpdate(false);
        QVERIFY(!host.input->findChild<QTimer*>());
    }

    void keepsItsWindow_data()
    {
        QTest::addColumn<bool>("ownWindow");
        QTest::newRow("in a window on top") << false;
        QTest::newRow("a window on top itself") << true;
    }

    // The whole way: what a user sees on the screen.
    void keepsItsWindow()
    {
        QFETCH(bool, ownWindow);
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("Only X11 makes windows again");
        for (const bool with : {false, true})
        {
            Host host(with, ownWindow);
            int lost = 0;
            int replaced = 0;
            if (with)
            {
                connect(host.input, &ViewInput::windowLost, this, [&lost] { ++lost; });
                connect(host.input, &ViewInput::windowReplaced, this, [&replaced] { ++replaced; });
            }
            host.show();
            // Once more from the back tab.
            for (const int tab : {0, 1})
            {
                QTRY_VERIFY(host.isRed());
                const HWND before = host.view->GetHWND();
                host.tabs.setCurrentIndex(tab);
                QWidget* window = host.view->window();
                window->setWindowFlag(Qt::WindowStaysOnTopHint, tab == 0);
                window->show();
                host.tabs.setCurrentIndex(0);
                if (!with)
                {
                    QTest::qWait(300);
                    host.view->Update();
                    QTest::qWait(100);
                    QVERIFY(!host.isRed());
                    break;
                }
                QTRY_VERIFY(host.isRed());
                QCOMPARE(host.manager.windows, QVector<HWND>({host.view->windowHandle()->winId()}));
                QCOMPARE(before != host.view->GetHWND(), ownWindow);
                QVERIFY(lost == replaced && (lost > 0) == ownWindow);
            }
        }
    }
};

QTEST_MAIN(tst_ViewInput)
#include "tst_viewinput.moc"
