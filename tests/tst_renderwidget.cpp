#include "testsupport.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

using orvek::base::BaseMouseHandler;
using orvek::crossplatform::DisplaySurfaceManagerInterface;
using orvek::crossplatform::PlatformRendererInterface;

namespace
{
class Renderer final : public PlatformRendererInterface
{
};

// Engine objects that write each call into a log: the manager's name and what it is to do.
struct Log : QStringList
{
    void note(const QString& call, HWND calledFor)
    {
        append(calledFor == window ? call : call + " for another window");
        if (call == interruptedCall)
            interruption();
    }
    QString take() { return std::exchange(static_cast<QStringList&>(*this), {}).join(' '); }

    Renderer first;
    Renderer second;
    HWND window = {};
    QString interruptedCall;
    std::function<void()> interruption; // what the host does within that call
};

class Manager final : public DisplaySurfaceManagerInterface
{
public:
    Manager(const QString& name, Log& log) : m_name(name), m_log(log) {}
    void RemoveWindow(HWND window) override { m_log.note(m_name + "-", window); }
    void Render(HWND window) override { m_log.note("render", window); }
    void AddWindow(HWND window, PlatformRendererInterface* renderer, int viewId) override
    {
        const char* name = !renderer ? "0" : renderer == &m_log.first ? "R" : renderer == &m_log.second ? "S" : "?";
        m_log.note(m_name + '+' + name + (viewId == -1 ? "" : "?"), window);
    }
    void ResizeSurface(HWND window) override { m_log.note("resize", window); }
    int GetWindowViewId(HWND window) override { return window == m_log.window ? 7 : 0; }

private:
    const QString m_name;
    Log& m_log;
};

class Handler final : public BaseMouseHandler
{
public:
    explicit Handler(Log& log) : m_log(log) {}
    void MouseDown(int button, int x, int y) override { note("down", {button, x, y}); }
    void MouseUp(int button, int x, int y) override { note("up", {button, x, y}); }
    void MouseDoubleClick(int button, int x, int y) override { note("double", {button, x, y}); }
    void MouseMove(int x, int y) override { note("move", {x, y}); }
    void MouseWheel(int delta, int modifiers) override { note("wheel", {delta, modifiers}); }
    void KeyboardInput(unsigned int key, bool pressed, int reserved) override
    {
        note("key", {int(key), pressed, reserved});
    }

private:
    void note(const QString& call, std::initializer_list<int> values)
    {
        QStringList words(call);
        for (int value : values)
            words << QString::number(value);
        m_log << words.join(QLatin1Char(','));
    }
    Log& m_log;
};

// Logs the input that gets past its child.
class Parent : public QWidget
{
public:
    explicit Parent(Log& log) : m_log(log) {}
    bool event(QEvent* event) override
    {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
        if (isKey || event->type() == QEvent::Wheel || dynamic_cast<QMouseEvent*>(event))
            m_log << QString("parent,%1").arg(event->type());
        return QWidget::event(event);
    }

private:
    Log& m_log;
};

// Counts the paints, those that began on screen apart.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++(static_cast<QWidget*>(watched)->testAttribute(Qt::WA_PaintOnScreen) ? onScreen : buffered);
        return false;
    }

    int onScreen = 0;
    int buffered = 0;
};

// A view with engine objects. Paints and resizes sent by hand, so that the window system adds none.
struct Scene
{
    explicit Scene(bool inParent = false) : owned(new QRenderWidget(inParent ? &parent : nullptr))
    {
        view.SetHandleMouseInterface(&handler);
        if (!inParent)
            log.window = view.GetHWND();
    }
    template <typename Event>
    void send(Event&& event)
    {
        QApplication::sendEvent(&view, &event);
    }
    QString paint()
    {
        send(QPaintEvent(view.rect()));
        return log.take();
    }
    void resize(int width, int height) { send(QResizeEvent(QSize(width, height), view.size())); }
    void logSignals()
    {
        QObject::connect(&view, &QRenderWidget::viewUpdated, &view, [this] { log << "viewUpdated"; });
        QObject::connect(&view, &QRenderWidget::deferredUpdate, &view, [this] { log << "deferredUpdate"; });
        QObject::connect(&view, &QRenderWidget::keyReleased, &view,
                         [this](QKeyEvent* event) { log << QString("keyReleased,%1").arg(event->nativeVirtualKey()); });
    }

