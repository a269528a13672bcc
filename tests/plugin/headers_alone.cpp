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

// The destructor has two slots in the C++ ABI of all compilers but Microsoft's.
#ifdef _MSC_VER
constexpr int slotsOfDestructor = 1;
#else
constexpr int slotsOfDestructor = 2;
#endif

/// The function in a slot of an object's table of virtual functions, called as a host compiled
/// with another version of these headers would call it.
template<typename Result, typename... Arguments>
Result callSlot(void *object, int slot, Arguments... arguments)
{
    using Function = Result (*)(void *, Arguments...);
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): it can't know what lies in a table
    return reinterpret_cast<Function>((*static_cast<void ***>(object))[slot])(object, arguments...);
}

class Mgr final : public IZendelMgr
{
public:
    bool Init(IHostMachine *host) override { return !host; }
    bool ShowSettingsDlg(HWND owner) override
    {
        shownOver = owner;
        return true;
    }

    HWND shownOver = nullptr;
};

class Machine final : public IHostMachine
{
public:
    void NotifySettingChanged() override { notified = true; }
    bool SetLanguage(std::uint8_t langId) override { return langId == 2; }

    bool notified = false;
};

bool managerSlotsAreInOrder()
{
    Mgr mgr;
    void *const object = static_cast<IZendelMgr *>(&mgr);
    const auto owner = reinterpret_cast<HWND>(&mgr);
    return callSlot<bool, IHostMachine *>(object, slotsOfDestructor, nullptr)
        && callSlot<bool, HWND>(object, slotsOfDestructor + 1, owner) && mgr.shownOver == owner;
}

bool machineSlotsAreInOrder()
{
    Machine machine;
    void *const object = static_cast<IHostMachine *>(&machine);
    callSlot<void>(object, 0);
    return machine.notified && callSlot<bool, std::uint8_t>(object, 1, 2)
        && !callSlot<bool, std::uint8_t>(object, 1, 3);
}

} // namespace

int main()
{
    return managerSlotsAreInOrder() && machineSlotsAreInOrder() ? 0 : 1;
}
