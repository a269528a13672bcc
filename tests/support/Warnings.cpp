#include "support/Warnings.h"

#include <QtGlobal>

#include <utility>

namespace {

QtMessageHandler previous = nullptr;
QStringList warnings;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        warnings += message;
    else
        previous(type, context, message);
}

} // namespace

Warnings::Warnings()
{
    previous = qInstallMessageHandler(collect);
}

Warnings::~Warnings()
{
    qInstallMessageHandler(previous);
}

QStringList Warnings::take()
{
    return std::exchange(warnings, {});
}

QString Warnings::unconnectedSlot()
{
    return QStringLiteral("QMetaObject::connectSlotsByName: No matching signal for "
                          "on_comboBo_lang_activated(int)");
}
