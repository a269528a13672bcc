#pragma once

#include "examples/host/LanguageFile.h"
#include "plugin/IHostMachine.h"

#include <QObject>

/// The machine, in place of a real one. All it can do is switch its display language, which it
/// keeps in the language catalogue.
class Machine : public QObject, public IHostMachine
{
    Q_OBJECT

public:
    explicit Machine(const QString &catalogue, QObject *parent = nullptr);

    void NotifySettingChanged() override;
    bool SetLanguage(std::uint8_t langId) override;

    /// Name and number of the display language, for the operator. Read from the catalogue.
    QString displayLanguage();

    /// Whether the machine refuses to switch languages from now on.
    void setRefusing(bool refusing) { m_refusing = refusing; }

Q_SIGNALS:
    /// A call has arrived, or something went wrong.
    void logged(const QString &line);
    /// The machine has begun or ended to switch its language.
    void switching(bool active);
    /// The display language is another one now.
    void languageChanged();

private:
    LanguageFile m_languages;
    bool m_refusing = false;
};
