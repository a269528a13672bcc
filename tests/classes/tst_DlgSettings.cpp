#include "ui/DlgSettings.h"
#include "ui_DlgSettings.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"
#include "ui/PageSetLang.h"

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/HostTranslator.h"
#include "support/Interpose.h"
#include "support/OperatedTest.h"
#include "support/Properties.h"
#include "support/TestFile.h"

#include <QFile>
#include <QResource>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTest>
#include <QTranslator>
#include <QVBoxLayout>

#include <functional>
#include <new>
#include <utility>

namespace {

QStringList asked;
std::function<void()> onText; // Called for each text

/// Records what it is asked for. It must be as large as QTranslator, which it replaces in place.
class RecordingTranslator : public QTranslator
{
public:
    using QTranslator::QTranslator;

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        asked +=
            QStringLiteral("%1 %2 %3 %4")
                .arg(QLatin1String(context), QLatin1String(sourceText),
                     QLatin1String(disambiguation ? disambiguation : "null"), QString::number(n));
        if (onText)
            onText();
        return QTranslator::translate(context, sourceText, disambiguation, n);
    }
};

static_assert(sizeof(RecordingTranslator) == sizeof(QTranslator));

} // namespace

// Replaces the plug-in's constructions of translators.
INTERPOSE(QTranslator *, constructor, (QTranslator * self, QObject *parent))
{
    // RecordingTranslator constructs its base class, in Microsoft's ABI with the same function.
    static bool constructing = false;
    if (constructing)
        return ORIGINAL(constructor)(self, parent);
    const QScopedValueRollback<bool> rollback(constructing, true);
    return new (self) RecordingTranslator(parent);
}

using DialogWidgets::tabWidget;
using DialogWidgets::texts;

