#include "commit.h"
#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/draw/Pictures.h"
#include "langcheck/write/Console.h"
#include "langcheck/write/Json.h"
#include "langcheck/write/Output.h"
#include "langcheck/write/Page.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFont>
#include <QJsonDocument>
#include <QMessageBox>
#include <QTextStream>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

namespace {

const int kFailed = 3;

/// Prints in UTF-8 on all platforms, because language names are in all scripts.
void print(FILE *stream, const QString &text)
{
    QTextStream out(stream);
    out.setCodec("UTF-8");
    out << text;
}

/// Prints fatal messages only. Others are not about the deployment, but about the dialog's
/// unconnected slot and the like.
void printFatalMessage(QtMsgType type, const QMessageLogContext & /*context*/,
                       const QString &message)
{
    if (type == QtFatalMsg)
        print(stderr, message + QLatin1Char('\n'));
}

int misused(const QString &reason)
{
    print(stderr, QStringLiteral("langcheck: %1\nSee langcheck --help.\n").arg(reason));
    return kFailed;
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

QVector<LanguagePictures> drawAll(const Report &report, Progress &progress)
{
    return drawLanguages(report, [&progress](int drawn, int count) {
        progress.done(QStringLiteral("%1 of %2 languages drawn").arg(drawn).arg(count));
    });
}

/// Writes a picture of each language and one of all. Returns what can't be written and why.
QString writePictures(const QString &folder, const QVector<LanguagePictures> &all,
                      Progress &progress)
{
    for (int i = 0; i < all.size(); ++i) {
        QString error = writePicture(folder, all.at(i));
        if (!error.isEmpty())
            return error;
        progress.done(QStringLiteral("%1 of %2 pictures written").arg(i + 1).arg(all.size()));
    }
    return all.isEmpty() ? QString() : writeSheet(folder, all);
}

#ifdef Q_OS_WIN
/// Returns true if langcheck was started with a console of its own, as Explorer does, and without
/// options: by a double-click, or by a folder that was dropped on it. A program that reads the
/// output may do that too, but then the output doesn't go to the console.
bool isStartedByExplorer(int argc, char *argv[])
{
    if (argc > 2 || (argc == 2 && argv[1][0] == '-'))
        return false;
    DWORD process = 0;
    DWORD mode = 0;
    return GetConsoleProcessList(&process, 1) == 1
        && GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode);
}

/// Shows the report in the browser instead of in the console, which would vanish with langcheck.
int showInBrowser(const QFileInfo &folder)
{
    QString error = QStringLiteral("\"%1\" isn't a folder.").arg(folder.filePath());
    if (folder.isDir()) {
        const Report report = checkDeployment(folder.canonicalFilePath());
        Progress progress;
        const StartPictures start = drawStart(report);
        error = openPage(makePage(report, start, drawAll(report, progress)));
        if (error.isEmpty())
            return report.exitCode();
    }
    QMessageBox::critical(nullptr, QStringLiteral("langcheck"), error);
    return kFailed;
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(printFatalMessage);
#ifdef Q_OS_WIN
    const bool startedByExplorer = isStartedByExplorer(argc, argv);
    if (startedByExplorer)
        FreeConsole(); // Before anything else, because it is on the screen until then.
    const QApplication app(argc, argv);
#else
    // Texts are measured but not shown, and there may not be a display. The font is the one that Qt
    // uses on a display, and wider than Windows' usual ones.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Keeps Qt from creating a folder there.
    qputenv("TMPDIR", "/dev/null");
    const QApplication app(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9));
#endif
    QCoreApplication::setApplicationName(QStringLiteral("langcheck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VERSION));
#ifdef Q_OS_WIN
    if (startedByExplorer) {
        return showInBrowser(QFileInfo(
            QCoreApplication::arguments().value(1, QCoreApplication::applicationDirPath())));
    }
#endif

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "langcheck, the deployment checker, reads Lang/Lang.ini and the translations as the\n"
        "settings plug-in does, checks the DLLs next to the host's executable if Qt5Core.dll is\n"
        "one of them, and prints what the operator will see, then errors and warnings. It doesn't\n"
        "change anything in the folder. After a double-click on Windows, it shows the report in\n"
        "the browser instead, as the page langcheck.html in the user's temporary folder.\n\n"
        "The exit code is 0 without findings, 1 for warnings only, 2 for errors, which the\n"
        "operator would see, and 3 for incorrect usage or a file that can't be written."));
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Prints the report as JSON, for programs."));
    parser.addOption(json);
    const QCommandLineOption html(
        QStringLiteral("html"),
        QStringLiteral("Also writes the report as a page for a browser, with pictures of what the "
                       "operator will see."),
        QStringLiteral("file"));
    parser.addOption(html);
    const QCommandLineOption pictures(
        QStringLiteral("pictures"),
        QStringLiteral("Also writes the pictures as PNG files into an existing folder: one for "
                       "each language, and languages.png with all of them."),
        QStringLiteral("folder"));
    parser.addOption(pictures);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Displays this help."));
    parser.addOption(help);
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("folder"),
        QStringLiteral("The folder of the host's executable; by default, that of langcheck."),
        QStringLiteral("[FOLDER]"));

    if (!parser.parse(QCoreApplication::arguments()))
        return misused(parser.errorText());
    if (parser.isSet(help)) {
        print(stdout, parser.helpText());
        return 0;
    }
    if (parser.isSet(version)) {
        print(stdout, QStringLiteral("langcheck " VERSION COMMIT "\n"));
        return 0;
    }
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() > 1)
        return misused(QStringLiteral("More than one folder was given."));
    const QFileInfo folder(arguments.isEmpty() ? QCoreApplication::applicationDirPath()
                                               : arguments.first());
    if (!folder.isDir())
        return misused(QStringLiteral("\"%1\" isn't a folder.").arg(folder.filePath()));
    const QString pictureFolder = parser.value(pictures);
    if (parser.isSet(pictures) && !QFileInfo(pictureFolder).isDir())
        return misused(QStringLiteral("\"%1\" isn't a folder.").arg(pictureFolder));

    Progress progress;
    const Report report = checkDeployment(folder.canonicalFilePath());
    print(stdout,
          parser.isSet(json) ? QString::fromUtf8(QJsonDocument(toJson(report)).toJson())
                             : toText(report));
    if (!parser.isSet(html) && !parser.isSet(pictures))
        return report.exitCode();

    progress.done(QStringLiteral("folder checked"));
    const StartPictures start = drawStart(report);
    const QVector<LanguagePictures> languages = drawAll(report, progress);
    QStringList errors;
    if (parser.isSet(html)) {
        errors += writePage(parser.value(html), makePage(report, start, languages));
        progress.done(QStringLiteral("page written"));
    }
    if (parser.isSet(pictures))
        errors += writePictures(pictureFolder, languages, progress);
    errors.removeAll(QString());
    for (const QString &error : qAsConst(errors))
        print(stderr, QStringLiteral("langcheck: %1\n").arg(error));
    return errors.isEmpty() ? report.exitCode() : kFailed;
}
