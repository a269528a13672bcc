#pragma once

#include <QDeadlineTimer>
#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>

class LanguageFile;

/// Takes the operator's path through the plug-in by itself, with a picture of each stage: opens
/// the settings, changes the language, opens them again in the new language, and has a change
/// refused. Looks for something to do at short intervals, because the dialogs block their caller.
class Tour : public QObject
{
    Q_OBJECT

public:
    /// @p window is the host's main window.
    Tour(QWidget &window, LanguageFile &languages, QString directory);

    /// To be called when the window is shown. Ends the application with 0 or 1.
    void start();

private:
    /// A step is run again and again until it returns true: it is done, and has led on. Of message
    /// boxes, only the expected one may be there meanwhile.
    struct Step
    {
        const char *stage;
        bool (Tour::*run)();
        QMessageBox::Icon expectedBox;
    };
    static const Step steps[];

    bool host();
    bool dialog();
    bool success();
    bool closeDialog();
    bool languageSwitched();
    bool newLanguage();
    bool failure();
    bool end();

    void runStep();
    void finish(int exitCode);
    bool fail(const QString &reason);
    bool isSettled(const QWidget *window);
    void openSettings();
    QString unexpectedLog() const;
    bool answerBox(const QString &pictureName);
    bool savePicture(const QString &name);

    QWidget &m_window;
    LanguageFile &m_languages;
    const QString m_directory;
    QTimer m_timer;
    QDeadlineTimer m_deadline;
    const Step *m_step = steps;
    int m_settledRounds = 0;
    int m_chosenLanguage = 0;
    QString m_firstTitle; ///< Of the dialog, in the first language.
    QStringList m_pictures;
};
