// Linked into the unchanged program of docs/host-developer.md: an operator who opens the dialog,
// changes to language 3, opens it again and closes the main window.

#include "support/Operator.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace {

void changeLanguage(const QDialog &dialog)
{
    std::fprintf(stderr, "Title: %s\n", qPrintable(dialog.windowTitle()));
    auto *const languages = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    const int index = languages->findData(3);
    if (languages->currentIndex() == index)
        return;
    languages->setCurrentIndex(index);
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
}

void workMainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (auto *const settings = qobject_cast<QPushButton *>(window)) {
            settings->click();
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
