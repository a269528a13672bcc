#include "lang/LangLine.h"

LangLine LangLineReader::read(const QString &text)
{
    LangLine result;
    const QStringRef line = QStringRef(&text).trimmed();
    if (line.isEmpty())
        return result;
    if (line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'))) {
        result.kind = LangLine::Comment;
        return result;
    }
    if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
        result.kind = LangLine::Header;
        result.key = line.mid(1, line.size() - 2);
        m_currentSection = result.key.toString();
        return result;
    }

    if (m_currentSection != QLatin1String("LANG_MGR")) {
        result.kind = LangLine::Outside;
        return result;
    }

    const int equals = line.indexOf(QLatin1Char('='));
    if (equals <= 0) {
        result.kind = LangLine::NoKey;
        return result;
    }
    result.key = line.left(equals).trimmed();
    result.value = line.mid(equals + 1).trimmed();

    if (result.key == QLatin1String("DEFAULT")) {
        result.kind = LangLine::Default;
        return result;
    }
    const QRegularExpressionMatch match = m_languageKey.match(result.key);
    if (!match.hasMatch()) {
        result.kind = LangLine::OtherKey;
        return result;
    }
    // Deliberate: a number with too many digits counts as 0, as in DEFAULT, because deployed
    // catalogues rely on each line always being read in the same way.
    result.langId = match.capturedRef(1).toInt();
    const QStringRef field = match.capturedRef(2);
    if (field == QLatin1String("NAME"))
        result.kind = LangLine::Name;
    else if (field == QLatin1String("FOLDER"))
        result.kind = LangLine::Folder;
    else if (field == QLatin1String("SHOW"))
        result.kind = LangLine::Show;
    else
        result.kind = LangLine::Id;
    return result;
}
