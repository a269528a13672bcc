#include "plugin/CZendelIns.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"
#include "ui/DlgSettings.h"
#include "ui/PageSetLang.h"

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/Interpose.h"
#include "support/OperatedTest.h"
#include "support/RecordingWindowManager.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QMessageBox>
#include <QMetaMethod>
#include <QTest>
#include <QTranslator>

#include <new>
#include <stdexcept>

using RecordingWindowManager::addCall;
using WindowManager::Rect;
Q_DECLARE_METATYPE(Rect)
Q_DECLARE_METATYPE(const QMetaObject *)

extern "C" IZendelMgr *NewInterface();
extern "C" void ReleaseInterface(IZendelMgr *mgr);

namespace {

/// Thrown by functions below instead of their result, if set.
bool loadFails = false;
bool execFails = false;

/// Records when the event loop runs.
void postEvent(const char *name)
{
    QMetaObject::invokeMethod(
        qApp, [name] { addCall(QLatin1String(name)); }, Qt::QueuedConnection);
}

} // namespace

// These functions record the plug-in's calls among those to the window manager and forward them.

/// The call that creates the window returns a handle that must not be used.
INTERPOSE(WId, winId, (const QWidget *self))
{
    addCall(QStringLiteral("winId"));
    const bool creates = !self->internalWinId();
    const WId id = ORIGINAL(winId)(self);
    if (creates)
        return WId(-1);
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

/// Called once by the settings dialog, while it is constructed.
INTERPOSE(void, setStyleSheet, (QWidget * self, const QString &style))
{
    addCall(QStringLiteral("setStyleSheet"));
    ORIGINAL(setStyleSheet)(self, style);
    QObject::connect(self, &QObject::destroyed, [] { addCall(QStringLiteral("destroyed")); });
}

INTERPOSE(int, exec, (QDialog * self))
{
    addCall(QStringLiteral("exec"));
    if (execFails)
        throw std::runtime_error("exec");
    const bool moved = self->testAttribute(Qt::WA_Moved);
    const int code = ORIGINAL(exec)(self);
    addCall(moved ? QStringLiteral("closed") : QStringLiteral("closed, not moved before"));
    postEvent("late event");
    return code;
}

INTERPOSE(bool, load,
          (QTranslator * self, const QString &file, const QString &directory,
           const QString &delimiters, const QString &suffix))
{
    addCall(QStringLiteral("load"));
    if (loadFails)
        throw std::runtime_error("load");
    return ORIGINAL(load)(self, file, directory, delimiters, suffix);
}

// On Windows, only functions that the program imports can be replaced.
#ifndef Q_OS_WIN
namespace {
bool memoryIsShort = false;
}

INTERPOSE(void, raise, (QWidget * self))
{
    addCall(QStringLiteral("raise"));
    ORIGINAL(raise)(self);
}

INTERPOSE(void, activateWindow, (QWidget * self))
{
    addCall(QStringLiteral("activateWindow"));
    ORIGINAL(activateWindow)(self);
}

INTERPOSE(void *, operatorNew, (std::size_t size))
{
    if (memoryIsShort)
        throw std::bad_alloc();
    return ORIGINAL(operatorNew)(size);
}
#endif

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

QByteArray scaleFactor()
{
    return qEnvironmentVariableIsSet("ZENDEL_SCALE_FACTOR") ? qgetenv("ZENDEL_SCALE_FACTOR") : "1";
}

HWND ownerHandle()
{
    return reinterpret_cast<HWND>(quintptr(0x1234));
}

} // namespace

class tst_CZendelIns : public OperatedTest
{
    Q_OBJECT

public:
    static void initMain();

private Q_SLOTS:
    void init();
    void cleanup();

    void callsOfTheDialog_data(); // The first one in this process has to be among them.
    void callsOfTheDialog();

    void screenHasTheRequestedScale();
    void hostIsNullInitially();
    void metaObjectsDeclareTheSlotsAlone_data();
    void metaObjectsDeclareTheSlotsAlone();
    void objectsAreCastByName();
    void managerHasNoState();
    void managerNeedsNoApplication();
#ifndef Q_OS_WIN
    void shortMemoryLeavesNewInterface();
#endif

    void initWithNullClearsTheHostAndLoadsNothing();
    void initIsTrueWhateverFails();
    void initInsideAMessageBoxIsKept_data();
    void initInsideAMessageBoxIsKept();
    void exceptionLeavesInit();
    void everyInitLoadsOnce();

