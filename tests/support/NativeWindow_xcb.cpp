#include "support/NativeWindow.h"

#include <QCoreApplication>
#include <QList>
#include <QX11Info>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdint>
#include <cstdlib>

namespace {

xcb_screen_t *screenOf(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

/// Waits until the server has processed all earlier requests.
void synchronize(xcb_connection_t *connection)
{
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

} // namespace

struct NativeWindow::Private
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    xcb_window_t window = xcb_generate_id(connection);

    ~Private() { xcb_disconnect(connection); }

    int takeEvents(const QList<int> &types) const
    {
        synchronize(connection);
        int count = 0;
        while (xcb_generic_event_t *const event = xcb_poll_for_event(connection)) {
            if (types.contains(event->response_type & 0x7f))
                ++count;
            std::free(event);
        }
        return count;
    }
};

NativeWindow::NativeWindow(const QRect &geometry)
    : d(std::make_unique<Private>())
{
    const quint32 events[] = {XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_POINTER_MOTION
                              | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(d->connection, XCB_COPY_FROM_PARENT, d->window, screenOf(d->connection)->root,
                      static_cast<qint16>(geometry.x()), static_cast<qint16>(geometry.y()),
                      static_cast<quint16>(geometry.width()),
                      static_cast<quint16>(geometry.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, events);
    xcb_map_window(d->connection, d->window);
    xcb_flush(d->connection);
    std::free(xcb_wait_for_event(d->connection)); // Until it is on the screen
}

NativeWindow::~NativeWindow() = default;

HWND NativeWindow::handle() const
{
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(d->window));
}

QRect NativeWindow::geometry() const
{
    xcb_get_geometry_reply_t *const reply =
        xcb_get_geometry_reply(d->connection, xcb_get_geometry(d->connection, d->window), nullptr);
    const QRect result = reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
    std::free(reply);
    return result;
}

void NativeWindow::destroy()
{
    xcb_destroy_window(d->connection, d->window);
    synchronize(d->connection);
}

void NativeWindow::click(const QPoint &position)
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = screenOf(connection)->root;
    xcb_test_fake_input(connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root,
                        static_cast<qint16>(position.x()), static_cast<qint16>(position.y()), 0);
    xcb_test_fake_input(connection, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, root, 0, 0, 0);
    xcb_test_fake_input(connection, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, root, 0, 0, 0);
    synchronize(connection);
    xcb_disconnect(connection);
}

void NativeWindow::typeKey()
{
    const quint8 anyKey = 38;
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    xcb_test_fake_input(connection, XCB_KEY_PRESS, anyKey, XCB_CURRENT_TIME, 0, 0, 0, 0);
    xcb_test_fake_input(connection, XCB_KEY_RELEASE, anyKey, XCB_CURRENT_TIME, 0, 0, 0, 0);
    synchronize(connection);
    xcb_disconnect(connection);
}

int NativeWindow::takeClicks()
{
    return d->takeEvents({XCB_BUTTON_PRESS});
}

int NativeWindow::takeInput()
{
    return d->takeEvents({XCB_MOTION_NOTIFY, XCB_BUTTON_PRESS, XCB_KEY_PRESS});
}

bool NativeWindow::hasFocus() const
{
    xcb_get_input_focus_reply_t *const reply =
        xcb_get_input_focus_reply(d->connection, xcb_get_input_focus(d->connection), nullptr);
    const bool focus = reply && reply->focus == d->window;
    std::free(reply);
    return focus;
}

bool NativeWindow::isOnTop(const QPoint &position) const
{
    const xcb_window_t root = screenOf(d->connection)->root;
    xcb_translate_coordinates_reply_t *const reply = xcb_translate_coordinates_reply(
        d->connection,
        xcb_translate_coordinates(d->connection, root, root, static_cast<qint16>(position.x()),
                                  static_cast<qint16>(position.y())),
        nullptr);
    const bool onTop = reply && reply->child == d->window;
    std::free(reply);
    return onTop;
}

void NativeWindow::synchronizeQt()
{
    if (QX11Info::isPlatformX11())
        synchronize(QX11Info::connection());
    QCoreApplication::processEvents();
}
