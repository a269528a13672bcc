#pragma once

#include "langcheck/Report.h"

/// Returns the report for people: what the operator sees, then a line for each finding.
QString toText(const Report &report);
