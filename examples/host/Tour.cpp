#include "examples/host/Tour.h"

#include "examples/host/LanguageFile.h"
#include "examples/host/Screenshot.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QTextStream>
#include <QWindow>

#include <utility>

namespace {

constexpr int intervalMs = 50;
constexpr int timeoutMs = 60 * 1000;

/// The number of intervals for which a window must be exposed, so that it has its frame, too.
constexpr int settledRounds = 8;

QMessageBox *messageBox()
{
    return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
}

QComboBox *languageList()
{
    const QWidget *const dialog = QApplication::activeModalWidget();
    return dialog ? dialog->findChild<QComboBox *>(QStringLiteral("comboBox_language")) : nullptr;
}

/// Returns immediately; the click itself lasts until the message box is closed.
void clickChange()
{
    auto *const button = QApplication::activeModalWidget()->findChild<QPushButton *>(
        QStringLiteral("pushButton_change"));
    QTimer::singleShot(0, button, &QPushButton::click);
}

} // namespace

const Tour::Step Tour::steps[] = {
    {"host", &Tour::host, QMessageBox::NoIcon, "1-host.png"},
    {"dialog", &Tour::dialog, QMessageBox::NoIcon, "2-dialog.png"},
    {"success", &Tour::answerMessageBox, QMessageBox::Information, "3-success.png"},
    {"success", &Tour::closeDialog},
    {"success", &Tour::languageSwitched},
    {"new language", &Tour::newLanguage, QMessageBox::NoIcon, "4-new-language.png"},
    {"failure", &Tour::answerMessageBox, QMessageBox::Critical, "5-failure.png"},
    {"failure", &Tour::closeDialog},
    {"failure", &Tour::end},
};

Tour::Tour(QWidget &mainWindow, LanguageFile &languages, QString directory)
    : m_mainWindow(mainWindow)
    , m_languages(languages)
    , m_directory(std::move(directory))
{
    connect(&m_timer, &QTimer::timeout, this, &Tour::runStep);
}

void Tour::start()
{
    m_elapsed.start();
    m_timer.start(intervalMs);
}

bool Tour::host()
{
    if (!takeScreenshot(&m_mainWindow))
        return false;
    openSettings();
    return true;
}

bool Tour::dialog()
{
    QComboBox *const list = languageList();
    if (!list || !takeScreenshot(list->window()))
        return false;

    list->setCurrentIndex((list->currentIndex() + 1) % list->count());
    m_chosenLanguage = list->currentData().toInt();
    m_firstTitle = list->window()->windowTitle();
    clickChange();
    return true;
}

bool Tour::answerMessageBox()
{
    QMessageBox *const box = messageBox();
    if (!takeScreenshot(box))
        return false;
    box->button(QMessageBox::Ok)->click();
    return true;
}

bool Tour::closeDialog()
{
    if (!languageList())
        return false;
    QApplication::activeModalWidget()->close();
    return true;
}

bool Tour::languageSwitched()
{
    if (QApplication::activeModalWidget())
        return false;
    if (!m_languages.read())
        return fail(m_languages.errorString());
    if (m_languages.defaultLanguage() != m_chosenLanguage)
        return fail(
            QStringLiteral("The machine didn't switch to language %1").arg(m_chosenLanguage));

    m_mainWindow.findChild<QCheckBox *>(QStringLiteral("checkBox_refuse"))->setChecked(true);
    openSettings();
    return true;
}

bool Tour::newLanguage()
{
    const QComboBox *const list = languageList();
    if (!list || !takeScreenshot(list->window()))
        return false;
    if (list->window()->windowTitle() == m_firstTitle)
        return fail(QStringLiteral("The dialog isn't in the new language"));
    clickChange();
    return true;
}

bool Tour::end()
{
    if (QApplication::activeModalWidget())
        return false;

    const QString expected = QStringLiteral("Init -> true\n"
                                            "SetLanguage(%1) -> accepted\n"
                                            "NotifySettingChanged\n"
                                            "ShowSettingsDlg -> true\n"
                                            "Init -> true\n"
                                            "SetLanguage(%1) -> refused\n"
                                            "ShowSettingsDlg -> false")
                                 .arg(m_chosenLanguage);
    const QString log =
        m_mainWindow.findChild<QPlainTextEdit *>(QStringLiteral("plainTextEdit_log"))
            ->toPlainText();
    if (log != expected)
        return fail(QStringLiteral("Unexpected calls:\n") + log);

    QTextStream(stdout) << m_screenshots.join(QLatin1Char('\n')) << '\n';
    finish(0);
    return false; // This is the last step.
}

void Tour::runStep()
{
    const QMessageBox *const box = messageBox();
    if (box && box->icon() != m_step->expectedBox) {
        fail(QStringLiteral("Unexpected message \"") + box->windowTitle() + QStringLiteral("\": ")
             + box->text());
    } else if (m_elapsed.hasExpired(timeoutMs)) {
        fail(QStringLiteral("Timed out"));
    } else if ((this->*m_step->run)()) {
        ++m_step;
        m_settledRounds = 0;
    }
}

void Tour::finish(int exitCode)
{
    m_timer.stop();
    QCoreApplication::exit(exitCode); // Closes open dialogs, too.
}

bool Tour::fail(const QString &reason)
{
    QTextStream(stderr) << "zendel-host: tour, stage \"" << m_step->stage << "\": " << reason
                        << '\n';
    finish(1);
    return false;
}

/// Returns false on failure or if @p newWindow, which may be null, has not settled yet.
bool Tour::takeScreenshot(const QWidget *newWindow)
{
    const bool exposed =
        newWindow && newWindow->windowHandle() && newWindow->windowHandle()->isExposed();
    m_settledRounds = exposed ? m_settledRounds + 1 : 0;
    if (m_settledRounds <= settledRounds)
        return false;

    QDir().mkpath(m_directory);
    const QString fileName =
        QDir::toNativeSeparators(QDir(m_directory).filePath(QLatin1String(m_step->screenshot)));
    QSaveFile file(fileName);
    const QPixmap pixmap = screenshot(m_mainWindow);
    if (!file.open(QIODevice::WriteOnly) || !pixmap.save(&file, "PNG") || !file.commit())
        return fail(QStringLiteral("Can't write ") + fileName + QStringLiteral(": ")
                    + file.errorString());
    m_screenshots.append(fileName);
    return true;
}

void Tour::openSettings()
{
    // In the event loop, because the call lasts until the dialog is closed.
    QTimer::singleShot(0, m_mainWindow.findChild<QAction *>(QStringLiteral("action_settings")),
                       &QAction::trigger);
}
