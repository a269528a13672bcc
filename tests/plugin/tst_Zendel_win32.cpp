// Tests the built DLL on Windows with a main window made without Qt: the order and the handles of
// its calls, their effect on the window, and leaks.

#include "plugin/IZendelMgr.h"

#include "support/Deployment.h"
#include "support/Imports_win32.h"
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/TestFile.h"
#include "support/TestOnEveryQt.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QPushButton>
#include <QScreen>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <windows.h>

#include <psapi.h>

namespace {

QStringList calls;
bool foregroundIsRefused = false;
HWND ownerWindow = nullptr;
HWND dialogWindow = nullptr;

QString nameOf(HWND window)
{
    if (window && window == ownerWindow)
        return QStringLiteral("owner");
    if (window && window == dialogWindow)
        return QStringLiteral("dialog");
    return QString::number(reinterpret_cast<quintptr>(window));
}

BOOL WINAPI recordEnableWindow(HWND window, BOOL enable)
{
    calls += QStringLiteral("EnableWindow(%1, %2)").arg(nameOf(window)).arg(enable);
    return EnableWindow(window, enable);
}

BOOL WINAPI recordGetWindowRect(HWND window, RECT *rect)
{
    calls += QStringLiteral("GetWindowRect(%1)").arg(nameOf(window));
    return GetWindowRect(window, rect);
}

BOOL WINAPI recordSetForegroundWindow(HWND window)
{
    calls += QStringLiteral("SetForegroundWindow(%1)").arg(nameOf(window));
    return foregroundIsRefused ? FALSE : SetForegroundWindow(window);
}

BOOL WINAPI recordBringWindowToTop(HWND window)
{
    calls += QStringLiteral("BringWindowToTop(%1)").arg(nameOf(window));
    return BringWindowToTop(window);
}

WId recordWinId(const QWidget *self)
{
    calls += QStringLiteral("winId");
    const WId id = self->winId();
    dialogWindow = reinterpret_cast<HWND>(id);
    return id;
}

void recordMove(QWidget *self, const QPoint &position)
{
    calls += QStringLiteral("move(%1, %2)").arg(position.x()).arg(position.y());
    self->move(position);
}

void recordSetModal(QDialog *self, bool modal)
{
    calls += QStringLiteral("setModal(%1)").arg(modal);
    self->setModal(modal);
}

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

class tst_Zendel_win32 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    void callsAreInOrderWithOwner();
    void callsAreInOrderWithoutOwner();
    void noCallsWithoutHost();

    void ownerIsDisabledAndEnabledWhileTheDialogIsHidden();
    void disabledOwnerIsEnabledAfterwards();
    void dialogThenOwnerIsInTheForeground();
    void dialogIsPaintedOverTheOwner_data();
    void dialogIsPaintedOverTheOwner();

    void versionResourceIsComplete();
    void namesInEveryEncoding_data();
    void namesInEveryEncoding();
    void applicationFolderNames_data();
    void applicationFolderNames();
    void leaksAreDetected();
    void changesDoNotLeak();
    void loadsDoNotLeak();

private:
    void load();
    void unload();
    void recordCalls();
    void takeAll();

    Plugin m_plugin {testFile(QStringLiteral(PLUGIN_FILE))};
    IZendelMgr *m_mgr = nullptr;
    RecordingMachine m_machine;
    Operator m_operator;
};

void tst_Zendel_win32::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    m_operator.onDialog = nullptr;
    load();
    QVERIFY(m_mgr->Init(&m_machine));
}

void tst_Zendel_win32::cleanup()
{
    unload();
    calls.clear();
    foregroundIsRefused = false;
    m_operator.takeDialogs();
    QCOMPARE(m_machine.takeCalls(), QStringList());
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
}

void tst_Zendel_win32::load()
{
    m_plugin.load();
    m_mgr = m_plugin.newInterface();
}

