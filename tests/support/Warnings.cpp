#include "support/Warnings.h"

#include <utility>

namespace {

QtMessageHandler qtTestHandler = nullptr;
QStringList warnings;

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        warnings += message;
    else
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
