#pragma once

#include "langcheck/draw/Pictures.h"

/// Returns the report as a page in HTML without scripts and references to other files.
/// There may be fewer pictures than languages.
QByteArray makePage(const Report &report, const StartPictures &start,
                    const QVector<LanguagePictures> &pictures);
