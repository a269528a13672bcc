#pragma once

#include "langcheck/Report.h"

/// Checks the deployment below @p applicationDir, an absolute path with forward slashes and none at
/// the end, as the plug-in sees it in a host in that folder. Needs a QApplication, but not a
/// display; writes nothing.
Report checkDeployment(const QString &applicationDir);
