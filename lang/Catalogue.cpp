#include "lang/Catalogue.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/LangLine.h"

#include <QTextCodec>
#include <QTextStream>

void setCatalogueCodec(QTextStream &in, QTextCodec *codec)
{
    in.setCodec(codec);
    if (codec && codec->name() == "UTF-16LE") {
        // The stream may have skipped the BOM already. Anything else is put back.
        QChar bom;
        in >> bom;
        if (bom != QChar(QChar::ByteOrderMark))
            in.seek(0);
    }
}

void readCatalogue(QTextStream &in, int &defaultLangId, QMap<int, LangEntry> &langMap)
{
    // Deliberate: one argument at a time, so that a placeholder in the directory or in a folder's
    // name is replaced too: deployments with such names find their files by this rule.
    const QString pathTemplate = QString(QLatin1String("%1/Lang/%2/%3")).arg(applicationDir());
    LangLineReader reader;
    QString text;
    while (in.readLineInto(&text)) {
        const LangLine line = reader.read(text);
        if (line.kind == LangLine::Default)
            defaultLangId = line.value.toInt();
        if (!line.isLanguageKey())
            continue;

        // Deliberate: each key creates the entry, even ID, whose value is never read, so that a
        // language counts as known, though hidden, as soon as the catalogue has a line for it.
        LangEntry &lang = langMap[line.langId];
        lang.id = line.langId;
        if (line.kind == LangLine::Name) {
            lang.name = line.value.toString();
        } else if (line.kind == LangLine::Folder) {
            lang.folder = line.value.toString();
            lang.qmPath = pathTemplate.arg(lang.folder).arg(kQmFileName);
        } else if (line.kind == LangLine::Show) {
            lang.show = line.value.toInt() == 1;
        }
    }
}
