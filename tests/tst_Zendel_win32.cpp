// The built DLL on Windows, over a main window made without Qt: which calls it makes, in which
// order and with which handles, what the window gets of it, and what it leaves behind.

#include "plugin/IZendelMgr.h"

#include "support/Deployment.h"
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/RecordingMachine.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QImage>
#include <QLibrary>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <cstring>

#include <windows.h>

#include <psapi.h>

namespace {

QStringList calls;
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

/// Puts @p replacement into the place where @p module keeps the address of a function of another
/// DLL, and returns the address that was there; null if the module imports no such function.
void *replaceImport(HMODULE module, const char *function, void *replacement)
{
    auto *const base = reinterpret_cast<char *>(module);
    const auto *const headers = reinterpret_cast<const IMAGE_NT_HEADERS *>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER *>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY &directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto *dll =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR *>(base + directory.VirtualAddress);
    for (; dll->Name; ++dll) {
        const auto *name =
            reinterpret_cast<const IMAGE_THUNK_DATA *>(base + dll->OriginalFirstThunk);
        auto *address = reinterpret_cast<IMAGE_THUNK_DATA *>(base + dll->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto *const import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME *>(base + name->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char *>(import->Name), function) != 0)
                continue;
            DWORD protection = 0;
            VirtualProtect(&address->u1.Function, sizeof(void *), PAGE_READWRITE, &protection);
            return reinterpret_cast<void *>(
                std::exchange(address->u1.Function, reinterpret_cast<ULONGLONG>(replacement)));
        }
    }
    return nullptr;
}

WINBOOL WINAPI recordEnableWindow(HWND window, WINBOOL enable)
{
    calls += QStringLiteral("EnableWindow(%1, %2)").arg(nameOf(window)).arg(enable);
    return EnableWindow(window, enable);
}

WINBOOL WINAPI recordGetWindowRect(HWND window, RECT *rect)
{
    calls += QStringLiteral("GetWindowRect(%1)").arg(nameOf(window));
    return GetWindowRect(window, rect);
}

WINBOOL WINAPI recordSetForegroundWindow(HWND window)
{
    calls += QStringLiteral("SetForegroundWindow(%1)").arg(nameOf(window));
    return SetForegroundWindow(window);
}

WINBOOL WINAPI recordBringWindowToTop(HWND window)
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

void pressChange(const QDialog &dialog)
{
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

struct Resources
{
    DWORD userObjects = 0;
    DWORD gdiObjects = 0;
    int windows = 0;
    SIZE_T privateBytes = 0;
};

Resources resources()
{
    NativeWindow::synchronizeQt();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Resources result;
    result.userObjects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    result.gdiObjects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    const auto count = [](HWND, LPARAM windows) -> WINBOOL {
        ++*reinterpret_cast<int *>(windows);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), count, reinterpret_cast<LPARAM>(&result.windows));
    PROCESS_MEMORY_COUNTERS_EX memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS *>(&memory),
                         sizeof(memory));
    result.privateBytes = memory.PrivateUsage;
    return result;
}

/// Runs a cycle until everything that is made once is there, then 100 times more, and compares.
void compareResources(const std::function<void()> &cycle)
{
    const int warmUp = 20;
    const int cycles = 100;
    for (int i = 0; i < warmUp; ++i)
        cycle();
    const Resources before = resources();
    for (int i = 0; i < cycles; ++i)
        cycle();
    const Resources after = resources();
    QCOMPARE(after.userObjects, before.userObjects);
    QCOMPARE(after.gdiObjects, before.gdiObjects);
    QCOMPARE(after.windows, before.windows);
    // The heap breathes by some pages; a leak of one dialog a cycle is many times more.
    const SIZE_T tolerance = 1024 * 1024;
    QVERIFY2(
        after.privateBytes <= before.privateBytes + tolerance,
        qPrintable(QStringLiteral("%1 bytes more").arg(after.privateBytes - before.privateBytes)));
}

} // namespace

class tst_Zendel_win32 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void stepsInOrderWithOwner();
    void stepsInOrderWithoutOwner();
    void noHostMakesNoCalls();

    void ownerIsDisabledAndEnabledWhileTheDialogIsOffTheScreen();
    void ownerDisabledBeforeIsEnabledAfterwards();
    void dialogThenOwnerIsInTheForeground();
    void dialogIsPaintedOverTheOwner_data();
    void dialogIsPaintedOverTheOwner();

    void changesLeaveNothingBehind();
    void loadsLeaveNothingBehind();

private:
    void load();
    void unload();
    void recordCalls();

    QLibrary m_library {QStringLiteral(PLUGIN_FILE)};
    ReleaseInterfaceFunction m_releaseInterface = nullptr;
    IZendelMgr *m_mgr = nullptr;
    RecordingMachine m_machine;
    Operator m_operator;
};

void tst_Zendel_win32::initTestCase()
{
    Warnings::collect();
}

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
    m_machine.takeCalls();
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
}

void tst_Zendel_win32::load()
{
    QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
    m_releaseInterface =
        reinterpret_cast<ReleaseInterfaceFunction>(m_library.resolve("ReleaseInterface"));
    m_mgr = reinterpret_cast<NewInterfaceFunction>(m_library.resolve("NewInterface"))();
}

void tst_Zendel_win32::unload()
{
    m_releaseInterface(m_mgr);
    QVERIFY(m_library.unload());
    QVERIFY(!GetModuleHandleW(L"Zendel.dll"));
}

