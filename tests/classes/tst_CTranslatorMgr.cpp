#include "lang/CTranslatorMgr.h"

#include "support/DefaultButtons.h"
#include "support/Deployment.h"
#include "support/HostTranslator.h"
#include "support/Interpose.h"
#include "support/Operator.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QTranslator>
#include <QWidget>

#include <functional>
#include <utility>

#ifdef Q_OS_LINUX
#    include <fcntl.h>
#    include <unistd.h>
#endif

namespace {

QTextCodec *otherCodec = nullptr;

} // namespace

// Replaces the plug-in's look-ups of codecs.
INTERPOSE(QTextCodec *, codecForName, (const QByteArray &name))
{
    return otherCodec ? otherCodec : ORIGINAL(codecForName)(name);
}

RECORD_DEFAULT_BUTTON(critical)
RECORD_DEFAULT_BUTTON(warning)

namespace {

using Deployment::path;

/// Decodes as Latin-1 and calls a function for each chunk of the file.
class WatchingCodec : public QTextCodec
{
public:
    std::function<void()> onChunk;

    QByteArray name() const override { return "watching"; }
    int mibEnum() const override { return 9999; }

protected:
    QString convertToUnicode(const char *bytes, int length, ConverterState *) const override
    {
        onChunk();
        return QString::fromLatin1(bytes, length);
    }
    QByteArray convertFromUnicode(const QChar *, int, ConverterState *) const override
    {
        return QByteArray();
    }
};

/// Calls a function for each chunk of a catalogue, until the end of the test.
void watchChunks(std::function<void()> onChunk)
{
    static auto *const codec = new WatchingCodec; // Qt deletes it at exit.
    codec->onChunk = std::move(onChunk);
    otherCodec = codec;
}

/// A manager that has read a catalogue with these lines.
class ManagerOf : public CTranslatorMgr
{
public:
    explicit ManagerOf(const QByteArray &lines)
    {
        Deployment::writeLines(lines);
        loadLangConfig();
    }
};

/// Returns true if the manager answers as it does without a catalogue.
bool isEmpty(const CTranslatorMgr &mgr)
{
    return mgr.defaultLangId() == 0 && mgr.visibleLanguages().isEmpty()
        && mgr.langFilePath(0).isEmpty() && mgr.langFilePath(1).isEmpty()
        && mgr.langFilePath(2).isEmpty();
}

QString translatedChange(const CTranslatorMgr &mgr)
{
    return mgr.translator()->translate("PageSetLang", "Change");
}

/// Creates Zendel.qm in a folder below Lang. @p content is the name of a test translation or says
/// why Qt can't load the file.
void createTranslation(const QString &folder, const QByteArray &content)
{
    if (content == "directory")
        QVERIFY(QDir().mkpath(path(QStringLiteral("Lang/%1/Zendel.qm").arg(folder))));
    else if (content == "empty")
        Deployment::writeTranslation(folder, "");
    else if (content == "not a translation")
        Deployment::writeTranslation(folder, content);
    else
        Deployment::installTranslation(folder, QString::fromLatin1(content));
}

} // namespace

class tst_CTranslatorMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    // Reading the catalogue
    void translationPath_data();
    void translationPath();
    void placeholderInTheApplicationFolderIsReplacedToo();
    void veryLongLineIsReadCompletely();
    void catalogueHoldsAnyNumberOfLanguages();
    void fileIsReadInBinaryMode();
    void secondReadingReplacesTheFirst();
    void oldCatalogueIsForgottenBeforeTheWarningShows_data();
    void oldCatalogueIsForgottenBeforeTheWarningShows();
    void readErrorCountsAsTheEnd();
    void fileIsClosedAfterReading();

    // Queries
    void everythingIsEmptyBeforeTheFirstLoad();
    void defaultLangIdNeedsNoLanguage();
    void langFilePathNeedsAShownEntry();
    void visibleLanguagesNeedShowNameAndFolder();
    void managerIsEmptyWhileTheCatalogueIsRead();

    // Loading the translation
    void loadTranslator_data();
    void loadTranslator();
    void missingFilesEmptyTheTranslatorAfterTheCriticalMessage();
    void suffixAndDelimitersAreQtsDefaults();
    void reloadReplacesTheTranslation();
    void missingTextIsEmpty();
    void translatorIsNotInstalledInTheApplication();
    void worksInAnyApplicationFolder_data();
    void worksInAnyApplicationFolder();

    // The object
    void instanceIsOneObjectWithoutParent();
    void constructorTakesAParent();
    void translatorIsDestroyedWithTheManagerBeforeTheCatalogue();

