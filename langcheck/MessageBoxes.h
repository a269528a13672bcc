#pragma once

#include "langcheck/Report.h"

#include <QObject>

/// While it exists, every message box of the process is written down and closed, and none reaches
/// the screen.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    explicit MessageBoxes(QObject *parent = nullptr);

    /// The boxes so far, in order.
    const QList<Box> &seen() const { return m_seen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<Box> m_seen;
};
