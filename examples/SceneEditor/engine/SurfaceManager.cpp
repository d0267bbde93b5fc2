#include <examples/SceneEditor/engine/SurfaceManager.h>

#include <examples/SceneEditor/engine/SceneRenderer.h>

#include <QtCore/QElapsedTimer>
#include <QtGui/QBackingStore>
#include <QtGui/QGuiApplication>
#include <QtGui/QOffscreenSurface>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFramebufferObject>
#include <QtGui/QOpenGLFunctions>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

namespace sceneeditor
{
namespace
{
constexpr double slowFrame = 50.0; // milliseconds; slower ones are felt when dragging
constexpr int draftPause = 250;    // milliseconds between frames that count as moving

QWindow* surfaceOf(HWND window)
{
    const QWidget* widget = QWidget::find(window);
    return widget != nullptr ? widget->windowHandle() : nullptr;
}

QSize pixelSize(const QWindow& window)
{
    return window.size() * window.devicePixelRatio();
}

// The widget itself cannot paint while it is left to the engine, so the message goes to the window directly.
void paintMessage(QWindow* window, const QString& message)
{
    if (window == nullptr || window->surfaceType() == QSurface::OpenGLSurface || window->handle() == nullptr ||
        window->size().isEmpty())
        return;
    const QRect area(QPoint(0, 0), window->size());
    QBackingStore store(window);
    store.resize(area.size());
    store.beginPaint(area);
    {
        QPainter painter(store.paintDevice());
        painter.fillRect(area, QColor(58, 62, 69));
        painter.setPen(QColor(235, 235, 235));
        painter.drawText(area.adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, message);
    }
    store.endPaint();
    store.flush(area);
}
} // namespace

SurfaceManager::SurfaceManager(QObject* parent) : QObject(parent)
{
    m_refine.setSingleShot(true);
    m_refine.setInterval(draftPause);
    connect(&m_refine, &QTimer::timeout, this, &SurfaceManager::refine);
}

SurfaceManager::~SurfaceManager()
{
    const QList<HWND> windows = m_views.keys();
    for (HWND window : windows)
        RemoveWindow(window);
}

void SurfaceManager::RemoveWindow(HWND window)
{
    const auto it = m_views.find(window);
    if (it == m_views.end())
        return;
    SceneRenderer* const renderer = it->renderer;
    m_views.erase(it);
    dropRenderer(renderer);
    if (m_views.isEmpty())
        releaseContext();
}

void SurfaceManager::Render(HWND window)
{
    const auto it = m_views.find(window);
    QWindow* const surface = surfaceOf(window);
    if (it == m_views.end() || surface == nullptr)
        return;
    it->size = pixelSize(*surface);
    if (it->size.isEmpty())
        return;
    QElapsedTimer timer;
    timer.start();
    if (!prepareContext(*it, window, surface))
    {
        paintMessage(surface, it->error);
        return;
    }
    const bool moving = it->sinceFrame.isValid() && it->sinceFrame.elapsed() < draftPause;
    const bool draft = it->renderer != nullptr && moving && !it->refining && it->smoothTime > slowFrame;
    it->draft = draft;
    const GLuint target = m_context->defaultFramebufferObject();
    if (it->renderer == nullptr)
    {
        QOpenGLFunctions* const gl = m_context->functions();
        gl->glBindFramebuffer(GL_FRAMEBUFFER, target);
        gl->glClearColor(0.23f, 0.24f, 0.27f, 1.0f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
    }
    else if (!it->renderer->draw(it->size, target, draft))
    {
        fail(*it, window, it->renderer->errorText());
        m_context->doneCurrent();
        paintMessage(surface, it->error);
        return;
    }
    m_context->swapBuffers(surface);
    it->frameTime = double(timer.nsecsElapsed()) / 1.0e6;
    // The very first frame also compiles shaders and uploads meshes, which says nothing about the next.
    if (!draft && it->sinceFrame.isValid())
        it->smoothTime = it->frameTime;
    it->refining = false;
    it->sinceFrame.start();
    if (draft)
        m_refine.start();
}

void SurfaceManager::AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int viewId)
{
    if (window == 0)
        return;
    auto it = m_views.find(window);
    if (it == m_views.end())
    {
        it = m_views.insert(window, View());
        it->id = viewId >= 0 ? viewId : m_nextId++;
    }
    SceneRenderer* const old = it->renderer;
    it->renderer = static_cast<SceneRenderer*>(renderer);
    if (old != it->renderer)
        dropRenderer(old);
}

void SurfaceManager::ResizeSurface(HWND window)
{
    const auto it = m_views.find(window);
    const QWindow* const surface = surfaceOf(window);
    if (it != m_views.end() && surface != nullptr)
        it->size = pixelSize(*surface);
}

int SurfaceManager::GetWindowViewId(HWND window)
{
    const auto it = m_views.constFind(window);
    return it != m_views.constEnd() ? it->id : -1;
}

QString SurfaceManager::errorText(HWND window) const
{
    return m_views.value(window).error;
}

QImage SurfaceManager::grabFrame(HWND window)
{
    const auto it = m_views.find(window);
    const QWindow* const surface = surfaceOf(window);
    if (it == m_views.end() || it->renderer == nullptr || surface == nullptr)
        return QImage();
    const QSize size = pixelSize(*surface);
    if (size.isEmpty() || !prepareContext(*it, window, nullptr))
        return QImage();
    QImage image;
    {
        QOpenGLFramebufferObject frame(size);
        if (!it->renderer->draw(size, frame.handle()))
            fail(*it, window, it->renderer->errorText());
        else
            image = frame.toImage().convertToFormat(QImage::Format_RGB32);
    }
    m_context->doneCurrent();
    image.setDevicePixelRatio(surface->devicePixelRatio());
    return image;
}

QString SurfaceManager::graphicsName() const
{
    return m_graphicsName;
}

double SurfaceManager::frameTime(HWND window) const
{
    return m_views.value(window).frameTime;
}

// Makes the context current on the window, or on the offscreen surface where there is none.
bool SurfaceManager::prepareContext(View& view, HWND window, QWindow* surface)
{
    if (!view.error.isEmpty())
        return false;
    QString error = m_contextError;
    if (!m_context && error.isEmpty() && !createContext(&error))
        m_contextError = error;
    if (m_context)
    {
        QSurface* const target = surface != nullptr ? static_cast<QSurface*>(surface) : m_offscreen.get();
        if (m_context->makeCurrent(target))
            return true;
        error = tr("OpenGL cannot draw to this window");
    }
    fail(view, window, error);
    return false;
}

bool SurfaceManager::createContext(QString* error)
{
    // These plugins have windows only in name: contexts of the system cannot draw to them.
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
    {
        *error = tr("OpenGL cannot draw to the windows of the platform \"%1\"").arg(platform);
        return false;
    }
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setVersion(3, 3);
    format.setSwapInterval(0); // several windows would wait one after the other
    auto context = std::make_unique<QOpenGLContext>();
    context->setFormat(format);
    if (!context->create())
    {
        *error = tr("OpenGL is not available: no context could be created");
        return false;
    }
    auto offscreen = std::make_unique<QOffscreenSurface>();
    offscreen->setFormat(context->format());
    offscreen->create();
    if (!offscreen->isValid() || !context->makeCurrent(offscreen.get()))
    {
        *error = tr("OpenGL is not available: the context cannot be used");
        return false;
    }
    const auto* name = reinterpret_cast<const char*>(context->functions()->glGetString(GL_RENDERER));
    m_graphicsName = QString::fromLatin1(name);
    const QSurfaceFormat got = context->format();
    if (context->isOpenGLES() || got.version() < qMakePair(3, 3))
    {
        *error = tr("OpenGL 3.3 is needed; \"%1\" has %2.%3")
                     .arg(m_graphicsName)
                     .arg(got.majorVersion())
                     .arg(got.minorVersion());
        context->doneCurrent();
        return false;
    }
    m_context = std::move(context);
    m_offscreen = std::move(offscreen);
    return true;
}

void SurfaceManager::dropRenderer(SceneRenderer* renderer)
{
    for (const View& view : qAsConst(m_views))
    {
        if (view.renderer == renderer)
            return;
    }
    if (renderer == nullptr || !m_context)
        return;
    // The window may be gone already; the offscreen surface is always there.
    if (m_context->makeCurrent(m_offscreen.get()))
    {
        renderer->releaseGraphics();
        m_context->doneCurrent();
    }
}

void SurfaceManager::releaseContext()
{
    m_context.reset();
    m_offscreen.reset();
    m_contextError.clear();
}

void SurfaceManager::refine()
{
    for (auto it = m_views.begin(); it != m_views.end(); ++it)
    {
        QWidget* const widget = QWidget::find(it.key());
        if (!it->draft || widget == nullptr)
            continue;
        it->refining = true;
        widget->update();
    }
}

void SurfaceManager::fail(View& view, HWND window, const QString& text)
{
    view.error = text;
    Q_EMIT errorOccurred(window, text);
}
} // namespace sceneeditor
