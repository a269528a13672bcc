#pragma once

#include <QPixmap>

class QWidget;

/// Returns a screenshot of @p mainWindow and the dialogs above it, with their frames. On a platform
/// where programs can't read the screen, the frames are missing.
QPixmap screenshot(QWidget &mainWindow);
