#pragma once

#include "langcheck/Report.h"

#include <QAccessible>
#include <QObject>

class QDialog;
class QMessageBox;

/// Records and closes all message boxes of the process. None appears on the screen or makes a
/// sound.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    explicit MessageBoxes(QObject *parent = nullptr);
    ~MessageBoxes() override;

    /// Returns the message boxes recorded so far, in order.
    const QList<Box> &seen() const { return m_seen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void record(QMessageBox &box);

    QList<Box> m_seen;
    const QAccessible::UpdateHandler m_previousHandler;
};

/// Presses the button of the settings dialog and returns the message box that appears after a
/// change that succeeds or fails.
Box boxAfterChange(const QDialog &dialog, bool success);
