// The checker of deployments: for each kind of finding a small catalogue that triggers it and
// nothing else, and what it says the operator will see against what the dialog shows.

#include "plugin/IZendelMgr.h"
#include "langcheck/DeploymentCheck.h"

#include "support/Deployment.h"
#include "support/Operator.h"
#include "support/RecordingMachine.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QEvent>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibrary>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTextCodec>
#include <QTranslator>
#include <QXmlStreamReader>

#include <initializer_list>
#include <random>
#include <utility>

namespace {

/// Two shown languages with translations that lie there, and nothing to find. Lines 1 to 8.
const char *const kGood = "[LANG_MGR]\n"
                          "DEFAULT=1\n"
                          "LANG1_NAME=One\n"
                          "LANG1_FOLDER=first\n"
                          "LANG1_SHOW=1\n"
                          "LANG2_NAME=Two\n"
                          "LANG2_FOLDER=second\n"
                          "LANG2_SHOW=1\n";

QString applicationPath()
{
    return QCoreApplication::applicationDirPath();
}

QString shortForms(const Report &report)
{
    QStringList result;
    for (const Finding &finding : report.findings) {
        result += QStringLiteral("%1:%2 %3 %4")
                      .arg(finding.file)
                      .arg(finding.line)
                      .arg(finding.severity == Finding::Error ? QStringLiteral("error")
                                                              : QStringLiteral("warning"),
                           finding.kind);
    }
    return result.join(QLatin1Char('\n'));
}

} // namespace

/// Counts the windows that come to the screen.
class Exposures : public QObject
{
public:
    Exposures() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Expose)
            ++count;
        return false;
    }

    int count = 0;
};

class tst_langcheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void cleanDeploymentHasNoFindings();
    void catalogueLines_data();
    void catalogueLines();
    void zeroBytesDoNotHideTheRest();
    void translationFiles_data();
    void translationFiles();
    void fallback_data();
    void fallback();
    void defaultWithoutANameIsLookedAt();
    void percentInTheApplicationFolder();
    void missingCatalogue();
    void unreadableCatalogue();
    void everyEncodingIsNamed_data();
    void everyEncodingIsNamed();
    void boxesAreToldWordForWord();
    void nothingComesToTheScreen();
    void fallbackIsTold();
    void textsAreThoseOfTheCode();
    void repeatedKeyNamesBothLines();
    void operatorSeesWhatIsTold();

    void programPrintsFindingsAsCompilersDo();
    void programPrintsJson();
    void callsWithoutADeployment_data();
    void callsWithoutADeployment();
    void sampleDeploymentIsClean();
    void programWritesNothing();

private:
    QByteArray run(const QStringList &arguments, int exitCode);
};

void tst_langcheck::initTestCase()
{
    Warnings::collect();
#ifndef Q_OS_WIN
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9)); // As the program does.
#endif
}

void tst_langcheck::init()
{
    Deployment::clear();
    for (const char *const folder : {"first", "second", "chs"})
        Deployment::installTranslation(QLatin1String(folder), QStringLiteral("first"));
}

void tst_langcheck::cleanDeploymentHasNoFindings()
{
    Deployment::writeCatalogue(kGood);
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(shortForms(report), QString());
    QCOMPARE(report.exitCode(), 0);
    QCOMPARE(report.listed.size(), 2);
    QCOMPARE(report.listed.at(1).name, QStringLiteral("Two"));
    QCOMPARE(report.selected, 0);
    QCOMPARE(report.defaultLangId, 1);
    QCOMPARE(report.translation, Deployment::path(QStringLiteral("Lang/first/Zendel.qm")));
    QVERIFY(!report.fallback);
    QVERIFY(report.boxes.isEmpty());
}

