#pragma once

#include "langcheck/draw/Pictures.h"

#include <functional>

// Each function writes files as a whole or not at all. It returns which file can't be written and
// why; empty if all were.

QString writeFile(const QString &path, const QByteArray &bytes);

/// Creates the folder if necessary, writes a picture of each language and one of all, and removes
/// the other pictures that an earlier call wrote there. Calls @p progress with the number written
/// and the total after each language.
QString writePictures(const QString &folder, const QVector<LanguagePictures> &all,
                      const std::function<void(int, int)> &progress = {});

/// Writes the page as langcheck.html into the user's temporary folder and opens it in the browser.
QString openPage(const QByteArray &page);
