// Tests random deployments: the plug-in shows what langcheck predicts, and the pages are valid.
//
// ZENDEL_STEPS is the number of deployments, ZENDEL_SEED the seed of the first.

#include "CatalogueMaker.h"
#include "CheckedPage.h"
#include "GoodDeployment.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/Settings.h"
#include "support/TestFile.h"
#include "support/Warnings.h"

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

class tst_langcheck_random : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void operatorSeesWhatIsReported();
    void pagesAreValid();
};

void tst_langcheck_random::operatorSeesWhatIsReported()
{
#ifdef Q_OS_WIN
    const quint32 count = Settings::stepCount(100); // Dialogs are slow to appear.
#else
    const quint32 count = Settings::stepCount(2000);
#endif
    Plugin plugin(testFile(QStringLiteral(PLUGIN_FILE)));
    plugin.load();
    IZendelMgr *const manager = plugin.newInterface();
    RecordingMachine machine;

    int listed = 0; // Proves that there was something to compare.
    int boxesReported = 0;
    const quint32 first = Settings::seed();
    for (quint32 seed = first; seed < first + count; ++seed) {
        CatalogueMaker(seed).makeDeployment();
        const Report report = GoodDeployment::check();

        QTranslator translator;
        translator.load(report.translation);

        Operator person;
        bool seen = false;
        person.onDialog = [&](const QDialog &dialog) {
            seen = true;
            const auto *const list = dialog.findChild<QComboBox *>();
            QCOMPARE(list->count(), report.listed.size());
            for (int i = 0; i < list->count(); ++i) {
                QCOMPARE(list->itemText(i), report.listed.at(i).name);
                QCOMPARE(list->itemData(i).toInt(), report.listed.at(i).id);
            }
            QCOMPARE(list->currentIndex(), report.selected);
            QCOMPARE(dialog.windowTitle(), translator.translate("DlgSettings", "Settings"));
            QCOMPARE(dialog.findChild<QPushButton *>()->text(),
                     translator.translate("PageSetLang", "Change"));
        };
        QVERIFY(manager->Init(&machine));
        QCOMPARE(person.takeBoxes(), GoodDeployment::boxesOf(report));
        manager->ShowSettingsDlg(nullptr);
        QVERIFY(seen);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("with ZENDEL_SEED=%1 ZENDEL_STEPS=1").arg(seed)));
        if (!report.boxes.isEmpty())
            QCOMPARE(report.exitCode(), 2);
        listed += report.listed.size();
        boxesReported += report.boxes.size();
        Warnings::take();
    }
    QVERIFY2(listed >= static_cast<int>(count) / 2, qPrintable(QString::number(listed)));
    QVERIFY2(boxesReported >= static_cast<int>(count) / 10,
             qPrintable(QString::number(boxesReported)));

    plugin.releaseInterface(manager);
    plugin.unload();
}

void tst_langcheck_random::pagesAreValid()
{
    const int kAtOnce = 50; // The validator starts more slowly than it works.
    int findings = 0;
    int languages = 0;
    QList<QByteArray> pages;
    const quint32 first = Settings::seed();
    const quint32 count = Settings::stepCount(100);
    for (quint32 seed = first; seed < first + count; ++seed) {
        CatalogueMaker(seed).makeDeployment();
        const Report report = GoodDeployment::check();
        pages += CheckedPage::make(report);
        findings += report.findings.size();
        languages += report.listed.size();
        if (pages.size() == kAtOnce || seed == first + count - 1) {
            CheckedPage::validate(pages);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("up to ZENDEL_SEED=%1").arg(seed)));
            pages.clear();
        }
        Warnings::take();
    }
    // Proves that there was something to show.
    QVERIFY2(findings >= int(count), qPrintable(QString::number(findings)));
    QVERIFY2(languages >= int(count) / 4, qPrintable(QString::number(languages)));
}

QTEST_MAIN(tst_langcheck_random)
#include "tst_langcheck_random.moc"
