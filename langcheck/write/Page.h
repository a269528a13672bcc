#pragma once

#include "langcheck/draw/Pictures.h"

/// Returns the report as a page in HTML without scripts and references to other files.
/// @p start is the dialog as it opens at first. There may be fewer pictures than languages.
QByteArray makePage(const Report &report, const QImage &start,
                    const QVector<LanguagePictures> &pictures);