    void noDialogWithoutHost();
    void lastChangeDecidesTheResult_data();
    void lastChangeDecidesTheResult();
    void clearedHostDoesNotChangeTheResult();
    void dialogIsModalOverTheOwner();
    void applicationMayQuitAsBefore();
    void exceptionLeavesShowSettingsDlg();

    void dialogIsCentredOverTheOwner_data();
    void dialogIsCentredOverTheOwner();
    void frameOfTheDialogIsIgnored();
    void windowIsHiddenWhenBroughtToTheFront();
    void ownerIsEnabledHoweverTheDialogEnds();
    void nestedDialogEnablesTheOwner();

private:
    void showDialog(bool expectedResult);

    static IZendelMgr *s_earlyManager;
};

IZendelMgr *tst_CZendelIns::s_earlyManager = nullptr;

/// Called before the application is constructed.
void tst_CZendelIns::initMain()
{
    s_earlyManager = NewInterface();
    // Wine hides variables named QT_* from programs.
    qputenv("QT_SCALE_FACTOR", scaleFactor());
}

void tst_CZendelIns::init()
{
    OperatedTest::init();
    RecordingWindowManager::reset();
    RecordingWindowManager::setName(ownerHandle(), QStringLiteral("owner"));
    loadFails = false;
    execFails = false;
}

void tst_CZendelIns::cleanup()
{
    QCoreApplication::sendPostedEvents();
    OperatedTest::cleanup();
    g_pHostMachine = nullptr;
}

void tst_CZendelIns::showDialog(bool expectedResult)
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(ins.ShowSettingsDlg(ownerHandle()), expectedResult);
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
}

void tst_CZendelIns::callsOfTheDialog_data()
{
    QTest::addColumn<bool>("hasOwner");

    QTest::newRow("first dialog") << true;
    QTest::newRow("second dialog") << true;
    QTest::newRow("without owner") << false;
}

void tst_CZendelIns::callsOfTheDialog()
{
    QFETCH(bool, hasOwner);

    QWidget active; // Not used as the owner
    active.show();
    QApplication::setActiveWindow(&active);
    RecordingWindowManager::rect = {100, 50, 900, 650};
    m_operator.onDialog = [](QDialog &) { addCall(QStringLiteral("shown")); };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    RecordingWindowManager::takeCalls();
    postEvent("early event");
    QVERIFY(!ins.ShowSettingsDlg(hasOwner ? ownerHandle() : nullptr));

    QStringList expected {QStringLiteral("setStyleSheet")};
    if (hasOwner)
        expected += QStringLiteral("enableWindow(owner, false)");
    expected += QStringList(
        {QStringLiteral("setModal(1)"), QStringLiteral("winId"), QStringLiteral("winId")});
    if (hasOwner) {
        expected +=
            QStringList({QStringLiteral("windowRect(owner)"), QStringLiteral("move(150, 115)")});
    }
    expected += QStringList({QStringLiteral("setForegroundWindow(dialog)"),
                             QStringLiteral("bringWindowToTop(dialog)"), QStringLiteral("exec"),
                             QStringLiteral("early event"), QStringLiteral("shown")});
    if (hasOwner) {
        expected +=
            QStringList({QStringLiteral("closed"), QStringLiteral("enableWindow(owner, true)"),
                         QStringLiteral("setForegroundWindow(owner)")});
    } else {
        expected += QStringLiteral("closed, not moved before");
    }
    expected += QStringLiteral("destroyed");
    QCOMPARE(RecordingWindowManager::takeCalls(), expected);
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

void tst_CZendelIns::metaObjectsDeclareTheSlotsAlone_data()
{
    QTest::addColumn<const QMetaObject *>("meta");
    QTest::addColumn<const QMetaObject *>("super");
    QTest::addColumn<QList<QByteArray>>("slotSignatures");

    const QList<QByteArray> none {};
    QTest::newRow("CZendelIns") << &CZendelIns::staticMetaObject << &QObject::staticMetaObject
                                << none;
    QTest::newRow("CTranslatorMgr")
        << &CTranslatorMgr::staticMetaObject << &QObject::staticMetaObject << none;
    QTest::newRow("DlgSettings") << &DlgSettings::staticMetaObject << &QDialog::staticMetaObject
                                 << none;
    QTest::newRow("PageSetLang") << &PageSetLang::staticMetaObject << &QWidget::staticMetaObject
                                 << QList<QByteArray> {"on_comboBo_lang_activated(int)",
                                                       "on_pushButton_change_clicked()"};
}

void tst_CZendelIns::metaObjectsDeclareTheSlotsAlone()
{
    QFETCH(const QMetaObject *, meta);
    QFETCH(const QMetaObject *, super);
    QFETCH(QList<QByteArray>, slotSignatures);

    QCOMPARE(meta->className(), QTest::currentDataTag());
    QCOMPARE(meta->superClass(), super);
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    QCOMPARE(meta->classInfoCount(), meta->classInfoOffset());
    QList<QByteArray> signatures;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Private);
        signatures += method.methodSignature();
    }
    QCOMPARE(signatures, slotSignatures);
}