private:
    Operator m_operator;
    QWidget m_hostWindow;
};

void tst_CTranslatorMgr::init()
{
    Deployment::clear();
    DefaultButtons::take();
    // The message boxes have no parent, although the host has an active window.
    m_hostWindow.show();
    QApplication::setActiveWindow(&m_hostWindow);
    QCOMPARE(QApplication::activeWindow(), &m_hostWindow);
}

void tst_CTranslatorMgr::cleanup()
{
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(Warnings::take(), QStringList());
    m_operator.onBox = nullptr;
    otherCodec = nullptr;
    Deployment::clear();
}

void tst_CTranslatorMgr::translationPath_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("below");

    const auto row = [](const char *name, const QByteArray &lines, const char *below) {
        QTest::newRow(name) << lines << QString::fromUtf8(below);
    };
    row("folder", "LANG3_FOLDER=en\n", "en/Zendel.qm");
    row("nested folder", "LANG3_FOLDER=a/b\n", "a/b/Zendel.qm");
    row("folder in Chinese", "LANG3_FOLDER=中文\n", "中文/Zendel.qm");
    row("empty folder results in two slashes", "LANG3_FOLDER=\n", "/Zendel.qm");
    row("last of two folders", "LANG3_FOLDER=a\nLANG3_FOLDER=b\n", "b/Zendel.qm");
    row("empty folder after another", "LANG3_FOLDER=a\nLANG3_FOLDER=\n", "/Zendel.qm");
    row("%3 in the folder is replaced too", "LANG3_FOLDER=x%3y\n", "xZendel.qmy/Zendel.qm");
    row("%1 in the folder is replaced instead of %3", "LANG3_FOLDER=x%1y\n", "xZendel.qmy/%3");
    row("spaces in the folder stay", "LANG3_FOLDER=a  b\n", "a  b/Zendel.qm");
    row("backslash in the folder stays", "LANG3_FOLDER=a\\b\n", "a\\b/Zendel.qm");
    row("percent sign without a digit stays", "LANG3_FOLDER=50%\n", "50%/Zendel.qm");
}

void tst_CTranslatorMgr::translationPath()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, below);

    const ManagerOf mgr(lines + "LANG3_SHOW=1\n");
    QCOMPARE(mgr.langFilePath(3), path(QStringLiteral("Lang/") + below));
}

// worksInAnyApplicationFolder() runs it in a folder whose name has a placeholder.
void tst_CTranslatorMgr::placeholderInTheApplicationFolderIsReplacedToo()
{
    const ManagerOf mgr("LANG3_FOLDER=x\nLANG3_SHOW=1\n");
    QCOMPARE(mgr.langFilePath(3),
             QCoreApplication::applicationDirPath().replace(QLatin1String("%2"), QLatin1String("x"))
                 + QStringLiteral("/Lang/x/Zendel.qm"));
}

void tst_CTranslatorMgr::veryLongLineIsReadCompletely()
{
    const QByteArray name(5 << 20, 'x');
    const ManagerOf mgr("LANG1_NAME=" + name + "\nLANG1_FOLDER=a\nLANG1_SHOW=1\n");
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QVERIFY(mgr.visibleLanguages().constFirst().name == QString::fromLatin1(name));
}

