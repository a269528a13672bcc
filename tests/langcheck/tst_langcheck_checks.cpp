// Tests each kind of finding with a small deployment that has no other.

#include "lang/SourceTexts.h"
#include "langcheck/Texts.h"
#include "langcheck/check/DeploymentCheck.h"

#include "GoodDeployment.h"
#include "support/TestFile.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QPair>
#include <QRegularExpression>
#include <QTest>
#include <QTextCodec>
#include <QTextStream>
#include <QVector>

using Files = QVector<QPair<const char *, const char *>>; ///< Folders and their files' languages
using Texts = QVector<QPair<QByteArray, QByteArray>>;     ///< Beginnings and remedies, if any
Q_DECLARE_METATYPE(Files)
Q_DECLARE_METATYPE(Texts)

namespace {

using GoodDeployment::catalogueWith;
using GoodDeployment::check;
using GoodDeployment::kCatalogue;
using GoodDeployment::kUtf8Bom;

/// Installs languages whose translations are as good as GoodDeployment's, but name a language.
/// Languages without a name are called "Language " and their folder.
void installLanguages(const Files &files, const QStringList &names = {})
{
    QFile first(QStringLiteral(":/translations/first.qm"));
    if (!first.open(QIODevice::ReadOnly))
        qFatal("No test translation");
    const QByteArray translation = first.readAll();
    const QByteArray language("\xA7\0\0\0\x02"
                              "en",
                              7);
    if (translation.count(language) != 1)
        qFatal("No language in the test translation");
    QByteArray catalogue = kUtf8Bom + "[LANG_MGR]\nDEFAULT=1\n";
    for (int i = 0; i < files.size(); ++i) {
        const QByteArray name =
            names.value(i, QLatin1String("Language ") + QLatin1String(files.at(i).first)).toUtf8();
        const QByteArray code = files.at(i).second;
        const QByteArray block =
            code.isEmpty() ? QByteArray() : QByteArray("\xA7\0\0\0", 4) + char(code.size()) + code;
        // Each has other texts: "1 Settings" becomes "a Settings".
        const char number[] = {'\0', static_cast<char>('a' + i), '\0', ' '};
        Deployment::writeTranslation(QLatin1String(files.at(i).first),
                                     QByteArray(translation)
                                         .replace(language, block)
                                         .replace(QByteArray("\0"
                                                             "1\0 ",
                                                             4),
                                                  QByteArray(number, 4)));
        catalogue += QByteArray("LANG%_FOLDER=?\nLANG%_SHOW=1\nLANG%_NAME=")
                         .replace('%', QByteArray::number(i + 1))
                         .replace('?', files.at(i).first)
            + name + '\n';
    }
    Deployment::writeCatalogue(catalogue);
}

QString shortForms(const Report &report)
{
    QStringList result;
    for (const Finding &finding : report.findings) {
        result += QStringLiteral("%1:%2 %3 %4")
                      .arg(finding.file)
                      .arg(finding.line)
                      .arg(severityName(finding.severity), finding.id());
    }
    return result.join(QLatin1Char('\n'));
}

} // namespace

class tst_langcheck_checks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void init() { GoodDeployment::install(); }

    void cleanDeploymentHasNoFindings();
    void catalogueLines_data();
    void catalogueLines();
    void zeroBytesDoNotHideTheRest();
    void translationFiles_data();
    void translationFiles();
    void fallback_data();
    void fallback();
    void defaultWithoutNameIsChecked();
    void percentInTheApplicationFolder();
    void unreadableCatalogue();
    void encodingsAreNamed_data();
    void encodingsAreNamed();
    void fallbackIsReported();
    void fileThatQtFindsIsReported();
    void missingTextsAreNamed();
    void realNamesAreNotGarbled();
    void namesOfLanguagesAreRestored_data();
    void namesOfLanguagesAreRestored();
    void languagesOfFilesAreCompared_data();
    void languagesOfFilesAreCompared();
    void namesShowWhatIsWrong_data();
    void namesShowWhatIsWrong();
    void englishNameMeansEnglishTexts();
    void tagsAreHtmlInSomeTexts();
    void transferredFilesAreOneFinding();
    void clippedTextIsMeasured();
    void clippedNameIsMeasured();
    void heightIsMeasured();
    void textsFitTheCatalogue_data();
    void textsFitTheCatalogue();
    void effectsDependOnTheFallback_data();
    void effectsDependOnTheFallback();
    void mergedFindingsNameAllLanguages();
    void missingFallbackIsNotReplacedByItself();
    void hiddenLanguagesAndUnusedFoldersAreListed();
    void invisibleCharactersAreShown();
    void wideTitlesAreMeasured();
    void existingFolderMayHaveAnyName();
    void variantMayHaveTheSameTexts();
    void textsNameEffectAndRemedy();
    void pageListsEveryFinding();

private:
    static QPair<int, int> measured(const char *pattern);
};