namespace {

QByteArray styleSheetFile()
{
    QFile file(QStringLiteral(":/res/qss/style.css"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList childClasses(const QWidget &widget)
{
    QStringList result;
    for (const QObject *const child : widget.children())
        result += QLatin1String(child->metaObject()->className());
    return result;
}

} // namespace

class tst_DlgSettings : public OperatedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void sizeIsFixed();
    void titleBarHasNoContextHelpButton();
    void formIsAsDesigned();
    void nothingElseIsSetOnTheWidgets();
    void pageIsTheOnlyTab();
    void textsAreRequestedInOrder();
    void firstTabAndDocumentModeAreSetAtTheEnd();
    void textsAreEmptyWithoutTranslation();
    void textsStayWhenTheHostInstallsATranslator();
    void formHasNoTexts();

    void styleSheetAppliesToTheTabs();
    void styleSheetIsReadAsUtf8AndClosed();
    void dialogWorksWithoutStyleSheet();

    void resultFollowsTheLastAttempt_data();
    void resultFollowsTheLastAttempt();
    void everyAcceptAndRejectUpdatesTheResult();
    void resultIsFalseWithoutAPage();
    void resultCodeIsThatOfQDialog();

private:
    QStringList press(const QDialog &dialog, bool accepts);
};

void tst_DlgSettings::init()
{
    OperatedTest::init();
    CTranslatorMgr::instance()->loadTranslator();
    onText = nullptr;
    asked.clear();
    g_pHostMachine = &m_machine;
}

/// Presses the page's button and returns the message box. The machine accepts or rejects the
/// change.
QStringList tst_DlgSettings::press(const QDialog &dialog, bool accepts)
{
    m_machine.accepts = accepts;
    DialogWidgets::pressChange(dialog);
    m_machine.takeCalls();
    return m_operator.takeBoxes();
}

void tst_DlgSettings::sizeIsFixed()
{
    DlgSettings dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QSize size(700, 470);
    QCOMPARE(dialog.size(), size);
    QCOMPARE(dialog.minimumSize(), size);
    QCOMPARE(dialog.maximumSize(), size);
}

void tst_DlgSettings::titleBarHasNoContextHelpButton()
{
    const DlgSettings dialog;
    QCOMPARE(dialog.windowFlags() & Qt::WindowContextHelpButtonHint, 0);
    // The other flags are those of any dialog.
    const QDialog bare;
    QCOMPARE(dialog.windowFlags() | Qt::WindowContextHelpButtonHint,
             bare.windowFlags() | Qt::WindowContextHelpButtonHint);
}

void tst_DlgSettings::formIsAsDesigned()
{
    QWidget parent;
    QCOMPARE(DlgSettings(&parent).parent(), &parent);
    const DlgSettings dialog;
    QVERIFY(!dialog.parent());
    QCOMPARE(dialog.objectName(), QStringLiteral("DlgSettings"));

    const auto *const layout = qobject_cast<QVBoxLayout *>(dialog.layout());
    QVERIFY(layout);
    QCOMPARE(layout->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), &tabWidget(dialog));
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
    QCOMPARE(layout->stretch(0), 0);

    QCOMPARE(tabWidget(dialog).parentWidget(), &dialog);
    QVERIFY(tabWidget(dialog).documentMode());

    QCOMPARE(dialog.children(), QObjectList({dialog.layout(), &tabWidget(dialog)}));
    // The tab widget has no children besides Qt's own.
    const QTabWidget bare;
    QCOMPARE(childClasses(tabWidget(dialog)), childClasses(bare));
    QCOMPARE(childClasses(*tabWidget(dialog).tabBar()), childClasses(*bare.tabBar()));
}

void tst_DlgSettings::nothingElseIsSetOnTheWidgets()
{
    DlgSettings dialog;
    QCOMPARE(differingProperties(dialog, QDialog()),
             QStringLiteral("objectName minimumSize maximumSize minimumWidth minimumHeight "
                            "maximumWidth maximumHeight windowTitle styleSheet"));
    QVERIFY(!dialog.focusWidget());
    QTabWidget bare(&dialog);
    bare.setDocumentMode(true);
    bare.addTab(new QWidget, QString());
    QCOMPARE(differingProperties(tabWidget(dialog), bare), QStringLiteral("objectName"));
    QCOMPARE(differingProperties(*tabWidget(dialog).tabBar(), *bare.tabBar()), QString());
}

void tst_DlgSettings::pageIsTheOnlyTab()
{
    const DlgSettings dialog;
    QCOMPARE(tabWidget(dialog).count(), 1);
    QCOMPARE(tabWidget(dialog).currentIndex(), 0);
    const auto *const page = qobject_cast<PageSetLang *>(tabWidget(dialog).widget(0));
    QVERIFY(page);
    QVERIFY(tabWidget(dialog).isAncestorOf(page));
    QCOMPARE(dialog.findChildren<PageSetLang *>().size(), 1);
    QVERIFY(!page->layout());
    QCOMPARE(childClasses(*page), childClasses(PageSetLang()));

    QVERIFY(tabWidget(dialog).isTabEnabled(0));
    QVERIFY(tabWidget(dialog).tabIcon(0).isNull());
    QCOMPARE(tabWidget(dialog).tabToolTip(0), QString());
    QCOMPARE(tabWidget(dialog).tabWhatsThis(0), QString());
}

void tst_DlgSettings::textsAreRequestedInOrder()
{
    QStringList states;
    onText = [&states] {
        const auto &dialog = *anyWidget<DlgSettings>();
        states += QStringLiteral("%1: %2 style sheet, %3 page, %4 tabs, title{%5}")
                      .arg(asked.constLast())
                      .arg(dialog.styleSheet().isEmpty() ? 0 : 1)
                      .arg(tabWidget(dialog).findChildren<PageSetLang *>().size())
                      .arg(tabWidget(dialog).count())
                      .arg(dialog.windowTitle());
    };
    const DlgSettings dialog;
    onText = nullptr;
    const QString page = QStringLiteral(" null -1: 1 style sheet, 1 page, 0 tabs, title{}");
    QCOMPARE(states,
             QStringList({QStringLiteral("PageSetLang Change") + page,
                          QStringLiteral("PageSetLang Language:") + page,
                          QStringLiteral("DlgSettings Language") + page,
                          QStringLiteral("DlgSettings Settings null -1: 1 style sheet, 1 page, "
                                         "1 tabs, title{}")}));

    asked.clear();
    press(dialog, true);
    press(dialog, false);
    QCOMPARE(asked,
             QStringList({QStringLiteral("PageSetLang Change successful! null -1"),
                          QStringLiteral("PageSetLang Success null -1"),
                          QStringLiteral("PageSetLang Change failed! null -1"),
                          QStringLiteral("PageSetLang Error null -1")}));
}

void tst_DlgSettings::firstTabAndDocumentModeAreSetAtTheEnd()
{
    onText = [] {
        auto &tabs = *anyWidget<QTabWidget>();
        tabs.setDocumentMode(false);
        tabs.setCurrentIndex(tabs.addTab(new QWidget, QString()));
    };
    const DlgSettings dialog;
    QVERIFY(tabWidget(dialog).count() > 1);
    QCOMPARE(tabWidget(dialog).currentIndex(), 0);
    QVERIFY(tabWidget(dialog).documentMode());
}

void tst_DlgSettings::textsAreEmptyWithoutTranslation()
{
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    CTranslatorMgr::instance()->loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 1);

