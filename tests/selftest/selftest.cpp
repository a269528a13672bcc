// Runs the test programs of the self-test package one after the other, and writes report.txt and
// report.xml into the package's folder.
//
// selftest [NAME...]: runs all tests of tests.txt, or those named. Exits with 0 if all passed.

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSysInfo>
#include <QTextStream>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdio>

#include <windows.h>

namespace {

/// Seconds that a test may take, unless its variable ZENDEL_LIMIT says otherwise.
const int kLimit = 600;

/// A line of tests.txt: "NAME PROGRAM [VARIABLE=VALUE...] [ARGUMENT...]".
struct Test
{
    QString name;
    QString program;
    QStringList variables;
    QStringList arguments;
};

/// A test function, with its row of data, as Qt Test logs it.
struct Function
{
    QString name;
    QString result; ///< "PASS", "FAIL!", "SKIP" or another one of Qt Test's
    QString details;

    bool failed() const
    {
        return result == QLatin1String("FAIL!") || result == QLatin1String("XPASS");
    }
    bool skipped() const { return result.endsWith(QLatin1String("SKIP")); }
};

struct Result
{
    Test test;
    QString failure;      ///< Empty if the program has passed
    bool outside = false; ///< Whether the program failed outside its functions
    QList<Function> functions;
    QString log;
    double seconds = 0;
};

QString root()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/.."));
}

void print(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
}

QList<Test> readTests()
{
    QFile file(root() + QLatin1String("/tests/tests.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Test> tests;
    QTextStream in(&file);
    in.setCodec("UTF-8");
    QString line;
    while (in.readLineInto(&line)) {
        QTextStream words(&line);
        Test test;
        words >> test.name >> test.program;
        QString word;
        for (words >> word; !word.isEmpty(); words >> word) {
            if (test.arguments.isEmpty() && word.contains(QLatin1Char('=')))
                test.variables += word;
            else
                test.arguments += word;
        }
        if (!test.program.isEmpty())
            tests += test;
    }
    return tests;
}

/// Reads the results of the functions in a log. Lines after a result belong to it.
QList<Function> readFunctions(QString log)
{
    static const QRegularExpression result(
        QStringLiteral("^(PASS|FAIL!|SKIP|XFAIL|XPASS|BPASS|BFAIL|BSKIP) +: (.+)$"));
    QList<Function> functions;
    QTextStream in(&log, QIODevice::ReadOnly);
    QString line;
    while (in.readLineInto(&line)) {
        const QRegularExpressionMatch match = result.match(line);
        if (match.hasMatch()) {
            // "NAME(ROW)" and, unless it has passed, " DETAILS"
            const QString text = match.captured(2).trimmed();
            const int end =
                match.captured(1) == QLatin1String("PASS") ? -1 : text.indexOf(QLatin1String(") "));
            functions += end < 0
                ? Function {text, match.captured(1), {}}
                : Function {text.left(end + 1), match.captured(1), text.mid(end + 2)};
        } else if (!functions.isEmpty() && line.startsWith(QLatin1Char(' ')))
            functions.last().details += QLatin1Char('\n') + line;
    }
    return functions;
}

/// Ends a program and all that it has started, when this object is destroyed.
class Job
{
public:
    explicit Job(qint64 processId)
        : m_job(CreateJobObjectW(nullptr, nullptr))
    {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(m_job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
        HANDLE process = OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE,
                                     static_cast<DWORD>(processId));
        AssignProcessToJobObject(m_job, process);
        CloseHandle(process);
    }
    ~Job() { CloseHandle(m_job); }
    Q_DISABLE_COPY(Job)

private:
    HANDLE m_job;
};

Result run(const Test &test)
{
    Result result;
    result.test = test;
    result.outside = true;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString bin = QDir::toNativeSeparators(root() + QLatin1String("/bin"));
    environment.insert(QStringLiteral("PATH"),
                       bin + QLatin1Char(';') + environment.value(QStringLiteral("PATH")));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), bin);
    // Otherwise Qt Test writes to the debugger, if there is one.
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    // Nothing stays outside the folder, not even after a crash.
    for (const char *const name : {"TEMP", "TMP"})
        environment.insert(QLatin1String(name),
                           QDir::toNativeSeparators(root() + QLatin1String("/temp")));
    for (const QString &variable : test.variables) {
        environment.insert(variable.section(QLatin1Char('='), 0, 0),
                           variable.section(QLatin1Char('='), 1));
    }
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(root());

    QElapsedTimer timer;
    timer.start();
    process.start(root() + QLatin1String("/tests/") + test.program, test.arguments);
    if (!process.waitForStarted()) {
        result.failure = QStringLiteral("not started: ") + process.errorString();
        return result;
    }
    const Job job(process.processId());
    process.closeWriteChannel();
    const QString limit =
        environment.value(QStringLiteral("ZENDEL_LIMIT"), QString::number(kLimit));
    if (!process.waitForFinished(limit.toInt() * 1000)) {
        result.failure = QStringLiteral("stopped after %1 seconds").arg(limit);
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::CrashExit || process.exitCode() < 0) {
        result.failure = QStringLiteral("crashed with code 0x%1")
                             .arg(static_cast<uint>(process.exitCode()), 8, 16, QLatin1Char('0'));
    } else if (process.exitCode() != 0) {
        result.failure = QStringLiteral("failed with exit code %1").arg(process.exitCode());
        result.outside = false;
    }
    result.seconds = static_cast<double>(timer.elapsed()) / 1000;
    result.log = QString::fromUtf8(process.readAll()).remove(QLatin1Char('\r'));
    result.functions = readFunctions(result.log);
    const QList<Function> &functions = result.functions;
    if (result.failure.isEmpty() && functions.isEmpty())
        result.failure = QStringLiteral("ran no test functions");
    else if (std::none_of(functions.begin(), functions.end(),
                          [](const Function &function) { return function.failed(); }))
        result.outside = true;
    return result;
}