void tst_langcheck_checks::cleanDeploymentHasNoFindings()
{
    const Report report = check();
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

void tst_langcheck_checks::catalogueLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("finding");

    const auto row = [](const char *name, const QByteArray &bytes, const char *finding) {
        QTest::newRow(name) << bytes
                            << (finding ? QStringLiteral("Lang/Lang.ini:") + QLatin1String(finding)
                                        : QString());
    };
    const auto utf16 = [](const QByteArray &text) {
        return Deployment::utf16(QChar(QChar::ByteOrderMark) + QString::fromLatin1(text));
    };
    const QByteArray good = kCatalogue;
    const auto name = [](const char *text) {
        return catalogueWith("=Two", QByteArray("=") + text);
    };
    const auto folder = [](const char *text) {
        return catalogueWith("=second", QByteArray("=") + text);
    };

    row("key before the section", "LANG3_SHOW=1\n" + good, "1 error outside-section");
    row("keys in another section", good + "[OTHER]\nx=1\nLANG3_SHOW=1\nLANG3_NAME=x\n",
        "11 error outside-section");
    row("no equals sign", good + "LANG1_SHOW\n", "9 warning no-key");
    row("no key", good + "=1\n", "9 warning no-key");
    row("unknown key", good + "LANG1_ICON=x\n", "9 warning unknown-key");
    row("key in lower case", good + "lang1_show=1\n", "9 warning key-case");
    row("DEFAULT in lower case", good + "Default=1\n", "9 warning key-case");
    row("header in lower case", good + "[lang_mgr]\n", "9 warning header");
    row("header with spaces", good + "[ LANG_MGR ]\n", "9 warning header");
    row("header without closing bracket", "[LANG_MGR\n" + good, "1 warning header");
    row("carriage return without line feed", good + "; one\r; two\n", "9 warning carriage-return");
    row("repeated key", good + "LANG2_NAME=Other\n", "9 warning repeated-key");
    row("repeated DEFAULT", good + "DEFAULT=2\n", "9 warning repeated-key");
    row("two repeated keys of one language", good + "LANG2_NAME=Two\nLANG2_SHOW=1\n",
        "9 warning repeated-key\nLang/Lang.ini:10 warning repeated-key");
    row("two languages with one number",
        good + "LANG2_NAME=Three\nLANG2_FOLDER=chs\nLANG2_SHOW=1\n", "9 error repeated-language");
    row("two folders with one number", good + "LANG2_NAME=Two\nLANG2_FOLDER=chs\n",
        "10 error repeated-language");
    row("an empty name before", good + "LANG3_NAME=\nLANG3_SHOW=0\nLANG3_NAME=x\nLANG3_SHOW=0\n",
        "11 warning repeated-key\nLang/Lang.ini:12 warning repeated-key");
    row("two hidden languages with one number",
        good + "LANG3_NAME=x\nLANG3_SHOW=0\nLANG3_NAME=y\nLANG3_SHOW=0\n",
        "11 warning repeated-language");
    row("SHOW is a word", good + "LANG3_SHOW=yes\n", "9 error show-number");
    row("SHOW is empty", good + "LANG3_SHOW=\n", "9 error show-number");
    row("SHOW is neither 0 nor 1", good + "LANG3_SHOW=2\n", "9 error show-other");
    row("number too long", good + "LANG99999999999_SHOW=0\n", "9 error number-too-long");
    row("ID differs", good + "LANG1_ID=7\n", "9 warning id-differs");
    row("ID is a word", good + "LANG1_ID=one\n", "9 warning id-differs");
    row("number above 255", catalogueWith("LANG2", "LANG300"), "6 error number-above-255");
    row("numbers with the same low byte", catalogueWith("LANG2", "LANG257"),
        "6 error same-machine-number");
    row("no DEFAULT", catalogueWith("DEFAULT=1", ";"), "0 error default-missing");
    row("DEFAULT is unknown", catalogueWith("DEFAULT=1", "DEFAULT=5"), "2 error default-unknown");
    row("DEFAULT is hidden", catalogueWith("LANG1_SHOW=1", "LANG1_SHOW=0"),
        "2 error default-hidden");
    row("DEFAULT is a word", catalogueWith("LANG1_", "LANG0_").replace("DEFAULT=1", "DEFAULT=One"),
        "2 warning default-number");
    row("no name", good + "LANG3_FOLDER=first\nLANG3_SHOW=1\n", "10 error incomplete");
    row("no folder", good + "LANG3_NAME=x\nLANG3_SHOW=1\n", "10 error incomplete");
    row("empty folder", good + "LANG3_NAME=x\nLANG3_FOLDER=\nLANG3_SHOW=1\n",
        "10 error incomplete");
    row("empty name", good + "LANG3_NAME=\nLANG3_FOLDER=x\nLANG3_SHOW=1\n", "9 error incomplete");
    row("neither name nor folder", good + "LANG3_NAME=\nLANG3_SHOW=1\n",
        "9 error incomplete\nLang/Lang.ini:10 error incomplete");
    row("same name", name("One"), "6 error same-name");
    row("same folder", folder("first"), "7 error same-folder");
    row("same folder, spelled differently", folder("../Lang/first"),
        "7 error same-folder\nLang/Lang.ini:7 warning folder-dots");
#ifdef Q_OS_WIN
    row("same folder in upper case", folder("FIRST"),
        "7 error same-folder\nLang/Lang.ini:7 warning folder-case");
    row("folder in upper case", folder("SECOND"), "7 warning folder-case");
#else
    row("folder in upper case", folder("SECOND"), "7 error folder-case");
#endif
    row("name too wide", name("A language with a name that no list can hold"),
        "6 error name-clipped");
    row("UTF-8 without a BOM", name("中文"), "0 error utf8-without-bom");
    row("UTF-8 without a BOM, in a comment", good + "; 中文\n", "0 warning utf8-without-bom");
    row("UTF-16 without a BOM", Deployment::utf16(QString::fromLatin1(good)),
        "0 error utf16-without-bom");
    row("invalid GB2312", name("\xB0 0"), "6 error undecodable");
    row("lost letters", name("Fran?ais"), "6 error lost-letters");
    row("lost letters, reported as invalid", name("Espa\xF1ol?"), "6 error undecodable");
    row("lost letters with a BOM", kUtf8Bom + name("Fran?ais"), "6 error lost-letters");
    row("replacement character",
        kUtf8Bom
            + name("Fran\xEF\xBF\xBD"
                   "ais"),
        "6 error lost-letters");
    row("replacement character, in a comment and invalid",
        kUtf8Bom + name("\xE4 x") + ";\xEF\xBF\xBD\n", "6 error undecodable");
    row("UTF-8 read as Windows-1252", kUtf8Bom + name("FranÃ§ais"), "6 error garbled-name");
    row("Japanese read as Windows-1252", kUtf8Bom + name("æ—¥æœ¬èªž"), "6 error garbled-name");
    row("Russian read as Windows-1252, with controls",
        kUtf8Bom + name("Ð\u00A0ÑƒÑ\u0081Ñ\u0081ÐºÐ¸Ð¹"), "6 error garbled-name");
    row("hidden name read as Windows-1252",
        kUtf8Bom + good + "LANG3_NAME=FranÃ§ais\nLANG3_SHOW=0\n", "9 warning garbled-name");
    row("folder with dots", folder("../Lang/second"), "7 warning folder-dots");
    row("folder with dots and backslashes", good + "LANG3_FOLDER=..\\second\nLANG3_SHOW=0\n",
        "9 warning folder-dots");
    row("absolute folder", folder("/second"), "7 warning folder-absolute");
    row("folder with a drive letter", good + "LANG3_FOLDER=C:\\second\nLANG3_SHOW=0\n",
        "9 warning folder-absolute");
    row("folder with a percent sign and a digit", good + "LANG3_FOLDER=%L1\nLANG3_SHOW=0\n",
        "9 warning folder-percent");
    row("folder with a percent sign", good + "LANG3_FOLDER=100%\nLANG3_SHOW=0\n", nullptr);
    row("folder does not exist", folder("none"), "7 error folder-missing");
    row("folder of the default does not exist, no name",
        catalogueWith("=first", "=none").replace("LANG1_NAME=One\n", ""),
        "3 error folder-missing\nLang/Lang.ini:4 error incomplete");
    row("Cyrillic folder does not exist", kUtf8Bom + folder("sec\u043End"),
        "7 error folder-missing");
    row("no languages", "[LANG_MGR]\nDEFAULT=1\n", "0 error no-languages");
    row("no section", "DEFAULT=1\n", "1 error no-section");
    row("empty file", "", "0 error catalogue-empty");
    row("carriage returns as line ends", QByteArray(good).replace('\n', '\r'),
        "1 error carriage-return");
    row("language without SHOW", good + "LANG3_NAME=x\nLANG3_FOLDER=first\n",
        "9 warning show-missing");
    row("quoted name", name("\"Two\""), "6 error quoted-value");
    row("comment after a name", name("Two ; 2"), "6 error comment-in-value");
    row("header with a comment", good + "[OTHER]\n[LANG_MGR] ; again\n", "10 warning header");
    row("second BOM", "\xEF\xBB\xBF\xEF\xBB\xBF" + good, "1 error second-bom");
    row("lead byte before a line feed", good + ";\xD6\n;\n", "9 error swallowed-line");
    row("UTF-8 character before a line feed", good + ";\xE4\xB8\xAD\n;\n;\n=\n",
        "0 error utf8-without-bom\nLang/Lang.ini:12 warning no-key");
    row("Latin-1", name("Espa\xF1ol"), "6 error undecodable");
    row("GBK", name("\xB7\xB1\xF3\x77"), "6 error undecodable");
    row("Latin-1 in a comment", good + "; Espa\xF1ol\n", "9 warning undecodable");
    row("invalid UTF-8 in a comment", kUtf8Bom + good + "; \xE4 x\n", "9 warning undecodable");
    row("invalid UTF-8 with a BOM", kUtf8Bom + name("\xE4 x"), "6 error undecodable");

    // What a power failure, another program or another format leaves
    row("zero bytes in the middle of a key",
        good.left(good.indexOf("LANG2_FOLDER") + 9) + QByteArray(60, '\0'), "0 error zero-tail");
    const QByteArray utf32 =
        QTextCodec::codecForName("UTF-32LE")
            ->fromUnicode(QChar(QChar::ByteOrderMark) + QString::fromLatin1(good));
    row("UTF-32",
        utf32.startsWith(QByteArray("\xFF\xFE\0\0", 4)) ? utf32
                                                        : QByteArray("\xFF\xFE\0\0", 4) + utf32,
        nullptr);
    row("zero bytes at the end", good + QByteArray(60, '\0'), "0 warning zero-tail");
    row("zero bytes in the last line", good.chopped(1) + QByteArray(60, '\0'), "0 error zero-tail");
    row("zero bytes at the end of UTF-16", utf16(good) + QByteArray(60, '\0'),
        "0 warning zero-tail");
    row("zero bytes only", QByteArray(500, '\0'), "0 error catalogue-not-text");
    row("Rich Text", "{\\rtf1\\ansi [LANG_MGR]\\par\n}", "0 error catalogue-not-text");
    row("control characters", QByteArray("\x7F\x45\x4C\x46\x02\x01\x01\n").repeated(50),
        "0 error catalogue-not-text");
    row("odd byte", utf16(good) + "\n", "0 warning odd-byte");
    row("line in 8 bits behind UTF-16", utf16(good) + "LANG3_NAME=x\r\n", "9 error appended-bytes");
    row("lone surrogate",
        utf16(catalogueWith("=Two", "=T*")).replace(QByteArray("*\0", 2), "\x01\xD8"),
        "6 error half-character");
    row("name in GB2312", name("\xD6\xD0\xCE\xC4"), "6 warning no-bom");
    row("name in GB2312, in a comment", good + "; \xD6\xD0\n", nullptr);

    // One cause, one finding
    for (const char *const header :
         {"[LANGMGR]", "[LANG MGR]", "[[LANG_MGR]]", "LANG_MGR", "(LANG_MGR)", "[General]",
          "[Lang_Mgr]", "[LANG_MGR", "\xEF\xBC\xBBLANG_MGR\xEF\xBC\xBD"}) {
        row(header, kUtf8Bom + catalogueWith("[LANG_MGR]", header), "1 error header");
    }
    row("DEFAULT of somebody else", good + "[HOST]\nDEFAULT=5\n", nullptr);
    row("DEFAULT in another section", catalogueWith("DEFAULT=1\n", "") + "[HOST]\nDEFAULT=1\n",
        "9 error outside-section");
    row("name before the section", "LANG2_NAME=Two\n" + catalogueWith("LANG2_NAME=Two\n", ""),
        "1 error outside-section");
    row("backup and another language in another section",
        good + "[OLD]\nLANG2_NAME=x\nLANG3_SHOW=1\n",
        "11 error outside-section\nLang/Lang.ini:10 warning outside-section");
    row("keys in three other sections",
        good + "[A]\nLANG3_SHOW=0\n[B]\nLANG4_SHOW=0\n[C]\nLANG5_SHOW=0\n",
        "10 error outside-section\nLang/Lang.ini:12 error outside-section\n"
        "Lang/Lang.ini:14 error outside-section");
    row("merge conflict",
        catalogueWith("LANG2_NAME=Two\n",
                      "<<<<<<< a\nLANG2_NAME=Two\n||||||| b\nLANG2_NAME=Too\n=======\n"
                      "LANG2_NAME=Deux\n>>>>>>> c\n"),
        "6 error no-key");
    row("repeated key after a merge conflict",
        good + "<<<<<<< a\nLANG3_SHOW=0\n=======\n>>>>>>> b\nLANG3_SHOW=0\n",
        "9 error no-key\nLang/Lang.ini:13 warning repeated-key");
    row("no line with a known key",
        QByteArray(good).replace("LANG1_", "LANGUAGE1_").replace("LANG2_", "LANGUAGE2_"),
        "3 error unknown-key");
    row("another program's keys", "[LANG_MGR]\nDEFAULT=1\nPORT=5\n",
        "0 error no-languages\nLang/Lang.ini:3 warning unknown-key");
    row("commas at the ends",
        QByteArray(good)
                .replace("1\n", "1,,\n")
                .replace("DEFAULT=1,,", "DEFAULT=1")
                .replace("=Two", "=Two,,")
            + "LANG1_ID=1,,\n",
        "5 error comment-in-value");
    row("cut-off line", good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SH", "11 error no-key");
    row("cut-off name", catalogueWith("LANG2_NAME=Two", "LANG2_N"), "6 error no-key");
    row("misspelt default and three others",
        QByteArray(good)
            .replace("DEFAULT", "DEFUALT")
            .replace("_SHOW", "_SHWO")
            .replace("LANG1_NAME", "LANG1_NANE"),
        "2 error unknown-key");
    row("quoted mail without a header",
        QByteArray(kCatalogue).replace("[LANG_MGR]\nDEFAULT=1", ";").replace("LANG", "> LANG"),
        "2 error no-section");
    row("colons below another line",
        QByteArray(kCatalogue).replace("[LANG_MGR]", "[LANG_MGR]\nx").replace('=', ':'),
        "3 error no-key\nLang/Lang.ini:2 warning no-key");
    row("keys of somebody else", good + "[HOST]\nPORT=5\nDEFAULT_FONT=Arial\nDEFAULT=Arial\n",
        nullptr);
    row("another program's file", "[HOST]\nPORT=5\n", "0 error catalogue-foreign");
    row("section with another header", good + "[Lang_Mgr]\nLANG3_SHOW=1\n", "9 error header");
    row("comments only", "; x\n# y\n", "0 error catalogue-empty");
    row("all keys in lower case", QByteArray(good).toLower().replace("[lang_mgr]", "[LANG_MGR]"),
        "2 error key-case");
    row("colons", QByteArray(good).replace('=', ':'), "2 error no-key");
    row("three unknown keys", good + "A=1\nB=1\nC=1\n", "9 warning unknown-key");
    row("misspelt NAME", catalogueWith("LANG2_NAME", "LANG2_NANE"), "6 error unknown-key");
    row("misspelt FOLDER", catalogueWith("LANG2_FOLDER", "LANG2_FODLER"), "7 error unknown-key");
    row("misspelt SHOW", catalogueWith("LANG2_SHOW", "LANG2SHOW"), "8 error unknown-key");
    row("misspelt DEFAULT", catalogueWith("DEFAULT", "DEFUALT"), "2 error unknown-key");
    row("commented out", catalogueWith("LANG2_SHOW", "// LANG2_SHOW"), "8 error unknown-key");
    row("full-width digit", kUtf8Bom + catalogueWith("LANG2_NAME", "LANG\xEF\xBC\x92_NAME"),
        "6 error unknown-key");
    row("full-width equals sign", kUtf8Bom + catalogueWith("LANG2_NAME=", "LANG2_NAME\xEF\xBC\x9D"),
        "6 error no-key");
    row("number too long", catalogueWith("LANG2_", "LANG99999999999_"), "6 error number-too-long");
    row("number above 255 with an ID", catalogueWith("LANG2_", "LANG300_") + "LANG300_ID=2\n",
        "6 error number-above-255");
    row("DEFAULT is the letter O", catalogueWith("DEFAULT=1", "DEFAULT=O2"),
        "2 error default-number");
    row("quoted folder", folder("\"second\""), "7 error quoted-value");
    row("folder with a comment", folder("second  # 2"), "7 error comment-in-value");
    row("full path", folder("C:\\Lang\\second"), "7 error folder-absolute");
    row("folder with dots that isn't found", folder("..\\second"), "7 error folder-dots");
    row("percent sign with a digit", folder("%1"), "7 error folder-percent");
    row("two names with lost letters", name("??").replace("=One", "=??"),
        "3 error lost-letters\nLang/Lang.ini:6 error lost-letters");

    row("empty folder of the default", catalogueWith("=first", "="), "4 error incomplete");
    row("same folder, of which the first is wrong",
        catalogueWith("=One", "=Deutsch").replace("=first", "=second"), "4 error same-folder");
    row("lost language", QByteArray(good).replace("LANG2", "> LANG2"),
        "6 error unknown-key\nLang/Lang.ini:7 warning unknown-key\n"
        "Lang/Lang.ini:8 warning unknown-key");
    row("incomplete language with a number too long", good + "LANG99999999999_SHOW=1\n",
        "9 error number-too-long");
    // Values
    for (const char *const value : {"yes", "true", "1.0", "Ja", "\xEF\xBC\x91", "1\xE2\x80\x8B"})
        row(value, kUtf8Bom + good + "LANG3_SHOW=" + value, "9 error show-number");
    row("SHOW=no", good + "LANG3_SHOW=no", "9 warning show-number");
    for (const char *const value : {"Two\t; 2", "Two\t;2", "Two; 2", "Two // 2", "Two;;;", "Two,"})
        row(value, name(value), "6 error comment-in-value");
    for (const char *const value : {"\xE2\x80\x9ETwo\xE2\x80\x9C", "\xE2\x80\x9CTwo\xE2\x80\x9D",
                                    "'Two'", "\xE2\x80\x98Two\xE2\x80\x99"}) {
        row(value, kUtf8Bom + name(value), "6 error quoted-value");
    }
    for (const char *const value : {"C# and C", "A;B", "Two (2)", "O'Two"})
        row(value, name(value), nullptr);
    row("invisible name", kUtf8Bom + name("\xE2\x80\x8B"), "6 error name-invisible");
    row("right-to-left override",
        kUtf8Bom + name((QString(QChar(0x202E)) + QLatin1String("Two")).toUtf8().constData()),
        "6 error name-invisible");
}

void tst_langcheck_checks::catalogueLines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, finding);

    Deployment::writeCatalogue(bytes);
    const Report report = check();
    QCOMPARE(shortForms(report), finding);
    const bool error = finding.contains(QLatin1String("error"));
    QCOMPARE(report.exitCode(), finding.isEmpty() ? 0 : error ? 2 : 1);
}

