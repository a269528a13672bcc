#pragma once

#include "plugin/IZendelMgr.h" // HWND

/// The four operations on native windows that the modal routine needs, named after Win32's. One
/// file a platform implements them. Failures are not reported: a handle that is no window any
/// more is ignored.
namespace WindowManager {

/// A rectangle on the screen, in the window system's pixels, which unlike Qt's are never scaled.
/// Where Qt itself stands in for the window system, in Qt's.
struct Rect
{
    int left = 0;   ///< In screen pixels, as all four; negative on a screen left of the first.
    int top = 0;    ///< Grows downwards.
    int right = 0;  ///< Just outside: left plus width.
    int bottom = 0; ///< Just outside: top plus height.
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
