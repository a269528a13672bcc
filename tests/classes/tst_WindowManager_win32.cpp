// Each operation is one call to Windows with the same window, whatever the call returns.

#include "plugin/WindowManager.h"

#include "support/Imports_win32.h"

#include <QStringList>
#include <QTest>

#include <utility>

#include <windows.h>

namespace {

QStringList calls;
BOOL result = TRUE;

BOOL record(const char *function, HWND window)
{
    calls += QStringLiteral("%1(%2)")
                 .arg(QLatin1String(function))
                 .arg(reinterpret_cast<quintptr>(window));
    return result;
}

BOOL WINAPI recordEnableWindow(HWND window, BOOL enable)
{
    return record(enable ? "EnableWindow TRUE" : "EnableWindow FALSE", window);
}

/// The rectangle depends on the window. A failed call leaves it as it is.
BOOL WINAPI recordGetWindowRect(HWND window, RECT *rect)
{
    const auto left = static_cast<LONG>(reinterpret_cast<quintptr>(window));
    if (result)
        *rect = {left, -2, 300000, 4};
    return record("GetWindowRect", window);
}

BOOL WINAPI recordSetForegroundWindow(HWND window)
{
    return record("SetForegroundWindow", window);
}

BOOL WINAPI recordBringWindowToTop(HWND window)
{
    return record("BringWindowToTop", window);
}

HWND window(quintptr number)
{
    return reinterpret_cast<HWND>(number);
}

QString rectangle(HWND window)
{
    const WindowManager::Rect rc = WindowManager::windowRect(window);
    return QStringLiteral("%1 %2 %3 %4").arg(rc.left).arg(rc.top).arg(rc.right).arg(rc.bottom);
}

} // namespace

class tst_WindowManager_win32 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void eachOperationIsOneCall_data();
    void eachOperationIsOneCall();
};

void tst_WindowManager_win32::initTestCase()
{
    replaceOwnImport("EnableWindow", reinterpret_cast<void *>(&recordEnableWindow));
    replaceOwnImport("GetWindowRect", reinterpret_cast<void *>(&recordGetWindowRect));
    replaceOwnImport("SetForegroundWindow", reinterpret_cast<void *>(&recordSetForegroundWindow));
    replaceOwnImport("BringWindowToTop", reinterpret_cast<void *>(&recordBringWindowToTop));
}

void tst_WindowManager_win32::eachOperationIsOneCall_data()
{
    QTest::addColumn<int>("success");
    QTest::addColumn<QString>("firstRectangle");
    QTest::addColumn<QString>("secondRectangle");

    QTest::newRow("success") << int(TRUE) << QStringLiteral("1 -2 300000 4")
                             << QStringLiteral("2 -2 300000 4");
    QTest::newRow("failure") << int(FALSE) << QStringLiteral("0 0 0 0")
                             << QStringLiteral("0 0 0 0");
}

void tst_WindowManager_win32::eachOperationIsOneCall()
{
    QFETCH(int, success);
    QFETCH(QString, firstRectangle);
    QFETCH(QString, secondRectangle);

    result = success;
    WindowManager::enableWindow(window(1), false);
    WindowManager::enableWindow(window(2), true);
    QCOMPARE(rectangle(window(1)), firstRectangle);
    QCOMPARE(rectangle(window(2)), secondRectangle);
    WindowManager::setForegroundWindow(window(1));
    WindowManager::bringWindowToTop(window(2));
    result = TRUE;
    QCOMPARE(
        std::exchange(calls, {}),
        QStringList({QStringLiteral("EnableWindow FALSE(1)"),
                     QStringLiteral("EnableWindow TRUE(2)"), QStringLiteral("GetWindowRect(1)"),
                     QStringLiteral("GetWindowRect(2)"), QStringLiteral("SetForegroundWindow(1)"),
                     QStringLiteral("BringWindowToTop(2)")}));
}

QTEST_MAIN(tst_WindowManager_win32)
#include "tst_WindowManager_win32.moc"
