#pragma once

#include "langcheck/Report.h"

#include <QJsonObject>

/// Returns the report for programs. The schema is docs/langcheck.schema.json.
QJsonObject toJson(const Report &report);
