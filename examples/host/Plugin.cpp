#include "examples/host/Plugin.h"

#include <QDir>
#include <QFileInfo>

// The path is absolute because the system would search its own folders for a bare file name.
Plugin::Plugin(const QString &fileName)
    : m_library(QFileInfo(fileName).absoluteFilePath())
{
}

Plugin::~Plugin()
{
    m_manager.reset(); // While its code is still loaded.
    m_library.unload();
}

bool Plugin::load()
{
    // Checked first, because QLibrary would try similar names and report the last one.
    if (!QFileInfo::exists(m_library.fileName()))
        return fail(QStringLiteral("the file doesn't exist"));
    if (!m_library.load())
        return fail(m_library.errorString());

    m_newInterface = reinterpret_cast<NewInterfaceFunction>(m_library.resolve("NewInterface"));
    if (!m_newInterface)
        return fail(QStringLiteral("it doesn't export NewInterface"));

    m_releaseInterface =
        reinterpret_cast<ReleaseInterfaceFunction>(m_library.resolve("ReleaseInterface"));
    if (!m_releaseInterface)
        return fail(QStringLiteral("it doesn't export ReleaseInterface"));
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
    m_errorString = QStringLiteral("Can't use the plug-in ")
        + QDir::toNativeSeparators(m_library.fileName()) + QStringLiteral(": ") + reason;
    return false;
}
