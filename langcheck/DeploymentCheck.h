#pragma once

#include "langcheck/Report.h"

/// Looks at the deployment below @p applicationDir, an absolute path with forward slashes and none
/// at the end, as the plug-in would in a host that lies there. Needs a QApplication, but no
/// display; writes nothing.
Report checkDeployment(const QString &applicationDir);
