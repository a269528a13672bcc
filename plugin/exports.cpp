#include "plugin/CZendelIns.h"

extern "C" Q_DECL_EXPORT IZendelMgr *NewInterface()
{
    return new CZendelIns;
}

extern "C" Q_DECL_EXPORT void ReleaseInterface(IZendelMgr *mgr)
{
    delete mgr;
}
