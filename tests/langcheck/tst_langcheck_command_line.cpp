// Tests langcheck's options, output and exit codes, and that it writes nothing.

#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/write/Json.h"

#include "GoodDeployment.h"
#include "LangcheckProcess.h"
#include "commit.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using GoodDeployment::kCatalogue;

namespace {

QByteArray run(const QStringList &arguments, int exitCode)
{
    return runLangcheck(arguments, exitCode, QProcess::MergedChannels);
}

} // namespace

class tst_langcheck_command_line : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void init() { GoodDeployment::install(); }

    void findingsArePrintedAsByACompiler();
    void hostileNamesArePrintable();
    void jsonIsPrinted();
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
            "Catalogue:    Lang/Lang.ini, read as GB2312 because it has no BOM\n"
            "Languages:    1 One (selected)\n"
            "              2 Deux\n"
            "Default:      1\n"
            "Translation:  Lang/first/Zendel.qm\n"
            "Messages:     none\n"
            "\n"
            "Lang/Lang.ini:9: warning: LANG2_NAME is set on line 6 to \"Two\" and on line 9 to "
            "\"Deux\"; only the last one, on line 9, applies; delete all but the right one "
            "[repeated-key]\n"
            "0 errors, 1 warning\n"));

    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang"))).removeRecursively());
    const QString path = QCoreApplication::applicationDirPath();
    QCOMPARE(
        QString::fromUtf8(run({path}, 2)),
        QStringLiteral(
            "Catalogue:    Lang/Lang.ini, can't be opened\n"
            "Languages:    none; the operator's list is empty\n"
            "Default:      0\n"
            "Translation:  none; all texts are empty\n"
            "Messages:     warning, \"Warning\": Failed to open INI file:%1/Lang/Lang.ini\n"
            "              critical, \"Error\": Cannot find the \"\" file\n"
            "              warning, \"Warning\": Load translator file%1/Lang/chs/Zendel.qmfailed!\n"
            "\n"
            "Lang/Lang.ini: error: the file is missing or can't be read; the operator's list is "
            "empty; put the catalogue there, or correct its permissions [catalogue-unreadable]\n"
            "1 error, 0 warnings\n")
            .arg(path));
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
    QCOMPARE(json.object().value(QStringLiteral("formatVersion")).toInt(), 1);
    const QJsonArray findings = json.object().value(QStringLiteral("findings")).toArray();
    QCOMPARE(findings.size(), 1);
    const QJsonObject finding = findings.first().toObject();
    QCOMPARE(finding.value(QStringLiteral("file")).toString(), QStringLiteral("Lang/Lang.ini"));
    QCOMPARE(finding.value(QStringLiteral("line")).toInt(), 9);
    QCOMPARE(finding.value(QStringLiteral("severity")).toString(), QStringLiteral("warning"));
    QCOMPARE(finding.value(QStringLiteral("kind")).toString(), QStringLiteral("repeated-key"));
    QCOMPARE(finding.value(QStringLiteral("quote")).toString(), QStringLiteral("LANG2_NAME=Deux"));
    QCOMPARE(json.object().value(QStringLiteral("hostFails")), QJsonValue(false));
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
                             "Host:         may not start, "),
             output.constData());
    QVERIFY2(
        output.contains("\nQt5Core.dll: error: the file isn't a DLL for 64-bit x86: it has no PE "
                        "header; a 64-bit host, which the plug-in needs, can't load it; "),
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
    row("help", {QStringLiteral("--help")}, 0, "[FOLDER]");
    row("subtitle in the help", {QStringLiteral("--help")}, 0,
        "langcheck, the deployment checker, ");
    row("version", {QStringLiteral("--version")}, 0, "langcheck " VERSION COMMIT "\n");
    row("unknown option", {QStringLiteral("--colour")}, 3, "Unknown option 'colour'");
    row("two folders", {QStringLiteral("."), QStringLiteral(".")}, 3, "More than one folder");
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
