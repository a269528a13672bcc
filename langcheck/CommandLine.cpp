#include "langcheck/CommandLine.h"

#include "commit.h"
#include "langcheck/Texts.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <numeric>

namespace {

const QString kStandardOutput = QStringLiteral("-");

const char *const kDescription =
    "langcheck, the deployment checker, reads Lang/Lang.ini and the translations as\n"
    "the settings plug-in does, checks the DLLs next to the host's executable, and\n"
    "prints what the operator will see, then errors and warnings. It doesn't change\n"
    "anything in the folder. After a double-click on Windows, it shows the report in\n"
    "the browser instead, as the page langcheck.html in the user's temporary folder.\n\n"
    "On a terminal, the findings are grouped by file, and in colour unless the\n"
    "variable NO_COLOR is set. Elsewhere, each is a single line.\n\n"
    "The exit code is 0 without findings, 1 for warnings only, 2 for errors, which\n"
    "the operator would see, and 3 for incorrect usage or output that can't be\n"
    "written. For several folders, it is the highest of theirs.";

bool containsLang(const QString &folder)
{
    return QFileInfo(folder + QLatin1String("/Lang")).isDir();
}

/// Returns how many letters have to be inserted, deleted or replaced in @p a to get @p b.
int distance(const QString &a, const QString &b)
{
    QVector<int> row(b.size() + 1); // For the first i letters of a
    std::iota(row.begin(), row.end(), 0);
    for (int i = 1; i <= a.size(); ++i) {
        int diagonal = row[0]++;
        for (int j = 1; j <= b.size(); ++j) {
            const int replaced = diagonal + (a.at(i - 1) == b.at(j - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.last();
}

QString unknownOption(const QString &option, const QStringList &known)
{
    QString name = option;
    name.remove(0, name.startsWith(QLatin1String("--")) ? 2 : 1);
    const auto nearest =
        std::min_element(known.begin(), known.end(), [&name](const QString &a, const QString &b) {
            return distance(name, a) < distance(name, b);
        });
    QString error = QStringLiteral("Unknown option \"%1\".").arg(option);
    if (distance(name, *nearest) <= 2)
        error += QStringLiteral(" Did you mean --%1?").arg(*nearest);
    return error;
}

/// Returns the folder to check if none is given.
CheckedFolder defaultFolder()
{
    CheckedFolder current = folderMeantBy(QDir::currentPath());
    if (current.reason.isEmpty())
        current.reason = QStringLiteral("the current folder");
    CheckedFolder own {QFileInfo(QCoreApplication::applicationDirPath()).canonicalFilePath(),
                       QStringLiteral("langcheck's own folder"),
                       {}};
    const bool inCurrent = containsLang(current.path);
    const bool inOwn = containsLang(own.path);
    if (current.path == own.path || (inOwn && !inCurrent))
        return own;
    if (inCurrent && !inOwn)
        return current;
    // A report about the wrong folder would be mistaken for one about the right one.
    own.error = withValues("%1 the current folder, \"%2\", %3 langcheck's own, \"%4\", "
                           "%5 a folder Lang. Give the folder to check as an argument.",
                           {QLatin1String(inOwn ? "Both" : "Neither"), current.path,
                            QLatin1String(inOwn ? "and" : "nor"), own.path,
                            QLatin1String(inOwn ? "have" : "has")});
    return own;
}

} // namespace

CheckedFolder folderMeantBy(const QString &path)
{
    const auto isLang = [](const QFileInfo &info) {
        return info.isDir()
            && info.fileName().compare(QLatin1String("Lang"), Qt::CaseInsensitive) == 0;
    };
    // Without dots at the end, but with symbolic links
    QFileInfo folder(path.isEmpty() ? path : QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (folder.isFile()
        && folder.fileName().compare(QLatin1String("Lang.ini"), Qt::CaseInsensitive) == 0
        && isLang(QFileInfo(folder.path())))
        folder.setFile(folder.path());
    if (!folder.isDir())
        return {{}, {}, QStringLiteral("\"%1\" isn't a folder.").arg(path)};
    // The host's folder may be called Lang, too.
    if (!isLang(folder) || containsLang(folder.filePath()))
        return {folder.canonicalFilePath(), {}, {}};
    return {QFileInfo(folder.path()).canonicalFilePath(),
            QStringLiteral("to which \"%1\" belongs").arg(path),
            {}};
}

bool CommandLine::outputIsTaken() const
{
    return html == kStandardOutput || junit == kStandardOutput;
}

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    // Otherwise "-html" would be several options, "-h" among them.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QLatin1String(kDescription));
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Prints the report as JSON, for programs: an "
                                                 "object, or an array of them for several "
                                                 "folders."));
    const QCommandLineOption html(
        QStringLiteral("html"),
        QStringLiteral("Also writes the report as a page for a browser, with pictures of what the "
                       "operator will see; \"-\" prints the page, and the report goes to standard "
                       "error."),
        QStringLiteral("file"));
    const QCommandLineOption junit(
        QStringLiteral("junit"),
        QStringLiteral("Also writes the errors and warnings as JUnit XML, for build servers; \"-\" "
                       "as for --html."),
        QStringLiteral("file"));
    const QCommandLineOption pictures(
        QStringLiteral("pictures"),
        QStringLiteral("Also writes the pictures as PNG files into a folder: one for each "
                       "language, and languages.png with all of them. Creates the folder if "
                       "necessary, and removes the pictures of an earlier run from it."),
        QStringLiteral("folder"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Displays this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Displays version information."));
    parser.addOptions({json, html, junit, pictures, help, version});
    parser.addPositionalArgument(
        QStringLiteral("folder"),
        QStringLiteral("The folder of the host's executable, or its Lang or Lang.ini. By default, "
                       "the current folder or langcheck's own, whichever has a folder Lang; --html "
                       "and --pictures need a single one."),
        QStringLiteral("[FOLDER...]"));

    CommandLine result;
    parser.parse(arguments);
    const QStringList names {QStringLiteral("json"),  QStringLiteral("html"),
                             QStringLiteral("junit"), QStringLiteral("pictures"),
                             QStringLiteral("help"),  QStringLiteral("version")};
    const QStringList optionsOnly = arguments.mid(0, arguments.indexOf(QStringLiteral("--")));
    for (const QString &argument : optionsOnly) {
        const QString option = argument.section(QLatin1Char('='), 0, 0);
        if (option.startsWith(QLatin1Char('-')) && names.contains(option.mid(1))) {
            result.error = unknownOption(option, names);
            return result;
        }
    }
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        // The parser doesn't tell how many dashes there were.
        const QString option = QStringLiteral("--") + unknown.first();
        const bool two =
            std::any_of(optionsOnly.begin(), optionsOnly.end(),
                        [&](const QString &argument) { return argument.startsWith(option); });
        result.error = unknownOption(two ? option : option.mid(1), names);
        return result;
    }
    result.error = parser.errorText();
    if (!result.error.isEmpty())
        return result;
    if (parser.isSet(help)) {
        result.output = parser.helpText();
        const QString &program = arguments.first();
        result.output.replace(result.output.indexOf(program), program.size(),
                              QStringLiteral("langcheck"));
    }
    if (parser.isSet(version) && result.output.isEmpty())
        result.output = QStringLiteral("langcheck " VERSION COMMIT "\n");
    if (!result.output.isEmpty())
        return result;

    for (const QCommandLineOption &option : {html, junit, pictures}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            result.error =
                QStringLiteral("The value of --%1 is empty.").arg(option.names().first());
    }
    result.json = parser.isSet(json);
    result.html = parser.value(html);
    result.junit = parser.value(junit);
    result.pictures = parser.value(pictures);
    if (result.html == kStandardOutput && result.junit == kStandardOutput)
        result.error = QStringLiteral("Only one of --html and --junit can be printed.");

    const QStringList given = parser.positionalArguments();
    for (const QString &path : given)
        result.folders += folderMeantBy(path);
    if (given.isEmpty())
        result.folders += defaultFolder();
    if (given.size() > 1 && !(result.html + result.pictures).isEmpty())
        result.error = QStringLiteral("--html and --pictures need a single folder.");
    for (const CheckedFolder &folder : qAsConst(result.folders)) {
        if (result.error.isEmpty())
            result.error = folder.error;
    }
    const QFileInfo pictureFolder(result.pictures);
    if (result.error.isEmpty() && pictureFolder.exists() && !pictureFolder.isDir())
        result.error = QStringLiteral("\"%1\" isn't a folder.").arg(result.pictures);
    return result;
}