void tst_CZendelIns::objectsAreCastByName()
{
    IZendelMgr *const mgr = NewInterface();
    auto *const ins = dynamic_cast<CZendelIns *>(mgr);
    QVERIFY(ins);
    QVERIFY(!ins->parent());
    // QObject is the first base.
    QCOMPARE(static_cast<void *>(static_cast<QObject *>(ins)), static_cast<void *>(ins));
    QVERIFY(static_cast<void *>(mgr) != static_cast<void *>(ins));
    QCOMPARE(ins->qt_metacast("IZendelMgr"), static_cast<void *>(mgr));

    DlgSettings dialog;
    PageSetLang page;
    for (QObject *const object :
         {static_cast<QObject *>(ins), static_cast<QObject *>(CTranslatorMgr::instance()),
          static_cast<QObject *>(&dialog), static_cast<QObject *>(&page)}) {
        const QMetaObject *const meta = object->metaObject();
        QCOMPARE(object->qt_metacast(meta->className()), dynamic_cast<void *>(object));
        QCOMPARE(object->qt_metacast(meta->superClass()->className()),
                 dynamic_cast<void *>(object));
        QVERIFY(!object->qt_metacast("QTranslator"));
    }
    ReleaseInterface(mgr);
}

void tst_CZendelIns::managerHasNoState()
{
    QCOMPARE(sizeof(CZendelIns), sizeof(QObject) + sizeof(IZendelMgr));
}

void tst_CZendelIns::managerNeedsNoApplication()
{
    QVERIFY(s_earlyManager);
    QVERIFY(s_earlyManager->Init(&m_machine));
    ReleaseInterface(s_earlyManager);
    s_earlyManager = nullptr;
}

#ifndef Q_OS_WIN
void tst_CZendelIns::shortMemoryLeavesNewInterface()
{
    memoryIsShort = true;
    bool thrown = false;
    try {
        ReleaseInterface(NewInterface());
    } catch (const std::bad_alloc &) {
        thrown = true;
    }
    memoryIsShort = false;
    QVERIFY(thrown);
}
#endif

void tst_CZendelIns::initWithNullClearsTheHostAndLoadsNothing()
{
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    Deployment::clear(); // Loading would now show message boxes.
    QVERIFY(!ins.Init(nullptr));
    QVERIFY(!g_pHostMachine);
    QCOMPARE(CTranslatorMgr::instance()->visibleLanguages().size(), 2);
    QCOMPARE(CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change"),
             QStringLiteral("1 Change"));
    QVERIFY(!ins.ShowSettingsDlg(nullptr));
}

void tst_CZendelIns::initIsTrueWhateverFails()
{
    QList<bool> recorded; // Before anything is loaded
    m_operator.onBox = [&](QMessageBox &) { recorded += g_pHostMachine == &m_machine; };
    CZendelIns ins;
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes().size(), 1);

    g_pHostMachine = nullptr;
    Deployment::clear();
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes().size(), 3);
    QCOMPARE(recorded, QList<bool>({true, true, true, true}));
}

void tst_CZendelIns::initInsideAMessageBoxIsKept_data()
{
    QTest::addColumn<bool>("null");

    QTest::newRow("another machine") << false;
    QTest::newRow("null") << true;
}

void tst_CZendelIns::initInsideAMessageBoxIsKept()
{
    QFETCH(bool, null);

    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    RecordingMachine other;
    IHostMachine *const second = null ? nullptr : &other;
    int boxes = 0;
    m_operator.onBox = [&](QMessageBox &) {
        if (++boxes == 1)
            QCOMPARE(CZendelIns().Init(second), !null);
    };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(g_pHostMachine, second);
    QCOMPARE(m_operator.takeBoxes().size(), null ? 1 : 2);
}

