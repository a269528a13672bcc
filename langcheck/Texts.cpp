#include "langcheck/Texts.h"

QString shortened(const QString &text, int most)
{
    return text.size() > most ? text.left(most) + QLatin1String("...") : text;
}

QString quoted(const QString &text)
{
    QString shown = shortened(text, 60);
    return QLatin1Char('"') + shown.replace(QLatin1Char('\r'), QLatin1Char(' ')) + QLatin1Char('"');
}

QString printable(const QString &text, int most)
{
    const QString shown = shortened(text, most);
    QString result;
    result.reserve(shown.size());
    for (int i = 0; i < shown.size(); ++i) {
        const QChar c = shown.at(i);
        const ushort code = c.unicode();
        if (c.isHighSurrogate() && i + 1 < shown.size() && shown.at(i + 1).isLowSurrogate()) {
            const QChar low = shown.at(++i);
            if ((QChar::surrogateToUcs4(c, low) & 0xFFFE) == 0xFFFE)
                result += QChar(QChar::ReplacementCharacter);
            else
                result += QString(c) + low;
        } else if (code < 0x20 && code != '\t' && code != '\n') {
            result += QChar(0x2400 + code);
        } else if (code == 0x7F) {
            result += QChar(0x2421);
        } else if ((code >= 0x80 && code < 0xA0) || c.isSurrogate() || c.isNonCharacter()) {
            result += QChar(QChar::ReplacementCharacter);
        } else {
            result += c;
        }
    }
    return result;
}
