#pragma once

/// @file
/// What the plug-in offers to the host: the manager, and the types of the two exported functions.

struct HWND__; // NOLINT(bugprone-reserved-identifier): Win32's own name

/// The handle of a native window: the same type as in windows.h and in Qt, without needing either.
using HWND = HWND__ *;

class IHostMachine;

/// The plug-in's manager object, as the host sees it.
///
/// The host gets one from the exported function NewInterface() and gives it back with
/// ReleaseInterface(), never with delete. All calls are to be made on the host's GUI thread,
/// while its QApplication exists. Nothing is thrown on purpose.
///
/// Host, Qt and plug-in must come from one compiler family: a host built with MSVC cannot use a
/// plug-in built with MinGW-w64, whose objects and Qt libraries are not its own.
class IZendelMgr
{
public:
    virtual ~IZendelMgr() = default;

    /// Records @p host, which is not owned and may be null, in place of any earlier one, and
    /// loads the translation that the language catalogue names. May be called again at any time,
    /// for instance after a change of language. Failures with the catalogue or the translation
    /// are reported to the operator in message boxes. Returns whether @p host is not null.
    virtual bool Init(IHostMachine *host) = 0;

    /// Runs the settings dialog over @p owner, the native handle of the host's main window, which
    /// may be null, and returns when the operator has closed it. The owner is disabled meanwhile.
    /// Returns whether the operator's last change of language in the dialog succeeded; false, and
    /// no dialog, while no host is recorded.
    virtual bool ShowSettingsDlg(HWND owner) = 0;
};

/// The types of the two functions that the plug-in exports, by these names and undecorated.
extern "C" {
/// NewInterface(): a new manager, to be given back with ReleaseInterface(). Managers are
/// independent objects, but share the recorded host and the loaded translation.
using NewInterfaceFunction = IZendelMgr *(*)();
/// ReleaseInterface(): destroys a manager; null is accepted and ignored. The recorded host stays.
using ReleaseInterfaceFunction = void (*)(IZendelMgr *mgr);
}
