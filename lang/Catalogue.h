#pragma once

/// @file
/// How the bytes of a catalogue become languages. The translator manager reads with these
/// functions, and langcheck looks at the same lines.

#include "lang/LangEntry.h"

#include <QMap>

class QTextCodec;
class QTextStream;

/// Has @p in, just created on a catalogue, decode with @p codec, or with its own default codec if
/// that is null, and skips the BOM of UTF-16LE.
void setCatalogueCodec(QTextStream &in, QTextCodec *codec);

/// Reads @p in to its end: adds the languages that it describes to @p langMap, by their numbers,
/// and sets @p defaultLangId if it names a default. Lines that make no sense are skipped.
void readCatalogue(QTextStream &in, int &defaultLangId, QMap<int, LangEntry> &langMap);
