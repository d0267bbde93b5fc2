#include "hostsupport.h"

#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtGui/QBackingStore>
#include <QtGui/QPainter>

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
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int key, bool pressed, int) override
    {
        log << QString(pressed ? "+%1" : "-%1").arg(key);
    }
    QString take() { return std::exchange(log, {}).join(' '); }
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
        QWindow* window = windows.contains(handle) ? QWidget::find(WId(handle))->windowHandle() : nullptr;
        if (!window || window->winId() != WId(handle))
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

enum Mode
{
    Without, // the class, for the control run
    Off,     // all parts of it
    On
};

struct Key
{
    bool isPress;
    uint code;
    bool repeats = false;
    ulong time = 0;
};

// A view beside a field.
struct Host
{
    explicit Host(Mode mode, bool ownWindow = false) : view(new QRenderWidget(ownWindow ? nullptr : &frame))
    {
        if (mode == Without)
        {
            view->SetHandleMouseInterface(&handler);
            view->SetDisplaySurfaceManagerInterface(&manager);
        }
        else
        {
            input = new ViewInput(view, &handler, view);
            input->setManager(&manager);
            QObject::connect(input, &ViewInput::windowLost, view, [this] { handler.log << "lost"; });
            QObject::connect(input, &ViewInput::windowReplaced, view, [this] { handler.log << "replaced"; });
            input->setReleasesHeld(mode == On);
            input->setOmitsRepeats(mode == On);
            input->setKeepsWindow(mode == On);
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
        showActive(*view->window());
        view->setFocus();
        handler.take();
    }
    void keys(const QVector<Key>& events)
    {
        for (const Key& key : events)
        {
            // Whether with Shift or not, it is the same key.
            QKeyEvent event(key.isPress ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Q, Qt::NoModifier,
                            quint32(QChar::toLower(key.code)), key.code, 0, QString(), key.repeats);
            event.setTimestamp(key.time);
            QCoreApplication::sendEvent(view, &event);
        }
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

using Acts = Table<void (*)(Host&)>;
} // namespace

class tst_ViewInput : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void releasesWhatIsHeld_data()
    {
        const Acts row;
        row("focus", [](Host& host) { host.field.setFocus(); });
        row("window", [](Host& host) { showActive(*new QDialog(&host.window)); });
        row("modal dialog", [](Host& host) { (new QDialog(&host.window))->open(); });
        row("menu", [](Host& host) { (new QMenu(&host.window))->popup(QPoint()); });
        row("another tab", [](Host& host) { host.tabs.setCurrentIndex(1); });
        row("disabled", [](Host& host) { host.window.setEnabled(false); });
    }

    void releasesWhatIsHeld()
    {
        const auto [act] = Acts::current();
        for (const Mode mode : {Without, Off, On})
        {
            Host host(mode);
            host.show();
            QTest::mousePress(host.view, Qt::LeftButton, {}, QPoint(10, 20));
            QTest::mouseDClick(host.view, Qt::RightButton, {}, QPoint(11, 21));
            host.keys({{true, 'q'}});
            QCOMPARE(host.handler.take(), QString("down1 double2 +113"));
            act(host);
            QTRY_COMPARE(host.handler.log.join(' '), QString(mode == On ? "up1@11,21 up2@11,21 -113" : ""));
            // The true ones come late.
            host.window.setEnabled(true);
            host.handler.take();
            for (const auto type : {QEvent::MouseMove, QEvent::MouseButtonRelease})
            {
                QMouseEvent event(type, QPointF(5, 6), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
                QCoreApplication::sendEvent(host.view, &event);
            }
            host.keys({{false, 'q'}});
            QCOMPARE(host.handler.take(), QString(mode == On ? "move" : "move up1@5,6 -113"));
        }
    }

    void omitsRepeats()
    {
        for (const Mode mode : {Without, Off, On})
        {
            Host host(mode);
            host.keys({{true, 'w'}, {true, 'w', true}, {false, 'w', true}, {true, 'w', true}, {true, 'w'}});
            QCOMPARE(host.handler.take(), QString(mode == On ? "+119" : "+119 +119 -119 +119 +119"));
            host.keys({{false, 'W'}});
            QCOMPARE(host.handler.take(), QString(mode == On ? "-119" : "-87"));
            // Pairs that Qt did not recognise, the true end, and the next press soon after it.
            host.keys({{true, 'e', false, 1000}, {false, 'e', false, 1600}, {true, 'e', false, 1600}});
            host.keys({{false, 'e', false, 1640}, {true, 'e', false, 1640}, {false, 'e', false, 1660}});
            QTRY_COMPARE(host.handler.log.join(' '),
                         QString(mode == On ? "+101 -101" : "+101 -101 +101 -101 +101 -101"));
            host.handler.take();
            host.keys({{true, 'e', false, 2000}, {false, 'e', false, 2500}, {true, 'e', false, 2501}});
            QCOMPARE(host.handler.take(), QString("+101 -101 +101"));
        }
    }

    void passesTab()
    {
        for (const bool passes : {false, true})
        {
            Host host(On);
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
        Host host(On);
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
        for (const Mode mode : {Without, On})
        {
            Host host(mode);
            host.show();
            QObject* updates = mode == On ? static_cast<QObject*>(host.input) : host.view;
            if (mode == On)
                host.input->setContinuousUpdate(true);
            else
                host.view->setContinuousUpdate(true);
            const double rate = host.window.windowHandle()->screen()->refreshRate();
            const auto* timer = updates->findChild<QTimer*>();
            QSignalSpy requests(timer, &QTimer::timeout);
            QSignalSpy frames(host.view, &QRenderWidget::viewUpdated);
            QElapsedTimer time;
            time.start();
            QTest::qWait(500);
            const double refreshes = double(time.elapsed()) * (rate >= 1.0 ? rate : 60.0) / 1000.0;
            // The view alone asks each millisecond, as far as the machine has time for that.
            if (mode == On)
                QVERIFY2(requests.count() <= refreshes + 2, qPrintable(QString::number(refreshes)));
            else
                QVERIFY(timer->interval() * rate < 1000.0);
            QVERIFY(requests.count() > 5 && frames.count() > 5);
        }
    }

    void pausesWhileUnseen()
    {
        Host host(On);
        host.show();
        host.input->setContinuousUpdate(true);
        const auto* timer = host.input->findChild<QTimer*>();
        const bool reportsUncovered = QGuiApplication::platformName() != QLatin1String("offscreen");
        for (int way = 0; way < (reportsUncovered ? 3 : 2); ++way)
        {
            QTRY_VERIFY(timer->isActive() && host.input->isSeen());
            if (way == 0)
                host.window.showMinimized();
            else if (way == 1)
                host.tabs.setCurrentIndex(1);
            else
                host.cover.raise(), host.cover.show();
            QTRY_VERIFY(!timer->isActive() && !host.input->isSeen());
            host.window.showNormal();
            host.tabs.setCurrentIndex(0);
            host.cover.hide();
        }
        QTRY_VERIFY(timer->isActive() && host.input->isSeen());
        host.input->setContinuousUpdate(false);
        QVERIFY(!host.input->findChild<QTimer*>());
    }

    // The whole way: what a user sees on the screen, of a view in a window on top and of one that is such a window.
    void keepsItsWindow()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("Only X11 makes windows again");
        for (const bool ownWindow : {false, true})
            for (const Mode mode : {Without, Off, On})
            {
                Host host(mode, ownWindow);
                host.show();
                // Once more from the back tab.
                for (const int tab : {0, 1})
                {
                    QTRY_VERIFY(host.isRed());
                    host.handler.take();
                    const HWND before = host.view->GetHWND();
                    host.tabs.setCurrentIndex(tab);
                    QWidget* window = host.view->window();
                    window->setWindowFlag(Qt::WindowStaysOnTopHint, tab == 0);
                    window->show();
                    host.tabs.setCurrentIndex(0);
                    if (mode != On)
                    {
                        QTest::qWait(300);
                        host.view->Update();
                        QTest::qWait(100);
                        QVERIFY(!host.isRed());
                        break;
                    }
                    QTRY_VERIFY(host.isRed());
                    QCOMPARE(host.manager.windows, QVector<HWND>({HWND(host.view->windowHandle()->winId())}));
                    QCOMPARE(before != host.view->GetHWND(), ownWindow);
                    QCOMPARE(host.handler.take(), QString(ownWindow ? "lost replaced" : ""));
                }
            }
    }
};

QTEST_MAIN(tst_ViewInput)
#include "tst_viewinput.moc"