/// From now on, until the DLL is unloaded, its calls are written down.
void tst_Zendel_win32::recordCalls()
{
    const std::pair<const char *, void *> imports[] = {
        {"EnableWindow", reinterpret_cast<void *>(&recordEnableWindow)},
        {"GetWindowRect", reinterpret_cast<void *>(&recordGetWindowRect)},
        {"SetForegroundWindow", reinterpret_cast<void *>(&recordSetForegroundWindow)},
        {"BringWindowToTop", reinterpret_cast<void *>(&recordBringWindowToTop)},
        {"_ZNK7QWidget5winIdEv", reinterpret_cast<void *>(&recordWinId)},
        {"_ZN7QWidget4moveERK6QPoint", reinterpret_cast<void *>(&recordMove)},
        {"_ZN7QDialog8setModalEb", reinterpret_cast<void *>(&recordSetModal)},
    };
    for (const auto &[name, function] : imports)
        QVERIFY2(replaceImport(GetModuleHandleW(L"Zendel.dll"), name, function), name);
    m_operator.onDialog = [](QDialog &) { calls += QStringLiteral("on the screen"); };
}

void tst_Zendel_win32::stepsInOrderWithOwner()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    ownerWindow = owner.handle();
    recordCalls();
    m_mgr->ShowSettingsDlg(owner.handle());
    QCOMPARE(calls,
             QStringList({QStringLiteral("EnableWindow(owner, 0)"), QStringLiteral("setModal(1)"),
                          QStringLiteral("winId"), QStringLiteral("winId"),
                          QStringLiteral("GetWindowRect(owner)"), QStringLiteral("move(150, 115)"),
                          QStringLiteral("SetForegroundWindow(dialog)"),
                          QStringLiteral("BringWindowToTop(dialog)"),
                          QStringLiteral("on the screen"), QStringLiteral("EnableWindow(owner, 1)"),
                          QStringLiteral("SetForegroundWindow(owner)")}));
}

void tst_Zendel_win32::stepsInOrderWithoutOwner()
{
    recordCalls();
    m_mgr->ShowSettingsDlg(nullptr);
    QCOMPARE(
        calls,
        QStringList({QStringLiteral("setModal(1)"), QStringLiteral("winId"),
                     QStringLiteral("winId"), QStringLiteral("SetForegroundWindow(dialog)"),
                     QStringLiteral("BringWindowToTop(dialog)"), QStringLiteral("on the screen")}));
}

void tst_Zendel_win32::noHostMakesNoCalls()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    QVERIFY(!m_mgr->Init(nullptr));
    recordCalls();
    QVERIFY(!m_mgr->ShowSettingsDlg(owner.handle()));
    QCOMPARE(calls, QStringList());
}

void tst_Zendel_win32::ownerIsDisabledAndEnabledWhileTheDialogIsOffTheScreen()
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

void tst_Zendel_win32::ownerDisabledBeforeIsEnabledAfterwards()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    EnableWindow(owner.handle(), FALSE);
    m_mgr->ShowSettingsDlg(owner.handle());
    QVERIFY(IsWindowEnabled(owner.handle()));
}

void tst_Zendel_win32::dialogThenOwnerIsInTheForeground()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    const NativeWindow other(QRect(0, 0, 400, 300)); // Has the foreground now.
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

    QTest::newRow("English") << QStringLiteral("en");
    QTest::newRow("Chinese") << QStringLiteral("chs");
}

void tst_Zendel_win32::dialogIsPaintedOverTheOwner()
{
    QFETCH(QString, folder);

    QFile translation(QStringLiteral(SAMPLE_DEPLOYMENT "/%1/Zendel.qm").arg(folder));
    QVERIFY(translation.open(QIODevice::ReadOnly));
    Deployment::writeTranslation(folder, translation.readAll());
    Deployment::writeLines("DEFAULT=1\nLANG1_NAME=English\nLANG1_FOLDER=en\nLANG1_SHOW=1\n"
                           "LANG2_NAME=简体中文\nLANG2_FOLDER=chs\nLANG2_SHOW=1\n"
                           "DEFAULT="
                           + QByteArray(folder == QLatin1String("en") ? "1" : "2") + "\n");
    QVERIFY(m_mgr->Init(&m_machine));

    const NativeWindow owner(QRect(100, 50, 800, 600));
    QImage picture;
    m_operator.onDialog = [&](const QDialog &dialog) {
        QTest::qWait(300); // For the picture alone, so that focus and frames are painted.
        picture = dialog.screen()->grabWindow(0, 90, 40, 820, 620).toImage();
    };
    m_mgr->ShowSettingsDlg(owner.handle());
    // To be looked at: the file stays.
    QVERIFY(picture.save(Deployment::path(folder + QStringLiteral(".png"))));
    // The tab is white, and the owner can be seen beside the dialog.
    QCOMPARE(picture.pixelColor(150 + 10 - 90, 115 + 40 - 40), QColor(Qt::white));
    QVERIFY(picture.pixelColor(120 - 90, 620 - 40) != picture.pixelColor(500 - 90, 500 - 40));
}

void tst_Zendel_win32::changesLeaveNothingBehind()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    m_operator.onDialog = pressChange;
    compareResources([&] {
        QVERIFY(m_mgr->ShowSettingsDlg(owner.handle()));
        // What the tests themselves keep would grow.
        m_machine.takeCalls();
        m_operator.takeBoxes();
        m_operator.takeDialogs();
        Warnings::take();
    });
}

void tst_Zendel_win32::loadsLeaveNothingBehind()
{
    compareResources([this] {
        unload();
        load();
        QVERIFY(m_mgr->Init(&m_machine));
    });
}

QTEST_MAIN(tst_Zendel_win32)
#include "tst_Zendel_win32.moc"
