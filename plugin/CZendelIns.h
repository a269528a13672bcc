#pragma once

#include "plugin/IZendelMgr.h"

#include <QObject>

class QDialog;

/// The only implementation of IZendelMgr. It has no data members: the recorded machine is in
/// g_pHostMachine and the translation in CTranslatorMgr, and both outlive the manager.
class CZendelIns : public QObject, public IZendelMgr
{
    Q_OBJECT

public:
    bool Init(IHostMachine *host) override;
    bool ShowSettingsDlg(HWND owner) override;

    /// Runs @p dlg modally over the native window @p owner, which may be null. @p dlg must not have
    /// a parent or have been shown before. The owner is enabled again while @p dlg still exists.
    static void ExecModal(QDialog &dlg, HWND owner);
};
