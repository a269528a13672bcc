#pragma once

#include <QPixmap>
#include <QWidget>

/// What the operator sees of this program.
namespace Screen {

/// The main window and the dialogs above it, from bottom to top.
QList<QWidget *> windows(QWidget &mainWindow);

/// A picture of these windows with their frames, as they are on the screen; on a platform that
/// doesn't let a program look at its screen, without the frames.
QPixmap picture(const QList<QWidget *> &windows);

} // namespace Screen
