#pragma once

#include <QByteArray>
#include <QString>

/// The folder Lang below the directory of the test's own executable, as a service engineer would
/// fill it. Everything here fails the whole test run if the disk doesn't cooperate.
namespace Deployment {

/// Path of a file below the application directory.
QString path(const QString &below);

/// Removes the folder Lang.
void clear();

/// The bytes of a text in UTF-16, with no mark but what the text begins with.
QByteArray utf16(const QString &text, bool littleEndian = true);

/// Writes Lang/Lang.ini, byte for byte.
void writeCatalogue(const QByteArray &bytes);

/// Writes Lang/Lang.ini with @p lines below the header [LANG_MGR], UTF-8 with a mark.
void writeLines(const QByteArray &lines);

/// Puts the compiled test translation @p name into Lang/<folder>/Zendel.qm. In "first" and
/// "second" every text is the source text behind "1 " or "2 "; "partial" knows "Change" alone.
void installTranslation(const QString &folder, const QString &name);

/// Writes bytes to Lang/<folder>/Zendel.qm.
void writeTranslation(const QString &folder, const QByteArray &bytes);

/// The usual two languages with their translations: 1 One (default, folder first) and 2 Two
/// (folder second).
void installTwoLanguages();

} // namespace Deployment
