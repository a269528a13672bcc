#include "lang/ApplicationDir.h"

#include <QCoreApplication>

QString applicationDir()
{
    return QCoreApplication::applicationDirPath();
}
