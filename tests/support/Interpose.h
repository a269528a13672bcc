#pragma once

#include <QtGlobal>

// INTERPOSE(Result, symbol, (Parameters)) { ... }
//
// Replaces a function of another library, given by its mangled name, in calls from the objects that
// are linked into this program. ORIGINAL(symbol) is the function itself. zendel_interpose() in
// tests/CMakeLists.txt sets the linker option. On Windows, the pointer in the import table is
// replaced.
#ifdef Q_OS_WIN
#    define INTERPOSE(Result, symbol, Parameters)                                                  \
        extern "C" Result(*__real___imp_##symbol) Parameters;                                      \
        static Result replace_##symbol Parameters;                                                 \
        extern "C" Result(*__wrap___imp_##symbol) Parameters;                                      \
        Result(*__wrap___imp_##symbol) Parameters = &replace_##symbol;                             \
        static Result replace_##symbol Parameters
#    define ORIGINAL(symbol) __real___imp_##symbol
#else
#    define INTERPOSE(Result, symbol, Parameters)                                                  \
        extern "C" Result __real_##symbol Parameters;                                              \
        extern "C" Result __wrap_##symbol Parameters;                                              \
        Result __wrap_##symbol Parameters
#    define ORIGINAL(symbol) __real_##symbol
#endif
