#include <examples/SceneEditor/engine/CameraController.h>

#include <examples/SceneEditor/engine/CameraMath.h>

#include <QtCore/QtMath>
#include <QtGui/QGuiApplication>

#include <cmath>
#include <utility>

namespace sceneeditor
{
namespace
{
constexpr double DegreesPerPixel = 0.35;
constexpr double DegreesPerKey = 5.0;
constexpr double RatioPerNotch = 1.15; // of the distance
constexpr int ClickDistance = 3;       // device pixels
constexpr double FrameRoom = 1.1;      // around what is framed, as a factor of the distance

// The engine gets the platform's own key codes.
#if defined(Q_OS_WIN)
enum Key : unsigned int
{
    KeyR = 0x52,
    KeySmallR = KeyR,
    KeyF = 0x46,
    KeySmallF = KeyF,
    KeyEscape = 0x1b,
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
    KeyF = 0x03,
    KeySmallF = KeyF,
    KeyEscape = 0x35,
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
    KeyF = 0x46,
    KeySmallF = 0x66,
    KeyEscape = 0xff1b,
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
}

void CameraController::frame(const QVector3D& minimum, const QVector3D& maximum)
{
    Camera camera = m_camera;
    camera.target = (minimum + maximum) / 2.0f;
    const QVector3D half = (maximum - minimum) / 2.0f;
    const QVector3D back = direction(camera.azimuth, camera.elevation);
    const QVector3D right = direction(camera.azimuth + 90.0, 0.0);
    const QVector3D up = QVector3D::crossProduct(back, right);
    const double tangent = std::tan(qDegreesToRadians(camera.fieldOfView) / 2.0);
    const double across = tangent * m_viewport.width() / m_viewport.height();
    // Far enough for the corner that needs the most distance.
    camera.distance = 0.0;
    for (int i = 0; i < 8; ++i)
    {
        const QVector3D corner((i & 1) != 0 ? half.x() : -half.x(), (i & 2) != 0 ? half.y() : -half.y(),
                               (i & 4) != 0 ? half.z() : -half.z());
        const auto along = [&corner](const QVector3D& axis) { return double(QVector3D::dotProduct(corner, axis)); };
        camera.distance =
            qMax(camera.distance, along(back) + qMax(qAbs(along(right)) / across, qAbs(along(up)) / tangent));
    }
    camera.distance *= FrameRoom;
    apply(camera);
}

void CameraController::setViewportSize(const QSize& size)
{
    if (!size.isEmpty())
        m_viewport = size;
}

void CameraController::setGizmo(const std::optional<MoveGizmo>& gizmo)
{
    m_gizmo = gizmo;
    if (!gizmo && m_drag != Drag::Move)
        setAxis(-1);
}

void CameraController::leave()
{
    if (m_button == 0)
        setAxis(-1);
}

QRect CameraController::selectionBox() const
{
    if (m_drag != Drag::Box || !m_dragged)
        return {};
    return QRect(QPoint(qMin(m_pressed.x(), m_last.x()), qMin(m_pressed.y(), m_last.y())),
                 QPoint(qMax(m_pressed.x(), m_last.x()), qMax(m_pressed.y(), m_last.y())));
}

void CameraController::MouseDown(int button, int x, int y)
{
    if (m_button != 0)
        return;
    m_button = button;
    m_modifiers = QGuiApplication::keyboardModifiers();
    m_pressed = m_last = QPoint(x, y);
    m_dragged = false;
    if (button != Qt::LeftButton)
    {
        m_drag = button == Qt::MiddleButton || button == Qt::RightButton ? Drag::Pan : Drag::None;
        return;
    }
    setAxis(m_gizmo ? m_gizmo->axisAt(m_pressed, m_camera, m_viewport) : -1);
    m_drag = m_modifiers.testFlag(Qt::ShiftModifier) ? Drag::Box : Drag::Orbit;
    if (m_drag == Drag::Box || m_axis < 0)
        return;
    m_grabbed = m_gizmo;
    if (const auto place = m_grabbed->placeOn(m_axis, m_pressed, m_camera, m_viewport))
    {
        m_drag = Drag::Move;
        m_grabbedAt = *place;
        m_moved = 0.0f;
    }
}

void CameraController::MouseUp(int button, int x, int y)
{
    if (button != m_button)
        return;
    m_button = 0;
    const QRect box = selectionBox();
    const Drag drag = std::exchange(m_drag, Drag::None);
    if (!m_dragged && drag != Drag::None && button == Qt::LeftButton)
        Q_EMIT clicked(QPoint(x, y), m_modifiers);
    else if (m_dragged && drag == Drag::Move)
        Q_EMIT moveFinished();
    else if (m_dragged && drag == Drag::Box)
        Q_EMIT boxSelected(box, m_modifiers);
    if (drag == Drag::Box)
        Q_EMIT overlayChanged();
}

void CameraController::MouseDoubleClick(int button, int x, int y)
{
    MouseDown(button, x, y);
}

void CameraController::MouseMove(int x, int y)
{
    const QPoint position(x, y);
    if (m_button == 0)
        return setAxis(m_gizmo ? m_gizmo->axisAt(position, m_camera, m_viewport) : -1);
    if (!m_dragged && (position - m_pressed).manhattanLength() <= ClickDistance)
        return;
    const bool begins = !std::exchange(m_dragged, true);
    const QPoint delta = position - m_last;
    m_last = position;
    switch (m_drag)
    {
    case Drag::None:
        break;
    case Drag::Orbit:
        orbit(-delta.x() * DegreesPerPixel, delta.y() * DegreesPerPixel);
        break;
    case Drag::Pan:
        pan(delta.x(), delta.y());
        break;
    case Drag::Move:
        if (begins)
            Q_EMIT moveStarted();
        move();
        break;
    case Drag::Box:
        Q_EMIT overlayChanged();
        break;
    }
}

void CameraController::MouseWheel(int delta, int modifiers)
{
    constexpr int shift = 1;
    const double notches = delta / 120.0 * ((modifiers & shift) != 0 ? 0.2 : 1.0);
    Camera camera = m_camera;
    camera.distance *= std::pow(RatioPerNotch, -notches);
    apply(camera);
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
        break;
    case KeyF:
#if !defined(Q_OS_WIN) && !defined(Q_OS_MACOS)
    case KeySmallF:
#endif
        Q_EMIT frameRequested();
        break;
    case KeyEscape:
        cancelDrag();
        break;
    case KeyLeft:
        orbit(-DegreesPerKey, 0.0);
        break;
    case KeyRight:
        orbit(DegreesPerKey, 0.0);
        break;
    case KeyUp:
        orbit(0.0, DegreesPerKey);
        break;
    case KeyDown:
        orbit(0.0, -DegreesPerKey);
        break;
    default:
        break;
    }
}

void CameraController::apply(const Camera& camera)
{
    const Camera next = clamped(camera);
    if (next == m_camera)
        return;
    m_camera = next;
    Q_EMIT cameraChanged();
}

void CameraController::orbit(double azimuth, double elevation)
{
    Camera camera = m_camera;
    // Kept within half a turn either way, so that orbiting never reaches the end of the range.
    camera.azimuth = std::remainder(camera.azimuth + azimuth, 360.0);
    camera.elevation += elevation;
    apply(camera);
}

void CameraController::pan(int dx, int dy)
{
    const QVector3D right = direction(m_camera.azimuth + 90.0, 0.0);
    const QVector3D up = QVector3D::crossProduct(direction(m_camera.azimuth, m_camera.elevation), right);
    // Pans at the target's depth, so that the target stays under the pointer.
    const double metres = metresPerPixel(m_camera.distance, m_camera, m_viewport);
    Camera camera = m_camera;
    camera.target += right * float(-dx * metres) + up * float(dy * metres);
    apply(camera);
}

void CameraController::move()
{
    const auto place = m_grabbed->placeOn(m_axis, m_last, m_camera, m_viewport);
    if (!place || *place - m_grabbedAt == m_moved)
        return;
    m_moved = *place - m_grabbedAt;
    QVector3D delta;
    delta[m_axis] = m_moved;
    Q_EMIT moved(delta);
}

void CameraController::cancelDrag()
{
    const Drag drag = std::exchange(m_drag, Drag::None); // no drag until the button is up
    if (drag == Drag::Move && m_dragged)
    {
        Q_EMIT moved(QVector3D());
        Q_EMIT moveFinished();
    }
    Q_EMIT overlayChanged();
}

void CameraController::setAxis(int axis)
{
    if (std::exchange(m_axis, axis) != axis)
        Q_EMIT overlayChanged();
}
} // namespace sceneeditor
