#pragma once

#include "plugin/IZendelMgr.h"

#include <QLibrary>

/// The plug-in, loaded by file name as a host does it. A failure makes the test fail.
class Plugin
{
public:
    explicit Plugin(const QString &fileName);

    void load();

    /// Unloads the plug-in. All managers must have been released.
    void unload();

    bool isLoaded() const { return m_library.isLoaded(); }
    QString fileName() const { return m_library.fileName(); }

    IZendelMgr *newInterface() const { return m_newInterface(); }
    void releaseInterface(IZendelMgr *mgr) const { m_releaseInterface(mgr); }

private:
    QLibrary m_library;
    NewInterfaceFunction m_newInterface = nullptr;
    ReleaseInterfaceFunction m_releaseInterface = nullptr;
};
