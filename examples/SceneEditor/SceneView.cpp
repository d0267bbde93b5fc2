#include <examples/SceneEditor/SceneView.h>

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
    // A held arrow key orbits on.
    m_input.setOmitsRepeats(false);
    m_widget->installEventFilter(this);
    connect(&m_controller, &CameraController::cameraChanged, this, &SceneView::updateCamera);
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

SceneRenderer& SceneView::renderer()
{
    return m_renderer;
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

int SceneView::objectAt(const QPoint& position) const
{
    return m_renderer.objectAt(position, viewport());
}

bool SceneView::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        m_controller.setViewportSize(viewport());
    return false;
}

QSize SceneView::viewport() const
{
    return m_widget ? m_widget->size() * m_widget->devicePixelRatioF() : QSize();
}

void SceneView::updateCamera()
{
    m_renderer.setCamera(m_controller.camera());
    if (m_widget)
        m_widget->Update();
}
} // namespace sceneeditor
