#include "ui/PageSetLang.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"

#include "support/DefaultButtons.h"
#include "support/Deployment.h"
#include "support/HostTranslator.h"
#include "support/Operator.h"
#include "support/Properties.h"
#include "support/RecordingMachine.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTest>
#include <QTranslator>

RECORD_DEFAULT_BUTTON(
    _ZN11QMessageBox11informationEP7QWidgetRK7QStringS4_6QFlagsINS_14StandardButtonEES6_)
RECORD_DEFAULT_BUTTON(
    _ZN11QMessageBox8criticalEP7QWidgetRK7QStringS4_6QFlagsINS_14StandardButtonEES6_)

namespace {

QComboBox &comboBox(const PageSetLang &page)
{
    return *page.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
}

QPushButton &button(const PageSetLang &page)
{
    return *page.findChild<QPushButton *>(QStringLiteral("pushButton_change"));
}

QLabel &label(const PageSetLang &page)
{
    return *page.findChild<QLabel *>(QStringLiteral("label_info1"));
}

/// The list as the operator sees it, with the numbers behind it; the selected one in brackets.
QStringList items(const PageSetLang &page)
{
    QStringList result;
    const QComboBox &box = comboBox(page);
    for (int i = 0; i < box.count(); ++i) {
        const QString item =
            QStringLiteral("%1:%2").arg(box.itemText(i)).arg(box.itemData(i, Qt::UserRole).toInt());
        result += i == box.currentIndex() ? QLatin1Char('[') + item + QLatin1Char(']') : item;
    }
    return result;
}

QString successBox(const char *language)
{
    return Operator::box("information", QStringLiteral("%1 Success").arg(QLatin1String(language)),
                         QStringLiteral("%1 Change successful!").arg(QLatin1String(language)),
                         "PageSetLang");
}

QString failureBox(const char *language)
{
    return Operator::box("critical", QStringLiteral("%1 Error").arg(QLatin1String(language)),
                         QStringLiteral("%1 Change failed!").arg(QLatin1String(language)),
                         "PageSetLang");
}

} // namespace

class tst_PageSetLang : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    // The form
    void widgetsStandAtTheirPlaces_data();
    void widgetsStandAtTheirPlaces();
    void pageIsAsTheFormHasIt();
    void labelIsAlignedToTheRight();
    void nothingElseIsSetOnTheWidgets();
    void onlyTheMisspeltSlotIsUnconnected();
    void metaObjectDeclaresTwoPrivateSlots();

    // Texts
    void textsComeFromTheLoadedTranslation();
    void textsAreEmptyWithoutTranslation();
    void textMissingInTheTranslationIsEmpty();
    void translatorsOfTheHostAreIgnored();

    // The list
    void listAscendsWithTheDefaultSelected();
    void unlistedDefaultSelectsTheFirst_data();
    void unlistedDefaultSelectsTheFirst();
    void emptyListSelectsNothing();
    void itemDataIsAnIntUnderUserRole();
    void itemsHaveNothingElse();
    void itemsAddedMeanwhileAreCleared();

    // The change
    void successNotifiesAndInforms();
    void failureIsCriticalAndNotNotified();
    void selectedLanguageIsAskedFor();
    void defaultLanguageIsAskedForAgain();
    void numberIsCutToEightBits_data();
    void numberIsCutToEightBits();
    void emptyListAsksForLanguageZero();
    void waitCursorShowsDuringSetLanguageAlone();
    void hostOverrideCursorIsGivenBack();
    void lastAttemptCounts();
    void changeOkIsSetBeforeTheBoxShows();
    void boxesHaveNoDefaultButton();
    void messagesAreEmptyWithoutTranslation();
    void nothingIsRefreshedAfterAChange();
    void newTranslationSpeaksInTheBoxButNotOnThePage();
    void messageIsTranslatedAfterTheNotification();
    void hostReplacedDuringSetLanguageIsNotified();

private:
    Operator m_operator;
    RecordingMachine m_machine;
};

