#include "lang/CTranslatorMgr.h"

#include "support/DefaultButtons.h"
#include "support/Deployment.h"
#include "support/Interpose.h"
#include "support/Operator.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QDir>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QTranslator>

#include <functional>

namespace {

QTextCodec *otherCodec = nullptr;

} // namespace

// The library's look-ups of codecs come here.
INTERPOSE(QTextCodec *, _ZN10QTextCodec12codecForNameERK10QByteArray, (const QByteArray &name))
{
    return otherCodec ? otherCodec : ORIGINAL(_ZN10QTextCodec12codecForNameERK10QByteArray)(name);
}

RECORD_DEFAULT_BUTTON(
    _ZN11QMessageBox8criticalEP7QWidgetRK7QStringS4_6QFlagsINS_14StandardButtonEES6_)
RECORD_DEFAULT_BUTTON(
    _ZN11QMessageBox7warningEP7QWidgetRK7QStringS4_6QFlagsINS_14StandardButtonEES6_)

namespace {

/// Decodes as Latin 1, and calls a function at each piece of the file.
class WatchingCodec : public QTextCodec
{
public:
    std::function<void()> onPiece;

    QByteArray name() const override { return "watching"; }
    int mibEnum() const override { return 9999; }

protected:
    QString convertToUnicode(const char *bytes, int length, ConverterState *) const override
    {
        onPiece();
        return QString::fromLatin1(bytes, length);
    }
    QByteArray convertFromUnicode(const QChar *, int, ConverterState *) const override
    {
        return QByteArray();
    }
};

QString applicationPath(const QString &below)
{
    return Deployment::path(below);
}

} // namespace

class tst_CTranslatorMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    // The catalogue's format
    void defaultNumber_data();
    void defaultNumber();
    void showValue_data();
    void showValue();
    void translationPath_data();
    void translationPath();
    void placeholderInTheApplicationFolderIsSubstitutedToo();
    void utf8WithoutAMarkIsTakenForGb2312();
    void veryLongLineIsReadWhole();
    void manyLanguagesAreAllRead();

    // Reading it
    void missingCatalogueWarnsAndLeavesNothing();
    void directoryNamedLangIniCannotBeOpened();
    void secondReadingReplacesTheFirst();
    void catalogueRemovedBetweenTwoReadingsLeavesNothing();
    void catalogueIsEmptyWhileTheWarningShows();
    void readErrorIsTakenForTheEnd();
    void fileIsClosedAfterReading();

    // Queries
    void everythingIsEmptyBeforeTheFirstLoad();
    void langFilePathNeedsAShownEntry();
    void visibleLanguagesNeedShowNameAndFolder();
    void visibleLanguagesAscend();
    void nothingIsAnsweredWhileTheCatalogueIsRead();

    // Loading the translation
    void loadsTheDefaultLanguage();
    void unusableDefaultFallsBackToChsSilently_data();
    void unusableDefaultFallsBackToChsSilently();
    void bothFilesMissingShowsCriticalThenWarning_data();
    void bothFilesMissingShowsCriticalThenWarning();
    void criticalBoxShowsTheSubstitutedFolder();
    void brokenTranslationShowsTheWarningAlone_data();
    void brokenTranslationShowsTheWarningAlone();
    void brokenFallbackIsNamedInTheWarning();
    void missingCatalogueWithFallbackShowsOneBox();
    void missingCatalogueAndFallbackShowsThreeBoxesInOrder();
    void boxesHaveNoDefaultButton();
    void directoryAsFallbackShowsTheWarningAlone();
    void failedReloadEmptiesTheTranslator();
    void missingFilesEmptyTheTranslatorAfterTheCriticalBox();
    void suffixAndDelimitersAreQtsDefaults_data();
    void suffixAndDelimitersAreQtsDefaults();
    void reloadFollowsTheCatalogue();
    void missingTextComesBackEmpty();
    void translatorIsNeverInstalledIntoTheApplication();
    void worksInAnyApplicationFolder_data();
    void worksInAnyApplicationFolder();

    // The object
    void instanceIsOneObjectWithoutParent();
    void metaObjectDeclaresNothing();
    void constructorTakesAParent();
    void translatorDiesWithTheManager();
    void translatorDiesBeforeTheCatalogue();

