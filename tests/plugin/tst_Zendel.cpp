// Tests the built plug-in from a host's side: loads it by file name, resolves its two functions and
// checks only what a host can see. The host's main window is a native one.

#include "plugin/IZendelMgr.h"

#include "support/Deployment.h"
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/TestFile.h"
#include "support/TestOnEveryQt.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDirIterator>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>

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

QComboBox &languages(const QDialog &dialog)
{
    return *dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
}

void pressChange(const QDialog &dialog)
{
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

bool isMapped(const QString &fileName)
{
#ifdef Q_OS_WIN
    return GetModuleHandleW(reinterpret_cast<const wchar_t *>(fileName.utf16()));
#else
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(fileName.toUtf8());
#endif
}

} // namespace

class tst_Zendel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    // The boundary
    void newInterfaceTouchesNothing();
    void hostGetsTheInterfaceBase();
    void managersAreIndependentObjects();
    void releaseDestroysTheManager();
    void releaseOfNullDoesNothing();

    // Init
    void initWithNullReturnsFalse();
    void initWithHostReturnsTrueWithoutFiles();
    void secondInitLoadsAgain();
    void managersShareHostAndTranslation();

    // The dialog
    void noDialogBeforeInit();
    void noDialogAfterInitWithNull();
    void newManagerOpensTheDialogWithoutInit();
    void operatorSeesTheTranslatedDialog();
    void operatorChangesTheLanguage();
    void refusedChangeIsReportedAndReturnsFalse();
    void lastOutcomeIsReturned();
    void secondInitReplacesTheHost();
    void initInsideSetLanguage();
    void everyDialogLogsOneWarning();

    // The host's window
    void dialogIsCentredOverTheOwner_data();
    void dialogIsCentredOverTheOwner();
    void ownerIsDisabledWhileTheDialogRuns();
    void dialogIsInTheForegroundThenTheOwner();
    void dialogWithoutOwnerIsModal();
    void destroyedOwnerIsIgnored();

    // Unloading
    void styleSheetIsTheOnlyResource();
    void unloadingLeavesNothingBehind();
    void objectsAreDestroyedInTime();
    void translatorIsNeverInstalledInTheApplication();
    void reloadedPluginHasNoHost();
    void repeatedLoadsAndUnloads();

private:
    void load();
    void unload();
    void initAndShow(HWND owner);
    void takeAll();

    Plugin m_plugin {testFile(QStringLiteral(PLUGIN_FILE))};
    IZendelMgr *m_mgr = nullptr;
    RecordingMachine m_machine;
    Operator m_operator;
};

void tst_Zendel::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    m_machine.accepts = true;
    m_machine.onSetLanguage = nullptr;
    m_operator.onDialog = nullptr;
    load();
}

void tst_Zendel::cleanup()
{
    unload();
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(m_operator.takeDialogs(), QStringList());
    QCOMPARE(m_machine.takeCalls(), QStringList());
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_Zendel::load()
{
    m_plugin.load();
    QVERIFY(isMapped(m_plugin.fileName()));
    m_mgr = m_plugin.newInterface();
    QVERIFY(m_mgr);
}

void tst_Zendel::unload()
{
    if (m_mgr)
        m_plugin.releaseInterface(m_mgr);
    m_mgr = nullptr;
    if (m_plugin.isLoaded())
        m_plugin.unload();
    QVERIFY(!isMapped(m_plugin.fileName()));
}

/// Calls Init() and shows one dialog.
void tst_Zendel::initAndShow(HWND owner)
{
    QVERIFY(m_mgr->Init(&m_machine));
    m_mgr->ShowSettingsDlg(owner);
    QCOMPARE(m_operator.takeDialogs().size(), 1);
}

void tst_Zendel::takeAll()
{
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    m_machine.takeCalls();
}

void tst_Zendel::newInterfaceTouchesNothing()
{
    QVERIFY(m_mgr->Init(&m_machine));
    Deployment::clear(); // Reading now would show message boxes.
    IZendelMgr *const other = m_plugin.newInterface();
    m_plugin.releaseInterface(other);
    m_mgr->ShowSettingsDlg(nullptr); // The host is still set.
    QCOMPARE(m_operator.takeDialogs().size(), 1);
}

void tst_Zendel::hostGetsTheInterfaceBase()
{
    auto *const object = dynamic_cast<QObject *>(m_mgr);
    QVERIFY(object);
    QVERIFY(static_cast<void *>(object) != static_cast<void *>(m_mgr));
    QCOMPARE(dynamic_cast<void *>(m_mgr), static_cast<void *>(object));
    QCOMPARE(object->metaObject()->className(), "CZendelIns");
    QCOMPARE(object->qt_metacast("IZendelMgr"), static_cast<void *>(m_mgr));
    QCOMPARE(object->qt_metacast("CZendelIns"), static_cast<void *>(object));
    QVERIFY(!object->parent());
}

void tst_Zendel::managersAreIndependentObjects()
{
    IZendelMgr *const other = m_plugin.newInterface();
    QVERIFY(other != m_mgr);
    m_plugin.releaseInterface(other);
    QVERIFY(m_mgr->Init(&m_machine));
}

void tst_Zendel::releaseDestroysTheManager()
{
    const QPointer<QObject> object = dynamic_cast<QObject *>(m_mgr);
    QVERIFY(object);
    m_plugin.releaseInterface(m_mgr);
    m_mgr = nullptr;
    QVERIFY(!object);
}

void tst_Zendel::releaseOfNullDoesNothing()
{
    m_plugin.releaseInterface(nullptr);
    QVERIFY(m_mgr->Init(&m_machine));
}

void tst_Zendel::initWithNullReturnsFalse()
{
    Deployment::clear();
    QVERIFY(!m_mgr->Init(nullptr));
}

void tst_Zendel::initWithHostReturnsTrueWithoutFiles()
{
    Deployment::clear();
    QVERIFY(m_mgr->Init(&m_machine));
    using namespace TranslationBoxes;
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({openFailed(), notFound(QString()),
                          loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))}));
}

