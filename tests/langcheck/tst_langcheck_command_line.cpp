// Tests langcheck's options, output and exit codes, and that it writes nothing.

#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/write/Console.h"
#include "langcheck/write/Json.h"

#include "GoodDeployment.h"
#include "LangcheckProcess.h"
#include "commit.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using GoodDeployment::kCatalogue;

#ifndef Q_OS_WIN
#    include <unistd.h>
#endif

namespace {

/// Returns all that langcheck prints.
QByteArray run(const QStringList &arguments, int exitCode)
{
    const LangcheckOutput output = runLangcheck(LangcheckCall {arguments, exitCode});
    return output.text + output.errors;
}

/// The test's own folder, which contains the deployment.
QString checked()
{
    return QCoreApplication::applicationDirPath();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class tst_langcheck_command_line : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        GoodDeployment::prepareTests();
        QCoreApplication::setApplicationVersion(QStringLiteral(VERSION)); // As langcheck does
    }
    void init() { GoodDeployment::install(); }

    void findingsArePrintedAsByACompiler();
    void hostileNamesArePrintable();
    void jsonIsPrinted();
    void jsonHasAllLinesAndLanguagesOfAFinding();
    void jsonHasTheLanguages();
    void jsonHasNoLoneSurrogates();
    void hiddenAndUnusedAreListed();
    void terminalGroupsFindings();
    void terminalBreaksLongWords();
    void terminalIsRecognised_data();
    void terminalIsRecognised();
    void defaultFolder_data();
    void defaultFolder();
    void langMeansTheFolderAbove_data();
    void langMeansTheFolderAbove();
    void severalFolders();
    void junitHasATestForEachFile();
    void pageAndJunitCanBePrinted();
    void picturesReplaceThoseOfAnEarlierRun();
    void pictureFolderCanNotBeCreated();
    void missingPermissionIsReported();
    void fullDiskIsReported_data();
    void fullDiskIsReported();
    void failedWriteLeavesTheOldFile();
    void hostIsChecked();
    void callsWithoutADeployment_data();
    void callsWithoutADeployment();
    void nothingIsWritten();
};

void tst_langcheck_command_line::findingsArePrintedAsByACompiler()
{
    Deployment::writeCatalogue(kCatalogue + QByteArray("LANG2_NAME=Deux\n"));
    QCOMPARE(
        QString::fromUtf8(run({QCoreApplication::applicationDirPath()}, 1)),
        QStringLiteral(
            "Folder:       %1\n"
            "Catalogue:    Lang/Lang.ini, read as GB2312 because it has no BOM\n"
            "Languages:    1 One (selected)\n"
            "              2 Deux\n"
            "Default:      1\n"
            "Translation:  Lang/first/Zendel.qm\n"
            "Messages:     none\n"
            "Host's DLLs:  %2\n"
            "\n"
            "Lang/Lang.ini:9: warning: LANG2_NAME is set on line 6 to \"Two\" and on line 9 to "
            "\"Deux\"; only the last one, on line 9, applies; delete all but the right one "
            "[repeated-key]\n"
            "0 errors, 1 warning\n")
            .arg(checked(), GoodDeployment::check().hostChecked));

    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang"))).removeRecursively());
    const QString path = QCoreApplication::applicationDirPath();
    QCOMPARE(
        QString::fromUtf8(run({path}, 2)),
        QStringLiteral(
            "Folder:       %1\n"
            "Catalogue:    Lang/Lang.ini, can't be opened\n"
            "Languages:    none; the operator's list is empty\n"
            "Default:      0\n"
            "Translation:  none; all texts are empty\n"
            "Messages:     warning, \"Warning\": Failed to open INI file:%1/Lang/Lang.ini\n"
            "              critical, \"Error\": Cannot find the \"\" file\n"
            "              warning, \"Warning\": Load translator file%1/Lang/chs/Zendel.qmfailed!\n"
            "Host's DLLs:  %2\n"
            "\n"
            "Lang/Lang.ini: error: the file doesn't exist, because there is no folder Lang; the "
            "operator's list is empty; put the folder Lang there, with the catalogue and the "
            "translations [catalogue-missing]\n"
            "1 error, 0 warnings\n")
            .arg(path, GoodDeployment::check().hostChecked));
}

/// Control characters could change the console's colours or hide what was printed before.
void tst_langcheck_command_line::hostileNamesArePrintable()
{
    Deployment::writeCatalogue(QByteArray(kCatalogue)
                                   .replace("=One", "=\x1B[31m\x07")
                                   .replace("=Two", QByteArray(100000, 'W').prepend('=')));
    const QString output = QString::fromUtf8(run({QCoreApplication::applicationDirPath()}, 2));
    QVERIFY2(output.contains(QStringLiteral("\nLanguages:    1 \u241B[31m\u2407 (selected)\n")),
             qPrintable(output));
    QVERIFY2(output.contains(QStringLiteral(" 2 %1...\n").arg(QString(300, QLatin1Char('W')))),
             qPrintable(output));
    for (const QChar c : output)
        QVERIFY2(c >= QLatin1Char(' ') || c == QLatin1Char('\n'), qPrintable(output));
}

