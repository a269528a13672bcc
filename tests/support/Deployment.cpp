#include "support/Deployment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

void writeFile(const QString &fileName, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(fileName).path());
    // Qt may have mapped the old file into memory.
    QFile::remove(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(fileName));
}

} // namespace

namespace Deployment {

QString path(const QString &below)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + below;
}

void clear()
{
    if (!QDir(path(QStringLiteral("Lang"))).removeRecursively())
        qFatal("Can't remove %s", qPrintable(path(QStringLiteral("Lang"))));
}

QByteArray utf16(const QString &text, bool littleEndian)
{
    QByteArray bytes;
    for (const QChar c : text) {
        const char low = static_cast<char>(c.cell());
        const char high = static_cast<char>(c.row());
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    }
    return bytes;
}

void writeCatalogue(const QByteArray &bytes)
{
    writeFile(path(QStringLiteral("Lang/Lang.ini")), bytes);
}

void writeLines(const QByteArray &lines)
{
    writeCatalogue("\xEF\xBB\xBF[LANG_MGR]\r\n" + lines);
}

void installTranslation(const QString &folder, const QString &name)
{
    QFile compiled(QStringLiteral(":/translations/%1.qm").arg(name));
    if (!compiled.open(QIODevice::ReadOnly))
        qFatal("No test translation %s", qPrintable(name));
    writeTranslation(folder, compiled.readAll());
}

void writeTranslation(const QString &folder, const QByteArray &bytes)
{
    writeFile(path(QStringLiteral("Lang/%1/Zendel.qm").arg(folder)), bytes);
}

void installTwoLanguages()
{
    writeLines("DEFAULT=1\r\n"
               "LANG1_NAME=One\r\nLANG1_FOLDER=first\r\nLANG1_SHOW=1\r\n"
               "LANG2_NAME=Two\r\nLANG2_FOLDER=second\r\nLANG2_SHOW=1\r\n");
    installTranslation(QStringLiteral("first"), QStringLiteral("first"));
    installTranslation(QStringLiteral("second"), QStringLiteral("second"));
}

} // namespace Deployment
