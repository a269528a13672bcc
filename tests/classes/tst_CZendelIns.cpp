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

// The library's calls of these three operations come here, so that they can be written down
// between those to the window manager; the real ones do the work.

INTERPOSE(WId, _ZNK7QWidget5winIdEv, (const QWidget *self))
{
    addCall(QStringLiteral("winId"));
    const WId id = ORIGINAL(_ZNK7QWidget5winIdEv)(self);
    RecordingWindowManager::setName(reinterpret_cast<HWND>(id), QStringLiteral("dialog"));
    return id;
}

INTERPOSE(void, _ZN7QWidget4moveERK6QPoint, (QWidget * self, const QPoint &position))
{
    addCall(QStringLiteral("move(%1, %2)").arg(position.x()).arg(position.y()));
    ORIGINAL(_ZN7QWidget4moveERK6QPoint)(self, position);
}

INTERPOSE(void, _ZN7QDialog8setModalEb, (QDialog * self, bool modal))
{
    addCall(QStringLiteral("setModal(%1)").arg(modal));
    ORIGINAL(_ZN7QDialog8setModalEb)(self, modal);
}

namespace {

/// A dialog that closes as soon as it is run.
class BriefDialog : public QDialog
{
public:
    int exec() override
    {
        addCall(QStringLiteral("exec"));
        return Accepted;
    }
};

/// A dialog whose run ends with an exception.
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
    void initTestCase();
    void init();
    void cleanup();

    void screenIsScaledAsAskedFor();
    void hostIsNullAtFirst();
    void basesAndMetaObject();
    void managerHoldsNoState();

    void initWithHostRecordsItAndLoads();
    void initWithNullClearsTheHostAndLoadsNothing();
    void initIsTrueWhateverFails();
    void initRecordsTheHostBeforeItLoads();
    void everyInitLoadsAgain();
    void releaseKeepsHostAndTranslation();

    void noHostMeansNoDialog();
    void flagIsReturnedAndNotTheResultCode_data();
    void flagIsReturnedAndNotTheResultCode();
    void dialogIsBuiltAfreshForEveryCall();
    void ownerIsEnabledWhileTheDialogStillExists();
    void dialogRunsModallyOverTheOwner();
    void hostMayCloseTheDialogDuringAChange_data();
    void hostMayCloseTheDialogDuringAChange();

    void stepsInOrderWithOwner();
    void stepsInOrderWithoutOwner();
    void dialogIsCentredOverTheOwner_data();
    void dialogIsCentredOverTheOwner();
    void frameOfTheDialogIsLeftOut();
    void windowExistsButIsHiddenWhenBroughtToTheFront();
    void ownerIsEnabledHoweverTheDialogEnds_data();
    void ownerIsEnabledHoweverTheDialogEnds();
    void exceptionLeavesTheOwnerDisabled();

private:
    Operator m_operator;
    RecordingMachine m_machine;
};

/// Called before the application is constructed.
void tst_CZendelIns::initMain()
{
    // Set here because Wine hides variables named QT_* from programs.
    qputenv("QT_SCALE_FACTOR", scaleFactor());
}

void tst_CZendelIns::initTestCase()
{
    Warnings::collect();
}

void tst_CZendelIns::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    RecordingWindowManager::reset();
    RecordingWindowManager::setName(ownerHandle(), QStringLiteral("owner"));
    m_operator.onBox = nullptr;
    m_operator.onDialog = nullptr;
    m_machine.accepts = true;
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

void tst_CZendelIns::screenIsScaledAsAskedFor()
{
    QCOMPARE(qApp->devicePixelRatio(), scaleFactor().toDouble());
}

void tst_CZendelIns::hostIsNullAtFirst()
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

void tst_CZendelIns::managerHoldsNoState()
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
    Deployment::clear(); // Reading now would be seen in the message boxes.
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

void tst_CZendelIns::noHostMeansNoDialog()
{
    CZendelIns ins;
    QVERIFY(!ins.ShowSettingsDlg(ownerHandle()));
    QCOMPARE(RecordingWindowManager::takeCalls(), QStringList());
    QCOMPARE(Warnings::take(), QStringList()); // Not even built.
}

void tst_CZendelIns::flagIsReturnedAndNotTheResultCode_data()
{
    QTest::addColumn<QList<bool>>("attempts");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<bool>("result");

    QTest::newRow("no change, accepted") << QList<bool>() << true << false;
    QTest::newRow("no change, rejected") << QList<bool>() << false << false;
    QTest::newRow("success, accepted") << QList<bool> {true} << true << true;
    QTest::newRow("success, rejected") << QList<bool> {true} << false << true;
    QTest::newRow("success then failure, accepted") << QList<bool> {true, false} << true << false;
}

