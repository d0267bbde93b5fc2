#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QPointF>
#include <QtCore/QSize>
#include <QtGui/QMatrix4x4>

namespace sceneeditor
{
// Positions in a view are device pixels from its top left corner; a view's size is in device pixels and not empty.

//! The point on the unit sphere at the azimuth and elevation, degrees.
QVector3D direction(double azimuth, double elevation);

QVector3D eyePosition(const Camera& camera);
QMatrix4x4 viewMatrix(const Camera& camera);
QMatrix4x4 projectionMatrix(const Camera& camera, const QSize& view);
//! From the world to clip space.
QMatrix4x4 cameraMatrix(const Camera& camera, const QSize& view);

//! From the eye through the position: towards the near plane, not normalised.
QVector3D wayThrough(const QPointF& position, const Camera& camera, const QSize& view);
//! Where the point is drawn. The point must be in front of the camera.
QPointF positionOf(const QVector3D& point, const Camera& camera, const QSize& view);
//! Metres that one pixel covers at the distance in front of the camera.
double metresPerPixel(double distance, const Camera& camera, const QSize& view);
} // namespace sceneeditor
