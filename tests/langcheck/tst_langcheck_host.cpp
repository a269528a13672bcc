// Tests the findings about the DLLs next to the host's executable.

#include "langcheck/HostCheck.h"

#include "DllWriter.h"
#include "support/Warnings.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using Files = QMap<QString, QByteArray>; ///< By name; null to remove the file.
Q_DECLARE_METATYPE(Files)

namespace {

const QVersionNumber kOwnVersion(QT_VERSION_MAJOR, QT_VERSION_MINOR, QT_VERSION_PATCH);

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
    void allMistakesAreFoundAtOnce_data();
    void allMistakesAreFoundAtOnce();
    void replacementsFitTheHost();
    void startIsNotPromised();
    void qtThatCannotBeOpened();
    void otherFolderOfPlugins();
    void pluginsBesideTheExecutableAreFoundSinceQt514();
    void runtimeOfMsvc();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &bytes);
    void installHost(bool msvc);
    void installWholeHost();
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
    write(QStringLiteral("Windows/System32/vcruntime140.dll"), "any");
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

void tst_langcheck_host::write(const QString &name, const QByteArray &bytes)
{
    QVERIFY(QFileInfo(path(name)).dir().mkpath(QStringLiteral(".")));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

/// Writes the files of a host without findings.
void tst_langcheck_host::installHost(bool msvc)
{
    write(QStringLiteral("Qt5Core.dll"), qtCore(msvc));
    write(QStringLiteral("Zendel.dll"), plugin(msvc));
    write(QStringLiteral("platforms/qwindows.dll"), plugin(msvc));
    if (msvc)
        return;
    for (const char *const name :
         {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}) {
        write(QLatin1String(name), "any");
    }
}

/// Writes the files of a host for MinGW, with a program and more of Qt.
void tst_langcheck_host::installWholeHost()
{
    installHost(false);
    write(QStringLiteral("Qt5Gui.dll"), qtCore(false));
    write(QStringLiteral("Qt5Widgets.dll"), qtCore(false));
    write(QStringLiteral("MachineControl.exe"), program(false));
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
                           finding.id, finding.text.section(QLatin1String("; "), 0, 0));
    }
    return result.join(QLatin1Char('\n'));
}

void tst_langcheck_host::nothingIsCheckedWithoutQt()
{
    write(QStringLiteral("Zendel.dll"), "damaged");
    const Report report = check();
    QVERIFY(report.findings.isEmpty());
    QVERIFY(!report.hostQt);
    QVERIFY(!report.toText().contains(QLatin1String("Qt")));
    QVERIFY(!report.toJson().contains(QStringLiteral("hostQt")));
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

    write(QStringLiteral("Qt5Core.dll"), bytes);
    const Report report = check();
    QVERIFY2(report.toText().contains(QStringLiteral("\nHost's Qt:    %1\n").arg(line)),
             qPrintable(report.toText()));
    QCOMPARE(report.toJson().value(QStringLiteral("hostQt")).toObject(),
             QJsonObject(
                 {{QStringLiteral("version"), version}, {QStringLiteral("compiler"), compiler}}));
}

