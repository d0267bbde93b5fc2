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

//! Makes a render widget a view of a scene, with a renderer, a camera, and a gizmo for the selection. Its destructor
//! removes them; it may be destroyed before or after the widget.
//!
//! Every setter but setTurntableAngle() requests a frame. Positions are device pixels from the top left of the view.
class SceneView final : public QObject
{
    Q_OBJECT
public:
    //! Neither is owned; the manager must outlive both. Create it before the widget is first shown.
    SceneView(SurfaceManager* manager, QRenderWidget* widget, QObject* parent);
    ~SceneView() override;

    //! Null once it has been destroyed.
    QRenderWidget* widget() const;
    CameraController& cameraController();
    orvek::host::ViewInput& input();

    //! Shows the scene from this view's own camera.
    void setScene(const Scene& scene);
    //! All meshes, by Object::meshFile. Objects without one show a box of lines.
    void setMeshes(const QHash<QString, MeshPointer>& meshes);
    //! Adds a mesh, or replaces the one of this name.
    void addMesh(const QString& fileName, const MeshPointer& mesh);
    //! Equirectangular picture of the surroundings; a null one gives even grey light.
    void setEnvironmentImage(const QImage& image);
    //! Degrees. Requests no frame; the next one shows it.
    void setTurntableAngle(double degrees);
    //! Indices of objects that get an outline, and together a gizmo. Those that do not exist are left out.
    void setSelection(const QVector<int>& objects);

    //! Index of the object beneath the position, -1 for none.
    int objectAt(const QPoint& position) const;
    //! The visible objects with any part in the area, even if others hide it. Ascending.
    QVector<int> objectsIn(const QRect& area) const;
    //! Moves the camera to show the visible ones of these objects, or all if none are given. Key F does so with the
    //! selection. Returns false and changes nothing if there is nothing to show.
    bool frame(const QVector<int>& objects = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSize viewport() const;
    void updateCamera();
    void updateGizmo();
    void update();

    QPointer<QRenderWidget> m_widget;
    SceneRenderer m_renderer;
    CameraController m_controller;
    orvek::host::ViewInput m_input;
    QVector<int> m_selection;
};
} // namespace sceneeditor