    Log log;
    Manager manager{"A", log};
    Manager other{"B", log};
    Handler handler{log};
    Parent parent{log};
    std::unique_ptr<QRenderWidget> owned; // destroyed first
    QRenderWidget& view = *owned;
};

using Registrations = Table<QString, QString, QString>; // steps, calls, calls of the destructor
using Changes = Table<QString, bool, QString>;          // within which call, replaced or taken away, calls
using Wheels = Table<QPoint, Qt::KeyboardModifiers, QString>;

bool showsMessage(const QImage& image, qreal ratio = 1)
{
    if (image.isNull() || image.pixelColor(0, 0) != QColor(125, 125, 125) ||
        image.pixelColor(image.width() - 1, image.height() - 1) != QColor(125, 125, 125))
        return false;
    QRect yellow;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == QColor(255, 224, 0))
                yellow |= QRect(x, y, 1, 1);
    // The text stands on the baseline at (16, 32); only the tail of no letter reaches below it.
    return yellow.width() > 100 && qAbs(yellow.left() - 16 * ratio) < 4 && qAbs(yellow.bottom() + 1 - 32 * ratio) < 3;
}

#if defined(Q_PROCESSOR_X86_64) && defined(Q_OS_UNIX)
// Engines come from other compilers: calls go through the positions of the virtual table alone.
template <typename... Arguments>
int callPosition(void* object, int position, Arguments... arguments)
{
    void** table = *static_cast<void***>(object);
    return reinterpret_cast<int (*)(void*, Arguments...)>(table[position])(object, arguments...);
}

#endif
} // namespace

