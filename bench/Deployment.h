#pragma once

#include <QByteArray>
#include <QString>

/// Makes a folder Lang with a catalogue of @p languages languages, numbered from 1, all shown, the
/// last one the default and the only one with a translation, and has the plug-in read that one
/// from now on. Each is made once and lasts until the program ends.
/// @p encoding is one of those that the reader knows; where it has a mark, the file has it.
/// Returns the path of the catalogue, or nothing if it cannot be written.
QString useDeployment(int languages, const QByteArray &encoding = "UTF-8");
