// Adds what libc++ and Qt need and Wine's header lacks.
#pragma once
#include_next <time.h>

#define TIME_UTC 1
struct timespec
{
    time_t tv_sec;
    long tv_nsec;
};

#ifdef __cplusplus
extern "C" {
#endif
_ACRTIMP errno_t __cdecl _get_daylight(int *);
_ACRTIMP errno_t __cdecl _get_dstbias(long *);
_ACRTIMP errno_t __cdecl _get_timezone(long *);
_ACRTIMP errno_t __cdecl _get_tzname(size_t *, char *, size_t, int);
_ACRTIMP size_t __cdecl _strftime_l(char *, size_t, const char *, const struct tm *, _locale_t);
#ifdef __cplusplus
}
#endif
