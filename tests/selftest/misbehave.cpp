// misbehave crash|hang|fail|pass: what the self-test must survive and report.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <windows.h>

int main(int /*argc*/, char *argv[])
{
    std::puts("PASS   : misbehave::first()");
    std::fflush(stdout);
    if (std::strcmp(argv[1], "crash") == 0) // As Windows ends it. Wine would start its debugger.
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
    if (std::strcmp(argv[1], "hang") == 0)
        Sleep(INFINITE);
    if (std::strcmp(argv[1], "fail") != 0)
        return std::puts("SKIP   : misbehave::third() Not here") < 0 ? 1 : 0;
    std::puts("FAIL!  : misbehave::second(a < b) 'x & y' returned FALSE. (\xE4\xB8\xAD\x01)\n"
              "   Loc: [misbehave.cpp(1)]");
    return 1;
}
