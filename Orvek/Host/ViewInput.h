#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

class QRenderWidget;

namespace orvek::base
{
class BaseMouseHandler;
}
namespace orvek::crossplatform
{
class DisplaySurfaceManagerInterface;
}

namespace orvek::host
{
//! Stands between a render widget and the engine's handler, and corrects what would confuse the handler: buttons and
//! keys whose release never comes, repeats of held keys, Tab, frames that nobody sees, and native windows that are
//! destroyed beneath the view.
class ORVEKQTHOST_EXPORT ViewInput : public QObject
{
    Q_OBJECT
public:
    //! Replaces the view's handler. Neither is owned. The view may die first; call setHandler(nullptr) before a handler
    //! dies. A null handler receives nothing.
    explicit ViewInput(QRenderWidget* view, orvek::base::BaseMouseHandler* handler, QObject* parent = nullptr);
    //! Releases what is held and gives the handler back to the view.
    ~ViewInput() override;

    //! Null once the view is destroyed.
    QRenderWidget* view() const;
    //! The receiver of the input, or null.
    orvek::base::BaseMouseHandler* handler() const;
    //! Sets the handler, after releasing what is held at the earlier one; null for none.
    void setHandler(orvek::base::BaseMouseHandler* handler);

    //! Sets the view's manager, and tells the manager whenever the view gets a new window: RemoveWindow() with the old
    //! handle, then AddWindow() with the new one. Not owned; null removes the window and ends this.
    void setManager(orvek::crossplatform::DisplaySurfaceManagerInterface* manager);

    //! Whether the handler receives the release of all held buttons and keys when the view loses the focus, is hidden
    //! or disabled, when its window is left, or when a modal dialog or a menu opens. Buttons are released at the last
    //! position of the pointer, keys with the code of their press. The real release that follows, and any without a
    //! press, is omitted. On by default.
    bool releasesHeld() const;
    void setReleasesHeld(bool releases);
    //! Whether repeats of held keys are omitted. On by default.
    bool omitsRepeats() const;
    void setOmitsRepeats(bool omits);
    //! Whether Tab and Backtab go to the handler; otherwise they move the focus. Off by default.
    bool passesTab() const;
    void setPassesTab(bool passes);
    //! Whether the view's native window is kept when its top-level widget recreates its own, as happens on X11 for a
    //! flag such as Qt::WindowStaysOnTopHint, and whether a window that Qt lost or left unmapped is created again. On
    //! by default.
    bool keepsWindow() const;
    void setKeepsWindow(bool keeps);

    //! Whether a repaint is requested at each refresh of the view's screen, as long as the view can be seen. Switches
    //! the view's own continuous update off. Off by default.
    bool isContinuousUpdate() const;
    void setContinuousUpdate(bool continuous);
    //! Whether any part of the view can be seen: false if it is hidden, minimised, scrolled out, covered by widgets of
    //! its own window, or reported as not exposed by the platform. X11 does not report other windows in front.
    bool isSeen() const;

Q_SIGNALS:
    //! The view's native window is about to be destroyed, or already is, and with it what an engine created for its
    //! handle. The manager set with setManager() has removed it.
    void windowLost();
    //! The view has a native window again, with another handle: view()->winId(). The manager set with setManager() has
    //! it.
    void windowReplaced();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