void tst_CZendelIns::exceptionLeavesInit()
{
    loadFails = true;
    CZendelIns ins;
    QVERIFY_EXCEPTION_THROWN(ins.Init(&m_machine), std::runtime_error);
    QCOMPARE(g_pHostMachine, static_cast<IHostMachine *>(&m_machine));
}

void tst_CZendelIns::everyInitLoadsOnce()
{
    const QStringList once {QStringLiteral("load")};
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(RecordingWindowManager::takeCalls(), once);
    QCOMPARE(g_pHostMachine, static_cast<IHostMachine *>(&m_machine));
    Deployment::installTranslation(QStringLiteral("first"), QStringLiteral("second"));
    QVERIFY(ins.Init(&m_machine));
    QCOMPARE(RecordingWindowManager::takeCalls(), once);
    QCOMPARE(CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change"),
             QStringLiteral("2 Change"));
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
    row("no change", {}, "accept", false);
    row("success", {true}, "reject", true);

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
            DialogWidgets::pressChange(dialog);
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

void tst_CZendelIns::clearedHostDoesNotChangeTheResult()
{
    m_operator.onDialog = [](const QDialog &dialog) {
        DialogWidgets::pressChange(dialog);
        QVERIFY(!CZendelIns().Init(nullptr));
    };
    showDialog(true);
    QVERIFY(!g_pHostMachine);
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    QCOMPARE(m_machine.takeCalls().size(), 2);
}

void tst_CZendelIns::dialogIsModalOverTheOwner()
{
    QWidget otherWindow;
    otherWindow.show();
    QApplication::setActiveWindow(&otherWindow);
    const Qt::WindowFlags flags = DlgSettings().windowFlags();
    RecordingWindowManager::rect = {100, 50, 900, 650};
    m_operator.onDialog = [flags](QDialog &dialog) {
        QVERIFY(!dialog.parentWidget());
        QCOMPARE(dialog.windowFlags(), flags);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
        QCOMPARE(QApplication::activeModalWidget(), &dialog);
        QCOMPARE(dialog.pos(), QPoint(150, 115));
    };
    showDialog(false);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_CZendelIns::applicationMayQuitAsBefore()
{
    for (const bool quits : {false, true}) {
        QApplication::setQuitOnLastWindowClosed(quits);
        m_operator.onDialog = [quits](const QDialog &) {
            QCOMPARE(QApplication::quitOnLastWindowClosed(), quits);
        };
        showDialog(false);
        QCOMPARE(QApplication::quitOnLastWindowClosed(), quits);
    }
}

void tst_CZendelIns::exceptionLeavesShowSettingsDlg()
{
    execFails = true;
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QVERIFY_EXCEPTION_THROWN(ins.ShowSettingsDlg(ownerHandle()), std::runtime_error);
    // The owner stays disabled.
    const QStringList calls = RecordingWindowManager::takeCalls();
    QVERIFY(calls.contains(QStringLiteral("enableWindow(owner, false)")));
    QVERIFY(!calls.contains(QStringLiteral("enableWindow(owner, true)")));
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
    row("beyond 16 bits", {40000, -50000, 40800, -49400}, {300, 200}, {40250, -49800});
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

void tst_CZendelIns::ownerIsEnabledHoweverTheDialogEnds()
{
    for (const int code : {int(QDialog::Accepted), int(QDialog::Rejected), 7}) {
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
}

void tst_CZendelIns::nestedDialogEnablesTheOwner()
{
    QStringList calls;
    RecordingWindowManager::setOnCall([&calls](const QString &call) {
        if (call.startsWith(QLatin1String("enableWindow")))
            calls += call;
    });
    bool nested = false;
    m_operator.onDialog = [&nested](const QDialog &dialog) {
        if (nested) {
            DialogWidgets::pressChange(dialog);
        } else {
            nested = true;
            QVERIFY(CZendelIns().ShowSettingsDlg(ownerHandle()));
        }
    };
    CZendelIns ins;
    QVERIFY(ins.Init(&m_machine));
    QVERIFY(!ins.ShowSettingsDlg(ownerHandle()));
    takeAll();
    const QString disable = QStringLiteral("enableWindow(owner, false)");
    const QString enable = QStringLiteral("enableWindow(owner, true)");
    QCOMPARE(calls, QStringList({disable, disable, enable, enable}));
}

QTEST_MAIN(tst_CZendelIns)
#include "tst_CZendelIns.moc"