private:
    static bool isEmpty(const CTranslatorMgr &mgr);

    Operator m_operator;
};

void tst_CTranslatorMgr::init()
{
    Deployment::clear();
}

void tst_CTranslatorMgr::cleanup()
{
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(Warnings::take(), QStringList());
    m_operator.onBox = nullptr;
    Deployment::clear();
}

/// Whether the manager answers as without a catalogue, or with an empty one.
bool tst_CTranslatorMgr::isEmpty(const CTranslatorMgr &mgr)
{
    return mgr.defaultLangId() == 0 && mgr.visibleLanguages().isEmpty()
        && mgr.langFilePath(0).isEmpty() && mgr.langFilePath(1).isEmpty()
        && mgr.langFilePath(2).isEmpty();
}

void tst_CTranslatorMgr::defaultNumber_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("number");

    QTest::newRow("plain") << QByteArray("2") << 2;
    QTest::newRow("plus sign") << QByteArray("+1") << 1;
    QTest::newRow("minus sign") << QByteArray("-3") << -3;
    QTest::newRow("leading zero") << QByteArray("010") << 10;
    QTest::newRow("blanks around") << QByteArray(" \t7 ") << 7;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too large") << QByteArray("2147483648") << 0;
    QTest::newRow("overlong") << QByteArray("99999999999999999999") << 0;
    QTest::newRow("fraction") << QByteArray("1.0") << 0;
    QTest::newRow("hexadecimal") << QByteArray("0x1") << 0;
    QTest::newRow("words") << QByteArray("one") << 0;
    QTest::newRow("trailing text") << QByteArray("1 ; main") << 0;
    QTest::newRow("nothing") << QByteArray("") << 0;
}

void tst_CTranslatorMgr::defaultNumber()
{
    QFETCH(QByteArray, value);
    QFETCH(int, number);

    Deployment::writeLines("DEFAULT=5\nDEFAULT=" + value + "\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.defaultLangId(), number);
}

void tst_CTranslatorMgr::showValue_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("shown");

    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("01") << QByteArray("01") << true;
    QTest::newRow("+1") << QByteArray("+1") << true;
    QTest::newRow("blanks around") << QByteArray("  1\t") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("2") << QByteArray("2") << false;
    QTest::newRow("-1") << QByteArray("-1") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("yes") << QByteArray("yes") << false;
    QTest::newRow("1.0") << QByteArray("1.0") << false;
    QTest::newRow("0x1") << QByteArray("0x1") << false;
    QTest::newRow("4294967297") << QByteArray("4294967297") << false;
    QTest::newRow("nothing") << QByteArray("") << false;
}

void tst_CTranslatorMgr::showValue()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, shown);

    // The opposite first, so that the value is seen to be taken.
    Deployment::writeLines(QByteArray("LANG1_SHOW=") + (shown ? "0" : "1") + "\nLANG1_SHOW=" + value
                           + "\nLANG1_NAME=a\nLANG1_FOLDER=b\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.visibleLanguages().size(), shown ? 1 : 0);
}

void tst_CTranslatorMgr::translationPath_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("below");

    QTest::newRow("folder") << QByteArray("LANG3_FOLDER=en\n") << QStringLiteral("en/Zendel.qm");
    QTest::newRow("nested folder")
        << QByteArray("LANG3_FOLDER=a/b\n") << QStringLiteral("a/b/Zendel.qm");
    QTest::newRow("folder in Chinese")
        << QByteArray("LANG3_FOLDER=中文\n") << QStringLiteral("中文/Zendel.qm");
    QTest::newRow("empty folder gives two slashes")
        << QByteArray("LANG3_FOLDER=\n") << QStringLiteral("/Zendel.qm");
    QTest::newRow("last of two folders")
        << QByteArray("LANG3_FOLDER=a\nLANG3_FOLDER=b\n") << QStringLiteral("b/Zendel.qm");
    QTest::newRow("a %3 in the folder is substituted too")
        << QByteArray("LANG3_FOLDER=x%3y\n") << QStringLiteral("xZendel.qmy/Zendel.qm");
    QTest::newRow("a %1 in the folder takes the file name's turn")
        << QByteArray("LANG3_FOLDER=x%1y\n") << QStringLiteral("xZendel.qmy/%3");
    QTest::newRow("a percent sign without a digit stays")
        << QByteArray("LANG3_FOLDER=50%\n") << QStringLiteral("50%/Zendel.qm");
}

