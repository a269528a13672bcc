#pragma once

#include "lang/LangEntry.h"

#include <QByteArray>
#include <QList>
#include <QMap>

/// An encoding of catalogues.
struct CatalogueEncoding
{
    QByteArray bom;
    const char *codec;
    QByteArray lineFeed;
};

/// Returns the encoding in which the catalogue's bytes are read.
const CatalogueEncoding &catalogueEncoding(const QByteArray &file);

/// The contents of a catalogue, read by an independent implementation of the rules.
struct CatalogueModel
{
    int defaultId = 0;
    QMap<int, LangEntry> records;
    QList<LangEntry> visible; ///< Those that the operator is offered
};

/// Reads the catalogue's bytes. The paths of the translations begin with @p applicationDir.
CatalogueModel readCatalogue(const QByteArray &file, const QString &applicationDir);
