#include "plugin/CZendelIns.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"

#include "support/Deployment.h"
#include "support/Interpose.h"
#include "support/Operator.h"
#include "support/RecordingMachine.h"
#include "support/RecordingWindowManager.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

#include <stdexcept>

using RecordingWindowManager::addCall;
using WindowManager::Rect;
Q_DECLARE_METATYPE(Rect)

// These functions record the plug-in's calls among those to the window manager and forward them.

INTERPOSE(WId, winId, (const QWidget *self))
{
    addCall(QStringLiteral("winId"));
    const WId id = ORIGINAL(winId)(self);
    RecordingWindowManager::setName(reinterpret_cast<HWND>(id), QStringLiteral("dialog"));
    return id;
}

INTERPOSE(void, move, (QWidget * self, const QPoint &position))
{
    addCall(QStringLiteral("move(%1, %2)").arg(position.x()).arg(position.y()));
    ORIGINAL(move)(self, position);
}

INTERPOSE(void, setModal, (QDialog * self, bool modal))
{
    addCall(QStringLiteral("setModal(%1)").arg(modal));
    ORIGINAL(setModal)(self, modal);
}

namespace {

/// A dialog whose exec() returns at once.
class BriefDialog : public QDialog
{
public:
    int exec() override
    {
        addCall(QStringLiteral("exec"));
        return Accepted;
    }
};

/// A dialog whose exec() throws.
class ThrowingDialog : public QDialog
{
public:
    int exec() override { throw std::runtime_error("exec"); }
};

QByteArray scaleFactor()
{
    return qEnvironmentVariableIsSet("ZENDEL_SCALE_FACTOR") ? qgetenv("ZENDEL_SCALE_FACTOR") : "1";
}

HWND ownerHandle()
{
    return reinterpret_cast<HWND>(quintptr(0x1234));
}

} // namespace

class tst_CZendelIns : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    void screenHasTheRequestedScale();
    void hostIsNullInitially();
    void basesAndMetaObject();
    void managerHasNoState();

    void initWithHostRecordsItAndLoads();
    void initWithNullClearsTheHostAndLoadsNothing();
    void initIsTrueWhateverFails();
    void initRecordsTheHostBeforeItLoads();
    void everyInitLoadsAgain();
    void releaseKeepsHostAndTranslation();

    void noDialogWithoutHost();
    void lastChangeDecidesTheResult_data();
    void lastChangeDecidesTheResult();
    void everyCallBuildsANewDialog();
    void ownerIsEnabledWhileTheDialogStillExists();
    void dialogIsModalOverTheOwner();

    void stepsInOrderWithOwner();
    void stepsInOrderWithoutOwner();
    void dialogIsCentredOverTheOwner_data();
    void dialogIsCentredOverTheOwner();
    void frameOfTheDialogIsIgnored();
    void windowIsHiddenWhenBroughtToTheFront();
    void ownerIsEnabledHoweverTheDialogEnds_data();
    void ownerIsEnabledHoweverTheDialogEnds();
    void exceptionLeavesTheOwnerDisabled();

private:
    void showDialog(bool expectedResult);

    Operator m_operator;
    RecordingMachine m_machine;
};

/// Called before the application is constructed.
void tst_CZendelIns::initMain()
{
    // Wine hides variables named QT_* from programs.
    qputenv("QT_SCALE_FACTOR", scaleFactor());
}

void tst_CZendelIns::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    RecordingWindowManager::reset();
    RecordingWindowManager::setName(ownerHandle(), QStringLiteral("owner"));
    m_operator.onBox = nullptr;
    m_operator.onDialog = nullptr;
    m_machine.onSetLanguage = nullptr;
    m_machine.onNotify = nullptr;
}

void tst_CZendelIns::cleanup()
{
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(m_operator.takeDialogs(), QStringList());
    QCOMPARE(m_machine.takeCalls(), QStringList());
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
    g_pHostMachine = nullptr;
}

void tst_CZendelIns::showDialog(bool expectedResult)
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(ins.ShowSettingsDlg(ownerHandle()), expectedResult);
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
}

void tst_CZendelIns::screenHasTheRequestedScale()
{
    QCOMPARE(qApp->devicePixelRatio(), scaleFactor().toDouble());
}

void tst_CZendelIns::hostIsNullInitially()
{
    QVERIFY(!g_pHostMachine);
}

