#pragma once

// As in <windows.h>, whose macros and names the tests of the classes don't need.
typedef struct HINSTANCE__ *HMODULE; // NOLINT(modernize-use-using)

/// Returns where @p module keeps the address of a function that it imports, or null if it doesn't
/// import the function.
void **findImport(HMODULE module, const char *function);

/// Replaces a function that @p module imports. Returns the function, or null if the module doesn't
/// import it.
void *replaceImport(HMODULE module, const char *function, void *replacement);

/// Does the same for this program, and ends it if it doesn't import the function.
void *replaceOwnImport(const char *function, void *replacement);
