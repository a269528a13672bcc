#include "langcheck/draw/WindowPicture.h"

#include "langcheck/Texts.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>

namespace {

const int kFrame = 1;
const QColor kMissing(0xC0, 0, 0);
const QColor kClipped(0xB8, 0x50, 0);

void drawTitleBar(QPainter &painter, const QString &title, int width)
{
    const QRect bar(0, -kTitleBarHeight, width, kTitleBarHeight);
    painter.fillRect(bar, QColor(0xE4, 0xE7, 0xEB));
    painter.setPen(Qt::black);
    painter.drawText(bar.adjusted(8, 0, -40, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title);
    QRect cross(0, 0, 10, 10);
    cross.moveCenter(QPoint(bar.right() - 20, bar.center().y()));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

/// Draws a label on a mark.
void drawCaption(QPainter &painter, const QString &caption, QPoint topLeft)
{
    const QRect space(topLeft,
                      painter.fontMetrics().size(Qt::TextSingleLine, caption) + QSize(6, 2));
    painter.fillRect(space, painter.pen().color());
    const QPen pen = painter.pen();
    painter.setPen(Qt::white);
    painter.drawText(space, Qt::AlignCenter, caption);
    painter.setPen(pen);
}

void drawMissing(QPainter &painter, const ShownText &text, int width)
{
    QRect space = text.space;
    // A message box without a text, for instance, has no space for it.
    space.setSize(space.size().expandedTo({60, 20}));
    space.moveRight(std::min(space.right(), width - 1));
    space.adjust(1, 1, -1, -1);
    painter.setPen(QPen(kMissing, 2, Qt::DashLine));
    painter.fillRect(space, QBrush(QColor(0xE0, 0xA0, 0xA0), Qt::BDiagPattern));
    painter.drawRect(space);
    drawCaption(painter, QStringLiteral("missing"), space.topLeft() + QPoint(4, 3));
}

void drawClipped(QPainter &painter, const ShownText &text)
{
    painter.setPen(QPen(kClipped, 2));
    painter.drawRect(text.space.adjusted(1, 1, -1, -1));
    const bool isTitle = text.space.y() < 0;
    drawCaption(painter, QStringLiteral("clipped"),
                isTitle ? text.space.topRight() + QPoint(4, 7) : text.space.bottomLeft());
}

/// Returns what a person calls the text.
QString nameOf(const ShownText &text)
{
    if (text.source.text)
        return QLatin1String(text.source.text);
    if (!text.text.isEmpty())
        return shortened(text.text, 60);
    return text.space.y() < 0 ? QStringLiteral("the title") : QStringLiteral("the text");
}

/// Returns, for instance, "missing: Change, Settings; clipped: Language:".
QString marksOf(const QVector<ShownText> &texts)
{
    QStringList missing;
    QStringList clipped;
    for (const ShownText &text : texts) {
        if (text.text.isEmpty())
            missing += nameOf(text);
        else if (text.clipped)
            clipped += nameOf(text);
    }
    QStringList result;
    if (!missing.isEmpty())
        result += QStringLiteral("missing: ") + missing.join(QStringLiteral(", "));
    if (!clipped.isEmpty())
        result += QStringLiteral("clipped: ") + clipped.join(QStringLiteral(", "));
    return result.join(QStringLiteral("; "));
}

} // namespace

QRect boxTitleSpace(const QWidget &box)
{
    const int closeButton = 40;
    return {0, -kTitleBarHeight, box.width() - closeButton, kTitleBarHeight};
}

QImage drawWindow(QWidget &window, const QSize &size, const QVector<ShownText> &texts)
{
    const QPixmap content = window.grab(QRect(QPoint(0, 0), size));
    const QSize whole = size + QSize(2 * kFrame, kTitleBarHeight + 2 * kFrame);
    QImage image(whole * content.devicePixelRatio(), QImage::Format_RGB32);
    image.setDevicePixelRatio(content.devicePixelRatio());
    image.fill(Qt::gray);

    QPainter painter(&image);
    painter.translate(kFrame, kTitleBarHeight + kFrame);
    painter.setFont(window.font());
    drawTitleBar(painter, window.windowTitle(), size.width());
    painter.drawPixmap(0, 0, content);
    for (const ShownText &text : texts) {
        if (text.text.isEmpty())
            drawMissing(painter, text, size.width());
        else if (text.clipped)
            drawClipped(painter, text);
    }
    painter.end();
    image.setText(kMarks, marksOf(texts));
    return image;
}