void tst_langcheck_command_line::jsonIsPrinted()
{
    Deployment::writeCatalogue(kCatalogue + QByteArray("LANG2_NAME=Deux\n"));
    const QByteArray output =
        run({QCoreApplication::applicationDirPath(), QStringLiteral("--json")}, 1);
    QJsonParseError error = {};
    const QJsonDocument json = QJsonDocument::fromJson(output, &error);
    QVERIFY2(error.error == QJsonParseError::NoError, output.constData());
    QCOMPARE(json.object(), toJson(GoodDeployment::check()));
    QCOMPARE(json.object().value(QStringLiteral("formatVersion")).toInt(), 2);
    const QJsonArray findings = json.object().value(QStringLiteral("findings")).toArray();
    QCOMPARE(findings.size(), 1);
    const QJsonObject finding = findings.first().toObject();
    QCOMPARE(finding.value(QStringLiteral("file")).toString(), QStringLiteral("Lang/Lang.ini"));
    QCOMPARE(finding.value(QStringLiteral("line")).toInt(), 9);
    QCOMPARE(finding.value(QStringLiteral("severity")).toString(), QStringLiteral("warning"));
    QCOMPARE(finding.value(QStringLiteral("kind")).toString(), QStringLiteral("repeated-key"));
    QCOMPARE(finding.value(QStringLiteral("quote")).toString(), QStringLiteral("LANG2_NAME=Deux"));
    QCOMPARE(finding.value(QStringLiteral("problem")).toString(),
             QStringLiteral("LANG2_NAME is set on line 6 to \"Two\" and on line 9 to \"Deux\""));
    QCOMPARE(finding.value(QStringLiteral("effect")).toString(),
             QStringLiteral("only the last one, on line 9, applies"));
    QCOMPARE(finding.value(QStringLiteral("remedy")).toString(),
             QStringLiteral("delete all but the right one"));
    QCOMPARE(json.object().value(QStringLiteral("hostFails")), QJsonValue(false));
    QCOMPARE(json.object().value(QStringLiteral("verdict")).toString(), QStringLiteral("warnings"));
    QCOMPARE(json.object().value(QStringLiteral("errors")), QJsonValue(0));
    QCOMPARE(json.object().value(QStringLiteral("warnings")), QJsonValue(1));
    QCOMPARE(json.object().value(QStringLiteral("tool")),
             QJsonValue(QJsonObject {{QStringLiteral("name"), QStringLiteral("langcheck")},
                                     {QStringLiteral("version"), QStringLiteral(VERSION)}}));
}

void tst_langcheck_command_line::jsonHasAllLinesAndLanguagesOfAFinding()
{
    Report report;
    Finding &finding = report.addLine(FindingKind::ShowMissing, 7, {QString(), QString()});
    finding.lines = {3, 7};
    finding.languages = {1, 300};
    const QJsonObject json =
        toJson(report).value(QStringLiteral("findings")).toArray().first().toObject();
    QCOMPARE(json.value(QStringLiteral("lines")), QJsonValue(QJsonArray {3, 7}));
    QCOMPARE(json.value(QStringLiteral("languages")), QJsonValue(QJsonArray {1, 300}));
}

/// With a language whose file is missing, so that the operator sees the fallback
void tst_langcheck_command_line::jsonHasTheLanguages()
{
    Deployment::writeCatalogue(QByteArray(kCatalogue).replace("LANG2", "LANG258")
                               + "LANG3_NAME=Three\nLANG3_FOLDER=third\n");
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("second"));
    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/second/Zendel.qm"))));
    Deployment::installTranslation(QStringLiteral("old"), QStringLiteral("second"));
    const QJsonObject json =
        QJsonDocument::fromJson(run({checked(), QStringLiteral("--json")}, 2)).object();
    const auto described = [&json](int index) {
        const QJsonArray languages = json.value(QStringLiteral("languages")).toArray();
        const QJsonObject language = languages.at(index).toObject();
        const QJsonArray texts = language.value(QStringLiteral("texts")).toArray();
        const QJsonObject text = texts.at(2).toObject();
        return QStringLiteral("%1 -> %2, %3 texts: %4, %5: %6")
            .arg(language.value(QStringLiteral("number")).toInt())
            .arg(language.value(QStringLiteral("machineNumber")).toInt())
            .arg(texts.size())
            .arg(text.value(QStringLiteral("context")).toString(),
                 text.value(QStringLiteral("source")).toString(),
                 text.value(QStringLiteral("text")).toString());
    };
    QCOMPARE(described(0), QStringLiteral("1 -> 1, 8 texts: PageSetLang, Change: 1 Change"));
    QCOMPARE(described(1), QStringLiteral("258 -> 2, 8 texts: PageSetLang, Change: 2 Change"));
    QCOMPARE(
        json.value(QStringLiteral("hidden")),
        QJsonValue(QJsonArray {QJsonObject {{QStringLiteral("number"), 3},
                                            {QStringLiteral("name"), QStringLiteral("Three")},
                                            {QStringLiteral("folder"), QStringLiteral("third")},
                                            {QStringLiteral("line"), 9}}}));
    QCOMPARE(json.value(QStringLiteral("unusedFolders")),
             QJsonValue(QJsonArray {QStringLiteral("old")}));
    QCOMPARE(json.value(QStringLiteral("verdict")).toString(), QStringLiteral("errors"));
}

