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

    // Deliberate: the first call creates the native window, the second returns its handle, so that
    // the handle is taken from a window that Qt has finished creating.
    dlg.winId();
    const auto handle = reinterpret_cast<HWND>(dlg.winId());

    if (owner) {
        // Deliberate: the owner's size includes its frame, the dialog's does not, and the division
        // truncates toward zero for a dialog larger than its owner: where the dialog opens is what
        // operators and automated tests of hosts are used to.
        const WindowManager::Rect rc = WindowManager::windowRect(owner);
        const int x = rc.left + (rc.right - rc.left - dlg.width()) / 2;
        const int y = rc.top + (rc.bottom - rc.top - dlg.height()) / 2;
        dlg.move(QPoint(x, y));
    }

    // Deliberate: before the dialog is visible, so that it opens in front of a native main window.
    WindowManager::setForegroundWindow(handle);
    WindowManager::bringWindowToTop(handle);

    dlg.exec();

    // While the dialog still exists: otherwise this process would not have an enabled window, and
    // another program would be activated.
    // Deliberate: even if the owner was disabled before, because hosts disable it again themselves.
    if (owner) {
        WindowManager::enableWindow(owner, true);
        WindowManager::setForegroundWindow(owner);
    }
}
