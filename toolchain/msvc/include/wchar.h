// Adds what libc++ needs and Wine's header lacks.
#pragma once
#include_next <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif
_ACRTIMP errno_t __cdecl wcrtomb_s(size_t *, char *, size_t, wchar_t, mbstate_t *);
inline long double wcstold(const wchar_t *string, wchar_t **end)
{
    return wcstod(string, end);
}
#ifdef __cplusplus
}
#endif