void tst_Zendel::secondInitLoadsAgain()
{
    QVERIFY(m_mgr->Init(&m_machine));
    Deployment::writeLines("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
    m_operator.onDialog = [](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("2 Settings"));
        QCOMPARE(languages(dialog).count(), 1);
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

void tst_Zendel::noDialogBeforeInit()
{
    const NativeWindow owner(QRect(100, 50, 800, 600));
    const NativeWindow other(QRect(100, 50, 100, 100)); // Takes the focus where new windows get it.
    QVERIFY(TestOnEveryQt::waitFor([&] {
        return !owner.hasFocus();
    })); // A window manager gives both the focus, one after the other.
    QVERIFY(!m_mgr->ShowSettingsDlg(owner.handle()));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QVERIFY(!owner.hasFocus());
    QCOMPARE(Warnings::take(), QStringList()); // The dialog isn't even created.
}

void tst_Zendel::noDialogAfterInitWithNull()
{
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->Init(nullptr));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
}

void tst_Zendel::newManagerOpensTheDialogWithoutInit()
{
    QVERIFY(m_mgr->Init(&m_machine));
    m_plugin.releaseInterface(m_mgr);
    m_mgr = m_plugin.newInterface();
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
    QCOMPARE(m_machine.takeCalls().size(), 2);
    m_operator.takeBoxes();
}

void tst_Zendel::operatorSeesTheTranslatedDialog()
{
    m_operator.onDialog = [](QDialog &dialog) {
        QCOMPARE(dialog.size(), QSize(700, 470));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("1 Settings"));
        const auto &tabs = *dialog.findChild<QTabWidget *>();
        QCOMPARE(tabs.count(), 1);
        QCOMPARE(tabs.tabText(0), QStringLiteral("1 Language"));
        QCOMPARE(dialog.findChild<QPushButton *>()->text(), QStringLiteral("1 Change"));
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("label_info1"))->text(),
                 QStringLiteral("1 Language:"));
        QCOMPARE(languages(dialog).count(), 2);
        QCOMPARE(languages(dialog).currentText(), QStringLiteral("One"));
        QVERIFY(!dialog.styleSheet().isEmpty());
    };
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr)); // No change
    QCOMPARE(m_operator.takeDialogs(), QStringList(QStringLiteral("DlgSettings")));
}

