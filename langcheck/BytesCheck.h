#pragma once

#include "langcheck/Report.h"

#include <QByteArray>
#include <QVector>

/// Whether bytes without a mark are UTF-16 all the same.
bool looksLikeUtf16(const QByteArray &bytes);

/// Adds to @p findings what is wrong with the bytes of a catalogue that has no mark and is
/// therefore read as GB2312.
void checkUnmarkedBytes(const QByteArray &bytes, QList<Finding> &findings);

/// The numbers, from 1, of the lines that come out when the bytes are decoded as GB2312 on this
/// platform: half a character at the end of a line may swallow the end.
QVector<int> unmarkedLineNumbers(const QByteArray &bytes);
