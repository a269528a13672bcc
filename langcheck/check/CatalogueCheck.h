#pragma once

#include "langcheck/Report.h"

#include <QHash>
#include <QMap>

/// A key of the catalogue. Of a repeated key, the last line applies.
struct CatalogueKey
{
    int line = 0; ///< From 1; 0 if the key is missing.
    QString value;
};

/// The keys of a language.
struct LanguageLines
{
    CatalogueKey id;
    CatalogueKey name;
    CatalogueKey folder;
    CatalogueKey show;
    bool shown = false;

    /// Returns the number of the first line; 0 if there is none.
    int first() const;
};

/// What the later checks need to know about the catalogue's lines.
struct CatalogueLines
{
    bool readable = false; ///< If false, everything else is empty.
    bool hasSection = false;
    CatalogueKey defaultKey;
    QMap<int, LanguageLines> languages; ///< By number, including hidden ones.
    QHash<int, QString> texts;          ///< Those with findings or keys, by line number.
};

/// Checks the lines of the catalogue below applicationDir(), read as the plug-in does. Adds the
/// encoding and the findings to @p report.
CatalogueLines checkCatalogue(Report &report);
