#include "langcheck/MessageBoxes.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTimer>

MessageBoxes::MessageBoxes(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool MessageBoxes::eventFilter(QObject *watched, QEvent *event)
{
    auto *const box = qobject_cast<QMessageBox *>(watched);
    if (!box)
        return false;

    if (event->type() == QEvent::Polish) { // Sent before anything is drawn
        box->setAttribute(Qt::WA_DontShowOnScreen);
    } else if (event->type() == QEvent::Show) {
        const bool critical = box->icon() == QMessageBox::Critical;
        m_seen.append({critical ? QStringLiteral("critical") : QStringLiteral("warning"),
                       box->windowTitle(), box->text()});
        QTimer::singleShot(0, box, &QMessageBox::accept);
    }
    return false;
}
