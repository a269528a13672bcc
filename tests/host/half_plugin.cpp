// A library that is no plug-in, or only half of one.

#include <QtGlobal>

#ifdef WITH_NEW_INTERFACE
extern "C" Q_DECL_EXPORT void *NewInterface()
{
    return nullptr;
}
#endif