void tst_langcheck::catalogueLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("finding");

    const auto row = [](const char *name, const QByteArray &bytes, const char *finding) {
        QTest::newRow(name) << bytes << QStringLiteral("Lang/Lang.ini:") + QLatin1String(finding);
    };
    const QByteArray good = kGood;
    const auto with = [&good](const char *before, const char *after) {
        QByteArray bytes = good;
        if (!bytes.contains(before))
            qFatal("No %s", before);
        return bytes.replace(before, after);
    };

    row("line before the section", "x=1\n" + good, "1 warning outside-section");
    row("line in another section", good + "[OTHER]\nx=1\n", "10 warning outside-section");
    row("no equals sign", good + "LANG1_SHOW\n", "9 warning no-key");
    row("no key", good + "=1\n", "9 warning no-key");
    row("unknown key", good + "LANG1_ICON=x\n", "9 warning unknown-key");
    row("key in lower case", good + "lang1_show=1\n", "9 warning key-case");
    row("default in lower case", good + "Default=1\n", "9 warning key-case");
    row("header in lower case", good + "[lang_mgr]\n", "9 warning header");
    row("header with blanks", good + "[ LANG_MGR ]\n", "9 warning header");
    row("header without its end", "[LANG_MGR\n" + good, "1 warning header");
    row("carriage return alone", good + "; one\r; two\n", "9 warning carriage-return");
    row("repeated key", good + "LANG2_NAME=Other\n", "9 warning repeated-key");
    row("repeated default", good + "DEFAULT=2\n", "9 warning repeated-key");
    row("show is a word", good + "LANG3_SHOW=yes\n", "9 warning show-number");
    row("show is empty", good + "LANG3_SHOW=\n", "9 warning show-number");
    row("show is another number", good + "LANG3_SHOW=2\n", "9 warning show-other");
    row("number too long", good + "LANG99999999999_SHOW=0\n", "9 warning number-too-long");
    row("ID differs", good + "LANG1_ID=7\n", "9 warning id-differs");
    row("ID is a word", good + "LANG1_ID=one\n", "9 warning id-differs");
    row("number above 255", with("LANG2", "LANG300"), "6 warning number-above-255");
    row("same number for the machine", with("LANG2", "LANG257"), "6 error same-machine-number");
    row("no default", with("DEFAULT=1", ";"), "0 error default-unknown");
    row("unknown default", with("DEFAULT=1", "DEFAULT=5"), "2 error default-unknown");
    row("hidden default", with("LANG1_SHOW=1", "LANG1_SHOW=0"), "2 error default-hidden");
    row("default is a word", with("LANG1_", "LANG0_").replace("DEFAULT=1", "DEFAULT=One"),
        "2 warning default-number");
    row("no name", good + "LANG3_FOLDER=first\nLANG3_SHOW=1\n", "10 error incomplete");
    row("no folder", good + "LANG3_NAME=x\nLANG3_SHOW=1\n", "10 error incomplete");
    row("empty folder", good + "LANG3_NAME=x\nLANG3_FOLDER=\nLANG3_SHOW=1\n",
        "11 error incomplete");
    row("same name", with("=Two", "=One"), "6 error same-name");
    row("name too wide", with("=Two", "=A language with a name that no list can hold"),
        "6 error name-clipped");
    row("UTF-8 without a mark", with("=Two", "=中文"), "0 error utf8-without-mark");
    row("UTF-8 without a mark, in a comment", good + "; 中文\n", "0 warning utf8-without-mark");
    row("UTF-16 without a mark", Deployment::utf16(QString::fromLatin1(good)),
        "0 error utf16-without-mark");
    row("bytes that are no GB2312", with("=Two", "=\xB0 0"), "6 error undecodable");
    row("folder with dots", with("=second", "=../Lang/second"), "7 warning folder-dots");
    row("folder with dots and backslashes", good + "LANG3_FOLDER=..\\second\nLANG3_SHOW=0\n",
        "9 warning folder-dots");
    row("absolute folder", with("=second", "=/second"), "7 warning folder-absolute");
    row("folder on a drive", good + "LANG3_FOLDER=C:\\second\nLANG3_SHOW=0\n",
        "9 warning folder-absolute");
    row("folder with a percent sign", good + "LANG3_FOLDER=100%\nLANG3_SHOW=0\n",
        "9 warning folder-percent");
    row("nobody listed", "[LANG_MGR]\nDEFAULT=1\n", "0 error no-languages");
    row("no section", "DEFAULT=1\n", "1 warning outside-section\nLang/Lang.ini:0 error no-section");
    row("empty file", "", "0 error no-section");
    row("lines ended by carriage returns alone", QByteArray(good).replace('\n', '\r'),
        "1 warning carriage-return\nLang/Lang.ini:0 error no-section");
    row("language without SHOW", good + "LANG3_NAME=x\nLANG3_FOLDER=first\n",
        "9 warning show-missing");
    row("name in quotation marks", with("=Two", "=\"Two\""), "6 warning quoted-value");
    row("comment behind a name", with("=Two", "=Two ; 2"), "6 warning comment-in-value");
    row("header with a comment", good + "[OTHER]\n[LANG_MGR] ; again\n", "10 warning header");
    row("second mark", "\xEF\xBB\xBF\xEF\xBB\xBF;\n" + good,
        "1 warning second-mark\n"
        "Lang/Lang.ini:1 warning outside-section");
    row("end of a line swallowed", good + ";\xD6\n;\n", "9 error swallowed-line");
    row("end of a line in UTF-8 swallowed", good + ";\xE4\xB8\xAD\n;\n;\n=\n",
        "9 error swallowed-line\nLang/Lang.ini:0 warning utf8-without-mark\n"
        "Lang/Lang.ini:12 warning no-key");
    row("Latin-1",
        with("=Two",
             "=Fran\xE7"
             "ais"),
        "6 error undecodable");
    row("GBK", with("=Two", "=\xB7\xB1\xF3\x77"), "6 error undecodable");
    row("Latin-1 in a comment",
        good
            + "; Fran\xE7"
              "ais\n",
        "9 warning undecodable");
    row("undecodable UTF-8 with a mark", "\xEF\xBB\xBF" + with("=Two", "=\xE4 x"),
        "6 error undecodable");
}