/// Strict parsers refuse a half of a surrogate pair.
void tst_langcheck_command_line::jsonHasNoLoneSurrogates()
{
    Deployment::writeCatalogue(Deployment::utf16(
        QChar(QChar::ByteOrderMark)
        + QString::fromLatin1(kCatalogue)
              .replace(QStringLiteral("=One"), QStringLiteral("=\xD83D"))
              .replace(QStringLiteral("=Two"), QStringLiteral("=\xDE00\U0001F600"))));
    const QByteArray output = run({checked(), QStringLiteral("--json")}, 2);
    QVERIFY2(!output.contains("\\ud"), output.constData());
    const QJsonArray languages =
        QJsonDocument::fromJson(output).object().value(QStringLiteral("languages")).toArray();
    const auto name = [&languages](int index) {
        return languages.at(index).toObject().value(QStringLiteral("name")).toString();
    };
    QCOMPARE(name(0), QStringLiteral("\uFFFD"));
    QCOMPARE(name(1), QStringLiteral("\uFFFD\U0001F600"));
}

void tst_langcheck_command_line::hiddenAndUnusedAreListed()
{
    Deployment::writeCatalogue(kCatalogue
                               + QByteArray("LANG7_SHOW=0\nLANG4_NAME=Vier\nLANG4_FOLDER=vier\n"
                                            "LANG4_SHOW=0\n"));
    Deployment::installTranslation(QStringLiteral("old"), QStringLiteral("first"));
    const QByteArray output = run({checked()}, 0);
    QVERIFY2(output.contains("              2 Two\n"
                             "Hidden:       4 Vier, in Lang/vier\n"
                             "              7\n"
                             "Default:      1\n"
                             "Translation:  Lang/first/Zendel.qm\n"
                             "Unused:       Lang/old\n"
                             "Messages:     none\n"),
             output.constData());
}

/// Each finding is below its file, and the line of the catalogue is marked where it is wrong.
void tst_langcheck_command_line::terminalGroupsFindings()
{
    Report report;
    report.applicationDir = QStringLiteral("/host");
    report.hostChecked = QStringLiteral("not checked");
    report.hidden = {{5, QStringLiteral("Cinq"), QString(), 3}};
    report.addFile(FindingKind::QmMissing, QStringLiteral("/host/Lang/de/Zendel.qm"),
                   {QString(), QStringLiteral("has empty texts"),
                    QStringLiteral("put the compiled translation there")});
    report.addLine(FindingKind::NoLanguages, 0,
                   {QStringLiteral("no language has a name, a folder and SHOW=1"),
                    QStringLiteral("write all three for at least one language")});
    report
        .addLine(FindingKind::QuotedValue, 8,
                 {QStringLiteral("LANG3_NAME"), QStringLiteral("\"\"\u4E2D\u6587\"\""),
                  QStringLiteral("\u4E2D\u6587")})
        .quote = QStringLiteral("LANG3_NAME = \"\u4E2D\u6587\"");
    report
        .addLine(FindingKind::DefaultHidden, 12,
                 {QStringLiteral("5"), QStringLiteral("the dialog uses Lang/chs/Zendel.qm"),
                  QStringLiteral("1")})
        .quote = QStringLiteral("DEFAULT=5");
    report
        .addLine(FindingKind::KeyCase, 10,
                 {QStringLiteral("\"lang1_id\""), QStringLiteral("LANG1_ID")})
        .quote = QStringLiteral("lang1_id=1");
    const QString expected = QStringLiteral("Folder:       /host\n"
                                            "Catalogue:    Lang/Lang.ini, can't be\n"
                                            "              opened\n"
                                            "Languages:    none; the operator's list is\n"
                                            "              empty\n"
                                            "Hidden:       5 Cinq\n"
                                            "Default:      0\n"
                                            "Translation:  none; all texts are empty\n"
                                            "Messages:     none\n"
                                            "Host's DLLs:  not checked\n"
                                            "\n"
                                            "Lang/de/Zendel.qm\n"
                                            "  error    the file doesn't exist\n"
                                            "           effect: a dialog that needs it\n"
                                            "                   has empty texts\n"
                                            "           remedy: put the compiled\n"
                                            "                   translation there\n"
                                            "           [qm-missing]\n"
                                            "\n"
                                            "Lang/Lang.ini\n"
                                            "      error    no language has a name, a\n"
                                            "               folder and SHOW=1\n"
                                            "               effect: the operator's list\n"
                                            "                       is empty\n"
                                            "               remedy: write all three for\n"
                                            "                       at least one\n"
                                            "                       language\n"
                                            "               [no-languages]\n"
                                            "   8  warning  LANG3_NAME is in quotation\n"
                                            "               marks: \"\"\u4E2D\u6587\"\"\n"
                                            "               LANG3_NAME = \"\u4E2D\u6587\"\n"
                                            "                            ^~~~~~\n"
                                            "               effect: they are part of\n"
                                            "                       the value\n"
                                            "               remedy: write\n"
                                            "                       LANG3_NAME=\u4E2D\u6587\n"
                                            "               [quoted-value]\n"
                                            "  12  error    the default language, 5, is\n"
                                            "               hidden\n"
                                            "               DEFAULT=5\n"
                                            "                       ^\n"
                                            "               effect: the dialog uses\n"
                                            "                       Lang/chs/Zendel.qm\n"
                                            "               remedy: write LANG5_SHOW=1,\n"
                                            "                       or DEFAULT=1\n"
                                            "               [default-hidden]\n"
                                            "  10  warning  the key \"lang1_id\" isn't in\n"
                                            "               upper case\n"
                                            "               lang1_id=1\n"
                                            "               ^~~~~~~~\n"
                                            "               effect: it is ignored\n"
                                            "               remedy: write LANG1_ID\n"
                                            "               [key-case]\n"
                                            "\n"
                                            "3 errors, 2 warnings\n");
    QCOMPARE(toTerminalText(report, 42, false).split(QLatin1Char('\n')),
             expected.split(QLatin1Char('\n')));

    const QString coloured = toTerminalText(report, 42, true);
    QVERIFY(coloured.contains(QStringLiteral("  \x1B[1;31merror    \x1B[0mthe file doesn't")));
    QVERIFY(coloured.contains(QStringLiteral("\x1B[1;33m^~~~~~\x1B[0m\n")));
    QVERIFY(coloured.endsWith(QStringLiteral("\x1B[1;31m3 errors, 2 warnings\x1B[0m\n")));
    QCOMPARE(QString(coloured).remove(QRegularExpression(QStringLiteral("\x1B\\[[0-9;]*m"))),
             expected);
}

