#pragma once

#include "langcheck/Report.h"

#include <QObject>

/// Records and closes all message boxes of the process. None appears on the screen.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    explicit MessageBoxes(QObject *parent = nullptr);

    /// Returns the message boxes recorded so far, in order.
    const QList<Box> &seen() const { return m_seen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<Box> m_seen;
};
