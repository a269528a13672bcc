// Tests the built DLL with a host in plain C, c_host.c, which calls it over the slots of its
// virtual function tables. Here are only the application, the deployment and the operator.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/Heaps_win32.h"
#include "support/NativeWindow.h"
#include "support/OperatedTest.h"
#include "support/TestFile.h"
#include "support/TestOnEveryQt.h"

#include <QPointer>
#include <QVector>

#include <windows.h>

extern "C" {
int c_host_load(const wchar_t *file_name);
int c_host_unload();
IZendelMgr *c_host_new();
void c_host_release(IZendelMgr *mgr);
void c_host_delete(IZendelMgr *mgr);
int c_host_init(IZendelMgr *mgr, int accepts);
int c_host_init_null(IZendelMgr *mgr);
int c_host_show(IZendelMgr *mgr, HWND owner);
const int *c_host_calls(int *count);
}

namespace {

const int notified = -1;

/// Returns what the plug-in has called on the machine: the numbers of languages, and notified.
QVector<int> calls()
{
    int count = 0;
    const int *const first = c_host_calls(&count);
    return QVector<int>(first, first + count);
}

} // namespace

class tst_c_host : public OperatedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everySlotIsCalled();
    void managerIsFreed_data();
    void managerIsFreed();

private:
    IZendelMgr *m_mgr = nullptr;
};

void tst_c_host::init()
{
    OperatedTest::init();
    const QString file = testFile(QStringLiteral(PLUGIN_FILE));
    QVERIFY(c_host_load(reinterpret_cast<const wchar_t *>(file.utf16())));
    m_mgr = c_host_new();
    QVERIFY(m_mgr);
}

void tst_c_host::cleanup()
{
    c_host_release(m_mgr);
    QVERIFY(c_host_unload());
    QVERIFY(!GetModuleHandleW(L"Zendel.dll"));
    OperatedTest::cleanup();
}

void tst_c_host::everySlotIsCalled()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_NAME=One\nLANG1_FOLDER=first\nLANG1_SHOW=1\n"
                           "LANG65480_NAME=200\nLANG65480_FOLDER=second\nLANG65480_SHOW=1\n");
    QCOMPARE(c_host_init(m_mgr, true), 1);
    const NativeWindow owner(QRect(100, 50, 800, 600));
    m_operator.onDialog = [&owner](const QDialog &dialog) {
        QVERIFY(!IsWindowEnabled(owner.handle()));
        DialogWidgets::comboBox(dialog).setCurrentIndex(1);
        DialogWidgets::pressChange(dialog);
    };
    QCOMPARE(c_host_show(m_mgr, owner.handle()), 1);
    QVERIFY(IsWindowEnabled(owner.handle()));
    QCOMPARE(calls(), QVector<int>({200, notified})); // The low 8 bits of 65480

    QCOMPARE(c_host_init(m_mgr, false), 1);
    QCOMPARE(c_host_show(m_mgr, owner.handle()), 0);
    QCOMPARE(calls(), QVector<int>({200}));
    takeAll();

    QCOMPARE(c_host_init_null(m_mgr), 0);
    QCOMPARE(c_host_show(m_mgr, owner.handle()), 0);
}

void tst_c_host::managerIsFreed_data()
{
    QTest::addColumn<bool>("byReleaseInterface");

    QTest::newRow("ReleaseInterface") << true;
    QTest::newRow("destructor's slot") << false;
}

void tst_c_host::managerIsFreed()
{
    QFETCH(bool, byReleaseInterface);

    IZendelMgr *const mgr = c_host_new();
    const QPointer<QObject> object = dynamic_cast<QObject *>(mgr);
    const void *const block = dynamic_cast<void *>(mgr);
    QVERIFY(object);
    QVERIFY(Heaps::isAllocated(block));
    if (byReleaseInterface)
        c_host_release(mgr);
    else
        c_host_delete(mgr);
    QVERIFY(!object);
    QVERIFY(!Heaps::isAllocated(block));
    QVERIFY(Heaps::areValid());
}

QTEST_MAIN(tst_c_host)
#include "tst_c_host.moc"