void tst_langcheck_host::mistakesAreFound_data()
{
    QTest::addColumn<bool>("msvc");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes"); // Null to remove the file
    QTest::addColumn<QString>("expected");

    const QByteArray removed;
    const auto row = [](const char *name, bool msvc, const char *file, const QByteArray &bytes,
                        const QString &expected) {
        QTest::newRow(name) << msvc << QString::fromLatin1(file) << bytes << expected;
    };
    const QString own = kOwnVersion.toString();
    DllContents small = qtContents(true);
    small.machine = 0x014C;
    DllContents plain = qtContents(true);
    plain.exports = {"qt_startup_hook"};

    row("clean, MSVC", true, "readme.txt", "any", {});
    row("clean, MinGW", false, "readme.txt", "any", {});
    row("no plug-in, MSVC", true, "Zendel.dll", removed, {});
    row("no plug-in, MinGW", false, "Zendel.dll", removed, {});
    row("later patch release", true, "Qt5Core.dll",
        qtCore(true, QVersionNumber(5, 15, QT_VERSION_PATCH + 1)), {});

    row("first release that fits", true, "Qt5Core.dll", qtCore(true, QVersionNumber(5, 6, 0)), {});
    row("earlier release", false, "Qt5Core.dll", qtCore(false, QVersionNumber(5, 5, 1)),
        QStringLiteral("Qt5Core.dll error qt-version: host's Qt is not one of 5.6 to 5.15: 5.5.1"));
    row("later minor release", true, "Qt5Core.dll", qtCore(true, QVersionNumber(5, 16, 0)),
        QStringLiteral("Qt5Core.dll error qt-version: host's Qt is not one of 5.6 to 5.15: "
                       "5.16.0"));
    row("other major release", true, "Qt5Core.dll", qtCore(true, QVersionNumber(6, 15, 8)),
        QStringLiteral("Qt5Core.dll error qt-version: host's Qt is not one of 5.6 to 5.15: "
                       "6.15.8"));
    row("no version", true, "Qt5Core.dll", qtCore(true, {}),
        QStringLiteral("Qt5Core.dll warning qt-version-unknown: file has no version resource"));

    row("32-bit Qt", true, "Qt5Core.dll", makeDll(small),
        QStringLiteral("Qt5Core.dll error dll-unusable: not a DLL for 64-bit x86: it is for "
                       "32-bit x86"));
    row("Qt is a text", true, "Qt5Core.dll", "text",
        QStringLiteral("Qt5Core.dll error dll-unusable: not a DLL for 64-bit x86: it has no PE "
                       "header"));
    row("Qt is cut off", false, "Qt5Core.dll", qtCore(false).chopped(1),
        QStringLiteral("Qt5Core.dll error dll-unusable: not a DLL for 64-bit x86: it is cut off"));
    row("Qt without C++", true, "Qt5Core.dll", makeDll(plain),
        QStringLiteral("Qt5Core.dll error dll-unusable: not a DLL for 64-bit x86: it exports no "
                       "C++ functions"));
    row("plug-in is cut off", false, "Zendel.dll", plugin(false).chopped(1),
        QStringLiteral("Zendel.dll error dll-unusable: not a DLL for 64-bit x86: it is cut off"));

    row("plug-in for MinGW", true, "Zendel.dll", plugin(false),
        QStringLiteral("Zendel.dll error plugin-family: plug-in is built for MinGW-w64, but "
                       "Qt5Core.dll for MSVC"));
    row("plug-in for MSVC", false, "Zendel.dll", plugin(true),
        QStringLiteral("Zendel.dll error plugin-family: plug-in is built for MSVC, but "
                       "Qt5Core.dll for MinGW-w64"));
    row("no platform plug-in", true, "platforms/qwindows.dll", removed,
        QStringLiteral("platforms/qwindows.dll warning platform-missing: file does not exist"));
    row("platform plug-in for MinGW", true, "platforms/qwindows.dll", plugin(false),
        QStringLiteral("platforms/qwindows.dll error qt-family: built for MinGW-w64, but "
                       "Qt5Core.dll for MSVC"));
    row("empty platform plug-in", true, "platforms/qwindows.dll", QByteArray(""),
        QStringLiteral(
            "platforms/qwindows.dll error dll-unusable: not a DLL for 64-bit x86: it has "
            "no PE header"));
    for (const char *const name :
         {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}) {
        row(name, false, name, removed,
            QStringLiteral("%1 warning runtime-missing: file does not exist")
                .arg(QLatin1String(name)));
    }
}

void tst_langcheck_host::mistakesAreFound()
{
    QFETCH(bool, msvc);
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    installHost(msvc);
    if (bytes.isNull())
        QVERIFY(QFile::remove(path(file)));
    else
        write(file, bytes);
    QCOMPARE(checkedFindings(), expected);
}

