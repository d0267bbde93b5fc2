#include "QRenderWidget.h"

#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>

#include <limits>

using orvek::base::BaseMouseHandler;
using orvek::crossplatform::DisplaySurfaceManagerInterface;
using orvek::crossplatform::PlatformRendererInterface;

namespace
{
constexpr int AnyViewId = -1;

QPointF localPosition(const QMouseEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position();
#else
    return event->localPos();
#endif
}

// To be called before the window is created, so that engines can draw on it with Qt's OpenGL. In Qt 5 all windows allow
// that.
void allowOpenGL(QWidget* widget)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    widget->setAttribute(Qt::WA_NativeWindow);
    widget->windowHandle()->setSurfaceType(QSurface::RasterGLSurface);
#else
    Q_UNUSED(widget)
#endif
}

int truncated(double coordinate)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(qBound(double(Limits::min()), coordinate, double(Limits::max())));
}

// Handlers expect one number: the axis that was turned further, the vertical one if they are equal.
int wheelDelta(const QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    return qAbs(angle.x()) > qAbs(angle.y()) ? angle.x() : angle.y();
}

int modifierBits(Qt::KeyboardModifiers modifiers)
{
    int bits = 0;
    if (modifiers & Qt::ShiftModifier)
        bits |= 1;
    if (modifiers & Qt::AltModifier)
        bits |= 2;
    if (modifiers & Qt::ControlModifier)
        bits |= 4;
    return bits;
}
} // namespace

QRenderWidget::QRenderWidget(QWidget* parent) : QWidget(parent)
{
    allowOpenGL(this);
    m_hwnd = readHandle();
    setWindowTitle(tr("Graphics"));
    setAttribute(Qt::WA_PaintOnScreen);
    setAttribute(Qt::WA_MouseTracking);
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
}

QRenderWidget::~QRenderWidget()
{
    // If Qt has destroyed the window, those of its ancestors may be gone, too: creating it again would then search for
    // them forever.
    detach(internalWinId() != 0);
}

HWND QRenderWidget::GetHWND()
{
    return m_hwnd;
}

PlatformRendererInterface* QRenderWidget::GetPlatformRendererInterface()
{
    return m_platformRenderer;
}

void QRenderWidget::SetPlatformRendererInterface(PlatformRendererInterface* renderer)
{
    if (renderer != m_platformRenderer)
    {
        m_platformRenderer = renderer;
        m_surfaceRegistered = false;
    }
    registerWindow();
}

void QRenderWidget::SetDisplaySurfaceManagerInterface(DisplaySurfaceManagerInterface* manager)
{
    if (m_displaySurfaceManager && m_displaySurfaceManager != manager)
    {
        if (m_hwnd)
            m_displaySurfaceManager->RemoveWindow(m_hwnd);
        m_surfaceRegistered = false;
    }
    m_displaySurfaceManager = manager;
    registerWindow();
}

void QRenderWidget::SetHandleMouseInterface(BaseMouseHandler* handler)
{
    m_mouseHandler = handler;
}

void QRenderWidget::setContinuousUpdate(bool continuous)
{
    if (continuous && !m_updateTimer)
    {
        m_updateTimer = new QTimer(this);
        connect(m_updateTimer, &QTimer::timeout, this, &QRenderWidget::Update);
        m_updateTimer->start(1);
    }
    else if (!continuous)
    {
        delete m_updateTimer;
        m_updateTimer = nullptr;
    }
}

int QRenderWidget::GetViewId() const
{
    return m_hwnd && m_displaySurfaceManager ? m_displaySurfaceManager->GetWindowViewId(m_hwnd) : -1;
}

void QRenderWidget::shutdown()
{
    detach(true);
}

QPaintEngine* QRenderWidget::paintEngine() const
{
    return nullptr;
}

void QRenderWidget::Update()
{
    update();
}

void QRenderWidget::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = devicePosition(event);
    if (m_mouseHandler)
        m_mouseHandler->MouseDown(int(event->button()), position.x(), position.y());
    Update();
}

void QRenderWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint position = devicePosition(event);
    if (m_mouseHandler)
        m_mouseHandler->MouseUp(int(event->button()), position.x(), position.y());
    Update();
}

void QRenderWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint position = devicePosition(event);
    if (m_mouseHandler)
        m_mouseHandler->MouseDoubleClick(int(event->button()), position.x(), position.y());
    Update();
}

void QRenderWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = devicePosition(event);
    if (m_mouseHandler)
        m_mouseHandler->MouseMove(position.x(), position.y());
    Update();
}

void QRenderWidget::wheelEvent(QWheelEvent* event)
{
    if (m_mouseHandler)
        m_mouseHandler->MouseWheel(wheelDelta(event), modifierBits(event->modifiers()));
    Update();
    event->ignore();
}

void QRenderWidget::keyPressEvent(QKeyEvent* event)
{
    if (m_mouseHandler)
        m_mouseHandler->KeyboardInput(event->nativeVirtualKey(), true, 0);
    Update();
}

void QRenderWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (m_mouseHandler)
        m_mouseHandler->KeyboardInput(event->nativeVirtualKey(), false, 0);
    Q_EMIT keyReleased(event);
    Update();
}

void QRenderWidget::paintEvent(QPaintEvent*)
{
    if (m_surfaceRegistered && m_displaySurfaceManager)
        paintFrame();
    else
        paintMessage();
}

void QRenderWidget::resizeEvent(QResizeEvent* event)
{
    const QSize size = event->size();
    if (size.width() != m_surfaceWidth || size.height() != m_surfaceHeight)
    {
        m_pendingWidth = size.width();
        m_pendingHeight = size.height();
        m_hwnd = readHandle();
    }
    QWidget::resizeEvent(event);
}

// Also creates the window if the widget has none.
HWND QRenderWidget::readHandle() const
{
    return reinterpret_cast<HWND>(winId());
}

void QRenderWidget::registerWindow()
{
    if (!m_hwnd || !m_displaySurfaceManager || m_surfaceRegistered)
        return;
    m_surfaceRegistered = true; // before the call, during which the host may remove the manager again
    m_displaySurfaceManager->AddWindow(m_hwnd, m_platformRenderer, AnyViewId);
}

// If hasWindow is false, m_hwnd is the handle of the destroyed window.
void QRenderWidget::detach(bool hasWindow)
{
    m_surfaceRegistered = false;
    if (m_displaySurfaceManager)
    {
        SetPlatformRendererInterface(nullptr);
        if (hasWindow)
            m_hwnd = readHandle();
        if (m_hwnd && m_displaySurfaceManager)
            m_displaySurfaceManager->RemoveWindow(m_hwnd);
    }
    m_surfaceWidth = 0;
    m_surfaceHeight = 0;
}

QPoint QRenderWidget::devicePosition(const QMouseEvent* event) const
{
    const QPointF position = localPosition(event) * devicePixelRatioF();
    return {truncated(position.x()), truncated(position.y())};
}

void QRenderWidget::paintFrame()
{
    m_hwnd = readHandle();
    if (m_pendingWidth != m_surfaceWidth || m_pendingHeight != m_surfaceHeight)
    {
        m_surfaceWidth = m_pendingWidth;
        m_surfaceHeight = m_pendingHeight;
        if (m_hwnd)
            m_displaySurfaceManager->ResizeSurface(m_hwnd);
        if (!m_updateTimer)
        {
            Update();
            return;
        }
        if (!m_displaySurfaceManager) // removed by the host during ResizeSurface()
            return;
    }
    m_displaySurfaceManager->Render(m_hwnd);
    Q_EMIT viewUpdated();
    Q_EMIT deferredUpdate();
}

void QRenderWidget::paintMessage()
{
    const bool wasOnScreen = testAttribute(Qt::WA_PaintOnScreen);
    setAttribute(Qt::WA_PaintOnScreen, false);
    // A paint that began with the attribute on can only paint on a redirected device; the next paint finds it off.
    if (wasOnScreen && !redirected(nullptr))
    {
        Update();
        return;
    }
    QPainter painter(this);
    const QColor grey(125, 125, 125, 255);
    painter.setBrush(QBrush(grey, Qt::SolidPattern));
    painter.setPen(grey);
    painter.drawRect(0, 0, width(), height());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QColor(255, 224, 0, 255));
    painter.drawText(16, 32, QStringLiteral("Renderer is not enabled"));
}
