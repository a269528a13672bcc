#include "langcheck/draw/MessageBoxes.h"

#include "langcheck/draw/WindowPicture.h"
#include "plugin/HostMachine.h"
#include "plugin/IHostMachine.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>

namespace {

/// Accepts or refuses each language.
class Machine : public IHostMachine
{
public:
    explicit Machine(bool accepts)
        : m_accepts(accepts)
    {
    }

    void NotifySettingChanged() override { }
    bool SetLanguage(std::uint8_t /*langId*/) override { return m_accepts; }

private:
    const bool m_accepts;
};

QString iconName(QMessageBox::Icon icon)
{
    switch (icon) {
    case QMessageBox::Critical:
        return QStringLiteral("critical");
    case QMessageBox::Information:
        return QStringLiteral("information");
    default:
        return QStringLiteral("warning");
    }
}

} // namespace

MessageBoxes::MessageBoxes(QObject *parent)
    : QObject(parent)
    // Windows plays a sound when Qt announces a message box.
    , m_previousHandler(QAccessible::installUpdateHandler([](QAccessibleEvent * /*event*/) {}))
{
    QCoreApplication::instance()->installEventFilter(this);
}

MessageBoxes::~MessageBoxes()
{
    QAccessible::installUpdateHandler(m_previousHandler);
}

bool MessageBoxes::eventFilter(QObject *watched, QEvent *event)
{
    auto *const box = qobject_cast<QMessageBox *>(watched);
    if (!box)
        return false;

    if (event->type() == QEvent::Polish) { // Sent before anything is drawn
        box->setAttribute(Qt::WA_DontShowOnScreen);
    } else if (event->type() == QEvent::Show) {
        // Later, because the box gets its size after this event.
        QTimer::singleShot(0, box, [this, box] {
            record(*box);
            box->accept();
        });
    }
    return false;
}

void MessageBoxes::record(QMessageBox &box)
{
    const auto *const label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    const QRect space(label->mapTo(&box, QPoint(0, 0)), label->size());
    // The box grows with its text, but nobody sees what is outside the screen.
    const QSize largest(1000, 500);
    const QRect visible(
        QPoint(0, 0),
        box.size().boundedTo(box.windowHandle()->screen()->size()).boundedTo(largest));
    // The title bar has the application's font.
    const int titleWidth =
        QFontMetrics(QApplication::font()).size(Qt::TextSingleLine, box.windowTitle()).width();
    const int titleRoom = boxTitleSpace(box).width();
    const QVector<ShownText> texts {
        {box.windowTitle(), boxTitleSpace(box), titleWidth > titleRoom},
        {box.text(), space & visible, !visible.contains(space)},
    };
    m_seen.append({iconName(box.icon()), box.windowTitle(), box.text(),
                   drawWindow(box, visible.size(), texts), titleWidth, titleRoom});
}

Box boxAfterChange(const QDialog &dialog, bool success)
{
    const MessageBoxes boxes;
    Machine machine(success);
    IHostMachine *const previous = g_pHostMachine;
    g_pHostMachine = &machine;
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
    g_pHostMachine = previous;
    return boxes.seen().value(0);
}