/// Each row adds files to a complete host for MinGW, or replaces some of it.
void tst_langcheck_host::allMistakesAreFoundAtOnce_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const Files &files, const QString &expected) {
        QTest::newRow(name) << files << expected;
    };
    const QString core = QStringLiteral("Qt5Core.dll");
    const QString gui = QStringLiteral("Qt5Gui.dll");
    const QString widgets = QStringLiteral("Qt5Widgets.dll");
    const QString host = QStringLiteral("MachineControl.exe");
    const QString zendel = QStringLiteral("Zendel.dll");
    const QByteArray removed;
    const auto family = [](const QString &file, const QString &evidence) {
        return QStringLiteral("%1 error qt-family: built for MSVC, but %2 for MinGW-w64")
            .arg(file, evidence);
    };
    const QString pluginFamily = QStringLiteral("Zendel.dll error plugin-family: plug-in is built "
                                                "for MSVC, but %1 for MinGW-w64");
    const QString cutOff = QStringLiteral("%1 error dll-unusable: not a DLL for 64-bit x86: it is "
                                          "cut off");
    const QString differ = QStringLiteral("%1 warning qt-versions-differ: version is %2, but that "
                                          "of Qt5Core.dll is %3");
    const QString end = QStringLiteral("\n");
    const QVersionNumber later(5, 15, 99);
    DllContents small = qtContents(false);
    small.machine = 0x014C;

    row("clean", {}, {});
    row("Qt5Core", {{core, qtCore(true)}}, family(core, host));
    row("Qt5Core, no program", {{core, qtCore(true)}, {host, removed}}, family(core, gui));
    row("Qt5Core and Qt5Gui", {{core, qtCore(true)}, {gui, qtCore(true)}},
        family(core, host) + end + family(gui, host));
    row("all of Qt", {{core, qtCore(true)}, {gui, qtCore(true)}, {widgets, qtCore(true)}},
        family(core, host) + end + family(gui, host) + end + family(widgets, host));
    row("all but the program",
        {{core, qtCore(true)},
         {gui, qtCore(true)},
         {widgets, qtCore(true)},
         {zendel, plugin(true)}},
        family(core, host) + end + family(gui, host) + end + family(widgets, host) + end
            + pluginFamily.arg(host));
    row("Qt5Core, plug-in and a missing DLL of MinGW",
        {{core, qtCore(true)},
         {zendel, plugin(true)},
         {QStringLiteral("libstdc++-6.dll"), removed}},
        family(core, host) + end
            + QStringLiteral("libstdc++-6.dll warning runtime-missing: file does not exist\n")
            + pluginFamily.arg(host));
    row("langcheck", {{QStringLiteral("LangCheck.exe"), program(true)}}, {});
    row("only langcheck, and Qt5Widgets",
        {{QStringLiteral("langcheck.exe"), program(true)},
         {host, removed},
         {widgets, qtCore(true)}},
        family(widgets, core));
    row("programs that differ, and Qt5Widgets",
        {{QStringLiteral("Other.exe"), program(true)}, {widgets, qtCore(true)}},
        family(widgets, core));
    row("programs that are none", {{QStringLiteral("a.exe"), "x"}, {QStringLiteral("b.exe"), ""}},
        {});
    row("Qt5Gui cut off", {{gui, qtCore(false).chopped(1)}}, cutOff.arg(gui));
    row("Qt5Core cut off, and plug-in", {{core, qtCore(false).chopped(1)}, {zendel, plugin(true)}},
        cutOff.arg(core) + end + pluginFamily.arg(host));
    row("Qt5Core cut off, no program, and plug-in",
        {{core, qtCore(false).chopped(1)}, {host, removed}, {zendel, plugin(true)}},
        cutOff.arg(core) + end + pluginFamily.arg(gui));
    row("Qt5Widgets for 32-bit", {{widgets, makeDll(small)}},
        QStringLiteral("Qt5Widgets.dll error dll-unusable: not a DLL for 64-bit x86: it is for "
                       "32-bit x86"));
    row("version of Qt5Gui", {{gui, qtCore(false, later)}},
        differ.arg(gui, later.toString(), kOwnVersion.toString()));
    row("version of Qt5Core", {{core, qtCore(false, later)}},
        differ.arg(gui, kOwnVersion.toString(), later.toString()) + end
            + differ.arg(widgets, kOwnVersion.toString(), later.toString()));
    row("version and family of Qt5Core", {{core, qtCore(true, later)}}, family(core, host));
    row("Qt5Gui without a version", {{gui, qtCore(false, {})}}, {});
}

void tst_langcheck_host::allMistakesAreFoundAtOnce()
{
    QFETCH(Files, files);
    QFETCH(QString, expected);

    installWholeHost();
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (it->isNull())
            QVERIFY(QFile::remove(path(it.key())));
        else
            write(it.key(), *it);
    }
    QCOMPARE(checkedFindings(), expected);
}

