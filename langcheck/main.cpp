#include "langcheck/CommandLine.h"
#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/draw/Pictures.h"
#include "langcheck/write/Console.h"
#include "langcheck/write/Json.h"
#include "langcheck/write/Junit.h"
#include "langcheck/write/Output.h"
#include "langcheck/write/Page.h"
#include "langcheck/write/Terminal.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFont>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageBox>

#include <algorithm>

namespace {

const int kFailed = 3;

/// Prints fatal messages only. Others are not about the deployment, but about the dialog's
/// unconnected slot and the like.
void printFatalMessage(QtMsgType type, const QMessageLogContext & /*context*/,
                       const QString &message)
{
    if (type == QtFatalMsg)
        print(stderr, message + QLatin1Char('\n'));
}

/// Prints to stderr what was done, if the last time was more than a second ago.
class Progress
{
public:
    Progress() { m_timer.start(); }

    void done(const QString &step)
    {
        if (m_timer.elapsed() > 1000) {
            print(stderr, step + QLatin1Char('\n'));
            m_timer.restart();
        }
    }

private:
    QElapsedTimer m_timer;
};

Report check(const CheckedFolder &folder)
{
    Report report = checkDeployment(folder.path);
    report.applicationDirReason = folder.reason;
    return report;
}

QVector<LanguagePictures> drawAll(const Report &report, Progress &progress)
{
    return drawLanguages(report, [&progress](int drawn, int count) {
        progress.done(QStringLiteral("%1 of %2 languages drawn").arg(drawn).arg(count));
    });
}

/// Shows the report in the browser instead of in the console, which would vanish with langcheck.
int showInBrowser(const QStringList &dropped)
{
    const CheckedFolder folder =
        folderMeantBy(dropped.value(0, QCoreApplication::applicationDirPath()));
    QString error = folder.error;
    if (dropped.size() > 1)
        error = QStringLiteral("Drop a single folder.");
    if (error.isEmpty()) {
        const Report report = check(folder);
        Progress progress;
        const StartPictures start = drawStart(report);
        error = openPage(makePage(report, start, drawAll(report, progress)));
        if (error.isEmpty())
            return report.exitCode();
    }
    QMessageBox::critical(nullptr, QStringLiteral("langcheck"), error);
    return kFailed;
}

QString toJson(const QVector<Report> &reports)
{
    QJsonArray all;
    for (const Report &report : reports)
        all.append(toJson(report));
    const QJsonDocument document =
        all.size() == 1 ? QJsonDocument(all.first().toObject()) : QJsonDocument(all);
    return QString::fromUtf8(document.toJson());
}

QString toText(const QVector<Report> &reports, const Terminal &terminal)
{
    QStringList texts;
    for (const Report &report : reports) {
        texts += terminal.width > 0 ? toTerminalText(report, terminal.width, terminal.colours)
                                    : toText(report);
    }
    return texts.join(QLatin1Char('\n'));
}

/// Writes the bytes to the file, or prints them if it is "-".
QString writeOutput(const QString &file, const QByteArray &bytes)
{
    return file == QLatin1String("-") ? print(stdout, QString::fromUtf8(bytes))
                                      : writeFile(file, bytes);
}

/// Writes the page and the pictures of a report. Returns what can't be written and why.
QStringList writeDrawings(const CommandLine &commandLine, const Report &report, Progress &progress)
{
    const StartPictures start = drawStart(report);
    const QVector<LanguagePictures> languages = drawAll(report, progress);
    QStringList errors;
    if (!commandLine.html.isEmpty()) {
        errors += writeOutput(commandLine.html, makePage(report, start, languages));
        progress.done(QStringLiteral("page written"));
    }
    if (!commandLine.pictures.isEmpty()) {
        errors +=
            writePictures(commandLine.pictures, languages, [&progress](int written, int count) {
                progress.done(QStringLiteral("%1 of %2 pictures written").arg(written).arg(count));
            });
    }
    return errors;
}

/// Returns the exit code.
int finish(QStringList errors, int exitCode)
{
    errors.removeAll(QString());
    for (const QString &error : qAsConst(errors))
        print(stderr, QStringLiteral("langcheck: %1\n").arg(error));
    return errors.isEmpty() ? exitCode : kFailed;
}

int run(const CommandLine &commandLine)
{
    Progress progress;
    QVector<Report> reports;
    int exitCode = 0;
    for (const CheckedFolder &folder : commandLine.folders) {
        reports += check(folder);
        exitCode = std::max(exitCode, reports.last().exitCode());
        progress.done(QStringLiteral("folder checked"));
    }
    FILE *const stream = commandLine.outputIsTaken() ? stderr : stdout;
    QStringList errors {
        print(stream, commandLine.json ? toJson(reports) : toText(reports, terminalOf(stream)))};
    if (!commandLine.junit.isEmpty())
        errors += writeOutput(commandLine.junit, toJunit(reports));
    if (!commandLine.html.isEmpty() || !commandLine.pictures.isEmpty())
        errors += writeDrawings(commandLine, reports.first(), progress);
    return finish(errors, exitCode);
}

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(printFatalMessage);
    const bool startedByExplorer = isStartedByExplorer(argc, argv);
    if (startedByExplorer)
        closeConsole(); // Before anything else, because it is on the screen until then.
#ifndef Q_OS_WIN
    // Texts are measured but not shown, and there may not be a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Keeps Qt from creating a folder there.
    qputenv("TMPDIR", "/dev/null");
#endif
    const QApplication app(argc, argv);
#ifndef Q_OS_WIN
    // The font that Qt uses on a display, which is wider than Windows' usual ones.
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9));
#endif
    QCoreApplication::setApplicationName(QStringLiteral("langcheck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VERSION));
    const QStringList arguments = QCoreApplication::arguments();
    if (startedByExplorer)
        return showInBrowser(arguments.mid(1));

    const CommandLine commandLine = CommandLine::parse(arguments);
    if (!commandLine.error.isEmpty()) {
        print(stderr,
              QStringLiteral("langcheck: %1\nSee langcheck --help.\n").arg(commandLine.error));
        return kFailed;
    }
    if (!commandLine.output.isEmpty())
        return finish({print(stdout, commandLine.output)}, 0);
    return run(commandLine);
}
