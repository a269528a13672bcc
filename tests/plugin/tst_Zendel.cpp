// Tests the built plug-in from a host's side: loads it by file name, resolves its two functions and
// checks only what a host can see. The host's main window is a native one.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/NativeWindow.h"
#include "support/PluginTest.h"
#include "support/TestOnEveryQt.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QKeyEvent>
#include <QMessageBox>
#include <QSet>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

// Qt's hooks for tools that watch objects
extern Q_DECL_IMPORT quintptr qtHookData[];

namespace {

/// The live QObjects that were created since watchObjects(true).
QSet<QObject *> liveObjects;

void objectAdded(QObject *object)
{
    liveObjects.insert(object);
}

void objectRemoved(QObject *object)
{
    liveObjects.remove(object);
}

void watchObjects(bool watch)
{
    const int addQObject = 3;
    const int removeQObject = 4;
    liveObjects.clear();
    qtHookData[addQObject] = watch ? reinterpret_cast<quintptr>(&objectAdded) : 0;
    qtHookData[removeQObject] = watch ? reinterpret_cast<quintptr>(&objectRemoved) : 0;
}

} // namespace

using namespace DialogWidgets;

class tst_Zendel : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    // The manager
    void initReturnsTrueWithoutFiles();
    void catalogueInEveryEncoding_data();
    void catalogueInEveryEncoding();
    void noDialogWithoutHost();
    void newManagerOpensTheDialogWithoutInit();
    void managersShareHostAndTranslation();

    // The dialog
    void operatorSeesTheTranslatedDialog();
    void operatorChangesTheLanguage();
    void refusedChangeIsReportedAndReturnsFalse();
    void initInsideSetLanguage();

    // The host's window
    void dialogIsCentredOverTheOwner();
    void ownerIsDisabledWhileTheDialogRuns();
    void dialogIsInTheForegroundThenTheOwner();
    void destroyedOwnerIsIgnored();

    // Unloading
    void styleSheetIsTheOnlyResource();
    void unloadingLeavesNothingBehind();
    void objectsAreDestroyedInTime();
    void repeatedLoadsAndUnloads();

private:
    void initAndShow(HWND owner);
};

void tst_Zendel::cleanup()
{
    NativeWindow::synchronizeQt(); // Late errors are warnings.
    PluginTest::cleanup();
}

/// Calls Init() and shows one dialog.
void tst_Zendel::initAndShow(HWND owner)
{
    QVERIFY(m_mgr->Init(&m_machine));
    m_mgr->ShowSettingsDlg(owner);
    QCOMPARE(m_operator.takeDialogs().size(), 1);
}

void tst_Zendel::initReturnsTrueWithoutFiles()
{
    Deployment::clear();
    QVERIFY(m_mgr->Init(&m_machine));
    using namespace TranslationBoxes;
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({openFailed(), notFound(QString()),
                          loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))}));
}

void tst_Zendel::catalogueInEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("catalogue");

    const QString lines = QStringLiteral("[LANG_MGR]\r\nLANG1_NAME=中文\r\nLANG1_FOLDER=first\r\n"
                                         "LANG1_SHOW=1\r\nDEFAULT=1\r\n");
    QByteArray gb2312 = lines.toUtf8();
    QTest::newRow("GB2312") << gb2312.replace("中文", "\xD6\xD0\xCE\xC4");
    QTest::newRow("UTF-8") << "\xEF\xBB\xBF" + lines.toUtf8();
    QTest::newRow("UTF-16") << Deployment::utf16(QChar(QChar::ByteOrderMark) + lines);
}

void tst_Zendel::catalogueInEveryEncoding()
{
    QFETCH(QByteArray, catalogue);

    Deployment::writeCatalogue(catalogue);
    m_operator.onDialog = [](QDialog &dialog) {
        QCOMPARE(languages(dialog), QStringList(QStringLiteral("中文")));
    };
    initAndShow(nullptr);
}

void tst_Zendel::managersShareHostAndTranslation()
{
    RecordingMachine second(QStringLiteral("second "));
    IZendelMgr *const other = m_plugin.newInterface();
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(other->Init(&second));
    m_plugin.releaseInterface(other);

    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(second.takeCalls(),
             QStringList({QStringLiteral("second SetLanguage(1)"),
                          QStringLiteral("second NotifySettingChanged")}));
    takeAll();
}

void tst_Zendel::noDialogWithoutHost()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    const NativeWindow other(QRect(100, 50, 100, 100)); // Takes the focus where new windows get it.
    QVERIFY(TestOnEveryQt::waitFor([&] {
        return !owner.hasFocus();
    })); // A window manager gives both the focus, one after the other.
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QVERIFY(!m_mgr->ShowSettingsDlg(owner.handle()));
    QVERIFY(!owner.hasFocus());
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->Init(nullptr));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(Warnings::take(), QStringList()); // The dialog isn't even created.
}