void tst_CZendelIns::basesAndMetaObject()
{
    const QMetaObject &meta = CZendelIns::staticMetaObject;
    QCOMPARE(meta.className(), "CZendelIns");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());

    CZendelIns ins;
    void *const object = &ins;
    void *const mgr = static_cast<IZendelMgr *>(&ins);
    QCOMPARE(static_cast<void *>(static_cast<QObject *>(&ins)), object);
    QVERIFY(mgr != object);
    QCOMPARE(ins.qt_metacast("CZendelIns"), object);
    QCOMPARE(ins.qt_metacast("IZendelMgr"), mgr);
    QCOMPARE(ins.qt_metacast("QObject"), object);
    QVERIFY(!ins.qt_metacast("QWidget"));
    QVERIFY(!ins.parent());
}

void tst_CZendelIns::managerHasNoState()
{
    QCOMPARE(sizeof(CZendelIns), sizeof(QObject) + sizeof(IZendelMgr));
}

void tst_CZendelIns::initWithHostRecordsItAndLoads()
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(g_pHostMachine, static_cast<IHostMachine *>(&m_machine));
    QCOMPARE(CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change"),
             QStringLiteral("1 Change"));
}

void tst_CZendelIns::initWithNullClearsTheHostAndLoadsNothing()
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    Deployment::clear(); // Loading would now show message boxes.
    QVERIFY(!ins.Init(nullptr));
    QVERIFY(!g_pHostMachine);
    QCOMPARE(CTranslatorMgr::instance()->visibleLanguages().size(), 2);
    QVERIFY(!ins.ShowSettingsDlg(nullptr));
}

void tst_CZendelIns::initIsTrueWhateverFails()
{
    CZendelIns ins;
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes().size(), 1);

    Deployment::clear();
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes().size(), 3);
}

void tst_CZendelIns::initRecordsTheHostBeforeItLoads()
{
    Deployment::clear();
    QList<bool> recorded;
    m_operator.onBox = [&](QMessageBox &) { recorded += g_pHostMachine == &m_machine; };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(recorded, QList<bool>({true, true, true}));
    m_operator.takeBoxes();
}

void tst_CZendelIns::everyInitLoadsAgain()
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    Deployment::installTranslation(QStringLiteral("first"), QStringLiteral("second"));
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change"),
             QStringLiteral("2 Change"));
}

void tst_CZendelIns::releaseKeepsHostAndTranslation()
{
    {
        CZendelIns ins;
        QVERIFY(ins.Init(&m_machine));
    }
    QCOMPARE(g_pHostMachine, static_cast<IHostMachine *>(&m_machine));
    QVERIFY(!CTranslatorMgr::instance()->translator()->isEmpty());
    CZendelIns other;
    QVERIFY(!other.ShowSettingsDlg(nullptr));
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
}

void tst_CZendelIns::noDialogWithoutHost()
{
    CZendelIns ins;
    QVERIFY(!ins.ShowSettingsDlg(ownerHandle()));
    QCOMPARE(RecordingWindowManager::takeCalls(), QStringList());
    QCOMPARE(Warnings::take(), QStringList()); // The dialog was not constructed.
}

void tst_CZendelIns::lastChangeDecidesTheResult_data()
{
    QTest::addColumn<QList<bool>>("attempts");
    QTest::addColumn<QString>("closedBy"); // A slot, or the host's call and its number
    QTest::addColumn<bool>("result");

    const auto row = [](const char *name, const QList<bool> &attempts, const char *closedBy,
                        bool result) {
        QTest::newRow(name) << attempts << QString::fromLatin1(closedBy) << result;
    };
    row("no change, accepted", {}, "accept", false);
    row("no change, rejected", {}, "reject", false);
    row("success, accepted", {true}, "accept", true);
    row("success, rejected", {true}, "reject", true);
    row("success then failure, accepted", {true, false}, "accept", false);

    // Closed by the host: the result is what the page knows at that time.
    row("in the first SetLanguage", {true}, "SetLanguage 1", false);
    row("in the first notification", {true}, "NotifySettingChanged 1", true);
    row("in SetLanguage after a success", {true, false}, "SetLanguage 2", true);
    row("in SetLanguage after a failure", {false, true}, "SetLanguage 2", false);
    row("in the notification after a failure", {false, true}, "NotifySettingChanged 2", true);
}

