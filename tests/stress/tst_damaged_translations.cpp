// Tests thousands of translation files with random damage, as after a disk error or an aborted
// copy. The operator sees a message or the remaining texts, and the host survives, even with files
// on which Qt itself crashes: see loadQmFile().
//
// ZENDEL_STEPS is the number of files, ZENDEL_SEED the seed, ZENDEL_FIRST the number of the first.

#include "lang/CTranslatorMgr.h"
#include "lang/SourceTexts.h"
#include "plugin/CZendelIns.h"
#include "ui/DlgSettings.h"

#include "support/Damage.h"
#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/OperatedTest.h"
#include "support/Settings.h"
#include "support/TestFile.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QDirIterator>
#include <QFile>
#include <QTest>
#include <QTranslator>

#include <random>

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Can't read %s", qPrintable(fileName));
    return file.readAll();
}

QString text(const char *context, const char *source)
{
    return CTranslatorMgr::instance()->translator()->translate(context, source);
}

} // namespace

class tst_damaged_translations : public OperatedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void undamagedFilesLoad();
    void filesThatCrashQtAreRefused_data();
    void filesThatCrashQtAreRefused();
    void damagedFilesAreLoadedOrRefused();

private:
    void loadAndLookUpTexts();
    void createDialog();

    const QString m_fileName = QStringLiteral("Lang/first/Zendel.qm");
    QList<QByteArray> m_originals;
    int m_refused = 0;
};

void tst_damaged_translations::initTestCase()
{
    OperatedTest::initTestCase();
    QStringList names;
    for (const QString &folder :
         {QStringLiteral(":/translations"), testFile(QStringLiteral(SAMPLE_DEPLOYMENT))}) {
        QDirIterator files(folder, {QStringLiteral("*.qm")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            names += files.next();
    }
    names.sort(); // Makes seeds portable.
    for (const QString &name : qAsConst(names))
        m_originals += contents(name);
    QVERIFY(m_originals.size() > 22);
}

void tst_damaged_translations::undamagedFilesLoad()
{
    for (const QByteArray &original : qAsConst(m_originals)) {
        Deployment::writeTranslation(QStringLiteral("first"), original);
        m_refused = 0;
        loadAndLookUpTexts();
        QCOMPARE(m_refused, 0);
        QVERIFY(!CTranslatorMgr::instance()->translator()->isEmpty());
    }
}

void tst_damaged_translations::filesThatCrashQtAreRefused_data()
{
    QTest::addColumn<QString>("name");

    // When looking up "Change", Qt 5.15 reads 2 GiB before the file and crashes,
    QTest::newRow("crash") << QStringLiteral("one_bit_in_a_length.qm");
    // or returns to the same field endlessly.
    QTest::newRow("endless loop") << QStringLiteral("length_that_leads_back.qm");
}

void tst_damaged_translations::filesThatCrashQtAreRefused()
{
    QFETCH(QString, name);
    const QByteArray bytes = contents(testFile(QStringLiteral(DAMAGED_FILES "/") + name));
    Deployment::writeTranslation(QStringLiteral("first"), bytes);
    m_refused = 0;
    loadAndLookUpTexts();
    QCOMPARE(m_refused, 1);
}

void tst_damaged_translations::damagedFilesAreLoadedOrRefused()
{
    const quint32 seed = Settings::seed();
    const quint32 first = Settings::firstStep();
#ifdef Q_OS_WIN
    const quint32 count = Settings::stepCount(500); // Files are slow under Wine.
#else
    const quint32 count = Settings::stepCount(5000);
#endif
    m_refused = 0;
    for (quint32 i = first; i < first + count; ++i) {
        std::mt19937 random(seed * 1000003 + i); // Each file can be recreated alone.
        const QByteArray bytes = damaged(m_originals.at(int(i) % m_originals.size()), random);
        Deployment::writeTranslation(QStringLiteral("first"), bytes);
        loadAndLookUpTexts();
        createDialog();
        if (QTest::currentTestFailed()) {
            QFile copy(Deployment::path(QStringLiteral("failed.qm")));
            QVERIFY(copy.open(QIODevice::WriteOnly));
            copy.write(bytes);
            qInfo("ZENDEL_SEED=%u ZENDEL_FIRST=%u ZENDEL_STEPS=1, the file is saved as %s", seed, i,
                  qPrintable(copy.fileName()));
            return;
        }
    }
    qInfo("seed %u: %u files, refused %d", seed, count, m_refused);
}

/// The operator sees either one message and then no texts, or no message.
void tst_damaged_translations::loadAndLookUpTexts()
{
    CZendelIns mgr;
    QVERIFY(mgr.Init(&m_machine));
    QString texts;
    for (const SourceText &source : kSourceTexts)
        texts += text(source.context, source.text);

    const QStringList boxes = m_operator.takeBoxes();
    if (!boxes.isEmpty()) {
        ++m_refused;
        QCOMPARE(boxes, QStringList(TranslationBoxes::loadFailed(m_fileName)));
        QCOMPARE(texts, QString());
        QVERIFY(CTranslatorMgr::instance()->translator()->isEmpty());
    }
    QCOMPARE(Warnings::take(), QStringList());
}

void tst_damaged_translations::createDialog()
{
    const DlgSettings dialog;
    QCOMPARE(DialogWidgets::texts(dialog),
             QStringList({text("DlgSettings", "Settings"), text("DlgSettings", "Language"),
                          text("PageSetLang", "Change"), text("PageSetLang", "Language:")}));
    QCOMPARE(Warnings::take(), QStringList(Warnings::unconnectedSlot()));
}

QTEST_MAIN(tst_damaged_translations)
#include "tst_damaged_translations.moc"
