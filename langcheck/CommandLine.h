#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A folder to check.
struct CheckedFolder
{
    QString path;   ///< Absolute, without symbolic links.
    QString reason; ///< Why it is this one; empty if it was given.
    QString error;  ///< Why it can't be checked; empty if it can.
};

/// Returns the folder that @p path means: that of the host's executable, even if @p path is the
/// folder Lang in it, or the catalogue.
CheckedFolder folderMeantBy(const QString &path);

/// What langcheck is asked to do.
struct CommandLine
{
    QString error;  ///< Why that can't be done; empty if it can.
    QString output; ///< The help or the version, if one of these is asked for.

    QVector<CheckedFolder> folders; ///< At least one.
    bool json = false;
    QString html;     ///< The file; "-" for the standard output, empty for none.
    QString junit;    ///< As before.
    QString pictures; ///< The folder; empty for none.

    /// Returns true if the standard output is for a page or the like, and not for the report.
    bool outputIsTaken() const;

    static CommandLine parse(const QStringList &arguments);
};