void tst_langcheck::catalogueLines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, finding);

    Deployment::writeCatalogue(bytes);
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(shortForms(report), finding);
    QCOMPARE(report.exitCode(), finding.contains(QLatin1String("error")) ? 2 : 1);
}

/// One zero is no UTF-16, and the rest of the file is looked at as ever.
void tst_langcheck::zeroBytesDoNotHideTheRest()
{
    Deployment::writeCatalogue(kGood + QByteArray("; \0\nLANG1_ICON=x\n", 17));
    QCOMPARE(shortForms(checkDeployment(applicationPath())),
             QStringLiteral("Lang/Lang.ini:10 warning unknown-key"));
}

void tst_langcheck::translationFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("kinds");

    const auto translation = [](const char *name) {
        QFile compiled(QStringLiteral(":/translations/%1.qm").arg(QLatin1String(name)));
        if (!compiled.open(QIODevice::ReadOnly))
            qFatal("No test translation %s", name);
        return compiled.readAll();
    };
    QTest::newRow("missing") << QByteArray() << QStringList(QStringLiteral("qm-missing"));
    QTest::newRow("unreadable") << QByteArray("folder")
                                << QStringList(QStringLiteral("qm-unreadable"));
    QTest::newRow("no translation")
        << QByteArray("no translation") << QStringList(QStringLiteral("qm-foreign"));
    QTest::newRow("of another program")
        << translation("other_program") << QStringList(QStringLiteral("qm-foreign"));
    QStringList seven;
    while (seven.size() < 7)
        seven += QStringLiteral("text-missing");
    QTest::newRow("one text of eight") << translation("one_text") << seven;
    QTest::newRow("too long") << translation("long_texts")
                              << QStringList(QStringLiteral("text-clipped"));
}

void tst_langcheck::translationFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, kinds);

    Deployment::writeCatalogue(kGood);
    const QString file = Deployment::path(QStringLiteral("Lang/second/Zendel.qm"));
    QVERIFY(QFile::remove(file));
    if (bytes == "folder")
        QVERIFY(QDir().mkpath(file));
    else if (!bytes.isEmpty())
        Deployment::writeTranslation(QStringLiteral("second"), bytes);
    QStringList expected;
    for (const QString &kind : kinds)
        expected += QStringLiteral("Lang/second/Zendel.qm:0 error ") + kind;
    QCOMPARE(shortForms(checkDeployment(applicationPath())), expected.join(QLatin1Char('\n')));
}

void tst_langcheck::fallback_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("finding");

    const QByteArray good = kGood;
    QByteArray unused = good;
    unused.replace("DEFAULT=1", "DEFAULT=2").replace("=second", "=none");
    QTest::newRow("missing, not needed")
        << good << QByteArray() << QStringLiteral("Lang/chs/Zendel.qm:0 warning qm-missing");
    QTest::newRow("foreign, not needed")
        << good << QByteArray("x") << QStringLiteral("Lang/chs/Zendel.qm:0 warning qm-foreign");
    QTest::newRow("missing, needed") << unused << QByteArray()
                                     << QStringLiteral("Lang/none/Zendel.qm:0 error qm-missing\n"
                                                       "Lang/chs/Zendel.qm:0 error qm-missing");
    QTest::newRow("foreign, needed") << unused << QByteArray("x")
                                     << QStringLiteral("Lang/none/Zendel.qm:0 error qm-missing\n"
                                                       "Lang/chs/Zendel.qm:0 error qm-foreign");
}