void tst_CTranslatorMgr::catalogueHoldsAnyNumberOfLanguages()
{
    const int count = 100000;
    QByteArray lines;
    for (int i = 1; i <= count; ++i) {
        const QByteArray key = "LANG" + QByteArray::number(i);
        lines += key + "_NAME=a\n" + key + "_FOLDER=b\n" + key + "_SHOW=1\n";
    }
    const ManagerOf mgr(lines);
    QCOMPARE(mgr.visibleLanguages().size(), count);
    QCOMPARE(mgr.visibleLanguages().constLast().id, count);
}

// In text mode, QTextStream would drop each CR.
void tst_CTranslatorMgr::fileIsReadInBinaryMode()
{
    const ManagerOf mgr("LANG1_NAME=a\rb\r\nLANG1_FOLDER=c\r\nLANG1_SHOW=1\r\n");
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QCOMPARE(mgr.visibleLanguages().constFirst().name, QStringLiteral("a\rb"));
}

void tst_CTranslatorMgr::secondReadingReplacesTheFirst()
{
    ManagerOf mgr("DEFAULT=1\nLANG1_NAME=a\nLANG1_FOLDER=x\nLANG1_SHOW=1\n");
    QCOMPARE(mgr.defaultLangId(), 1);
    QCOMPARE(mgr.visibleLanguages().size(), 1);

    Deployment::writeLines("LANG2_NAME=b\nLANG2_FOLDER=y\nLANG2_SHOW=1\n");
    mgr.loadLangConfig();
    QCOMPARE(mgr.defaultLangId(), 0);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    QCOMPARE(mgr.visibleLanguages().constFirst().id, 2);
    QCOMPARE(mgr.langFilePath(1), QString());

    // The second catalogue's name and folder are gone from the record, too.
    Deployment::writeLines("LANG2_SHOW=1\n");
    mgr.loadLangConfig();
    QVERIFY(mgr.visibleLanguages().isEmpty());
    QCOMPARE(mgr.langFilePath(2), QString());
}

void tst_CTranslatorMgr::oldCatalogueIsForgottenBeforeTheWarningShows_data()
{
    QTest::addColumn<bool>("isDirectory");

    QTest::newRow("removed") << false;
    QTest::newRow("replaced by a directory") << true;
}

void tst_CTranslatorMgr::oldCatalogueIsForgottenBeforeTheWarningShows()
{
    QFETCH(bool, isDirectory);

    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QCOMPARE(mgr.visibleLanguages().size(), 2);

    Deployment::clear();
    if (isDirectory)
        QVERIFY(QDir().mkpath(path(QStringLiteral("Lang/Lang.ini"))));
    m_operator.onBox = [&](QMessageBox &) { QVERIFY(isEmpty(mgr)); };
    mgr.loadLangConfig();
    QCOMPARE(m_operator.takeBoxes(), QStringList(TranslationBoxes::openFailed()));
    QVERIFY(isEmpty(mgr));
}

void tst_CTranslatorMgr::readErrorCountsAsTheEnd()
{
#ifdef Q_OS_LINUX
    const QString catalogue = path(QStringLiteral("Lang/Lang.ini"));
    Deployment::writeCatalogue("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=a\nLANG1_FOLDER=b\nLANG1_SHOW=1\n"
                               + QByteArray(20000, ';') + "\nDEFAULT=2\n");
    // Once the first chunk has been read, the file's descriptor refers to a directory.
    watchChunks([&] {
        const int directory = ::open("/", O_RDONLY | O_CLOEXEC);
        const QDir descriptors(QStringLiteral("/proc/self/fd"));
        const QStringList open = descriptors.entryList(QDir::Files | QDir::System);
        for (const QString &descriptor : open) {
            if (QFile::symLinkTarget(descriptors.filePath(descriptor)) == catalogue)
                QVERIFY(::dup2(directory, descriptor.toInt()) >= 0);
        }
        ::close(directory);
    });
    CTranslatorMgr mgr;
    mgr.loadLangConfig(); // cleanup() checks that no message box appears.
    QCOMPARE(mgr.defaultLangId(), 1);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
#else
    QSKIP("This system lacks a file that can be opened but not read.");
#endif
}

