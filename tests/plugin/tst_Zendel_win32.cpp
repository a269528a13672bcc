// Tests the built DLL on Windows with a main window made without Qt: what the operator sees on the
// screen, the version resource, and leaks.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/NativeWindow.h"
#include "support/PluginTest.h"
#include "support/TestOnEveryQt.h"

#include <QFile>
#include <QImage>
#include <QMap>
#include <QScreen>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include <windows.h>

#include <psapi.h>

namespace {

/// Returns the number of GDI objects of this process. Wine's GetGuiResources() always returns 0,
/// but Wine accepts handles by their low word alone, so each possible one can be tried.
qint64 countGdiObjects()
{
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return count;

    qint64 count = 0;
    for (quintptr lowWord = 0; lowWord <= 0xFFFF; ++lowWord)
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(lowWord)) != 0 ? 1 : 0;
    return count;
}

BOOL CALLBACK countWindow(HWND /*window*/, LPARAM count)
{
    ++*reinterpret_cast<qint64 *>(count);
    return TRUE;
}

using Resources = QMap<QString, qint64>;
const QString memoryName = QStringLiteral("memory");

/// Returns what a leak would add to. Wine doesn't count USER objects, only the windows among them.
Resources resources()
{
    NativeWindow::synchronizeQt();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qint64 windows = 0;
    EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&windows));
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
    return {
        {QStringLiteral("USER objects"), GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)},
        {QStringLiteral("GDI objects"), countGdiObjects()},
        {QStringLiteral("windows"), windows},
        {memoryName, static_cast<qint64>(memory.PagefileUsage)},
    };
}

/// Runs a cycle 50 times and returns the minimum of each resource, because the size of the heap
/// varies by a megabyte.
Resources minimumOfCycles(const std::function<void()> &cycle)
{
    const int cycles = 50;
    Resources minimum = resources();
    for (int i = 0; i < cycles; ++i) {
        cycle();
        const Resources now = resources();
        for (auto it = minimum.begin(); it != minimum.end(); ++it)
            *it = qMin(*it, now.value(it.key()));
    }
    return minimum;
}

/// Runs a cycle until everything that is created once exists, then 100 times more. Returns what has
/// grown from the first half to the second, or an empty string.
QString growth(const std::function<void()> &cycle)
{
    const int warmUp = 20;
    for (int i = 0; i < warmUp; ++i)
        cycle();
    const Resources before = minimumOfCycles(cycle);
    const Resources after = minimumOfCycles(cycle);

    QStringList grown;
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (*it == 0 && it.key() != QLatin1String("USER objects"))
            return QStringLiteral("not everything could be measured");
        // Wine commits the heap a megabyte at a time and keeps a reserve, so small leaks can go
        // unnoticed there; the windows and GDI objects are counted exactly.
        const qint64 tolerance = it.key() == memoryName ? 2097152 : 0;
        const qint64 added = after.value(it.key()) - *it;
        if (added > tolerance)
            grown += QStringLiteral("%1 by %2").arg(it.key()).arg(added);
    }
    return grown.join(QStringLiteral(", "));
}

} // namespace

class tst_Zendel_win32 : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void dialogIsPaintedOverTheOwner_data();
    void dialogIsPaintedOverTheOwner();
    void versionResourceIsComplete();
    void leaksAreDetected();
    void changesDoNotLeak();
    void loadsDoNotLeak();
};

void tst_Zendel_win32::cleanup()
{
    m_operator.takeDialogs();
    PluginTest::cleanup();
}

void tst_Zendel_win32::dialogIsPaintedOverTheOwner_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("title");

    QTest::newRow("English") << QStringLiteral("en") << QStringLiteral("Settings");
    QTest::newRow("Chinese") << QStringLiteral("chs") << QStringLiteral("设置");
}

