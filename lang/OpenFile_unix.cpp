#include "lang/OpenFile.h"

#include <QFile>

#include <sys/stat.h>

bool openForReading(QFile &file)
{
    struct stat status = {};
    const bool isPipe = stat(QFile::encodeName(file.fileName()).constData(), &status) == 0
        && S_ISFIFO(status.st_mode);
    return !isPipe && file.open(QIODevice::ReadOnly);
}
