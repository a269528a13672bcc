// Linked into the unchanged program of docs/host-developer.md: an operator who opens the dialog,
// changes to language 3 and closes the main window.

#include "support/Operator.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTimer>

namespace {

void changeLanguage(const QDialog &dialog)
{
    auto *const languages = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    languages->setCurrentIndex(languages->findData(3));
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

void workMainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (auto *const settings = qobject_cast<QPushButton *>(window)) {
            settings->click();
            settings->close();
        }
    }
}

void start()
{
    auto *const theOperator = new Operator(QCoreApplication::instance());
    theOperator->onDialog = changeLanguage;
    QTimer::singleShot(0, theOperator, workMainWindow);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(start)
