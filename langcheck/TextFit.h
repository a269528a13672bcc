#pragma once

#include <QStringList>

class QDialog;

// Texts too large for the settings dialog's widgets, in the fonts and style of this application.
// Message boxes are left out because they grow with their text.

/// Returns the texts of label, button, tab and title that are clipped.
QStringList clippedTexts(const QDialog &dialog);

/// Returns whether the name at @p index of the language list is clipped.
bool nameIsClipped(const QDialog &dialog, int index);
