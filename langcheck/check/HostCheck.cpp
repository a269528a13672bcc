#include "langcheck/check/HostCheck.h"

#include "langcheck/Texts.h"
#include "langcheck/check/HostFolder.h"
#include "langcheck/check/PluginFolders.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QVector>

#include <algorithm>

namespace {

const QLatin1String kQtCore("Qt5Core.dll");
const QLatin1String kQtDlls[] = {kQtCore, QLatin1String("Qt5Gui.dll"),
                                 QLatin1String("Qt5Widgets.dll")};
const QLatin1String kPlugin("Zendel.dll");
const QLatin1String
    kInstallRuntime("install Microsoft's current Visual C++ redistributable for x64");
const QLatin1String kPlatform("platforms/qwindows.dll");

QString familyName(CompilerFamily family)
{
    switch (family) {
    case CompilerFamily::Msvc:
        return QStringLiteral("MSVC");
    case CompilerFamily::MinGw:
        return QStringLiteral("MinGW-w64");
    case CompilerFamily::Unknown:
        break;
    }
    return {};
}

QString list(const QStringList &names)
{
    return names.join(QStringLiteral(", "));
}

bool usesDll(const Dll &dll, const QString &name)
{
    return std::any_of(dll.imports.begin(), dll.imports.end(), [&name](const DllImport &import) {
        return import.dll.compare(name, Qt::CaseInsensitive) == 0;
    });
}

bool usesQt(const Dll &dll)
{
    return std::any_of(std::begin(kQtDlls), std::end(kQtDlls),
                       [&dll](const QString &name) { return usesDll(dll, name); });
}

/// Returns a function's name for people. The file may contain any bytes.
QString shown(QByteArray function)
{
    for (char &c : function) {
        if (c <= ' ' || c > '~')
            c = '?';
    }
    return QString::fromLatin1(function);
}

/// The run-time library of MSVC, which is installed for all programs together.
bool isMsvcRuntime(const QString &dll)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(msvcp|msvcr|vcruntime|concrt|vccorlib)\\d\\d\\d"));
    return pattern.match(dll).hasMatch();
}

/// The libraries of MinGW are next to the executable. No DLL of Windows has such a name.
bool isMinGwLibrary(const QString &dll)
{
    return dll.startsWith(QLatin1String("lib"));
}

/// Checks the DLLs in the folder of the host's executable.
class HostCheck
{
public:
    explicit HostCheck(Report &report)
        : m_report(report)
        , m_host(report.applicationDir)
    {
    }

    void check()
    {
        readPrograms();
        const QString reason = unsuitableHost();
        if (!reason.isEmpty()) {
            m_report.hostChecked =
                (m_checked.isEmpty() ? QStringLiteral("not checked,")
                                     : QStringLiteral("not checked, except for Zendel.dll,"))
                + QStringLiteral(" because ") + reason;
            return;
        }
        readQt();
        findFamily();
        findReference();
        checkQt();
        checkPlugin();
        checkPlatform();
        checkImports();
        m_report.hostChecked = QStringLiteral("checked: ") + list(m_checked);
        if (!m_unknown.isEmpty())
            m_report.hostChecked += QStringLiteral(". Not checked: ") + list(m_unknown);
    }

private:
    void readPrograms()
    {
        const QStringList names = m_host.programs();
        for (const QString &name : names) {
            HostFile program = m_host.readProgram(name);
            if (program.isUsable() && usesQt(program.dll))
                m_programs += program;
            else
                m_others += program;
        }
    }

