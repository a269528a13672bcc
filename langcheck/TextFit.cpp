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
#include <QTextLayout>

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

QRect inWindow(const QWidget &widget, const QRect &rect)
{
    return {widget.mapTo(widget.window(), rect.topLeft()), rect.size()};
}

} // namespace

QVector<ShownText> dialogTexts(const QDialog &dialog)
{
    const auto *const label = dialog.findChild<QLabel *>(QStringLiteral("label_info1"));
    const auto *const button = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"));
    const auto *const tabs = dialog.findChild<QTabWidget *>(QStringLiteral("tabWidget"))->tabBar();
    const int titleBarButtons = 150;
    const QString title = dialog.windowTitle();
    const QRect titleSpace(0, -kTitleBarHeight, dialog.width() - titleBarButtons, kTitleBarHeight);
    return {
        {label->text(), inWindow(*label, label->rect()),
         !fits(*label, label->text(), label->contentsRect())},
        {button->text(), inWindow(*button, button->rect()),
         !fits(*button, button->text(), room(*button))},
        // The tab grows with its text, up to the width of the dialog.
        {tabs->tabText(0), inWindow(*tabs, tabs->tabRect(0)),
         tabs->sizeHint().width() > dialog.width()},
        {title, titleSpace, dialog.fontMetrics().horizontalAdvance(title) > titleSpace.width()},
    };
}

QStringList clippedTexts(const QDialog &dialog)
{
    QStringList result;
    const QVector<ShownText> texts = dialogTexts(dialog);
    for (const ShownText &text : texts) {
        if (text.clipped)
            result += text.text;
    }
    return result;
}

ShownText languageName(const QDialog &dialog, int index)
{
    const auto *const list = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    const QString name = list->itemText(index);
    return {name, inWindow(*list, list->rect()), !fits(*list, name, room(*list))};
}

QList<QGlyphRun> glyphRuns(const QWidget &widget, const QString &text)
{
    QTextLayout layout(text, widget.font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return layout.glyphRuns();
}
