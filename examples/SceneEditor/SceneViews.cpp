#include <examples/SceneEditor/SceneViews.h>

#include <examples/SceneEditor/document/Document.h>
#include <examples/SceneEditor/SceneView.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QDateTime>

#include <cmath>
#include <utility>

namespace sceneeditor
{
SceneViews::SceneViews(Document* document, QRenderWidget* main, QObject* parent) : QObject(parent), m_document(document)
{
    auto* view = new SceneView(&m_surfaces, main, this);
    follow(view);
    // Tab goes on to the panel; nothing in the view needs it.
    main->setFocusPolicy(Qt::StrongFocus);
    connect(main, &QRenderWidget::viewUpdated, this, &SceneViews::onDrawn);
    connect(&view->cameraController(), &CameraController::cameraChanged, document,
            [this, view] { m_document->setCamera(view->cameraController().camera()); });

    connect(document, &Document::opened, this,
            [this]
            {
                m_turntableAngle = 0.0;
                for (SceneView* each : std::as_const(m_views))
                    showAll(each);
                updatePlaying();
            });
    connect(document, &Document::meshAdded, this,
            [this](const QString& fileName)
            {
                for (SceneView* each : std::as_const(m_views))
                    each->addMesh(fileName, m_document->mesh(fileName));
            });
    connect(document, &Document::environmentChanged, this,
            [this]
            {
                for (SceneView* each : std::as_const(m_views))
                    each->setEnvironmentImage(m_document->environment());
            });
    connect(document, &Document::objectsChanged, this, &SceneViews::showScene);
    connect(document, &Document::selectionChanged, this, &SceneViews::showSelection);
    connect(document, &Document::changed, this,
            [this]
            {
                mainView()->cameraController().setCamera(m_document->scene().camera);
                showScene();
                updatePlaying();
            });
}

SceneViews::~SceneViews()
{
    closeWindows();
    // They use m_surfaces, which is destroyed before this object's children.
    delete m_views.takeFirst();
}

QImage SceneViews::grabMain(QString* error)
{
    const auto window = mainView()->widget()->GetHWND();
    QImage image = m_surfaces.grabFrame(window);
    if (image.isNull())
        *error = m_surfaces.errorText(window);
    return image;
}

void SceneViews::addWindow()
{
    auto* widget = new QRenderWidget;
    auto* view = new SceneView(&m_surfaces, widget, this);
    follow(view);
    showAll(view);
    connect(widget, &QObject::destroyed, view,
            [this, view]
            {
                m_views.removeOne(view);
                view->deleteLater();
            });
    widget->setAttribute(Qt::WA_DeleteOnClose);
    widget->setWindowTitle(tr("View %1 – Scene Editor").arg(m_views.size()));
    widget->resize(640, 480);
    widget->show();
}

void SceneViews::closeWindows()
{
    // They have no parent that would delete them.
    while (m_views.size() > 1)
        delete m_views.last()->widget();
}

void SceneViews::follow(SceneView* view)
{
    m_views << view;
    CameraController& controller = view->cameraController();
    connect(&controller, &CameraController::clicked, m_document,
            [this, view](const QPoint& position, Qt::KeyboardModifiers modifiers)
            {
                const int index = view->objectAt(position);
                QVector<int> selection = m_document->selection();
                const bool adds = modifiers & (Qt::ControlModifier | Qt::ShiftModifier);
                if (index < 0)
                    return; // empty places are clicked by accident far too often
                if (!adds)
                    selection = {index};
                else if (!(modifiers & Qt::ControlModifier) || !selection.removeOne(index))
                    selection << index;
                m_document->setSelection(selection);
            });
    connect(&controller, &CameraController::boxSelected, m_document,
            [this, view](const QRect& area, Qt::KeyboardModifiers modifiers)
            {
                QVector<int> selection = view->objectsIn(area);
                if (modifiers & Qt::ControlModifier)
                    selection += m_document->selection();
                m_document->setSelection(selection);
            });
    connect(&controller, &CameraController::moveStarted, m_document, &Document::beginMove);
    connect(&controller, &CameraController::moved, m_document, &Document::moveSelection);
    connect(&controller, &CameraController::moveFinished, m_document, &Document::endMove);
}

void SceneViews::showAll(SceneView* view)
{
    view->setMeshes(m_document->meshes());
    view->setEnvironmentImage(m_document->environment());
    view->setTurntableAngle(m_turntableAngle);
    view->cameraController().setHomeCamera(m_document->scene().camera);
    view->cameraController().setCamera(m_document->scene().camera);
    view->setSelection(m_document->selection());
    view->setScene(m_document->scene());
}

void SceneViews::showScene()
{
    for (SceneView* view : std::as_const(m_views))
        view->setScene(m_document->scene());
}

void SceneViews::showSelection()
{
    for (SceneView* view : std::as_const(m_views))
        view->setSelection(m_document->selection());
}

void SceneViews::updatePlaying()
{
    const bool isPlaying = m_document->scene().animation.playing;
    if (!isPlaying)
        m_lastFrame = 0;
    mainView()->input().setContinuousUpdate(isPlaying);
}

void SceneViews::onDrawn()
{
    Q_EMIT drawn();
    const Animation& animation = m_document->scene().animation;
    if (!animation.playing)
        return;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (m_lastFrame > 0)
        m_turntableAngle = std::fmod(m_turntableAngle + animation.turntableSpeed * (now - m_lastFrame) / 1000.0, 360.0);
    m_lastFrame = now;
    for (SceneView* view : std::as_const(m_views))
        view->setTurntableAngle(m_turntableAngle);
}
} // namespace sceneeditor
