#pragma once

#include "plugin/IZendelMgr.h" // HWND

/// The operations on native windows that the modal routine needs, named after Win32's functions.
/// One source file per platform implements them. A handle whose window no longer exists is ignored.
namespace WindowManager {

/// A rectangle on the screen, in physical pixels; without a native window system, in Qt's.
struct Rect
{
    int left = 0;   ///< Negative on a screen to the left of the primary one.
    int top = 0;    ///< Negative on a screen above the primary one.
    int right = 0;  ///< Left plus width.
    int bottom = 0; ///< Top plus height.
};

/// Enables or disables mouse and keyboard input to @p window, as far as the platform allows. Calls
/// are not counted: the last one decides.
void enableWindow(HWND window, bool enable);

/// Returns the outer frame of @p window, or an empty rectangle at the origin if it is not a window.
Rect windowRect(HWND window);

/// Raises @p window and gives it the keyboard focus, if the system permits it.
void setForegroundWindow(HWND window);

/// Raises @p window above its siblings.
void bringWindowToTop(HWND window);

} // namespace WindowManager
