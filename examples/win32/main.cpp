// A host with a native window and its own message loop, which loads the plug-in with LoadLibrary.
// Qt is there for the plug-in only.

#include <Zendel/IHostMachine.h>
#include <Zendel/IZendelMgr.h>

#include "LanguageFile.h"

#include <QApplication>
#include <QDir>

#include <windows.h>

#include <cstdio>

namespace {

// The host's side: what the operator may do to the machine.
class Machine : public IHostMachine
{
public:
    bool SetLanguage(std::uint8_t langId) override
    {
        std::printf("SetLanguage(%d)\n", langId);
        // Here the host switches the machine. Then it stores the language for the next Init(); if
        // that fails, it switches back.
        const bool ok = m_languages.setDefaultLanguage(langId);
        if (!ok)
            std::fprintf(stderr, "%s\n", qPrintable(m_languages.errorString()));
        return ok;
    }

    void NotifySettingChanged() override
    {
        std::printf("NotifySettingChanged\n");
        languageChanged = true;
    }

    bool languageChanged = false;

private:
    LanguageFile m_languages {QCoreApplication::applicationDirPath() + "/Lang/Lang.ini"};
};

Machine *machine;
IZendelMgr *mgr;

void init()
{
    std::printf("Init: %d\n", mgr->Init(machine));
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND: // From the window's only button
        machine->languageChanged = false;
        std::printf("ShowSettingsDlg: %d\n", mgr->ShowSettingsDlg(window));
        if (machine->languageChanged)
            init(); // Switches the plug-in to the new language, too.
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND createMainWindow()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"MachineControl";
    RegisterClassW(&windowClass);
    const HWND window = CreateWindowW(
        windowClass.lpszClassName, L"Machine control", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
        CW_USEDEFAULT, CW_USEDEFAULT, 900, 600, nullptr, nullptr, windowClass.hInstance, nullptr);
    CreateWindowW(L"BUTTON", L"Settings", WS_CHILD | WS_VISIBLE, 20, 20, 120, 32, window, nullptr,
                  windowClass.hInstance, nullptr);
    return window;
}

// Via void *, because compilers warn about casts from one type of function to another.
template<typename Function>
Function resolve(HMODULE library, const char *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(library, name)));
}

int fail(const QString &file)
{
    const DWORD error = GetLastError();
    std::fprintf(stderr, "Can't load %s: error %lu\n", qPrintable(file), error);
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv); // Its exec() is never called.
    static Machine theMachine;
    machine = &theMachine;

    const QString file =
        QDir::toNativeSeparators(QCoreApplication::applicationDirPath() + "/Zendel.dll");
    const HMODULE library = LoadLibraryW(reinterpret_cast<const wchar_t *>(file.utf16()));
    if (!library)
        return fail(file);
    const auto newInterface = resolve<NewInterfaceFunction>(library, "NewInterface");
    const auto releaseInterface = resolve<ReleaseInterfaceFunction>(library, "ReleaseInterface");
    if (!newInterface || !releaseInterface)
        return fail(file);

    mgr = newInterface();
    const HWND window = createMainWindow();
    init();

    // While a dialog is open, Qt's loop runs instead of this one. If the window is destroyed then,
    // Qt's loop takes WM_QUIT, and GetMessage would wait forever.
    MSG message;
    while (IsWindow(window) && GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }

    releaseInterface(mgr);
    FreeLibrary(library);
    return 0;
}
