// Tests the built DLL with a host in plain C, c_host.c, which calls it over the slots of its
// virtual function tables. Here are only the application, the deployment and the operator.

#include "support/Deployment.h"
#include "support/Heaps_win32.h"
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/TestFile.h"
#include "support/TestOnEveryQt.h"
#include "support/Warnings.h"

#include <QComboBox>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
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

void selectLast(const QDialog &dialog)
{
    auto &languages = *dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    languages.setCurrentIndex(languages.count() - 1);
}

void pressChange(const QDialog &dialog)
{
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

} // namespace

class tst_c_host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    void initReturnsWhetherThereIsAMachine();
    void machineGetsTheSelectedLanguage_data();
    void machineGetsTheSelectedLanguage();
    void refusedChangeIsReturned();
    void dialogWithoutChangeIsReturned();
    void ownerIsPassedOn();
    void managerIsFreed_data();
    void managerIsFreed();

private:
    IZendelMgr *m_mgr = nullptr;
    Operator m_operator;
};

void tst_c_host::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    m_operator.onDialog = nullptr;
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
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
}

void tst_c_host::initReturnsWhetherThereIsAMachine()
{
    QCOMPARE(c_host_init(m_mgr, true), 1);
    QCOMPARE(c_host_init_null(m_mgr), 0);
    QCOMPARE(c_host_show(m_mgr, nullptr), 0);
    QCOMPARE(m_operator.takeDialogs(), QStringList());
}

void tst_c_host::machineGetsTheSelectedLanguage_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<int>("passed");

    QTest::newRow("small") << QByteArray("7") << 7;
    QTest::newRow("highest bit") << QByteArray("200") << 200;
    QTest::newRow("more than 8 bits") << QByteArray("65535") << 255;
}

void tst_c_host::machineGetsTheSelectedLanguage()
{
    QFETCH(QByteArray, language);
    QFETCH(int, passed);

    Deployment::writeLines("DEFAULT=1\nLANG1_NAME=One\nLANG1_FOLDER=first\nLANG1_SHOW=1\nLANG"
                           + language + "_NAME=Other\nLANG" + language + "_FOLDER=second\nLANG"
                           + language + "_SHOW=1\n");
    QCOMPARE(c_host_init(m_mgr, true), 1);
    m_operator.onDialog = [](const QDialog &dialog) {
        selectLast(dialog);
        pressChange(dialog);
    };
    QCOMPARE(c_host_show(m_mgr, nullptr), 1);
    QCOMPARE(calls(), QVector<int>({passed, notified}));
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(Operator::box("information", QStringLiteral("1 Success"),
                                       QStringLiteral("1 Change successful!"), "PageSetLang")));
}

void tst_c_host::refusedChangeIsReturned()
{
    QCOMPARE(c_host_init(m_mgr, false), 1);
    m_operator.onDialog = pressChange;
    QCOMPARE(c_host_show(m_mgr, nullptr), 0);
    QCOMPARE(calls(), QVector<int>({1}));
}

void tst_c_host::dialogWithoutChangeIsReturned()
{
    QCOMPARE(c_host_init(m_mgr, true), 1);
    QCOMPARE(c_host_show(m_mgr, nullptr), 0);
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
    QCOMPARE(calls(), QVector<int>());
}

void tst_c_host::ownerIsPassedOn()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    QCOMPARE(c_host_init(m_mgr, true), 1);
    m_operator.onDialog = [&owner](const QDialog &dialog) {
        QVERIFY(!IsWindowEnabled(owner.handle()));
        QCOMPARE(dialog.pos(), QPoint(150, 115));
    };
    QCOMPARE(c_host_show(m_mgr, owner.handle()), 0);
    QVERIFY(IsWindowEnabled(owner.handle()));
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
