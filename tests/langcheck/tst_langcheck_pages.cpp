// Tests that langcheck's pages of random deployments are valid.
//
// ZENDEL_STEPS is the number of deployments, ZENDEL_SEED the seed of the first.

#include "CatalogueMaker.h"
#include "CheckedPage.h"
#include "GoodDeployment.h"
#include "support/Settings.h"
#include "support/Warnings.h"

class tst_langcheck_pages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void pagesAreValid();
};

void tst_langcheck_pages::pagesAreValid()
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

QTEST_MAIN(tst_langcheck_pages)
#include "tst_langcheck_pages.moc"
