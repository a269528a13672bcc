#include "plugin/WindowManager.h"

#include <QGuiApplication>
#include <QHash>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

// On Qt's platform xcb, a handle is an X11 window number. Every request is checked, so that an
// error comes back here, where it is dropped, and not to Qt, which would log it. On other platforms
// (offscreen, Wayland) there is no X11 connection; the handle of a window that this process has
// made with Qt is served through Qt, in Qt's coordinates, and any other handle is ignored.

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template<typename T>
using Reply = std::unique_ptr<T, Free>;

/// The input-only windows that keep the mouse from disabled ones, by the window they lie on.
QHash<xcb_window_t, xcb_window_t> covers;

/// What had the keyboard in a Qt window that is disabled; it does not get it back by itself.
QPointer<QWidget> focusWidget;

xcb_connection_t *xcbConnection()
{
    return QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
}

xcb_window_t toXcb(HWND window)
{
    return static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window));
}

bool succeeded(xcb_connection_t *connection, xcb_void_cookie_t cookie)
{
    return !Reply<xcb_generic_error_t>(xcb_request_check(connection, cookie));
}

/// Returns the window of this process that Qt knows by this handle, or null.
QWindow *qtWindow(HWND handle)
{
    const auto id = reinterpret_cast<WId>(handle);
    if (const QWidget *const widget = QWidget::find(id))
        return widget->window()->windowHandle();
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *const window : windows) {
        // Without the first test, winId() would make a native window for each that has none.
        if (window->handle() && window->winId() == id)
            return window;
    }
    return nullptr;
}

/// Only widgets can be disabled. From other Qt windows, the modal dialog takes the input.
void enableQtWindow(HWND handle, bool enable)
{
    QWidget *const found = QWidget::find(reinterpret_cast<WId>(handle));
    if (!found)
        return;

    QWidget *const window = found->window();
    if (!enable)
        focusWidget = window->focusWidget();
    window->setEnabled(enable);
    if (enable && focusWidget)
        focusWidget->setFocus();
}

/// The window that stands for @p window on the root: the frame that the window manager has put
/// around it, or the window itself; none if it is no window.
xcb_window_t frameOf(xcb_connection_t *connection, xcb_window_t window)
{
    for (;;) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        if (!tree)
            return XCB_WINDOW_NONE;
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
            return window;
        window = tree->parent;
    }
}

void coverWindow(xcb_connection_t *connection, xcb_window_t window)
{
    if (covers.contains(window))
        return;

    // As large as can be, so that the window may grow below it. What is not kept from propagating
    // would pass through to the window.
    const quint16 size = 0x7fff;
    const quint32 values[] = {XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE
                              | XCB_EVENT_MASK_POINTER_MOTION};
    const xcb_window_t cover = xcb_generate_id(connection);
    if (succeeded(connection,
                  xcb_create_window_checked(connection, XCB_COPY_FROM_PARENT, cover, window, 0, 0,
                                            size, size, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                                            XCB_COPY_FROM_PARENT, XCB_CW_DONT_PROPAGATE, values))
        && succeeded(
            connection,
            xcb_map_window_checked(connection, cover))) { // GCOV_EXCL_BR_LINE: it was just made.
        covers.insert(window, cover);
    }
}

} // namespace

namespace WindowManager {

/// X11 can't disable a window. A cover takes the mouse from it; the keyboard goes to the dialog,
/// which has the focus.
void enableWindow(HWND window, bool enable)
{
    xcb_connection_t *const connection = xcbConnection();
    if (!connection) {
        enableQtWindow(window, enable);
        return;
    }

    if (!enable)
        coverWindow(connection, toXcb(window));
    else if (const xcb_window_t cover = covers.take(toXcb(window)))
        succeeded(connection, xcb_destroy_window_checked(connection, cover));
}

Rect windowRect(HWND window)
{
    xcb_connection_t *const connection = xcbConnection();
    if (!connection) {
        const QWindow *const qt = qtWindow(window);
        const QRect frame = qt ? qt->frameGeometry() : QRect();
        return {frame.x(), frame.y(), frame.x() + frame.width(), frame.y() + frame.height()};
    }

    const xcb_window_t frame = frameOf(connection, toXcb(window));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, frame), nullptr));
    if (!geometry)
        return {};
    const int border = 2 * geometry->border_width;
    return {geometry->x, geometry->y, geometry->x + geometry->width + border,
            geometry->y + geometry->height + border};
}

void setForegroundWindow(HWND window)
{
    xcb_connection_t *const connection = xcbConnection();
    if (!connection) {
        if (QWindow *const qt = qtWindow(window)) {
            qt->raise();
            qt->requestActivate();
        }
        return;
    }

    bringWindowToTop(window);
    succeeded(connection,
              xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_PARENT, toXcb(window),
                                          XCB_CURRENT_TIME));
}

void bringWindowToTop(HWND window)
{
    xcb_connection_t *const connection = xcbConnection();
    if (!connection) {
        if (QWindow *const qt = qtWindow(window))
            qt->raise();
        return;
    }

    // Asked of the window and not of its frame: a window manager gets the request and obeys it.
    const quint32 values[] = {XCB_STACK_MODE_ABOVE};
    succeeded(connection,
              xcb_configure_window_checked(connection, toXcb(window), XCB_CONFIG_WINDOW_STACK_MODE,
                                           values));
}

} // namespace WindowManager
