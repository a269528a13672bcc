#pragma once

class QFile;

/// Opens @p file for reading only, untranslated, and returns whether that succeeded. Never waits
/// for another program: on Unix, a named pipe is refused, since opening one blocks until somebody
/// opens its other end. One source file per platform implements it.
bool openForReading(QFile &file);
