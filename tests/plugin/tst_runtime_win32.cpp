// Tests what the DLL shares with its host and with Qt beyond the two interfaces: exceptions, type
// information and the heap. Also tests two DLLs in one process.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/Heaps_win32.h"
#include "support/Imports_win32.h"
#include "support/PluginTest.h"
#include "support/TestOnEveryQt.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QVector>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <typeinfo>

#include <windows.h>

#include <psapi.h>

using DialogWidgets::pressChange;

namespace {

/// Presses the button while the dialog is being shown. Unlike in Operator's timers, neither Qt's
/// nor the system's message loop is between the plug-in and the exception.
class EarlyOperator : public QObject
{
    Q_OBJECT

public:
    EarlyOperator() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *const dialog = qobject_cast<QDialog *>(watched);
        if (dialog && event->type() == QEvent::Show)
            pressChange(*dialog);
        return false;
    }
};

QString fileName(HMODULE module)
{
    wchar_t name[MAX_PATH];
    return QString::fromWCharArray(name,
                                   static_cast<int>(GetModuleFileNameW(module, name, MAX_PATH)));
}

/// Returns the modules of this process that aren't part of the system.
QVector<HMODULE> ownModules()
{
    wchar_t folder[MAX_PATH];
    const QString system =
        QString::fromWCharArray(folder, static_cast<int>(GetWindowsDirectoryW(folder, MAX_PATH)));
    QVector<HMODULE> modules(500);
    DWORD bytes = 0;
    EnumProcessModules(GetCurrentProcess(), modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &bytes);
    modules.resize(static_cast<int>(bytes / sizeof(HMODULE)));
    modules.erase(std::remove_if(modules.begin(), modules.end(),
                                 [&system](HMODULE module) {
                                     return fileName(module).startsWith(system,
                                                                        Qt::CaseInsensitive);
                                 }),
                  modules.end());
    return modules;
}

/// Returns the DLL from which @p module imports a function, after forwarding; empty if it doesn't.
QString importedFrom(HMODULE module, const char *function)
{
    void **const address = findImport(module, function);
    HMODULE dll = nullptr;
    if (!address
        || !GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS
                                   | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                               static_cast<const wchar_t *>(*address), &dll))
        return QString();
    return fileName(dll);
}

/// Returns a catalogue with the languages 1 to @p count.
QByteArray catalogue(int count)
{
    QByteArray lines = "DEFAULT=1\n";
    for (int i = 1; i <= count; ++i) {
        const QByteArray key = "LANG" + QByteArray::number(i);
        lines += key + "_NAME=" + QByteArray(i, 'n') + '\n' + key + "_FOLDER=first\n" + key
            + "_SHOW=1\n";
    }
    return lines;
}

} // namespace

class tst_runtime_win32 : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void exceptionOfTheMachineReachesTheHost();
    void typeOfTheManagerIsKnownToTheHost();
    void twoPluginsWorkIndependently_data();
    void twoPluginsWorkIndependently();
    void heapDamageIsDetected();
    void heapsStayValid();
    void allModulesShareOneHeap();
#ifdef _MSC_VER
    void runTimeLibraryIsMicrosoftsUnlessWinesIsTested();
    void initializerListIsReadByQt();
#endif
};

void tst_runtime_win32::init()
{
    PluginTest::init();
    QVERIFY(m_mgr->Init(&m_machine));
}

void tst_runtime_win32::cleanup()
{
    takeAll();
    PluginTest::cleanup();
}

// A machine must not throw, and leaves a wait cursor when it does. But memory can run out in it.
void tst_runtime_win32::exceptionOfTheMachineReachesTheHost()
{
    m_machine.onSetLanguage = [] { throw std::runtime_error("from the machine"); };
    QByteArray caught;
    {
        const EarlyOperator early;
        try {
            m_mgr->ShowSettingsDlg(nullptr);
        } catch (const std::runtime_error &error) {
            caught = error.what();
        }
    }
    QCOMPARE(caught, QByteArray("from the machine"));
    QVERIFY(QApplication::topLevelWidgets().isEmpty()); // The dialog is destroyed.
    QApplication::restoreOverrideCursor();
    m_machine.takeCalls();

    m_machine.onSetLanguage = nullptr;
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(
        m_machine.takeCalls(),
        QStringList({QStringLiteral("SetLanguage(1)"), QStringLiteral("NotifySettingChanged")}));
}

void tst_runtime_win32::typeOfTheManagerIsKnownToTheHost()
{
    const IZendelMgr &mgr = *m_mgr;
    QVERIFY(typeid(mgr) != typeid(IZendelMgr));
    QVERIFY(QByteArray(typeid(mgr).name()).contains("CZendelIns"));
}

void tst_runtime_win32::twoPluginsWorkIndependently_data()
{
    QTest::addColumn<bool>("copyIsUnloadedFirst");

    QTest::newRow("copy is unloaded first") << true;
    QTest::newRow("copy is unloaded last") << false;
}

