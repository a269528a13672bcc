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

using Files = QVector<QPair<QByteArray, QByteArray>>; ///< By name; null to remove the file.
Q_DECLARE_METATYPE(Files)

namespace {

/// Hosts without findings: two with only DLLs, and one for MinGW with a program.
enum Host { Msvc, MinGw, Whole };

const QVersionNumber kOwnVersion(QT_VERSION_MAJOR, QT_VERSION_MINOR, QT_VERSION_PATCH);

/// Returns the mangled name of a function in C++.
QByteArray mangled(bool msvc, const char *name)
{
    return (msvc ? "?" : "_Z5") + QByteArray(name) + (msvc ? "@@YAXXZ" : "v");
}

QByteArray makeDll(const QList<QByteArray> &exports, const QVector<ImportedDll> &imports,
                   const QVersionNumber &version = {})
{
    DllContents contents;
    contents.exports = exports;
    contents.imports = imports;
    contents.version = version;
    return makeDll(contents);
}

ImportedDll fromQt(const char *dll, bool msvc, const QList<const char *> &functions)
{
    ImportedDll result = {dll, {}};
    for (const char *const function : functions)
        result.functions += mangled(msvc, function);
    return result;
}

QVector<ImportedDll> runtime(bool msvc)
{
    if (msvc)
        return {{"MSVCP140.dll", {"_Sort"}}, {"VCRUNTIME140.dll", {"memcpy"}}};
    return {{"libgcc_s_seh-1.dll", {"unwind"}}, {"libstdc++-6.dll", {"_Zsort"}}};
}

DllContents coreContents(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    DllContents contents;
    contents.exports = {mangled(msvc, "newer"), mangled(msvc, "start")};
    contents.imports = runtime(msvc);
    contents.version = version;
    return contents;
}

QByteArray qtCore(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    return makeDll(coreContents(msvc, version));
}

QByteArray qtGui(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    return makeDll({mangled(msvc, "paint")}, {fromQt("Qt5Core.dll", msvc, {"start"})}, version);
}

QByteArray qtWidgets(bool msvc, const QVersionNumber &version = kOwnVersion)
{
    return makeDll({mangled(msvc, "click")},
                   {fromQt("Qt5Core.dll", msvc, {"start"}), fromQt("Qt5Gui.dll", msvc, {"paint"})},
                   version);
}

/// Returns Qt's plug-in for Windows.
QByteArray platform(bool msvc, const QVersionNumber &version = kOwnVersion,
                    const char *function = "start")
{
    return makeDll({"qt_plugin_instance"},
                   {fromQt("Qt5Core.dll", msvc, {function}), fromQt("Qt5Gui.dll", msvc, {"paint"})},
                   version);
}

DllContents programContents(bool msvc, const char *function, const char *dll)
{
    DllContents contents;
    contents.imports = {fromQt(dll, msvc, {function})};
    contents.characteristics = 0x0022;
    return contents;
}

QByteArray program(bool msvc, const char *function = "start", const char *dll = "Qt5Core.dll")
{
    return makeDll(programContents(msvc, function, dll));
}

QByteArray plugin(bool msvc, const char *function = "start")
{
    return makeDll({"NewInterface", "ReleaseInterface"},
                   {fromQt("Qt5Core.dll", msvc, {function}), fromQt("Qt5Gui.dll", msvc, {"paint"}),
                    fromQt("Qt5Widgets.dll", msvc, {"click"})});
}

QByteArray smallProgram(const char *dll)
{
    DllContents contents = programContents(true, "start", dll);
    contents.machine = 0x014C;
    return makeDll(contents);
}

QByteArray smallDll()
{
    DllContents contents = coreContents(true);
    contents.machine = 0x014C;
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

    void foldersWithoutQt_data();
    void foldersWithoutQt();
    void qtIsNamed_data();
    void qtIsNamed();
    void mistakesAreFound_data();
    void mistakesAreFound();
    void remedies_data();
    void remedies();
    void startIsNotPromised();
    void runtimeOfMsvcElsewhere();
    void checkedFilesAreNamed();

private:
    void write(const QByteArray &name, const QByteArray &bytes);
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
    write("../Windows/System32/msvcp140.dll",
          makeDll({"_Sort"}, {{"VCRUNTIME140_1.dll", {"frame"}}}));
    write("../Windows/System32/vcruntime140.dll", makeDll({"memcpy"}, {}));
    write("../Windows/System32/vcruntime140_1.dll", makeDll({"frame"}, {}));
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
void tst_langcheck_host::write(const QByteArray &name, const QByteArray &bytes)
{
    QFile file(m_folder->filePath(QLatin1String("host/") + QLatin1String(name)));
    if (bytes.isNull()) {
        QVERIFY(file.remove());
        QDir().rmdir(QFileInfo(file).path()); // If it is empty
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
    write("Qt5Gui.dll", qtGui(msvc));
    write("Qt5Widgets.dll", qtWidgets(msvc));
    write("Zendel.dll", plugin(msvc));
    write("platforms/qwindows.dll", platform(msvc));
    if (msvc)
        return;
    write("libgcc_s_seh-1.dll", makeDll({"unwind"}, {}));
    write("libstdc++-6.dll", makeDll({"_Zsort"}, {{"libwinpthread-1.dll", {"lock"}}}));
    write("libwinpthread-1.dll", makeDll({"lock"}, {}));
    if (host == Whole)
        write("MachineControl.exe", program(false));
}

Report tst_langcheck_host::check()
{
    Report report;
    report.applicationDir = m_folder->filePath(QStringLiteral("host"));
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

/// Each row adds files to a folder without Qt.
void tst_langcheck_host::foldersWithoutQt_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("checked");
    QTest::addColumn<QString>("findings");

    const auto row = [](const char *name, const Files &files, const char *checked,
                        const char *findings = "") {
        QTest::newRow(name) << files << QString::fromLatin1(checked)
                            << QString::fromLatin1(findings);
    };
    const char *const noQt = "not checked, because there is no Qt5Core.dll";
    const char *const debug = "not checked, because the host uses Qt5Cored.dll";
    const char *const qt6 = "not checked, because the host uses Qt6Core.dll";
    const char *const small = "not checked, because the host is a 32-bit program";
    row("only languages", {{"Lang/Lang.ini", "any"}}, noQt);
    row("plug-in", {{"Zendel.dll", plugin(true)}},
        "not checked, except for Zendel.dll, because there is no Qt5Core.dll");
    row("damaged plug-in", {{"Zendel.dll", "damaged"}},
        "not checked, except for Zendel.dll, because there is no Qt5Core.dll",
        "Zendel.dll error dll-unusable: the file isn't a DLL for 64-bit x86: it has no PE header");
    row("static host", {{"a.exe", program(true, "start", "kernel32.dll")}},
        "not checked, because there is no Qt5Core.dll. The plug-in can't be used with a statically "
        "linked Qt");
    row("program", {{"a.exe", program(true)}},
        "not checked, because there is no Qt5Core.dll next to a.exe");
    const Files bin {{"bin/qt5core.dll", qtCore(true)}, {"bin/Qt5Gui.dll", qtGui(true)}};
    row("bin", bin, noQt,
        "bin warning host-folder: Qt's DLLs are in this folder instead of the checked one above "
        "it: "
        "Qt5Core.dll, Qt5Gui.dll");
    row("bin, program", bin + Files {{"a.exe", program(true)}},
        "not checked, because there is no Qt5Core.dll next to a.exe",
        "Qt5Core.dll error qt-missing: the folder of the host's executable lacks Qt5Core.dll, "
        "Qt5Gui.dll");
    row("debug", {{"qt5cored.dll", qtCore(true)}}, debug,
        "Qt5Cored.dll error qt-other: the host uses Qt5Cored.dll");
    for (const char *const other : {"Qt5Cored.dll", "qt6core.dll"}) {
        row((QByteArray("release program, ") + other).constData(),
            {{other, qtCore(true)}, {"a.exe", program(true)}},
            "not checked, because there is no Qt5Core.dll next to a.exe",
            "Qt5Core.dll error qt-missing: the folder of the host's executable lacks Qt5Core.dll, "
            "Qt5Gui.dll, Qt5Widgets.dll");
    }
    row("debug program, both",
        {{"Qt5Cored.dll", qtCore(true)},
         {"Qt5Core.dll", qtCore(true)},
         {"a.exe", program(true, "start", "Qt5Cored.dll")}},
        debug, "a.exe error qt-other: the host uses Qt5Cored.dll");
    row("Qt 6", {{"Qt6Core.dll", qtCore(true)}}, qt6,
        "Qt6Core.dll error qt-other: the host uses Qt6Core.dll");
    row("Qt 6, debug", {{"Qt6Cored.dll", qtCore(true)}},
        "not checked, because the host uses Qt6Cored.dll",
        "Qt6Cored.dll error qt-other: the host uses Qt6Cored.dll");
    row("Qt 6, program", {{"a.exe", program(true, "start", "Qt6Core.dll")}}, qt6,
        "a.exe error qt-other: the host uses Qt6Core.dll");
    row("32-bit host", {{"a.exe", smallProgram("Qt5Core.dll")}, {"Qt5Core.dll", smallDll()}}, small,
        "a.exe error host-32-bit: the host is a 32-bit program");
    row("32-bit host, 64-bit Qt",
        {{"a.exe", smallProgram("Qt5Widgets.dll")}, {"Qt5Core.dll", qtCore(true)}}, small,
        "a.exe error host-32-bit: the host is a 32-bit program");
    row("32-bit Qt",
        {{"a.exe", smallProgram("kernel32.dll")},
         {"Qt5Core.dll", smallDll()},
         {"Qt5Gui.dll", smallDll()},
         {"Qt5Widgets.dll", qtWidgets(true)}},
        "not checked, because the host's Qt is for 32-bit programs",
        "Qt5Core.dll error host-32-bit: the host's Qt is for 32-bit programs");
}

void tst_langcheck_host::foldersWithoutQt()
{
    QFETCH(Files, files);
    QFETCH(QString, checked);
    QFETCH(QString, findings);

    for (const auto &[name, bytes] : qAsConst(files))
        write(name, bytes);
    QCOMPARE(checkedFindings(), findings);
    const Report report = check();
    QVERIFY(!report.hostQt);
    QVERIFY(!toJson(report).contains(QStringLiteral("hostQt")));
    QVERIFY2(toText(report).contains(QStringLiteral("\nHost's DLLs:  %1\n").arg(checked)),
             qPrintable(toText(report)));
    QCOMPARE(toJson(report).value(QStringLiteral("hostChecked")), QJsonValue(checked));
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
    const char *const qwindows = "platforms/qwindows.dll";
    const char *const otherPlatform = "plugins/platforms/qwindows.dll";
    const char *const qtConf = "qt.conf";
    const QByteArray removed;
    const QByteArray own = kOwnVersion.toString().toLatin1();
    const QVersionNumber later(5, 15, 99);
    const QVersionNumber old(5, 6, 0);
    DllContents plain = coreContents(true);
    plain.exports = {"qt_startup_hook"};
    DllContents without = coreContents(true); // A function of Qt
    without.exports.removeLast();

    const auto unusable = [](const QByteArray &file, const char *reason) {
        return file + " error dll-unusable: the file isn't a DLL for 64-bit x86: it " + reason;
    };
    const auto unreadable = [](const QByteArray &file) {
        return file + " error dll-unreadable: the file can't be read: it is a folder";
    };
    const auto missingQt = [](const QByteArray &files) {
        return files.left(files.indexOf(".dll") + 4)
            + " error qt-missing: the folder of the host's executable lacks " + files;
    };
    const auto missingRuntime = [](const QByteArray &files) {
        return files.left(files.indexOf(".dll") + 4)
            + " warning runtime-missing: a file that the host or the plug-in needs wasn't found: "
            + files;
    };
    const auto differs = [](const char *file, const QByteArray &one, const QByteArray &other,
                            const char *reference = "Qt5Core.dll") {
        return QByteArray(file) + " error qt-versions-differ: the version is " + one
            + ", but that of " + reference + " is " + other;
    };
    const auto lacks = [&own](const QByteArray &file, const char *function, const char *dll,
                              const QByteArray &version = {}) {
        return file + " error function-missing: the file uses " + function + ", which isn't in "
            + dll + ' ' + (version.isNull() ? own : version);
    };
    const auto pluginLacks = [](const char *function, const QByteArray &dll) {
        return QByteArray("Zendel.dll error plugin-functions: the plug-in uses ") + function
            + ", which isn't in " + dll;
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
    const auto foreign = [](const char *functions) {
        return QByteArray("Zendel.dll error plugin-foreign: the file isn't the plug-in, because it "
                          "lacks ")
            + functions;
    };
    const QByteArray noPlatform =
        "platforms/qwindows.dll warning platform-missing: the file doesn't exist";
    const auto wrongPath = [](const char *path) {
        return QByteArray(
                   "qt.conf error platform-path: the folder of plug-ins that the file sets, ")
            + path + ", has no platforms/qwindows.dll";
    };
    const auto all = [](bool msvc, const QVersionNumber &version) {
        return Files {{"Qt5Core.dll", qtCore(msvc, version)},
                      {"Qt5Gui.dll", qtGui(msvc, version)},
                      {"Qt5Widgets.dll", qtWidgets(msvc, version)},
                      {"platforms/qwindows.dll", platform(msvc, version)}};
    };

    row("clean, MSVC", Msvc, {});
    row("clean, MinGW", MinGw, {});
    row("clean, whole", Whole, {});
    row("Qt in lower case", Msvc, {{core, removed}, {"qt5core.dll", qtCore(true)}});
    row("plug-ins in other cases", Msvc,
        {{zendel, removed},
         {"ZENDEL.DLL", plugin(true)},
         {qwindows, removed},
         {"Platforms/QWindows.dll", platform(true)}});

    row("no Qt5Gui", Whole, {{gui, removed}}, missingQt(gui));
    row("no Qt5Widgets", Msvc, {{widgets, removed}}, missingQt(widgets));
    row("neither", Msvc, {{gui, removed}, {widgets, removed}},
        missingQt("Qt5Gui.dll, Qt5Widgets.dll"));
    row("no Qt5Core, program", Whole, {{core, removed}}, missingQt(core));
    row("another DLL of Qt", Whole, {{host, program(false, "start", "Qt5Widgets.dll")}},
        lacks(host, "_Z5startv", widgets));
    row("no Qt5Svg", Whole,
        {{"A.dll", makeDll({"a"}, {{"Qt5Svg.dll", {"draw"}}})},
         {host, makeDll([] {
              DllContents contents = programContents(false, "start", "Qt5Core.dll");
              contents.imports += ImportedDll {"a.DLL", {"a"}};
              return contents;
          }())}},
        missingQt("qt5svg.dll"));

    row("Qt is a text", Msvc, {{core, "text"}}, unusable(core, "has no PE header"));
    row("Qt is cut off", MinGw, {{core, qtCore(false).chopped(1)}}, unusable(core, "is cut off"));
    row("Qt without C++", Msvc, {{core, makeDll(plain)}},
        unusable(core, "doesn't export C++ functions"));
    row("Qt is a folder", Msvc, {{core, removed}, {"Qt5Core.dll/file", "any"}}, unreadable(core));
    row("Qt5Core for 32-bit", Msvc, {{core, smallDll()}}, unusable(core, "is for 32-bit x86"));
    row("Qt5Widgets for 32-bit", Whole, {{widgets, smallDll()}},
        unusable(widgets, "is for 32-bit x86"));
    row("32-bit Qt, 64-bit host", Whole, {{core, smallDll()}, {gui, smallDll()}},
        unusable(core, "is for 32-bit x86") + '\n' + unusable(gui, "is for 32-bit x86"));
    row("32-bit tool", Whole, {{"uninstall.exe", smallProgram("kernel32.dll")}});
    row("Qt5Gui cut off", Whole, {{gui, qtGui(false).chopped(1)}}, unusable(gui, "is cut off"));
    row("Qt5Core cut off, and plug-in", Whole,
        {{core, qtCore(false).chopped(1)}, {zendel, plugin(true)}},
        unusable(core, "is cut off") + '\n' + pluginFamily(host));
    row("Qt5Core cut off, no program, and plug-in", Whole,
        {{core, qtCore(false).chopped(1)}, {host, removed}, {zendel, plugin(true)}},
        unusable(core, "is cut off") + '\n' + pluginFamily(gui));

    row("later patch release", Msvc, all(true, QVersionNumber(5, 15, QT_VERSION_PATCH + 1)));
    row("old release with all functions", Msvc, all(true, QVersionNumber(5, 5, 0)));
    row("no versions", Msvc, all(true, {}));
    row("Qt5Gui without a version", Whole, {{gui, qtGui(false, {})}});
    row("plug-in for a newer Qt", Msvc,
        all(true, old) + Files {{core, makeDll(without)}, {zendel, plugin(true, "other")}},
        differs(core, own, "5.6.0", gui));
    row("function of the plug-in", Whole, {{zendel, plugin(false, "other")}},
        pluginLacks("_Z5otherv", "Qt5Core.dll " + own));
    row("function of the program", Whole, {{host, program(false, "other")}},
        lacks(host, "_Z5otherv", core));
    row("functions of both", Whole,
        {{host, program(false, "other")}, {zendel, plugin(false, "other")}},
        lacks(host, "_Z5otherv", core));
    row("function in a program of another family", Whole, {{"Other.exe", program(true)}});
    row("functions of Qt", Msvc,
        {{core, makeDll(without)}, {gui, qtGui(true)}, {zendel, plugin(true, "newer")}},
        lacks(gui, "?start@@YAXXZ", core));
    row("function by number", Msvc,
        {{zendel,
          makeDll({"NewInterface", "ReleaseInterface"},
                  {{"Qt5Core.dll", {"", mangled(true, "start")}}})}});
    row("no function with that number", Msvc,
        {{zendel,
          makeDll({"NewInterface", "ReleaseInterface"},
                  {{"Qt5Core.dll", {mangled(true, "start")}}, {"Qt5Gui.dll", {""}}})},
         {gui, makeDll([] {
              DllContents contents;
              contents.exports = {mangled(true, "paint")};
              contents.version = kOwnVersion;
              return contents;
          }())}});

    row("version of Qt5Gui", Whole, {{gui, qtGui(false, later)}}, differs(gui, "5.15.99", own));
    row("version of Qt5Core", Whole, {{core, qtCore(false, later)}},
        differs(core, "5.15.99", own, gui));
    row("three versions", Msvc, {{core, qtCore(true, old)}, {gui, qtGui(true, later)}},
        differs(gui, "5.15.99", "5.6.0") + '\n' + differs(widgets, own, "5.6.0") + '\n'
            + differs(qwindows, own, "5.6.0"));
    row("the program needs the version of one", Whole,
        all(false, old)
            + Files {{gui,
                      makeDll({mangled(false, "newer"), mangled(false, "paint")},
                              {fromQt("Qt5Core.dll", false, {"start"})}, later)},
                     {host, makeDll([] {
                          DllContents contents = programContents(false, "start", "Qt5Core.dll");
                          contents.imports += fromQt("Qt5Widgets.dll", false, {"newer"});
                          return contents;
                      }())}},
        differs(core, "5.6.0", "5.15.99", gui) + '\n' + differs(widgets, "5.6.0", "5.15.99", gui)
            + '\n' + differs(qwindows, "5.6.0", "5.15.99", gui));
    row("version and family of Qt5Core", Whole, {{core, qtCore(true, later)}}, family(core, host));

    row("Qt5Core", Whole, {{core, qtCore(true)}}, family(core, host));
    row("Qt5Core, no program", Whole, {{core, qtCore(true)}, {host, removed}}, family(core, gui));
    row("Qt5Core and Qt5Gui", Whole, {{core, qtCore(true)}, {gui, qtGui(true)}},
        family(core, host) + '\n' + family(gui, host));
    const Files allOfQt {{core, qtCore(true)}, {gui, qtGui(true)}, {widgets, qtWidgets(true)}};
    const QByteArray allFamilies =
        family(core, host) + '\n' + family(gui, host) + '\n' + family(widgets, host);
    row("all of Qt", Whole, allOfQt, allFamilies);
    row("all but the program", Whole, allOfQt + Files {{zendel, plugin(true)}},
        allFamilies + '\n' + pluginFamily(host));
    row("langcheck", Whole, {{"LangCheck.exe", program(true)}});
    row("only langcheck, and Qt5Widgets", Whole,
        {{"langcheck.exe", program(true)}, {host, removed}, {widgets, qtWidgets(true)}},
        family(widgets, core));
    row("programs that differ, and Qt5Widgets", Whole,
        {{"Other.exe", program(true)}, {widgets, qtWidgets(true)}}, family(widgets, core));
    row("programs that are none", Whole, {{"a.exe", "x"}, {"b.exe", ""}});

    row("no plug-in", Msvc, {{zendel, removed}},
        "Zendel.dll warning plugin-missing: the plug-in isn't next to the host's executable");
    row("plug-in is cut off", MinGw, {{zendel, plugin(false).chopped(1)}},
        unusable(zendel, "is cut off"));
    row("plug-in is a folder", MinGw, {{zendel, removed}, {"Zendel.dll/file", "any"}},
        unreadable(zendel));
    row("another DLL", Msvc, {{zendel, qtGui(true)}}, foreign("NewInterface and ReleaseInterface"));
    row("plug-in without a function", Msvc, {{zendel, makeDll({"NewInterface"}, {})}},
        foreign("ReleaseInterface"));
    row("plug-in for MinGW", Msvc, {{zendel, plugin(false)}},
        isMinGw("Zendel.dll error plugin-family: the plug-in "));
    row("plug-in for MSVC", MinGw, {{zendel, plugin(true)}}, pluginFamily(core));

    row("no platform plug-in", Msvc, {{qwindows, removed}}, noPlatform);
    row("platform plug-in for MinGW", Msvc, {{qwindows, platform(false)}},
        isMinGw("platforms/qwindows.dll error qt-family: the file "));
    row("empty platform plug-in", Msvc, {{qwindows, ""}}, unusable(qwindows, "has no PE header"));
    row("platform plug-in of another patch release", Msvc, {{qwindows, platform(true, later)}});
    row("the same, with another function", Msvc, {{qwindows, platform(true, later, "other")}},
        differs(qwindows, "5.15.99", own));
    row("platform plug-in of an old release", Msvc, {{qwindows, platform(true, old)}},
        differs(qwindows, "5.6.0", own));
    row("platform plug-in with another function", Msvc,
        {{qwindows, platform(true, kOwnVersion, "other")}}, lacks(qwindows, "?other@@YAXXZ", core));
    for (const bool msvc : {true, false}) {
        row(msvc ? "plugins, Qt 5.14" : "plugins for MinGW, Qt 5.14", Msvc,
            all(true, QVersionNumber(5, 14, 0))
                + Files {{qwindows, removed},
                         {otherPlatform, platform(msvc, QVersionNumber(5, 14, 0))}},
            msvc ? "" : isMinGw("plugins/platforms/qwindows.dll error qt-family: the file "));
    }
    row("plugins, Qt 5.13", Msvc,
        all(true, QVersionNumber(5, 13, 2))
            + Files {{qwindows, removed}, {otherPlatform, platform(true)}},
        noPlatform);
    for (const char *const library : {"Qt5Core.lib", "libQt5Core.a"}) {
        row(library, Msvc,
            {{qwindows, removed},
             {"../lib/" + QByteArray(library), "any"},
             {"../plugins/platforms/qwindows.dll", platform(true)}});
    }

    const char *const elsewhere = "Other/Plugins/platforms/qwindows.dll";
    const auto conf = [&](const char *text, const char *path) {
        return Files {{qwindows, removed}, {path, platform(true)}, {qtConf, text}};
    };
    row("qt.conf, empty", Msvc, conf("", otherPlatform));
    row("qt.conf, empty, Qt 5.6", Msvc,
        all(true, old) + conf("", otherPlatform) + Files {{otherPlatform, platform(true, old)}});
    row("qt.conf, empty, wrong", Msvc, conf("", elsewhere), wrongPath("plugins"));
    row("qt.conf, only comments", Msvc, conf("; none\n", elsewhere), wrongPath("plugins"));
    row("qt.conf, prefix", Msvc, conf("[Paths]\nPrefix = other\nPlugins=Plugins\n", elsewhere));
    row("qt.conf, only prefix", Msvc, conf("[Paths]\nPrefix=./Other/../Other\n", elsewhere));
    row("qt.conf, only plug-ins", Msvc, conf("[Paths]\nPlugins=Other/Plugins\n", elsewhere));
    row("qt.conf, backslashes", Msvc, conf("[Paths]\nPlugins=Other\\\\Plugins\n", elsewhere));
    row("qt.conf, wrong prefix", Msvc, conf("[Paths]\nPrefix=..\n", otherPlatform),
        wrongPath("../plugins"));
    row("qt.conf, other group", Msvc, conf("[Platforms]\nWindowsArguments=x\n", otherPlatform));
    row("qt.conf, other group, wrong", Msvc, conf("[Platforms]\nx=y\n", elsewhere), noPlatform);
    row("qt.conf, both groups", Msvc, conf("[Platforms]\nx=y\n[Paths]\nData=x\n", elsewhere),
        wrongPath("plugins"));
    row("qt.conf, variable", Msvc, conf("[Paths]\nPrefix=$(QT)\n", elsewhere));
    row("qt.conf, wrong, but next to the host", Msvc, {{qtConf, "[Paths]\nPlugins=none\n"}});
    row("qt.conf, 32-bit next to the host", Msvc,
        {{qtConf, "[Paths]\nPlugins=Other/Plugins\n"},
         {elsewhere, platform(true)},
         {qwindows, smallDll()}});
    row("qt.conf, 32-bit", Msvc,
        {{qtConf, "[Paths]\nPlugins=Other/Plugins\n"}, {elsewhere, smallDll()}},
        unusable(elsewhere, "is for 32-bit x86"));
    row("qt.conf, text", Msvc, {{qtConf, "[Paths]\nPlugins=Other/Plugins\n"}, {elsewhere, "x"}});
    row("qt.conf is a folder", Msvc, {{"qt.conf/file", "any"}});

    for (const char *const name : {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"})
        row(name, MinGw, {{name, removed}}, missingRuntime(name));
    row("no DLLs of MinGW", MinGw, {{"libgcc_s_seh-1.dll", removed}, {"libstdc++-6.dll", removed}},
        missingRuntime("libgcc_s_seh-1.dll, libstdc++-6.dll"));
    row("Qt5Core, plug-in and a missing DLL of MinGW", Whole,
        {{core, qtCore(true)}, {zendel, plugin(true)}, {"libstdc++-6.dll", removed}},
        family(core, host) + '\n' + pluginFamily(host));
    const auto systemFile = [](const char *name) {
        return QByteArray("../Windows/System32/") + name;
    };
    row("no runtime of MSVC", Msvc, {{systemFile("vcruntime140.dll"), removed}},
        missingRuntime("vcruntime140.dll"));
    row("old runtime of MSVC", Msvc,
        {{systemFile("msvcp140.dll"), removed}, {systemFile("vcruntime140.dll"), removed}},
        missingRuntime("msvcp140.dll, vcruntime140.dll"));
    row("runtime of the runtime", Msvc, {{systemFile("vcruntime140_1.dll"), removed}},
        missingRuntime("vcruntime140_1.dll"));
    row("runtime of MSVC next to the executable", Msvc,
        {{systemFile("vcruntime140.dll"), removed}, {"vcruntime140.dll", makeDll({"memcpy"}, {})}});
    row("empty runtime", Msvc, {{"vcruntime140.dll", ""}},
        unusable("vcruntime140.dll", "has no PE header"));
    row("32-bit runtime", Msvc, {{systemFile("msvcp140.dll"), smallDll()}},
        unusable(systemFile("msvcp140.dll"), "is for 32-bit x86"));
    row("runtime without a function", Msvc, {{"vcruntime140.dll", makeDll({"memmove"}, {})}},
        "vcruntime140.dll error runtime-old: the file lacks memcpy, which Qt5Core.dll uses");
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

void tst_langcheck_host::remedies_data()
{
    QTest::addColumn<int>("host");
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("remedy"); ///< Of the first finding

    const auto row = [](const char *name, Host host, const Files &files, const QString &remedy) {
        QTest::newRow(name) << int(host) << files << remedy;
    };
    const QByteArray removed;
    const QString own = QStringLiteral("Qt %1 for %2").arg(kOwnVersion.toString());
    const QString minGw = own.arg(QLatin1String("MinGW-w64"));
    const QString msvc = own.arg(QLatin1String("MSVC"));
    const QString redistributable =
        QStringLiteral("install Microsoft's current Visual C++ redistributable for x64");
    const QString replace = QStringLiteral("replace it with ");
    row("version", Whole, {{"Qt5Core.dll", qtCore(false, {5, 15, 99})}},
        replace + QStringLiteral("the same file of ") + minGw);
    row("family", Whole, {{"Qt5Core.dll", qtCore(true, {5, 15, 99})}},
        replace + QStringLiteral("the same file of ") + minGw);
    row("unusable", Msvc, {{"Qt5Gui.dll", "text"}},
        replace + QStringLiteral("the same file of ") + msvc);
    row("no version", Whole,
        {{"Qt5Core.dll", qtCore(false, {})},
         {"Qt5Gui.dll", qtGui(false, {})},
         {"Qt5Widgets.dll", ""}},
        replace + QStringLiteral("the same file of the Qt that the host was built with"));
    row("missing", Whole, {{"Qt5Gui.dll", removed}},
        QStringLiteral("copy Qt5Gui.dll from ") + minGw);
    row("bin", Whole, {{"Qt5Gui.dll", removed}, {"bin/Qt5Gui.dll", qtGui(false)}},
        QStringLiteral("copy Qt5Gui.dll from the folder bin"));
    row("plug-in", Whole, {{"Zendel.dll", "text"}},
        replace + QStringLiteral("the plug-in that is built for MinGW-w64"));
    row("other DLL", Msvc, {{"Zendel.dll", qtGui(true)}},
        replace + QStringLiteral("the plug-in that is built for MSVC"));
    row("folder", Msvc, {{"Zendel.dll", removed}, {"Zendel.dll/file", "any"}},
        replace + QStringLiteral("the plug-in that is built for MSVC"));
    row("platform", Msvc, {{"platforms/qwindows.dll", removed}},
        QStringLiteral("copy it from the folder plugins of ") + msvc);
    row("qt.conf", Msvc, {{"platforms/qwindows.dll", removed}, {"qt.conf", ""}},
        QStringLiteral("copy the folder platforms from %1 to the host's folder").arg(msvc));
    row("no runtime", Msvc, {{"../Windows/System32/vcruntime140.dll", removed}}, redistributable);
    row("bad runtime", Msvc, {{"../Windows/System32/vcruntime140.dll", ""}}, redistributable);
    row("bad runtime next to the host", Msvc, {{"vcruntime140.dll", ""}},
        QStringLiteral("delete it, and ") + redistributable);
    row("runtime of MinGW", MinGw, {{"libgcc_s_seh-1.dll", removed}},
        QStringLiteral("copy libgcc_s_seh-1.dll from Qt's folder bin, which contains the DLLs of "
                       "the compiler that Qt was built with"));
}

void tst_langcheck_host::remedies()
{
    QFETCH(int, host);
    QFETCH(Files, files);
    QFETCH(QString, remedy);

    install(host);
    for (const auto &[name, bytes] : qAsConst(files))
        write(name, bytes);
    QCOMPARE(check().findings.value(0).remedy(), remedy);
}

/// Neither as text nor on the page, if a wrong or missing DLL may prevent it.
void tst_langcheck_host::startIsNotPromised()
{
    const QString warned = QStringLiteral("may not start");
    install(Whole);
    write("Qt5Gui.dll", qtGui(false, {}));
    QVERIFY(!toText(check()).contains(warned));
    QVERIFY(!check().hostFails);
    write("Qt5Gui.dll", qtGui(true));
    QVERIFY(toText(check()).contains(warned));
    QVERIFY(check().hostFails);

    for (const char *const name : {"libwinpthread-1.dll", "platforms/qwindows.dll", "Zendel.dll"}) {
        install(Whole);
        write(name, {});
        QVERIFY2(check().hostFails, name);
    }
}

/// It may be in Windows' folder, which other systems don't have.
void tst_langcheck_host::runtimeOfMsvcElsewhere()
{
    install(Msvc);
    qunsetenv("SystemRoot");
    QCOMPARE(checkedFindings(), QString());
    QVERIFY(check().hostChecked.endsWith(
        QLatin1String(". Not checked: msvcp140.dll, vcruntime140.dll")));
    write("vcruntime140.dll", "");
    QVERIFY(checkedFindings().startsWith(QLatin1String("vcruntime140.dll error dll-unusable")));
}

void tst_langcheck_host::checkedFilesAreNamed()
{
    install(Whole);
    QCOMPARE(check().hostChecked,
             QStringLiteral("checked: MachineControl.exe, Qt5Core.dll, Qt5Gui.dll, Qt5Widgets.dll, "
                            "Zendel.dll, platforms/qwindows.dll, libgcc_s_seh-1.dll, "
                            "libstdc++-6.dll, libwinpthread-1.dll"));
    write("qt.conf", "[Paths]\nPrefix=$(QT)\n");
    QVERIFY(check().hostChecked.endsWith(
        QLatin1String(". Not checked: the folder of plug-ins in qt.conf")));
}

QTEST_GUILESS_MAIN(tst_langcheck_host)
#include "tst_langcheck_host.moc"
