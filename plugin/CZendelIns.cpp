#include "plugin/CZendelIns.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"
#include "plugin/WindowManager.h"
#include "ui/DlgSettings.h"

bool CZendelIns::Init(IHostMachine *host)
{
    g_pHostMachine = host;
    if (!g_pHostMachine)
        return false;

    CTranslatorMgr::instance()->loadTranslator();
    return true;
}

bool CZendelIns::ShowSettingsDlg(HWND owner)
{
    if (!g_pHostMachine)
        return false;

    DlgSettings dlg;
    ExecModal(dlg, owner);
    return dlg.changed();
}

void CZendelIns::ExecModal(QDialog &dlg, HWND owner)
{
    if (owner)
        WindowManager::enableWindow(owner, false);

    dlg.setModal(true);

    // The first call is for its effect, the native window; the handle comes from the second.
    dlg.winId();
    const auto handle = reinterpret_cast<HWND>(dlg.winId());

    if (owner) {
        // The dialog's size without its frame against the owner's with it: deliberate, and so is
        // the division that truncates toward zero for a dialog larger than its owner.
        const WindowManager::Rect rc = WindowManager::windowRect(owner);
        const int x = rc.left + (rc.right - rc.left - dlg.width()) / 2;
        const int y = rc.top + (rc.bottom - rc.top - dlg.height()) / 2;
        dlg.move(x, y);
    }

    // Before the dialog is visible, on purpose: it then opens in front of a foreign main window.
    WindowManager::setForegroundWindow(handle);
    WindowManager::bringWindowToTop(handle);

    dlg.exec();

    // The owner is enabled while the dialog still exists. Otherwise there would be no enabled
    // window of this process to activate, and the activation would go to another program.
    if (owner) {
        WindowManager::enableWindow(owner, true);
        WindowManager::setForegroundWindow(owner);
    }
}
