#pragma once

#include <cstdint>

/// The machine that the host controls, as the plug-in sees it. The host implements this class.
///
/// The host owns the object: the plug-in never copies or deletes it. It must stay valid from the
/// IZendelMgr::Init() call that passes it until the next such call or until the plug-in is
/// unloaded. Releasing the manager does not end its use.
///
/// The plug-in calls the object on the GUI thread and only during IZendelMgr::ShowSettingsDlg().
/// The functions must not throw. Neither may open a second settings dialog, release the manager,
/// unload the plug-in or destroy the object. Both may call Init(), but not with null, because the
/// plug-in would then dereference a null pointer.
class IHostMachine
{
public:
    /// Reports a success each time SetLanguage() has returned true, before the operator sees the
    /// message. If SetLanguage() passed another object to Init(), that object is called.
    virtual void NotifySettingChanged() = 0;

    /// Switches the machine's display language and returns when that is done. The next Init() loads
    /// the language that is DEFAULT in Lang/Lang.ini: it is up to the host to store the number
    /// there; the plug-in never writes that file. The operator sees a wait cursor during the call.
    ///
    /// @param langId The language's number in the catalogue, from 0 to 255. For greater numbers,
    /// only the low 8 bits are passed. It is 0 if the operator's list is empty.
    /// @return true if the language was switched; on false the operator sees an error message.
    virtual bool SetLanguage(std::uint8_t langId) = 0;

protected:
    ~IHostMachine() = default;
};
