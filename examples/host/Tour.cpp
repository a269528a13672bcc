#include "examples/host/Tour.h"

#include "examples/host/LanguageFile.h"
#include "examples/host/Screen.h"

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

/// So many rounds a window must have been there, for its frame to be there too.
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

/// Returns at once; the click itself lasts until the operator has answered the box.
void clickChange()
{
    auto *const button = QApplication::activeModalWidget()->findChild<QPushButton *>(
        QStringLiteral("pushButton_change"));
    QTimer::singleShot(0, button, &QPushButton::click);
}

} // namespace

const Tour::Step Tour::steps[] = {
    {"host", &Tour::host, QMessageBox::NoIcon},
    {"dialog", &Tour::dialog, QMessageBox::NoIcon},
    {"success", &Tour::success, QMessageBox::Information},
    {"success", &Tour::closeDialog, QMessageBox::NoIcon},
    {"success", &Tour::languageSwitched, QMessageBox::NoIcon},
    {"new language", &Tour::newLanguage, QMessageBox::NoIcon},
    {"failure", &Tour::failure, QMessageBox::Critical},
    {"failure", &Tour::closeDialog, QMessageBox::NoIcon},
    {"failure", &Tour::end, QMessageBox::NoIcon},
};

Tour::Tour(QWidget &window, LanguageFile &languages, QString directory)
    : m_window(window)
    , m_languages(languages)
    , m_directory(std::move(directory))
{
    connect(&m_timer, &QTimer::timeout, this, &Tour::runStep);
}

void Tour::start()
{
    m_deadline.setRemainingTime(timeoutMs);
    m_timer.start(intervalMs);
}

bool Tour::host()
{
    if (!isSettled(&m_window) || !savePicture(QStringLiteral("1-host.png")))
        return false;
    openSettings();
    return true;
}

bool Tour::dialog()
{
    QComboBox *const list = languageList();
    if (!list || !isSettled(list->window()) || !savePicture(QStringLiteral("2-dialog.png")))
        return false;

    list->setCurrentIndex((list->currentIndex() + 1) % list->count());
    m_chosenLanguage = list->currentData().toInt();
    m_firstTitle = list->window()->windowTitle();
    clickChange();
    return true;
}

bool Tour::success()
{
    return answerBox(QStringLiteral("3-success.png"));
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
            QStringLiteral("The machine has not switched to language %1").arg(m_chosenLanguage));

    m_window.findChild<QCheckBox *>(QStringLiteral("checkBox_refuse"))->setChecked(true);
    openSettings();
    return true;
}

bool Tour::newLanguage()
{
    const QComboBox *const list = languageList();
    if (!list || !isSettled(list->window()) || !savePicture(QStringLiteral("4-new-language.png")))
        return false;
    if (list->window()->windowTitle() == m_firstTitle)
        return fail(QStringLiteral("The dialog does not speak the new language"));
    clickChange();
    return true;
}

bool Tour::failure()
{
    return answerBox(QStringLiteral("5-failure.png"));
}

bool Tour::end()
{
    if (QApplication::activeModalWidget())
        return false;
    if (const QString log = unexpectedLog(); !log.isEmpty())
        return fail(QStringLiteral("Unexpected calls:\n") + log);
    QTextStream(stdout) << m_pictures.join(QLatin1Char('\n')) << '\n';
    finish(0);
    return false; // There is no next step.
}

void Tour::runStep()
{
    const QMessageBox *const box = messageBox();
    if (box && box->icon() != m_step->expectedBox) {
        fail(QStringLiteral("Unexpected message \"%1\": %2").arg(box->windowTitle(), box->text()));
    } else if (m_deadline.hasExpired()) {
        fail(QStringLiteral("Timed out"));
    } else if ((this->*m_step->run)()) {
        ++m_step;
        m_settledRounds = 0;
    }
}

void Tour::finish(int exitCode)
{
    m_timer.stop();
    QCoreApplication::exit(exitCode); // Closes the dialogs that are open, too.
}

bool Tour::fail(const QString &reason)
{
    QTextStream(stderr) << "zendel-host: tour, stage \"" << m_step->stage << "\": " << reason
                        << '\n';
    finish(1);
    return false;
}

bool Tour::isSettled(const QWidget *window)
{
    const bool exposed = window && window->windowHandle() && window->windowHandle()->isExposed();
    m_settledRounds = exposed ? m_settledRounds + 1 : 0;
    return m_settledRounds > settledRounds;
}

void Tour::openSettings()
{
    // Later, because it lasts until the dialog is closed.
    QTimer::singleShot(0, m_window.findChild<QAction *>(QStringLiteral("action_settings")),
                       &QAction::trigger);
}

QString Tour::unexpectedLog() const
{
    const QString expected = QStringLiteral("Init -> true\n"
                                            "SetLanguage(%1) -> accepted\n"
                                            "NotifySettingChanged\n"
                                            "ShowSettingsDlg -> true\n"
                                            "Init -> true\n"
                                            "SetLanguage(%1) -> refused\n"
                                            "ShowSettingsDlg -> false")
                                 .arg(m_chosenLanguage);
    const QString log =
        m_window.findChild<QPlainTextEdit *>(QStringLiteral("plainTextEdit_log"))->toPlainText();
    return log == expected ? QString() : log;
}

bool Tour::answerBox(const QString &pictureName)
{
    QMessageBox *const box = messageBox();
    if (!isSettled(box) || !savePicture(pictureName))
        return false;
    box->button(QMessageBox::Ok)->click();
    return true;
}

bool Tour::savePicture(const QString &name)
{
    QDir().mkpath(m_directory);
    const QString fileName = QDir::toNativeSeparators(QDir(m_directory).filePath(name));
    QSaveFile file(fileName);
    const QPixmap picture = Screen::picture(Screen::windows(m_window));
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit())
        return fail(QStringLiteral("Cannot write %1: %2").arg(fileName, file.errorString()));
    m_pictures.append(fileName);
    return true;
}
