#include "langcheck/DeploymentCheck.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFont>
#include <QJsonDocument>
#include <QTextStream>

namespace {

const int kWrongUsage = 3;

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
    return kWrongUsage;
}

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

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Checks Lang/Lang.ini and the translations that it names, as the settings plug-in reads "
        "them,\nand the DLLs next to the host's executable, if Qt5Core.dll is one of them.\nPrints "
        "what the operator will see, then errors and warnings. Changes nothing.\n\n"
        "Exit code: 0 no findings, 1 warnings only, 2 errors, which the operator would see,\n"
        "3 incorrect usage."));
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Prints the report as JSON, for programs."));
    parser.addOption(json);
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
        print(stdout, QStringLiteral("langcheck " VERSION "\n"));
        return 0;
    }
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() > 1)
        return misused(QStringLiteral("More than one folder given."));
    const QFileInfo folder(arguments.isEmpty() ? QCoreApplication::applicationDirPath()
                                               : arguments.first());
    if (!folder.isDir())
        return misused(QStringLiteral("\"%1\" is not a folder.").arg(folder.filePath()));

    const Report report = checkDeployment(folder.canonicalFilePath());
    print(stdout,
          parser.isSet(json) ? QString::fromUtf8(QJsonDocument(report.toJson()).toJson())
                             : report.toText());
    return report.exitCode();
}
