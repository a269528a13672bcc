// misbehave crash|hang|fail|failcrash|pass|peek|alone: what the self-test must survive and report.
// "hang" starts a further process, "alone" fails if that is still running, and "peek" copies the
// report of this moment.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <windows.h>

namespace {

/// Opens a file so that nobody else can open it meanwhile.
HANDLE openAlone()
{
    return CreateFileA("alone.txt", GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
}

/// Returns true if the file can be opened. Tries for some seconds, because a process that was ended
/// keeps its files for a moment.
bool isAlone()
{
    for (int i = 0; i < 100; ++i) {
        if (openAlone() != INVALID_HANDLE_VALUE)
            return true;
        Sleep(50);
    }
    return false;
}

/// Starts a process that keeps the file open, and waits until it does.
bool startFurtherProcess()
{
    char command[] = "tests\\misbehave.exe hold";
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return false;
    for (HANDLE file = openAlone(); file != INVALID_HANDLE_VALUE; file = openAlone()) {
        CloseHandle(file);
        Sleep(10);
    }
    return true;
}

} // namespace

int main(int /*argc*/, char *argv[])
{
    std::puts("PASS   : misbehave::first()");
    std::fflush(stdout);
    if (std::strcmp(argv[1], "crash") == 0) // As Windows ends it. Wine would start its debugger.
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
    if (std::strcmp(argv[1], "hold") == 0)
        openAlone();
    if (std::strcmp(argv[1], "hang") == 0 && !startFurtherProcess())
        return 1;
    if (std::strcmp(argv[1], "hang") == 0 || std::strcmp(argv[1], "hold") == 0)
        Sleep(INFINITE);
    if (std::strcmp(argv[1], "alone") == 0)
        return isAlone() ? 0 : 1;
    if (std::strcmp(argv[1], "peek") == 0) {
        return CopyFileA("report.txt", "peek.txt", FALSE)
                && CopyFileA("report.xml", "peek.xml", FALSE)
            ? 0
            : 1;
    }
    if (std::strncmp(argv[1], "fail", 4) != 0)
        return std::puts("SKIP   : misbehave::third() Not here") < 0 ? 1 : 0;
    std::puts("FAIL!  : misbehave::second(a < b) 'x & y' returned FALSE. (\xE4\xB8\xAD\x01)\n"
              "   Loc: [misbehave.cpp(1)]");
    std::fflush(stdout);
    if (std::strcmp(argv[1], "failcrash") == 0)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
    return 1;
}
