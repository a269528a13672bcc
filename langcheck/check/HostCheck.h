#pragma once

#include "langcheck/Report.h"

/// Adds to @p report which Qt is next to the host's executable, what prevents the host from
/// starting or the plug-in from being loaded, and which files were checked.
void checkHost(Report &report);