void tst_CTranslatorMgr::fileIsClosedAfterReading()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QVERIFY(QFile::rename(path(QStringLiteral("Lang/Lang.ini")),
                          path(QStringLiteral("Lang/Lang.old"))));
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
    QCOMPARE(translatedChange(mgr), QString());
}

void tst_CTranslatorMgr::defaultLangIdNeedsNoLanguage()
{
    QCOMPARE(ManagerOf("DEFAULT=9\n").defaultLangId(), 9);
    QCOMPARE(ManagerOf("DEFAULT=9\nLANG0_SHOW=1\n").defaultLangId(), 9);
    QCOMPARE(ManagerOf("DEFAULT=1\nLANG1_FOLDER=a\nLANG1_SHOW=0\n").defaultLangId(), 1);
}

void tst_CTranslatorMgr::langFilePathNeedsAShownEntry()
{
    const ManagerOf mgr("LANG1_FOLDER=a\nLANG1_SHOW=1\nLANG2_FOLDER=b\nLANG2_SHOW=0\n"
                        "LANG3_NAME=c\nLANG3_SHOW=1\n");
    QCOMPARE(mgr.langFilePath(1), path(QStringLiteral("Lang/a/Zendel.qm")));
    QCOMPARE(mgr.langFilePath(2), QString());
    QCOMPARE(mgr.langFilePath(3), QString());
    QCOMPARE(mgr.langFilePath(4), QString());
    QCOMPARE(mgr.langFilePath(-1), QString());
}

void tst_CTranslatorMgr::visibleLanguagesNeedShowNameAndFolder()
{
    const ManagerOf mgr("LANG1_NAME=a\nLANG1_FOLDER=b\nLANG1_SHOW=1\n"
                        "LANG2_NAME=a\nLANG2_FOLDER=b\n"
                        "LANG3_NAME=a\nLANG3_FOLDER=b\nLANG3_SHOW=0\n"
                        "LANG4_FOLDER=b\nLANG4_SHOW=1\n"
                        "LANG5_NAME=a\nLANG5_SHOW=1\n"
                        "LANG6_NAME=\nLANG6_FOLDER=b\nLANG6_SHOW=1\n"
                        "LANG7_NAME=a\nLANG7_FOLDER=\nLANG7_SHOW=1\n");
    const QList<LangEntry> languages = mgr.visibleLanguages();
    QCOMPARE(languages.size(), 1);
    QCOMPARE(languages.constFirst().id, 1);
    QCOMPARE(languages.constFirst().show, true);
    QCOMPARE(languages.constFirst().name, QStringLiteral("a"));
    QCOMPARE(languages.constFirst().folder, QStringLiteral("b"));
    QCOMPARE(languages.constFirst().qmPath, path(QStringLiteral("Lang/b/Zendel.qm")));
}

// Some languages are in the map by then, but the catalogue isn't loaded.
void tst_CTranslatorMgr::managerIsEmptyWhileTheCatalogueIsRead()
{
    Deployment::writeCatalogue("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=a\nLANG1_FOLDER=b\nLANG1_SHOW=1\n"
                               + QByteArray(20000, ';'));
    CTranslatorMgr mgr;
    int chunks = 0;
    watchChunks([&] {
        ++chunks;
        QVERIFY(isEmpty(mgr));
    });
    mgr.loadLangConfig();
    QVERIFY(chunks > 1);
    QCOMPARE(mgr.visibleLanguages().size(), 1);
    mgr.loadLangConfig(); // Now the map is full at the start.
    QCOMPARE(mgr.defaultLangId(), 1);
}

