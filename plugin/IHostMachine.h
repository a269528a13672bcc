#pragma once

#include <cstdint>

/// The machine that the host application controls, as the plug-in sees it.
///
/// Implemented by the host, which keeps ownership: the plug-in never creates, copies or deletes
/// the object. It must stay valid from the IZendelMgr::Init() call that hands it over until the
/// next such call or until the plug-in is unloaded; releasing the manager does not end its use.
/// It must be built by the plug-in's compiler family, as IZendelMgr.h says.
/// All calls come on the host's GUI thread, from inside IZendelMgr::ShowSettingsDlg(), and must
/// not throw.
class IHostMachine
{
public:
    /// Tells the host that the SetLanguage() call that just returned true changed the settings.
    virtual void NotifySettingChanged() = 0;

    /// Switches the machine's display language to number @p langId of the catalogue and returns
    /// true once that is done, or false when the switch did not happen. Catalogue numbers above
    /// 255 arrive as their low 8 bits. The operator sees the wait cursor until the call returns.
    /// Init() may be called from in here with another machine object, but not with null.
    virtual bool SetLanguage(std::uint8_t langId) = 0;

protected:
    ~IHostMachine() = default;
};
