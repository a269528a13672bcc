#include "commit.h"
#include "langcheck/DeploymentCheck.h"
#include "langcheck/Output.h"
#include "langcheck/Page.h"
#include "langcheck/Pictures.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFont>
#include <QJsonDocument>
#include <QMessageBox>
#include <QTextStream>

#include <algorithm>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

namespace {

const int kFailed = 3;
const int kMostPictures = 256; // As many as the machine can tell apart

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

/// Draws the languages of the report's list, and prints the progress if that takes long.
QVector<LanguagePictures> drawLanguages(const Report &report)
{
    QVector<LanguagePictures> result;
    const int count = std::min(report.listed.size(), kMostPictures);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i) {
        result += drawLanguage(report.listed.at(i), i);
        if (timer.elapsed() > 1000) {
            print(stderr, QStringLiteral("%1 of %2 languages drawn\n").arg(i + 1).arg(count));
            timer.restart();
        }
    }
    return result;
}

#ifdef Q_OS_WIN
/// Returns true if langcheck was started with a console of its own, as Explorer does. A program
/// that reads the output may do that too, but then the output doesn't go to the console.
bool ownsConsole()
{
    DWORD process = 0;
    DWORD mode = 0;
    return GetConsoleProcessList(&process, 1) == 1
        && GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode);
}

/// Shows the report in the browser instead of in the console, which would vanish with langcheck.
int showInBrowser()
{
    FreeConsole();
    const Report report =
        checkDeployment(QFileInfo(QCoreApplication::applicationDirPath()).canonicalFilePath());
    const QImage start = drawStart(report);
    const QString error = openPage(makePage(report, start, drawLanguages(report)));
    if (error.isEmpty())
        return report.exitCode();
    QMessageBox::critical(nullptr, QStringLiteral("langcheck"), error);
    return kFailed;
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(printFatalMessage);
#ifdef Q_OS_WIN
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
    if (argc == 1 && ownsConsole())
        return showInBrowser();
#endif

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Checks Lang/Lang.ini and the translations that it names, as the settings plug-in reads "
        "them,\nand the DLLs next to the host's executable, if Qt5Core.dll is one of them.\nPrints "
        "what the operator will see, then errors and warnings. Changes nothing in the folder.\n"
        "After a double click on Windows, shows the report in the browser instead, as the page\n"
        "langcheck.html in the user's temporary folder.\n\n"
        "Exit code: 0 no findings, 1 warnings only, 2 errors, which the operator would see,\n"
        "3 incorrect usage, or a file cannot be written."));
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
        QStringLiteral("Folder of the host's executable. Default: the folder of langcheck."),
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
        return misused(QStringLiteral("More than one folder given."));
    const QFileInfo folder(arguments.isEmpty() ? QCoreApplication::applicationDirPath()
                                               : arguments.first());
    if (!folder.isDir())
        return misused(QStringLiteral("\"%1\" is not a folder.").arg(folder.filePath()));
    const QString pictureFolder = parser.value(pictures);
    if (parser.isSet(pictures) && !QFileInfo(pictureFolder).isDir())
        return misused(QStringLiteral("\"%1\" is not a folder.").arg(pictureFolder));

    const Report report = checkDeployment(folder.canonicalFilePath());
    print(stdout,
          parser.isSet(json) ? QString::fromUtf8(QJsonDocument(report.toJson()).toJson())
                             : report.toText());
    if (!parser.isSet(html) && !parser.isSet(pictures))
        return report.exitCode();

    const QImage start = drawStart(report);
    const QVector<LanguagePictures> languages = drawLanguages(report);
    QStringList errors;
    if (parser.isSet(html))
        errors += writePage(parser.value(html), makePage(report, start, languages));
    if (parser.isSet(pictures))
        errors += writePictures(pictureFolder, languages);
    errors.removeAll(QString());
    for (const QString &error : qAsConst(errors))
        print(stderr, QStringLiteral("langcheck: %1\n").arg(error));
    return errors.isEmpty() ? report.exitCode() : kFailed;
}
