#pragma once

#include <examples/Screenshot.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QtMath>
#include <QtGui/QGuiApplication>
#include <QtGui/QMatrix4x4>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMainWindow>

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

// Shared by the examples with engines: the object, the camera that orbits it, and a window with two views. So each
// example shows its engine and nothing else.

struct Mesh
{
    struct Vertex
    {
        QVector3D position;
        QVector3D normal; //!< unit length
    };
    std::vector<Vertex> vertices;
    std::vector<quint32> indices; //!< three for each triangle, counter-clockwise seen from outside
};

//! A knotted tube within 1.3 of the origin. It differs from all its mirror images, so a flipped picture is noticed.
inline Mesh makeKnot()
{
    constexpr int rings = 240;
    constexpr int sides = 24;
    constexpr float radius = 0.24f;
    const auto centre = [](float t)
    {
        return QVector3D(std::sin(t) + 2.0f * std::sin(2.0f * t), std::cos(t) - 2.0f * std::cos(2.0f * t),
                         -1.2f * std::sin(3.0f * t)) /
               3.0f;
    };
    Mesh mesh;
    for (int ring = 0; ring < rings; ++ring)
    {
        const float t = float(2.0 * M_PI) * float(ring) / float(rings);
        const QVector3D here = centre(t);
        const QVector3D along = (centre(t + 0.001f) - centre(t - 0.001f)).normalized();
        const QVector3D side = QVector3D::crossProduct(along, here).normalized();
        const QVector3D up = QVector3D::crossProduct(side, along);
        for (int i = 0; i < sides; ++i)
        {
            const float angle = float(2.0 * M_PI) * float(i) / float(sides);
            const QVector3D normal = side * std::cos(angle) - up * std::sin(angle);
            mesh.vertices.push_back({here + radius * normal, normal});
            const auto index = [&](int r, int s) { return quint32((r % rings) * sides + s % sides); };
            for (const auto& corner : {index(ring, i), index(ring, i + 1), index(ring + 1, i), index(ring + 1, i),
                                       index(ring, i + 1), index(ring + 1, i + 1)})
                mesh.indices.push_back(corner);
        }
    }
    return mesh;
}

//! One view of the knot: its colour and the camera. Dragging with the left button turns the camera, the wheel moves it,
//! and a double click resets it.
class OrbitView final : public orvek::crossplatform::PlatformRendererInterface, public orvek::base::BaseMouseHandler
{
public:
    static constexpr float fieldOfView = 35.0f; // degrees, vertical
    static constexpr float nearest = 0.5f;      // anything closer to the eye, or beyond farthest, is cut off
    static constexpr float farthest = 50.0f;

    explicit OrbitView(const QVector3D& colour) : m_colour(colour) {}

    QVector3D colour() const { return m_colour; } //!< red, green, blue; 0 to 1
    QVector3D eye() const
    {
        const float a = qDegreesToRadians(m_azimuth);
        const float e = qDegreesToRadians(m_elevation);
        return m_distance * QVector3D(std::sin(a) * std::cos(e), std::sin(e), std::cos(a) * std::cos(e));
    }
    //! From the world to the clip space of OpenGL: y up, depth from -1 to 1.
    QMatrix4x4 matrix(float widthByHeight) const
    {
        QMatrix4x4 result;
        result.perspective(fieldOfView, widthByHeight, nearest, farthest);
        result.lookAt(eye(), QVector3D(), QVector3D(0.0f, 1.0f, 0.0f));
        return result;
    }

    void MouseDown(int button, int x, int y) override
    {
        if (button == Qt::LeftButton)
            m_dragging = true;
        m_last = QPoint(x, y);
    }
    void MouseUp(int button, int, int) override
    {
        if (button == Qt::LeftButton)
            m_dragging = false;
    }
    void MouseDoubleClick(int, int, int) override
    {
        m_azimuth = 30.0f;
        m_elevation = 18.0f;
        m_distance = 6.0f;
    }
    void MouseMove(int x, int y) override
    {
        if (m_dragging)
        {
            m_azimuth -= 0.4f * float(x - m_last.x());
            m_elevation = qBound(-89.0f, m_elevation + 0.4f * float(y - m_last.y()), 89.0f);
        }
        m_last = QPoint(x, y);
    }
    void MouseWheel(int delta, int) override
    {
        m_distance = qBound(2.0f, m_distance * std::pow(0.9f, float(delta) / 120.0f), 40.0f);
    }
    void KeyboardInput(unsigned int, bool, int) override {}

private:
    const QVector3D m_colour;
    float m_azimuth = 30.0f;   // degrees
    float m_elevation = 18.0f; // degrees
    float m_distance = 6.0f;
    QPoint m_last; // device pixels
    bool m_dragging = false;
};

