#include "support/Warnings.h"

#include <utility>

namespace {

QtMessageHandler qtTestHandler = nullptr;
QStringList warnings;

/// Wine has no icons for message boxes, and the offscreen platform lacks most window functions. Qt
/// warns each time.
bool isOfPlatform(const QString &message)
{
    return message.startsWith(QLatin1String("QPixmap::fromWinHICON()"))
        || message.startsWith(QLatin1String("This plugin does not support "));
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool isWarning = type == QtWarningMsg || type == QtCriticalMsg;
    if (isWarning && !isOfPlatform(message))
        warnings += message;
    else if (!isWarning)
        qtTestHandler(type, context, message);
}

} // namespace

namespace Warnings {

void collect()
{
    warnings.clear();
    qtTestHandler = qInstallMessageHandler(handle);
}

QStringList take()
{
    return std::exchange(warnings, {});
}

QString unconnectedSlot()
{
    return QStringLiteral("QMetaObject::connectSlotsByName: No matching signal for "
                          "on_comboBo_lang_activated(int)");
}

} // namespace Warnings
