// Adds what libc++ and Qt need and Wine's header lacks. There, EXIT_FAILURE is -1.
#pragma once
#include_next <stdlib.h>

#undef EXIT_FAILURE
#define EXIT_FAILURE 1
#define _sys_nerr (*__sys_nerr())

#ifdef __cplusplus
extern "C" {
#endif
_ACRTIMP int *__cdecl __sys_nerr(void);
_ACRTIMP float __cdecl _strtof_l(const char *, char **, _locale_t);
_ACRTIMP double __cdecl _strtod_l(const char *, char **, _locale_t);
_ACRTIMP errno_t __cdecl getenv_s(size_t *, char *, size_t, const char *);
_ACRTIMP errno_t __cdecl _wgetenv_s(size_t *, wchar_t *, size_t, const wchar_t *);
#ifdef __cplusplus
}
#endif
