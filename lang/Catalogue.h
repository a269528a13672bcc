#pragma once

/// @file
/// The catalogue reader, which CTranslatorMgr and langcheck share.

#include "lang/LangEntry.h"

#include <QMap>

class QTextCodec;
class QTextStream;

/// Sets the codec of @p in, a new stream at the start of a catalogue, and skips the BOM of
/// UTF-16LE. If @p codec is null, the stream uses its default codec.
void setCatalogueCodec(QTextStream &in, QTextCodec *codec);

/// Reads the catalogue @p in, skipping invalid lines. Adds its languages to @p langMap, by number,
/// and sets @p defaultLangId if there is a DEFAULT.
void readCatalogue(QTextStream &in, int &defaultLangId, QMap<int, LangEntry> &langMap);
