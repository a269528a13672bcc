// The stack protector's cookie, with the names that the compiler uses for this target.
#include <windows.h>

#include <intrin.h>

static const UINT_PTR unset = 0x00002b992ddfa232;
UINT_PTR __security_cookie = 0x00002b992ddfa232;

__attribute__((no_stack_protector)) void __security_init_cookie(void)
{
    FILETIME time;
    LARGE_INTEGER counter;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&counter);
    UINT_PTR cookie = ((UINT_PTR)time.dwHighDateTime << 32 ^ time.dwLowDateTime)
        ^ (UINT_PTR)counter.QuadPart << 16 ^ (UINT_PTR)GetCurrentThreadId() << 32
        ^ GetCurrentProcessId() ^ (UINT_PTR)&cookie;
    // The highest 16 bits stay 0: a string that runs over the buffer ends before them.
    cookie &= 0x0000ffffffffffff;
    __security_cookie = cookie != unset ? cookie : cookie + 1;
}

__attribute__((no_stack_protector)) void __security_check_cookie(UINT_PTR cookie)
{
    if (cookie != __security_cookie)
        __fastfail(2); // FAST_FAIL_STACK_COOKIE_CHECK_FAILURE
}
