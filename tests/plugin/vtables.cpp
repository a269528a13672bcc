// Makes the compiler lay out both interfaces.

#include "plugin/IHostMachine.h"
#include "plugin/IZendelMgr.h"

struct Machine : IHostMachine
{
    void NotifySettingChanged() override { }
    bool SetLanguage(std::uint8_t) override { return true; }
};

struct Mgr : IZendelMgr
{
    bool Init(IHostMachine *) override { return true; }
    bool ShowSettingsDlg(HWND) override { return true; }
};

bool use()
{
    Machine machine;
    return Mgr().Init(&machine);
}
