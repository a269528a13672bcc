#include "lang/OpenFile.h"

#include <QFile>

bool openForReading(QFile &file)
{
    return file.open(QIODevice::ReadOnly);
}
