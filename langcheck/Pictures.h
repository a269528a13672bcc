#pragma once

#include "langcheck/Report.h"
#include "langcheck/TextFit.h"

#include <QImage>

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

/// Returns a picture of the dialog as it opens at first, without the empty lower part. The
/// catalogue must be the one that checkDeployment() has loaded for @p report.
QImage drawStart(const Report &report);

/// Loads the translation of the language at @p index of the list, or the fallback if it is missing,
/// and draws the plug-in's own dialog and message boxes. Nothing appears on the screen. The
/// catalogue must be the one that checkDeployment() has loaded.
LanguagePictures drawLanguage(const LangEntry &language, int index);

/// Returns one picture with the dialog and the message boxes.
QImage combined(const LanguagePictures &pictures);

/// Returns one picture with all of them.
QImage sheet(const QVector<LanguagePictures> &all);

/// Returns the contents of a PNG file.
QByteArray toPng(const QImage &image);
