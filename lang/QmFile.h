#pragma once

class QString;
class QTranslator;

/// Loads the compiled translation @p fileName into @p translator by QTranslator::load(), and
/// returns true if every text of the plug-in can then be looked up. Otherwise leaves the translator
/// empty.
///
/// QTranslator::load() checks the lengths of a file's blocks and trusts what is inside them, so a
/// damaged file can make the first look-up crash or never return. A file that Qt loads is refused
/// only for that reason, where "never" is more than 150,000 steps and one for every 8 bytes: no
/// tool writes a file that needs so many. Files of 2 GB and more are refused as well. Damage to
/// texts of other programs does not matter.
bool loadQmFile(QTranslator &translator, const QString &fileName);
