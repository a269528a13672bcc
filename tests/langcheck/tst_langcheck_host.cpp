// Tests the findings about the DLLs next to the host's executable.

#include "langcheck/check/HostCheck.h"
#include "langcheck/write/Console.h"
#include "langcheck/write/Json.h"

#include "DllWriter.h"
#include "support/Warnings.h"

#include <QDir>
#include <QFile>
#include <QPair>
#include <QTemporaryDir>
#include <QTest>
#include <QVector>

#include <memory>

using Files = QVector<QPair<const char *, QByteArray>>; ///< By name; null to remove the file.
Q_DECLARE_METATYPE(Files)

namespace {

/// Hosts without findings: two with little more than the plug-in, and one for MinGW with a program
/// and more of Qt.
enum Host { Msvc, MinGw, Whole };

const QVersionNumber kOwnVersion(QT_VERSION_MAJOR, QT_VERSION_MINOR, QT_VERSION_PATCH);
const char *const kRuntime[] = {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"};

QByteArray functionName(bool msvc)
{
    return msvc ? "??0QString@@QEAA@XZ" : "_ZN7QStringC1Ev";
}

DllContents qtContents(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    DllContents contents;
    contents.exports = {functionName(msvc)};
    contents.version = version;
    return contents;
}

QByteArray qtCore(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    return makeDll(qtContents(msvc, version));
}

QByteArray program(bool msvc)
{
    DllContents contents;
    contents.imports = {functionName(msvc)};
    contents.characteristics = 0x0022;
    return makeDll(contents);
}

QByteArray plugin(bool msvc)
{
    DllContents contents;
    contents.exports = {"NewInterface", "ReleaseInterface"};
    contents.imports = {functionName(msvc)};
    return makeDll(contents);
}

} // namespace

class tst_langcheck_host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void init();
    void cleanup();

    void nothingIsCheckedWithoutQt();
    void qtIsNamed_data();
    void qtIsNamed();
    void mistakesAreFound_data();
    void mistakesAreFound();
    void replacementsFitTheHost();
    void startIsNotPromised();
    void runtimeOfMsvc();

private:
    void write(const char *name, const QByteArray &bytes);
    void install(int host);
    Report check();
    QString checkedFindings();

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_systemRoot;
    QString m_previousDir;
};

void tst_langcheck_host::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_systemRoot = qgetenv("SystemRoot");
    write("Windows/System32/vcruntime140.dll", "any");
    // Relative, because qputenv() can't pass each name of a folder
    m_previousDir = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    qputenv("SystemRoot", "Windows");
}

void tst_langcheck_host::cleanup()
{
    if (m_systemRoot.isNull())
        qunsetenv("SystemRoot");
    else
        qputenv("SystemRoot", m_systemRoot);
    QVERIFY(QDir::setCurrent(m_previousDir));
    QCOMPARE(Warnings::take(), QStringList());
}

