#include "langcheck/Translation.h"

#include "lang/CTranslatorMgr.h"
#include "lang/QmFile.h"

#include <QDataStream>
#include <QFile>

namespace {

QString readLanguage(const QString &fileName)
{
    const int magicLength = 16;
    const quint8 languageTag = 0xa7;

    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(magicLength))
        return {};
    QDataStream stream(&file);
    QString language;
    for (;;) {
        quint8 tag = 0;
        QByteArray block;
        stream >> tag >> block;
        if (tag == 0 || block.isEmpty())
            return language;
        if (tag == languageTag)
            language = QString::fromUtf8(block);
    }
}

} // namespace

std::optional<Translation> loadTranslation(const QString &fileName)
{
    if (!loadQmFile(*CTranslatorMgr::instance()->translator(), fileName))
        return {};
    const QString found = findQmFile(fileName);
    return Translation {found, readLanguage(found)};
}
