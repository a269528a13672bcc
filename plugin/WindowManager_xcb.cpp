#include "plugin/WindowManager.h"

#include <QGuiApplication>
#include <QHash>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

// On Qt's platform xcb, a handle is an X11 window ID. Other platforms (offscreen, Wayland) have no
// X11 connection: windows that this process has created with Qt are served through Qt, in Qt's
// coordinates, and other handles are ignored.

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template<typename T>
using Reply = std::unique_ptr<T, Free>;

/// Maps each disabled window to the input-only window that keeps the mouse from it.
QHash<xcb_window_t, xcb_window_t> covers;

/// Returns Qt's X11 connection, or null on other platforms.
xcb_connection_t *connection()
{
    return QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
}

xcb_window_t toXcb(HWND window)
{
    return static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window));
}

/// Waits for a request and drops its error, which means that the window no longer exists. Qt would
/// log the errors of requests that aren't checked.
void complete(xcb_void_cookie_t cookie)
{
    std::free(xcb_request_check(connection(), cookie));
}

/// Returns the Qt window of this process with this handle, or null.
QWindow *qtWindow(HWND handle)
{
    const auto id = reinterpret_cast<WId>(handle);
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *const window : windows) {
        // Without the first test, winId() would create missing native windows.
        if (window->handle() && window->winId() == id)
            return window;
    }
    return nullptr;
}

/// Enables or disables widgets only. The modal dialog itself blocks input to other Qt windows.
void enableQtWindow(HWND handle, bool enable)
{
    if (QWidget *const window = QWidget::find(reinterpret_cast<WId>(handle)))
        window->setEnabled(enable);
}

/// Returns the frame that the window manager has put around @p window, or @p window itself if it
/// has no frame; XCB_WINDOW_NONE if it is not a window.
xcb_window_t frameOf(xcb_window_t window)
{
    for (;;) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
        if (!tree)
            return XCB_WINDOW_NONE;
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
            return window;
        window = tree->parent;
    }
}

void coverWindow(xcb_window_t window)
{
    if (covers.contains(window))
        return;

    // As large as possible, because the window may grow. Events that the cover does not stop from
    // propagating would reach the window.
    const quint16 size = 0x7fff;
    const quint32 values[] = {XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE
                              | XCB_EVENT_MASK_POINTER_MOTION};
    const xcb_window_t cover = xcb_generate_id(connection());
    complete(xcb_create_window_checked(connection(), XCB_COPY_FROM_PARENT, cover, window, 0, 0,
                                       size, size, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                                       XCB_COPY_FROM_PARENT, XCB_CW_DONT_PROPAGATE, values));
    complete(xcb_map_window_checked(connection(), cover));
    covers.insert(window, cover);
}

} // namespace

namespace WindowManager {

/// X11 can't disable a window. A cover takes the mouse input, and the dialog has the focus.
void enableWindow(HWND window, bool enable)
{
    if (!connection())
        enableQtWindow(window, enable);
    else if (!enable)
        coverWindow(toXcb(window));
    else if (const xcb_window_t cover = covers.take(toXcb(window)))
        complete(xcb_destroy_window_checked(connection(), cover));
}

Rect windowRect(HWND window)
{
    if (!connection()) {
        const QWindow *const qt = qtWindow(window);
        const QRect frame = qt ? qt->frameGeometry() : QRect();
        return {frame.x(), frame.y(), frame.x() + frame.width(), frame.y() + frame.height()};
    }

    const xcb_window_t frame = frameOf(toXcb(window));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), frame), nullptr));
    if (!geometry)
        return {};
    const int border = 2 * geometry->border_width;
    return {geometry->x, geometry->y, geometry->x + geometry->width + border,
            geometry->y + geometry->height + border};
}

void setForegroundWindow(HWND window)
{
    bringWindowToTop(window);
    if (connection()) {
        complete(xcb_set_input_focus_checked(connection(), XCB_INPUT_FOCUS_PARENT, toXcb(window),
                                             XCB_CURRENT_TIME));
    } else if (QWindow *const qt = qtWindow(window)) {
        qt->requestActivate();
    }
}

void bringWindowToTop(HWND window)
{
    if (connection()) {
        // For the window, not its frame: the window manager gets the request and raises the frame.
        const quint32 values[] = {XCB_STACK_MODE_ABOVE};
        complete(xcb_configure_window_checked(connection(), toXcb(window),
                                              XCB_CONFIG_WINDOW_STACK_MODE, values));
    } else if (QWindow *const qt = qtWindow(window)) {
        qt->raise();
    }
}

} // namespace WindowManager