void tst_langcheck_host::replacementsFitTheHost()
{
    installWholeHost();
    const QString own = kOwnVersion.toString();
    write(QStringLiteral("Qt5Core.dll"), qtCore(true, QVersionNumber(5, 15, 99)));
    write(QStringLiteral("Qt5Gui.dll"), "text");
    write(QStringLiteral("Zendel.dll"), "text");
    QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 3);
    const QString file = QStringLiteral("replace it by the same file of Qt %1 for MinGW-w64");
    QCOMPARE(findings.at(0).remedy, file.arg(own));
    const QString host = QStringLiteral(", and use a 64-bit host if this one is not");
    QCOMPARE(findings.at(1).remedy, file.arg(own) + host);
    QCOMPARE(findings.at(2).remedy,
             QStringLiteral("replace it by a plug-in that is built for MinGW-w64") + host);

    write(QStringLiteral("Qt5Widgets.dll"), qtCore(true));
    findings = check().findings;
    QCOMPARE(findings.at(0).remedy, file.arg(QStringLiteral("5.15")));
}

/// Neither as text nor on the page, if a wrong or missing DLL may prevent it.
void tst_langcheck_host::startIsNotPromised()
{
    const QString warned = QStringLiteral("may not start");
    installWholeHost();
    write(QStringLiteral("Qt5Gui.dll"), qtCore(false, QVersionNumber(5, 15, 99)));
    QVERIFY(!check().toText().contains(warned));
    QVERIFY(!check().hostFails);
    write(QStringLiteral("Qt5Gui.dll"), qtCore(true));
    QVERIFY(check().toText().contains(warned));
    QVERIFY(check().hostFails);

    for (const char *const name : {"libwinpthread-1.dll", "platforms/qwindows.dll"}) {
        installWholeHost();
        QVERIFY(QFile::remove(path(QLatin1String(name))));
        QVERIFY2(check().hostFails, name);
    }
}

void tst_langcheck_host::qtThatCannotBeOpened()
{
    installHost(true);
    QVERIFY(QFile::remove(path(QStringLiteral("Qt5Core.dll"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("Qt5Core.dll"))));
    QCOMPARE(checkedFindings(),
             QStringLiteral("Qt5Core.dll error dll-unusable: not a DLL for 64-bit x86: it cannot "
                            "be opened"));
}

void tst_langcheck_host::otherFolderOfPlugins()
{
    installHost(true);
    QVERIFY(QFile::remove(path(QStringLiteral("platforms/qwindows.dll"))));
    write(QStringLiteral("qt.conf"), "[Paths]\nPlugins=plugins\n");
    QCOMPARE(checkedFindings(), QString());
}

void tst_langcheck_host::pluginsBesideTheExecutableAreFoundSinceQt514()
{
    installHost(true);
    QVERIFY(QFile::remove(path(QStringLiteral("platforms/qwindows.dll"))));
    write(QStringLiteral("plugins/platforms/qwindows.dll"), plugin(true));
    write(QStringLiteral("Qt5Core.dll"), qtCore(true, QVersionNumber(5, 14, 0)));
    QCOMPARE(checkedFindings(), QString());
    write(QStringLiteral("plugins/platforms/qwindows.dll"), plugin(false));
    QVERIFY(checkedFindings().startsWith(
        QLatin1String("plugins/platforms/qwindows.dll error qt-family: ")));

    write(QStringLiteral("Qt5Core.dll"), qtCore(true, QVersionNumber(5, 13, 2)));
    QCOMPARE(
        checkedFindings(),
        QStringLiteral("platforms/qwindows.dll warning platform-missing: file does not exist"));
}

/// It may be next to the executable or in Windows' folder, which other systems don't have.
void tst_langcheck_host::runtimeOfMsvc()
{
    installHost(true);
    QVERIFY(QFile::remove(path(QStringLiteral("Windows/System32/vcruntime140.dll"))));
    const QList<Finding> findings = check().findings;
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().file, QStringLiteral("vcruntime140.dll"));
    QCOMPARE(findings.first().severity, Finding::Warning);
    QCOMPARE(findings.first().id, QStringLiteral("runtime-missing"));
    QVERIFY(findings.first().text.endsWith(
        QLatin1String("; install Microsoft's Visual C++ redistributable")));

    write(QStringLiteral("vcruntime140.dll"), "any");
    QCOMPARE(checkedFindings(), QString());

    QVERIFY(QFile::remove(path(QStringLiteral("vcruntime140.dll"))));
    qunsetenv("SystemRoot");
    QCOMPARE(checkedFindings(), QString());
}

QTEST_GUILESS_MAIN(tst_langcheck_host)
#include "tst_langcheck_host.moc"