/// A single zero byte doesn't make a file UTF-16, so the rest is checked as usual.
void tst_langcheck_checks::zeroBytesDoNotHideTheRest()
{
    Deployment::writeCatalogue(kCatalogue + QByteArray("; \0\nLANG1_ICON=x\n", 17));
    QCOMPARE(shortForms(check()), QStringLiteral("Lang/Lang.ini:10 warning unknown-key"));
}

void tst_langcheck_checks::translationFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("findings");

    const auto row = [](const char *name, const QByteArray &bytes, const char *id, int count = 1) {
        const QString line = QStringLiteral("Lang/second/Zendel.qm:0 error %1\n");
        QTest::newRow(name) << bytes << line.arg(QLatin1String(id)).repeated(count).chopped(1);
    };
    const auto translation = [](const char *name) {
        QFile compiled(QStringLiteral(":/translations/%1.qm").arg(QLatin1String(name)));
        if (!compiled.open(QIODevice::ReadOnly))
            qFatal("No test translation %s", name);
        return compiled.readAll();
    };
    row("missing", QByteArray(), "qm-missing");
    row("unreadable", "folder", "qm-unreadable");
    row("not a translation", "not a translation", "qm-foreign");
    const QByteArray source = "<!DOCTYPE TS>\n<TS version=\"2.1\" language=\"de\">\n<context>";
    row("source", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + source, "qm-source");
    row("source with a BOM", kUtf8Bom + source, "qm-source");
    row("other XML", "<xliff version=\"1.2\"></xliff>", "qm-foreign");
    row("empty", "empty", "qm-damaged");
    row("cut off in the magic number", translation("first").left(10), "qm-damaged");
    row("cut off", translation("first").left(100), "qm-damaged");
    row("cut off by a byte", translation("first").chopped(1), "qm-damaged");
    row("damaged", translation("first").left(17) + "\xFF\xFF" + translation("first").mid(19),
        "qm-damaged");
    row("zeros at its end", translation("first").chopped(20) + QByteArray(20, '\0'), "qm-damaged");
    row("saved by a text editor", "<\xEF\xBF\xBD" + translation("first").mid(2), "qm-damaged");
    row("another program's", translation("other_program"), "qm-foreign");
    row("one of eight texts", translation("one_text"), "text-missing");
    row("too long", translation("long_texts"), "text-clipped");
}

