#pragma once

#include <QElapsedTimer>
#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>

class LanguageFile;

/// Uses the plug-in as an operator would and saves a screenshot of each stage: opens the settings,
/// changes the language, opens them again in the new language, and tries a change that the machine
/// refuses. Driven by a timer because the dialogs block their callers.
class Tour : public QObject
{
    Q_OBJECT

public:
    Tour(QWidget &mainWindow, LanguageFile &languages, QString directory);

    /// Starts the tour, which exits the application with code 0, or 1 if it fails.
    void start();

private:
    /// A step is run repeatedly until it returns true. Only the expected message box may be open
    /// meanwhile.
    struct Step
    {
        const char *stage;
        bool (Tour::*run)();
        QMessageBox::Icon expectedBox = QMessageBox::NoIcon;
        const char *screenshot = nullptr; ///< A file name.
    };
    static const Step steps[];

    bool host();
    bool dialog();
    bool answerMessageBox();
    bool closeDialog();
    bool languageSwitched();
    bool newLanguage();
    bool end();

    void runStep();
    void finish(int exitCode);
    bool fail(const QString &reason);
    bool takeScreenshot(const QWidget *newWindow);
    void openSettings();

    QWidget &m_mainWindow;
    LanguageFile &m_languages;
    const QString m_directory;
    QTimer m_timer;
    QElapsedTimer m_elapsed;
    const Step *m_step = steps;
    int m_settledRounds = 0;
    int m_chosenLanguage = 0;
    QString m_firstTitle; ///< The dialog's title in the first language.
    QStringList m_screenshots;
};
