#include <Orvek/Host/ViewInput.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QHash>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QtMath>
#include <QtCore/QVector>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QPlatformSurfaceEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QScreen>
#include <QtGui/QWindow>

#include <utility>

using orvek::base::BaseMouseHandler;
using orvek::crossplatform::DisplaySurfaceManagerInterface;

namespace orvek::host
{
namespace
{
// Milliseconds. X11 repeats a key as a release and a press with the same time, and Qt hides the pair only if it has
// read both. So the release of a key held long enough to repeat waits for a press.
constexpr quint64 shortestDelay = 100;
constexpr int releaseWait = 10;

bool isTab(const QKeyEvent* event)
{
    return (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) &&
           !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

// Milliseconds, rounded up so that there are never more frames than refreshes.
int frameInterval(const QWidget* view)
{
    const QWindow* window = view->window()->windowHandle();
    const QScreen* screen = window ? window->screen() : QGuiApplication::primaryScreen();
    const qreal rate = screen ? screen->refreshRate() : 0.0;
    constexpr qreal usual = 60.0; // if the platform does not know
    return qMax(1, qCeil(1000.0 / (rate >= 1.0 ? rate : usual)));
}
} // namespace

struct ViewInput::Private final : BaseMouseHandler
{
    Private(ViewInput* input, QRenderWidget* widget, BaseMouseHandler* engine)
        : q(input), object(widget), handler(engine)
    {
        lateRelease.setSingleShot(true);
        lateRelease.setInterval(releaseWait);
        connect(&lateRelease, &QTimer::timeout, q, [this] { flush(); });
    }
    // Null as soon as its destructor has run, which is before Qt clears the pointer.
    QRenderWidget* view() const { return qobject_cast<QRenderWidget*>(object); }

    void MouseDown(int button, int x, int y) override
    {
        press(button, x, y);
        if (handler)
            handler->MouseDown(button, x, y);
    }
    void MouseDoubleClick(int button, int x, int y) override
    {
        press(button, x, y);
        if (handler)
            handler->MouseDoubleClick(button, x, y);
    }
    void MouseUp(int button, int x, int y) override
    {
        position = {x, y};
        const bool held = buttons.removeOne(button);
        if (handler && (held || !releasesHeld))
            handler->MouseUp(button, x, y);
    }
    void MouseMove(int x, int y) override
    {
        position = {x, y};
        if (handler)
            handler->MouseMove(x, y);
    }
    void MouseWheel(int delta, int modifiers) override
    {
        if (handler)
            handler->MouseWheel(delta, modifiers);
    }
    void KeyboardInput(unsigned int key, bool pressed, int reserved) override;

    void press(int button, int x, int y)
    {
        flush();
        position = {x, y};
        if (!buttons.contains(button))
            buttons << button;
    }
    bool filterView(QEvent* event);
    void flush();
    void release();
    void resume();
    void follow();
    void park();
    void unpark();
    void remake();
    void forgetWindow();
    void registerWindow();

    ViewInput* const q;
    const QPointer<QObject> object;
    BaseMouseHandler* handler;                         // not owned
    DisplaySurfaceManagerInterface* manager = nullptr; // not owned
    bool releasesHeld = true;
    bool omitsRepeats = true;
    bool passesTab = false;
    bool keepsWindow = true;