void tst_CTranslatorMgr::loadTranslator_data()
{
    QTest::addColumn<QByteArray>("lines");       // Null for no catalogue
    QTest::addColumn<QByteArray>("translation"); // In the folder en; empty if missing
    QTest::addColumn<QByteArray>("fallback");    // In the folder chs; empty if missing
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("change");

    using namespace TranslationBoxes;
    const QByteArray english = "DEFAULT=1\nLANG1_FOLDER=en\nLANG1_SHOW=1\n";
    const QString enFile = QStringLiteral("Lang/en/Zendel.qm");
    const QString chsFailed = loadFailed(QStringLiteral("Lang/chs/Zendel.qm"));
    const auto row = [](const char *name, const QByteArray &lines, const char *translation,
                        const char *fallback, const QStringList &boxes, const char *change) {
        QTest::newRow(name) << lines << QByteArray(translation) << QByteArray(fallback) << boxes
                            << QString::fromLatin1(change);
    };

    row("default language", english, "first", "second", {}, "1 Change");

    // The fallback is loaded without a message.
    row("hidden", "DEFAULT=1\nLANG1_FOLDER=en\nLANG1_SHOW=0\n", "first", "second", {}, "2 Change");
    row("unknown", "DEFAULT=9\nLANG1_FOLDER=en\nLANG1_SHOW=1\n", "first", "second", {}, "2 Change");
    row("no default", "LANG1_FOLDER=en\nLANG1_SHOW=1\n", "first", "second", {}, "2 Change");
    row("no file", english, "", "second", {}, "2 Change");
    row("no folder", "DEFAULT=1\nLANG1_NAME=a\nLANG1_SHOW=1\n", "first", "second", {}, "2 Change");
    row("empty catalogue", "", "first", "second", {}, "2 Change");

    // The critical message box names the default language's file.
    row("no file, no fallback", english, "", "", {notFound(path(enFile)), chsFailed}, "");
    row("hidden, no fallback", "DEFAULT=1\nLANG1_FOLDER=en\n", "", "",
        {notFound(QString()), chsFailed}, "");
    row("unknown, no fallback", "DEFAULT=9\n", "", "", {notFound(QString()), chsFailed}, "");
    row("no file, no fallback, placeholder", "DEFAULT=1\nLANG1_FOLDER=x%3\nLANG1_SHOW=1\n", "", "",
        {notFound(path(QStringLiteral("Lang/xZendel.qm/Zendel.qm"))), chsFailed}, "");

    // The fallback replaces a missing file only.
    for (const char *const content : {"not a translation", "empty", "directory"})
        row(content, english, content, "second", {loadFailed(enFile)}, "");
    row("damaged fallback", english, "", "not a translation", {chsFailed}, "");
    row("directory as fallback", "DEFAULT=9\n", "", "directory", {chsFailed}, "");

    row("no catalogue", QByteArray(), "", "second", {openFailed()}, "2 Change");
    row("no catalogue, no fallback", QByteArray(), "", "",
        {openFailed(), notFound(QString()), chsFailed}, "");
}

void tst_CTranslatorMgr::loadTranslator()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, translation);
    QFETCH(QByteArray, fallback);
    QFETCH(QStringList, boxes);
    QFETCH(QString, change);

    if (!lines.isNull())
        Deployment::writeLines(lines);
    if (!translation.isEmpty())
        createTranslation(QStringLiteral("en"), translation);
    if (!fallback.isEmpty())
        createTranslation(QStringLiteral("chs"), fallback);
    HostTranslator hostTranslator; // The message boxes are not translated.
    QVERIFY(QCoreApplication::installTranslator(&hostTranslator));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes(), boxes);
    QCOMPARE(DefaultButtons::take(), QVector<int>(boxes.size(), QMessageBox::NoButton));
    QCOMPARE(translatedChange(mgr), change);
    QCOMPARE(mgr.translator()->isEmpty(), change.isEmpty());
}

void tst_CTranslatorMgr::missingFilesEmptyTheTranslatorAfterTheCriticalMessage()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    mgr.loadTranslator();

    Deployment::clear();
    Deployment::writeLines("DEFAULT=1\n");
    QStringList texts;
    m_operator.onBox = [&](QMessageBox &) { texts += translatedChange(mgr); };
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 2);
    QCOMPARE(texts, QStringList({QStringLiteral("1 Change"), QString()}));
    QVERIFY(mgr.translator()->isEmpty());
}

