#pragma once

#include "langcheck/Report.h"

#include <QJsonObject>

/// Returns the report for programs.
QJsonObject toJson(const Report &report);
