#include "langcheck/check/HostCheck.h"

#include "lang/OpenFile.h"
#include "langcheck/check/Dll.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QVector>

#include <algorithm>
#include <optional>

namespace {

const QLatin1String kQtCore("Qt5Core.dll");
const QLatin1String kPlugin("Zendel.dll");

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

/// Returns the folder with Windows' own DLLs; empty on other systems.
QString systemFolder()
{
    const QString windows =
        QProcessEnvironment::systemEnvironment().value(QStringLiteral("SystemRoot"));
    return windows.isEmpty() ? QString() : windows + QLatin1String("/System32");
}

/// A DLL of Qt next to the host's executable.
struct QtDll
{
    QString name;
    Dll dll;
};

/// Checks the DLLs in the folder of the host's executable.
class HostCheck
{
public:
    explicit HostCheck(Report &report)
        : m_report(report)
    {
    }

    void check()
    {
        readQt();
        findFamily();
        for (const QtDll &qt : qAsConst(m_qt))
            checkQt(qt);
        if (m_reference)
            checkVersion(*m_reference);
        checkRuntime();
        if (exists(kPlugin))
            checkPlugin();
        checkPlatform();
    }

private:
    void readQt()
    {
        for (const QLatin1String name :
             {kQtCore, QLatin1String("Qt5Gui.dll"), QLatin1String("Qt5Widgets.dll")}) {
            if (!exists(name))
                continue;
            Dll dll = read(name, readDll);
            if (dll.defect.isEmpty() && dll.exports == CompilerFamily::Unknown)
                dll.defect = QStringLiteral("it doesn't export C++ functions");
            m_qt += {name, dll};
        }
        const Dll &core = m_qt.constFirst().dll;
        m_report.hostQt = HostQt {core.version.toString(), familyName(core.exports)};
    }

    /// Finds the family of the host's programs, or else that of most DLLs of Qt, and the first DLL
    /// of Qt that is of this family.
    void findFamily()
    {
        readPrograms();
        if (m_family == CompilerFamily::Unknown) {
            const int msvc = count(CompilerFamily::Msvc);
            const int minGw = count(CompilerFamily::MinGw);
            for (const QtDll &qt : qAsConst(m_qt)) {
                const bool fewer =
                    qt.dll.exports == CompilerFamily::Msvc ? msvc < minGw : minGw < msvc;
                if (!qt.dll.defect.isEmpty() || fewer)
                    continue;
                m_family = qt.dll.exports;
                m_evidence = qt.name;
                break;
            }
        }
        const auto it = std::find_if(m_qt.constBegin(), m_qt.constEnd(), [this](const QtDll &qt) {
            return qt.dll.defect.isEmpty() && qt.dll.exports == m_family;
        });
        if (it != m_qt.constEnd())
            m_reference = *it;
    }

    /// Finds the family of the programs that use Qt, if they all have the same.
    void readPrograms()
    {
        const QStringList names =
            QDir(m_report.applicationDir).entryList({QStringLiteral("*.exe")}, QDir::Files);
        for (const QString &name : names) {
            if (name.compare(QLatin1String("langcheck.exe"), Qt::CaseInsensitive) == 0)
                continue;
            const CompilerFamily family = read(name, readProgram).qtImports;
            if (family == CompilerFamily::Unknown || family == m_family)
                continue;
            if (m_family != CompilerFamily::Unknown) {
                m_family = CompilerFamily::Unknown;
                return;
            }
            m_family = family;
            m_evidence = name;
        }
    }

    int count(CompilerFamily family) const
    {
        return int(std::count_if(m_qt.begin(), m_qt.end(), [family](const QtDll &qt) {
            return qt.dll.defect.isEmpty() && qt.dll.exports == family;
        }));
    }

    Dll read(const QString &name, Dll (*readFile)(QIODevice &)) const
    {
        QFile file(path(name));
        if (openForReading(file))
            return readFile(file);
        Dll dll;
        dll.defect = QStringLiteral("it can't be opened");
        return dll;
    }

    /// Checks whether the DLL fits the host, except for what is the same in all DLLs of Qt.
    void checkQt(const QtDll &qt)
    {
        if (!qt.dll.defect.isEmpty()) {
            add(FindingKind::DllUnusable, qt.name, {qt.dll.defect, sameFile()});
        } else if (qt.dll.exports != m_family) {
            add(FindingKind::QtFamily, qt.name,
                {familyName(qt.dll.exports), familyName(m_family), m_evidence, sameFile()});
        } else if (qt.dll.version != m_reference->dll.version && !qt.dll.version.isNull()
                   && !m_reference->dll.version.isNull()) {
            add(FindingKind::QtVersionsDiffer, qt.name,
                {qt.dll.version.toString(), m_reference->dll.version.toString(),
                 m_reference->name});
        }
    }

