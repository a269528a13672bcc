#pragma once

#include "langcheck/Report.h"

/// Adds to @p report which Qt is next to the host's executable, and what prevents the host or the
/// plug-in from being loaded with it. Does nothing if there is no Qt5Core.dll.
void checkHost(Report &report);