    const DlgSettings dialog;
    QCOMPARE(texts(dialog), QStringList({QString(), QString(), QString(), QString()}));
    QCOMPARE(press(dialog, true),
             QStringList(Operator::box("information", QString(), QString(), "PageSetLang")));
    QCOMPARE(press(dialog, false),
             QStringList(Operator::box("critical", QString(), QString(), "PageSetLang")));
}

void tst_DlgSettings::textsStayWhenTheHostInstallsATranslator()
{
    HostTranslator hostTranslator;
    m_machine.onSetLanguage = [&hostTranslator] {
        Deployment::installTranslation(QStringLiteral("first"), QStringLiteral("second"));
        CTranslatorMgr::instance()->loadTranslator();
        // Sends QEvent::LanguageChange to every window, which passes it on to its widgets.
        QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    };
    DlgSettings dialog;
    dialog.show();
    const QStringList before {QStringLiteral("1 Settings"), QStringLiteral("1 Language"),
                              QStringLiteral("1 Change"), QStringLiteral("1 Language:")};
    QCOMPARE(texts(dialog), before);
    press(dialog, true);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(texts(dialog), before);
}

void tst_DlgSettings::formHasNoTexts()
{
    Ui::DlgSettings form;
    QDialog dialog;
    form.setupUi(&dialog);
    QCOMPARE(dialog.windowTitle(), QString());
    QCOMPARE(form.tabWidget->count(), 0);
    QCOMPARE(form.tabWidget->currentIndex(), -1);
    QVERIFY(form.tabWidget->documentMode());
    QCOMPARE(dialog.objectName(), QStringLiteral("DlgSettings"));
}

void tst_DlgSettings::styleSheetAppliesToTheTabs()
{
    DlgSettings dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QTabBar &tabBar = *tabWidget(dialog).tabBar();
    // 25 px, plus a border of 1 px and a margin of 2 px at the top
    QCOMPARE(tabBar.tabRect(0).height(), 28);
    const QImage screenshot = tabWidget(dialog).grab().toImage();
    const QPoint tab = tabBar.mapTo(&tabWidget(dialog), tabBar.tabRect(0).topLeft());
    QCOMPARE(screenshot.pixelColor(tab + QPoint(5, 10)), QColor(Qt::white));
}