void tst_Zendel::newManagerOpensTheDialogWithoutInit()
{
    QVERIFY(m_mgr->Init(&m_machine));
    Deployment::clear(); // Reading now would show message boxes.
    m_plugin.releaseInterface(m_mgr);
    m_plugin.releaseInterface(nullptr);
    m_mgr = m_plugin.newInterface();
    m_operator.onDialog = [](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("1 Settings"));
        pressChange(dialog);
    };
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_machine.takeCalls().size(), 2);
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    takeAll();
}

void tst_Zendel::operatorSeesTheTranslatedDialog()
{
    m_operator.onDialog = [](QDialog &dialog) {
        QCOMPARE(dialog.size(), QSize(700, 470));
        QCOMPARE(texts(dialog),
                 QStringList({QStringLiteral("1 Settings"), QStringLiteral("1 Language"),
                              QStringLiteral("1 Change"), QStringLiteral("1 Language:")}));
        QCOMPARE(languages(dialog), QStringList({QStringLiteral("One"), QStringLiteral("Two")}));
        QCOMPARE(comboBox(dialog).currentIndex(), 0);
        QVERIFY(!dialog.styleSheet().isEmpty());
    };
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(Warnings::take(), QStringList());
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr)); // No change
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
    QCOMPARE(Warnings::take(), QStringList(Warnings::unconnectedSlot()));
}

void tst_Zendel::operatorChangesTheLanguage()
{
    m_operator.onDialog = [](QDialog &dialog) {
        comboBox(dialog).setCurrentIndex(1);
        pressChange(dialog);
        // The plug-in's translator isn't installed in the application.
        QCOMPARE(QCoreApplication::translate("PageSetLang", "Change"), QStringLiteral("Change"));
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&dialog, &escape);
    };
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(
        m_machine.takeCalls(),
        QStringList({QStringLiteral("SetLanguage(2)"), QStringLiteral("NotifySettingChanged")}));
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(Operator::box("information", QStringLiteral("1 Success"),
                                       QStringLiteral("1 Change successful!"), "PageSetLang")));
    m_operator.takeDialogs();
}

void tst_Zendel::refusedChangeIsReportedAndReturnsFalse()
{
    m_machine.accepts = false;
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_machine.takeCalls(), QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(Operator::box("critical", QStringLiteral("1 Error"),
                                       QStringLiteral("1 Change failed!"), "PageSetLang")));
    m_operator.takeDialogs();
}

void tst_Zendel::initInsideSetLanguage()
{
    RecordingMachine other(QStringLiteral("other "));
    m_machine.onSetLanguage = [&] {
        Deployment::writeLines("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
        QVERIFY(m_mgr->Init(&other));
    };
    m_operator.onDialog = [](QDialog &dialog) {
        pressChange(dialog);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("1 Settings"));
        QCOMPARE(button(dialog).text(), QStringLiteral("1 Change"));
        QCOMPARE(languages(dialog).size(), 2);
    };
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_machine.takeCalls(), QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(other.takeCalls(), QStringList(QStringLiteral("other NotifySettingChanged")));
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(Operator::box("information", QStringLiteral("2 Success"),
                                       QStringLiteral("2 Change successful!"), "PageSetLang")));
    m_operator.takeDialogs();
}

void tst_Zendel::dialogIsCentredOverTheOwner()
{
    const QRect owner(-100, -60, 801, 601); // Partly off the screen
    const NativeWindow window(owner);
    QRect placed;
    QPoint seen;
    m_operator.onDialog = [&seen](QDialog &dialog) { seen = dialog.pos(); };
    do { // Again if a window manager has moved the owner meanwhile.
        placed = window.geometry();
        initAndShow(window.handle());
    } while (window.geometry() != placed);
    QCOMPARE(placed.size(), owner.size());
    QCOMPARE(seen, placed.topLeft() + QPoint(50, 65));
}

void tst_Zendel::ownerIsDisabledWhileTheDialogRuns()
{
    NativeWindow owner(QRect(100, 50, 800, 600));
    const QPoint besideTheDialog(120, 620);
    m_operator.onDialog = [&](QDialog &) {
        owner.takeInput();
        NativeWindow::click(besideTheDialog);
        NativeWindow::typeKey();
        QCOMPARE(owner.takeInput(), 0);
    };
    initAndShow(owner.handle());

    NativeWindow::click(besideTheDialog);
    QCOMPARE(owner.takeClicks(), 1);
}

