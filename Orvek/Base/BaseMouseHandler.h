#pragma once

namespace orvek
{
namespace base
{
//! Receives the input of a view. Implemented by the engine, owned by the host, called on the GUI thread. It must
//! outlive every widget that it is set on, or be removed from them first.
//!
//! Positions are in device pixels from the top left corner of the view and can lie outside it during a drag. A button
//! is given by the value of its Qt::MouseButton: 1 left, 2 right, 4 middle and so on.
//!
//! Engines are built separately from this library, so the order of the operations is binary interface: none may be
//! added, removed or moved. For the same reason the destructor is not virtual, as compilers differ in the slots it
//! takes.
class BaseMouseHandler
{
public:
    //! Never called; keeps its slot.
    virtual void Reserved0() {}
    //! The button went down at x, y.
    virtual void MouseDown(int button, int x, int y) = 0;
    //! The button went up at x, y.
    virtual void MouseUp(int button, int x, int y) = 0;
    //! The button was double-clicked at x, y. Called instead of MouseDown() for the second press.
    virtual void MouseDoubleClick(int button, int x, int y) = 0;
    //! The pointer moved to x, y, with or without a button held.
    virtual void MouseMove(int x, int y) = 0;
    //! Never called; keeps its slot.
    virtual void Reserved5() {}
    //! The wheel was turned. The delta is in eighths of a degree, 120 for a notch of most wheels, positive away from
    //! the user. The modifiers are a sum of 1 for Shift, 2 for Alt and 4 for Control.
    virtual void MouseWheel(int delta, int modifiers) = 0;
    //! A key was pressed or released. The key is the platform's virtual-key code; reserved is always 0.
    virtual void KeyboardInput(unsigned int key, bool pressed, int reserved) = 0;

protected:
    ~BaseMouseHandler() = default;
};
} // namespace base
} // namespace orvek