    /// Returns what a file of Qt should be replaced with.
    QString sameFile() const
    {
        const bool known = m_reference && !m_reference->dll.version.isNull();
        return QStringLiteral("the same file of Qt %1 for %2")
            .arg(known ? m_reference->dll.version.toString() : QStringLiteral("5.15"))
            .arg(m_family == CompilerFamily::Unknown ? QStringLiteral("64-bit x86")
                                                     : familyName(m_family));
    }

    void checkPlatform()
    {
        QString name = QStringLiteral("platforms/qwindows.dll");
        // Qt has looked there, too, since 5.14.
        const QString otherName = QStringLiteral("plugins/") + name;
        if (!exists(name) && exists(otherName) && m_reference
            && m_reference->dll.version >= QVersionNumber(5, 14))
            name = otherName;
        if (!exists(name)) {
            if (!exists(QStringLiteral("qt.conf")))
                add(FindingKind::PlatformMissing, name, {sameFile()});
            return;
        }
        const Dll dll = read(name, readDll);
        if (!dll.defect.isEmpty()) {
            add(FindingKind::DllUnusable, name, {dll.defect, sameFile()});
        } else if (m_family != CompilerFamily::Unknown && dll.qtImports != CompilerFamily::Unknown
                   && dll.qtImports != m_family) {
            add(FindingKind::QtFamily, name,
                {familyName(dll.qtImports), familyName(m_family), m_evidence, sameFile()});
        }
    }

    void checkVersion(const QtDll &qt)
    {
        const QVersionNumber &version = qt.dll.version;
        if (version.isNull())
            add(FindingKind::QtVersionUnknown, qt.name);
        else if (version < QVersionNumber(5, 6) || version >= QVersionNumber(5, 16))
            add(FindingKind::QtVersion, qt.name, {version.toString()});
    }

    void checkPlugin()
    {
        const Dll plugin = read(kPlugin, readDll);
        const CompilerFamily family = plugin.qtImports;
        if (!plugin.defect.isEmpty()) {
            add(FindingKind::DllUnusable, kPlugin,
                {plugin.defect,
                 m_family == CompilerFamily::Unknown
                     ? QStringLiteral("an undamaged plug-in")
                     : QStringLiteral("a plug-in that is built for ") + familyName(m_family)});
        } else if (m_family != CompilerFamily::Unknown && family != CompilerFamily::Unknown
                   && family != m_family) {
            add(FindingKind::PluginFamily, kPlugin,
                {familyName(family), familyName(m_family), m_evidence});
        }
    }

    /// MinGW's DLLs may also be elsewhere in the search path. MSVC's usually are in Windows'
    /// folder, which can be checked only on Windows.
    void checkRuntime()
    {
        if (m_family == CompilerFamily::Unknown)
            return;
        if (m_family == CompilerFamily::MinGw) {
            for (const char *const name :
                 {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}) {
                if (!exists(QLatin1String(name))) {
                    add(FindingKind::RuntimeMissing, QLatin1String(name),
                        {QStringLiteral("copy it from Qt's folder bin, which contains the DLLs of "
                                        "the compiler that Qt was built with")});
                }
            }
            return;
        }
        const QLatin1String name("vcruntime140.dll");
        const QString system = systemFolder();
        if (!system.isEmpty() && !exists(name)
            && !QFileInfo::exists(system + QLatin1Char('/') + name)) {
            add(FindingKind::RuntimeMissing, name,
                {QStringLiteral("install Microsoft's Visual C++ redistributable")});
        }
    }

    QString path(const QString &name) const
    {
        return m_report.applicationDir + QLatin1Char('/') + name;
    }

    bool exists(const QString &name) const { return QFileInfo::exists(path(name)); }

    void add(FindingKind kind, const QString &name, const QStringList &values = {})
    {
        const Finding &finding = m_report.addFile(kind, path(name), values);
        m_report.hostFails = m_report.hostFails || finding.severity == Finding::Error
            || kind == FindingKind::PlatformMissing || kind == FindingKind::RuntimeMissing;
    }

    Report &m_report;
    QVector<QtDll> m_qt;                               ///< Those that exist, Qt5Core.dll first.
    CompilerFamily m_family = CompilerFamily::Unknown; ///< The host's.
    QString m_evidence;                                ///< The file that shows the family.
    std::optional<QtDll> m_reference; ///< The DLL of Qt whose version the others must have.
};

} // namespace

void checkHost(Report &report)
{
    if (QFileInfo::exists(report.applicationDir + QLatin1Char('/') + kQtCore))
        HostCheck(report).check();
}
