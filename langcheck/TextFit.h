#pragma once

#include <QStringList>

class QDialog;

// What the widgets of the settings dialog are too small for, with the fonts and the style of this
// application. Message boxes grow with their text and are not asked.

/// The texts of label, button, tab and title that are clipped.
QStringList clippedTexts(const QDialog &dialog);

/// Whether the name at @p index of the list of languages is clipped.
bool nameIsClipped(const QDialog &dialog, int index);
