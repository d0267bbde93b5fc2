#include <examples/SceneEditor/engine/SurfaceManager.h>

#include <examples/SceneEditor/engine/GpuResources.h>
#include <examples/SceneEditor/engine/SceneRenderer.h>

#include <QOpenGLFramebufferObject>
#include <QtCore/QElapsedTimer>
#include <QtGui/QBackingStore>
#include <QtGui/QGuiApplication>
#include <QtGui/QOffscreenSurface>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

#include <utility>

namespace sceneeditor
{
namespace
{
constexpr double SlowFrame = 40.0; // milliseconds; slower ones are felt when dragging
constexpr int LongestSlice = 40;   // milliseconds of a frame in which the window cannot respond
constexpr int MovingPause = 250;   // milliseconds between frames that count as moving
constexpr int RestingPause = 120;  // milliseconds without a frame after which a draft is drawn sharply

QWindow* surfaceOf(HWND window)
{
    const QWidget* widget = QWidget::find(WId(window));
    return widget ? widget->windowHandle() : nullptr;
}

QSize pixelSize(const QWindow& window)
{
    return window.size() * window.devicePixelRatio();
}

// The widget itself cannot paint while it is left to the engine, so the message goes to the window directly.
void paintMessage(QWindow* window, const QString& message)
{
    if (!window || window->surfaceType() == QSurface::OpenGLSurface || !window->handle() || window->size().isEmpty())
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
    if (it == m_views.end() || !surface)
        return;
    it->size = pixelSize(*surface);
    if (it->size.isEmpty())
        return;
    QElapsedTimer timer;
    timer.start();
    if (!prepareContext(*it, surface))
    {
        paintMessage(surface, it->error);
        return;
    }
    const GLuint target = m_context->defaultFramebufferObject();
    if (!it->renderer)
    {
        QOpenGLFunctions* const gl = m_context->functions();
        gl->glBindFramebuffer(GL_FRAMEBUFFER, target);
        gl->glClearColor(0.23f, 0.24f, 0.27f, 1.0f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        m_context->swapBuffers(surface);
        return;
    }
    SceneRenderer& renderer = *it->renderer;
    const bool isKept = renderer.isKept(it->size);
    const auto drawn = renderer.draw(*m_gpu, it->size, target, !isKept && it->wantsDraft(), LongestSlice);
    it->refining = false;
    if (drawn == SceneRenderer::Drawn::Failed)
    {
        it->error = renderer.errorText();
        m_context->doneCurrent();
        paintMessage(surface, it->error);
        return;
    }
    if (drawn == SceneRenderer::Drawn::Wholly)
        m_context->swapBuffers(surface);
    it->spent += double(timer.nsecsElapsed()) / 1.0e6;
    // The rest, or a frame with later changes, follows after the window's other events.
    if (drawn == SceneRenderer::Drawn::Partly || renderer.isOutdated())
        QWidget::find(WId(window))->update();
    if (drawn == SceneRenderer::Drawn::Wholly)
        endFrame(*it, isKept);
}

bool SurfaceManager::View::wantsDraft() const
{
    const bool moving = sinceFrame.isValid() && sinceFrame.elapsed() < MovingPause;
    // Both of the last two: a single slow frame may have uploaded meshes or compiled shaders.
    const bool slow = qMin(sharpTimes[0], sharpTimes[1]) > SlowFrame;
    // A change before a slow frame is ready counts as moving, too.
    const bool overtaken = renderer->isUnderWay() && renderer->isOutdated();
    return !refining && ((moving && slow) || overtaken);
}

void SurfaceManager::endFrame(View& view, bool wasKept)
{
    const double spent = std::exchange(view.spent, 0.0);
    view.draft = view.renderer->isDraft();
    view.sinceFrame.start();
    if (!view.draft && !wasKept)
    {
        view.sharpTimes[0] = view.sharpTimes[1];
        view.sharpTimes[1] = spent;
    }
    if (view.draft && !m_refine.isActive())
        m_refine.start(RestingPause);
}

void SurfaceManager::AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int viewId)
{
    if (!window)
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
    if (it != m_views.end() && surface)
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
    if (it == m_views.end() || !it->renderer || !surface)
        return QImage();
    const QSize size = pixelSize(*surface);
    if (size.isEmpty() || !prepareContext(*it, nullptr))
        return QImage();
    QImage image;
    {
        QOpenGLFramebufferObject frame(size);
        if (it->renderer->draw(*m_gpu, size, frame.handle()) == SceneRenderer::Drawn::Failed)
            it->error = it->renderer->errorText();
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

// Makes the context current on the window, or on the offscreen surface where there is none.
bool SurfaceManager::prepareContext(View& view, QWindow* surface)
{
    if (!view.error.isEmpty())
        return false;
    QString error = m_contextError;
    if (!m_context && error.isEmpty() && !createContext(&error))
        m_contextError = error;
    if (m_context)
    {
        QSurface* const target = surface ? static_cast<QSurface*>(surface) : m_offscreen.get();
        if (m_context->makeCurrent(target))
            return true;
        error = tr("OpenGL cannot draw to this window");
    }
    view.error = error;
    return false;
}

bool SurfaceManager::createContext(QString* error)
{
    // These platforms have no real windows that an OpenGL context could draw to.
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
    format.setSwapInterval(0); // otherwise several windows would wait one after the other
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
    m_gpu = GpuResources::create(error);
    if (!m_gpu)
    {
        context->doneCurrent();
        return false;
    }
    m_context = std::move(context);
    m_offscreen = std::move(offscreen);
    return true;
}

void SurfaceManager::dropRenderer(SceneRenderer* renderer)
{
    for (const View& view : std::as_const(m_views))
    {
        if (view.renderer == renderer)
            return;
    }
    if (!renderer || !m_context)
        return;
    // The window may be gone already; the offscreen surface is always there.
    if (m_context->makeCurrent(m_offscreen.get()))
    {
        renderer->releaseGraphics(*m_gpu);
        m_context->doneCurrent();
    }
}

void SurfaceManager::releaseContext()
{
    if (m_context && m_context->makeCurrent(m_offscreen.get()))
        m_gpu.reset();
    m_context.reset();
    m_offscreen.reset();
    m_contextError.clear();
}

void SurfaceManager::refine()
{
    qint64 wait = 0; // milliseconds until a view that still moves could rest
    for (auto it = m_views.begin(); it != m_views.end(); ++it)
    {
        QWidget* const widget = QWidget::find(WId(it.key()));
        if (!it->draft || !widget)
            continue;
        const qint64 left = RestingPause - it->sinceFrame.elapsed();
        wait = qMax(wait, left);
        if (left > 0)
            continue;
        it->refining = true;
        widget->update();
    }
    if (wait > 0)
        m_refine.start(int(wait));
}
} // namespace sceneeditor
