#include <examples/SceneEditor/SceneView.h>

#include <examples/SceneEditor/engine/Picking.h>
#include <examples/SceneEditor/engine/SurfaceManager.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QEvent>

namespace sceneeditor
{
SceneView::SceneView(SurfaceManager* manager, QRenderWidget* widget, QObject* parent)
    : QObject(parent), m_widget(widget), m_input(widget, &m_controller)
{
    m_widget->SetPlatformRendererInterface(&m_renderer);
    m_input.setManager(manager);
    // A held arrow key keeps orbiting.
    m_input.setOmitsRepeats(false);
    m_widget->installEventFilter(this);
    m_controller.setViewportSize(viewport());
    connect(&m_controller, &CameraController::cameraChanged, this, &SceneView::updateCamera);
    connect(&m_controller, &CameraController::overlayChanged, this,
            [this]
            {
                updateGizmo();
                update();
            });
    connect(&m_controller, &CameraController::frameRequested, this, [this] { frame(m_selection); });
}

SceneView::~SceneView()
{
    m_input.setHandler(nullptr);
    m_input.setManager(nullptr);
}

QRenderWidget* SceneView::widget() const
{
    return m_widget;
}

CameraController& SceneView::cameraController()
{
    return m_controller;
}

orvek::host::ViewInput& SceneView::input()
{
    return m_input;
}

void SceneView::setScene(const Scene& scene)
{
    m_renderer.setScene(scene);
    updateCamera();
}

void SceneView::setMeshes(const QHash<QString, MeshPointer>& meshes)
{
    m_renderer.setMeshes(meshes);
    updateGizmo();
    update();
}

void SceneView::addMesh(const QString& fileName, const MeshPointer& mesh)
{
    m_renderer.addMesh(fileName, mesh);
    updateGizmo();
    update();
}

void SceneView::setEnvironmentImage(const QImage& image)
{
    m_renderer.setEnvironmentImage(image);
    update();
}

void SceneView::setTurntableAngle(double degrees)
{
    m_renderer.setTurntableAngle(degrees);
    updateGizmo();
}

void SceneView::setSelection(const QVector<int>& objects)
{
    m_selection = objects;
    m_renderer.setSelection(objects);
    updateGizmo();
    update();
}

int SceneView::objectAt(const QPoint& position) const
{
    return sceneeditor::objectAt(m_renderer.shown(), position, viewport());
}

QVector<int> SceneView::objectsIn(const QRect& area) const
{
    return sceneeditor::objectsIn(m_renderer.shown(), area, viewport());
}

bool SceneView::frame(const QVector<int>& objects)
{
    const ShownScene& shown = m_renderer.shown();
    const Box box = objects.isEmpty() ? shown.meshBox() : shown.box(objects);
    if (box.isEmpty())
        return false;
    m_controller.frame(box.minimum, box.maximum);
    return true;
}

bool SceneView::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        m_controller.setViewportSize(viewport());
    else if (event->type() == QEvent::Leave)
        m_controller.leave();
    return false;
}

QSize SceneView::viewport() const
{
    return m_widget ? m_widget->size() * m_widget->devicePixelRatioF() : QSize();
}

void SceneView::updateCamera()
{
    m_renderer.setCamera(m_controller.camera());
    updateGizmo();
    update();
}

void SceneView::updateGizmo()
{
    const ShownScene& shown = m_renderer.shown();
    const Box box = shown.box(m_selection);
    std::optional<MoveGizmo> gizmo;
    const double ratio = m_widget ? m_widget->devicePixelRatioF() : 1.0;
    if (!box.isEmpty())
    {
        const QMatrix4x4 turned = shown.turntableMatrix();
        gizmo = MoveGizmo{box.centre(),
                          {turned.mapVector(QVector3D(1, 0, 0)), turned.mapVector(QVector3D(0, 1, 0)),
                           turned.mapVector(QVector3D(0, 0, 1))}};
        gizmo->size *= ratio;
    }
    m_controller.setGizmo(gizmo);
    m_renderer.setGizmo(gizmo, m_controller.gizmoAxis());
    m_renderer.setSelectionBox(m_controller.selectionBox(), qRound(ratio));
}

void SceneView::update()
{
    if (m_widget)
        m_widget->Update();
}
} // namespace sceneeditor
