#pragma once

#include "langcheck/Report.h"

/// Returns the report for people and scripts: what the operator sees, then a line for each finding.
QString toText(const Report &report);

/// Returns the report for a terminal with this number of columns. The findings are grouped by file,
/// with the catalogue's line.
QString toTerminalText(const Report &report, int width, bool colours);

/// Returns a finding in one line.
QString toLine(const Finding &finding);

/// Returns "1 error, 2 warnings".
QString countedFindings(int errors, int warnings);
