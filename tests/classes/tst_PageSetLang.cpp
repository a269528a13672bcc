#include "ui/PageSetLang.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"

#include "support/DefaultButtons.h"
#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/HostTranslator.h"
#include "support/OperatedTest.h"
#include "support/Properties.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardItemModel>
#include <QTest>

#include <cstdlib>

RECORD_DEFAULT_BUTTON(information)
RECORD_DEFAULT_BUTTON(critical)

using DialogWidgets::button;
using DialogWidgets::comboBox;
using DialogWidgets::label;

namespace {

/// Returns the list as "[One:1] Two:2": texts and data, the current item in brackets.
QString items(const PageSetLang &page)
{
    QStringList result;
    const QComboBox &box = comboBox(page);
    for (int i = 0; i < box.count(); ++i) {
        const QString item =
            QStringLiteral("%1:%2").arg(box.itemText(i)).arg(box.itemData(i, Qt::UserRole).toInt());
        result += i == box.currentIndex() ? QLatin1Char('[') + item + QLatin1Char(']') : item;
    }
    return result.join(QLatin1Char(' '));
}

int receiverCount(const QObject &object, const char *signal)
{
    struct Access : QObject // The function is protected.
    {
        using QObject::receivers;
    };
    return (object.*(&Access::receivers))(signal);
}

QStringList callsForSuccess(int langId)
{
    return {QStringLiteral("SetLanguage(%1)").arg(langId), QStringLiteral("NotifySettingChanged")};
}

void load(const QByteArray &lines)
{
    Deployment::writeLines(lines);
    CTranslatorMgr::instance()->loadTranslator();
}

void loadSecondLanguage()
{
    load("DEFAULT=2\nLANG2_NAME=Two\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
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

class tst_PageSetLang : public OperatedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    // The form
    void pageIsLaidOutAsInTheForm();
    void nothingElseIsSetOnTheWidgets();
    void onlyTheMisspeltSlotIsUnconnected();
    void misspeltSlotDoesNothing();

    // Texts
    void translatorsOfTheHostAreIgnored();

    // The list
    void listAscendsWithTheDefaultSelected();
    void unlistedDefaultSelectsTheFirst_data();
    void unlistedDefaultSelectsTheFirst();
    void emptyListSelectsNothingAndAsksForLanguageZero();
    void itemsHaveATextAndAnInt();
    void listIsClearedAndFilledAfterTheTextsAreSet();

    // The change
    void numberIsTruncatedToEightBits_data();
    void numberIsTruncatedToEightBits();
    void waitCursorShowsDuringSetLanguageOnly();
    void overrideCursorOfTheHostIsRestored();
    void everyAttemptIsReported();
    void nothingIsRefreshedAfterAChange();
    void newTranslationIsUsedInTheMessageBoxOnly();
    void messageIsTranslatedAfterTheNotification();
    void failureDuringTheNotificationIsReportedFirst();
    void hostReplacedDuringSetLanguageIsNotified();
    void hostClearedDuringTheNotificationEndsAsUsual();
    void noEventIsProcessedBeforeTheMessage();
    void nullHostIsCalledToo();

private:
    QStringList press(const PageSetLang &page, bool accepts = true);
};

void tst_PageSetLang::init()
{
    OperatedTest::init();
    CTranslatorMgr::instance()->loadTranslator();
    g_pHostMachine = &m_machine;
}

/// Presses the button and returns the calls of the machine, which accepts the language or not.
QStringList tst_PageSetLang::press(const PageSetLang &page, bool accepts)
{
    m_machine.accepts = accepts;
    button(page).click();
    return m_machine.takeCalls();
}

void tst_PageSetLang::pageIsLaidOutAsInTheForm()
{
    QWidget parent;
    const PageSetLang page(&parent);
    QCOMPARE(page.parentWidget(), &parent);
    QCOMPARE(page.objectName(), QStringLiteral("PageSetLang"));
    QCOMPARE(page.size(), QSize(418, 78));
    QCOMPARE(page.focusPolicy(), Qt::NoFocus);
    QVERIFY(!page.layout());
    QCOMPARE(page.windowFlags(), QWidget(&parent).windowFlags());
    QCOMPARE(label(page).alignment(), Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);

    QCOMPARE(page.children(), QObjectList({&button(page), &comboBox(page), &label(page)}));
    QStringList widgets;
    for (const QObject *const child : page.children()) {
        const QRect rect = child->property("geometry").toRect();
        widgets += QStringLiteral("%1 %2,%3 %4x%5")
                       .arg(QLatin1String(child->metaObject()->className()))
                       .arg(rect.x())
                       .arg(rect.y())
                       .arg(rect.width())
                       .arg(rect.height());
    }
    QCOMPARE(widgets,
             QStringList({QStringLiteral("QPushButton 290,20 91x31"),
                          QStringLiteral("QComboBox 110,20 171x31"),
                          QStringLiteral("QLabel 20,20 81x31")}));
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
    QVERIFY(!label(page).buddy());
}

void tst_PageSetLang::onlyTheMisspeltSlotIsUnconnected()
{
    const PageSetLang page;
    QCOMPARE(Warnings::take(), QStringList(Warnings::unconnectedSlot()));
    QCOMPARE(receiverCount(comboBox(page), SIGNAL(activated(int))), 0);
}

void tst_PageSetLang::misspeltSlotDoesNothing()
{
    PageSetLang page;
    press(page);
    m_operator.takeBoxes();
    const QString before = items(page);
    QVERIFY(QMetaObject::invokeMethod(&page, "on_comboBo_lang_activated", Q_ARG(int, 1)));
    QCOMPARE(items(page), before);
    QVERIFY(page.changeOk());
}

void tst_PageSetLang::translatorsOfTheHostAreIgnored()
{
    HostTranslator hostTranslator;
    QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    hostTranslator.asked.clear(); // Qt has asked for the layout direction.
    const PageSetLang page;
    // Only the form asks, and the page replaces the form's texts.
    QCOMPARE(hostTranslator.asked,
             QStringList({QStringLiteral("PageSetLang Change  -1"),
                          QStringLiteral("PageSetLang Language:  -1")}));
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    QCOMPARE(label(page).text(), QStringLiteral("1 Language:"));
    press(page);
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
    QVERIFY(QCoreApplication::removeTranslator(&hostTranslator));
}

void tst_PageSetLang::listAscendsWithTheDefaultSelected()
{
    load("DEFAULT=9\n"
         "LANG10_NAME=Ten\nLANG10_FOLDER=first\nLANG10_SHOW=1\n"
         "LANG9_NAME=Two & Co\nLANG9_FOLDER=first\nLANG9_SHOW=1\n"
         "LANG5_NAME=Hidden\nLANG5_FOLDER=first\nLANG5_SHOW=0\n"
         "LANG6_FOLDER=first\nLANG6_SHOW=1\n"
         "LANG7_NAME=Nowhere\nLANG7_SHOW=1\n"
         "LANG2_NAME=Two & Co\nLANG2_FOLDER=first\nLANG2_SHOW=1\n");
    const PageSetLang page;
    QCOMPARE(items(page), QStringLiteral("Two & Co:2 [Two & Co:9] Ten:10"));
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
    load(lines
         + "LANG3_NAME=Three\nLANG3_FOLDER=first\nLANG3_SHOW=1\n"
           "LANG19_NAME=Nineteen\nLANG19_FOLDER=first\nLANG19_SHOW=1\n");
    const PageSetLang page;
    QCOMPARE(items(page), QStringLiteral("[Three:3] Nineteen:19"));
}

void tst_PageSetLang::emptyListSelectsNothingAndAsksForLanguageZero()
{
    Deployment::clear();
    CTranslatorMgr::instance()->loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 3);

    const PageSetLang page;
    QCOMPARE(items(page), QString());
    QCOMPARE(comboBox(page).currentIndex(), -1);
    QCOMPARE(press(page, false), QStringList(QStringLiteral("SetLanguage(0)")));
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_PageSetLang::itemsHaveATextAndAnInt()
{
    const PageSetLang page;
    const auto *const model = qobject_cast<QStandardItemModel *>(comboBox(page).model());
    QVERIFY(model);
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->columnCount(), 1);
    for (int i = 0; i < model->rowCount(); ++i) {
        const QModelIndex index = model->index(i, 0);
        QCOMPARE(model->itemData(index).keys(), QList<int>({Qt::DisplayRole, Qt::UserRole}));
        QCOMPARE(index.data(Qt::UserRole).userType(), int(QMetaType::Int));
        QCOMPARE(index.data(Qt::UserRole).toInt(), i + 1);
        QCOMPARE(model->flags(index), QStandardItem().flags());
        QVERIFY(!model->hasChildren(index));
    }
}

void tst_PageSetLang::listIsClearedAndFilledAfterTheTextsAreSet()
{
    HostTranslator hostTranslator;
    QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    QPointer<QComboBox> box;
    QStringList texts;
    // The form asks while it is set up.
    hostTranslator.onPageText = [&] {
        box = anyWidget<QComboBox>();
        box->addItem(QStringLiteral("host"), 1);
        box->disconnect(this);
        connect(box, &QComboBox::currentTextChanged, this, [&](const QString &item) {
            texts += QStringLiteral("%1 %2").arg(item, anyWidget<QLabel>()->text());
        });
    };
    const PageSetLang page;
    QCOMPARE(box, &comboBox(page));
    QCOMPARE(items(page), QStringLiteral("[One:1] Two:2"));
    QCOMPARE(texts,
             QStringList({QStringLiteral(" 1 Language:"), QStringLiteral("One 1 Language:")}));
}

void tst_PageSetLang::numberIsTruncatedToEightBits_data()
{
    QTest::addColumn<int>("requested");

    QTest::newRow("0") << 0;
    QTest::newRow("255") << 255;
    QTest::newRow("256") << 0;
    QTest::newRow("300") << 44;
    QTest::newRow("65541") << 5;
    QTest::newRow("2147483647") << 255;
}

void tst_PageSetLang::numberIsTruncatedToEightBits()
{
    QFETCH(int, requested);

    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("first"));
    const QByteArray key = QByteArray("LANG") + QTest::currentDataTag();
    load(key + "_NAME=n\n" + key + "_FOLDER=f\n" + key + "_SHOW=1\n");
    const PageSetLang page;
    QCOMPARE(items(page), QStringLiteral("[n:%1]").arg(QLatin1String(QTest::currentDataTag())));
    QCOMPARE(press(page), callsForSuccess(requested));
    QCOMPARE(m_operator.takeBoxes().size(), 1);
}

