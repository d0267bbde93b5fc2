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
//! Stands between a render widget and the engine's handler, and mends what the handler would stumble over: buttons and
//! keys whose release never comes, repeats of held keys, Tab, frames that nobody sees and native windows that are
//! destroyed beneath the view.
class ORVEKQTHOST_EXPORT ViewInput : public QObject
{
    Q_OBJECT
public:
    //! Takes the place of the view's handler. Neither is owned. The view may die first; a handler that dies first has
    //! to be taken away with setHandler(nullptr). A null handler receives nothing.
    explicit ViewInput(QRenderWidget* view, orvek::base::BaseMouseHandler* handler, QObject* parent = nullptr);
    //! Releases what is held and gives the view its handler back.
    ~ViewInput() override;

    //! Null once it has been destroyed.
    QRenderWidget* view() const;
    //! What receives the input, or null.
    orvek::base::BaseMouseHandler* handler() const;
    //! Releases what the earlier handler holds. Null for none.
    void setHandler(orvek::base::BaseMouseHandler* handler);

    //! Sets the view's manager, and gives the manager the new window whenever the view gets one: RemoveWindow() with
    //! the old handle, then AddWindow() with the new one. Not owned; null removes the window and stops it.
    void setManager(orvek::crossplatform::DisplaySurfaceManagerInterface* manager);

    //! Whether the handler receives the release of all held buttons and keys when the view loses the focus, is hidden
    //! or disabled, its window is left or a modal dialog or a menu opens. Buttons go up where the pointer was last,
    //! keys with the code of their press. The true release that follows, and one without a press, are left out. On by
    //! default.
    bool releasesHeld() const;
    void setReleasesHeld(bool releases);
    //! Whether repeats of held keys are left out. On by default.
    bool omitsRepeats() const;
    void setOmitsRepeats(bool omits);
    //! Whether Tab and Backtab go to the handler; else they move the focus on. Off by default.
    bool passesTab() const;
    void setPassesTab(bool passes);
    //! Whether the view's native window is kept when its top level makes its own again, as X11 does for a flag such as
    //! Qt::WindowStaysOnTopHint, and whether a window that Qt lost or left unmapped is made once more. On by default.
    bool keepsWindow() const;
    void setKeepsWindow(bool keeps);

    //! Whether a repaint is requested at each refresh of the screen that the view is on, as long as the view is seen.
    //! Switches the view's own continuous update off. Off by default.
    bool isContinuousUpdate() const;
    void setContinuousUpdate(bool continuous);
    //! Whether any of the view can be seen: false if it is hidden, minimised, scrolled out, covered by widgets of its
    //! own window, or not exposed as far as the platform says so. X11 does not report other windows in front.
    bool isSeen() const;

Q_SIGNALS:
    //! The view's native window is about to go, or gone already; so is what an engine has made for its handle. The
    //! manager of setManager() has removed it.
    void windowLost();
    //! The view has a native window again, of another handle: view()->winId(). The manager of setManager() has it.
    void windowReplaced();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
