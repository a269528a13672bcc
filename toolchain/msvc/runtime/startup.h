// Start-up functions that programs and DLLs share. The names are those of Microsoft's run-time
// library, which calls and exports them.
#pragma once

// The DLLs with the rest of the run-time library
#pragma comment(lib, "vcruntime")
#pragma comment(lib, "ucrt")
#pragma comment(lib, "kernel32")
#pragma comment(lib, "uuid")

typedef void (*Initializer)(void);
typedef int (*FallibleInitializer)(void);

/// Fills the security cookie. Must run before any function that checks it.
void __security_init_cookie(void);

/// Runs this module's initializers, which the compiler put between the markers of the sections
/// .CRT$X: those of the run-time library in C, those of static objects in C++. Returns 0 if one
/// failed.
int run_initializers(void);

/// Prepares a program of this type, 1 with and 2 without a console, for main(). Ends the process on
/// failure.
void start_program(int type);

/// Makes atexit() keep functions until run_atexit_functions(), as a DLL needs, instead of until the
/// process ends. Returns 0 if there is not enough memory.
int keep_atexit_functions(void);
void run_atexit_functions(void);
