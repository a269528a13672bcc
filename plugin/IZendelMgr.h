#pragma once

/// @file
/// The manager, which the plug-in offers to the host, and the types of the two exported functions.

struct HWND__; // NOLINT(bugprone-reserved-identifier): Win32's own name

/// The handle of a native window, the same type as in windows.h and Qt. On X11, the window ID.
using HWND = HWND__ *;

class IHostMachine;

/// The plug-in's manager. Create it with NewInterface() and destroy it with ReleaseInterface(),
/// never with delete: its memory belongs to the plug-in's run-time library.
///
/// Make all calls on the GUI thread while the host's QApplication exists. Both functions run an
/// event loop while one of their windows is open. Until they return, do not release the manager,
/// unload the plug-in or destroy the machine object. They can throw only std::bad_alloc.
///
/// The host, Qt and the plug-in must be built with compilers of the same family, MinGW-w64 or MSVC.
/// The families differ in the layout of virtual function tables and in the names of Qt's symbols.
class IZendelMgr
{
public:
    virtual ~IZendelMgr() = default;

    /// Records the machine object in place of any earlier one, reads the catalogue Lang/Lang.ini
    /// next to the host's executable and loads the translation of its default language. Call it
    /// again when the catalogue has changed, for instance after a change of language.
    ///
    /// @param host Not owned, see IHostMachine. Null clears the record and loads nothing.
    /// @return true if @p host is not null, even if the catalogue or the translation can't be
    /// loaded. The operator then first has to close a message box for each failure.
    virtual bool Init(IHostMachine *host) = 0;

    /// Shows the settings dialog centred over a window and returns when the operator has closed it.
    /// The window is disabled meanwhile, and enabled and activated at the end. Not reentrant.
    ///
    /// @param owner The host's main window, which need not be a Qt window and may be destroyed
    /// while the dialog is open. If it is null, no window is disabled and the dialog is not moved.
    /// @return true if the operator's last change of language in the dialog succeeded; false if it
    /// failed, there was none, or QApplication::quit() closed the dialog. Also false, without a
    /// dialog, if no machine object is recorded.
    virtual bool ShowSettingsDlg(HWND owner) = 0;
};

// The functions are exported as NewInterface and ReleaseInterface, without name mangling.
extern "C" {
/// The type of NewInterface(), which creates a manager and never returns null. All managers share
/// the recorded machine object and the loaded translation.
using NewInterfaceFunction = IZendelMgr *(*)();
/// The type of ReleaseInterface(), which destroys a manager, or does nothing if @p mgr is null. The
/// machine object stays recorded.
using ReleaseInterfaceFunction = void (*)(IZendelMgr *mgr);
}