void tst_langcheck_checks::translationFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, findings);

    const QString file = Deployment::path(QStringLiteral("Lang/second/Zendel.qm"));
    QVERIFY(QFile::remove(file));
    if (bytes == "folder")
        QVERIFY(QDir().mkpath(file));
    else if (bytes == "empty")
        Deployment::writeTranslation(QStringLiteral("second"), QByteArray());
    else if (!bytes.isEmpty())
        Deployment::writeTranslation(QStringLiteral("second"), bytes);
    QCOMPARE(shortForms(check()), findings);
}

void tst_langcheck_checks::fallback_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("finding");

    const QByteArray good = kCatalogue;
    QByteArray unused = good;
    unused.replace("DEFAULT=1", "DEFAULT=2").replace("=second", "=none");
    QTest::newRow("missing, not needed")
        << good << QByteArray() << QStringLiteral("Lang/chs/Zendel.qm:0 warning qm-missing");
    QTest::newRow("foreign, not needed")
        << good << QByteArray("x") << QStringLiteral("Lang/chs/Zendel.qm:0 warning qm-foreign");
    QTest::newRow("missing, needed") << unused << QByteArray()
                                     << QStringLiteral("Lang/Lang.ini:7 error folder-missing\n"
                                                       "Lang/chs/Zendel.qm:0 error qm-missing");
    QTest::newRow("foreign, needed") << unused << QByteArray("x")
                                     << QStringLiteral("Lang/Lang.ini:7 error folder-missing\n"
                                                       "Lang/chs/Zendel.qm:0 error qm-foreign");
}

void tst_langcheck_checks::fallback()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, finding);

    Deployment::writeCatalogue(catalogue);
    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang/chs"))).removeRecursively());
    if (!bytes.isEmpty())
        Deployment::writeTranslation(QStringLiteral("chs"), bytes);
    QCOMPARE(shortForms(check()), finding);
}

/// The dialog uses its translation although the list doesn't contain it.
void tst_langcheck_checks::defaultWithoutNameIsChecked()
{
    Deployment::writeCatalogue(catalogueWith("LANG1_NAME=One", ""));
    Deployment::writeTranslation(QStringLiteral("first"), "x");
    QCOMPARE(shortForms(check()),
             QStringLiteral("Lang/Lang.ini:5 error incomplete\n"
                            "Lang/first/Zendel.qm:0 error qm-foreign"));
}

void tst_langcheck_checks::percentInTheApplicationFolder()
{
    const QString folder = Deployment::path(QStringLiteral("Lang/a%2b"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/Lang")));
    QVERIFY(QFile::rename(Deployment::path(QStringLiteral("Lang/Lang.ini")),
                          folder + QStringLiteral("/Lang/Lang.ini")));
    QCOMPARE(shortForms(checkDeployment(folder)), QStringLiteral(".:0 error application-folder"));
}

void tst_langcheck_checks::unreadableCatalogue()
{
    const QString catalogue = Deployment::path(QStringLiteral("Lang/Lang.ini"));
    QVERIFY(QFile::remove(catalogue));
    QVERIFY(QDir().mkpath(catalogue));
    QCOMPARE(shortForms(check()), QStringLiteral("Lang/Lang.ini:0 error catalogue-unreadable"));
}

void tst_langcheck_checks::encodingsAreNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *name, const QByteArray &bytes, const char *encoding,
                        const char *reason) {
        QTest::newRow(name) << bytes << QString::fromLatin1(encoding)
                            << QString::fromLatin1(reason);
    };
    const QByteArray good = kCatalogue;
    const QChar bom(QChar::ByteOrderMark);
    const QString withBom = bom + QString::fromLatin1(good);
    row("GB2312", good, "GB2312", "it has no BOM");
    row("UTF-8", kUtf8Bom + good, "UTF-8", "it starts with the BOM EF BB BF");
    row("UTF-16LE", Deployment::utf16(withBom), "UTF-16LE", "it starts with the BOM FF FE");
    row("UTF-16LE with two BOMs, both skipped", Deployment::utf16(bom + withBom), "UTF-16LE",
        "it starts with the BOM FF FE");
    row("UTF-16BE", Deployment::utf16(withBom, false), "UTF-16BE", "it starts with the BOM FE FF");
}

void tst_langcheck_checks::encodingsAreNamed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, encoding);
    QFETCH(QString, reason);

    Deployment::writeCatalogue(bytes);
    const Report report = check();
    QCOMPARE(report.encoding, encoding);
    QCOMPARE(report.encodingReason, reason);
    QCOMPARE(report.listed.size(), 2);
    QCOMPARE(shortForms(report), QString());
}

void tst_langcheck_checks::fallbackIsReported()
{
    Deployment::writeCatalogue(catalogueWith("DEFAULT=1", "DEFAULT=9"));
    const Report report = check();
    QCOMPARE(report.translation, Deployment::path(QStringLiteral("Lang/chs/Zendel.qm")));
    QVERIFY(report.fallback);
    QCOMPARE(report.defaultLangId, 9);
    QCOMPARE(report.selected, 0);
}

