#pragma once

#include <examples/SceneEditor/document/Scene.h>
#include <examples/SceneEditor/engine/CameraController.h>
#include <examples/SceneEditor/engine/SceneRenderer.h>
#include <Orvek/Host/ViewInput.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QRenderWidget;

namespace sceneeditor
{
class SurfaceManager;

//! What the engine has to give a render widget to become a view of a scene: a renderer and a camera. Takes both away
//! again when it is destroyed, before or after the widget.
class SceneView final : public QObject
{
    Q_OBJECT
public:
    //! Neither is owned; the manager has to outlive both. To be called before the widget is first shown.
    SceneView(SurfaceManager* manager, QRenderWidget* widget, QObject* parent);
    ~SceneView() override;

    QRenderWidget* widget() const;
    SceneRenderer& renderer();
    CameraController& cameraController();
    orvek::host::ViewInput& input();

    //! Shows the scene from this view's own camera and requests a frame.
    void setScene(const Scene& scene);
    //! Index of the object beneath the position in device pixels, -1 for none.
    int objectAt(const QPoint& position) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSize viewport() const;
    void updateCamera();

    QPointer<QRenderWidget> m_widget;
    SceneRenderer m_renderer;
    CameraController m_controller;
    orvek::host::ViewInput m_input;
};
} // namespace sceneeditor
