#include "langcheck/DeploymentCheck.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFont>
#include <QJsonDocument>
#include <QTextStream>

namespace {

const int kNoUsableCall = 3;

/// In UTF-8 everywhere: names of languages are in all scripts.
void print(FILE *stream, const QString &text)
{
    QTextStream out(stream);
    out.setCodec("UTF-8");
    out << text;
}

/// The others are of the dialog's slot without a signal and the like, nothing about the deployment.
void printFatalMessage(QtMsgType type, const QMessageLogContext & /*context*/,
                       const QString &message)
{
    if (type == QtFatalMsg)
        print(stderr, message + QLatin1Char('\n'));
}

int misused(const QString &reason)
{
    print(stderr, QStringLiteral("langcheck: %1\nTry langcheck --help.\n").arg(reason));
    return kNoUsableCall;
}

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(printFatalMessage);
#ifdef Q_OS_WIN
    const QApplication app(argc, argv);
#else
    // Texts are measured, but nothing is shown, and there may be no display. The font is the one
    // that Qt takes on a display, and is wider than the usual ones of Windows.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Where Qt would make a folder for its user.
    qputenv("TMPDIR", "/dev/null");
    const QApplication app(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9));
#endif
    QCoreApplication::setApplicationName(QStringLiteral("langcheck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Tells what the settings plug-in makes of a deployment, Lang/Lang.ini and the translations "
        "that it\nnames, and what its author probably did not mean. Changes nothing.\n\n"
        "Exit code: 0 clean, 1 warnings, 2 errors, which the operator would see, 3 no usable "
        "call."));
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Print one JSON object, for programs."));
    parser.addOption(json);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this."));
    parser.addOption(help);
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("appdir"),
        QStringLiteral("The folder of the host's executable; that of langcheck by default."),
        QStringLiteral("[APPDIR]"));

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
        return misused(QStringLiteral("More than one folder is given."));
    const QFileInfo folder(arguments.isEmpty() ? QCoreApplication::applicationDirPath()
                                               : arguments.first());
    if (!folder.isDir())
        return misused(QStringLiteral("\"%1\" is no folder.").arg(folder.filePath()));

    const Report report = checkDeployment(folder.canonicalFilePath());
    print(stdout,
          parser.isSet(json) ? QString::fromUtf8(QJsonDocument(report.toJson()).toJson())
                             : report.toText());
    return report.exitCode();
}
