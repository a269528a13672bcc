#include "langcheck/check/HostFolder.h"

#include "lang/OpenFile.h"
#include "langcheck/Texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <algorithm>
#include <utility>

namespace {

HostFile readFile(const QString &path, Dll (*reader)(QIODevice &))
{
    HostFile result;
    result.path = path;
    result.name = QFileInfo(path).fileName();
    QFile file(path);
    if (QFileInfo(path).isDir())
        result.unreadable = QStringLiteral("it is a folder");
    else if (!openForReading(file))
        result.unreadable = QStringLiteral("it can't be opened");
    else
        result.dll = reader(file);
    return result;
}

} // namespace

QString findIgnoringCase(const QString &folder, const QString &name)
{
    QString path = folder;
    const QStringList parts = partsOf(name, QLatin1Char('/'));
    for (const QString &part : parts) {
        const QStringList entries =
            QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
        if (!entries.contains(part)) { // Where case doesn't matter, it may exist all the same.
            const auto it =
                std::find_if(entries.begin(), entries.end(), [&part](const QString &entry) {
                    return entry.compare(part, Qt::CaseInsensitive) == 0;
                });
            if (it == entries.end())
                return {};
            path += QLatin1Char('/') + *it;
        } else {
            path += QLatin1Char('/') + part;
        }
    }
    return path;
}

HostFolder::HostFolder(QString path)
    : m_path(std::move(path))
{
    const QString windows =
        QProcessEnvironment::systemEnvironment().value(QStringLiteral("SystemRoot"));
    if (!windows.isEmpty())
        m_systemFolder = QDir(windows + QLatin1String("/System32")).absolutePath();
}

QStringList HostFolder::programs() const
{
    QStringList names = QDir(m_path).entryList({QStringLiteral("*.exe")}, QDir::Files);
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &name) {
                                   return name.compare(QLatin1String("langcheck.exe"),
                                                       Qt::CaseInsensitive)
                                       == 0;
                               }),
                names.end());
    return names;
}

HostFile HostFolder::readProgram(const QString &name) const
{
    return readFile(m_path + QLatin1Char('/') + name, ::readProgram);
}

const HostFile *HostFolder::dll(const QString &name)
{
    QString file = find(name);
    if (file.isEmpty() && hasSystemFolder())
        file = findIgnoringCase(m_systemFolder, name);
    return read(file);
}

const HostFile *HostFolder::read(const QString &path)
{
    if (path.isEmpty())
        return nullptr;
    auto it = m_files.find(path);
    if (it == m_files.end())
        it = m_files.emplace(path, readFile(path, readDll)).first;
    return &it->second;
}
