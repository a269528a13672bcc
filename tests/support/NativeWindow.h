#pragma once

#include "plugin/IZendelMgr.h" // HWND

#include <QPoint>
#include <QRect>

#include <functional>
#include <memory>

/// A top-level window made with the platform's own calls and no Qt, as a host's main window is.
/// It is on the screen from construction on.
class NativeWindow
{
public:
    /// @p geometry is that of the outer frame.
    explicit NativeWindow(const QRect &geometry);
    ~NativeWindow();

    HWND handle() const;

    /// Destroys the window; the handle is no window any more.
    void destroy();

    /// Presses and releases the left mouse button at a place of the screen, as a hand would.
    static void click(const QPoint &position);

    /// Presses and releases a key, wherever the keyboard goes.
    static void typeKey();

    /// How often the button was pressed in this window since the last call. Waits until the
    /// window system has dealt with all that was done before.
    int takeClicks();

    /// The same for all input: movements, buttons and keys.
    int takeInput();

    /// Whether the window gets the keyboard.
    bool hasFocus() const;

    /// Returns when the window system has dealt with all that Qt asked of it, and Qt with all
    /// answers, late errors among them.
    static void synchronizeQt();

    /// Called when the window is told that it is disabled or enabled, which X11 never does.
    std::function<void(bool enable)> onEnable;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
