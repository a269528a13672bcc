#pragma once

class QFile;

/// Opens @p file for reading, in binary mode. Returns false if that fails or if it is a named pipe
/// on Unix, where opening would block until another program opens the other end.
bool openForReading(QFile &file);