void tst_CTranslatorMgr::translationPath()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, below);

    Deployment::writeLines(lines + "LANG3_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.langFilePath(3), applicationPath(QStringLiteral("Lang/") + below));
}

// Has something to see when the program runs in a folder with such a name, as it does below.
void tst_CTranslatorMgr::placeholderInTheApplicationFolderIsSubstitutedToo()
{
    Deployment::writeLines("LANG3_FOLDER=x\nLANG3_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.langFilePath(3),
             QCoreApplication::applicationDirPath().replace(QLatin1String("%2"), QLatin1String("x"))
                 + QStringLiteral("/Lang/x/Zendel.qm"));
}

void tst_CTranslatorMgr::utf8WithoutAMarkIsTakenForGb2312()
{
    Deployment::writeCatalogue(
        "[LANG_MGR]\nDEFAULT=2\nLANG2_SHOW=1\nLANG2_FOLDER=a\nLANG2_NAME=简体中文\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.defaultLangId(), 2);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QVERIFY(mgr.visibleLanguages().constFirst().name != QStringLiteral("简体中文"));
}

void tst_CTranslatorMgr::veryLongLineIsReadWhole()
{
    const QByteArray name(1 << 20, 'x');
    Deployment::writeLines("LANG1_NAME=" + name + "\nLANG1_FOLDER=a\nLANG1_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QVERIFY(mgr.visibleLanguages().constFirst().name == QString::fromLatin1(name));
}

void tst_CTranslatorMgr::manyLanguagesAreAllRead()
{
    const int count = 5000;
    QByteArray lines;
    for (int i = count; i > 0; --i) {
        const QByteArray key = "LANG" + QByteArray::number(i);
        lines += key + "_SHOW=1\n" + key + "_NAME=n\n" + key + "_FOLDER=f\n";
    }
    Deployment::writeLines(lines);
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    const QList<LangEntry> languages = mgr.visibleLanguages();
    QCOMPARE(languages.size(), count);
    QCOMPARE(languages.constFirst().id, 1);
    QCOMPARE(languages.constLast().id, count);
}

void tst_CTranslatorMgr::missingCatalogueWarnsAndLeavesNothing()
{
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(m_operator.takeBoxes(), QStringList(TranslationBoxes::openFailed()));
    QVERIFY(isEmpty(mgr));
}

void tst_CTranslatorMgr::directoryNamedLangIniCannotBeOpened()
{
    QVERIFY(QDir().mkpath(applicationPath(QStringLiteral("Lang/Lang.ini"))));
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    QVERIFY(isEmpty(mgr));
}

void tst_CTranslatorMgr::secondReadingReplacesTheFirst()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_NAME=a\nLANG1_FOLDER=x\nLANG1_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.defaultLangId(), 1);
    QCOMPARE(mgr.visibleLanguages().size(), 1);

    Deployment::writeLines("LANG2_NAME=b\nLANG2_FOLDER=y\nLANG2_SHOW=1\n");
    mgr.loadLangConfig();
    QCOMPARE(mgr.defaultLangId(), 0);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QCOMPARE(mgr.visibleLanguages().constFirst().id, 2);
    QCOMPARE(mgr.langFilePath(1), QString());

    // Nothing of the first is left in the record that the second only begins.
    Deployment::writeLines("LANG2_SHOW=1\n");
    mgr.loadLangConfig();
    QVERIFY(mgr.visibleLanguages().isEmpty());
    QCOMPARE(mgr.langFilePath(2), QString());
}

void tst_CTranslatorMgr::catalogueRemovedBetweenTwoReadingsLeavesNothing()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.visibleLanguages().size(), 2);

    Deployment::clear();
    mgr.loadLangConfig();
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    QVERIFY(isEmpty(mgr));
}

