#pragma once

#include "plugin/IZendelMgr.h" // HWND

#include <QPoint>
#include <QRect>

#include <memory>

/// A visible top-level window that, like a host's main window, is created with the platform's own
/// functions and without Qt.
class NativeWindow
{
public:
    /// @p geometry includes the frame.
    explicit NativeWindow(const QRect &geometry);
    ~NativeWindow();

    HWND handle() const;

    /// Returns where the window is now, because a window manager may have moved it.
    QRect geometry() const;

    /// Destroys the window; its handle becomes invalid.
    void destroy();

    /// Moves the mouse to a position on the screen and clicks the left button.
    static void click(const QPoint &position);

    /// Presses and releases a key in whichever window has the focus.
    static void typeKey();

    /// Returns how often the button was pressed in this window since the last call. First waits
    /// until the window system has processed all earlier requests.
    int takeClicks();

    /// Does the same for all input: mouse movements, buttons and keys.
    int takeInput();

    /// Returns true if the window receives the keyboard input.
    bool hasFocus() const;

    /// Returns true if no other window covers this one at a position on the screen.
    bool isOnTop(const QPoint &position) const;

    /// Waits until the window system has processed all of Qt's requests, and Qt all replies,
    /// including late errors.
    static void synchronizeQt();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