class tst_RenderWidget : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
            m_ratio = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
        QCOMPARE(QRenderWidget().devicePixelRatioF(), m_ratio);
    }

    void registrationSequences_data()
    {
        const Registrations row; // m sets a manager, r a renderer, s shuts down
        row("nothing set", "s", "", "");
        row("manager first", "mA rR", "A+0 A+R", "A+0 A-");
        row("renderer first", "rR mA", "A+R", "A+0 A-");
        row("same again", "rR mA rR mA", "A+R", "A+0 A-");
        row("renderer replaced and taken", "rR mA rS r0", "A+R A+S A+0", "A+0 A-");
        row("manager replaced", "rR mA mB", "A+R A- B+R", "B+0 B-");
        row("manager taken", "rR mA m0", "A+R A-", "");
        row("manager set again", "rR mA m0 mA", "A+R A- A+R", "A+0 A-");
        row("shutdown twice", "rR mA s s", "A+R A+0 A- A+0 A-", "A+0 A-");
        row("renderer after shutdown", "rR mA s mA rR", "A+R A+0 A- A+R", "A+0 A-");
    }

    void registrationSequences()
    {
        const auto [steps, calls, callsOfDestructor] = Registrations::current();
        Scene s;
        QCOMPARE(quintptr(s.log.window), quintptr(s.view.winId()));
        const QHash<QString, DisplaySurfaceManagerInterface*> managers = {
            {"mA", &s.manager}, {"mB", &s.other}, {"m0", nullptr}};
        const QHash<QString, PlatformRendererInterface*> renderers = {
            {"rR", &s.log.first}, {"rS", &s.log.second}, {"r0", nullptr}};
        DisplaySurfaceManagerInterface* manager = nullptr;
        PlatformRendererInterface* renderer = nullptr;
        for (const QString& step : steps.split(' '))
        {
            if (step == "s")
            {
                s.view.shutdown();
                renderer = manager ? nullptr : renderer;
            }
            else if (step.startsWith('m'))
                s.view.SetDisplaySurfaceManagerInterface(manager = managers[step]);
            else
                s.view.SetPlatformRendererInterface(renderer = renderers[step]);
            QCOMPARE(s.view.GetPlatformRendererInterface(), renderer);
            QCOMPARE(s.view.GetViewId(), manager ? 7 : -1);
        }
        QCOMPARE(s.log.take(), calls);
        s.owned.reset();
        QCOMPARE(s.log.take(), callsOfDestructor);
    }

    // The window was destroyed before, as within a window that is being destroyed.
    void destructorMakesNoWindow()
    {
        struct View : QRenderWidget
        {
            using QWidget::destroy; // protected
        };
        Scene s;
        s.view.setParent(&s.parent);
        s.log.window = s.view.GetHWND();
        s.view.SetDisplaySurfaceManagerInterface(&s.manager);
        QCOMPARE(s.log.take(), QStringLiteral("A+0"));
        (s.view.*(&View::destroy))(true, true);
        s.owned.reset();
        QCOMPARE(s.log.take(), QStringLiteral("A+0 A-"));
    }

    void frameSequences()
    {
        Scene s;
        s.logSignals();
        s.view.SetPlatformRendererInterface(&s.log.first);
        s.view.SetDisplaySurfaceManagerInterface(&s.manager);
        QCOMPARE(s.log.take(), QStringLiteral("A+R"));
        const QString frame = "render viewUpdated deferredUpdate";

        QCOMPARE(s.paint(), frame); // no size yet
        s.resize(300, 200);
        QCOMPARE(s.log.take(), QString());
        QCOMPARE(s.paint(), QStringLiteral("resize"));
        QCOMPARE(s.paint(), frame);
        s.resize(300, 200);
        QCOMPARE(s.paint(), frame);
        s.resize(300, 201);
        QCOMPARE(s.paint(), QStringLiteral("resize"));
        s.resize(301, 201);
        s.resize(300, 201); // the surface's own size leaves the pending one
        QCOMPARE(s.paint(), QStringLiteral("resize"));

        s.view.setContinuousUpdate(true);
        s.resize(400, 300);
        QCOMPARE(s.paint(), "resize " + frame);
        QCOMPARE(s.paint(), frame);
        s.view.shutdown();
        QCOMPARE(s.log.take(), QStringLiteral("A+0 A-"));
        QCOMPARE(s.paint(), "resize " + frame); // the surface size was forgotten, the pending one was not
        QVERIFY(s.view.testAttribute(Qt::WA_PaintOnScreen));
    }

    void managersMayChangeWithinTheirCalls_data()
    {
        const Changes row;
        row("registered, taken", "A+R", false, "A+R A- B+R B+0 B-");
        row("registered, replaced", "A+R", true, "A+R A- B+R resize render viewUpdated deferredUpdate B+0 B-");
        row("resized, taken", "resize", false, "A+R resize A- B+R B+0 B-");
        row("resized, replaced", "resize", true, "A+R resize A- B+R render viewUpdated deferredUpdate B+0 B-");
        row("rendered, taken", "render", false, "A+R resize render A- viewUpdated deferredUpdate B+R B+0 B-");
        row("shut down, taken", "B+0", false, "A+R resize render viewUpdated deferredUpdate A- B+R B+0 B-");
    }

    void managersMayChangeWithinTheirCalls()
    {
        const auto [call, replaced, calls] = Changes::current();
        Scene s;
        s.logSignals();
        s.log.interruptedCall = call;
        s.log.interruption = [&s, next = replaced ? &s.other : nullptr]
        { s.view.SetDisplaySurfaceManagerInterface(next); };
        s.view.setContinuousUpdate(true);
        s.view.SetPlatformRendererInterface(&s.log.first);
        s.view.SetDisplaySurfaceManagerInterface(&s.manager);
        s.resize(300, 200);
        QString made = s.paint();
        s.view.SetDisplaySurfaceManagerInterface(&s.other);
        s.view.shutdown();
        QCOMPARE((made + ' ' + s.log.take()).simplified(), calls);
    }

    void resizedViewRendersAgain()
    {
        Scene s;
        s.view.SetDisplaySurfaceManagerInterface(&s.manager);
        s.view.resize(300, 200);
        s.view.show();
        QTRY_VERIFY(s.log.contains("render"));
        QCOMPARE(s.log.mid(0, 3), QStringList({"A+0", "resize", "render"}));
        s.log.clear();
        s.resize(310, 210);
        QCOMPARE(s.paint(), QStringLiteral("resize"));
        QTRY_COMPARE(s.log.join(' '), QStringLiteral("render"));

        QVERIFY(!s.view.findChild<QTimer*>());
        s.view.setContinuousUpdate(true);
        s.view.setContinuousUpdate(true);
        QCOMPARE(s.view.findChildren<QTimer*>().size(), 1);
        QCOMPARE(s.view.findChild<QTimer*>()->interval(), 1);
        s.log.clear();
        QTRY_VERIFY(s.log.count("render") > 10);
        s.view.setContinuousUpdate(false);
        QVERIFY(!s.view.findChild<QTimer*>());
    }

    // Through the window, as input comes from the system.
    void inputReachesTheHandler()
    {
        Scene s(true);
        s.parent.resize(200, 150);
        s.view.setGeometry(0, 0, 200, 150);
        s.parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&s.parent));
        QTRY_VERIFY(s.view.windowHandle()->isExposed());
        const QString at = m_ratio == 1 ? ",20,31" : ",30,46";
        const QPoint position(20, 31);
        QWindow* window = s.view.windowHandle();
        s.log.clear();

        QTest::mouseMove(window, position);
        QCOMPARE(s.log.take(), "move" + at);
        QTest::mousePress(window, Qt::RightButton, Qt::NoModifier, position);
        QTest::mouseRelease(window, Qt::RightButton, Qt::NoModifier, position);
        QCOMPARE(s.log.take(), QString("down,2%1 up,2%1").arg(at));
        QCOMPARE(s.parent.focusWidget(), &s.view);
        QTest::mouseDClick(window, Qt::LeftButton, Qt::NoModifier, position);
        QCOMPARE(s.log.take(), QString("down,1%1 up,1%1 double,1%1 up,1%1").arg(at));

        s.logSignals();
        PaintCounter paints(s.view);
        const auto sendEvent = [&](QEvent& event)
        {
            paints.buffered = 0;
            QApplication::sendEvent(&s.view, &event);
            QTRY_VERIFY(paints.buffered > 0); // as a frame is then wanted
            QVERIFY(event.isAccepted());
        };
        for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        {
            QKeyEvent key(type, Qt::Key_Q, Qt::NoModifier, 24, 0x71, 0);
            sendEvent(key);
        }
        QCOMPARE(s.log.take(), QStringLiteral("key,113,1,0 key,113,0,0 keyReleased,113"));

        const auto send = [&](QEvent::Type type, Qt::MouseButton button, QPointF place)
        {
            QMouseEvent event(type, place, QPointF(), button, button, Qt::NoModifier);
            sendEvent(event);
        };
        send(QEvent::MouseButtonPress, Qt::LeftButton, {10.7, 3.2});
        send(QEvent::MouseMove, Qt::NoButton, {-0.9, 5.5});
        send(QEvent::MouseButtonRelease, Qt::BackButton, {10.7, -3.6});
        send(QEvent::MouseButtonDblClick, Qt::MiddleButton, {0.9, 0.5});
        QCOMPARE(s.log.take(), m_ratio == 1 ? QString("down,1,10,3 move,0,5 up,8,10,-3 double,4,0,0")
                                            : QString("down,1,16,4 move,-1,8 up,8,16,-5 double,4,1,0"));

        s.view.SetHandleMouseInterface(nullptr);
        QTest::mouseClick(window, Qt::MiddleButton, Qt::NoModifier, position);
        QTest::keyClick(&s.view, Qt::Key_Shift);
        QCOMPARE(s.log.take(), QString("keyReleased,0"));
    }

    void wheelSendsOneNumberAndGoesOn_data()
    {
        const Wheels row;
        row("away", {0, 120}, {}, "wheel,120,0");
        row("towards, Shift and Control", {0, -120}, Qt::ShiftModifier | Qt::ControlModifier, "wheel,-120,5");
        row("sideways, Alt", {-120, 30}, Qt::AltModifier, "wheel,-120,2");
        row("slanted, Meta and keypad", {60, -60}, Qt::MetaModifier | Qt::KeypadModifier, "wheel,-60,0");
    }

    void wheelSendsOneNumberAndGoesOn()
    {
        const auto [angle, modifiers, call] = Wheels::current();
        Scene s(true);
        QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&s.view, &wheel);
        QCOMPARE(s.log.take(), call);
        QVERIFY(!wheel.isAccepted());
        QSpontaneKeyEvent::setSpontaneous(&wheel); // others do not go on to parents
        qApp->notify(&s.view, &wheel);
        QCOMPARE(s.log.take(), call + QString(" parent,%1").arg(QEvent::Wheel));
    }

    void messageIsDrawnIntoPixmaps()
    {
        QRenderWidget view;
        view.resize(250, 80);
        QVERIFY(showsMessage(view.grab().toImage(), m_ratio));
    }

    void messageIsOnTheScreen_data()
    {
        QTest::addColumn<QByteArray>("situation");
        for (const char* situation :
             {"window just shown", "added to a shown window", "tab opened later", "manager taken"})
            QTest::newRow(situation) << QByteArray(situation);
    }

    void messageIsOnTheScreen()
    {
        QFETCH(QByteArray, situation);
        if (m_ratio != 1)
            QSKIP("screenshots are taken unscaled");
        Log log;
        Manager manager("A", log);
        QWidget window;
        QTabWidget tabs(&window);
        QRenderWidget view;
        PaintCounter paints(view);
        window.resize(400, 300);
        tabs.resize(400, 300);
        tabs.addTab(new QWidget, "first");
        const bool isTab = situation == "tab opened later";
        if (isTab)
            tabs.addTab(&view, "view");
        if (isTab || situation == "added to a shown window")
        {
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            isTab ? tabs.setCurrentWidget(&view) : view.setParent(&window);
        }
        if (situation == "manager taken")
        {
            log.window = view.GetHWND();
            view.SetDisplaySurfaceManagerInterface(&manager);
        }
        view.resize(300, 200);
        view.show();
        if (situation == "manager taken")
        {
            QTRY_VERIFY(log.contains("render"));
            QCOMPARE(paints.buffered, 0);
            paints.onScreen = 0;
            view.SetDisplaySurfaceManagerInterface(nullptr);
            view.Update();
        }
        const auto screenshot = [&view]
        {
            const QPoint corner = view.mapToGlobal(QPoint());
            return view.screen()->grabWindow(0, corner.x(), corner.y(), view.width(), view.height()).toImage();
        };
        QTRY_VERIFY(showsMessage(screenshot(), m_ratio));
        QCOMPARE(paints.onScreen, 1);
        // The window system may have exposed the window more than once; paints that ask for the next one would be many.
        QTest::qWait(100);
        QVERIFY2(paints.buffered < 5, QByteArray::number(paints.buffered));
    }

    // Qt's own OpenGL refuses the window of a widget that is not.
    void windowIsFitForOpenGLWhereverItMoves()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("no OpenGL here");
        QWidget first;
        QWidget second;
        QRenderWidget view(&first);
        for (QWidget* parent : {&first, &second, static_cast<QWidget*>(nullptr), &first})
        {
            view.setParent(parent);
            view.show();
            view.window()->show();
            QVERIFY(QTest::qWaitForWindowExposed(view.window()) && view.windowHandle()->supportsOpenGL());
        }
    }

#if defined(Q_PROCESSOR_X86_64) && defined(Q_OS_UNIX)
    void operationsKeepTheirPositions()
    {
        Log log;
        Manager managerObject("A", log);
        Handler handlerObject(log);
        DisplaySurfaceManagerInterface* manager = &managerObject;
        BaseMouseHandler* handler = &handlerObject;
        callPosition(manager, 3, log.window, static_cast<PlatformRendererInterface*>(&log.first), -1);
        callPosition(manager, 5, log.window);
        callPosition(manager, 2, log.window);
        callPosition(manager, 1, log.window);
        QCOMPARE(callPosition(manager, 6, log.window), 7);
        for (int position : {1, 2, 3})
            callPosition(handler, position, 4, 5, 6);
        callPosition(handler, 4, 5, 6);
        callPosition(handler, 6, -120, 5);
        callPosition(handler, 7, 65u, true, 0);
        QCOMPARE(
            log.take(),
            QStringLiteral("A+R resize render A- down,4,5,6 up,4,5,6 double,4,5,6 move,5,6 wheel,-120,5 key,65,1,0"));
    }
#endif

private:
    qreal m_ratio = 1;
};

QTEST_MAIN(tst_RenderWidget)
#include "tst_renderwidget.moc"