void tst_PageSetLang::init()
{
    Deployment::clear();
    Deployment::installTwoLanguages();
    CTranslatorMgr::instance()->loadTranslator();
    m_machine.accepts = true;
    m_machine.onSetLanguage = nullptr;
    m_machine.onNotify = nullptr;
    m_operator.onBox = nullptr;
    g_pHostMachine = &m_machine;
}

void tst_PageSetLang::cleanup()
{
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(m_machine.takeCalls(), QStringList());
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
    QVERIFY(!QApplication::overrideCursor());
}

void tst_PageSetLang::widgetsStandAtTheirPlaces_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QRect>("geometry");

    QTest::newRow("button") << QStringLiteral("pushButton_change") << QStringLiteral("QPushButton")
                            << QRect(290, 20, 91, 31);
    QTest::newRow("list") << QStringLiteral("comboBox_language") << QStringLiteral("QComboBox")
                          << QRect(110, 20, 171, 31);
    QTest::newRow("label") << QStringLiteral("label_info1") << QStringLiteral("QLabel")
                           << QRect(20, 20, 81, 31);
}

void tst_PageSetLang::widgetsStandAtTheirPlaces()
{
    QFETCH(QString, name);
    QFETCH(QString, className);
    QFETCH(QRect, geometry);

    const PageSetLang page;
    const auto *const widget = page.findChild<QWidget *>(name, Qt::FindDirectChildrenOnly);
    QVERIFY(widget);
    QCOMPARE(QLatin1String(widget->metaObject()->className()), className);
    QCOMPARE(widget->geometry(), geometry);
}

void tst_PageSetLang::pageIsAsTheFormHasIt()
{
    QWidget parent;
    const PageSetLang page(&parent);
    QCOMPARE(page.parentWidget(), &parent);
    QCOMPARE(page.objectName(), QStringLiteral("PageSetLang"));
    QCOMPARE(page.size(), QSize(418, 78));
    QCOMPARE(page.focusPolicy(), Qt::NoFocus);
    QVERIFY(!page.layout());
    QVERIFY(!page.isWindow());

    QStringList names;
    for (const QObject *const child : page.children())
        names += child->objectName();
    QCOMPARE(names,
             QStringList({QStringLiteral("pushButton_change"), QStringLiteral("comboBox_language"),
                          QStringLiteral("label_info1")}));
}

void tst_PageSetLang::labelIsAlignedToTheRight()
{
    const PageSetLang page;
    QCOMPARE(label(page).alignment(), Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);
}

void tst_PageSetLang::nothingElseIsSetOnTheWidgets()
{
    QWidget parent;
    const PageSetLang page(&parent);
    QCOMPARE(differingProperties(page, QWidget(&parent)), QStringLiteral("objectName"));
    QCOMPARE(differingProperties(button(page), QPushButton(&parent)),
             QStringLiteral("objectName text"));
    QCOMPARE(differingProperties(comboBox(page), QComboBox(&parent)),
             QStringLiteral("objectName currentText currentIndex"));
    QCOMPARE(differingProperties(label(page), QLabel(&parent)),
             QStringLiteral("objectName text alignment"));
}

void tst_PageSetLang::onlyTheMisspeltSlotIsUnconnected()
{
    const PageSetLang page;
    QCOMPARE(Warnings::take(), QStringList(Warnings::unconnectedSlot()));
}

