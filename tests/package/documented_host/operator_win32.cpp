// Linked into the unchanged program in examples/win32/: an operator who opens the dialog, changes
// to language 3, opens it again and closes the main window. With an argument, the main window is
// closed while the dialog is open.

#include "support/Operator.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTimer>

#include <windows.h>

#include <cstdio>

namespace {

HWND mainWindow()
{
    return FindWindowW(L"MachineControl", nullptr);
}

void workDialog(QDialog &dialog)
{
    std::fprintf(stderr, "Title: %s, main window %s\n", qPrintable(dialog.windowTitle()),
                 IsWindowEnabled(mainWindow()) ? "enabled" : "disabled");
    if (QCoreApplication::arguments().size() > 1) {
        SendMessageW(mainWindow(), WM_CLOSE, 0, 0);
        QCoreApplication::processEvents(); // Qt's loop takes WM_QUIT.
        return;
    }

    auto *const languages = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    const int index = languages->findData(3);
    if (languages->currentIndex() == index)
        return;
    languages->setCurrentIndex(index);
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

void workMainWindow()
{
    const HWND button = FindWindowExW(mainWindow(), nullptr, L"BUTTON", nullptr);
    for (int round = 0; round < 2 && IsWindow(button); ++round)
        SendMessageW(button, BM_CLICK, 0, 0);
    SendMessageW(mainWindow(), WM_CLOSE, 0, 0);
}

void start()
{
    auto *const theOperator = new Operator(QCoreApplication::instance());
    theOperator->onDialog = workDialog;
    QTimer::singleShot(100, theOperator, workMainWindow); // Delivered by the host's own loop.
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(start)
