#pragma once

#include "langcheck/Report.h"

#include <QMap>

/// The lines of the catalogue that apply to a language, from 1; 0 where there is none.
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

/// What the checks of a readable catalogue need to know of its lines.
struct CatalogueLines
{
    bool readable = false; ///< If not, all else is empty.
    bool hasSection = false;
    int defaultLine = 0;
    QMap<int, LanguageLines> languages; ///< By number, including hidden ones.
};

/// Returns @p text in quotation marks as a finding shows it: shortened if it is long, and without
/// carriage returns.
QString quoted(const QString &text);

/// Reads the lines of the catalogue below applicationDir() as the plug-in does. Adds to @p report
/// its encoding and the lines that have no effect or a surprising one.
CatalogueLines checkCatalogue(Report &report);
