// The entry point of a DLL.
#include "startup.h"

#include <windows.h>

// A DLL without a DllMain() of its own gets this one.
#pragma comment(linker, "/alternatename:DllMain=default_DllMain")
BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void *reserved);
BOOL WINAPI default_DllMain(HINSTANCE instance, DWORD reason, void *reserved)
{
    (void)instance;
    (void)reason;
    (void)reserved;
    return TRUE;
}

__attribute__((no_stack_protector)) // It fills the cookie itself.
BOOL WINAPI
_DllMainCRTStartup(HINSTANCE instance, DWORD reason, void *reserved)
{
    static BOOL initialized = FALSE;
    if (reason == DLL_PROCESS_ATTACH) {
        __security_init_cookie();
        initialized = keep_atexit_functions() && run_initializers();
    }
    if (!initialized)
        return FALSE;

    const BOOL succeeded = DllMain(instance, reason, reserved);
    const BOOL failed = reason == DLL_PROCESS_ATTACH && !succeeded;
    if (failed) // Like Microsoft's library, but only once, even if Windows calls this again
        DllMain(instance, DLL_PROCESS_DETACH, reserved);
    if (failed || reason == DLL_PROCESS_DETACH) {
        run_atexit_functions();
        initialized = FALSE;
    }
    return succeeded;
}