void tst_PageSetLang::waitCursorShowsDuringSetLanguageOnly()
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
    press(page);
    QCOMPARE(calls, 3);
    press(page, false);
    QCOMPARE(calls, 5);
    m_operator.takeBoxes();
}

void tst_PageSetLang::overrideCursorOfTheHostIsRestored()
{
    QApplication::setOverrideCursor(Qt::CrossCursor);
    const PageSetLang page;
    press(page);
    QVERIFY(QApplication::overrideCursor());
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
    QApplication::restoreOverrideCursor();
    m_operator.takeBoxes();
}

void tst_PageSetLang::everyAttemptIsReported()
{
    DefaultButtons::take();
    QWidget window;
    const PageSetLang page(&window);
    QVERIFY(!page.changeOk());
    m_operator.onBox = [&](QMessageBox &) { QCOMPARE(page.changeOk(), m_machine.accepts); };
    for (const bool accepts : {true, false, true}) {
        const QStringList refused {QStringLiteral("SetLanguage(1)")};
        QCOMPARE(press(page, accepts), accepts ? callsForSuccess(1) : refused);
        QCOMPARE(page.changeOk(), accepts);
    }
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({successBox("1"), failureBox("1"), successBox("1")}));
    QCOMPARE(DefaultButtons::take(), QVector<int>(3, QMessageBox::NoButton));
}

