#pragma once

#include "plugin/WindowManager.h"

#include <QStringList>

#include <functional>

/// Takes the place of the platform's window manager at link time and writes the calls down, with
/// the name of the window that a handle stands for.
namespace RecordingWindowManager {

/// Forgets everything below.
void reset();

/// The calls since the last call of this, in order; other recorders may add to it.
QStringList takeCalls();
void addCall(const QString &call);

/// Handles are written as this name where they are known, otherwise as numbers.
void setName(HWND window, const QString &name);

/// What windowRect() gives, for any window.
extern WindowManager::Rect rect;

/// Sets what is called after each call was written down, with its text.
void setOnCall(std::function<void(const QString &)> function);

} // namespace RecordingWindowManager