/// Names without spaces are broken at the edge, whatever the width of their characters.
void tst_langcheck_command_line::terminalBreaksLongWords()
{
    Report report;
    report.applicationDir = QLatin1Char('/') + QString(50, QLatin1Char('x'));
    LangEntry language;
    language.id = 1;
    language.name = QString(20, QChar(0x4E2D));
    report.listed = {language};
    report.addLine(FindingKind::CatalogueForeign, 2).quote = QString(60, QLatin1Char('q'));
    const QString text = toTerminalText(report, 40, false);
    QVERIFY2(text.startsWith(QStringLiteral("Folder:       /xxxxxxxxxxxxxxxxxxxxxxxxx\n"
                                            "              xxxxxxxxxxxxxxxxxxxxxxxxx\n")),
             qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("Languages:    1\n              %1\n              %2\n")
                               .arg(QString(13, QChar(0x4E2D)), QString(7, QChar(0x4E2D)))),
             qPrintable(text));
    QVERIFY2(text.contains(QLatin1Char(' ') + QString(26, QLatin1Char('q')) + QLatin1Char('\n')),
             qPrintable(text));
}

void tst_langcheck_command_line::terminalIsRecognised_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("coloured");

    const QString xterm = QStringLiteral("TERM=xterm");
    QTest::newRow("narrow, in colour") << QStringList {xterm} << 50 << true;
    QTest::newRow("wide") << QStringList {xterm} << 300 << true;
    QTest::newRow("unknown width") << QStringList {xterm} << 0 << true;
    QTest::newRow("NO_COLOR") << QStringList {xterm, QStringLiteral("NO_COLOR=1")} << 50 << false;
    QTest::newRow("empty NO_COLOR")
        << QStringList {xterm, QStringLiteral("NO_COLOR=")} << 50 << true;
    QTest::newRow("dumb") << QStringList {QStringLiteral("TERM=dumb")} << 50 << false;
    QTest::newRow("no TERM") << QStringList {QStringLiteral("-u"), QStringLiteral("TERM")} << 50
                             << false;
}

void tst_langcheck_command_line::terminalIsRecognised()
{
#ifdef Q_OS_WIN
    QSKIP("A console of Windows can't be read through a pipe; see tst_langcheck_explorer.");
#else
    QFETCH(QStringList, variables);
    QFETCH(int, columns);
    QFETCH(bool, coloured);

    Deployment::writeCatalogue(kCatalogue + QByteArray("LANG2_NAME=Deux\n"));
    // script runs a shell command on a terminal of its own.
    const QString program = testFile(QStringLiteral(LANGCHECK_FILE));
    const QString command =
        QStringLiteral("stty cols %1; env %2 '%3' '%4'")
            .arg(QString::number(columns), variables.join(QLatin1Char(' ')), program, checked());
    const QByteArray output =
        runLangcheck({{QStringLiteral("-qec"), command, QStringLiteral("/dev/null")},
                      1,
                      {},
                      QDir::currentPath(),
                      QStringLiteral("script")})
            .text;
    QCOMPARE(output.contains("\x1B["), coloured);
    const int width = columns > 0 ? columns : 80;
    const QString expected = toTerminalText(GoodDeployment::check(), width, coloured);
    QCOMPARE(QString::fromUtf8(output), expected);
#endif
}