void tst_PageSetLang::nothingIsRefreshedAfterAChange()
{
    m_machine.onSetLanguage = [] {
        Deployment::writeLines("DEFAULT=3\nLANG3_NAME=Three\nLANG3_FOLDER=x\nLANG3_SHOW=1\n");
    };
    const PageSetLang page;
    comboBox(page).setCurrentIndex(1);
    QCOMPARE(press(page), callsForSuccess(2));
    QCOMPARE(items(page), QStringLiteral("One:1 [Two:2]"));
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    // Neither the catalogue nor the translation was loaded again.
    QCOMPARE(CTranslatorMgr::instance()->defaultLangId(), 1);
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
}

void tst_PageSetLang::newTranslationIsUsedInTheMessageBoxOnly()
{
    m_machine.onSetLanguage = loadSecondLanguage;
    const PageSetLang page;
    press(page, false); // First, because only the first attempt finds the old translation.
    press(page);
    QCOMPARE(m_operator.takeBoxes(), QStringList({failureBox("2"), successBox("2")}));
    QCOMPARE(button(page).text(), QStringLiteral("1 Change"));
    QCOMPARE(label(page).text(), QStringLiteral("1 Language:"));
    QCOMPARE(items(page), QStringLiteral("[One:1] Two:2"));
}

