// Without X11, the window manager supports windows that this process has created with Qt.

#include "plugin/WindowManager.h"

#include "support/NativeWindow.h"
#include "support/Warnings.h"

#include <QGuiApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace {

HWND handleOf(WId id)
{
    return reinterpret_cast<HWND>(id);
}

QRect rectOf(HWND window)
{
    const WindowManager::Rect rect = WindowManager::windowRect(window);
    return QRect(QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1));
}

} // namespace

class tst_WindowManager_offscreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void cleanup() { QCOMPARE(Warnings::take(), QStringList()); }

    void windowOfAnotherProgramIsIgnored();
    void invalidHandleIsIgnored_data();
    void invalidHandleIsIgnored();
    void rectIncludesTheFrame();
    void disabledWidgetIsEnabledAgain();
    void foregroundWindowIsActive();
    void windowWithoutAWidgetIsSupported();
    void nativeWindowsAreNotCreated();
};

void tst_WindowManager_offscreen::windowOfAnotherProgramIsIgnored()
{
    NativeWindow window(QRect(100, 100, 200, 200));
    WindowManager::enableWindow(window.handle(), false);
    NativeWindow::click({150, 150});
    QCOMPARE(window.takeClicks(), 1);
    QCOMPARE(rectOf(window.handle()), QRect(0, 0, 0, 0));
    WindowManager::setForegroundWindow(window.handle());
    QVERIFY(!window.hasFocus());
    WindowManager::bringWindowToTop(window.handle());
    WindowManager::enableWindow(window.handle(), true);
}

void tst_WindowManager_offscreen::invalidHandleIsIgnored_data()
{
    QTest::addColumn<quintptr>("handle");

    QTest::newRow("null") << quintptr(0);
    QTest::newRow("never a window") << quintptr(0x7654321);
    QTest::newRow("destroyed window") << quintptr(QWidget().winId());
}

void tst_WindowManager_offscreen::invalidHandleIsIgnored()
{
    QFETCH(quintptr, handle);

    auto *const window = handleOf(handle);
    QCOMPARE(rectOf(window), QRect(0, 0, 0, 0));
    WindowManager::enableWindow(window, false);
    WindowManager::setForegroundWindow(window);
    WindowManager::bringWindowToTop(window);
    WindowManager::enableWindow(window, true);
}

void tst_WindowManager_offscreen::rectIncludesTheFrame()
{
    QWidget widget;
    widget.resize(300, 200);
    widget.show();
    widget.move(30, 40);
    QCOMPARE(rectOf(handleOf(widget.winId())), widget.frameGeometry());
    QCOMPARE(widget.pos(), QPoint(30, 40));
    QVERIFY(widget.frameGeometry() != widget.geometry());
}

void tst_WindowManager_offscreen::disabledWidgetIsEnabledAgain()
{
    QWidget widget;
    const QWidget other;
    auto *const handle = handleOf(widget.winId());
    WindowManager::enableWindow(handle, false);
    QVERIFY(!widget.isEnabled());
    QVERIFY(other.isEnabled());
    WindowManager::enableWindow(handle, true);
    QVERIFY(widget.isEnabled());
}

void tst_WindowManager_offscreen::foregroundWindowIsActive()
{
    QWidget first;
    QWidget second;
    first.show();
    second.show();
    QVERIFY(QTest::qWaitForWindowExposed(&second));
    WindowManager::setForegroundWindow(handleOf(first.winId()));
    QTRY_VERIFY(first.isActiveWindow());
    WindowManager::bringWindowToTop(handleOf(second.winId()));
    QVERIFY(first.isActiveWindow());
    WindowManager::setForegroundWindow(handleOf(second.winId()));
    QTRY_VERIFY(second.isActiveWindow());
}

void tst_WindowManager_offscreen::windowWithoutAWidgetIsSupported()
{
    QWindow other;
    other.setGeometry(0, 0, 10, 10);
    other.show();
    QWindow window;
    window.setGeometry(100, 50, 800, 600);
    window.show();
    auto *const handle = handleOf(window.winId());
    QCOMPARE(rectOf(handle), window.frameGeometry());
    WindowManager::enableWindow(handle, false);
    WindowManager::setForegroundWindow(handle);
    QTRY_COMPARE(QGuiApplication::focusWindow(), &window);
    WindowManager::enableWindow(handle, true);
}

void tst_WindowManager_offscreen::nativeWindowsAreNotCreated()
{
    const QWindow window;
    WindowManager::bringWindowToTop(handleOf(0x7654321));
    QVERIFY(!window.handle());
}

QTEST_MAIN(tst_WindowManager_offscreen)
#include "tst_WindowManager_offscreen.moc"
