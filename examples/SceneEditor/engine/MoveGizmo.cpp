#include <examples/SceneEditor/engine/MoveGizmo.h>

#include <examples/SceneEditor/engine/CameraMath.h>

#include <cmath>

namespace sceneeditor
{
namespace
{
constexpr float Begin = 0.16f;         // of an arrow, as a part of its length
constexpr double HitDistance = 0.1;    // from an arrow, as a part of its size
constexpr double ShortestShown = 0.25; // on the screen, as a part of its size

double distanceToLine(const QPointF& point, const QPointF& from, const QPointF& to)
{
    const QPointF way = to - from;
    const QPointF there = point - from;
    const double squared = QPointF::dotProduct(way, way);
    const double part = squared > 0.0 ? qBound(0.0, QPointF::dotProduct(there, way) / squared, 1.0) : 0.0;
    const QPointF away = there - way * part;
    return std::hypot(away.x(), away.y());
}
} // namespace

float MoveGizmo::length(const Camera& camera, const QSize& view) const
{
    const QVector3D forward = -direction(camera.azimuth, camera.elevation);
    const double depth = double(QVector3D::dotProduct(origin - eyePosition(camera), forward));
    // Hidden behind the eye and right in front of it.
    return depth > camera.distance * 0.05 ? float(size * metresPerPixel(depth, camera, view)) : 0.0f;
}

bool MoveGizmo::isShown(int axis, const Camera& camera, const QSize& view) const
{
    const float metres = length(camera, view);
    if (metres <= 0.0f)
        return false;
    const QVector3D towardsEye = (eyePosition(camera) - origin).normalized();
    return double(QVector3D::crossProduct(towardsEye, axes[size_t(axis)]).length()) >= ShortestShown;
}

int MoveGizmo::axisAt(const QPointF& position, const Camera& camera, const QSize& view) const
{
    int found = -1;
    double nearest = size * HitDistance;
    const float metres = length(camera, view);
    for (int axis = 0; axis < 3; ++axis)
    {
        if (!isShown(axis, camera, view))
            continue;
        const QVector3D arrow = axes[size_t(axis)] * metres;
        const double distance = distanceToLine(position, positionOf(origin + arrow * Begin, camera, view),
                                               positionOf(origin + arrow, camera, view));
        if (distance < nearest)
        {
            nearest = distance;
            found = axis;
        }
    }
    return found;
}

std::optional<float> MoveGizmo::placeOn(int axis, const QPointF& position, const Camera& camera,
                                        const QSize& view) const
{
    const QVector3D way = wayThrough(position, camera, view).normalized();
    const QVector3D& along = axes[size_t(axis)];
    const QVector3D fromEye = origin - eyePosition(camera);
    // The shortest line between the axis and the ray through the pointer is perpendicular to both.
    const float both = QVector3D::dotProduct(along, way);
    const float alongAxis = QVector3D::dotProduct(along, fromEye);
    const float alongRay = QVector3D::dotProduct(way, fromEye);
    const float denominator = 1.0f - both * both;
    if (denominator < 1e-5f || alongRay - both * alongAxis <= 0.0f)
        return std::nullopt;
    return (both * alongRay - alongAxis) / denominator;
}
} // namespace sceneeditor