void tst_PageSetLang::messageIsTranslatedAfterTheNotification()
{
    m_machine.onNotify = loadSecondLanguage;
    const PageSetLang page;
    press(page);
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("2")));
}

void tst_PageSetLang::failureDuringTheNotificationIsReportedFirst()
{
    const PageSetLang page;
    m_machine.onNotify = [&] {
        m_machine.accepts = false;
        button(page).click();
    };
    QCOMPARE(press(page), callsForSuccess(1) + QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(m_operator.takeBoxes(), QStringList({failureBox("1"), successBox("1")}));
    QVERIFY(!page.changeOk());
}

void tst_PageSetLang::hostReplacedDuringSetLanguageIsNotified()
{
    RecordingMachine other(QStringLiteral("other "));
    m_machine.onSetLanguage = [&other] { g_pHostMachine = &other; };
    const PageSetLang page;
    QCOMPARE(press(page), QStringList(QStringLiteral("SetLanguage(1)")));
    QCOMPARE(other.takeCalls(), QStringList(QStringLiteral("other NotifySettingChanged")));

    press(page);
    QCOMPARE(other.takeCalls(),
             QStringList({QStringLiteral("other SetLanguage(1)"),
                          QStringLiteral("other NotifySettingChanged")}));
    QCOMPARE(m_operator.takeBoxes(), QStringList({successBox("1"), successBox("1")}));
}

void tst_PageSetLang::hostClearedDuringTheNotificationEndsAsUsual()
{
    m_machine.onNotify = [] { g_pHostMachine = nullptr; };
    const PageSetLang page;
    QCOMPARE(press(page), callsForSuccess(1));
    QCOMPARE(m_operator.takeBoxes(), QStringList(successBox("1")));
    QVERIFY(page.changeOk());
}

void tst_PageSetLang::noEventIsProcessedBeforeTheMessage()
{
    QStringList order;
    const auto post = [&] {
        QMetaObject::invokeMethod(
            qApp, [&order] { order += QStringLiteral("event"); }, Qt::QueuedConnection);
    };
    m_machine.onSetLanguage = [&] { order += QStringLiteral("SetLanguage"); };
    m_machine.onNotify = [&] { order += QStringLiteral("NotifySettingChanged"); };
    const PageSetLang page;
    m_operator.onBox = [&](QMessageBox &) { order += QStringLiteral("message"); };
    post();
    press(page);
    QCOMPARE(order,
             QStringList({QStringLiteral("SetLanguage"), QStringLiteral("NotifySettingChanged"),
                          QStringLiteral("event"), QStringLiteral("message")}));
    m_operator.takeBoxes();
}

// The manager opens no dialog without a host, so the page doesn't look; the program crashes if the
// host clears the pointer in between.
void tst_PageSetLang::nullHostIsCalledToo()
{
    const char *const variable = "ZENDEL_NULL_HOST";
    if (qEnvironmentVariableIsSet(variable)) {
        const PageSetLang page;
        g_pHostMachine = nullptr;
        button(page).click();
        std::_Exit(0);
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(variable), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(),
                  {QLatin1String(QTest::currentTestFunction())});
    QVERIFY2(process.waitForFinished(), qPrintable(process.errorString()));
    const QByteArray output = process.readAll();
    QVERIFY2(output.contains("PASS   : tst_PageSetLang::initTestCase()"), output.constData());
    QVERIFY2(process.exitStatus() == QProcess::CrashExit || process.exitCode() != 0,
             output.constData());
}

QTEST_MAIN(tst_PageSetLang)
#include "tst_PageSetLang.moc"
