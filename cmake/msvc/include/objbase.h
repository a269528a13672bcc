// What Qt needs and Wine's header lacks. There is no guard around the inclusion,
// because Wine's header includes itself indirectly.
#include_next <objbase.h>

#if defined(__cplusplus) && !defined(IID_PPV_ARGS)
extern "C++" template<typename T>
void **IID_PPV_ARGS_Helper(T **object)
{
    return reinterpret_cast<void **>(object);
}
#    define IID_PPV_ARGS(object) __uuidof(**(object)), IID_PPV_ARGS_Helper(object)
#endif