/// Writes a file of the host, or removes it if @p bytes is null.
void tst_langcheck_host::write(const char *name, const QByteArray &bytes)
{
    QFile file(m_folder->filePath(QLatin1String(name)));
    if (bytes.isNull()) {
        QVERIFY(file.remove());
        return;
    }
    QVERIFY(QFileInfo(file).dir().mkpath(QStringLiteral(".")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void tst_langcheck_host::install(int host)
{
    const bool msvc = host == Msvc;
    write("Qt5Core.dll", qtCore(msvc));
    write("Zendel.dll", plugin(msvc));
    write("platforms/qwindows.dll", plugin(msvc));
    if (msvc)
        return;
    for (const char *const name : kRuntime)
        write(name, "any");
    if (host == MinGw)
        return;
    write("Qt5Gui.dll", qtCore(false));
    write("Qt5Widgets.dll", qtCore(false));
    write("MachineControl.exe", program(false));
}

Report tst_langcheck_host::check()
{
    Report report;
    report.applicationDir = m_folder->path();
    checkHost(report);
    return report;
}

/// Returns file, severity, id and text of each finding, the text up to the effect.
QString tst_langcheck_host::checkedFindings()
{
    QStringList result;
    const QList<Finding> findings = check().findings;
    for (const Finding &finding : findings) {
        result += QStringLiteral("%1 %2 %3: %4")
                      .arg(finding.file,
                           finding.severity == Finding::Error ? QStringLiteral("error")
                                                              : QStringLiteral("warning"),
                           finding.id(), finding.text().section(QLatin1String("; "), 0, 0));
    }
    return result.join(QLatin1Char('\n'));
}

void tst_langcheck_host::nothingIsCheckedWithoutQt()
{
    write("Zendel.dll", "damaged");
    const Report report = check();
    QVERIFY(report.findings.isEmpty());
    QVERIFY(!report.hostQt);
    QVERIFY(!toText(report).contains(QLatin1String("Qt")));
    QVERIFY(!toJson(report).contains(QStringLiteral("hostQt")));
}

void tst_langcheck_host::qtIsNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("compiler");
    QTest::addColumn<QString>("line");

    QTest::newRow("MSVC") << qtCore(true, QVersionNumber(5, 15, 99)) << QStringLiteral("5.15.99")
                          << QStringLiteral("MSVC") << QStringLiteral("5.15.99, for MSVC");
    QTest::newRow("MinGW") << qtCore(false, QVersionNumber(5, 12, 0)) << QStringLiteral("5.12.0")
                           << QStringLiteral("MinGW-w64")
                           << QStringLiteral("5.12.0, for MinGW-w64");
    QTest::newRow("no version") << qtCore(true, {}) << QString() << QStringLiteral("MSVC")
                                << QStringLiteral("unknown version, for MSVC");
    QTest::newRow("not a DLL") << QByteArray("text") << QString() << QString()
                               << QStringLiteral("unknown version, for an unknown compiler");
}

void tst_langcheck_host::qtIsNamed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, version);
    QFETCH(QString, compiler);
    QFETCH(QString, line);

    write("Qt5Core.dll", bytes);
    const Report report = check();
    QVERIFY2(toText(report).contains(QStringLiteral("\nHost's Qt:    %1\n").arg(line)),
             qPrintable(toText(report)));
    QCOMPARE(toJson(report).value(QStringLiteral("hostQt")).toObject(),
             QJsonObject(
                 {{QStringLiteral("version"), version}, {QStringLiteral("compiler"), compiler}}));
}