void tst_CZendelIns::lastChangeDecidesTheResult()
{
    QFETCH(QList<bool>, attempts);
    QFETCH(QString, closedBy);
    QFETCH(bool, result);

    int attempt = 0;
    m_operator.onDialog = [&](QDialog &dialog) {
        const auto closeAt = [&](const QString &call) {
            if (call.arg(attempt) == closedBy)
                dialog.reject();
        };
        m_machine.onSetLanguage = [closeAt] { closeAt(QStringLiteral("SetLanguage %1")); };
        m_machine.onNotify = [closeAt] { closeAt(QStringLiteral("NotifySettingChanged %1")); };
        for (const bool accepts : attempts) {
            ++attempt;
            m_machine.accepts = accepts;
            dialog.findChild<QPushButton *>()->click();
        }
        if (closedBy == QLatin1String("accept"))
            dialog.accept();
        else if (closedBy == QLatin1String("reject"))
            dialog.reject();
        QVERIFY(dialog.isHidden());
    };
    showDialog(result);
    QCOMPARE(m_operator.takeBoxes().size(), attempts.size());
    m_machine.takeCalls();
}

void tst_CZendelIns::everyCallBuildsANewDialog()
{
    QPointer<QDialog> seen;
    m_operator.onDialog = [&seen](QDialog &dialog) {
        QVERIFY(!seen);
        QVERIFY(!dialog.parent());
        seen = &dialog;
    };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!ins.ShowSettingsDlg(nullptr));
        QVERIFY(!seen);
        QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
    }
}

void tst_CZendelIns::ownerIsEnabledWhileTheDialogStillExists()
{
    QPointer<QDialog> seen;
    m_operator.onDialog = [&seen](QDialog &dialog) { seen = &dialog; };
    QStringList withDialog;
    RecordingWindowManager::setOnCall([&](const QString &call) {
        if (seen && seen->isHidden())
            withDialog += call;
    });
    showDialog(false);
    QCOMPARE(withDialog,
             QStringList({QStringLiteral("enableWindow(owner, true)"),
                          QStringLiteral("setForegroundWindow(owner)")}));
}