void tst_langcheck_checks::fileThatQtFindsIsReported()
{
    const QString file = Deployment::path(QStringLiteral("Lang/first/Zendel.qm"));
    QVERIFY(QFile::copy(file, file + QStringLiteral(".qm")));
    QCOMPARE(check().translation, file + QStringLiteral(".qm"));
}

void tst_langcheck_checks::missingTextsAreNamed()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("one_text"));
    QStringList expected;
    for (const SourceText &text : kSourceTexts) {
        if (qstrcmp(text.text, "Change") != 0)
            expected += QStringLiteral("\"%1\" in the context %2")
                            .arg(QLatin1String(text.text), QLatin1String(text.context));
    }
    QCOMPARE(expected.size(), 7);
    QCOMPARE(
        check().findings.first().problem(),
        QStringLiteral("the texts %1 aren't translated").arg(expected.join(QStringLiteral(", "))));
}

/// Those of the sample deployment, and all that Qt knows.
void tst_langcheck_checks::realNamesAreNotGarbled()
{
    QFile sample(testFile(QStringLiteral(SAMPLE_FILE)));
    QVERIFY(sample.open(QIODevice::ReadOnly));
    QTextStream in(&sample);
    in.setCodec("UTF-16LE");
    QStringList names;
    QString line;
    while (in.readLineInto(&line)) {
        if (line.contains(QRegularExpression(QStringLiteral("^LANG\\d+_NAME="))))
            names += line.section(QLatin1Char('='), 1);
    }
    QCOMPARE(names.size(), 22);
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QLocale &locale : locales)
        names += locale.nativeLanguageName();
    names.removeDuplicates();
    names.removeAll(QString());
    // Bytes that may be UTF-8, and codes that aren't any
    for (const char *const name :
         {"TLAČ…", "CAUTĂ…", "MENÜ…", "SZCZEGÓŁY", "CZĘŚCI", "TÉŽ", "VÝŠKA", "ORĂŞEL", "НІ",
          "Deutsch=DE", "Deutsch=DE=AA", "Deutsch 100%AB", "3D"})
        names += QString::fromUtf8(name);
    QVERIFY2(names.size() > 200, qPrintable(QString::number(names.size())));

    QString lines;
    for (int i = 0; i < names.size(); ++i)
        lines += QStringLiteral("LANG%1_NAME=%2\nLANG%1_SHOW=0\n").arg(i + 10).arg(names.at(i));
    Deployment::writeCatalogue(kUtf8Bom + kCatalogue + lines.toUtf8());
    QCOMPARE(shortForms(check()), QString());
}

void tst_langcheck_checks::namesOfLanguagesAreRestored_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("meant");
    QTest::addColumn<QString>("how"); // Empty for codes
    const auto row = [](const char *name, const char *meant, const char *how = "") {
        QTest::newRow(name) << QString::fromUtf8(name) << QString::fromUtf8(meant)
                            << QString::fromLatin1(how);
    };
    row("─îe┼ítina", "Čeština", "UTF-8 that was read as IBM850");
    row("Tiß║┐ng Viß╗çt", "Tiếng Việt", "UTF-8 that was read as IBM850");
    row("ÄŚeĹˇtina", "Čeština", "UTF-8 that was read as Windows-1250");
    row("Р\u00A0СѓСЃСЃРєРёР№", "Русский", "UTF-8 that was read as Windows-1251");
    row("à¹„à¸—à¸¢", "ไทย", "UTF-8 that was read as Windows-1252");
    row("FranÃƒÂ§ais", "Français", "UTF-8 that was read as Windows-1252, twice");
    row("Èeština", "Čeština", "Windows-1250 that was read as Windows-1252");
    row("Fran‡ais", "Français", "IBM850 that was read as Windows-1252");
    row("Franзais", "Français", "Windows-1252 that was read as Windows-1251");
    row("Ðóññêèé", "Русский", "Windows-1251 that was read as Windows-1252");
    row("Fran鏰is", "Français", "Windows-1252 that was read as GBK");
    row("“ú–{Œê", "日本語", "Shift-JIS that was read as Windows-1252");
    row("Portugu\\352s (Brasil)", "Português (Brasil)");
    row("Fran\\xe7ais", "Français");
    row("Fran%E7ais", "Français");
    row("&#26085;&#26412;&#35486;", "日本語");
    row("3DEspa=C3=B1ol", "Español");
    row("3DItaliano", "Italiano");
    row("Magyar&nbsp;", "Magyar");
}

void tst_langcheck_checks::namesOfLanguagesAreRestored()
{
    QFETCH(QString, name);
    QFETCH(QString, meant);
    QFETCH(QString, how);
    const QString line = QStringLiteral("LANG3_NAME=%1\nLANG3_SHOW=0\n").arg(name);
    Deployment::writeCatalogue(kUtf8Bom + kCatalogue + line.toUtf8());
    const Report report = check();
    QCOMPARE(shortForms(report),
             QString::fromLatin1("Lang/Lang.ini:9 warning ")
                 + QLatin1String(how.isEmpty() ? "escaped-name" : "garbled-name"));
    const QString remedy = QStringLiteral("write LANG3_NAME=") + meant;
    const QString rest =
        QStringLiteral(", correct any other wrong names, and save the file as \"UTF-8 "
                       "with BOM\"");
    QCOMPARE(report.findings.first().remedy(), how.isEmpty() ? remedy : remedy + rest);
    QVERIFY(report.findings.first().problem().contains(how));
}

void tst_langcheck_checks::languagesOfFilesAreCompared_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("warned"); // Folders
    QTest::addColumn<QString>("text");   // The end of the only finding's text

    const auto row = [](const char *name, const Files &files, const char *warned,
                        const char *text = "") {
        QTest::newRow(name) << files << QString::fromLatin1(warned) << QString::fromLatin1(text);
    };
    row("right", {{"es", "es"}, {"pt", "pt_BR"}}, "");
    row("swapped", {{"es", "pt_BR"}, {"pt", "es"}}, "es",
        "the translation is for pt_BR, the language of the folder pt, and not for es; an operator "
        "who selects \"Language es\" probably sees texts in another language; swap it with "
        "Lang/pt/Zendel.qm, which is for es, or, if the texts are right, set language=\"es\" in "
        "the .ts file and compile it again");
    row("copied", {{"es", "pt_BR"}, {"pt", "pt_BR"}}, "es",
        "; replace it with the translation for es, or, if the texts are right, set "
        "language=\"es\" in the .ts file and compile it again");
    row("one Chinese for the other", {{"chs", "zh_TW"}, {"cht", "zh_CN"}}, "chs",
        "; swap it with Lang/cht/Zendel.qm, which is for zh_CN, or, if the texts are right, set "
        "language=\"zh_CN\" in the .ts file and compile it again");
    row("three in a circle", {{"es", "pt"}, {"fr", "es"}, {"pt", "fr"}}, "es fr pt");
    row("with countries", {{"pt_BR", "pt_PT"}, {"pt_PT", "pt_BR"}}, "pt_BR");
    row("with hyphens", {{"pt-BR", "es_ES"}, {"es-ES", "pt_BR"}}, "pt-BR");
    row("in upper case", {{"ES", "pt_BR"}, {"PT", "es"}}, "ES");
    row("the other Chinese alone", {{"cht", "zh_CN"}, {"de", "de"}}, "cht",
        "the translation is for zh_CN, and not for cht; an operator who selects \"Language cht\" "
        "probably sees texts in another language; replace it with the translation for cht, or, if "
        "the texts are right, set language=\"zh_TW\" in the .ts file and compile it again");
    row("Chinese", {{"chs", "zh_CN"}, {"cht", "zh_TW"}, {"zh", "zh_CN"}}, "");
    row("other country", {{"pt", "pt_PT"}, {"es", "es_MX"}}, "");
    row("nobody's language", {{"es", "pt_BR"}, {"fr", "fr"}}, "");
    row("folders named for countries",
        {{"br", "pt_BR"}, {"pt", "pt_PT"}, {"se", "sv"}, {"sv", "sv"}}, "");
    row("folders with other names", {{"spanish", "pt"}, {"es_old", "pt"}, {"pt", "pt"}}, "");
    row("no language in the file", {{"es", ""}, {"pt", "pt"}}, "");
    row("no known language in the file", {{"es", "x-test"}, {"pt", "pt"}}, "");
}