void tst_PageSetLang::metaObjectDeclaresTwoPrivateSlots()
{
    const QMetaObject &meta = PageSetLang::staticMetaObject;
    QCOMPARE(meta.className(), "PageSetLang");
    QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);

    const QMetaMethod first = meta.method(meta.methodOffset());
    QCOMPARE(first.methodSignature(), QByteArray("on_comboBo_lang_activated(int)"));
    QCOMPARE(first.parameterNames(), QList<QByteArray>({"index"}));
    const QMetaMethod second = meta.method(meta.methodOffset() + 1);
    QCOMPARE(second.methodSignature(), QByteArray("on_pushButton_change_clicked()"));
    for (const QMetaMethod &slot : {first, second}) {
        QCOMPARE(slot.methodType(), QMetaMethod::Slot);
        QCOMPARE(slot.access(), QMetaMethod::Private);
    }

    PageSetLang page;
    QCOMPARE(page.qt_metacast("PageSetLang"), static_cast<void *>(&page));
    QCOMPARE(page.qt_metacast("QWidget"), static_cast<void *>(static_cast<QWidget *>(&page)));
    QVERIFY(!page.qt_metacast("QDialog"));

    // The misspelt slot does nothing when it is called all the same.
    const QStringList before = items(page);
    QVERIFY(QMetaObject::invokeMethod(&page, "on_comboBo_lang_activated", Q_ARG(int, 1)));
    QCOMPARE(items(page), before);
}

void tst_PageSetLang::textsComeFromTheLoadedTranslation()
{
    const PageSetLang page;
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    QCOMPARE(label(page).text(), QStringLiteral("1 Language:"));
}

void tst_PageSetLang::textsAreEmptyWithoutTranslation()
{
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    CTranslatorMgr::instance()->loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 1);

    const PageSetLang page;
    QCOMPARE(button(page).text(), QString());
    QCOMPARE(label(page).text(), QString());
    QCOMPARE(items(page), QStringList({QStringLiteral("[One:1]"), QStringLiteral("Two:2")}));
}

void tst_PageSetLang::textMissingInTheTranslationIsEmpty()
{
    Deployment::installTranslation(QStringLiteral("first"), QStringLiteral("partial"));
    CTranslatorMgr::instance()->loadTranslator();

    const PageSetLang page;
    QCOMPARE(button(page).text(), QStringLiteral("partial Change"));
    QCOMPARE(label(page).text(), QString());
}

void tst_PageSetLang::translatorsOfTheHostAreIgnored()
{
    HostTranslator hostTranslator;
    QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    hostTranslator.asked.clear(); // Qt itself has asked for the direction of the layout.
    {
        const PageSetLang page;
        // Asked by the form alone, whose texts don't stay.
        QCOMPARE(hostTranslator.asked,
                 QStringList({QStringLiteral("PageSetLang Change  -1"),
                              QStringLiteral("PageSetLang Language:  -1")}));
        QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
        QCOMPARE(label(page).text(), QStringLiteral("1 Language:"));
        button(page).click();
        QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
    }
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    CTranslatorMgr::instance()->loadTranslator();
    const PageSetLang page;
    QCOMPARE(button(page).text(), QString());
    QCOMPARE(label(page).text(), QString());

    QVERIFY(QCoreApplication::removeTranslator(&hostTranslator));
    m_operator.takeBoxes();
    m_machine.takeCalls();
}

void tst_PageSetLang::listAscendsWithTheDefaultSelected()
{
    Deployment::writeLines("DEFAULT=9\n"
                           "LANG10_NAME=Ten\nLANG10_FOLDER=first\nLANG10_SHOW=1\n"
                           "LANG9_NAME=Nine\nLANG9_FOLDER=first\nLANG9_SHOW=1\n"
                           "LANG5_NAME=Hidden\nLANG5_FOLDER=first\nLANG5_SHOW=0\n"
                           "LANG6_FOLDER=first\nLANG6_SHOW=1\n"
                           "LANG7_NAME=Nowhere\nLANG7_SHOW=1\n"
                           "LANG2_NAME=Two & Co\nLANG2_FOLDER=first\nLANG2_SHOW=1\n");
    CTranslatorMgr::instance()->loadTranslator();
    const PageSetLang page;
    QCOMPARE(items(page),
             QStringList({QStringLiteral("Two & Co:2"), QStringLiteral("[Nine:9]"),
                          QStringLiteral("Ten:10")}));
}

