#pragma once

#include <QStringList>

class QDialog;

// Finds texts that are too large for the settings dialog's widgets in this application's fonts and
// style. Message boxes are left out because they grow with their text.

/// Returns the clipped texts among those of the label, button, tab and title.
QStringList clippedTexts(const QDialog &dialog);

/// Returns true if the name at @p index of the language list is clipped.
bool nameIsClipped(const QDialog &dialog, int index);