void tst_langcheck_command_line::defaultFolder_data()
{
    QTest::addColumn<bool>("inCurrent");
    QTest::addColumn<bool>("inOwn");
    QTest::addColumn<bool>("same");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, bool inCurrent, bool inOwn, bool same, int exitCode,
                        const char *text) {
        QTest::newRow(name) << inCurrent << inOwn << same << exitCode << QString::fromLatin1(text);
    };
    row("only langcheck's", false, true, false, 0, "Folder:       %own, langcheck's own folder\n");
    row("only the current", true, false, false, 2, "Folder:       %current, the current folder\n");
    row("both", true, true, false, 3,
        "langcheck: Both the current folder, \"%current\", and langcheck's own, \"%own\", have a "
        "folder Lang. Give the folder to check as an argument.\n");
    row("neither", false, false, false, 3,
        "langcheck: Neither the current folder, \"%current\", nor langcheck's own, \"%own\", has a "
        "folder Lang. Give the folder to check as an argument.\n");
    row("the same", true, true, true, 0, "Folder:       %own, langcheck's own folder\n");
    row("the same without Lang", false, false, true, 2,
        "Folder:       %own, langcheck's own folder\n");
}

void tst_langcheck_command_line::defaultFolder()
{
    QFETCH(bool, inCurrent);
    QFETCH(bool, inOwn);
    QFETCH(bool, same);
    QFETCH(int, exitCode);
    QFETCH(QString, text);

    const QTemporaryDir folder;
    QDir current(QDir(folder.path()).canonicalPath());
    LangcheckCall call {{}, exitCode};
    if (!inOwn) {
#ifdef Q_OS_WIN
        QSKIP("langcheck needs the DLLs in its folder.");
#endif
        call.program = current.filePath(QStringLiteral("own/langcheck"));
        QVERIFY(current.mkdir(QStringLiteral("own")));
        QVERIFY(QFile::copy(testFile(QStringLiteral(LANGCHECK_FILE)), call.program));
    }
    const QString own = QFileInfo(call.program).canonicalPath();
    if (same)
        current.setPath(own);
    else if (inCurrent)
        QVERIFY(current.mkdir(QStringLiteral("Lang")));
    call.folder = current.path();
    const LangcheckOutput output = runLangcheck(call);
    text.replace(QStringLiteral("%own"), own).replace(QStringLiteral("%current"), current.path());
    const QString printed = QString::fromUtf8(output.text + output.errors);
    QVERIFY2(printed.startsWith(text), qPrintable(printed + text));
}

void tst_langcheck_command_line::langMeansTheFolderAbove_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("printed"); // After the folder

    const auto row = [](const char *name, const char *current, const char *argument,
                        const char *printed) {
        QTest::newRow(name) << QString::fromLatin1(current) << QString::fromLatin1(argument)
                            << QString::fromLatin1(printed);
    };
    row("the folder itself", ".", ".", "\n");
    row("Lang", ".", "Lang", ", to which \"Lang\" belongs\n");
    row("Lang with a slash", ".", "Lang/", ", to which \"Lang/\" belongs\n");
    row("catalogue", ".", "Lang/Lang.ini", ", to which \"Lang/Lang.ini\" belongs\n");
    row("catalogue in the current folder", "Lang", "Lang.ini", ", to which \"Lang.ini\" belongs\n");
    row("current folder", "Lang", ".", ", to which \".\" belongs\n");
#ifdef Q_OS_WIN
    row("lower case", ".", "Lang/../lang", ", to which \"Lang/../lang\" belongs\n");
#endif
    row("a host in a folder named Lang", "Lang", "host/Lang", nullptr);
    row("another file", ".", "Lang/first/Zendel.qm", nullptr);
}

void tst_langcheck_command_line::langMeansTheFolderAbove()
{
    QFETCH(QString, current);
    QFETCH(QString, argument);
    QFETCH(QString, printed);

    LangcheckCall call {{argument}, 0};
    call.folder = QDir::cleanPath(Deployment::path(current));
    if (argument.startsWith(QLatin1String("host"))) {
        QVERIFY(QDir(call.folder).mkpath(QStringLiteral("host/Lang/Lang")));
        call.exitCode = 2;
        printed = QStringLiteral("/Lang/host/Lang\n");
    } else if (argument.endsWith(QLatin1String("qm"))) {
        call.exitCode = 3;
        QCOMPARE(QString::fromUtf8(runLangcheck(call).errors),
                 QStringLiteral("langcheck: \"%1\" isn't a folder.\nSee langcheck --help.\n")
                     .arg(argument));
        return;
    }
    const QString output = QString::fromUtf8(runLangcheck(call).text);
    QVERIFY2(output.startsWith(QStringLiteral("Folder:       ") + checked() + printed),
             qPrintable(output));
}

void tst_langcheck_command_line::severalFolders()
{
    const QTemporaryDir folder;
    const QString empty = QDir(folder.path()).canonicalPath();
    const QByteArray text = run({checked(), empty}, 2);
    const QByteArray second = "\n0 errors, 0 warnings\n\nFolder:       " + empty.toUtf8() + "\n";
    QCOMPARE(text.left(text.indexOf('\n')), "Folder:       " + checked().toUtf8());
    QVERIFY2(text.contains(second), text.constData());
    QVERIFY2(text.endsWith("\n1 error, 0 warnings\n"), text.right(1000).constData());
    QCOMPARE(run({empty, checked()}, 2).count("Folder: "), 2);

    const QJsonArray json =
        QJsonDocument::fromJson(run({QStringLiteral("--json"), checked(), empty}, 2)).array();
    QCOMPARE(json.size(), 2);
    QCOMPARE(json.first().toObject(), toJson(GoodDeployment::check()));
    QCOMPARE(json.last().toObject().value(QStringLiteral("applicationDir")).toString(), empty);

    for (const QString &option : {QStringLiteral("--html"), QStringLiteral("--pictures")}) {
        QCOMPARE(run({option, folder.filePath(QStringLiteral("output")), checked(), empty}, 3),
                 QByteArray("langcheck: --html and --pictures need a single folder.\n"
                            "See langcheck --help.\n"));
    }
    QVERIFY(QDir(empty).isEmpty());
}

