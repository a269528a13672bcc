#include "support/RecordingWindowManager.h"

#include <QMap>

#include <utility>

namespace {

QStringList calls;
QMap<HWND, QString> names;
std::function<void(const QString &)> onCall;

QString nameOf(HWND window)
{
    return names.value(window, QString::number(reinterpret_cast<quintptr>(window)));
}

void record(const QString &call)
{
    RecordingWindowManager::addCall(call);
    if (onCall)
        onCall(call);
}

} // namespace

namespace RecordingWindowManager {

WindowManager::Rect rect;

void reset()
{
    calls.clear();
    names.clear();
    rect = {};
    onCall = nullptr;
}

QStringList takeCalls()
{
    return std::exchange(calls, {});
}

void addCall(const QString &call)
{
    calls += call;
}

void setName(HWND window, const QString &name)
{
    names.insert(window, name);
}

void setOnCall(std::function<void(const QString &)> function)
{
    onCall = std::move(function);
}

} // namespace RecordingWindowManager

namespace WindowManager {

void enableWindow(HWND window, bool enable)
{
    record(QStringLiteral("enableWindow(%1, %2)")
               .arg(nameOf(window), enable ? QStringLiteral("true") : QStringLiteral("false")));
}

Rect windowRect(HWND window)
{
    record(QStringLiteral("windowRect(%1)").arg(nameOf(window)));
    return RecordingWindowManager::rect;
}

void setForegroundWindow(HWND window)
{
    record(QStringLiteral("setForegroundWindow(%1)").arg(nameOf(window)));
}

void bringWindowToTop(HWND window)
{
    record(QStringLiteral("bringWindowToTop(%1)").arg(nameOf(window)));
}

} // namespace WindowManager