void tst_PageSetLang::unlistedDefaultSelectsTheFirst_data()
{
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("not in the catalogue") << QByteArray("DEFAULT=9\n");
    QTest::newRow("not shown") << QByteArray(
        "DEFAULT=1\nLANG1_NAME=One\nLANG1_FOLDER=first\nLANG1_SHOW=0\n");
    QTest::newRow("without name") << QByteArray("DEFAULT=1\nLANG1_FOLDER=first\nLANG1_SHOW=1\n");
    QTest::newRow("without folder") << QByteArray("DEFAULT=1\nLANG1_NAME=One\nLANG1_SHOW=1\n");
}

void tst_PageSetLang::unlistedDefaultSelectsTheFirst()
{
    QFETCH(QByteArray, lines);

    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("first"));
    Deployment::writeLines(lines
                           + "LANG3_NAME=Three\nLANG3_FOLDER=first\nLANG3_SHOW=1\n"
                             "LANG10_NAME=Ten\nLANG10_FOLDER=first\nLANG10_SHOW=1\n");
    CTranslatorMgr::instance()->loadTranslator();
    const PageSetLang page;
    QCOMPARE(items(page), QStringList({QStringLiteral("[Three:3]"), QStringLiteral("Ten:10")}));
}

void tst_PageSetLang::emptyListSelectsNothing()
{
    Deployment::clear();
    CTranslatorMgr::instance()->loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 3);

    const PageSetLang page;
    QCOMPARE(items(page), QStringList());
    QCOMPARE(comboBox(page).currentIndex(), -1);
}

void tst_PageSetLang::itemDataIsAnIntUnderUserRole()
{
    const PageSetLang page;
    const QVariant data = comboBox(page).itemData(1, Qt::UserRole);
    QCOMPARE(data.userType(), int(QMetaType::Int));
    QCOMPARE(data.toInt(), 2);
}

void tst_PageSetLang::itemsHaveNothingElse()
{
    const PageSetLang page;
    const auto *const model = qobject_cast<QStandardItemModel *>(comboBox(page).model());
    QVERIFY(model);
    QCOMPARE(model->columnCount(), 1);
    for (int i = 0; i < model->rowCount(); ++i) {
        const QModelIndex index = model->index(i, 0);
        QCOMPARE(model->itemData(index).keys(), QList<int>({Qt::DisplayRole, Qt::UserRole}));
        QCOMPARE(model->flags(index), QStandardItem().flags());
        QVERIFY(!model->hasChildren(index));
    }
}

void tst_PageSetLang::itemsAddedMeanwhileAreCleared()
{
    HostTranslator hostTranslator;
    QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    QPointer<QComboBox> added;
    // Asked while the form is set up.
    hostTranslator.onPageText = [&added] {
        const QWidgetList widgets = QApplication::allWidgets();
        for (QWidget *const widget : widgets) {
            if (auto *const box = qobject_cast<QComboBox *>(widget)) {
                box->addItem(QStringLiteral("host"), 1);
                added = box;
            }
        }
    };
    const PageSetLang page;
    QCOMPARE(added, &comboBox(page));
    QCOMPARE(items(page), QStringList({QStringLiteral("[One:1]"), QStringLiteral("Two:2")}));
}

void tst_PageSetLang::successNotifiesAndInforms()
{
    // What has happened when each step takes place shows the order.
    m_machine.onNotify = [this] { QCOMPARE(m_operator.takeBoxes(), QStringList()); };
    m_operator.onBox = [this](QMessageBox &) {
        QCOMPARE(m_machine.takeCalls(),
                 QStringList(
                     {QStringLiteral("SetLanguage(1)"), QStringLiteral("NotifySettingChanged")}));
    };
    const PageSetLang page;
    QTest::mouseClick(&button(page), Qt::LeftButton);
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
    QVERIFY(page.changeOk());
}

