// Adds what libc++ needs and Wine's header lacks.
#pragma once
#include_next <wctype.h>

#ifdef __cplusplus
extern "C" {
#endif
_ACRTIMP int __cdecl _iswcntrl_l(wint_t, _locale_t);
_ACRTIMP int __cdecl _iswxdigit_l(wint_t, _locale_t);
#ifdef __cplusplus
}
#endif