void tst_langcheck::fallback()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, finding);

    Deployment::writeCatalogue(catalogue);
    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang/chs"))).removeRecursively());
    if (!bytes.isEmpty())
        Deployment::writeTranslation(QStringLiteral("chs"), bytes);
    QCOMPARE(shortForms(checkDeployment(applicationPath())), finding);
}

/// It is spoken although it is not listed.
void tst_langcheck::defaultWithoutANameIsLookedAt()
{
    Deployment::writeCatalogue(QByteArray(kGood).replace("LANG1_NAME=One", ""));
    Deployment::writeTranslation(QStringLiteral("first"), "x");
    QCOMPARE(shortForms(checkDeployment(applicationPath())),
             QStringLiteral("Lang/Lang.ini:5 error incomplete\n"
                            "Lang/first/Zendel.qm:0 error qm-foreign"));
}

void tst_langcheck::percentInTheApplicationFolder()
{
    const QString folder = Deployment::path(QStringLiteral("Lang/a%2b"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/Lang")));
    Deployment::writeCatalogue(kGood);
    QVERIFY(QFile::rename(Deployment::path(QStringLiteral("Lang/Lang.ini")),
                          folder + QStringLiteral("/Lang/Lang.ini")));
    QVERIFY(shortForms(checkDeployment(folder))
                .startsWith(QStringLiteral(".:0 error application-folder\n")));
}

void tst_langcheck::missingCatalogue()
{
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(shortForms(report), QStringLiteral("Lang/Lang.ini:0 error catalogue-unreadable"));
    QCOMPARE(report.boxes.size(), 1);
    QCOMPARE(report.boxes.first().icon, QStringLiteral("warning"));
    QCOMPARE(report.boxes.first().title, QStringLiteral("Warning"));
    QCOMPARE(report.boxes.first().text,
             QStringLiteral("Failed to open INI file:")
                 + Deployment::path(QStringLiteral("Lang/Lang.ini")));
    QCOMPARE(report.selected, -1);
}

void tst_langcheck::unreadableCatalogue()
{
    QVERIFY(QDir().mkpath(Deployment::path(QStringLiteral("Lang/Lang.ini"))));
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(shortForms(report), QStringLiteral("Lang/Lang.ini:0 error catalogue-unreadable"));
    QVERIFY(report.findings.first().text.contains(QLatin1String("no file")));
}

void tst_langcheck::everyEncodingIsNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("reason");

    const QByteArray good = kGood;
    const QString marked = QChar(QChar::ByteOrderMark) + QString::fromLatin1(good);
    QTest::newRow("GB2312") << good << QStringLiteral("GB2312")
                            << QStringLiteral("it starts with no mark");
    QTest::newRow("UTF-8") << "\xEF\xBB\xBF" + good << QStringLiteral("UTF-8")
                           << QStringLiteral("it starts with the mark EF BB BF");
    QTest::newRow("UTF-16") << Deployment::utf16(marked) << QStringLiteral("UTF-16LE")
                            << QStringLiteral("it starts with the mark FF FE");
    QTest::newRow("UTF-16 with two marks, both dropped")
        << Deployment::utf16(QChar(QChar::ByteOrderMark) + marked) << QStringLiteral("UTF-16LE")
        << QStringLiteral("it starts with the mark FF FE");
    QTest::newRow("UTF-16, the other way round")
        << Deployment::utf16(marked, false) << QStringLiteral("UTF-16BE")
        << QStringLiteral("it starts with the mark FE FF");
}

void tst_langcheck::everyEncodingIsNamed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, encoding);
    QFETCH(QString, reason);

    Deployment::writeCatalogue(bytes);
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(report.encoding, encoding);
    QCOMPARE(report.encodingReason, reason);
    QCOMPARE(report.listed.size(), 2);
    QCOMPARE(shortForms(report), QString());
}