void tst_PageSetLang::failureIsCriticalAndNotNotified()
{
    m_machine.accepts = false;
    const PageSetLang page;
    button(page).click();
    QCOMPARE(m_machine.takeCalls(), QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(m_operator.takeBoxes(), QStringList(failureBox("1")));
    QVERIFY(!page.changeOk());
}

void tst_PageSetLang::selectedLanguageIsAskedFor()
{
    const PageSetLang page;
    comboBox(page).setCurrentIndex(1);
    button(page).click();
    QCOMPARE(
        m_machine.takeCalls(),
        QStringList({QStringLiteral("SetLanguage(2)"), QStringLiteral("NotifySettingChanged")}));
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_PageSetLang::defaultLanguageIsAskedForAgain()
{
    const PageSetLang page;
    for (int i = 0; i < 2; ++i) {
        button(page).click();
        QCOMPARE(m_machine.takeCalls(),
                 QStringList(
                     {QStringLiteral("SetLanguage(1)"), QStringLiteral("NotifySettingChanged")}));
        QCOMPARE(m_operator.takeBoxes().size(), 1);
    }
}

void tst_PageSetLang::numberIsCutToEightBits_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QString>("call");

    QTest::newRow("0") << QByteArray("0") << QStringLiteral("SetLanguage(0)");
    QTest::newRow("255") << QByteArray("255") << QStringLiteral("SetLanguage(255)");
    QTest::newRow("256") << QByteArray("256") << QStringLiteral("SetLanguage(0)");
    QTest::newRow("300") << QByteArray("300") << QStringLiteral("SetLanguage(44)");
    QTest::newRow("65541") << QByteArray("65541") << QStringLiteral("SetLanguage(5)");
    QTest::newRow("2147483647") << QByteArray("2147483647") << QStringLiteral("SetLanguage(255)");
}

void tst_PageSetLang::numberIsCutToEightBits()
{
    QFETCH(QByteArray, number);
    QFETCH(QString, call);

    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("first"));
    const QByteArray key = "LANG" + number;
    Deployment::writeLines(key + "_NAME=n\n" + key + "_FOLDER=f\n" + key + "_SHOW=1\n");
    CTranslatorMgr::instance()->loadTranslator();
    const PageSetLang page;
    button(page).click();
    QCOMPARE(m_machine.takeCalls().constFirst(), call);
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_PageSetLang::emptyListAsksForLanguageZero()
{
    Deployment::clear();
    CTranslatorMgr::instance()->loadTranslator();
    m_operator.takeBoxes();
    m_machine.accepts = false;

    const PageSetLang page;
    button(page).click();
    QCOMPARE(m_machine.takeCalls(), QStringList(QStringLiteral("SetLanguage(0)")));
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_PageSetLang::waitCursorShowsDuringSetLanguageAlone()
{
    int calls = 0;
    m_machine.onSetLanguage = [&calls] {
        QVERIFY(QApplication::overrideCursor());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        ++calls;
    };
    m_machine.onNotify = [&calls] {
        QVERIFY(!QApplication::overrideCursor());
        ++calls;
    };
    m_operator.onBox = [&calls](QMessageBox &) {
        QVERIFY(!QApplication::overrideCursor());
        ++calls;
    };
    const PageSetLang page;
    QVERIFY(!QApplication::overrideCursor());
    button(page).click();
    QCOMPARE(calls, 3);

    m_machine.accepts = false;
    button(page).click();
    QCOMPARE(calls, 5);
    m_operator.takeBoxes();
    m_machine.takeCalls();
}

void tst_PageSetLang::hostOverrideCursorIsGivenBack()
{
    QApplication::setOverrideCursor(Qt::CrossCursor);
    const PageSetLang page;
    button(page).click();
    QVERIFY(QApplication::overrideCursor());
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
    QApplication::restoreOverrideCursor();
    m_operator.takeBoxes();
    m_machine.takeCalls();
}

void tst_PageSetLang::lastAttemptCounts()
{
    const PageSetLang page;
    QVERIFY(!page.changeOk());
    for (const bool accepts : {true, false, true}) {
        m_machine.accepts = accepts;
        button(page).click();
        QCOMPARE(page.changeOk(), accepts);
    }
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({successBox("1"), failureBox("1"), successBox("1")}));
    m_machine.takeCalls();
}

void tst_PageSetLang::changeOkIsSetBeforeTheBoxShows()
{
    const PageSetLang page;
    bool seen = false;
    m_operator.onBox = [&](QMessageBox &) { seen = page.changeOk(); };
    button(page).click();
    QVERIFY(seen);
    m_operator.takeBoxes();
    m_machine.takeCalls();
}

void tst_PageSetLang::boxesHaveNoDefaultButton()
{
    DefaultButtons::take();
    const PageSetLang page;
    for (const bool accepts : {true, false}) {
        m_machine.accepts = accepts;
        button(page).click();
    }
    QCOMPARE(DefaultButtons::take(), QList<int>({QMessageBox::NoButton, QMessageBox::NoButton}));
    QCOMPARE(m_operator.takeBoxes(), QStringList({successBox("1"), failureBox("1")}));
    m_machine.takeCalls();
}

void tst_PageSetLang::messagesAreEmptyWithoutTranslation()
{
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    CTranslatorMgr::instance()->loadTranslator();
    m_operator.takeBoxes();

    const PageSetLang page;
    button(page).click();
    m_machine.accepts = false;
    button(page).click();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({Operator::box("information", QString(), QString(), "PageSetLang"),
                          Operator::box("critical", QString(), QString(), "PageSetLang")}));
    m_machine.takeCalls();
}