    /// Returns why the DLLs can't be checked, after a finding if that is a mistake; empty if they
    /// can.
    QString unsuitableHost()
    {
        const bool hasQt =
            std::any_of(std::begin(kQtDlls), std::end(kQtDlls),
                        [this](const QString &name) { return m_host.contains(name); });
        QString reason;
        if (m_programs.isEmpty())
            reason = otherHost(hasQt);
        if (hasQt || !reason.isEmpty())
            return reason;

        reason = QStringLiteral("there is no Qt5Core.dll");
        if (!m_programs.isEmpty())
            reason += QStringLiteral(" next to ") + m_programs.constFirst().name;
        QStringList inBin;
        for (const QLatin1String name : kQtDlls) {
            if (m_host.contains(QLatin1String("bin/") + name))
                inBin += name;
        }
        const bool hasOther = m_host.contains(QStringLiteral("Qt5Cored.dll"))
            || m_host.contains(QStringLiteral("Qt6Core.dll"));
        if (!inBin.isEmpty() && !m_programs.isEmpty()) {
            add(FindingKind::QtMissing, inBin.constFirst(),
                {list(inBin), QStringLiteral("the folder bin")});
        } else if (hasOther && !m_programs.isEmpty()) {
            add(FindingKind::QtMissing, kQtCore, {allQt(), sameQt()});
        } else if (!inBin.isEmpty()) {
            m_report.addFile(FindingKind::HostFolder, path(QStringLiteral("bin")), {list(inBin)});
        } else if (m_programs.isEmpty() && !m_others.isEmpty()) {
            reason += QStringLiteral(". The plug-in can't be used with a statically linked Qt");
        }
        checkPlugin();
        return reason;
    }

    /// Returns what the host uses instead of the 64-bit release version of Qt 5, after a finding;
    /// empty if there is no sign of that.
    QString otherHost(bool hasQt)
    {
        const auto find = [this](const auto &condition) {
            const auto it = std::find_if(m_others.constBegin(), m_others.constEnd(), condition);
            return it == m_others.constEnd() ? nullptr : &*it;
        };
        const HostFile *const program =
            find([](const HostFile &other) { return other.dll.is32Bit && usesQt(other.dll); });
        if (program)
            return smallHost(program->name, QStringLiteral("the host is a 32-bit program"));
        for (const char *const name : {"Qt5Cored.dll", "Qt6Core.dll", "Qt6Cored.dll"}) {
            const QLatin1String dll(name);
            if (const HostFile *const user =
                    find([dll](const HostFile &other) { return usesDll(other.dll, dll); }))
                return otherQt(user->name, dll);
            if (!hasQt && m_host.contains(dll))
                return otherQt(dll, dll);
        }
        QStringList small;
        int others = 0;
        for (const QLatin1String name : kQtDlls) {
            const HostFile *const dll = m_host.ownDll(name);
            if (dll && dll->dll.is32Bit)
                small += name;
            else if (dll)
                ++others;
        }
        if (small.size() > others) {
            return smallHost(small.constFirst(),
                             QStringLiteral("the host's Qt is for 32-bit programs"));
        }
        return {};
    }

    static QString allQt()
    {
        QStringList names;
        for (const QLatin1String name : kQtDlls)
            names += name;
        return list(names);
    }

    QString smallHost(const QString &file, const QString &reason)
    {
        add(FindingKind::Host32Bit, file, {reason});
        return reason;
    }

    QString otherQt(const QString &file, const QString &dll)
    {
        add(FindingKind::QtOther, file, {dll});
        return QStringLiteral("the host uses ") + dll;
    }

    void readQt()
    {
        for (const HostFile &program : qAsConst(m_programs))
            m_checked += program.name;
        for (const QLatin1String name : kQtDlls) {
            const HostFile *const found = m_host.ownDll(name);
            if (!found) {
                m_missingQt += name;
                continue;
            }
            HostFile file = *found;
            file.name = name;
            if (file.isUsable() && file.dll.exports == CompilerFamily::Unknown)
                file.dll.defect = QStringLiteral("it doesn't export C++ functions");
            m_qt += file;
            m_checked += name;
        }
        if (!m_qt.isEmpty() && m_qt.constFirst().name == kQtCore) {
            const Dll &core = m_qt.constFirst().dll;
            m_report.hostQt = HostQt {core.version.toString(), familyName(core.exports)};
        }
    }