void tst_langcheck::boxesAreToldWordForWord()
{
    Deployment::writeCatalogue("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=One\nLANG1_FOLDER=none\n"
                               "LANG1_SHOW=1\n");
    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/chs/Zendel.qm"))));
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(report.boxes.size(), 2);
    QCOMPARE(report.boxes.at(0).icon, QStringLiteral("critical"));
    QCOMPARE(report.boxes.at(0).title, QStringLiteral("Error"));
    QCOMPARE(report.boxes.at(0).text,
             QStringLiteral("Cannot find the \"%1\" file")
                 .arg(Deployment::path(QStringLiteral("Lang/none/Zendel.qm"))));
    QCOMPARE(report.boxes.at(1).icon, QStringLiteral("warning"));
    QCOMPARE(report.boxes.at(1).text,
             QStringLiteral("Load translator file%1failed!")
                 .arg(Deployment::path(QStringLiteral("Lang/chs/Zendel.qm"))));
    QCOMPARE(report.translation, QString());
}

void tst_langcheck::nothingComesToTheScreen()
{
    const Exposures exposures;
    const Report report = checkDeployment(applicationPath()); // There is no catalogue.
    QCOMPARE(report.boxes.size(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(exposures.count, 0);
}

void tst_langcheck::fallbackIsTold()
{
    Deployment::writeCatalogue(QByteArray(kGood).replace("DEFAULT=1", "DEFAULT=9"));
    const Report report = checkDeployment(applicationPath());
    QCOMPARE(report.translation, Deployment::path(QStringLiteral("Lang/chs/Zendel.qm")));
    QVERIFY(report.fallback);
    QCOMPARE(report.defaultLangId, 9);
    QCOMPARE(report.selected, 0);
}

void tst_langcheck::repeatedKeyNamesBothLines()
{
    Deployment::writeCatalogue(kGood + QByteArray("LANG2_FOLDER=second\n"));
    const Finding finding = checkDeployment(applicationPath()).findings.value(0);
    QCOMPARE(finding.line, 9);
    QVERIFY(finding.text.contains(QLatin1String("line 7")));
}

/// A translation with one text of the eight lacks seven, which are told by context and text.
void tst_langcheck::textsAreThoseOfTheCode()
{
    Deployment::writeCatalogue(kGood);
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("one_text"));
    QStringList told;
    const QList<Finding> findings = checkDeployment(applicationPath()).findings;
    for (const Finding &finding : findings)
        told += finding.text.section(QLatin1Char(','), 0, 0);
    told.sort();

    QStringList expected;
    QFile source(QStringLiteral(SAMPLE_SOURCE)); // Held complete by a test of its own.
    QVERIFY(source.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&source);
    QString context;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            expected += QStringLiteral("lacks \"%1\" of %2").arg(xml.readElementText(), context);
    }
    QVERIFY(expected.removeOne(QStringLiteral("lacks \"Change\" of PageSetLang")));
    expected.sort();
    QCOMPARE(told, expected);
}

namespace {

class CatalogueMaker
{
public:
    explicit CatalogueMaker(unsigned int seed)
        : m_random(seed)
    {
    }

    QByteArray make()
    {
        QString text =
            oneOf({"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[lang_mgr]"}) + end();
        for (int lines = below(40); lines > 0; --lines)
            text += line() + end();
        switch (below(7)) {
        case 0:
            return Deployment::utf16(QChar(QChar::ByteOrderMark) + text);
        case 1:
            return Deployment::utf16(QChar(QChar::ByteOrderMark) + text, false);
        case 2:
            return Deployment::utf16(QString(2, QChar(QChar::ByteOrderMark)) + text);
        case 3:
            return text.toUtf8();
        case 4:
            return QTextCodec::codecForName("GB2312")->fromUnicode(text);
        case 5:
            return text.toUtf8().replace("One", "\xD6");
        default:
            return "\xEF\xBB\xBF" + text.toUtf8();
        }
    }

