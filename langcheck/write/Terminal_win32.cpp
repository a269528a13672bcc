#include "langcheck/write/Terminal.h"

#include <QString>
#include <QSysInfo>

#include <algorithm>

#include <io.h>
#include <windows.h>

namespace {

/// Returns null if the stream isn't a console.
HANDLE consoleOf(FILE *stream)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

} // namespace

int terminalWidth(FILE *stream)
{
    const HANDLE console = consoleOf(stream);
    if (!console)
        return 0;
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(console, &info))
        return 80;
    // A full line would be followed by an empty one.
    return std::max(1, info.srWindow.Right - info.srWindow.Left);
}

/// Consoles of earlier versions, and Wine's, may accept the mode and yet show the sequences.
bool understandsColours(FILE *stream)
{
    const int windows10 = 10;
    if (QSysInfo::kernelVersion().section(QLatin1Char('.'), 0, 0).toInt() < windows10)
        return false;
    const HANDLE console = consoleOf(stream);
    DWORD mode = 0;
    const DWORD sequences = 4; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, which old headers lack
    return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | sequences);
}

bool printToConsole(FILE *stream, const QString &text)
{
    const HANDLE console = consoleOf(stream);
    if (!console)
        return false;
    const auto *const characters = reinterpret_cast<const wchar_t *>(text.utf16());
    // Old versions of Windows refuse much more than this at once.
    for (int done = 0; done < text.size();) {
        DWORD written = 0;
        const auto most = static_cast<DWORD>(std::min(text.size() - done, 8000));
        if (!WriteConsoleW(console, characters + done, most, &written, nullptr) || written == 0)
            return false;
        done += static_cast<int>(written);
    }
    return true;
}

/// A program that reads the output may start langcheck in the same way, but then the output doesn't
/// go to the console.
bool isStartedByExplorer(int argc, char *argv[])
{
    DWORD process = 0;
    return std::none_of(argv + 1, argv + argc, [](const char *arg) { return arg[0] == '-'; })
        && GetConsoleProcessList(&process, 1) == 1 && consoleOf(stdout);
}

void closeConsole()
{
    FreeConsole();
}
