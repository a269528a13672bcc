#pragma once

#include "plugin/IZendelMgr.h"

#include <QLibrary>
#include <QString>

#include <memory>

/// The plug-in's library and the one manager that this host gets from it.
class Plugin
{
public:
    explicit Plugin(const QString &fileName);
    ~Plugin();
    Q_DISABLE_COPY(Plugin)

    /// Loads the library and finds its functions; on failure returns false and errorString()
    /// names the file and the reason. Needs no application object.
    bool load();
    QString errorString() const { return m_errorString; }

    /// The manager, created on first use. To be called after a successful load().
    IZendelMgr &manager();

private:
    bool fail(const QString &reason);

    QLibrary m_library;
    QString m_errorString;
    NewInterfaceFunction m_newInterface = nullptr;
    ReleaseInterfaceFunction m_releaseInterface = nullptr;
    std::unique_ptr<IZendelMgr, ReleaseInterfaceFunction> m_manager {nullptr, nullptr};
};
