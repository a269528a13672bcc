#include "examples/host/Plugin.h"

#include <QDir>
#include <QFileInfo>

// The path is absolute because a bare file name would be searched for in the system's folders.
Plugin::Plugin(const QString &fileName)
    : m_library(QFileInfo(fileName).absoluteFilePath())
{
}

Plugin::~Plugin()
{
    m_manager.reset(); // Its code goes with the library.
    m_library.unload();
}

bool Plugin::load()
{
    // Asked first because the library would look for similar names then, and report the last.
    if (!QFileInfo::exists(m_library.fileName()))
        return fail(QStringLiteral("There is no such file"));
    if (!m_library.load())
        return fail(m_library.errorString());

    m_newInterface = reinterpret_cast<NewInterfaceFunction>(m_library.resolve("NewInterface"));
    if (!m_newInterface)
        return fail(QStringLiteral("It has no function NewInterface"));

    m_releaseInterface =
        reinterpret_cast<ReleaseInterfaceFunction>(m_library.resolve("ReleaseInterface"));
    if (!m_releaseInterface)
        return fail(QStringLiteral("It has no function ReleaseInterface"));
    return true;
}

IZendelMgr &Plugin::manager()
{
    if (!m_manager)
        m_manager = {m_newInterface(), m_releaseInterface};
    return *m_manager;
}

bool Plugin::fail(const QString &reason)
{
    m_errorString = QStringLiteral("Cannot use the plug-in %1: %2")
                        .arg(QDir::toNativeSeparators(m_library.fileName()), reason);
    return false;
}