    /// Finds the family of the host's programs, if they all have the same, or else that of most
    /// DLLs of Qt.
    void findFamily()
    {
        for (const HostFile &program : qAsConst(m_programs)) {
            const CompilerFamily family = program.dll.qtImports;
            if (family == CompilerFamily::Unknown || family == m_family)
                continue;
            if (m_family != CompilerFamily::Unknown) {
                m_family = CompilerFamily::Unknown;
                break;
            }
            m_family = family;
            m_evidence = program.name;
        }
        if (m_family != CompilerFamily::Unknown)
            return;
        const int msvc = count(CompilerFamily::Msvc);
        const int minGw = count(CompilerFamily::MinGw);
        for (const HostFile &qt : qAsConst(m_qt)) {
            const bool fewer = qt.dll.exports == CompilerFamily::Msvc ? msvc < minGw : minGw < msvc;
            if (!qt.isUsable() || fewer)
                continue;
            m_family = qt.dll.exports;
            m_evidence = qt.name;
            break;
        }
    }

    int count(CompilerFamily family) const
    {
        return int(std::count_if(m_qt.begin(), m_qt.end(), [family](const HostFile &qt) {
            return qt.isUsable() && qt.dll.exports == family;
        }));
    }

    /// Finds the version of Qt that the other DLLs must have: one with all that the programs and
    /// the plug-in import, if there is one, and of these, the one that most DLLs have.
    void findReference()
    {
        int best = -1;
        for (const HostFile &qt : qAsConst(m_qt)) {
            if (!qt.isUsable() || qt.dll.exports != m_family)
                continue;
            const QVersionNumber &version = qt.dll.version;
            const auto same = std::count_if(m_qt.begin(), m_qt.end(), [&](const HostFile &other) {
                return other.isUsable() && other.dll.version == version;
            });
            const int score = (version.isNull() ? 0 : int(same)) + (isSufficient(version) ? 10 : 0);
            if (score > best) {
                best = score;
                m_reference = &qt;
            }
        }
    }

    /// Returns whether the DLLs of Qt of this version have all that is imported from them.
    bool isSufficient(const QVersionNumber &version)
    {
        QVector<const Dll *> importers;
        for (const HostFile &program : qAsConst(m_programs))
            importers += &program.dll;
        if (const HostFile *const plugin = m_host.ownDll(kPlugin))
            importers += &plugin->dll;
        for (const HostFile &qt : qAsConst(m_qt)) {
            if (!qt.isUsable() || qt.dll.version != version)
                continue;
            for (const Dll *const importer : qAsConst(importers)) {
                if (importer->qtImports == m_family && !missing(*importer, qt).isEmpty())
                    return false;
            }
        }
        return true;
    }

    /// Returns the functions that one file imports from the other, but that aren't there.
    static QList<QByteArray> missing(const Dll &importer, const HostFile &exporter)
    {
        QList<QByteArray> functions;
        for (const DllImport &import : importer.imports) {
            if (import.dll.compare(exporter.name, Qt::CaseInsensitive) == 0
                && !exporter.dll.exportedFunctions.contains(import.function))
                functions += import.function;
        }
        return functions;
    }

    /// Checks whether Qt's DLLs are there and fit the host and each other.
    void checkQt()
    {
        if (!m_missingQt.isEmpty()) {
            const bool inBin = m_host.contains(QStringLiteral("bin/") + m_missingQt.constFirst());
            add(FindingKind::QtMissing, m_missingQt.constFirst(),
                {list(m_missingQt), inBin ? QStringLiteral("the folder bin") : sameQt()});
        }
        for (const HostFile &qt : qAsConst(m_qt)) {
            if (!reportUnusable(qt, QStringLiteral("replace it with ") + sameFile()))
                continue;
            const QVersionNumber &version = qt.dll.version;
            if (qt.dll.exports != m_family) {
                report(FindingKind::QtFamily, qt.name,
                       {familyName(qt.dll.exports), familyName(m_family), m_evidence, sameFile()});
            } else if (version != m_reference->dll.version && !version.isNull()
                       && !m_reference->dll.version.isNull()) {
                reportVersion(qt);
            }
        }
    }

