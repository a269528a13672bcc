#include "examples/host/Machine.h"

#include <QEventLoop>
#include <QTimer>

namespace {

/// Long enough for the operator to see the wait cursor.
constexpr int switchingTimeMs = 400;

} // namespace

Machine::Machine(const QString &catalogue, QObject *parent)
    : QObject(parent)
    , m_languages(catalogue)
{
}

void Machine::NotifySettingChanged()
{
    Q_EMIT logged(QStringLiteral("NotifySettingChanged"));
}

bool Machine::SetLanguage(std::uint8_t langId)
{
    Q_EMIT switching(true);
    // An event loop, so that the windows are painted. The operator still has to wait.
    QEventLoop loop;
    QTimer::singleShot(switchingTimeMs, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    Q_EMIT switching(false);

    bool accepted = false;
    if (!m_refusing) {
        accepted = m_languages.setDefaultLanguage(langId);
        if (!accepted)
            Q_EMIT logged(m_languages.errorString());
    }
    Q_EMIT logged(QStringLiteral("SetLanguage(%1) -> %2")
                      .arg(langId)
                      .arg(accepted ? QStringLiteral("accepted") : QStringLiteral("refused")));
    if (accepted)
        Q_EMIT languageChanged();
    return accepted;
}

QString Machine::displayLanguage()
{
    if (!m_languages.read()) {
        Q_EMIT logged(m_languages.errorString());
        return QStringLiteral("Unknown");
    }
    const int number = m_languages.defaultLanguage();
    const QString name = m_languages.languageName(number);
    return (name.isEmpty() ? QStringLiteral("Unknown") : name)
        + QStringLiteral(" (%1)").arg(number);
}