void tst_runtime_win32::twoPluginsWorkIndependently()
{
    QFETCH(bool, copyIsUnloadedFirst);

    const QTemporaryDir folder;
    const QString file = folder.path() + QStringLiteral("/Copy.dll");
    QVERIFY(QFile::copy(m_plugin.fileName(), file));
    Plugin copy(file);
    copy.load();
    QVERIFY(GetModuleHandleW(L"Copy.dll") != GetModuleHandleW(L"Zendel.dll"));
    IZendelMgr *const copyMgr = copy.newInterface();
    QVERIFY(!copyMgr->ShowSettingsDlg(nullptr)); // It has no machine yet.

    Deployment::writeLines("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
    RecordingMachine copyMachine;
    QVERIFY(copyMgr->Init(&copyMachine));

    const auto changeWith = [this](IZendelMgr *mgr) {
        QStringList result;
        m_operator.onDialog = [&result](const QDialog &dialog) {
            result += dialog.windowTitle();
            QVERIFY(!dialog.styleSheet().isEmpty());
            pressChange(dialog);
        };
        if (!mgr->ShowSettingsDlg(nullptr))
            result += QStringLiteral("failed");
        return result + m_machine.takeCalls();
    };
    const QStringList ofPlugin {QStringLiteral("1 Settings"), QStringLiteral("SetLanguage(1)"),
                                QStringLiteral("NotifySettingChanged")};
    const QStringList ofCopy {QStringLiteral("2 Settings")};
    const QStringList copyCalls {QStringLiteral("SetLanguage(2)"),
                                 QStringLiteral("NotifySettingChanged")};
    QCOMPARE(changeWith(m_mgr), ofPlugin);
    QCOMPARE(copyMachine.takeCalls(), QStringList());
    QCOMPARE(changeWith(copyMgr), ofCopy);
    QCOMPARE(copyMachine.takeCalls(), copyCalls);

    if (copyIsUnloadedFirst) {
        copy.releaseInterface(copyMgr);
        copy.unload();
        QCOMPARE(changeWith(m_mgr), ofPlugin);
    } else {
        unload();
        QCOMPARE(changeWith(copyMgr), ofCopy);
        QCOMPARE(copyMachine.takeCalls(), copyCalls);
        copy.releaseInterface(copyMgr);
        copy.unload();
    }
}

void tst_runtime_win32::heapDamageIsDetected()
{
    HANDLE heap = HeapCreate(0, 0, 0);
    const SIZE_T size = 64;
    const SIZE_T written = size + 32;
    auto *const block = static_cast<char *>(HeapAlloc(heap, 0, size));
    HeapAlloc(heap, 0, size);
    QVERIFY(Heaps::areValid());
    char undamaged[written];
    std::memcpy(undamaged, block, written);
    std::memset(block, 'x', written);
    const bool valid = Heaps::areValid();
    std::memcpy(block, undamaged, written);
    QVERIFY(!valid);
    QVERIFY(Heaps::areValid());
    HeapDestroy(heap);
}

// Strings, lists and maps are allocated by Qt and freed by the plug-in, or the other way round.
void tst_runtime_win32::heapsStayValid()
{
    const int cycles = 300;
    m_operator.onDialog = pressChange;
    for (int i = 0; i < cycles; ++i) {
        const int count = 1 + qMin(i, cycles - i) % 100;
        Deployment::writeLines(catalogue(count));
        QVERIFY(m_mgr->Init(&m_machine));
        QVERIFY(Heaps::areValid());
        QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
        QVERIFY(Heaps::areValid());
    }
    unload();
    QVERIFY(Heaps::areValid());
}

void tst_runtime_win32::allModulesShareOneHeap()
{
    const QString expected = importedFrom(GetModuleHandleW(nullptr), "free");
    QVERIFY(!expected.isEmpty());
    int checked = 0;
    for (HMODULE module : ownModules()) {
        const QString name = QFileInfo(fileName(module)).fileName();
        QVERIFY2(findImport(module, "free"), qPrintable(name));
        for (const char *const function : {"malloc", "calloc", "realloc", "free"}) {
            if (!findImport(module, function))
                continue;
            const QString dll = importedFrom(module, function);
            QVERIFY2(dll == expected,
                     qPrintable(name + QStringLiteral(" has ") + QLatin1String(function)
                                + QStringLiteral(" from ") + dll + QStringLiteral(", not from ")
                                + expected));
        }
        ++checked;
    }
    qInfo("%d modules use %s", checked, qPrintable(expected));
    QVERIFY(checked >= 6); // The program, the plug-in and Qt's Core, Gui, Widgets and Test
}

#ifdef _MSC_VER
void tst_runtime_win32::runTimeLibraryIsMicrosoftsUnlessWinesIsTested()
{
    HMODULE library = GetModuleHandleW(L"vcruntime140.dll");
    QVERIFY(library);
    // Wine marks its DLLs after the DOS header.
    const bool isWines =
        std::memcmp(reinterpret_cast<const char *>(library) + 0x40, "Wine builtin DLL", 16) == 0;
    const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version");
    qInfo("%s is %s", qPrintable(fileName(library)), isWines ? "Wine's" : "Microsoft's");
    // scripts/wine.sh sets it after it has installed Microsoft's.
    QCOMPARE(isWines, isWine && qEnvironmentVariableIsEmpty("ZENDEL_WINE_RUNTIME"));
}

// Qt's DLL reads the list as Microsoft's compiler laid it out.
void tst_runtime_win32::initializerListIsReadByQt()
{
    const QJsonObject object {{QStringLiteral("one"), 1}, {QStringLiteral("two"), 2}};
    QVERIFY(object == QJsonDocument::fromJson("{\"one\": 1, \"two\": 2}").object());
}
#endif

QTEST_MAIN(tst_runtime_win32)
#include "tst_runtime_win32.moc"