void tst_Zendel_win32::unload()
{
    m_plugin.releaseInterface(m_mgr);
    m_plugin.unload();
    QVERIFY(!GetModuleHandleW(L"Zendel.dll"));
}

/// Records the DLL's calls until it is unloaded.
void tst_Zendel_win32::recordCalls()
{
    const std::pair<const char *, void *> imports[] = {
        {"EnableWindow", reinterpret_cast<void *>(&recordEnableWindow)},
        {"GetWindowRect", reinterpret_cast<void *>(&recordGetWindowRect)},
        {"SetForegroundWindow", reinterpret_cast<void *>(&recordSetForegroundWindow)},
        {"BringWindowToTop", reinterpret_cast<void *>(&recordBringWindowToTop)},
        {SYMBOL_winId, reinterpret_cast<void *>(&recordWinId)},
        {SYMBOL_move, reinterpret_cast<void *>(&recordMove)},
        {SYMBOL_setModal, reinterpret_cast<void *>(&recordSetModal)},
    };
    for (const auto &[name, function] : imports)
        QVERIFY2(replaceImport(GetModuleHandleW(L"Zendel.dll"), name, function), name);
    m_operator.onDialog = [](QDialog &) { calls += QStringLiteral("dialog shown"); };
}

void tst_Zendel_win32::takeAll()
{
    m_machine.takeCalls();
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    Warnings::take();
}

// With one owner, then with another, while the system refuses the foreground.
void tst_Zendel_win32::callsAreInOrderWithOwner()
{
    recordCalls();
    for (const QPoint &position : {QPoint(100, 50), QPoint(140, 80)}) {
        const NativeWindow owner(QRect(position, QSize(800, 600)));
        ownerWindow = owner.handle();
        m_mgr->ShowSettingsDlg(owner.handle());
        QCOMPARE(std::exchange(calls, {}),
                 QStringList(
                     {QStringLiteral("EnableWindow(owner, 0)"), QStringLiteral("setModal(1)"),
                      QStringLiteral("winId"), QStringLiteral("winId"),
                      QStringLiteral("GetWindowRect(owner)"),
                      QStringLiteral("move(%1, %2)").arg(position.x() + 50).arg(position.y() + 65),
                      QStringLiteral("SetForegroundWindow(dialog)"),
                      QStringLiteral("BringWindowToTop(dialog)"), QStringLiteral("dialog shown"),
                      QStringLiteral("EnableWindow(owner, 1)"),
                      QStringLiteral("SetForegroundWindow(owner)")}));
        foregroundIsRefused = true;
    }
}

void tst_Zendel_win32::callsAreInOrderWithoutOwner()
{
    recordCalls();
    m_mgr->ShowSettingsDlg(nullptr);
    QCOMPARE(
        calls,
        QStringList({QStringLiteral("setModal(1)"), QStringLiteral("winId"),
                     QStringLiteral("winId"), QStringLiteral("SetForegroundWindow(dialog)"),
                     QStringLiteral("BringWindowToTop(dialog)"), QStringLiteral("dialog shown")}));
}

void tst_Zendel_win32::noCallsWithoutHost()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    QVERIFY(!m_mgr->Init(nullptr));
    recordCalls();
    QVERIFY(!m_mgr->ShowSettingsDlg(owner.handle()));
    QCOMPARE(calls, QStringList());
}

void tst_Zendel_win32::ownerIsDisabledAndEnabledWhileTheDialogIsHidden()
{
    QStringList events;
    const auto dialogState = [] {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (const QWidget *const widget : widgets) {
            if (widget->objectName() == QLatin1String("DlgSettings")) {
                return widget->isVisible() ? QStringLiteral("dialog visible")
                                           : QStringLiteral("dialog hidden");
            }
        }
        return QStringLiteral("no dialog");
    };
    NativeWindow owner(QRect(100, 50, 800, 600));
    owner.onEnable = [&](bool enable) {
        events +=
            (enable ? QStringLiteral("enabled, ") : QStringLiteral("disabled, ")) + dialogState();
    };
    m_operator.onDialog = [&](QDialog &) { events += dialogState(); };
    m_mgr->ShowSettingsDlg(owner.handle());
    QCOMPARE(
        events,
        QStringList({QStringLiteral("disabled, dialog hidden"), QStringLiteral("dialog visible"),
                     QStringLiteral("enabled, dialog hidden")}));
}

