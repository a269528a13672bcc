#pragma once

#include "langcheck/Report.h"

/// Adds to @p report which Qt is next to the host's executable, and what prevents the host from
/// starting or the plug-in from being loaded. Does nothing if there is no Qt5Core.dll.
void checkHost(Report &report);
