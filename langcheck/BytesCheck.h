#pragma once

#include "langcheck/Report.h"

#include <QByteArray>
#include <QVector>

// Checks of a catalogue without a BOM, which is read as GB2312.

/// Returns true if the bytes are probably UTF-16.
bool looksLikeUtf16(const QByteArray &bytes);

/// Adds findings about the encoding of the bytes to @p report.
void checkBytesWithoutBom(const QByteArray &bytes, Report &report);

/// Returns the numbers, from 1, of the lines that remain after decoding, because half a character
/// at the end of a line may swallow the line end.
QVector<int> lineNumbersWithoutBom(const QByteArray &bytes);