void tst_PageSetLang::nothingIsRefreshedAfterAChange()
{
    m_machine.onSetLanguage = [] {
        Deployment::writeLines("DEFAULT=3\nLANG3_NAME=Three\nLANG3_FOLDER=x\nLANG3_SHOW=1\n");
    };
    const PageSetLang page;
    comboBox(page).setCurrentIndex(1);
    button(page).click();
    QCOMPARE(items(page), QStringList({QStringLiteral("One:1"), QStringLiteral("[Two:2]")}));
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    // The catalogue was not read again, nor the translation.
    QCOMPARE(CTranslatorMgr::instance()->defaultLangId(), 1);
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
    m_machine.takeCalls();
}

void tst_PageSetLang::newTranslationSpeaksInTheBoxButNotOnThePage()
{
    m_machine.onSetLanguage = [] {
        Deployment::writeLines("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
        CTranslatorMgr::instance()->loadTranslator();
    };
    const PageSetLang page;
    button(page).click();
    m_machine.accepts = false;
    button(page).click();
    QCOMPARE(m_operator.takeBoxes(), QStringList({successBox("2"), failureBox("2")}));
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    QCOMPARE(label(page).text(), QStringLiteral("1 Language:"));
    QCOMPARE(items(page), QStringList({QStringLiteral("[One:1]"), QStringLiteral("Two:2")}));
    m_machine.takeCalls();
}

void tst_PageSetLang::messageIsTranslatedAfterTheNotification()
{
    m_machine.onNotify = [] {
        Deployment::writeLines("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
        CTranslatorMgr::instance()->loadTranslator();
    };
    const PageSetLang page;
    button(page).click();
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("2")));
    m_machine.takeCalls();
}

void tst_PageSetLang::hostReplacedDuringSetLanguageIsNotified()
{
    RecordingMachine other(QStringLiteral("other "));
    m_machine.onSetLanguage = [&other] { g_pHostMachine = &other; };
    const PageSetLang page;
    button(page).click();
    QCOMPARE(m_machine.takeCalls(), QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(other.takeCalls(), QStringList(QStringLiteral("other NotifySettingChanged")));

    button(page).click();
    QCOMPARE(other.takeCalls(),
             QStringList({QStringLiteral("other SetLanguage(1)"),
                          QStringLiteral("other NotifySettingChanged")}));
    QCOMPARE(m_operator.takeBoxes(), QStringList({successBox("1"), successBox("1")}));
}

QTEST_MAIN(tst_PageSetLang)
#include "tst_PageSetLang.moc"