void tst_DlgSettings::styleSheetIsReadAsUtf8AndClosed()
{
    QCOMPARE(DlgSettings().styleSheet().toUtf8(), styleSheetFile());

    Q_CLEANUP_RESOURCE(style_3);
    Q_CLEANUP_RESOURCE(style_1);
    const QString other = testFile(QStringLiteral("../data/other_style.rcc"));
    QVERIFY(QResource::registerResource(other));
    bool closed = false;
    // From the page's first text on. False while a file of the resource is open.
    onText = [&] { closed = closed || QResource::unregisterResource(other); };
    const DlgSettings dialog;
    Q_INIT_RESOURCE(style_3);
    Q_INIT_RESOURCE(style_1);
    QVERIFY(dialog.styleSheet().contains(QStringLiteral("样式")));
    QVERIFY(closed);
}

void tst_DlgSettings::dialogWorksWithoutStyleSheet()
{
    Q_CLEANUP_RESOURCE(style_3);
    Q_CLEANUP_RESOURCE(style_1);
    QVERIFY(styleSheetFile().isEmpty());
    {
        DlgSettings dialog;
        QCOMPARE(dialog.styleSheet(), QString());
        QCOMPARE(tabWidget(dialog).count(), 1);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    }
    Q_INIT_RESOURCE(style_3);
    Q_INIT_RESOURCE(style_1);
    QVERIFY(!styleSheetFile().isEmpty());
}

void tst_DlgSettings::resultFollowsTheLastAttempt_data()
{
    QTest::addColumn<QList<bool>>("attempts");
    QTest::addColumn<bool>("changed");

    QTest::newRow("none") << QList<bool>() << false;
    QTest::newRow("success") << QList<bool> {true} << true;
    QTest::newRow("failure") << QList<bool> {false} << false;
    QTest::newRow("success, failure") << QList<bool> {true, false} << false;
    QTest::newRow("failure, success") << QList<bool> {false, true} << true;
}

void tst_DlgSettings::resultFollowsTheLastAttempt()
{
    QFETCH(QList<bool>, attempts);
    QFETCH(bool, changed);

    const std::pair<const char *, std::function<void(QDialog &)>> ways[] = {
        {"accept", [](QDialog &dialog) { dialog.accept(); }},
        {"reject", [](QDialog &dialog) { dialog.reject(); }},
        {"close button", [](QDialog &dialog) { dialog.close(); }},
        {"Escape", [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }},
    };
    for (const auto &[name, close] : ways) {
        DlgSettings dialog;
        dialog.show();
        for (const bool accepts : attempts)
            press(dialog, accepts);
        close(dialog);
        QVERIFY2(dialog.isHidden(), name);
        QVERIFY2(dialog.changed() == changed, name);
    }
}

void tst_DlgSettings::everyAcceptAndRejectUpdatesTheResult()
{
    DlgSettings dialog;
    QVERIFY(!dialog.changed());
    dialog.show();
    press(dialog, true);
    QVERIFY(!dialog.changed());
    // Neither calls accept() or reject().
    dialog.hide();
    dialog.done(QDialog::Accepted);
    QVERIFY(!dialog.changed());
    dialog.reject();
    QVERIFY(dialog.changed());

    press(dialog, false);
    QVERIFY(dialog.changed());
    dialog.accept();
    QVERIFY(!dialog.changed());
}

void tst_DlgSettings::resultIsFalseWithoutAPage()
{
    DlgSettings dialog;
    press(dialog, true);
    dialog.reject();
    QVERIFY(dialog.changed());
    delete dialog.findChild<PageSetLang *>();
    dialog.reject();
    QVERIFY(!dialog.changed());
}

void tst_DlgSettings::resultCodeIsThatOfQDialog()
{
    for (const bool accept : {true, false}) {
        DlgSettings dialog;
        // changed() is set before QDialog closes the dialog.
        bool changedWhenFinished = false;
        connect(&dialog, &QDialog::finished, this, [&] { changedWhenFinished = dialog.changed(); });
        press(dialog, true);
        if (accept)
            dialog.accept();
        else
            dialog.reject();
        QCOMPARE(dialog.result(), int(accept ? QDialog::Accepted : QDialog::Rejected));
        QVERIFY(changedWhenFinished);
    }
}

QTEST_MAIN(tst_DlgSettings)
#include "tst_DlgSettings.moc"