void tst_langcheck_command_line::junitHasATestForEachFile()
{
    Deployment::writeCatalogue(kCatalogue + QByteArray("LANG2_NAME=\x1B<&\nLANG3_SHOW=1\n"));
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("junit.xml"));
    run({QStringLiteral("--junit"), file, checked(), folder.path()}, 2);
    const QByteArray bytes = readFile(file);
    QStringList seen;
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        QString element = reader.name().toString();
        for (const char *const name : {"name", "tests", "failures", "errors", "message"}) {
            const QXmlStreamAttributes attributes = reader.attributes();
            if (attributes.hasAttribute(QLatin1String(name)))
                element += QLatin1Char(' ') + attributes.value(QLatin1String(name)).toString();
        }
        if (element.startsWith(QLatin1String("failure")) || element == QLatin1String("system-out"))
            element += QLatin1Char(':') + reader.readElementText().section(QLatin1Char(';'), 0, 0);
        seen += element;
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(seen,
             QStringList(
                 {QStringLiteral("testsuites"), QStringLiteral("testsuite %1 3 1 0").arg(checked()),
                  QStringLiteral("testcase Lang/Lang.ini"),
                  QStringLiteral("failure 3 errors, 1 warning:Lang/Lang.ini:9: error: LANG2_NAME "
                                 "contains characters that can't be seen: \"\u241B<&\""),
                  QStringLiteral("system-out:Lang/Lang.ini:9: warning: LANG2_NAME is set on line 6 "
                                 "to \"Two\" and on line 9 to \"\u241B<&\""),
                  QStringLiteral("testcase Lang/first/Zendel.qm"),
                  QStringLiteral("testcase Lang/second/Zendel.qm"),
                  QStringLiteral("testsuite %1 1 1 0").arg(QDir(folder.path()).canonicalPath()),
                  QStringLiteral("testcase Lang/Lang.ini"),
                  QStringLiteral("failure 1 error, 0 warnings:Lang/Lang.ini: error: the file "
                                 "doesn't exist, because there is no folder Lang")}));
}

void tst_langcheck_command_line::pageAndJunitCanBePrinted()
{
    const QString file = QStringLiteral("-");
    LangcheckOutput output =
        runLangcheck(LangcheckCall {{QStringLiteral("--html"), file, checked()}, 0});
    QVERIFY2(output.text.startsWith("<!DOCTYPE html>") && output.text.endsWith("</html>\n"),
             output.text.left(500).constData());
    QVERIFY2(output.errors.startsWith("Folder: ") && output.errors.contains("\n0 errors, "),
             output.errors.constData());

    output = runLangcheck(
        LangcheckCall {{QStringLiteral("--html"), file, checked() + QStringLiteral("/Lang")}, 0});
    QVERIFY(output.text.contains("</code>, to which &quot;" + checked().toUtf8()
                                 + "/Lang&quot; belongs, checked on "));

    output = runLangcheck(
        LangcheckCall {{QStringLiteral("--junit"), file, QStringLiteral("--json"), checked()}, 0});
    QVERIFY2(output.text.startsWith("<?xml") && output.text.endsWith("</testsuites>\n"),
             output.text.constData());
    QVERIFY(QJsonDocument::fromJson(output.errors).isObject());

    QCOMPARE(run({QStringLiteral("--html"), file, QStringLiteral("--junit"), file, checked()}, 3),
             QByteArray("langcheck: Only one of --html and --junit can be printed.\n"
                        "See langcheck --help.\n"));
    QVERIFY(!QFile::exists(testFile(QStringLiteral("../-"))));
}

void tst_langcheck_command_line::picturesReplaceThoseOfAnEarlierRun()
{
    const QTemporaryDir folder;
    const QDir pictures(folder.filePath(QStringLiteral("new/pictures")));
    const QStringList arguments {QStringLiteral("--pictures"), pictures.path(), checked()};
    run(arguments, 0);
    const QString one = QStringLiteral("language-001.png");
    const QString two = QStringLiteral("language-002.png");
    const QString all = QStringLiteral("languages.png");
    QCOMPARE(pictures.entryList(QDir::Files), QStringList({one, two, all}));

    // With a similar name, and by another program with the same name
    QVERIFY(QFile::copy(pictures.filePath(two), pictures.filePath(QStringLiteral("copy.png"))));
    QImage foreign(1, 1, QImage::Format_RGB32);
    foreign.fill(Qt::white);
    foreign.setText(QStringLiteral("Software"), QStringLiteral("Paint"));
    QVERIFY(foreign.save(pictures.filePath(QStringLiteral("language-003.png"))));
    writeFile(pictures.filePath(QStringLiteral("language-004.png")), "a text");
    const QStringList others {QStringLiteral("copy.png"), QStringLiteral("language-003.png"),
                              QStringLiteral("language-004.png")};

    Deployment::writeCatalogue(GoodDeployment::catalogueWith("LANG2_SHOW=1", "LANG2_SHOW=0"));
    run(arguments, 0);
    QStringList expected = others + QStringList {one, all};
    expected.sort();
    QCOMPARE(pictures.entryList(QDir::Files), expected);

    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang"))).removeRecursively());
    run(arguments, 2);
    QCOMPARE(pictures.entryList(QDir::Files), others);
}