/// Each row adds files to a host, or replaces some of it.
void tst_langcheck_host::mistakesAreFound_data()
{
    QTest::addColumn<int>("host");
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, Host host, const Files &files,
                        const QByteArray &expected = {}) {
        QTest::newRow(name) << int(host) << files << QString::fromLatin1(expected);
    };
    const char *const core = "Qt5Core.dll";
    const char *const gui = "Qt5Gui.dll";
    const char *const widgets = "Qt5Widgets.dll";
    const char *const host = "MachineControl.exe";
    const char *const zendel = "Zendel.dll";
    const char *const platform = "platforms/qwindows.dll";
    const char *const otherPlatform = "plugins/platforms/qwindows.dll";
    const char *const systemRuntime = "Windows/System32/vcruntime140.dll";
    const QByteArray removed;
    const QByteArray own = kOwnVersion.toString().toLatin1();
    const QVersionNumber later(5, 15, 99);
    DllContents small = qtContents(true);
    small.machine = 0x014C;
    DllContents plain = qtContents(true);
    plain.exports = {"qt_startup_hook"};

    const auto missing = [](const char *file, const char *id) {
        return QByteArray(file) + " warning " + id + ": the file doesn't exist";
    };
    const auto unusable = [](const char *file, const char *reason) {
        return QByteArray(file) + " error dll-unusable: the file isn't a DLL for 64-bit x86: it "
            + reason;
    };
    const auto version = [](const char *number) {
        return QByteArray("Qt5Core.dll error qt-version: the host's Qt isn't a version from 5.6 to "
                          "5.15: ")
            + number;
    };
    const auto differs = [](const char *file, const QByteArray &one, const QByteArray &other) {
        return QByteArray(file) + " warning qt-versions-differ: the version is " + one
            + ", but that of Qt5Core.dll is " + other;
    };
    const auto isMinGw = [](const char *finding) {
        return QByteArray(finding) + "is built for MinGW-w64, but Qt5Core.dll is built for MSVC";
    };
    const auto isMsvc = [](const QByteArray &finding, const char *evidence) {
        return finding + "is built for MSVC, but " + evidence + " is built for MinGW-w64";
    };
    const auto family = [&isMsvc](const char *file, const char *evidence) {
        return isMsvc(QByteArray(file) + " error qt-family: the file ", evidence);
    };
    const auto pluginFamily = [&isMsvc](const char *evidence) {
        return isMsvc("Zendel.dll error plugin-family: the plug-in ", evidence);
    };

    row("clean, MSVC", Msvc, {});
    row("clean, MinGW", MinGw, {});
    row("no plug-in, MSVC", Msvc, {{zendel, removed}});
    row("no plug-in, MinGW", MinGw, {{zendel, removed}});

    row("later patch release", Msvc,
        {{core, qtCore(true, QVersionNumber(5, 15, QT_VERSION_PATCH + 1))}});
    row("first release that fits", Msvc, {{core, qtCore(true, QVersionNumber(5, 6, 0))}});
    row("earlier release", MinGw, {{core, qtCore(false, QVersionNumber(5, 5, 1))}},
        version("5.5.1"));
    row("later minor release", Msvc, {{core, qtCore(true, QVersionNumber(5, 16, 0))}},
        version("5.16.0"));
    row("other major release", Msvc, {{core, qtCore(true, QVersionNumber(6, 15, 8))}},
        version("6.15.8"));
    row("no version", Msvc, {{core, qtCore(true, {})}},
        "Qt5Core.dll warning qt-version-unknown: the file has no version resource");

    row("32-bit Qt", Msvc, {{core, makeDll(small)}}, unusable(core, "is for 32-bit x86"));
    row("Qt is a text", Msvc, {{core, "text"}}, unusable(core, "has no PE header"));
    row("Qt is cut off", MinGw, {{core, qtCore(false).chopped(1)}}, unusable(core, "is cut off"));
    row("Qt without C++", Msvc, {{core, makeDll(plain)}},
        unusable(core, "doesn't export C++ functions"));
    row("Qt is a folder", Msvc, {{core, removed}, {"Qt5Core.dll/file", "any"}},
        unusable(core, "can't be opened"));
    row("plug-in is cut off", MinGw, {{zendel, plugin(false).chopped(1)}},
        unusable(zendel, "is cut off"));

    row("plug-in for MinGW", Msvc, {{zendel, plugin(false)}},
        isMinGw("Zendel.dll error plugin-family: the plug-in "));
    row("plug-in for MSVC", MinGw, {{zendel, plugin(true)}}, pluginFamily(core));
    row("no platform plug-in", Msvc, {{platform, removed}}, missing(platform, "platform-missing"));
    row("platform plug-in for MinGW", Msvc, {{platform, plugin(false)}},
        isMinGw("platforms/qwindows.dll error qt-family: the file "));
    row("empty platform plug-in", Msvc, {{platform, ""}}, unusable(platform, "has no PE header"));
    row("other folder of plug-ins", Msvc,
        {{platform, removed}, {"qt.conf", "[Paths]\nPlugins=plugins\n"}});
    for (const bool msvc : {true, false}) {
        row(msvc ? "plugins, Qt 5.14" : "plugins for MinGW, Qt 5.14", Msvc,
            {{platform, removed},
             {otherPlatform, plugin(msvc)},
             {core, qtCore(true, QVersionNumber(5, 14, 0))}},
            msvc ? "" : isMinGw("plugins/platforms/qwindows.dll error qt-family: the file "));
    }
    row("plugins, Qt 5.13", Msvc,
        {{platform, removed},
         {otherPlatform, plugin(true)},
         {core, qtCore(true, QVersionNumber(5, 13, 2))}},
        missing(platform, "platform-missing"));

    for (const char *const name : kRuntime)
        row(name, MinGw, {{name, removed}}, missing(name, "runtime-missing"));
    row("no runtime of MSVC", Msvc, {{systemRuntime, removed}},
        missing("vcruntime140.dll", "runtime-missing"));
    row("runtime of MSVC next to the executable", Msvc,
        {{systemRuntime, removed}, {"vcruntime140.dll", "any"}});

    row("clean, whole", Whole, {});
    row("Qt5Core", Whole, {{core, qtCore(true)}}, family(core, host));
    row("Qt5Core, no program", Whole, {{core, qtCore(true)}, {host, removed}}, family(core, gui));
    row("Qt5Core and Qt5Gui", Whole, {{core, qtCore(true)}, {gui, qtCore(true)}},
        family(core, host) + '\n' + family(gui, host));
    const Files allOfQt {{core, qtCore(true)}, {gui, qtCore(true)}, {widgets, qtCore(true)}};
    const QByteArray allFamilies =
        family(core, host) + '\n' + family(gui, host) + '\n' + family(widgets, host);
    row("all of Qt", Whole, allOfQt, allFamilies);
    row("all but the program", Whole, allOfQt + Files {{zendel, plugin(true)}},
        allFamilies + '\n' + pluginFamily(host));
    row("Qt5Core, plug-in and a missing DLL of MinGW", Whole,
        {{core, qtCore(true)}, {zendel, plugin(true)}, {"libstdc++-6.dll", removed}},
        family(core, host) + '\n' + missing("libstdc++-6.dll", "runtime-missing") + '\n'
            + pluginFamily(host));
    row("langcheck", Whole, {{"LangCheck.exe", program(true)}});
    row("only langcheck, and Qt5Widgets", Whole,
        {{"langcheck.exe", program(true)}, {host, removed}, {widgets, qtCore(true)}},
        family(widgets, core));
    row("programs that differ, and Qt5Widgets", Whole,
        {{"Other.exe", program(true)}, {widgets, qtCore(true)}}, family(widgets, core));
    row("programs that are none", Whole, {{"a.exe", "x"}, {"b.exe", ""}});
    row("Qt5Gui cut off", Whole, {{gui, qtCore(false).chopped(1)}}, unusable(gui, "is cut off"));
    row("Qt5Core cut off, and plug-in", Whole,
        {{core, qtCore(false).chopped(1)}, {zendel, plugin(true)}},
        unusable(core, "is cut off") + '\n' + pluginFamily(host));
    row("Qt5Core cut off, no program, and plug-in", Whole,
        {{core, qtCore(false).chopped(1)}, {host, removed}, {zendel, plugin(true)}},
        unusable(core, "is cut off") + '\n' + pluginFamily(gui));
    row("version of Qt5Gui", Whole, {{gui, qtCore(false, later)}}, differs(gui, "5.15.99", own));
    row("version of Qt5Core", Whole, {{core, qtCore(false, later)}},
        differs(gui, own, "5.15.99") + '\n' + differs(widgets, own, "5.15.99"));
    row("version and family of Qt5Core", Whole, {{core, qtCore(true, later)}}, family(core, host));
    row("Qt5Gui without a version", Whole, {{gui, qtCore(false, {})}});
    small.exports = qtContents(false).exports;
    row("Qt5Widgets for 32-bit", Whole, {{widgets, makeDll(small)}},
        unusable(widgets, "is for 32-bit x86"));
}

