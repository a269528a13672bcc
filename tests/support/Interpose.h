#pragma once

#include <QtGlobal>

// INTERPOSE(Result, name, (Parameters)) { ... }
//
// Replaces a function of another library in calls from the objects that are linked into this
// program. ORIGINAL(name) is the function itself. zendel_interpose() in tests/CMakeLists.txt sets
// the linker option and defines SYMBOL_name. On Windows, the pointer in the import table is
// replaced.
#ifdef Q_OS_WIN
#    define INTERPOSE(Result, name, Parameters)                                                    \
        extern "C" Result(*real_##name) Parameters asm("__real___imp_" SYMBOL_##name);             \
        static Result replace_##name Parameters;                                                   \
        extern "C" Result(*wrap_##name) Parameters asm("__wrap___imp_" SYMBOL_##name);             \
        Result(*wrap_##name) Parameters = &replace_##name;                                         \
        static Result replace_##name Parameters
#else
#    define INTERPOSE(Result, name, Parameters)                                                    \
        extern "C" Result real_##name Parameters asm("__real_" SYMBOL_##name);                     \
        extern "C" Result wrap_##name Parameters asm("__wrap_" SYMBOL_##name);                     \
        Result wrap_##name Parameters
#endif
#define ORIGINAL(name) real_##name
