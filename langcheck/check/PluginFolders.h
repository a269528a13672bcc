#pragma once

#include <QStringList>
#include <QVersionNumber>

class HostFolder;

/// Where the host's Qt looks for its plug-ins.
struct PluginFolders
{
    QStringList paths;      ///< Absolute, in Qt's order.
    QString conf;           ///< The file qt.conf that sets the first one; empty without one.
    bool isComplete = true; ///< False if there is a folder that can only be known on the machine.

    /// Returns the paths of an existing file in these folders.
    QStringList find(const HostFolder &host, const QString &name) const;
};

/// Finds the folders by the rules of Qt 5: that of qt.conf, or since 5.14 the folder plugins, and
/// then the executable's.
PluginFolders pluginFolders(const HostFolder &host, const QVersionNumber &qtVersion);
