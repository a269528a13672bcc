#pragma once

#include "langcheck/Report.h"

/// Makes the plug-in's own code use a deployment: while it exists, applicationDir() returns the
/// deployment's folder, and the plug-in's manager has its catalogue. There is one at a time.
class Deployment
{
public:
    /// Loads the deployment below @p applicationDir, an absolute path with forward slashes and none
    /// at the end, as the plug-in does in a host there.
    explicit Deployment(const QString &applicationDir);
    ~Deployment();
    Q_DISABLE_COPY(Deployment)

    /// Returns the message boxes that the operator sees meanwhile, in order.
    const QList<Box> &boxes() const { return m_boxes; }

private:
    QList<Box> m_boxes;
};

/// Returns the path of the fallback translation.
QString fallbackPath(const QString &applicationDir);
