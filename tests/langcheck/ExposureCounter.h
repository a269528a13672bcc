#pragma once

#include <QCoreApplication>
#include <QEvent>

/// Counts how often a window is exposed.
class ExposureCounter : public QObject
{
public:
    ExposureCounter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Expose)
            ++count;
        return false;
    }

    int count = 0;
};
