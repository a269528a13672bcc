#include "plugin/WindowManager.h"

#include <windows.h>

namespace WindowManager {

void enableWindow(HWND window, bool enable)
{
    EnableWindow(window, enable ? TRUE : FALSE);
}

Rect windowRect(HWND window)
{
    RECT rc = {};
    GetWindowRect(window, &rc);
    return {static_cast<int>(rc.left), static_cast<int>(rc.top), static_cast<int>(rc.right),
            static_cast<int>(rc.bottom)};
}

void setForegroundWindow(HWND window)
{
    SetForegroundWindow(window);
}

void bringWindowToTop(HWND window)
{
    BringWindowToTop(window);
}

} // namespace WindowManager
