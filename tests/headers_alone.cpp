// Compiled with the plug-in's two public headers and nothing else: no Qt and no windows.h in
// reach. Holds what hosts rely on.

#include "plugin/IHostMachine.h"
#include "plugin/IZendelMgr.h"

#include <type_traits>

// <windows.h> and Qt declare the handle like this; all three must get along.
typedef struct HWND__ *HWND; // NOLINT(modernize-use-using)

static_assert(std::is_abstract_v<IZendelMgr> && std::is_abstract_v<IHostMachine>);
static_assert(std::has_virtual_destructor_v<IZendelMgr>);
static_assert(sizeof(IZendelMgr) == sizeof(void *), "no data");
static_assert(sizeof(IHostMachine) == sizeof(void *), "no data");
static_assert(std::is_same_v<decltype(&IZendelMgr::Init), bool (IZendelMgr::*)(IHostMachine *)>);
static_assert(std::is_same_v<decltype(&IZendelMgr::ShowSettingsDlg), bool (IZendelMgr::*)(HWND)>);
static_assert(
    std::is_same_v<decltype(&IHostMachine::NotifySettingChanged), void (IHostMachine::*)()>);
static_assert(
    std::is_same_v<decltype(&IHostMachine::SetLanguage), bool (IHostMachine::*)(std::uint8_t)>);

namespace {

class Machine final : public IHostMachine
{
public:
    void NotifySettingChanged() override { notified = true; }
    bool SetLanguage(std::uint8_t langId) override { return langId == 2; }

    bool notified = false;
};

} // namespace

int main()
{
    Machine machine;
    IHostMachine &host = machine;
    host.NotifySettingChanged();
    return machine.notified && host.SetLanguage(2) && !host.SetLanguage(3) ? 0 : 1;
}
