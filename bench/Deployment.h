#pragma once

#include <QByteArray>
#include <QString>

/// Makes applicationDir() return a folder whose catalogue has @p languages shown languages,
/// numbered from 1. Only the last one, which is the default, has a translation. The first call with
/// these arguments writes the catalogue in @p encoding, with the encoding's BOM if it has one.
/// Returns the path of the catalogue, or an empty string if it can't be written.
QString useDeployment(int languages, const QByteArray &encoding = "UTF-8");
