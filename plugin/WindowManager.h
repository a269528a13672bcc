#pragma once

#include "plugin/IZendelMgr.h" // HWND

/// The four operations on native windows that the modal routine needs, named after Win32's. One
/// file a platform implements them. Failures are not reported: a handle that is no window any
/// more is ignored.
namespace WindowManager {

/// Edges in screen pixels; right and bottom lie just outside.
struct Rect
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// Lets @p window take mouse and keyboard input, or not, as far as the platform can do that. Not
/// counted: the last call holds.
void enableWindow(HWND window, bool enable);

/// The outer frame of @p window, or an empty rectangle at the origin if it is no window.
Rect windowRect(HWND window);

/// Activates @p window: it comes to the front and gets the keyboard, if the system lets it.
void setForegroundWindow(HWND window);

/// Brings @p window to the top of its siblings.
void bringWindowToTop(HWND window);

} // namespace WindowManager
