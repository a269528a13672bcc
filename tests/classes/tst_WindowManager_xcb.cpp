#include "plugin/WindowManager.h"

#include "support/NativeWindow.h"
#include "support/Warnings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

namespace WindowManager {

static bool operator==(const Rect &a, const Rect &b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

static char *toString(const Rect &rect)
{
    return QTest::toString(QStringLiteral("%1, %2, %3, %4")
                               .arg(rect.left)
                               .arg(rect.top)
                               .arg(rect.right)
                               .arg(rect.bottom));
}

} // namespace WindowManager

using WindowManager::Rect;

class tst_WindowManager_xcb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void cleanup();

    void invalidHandleIsIgnored_data();
    void invalidHandleIsIgnored();
    void lastCallEnablesOrDisables();
    void disabledWindowCanGrow();
    void rectIsInScreenCoordinates();
    void rectIncludesTheFrame();
    void rectOfTheDesktopIsTheScreen();
    void foregroundWindowHasFocusAndIsOnTop();
    void topWindowIsAboveButHasNoFocus();
    void hiddenWindowIsNotAnError();
};

void tst_WindowManager_xcb::cleanup()
{
    NativeWindow::synchronizeQt();
    QCOMPARE(Warnings::take(), QStringList());
}

void tst_WindowManager_xcb::invalidHandleIsIgnored_data()
{
    QTest::addColumn<quintptr>("handle");

    NativeWindow window(QRect(0, 0, 10, 10));
    QTest::newRow("null") << quintptr(0);
    QTest::newRow("never a window") << quintptr(0x7654321);
    QTest::newRow("destroyed window") << reinterpret_cast<quintptr>(window.handle());
}

void tst_WindowManager_xcb::invalidHandleIsIgnored()
{
    QFETCH(quintptr, handle);

    const auto window = reinterpret_cast<HWND>(handle);
    QCOMPARE(WindowManager::windowRect(window), Rect());
    WindowManager::enableWindow(window, false);
    WindowManager::setForegroundWindow(window);
    WindowManager::bringWindowToTop(window);
    WindowManager::enableWindow(window, true);
}

void tst_WindowManager_xcb::lastCallEnablesOrDisables()
{
    NativeWindow window(QRect(100, 100, 200, 200));
    WindowManager::enableWindow(window.handle(), true);
    NativeWindow::click({150, 150});
    QCOMPARE(window.takeInput(), 2); // Movement and button

    WindowManager::enableWindow(window.handle(), false);
    WindowManager::enableWindow(window.handle(), false);
    NativeWindow::click({160, 160});
    NativeWindow::click({170, 170});
    const int input = window.takeInput();
    WindowManager::enableWindow(window.handle(), true);
    QCOMPARE(input, 0);
    NativeWindow::click({150, 150});
    QCOMPARE(window.takeClicks(), 1);
}

void tst_WindowManager_xcb::disabledWindowCanGrow()
{
    NativeWindow window(QRect(100, 100, 50, 50));
    WindowManager::enableWindow(window.handle(), false);
    const quint32 size[] = {400, 400};
    xcb_configure_window(QX11Info::connection(),
                         static_cast<xcb_window_t>(reinterpret_cast<quintptr>(window.handle())),
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    QCOMPARE(WindowManager::windowRect(window.handle()), Rect({100, 100, 500, 500}));
    NativeWindow::click({450, 450});
    QCOMPARE(window.takeClicks(), 0);
    WindowManager::enableWindow(window.handle(), true);
}

void tst_WindowManager_xcb::rectIsInScreenCoordinates()
{
    const NativeWindow window(QRect(100, 50, 800, 600));
    QCOMPARE(WindowManager::windowRect(window.handle()), Rect({100, 50, 900, 650}));
    const NativeWindow offScreen(QRect(-30, -20, 100, 200));
    QCOMPARE(WindowManager::windowRect(offScreen.handle()), Rect({-30, -20, 70, 180}));
}

void tst_WindowManager_xcb::rectIncludesTheFrame()
{
    // As a window manager does: a frame with a border of 2, and in it, at (5, 25), a window around
    // the host's.
    xcb_connection_t *const connection = QX11Info::connection();
    const NativeWindow window(QRect(0, 0, 300, 200));
    const xcb_window_t frame = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, frame,
                      static_cast<xcb_window_t>(QX11Info::appRootWindow()), 70, 40, 310, 230, 2,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_window_t inner = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, inner, frame, 5, 25, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_reparent_window(connection,
                        static_cast<xcb_window_t>(reinterpret_cast<quintptr>(window.handle())),
                        inner, 0, 0);
    QCOMPARE(WindowManager::windowRect(window.handle()), Rect({70, 40, 384, 274}));
    xcb_destroy_window(connection, frame);
}

void tst_WindowManager_xcb::rectOfTheDesktopIsTheScreen()
{
    const auto root = reinterpret_cast<HWND>(static_cast<quintptr>(QX11Info::appRootWindow()));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(WindowManager::windowRect(root), Rect({0, 0, screen.width(), screen.height()}));
}

void tst_WindowManager_xcb::foregroundWindowHasFocusAndIsOnTop()
{
    NativeWindow below(QRect(100, 100, 200, 200));
    NativeWindow above(QRect(150, 150, 200, 200));
    NativeWindow::click({200, 200});
    QCOMPARE(above.takeClicks(), 1);

    WindowManager::setForegroundWindow(below.handle());
    QVERIFY(below.hasFocus());
    QVERIFY(!above.hasFocus());
    NativeWindow::click({200, 200});
    QCOMPARE(above.takeClicks(), 0);
    QCOMPARE(below.takeClicks(), 1);

    WindowManager::setForegroundWindow(above.handle());
    QVERIFY(above.hasFocus());
}

void tst_WindowManager_xcb::topWindowIsAboveButHasNoFocus()
{
    NativeWindow below(QRect(100, 100, 200, 200));
    NativeWindow above(QRect(150, 150, 200, 200));
    WindowManager::setForegroundWindow(above.handle());
    WindowManager::bringWindowToTop(below.handle());
    QVERIFY(above.hasFocus());
    NativeWindow::click({200, 200});
    QCOMPARE(above.takeClicks(), 0);
    QCOMPARE(below.takeClicks(), 1);
}

void tst_WindowManager_xcb::hiddenWindowIsNotAnError()
{
    QWindow window;
    window.create();
    const auto handle = reinterpret_cast<HWND>(window.winId());
    WindowManager::setForegroundWindow(handle);
    WindowManager::bringWindowToTop(handle);
}

QTEST_MAIN(tst_WindowManager_xcb)
#include "tst_WindowManager_xcb.moc"