void tst_CZendelIns::flagIsReturnedAndNotTheResultCode()
{
    QFETCH(QList<bool>, attempts);
    QFETCH(bool, accept);
    QFETCH(bool, result);

    m_operator.onDialog = [&](QDialog &dialog) {
        for (const bool accepts : attempts) {
            m_machine.accepts = accepts;
            dialog.findChild<QPushButton *>()->click();
        }
        if (accept)
            dialog.accept();
        else
            dialog.reject();
    };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(ins.ShowSettingsDlg(ownerHandle()), result);
    QCOMPARE(m_operator.takeBoxes().size(), attempts.size());
    m_operator.takeDialogs();
    m_machine.takeCalls();
}

void tst_CZendelIns::dialogIsBuiltAfreshForEveryCall()
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
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    ins.ShowSettingsDlg(ownerHandle());
    QCOMPARE(withDialog,
             QStringList({QStringLiteral("enableWindow(owner, true)"),
                          QStringLiteral("setForegroundWindow(owner)")}));
    m_operator.takeDialogs();
}

void tst_CZendelIns::dialogRunsModallyOverTheOwner()
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
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    ins.ShowSettingsDlg(ownerHandle());
    QVERIFY(!QApplication::activeModalWidget());
    m_operator.takeDialogs();
}

void tst_CZendelIns::hostMayCloseTheDialogDuringAChange_data()
{
    QTest::addColumn<QString>("closingCall"); // And during which attempt
    QTest::addColumn<QList<bool>>("attempts");
    QTest::addColumn<bool>("result");

    QTest::newRow("first change, not decided yet")
        << QStringLiteral("SetLanguage 1") << QList<bool> {true} << false;
    QTest::newRow("first change, decided")
        << QStringLiteral("NotifySettingChanged 1") << QList<bool> {true} << true;
    QTest::newRow("change after a success, not decided yet")
        << QStringLiteral("SetLanguage 2") << QList<bool> {true, false} << true;
    QTest::newRow("change after a failure, not decided yet")
        << QStringLiteral("SetLanguage 2") << QList<bool> {false, true} << false;
    QTest::newRow("change after a failure, decided")
        << QStringLiteral("NotifySettingChanged 2") << QList<bool> {false, true} << true;
}

/// The result is what the page knows at the moment of closing.
void tst_CZendelIns::hostMayCloseTheDialogDuringAChange()
{
    QFETCH(QString, closingCall);
    QFETCH(QList<bool>, attempts);
    QFETCH(bool, result);

    int attempt = 0;
    m_operator.onDialog = [&](QDialog &dialog) {
        const auto closeAt = [&](const QString &call) {
            if (call.arg(attempt) == closingCall)
                dialog.reject();
        };
        m_machine.onSetLanguage = [closeAt] { closeAt(QStringLiteral("SetLanguage %1")); };
        m_machine.onNotify = [closeAt] { closeAt(QStringLiteral("NotifySettingChanged %1")); };
        for (const bool accepts : attempts) {
            ++attempt;
            m_machine.accepts = accepts;
            dialog.findChild<QPushButton *>()->click();
        }
        QVERIFY(dialog.isHidden());
    };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(ins.ShowSettingsDlg(ownerHandle()), result);
    QCOMPARE(m_operator.takeBoxes().size(), attempts.size());
    m_operator.takeDialogs();
    m_machine.takeCalls();
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
    QTest::addColumn<QRect>("owner"); // Left, top, right and bottom
    QTest::addColumn<QSize>("dialog");
    QTest::addColumn<QPoint>("position");

    const auto row = [](const char *name, WindowManager::Rect owner, QSize dialog,
                        QPoint position) {
        QTest::newRow(name) << QRect(owner.left, owner.top, owner.right - owner.left,
                                     owner.bottom - owner.top)
                            << dialog << position;
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
    QFETCH(QRect, owner);
    QFETCH(QSize, dialog);
    QFETCH(QPoint, position);

    RecordingWindowManager::rect = {owner.x(), owner.y(), owner.x() + owner.width(),
                                    owner.y() + owner.height()};
    BriefDialog brief;
    brief.resize(dialog);
    CZendelIns::ExecModal(brief, ownerHandle());
    QVERIFY(RecordingWindowManager::takeCalls().contains(
        QStringLiteral("move(%1, %2)").arg(position.x()).arg(position.y())));
    QCOMPARE(brief.pos(), position);
}

void tst_CZendelIns::frameOfTheDialogIsLeftOut()
{
    RecordingWindowManager::rect = {100, 50, 900, 650};
    BriefDialog dialog;
    dialog.resize(300, 200);
    // Qt knows every platform's frame once the dialog has been shown.
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    if (QGuiApplication::platformName() != QLatin1String("xcb")) // No window manager, no frame.
        QVERIFY(dialog.frameGeometry().width() > dialog.width());
    dialog.hide();
    CZendelIns::ExecModal(dialog, ownerHandle());
    QVERIFY(RecordingWindowManager::takeCalls().contains(QStringLiteral("move(350, 250)")));
}

void tst_CZendelIns::windowExistsButIsHiddenWhenBroughtToTheFront()
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
