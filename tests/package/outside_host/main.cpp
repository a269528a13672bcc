#include <Zendel/IHostMachine.h>
#include <Zendel/IZendelMgr.h>

#include <QLibrary>

int main(int argc, char *argv[])
{
    QLibrary library(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    const auto create = reinterpret_cast<NewInterfaceFunction>(library.resolve("NewInterface"));
    const auto release =
        reinterpret_cast<ReleaseInterfaceFunction>(library.resolve("ReleaseInterface"));
    if (!create || !release)
        return 1;
    IZendelMgr *const mgr = create();
    const bool recorded = mgr->Init(nullptr);
    release(mgr);
    return recorded ? 1 : 0;
}
