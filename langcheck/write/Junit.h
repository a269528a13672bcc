#pragma once

#include "langcheck/Report.h"

/// Returns the reports as JUnit XML, for build servers: a suite for each report, and a test for
/// each file, which fails if there is an error in it.
QByteArray toJunit(const QVector<Report> &reports);