void tst_langcheck_command_line::pictureFolderCanNotBeCreated()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("file"));
    writeFile(file, "text");
    QCOMPARE(run({QStringLiteral("--pictures"), file, checked()}, 3),
             "langcheck: \"" + file.toUtf8() + "\" isn't a folder.\nSee langcheck --help.\n");
    const QString below = file + QStringLiteral("/pictures");
    // Reports of the progress may precede it.
    const QByteArray output = runLangcheck({QStringLiteral("--pictures"), below, checked()}, 3);
    const QByteArray errors = output.mid(output.indexOf("langcheck: "));
    QVERIFY2(errors.startsWith("langcheck: Can't create \""
                               + QDir::toNativeSeparators(below).toUtf8() + "\": ")
                 && !errors.endsWith(": .\n"),
             errors.constData());
}

/// By a copy of langcheck that another user may read, if the user is root, who may read everything.
void tst_langcheck_command_line::missingPermissionIsReported()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has other permissions.");
#else
    const QTemporaryDir folder;
    const QString lang = folder.filePath(QStringLiteral("Lang"));
    for (const char *const name : {"first", "second", "chs"})
        QVERIFY(QDir().mkpath(lang + QLatin1Char('/') + QLatin1String(name)));
    for (const char *const name :
         {"Lang.ini", "first/Zendel.qm", "second/Zendel.qm", "chs/Zendel.qm"}) {
        const QString path = QStringLiteral("Lang/") + QLatin1String(name);
        QVERIFY(QFile::copy(Deployment::path(path), folder.filePath(path)));
    }
    LangcheckCall call;
    call.arguments = QStringList {folder.path()};
    call.exitCode = 2;
    call.folder = folder.path();
    call.program = folder.filePath(QStringLiteral("langcheck"));
    QVERIFY(QFile::copy(testFile(QStringLiteral(LANGCHECK_FILE)), call.program));
    const QFile::Permissions all =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(folder.path(), all));
    QVERIFY(QFile::setPermissions(call.program, all));
    if (geteuid() == 0) {
        call.wrapper =
            QStringList {QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                         QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")};
    }
    const auto denied = [&call](const QString &path, const char *line) {
        const QFile::Permissions before = QFile::permissions(path);
        QVERIFY(QFile::setPermissions(path, {}));
        const QByteArray output = runLangcheck(call).text;
        QVERIFY(QFile::setPermissions(path, before));
        QVERIFY2(output.contains(line), output.constData());
        QVERIFY2(output.endsWith("\n1 error, 0 warnings\n"), output.constData());
    };
    denied(lang + QStringLiteral("/second"),
           "\nLang/second: error: the folder can't be read; a dialog that needs the translation in "
           "it uses the fallback, Lang/chs/Zendel.qm; correct the folder's permissions "
           "[folder-unreadable]\n");
    denied(
        lang + QStringLiteral("/second/Zendel.qm"),
        "\nLang/second/Zendel.qm: error: the file can't be read: permission denied; a dialog that "
        "needs it has empty texts; give the user who runs the host permission to read the file "
        "[qm-unreadable]\n");
    denied(lang + QStringLiteral("/Lang.ini"),
           "\nLang/Lang.ini: error: the file can't be read: permission denied; the operator's list "
           "is empty; give the user who runs the host permission to read the file "
           "[catalogue-unreadable]\n");
#endif
}

void tst_langcheck_command_line::fullDiskIsReported_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("report") << QStringList {checked()};
    QTest::newRow("JSON") << QStringList {QStringLiteral("--json"), checked()};
    QTest::newRow("page") << QStringList {QStringLiteral("--html"), QStringLiteral("-"), checked()};
    QTest::newRow("JUnit") << QStringList {QStringLiteral("--junit"), QStringLiteral("-"),
                                           checked()};
    QTest::newRow("help") << QStringList {QStringLiteral("--help")};
    QTest::newRow("version") << QStringList {QStringLiteral("--version")};
}

void tst_langcheck_command_line::fullDiskIsReported()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has no device that is always full.");
#else
    QFETCH(QStringList, arguments);

    const QByteArray errors = runLangcheck(arguments, 3,
                                           {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                                            QStringLiteral("exec \"$0\" \"$@\" > /dev/full")});
    QVERIFY2(errors.endsWith("langcheck: Can't write the output: No space left on device.\n"),
             errors.constData());
#endif
}

