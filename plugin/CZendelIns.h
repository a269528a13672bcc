#pragma once

#include "plugin/IZendelMgr.h"

#include <QObject>

class QDialog;

/// The one implementation of the manager. It holds no state of its own: the recorded host lives
/// in g_pHostMachine and the translation in CTranslatorMgr, and both outlive it.
class CZendelIns : public QObject, public IZendelMgr
{
    Q_OBJECT

public:
    bool Init(IHostMachine *host) override;
    bool ShowSettingsDlg(HWND owner) override;

    /// Runs @p dlg, which must have no parent and not have been shown, modally over the native
    /// window @p owner, which may be null, and returns when it has closed. The caller keeps
    /// @p dlg and destroys it afterwards, when the owner is enabled again.
    static void ExecModal(QDialog &dlg, HWND owner);
};