    void reportVersion(const HostFile &file)
    {
        report(FindingKind::QtVersionsDiffer, below(file.path),
               {file.dll.version.toString(), m_reference->dll.version.toString(), m_reference->name,
                sameFile()});
    }

    /// Returns false after a finding if the file can't be loaded.
    bool reportUnusable(const HostFile &file, const QString &remedy)
    {
        if (file.isUsable())
            return true;
        if (file.unreadable.isEmpty()) {
            report(FindingKind::DllUnusable, below(file.path), {file.dll.defect, remedy});
        } else {
            const bool isFolder = file.unreadable == QLatin1String("it is a folder");
            report(
                FindingKind::DllUnreadable, below(file.path),
                {file.unreadable, isFolder ? remedy : QStringLiteral("correct its permissions")});
        }
        return false;
    }

    /// Returns which Qt a missing file is from.
    QString sameQt() const
    {
        if (!m_reference || m_reference->dll.version.isNull())
            return QStringLiteral("the Qt that the host was built with");
        return withValues("Qt %1 for %2",
                          {m_reference->dll.version.toString(), familyName(m_family)});
    }

    /// Returns what a file of Qt should be replaced with.
    QString sameFile() const { return QStringLiteral("the same file of ") + sameQt(); }

    /// Checks the plug-in by itself, and its family.
    void checkPlugin()
    {
        const HostFile *const plugin = m_host.ownDll(kPlugin);
        if (!plugin) {
            if (!m_qt.isEmpty())
                add(FindingKind::PluginMissing, kPlugin);
            return;
        }
        m_checked += kPlugin;
        const QString ours = m_family == CompilerFamily::Unknown
            ? QStringLiteral("the plug-in from its package")
            : QStringLiteral("the plug-in that is built for ") + familyName(m_family);
        if (!reportUnusable(*plugin, QStringLiteral("replace it with ") + ours))
            return;
        QStringList functions;
        for (const char *const function : {"NewInterface", "ReleaseInterface"}) {
            if (!plugin->dll.exportedFunctions.contains(function))
                functions += QLatin1String(function);
        }
        const CompilerFamily family = plugin->dll.qtImports;
        if (!functions.isEmpty()) {
            report(FindingKind::PluginForeign, kPlugin,
                   {functions.join(QStringLiteral(" and ")), ours});
        } else if (m_family != CompilerFamily::Unknown && family != CompilerFamily::Unknown
                   && family != m_family) {
            report(FindingKind::PluginFamily, kPlugin,
                   {familyName(family), familyName(m_family), m_evidence});
        }
    }

    /// Checks Qt's plug-in for Windows, of which Qt loads the first that it finds.
    void checkPlatform()
    {
        const QVersionNumber qtVersion = m_reference ? m_reference->dll.version : QVersionNumber();
        const PluginFolders folders = pluginFolders(m_host, qtVersion);
        const QStringList found = folders.find(m_host, kPlatform);
        for (const QString &file : found) {
            m_platform = m_host.read(file);
            // Qt skips files without its description of plug-ins, which are in each DLL for them.
            if (m_platform->dll.defect != QLatin1String("it has no PE header"))
                break;
        }
        if (!folders.isComplete) {
            m_unknown += QStringLiteral("the folder of plug-ins in qt.conf");
            m_platform = nullptr;
            return;
        }
        if (!m_platform) {
            if (folders.conf.isEmpty()) {
                add(FindingKind::PlatformMissing, kPlatform, {sameQt()});
            } else {
                add(FindingKind::PlatformPath, below(folders.conf),
                    {QDir(m_host.path()).relativeFilePath(folders.paths.constFirst()), sameQt()});
            }
            return;
        }
        m_checked += below(m_platform->path);
        const Dll &dll = m_platform->dll;
        if (!reportUnusable(*m_platform, QStringLiteral("replace it with ") + sameFile()))
            return;
        if (m_family != CompilerFamily::Unknown && dll.qtImports != CompilerFamily::Unknown
            && dll.qtImports != m_family) {
            report(FindingKind::QtFamily, below(m_platform->path),
                   {familyName(dll.qtImports), familyName(m_family), m_evidence, sameFile()});
            return;
        }
        // What it uses of Qt isn't the same in each minor version.
        const bool isOther =
            !dll.version.isNull() && !qtVersion.isNull() && dll.version != qtVersion;
        const auto lacks = [this, &dll](const HostFile &qt) {
            return qt.isUsable() && !m_reported.contains(qt.name.toLower())
                && !missing(dll, qt).isEmpty();
        };
        if (isOther
            && (dll.version.majorVersion() != qtVersion.majorVersion()
                || dll.version.minorVersion() != qtVersion.minorVersion()
                || std::any_of(m_qt.constBegin(), m_qt.constEnd(), lacks)))
            reportVersion(*m_platform);
    }

