// What the starts of programs and of DLLs share. The names are those of Microsoft's run-time
// library, which calls and exports them.
#pragma once

// Where the rest of the run-time library is.
#pragma comment(lib, "vcruntime")
#pragma comment(lib, "ucrt")
#pragma comment(lib, "kernel32")
#pragma comment(lib, "uuid")

typedef void (*Initializer)(void);
typedef int (*FallibleInitializer)(void);

/// Fills the security cookie. Must run before any function that checks it.
void __security_init_cookie(void);

/// Runs the initializers of this module that the compiler has left between the markers of the
/// sections .CRT$X; in C these are those of the run-time library, in C++ those of static objects.
/// Returns 0 if one has failed.
int run_initializers(void);

/// Prepares a program of this type, 1 with a console and 2 with windows only, up to main(). Ends
/// the process on failure.
void start_program(int type);

/// Makes atexit() keep functions until run_atexit_functions(), as a DLL needs, instead of until the
/// process ends. Returns 0 without memory.
int keep_atexit_functions(void);
void run_atexit_functions(void);
