#pragma once

#include "langcheck/check/CatalogueCheck.h"

/// Checks the languages that the plug-in has read from the catalogue @p lines: which are offered,
/// under which numbers and names, and the default. Lists the hidden ones. To be called while the
/// deployment is loaded.
void checkLanguages(Report &report, CatalogueLines &lines);

/// Returns what the plug-in does if a dialog's own translation doesn't exist, for the end of a
/// sentence about that dialog.
QString fallbackEffect(const Report &report);

/// Returns a key of a language, such as "LANG3_NAME".
QString languageKey(int number, const char *field);
