#pragma once

#include "langcheck/check/CatalogueCheck.h"

/// Checks the folders and translations of the listed languages and of the default, and the
/// fallback. To be called while the deployment is loaded; leaves another translation in the
/// plug-in's translator.
void checkTranslations(Report &report, const CatalogueLines &lines);
