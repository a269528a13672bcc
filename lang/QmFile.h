#pragma once

class QString;
class QTranslator;

/// Loads the compiled translation @p fileName with QTranslator::load(). Returns true if Qt can then
/// look up each text of the plug-in; otherwise leaves @p translator empty.
///
/// QTranslator::load() checks block lengths only, so a damaged file can make the first look-up
/// crash or never return. A file that Qt loads is rejected only for that, or if it is 2 GB or
/// larger. Damage elsewhere in the file does not matter. "Never" means more than 150,000 steps plus
/// one for every 8 bytes; files written by tools never need that many.
bool loadQmFile(QTranslator &translator, const QString &fileName);

/// Returns the file from which QTranslator::load() has loaded @p fileName, an absolute path: Qt
/// adds the suffix ".qm", or leaves out the end, if only then there is a file.
QString findQmFile(const QString &fileName);
