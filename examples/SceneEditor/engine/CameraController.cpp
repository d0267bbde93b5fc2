#include <examples/SceneEditor/engine/CameraController.h>

#include <QtCore/QtMath>

#include <cmath>

namespace sceneeditor
{
namespace
{
constexpr double degreesPerPixel = 0.35;
constexpr double degreesPerKey = 5.0;
constexpr double ratioPerNotch = 1.15; // of the distance
constexpr int clickDistance = 3;       // device pixels

// The engine gets the platform's own key codes.
#if defined(Q_OS_WIN)
enum Key : unsigned int
{
    KeyR = 0x52,
    KeySmallR = KeyR,
    KeyHome = 0x24,
    KeyLeft = 0x25,
    KeyUp = 0x26,
    KeyRight = 0x27,
    KeyDown = 0x28
};
#elif defined(Q_OS_MACOS)
enum Key : unsigned int
{
    KeyR = 0x0f,
    KeySmallR = KeyR,
    KeyHome = 0x73,
    KeyLeft = 0x7b,
    KeyRight = 0x7c,
    KeyDown = 0x7d,
    KeyUp = 0x7e
};
#else
enum Key : unsigned int // X keysyms, which Wayland uses as well
{
    KeyR = 0x52,
    KeySmallR = 0x72,
    KeyHome = 0xff50,
    KeyLeft = 0xff51,
    KeyUp = 0xff52,
    KeyRight = 0xff53,
    KeyDown = 0xff54
};
#endif

Camera clamped(Camera camera)
{
    const auto coordinate = [](float value) { return static_cast<float>(ranges::coordinate.clamp(double(value))); };
    camera.target = {coordinate(camera.target.x()), coordinate(camera.target.y()), coordinate(camera.target.z())};
    camera.distance = ranges::cameraDistance.clamp(camera.distance);
    camera.azimuth = ranges::azimuth.clamp(camera.azimuth);
    camera.elevation = ranges::cameraElevation.clamp(camera.elevation);
    camera.fieldOfView = ranges::fieldOfView.clamp(camera.fieldOfView);
    return camera;
}
} // namespace

CameraController::CameraController(QObject* parent) : QObject(parent) {}

const Camera& CameraController::camera() const
{
    return m_camera;
}

void CameraController::setCamera(const Camera& camera)
{
    m_camera = clamped(camera);
}

void CameraController::setHomeCamera(const Camera& camera)
{
    m_home = clamped(camera);
}

void CameraController::goHome()
{
    apply(m_home);
    finishChange();
}

void CameraController::setViewportSize(const QSize& size)
{
    if (!size.isEmpty())
        m_viewport = size;
}

void CameraController::MouseDown(int button, int x, int y)
{
    if (m_button != 0)
        return;
    m_button = button;
    m_pressed = m_last = QPoint(x, y);
    m_dragged = false;
}

void CameraController::MouseUp(int button, int x, int y)
{
    if (button != m_button)
        return;
    m_button = 0;
    if (!m_dragged && button == Qt::LeftButton)
        Q_EMIT clicked(QPoint(x, y));
    finishChange();
}

void CameraController::MouseDoubleClick(int button, int x, int y)
{
    MouseDown(button, x, y);
}

void CameraController::MouseMove(int x, int y)
{
    if (m_button == 0)
        return;
    const QPoint position(x, y);
    if (!m_dragged && (position - m_pressed).manhattanLength() <= clickDistance)
        return;
    m_dragged = true;
    const QPoint delta = position - m_last;
    m_last = position;
    if (m_button == Qt::LeftButton)
        orbit(-delta.x() * degreesPerPixel, delta.y() * degreesPerPixel);
    else if (m_button == Qt::MiddleButton || m_button == Qt::RightButton)
        pan(delta.x(), delta.y());
}

void CameraController::MouseWheel(int delta, int modifiers)
{
    constexpr int shift = 1;
    const double notches = delta / 120.0 * ((modifiers & shift) != 0 ? 0.2 : 1.0);
    Camera camera = m_camera;
    camera.distance *= std::pow(ratioPerNotch, -notches);
    apply(camera);
    finishChange();
}

void CameraController::KeyboardInput(unsigned int key, bool pressed, int /*reserved*/)
{
    if (!pressed)
        return;
    switch (key)
    {
    case KeyR:
#if !defined(Q_OS_WIN) && !defined(Q_OS_MACOS)
    case KeySmallR:
#endif
    case KeyHome:
        goHome();
        return;
    case KeyLeft:
        orbit(-degreesPerKey, 0.0);
        break;
    case KeyRight:
        orbit(degreesPerKey, 0.0);
        break;
    case KeyUp:
        orbit(0.0, degreesPerKey);
        break;
    case KeyDown:
        orbit(0.0, -degreesPerKey);
        break;
    default:
        return;
    }
    finishChange();
}

void CameraController::apply(const Camera& camera)
{
    const Camera next = clamped(camera);
    if (next == m_camera)
        return;
    m_camera = next;
    m_changed = true;
    Q_EMIT cameraChanged();
}

void CameraController::finishChange()
{
    // What changes during a drag belongs to the drag.
    if (!m_changed || m_button != 0)
        return;
    m_changed = false;
    Q_EMIT cameraChangeFinished();
}

void CameraController::orbit(double azimuth, double elevation)
{
    Camera camera = m_camera;
    // Within half a turn either side, so that orbiting on and on never comes to the end of the range.
    camera.azimuth = std::remainder(camera.azimuth + azimuth, 360.0);
    camera.elevation += elevation;
    apply(camera);
}

void CameraController::pan(int dx, int dy)
{
    const double azimuth = qDegreesToRadians(m_camera.azimuth);
    const double elevation = qDegreesToRadians(m_camera.elevation);
    const QVector3D right(float(std::cos(azimuth)), 0.0f, float(-std::sin(azimuth)));
    const QVector3D up(float(-std::sin(elevation) * std::sin(azimuth)), float(std::cos(elevation)),
                       float(-std::sin(elevation) * std::cos(azimuth)));
    // Metres that a pixel covers at the target's depth: the target stays under the pointer.
    const double metres =
        2.0 * m_camera.distance * std::tan(qDegreesToRadians(m_camera.fieldOfView) / 2.0) / m_viewport.height();
    Camera camera = m_camera;
    camera.target += right * float(-dx * metres) + up * float(dy * metres);
    apply(camera);
}
} // namespace sceneeditor
