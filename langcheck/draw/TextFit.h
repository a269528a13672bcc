#pragma once

#include "lang/SourceTexts.h"

#include <QGlyphRun>
#include <QRect>
#include <QString>
#include <QVector>

class QDialog;
class QWidget;

// Finds texts that are too large for the settings dialog's widgets in this application's fonts and
// style. Message boxes are left out because they grow with their text.

/// The height that the space for a window's title is assumed to have.
inline constexpr int kTitleBarHeight = 30;

/// A text in a window.
struct ShownText
{
    QString text;
    QRect space; ///< In the window's coordinates. A title is above the window.
    bool clipped = false;
    bool tooTall = false; ///< Whether it is not too wide. Only in the dialog, as what follows.
    int size = 0;         ///< The width that it needs, or height if it is too tall, in pixels.
    int room = 0;         ///< The width or height that it may have.
    SourceText source = {nullptr,
                         nullptr}; ///< The English text. Only for texts that are translated.
};

/// Returns the dialog's texts: those of the label, button, tab and title.
QVector<ShownText> dialogTexts(const QDialog &dialog);

/// Returns the clipped ones among these texts.
QVector<ShownText> clippedTexts(const QDialog &dialog);

/// Returns the name at @p index of the language list.
ShownText languageName(const QDialog &dialog, int index);

/// Returns the glyphs with which the widget shows @p text.
QList<QGlyphRun> glyphRuns(const QWidget &widget, const QString &text);