/// Returns the version in a file's version resource.
QString fileVersion(const QString &fileName)
{
    const QString native = QDir::toNativeSeparators(fileName);
    const auto *const name = reinterpret_cast<const wchar_t *>(native.utf16());
    DWORD ignored = 0;
    QByteArray data(static_cast<int>(GetFileVersionInfoSizeW(name, &ignored)), '\0');
    void *info = nullptr;
    UINT length = 0;
    if (data.isEmpty()
        || !GetFileVersionInfoW(name, 0, static_cast<DWORD>(data.size()), data.data())
        || !VerQueryValueW(data.data(), L"\\", &info, &length))
        return QStringLiteral("unknown");
    const auto *const version = static_cast<const VS_FIXEDFILEINFO *>(info);
    return QStringLiteral("%1.%2.%3")
        .arg(HIWORD(version->dwFileVersionMS))
        .arg(LOWORD(version->dwFileVersionMS))
        .arg(HIWORD(version->dwFileVersionLS));
}

/// Returns what the results depend on, as pairs of a name and a value.
QList<QPair<QString, QString>> properties()
{
    QString windows =
        QSysInfo::prettyProductName() + QLatin1String(", ") + QSysInfo::kernelVersion();
    using WineVersion = const char *(*)();
    const auto wine = reinterpret_cast<WineVersion>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version")));
    if (wine)
        windows += QLatin1String(", in fact Wine ") + QLatin1String(wine());
    SetProcessDPIAware();
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return {
        {QStringLiteral("Windows"), windows},
        {QStringLiteral("Plug-in"),
         fileVersion(root() + QLatin1String("/bin/Zendel.dll")) + QStringLiteral(", for " FAMILY)},
        {QStringLiteral("Qt"), QLatin1String(qVersion())},
        {QStringLiteral("Screen"),
         QStringLiteral("%1 x %2 pixels, scaled to %3%")
             .arg(GetSystemMetrics(SM_CXSCREEN))
             .arg(GetSystemMetrics(SM_CYSCREEN))
             .arg(dpi * 100 / 96)},
        {QStringLiteral("Code page"), QString::number(GetACP())},
    };
}

int countFailed(const QList<Result> &results)
{
    int failed = 0;
    for (const Result &result : results)
        failed += result.failure.isEmpty() ? 0 : 1;
    return failed;
}

void writeText(QIODevice &file, const QList<Result> &results)
{
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out.setGenerateByteOrderMark(true); // For Notepad
    out << "Self-test of Zendel: " << results.size() - countFailed(results) << " of "
        << results.size() << " tests passed\r\n\r\n";
    const auto all = properties();
    for (const auto &property : all)
        out << property.first.leftJustified(10) << property.second << "\r\n";
    out << "\r\n";
    for (const Result &result : results) {
        out << (result.failure.isEmpty() ? "passed  " : "FAILED  ")
            << result.test.name.leftJustified(32) << QString::number(result.seconds, 'f', 1)
            << " s";
        if (!result.failure.isEmpty())
            out << ", " << result.failure;
        out << "\r\n";
        for (const Function &function : result.functions) {
            if (function.skipped()) {
                out << "skipped " << function.name << ": " << function.details.simplified()
                    << "\r\n";
            }
        }
    }
    for (const Result &result : results) {
        QString log = result.log;
        if (!result.failure.isEmpty() && !log.isEmpty()) {
            out << "\r\n== " << result.test.name << ": " << result.failure << "\r\n"
                << log.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
        }
    }
}

/// Returns the text without the characters that XML doesn't allow.
QString xmlText(QString text)
{
    static const QRegularExpression forbidden(QStringLiteral(
        "[^\\x{9}\\x{A}\\x{20}-\\x{D7FF}\\x{E000}-\\x{FFFD}\\x{10000}-\\x{10FFFF}]"));
    return text.replace(forbidden, QStringLiteral("?"));
}

