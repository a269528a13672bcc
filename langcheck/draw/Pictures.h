#pragma once

#include "langcheck/Report.h"
#include "langcheck/draw/TextFit.h"

#include <QImage>
#include <QVector>

#include <functional>

/// What the operator sees after a change to one of the languages.
struct LanguagePictures
{
    LangEntry language;
    QString translation;   ///< The file that is loaded; empty for none.
    bool fallback = false; ///< Whether the language's own file does not exist.
    QString tag;           ///< The language as in HTML, if the translation names it.
    QStringList texts;     ///< In the order of kSourceTexts; empty if missing.
    QStringList fonts;     ///< The fonts that show them.
    QImage dialog;         ///< Without the empty lower part.
    QImage success;        ///< The message box after a change that succeeded.
    QImage failure;        ///< The message box after one that failed.
};

/// What the operator sees first.
struct StartPictures
{
    QImage dialog;    ///< As it opens, without the empty lower part.
    QImage list;      ///< The opened list; null if it is empty.
    int firstRow = 0; ///< The index of the first language in that picture.
    int rows = 0;     ///< How many languages are in it. The list scrolls to the others.
};

/// Draws the dialog as it opens at first. Nothing appears on the screen.
StartPictures drawStart(const Report &report);

/// Loads the translation of each language of the list, or the fallback if it is missing, and draws
/// the plug-in's own dialog and message boxes. Nothing appears on the screen. Draws at most 256, as
/// many as the machine can tell apart, and calls @p progress with the number drawn and the total
/// after each.
QVector<LanguagePictures> drawLanguages(const Report &report,
                                        const std::function<void(int, int)> &progress = {});

/// Returns one picture with the dialog and the message boxes.
QImage combined(const LanguagePictures &pictures);

/// Returns one picture with all of them.
QImage sheet(const QVector<LanguagePictures> &all);

/// Returns the contents of a PNG file.
QByteArray toPng(const QImage &image);