    /// Puts a translation, another one, something else or nothing into each folder.
    void makeTranslations()
    {
        for (const auto &[folder, name] :
             {std::make_pair("first", "first"), std::make_pair("second", "second"),
              std::make_pair("chs", "long_texts")}) {
            QDir(Deployment::path(QStringLiteral("Lang/") + QLatin1String(folder)))
                .removeRecursively();
            const int choice = below(8);
            if (choice == 0)
                Deployment::writeTranslation(QLatin1String(folder), "no translation");
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
        switch (below(18)) {
        case 0:
            return oneOf(
                {"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[OTHER]", "[]", "[", "[LANG_MGR"});
        case 1:
            return oneOf({"", ";LANG1_SHOW=1", "#", "=", "LANG1_SHOW", "=1", "x=y"});
        case 2:
            return QStringLiteral("DEFAULT=") + oneOf({"1", "2", " 3 ", "x", "", "300", "-1"});
        case 3:
            return oneOf({"lang", "LANG", "LANG-", "xLANG"}) + number()
                + oneOf({"_name", "_SHOWN", "NAME", "_SHOW"}) + QStringLiteral("=1");
        case 4:
            return QStringLiteral("LANG%1_ID=%2").arg(number(), number());
        case 5:
        case 6:
            return QStringLiteral("LANG%1_NAME%2")
                .arg(number(), oneOf({"=One", " = Two ", "=a=b;c", "=", "=中文", "=é"}));
        case 7:
        case 8:
        case 9:
            return QStringLiteral("LANG%1_FOLDER%2")
                .arg(number(),
                     oneOf({"=first", "= second", "=none", "=", "=../Lang/second", "=%3"}));
        case 10:
        case 11:
            return QStringLiteral("LANG%1_NAME=%2\nLANG%1_FOLDER=first\nLANG%1_SHOW=1")
                .arg(number(), oneOf({"One", "中文", "é", "Two"}));
        default:
            return QStringLiteral("LANG%1_SHOW%2")
                .arg(number(), oneOf({"=1", "=1", "=1", " = 01", "=0", "=yes", "="}));
        }
    }

    std::mt19937 m_random;
};

} // namespace

void tst_langcheck::operatorSeesWhatIsTold()
{
#ifdef Q_OS_WIN
    const unsigned int catalogues = 100; // Each dialog takes its time on the screen.
#else
    const unsigned int catalogues = 2000;
#endif
    QLibrary plugin(QStringLiteral(PLUGIN_FILE));
    QVERIFY2(plugin.load(), qPrintable(plugin.errorString()));
    IZendelMgr *const manager =
        reinterpret_cast<NewInterfaceFunction>(plugin.resolve("NewInterface"))();
    RecordingMachine machine;

    int listed = 0; // To know that there was something to compare.
    int boxesTold = 0;
    for (unsigned int seed = 1; seed <= catalogues; ++seed) {
        CatalogueMaker maker(seed);
        maker.makeTranslations();
        if (maker.oneIn(50))
            QFile::remove(Deployment::path(QStringLiteral("Lang/Lang.ini")));
        else
            Deployment::writeCatalogue(maker.make());
        const Report report = checkDeployment(applicationPath());

        QStringList boxes;
        for (const Box &box : report.boxes)
            boxes += Operator::box(box.icon.toLatin1().constData(), box.title, box.text);
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
        QCOMPARE(person.takeBoxes(), boxes);
        manager->ShowSettingsDlg(nullptr);
        QVERIFY(seen);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("with seed %1").arg(seed)));
        if (!report.boxes.isEmpty())
            QCOMPARE(report.exitCode(), 2);
        listed += report.listed.size();
        boxesTold += report.boxes.size();
        Warnings::take();
    }
    QVERIFY2(listed > static_cast<int>(catalogues) / 2, qPrintable(QString::number(listed)));
    QVERIFY2(boxesTold > static_cast<int>(catalogues) / 10, qPrintable(QString::number(boxesTold)));

    reinterpret_cast<ReleaseInterfaceFunction>(plugin.resolve("ReleaseInterface"))(manager);
    QVERIFY(plugin.unload());
}

QByteArray tst_langcheck::run(const QStringList &arguments, int exitCode)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(LANGCHECK_FILE), arguments);
    if (!process.waitForFinished())
        QTest::qFail(qPrintable(process.errorString()), __FILE__, __LINE__);
    QByteArray output = process.readAll().replace("\r\n", "\n");
    QTest::qCompare(process.exitCode(), exitCode, output.constData(), "exit code", __FILE__,
                    __LINE__);
    return output;
}