// With the default suffix and delimiters, Qt looks for more names than the one it is given.
void tst_CTranslatorMgr::suffixAndDelimitersAreQtsDefaults()
{
    Deployment::writeLines("DEFAULT=9\n");
    for (const char *const name : {"Zendel.qm.qm", "Zendel"}) {
        Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("first"));
        const QString renamed = path(QStringLiteral("Lang/chs/") + QLatin1String(name));
        QVERIFY(QFile::rename(path(QStringLiteral("Lang/chs/Zendel.qm")), renamed));
        CTranslatorMgr mgr;
        mgr.loadTranslator();
        QCOMPARE(m_operator.takeBoxes(), QStringList(TranslationBoxes::notFound(QString())));
        QVERIFY2(translatedChange(mgr) == QLatin1String("1 Change"), name);
        QVERIFY(QFile::remove(renamed));
    }
}

void tst_CTranslatorMgr::reloadReplacesTheTranslation()
{
    Deployment::installTwoLanguages();
    CTranslatorMgr mgr;
    const QTranslator *const translator = mgr.translator();
    mgr.loadTranslator();
    QCOMPARE(translatedChange(mgr), QStringLiteral("1 Change"));

    Deployment::writeLines("DEFAULT=2\nLANG2_FOLDER=second\nLANG2_SHOW=1\n");
    QCOMPARE(translatedChange(mgr), QStringLiteral("1 Change"));
    mgr.loadTranslator();
    QCOMPARE(translatedChange(mgr), QStringLiteral("2 Change"));

    Deployment::writeTranslation(QStringLiteral("second"), "broken");
    mgr.loadTranslator();
    QCOMPARE(m_operator.takeBoxes().size(), 1);
    QCOMPARE(mgr.translator(), translator);
    QVERIFY(translator->isEmpty());
    QCOMPARE(translatedChange(mgr), QString());
}

void tst_CTranslatorMgr::missingTextIsEmpty()
{
    Deployment::writeLines("DEFAULT=1\nLANG1_FOLDER=p\nLANG1_SHOW=1\n");
    Deployment::installTranslation(QStringLiteral("p"), QStringLiteral("partial"));
    CTranslatorMgr mgr;
    mgr.loadTranslator();
    QCOMPARE(translatedChange(mgr), QStringLiteral("partial Change"));
    QCOMPARE(mgr.translator()->translate("PageSetLang", "Language:"), QString());
    QCOMPARE(mgr.translator()->translate("DlgSettings", "Change"), QString());
}

void tst_CTranslatorMgr::translatorIsNotInstalledInTheApplication()
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

    const QStringList all {QStringLiteral("loadTranslator:default language"),
                           QStringLiteral("translationPath"),
                           QStringLiteral("loadTranslator:no catalogue, no fallback")};
    QTest::newRow("spaces") << QStringLiteral("machine control 2") << all;
    QTest::newRow("Chinese characters") << QStringLiteral("机床控制") << all;
    QTest::newRow("percent sign") << QStringLiteral("100% done") << all;
    QTest::newRow("dots and underscores") << QStringLiteral("v1.2_final.d") << all;
    QTest::newRow("placeholder") << QStringLiteral(
        "a%2b") << QStringList(QStringLiteral("placeholderInTheApplicationFolderIsReplacedToo"));
}

void tst_CTranslatorMgr::worksInAnyApplicationFolder()
{
    QFETCH(QString, folder);
    QFETCH(QStringList, tests);

    const QTemporaryDir root(path(QStringLiteral("XXXXXX")));
    const QString program = root.filePath(folder + QStringLiteral("/test.exe"));
    QVERIFY(QDir().mkpath(root.filePath(folder)));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));

    // A copy of this test program, which uses the folder Lang next to it.
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

void tst_CTranslatorMgr::constructorTakesAParent()
{
    QObject parent;
    const CTranslatorMgr mgr(&parent);
    QCOMPARE(mgr.parent(), &parent);
}

void tst_CTranslatorMgr::translatorIsDestroyedWithTheManagerBeforeTheCatalogue()
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