    /// Follows the imports of all files and checks that Windows finds the DLLs, and in them the
    /// functions. Leaves out what is the effect of an earlier finding.
    void checkImports()
    {
        QVector<const HostFile *> files;
        for (const HostFile &program : qAsConst(m_programs)) {
            if (program.dll.qtImports == m_family) // Others are probably not the host.
                files += &program;
        }
        for (const HostFile &qt : qAsConst(m_qt))
            files += &qt;
        files += m_host.ownDll(kPlugin);
        files += m_platform;
        QSet<QString> seen;
        for (const HostFile *const file : qAsConst(files)) {
            if (file)
                seen += file->name.toLower();
        }
        for (int i = 0; i < files.size(); ++i) { // Grows
            if (!files.at(i) || isReported(*files.at(i)))
                files[i] = nullptr;
            else
                findImported(*files.at(i), files, seen);
        }
        if (!m_missingRuntime.isEmpty()) {
            const QString names = list(m_missingRuntime);
            add(FindingKind::RuntimeMissing, m_missingRuntime.constFirst(),
                {names,
                 m_family == CompilerFamily::MinGw
                     ? QStringLiteral(
                           "copy %1 from Qt's folder bin, which contains the DLLs of the "
                           "compiler that Qt was built with")
                           .arg(names)
                     : QString(kInstallRuntime)});
        }
        for (const HostFile *const file : qAsConst(files)) {
            if (file)
                checkFunctions(*file);
        }
    }

    bool isReported(const HostFile &file) const
    {
        return m_reported.contains(below(file.path).toLower()) || !file.isUsable();
    }

    /// Adds the DLLs that a file imports to @p files, if they haven't been seen before.
    void findImported(const HostFile &file, QVector<const HostFile *> &files, QSet<QString> &seen)
    {
        static const QRegularExpression isName(QStringLiteral("^[\\w.+-]+$"));
        for (const DllImport &import : file.dll.imports) {
            const QString &name = import.dll;
            // Windows replaces the names that start with "api-" itself.
            if (seen.contains(name) || name.startsWith(QLatin1String("api-"))
                || !isName.match(name).hasMatch())
                continue;
            seen += name;
            const bool isRuntime = isMsvcRuntime(name);
            // Windows' own DLLs are right.
            const HostFile *const dll = isRuntime ? m_host.dll(name) : m_host.ownDll(name);
            if (!dll) {
                reportMissing(name);
                continue;
            }
            m_checked += dll->name;
            const QString remedy = isRuntime ? runtimeRemedy(*dll)
                                             : QStringLiteral("replace it with the file that came "
                                                              "with %1")
                                                   .arg(file.name);
            if (reportUnusable(*dll, remedy))
                files += dll;
        }
    }