void tst_CTranslatorMgr::catalogueIsEmptyWhileTheWarningShows()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    Deployment::clear();
    int boxes = 0;
    m_operator.onBox = [&](QMessageBox &) {
        QVERIFY(isEmpty(mgr));
        ++boxes;
    };
    mgr.loadLangConfig();
    QCOMPARE(boxes, 1);
    m_operator.takeBoxes();
}

void tst_CTranslatorMgr::readErrorIsTakenForTheEnd()
{
#ifdef Q_OS_LINUX
    // Can be opened, but not read at its beginning.
    QVERIFY(QDir().mkpath(applicationPath(QStringLiteral("Lang"))));
    QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"),
                        applicationPath(QStringLiteral("Lang/Lang.ini"))));
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QVERIFY(isEmpty(mgr)); // Without a box, as cleanup() sees
#else
    QSKIP("This system has no file that opens and cannot be read.");
#endif
}

void tst_CTranslatorMgr::fileIsClosedAfterReading()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QVERIFY(QFile::rename(applicationPath(QStringLiteral("Lang/Lang.ini")),
                          applicationPath(QStringLiteral("Lang/Lang.old"))));
#ifdef Q_OS_LINUX
    const QFileInfoList open = QDir(QStringLiteral("/proc/self/fd")).entryInfoList();
    for (const QFileInfo &file : open)
        QVERIFY(!file.symLinkTarget().contains(QLatin1String("Lang/Lang")));
#endif
}

void tst_CTranslatorMgr::everythingIsEmptyBeforeTheFirstLoad()
{
    Deployment::installTwoLanguages();
    const CTranslatorMgr mgr;
    QVERIFY(isEmpty(mgr));
    QVERIFY(mgr.translator());
    QVERIFY(mgr.translator()->isEmpty());
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"), QString());
}

void tst_CTranslatorMgr::langFilePathNeedsAShownEntry()
{
    Deployment::writeLines("LANG1_FOLDER=a\nLANG1_SHOW=1\nLANG2_FOLDER=b\nLANG2_SHOW=0\n"
                           "LANG3_NAME=c\nLANG3_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.langFilePath(1), applicationPath(QStringLiteral("Lang/a/Zendel.qm")));
    QCOMPARE(mgr.langFilePath(2), QString());
    QCOMPARE(mgr.langFilePath(3), QString());
    QCOMPARE(mgr.langFilePath(4), QString());
    QCOMPARE(mgr.langFilePath(-1), QString());
}

void tst_CTranslatorMgr::visibleLanguagesNeedShowNameAndFolder()
{
    Deployment::writeLines("LANG1_NAME=a\nLANG1_FOLDER=b\nLANG1_SHOW=1\n"
                           "LANG2_NAME=a\nLANG2_FOLDER=b\n"
                           "LANG3_NAME=a\nLANG3_FOLDER=b\nLANG3_SHOW=0\n"
                           "LANG4_FOLDER=b\nLANG4_SHOW=1\n"
                           "LANG5_NAME=a\nLANG5_SHOW=1\n"
                           "LANG6_NAME=\nLANG6_FOLDER=b\nLANG6_SHOW=1\n"
                           "LANG7_NAME=a\nLANG7_FOLDER=\nLANG7_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    const QList<LangEntry> languages = mgr.visibleLanguages();
    QCOMPARE(languages.size(), 1);
    QCOMPARE(languages.constFirst().id, 1);
    QCOMPARE(languages.constFirst().show, true);
    QCOMPARE(languages.constFirst().name, QStringLiteral("a"));
    QCOMPARE(languages.constFirst().folder, QStringLiteral("b"));
    QCOMPARE(languages.constFirst().qmPath, applicationPath(QStringLiteral("Lang/b/Zendel.qm")));
    // An empty folder keeps the language from the list, but not its path from being known.
    QCOMPARE(mgr.langFilePath(7), applicationPath(QStringLiteral("Lang//Zendel.qm")));
}

void tst_CTranslatorMgr::visibleLanguagesAscend()
{
    QByteArray lines;
    for (const QByteArray number : {"10", "9", "300", "2"}) {
        lines +=
            "LANG" + number + "_NAME=n\nLANG" + number + "_FOLDER=f\nLANG" + number + "_SHOW=1\n";
    }
    Deployment::writeLines(lines);
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QList<int> ids;
    const QList<LangEntry> languages = mgr.visibleLanguages();
    for (const LangEntry &entry : languages)
        ids += entry.id;
    QCOMPARE(ids, QList<int>({2, 9, 10, 300}));
}

/// Some languages are in the map by then, but the catalogue is not loaded.
void tst_CTranslatorMgr::nothingIsAnsweredWhileTheCatalogueIsRead()
{
    const QByteArray language =
        "DEFAULT=1\nLANG1_NAME=a\nLANG1_FOLDER=b\nLANG1_SHOW=1\n;" + QByteArray(20000, ';');
    Deployment::writeCatalogue("[LANG_MGR]\n" + language);
    CTranslatorMgr mgr;
    int pieces = 0;
    auto *const codec = new WatchingCodec; // Qt deletes it at the end.
    codec->onPiece = [&] {
        ++pieces;
        QVERIFY(isEmpty(mgr));
    };
    otherCodec = codec;
    mgr.loadLangConfig();
    QVERIFY(pieces > 1);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    mgr.loadLangConfig(); // The map is full at its beginning.
    otherCodec = nullptr;
    QCOMPARE(mgr.defaultLangId(), 1);
}

void tst_CTranslatorMgr::loadsTheDefaultLanguage()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"), QStringLiteral("1 Change"));
    QCOMPARE(mgr.defaultLangId(), 1);
}

void tst_CTranslatorMgr::unusableDefaultFallsBackToChsSilently_data()
{
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("hidden") << QByteArray("DEFAULT=1\nLANG1_FOLDER=first\nLANG1_SHOW=0\n");
    QTest::newRow("names nothing") << QByteArray("DEFAULT=9\nLANG1_FOLDER=first\nLANG1_SHOW=1\n");
    QTest::newRow("not given") << QByteArray("LANG1_FOLDER=first\nLANG1_SHOW=1\n");
    QTest::newRow("file missing") << QByteArray("DEFAULT=1\nLANG1_FOLDER=gone\nLANG1_SHOW=1\n");
    QTest::newRow("without folder") << QByteArray("DEFAULT=1\nLANG1_NAME=a\nLANG1_SHOW=1\n");
    QTest::newRow("empty catalogue") << QByteArray();
}

void tst_CTranslatorMgr::unusableDefaultFallsBackToChsSilently()
{
    QFETCH(QByteArray, lines);

    Deployment::writeLines(lines);
    Deployment::installTranslation(QStringLiteral("first"), QStringLiteral("first"));
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("second"));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"), QStringLiteral("2 Change"));
}

