#pragma once

#include "langcheck/check/Dll.h"

#include <QString>
#include <QStringList>

#include <map>

/// A file that the host loads, or its program.
struct HostFile
{
    QString name;       ///< As on disk.
    QString path;       ///< Absolute.
    QString unreadable; ///< Why it can't be read; empty if it can.
    Dll dll;

    bool isUsable() const { return unreadable.isEmpty() && dll.defect.isEmpty(); }
};

/// Returns the path of an existing file or folder below @p folder, whatever the case of @p name,
/// which Windows ignores. Empty if there is none.
QString findIgnoringCase(const QString &folder, const QString &name);

/// The folder of a host's executable, where Windows looks for DLLs, and then in its own folder.
class HostFolder
{
public:
    explicit HostFolder(QString path);

    const QString &path() const { return m_path; }
    /// Returns the path of a file in the folder, as findIgnoringCase() does.
    QString find(const QString &name) const { return findIgnoringCase(m_path, name); }
    bool contains(const QString &name) const { return !find(name).isEmpty(); }

    /// Returns the names of the programs, except for langcheck.
    QStringList programs() const;
    HostFile readProgram(const QString &name) const;

    /// Returns the DLL that Windows would load, read only once; null if it is in neither folder.
    const HostFile *dll(const QString &name);
    /// Returns a DLL of the folder, @p name being a path below it, read only once; null if there is
    /// none.
    const HostFile *ownDll(const QString &name) { return read(find(name)); }
    /// Reads a DLL only once. Returns null if @p path is empty.
    const HostFile *read(const QString &path);

    /// Returns whether Windows' own folder is known, which it isn't on other systems.
    bool hasSystemFolder() const { return !m_systemFolder.isEmpty(); }

private:
    QString m_path;
    QString m_systemFolder;
    std::map<QString, HostFile> m_files; ///< By path.
};
