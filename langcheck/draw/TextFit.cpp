#include "langcheck/draw/TextFit.h"

#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTextLayout>

#include <algorithm>

namespace {

/// Returns the height that a text needs in a widget, which centres its line. That is less than the
/// line's height, which is as large as that of the tallest font in it: for some that replace a
/// missing character, four times the height of the characters.
int neededHeight(const QWidget &widget, const QString &text)
{
    const QSize line = widget.fontMetrics().size(Qt::TextSingleLine, text);
    QImage image(line.width(), 2 * line.height(), QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(widget.logicalDpiX() / 0.0254));
    image.setDotsPerMeterY(qRound(widget.logicalDpiY() / 0.0254));
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(widget.font());
    painter.drawText(image.rect(), Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.end();

    const auto isEmpty = [&image](int y) {
        const auto *const pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        return std::all_of(pixels, pixels + image.width(),
                           [](QRgb pixel) { return pixel == qRgb(255, 255, 255); });
    };
    int margin = 0;
    while (margin < line.height() && isEmpty(margin) && isEmpty(image.height() - 1 - margin))
        ++margin;
    return image.height() - 2 * margin;
}

/// Returns a text of the widget, for which there is @p room.
ShownText shownText(const QWidget &widget, const QString &text, const QRect &space,
                    const QSize &room, const SourceText &source = {nullptr, nullptr})
{
    const QSize size = widget.fontMetrics().size(Qt::TextSingleLine, text);
    if (size.width() <= room.width() && size.height() > room.height()) {
        const int height = neededHeight(widget, text);
        if (height > room.height())
            return {text, space, true, true, height, room.height(), source};
    }
    return {text, space, size.width() > room.width(), false, size.width(), room.width(), source};
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
    // The tab grows with its text, up to the width of the dialog.
    const QSize tabFrame =
        tabs->sizeHint() - tabs->fontMetrics().size(Qt::TextSingleLine, tabs->tabText(0));
    return {
        shownText(*label, label->text(), inWindow(*label, label->rect()),
                  label->contentsRect().size(), {"PageSetLang", "Language:"}),
        shownText(*button, button->text(), inWindow(*button, button->rect()), room(*button).size(),
                  {"PageSetLang", "Change"}),
        shownText(*tabs, tabs->tabText(0), inWindow(*tabs, tabs->tabRect(0)),
                  dialog.size() - tabFrame, {"DlgSettings", "Language"}),
        shownText(dialog, title, titleSpace, {titleSpace.width(), dialog.height()},
                  {"DlgSettings", "Settings"}),
    };
}

QVector<ShownText> clippedTexts(const QDialog &dialog)
{
    QVector<ShownText> result = dialogTexts(dialog);
    result.erase(std::remove_if(result.begin(), result.end(),
                                [](const ShownText &text) { return !text.clipped; }),
                 result.end());
    return result;
}

ShownText languageName(const QDialog &dialog, int index)
{
    const auto *const list = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    return shownText(*list, list->itemText(index), inWindow(*list, list->rect()),
                     room(*list).size());
}

QList<QGlyphRun> glyphRuns(const QWidget &widget, const QString &text)
{
    QTextLayout layout(text, widget.font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return layout.glyphRuns();
}