    QVector<int> buttons; // held, in the order of their presses
    QPoint position;      // of the pointer, in device pixels
    struct Key
    {
        uint code;     // as sent to the handler
        quint64 since; // time of the press in milliseconds
    };
    QHash<quint32, Key> keys; // held, by what distinguishes physical keys
    quint32 keyIdentity = 0;  // of the key event that the view is handling
    quint64 keyTime = 0;
    bool keyRepeats = false;
    QTimer lateRelease;
    bool isLate = false; // whether lateKey still has to be released
    quint32 lateKey = 0;
    quint64 lateTime = 0;
    bool hasWindow = true;                // false between the loss of the native window and the next one
    QTimer* timer = nullptr;              // a child of q; null unless updating continuously
    QVector<QPointer<QWidget>> ancestors; // up to the top level; their events are filtered like the view's
    std::unique_ptr<QWindow> lot;         // never shown; holds the native windows during a show
    QVector<QPointer<QWindow>> parked;
};

void ViewInput::Private::KeyboardInput(unsigned int key, bool pressed, int reserved)
{
    if (isLate && pressed && keyIdentity == lateKey && keyTime == lateTime)
    {
        isLate = false;
        return lateRelease.stop();
    }
    flush();
    const auto held = keys.constFind(keyIdentity);
    const bool isHeld = held != keys.constEnd();
    if (omitsRepeats && (keyRepeats || (pressed && isHeld)))
        return;
    if (pressed)
        keys.insert(keyIdentity, {key, keyTime});
    else if (isHeld)
    {
        if (omitsRepeats && keyTime >= held->since + shortestDelay)
        {
            isLate = true;
            lateKey = keyIdentity;
            lateTime = keyTime;
            return lateRelease.start();
        }
        const Key known = keys.take(keyIdentity);
        if (releasesHeld)
            key = known.code; // if Shift was pressed since, the platform reports another code
    }
    else if (releasesHeld)
        return;
    if (handler)
        handler->KeyboardInput(key, pressed, reserved);
}

void ViewInput::Private::flush()
{
    if (!std::exchange(isLate, false))
        return;
    lateRelease.stop();
    const Key key = keys.take(lateKey);
    if (handler)
        handler->KeyboardInput(key.code, false, 0);
    if (view())
        view()->Update();
}

void ViewInput::Private::release()
{
    isLate = false;
    lateRelease.stop();
    // The handler may open a dialog, which calls this function again.
    const QVector<int> oldButtons = std::exchange(buttons, {});
    const QHash<quint32, Key> oldKeys = std::exchange(keys, {});
    for (int button : oldButtons)
        if (handler)
            handler->MouseUp(button, position.x(), position.y());
    for (const Key& key : oldKeys)
        if (handler)
            handler->KeyboardInput(key.code, false, 0);
    if (view() && !(oldButtons.isEmpty() && oldKeys.isEmpty()))
        view()->Update();
}

void ViewInput::Private::resume()
{
    if (timer && !timer->isActive() && q->isSeen())
        timer->start(frameInterval(view()));
}

void ViewInput::Private::follow()
{
    for (const QPointer<QWidget>& widget : std::as_const(ancestors))
        if (widget)
            widget->removeEventFilter(q);
    ancestors.clear();
    for (QWidget* widget = view(); !widget->isWindow();)
    {
        widget = widget->parentWidget();
        widget->installEventFilter(q);
        ancestors << widget;
    }
}

// X11 cannot change some flags of an existing window, so Qt creates another one when it is shown again. All native
// windows in the old one are destroyed with it, unnoticed by Qt. So they are moved out for that moment.
void ViewInput::Private::park()
{
    const QWindow* window = view()->window()->windowHandle();
    if (!keepsWindow || !window || QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    const auto children = window->findChildren<QWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (children.isEmpty())
        return;
    lot = std::make_unique<QWindow>(window->screen());
    lot->create();
    for (QWindow* child : children)
    {
        child->setParent(lot.get());
        parked << child;
    }
}

void ViewInput::Private::unpark()
{
    if (parked.isEmpty())
        return;
    const auto windows = std::exchange(parked, {});
    for (const QPointer<QWindow>& window : windows)
        if (window && window->parent() == lot.get())
            window->setParent(view()->window()->windowHandle());
    lot.reset();
}

// For a window that exists but is not on the screen. The widget itself keeps its place in its parent.
void ViewInput::Private::remake()
{
    if (!keepsWindow || !view() || !view()->isVisible())
        return;
    view()->winId(); // creates a window if there is none
    // A top-level view's own window is replaced as described above, and its widget keeps the old handle.
    const bool isStale = view()->isWindow() && view()->windowHandle()->winId() != view()->internalWinId();
    if (!isStale && view()->windowHandle()->isVisible())
        return;
    const bool hadFocus = view()->hasFocus();
    view()->windowHandle()->destroy();
    view()->hide(); // already hidden, but Qt 6 would not show it again otherwise
    view()->show();
    if (hadFocus)
        view()->setFocus();
}

void ViewInput::Private::forgetWindow()
{
    if (!std::exchange(hasWindow, false))
        return;
    if (manager)
        view()->SetDisplaySurfaceManagerInterface(nullptr);
    Q_EMIT q->windowLost();
}

void ViewInput::Private::registerWindow()
{
    if (std::exchange(hasWindow, true))
        return;
    if (manager)
    {
        // The view reads its handle again only when its size changes. Without a manager, shutdown() only forgets the
        // last size.
        view()->shutdown();
        QResizeEvent resize(view()->size(), view()->size());
        QCoreApplication::sendEvent(view(), &resize);
        view()->SetDisplaySurfaceManagerInterface(manager);
    }
    Q_EMIT q->windowReplaced();
}

// Returns true if the view must not receive the event.
bool ViewInput::Private::filterView(QEvent* event)
{
    switch (event->type())
    {
    case QEvent::EnabledChange:
        if (view()->isEnabled())
            break;
        Q_FALLTHROUGH();
    case QEvent::FocusOut:
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
    case QEvent::Hide:
        if (releasesHeld)
            release();
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    {
        const auto* key = static_cast<QKeyEvent*>(event);
        keyIdentity = key->nativeScanCode() ? key->nativeScanCode() : quint32(key->key());
        keyTime = key->timestamp();
        keyRepeats = key->isAutoRepeat();
        if (!passesTab || event->type() == QEvent::KeyRelease || !isTab(key))
            break;
        // QWidget would move the focus instead of asking the view.
        KeyboardInput(key->nativeVirtualKey(), true, 0);
        view()->Update();
        return true;
    }
    case QEvent::Show:
        // Later, once the windows are on the screen.
        QMetaObject::invokeMethod(
            q, [this] { remake(); }, Qt::QueuedConnection);
        Q_FALLTHROUGH();
    case QEvent::Paint:
    case QEvent::Resize:
        resume();
        break;
    case QEvent::PlatformSurface:
        if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            forgetWindow();
        break;
    case QEvent::WinIdChange:
        if (view()->internalWinId())
            registerWindow();
        break;
    default:
        break;
    }
    return false;
}

ViewInput::ViewInput(QRenderWidget* view, BaseMouseHandler* handler, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(this, view, handler))
{
    view->SetHandleMouseInterface(d.get());
    view->installEventFilter(this);
    d->follow();
}

ViewInput::~ViewInput()
{
    d->release();
    if (d->view())
        d->view()->SetHandleMouseInterface(d->handler);
}

QRenderWidget* ViewInput::view() const
{
    return d->view();
}

BaseMouseHandler* ViewInput::handler() const
{
    return d->handler;
}

void ViewInput::setHandler(BaseMouseHandler* handler)
{
    if (handler == d->handler)
        return;
    d->release();
    d->handler = handler;
}

void ViewInput::setManager(DisplaySurfaceManagerInterface* manager)
{
    d->manager = manager;
    if (d->view())
        d->view()->SetDisplaySurfaceManagerInterface(manager);
}

bool ViewInput::releasesHeld() const
{
    return d->releasesHeld;
}

void ViewInput::setReleasesHeld(bool releases)
{
    d->releasesHeld = releases;
}

bool ViewInput::omitsRepeats() const
{
    return d->omitsRepeats;
}

void ViewInput::setOmitsRepeats(bool omits)
{
    d->omitsRepeats = omits;
}

bool ViewInput::passesTab() const
{
    return d->passesTab;
}

void ViewInput::setPassesTab(bool passes)
{
    d->passesTab = passes;
}

bool ViewInput::keepsWindow() const
{
    return d->keepsWindow;
}

void ViewInput::setKeepsWindow(bool keeps)
{
    d->keepsWindow = keeps;
}

bool ViewInput::isContinuousUpdate() const
{
    return d->timer;
}

void ViewInput::setContinuousUpdate(bool continuous)
{
    if (!d->view() || continuous == isContinuousUpdate())
        return;
    if (!continuous)
    {
        delete std::exchange(d->timer, nullptr);
        return;
    }
    d->view()->setContinuousUpdate(false);
    d->timer = new QTimer(this);
    d->timer->setTimerType(Qt::PreciseTimer);
    connect(d->timer, &QTimer::timeout, this,
            [this]
            {
                // Started again by events that the view receives when it returns.
                if (!isSeen())
                    return d->timer->stop();
                const int interval = frameInterval(d->view()); // the window may have moved to another screen
                if (interval != d->timer->interval())
                    d->timer->setInterval(interval);
                d->view()->Update();
            });
    d->resume();
}

bool ViewInput::isSeen() const
{
    if (!d->view() || !d->view()->isVisible() || d->view()->window()->isMinimized())
        return false;
    // A nested window is not notified when the outer one leaves the screen.
    for (const QWindow* window : {d->view()->windowHandle(), d->view()->window()->windowHandle()})
        if (!window || !window->isExposed())
            return false;
    return !d->view()->visibleRegion().isEmpty();
}

bool ViewInput::eventFilter(QObject* watched, QEvent* event)
{
    if (!d->view())
        return false;
    if (event->type() == QEvent::ParentChange)
        d->follow();
    if (watched == d->view())
        return d->filterView(event);
    if (watched == d->view()->window())
    {
        if (event->type() == QEvent::Show && !event->spontaneous())
            d->park();
        else if (event->type() == QEvent::ShowToParent)
            d->unpark();
    }
    return false;
}
} // namespace orvek::host