void tst_langcheck_checks::languagesOfFilesAreCompared()
{
    QFETCH(Files, files);
    QFETCH(QString, warned);
    QFETCH(QString, text);

    installLanguages(files);
    QStringList found;
    const QList<Finding> findings = check().findings;
    for (const Finding &finding : findings) {
        QCOMPARE(finding.id(), QStringLiteral("qm-language"));
        QCOMPARE(finding.severity, Finding::Error);
        QVERIFY2(finding.text().endsWith(text), qPrintable(finding.text()));
        found += finding.file.section(QLatin1Char('/'), 1, 1);
    }
    QCOMPARE(found.join(QLatin1Char(' ')), warned);
}

void tst_langcheck_checks::namesShowWhatIsWrong_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("findings");

    QTest::newRow("files swapped")
        << Files {{"cs", "pl"}, {"pl", "cs"}}
        << QStringList {QStringLiteral("Čeština"), QStringLiteral("Polski")}
        << QStringLiteral("Lang/cs/Zendel.qm:0 error qm-language");
    QTest::newRow("a wrong file") << Files {{"ru", "el"}, {"de", "de"}}
                                  << QStringList {QStringLiteral("Русский"),
                                                  QStringLiteral("Deutsch")}
                                  << QStringLiteral("Lang/ru/Zendel.qm:0 error qm-language");
    QTest::newRow("only the folder differs")
        << Files {{"uk", "en_GB"}, {"en", "en_US"}}
        << QStringList {QStringLiteral("English (UK)"), QStringLiteral("English")} << QString();
}

void tst_langcheck_checks::namesShowWhatIsWrong()
{
    QFETCH(Files, files);
    QFETCH(QStringList, names);
    QFETCH(QString, findings);

    installLanguages(files, names);
    QCOMPARE(shortForms(check()), findings);
}

void tst_langcheck_checks::englishNameMeansEnglishTexts()
{
    Deployment::installTranslation(QStringLiteral("my"), QStringLiteral("english"));
    Deployment::writeCatalogue(
        QByteArray(catalogueWith("=second", "=my")).replace("=Two", "=English"));
    QCOMPARE(shortForms(check()), QString());
    Deployment::writeCatalogue(catalogueWith("=second", "=my"));
    QCOMPARE(shortForms(check()), QStringLiteral("Lang/my/Zendel.qm:0 error qm-english"));
}