void tst_langcheck_host::mistakesAreFound()
{
    QFETCH(int, host);
    QFETCH(Files, files);
    QFETCH(QString, expected);

    install(host);
    for (const auto &[name, bytes] : qAsConst(files))
        write(name, bytes);
    QCOMPARE(checkedFindings(), expected);
}

void tst_langcheck_host::replacementsFitTheHost()
{
    install(Whole);
    write("Qt5Core.dll", qtCore(true, QVersionNumber(5, 15, 99)));
    write("Qt5Gui.dll", "text");
    write("Zendel.dll", "text");
    QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 3);
    const QString file = QStringLiteral("replace it with the same file of Qt %1 for MinGW-w64");
    QCOMPARE(findings.at(0).remedy(), file.arg(kOwnVersion.toString()));
    const QString host = QStringLiteral(", and use a 64-bit host if this isn't one");
    QCOMPARE(findings.at(1).remedy(), file.arg(kOwnVersion.toString()) + host);
    QCOMPARE(findings.at(2).remedy(),
             QStringLiteral("replace it with a plug-in that is built for MinGW-w64") + host);

    write("Qt5Widgets.dll", qtCore(true));
    findings = check().findings;
    QCOMPARE(findings.at(0).remedy(), file.arg(QStringLiteral("5.15")));
}

/// Neither as text nor on the page, if a wrong or missing DLL may prevent it.
void tst_langcheck_host::startIsNotPromised()
{
    const QString warned = QStringLiteral("may not start");
    install(Whole);
    write("Qt5Gui.dll", qtCore(false, QVersionNumber(5, 15, 99)));
    QVERIFY(!toText(check()).contains(warned));
    QVERIFY(!check().hostFails);
    write("Qt5Gui.dll", qtCore(true));
    QVERIFY(toText(check()).contains(warned));
    QVERIFY(check().hostFails);

    for (const char *const name : {"libwinpthread-1.dll", "platforms/qwindows.dll"}) {
        install(Whole);
        write(name, {});
        QVERIFY2(check().hostFails, name);
    }
}

/// It may be in Windows' folder, which other systems don't have.
void tst_langcheck_host::runtimeOfMsvc()
{
    install(Msvc);
    write("Windows/System32/vcruntime140.dll", {});
    QVERIFY(check().findings.value(0).text().endsWith(
        QLatin1String("; install Microsoft's Visual C++ redistributable")));
    qunsetenv("SystemRoot");
    QCOMPARE(checkedFindings(), QString());
}

QTEST_GUILESS_MAIN(tst_langcheck_host)
#include "tst_langcheck_host.moc"
