#pragma once

#include "langcheck/draw/Pictures.h"

// Each function writes files as a whole or not at all. It returns which file can't be written and
// why; empty if all were.

QString writePage(const QString &path, const QByteArray &page);

/// Writes the picture of a language.
QString writePicture(const QString &folder, const LanguagePictures &pictures);

/// Writes a picture of all languages.
QString writeSheet(const QString &folder, const QVector<LanguagePictures> &all);

/// Writes the page as langcheck.html into the user's temporary folder and opens it in the browser.
QString openPage(const QByteArray &page);
