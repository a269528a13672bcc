#pragma once

#include "plugin/IZendelMgr.h"

#include <QLibrary>
#include <QString>

#include <memory>

/// The plug-in's library and the manager that this host creates with it.
class Plugin
{
public:
    explicit Plugin(const QString &fileName);
    ~Plugin();
    Q_DISABLE_COPY(Plugin)

    /// Loads the library and resolves its functions. Does not need an application object.
    bool load();

    /// Returns the file and the reason for the failure after load() has returned false.
    QString errorString() const { return m_errorString; }

    /// Returns the manager, which is created on first use. Call load() first.
    IZendelMgr &manager();

private:
    bool fail(const QString &reason);

    QLibrary m_library;
    QString m_errorString;
    NewInterfaceFunction m_newInterface = nullptr;
    ReleaseInterfaceFunction m_releaseInterface = nullptr;
    std::unique_ptr<IZendelMgr, ReleaseInterfaceFunction> m_manager {nullptr, nullptr};
};
