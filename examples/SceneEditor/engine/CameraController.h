#pragma once

#include <examples/SceneEditor/document/Scene.h>
#include <Orvek/Base/BaseMouseHandler.h>

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QSize>

namespace sceneeditor
{
//! Moves a camera by the input of one view: the left button orbits, the middle and right buttons pan, the wheel
//! changes the distance (finer with Shift), the arrow keys orbit, R and Home go back to the home camera.
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

    //! In device pixels; makes panning follow the pointer. 800 x 600 until set, empty sizes are ignored.
    void setViewportSize(const QSize& size);

    void MouseDown(int button, int x, int y) override;
    void MouseUp(int button, int x, int y) override;
    void MouseDoubleClick(int button, int x, int y) override;
    void MouseMove(int x, int y) override;
    void MouseWheel(int delta, int modifiers) override;
    void KeyboardInput(unsigned int key, bool pressed, int reserved) override;

Q_SIGNALS:
    //! The user has moved the camera.
    void cameraChanged();
    //! A drag, a turn of the wheel or a key press that has changed the camera is over: the time for an undo step.
    void cameraChangeFinished();
    //! The left button went down and up in (nearly) one place; device pixels, for SceneRenderer::objectAt().
    void clicked(const QPoint& position);

private:
    void apply(const Camera& camera);
    void finishChange();
    void orbit(double azimuth, double elevation);
    void pan(int dx, int dy);

    Camera m_camera;
    Camera m_home;
    QSize m_viewport{800, 600};
    int m_button = 0; // that started the drag; others are ignored until it is up
    QPoint m_pressed;
    QPoint m_last;
    bool m_dragged = false; // beyond the distance of a click
    bool m_changed = false; // since the last cameraChangeFinished()
};
} // namespace sceneeditor
