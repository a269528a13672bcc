// Tests what hosts rely on in the plug-in's two public headers, with neither Qt nor <windows.h>.

#include "plugin/IHostMachine.h"
#include "plugin/IZendelMgr.h"

#include <type_traits>

// <windows.h> and Qt declare the handle like this; repeating it must compile.
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

// The destructor has two slots except in the C++ ABI of Microsoft's compiler.
#ifdef _MSC_VER
constexpr int destructorSlots = 1;
#else
constexpr int destructorSlots = 2;
#endif

/// Calls the function in a slot of an object's virtual table, as a host would that was compiled
/// with another version of these headers.
template<typename Result, typename... Arguments>
Result callSlot(void *object, int slot, Arguments... arguments)
{
    using Function = Result (*)(void *, Arguments...);
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): it can't know the table's contents
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
    return callSlot<bool, IHostMachine *>(object, destructorSlots, nullptr)
        && callSlot<bool, HWND>(object, destructorSlots + 1, owner) && mgr.shownOver == owner;
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
