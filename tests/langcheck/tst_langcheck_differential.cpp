// Tests that the plug-in shows what langcheck predicts, for random deployments.
//
// ZENDEL_STEPS is the number of deployments, ZENDEL_SEED the seed of the first.

#include "langcheck/DeploymentCheck.h"

#include "GoodDeployment.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/Settings.h"
#include "support/TestFile.h"
#include "support/Warnings.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTextCodec>
#include <QTranslator>

#include <initializer_list>
#include <random>
#include <utility>

namespace {

class CatalogueMaker
{
public:
    explicit CatalogueMaker(quint32 seed)
        : m_random(seed)
    {
    }

    QByteArray make()
    {
        QString text =
            oneOf({"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[lang_mgr]"}) + end();
        for (int lines = below(40); lines > 0; --lines)
            text += line() + end();
        const QChar bom(QChar::ByteOrderMark);
        const int encoding = below(7);
        if (encoding == 0)
            return Deployment::utf16(bom + text);
        if (encoding == 1)
            return Deployment::utf16(bom + text, false);
        if (encoding == 2)
            return Deployment::utf16(QString(2, bom) + text);
        if (encoding == 3)
            return text.toUtf8();
        if (encoding == 4)
            return QTextCodec::codecForName("GB2312")->fromUnicode(text);
        if (encoding == 5)
            return text.toUtf8().replace("One", "\xD6");
        return "\xEF\xBB\xBF" + text.toUtf8();
    }

    /// Puts a translation, an invalid file or nothing into each folder.
    void makeTranslations()
    {
        for (const auto &[folder, name] :
             {std::make_pair("first", "first"), std::make_pair("second", "second"),
              std::make_pair("chs", "long_texts")}) {
            QDir(Deployment::path(QStringLiteral("Lang/") + QLatin1String(folder)))
                .removeRecursively();
            const int choice = below(8);
            if (choice == 0)
                Deployment::writeTranslation(QLatin1String(folder), "not a translation");
            else if (choice > 1)
                Deployment::installTranslation(QLatin1String(folder), QLatin1String(name));
        }
    }

    bool oneIn(int chances) { return below(chances) == 0; }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }

    QString oneOf(std::initializer_list<const char *> texts)
    {
        return QString::fromUtf8(texts.begin()[below(static_cast<int>(texts.size()))]);
    }

    QString end() { return oneOf({"\n", "\n", "\n", "\r\n", "\r\n", "\r\n", "\r\n", "\r"}); }

    QString number() { return oneOf({"1", "2", "3", "10", "01", "0", "300", "99999999999"}); }

    QString line()
    {
        const int kind = below(18);
        if (kind == 0)
            return oneOf(
                {"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[OTHER]", "[]", "[", "[LANG_MGR"});
        if (kind == 1)
            return oneOf({"", ";LANG1_SHOW=1", "#", "=", "LANG1_SHOW", "=1", "x=y"});
        if (kind == 2)
            return QStringLiteral("DEFAULT=") + oneOf({"1", "2", " 3 ", "x", "", "300", "-1"});
        if (kind == 3)
            return oneOf({"lang", "LANG", "LANG-", "xLANG"}) + number()
                + oneOf({"_name", "_SHOWN", "NAME", "_SHOW"}) + QStringLiteral("=1");
        if (kind == 4)
            return QStringLiteral("LANG%1_ID=%2").arg(number(), number());
        if (kind <= 6)
            return QStringLiteral("LANG%1_NAME%2")
                .arg(number(), oneOf({"=One", " = Two ", "=a=b;c", "=", "=中文", "=é"}));
        if (kind <= 9)
            return QStringLiteral("LANG%1_FOLDER%2")
                .arg(number(),
                     oneOf({"=first", "= second", "=none", "=", "=../Lang/second", "=%3"}));
        if (kind <= 11)
            return QStringLiteral("LANG%1_NAME=%2\nLANG%1_FOLDER=first\nLANG%1_SHOW=1")
                .arg(number(), oneOf({"One", "中文", "é", "Two"}));
        return QStringLiteral("LANG%1_SHOW%2")
            .arg(number(), oneOf({"=1", "=1", "=1", " = 01", "=0", "=yes", "="}));
    }

    std::mt19937 m_random;
};

} // namespace

class tst_langcheck_differential : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void operatorSeesWhatIsReported();
};

void tst_langcheck_differential::operatorSeesWhatIsReported()
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
        CatalogueMaker maker(seed);
        maker.makeTranslations();
        if (maker.oneIn(50))
            QFile::remove(Deployment::path(QStringLiteral("Lang/Lang.ini")));
        else
            Deployment::writeCatalogue(maker.make());
        const Report report = checkDeployment(QCoreApplication::applicationDirPath());

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

QTEST_MAIN(tst_langcheck_differential)
#include "tst_langcheck_differential.moc"
