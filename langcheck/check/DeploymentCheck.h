#pragma once

#include "langcheck/Report.h"

/// Checks the deployment as the plug-in sees it in a host in @p applicationDir, an absolute path
/// with forward slashes and none at the end. Needs a QApplication, but not a display. Writes
/// nothing.
Report checkDeployment(const QString &applicationDir);