/// The file is so short that it is written as a whole only when it is closed.
void tst_langcheck_command_line::failedWriteLeavesTheOldFile()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has no limit for the size of files.");
#else
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("junit.xml"));
    const QStringList arguments {QStringLiteral("--junit"), file, checked()};
    QByteArray catalogue = "[LANG_MGR]\n";
    for (const char digit : {'1', '2', '3', '4', '5', '6'}) {
        catalogue += QByteArray("LANG%_NAME=Language %\nLANG%_FOLDER=missing%\nLANG%_SHOW=1\n")
                         .replace('%', digit);
    }
    Deployment::writeCatalogue(catalogue);
    run(arguments, 2);
    const QByteArray old = readFile(file);
    QVERIFY2(old.size() > 1024 && old.size() < 16384, QByteArray::number(old.size()).constData());
    const QByteArray errors = runLangcheck(arguments, 3, onFullDisk());
    QVERIFY2(errors.contains(QFile::encodeName(file) + "\": File too large"), errors.constData());
    QCOMPARE(readFile(file), old);
#endif
}

/// The host's folder isn't the test's own, because Windows would load the file into the next test.
void tst_langcheck_command_line::hostIsChecked()
{
    const QString host = Deployment::path(QStringLiteral("Lang/host"));
    QVERIFY(QDir().mkpath(host));
    QFile qt(host + QStringLiteral("/Qt5Core.dll"));
    QVERIFY(qt.open(QIODevice::WriteOnly));
    const QByteArray output = run({host}, 2);
    QVERIFY2(output.contains("\nHost's Qt:    unknown version, for an unknown compiler\n"
                             "Host's DLLs:  checked: Qt5Core.dll\n"
                             "Host:         may not start, "),
             output.constData());
    QVERIFY2(
        output.contains("\nQt5Core.dll: error: the file isn't a DLL for 64-bit x86: it has no PE "
                        "header; the host can't load it; "),
        output.constData());
    const QJsonObject json =
        QJsonDocument::fromJson(run({host, QStringLiteral("--json")}, 2)).object();
    QVERIFY(json.contains(QStringLiteral("hostQt")));
    QCOMPARE(json.value(QStringLiteral("hostFails")), QJsonValue(true));
}

void tst_langcheck_command_line::callsWithoutADeployment_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QStringList &arguments, int code,
                        const char *text) {
        QTest::newRow(name) << arguments << code << QString::fromUtf8(text);
    };
    // The sample deployment is next to the program.
    row("list of the sample", {}, 0, "22 العربية\n");
    row("findings of the sample", {}, 0, "\n0 errors, 0 warnings\n");
    row("help", {QStringLiteral("--help")}, 0, "Usage: langcheck [options] [FOLDER...]\n");
    row("subtitle in the help", {QStringLiteral("--help")}, 0,
        "langcheck, the deployment checker, ");
    row("version", {QStringLiteral("--version")}, 0, "langcheck " VERSION COMMIT "\n");
    row("unknown option", {QStringLiteral("--colour")}, 3,
        "langcheck: Unknown option \"--colour\".\nSee langcheck --help.\n");
    row("single dash", {QStringLiteral("-html"), QStringLiteral("page.html")}, 3,
        "langcheck: Unknown option \"-html\". Did you mean --html?\n");
    row("single dash and value", {QStringLiteral("-pictures=folder")}, 3,
        "langcheck: Unknown option \"-pictures\". Did you mean --pictures?\n");
    row("two errors in the spelling", {QStringLiteral("-jsn")}, 3,
        "langcheck: Unknown option \"-jsn\". Did you mean --json?\n");
    row("missing letter", {QStringLiteral("--jsn")}, 3,
        "langcheck: Unknown option \"--jsn\". Did you mean --json?\n");
    row("exchanged letters", {QStringLiteral("--htlm=page.html")}, 3,
        "langcheck: Unknown option \"--htlm\". Did you mean --html?\n");
    row("missing value", {QStringLiteral("--html")}, 3, "Missing value after '--html'");
    row("empty value", {QStringLiteral("--html=")}, 3, "The value of --html is empty.");
    row("after two dashes", {QStringLiteral("--"), QStringLiteral("-json")}, 3,
        "\"-json\" isn't a folder");
    row("not a folder", {QStringLiteral("no/such")}, 3, "\"no/such\" isn't a folder");
}

void tst_langcheck_command_line::callsWithoutADeployment()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, text);

    const QByteArray output = run(arguments, exitCode);
    QVERIFY2(output.contains(text.toUtf8()), output.constData());
}

void tst_langcheck_command_line::nothingIsWritten()
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
    // Temporary files and user files would be created here, too.
    const QString temporary = Deployment::path(QStringLiteral("Lang/temporary"));
    QVERIFY(QDir().mkpath(temporary));
    qputenv("TMPDIR", QFile::encodeName(temporary));
    qunsetenv("XDG_RUNTIME_DIR");
    const QStringList before = files();
    QCOMPARE(before.size(), 8);
    run({QCoreApplication::applicationDirPath()}, 0);
    QCOMPARE(files(), before);
    qunsetenv("TMPDIR");
}

QTEST_MAIN(tst_langcheck_command_line)
#include "tst_langcheck_command_line.moc"
