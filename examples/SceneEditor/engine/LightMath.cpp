#include <examples/SceneEditor/engine/LightMath.h>

#include <examples/SceneEditor/engine/CameraMath.h>
#include <examples/SceneEditor/engine/EnvironmentLight.h>

#include <QOpenGLShaderProgram>
#include <QtCore/QtMath>

#include <cmath>

namespace sceneeditor
{
namespace
{
constexpr double WidestShadow = 140.0; // degrees that a shadow map can cover
} // namespace

void setLight(QOpenGLShaderProgram& program, const Light& light)
{
    const QVector3D towards = direction(light.azimuth, light.elevation);
    program.setUniformValue("u_light", light.kind == LightKind::Directional
                                           ? QVector4D(towards, 0.0f)
                                           : QVector4D(towards * float(light.distance), 1.0f));
    const double cone = light.coneAngle / 2.0;
    program.setUniformValue("u_isSpot", light.kind == LightKind::Spot);
    // Even a sharp edge fades, within a tenth of a degree.
    program.setUniformValue("u_cone",
                            QVector2D(float(std::cos(qDegreesToRadians(cone))),
                                      float(std::cos(qDegreesToRadians(cone * (1.0 - light.coneSoftness) - 0.1)))));
    program.setUniformValue("u_lightDistance", float(light.distance));
    program.setUniformValue("u_lightColour", linear(light.colour) * float(light.intensity));
}

QMatrix4x4 shadowMatrix(const Light& light, const Box& casters)
{
    const QVector3D centre = casters.centre();
    const float radius = qMax((casters.maximum - casters.minimum).length() / 2.0f, 1e-3f);
    const QVector3D towards = direction(light.azimuth, light.elevation);
    const QVector3D up = qAbs(towards.y()) > 0.99f ? QVector3D(1, 0, 0) : QVector3D(0, 1, 0);
    QMatrix4x4 matrix;
    if (light.kind == LightKind::Directional)
    {
        const float reach = radius * 1.02f;
        matrix.ortho(-reach, reach, -reach, reach, 0.0f, 2.0f * reach);
        matrix.lookAt(centre + towards * reach, centre, up);
        return matrix;
    }
    // One map covers a cone, so a light among the objects casts shadows only around the middle of the scene.
    const QVector3D position = towards * float(light.distance);
    const float away = qMax((centre - position).length(), 1e-3f);
    const double half =
        away > radius * 1.05f ? std::asin(double(radius / away)) : qDegreesToRadians(WidestShadow / 2.0);
    double opening = qMin(2.0 * qRadiansToDegrees(half) + 2.0, WidestShadow);
    QVector3D aim = centre;
    if (light.kind == LightKind::Spot && light.coneAngle + 2.0 < opening)
    {
        // Only lit places can have shadows.
        opening = light.coneAngle + 2.0;
        aim = QVector3D();
    }
    const float depth = QVector3D::dotProduct(centre - position, (aim - position).normalized());
    const float nearest = qMax(depth - radius, radius * 0.02f);
    matrix.perspective(float(opening), 1.0f, nearest, qMax(depth + radius, nearest * 2.0f));
    matrix.lookAt(position, aim, up);
    return matrix;
}
} // namespace sceneeditor
