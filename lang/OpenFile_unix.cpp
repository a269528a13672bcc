#include "lang/OpenFile.h"

#include <QFile>

#include <sys/stat.h>

bool openForReading(QFile &file)
{
    const QByteArray name = QFile::encodeName(file.fileName());
    struct stat status = {};
    const bool isPipe = stat(name.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
    return !isPipe && file.open(QIODevice::ReadOnly);
}
