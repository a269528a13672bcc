#pragma once

#include <QtGlobal>

// INTERPOSE(Result, name, (Parameters)) { ... }
//
// Replaces a function of another library in calls from the objects that are linked into this
// program. ORIGINAL(name) is the function itself. zendel_interpose() in tests/CMakeLists.txt
// defines SYMBOL_name. On Linux it also sets the linker option --wrap; on Windows, the pointer in
// the program's import table is replaced before main().
#ifdef Q_OS_WIN
#    include "support/Imports_win32.h"
#    define INTERPOSE(Result, name, Parameters)                                                    \
        static Result replace_##name Parameters;                                                   \
        static Result(*const real_##name) Parameters = reinterpret_cast<Result(*) Parameters>(     \
            replaceOwnImport(SYMBOL_##name, reinterpret_cast<void *>(&replace_##name)));           \
        static Result replace_##name Parameters
#else
#    define INTERPOSE(Result, name, Parameters)                                                    \
        extern "C" Result real_##name Parameters asm("__real_" SYMBOL_##name);                     \
        extern "C" Result wrap_##name Parameters asm("__wrap_" SYMBOL_##name);                     \
        Result wrap_##name Parameters
#endif
#define ORIGINAL(name) real_##name
