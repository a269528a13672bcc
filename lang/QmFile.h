#pragma once

class QString;
class QTranslator;

/// Loads the compiled translation @p fileName with QTranslator::load(). Returns true if Qt can then
/// look up each text of the plug-in; otherwise leaves @p translator empty. Throws nothing.
///
/// QTranslator::load() checks block lengths only, so a damaged file can make the first look-up
/// crash or never return. It also follows dependencies without end. A file that Qt loads is
/// rejected only for that, or if Qt runs out of memory.
///
/// "Without end" means more than 500 files loaded, counting each time: Qt uses up to 700 bytes of
/// the stack for each file in a chain, and a GUI thread on Windows has 1 MB. "Never" means more
/// than 300,000 reads plus one for every 4 bytes loaded; files written by tools never need that
/// many.
bool loadQmFile(QTranslator &translator, const QString &fileName);

/// Returns the file from which QTranslator::load() has loaded @p fileName, an absolute path: Qt
/// adds the suffix ".qm", or leaves out the end, if only then there is a file.
QString findQmFile(const QString &fileName);