/// The title of a message box isn't HTML, unlike its message.
void tst_langcheck_checks::tagsAreHtmlInSomeTexts()
{
    QFile file(QStringLiteral(":/translations/second.qm"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray second = file.readAll();
    const auto withTags = [&second](const char *text, const char *tags) {
        QByteArray from;
        QByteArray to;
        for (int i = 0; text[i] != '\0'; ++i) {
            from += QByteArray(1, '\0') + text[i];
            to += QByteArray(1, '\0') + tags[i];
        }
        QCOMPARE(second.count(from), 1);
        Deployment::writeTranslation(QStringLiteral("second"),
                                     QByteArray(second).replace(from, to));
    };
    withTags("2 Change failed!", "2 <b>failed!</b>");
    QCOMPARE(check().findings.value(0).effect(),
             QStringLiteral("Qt takes the text for HTML, and the operator doesn't see the tags"));
    withTags("2 Success", "2 <b>x<b>");
    QCOMPARE(check().findings.value(0).effect(), QStringLiteral("the operator sees the tags"));
}

void tst_langcheck_checks::transferredFilesAreOneFinding()
{
    for (const char *const name : {"first", "second"}) {
        QFile file(QStringLiteral(":/translations/%1.qm").arg(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        Deployment::writeTranslation(QLatin1String(name), file.readAll().replace("\n", "\r\n"));
    }
    const QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().severity, Finding::Error);
    QCOMPARE(findings.first().languages, QVector<int>({1, 2}));
    QCOMPARE(findings.first().problem(),
             QStringLiteral("the compiled translation is damaged: it was transferred in text mode, "
                            "as were those in second"));
}

/// Returns the size and the room that the text of the first finding names, which must match.
QPair<int, int> tst_langcheck_checks::measured(const char *pattern)
{
    const QString text = check().findings.value(0).text();
    const QRegularExpressionMatch match =
        QRegularExpression(QString::fromLatin1(pattern)
                           + QLatin1String(" needs (\\d+) pixels but has (\\d+); "))
            .match(text);
    const QPair<int, int> result(match.captured(1).toInt(), match.captured(2).toInt());
    QTest::qVerify(result.first > result.second, "size > room", qPrintable(text), __FILE__,
                   __LINE__);
    return result;
}

/// A letter is between 1 and 30 pixels wide.
void tst_langcheck_checks::clippedTextIsMeasured()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("long_texts"));
    const auto [width, room] =
        measured("^the text is too wide for the dialog: \"Change\" in the context PageSetLang is "
                 "translated as \"1 A word that is too long\", which");
    QVERIFY2(width < 24 * 30, qPrintable(QString::number(width)));
    // The button's width is 91 pixels.
    QVERIFY2(room > 60 && room <= 91, qPrintable(QString::number(room)));
}

void tst_langcheck_checks::clippedNameIsMeasured()
{
    Deployment::writeCatalogue(catalogueWith("=Two", "=" + QByteArray(50, 'W')));
    QVERIFY(measured("^LANG2_NAME is too wide for the operator's list: \"W{50}\"").second > 100);
}

/// As on a display whose scaling enlarges the fonts but not the dialog.
void tst_langcheck_checks::heightIsMeasured()
{
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPixelSize(50);
    QApplication::setFont(large);
    const auto [height, room] =
        measured("^LANG1_NAME is too tall for the operator's list: \"One\"");
    const QString text = check().findings.value(0).text();
    QApplication::setFont(usual);
    QVERIFY2(height < 70, qPrintable(QString::number(height)));
    QVERIFY2(room <= 31, qPrintable(QString::number(room))); // The list's height is 31 pixels.
    QVERIFY2(text.endsWith(QLatin1String("; part of it is cut off; reduce the display's "
                                         "scaling or its font size")),
             qPrintable(text));
}

/// Each row has the beginnings of the texts and the remedies.
void tst_langcheck_checks::textsFitTheCatalogue_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Texts>("texts");

    const auto row = [](const char *name, const QByteArray &bytes, const Texts &texts) {
        QTest::newRow(name) << bytes << texts;
    };
    const QByteArray good = kCatalogue;

    // Saving a file that was opened in a wrong encoding would damage all names.
    const QByteArray end = ", correct any names that have lost letters, and only then save it as "
                           "\"UTF-8 with BOM\"";
    const QByteArray utf8 = "open the file as UTF-8" + end;
    const QByteArray any = "open the file in the encoding in which all names look right" + end;
    row("UTF-8", catalogueWith("=Two", "=中文"), {{"", utf8}});
    row("UTF-8, swallowed line", good + ";\xE4\xB8\xAD\n;\n",
        {{"the file is UTF-8 without a BOM; it is read as GB2312, and all non-ASCII characters are "
          "wrong, and what follows line 9 is lost; ",
          utf8}});
    row("Latin-1", catalogueWith("=Two", "=Espa\xF1ol"), {{"", any}});
    row("swallowed line", good + ";\xD6\n;\n", {{"", any}});

    row("garbled name", kUtf8Bom + catalogueWith("=Two", "=æ—¥æœ¬èªž"),
        {{"",
          "write LANG2_NAME=日本語, correct any other wrong names, and save the file as \"UTF-8 "
          "with "
          "BOM\""}});
    row("names garbled in several ways",
        kUtf8Bom + good
            + "LANG3_NAME=FranÃ§ois\nLANG3_SHOW=0\nLANG4_NAME=Fran├ºois\nLANG4_SHOW=0\n"
              "LANG5_NAME=Fran‡ais\nLANG5_SHOW=0\n",
        {{"the names on lines 9, 11 and 13 look like texts that were read in wrong encodings; ",
          "write LANG3_NAME=François, LANG4_NAME=François, LANG5_NAME=Français, correct any other "
          "wrong names, and save the file as \"UTF-8 with BOM\""}});
    row("appended in 8 bits",
        Deployment::utf16(QChar(QChar::ByteOrderMark) + QString::fromLatin1(good))
            + "LANG3_ID=3\nLANG3_NAME=x\n",
        {{"the line was written in an 8-bit encoding into a UTF-16 file: \"LANG3_ID=3 "
          "LANG3_NAME=x\"; it is misread and ignored, and language 3 isn't offered; ",
          ""}});
    row("appended in UTF-16",
        kUtf8Bom + good
            + Deployment::utf16(QStringLiteral("LANG3_NAME=\u0395\nLANG3_FOLDER=hidden\n"
                                               "LANG3_SHOW=1\n")),
        {{"lines 9 to 12 were written in UTF-16 into a file in an 8-bit encoding; they are misread "
          "and ignored, and language 3 isn't offered; ",
          ""}});
    row("folder that looks like another",
        kUtf8Bom + catalogueWith("=second", "=\u0441s\U0001F600")
            + "LANG3_FOLDER=hidden\nLANG3_SHOW=0\n",
        {{"LANG2_FOLDER names a folder that doesn't exist in Lang: \"\u0441s\U0001F600\" (with "
          "U+0441, U+1F600); a dialog that needs the translation uses the fallback, "
          "Lang/chs/Zendel.qm; ",
          "write the name of an existing folder after LANG2_FOLDER=, such as one that no language "
          "uses (cs, second), or create the folder \"\u0441s\U0001F600\" (with U+0441, U+1F600) in "
          "Lang and put the compiled translation into it"}});
    row("repeated key", good + "LANG2_FOLDER=first\nLANG2_FOLDER=chs\n",
        {{"LANG2_FOLDER is set on line 7 to \"second\" and on line 9 to \"first\"; only the last "
          "one, on line 10, applies; ",
          ""},
         {"LANG2_FOLDER is set on line 9 to \"first\" and on line 10 to \"chs\"; ", ""}});
    row("repeated language",
        good + "LANG2_NAME=Three\nLANG2_FOLDER=chs\nLANG2_NAME=Four\nLANG2_FOLDER=chs\n",
        {{"more than one language has the number 2: \"Two\" on line 6, \"Three\" on line 9 and "
          "\"Four\" on line 11; only the last one applies, and the operator's list lacks "
          "\"Two\", \"Three\"; ",
          ""}});
    row("long value of two lines", good + "LANG3_SHOW=%1\r" + QByteArray(99, 'x'),
        {{"LANG3_SHOW isn't a number: \"%1 " + QByteArray(57, 'x') + "...\"; ", ""}, {"", ""}});

    row("two numbers above 255",
        catalogueWith("LANG2", "LANG257").replace("LANG1", "LANG513").replace("T=1", "T=513"),
        {{"",
          "use an unused number up to 255 in all keys of language 513, and in DEFAULT if it is the "
          "default"},
         {"", ""}});
    row("unknown keys",
        kUtf8Bom
            + QByteArray(kCatalogue).replace("LANG2", "LАNG2").replace("LANG1_NAME", "LANGl_NAME"),
        {{"the keys on lines 3 and 6 to 8 are unknown: \"LANGl_NAME\" and so on; they are "
          "ignored, "
          "and language 1 has no name and isn't offered; ",
          "write LANG1_NAME=One, LANG2_NAME=Two, LANG2_FOLDER=second, LANG2_SHOW=1"}});
    row("key in another script",
        kUtf8Bom + QByteArray(kCatalogue).replace("LANG", "LАNG").replace("[LА", "[LA"),
        {{"the keys on lines 3 to 8 are unknown: \"LАNG1_NAME\" (with U+0410) and so on; they are "
          "ignored, and the operator's list is empty; ",
          ""}});
    row("DEFAULT above the section", "DEFAULT=1\n" + catalogueWith("DEFAULT=1\n", ""),
        {{"line 1, with a key of the catalogue, is before the first section header and so outside "
          "the section [LANG_MGR]; it is ignored, and the dialog uses the fallback, ",
          "move it below [LANG_MGR]"}});
    row("commas in SHOW", QByteArray(good).replace("SHOW=1", "SHOW=1,,") + "LANG1_ID=1,,\n",
        {{"the values on lines 5, 8 and 9 have commas, semicolons or comments after them; these "
          "are part of the values, language 1 is hidden, and language 2 is hidden; ",
          ""}});
    row("merge conflict", good + "<<<<<<< a\nLANG3_SHOW=0\n=======\nLANG3_SHOW=0\n>>>>>>> b\n",
        {{"lines 9, 11 and 13 aren't keys with values: \"<<<<<<< a\" and so on; they are ignored, "
          "and of each key in both versions, only the later line applies; ",
          ""}});
    row("second catalogue", kUtf8Bom + good + kUtf8Bom + "[LANG_MGR]\nLANG3_SHOW=0\n",
        {{"the line contains a second BOM, because another catalogue was appended here; the line "
          "is wrong, and of each key in both catalogues, only the later line applies; ",
          "keep one of the two catalogues"}});
    row("language of another name twice",
        kUtf8Bom + good + "LANG2_NAME=Deutsch\nLANG2_FOLDER=second\nLANG2_SHOW=1\n",
        {{"more than one language has the number 2: \"Two\" on line 6 and \"Deutsch\" on line 9; ",
          ""}});
    row("a letter of another script", kUtf8Bom + catalogueWith("=Two", "=Тwо"),
        {{"LANG2_NAME mixes Latin letters (w) with others that look the same: \"Тwо\" (with "
          "U+0422, "
          "U+043E); ",
          "type the name again in one script"}});
    row("header", catalogueWith("[LANG_MGR]", "[LANGMGR]"),
        {{"the section header is \"[LANGMGR]\" instead of [LANG_MGR]; the 7 lines below it are "
          "ignored, and the operator's list is empty; ",
          ""}});
    row("free number as an ID", good + "LANG2_ID=7",
        {{"",
          "write LANG2_ID=2 or, to give the language the number 7, rename its keys to LANG7_ID, "
          "LANG7_NAME and so on"}});
    row("used number as an ID", good + "LANG2_ID=1",
        {{"",
          "write LANG2_ID=2 or, to give the language the number 1, rename its keys to LANG1_ID, "
          "LANG1_NAME and so on, and give the present language 1 another number"}});
    row("ID of the default", good + "LANG1_ID=7",
        {{"",
          "write LANG1_ID=1 or, to give the language the number 7, rename its keys to LANG7_ID, "
          "LANG7_NAME and so on, and write DEFAULT=7 to keep it the default"}});
    for (const char *const id : {"256", "-1", "two"})
        row(id, good + "LANG2_ID=" + id, {{"", "write LANG2_ID=2"}});
}

void tst_langcheck_checks::textsFitTheCatalogue()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Texts, texts);

    for (const char *const folder : {"cs", "hidden"})
        Deployment::installTranslation(QLatin1String(folder), QStringLiteral("third"));
    QVERIFY(QDir().mkpath(Deployment::path(QStringLiteral("Lang/empty"))));
    Deployment::writeCatalogue(bytes);
    const QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        const auto &[start, remedy] = texts.at(i);
        QVERIFY2(findings.at(i).text().startsWith(QString::fromUtf8(start)),
                 qPrintable(findings.at(i).text()));
        if (!remedy.isEmpty())
            QCOMPARE(findings.at(i).remedy(), QString::fromUtf8(remedy));
    }
}

void tst_langcheck_checks::mergedFindingsNameAllLanguages()
{
    Deployment::writeCatalogue(kCatalogue
                               + QByteArray("LANGl0_SHOW=1\nLANG11SHOW=1\nLANG12_SHWO=1\n"
                                            "LANG12_NANE=x\n"));
    const QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().languages, QVector<int>({10, 11, 12}));
}

