#pragma once

#include <examples/SceneEditor/engine/SurfaceManager.h>

#include <QtCore/QObject>
#include <QtCore/QVector>

class QRenderWidget;

namespace sceneeditor
{
class Document;
class SceneView;

//! The views of a document: the main window's, whose camera is the scene's, and others in separate windows.
class SceneViews final : public QObject
{
    Q_OBJECT
public:
    //! Neither is owned, and both must outlive this object. Create it before the widget is first shown.
    SceneViews(Document* document, QRenderWidget* main, QObject* parent = nullptr);
    //! Closes the other windows.
    ~SceneViews() override;

    SceneView* mainView() const { return m_views.first(); }
    const SurfaceManager& surfaces() const { return m_surfaces; }
    //! What the engine draws in the main view; null with an error if it cannot.
    QImage grabMain(QString* error);
    void addWindow();
    void closeWindows();

Q_SIGNALS:
    //! The main view has been drawn.
    void drawn();

private:
    void follow(SceneView* view);
    void showAll(SceneView* view);
    void showScene();
    void showSelection();
    void updatePlaying();
    void onDrawn();

    Document* const m_document;
    SurfaceManager m_surfaces;     // outlives the views
    QVector<SceneView*> m_views;   // children; the first is the main one
    double m_turntableAngle = 0.0; // degrees
    qint64 m_lastFrame = 0;        // time of the last frame while playing, milliseconds; 0 before
};
} // namespace sceneeditor
