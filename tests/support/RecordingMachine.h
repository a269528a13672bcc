#pragma once

#include "plugin/IHostMachine.h"

#include <QStringList>

#include <functional>
#include <utility>

/// A host's machine that records the plug-in's calls.
class RecordingMachine : public IHostMachine
{
public:
    explicit RecordingMachine(QString name = QString())
        : m_name(std::move(name))
    {
    }
    virtual ~RecordingMachine() = default;

    void NotifySettingChanged() override
    {
        calls += m_name + QStringLiteral("NotifySettingChanged");
        if (onNotify)
            onNotify();
    }

    bool SetLanguage(std::uint8_t langId) override
    {
        calls += m_name + QStringLiteral("SetLanguage(%1)").arg(langId);
        if (onSetLanguage)
            onSetLanguage();
        return accepts;
    }

    QStringList takeCalls() { return std::exchange(calls, {}); }

    bool accepts = true;
    QStringList calls;
    std::function<void()> onSetLanguage;
    std::function<void()> onNotify;

private:
    const QString m_name;
};
