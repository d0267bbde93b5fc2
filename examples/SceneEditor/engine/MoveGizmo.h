#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QPointF>
#include <QtCore/QSize>

#include <array>
#include <optional>

namespace sceneeditor
{
//! Three arrows that move the selection, of the same size on the screen at any distance. An arrow that points at the
//! camera or away from it would look like a dot: it is neither drawn nor hit.
struct MoveGizmo
{
    QVector3D origin;
    std::array<QVector3D, 3> axes; //!< unit vectors in the world
    double size = 96.0;            //!< of an arrow that lies across the view, device pixels

    bool operator==(const MoveGizmo& other) const
    {
        return origin == other.origin && axes == other.axes && size == other.size;
    }
    //! Length of each arrow in metres; 0 if the gizmo is not in front of the camera.
    float length(const Camera& camera, const QSize& view) const;
    //! Whether the arrow is drawn and can be hit.
    bool isShown(int axis, const Camera& camera, const QSize& view) const;
    //! The arrow at the position, in device pixels; -1 for none.
    int axisAt(const QPointF& position, const Camera& camera, const QSize& view) const;
    //! Metres from the origin to the point on the axis that is nearest to the pointer, negative behind the origin.
    //! Nothing where the axis runs away from the pointer into the distance.
    std::optional<float> placeOn(int axis, const QPointF& position, const Camera& camera, const QSize& view) const;
};
} // namespace sceneeditor
