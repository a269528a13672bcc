// With Microsoft's header, a GUID may be defined in several objects. There is no guard, because
// the header is included again to change between declaring and defining.
#include_next <guiddef.h>

#ifdef INITGUID
#    undef DEFINE_GUID
#    define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                           \
        EXTERN_C const GUID __declspec(selectany)                                                  \
            name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}
#endif