void tst_Zendel::operatorChangesTheLanguage()
{
    m_operator.onDialog = [](QDialog &dialog) {
        languages(dialog).setCurrentIndex(1);
        pressChange(dialog);
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

void tst_Zendel::lastOutcomeIsReturned()
{
    bool lastAccepted = false;
    m_operator.onDialog = [&](const QDialog &dialog) {
        m_machine.accepts = !lastAccepted;
        pressChange(dialog);
        m_machine.accepts = lastAccepted;
        pressChange(dialog);
    };
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    lastAccepted = true;
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_operator.takeBoxes().size(), 4);
    takeAll();
}

void tst_Zendel::secondInitReplacesTheHost()
{
    RecordingMachine other(QStringLiteral("other "));
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(m_mgr->Init(&other));
    m_operator.onDialog = pressChange;
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(other.takeCalls(),
             QStringList({QStringLiteral("other SetLanguage(1)"),
                          QStringLiteral("other NotifySettingChanged")}));
    takeAll();
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
        QCOMPARE(dialog.findChild<QPushButton *>()->text(), QStringLiteral("1 Change"));
        QCOMPARE(languages(dialog).count(), 2);
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

void tst_Zendel::everyDialogLogsOneWarning()
{
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(Warnings::take(), QStringList());
    NativeWindow owner(QRect(100, 50, 800, 600));
    for (int i = 0; i < 3; ++i) {
        m_mgr->ShowSettingsDlg(owner.handle());
        NativeWindow::synchronizeQt();
        QCOMPARE(Warnings::take(), QStringList(Warnings::unconnectedSlot()));
    }
    m_operator.takeDialogs();
}

void tst_Zendel::dialogIsCentredOverTheOwner_data()
{
    QTest::addColumn<QRect>("owner");
    QTest::addColumn<QPoint>("offset");

    QTest::newRow("usual sizes") << QRect(100, 50, 800, 600) << QPoint(50, 65);
    QTest::newRow("one pixel over") << QRect(100, 50, 701, 471) << QPoint(0, 0);
    QTest::newRow("three pixels over") << QRect(100, 50, 703, 473) << QPoint(1, 1);
    QTest::newRow("three pixels short") << QRect(100, 50, 697, 467) << QPoint(-1, -1);
    QTest::newRow("smaller than the dialog") << QRect(400, 300, 201, 101) << QPoint(-249, -184);
    QTest::newRow("partly off the screen") << QRect(-100, -60, 800, 600) << QPoint(50, 65);
}

void tst_Zendel::dialogIsCentredOverTheOwner()
{
    QFETCH(QRect, owner);
    QFETCH(QPoint, offset);

    const NativeWindow window(owner);
    QRect placed;
    QPoint seen;
    m_operator.onDialog = [&seen](QDialog &dialog) { seen = dialog.pos(); };
    do { // Again if a window manager has moved the owner meanwhile.
        placed = window.geometry();
        initAndShow(window.handle());
    } while (window.geometry() != placed);
    QCOMPARE(placed.size(), owner.size());
    QCOMPARE(seen, placed.topLeft() + offset);
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

void tst_Zendel::dialogWithoutOwnerIsModal()
{
    NativeWindow window(QRect(100, 50, 800, 600));
    m_operator.onDialog = [&](QDialog &dialog) {
        QVERIFY(dialog.isModal());
        QCOMPARE(QApplication::activeModalWidget(), &dialog);
        dialog.move(200, 200);
        NativeWindow::click({120, 620});
        QCOMPARE(window.takeClicks(), 1);
    };
    initAndShow(nullptr);
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
    QList<int> counts;
    const auto count = [&counts] { counts += liveObjects.size(); };
    load(); // Creates the manager.
    count();
    m_plugin.releaseInterface(m_mgr); // Creates nothing.
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
    m_mgr = nullptr;
    count();
    unload();
    count();
    watchObjects(false);
    QCOMPARE(counts, QList<int>({1, 0, 1, 3, 3, 2, 0}));
}

void tst_Zendel::translatorIsNeverInstalledInTheApplication()
{
    const auto applicationText = [] {
        return QCoreApplication::translate("PageSetLang", "Change");
    };
    QStringList texts;
    m_operator.onDialog = [&](const QDialog &dialog) {
        texts += applicationText();
        pressChange(dialog);
        texts += applicationText();
    };
    QVERIFY(m_mgr->Init(&m_machine));
    texts += applicationText();
    QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
    texts += applicationText();
    const QString untranslated = QStringLiteral("Change");
    QCOMPARE(texts, QStringList({untranslated, untranslated, untranslated, untranslated}));
    takeAll();
}

void tst_Zendel::reloadedPluginHasNoHost()
{
    QVERIFY(m_mgr->Init(&m_machine));
    unload();
    load();
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_operator.takeDialogs(), QStringList());

    QVERIFY(QFile::exists(QStringLiteral(":/res/qss/style.css")));
    QVERIFY(m_mgr->Init(&m_machine));
    QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
    QCOMPARE(m_operator.takeDialogs().size(), 1);
}

void tst_Zendel::repeatedLoadsAndUnloads()
{
    for (int i = 0; i < 20; ++i) {
        QVERIFY(m_mgr->Init(&m_machine));
        m_mgr->ShowSettingsDlg(nullptr);
        unload();
        load();
    }
    QCOMPARE(m_operator.takeDialogs().size(), 20);
}

QTEST_MAIN(tst_Zendel)
#include "tst_Zendel.moc"