void writeXml(QIODevice &file, const QList<Result> &results)
{
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    const auto all = properties();
    for (const Result &result : results) {
        // What a program does outside its functions, such as a crash, counts as one more.
        const QList<Function> &functions = result.functions;
        const auto failures = std::count_if(functions.begin(), functions.end(),
                                            [](const Function &f) { return f.failed(); });
        const auto skipped = std::count_if(functions.begin(), functions.end(),
                                           [](const Function &f) { return f.skipped(); });
        const bool error = !result.failure.isEmpty() && result.outside;
        xml.writeStartElement(QStringLiteral("testsuite"));
        xml.writeAttribute(QStringLiteral("name"), result.test.name);
        xml.writeAttribute(QStringLiteral("tests"),
                           QString::number(functions.size() + (error ? 1 : 0)));
        xml.writeAttribute(QStringLiteral("failures"), QString::number(failures));
        xml.writeAttribute(QStringLiteral("errors"), QString::number(error ? 1 : 0));
        xml.writeAttribute(QStringLiteral("skipped"), QString::number(skipped));
        xml.writeAttribute(QStringLiteral("time"), QString::number(result.seconds, 'f', 3));
        xml.writeStartElement(QStringLiteral("properties"));
        for (const auto &property : all) {
            xml.writeEmptyElement(QStringLiteral("property"));
            xml.writeAttribute(QStringLiteral("name"), property.first);
            xml.writeAttribute(QStringLiteral("value"), property.second);
        }
        xml.writeEndElement();
        for (const Function &function : functions) {
            xml.writeStartElement(QStringLiteral("testcase"));
            xml.writeAttribute(QStringLiteral("classname"), result.test.name);
            xml.writeAttribute(QStringLiteral("name"), xmlText(function.name));
            if (function.failed())
                xml.writeTextElement(QStringLiteral("failure"), xmlText(function.details));
            else if (function.skipped())
                xml.writeTextElement(QStringLiteral("skipped"), xmlText(function.details));
            xml.writeEndElement();
        }
        if (error) {
            xml.writeStartElement(QStringLiteral("testcase"));
            xml.writeAttribute(QStringLiteral("classname"), result.test.name);
            xml.writeAttribute(QStringLiteral("name"), QStringLiteral("program"));
            xml.writeTextElement(QStringLiteral("error"), result.failure);
            xml.writeEndElement();
        }
        if (!result.failure.isEmpty())
            xml.writeTextElement(QStringLiteral("system-out"), xmlText(result.log));
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
}

template<typename Write>
bool save(const QString &name, Write write, const QList<Result> &results)
{
    QSaveFile file(root() + QLatin1Char('/') + name);
    if (file.open(QIODevice::WriteOnly)) {
        write(file, results);
        if (file.commit())
            return true;
    }
    print(QStringLiteral("Can't write ") + QDir::toNativeSeparators(file.fileName())
          + QStringLiteral(": ") + file.errorString() + QLatin1Char('\n'));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList names = QCoreApplication::arguments().mid(1);
    QList<Test> tests;
    const QList<Test> known = readTests();
    for (const Test &test : known) {
        if (names.isEmpty() || names.contains(test.name))
            tests += test;
    }
    if (tests.isEmpty()) {
        print(QStringLiteral("No test to run; the names of all tests are in %1\n")
                  .arg(QDir::toNativeSeparators(root() + QLatin1String("/tests/tests.txt"))));
        return 2;
    }

    // A crashing test must not wait for somebody to close a message box. Tests inherit the mode.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    QDir(root()).mkpath(QStringLiteral("temp"));
    QList<Result> results;
    for (const Test &test : qAsConst(tests))
        results += Result {test, QStringLiteral("not run"), true, {}, {}, 0};
    const auto saveReports = [&results] {
        return save(QStringLiteral("report.txt"), writeText, results)
            && save(QStringLiteral("report.xml"), writeXml, results);
    };
    for (int i = 0; i < tests.size(); ++i) {
        // In case Windows itself has to be restarted
        results[i].failure = QStringLiteral("did not end");
        if (!saveReports())
            return 2;
        print(QStringLiteral("%1 of %2  %3")
                  .arg(i + 1, 2)
                  .arg(tests.size())
                  .arg(tests.at(i).name.leftJustified(32)));
        results[i] = run(tests.at(i));
        const Result &result = results.at(i);
        print(QStringLiteral("%1 s  %2\n")
                  .arg(result.seconds, 6, 'f', 1)
                  .arg(result.failure.isEmpty() ? QStringLiteral("passed")
                                                : QLatin1String("FAILED: ") + result.failure));
    }
    if (!saveReports())
        return 2;
    QDir(root() + QLatin1String("/temp")).removeRecursively();

    const int failed = countFailed(results);
    print(QStringLiteral("\n%1 of %2 tests passed. The report is in %3\n")
              .arg(results.size() - failed)
              .arg(results.size())
              .arg(QDir::toNativeSeparators(root() + QLatin1String("/report.txt"))));
    return failed == 0 ? 0 : 1;
}
