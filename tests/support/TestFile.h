#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QString>

/// Returns the path of a file that a test needs, from one relative to the test program's folder.
/// The build and the self-test package have the same layout.
inline QString testFile(const QString &relativePath)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/')
                           + relativePath);
}
