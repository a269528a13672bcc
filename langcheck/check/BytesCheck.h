#pragma once

#include "langcheck/Report.h"

#include <QByteArray>
#include <QVector>

// Checks of the catalogue's bytes.

/// Returns why the bytes aren't text in any encoding; empty if they may be.
QString reasonNotText(const QByteArray &bytes);

/// Returns true if the bytes are probably UTF-16: every second one of most characters is zero.
bool looksLikeUtf16(const QByteArray &bytes);

/// Returns the number of zero bytes at the end, of which a character in @p encoding has none.
int zeroTail(const QByteArray &bytes, const QString &encoding);

/// Adds findings about the encoding of a catalogue without a BOM, which is read as GB2312, to
/// @p report.
void checkBytesWithoutBom(const QByteArray &bytes, Report &report);

/// Returns the numbers, from 1, of the lines that remain after decoding, because half a character
/// at the end of a line may swallow the line end.
QVector<int> lineNumbersWithoutBom(const QByteArray &bytes);

/// Returns what a line of a UTF-16 catalogue was if it was appended in an 8-bit encoding; empty if
/// it wasn't.
QString readAgainAsBytes(const QString &line);

/// Returns what a line of an 8-bit catalogue was if it was appended in UTF-16, up to the first
/// letter that isn't ASCII; empty if it wasn't.
QString readAgainAsUtf16(const QString &line);

/// Returns true if a UTF-16 file was transferred in text mode, which changes line feed bytes.
bool isTransferredAsText(const QByteArray &bytes);
