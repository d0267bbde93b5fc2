#include <examples/SceneEditor/engine/CameraMath.h>

#include <QtCore/QtMath>

#include <cmath>

namespace sceneeditor
{
QVector3D direction(double azimuth, double elevation)
{
    const double a = qDegreesToRadians(azimuth);
    const double e = qDegreesToRadians(elevation);
    return {float(std::sin(a) * std::cos(e)), float(std::sin(e)), float(std::cos(a) * std::cos(e))};
}

QVector3D eyePosition(const Camera& camera)
{
    return camera.target + direction(camera.azimuth, camera.elevation) * float(camera.distance);
}

QMatrix4x4 viewMatrix(const Camera& camera)
{
    QMatrix4x4 view;
    view.lookAt(eyePosition(camera), camera.target, QVector3D(0.0f, 1.0f, 0.0f));
    return view;
}

QMatrix4x4 projectionMatrix(const Camera& camera, const QSize& view)
{
    QMatrix4x4 projection;
    const float distance = float(camera.distance);
    projection.perspective(float(camera.fieldOfView), float(view.width()) / float(view.height()), distance * 0.02f,
                           distance * 60.0f + 100.0f);
    return projection;
}

QMatrix4x4 cameraMatrix(const Camera& camera, const QSize& view)
{
    return projectionMatrix(camera, view) * viewMatrix(camera);
}

QVector3D wayThrough(const QPointF& position, const Camera& camera, const QSize& view)
{
    const float x = float(2.0 * (position.x() + 0.5) / view.width() - 1.0);
    const float y = float(1.0 - 2.0 * (position.y() + 0.5) / view.height());
    return cameraMatrix(camera, view).inverted().map(QVector3D(x, y, 0.0f)) - eyePosition(camera);
}

QPointF positionOf(const QVector3D& point, const Camera& camera, const QSize& view)
{
    const QVector3D clip = cameraMatrix(camera, view).map(point);
    return {(1.0 + double(clip.x())) * view.width() / 2.0 - 0.5, (1.0 - double(clip.y())) * view.height() / 2.0 - 0.5};
}

double metresPerPixel(double distance, const Camera& camera, const QSize& view)
{
    return 2.0 * distance * std::tan(qDegreesToRadians(camera.fieldOfView) / 2.0) / view.height();
}
} // namespace sceneeditor
