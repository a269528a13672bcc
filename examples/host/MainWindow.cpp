#include "examples/host/MainWindow.h"

#include "examples/host/Machine.h"
#include "plugin/IZendelMgr.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QVariant>

namespace {

QLabel *createValueLabel(const QString &objectName)
{
    auto *const label = new QLabel;
    label->setObjectName(objectName);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

} // namespace

MainWindow::MainWindow(Machine &machine, IZendelMgr &manager, QWidget *parent)
    : QMainWindow(parent)
    , m_machine(machine)
    , m_manager(manager)
{
    setWindowTitle(QStringLiteral("Machine control"));
    resize(900, 620);

    auto *const content = new QWidget;
    auto *const layout = new QVBoxLayout(content);
    layout->addWidget(createLogGroup(), 1);
    layout->addWidget(createMachineGroup()); // At the bottom, where the dialog doesn't cover it.
    setCentralWidget(content);

    createMenu();
    connectMachine();
    showLanguage();
}

void MainWindow::initPlugin()
{
    logResult(QStringLiteral("Init"), m_manager.Init(&m_machine));
}

QGroupBox *MainWindow::createMachineGroup()
{
    m_state = createValueLabel(QStringLiteral("label_state"));
    m_state->setText(QStringLiteral("Ready"));
    m_language = createValueLabel(QStringLiteral("label_language"));

    auto *const refuse = new QCheckBox(QStringLiteral("Refuse language changes"));
    refuse->setObjectName(QStringLiteral("checkBox_refuse"));
    connect(refuse, &QCheckBox::toggled, &m_machine, &Machine::setRefusing);

    auto *const group = new QGroupBox(QStringLiteral("Machine"));
    auto *const layout = new QHBoxLayout(group);
    layout->addWidget(new QLabel(QStringLiteral("State:")));
    layout->addWidget(m_state, 1);
    layout->addWidget(new QLabel(QStringLiteral("Display language:")));
    layout->addWidget(m_language, 1);
    layout->addWidget(refuse);
    return group;
}

QGroupBox *MainWindow::createLogGroup()
{
    m_log = new QPlainTextEdit;
    m_log->setObjectName(QStringLiteral("plainTextEdit_log"));
    m_log->setReadOnly(true);

    auto *const group = new QGroupBox(QStringLiteral("Calls between host and plug-in"));
    auto *const layout = new QVBoxLayout(group);
    layout->addWidget(m_log);
    return group;
}

void MainWindow::createMenu()
{
    QMenu *const menu = menuBar()->addMenu(QStringLiteral("&Machine"));
    QAction *const settings =
        menu->addAction(QStringLiteral("&Settings…"), this, &MainWindow::showSettings,
                        QKeySequence(QStringLiteral("Ctrl+,")));
    settings->setObjectName(QStringLiteral("action_settings"));
    menu->addSeparator();
    menu->addAction(QStringLiteral("&Quit"), this, &QWidget::close,
                    QKeySequence(QStringLiteral("Ctrl+Q")));
}

void MainWindow::connectMachine()
{
    connect(&m_machine, &Machine::logged, m_log, &QPlainTextEdit::appendPlainText);
    connect(&m_machine, &Machine::languageChanged, this, &MainWindow::showLanguage);
    connect(&m_machine, &Machine::switching, this, [this](bool active) {
        m_state->setText(active ? QStringLiteral("Switching language…") : QStringLiteral("Ready"));
    });
}

void MainWindow::showSettings()
{
    const bool changed = m_manager.ShowSettingsDlg(reinterpret_cast<HWND>(winId()));
    logResult(QStringLiteral("ShowSettingsDlg"), changed);
    if (changed)
        initPlugin(); // So that the next dialog is in the new language.
}

void MainWindow::showLanguage()
{
    m_language->setText(m_machine.displayLanguage());
}

void MainWindow::logResult(const QString &call, bool result)
{
    m_log->appendPlainText(call + QStringLiteral(" -> ") + QVariant(result).toString());
}
