#pragma once

#include "langcheck/Report.h"

#include <QByteArray>
#include <QVector>

// Checks of a catalogue without a BOM, which is read as GB2312, and of names that were read in the
// wrong encoding before they were saved.

/// Returns true if the bytes are probably UTF-16.
bool looksLikeUtf16(const QByteArray &bytes);

/// Adds findings about the encoding of the bytes to @p report.
void checkBytesWithoutBom(const QByteArray &bytes, Report &report);

/// Returns the numbers, from 1, of the lines that remain after decoding, because half a character
/// at the end of a line may swallow the line end.
QVector<int> lineNumbersWithoutBom(const QByteArray &bytes);

/// Returns what a name was if it is UTF-8 that was read as Windows-1252; empty if it is not.
QString readAgainAsUtf8(const QString &name);
