#include "lang/LangLine.h"

#include <QRegularExpression>

LangLine LangLine::read(const QString &text, QString &currentSection)
{
    LangLine result;
    const QStringRef line = QStringRef(&text).trimmed();
    if (line.isEmpty())
        return result;
    if (line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'))) {
        result.kind = Comment;
        return result;
    }
    if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
        result.kind = Header;
        result.key = line.mid(1, line.size() - 2);
        currentSection = result.key.toString();
        return result;
    }

    const bool inLangMgr = currentSection == QLatin1String("LANG_MGR");
    if (!inLangMgr) {
        result.kind = Outside;
        return result;
    }

    const int equals = line.indexOf(QLatin1Char('='));
    if (equals <= 0) {
        result.kind = NoKey;
        return result;
    }
    result.key = line.left(equals).trimmed();
    result.value = line.mid(equals + 1).trimmed();

    if (result.key == QLatin1String("DEFAULT")) {
        result.kind = Default;
        return result;
    }
    static const QRegularExpression pattern(QLatin1String("^LANG(\\d+)_(ID|NAME|FOLDER|SHOW)$"));
    const QRegularExpressionMatch match = pattern.match(result.key);
    if (!match.hasMatch()) {
        result.kind = OtherKey;
        return result;
    }
    result.langId = match.capturedRef(1).toInt();
    const QStringRef field = match.capturedRef(2);
    if (field == QLatin1String("NAME"))
        result.kind = Name;
    else if (field == QLatin1String("FOLDER"))
        result.kind = Folder;
    else if (field == QLatin1String("SHOW"))
        result.kind = Show;
    else
        result.kind = Id;
    return result;
}