void tst_CTranslatorMgr::bothFilesMissingShowsCriticalThenWarning_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("named");

    QTest::newRow("file missing") << QByteArray("DEFAULT=1\nLANG1_FOLDER=en\nLANG1_SHOW=1\n")
                                  << applicationPath(QStringLiteral("Lang/en/Zendel.qm"));
    QTest::newRow("hidden") << QByteArray("DEFAULT=1\nLANG1_FOLDER=en\n") << QString();
    QTest::newRow("names nothing") << QByteArray("DEFAULT=9\n") << QString();
}

void tst_CTranslatorMgr::bothFilesMissingShowsCriticalThenWarning()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, named);

    Deployment::writeLines(lines);
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({TranslationBoxes::notFound(named),
                          TranslationBoxes::loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))}));
    QVERIFY(mgr.translator()->isEmpty());
}

void tst_CTranslatorMgr::criticalBoxShowsTheSubstitutedFolder()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_FOLDER=x%3\nLANG1_SHOW=1\n");
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    const QStringList boxes = m_operator.takeBoxes();
    QCOMPARE(boxes.size(), 2);
    QCOMPARE(
        boxes.constFirst(),
        TranslationBoxes::notFound(applicationPath(QStringLiteral("Lang/xZendel.qm/Zendel.qm"))));
}

void tst_CTranslatorMgr::brokenTranslationShowsTheWarningAlone_data()
{
    QTest::addColumn<bool>("directory");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("not a translation") << false << QByteArray("This is no translation at all.");
    QTest::newRow("empty") << false << QByteArray();
    QTest::newRow("directory") << true << QByteArray();
}

