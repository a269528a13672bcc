#include "langcheck/Texts.h"

namespace {

QString codePoint(uint code)
{
    return QStringLiteral("U+%1").arg(QString::number(code, 16).toUpper(), 4, QLatin1Char('0'));
}

/// Returns the text in quotation marks, followed by the code points of the characters for which
/// @p isNamed returns true.
QString withCodePoints(const QString &text, bool (*isNamed)(uint))
{
    const int most = 60;
    QString shown = shortened(text, most);
    QStringList codes;
    const QVector<uint> all = shown.toUcs4();
    for (const uint code : all) {
        if (isNamed(code) && !codes.contains(codePoint(code)))
            codes += codePoint(code);
    }
    shown.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    QString result = QLatin1Char('"') + shown + QLatin1Char('"');
    const int mostCodes = 20;
    if (!codes.isEmpty() && codes.size() <= mostCodes)
        result += QStringLiteral(" (with %1)").arg(codes.join(QStringLiteral(", ")));
    return result;
}

/// Returns true for a character that changes the direction of others or may end a line.
bool isTreacherous(ushort code)
{
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069)
        || code == 0x2028 || code == 0x2029 || code == 0x200B || code == 0xFEFF;
}

} // namespace

QString shortened(const QString &text, int most)
{
    return text.size() > most ? text.left(most) + QLatin1String("...") : text;
}

bool isInvisible(uint code)
{
    const QChar::Category category = QChar::category(code);
    return category == QChar::Other_Format || category == QChar::Other_Control
        || (category >= QChar::Separator_Space && category <= QChar::Separator_Paragraph)
        || code == 0x115F || code == 0x1160 || code == 0x3164 || code == 0xFFA0; // Hangul fillers
}

QString quoted(const QString &text)
{
    return withCodePoints(text, [](uint code) {
        const bool fullWidth = code >= 0xFF01 && code <= 0xFF5E;
        // Joiners are part of names in some scripts.
        return code >= 0x80 && code != 0x200C && code != 0x200D && (fullWidth || isInvisible(code));
    });
}

QString quotedAscii(const QString &text)
{
    return withCodePoints(text, [](uint code) { return code >= 0x80; });
}

QString linesText(const QVector<int> &lines)
{
    QStringList ranges;
    for (int i = 0; i < lines.size();) {
        int last = i;
        while (last + 1 < lines.size() && lines.at(last + 1) == lines.at(last) + 1)
            ++last;
        if (last - i > 1) {
            ranges += QStringLiteral("%1 to %2").arg(lines.at(i)).arg(lines.at(last));
        } else {
            for (int k = i; k <= last; ++k)
                ranges += QString::number(lines.at(k));
        }
        i = last + 1;
    }
    const int most = 40;
    if (ranges.size() > most)
        ranges = ranges.mid(0, most) + QStringList {QStringLiteral("others")};
    const QString end = ranges.takeLast();
    const QString start = ranges.join(QStringLiteral(", "));
    return QLatin1String(lines.size() == 1 ? "line " : "lines ") + start
        + QLatin1String(start.isEmpty() ? "" : " and ") + end;
}

QString withValues(const char *text, const QStringList &values, const QString &zero)
{
    QString result;
    for (const char *c = text; *c != '\0'; ++c) {
        if (*c != '%')
            result += QLatin1Char(*c);
        else if (*++c == '0')
            result += zero;
        else
            result += values.at(*c - '1');
    }
    return result;
}

QStringList partsOf(const QString &text, QChar separator)
{
    QStringList result;
    int start = 0;
    for (int end = text.indexOf(separator); end >= 0; end = text.indexOf(separator, start)) {
        result += text.mid(start, end - start);
        start = end + 1;
    }
    return result + QStringList {text.mid(start)};
}

QString countText(int number, const char *noun)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(noun)
        + QLatin1String(number == 1 ? "" : "s");
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
        } else if (isTreacherous(code)) {
            result += QLatin1Char('<') + codePoint(code) + QLatin1Char('>');
        } else {
            result += c;
        }
    }
    return result;
}
