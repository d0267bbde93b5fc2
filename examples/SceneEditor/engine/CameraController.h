#pragma once

#include <examples/SceneEditor/document/Scene.h>
#include <examples/SceneEditor/engine/MoveGizmo.h>
#include <Orvek/Base/BaseMouseHandler.h>

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>

#include <optional>

namespace sceneeditor
{
//! Interprets the user's input in one view.
//!
//! It moves the camera: the left button orbits, the middle and right buttons pan, the wheel changes the distance (finer
//! with Shift), the arrow keys orbit, R and Home go back to the home camera. The left button also moves the selection
//! when pressed on an arrow of the gizmo, draws a box with Shift, and clicks if the mouse stays in place.
class CameraController final : public QObject, public orvek::base::BaseMouseHandler
{
    Q_OBJECT
public:
    explicit CameraController(QObject* parent = nullptr);

    const Camera& camera() const;
    //! Clamped to the ranges; emits nothing, so it can be called from a slot of cameraChanged().
    void setCamera(const Camera& camera);

    //! Where R and Home go; a default camera unless set.
    void setHomeCamera(const Camera& camera);
    void goHome();

    //! Brings the box into view, as large as the view allows, keeping the camera's direction.
    void frame(const QVector3D& minimum, const QVector3D& maximum);

    //! In device pixels; makes panning follow the pointer. 800 x 600 until set, empty sizes are ignored.
    void setViewportSize(const QSize& size);

    //! What the left button can grab; nullopt for nothing. It can change while it is held.
    void setGizmo(const std::optional<MoveGizmo>& gizmo);
    //! The pointer has left the view: no arrow is beneath it.
    void leave();
    //! The arrow that is held, or else the one beneath the pointer; -1 for none.
    int gizmoAxis() const { return m_axis; }
    //! The box that is being drawn, in device pixels; empty for none.
    QRect selectionBox() const;

    void MouseDown(int button, int x, int y) override;
    void MouseUp(int button, int x, int y) override;
    void MouseDoubleClick(int button, int x, int y) override;
    void MouseMove(int x, int y) override;
    void MouseWheel(int delta, int modifiers) override;
    void KeyboardInput(unsigned int key, bool pressed, int reserved) override;

Q_SIGNALS:
    //! The user, or frame(), has moved the camera.
    void cameraChanged();
    //! The left button went down and up in (nearly) one place; device pixels. The modifiers are those of the press.
    void clicked(const QPoint& position, Qt::KeyboardModifiers modifiers);
    //! A box was drawn with Shift and the left button; device pixels. The modifiers are those of the press.
    void boxSelected(const QRect& area, Qt::KeyboardModifiers modifiers);
    //! The selection is about to be moved by its gizmo.
    void moveStarted();
    //! The offset since moveStarted() in metres, along the gizmo's axis: X, Y or Z of the scene, without the rotation
    //! of the turntable.
    void moved(const QVector3D& delta);
    //! Emitted once for each moveStarted(). After Escape, the move ends where it began.
    void moveFinished();
    //! The user pressed F to bring the selection into view.
    void frameRequested();
    //! gizmoAxis() or selectionBox() changed.
    void overlayChanged();

private:
    enum class Drag
    {
        None,
        Orbit,
        Pan,
        Move,
        Box
    };

    void apply(const Camera& camera);
    void orbit(double azimuth, double elevation);
    void pan(int dx, int dy);
    void move();
    void cancelDrag();
    void setAxis(int axis);

    Camera m_camera;
    Camera m_home;
    QSize m_viewport{800, 600};
    std::optional<MoveGizmo> m_gizmo;
    int m_axis = -1;
    int m_button = 0;                  // started the drag; others are ignored until it is up
    Qt::KeyboardModifiers m_modifiers; // when it was pressed
    Drag m_drag = Drag::None;
    QPoint m_pressed;
    QPoint m_last;
    bool m_dragged = false;             // farther than a click may move
    std::optional<MoveGizmo> m_grabbed; // the gizmo as it was at the press
    float m_grabbedAt = 0.0f;           // metres along its axis
    float m_moved = 0.0f;               // since then
};
} // namespace sceneeditor
