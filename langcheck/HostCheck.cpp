#include "langcheck/HostCheck.h"

#include "lang/OpenFile.h"
#include "langcheck/Dll.h"

#include <QFile>
#include <QFileInfo>

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
    const QString windows = qEnvironmentVariable("SystemRoot");
    return windows.isEmpty() ? QString() : windows + QLatin1String("/System32");
}

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
        const Dll qt = readUsable(kQtCore);
        m_report.hostQt = HostQt {qt.version.toString(), familyName(qt.exports)};
        if (qt.defect.isEmpty()) {
            checkVersion(qt.version);
            checkRuntime(qt.exports);
        }
        if (exists(kPlugin))
            checkPlugin(qt.exports);
        if (!exists(QStringLiteral("platforms/qwindows.dll")) && !exists(QStringLiteral("qt.conf")))
            add(FindingKind::PlatformMissing, QStringLiteral("platforms/qwindows.dll"));
    }

private:
    /// Reads a DLL and reports it if it can't be used.
    Dll readUsable(const QString &name)
    {
        QFile file(path(name));
        Dll dll;
        if (openForReading(file))
            dll = readDll(file);
        else
            dll.defect = QStringLiteral("it cannot be opened");
        if (dll.defect.isEmpty() && name == kQtCore && dll.exports == CompilerFamily::Unknown)
            dll.defect = QStringLiteral("it exports no C++ functions");
        if (!dll.defect.isEmpty())
            add(FindingKind::DllUnusable, name, {dll.defect});
        return dll;
    }

    void checkVersion(const QVersionNumber &version)
    {
        const QVersionNumber own(QT_VERSION_MAJOR, QT_VERSION_MINOR, QT_VERSION_PATCH);
        if (version.isNull())
            add(FindingKind::QtVersionUnknown, kQtCore);
        else if (!QVersionNumber(5, 15).isPrefixOf(version))
            add(FindingKind::QtVersion, kQtCore, {version.toString()});
        else if (version < own)
            add(FindingKind::QtOlder, kQtCore, {version.toString(), own.toString()});
    }

    void checkPlugin(CompilerFamily host)
    {
        const CompilerFamily plugin = readUsable(kPlugin).qtImports;
        if (host == CompilerFamily::Unknown || plugin == CompilerFamily::Unknown || plugin == host)
            return;
        add(FindingKind::PluginFamily, kPlugin, {familyName(plugin), familyName(host)});
    }

    /// MinGW's DLLs may also be elsewhere in the search path. MSVC's usually are in Windows'
    /// folder, which can be checked only on Windows.
    void checkRuntime(CompilerFamily family)
    {
        if (family == CompilerFamily::MinGw) {
            for (const char *const name :
                 {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}) {
                if (!exists(QLatin1String(name))) {
                    add(FindingKind::RuntimeMissing, QLatin1String(name),
                        {QStringLiteral("copy it from the compiler that Qt was built with")});
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
        m_report.addFile(kind, path(name), values);
    }

    Report &m_report;
};

} // namespace

void checkHost(Report &report)
{
    if (QFileInfo::exists(report.applicationDir + QLatin1Char('/') + kQtCore))
        HostCheck(report).check();
}
