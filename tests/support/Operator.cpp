#include "support/Operator.h"

#include "support/TestOnEveryQt.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTimer>

#include <utility>

namespace {

const char *iconName(QMessageBox::Icon icon)
{
    switch (icon) {
    case QMessageBox::Information:
        return "information";
    case QMessageBox::Warning:
        return "warning";
    case QMessageBox::Critical:
        return "critical";
    default:
        return "other";
    }
}

QString describe(const char *icon, const QString &title, const QString &text, int buttons,
                 const char *parent)
{
    return QLatin1String(icon) + QStringLiteral(" title{") + title + QStringLiteral("} text{")
        + text + QStringLiteral("} buttons ") + QString::number(buttons, 16)
        + QStringLiteral(" parent ") + QLatin1String(parent);
}

/// An operator presses only what is visible. Besides, a window that is closed before X11 has shown
/// it gets a late request for the focus, which fails.
void waitUntilExposed(const QWidget &window)
{
    QCoreApplication::processEvents(); // Usually exposes it, so that the next line need not sleep.
    if (!TestOnEveryQt::waitForExposed(window))
        QTest::qFail("A window was not shown", __FILE__, __LINE__);
}

} // namespace

Operator::Operator(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

QString Operator::box(const char *icon, const QString &title, const QString &text,
                      const char *parent)
{
    return describe(icon, title, text, QMessageBox::Ok, parent);
}

QStringList Operator::takeBoxes()
{
    return std::exchange(m_boxes, {});
}

QStringList Operator::takeDialogs()
{
    return std::exchange(m_dialogs, {});
}

bool Operator::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;

    // The window isn't exposed yet. The timers fire in its event loop.
    if (auto *const messageBox = qobject_cast<QMessageBox *>(watched)) {
        const QWidget *const parent = messageBox->parentWidget();
        m_boxes += describe(iconName(messageBox->icon()), messageBox->windowTitle(),
                            messageBox->text(), messageBox->standardButtons(),
                            parent ? parent->metaObject()->className() : "none");
        QTimer::singleShot(0, messageBox, [this, messageBox] { answer(*messageBox); });
    } else if (auto *const dialog = qobject_cast<QDialog *>(watched)) {
        if (!dialog->isModal())
            return false;
        m_dialogs += dialog->objectName();
        QTimer::singleShot(0, dialog, [this, dialog] { work(*dialog); });
    }
    return false;
}

void Operator::answer(QMessageBox &box) const
{
    waitUntilExposed(box);
    if (onBox)
        onBox(box);
    box.button(QMessageBox::Ok)->click();
}

void Operator::work(QDialog &dialog) const
{
    waitUntilExposed(dialog);
    if (onDialog)
        onDialog(dialog);
    if (dialog.isVisible())
        dialog.reject();
}