    void reportMissing(const QString &name)
    {
        if (name.startsWith(QLatin1String("qt5"))) {
            if (!m_missingQt.contains(name, Qt::CaseInsensitive))
                add(FindingKind::QtMissing, name, {name, sameQt()});
        } else if (m_family == CompilerFamily::MinGw && isMinGwLibrary(name)) {
            m_missingRuntime += name;
        } else if (isMsvcRuntime(name)) {
            (m_host.hasSystemFolder() ? m_missingRuntime : m_unknown) += name;
        }
    }

    QString runtimeRemedy(const HostFile &dll) const
    {
        return m_host.contains(dll.name) ? QLatin1String("delete it, and ") + kInstallRuntime
                                         : QString(kInstallRuntime);
    }

    /// Checks whether a file's imports are in the DLLs.
    void checkFunctions(const HostFile &file)
    {
        QSet<QString> seen;
        for (const DllImport &import : file.dll.imports) {
            if (seen.contains(import.dll) || import.dll.startsWith(QLatin1String("api-")))
                continue;
            seen += import.dll;
            const bool isRuntime = isMsvcRuntime(import.dll);
            const HostFile *const dll =
                isRuntime ? m_host.dll(import.dll) : m_host.ownDll(import.dll);
            if (!dll || isReported(*dll))
                continue;
            const QList<QByteArray> functions = missing(file.dll, *dll);
            if (functions.isEmpty())
                continue;
            const QString what = functions.size() == 1 ? shown(functions.constFirst())
                                                       : QStringLiteral("%1 and %2 more")
                                                             .arg(shown(functions.constFirst()))
                                                             .arg(functions.size() - 1);
            QString where = dll->name;
            if (!dll->dll.version.isNull() && !isRuntime)
                where += QLatin1Char(' ') + dll->dll.version.toString();
            if (isRuntime) {
                report(FindingKind::RuntimeOld, below(dll->path),
                       {what, file.name, runtimeRemedy(*dll)});
            } else if (file.name.compare(kPlugin, Qt::CaseInsensitive) == 0) {
                add(FindingKind::PluginFunctions, kPlugin, {what, where});
                return;
            } else {
                add(FindingKind::FunctionMissing, below(file.path), {what, where});
                for (const QLatin1String name : kQtDlls) // The remedy replaces them.
                    m_reported += QString(name).toLower();
                return;
            }
        }
    }

    QString path(const QString &name) const { return m_host.path() + QLatin1Char('/') + name; }

    /// Returns a path relative to the host's folder.
    QString below(const QString &path) const
    {
        return path.startsWith(m_host.path() + QLatin1Char('/'))
            ? path.mid(m_host.path().size() + 1)
            : path;
    }

    /// Adds a finding. The files that it is about don't get others.
    void report(FindingKind kind, const QString &name, const QStringList &values)
    {
        m_reported += name.toLower();
        add(kind, name, values);
    }

    void add(FindingKind kind, const QString &name, const QStringList &values = {})
    {
        m_report.addFile(kind, QDir::isAbsolutePath(name) ? name : path(name), values);
        m_report.hostFails = true;
    }

    Report &m_report;
    HostFolder m_host;
    QVector<HostFile> m_programs;                      ///< Those that use Qt.
    QVector<HostFile> m_others;                        ///< The other programs.
    QVector<HostFile> m_qt;                            ///< Those that exist, Qt5Core.dll first.
    QStringList m_missingQt;                           ///< The others.
    const HostFile *m_platform = nullptr;              ///< The one that Qt loads.
    CompilerFamily m_family = CompilerFamily::Unknown; ///< The host's.
    QString m_evidence;                                ///< The file that shows the family.
    const HostFile *m_reference = nullptr; ///< The DLL of Qt whose version the others must have.
    QSet<QString> m_reported;              ///< Files with a finding, in lower case.
    QStringList m_missingRuntime;
    QStringList m_checked;
    QStringList m_unknown; ///< What can't be checked here.
};

} // namespace

void checkHost(Report &report)
{
    HostCheck(report).check();
}
