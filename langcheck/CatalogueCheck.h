#pragma once

#include "langcheck/Report.h"

#include <QHash>
#include <QMap>

/// The line numbers of a language's keys, from 1; 0 if the key is missing.
struct LanguageLines
{
    int id = 0;
    int name = 0;
    int folder = 0;
    int show = 0;
    bool hasName = false;
    bool hasFolder = false;
    bool shown = false;

    int first() const;
};

/// What the later checks need to know about the catalogue's lines.
struct CatalogueLines
{
    bool readable = false; ///< If false, everything else is empty.
    bool hasSection = false;
    int defaultLine = 0;
    QMap<int, LanguageLines> languages; ///< By number, including hidden ones.
    QHash<int, QString> texts;          ///< Those with findings or keys, by line number.
};

/// Returns @p text, cut off if it has more than @p most characters.
QString shortened(const QString &text, int most);

/// Returns @p text in quotation marks, shortened if it is long, and without carriage returns.
QString quoted(const QString &text);

/// Checks the lines of the catalogue below applicationDir(), read as the plug-in does. Adds the
/// encoding and the findings to @p report.
CatalogueLines checkCatalogue(Report &report);
