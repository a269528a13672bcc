#pragma once

#include "examples/host/LanguageFile.h"
#include "plugin/IHostMachine.h"

#include <QObject>

/// A simulated machine. It can only switch its display language, which it stores in the catalogue.
class Machine : public QObject, public IHostMachine
{
    Q_OBJECT

public:
    explicit Machine(const QString &catalogue, QObject *parent = nullptr);

    void NotifySettingChanged() override;
    bool SetLanguage(std::uint8_t langId) override;

    /// Reads the catalogue and returns the name and number of the display language.
    QString displayLanguage();
    void setRefusing(bool refusing) { m_refusing = refusing; }

Q_SIGNALS:
    /// Emitted for each call from the plug-in and for each failure.
    void logged(const QString &line);
    void switching(bool active);
    void languageChanged();

private:
    LanguageFile m_languages;
    bool m_refusing = false;
};
