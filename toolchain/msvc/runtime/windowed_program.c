// The entry point of a program without a console.
#include "startup.h"

#include <windows.h>

#include <stdlib.h>

// From the Universal C run-time library
char *_get_narrow_winmain_command_line(void);

__attribute__((no_stack_protector)) // The cookie changes while it runs.
int WinMainCRTStartup(void)
{
    start_program(2);
    exit(WinMain(GetModuleHandleW(NULL), NULL, _get_narrow_winmain_command_line(), SW_SHOWDEFAULT));
}
