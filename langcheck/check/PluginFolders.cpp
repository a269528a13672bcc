#include "langcheck/check/PluginFolders.h"

#include "langcheck/check/HostFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

const qint64 kLargestConf = 0x10000;

bool isAbsoluteOnWindows(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) || path.mid(1, 1) == QLatin1String(":");
}

/// A file without these groups counts as one with an empty group Paths.
bool setsPaths(const QSettings &conf)
{
    const QStringList groups = conf.childGroups();
    const auto has = [&groups](const char *name) {
        return groups.contains(QString::fromLatin1(name));
    };
    return has("Paths") || !(has("DevicePaths") || has("EffectivePaths") || has("Platforms"));
}

} // namespace

QStringList PluginFolders::find(const HostFolder &host, const QString &name) const
{
    QStringList found;
    for (const QString &path : paths) {
        QString file = path + QLatin1Char('/') + name;
        if (!QFileInfo::exists(file)) // Perhaps in another case
            file = host.find(QDir(host.path()).relativeFilePath(file));
        if (!file.isEmpty() && !found.contains(file))
            found += file;
    }
    return found;
}

PluginFolders pluginFolders(const HostFolder &host, const QVersionNumber &qtVersion)
{
    PluginFolders result;
    QString prefix(QLatin1Char('.'));
    QString plugins = QStringLiteral("plugins");
    const QFileInfo file(host.find(QStringLiteral("qt.conf")));
    if (file.isFile() && file.size() <= kLargestConf) {
        const QSettings conf(file.filePath(), QSettings::IniFormat); // As Qt reads it
        if (setsPaths(conf)) {
            result.conf = file.filePath();
            prefix = conf.value(QStringLiteral("Paths/Prefix"), prefix).toString();
            plugins = conf.value(QStringLiteral("Paths/Plugins"), plugins).toString();
        }
    }

    // Without qt.conf, older versions look in the folder for which Qt was built. Later ones look
    // above the executable's folder if that is bin in a kit, which has import libraries.
    if (!result.conf.isEmpty() || qtVersion >= QVersionNumber(5, 14)) {
        if (result.conf.isEmpty()
            && (host.contains(QStringLiteral("../lib/Qt5Core.lib"))
                || host.contains(QStringLiteral("../lib/libQt5Core.a"))))
            prefix = QStringLiteral("..");
        QString path = host.path();
        for (QString part : {prefix, plugins}) {
            part.replace(QLatin1Char('\\'), QLatin1Char('/'));
            const bool isAbsolute = part.isEmpty() || isAbsoluteOnWindows(part);
            // Environment variables, and drives of another computer
            if (part.contains(QLatin1String("$(")) || (isAbsolute && !host.hasSystemFolder()))
                result.isComplete = false;
            path = isAbsolute ? part : path + QLatin1Char('/') + part;
        }
        if (result.isComplete && !plugins.isEmpty())
            result.paths += QDir::cleanPath(path);
    }
    result.paths += host.path();
    return result;
}