void tst_langcheck::programPrintsFindingsAsCompilersDo()
{
    Deployment::writeCatalogue(kGood + QByteArray("LANG2_NAME=Deux\n"));
    QCOMPARE(QString::fromUtf8(run({applicationPath()}, 1)),
             QStringLiteral(
                 "Catalogue:    Lang/Lang.ini, read as GB2312 because it starts with no mark\n"
                 "Languages:    1 One (selected)\n"
                 "              2 Deux\n"
                 "Default:      1\n"
                 "Translation:  Lang/first/Zendel.qm\n"
                 "Boxes:        none\n"
                 "\n"
                 "Lang/Lang.ini:9: warning: overwrites line 6; delete one of the two "
                 "[repeated-key]\n"
                 "0 errors, 1 warning\n"));

    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang"))).removeRecursively());
    const QString path = applicationPath();
    QCOMPARE(
        QString::fromUtf8(run({path}, 2)),
        QStringLiteral(
            "Catalogue:    Lang/Lang.ini, cannot be opened\n"
            "Languages:    none, the operator's list is empty\n"
            "Default:      0\n"
            "Translation:  none, all texts are empty\n"
            "Boxes:        warning, \"Warning\": Failed to open INI file:%1/Lang/Lang.ini\n"
            "              critical, \"Error\": Cannot find the \"\" file\n"
            "              warning, \"Warning\": Load translator file%1/Lang/chs/Zendel.qmfailed!\n"
            "\n"
            "Lang/Lang.ini: error: is missing, so there are no languages "
            "[catalogue-unreadable]\n"
            "1 error, 0 warnings\n")
            .arg(path));
}

void tst_langcheck::programPrintsJson()
{
    Deployment::writeCatalogue(kGood + QByteArray("LANG2_NAME=Deux\n"));
    const QByteArray output = run({applicationPath(), QStringLiteral("--json")}, 1);
    QJsonParseError error = {};
    const QJsonDocument json = QJsonDocument::fromJson(output, &error);
    QVERIFY2(error.error == QJsonParseError::NoError, output.constData());
    QCOMPARE(json.object(), checkDeployment(applicationPath()).toJson());
    const QJsonArray findings = json.object().value(QStringLiteral("findings")).toArray();
    QCOMPARE(findings.size(), 1);
    const QJsonObject finding = findings.first().toObject();
    QCOMPARE(finding.value(QStringLiteral("file")).toString(), QStringLiteral("Lang/Lang.ini"));
    QCOMPARE(finding.value(QStringLiteral("line")).toInt(), 9);
    QCOMPARE(finding.value(QStringLiteral("severity")).toString(), QStringLiteral("warning"));
    QCOMPARE(finding.value(QStringLiteral("kind")).toString(), QStringLiteral("repeated-key"));
}

void tst_langcheck::callsWithoutADeployment_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QStringList &arguments, int code,
                        const char *text) {
        QTest::newRow(name) << arguments << code << QString::fromLatin1(text);
    };
    row("help", {QStringLiteral("--help")}, 0, "[APPDIR]");
    row("version", {QStringLiteral("--version")}, 0, "langcheck " VERSION "\n");
    row("unknown option", {QStringLiteral("--colour")}, 3, "Unknown option 'colour'");
    row("two folders", {QStringLiteral("."), QStringLiteral(".")}, 3, "More than one folder");
    row("no folder", {QStringLiteral("no/such")}, 3, "\"no/such\" is no folder");
}

void tst_langcheck::callsWithoutADeployment()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, text);

    const QByteArray output = run(arguments, exitCode);
    QVERIFY2(output.contains(text.toUtf8()), output.constData());
}

/// The program lies beside the sample, so it needs to be told no folder.
void tst_langcheck::sampleDeploymentIsClean()
{
    const QByteArray output = run({}, 0);
    QVERIFY2(output.contains("22 العربية\n"), output.constData());
    QVERIFY(output.endsWith("\n0 errors, 0 warnings\n"));
}

void tst_langcheck::programWritesNothing()
{
    const auto files = [] {
        QStringList result;
        QDirIterator it(Deployment::path(QStringLiteral("Lang")),
                        QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QFileInfo file(it.next());
            result += file.filePath() + file.lastModified().toString(Qt::ISODateWithMs);
        }
        result.sort();
        return result;
    };
    Deployment::writeCatalogue(kGood);
    // Nor for temporary files, in a place of their own here, or for the user.
    const QString temporary = Deployment::path(QStringLiteral("Lang/temporary"));
    QVERIFY(QDir().mkpath(temporary));
    qputenv("TMPDIR", QFile::encodeName(temporary));
    qunsetenv("XDG_RUNTIME_DIR");
    const QStringList before = files();
    QCOMPARE(before.size(), 8);
    run({applicationPath()}, 0);
    QCOMPARE(files(), before);
    qunsetenv("TMPDIR");
}

QTEST_MAIN(tst_langcheck)
#include "tst_langcheck.moc"
