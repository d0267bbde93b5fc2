#pragma once

#include <Orvek/CrossPlatform/WindowHandle.h>

namespace orvek
{
namespace crossplatform
{
class PlatformRendererInterface;

//! Keeps the drawing surfaces of the windows that the engine renders to. Implemented by the engine, owned by the host,
//! called on the GUI thread. It must outlive every widget that it is set on, or be removed from them first.
//!
//! Engines are built separately from this library, so the order of the operations is binary interface: none may be
//! added, removed or moved. For the same reason the destructor is not virtual, as compilers differ in the slots it
//! takes.
class DisplaySurfaceManagerInterface
{
public:
    //! Never called; keeps its slot.
    virtual void Reserved0() {}
    //! The window is no longer rendered to; its surface can be released. The window itself still exists.
    virtual void RemoveWindow(HWND window) = 0;
    //! Draws one frame in the window, at its current size; does nothing for an unknown window. Called during the paint
    //! event of the window's widget.
    virtual void Render(HWND window) = 0;
    //! From now on the window shows what the renderer draws. For a known window this replaces its renderer. The
    //! renderer may be null: nothing is drawn. The viewId is always -1: the engine chooses.
    virtual void AddWindow(HWND window, PlatformRendererInterface* renderer, int viewId) = 0;
    //! Never called; keeps its slot.
    virtual void Reserved4() {}
    //! The size of the window has changed; read the new one from the window, in device pixels. Not called on a second
    //! manager while the size stays the same.
    virtual void ResizeSurface(HWND window) = 0;
    //! The engine's number for the view in this window.
    virtual int GetWindowViewId(HWND window) = 0;

protected:
    ~DisplaySurfaceManagerInterface() = default;
};
} // namespace crossplatform
} // namespace orvek
