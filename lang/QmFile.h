#pragma once

#include <QByteArray>

/// Whether a compiled translation can be asked for texts. Loading it, Qt checks the lengths of the
/// file's blocks only; what lies in them it believes, and where a length or an offset there is
/// damaged, the first text that is looked up takes it out of the file, or round and round for ever.
/// Bytes that Qt does not load at all may be either. Other files that this one names as its
/// dependencies, which lrelease writes only if told so, are not looked at.
bool isSoundQmFile(const QByteArray &bytes);
