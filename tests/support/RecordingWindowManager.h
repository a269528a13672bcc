#pragma once

#include "plugin/WindowManager.h"

#include <QStringList>

#include <functional>

/// Replaces the platform's window manager at link time and records the calls, with names for window
/// handles.
namespace RecordingWindowManager {

/// Forgets the calls and all settings below.
void reset();

/// Returns the calls since the last takeCalls(), in order. Tests may add calls of other functions.
QStringList takeCalls();
void addCall(const QString &call);

/// Sets the name by which the calls show a handle. Handles without a name are numbers.
void setName(HWND window, const QString &name);

/// The return value of windowRect() for any window.
extern WindowManager::Rect rect;

/// Sets a function to be called with each call after it has been recorded.
void setOnCall(std::function<void(const QString &)> function);

} // namespace RecordingWindowManager