void tst_CZendelIns::dialogIsModalOverTheOwner()
{
    QWidget otherWindow;
    otherWindow.show();
    RecordingWindowManager::rect = {100, 50, 900, 650};
    m_operator.onDialog = [](QDialog &dialog) {
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
        QCOMPARE(QApplication::activeModalWidget(), &dialog);
        QCOMPARE(dialog.pos(), QPoint(150, 115));
    };
    showDialog(false);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_CZendelIns::stepsInOrderWithOwner()
{
    RecordingWindowManager::rect = {100, 50, 900, 650};
    BriefDialog dialog;
    dialog.resize(700, 470);
    CZendelIns::ExecModal(dialog, ownerHandle());
    QCOMPARE(
        RecordingWindowManager::takeCalls(),
        QStringList({QStringLiteral("enableWindow(owner, false)"), QStringLiteral("setModal(1)"),
                     QStringLiteral("winId"), QStringLiteral("winId"),
                     QStringLiteral("windowRect(owner)"), QStringLiteral("move(150, 115)"),
                     QStringLiteral("setForegroundWindow(dialog)"),
                     QStringLiteral("bringWindowToTop(dialog)"), QStringLiteral("exec"),
                     QStringLiteral("enableWindow(owner, true)"),
                     QStringLiteral("setForegroundWindow(owner)")}));
}

void tst_CZendelIns::stepsInOrderWithoutOwner()
{
    BriefDialog dialog;
    CZendelIns::ExecModal(dialog, nullptr);
    QCOMPARE(RecordingWindowManager::takeCalls(),
             QStringList({QStringLiteral("setModal(1)"), QStringLiteral("winId"),
                          QStringLiteral("winId"), QStringLiteral("setForegroundWindow(dialog)"),
                          QStringLiteral("bringWindowToTop(dialog)"), QStringLiteral("exec")}));
}

void tst_CZendelIns::dialogIsCentredOverTheOwner_data()
{
    QTest::addColumn<Rect>("owner");
    QTest::addColumn<QSize>("dialog");
    QTest::addColumn<QPoint>("position");

    const auto row = [](const char *name, Rect owner, QSize dialog, QPoint position) {
        QTest::newRow(name) << owner << dialog << position;
    };
    row("owner much larger", {100, 50, 900, 650}, {300, 200}, {350, 250});
    row("owner wider and higher by one", {0, 0, 301, 301}, {300, 300}, {0, 0});
    row("owner wider and higher by three", {10, 20, 313, 323}, {300, 300}, {11, 21});
    row("dialog wider and higher by one", {10, 20, 309, 319}, {300, 300}, {10, 20});
    row("dialog wider and higher by three", {10, 20, 307, 317}, {300, 300}, {9, 19});
    row("owner partly off the screen", {-300, -200, 300, 200}, {301, 301}, {-151, -151});
    row("owner empty", {0, 0, 0, 0}, {300, 200}, {-150, -100});
}

void tst_CZendelIns::dialogIsCentredOverTheOwner()
{
    QFETCH(Rect, owner);
    QFETCH(QSize, dialog);
    QFETCH(QPoint, position);

    RecordingWindowManager::rect = owner;
    BriefDialog brief;
    brief.resize(dialog);
    CZendelIns::ExecModal(brief, ownerHandle());
    QVERIFY(RecordingWindowManager::takeCalls().contains(
        QStringLiteral("move(%1, %2)").arg(position.x()).arg(position.y())));
    QCOMPARE(brief.pos(), position);
}

void tst_CZendelIns::frameOfTheDialogIsIgnored()
{
    RecordingWindowManager::rect = {100, 50, 900, 650};
    BriefDialog dialog;
    dialog.resize(300, 200);
    // On every platform, Qt knows the frame once the dialog has been shown.
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    if (QGuiApplication::platformName() != QLatin1String("xcb")) // It has no window manager.
        QVERIFY(dialog.frameGeometry().width() > dialog.width());
    dialog.hide();
    CZendelIns::ExecModal(dialog, ownerHandle());
    QVERIFY(RecordingWindowManager::takeCalls().contains(QStringLiteral("move(350, 250)")));
}

void tst_CZendelIns::windowIsHiddenWhenBroughtToTheFront()
{
    BriefDialog dialog;
    QVERIFY(!dialog.internalWinId());
    QStringList seen;
    RecordingWindowManager::setOnCall([&](const QString &call) {
        seen += QStringLiteral("%1 %2 %3")
                    .arg(call.section(QLatin1Char('('), 0, 0),
                         dialog.internalWinId() ? QStringLiteral("window") : QStringLiteral("none"),
                         dialog.isVisible() ? QStringLiteral("visible") : QStringLiteral("hidden"));
    });
    CZendelIns::ExecModal(dialog, ownerHandle());
    QCOMPARE(seen,
             QStringList({QStringLiteral("enableWindow none hidden"),
                          QStringLiteral("windowRect window hidden"),
                          QStringLiteral("setForegroundWindow window hidden"),
                          QStringLiteral("bringWindowToTop window hidden"),
                          QStringLiteral("enableWindow window hidden"),
                          QStringLiteral("setForegroundWindow window hidden")}));
}

void tst_CZendelIns::ownerIsEnabledHoweverTheDialogEnds_data()
{
    QTest::addColumn<int>("code");

    QTest::newRow("accepted") << int(QDialog::Accepted);
    QTest::newRow("rejected") << int(QDialog::Rejected);
    QTest::newRow("another code") << 7;
}

void tst_CZendelIns::ownerIsEnabledHoweverTheDialogEnds()
{
    QFETCH(int, code);

    m_operator.onDialog = [code](QDialog &dialog) {
        RecordingWindowManager::takeCalls();
        dialog.done(code);
    };
    QDialog dialog;
    CZendelIns::ExecModal(dialog, ownerHandle());
    QCOMPARE(dialog.result(), code);
    QCOMPARE(RecordingWindowManager::takeCalls(),
             QStringList({QStringLiteral("enableWindow(owner, true)"),
                          QStringLiteral("setForegroundWindow(owner)")}));
    QCOMPARE(m_operator.takeDialogs().size(), 1);
}

void tst_CZendelIns::exceptionLeavesTheOwnerDisabled()
{
    ThrowingDialog dialog;
    QVERIFY_EXCEPTION_THROWN(CZendelIns::ExecModal(dialog, ownerHandle()), std::runtime_error);
    const QStringList calls = RecordingWindowManager::takeCalls();
    QCOMPARE(calls.constFirst(), QStringLiteral("enableWindow(owner, false)"));
    QCOMPARE(calls.constLast(), QStringLiteral("bringWindowToTop(dialog)"));
}

QTEST_MAIN(tst_CZendelIns)
#include "tst_CZendelIns.moc"
