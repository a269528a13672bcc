#pragma once

#include "langcheck/Report.h"

#include <QMap>

/// Which lines of the catalogue hold for a language, from 1; 0 where there is none.
struct LanguageLines
{
    int id = 0;
    int name = 0;
    int folder = 0;
    int show = 0;
    bool shown = false;

    int first() const;
};

struct CatalogueLines
{
    bool readable = false; ///< Otherwise there is nothing more to say.
    bool hasSection = false;
    int defaultLine = 0;
    QMap<int, LanguageLines> languages; ///< By number, the hidden ones too.
};

/// Reads the lines of the catalogue below applicationDir() as the plug-in does, and adds to
/// @p report how they are encoded and those that have no effect, or another one than they seem to
/// have.
CatalogueLines checkCatalogue(Report &report);
