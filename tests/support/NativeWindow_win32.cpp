#include "support/NativeWindow.h"

#include <QCoreApplication>

#include <utility>

#include <windows.h>

namespace {

const wchar_t className[] = L"ZendelTestsNativeWindow";

/// Processes all pending messages.
void processMessages()
{
    // A message may cause another one.
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

} // namespace

struct NativeWindow::Private
{
    HWND window = nullptr;
    int clicks = 0;
    int otherInput = 0;

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_NCCREATE) {
            const auto *const create = reinterpret_cast<const CREATESTRUCTW *>(lParam);
            SetWindowLongPtrW(window, GWLP_USERDATA,
                              reinterpret_cast<LONG_PTR>(create->lpCreateParams));
        }
        auto *const self = reinterpret_cast<Private *>(GetWindowLongPtrW(window, GWLP_USERDATA));
        switch (message) {
        case WM_LBUTTONDOWN:
            ++self->clicks;
            break;
        case WM_MOUSEMOVE:
        case WM_RBUTTONDOWN:
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            ++self->otherInput;
            break;
        default:
            break;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
};

NativeWindow::NativeWindow(const QRect &geometry)
    : d(std::make_unique<Private>())
{
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = &Private::procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = GetSysColorBrush(COLOR_APPWORKSPACE);
    RegisterClassExW(&windowClass); // Fails harmlessly after the first time.

    d->window = CreateWindowExW(0, className, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                geometry.x(), geometry.y(), geometry.width(), geometry.height(),
                                nullptr, nullptr, windowClass.hInstance, d.get());
    processMessages();
}

NativeWindow::~NativeWindow()
{
    destroy();
}

HWND NativeWindow::handle() const
{
    return d->window;
}

QRect NativeWindow::geometry() const
{
    RECT rect = {};
    GetWindowRect(d->window, &rect);
    return {QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1)};
}

void NativeWindow::destroy()
{
    DestroyWindow(d->window); // Fails harmlessly the second time.
    processMessages();
}

void NativeWindow::click(const QPoint &position)
{
    SetCursorPos(position.x(), position.y());
    INPUT inputs[2] = {};
    inputs[0].type = inputs[1].type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(2, inputs, sizeof(INPUT));
    processMessages();
}

void NativeWindow::typeKey()
{
    INPUT inputs[2] = {};
    inputs[0].type = inputs[1].type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = inputs[1].ki.wVk = 'A';
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof(INPUT));
    processMessages();
}

int NativeWindow::takeClicks()
{
    processMessages();
    return std::exchange(d->clicks, 0);
}

int NativeWindow::takeInput()
{
    return takeClicks() + std::exchange(d->otherInput, 0);
}

bool NativeWindow::hasFocus() const
{
    return GetForegroundWindow() == d->window;
}

bool NativeWindow::isOnTop(const QPoint &position) const
{
    return WindowFromPoint({position.x(), position.y()}) == d->window;
}

void NativeWindow::synchronizeQt()
{
    processMessages();
}