//! A manager that reports what it draws with, or why it cannot.
class Engine : public orvek::crossplatform::DisplaySurfaceManagerInterface
{
public:
    //! The direction towards the light of all views, from the origin; unit length.
    static QVector3D lightDirection() { return QVector3D(-0.5f, 0.7f, 0.6f).normalized(); }
    static constexpr std::array<float, 3> background{0.125f, 0.133f, 0.157f};

    QString device() const { return m_device; } //!< empty before the first frame
    QString error() const { return m_error; }   //!< empty unless nothing can be drawn any more

protected:
    ~Engine() = default;

    QString m_device;
    QString m_error;
};

//! Two views of one engine in docks, which can be detached and stacked.
class EngineWindow final : public QMainWindow
{
public:
    //! The engine is not owned. It must outlive the window or be removed from it with setEngine(nullptr).
    explicit EngineWindow(Engine* engine)
        : m_views{{{this, QStringLiteral("Copper"), QVector3D(0.85f, 0.5f, 0.3f)},
                   {this, QStringLiteral("Sea"), QVector3D(0.3f, 0.6f, 0.75f)}}}
    {
        setDockNestingEnabled(true);
        setEngine(engine);
        for (View& view : m_views)
            addDockWidget(Qt::TopDockWidgetArea, view.dock);
        resize(960, 540);
    }
    ~EngineWindow() override
    {
        setEngine(nullptr); // before the renderers go
    }
    void setEngine(Engine* engine)
    {
        for (View& view : m_views)
        {
            view.widget->disconnect(this);
            view.input->setManager(engine);
            if (engine)
                connect(view.widget, &QRenderWidget::viewUpdated, this, [this, engine] { report(*engine); });
        }
    }

    struct View
    {
        View(QMainWindow* window, const QString& name, const QVector3D& colour)
            : scene(std::make_unique<OrbitView>(colour)),
              dock(new QDockWidget(name, window)),
              widget(new QRenderWidget(dock)),
              input(new orvek::host::ViewInput(widget, scene.get(), widget))
        {
            dock->setObjectName(name);
            dock->setWidget(widget);
            widget->setMinimumSize(120, 90);
            widget->SetPlatformRendererInterface(scene.get());
        }
        Q_DISABLE_COPY(View)

        std::unique_ptr<OrbitView> scene;
        QDockWidget* dock; // a child of the window; it owns the rest
        QRenderWidget* widget;
        orvek::host::ViewInput* input;
    };
    View& view(int index) { return m_views.at(size_t(index)); }

private:
    void report(const Engine& engine)
    {
        setWindowTitle(QStringLiteral("%1 - %2").arg(QCoreApplication::applicationName(), engine.device()));
        if (engine.error().isEmpty() || m_failed)
            return;
        m_failed = true; // the other view would report the same
        std::fprintf(stderr, "%s: %s\n", qPrintable(QCoreApplication::applicationName()), qPrintable(engine.error()));
        QCoreApplication::exit(1);
    }

    std::array<View, 2> m_views;
    bool m_failed = false;
};

//! The main() of an example. With "--screenshot FILE" it saves a picture and ends, with "--frames" it prints the frames
//! per second of the first view and ends.
template <typename AnyEngine>
int runEngine(int argc, char** argv)
{
    // What this engine needs. Wayland has an X server too, and Qt 5 never exposes nested views on Wayland itself.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    // Otherwise every widget beside a view has a native window, too.
    QApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
#endif
    QApplication application(argc, argv);
    AnyEngine engine; // outlives the widgets
    EngineWindow window(&engine);
    window.show();
    takeScreenshotOnRequest(&window);
    int frames = 0;
    if (QCoreApplication::arguments().contains(QStringLiteral("--frames")))
    {
        constexpr int seconds = 5;
        window.view(1).dock->hide();
        window.view(0).widget->setContinuousUpdate(true);
        // The first frames are not typical.
        QTimer::singleShot(1000, &window,
                           [&window, &frames]
                           {
                               const QSize size = window.view(0).widget->size();
                               QObject::connect(window.view(0).widget, &QRenderWidget::viewUpdated, &window,
                                                [&frames] { ++frames; });
                               QTimer::singleShot(seconds * 1000, &window,
                                                  [&frames, size]
                                                  {
                                                      std::printf("%d frames a second at %d x %d\n", frames / seconds,
                                                                  size.width(), size.height());
                                                      QCoreApplication::exit();
                                                  });
                           });
    }
    return QApplication::exec();
}
