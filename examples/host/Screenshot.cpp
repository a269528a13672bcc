#include "examples/host/Screenshot.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <numeric>

namespace {

/// Returns the main window and the dialogs above it, from bottom to top.
QList<QWidget *> windowsOf(QWidget &mainWindow)
{
    QList<QWidget *> result {&mainWindow};
    QWidget *dialog = QApplication::activeModalWidget();
    while (dialog && dialog != &mainWindow) {
        result.insert(1, dialog);
        dialog = dialog->parentWidget() ? dialog->parentWidget()->window() : nullptr;
    }
    return result;
}

QRect frameOf(const QList<QWidget *> &windows)
{
    return std::accumulate(
        windows.begin(), windows.end(), QRect(),
        [](const QRect &rect, const QWidget *window) { return rect | window->frameGeometry(); });
}

QPixmap grabbed(const QList<QWidget *> &windows)
{
    QScreen *const screen = windows.first()->windowHandle()->screen();
    const QRect rect =
        (frameOf(windows) & screen->geometry()).translated(-screen->geometry().topLeft());
    return screen->grabWindow(0, rect.x(), rect.y(), rect.width(), rect.height());
}

QPixmap composed(const QList<QWidget *> &windows)
{
    const QRect rect = frameOf(windows);
    QPixmap result(rect.size());
    result.fill(Qt::darkGray);
    QPainter painter(&result);
    for (QWidget *window : windows) {
        const QPixmap content = window->grab();
        const QPoint position = window->geometry().topLeft() - rect.topLeft();
        painter.drawPixmap(position, content);
        painter.drawRect(QRect(position, content.size()).adjusted(0, 0, -1, -1));
    }
    return result;
}

} // namespace

QPixmap screenshot(QWidget &mainWindow)
{
    const QList<QWidget *> windows = windowsOf(mainWindow);
    for (QWidget *window : windows)
        window->repaint(); // Immediately, without waiting for the event loop.
    const QPixmap result = grabbed(windows);
    return result.isNull() ? composed(windows) : result;
}