void tst_Zendel_win32::disabledOwnerIsEnabledAfterwards()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    EnableWindow(owner.handle(), FALSE);
    m_mgr->ShowSettingsDlg(owner.handle());
    QVERIFY(IsWindowEnabled(owner.handle()));
}

void tst_Zendel_win32::dialogThenOwnerIsInTheForeground()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    const NativeWindow other(QRect(0, 0, 400, 300));
    QVERIFY(other.hasFocus());
    m_operator.onDialog = [&](const QDialog &dialog) {
        QCOMPARE(GetForegroundWindow(), reinterpret_cast<HWND>(dialog.winId()));
        QVERIFY(!IsWindowEnabled(owner.handle()));
    };
    m_mgr->ShowSettingsDlg(owner.handle());
    QVERIFY(IsWindowEnabled(owner.handle()));
    QVERIFY(owner.hasFocus());
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

void tst_Zendel_win32::namesInEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("catalogue");

    const QString lines = QStringLiteral("[LANG_MGR]\r\nLANG1_NAME=中文\r\nLANG1_FOLDER=first\r\n"
                                         "LANG1_SHOW=1\r\nDEFAULT=1\r\n");
    QByteArray gb2312 = lines.toUtf8();
    QTest::newRow("GB2312") << gb2312.replace("中文", "\xD6\xD0\xCE\xC4");
    QTest::newRow("UTF-8") << "\xEF\xBB\xBF" + lines.toUtf8();
    QTest::newRow("UTF-16") << Deployment::utf16(QChar(QChar::ByteOrderMark) + lines);
}

void tst_Zendel_win32::namesInEveryEncoding()
{
    QFETCH(QByteArray, catalogue);

    Deployment::writeCatalogue(catalogue);
    QVERIFY(m_mgr->Init(&m_machine));
    QString name;
    m_operator.onDialog = [&name](const QDialog &dialog) {
        name = dialog.findChild<QComboBox *>()->currentText();
    };
    const NativeWindow owner(QRect(100, 50, 800, 600));
    m_mgr->ShowSettingsDlg(owner.handle());
    QCOMPARE(name, QStringLiteral("中文"));
}

void tst_Zendel_win32::applicationFolderNames_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("spaces") << QStringLiteral("Control software (64 bit)");
    QTest::newRow("Chinese") << QStringLiteral("控制软件");
    QTest::newRow("percent") << QStringLiteral("100% machine %n");
}

/// Runs a copy of this program, because the application's folder is that of the executable. The
/// copy is in a folder next to this program's, where it finds the plug-in.
void tst_Zendel_win32::applicationFolderNames()
{
    QFETCH(QString, folder);

    const QDir copyFolder(testFile(QStringLiteral("../") + folder));
    QVERIFY(QDir(copyFolder).removeRecursively() && copyFolder.mkpath(QStringLiteral(".")));
    const QString copy = copyFolder.filePath(QStringLiteral("copy.exe"));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));

    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(copy, {QStringLiteral("namesInEveryEncoding")});
    QVERIFY2(process.waitForFinished(60000), qPrintable(process.errorString()));
    const QByteArray output = process.readAll();
    QVERIFY2(output.contains(" 0 failed, 0 skipped"), output.constData());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(copyFolder.exists(QStringLiteral("Lang/first/Zendel.qm")));
    QVERIFY(QDir(copyFolder).removeRecursively());
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
    m_operator.onDialog = [](const QDialog &dialog) {
        dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
    };
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