void tst_CTranslatorMgr::brokenTranslationShowsTheWarningAlone()
{
    QFETCH(bool, directory);
    QFETCH(QByteArray, bytes);

    // The fallback would do, but it is for a missing file only.
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("second"));
    Deployment::writeLines("DEFAULT=1\nLANG1_FOLDER=en\nLANG1_SHOW=1\n");
    if (directory)
        QVERIFY(QDir().mkpath(applicationPath(QStringLiteral("Lang/en/Zendel.qm"))));
    else
        Deployment::writeTranslation(QStringLiteral("en"), bytes);
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(TranslationBoxes::loadFailed(QStringLiteral("Lang/en/Zendel.qm"))));
    QVERIFY(mgr.translator()->isEmpty());
}

void tst_CTranslatorMgr::brokenFallbackIsNamedInTheWarning()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_FOLDER=en\nLANG1_SHOW=1\n");
    Deployment::writeTranslation(QStringLiteral("chs"), "broken");
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(TranslationBoxes::loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))));
}

void tst_CTranslatorMgr::missingCatalogueWithFallbackShowsOneBox()
{
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("second"));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(), QStringList(TranslationBoxes::openFailed()));
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"), QStringLiteral("2 Change"));
}

void tst_CTranslatorMgr::missingCatalogueAndFallbackShowsThreeBoxesInOrder()
{
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({TranslationBoxes::openFailed(), TranslationBoxes::notFound(QString()),
                          TranslationBoxes::loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))}));
}

void tst_CTranslatorMgr::failedReloadEmptiesTheTranslator()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    const QTranslator *const translator = mgr.translator();
    mgr.loadTranslator();
    QVERIFY(!translator->isEmpty());

    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    QCOMPARE(mgr.translator(), translator);
    QVERIFY(translator->isEmpty());
    QCOMPARE(translator->translate("PageSetLang", "Change"), QString());
}

void tst_CTranslatorMgr::boxesHaveNoDefaultButton()
{
    DefaultButtons::take();
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(DefaultButtons::take(),
             QList<int>({QMessageBox::NoButton, QMessageBox::NoButton, QMessageBox::NoButton}));
    QCOMPARE(m_operator.takeBoxes().size(), 3);
}

void tst_CTranslatorMgr::directoryAsFallbackShowsTheWarningAlone()
{
    Deployment::writeLines("DEFAULT=9\n");
    QVERIFY(QDir().mkpath(applicationPath(QStringLiteral("Lang/chs/Zendel.qm"))));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(),
             QStringList(TranslationBoxes::loadFailed(QStringLiteral("Lang/chs/Zendel.qm"))));
}

void tst_CTranslatorMgr::missingFilesEmptyTheTranslatorAfterTheCriticalBox()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadTranslator();

    Deployment::clear();
    Deployment::writeLines("DEFAULT=1\n");
    QStringList texts;
    m_operator.onBox = [&](QMessageBox &) {
        texts += mgr.translator()->translate("PageSetLang", "Change");
    };
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 2);
    QCOMPARE(texts, QStringList({QStringLiteral("1 Change"), QString()}));
    QVERIFY(mgr.translator()->isEmpty());
}

void tst_CTranslatorMgr::suffixAndDelimitersAreQtsDefaults_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("with .qm behind it") << QStringLiteral("Zendel.qm.qm");
    QTest::newRow("up to its last dot") << QStringLiteral("Zendel");
}

void tst_CTranslatorMgr::suffixAndDelimitersAreQtsDefaults()
{
    QFETCH(QString, name);

    // With these, Qt looks for more names than the one it is given.
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("first"));
    QVERIFY(QFile::rename(applicationPath(QStringLiteral("Lang/chs/Zendel.qm")),
                          applicationPath(QStringLiteral("Lang/chs/") + name)));
    Deployment::writeLines("DEFAULT=9\n");
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(), QStringList(TranslationBoxes::notFound(QString())));
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"), QStringLiteral("1 Change"));
}

void tst_CTranslatorMgr::reloadFollowsTheCatalogue()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadTranslator();

    Deployment::writeLines("DEFAULT=2\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
    const QTranslator *const translator = mgr.translator();
    QCOMPARE(translator->translate("PageSetLang", "Change"), QStringLiteral("1 Change"));
    mgr.loadTranslator();
    QCOMPARE(mgr.translator(), translator);
    QCOMPARE(translator->translate("PageSetLang", "Change"), QStringLiteral("2 Change"));
}

