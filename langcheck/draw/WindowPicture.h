#pragma once

#include "langcheck/draw/TextFit.h"

#include <QImage>
#include <QLatin1String>

class QWidget;

/// The space for the title of a message box, which grows with its title.
QRect boxTitleSpace(const QWidget &box);

/// The key of the text in a picture that names the missing and the clipped texts.
inline const QLatin1String kMarks("Description");

/// Returns a picture of the window's upper left part of this size, which need not be on the screen,
/// with a plain title bar. Marks each of the texts that is missing or clipped.
QImage drawWindow(QWidget &window, const QSize &size, const QVector<ShownText> &texts);
