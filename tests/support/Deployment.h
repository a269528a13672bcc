#pragma once

#include <QByteArray>
#include <QString>

/// The folder Lang next to the test's executable, as a service engineer would fill it. Any failure
/// aborts the test program.
namespace Deployment {

/// Returns the path of a file below the application directory.
QString path(const QString &below);

/// Removes the folder Lang.
void clear();

/// Returns a string in UTF-16, with a BOM only if the string starts with one.
QByteArray utf16(const QString &text, bool littleEndian = true);

/// Writes Lang/Lang.ini, byte for byte.
void writeCatalogue(const QByteArray &bytes);

/// Writes Lang/Lang.ini as UTF-8 with BOM: the header [LANG_MGR] and then @p lines.
void writeLines(const QByteArray &lines);

/// Writes the compiled test translation @p name to Lang/<folder>/Zendel.qm. "first" and "second"
/// prefix each text with "1 " or "2 "; "partial" contains only "Change".
void installTranslation(const QString &folder, const QString &name);

/// Writes bytes to Lang/<folder>/Zendel.qm.
void writeTranslation(const QString &folder, const QByteArray &bytes);

/// Writes a catalogue and translations of two languages: 1, "One" (the default, in the folder
/// first), and 2, "Two" (in the folder second).
void installTwoLanguages();

} // namespace Deployment
