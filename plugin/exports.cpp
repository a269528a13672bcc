#include "plugin/CZendelIns.h"

extern "C" Q_DECL_EXPORT IZendelMgr *NewInterface()
{
    return new CZendelIns; // GCOV_EXCL_BR_LINE: "new" never returns null.
}

extern "C" Q_DECL_EXPORT void ReleaseInterface(IZendelMgr *mgr)
{
    delete mgr;
}