void tst_langcheck_checks::missingFallbackIsNotReplacedByItself()
{
    for (const char *const folder : {"chs", "second"})
        QVERIFY(QFile::remove(
            Deployment::path(QStringLiteral("Lang/%1/Zendel.qm").arg(QLatin1String(folder)))));
    const QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findings.at(0).file, QStringLiteral("Lang/second/Zendel.qm"));
    QCOMPARE(findings.at(0).effect(),
             QStringLiteral("a dialog that needs it has empty texts, because the fallback, "
                            "Lang/chs/Zendel.qm, doesn't exist"));
    QCOMPARE(findings.at(1).effect(), QStringLiteral("a dialog that needs it has empty texts"));
}

void tst_langcheck_checks::effectsDependOnTheFallback_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QString>("effect"); // Without its end, which depends on the fallback.

    QTest::newRow("unknown default")
        << catalogueWith("DEFAULT=1", "DEFAULT=9") << QStringLiteral("the dialog ");
    QTest::newRow("hidden default")
        << catalogueWith("LANG1_SHOW=1", "LANG1_SHOW=0") << QStringLiteral("the dialog ");
    QTest::newRow("no default") << catalogueWith("DEFAULT=1", ";") << QStringLiteral("the dialog ");
    QTest::newRow("misspelt default")
        << catalogueWith("DEFAULT", "DEFUALT") << QStringLiteral("it is ignored, and the dialog ");
    QTest::newRow("missing folder") << catalogueWith("=second", "=xyz")
                                    << QStringLiteral("a dialog that needs the translation ");
    QTest::newRow("quoted folder")
        << catalogueWith("=second", "=\"second\"")
        << QStringLiteral("they are part of the value, and a dialog that needs the translation ");
}

void tst_langcheck_checks::effectsDependOnTheFallback()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QString, effect);

    Deployment::writeCatalogue(catalogue);
    QCOMPARE(check().findings.first().effect(),
             effect + QStringLiteral("uses the fallback, Lang/chs/Zendel.qm"));
    Deployment::writeTranslation(QStringLiteral("chs"), "damaged");
    const auto effects = [] {
        QStringList result;
        const QList<Finding> findings = check().findings;
        for (const Finding &finding : findings)
            result += finding.effect();
        return result;
    };
    QVERIFY(effects().contains(effect
                               + QStringLiteral("has empty texts, because the fallback, "
                                                "Lang/chs/Zendel.qm, can't be loaded")));
    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/chs/Zendel.qm"))));
    QVERIFY(effects().contains(effect
                               + QStringLiteral("has empty texts, because the fallback, "
                                                "Lang/chs/Zendel.qm, doesn't exist")));
}

void tst_langcheck_checks::hiddenLanguagesAndUnusedFoldersAreListed()
{
    for (const char *const folder : {"unused", "hidden"})
        Deployment::installTranslation(QLatin1String(folder), QStringLiteral("third"));
    QVERIFY(QDir().mkpath(Deployment::path(QStringLiteral("Lang/empty"))));
    Deployment::writeCatalogue(kCatalogue
                               + QByteArray("LANG7_FOLDER=hidden\nLANG7_NAME=Seven\n"
                                            "LANG7_SHOW=0\nLANG9_SHOW=0\n"));
    const Report report = check();
    QCOMPARE(report.hidden.size(), 2);
    QCOMPARE(report.hidden.at(0).number, 7);
    QCOMPARE(report.hidden.at(0).name, QStringLiteral("Seven"));
    QCOMPARE(report.hidden.at(0).folder, QStringLiteral("hidden"));
    QCOMPARE(report.hidden.at(0).line, 9);
    QCOMPARE(report.hidden.at(1).number, 9);
    QCOMPARE(report.unusedFolders, QStringList {QStringLiteral("unused")});
}

void tst_langcheck_checks::invisibleCharactersAreShown()
{
    QCOMPARE(quoted(QStringLiteral("1\u200B")), QStringLiteral("\"1\u200B\" (with U+200B)"));
    QCOMPARE(quoted(QStringLiteral("\uFF11")), QStringLiteral("\"\uFF11\" (with U+FF11)"));
    QCOMPARE(quoted(QStringLiteral("中\u200D文")), QStringLiteral("\"中\u200D文\""));
    QCOMPARE(quotedAscii(QStringLiteral("d\u0435")), QStringLiteral("\"d\u0435\" (with U+0435)"));
    QCOMPARE(printable(QStringLiteral("a\u202Eb\u2028c\u200Bd")),
             QStringLiteral("a<U+202E>b<U+2028>c<U+200B>d"));
    Deployment::writeCatalogue(kUtf8Bom + catalogueWith("LANG2_SHOW=1", "LANG2_SHOW=1\u200B"));
    QCOMPARE(check().findings.first().problem(),
             QStringLiteral("LANG2_SHOW isn't a number: \"1\u200B\" (with U+200B)"));
}

/// A message box grows with its title up to a limit of Qt's.
void tst_langcheck_checks::wideTitlesAreMeasured()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("wide_texts"));
    QStringList problems;
    const QList<Finding> findings = check().findings;
    for (const Finding &finding : findings)
        problems += finding.problem().section(QLatin1String(" is translated"), 0, 0);
    for (const char *const title : {"Success", "Error"}) {
        QCOMPARE(
            problems.count(QStringLiteral("the text is too wide for the title of its message box: "
                                          "\"%1\" in the context PageSetLang")
                               .arg(QLatin1String(title))),
            1);
    }
    QCOMPARE(problems.size(), 6);
}

void tst_langcheck_checks::existingFolderMayHaveAnyName()
{
    Deployment::installTranslation(QStringLiteral("简体中文"), QStringLiteral("second"));
    Deployment::writeCatalogue(kUtf8Bom + catalogueWith("=second", "=简体中文"));
    QCOMPARE(shortForms(check()), QString());
}

void tst_langcheck_checks::variantMayHaveTheSameTexts()
{
    QFile first(QStringLiteral(":/translations/first.qm"));
    QVERIFY(first.open(QIODevice::ReadOnly));
    const QByteArray language("\xA7\0\0\0\x02"
                              "en",
                              7);
    const QByteArray canadian("\xA7\0\0\0\x05"
                              "en_CA",
                              10);
    const QByteArray translation = first.readAll();
    QCOMPARE(translation.count(language), 1);
    Deployment::writeTranslation(QStringLiteral("second"),
                                 QByteArray(translation).replace(language, canadian));
    QCOMPARE(shortForms(check()), QString());
    Deployment::writeTranslation(QStringLiteral("second"), translation);
    QCOMPARE(shortForms(check()), QStringLiteral("Lang/second/Zendel.qm:0 warning same-texts"));
    Deployment::writeCatalogue(catalogueWith("=Two", "=One (Austria)"));
    QCOMPARE(shortForms(check()), QString());
}

void tst_langcheck_checks::textsNameEffectAndRemedy()
{
    for (const FindingDescription &kind : kFindings) {
        for (const char *const text : {kind.one.problem, kind.one.effect, kind.one.remedy})
            QVERIFY2(qstrlen(text) > 0, kind.id);
    }
}

/// The page lists each id once, with its severity, and no others.
void tst_langcheck_checks::pageListsEveryFinding()
{
    QFile page(testFile(QStringLiteral(PAGE_FILE)));
    QVERIFY(page.open(QIODevice::ReadOnly));
    // Several kinds may share a row.
    const QRegularExpression row(
        QStringLiteral("^\\| (`[a-z0-9-]+`(?:, `[a-z0-9-]+`)*) \\| (error|warning) \\|"),
        QRegularExpression::MultilineOption);
    QStringList listed;
    auto it = row.globalMatch(QString::fromUtf8(page.readAll()));
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QStringList kinds = match.captured(1).split(QStringLiteral(", "));
        for (const QString &kind : kinds)
            listed += kind.mid(1, kind.size() - 2) + QLatin1Char(' ') + match.captured(2);
    }
    listed.sort();

    QStringList expected;
    for (const FindingDescription &finding : kFindings)
        expected += QLatin1String(finding.id) + QLatin1Char(' ') + severityName(finding.severity);
    expected.sort();
    QCOMPARE(listed, expected);
    QCOMPARE(expected.removeDuplicates(), 0);
}

QTEST_MAIN(tst_langcheck_checks)
#include "tst_langcheck_checks.moc"
