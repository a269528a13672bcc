// Adds what libc++ needs and Wine's header lacks.
#pragma once
#include_next <ctype.h>

#define MB_CUR_MAX ___mb_cur_max_func()

#ifdef __cplusplus
extern "C" {
#endif
_ACRTIMP int __cdecl ___mb_cur_max_func(void);
_ACRTIMP int __cdecl ___mb_cur_max_l_func(_locale_t);
_ACRTIMP const unsigned short *__cdecl __pctype_func(void);
_ACRTIMP int __cdecl _isdigit_l(int, _locale_t);
_ACRTIMP int __cdecl _islower_l(int, _locale_t);
_ACRTIMP int __cdecl _isupper_l(int, _locale_t);
_ACRTIMP int __cdecl _isxdigit_l(int, _locale_t);
#ifdef __cplusplus
}
#endif
