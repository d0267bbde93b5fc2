#include "snippets.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtGui/QBackingStore>
#include <QtGui/QPainter>
#include <QtGui/QVector3D>
#include <QtGui/QWindow>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QVBoxLayout>

#include <cmath>
#include <iterator>
#include <map>

//! [renderer]
// A lit ball, drawn pixel by pixel.
class BallRenderer final : public orvek::crossplatform::PlatformRendererInterface
{
public:
    void turnLight(float angle) { m_angle += angle; }
    QImage draw(QSize size) const
    {
        const QVector3D light = QVector3D(std::cos(m_angle), -0.8f, 0.9f).normalized();
        const float radius = 0.36f * float(qMin(size.width(), size.height()));
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
        {
            auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
            const int background = 40 + 40 * y / size.height();
            for (int x = 0; x < size.width(); ++x)
            {
                const float u = (float(x) - 0.5f * float(size.width())) / radius;
                const float v = (float(y) - 0.5f * float(size.height())) / radius;
                const float depth = 1.0f - u * u - v * v;
                pixels[x] = depth < 0.0f ? qRgb(background, background, background + 8)
                                         : shade(QVector3D::dotProduct(light, QVector3D(u, v, std::sqrt(depth))));
            }
        }
        return image;
    }

private:
    static QRgb shade(float cosine)
    {
        const float brightness = 0.12f + 0.88f * qMax(0.0f, cosine);
        return qRgb(int(240 * brightness), int(190 * brightness), int(90 * brightness));
    }

    float m_angle = 2.2f;
};
//! [renderer]

//! [manager]
// Draws with Qt's own surfaces; an engine would keep a swap chain for each window.
class BallManager final : public orvek::crossplatform::DisplaySurfaceManagerInterface
{
public:
    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int) override
    {
        // Also called for a known window, with another renderer or with null.
        m_renderers[window] = static_cast<BallRenderer*>(renderer);
    }
    void RemoveWindow(HWND window) override
    {
        m_renderers.erase(window); // may be called twice
    }
    void ResizeSurface(HWND) override {} // not called on a second manager, so Render() asks for the size
    void Render(HWND window) override
    {
        const auto found = m_renderers.find(window);
        if (found == m_renderers.end() || !found->second)
            return; // also called for windows that were removed or recreated
        QWindow* surface = QWidget::find(WId(window))->windowHandle();
        QImage frame = found->second->draw(surface->size() * surface->devicePixelRatio());
        frame.setDevicePixelRatio(surface->devicePixelRatio());
        const QRect area(QPoint(), surface->size());
        QBackingStore store(surface);
        store.resize(area.size());
        store.beginPaint(area);
        QPainter(store.paintDevice()).drawImage(0, 0, frame);
        store.endPaint();
        store.flush(area);
    }
    int GetWindowViewId(HWND window) override
    {
        return int(std::distance(m_renderers.begin(), m_renderers.find(window)));
    }

private:
    std::map<HWND, BallRenderer*> m_renderers; // not owned; null draws nothing
};
//! [manager]

//! [mouse]
// Turns the light while the left button is held.
class LightHandler final : public orvek::base::BaseMouseHandler
{
public:
    explicit LightHandler(BallRenderer* renderer) : m_renderer(renderer) {}
    void MouseDown(int button, int x, int) override
    {
        m_held = button == int(Qt::LeftButton);
        m_x = x;
    }
    void MouseUp(int, int, int) override { m_held = false; }
    void MouseDoubleClick(int button, int x, int y) override
    {
        MouseDown(button, x, y); // the second press of a double click is only reported here
    }
    void MouseMove(int x, int) override
    {
        if (m_held)
            m_renderer->turnLight(0.01f * float(m_x - x)); // the widget asks for a frame after each event
        m_x = x;
    }
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int, bool, int) override {}

private:
    BallRenderer* const m_renderer; // not owned
    bool m_held = false;
    int m_x = 0;
};
//! [mouse]

//! [owner]
// Owns the engine's objects and the view on them.
class View final : public QWidget
{
public:
    View() : m_mouse(&m_renderer)
    {
        auto* rows = new QVBoxLayout(this);
        rows->setContentsMargins(0, 0, 0, 0);
        rows->addWidget(m_view = new QRenderWidget(this));
        // Before the widget is first shown.
        m_view->SetPlatformRendererInterface(&m_renderer);
        m_view->SetDisplaySurfaceManagerInterface(&m_manager);
        m_view->SetHandleMouseInterface(&m_mouse);
    }
    ~View() override
    {
        delete m_view; // before the engine's objects: it removes its window from the manager
    }

private:
    BallRenderer m_renderer;
    BallManager m_manager;
    LightHandler m_mouse;
    QRenderWidget* m_view = nullptr;
};
//! [owner]

QWidget* renderWidget()
{
    return new View;
}

QWidget* renderWidgetWithoutEngine()
{
    return new QRenderWidget;
}

// The layout belongs to a frame that is already in its window.
void addViewWithoutNativeAncestors(QLayout* rows)
{
    //! [native]
    auto* view = new QRenderWidget; // no parent yet, as the constructor creates the window
    view->setAttribute(Qt::WA_DontCreateNativeAncestors);
    rows->addWidget(view); // everything around it is in its window already
    //! [native]
}

//! [onTop]
void setAlwaysOnTop(QMainWindow* window, bool onTop)
{
    QWidget* central = window->takeCentralWidget(); // includes the view
    window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    window->show();
    window->setCentralWidget(central);
}
//! [onTop]
