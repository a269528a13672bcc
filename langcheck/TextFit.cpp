#include "langcheck/TextFit.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTabWidget>

namespace {

bool fits(const QWidget &widget, const QString &text, const QRect &room)
{
    const QSize size = widget.fontMetrics().size(Qt::TextSingleLine, text);
    return size.width() <= room.width() && size.height() <= room.height();
}

QRect room(const QPushButton &button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button);
}

QRect room(const QComboBox &list)
{
    QStyleOptionComboBox option;
    option.initFrom(&list);
    option.subControls = QStyle::SC_All;
    return list.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                        &list);
}

} // namespace

QStringList clippedTexts(const QDialog &dialog)
{
    QStringList result;
    const auto *const label = dialog.findChild<QLabel *>(QStringLiteral("label_info1"));
    if (!fits(*label, label->text(), label->contentsRect()))
        result += label->text();

    const auto *const button = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"));
    if (!fits(*button, button->text(), room(*button)))
        result += button->text();

    // The tab grows with its text, up to the width of the dialog.
    const auto *const tabs = dialog.findChild<QTabWidget *>(QStringLiteral("tabWidget"))->tabBar();
    if (tabs->sizeHint().width() > dialog.width())
        result += tabs->tabText(0);

    const int titleBarButtons = 150;
    if (dialog.fontMetrics().horizontalAdvance(dialog.windowTitle())
        > dialog.width() - titleBarButtons) {
        result += dialog.windowTitle();
    }
    return result;
}

bool nameIsClipped(const QDialog &dialog, int index)
{
    const auto *const list = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    return !fits(*list, list->itemText(index), room(*list));
}
