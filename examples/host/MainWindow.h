#pragma once

#include <QMainWindow>

class IZendelMgr;
class Machine;
class QGroupBox;
class QLabel;
class QPlainTextEdit;

/// The host's main window: the machine's state, the plug-in's calls, and a menu with the settings.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Constructs the window. The machine and the manager must outlive it.
    MainWindow(Machine &machine, IZendelMgr &manager, QWidget *parent = nullptr);

    /// Passes the machine to the plug-in, which loads the translation of the current language.
    void initPlugin();

private:
    QGroupBox *createMachineGroup();
    QGroupBox *createLogGroup();
    void createMenu();
    void connectMachine();
    void showSettings();
    void showLanguage();
    void logResult(const QString &call, bool result);

    Machine &m_machine;
    IZendelMgr &m_manager;
    QLabel *m_state = nullptr;
    QLabel *m_language = nullptr;
    QPlainTextEdit *m_log = nullptr;
};