void tst_Zendel_win32::dialogIsPaintedOverTheOwner()
{
    QFETCH(QString, folder);
    QFETCH(QString, title);

    QFile translation(testFile(QStringLiteral(SAMPLE_DEPLOYMENT "/%1/Zendel.qm").arg(folder)));
    QVERIFY(translation.open(QIODevice::ReadOnly));
    Deployment::writeTranslation(folder, translation.readAll());
    Deployment::writeLines("DEFAULT=" + QByteArray(folder == QLatin1String("en") ? "1" : "2")
                           + "\nLANG1_NAME=English\nLANG1_FOLDER=en\nLANG1_SHOW=1\n"
                             "LANG2_NAME=简体中文\nLANG2_FOLDER=chs\nLANG2_SHOW=1\n");
    QVERIFY(m_mgr->Init(&m_machine));

    const NativeWindow owner(QRect(100, 50, 800, 600));
    const QRect area(90, 40, 820, 620);
    const QPoint tab = QPoint(160, 155) - area.topLeft();
    QImage screenshot;
    m_operator.onDialog = [&](const QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), title);
        const bool painted = TestOnEveryQt::waitFor([&] {
            screenshot = dialog.windowHandle()
                             ->screen()
                             ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                             .toImage();
            return screenshot.pixelColor(tab) == QColor(Qt::white);
        });
        QVERIFY(painted);
    };
    m_mgr->ShowSettingsDlg(owner.handle());
    // The file is left for inspection.
    QVERIFY(screenshot.save(Deployment::path(folder + QStringLiteral(".png"))));
    // The owner is visible next to the dialog.
    QVERIFY(screenshot.pixelColor(QPoint(120, 620) - area.topLeft())
            != screenshot.pixelColor(QPoint(500, 500) - area.topLeft()));
}

void tst_Zendel_win32::versionResourceIsComplete()
{
    const QString fileName = m_plugin.fileName();
    const auto *const file = reinterpret_cast<const wchar_t *>(fileName.utf16());
    QByteArray info(static_cast<int>(GetFileVersionInfoSizeW(file, nullptr)), '\0');
    QVERIFY(GetFileVersionInfoW(file, 0, static_cast<DWORD>(info.size()), info.data()));

    VS_FIXEDFILEINFO *fixed = nullptr;
    UINT size = 0;
    QVERIFY(VerQueryValueW(info.data(), L"\\", reinterpret_cast<void **>(&fixed), &size));
    const QString fixedVersion = QStringLiteral("%1.%2.%3")
                                     .arg(HIWORD(fixed->dwFileVersionMS))
                                     .arg(LOWORD(fixed->dwFileVersionMS))
                                     .arg(HIWORD(fixed->dwFileVersionLS));
    QCOMPARE(fixedVersion, QStringLiteral(VERSION));
    QCOMPARE(fixed->dwProductVersionMS, fixed->dwFileVersionMS);
    QCOMPARE(fixed->dwProductVersionLS, fixed->dwFileVersionLS);

    const auto text = [&info](const char *name) {
        const QString path = QStringLiteral("\\StringFileInfo\\040904b0\\") + QLatin1String(name);
        const wchar_t *value = nullptr;
        UINT length = 0;
        return VerQueryValueW(info.data(), reinterpret_cast<const wchar_t *>(path.utf16()),
                              reinterpret_cast<void **>(const_cast<wchar_t **>(&value)), &length)
            ? QString::fromWCharArray(value)
            : QString();
    };
    QCOMPARE(text("ProductName"), QStringLiteral("Zendel"));
    QCOMPARE(text("ProductVersion"), QStringLiteral(VERSION));
    QCOMPARE(text("FileVersion"), QStringLiteral(VERSION));
    QCOMPARE(text("OriginalFilename"), QStringLiteral("Zendel.dll"));
    QVERIFY(text("FileDescription").contains(QLatin1String("plug-in")));
}

void tst_Zendel_win32::leaksAreDetected()
{
    const NativeWindow owner(QRect(100, 50, 800, 600)); // For the count of windows
    std::vector<std::vector<char>> memory;
    QVERIFY(growth([&memory] { memory.emplace_back(1048576, 'x'); }).contains(memoryName));
    std::vector<std::unique_ptr<NativeWindow>> windows;
    QVERIFY(growth([&windows] {
                windows.push_back(std::make_unique<NativeWindow>(QRect(0, 0, 200, 100)));
            }).contains(QLatin1String("windows")));
    std::vector<HBRUSH> brushes;
    QVERIFY(growth([&brushes] {
                brushes.push_back(CreateSolidBrush(RGB(1, 2, 3)));
            }).contains(QLatin1String("GDI objects")));
    std::for_each(brushes.begin(), brushes.end(), DeleteObject);
}

void tst_Zendel_win32::changesDoNotLeak()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    m_operator.onDialog = DialogWidgets::pressChange;
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(growth([&] {
                 QVERIFY(m_mgr->ShowSettingsDlg(owner.handle()));
                 takeAll(); // The test's own records would grow.
             }),
             QString());
}

void tst_Zendel_win32::loadsDoNotLeak()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    QCOMPARE(growth([&] {
                 unload();
                 load();
                 QVERIFY(m_mgr->Init(&m_machine));
                 m_mgr->ShowSettingsDlg(owner.handle());
                 takeAll();
             }),
             QString());
}

QTEST_MAIN(tst_Zendel_win32)
#include "tst_Zendel_win32.moc"
