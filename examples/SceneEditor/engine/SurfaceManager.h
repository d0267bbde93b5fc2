#pragma once

#include <Orvek/CrossPlatform/DisplaySurfaceManagerInterface.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSize>
#include <QtCore/QTimer>
#include <QtGui/QImage>

#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QWindow;

namespace sceneeditor
{
class GpuResources;
class SceneRenderer;

//! Shows renderers in native widgets through OpenGL 3.3. All windows share one context, which lives from the first
//! frame to the removal of the last window. Every renderer given to AddWindow() must be a SceneRenderer.
//!
//! If a frame takes more than 40 ms, frames in quick succession are drafts of a lower resolution. When they stop, the
//! manager repaints the widget once, in full resolution. A frame that takes even longer is drawn in slices, over
//! several paint events, so that the window responds in between.
//!
//! If OpenGL fails, the view shows the reason instead. It is tried once per window, not for each frame.
class SurfaceManager final : public QObject, public orvek::crossplatform::DisplaySurfaceManagerInterface
{
    Q_OBJECT
public:
    explicit SurfaceManager(QObject* parent = nullptr);
    ~SurfaceManager() override;

    void RemoveWindow(HWND window) override;
    void Render(HWND window) override;
    void AddWindow(HWND window, orvek::crossplatform::PlatformRendererInterface* renderer, int viewId) override;
    void ResizeSurface(HWND window) override;
    //! Numbers from 0 in the order of registration; -1 for an unknown window.
    int GetWindowViewId(HWND window) override;

    //! Why the window shows no scene; empty if it does, is unknown, or was not drawn yet.
    QString errorText(HWND window) const;
    //! Draws a frame and returns it, in device pixels with their ratio set. Needs no visible window. Null if the window
    //! is unknown or has no renderer, or if drawing failed: see errorText().
    QImage grabFrame(HWND window);
    //! Vendor's name of the graphics driver; empty before the first frame.
    QString graphicsName() const;

private:
    struct View
    {
        SceneRenderer* renderer = nullptr; // not owned
        int id = 0;
        QSize size; // device pixels
        QString error;
        double sharpTimes[2] = {}; // milliseconds, of the last two sharp frames
        double spent = 0.0;        // milliseconds on frames that were not finished yet
        QElapsedTimer sinceFrame;  // invalid before the first one
        bool draft = false;        // the frame shown is a draft
        bool refining = false;     // the next frame ends a series of drafts

        // Whether frames come fast and each would take too long.
        bool wantsDraft() const;
    };

    bool prepareContext(View& view, QWindow* surface);
    bool createContext(QString* error);
    void endFrame(View& view, bool wasKept);
    void dropRenderer(SceneRenderer* renderer);
    void releaseContext();
    void refine();

    QHash<HWND, View> m_views;
    std::unique_ptr<QOffscreenSurface> m_offscreen; // to release and to grab without a window
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<GpuResources> m_gpu; // lives as long as the context
    QString m_contextError;              // of the one attempt to create the context
    QString m_graphicsName;
    int m_nextId = 0;
    QTimer m_refine; // runs out when the drafts have stopped coming
};
} // namespace sceneeditor
