#pragma once

#include <windows.h>

/// Returns where @p module keeps the address of a function that it imports, or null if it doesn't
/// import the function.
void **findImport(HMODULE module, const char *function);
