// A library that lacks one or both functions of the plug-in

#include <QtGlobal>

#ifdef WITH_NEW_INTERFACE
extern "C" Q_DECL_EXPORT void *NewInterface()
{
    return nullptr;
}
#endif
