#pragma once

#include <Orvek/Base/BaseMouseHandler.h>
#include <Orvek/CrossPlatform/DisplaySurfaceManagerInterface.h>
#include <Orvek/CrossPlatform/PlatformRendererInterface.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>

#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QTimer;
QT_END_NAMESPACE

//! A widget with a native window that an engine draws on.
//!
//! The widget registers its window with the host's display-surface manager, asks the manager for a frame at each paint,
//! reports size changes to it and passes mouse, wheel and key input to the host's handler. The engine's objects belong
//! to the host, which must set them to null here, or delete the widget, before it deletes them. Without a manager the
//! widget shows the message "Renderer is not enabled".
//!
//! Set the manager before the widget is first shown: to paint the message, Qt's own painting is switched on and stays
//! on, beneath the engine's frames. All of the widget's ancestors and their children become native windows too, unless
//! Qt::WA_DontCreateNativeAncestors is set on the widget itself before it gets a parent.
class ORVEKQTWIDGETS_EXPORT QRenderWidget : public QWidget
{
    Q_OBJECT
public:
    explicit QRenderWidget(QWidget* parent = nullptr);
    //! Detaches the window from the manager, see shutdown().
    ~QRenderWidget() override;

    //! The last known handle of the window; 0 if there is none.
    HWND GetHWND();
    //! The renderer, not owned, or null.
    orvek::crossplatform::PlatformRendererInterface* GetPlatformRendererInterface();
    //! Sets the renderer of this view; null draws nothing. If there is a manager, the window is registered with it at
    //! once. No repaint is requested: call Update().
    void SetPlatformRendererInterface(orvek::crossplatform::PlatformRendererInterface* renderer);
    //! Registers the window with the manager, after removing it from an earlier one; null only removes it. If the
    //! widget was shown before, call Update(). A second manager receives no ResizeSurface() while the size stays the
    //! same.
    void SetDisplaySurfaceManagerInterface(orvek::crossplatform::DisplaySurfaceManagerInterface* manager);
    //! Sets the handler of this view's input; null for none.
    void SetHandleMouseInterface(orvek::base::BaseMouseHandler* handler);
    //! If continuous is true, a repaint is requested every millisecond instead of on demand. Off by default.
    void setContinuousUpdate(bool continuous);
    //! The manager's number for this view, or -1 without a manager or window.
    int GetViewId() const;
    //! Removes the window from the manager, after registering it once more without a renderer. The manager itself stays
    //! set. Harmless when repeated.
    void shutdown();

    //! Null: the engine does the drawing.
    QPaintEngine* paintEngine() const override;

Q_SIGNALS:
    //! A frame was rendered. Emitted during the paint event.
    void viewUpdated();
    //! A key was released over the view, after the mouse handler received it. The event is only valid during the
    //! signal.
    void keyReleased(QKeyEvent* event);
    //! Emitted after viewUpdated().
    void deferredUpdate();

public Q_SLOTS:
    //! Requests a repaint; several requests before it are merged.
    void Update();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    HWND readHandle() const;
    void registerWindow();
    void detach(bool hasWindow);
    QPoint devicePosition(const QMouseEvent* event) const;
    void paintFrame();
    void paintMessage();

    HWND m_hwnd = 0;
    int m_surfaceWidth = 0;
    int m_surfaceHeight = 0;
    int m_pendingWidth = 0;
    int m_pendingHeight = 0;
    bool m_surfaceRegistered = false;
    QTimer* m_updateTimer = nullptr; // a child; null unless updating continuously
    // Owned by the host; null until it sets them.
    orvek::crossplatform::DisplaySurfaceManagerInterface* m_displaySurfaceManager = nullptr;
    orvek::crossplatform::PlatformRendererInterface* m_platformRenderer = nullptr;
    orvek::base::BaseMouseHandler* m_mouseHandler = nullptr;
};