void tst_CTranslatorMgr::missingTextComesBackEmpty()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_FOLDER=p\nLANG1_SHOW=1\n");
    Deployment::installTranslation(QStringLiteral("p"), QStringLiteral("partial"));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Change"),
             QStringLiteral("partial Change"));
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Language:"), QString());
    QCOMPARE(mgr.translator()->translate("DlgSettings", "Change"), QString());
}

void tst_CTranslatorMgr::translatorIsNeverInstalledIntoTheApplication()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(QCoreApplication::translate("PageSetLang", "Change"), QStringLiteral("Change"));
}

void tst_CTranslatorMgr::worksInAnyApplicationFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("tests");

    const QStringList all {QStringLiteral("loadsTheDefaultLanguage"),
                           QStringLiteral("translationPath"),
                           QStringLiteral("missingCatalogueAndFallbackShowsThreeBoxesInOrder")};
    QTest::newRow("blanks") << QStringLiteral("machine control 2") << all;
    QTest::newRow("Chinese characters") << QStringLiteral("机床控制") << all;
    QTest::newRow("percent sign") << QStringLiteral("100% done") << all;
    QTest::newRow("dots and underscores") << QStringLiteral("v1.2_final.d") << all;
    QTest::newRow("placeholder") << QStringLiteral(
        "a%2b") << QStringList(QStringLiteral("placeholderInTheApplicationFolderIsSubstitutedToo"));
}

void tst_CTranslatorMgr::worksInAnyApplicationFolder()
{
    QFETCH(QString, folder);
    QFETCH(QStringList, tests);

    const QTemporaryDir root(applicationPath(QStringLiteral("XXXXXX")));
    const QString program = root.filePath(folder + QStringLiteral("/test.exe"));
    QVERIFY(QDir().mkpath(root.filePath(folder)));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));

    // This very test program, which works on the folder that it lies in.
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, tests);
    QVERIFY2(process.waitForFinished(), qPrintable(process.errorString()));
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             process.readAll().constData());
}

void tst_CTranslatorMgr::instanceIsOneObjectWithoutParent()
{
    CTranslatorMgr *const mgr = CTranslatorMgr::instance();
    QVERIFY(mgr);
    QCOMPARE(CTranslatorMgr::instance(), mgr);
    QVERIFY(!mgr->parent());
    QVERIFY(mgr->translator());
    QVERIFY(!mgr->translator()->parent());
    QCOMPARE(mgr->translator()->metaObject(), &QTranslator::staticMetaObject);
}

void tst_CTranslatorMgr::metaObjectDeclaresNothing()
{
    const QMetaObject &meta = CTranslatorMgr::staticMetaObject;
    QCOMPARE(meta.className(), "CTranslatorMgr");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());

    CTranslatorMgr mgr;
    QCOMPARE(mgr.qt_metacast("CTranslatorMgr"), static_cast<void *>(&mgr));
    QCOMPARE(mgr.qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(&mgr)));
    QVERIFY(!mgr.qt_metacast("QTranslator"));
}

void tst_CTranslatorMgr::constructorTakesAParent()
{
    QObject parent;
    const CTranslatorMgr mgr(&parent);
    QCOMPARE(mgr.parent(), &parent);
}

void tst_CTranslatorMgr::translatorDiesWithTheManager()
{
    QPointer<QTranslator> translator;
    {
        const CTranslatorMgr mgr;
        translator = mgr.translator();
        QVERIFY(translator);
    }
    QVERIFY(!translator);
}

void tst_CTranslatorMgr::translatorDiesBeforeTheCatalogue()
{
    Deployment::installTwoLanguages();
    int languages = 0;
    {
        CTranslatorMgr mgr;
        mgr.loadTranslator();
        connect(mgr.translator(), &QObject::destroyed, this,
                [&] { languages = mgr.visibleLanguages().size(); });
    }
    QCOMPARE(languages, 2);
}

QTEST_MAIN(tst_CTranslatorMgr)
#include "tst_CTranslatorMgr.moc"
