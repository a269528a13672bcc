#pragma once

#include "langcheck/Report.h"

#include <QHash>
#include <QMap>
#include <QSet>

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
    bool tooLong = false; ///< One of its keys has a number that is too long, so it is language 0.

    /// Returns the number of the first line; 0 if there is none.
    int first() const;
};

/// What the later checks need to know about the catalogue's lines.
struct CatalogueLines
{
    bool readable = false; ///< Whether it could be read as lines. If false, the rest is empty.
    bool hasSection = false;
    CatalogueKey defaultKey;
    QSet<QString> keys; ///< Those in the section that the plug-in knows, such as "LANG3_NAME"
    QMap<int, LanguageLines> languages; ///< By number, including hidden ones.
    QHash<int, QString> texts;          ///< Those with findings or keys, by line number.
    /// Indexes of findings about a key, and of those about a line that was probably meant to be it.
    QHash<QString, int> findings;

    /// Remembers that the latest finding is the reason why @p key is missing or wrong.
    void addReason(const QString &key, Report &report);
};

/// Checks the lines of the catalogue below applicationDir(), read as the plug-in does. Adds the
/// encoding and the findings to @p report.
CatalogueLines checkCatalogue(Report &report);