void tst_Zendel::dialogIsInTheForegroundThenTheOwner()
{
    NativeWindow owner(QRect(100, 50, 800, 600));
    NativeWindow other(QRect(100, 50, 800, 600)); // Covers the owner.
    const QPoint besideTheDialog(120, 620);
    QVERIFY(TestOnEveryQt::waitFor([&] { return other.isOnTop(besideTheDialog); }));
    m_operator.onDialog = [&](QDialog &dialog) {
        QVERIFY(TestOnEveryQt::waitFor([&dialog] { return dialog.isActiveWindow(); }));
        QVERIFY(!owner.hasFocus());
        NativeWindow::click(dialog.geometry().center());
        QCOMPARE(owner.takeClicks() + other.takeClicks(), 0);
    };
    initAndShow(owner.handle());

    QVERIFY(owner.hasFocus());
    // Wine raises the window only on the screen at first. A simulated click that comes before Wine
    // has updated its own order would go to the other window.
    const auto comesToTheTop = [&] {
        return TestOnEveryQt::waitFor([&] { return owner.isOnTop(besideTheDialog); });
    };
    const bool raised = comesToTheTop();
#ifdef Q_OS_WIN
    if (!raised) {
        // Windows raises the foreground window. Wine leaves that to the window manager if there is
        // one, and not all do it. Then the test's own call has no more effect than the plug-in's.
        QVERIFY(SetForegroundWindow(other.handle()));
        QVERIFY(SetForegroundWindow(owner.handle()));
        QVERIFY(!comesToTheTop());
        return;
    }
#endif
    QVERIFY(raised);
    NativeWindow::click(besideTheDialog);
    QCOMPARE(owner.takeClicks(), 1);
}

void tst_Zendel::destroyedOwnerIsIgnored()
{
    NativeWindow owner(QRect(100, 50, 800, 600));
    owner.destroy();
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(m_mgr->ShowSettingsDlg(owner.handle()));
    QCOMPARE(m_operator.takeDialogs().size(), 1);
    takeAll();
}

void tst_Zendel::styleSheetIsTheOnlyResource()
{
    const auto files = [] {
        QStringList result;
        QDirIterator iterator(QStringLiteral(":/"), QDir::Files, QDirIterator::Subdirectories);
        while (iterator.hasNext())
            result += iterator.next();
        result.sort();
        return result;
    };
    QStringList withPlugin = files();
    unload();
    QVERIFY(withPlugin.removeOne(QStringLiteral(":/res/qss/style.css")));
    QCOMPARE(withPlugin, files());
}

void tst_Zendel::unloadingLeavesNothingBehind()
{
    const QString styleSheet = QStringLiteral(":/res/qss/style.css");
    QVERIFY(QFile::exists(styleSheet));
    NativeWindow owner(QRect(100, 50, 800, 600));
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(m_mgr->ShowSettingsDlg(owner.handle()));
    takeAll();

    unload();
    QVERIFY(!QFile::exists(styleSheet));

    // Qt would use anything here that it had kept from the plug-in.
    QCoreApplication::processEvents();
    QDialog dialog;
    dialog.setStyleSheet(QStringLiteral("QTabBar::tab:selected { background: white; }"));
    auto *const tabs = new QTabWidget(&dialog);
    tabs->addTab(new QComboBox, QStringLiteral("Tab"));
    dialog.resize(400, 300); // Some versions of Qt warn if it is narrower than Windows allows.
    dialog.show();
    QVERIFY(TestOnEveryQt::waitForExposed(dialog));
    QMessageBox::information(&dialog, QStringLiteral("Title"), QStringLiteral("Text"));
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_Zendel::objectsAreDestroyedInTime()
{
    unload();
    watchObjects(true);
    m_plugin.load();
    QList<int> counts;
    const auto count = [&counts] { counts += liveObjects.size(); };
    m_mgr = m_plugin.newInterface(); // Creates the manager.
    count();
    m_plugin.releaseInterface(m_mgr); // Creates nothing.
    m_plugin.releaseInterface(nullptr);
    count();
    m_mgr = m_plugin.newInterface();
    m_mgr->Init(nullptr); // Creates nothing without a host.
    m_mgr->ShowSettingsDlg(nullptr);
    count();
    m_mgr->Init(&m_machine); // Creates CTranslatorMgr and its translator.
    count();
    m_mgr->Init(&m_machine);
    count();
    m_plugin.releaseInterface(m_mgr);
    count();
    m_plugin.unload();
    count();
    watchObjects(false);
    QCOMPARE(counts, QList<int>({1, 0, 1, 3, 3, 2, 0}));
}

void tst_Zendel::repeatedLoadsAndUnloads()
{
    for (int i = 0; i < 20; ++i) {
        QVERIFY(!m_mgr->ShowSettingsDlg(nullptr)); // It has no host again.
        initAndShow(nullptr);
        unload();
        load();
    }
}

QTEST_MAIN(tst_Zendel)
#include "tst_Zendel.moc"
