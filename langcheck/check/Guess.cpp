#include "langcheck/check/Guess.h"

#include "lang/LangLine.h"
#include "langcheck/Texts.h"
#include "langcheck/check/Misread.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

/// Returns how many characters have to be inserted, deleted or replaced.
int editDistance(const QString &from, const QString &to)
{
    std::vector<int> row(static_cast<std::size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < from.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t k = 1; k < row.size(); ++k) {
            const int replaced = diagonal + (from.at(i) == to.at(static_cast<int>(k) - 1) ? 0 : 1);
            diagonal = row[k];
            row[k] = std::min({row[k] + 1, row[k - 1] + 1, replaced});
        }
    }
    return row.back();
}

bool isKey(const QString &key)
{
    static LangLineReader reader = [] {
        LangLineReader inSection;
        const QString header = QStringLiteral("[LANG_MGR]");
        inSection.read(header);
        return inSection;
    }();
    const QString line = key + QLatin1Char('=');
    const LangLine::Kind kind = reader.read(line).kind;
    return kind == LangLine::Default || kind >= LangLine::Id;
}

} // namespace

QString plain(const QString &text)
{
    QString result;
    const QVector<uint> codes = text.normalized(QString::NormalizationForm_KC).toUcs4();
    for (const uint code : codes) {
        if (code == ' ' || !isInvisible(code))
            result += QString::fromUcs4(&code, 1);
    }
    return result.trimmed();
}

QString withoutInvisible(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        const bool isNeeded = (c.isSpace() && c != QLatin1Char('\t'))
            || (c.unicode() >= 0x200C && c.unicode() <= 0x200F);
        if (isNeeded || !isInvisible(c.unicode()))
            result += c;
    }
    return result.trimmed();
}

QString nearest(const QString &text, const QStringList &candidates)
{
    const int longest = 100;
    QString result;
    int least = 3;
    for (const QString &candidate : candidates) {
        if (text.size() > longest || candidate.size() > longest)
            continue;
        const int distance = editDistance(text.toCaseFolded(), candidate.toCaseFolded());
        // Very short texts differ in one character at most.
        if (distance < least && 2 * distance < std::max(text.size(), candidate.size())) {
            least = distance;
            result = candidate;
        }
    }
    return result;
}

QString intendedKey(const QString &key)
{
    static const QRegularExpression around(QStringLiteral("^[^\\p{L}]+|[^\\p{L}\\p{N}]+$"));
    QString text = plain(key).remove(QLatin1Char(' ')).toUpper().remove(around);
    static const QRegularExpression number(QStringLiteral("^LANG([0-9LIO]*[0-9LI][0-9LIO]*)_"));
    const QRegularExpressionMatch match = number.match(text);
    if (match.hasMatch()) { // Letters that look like digits
        QString digits = match.captured(1).replace(QLatin1Char('O'), QLatin1Char('0'));
        digits.replace(QRegularExpression(QStringLiteral("[LI]")), QStringLiteral("1"));
        text.replace(match.capturedStart(1), match.capturedLength(1), digits);
    }
    if (isKey(text))
        return text;
    int start = 0;
    while (start < text.size() && !text.at(start).isDigit())
        ++start;
    int end = start;
    while (end < text.size() && text.at(end).isDigit())
        ++end;
    QStringList candidates {QStringLiteral("DEFAULT")};
    if (end > start) {
        const QString prefix = QStringLiteral("LANG") + text.mid(start, end - start);
        for (const char *const field : {"_NAME", "_FOLDER", "_SHOW", "_ID"})
            candidates += prefix + QLatin1String(field);
    }
    for (const QString &candidate : qAsConst(candidates)) {
        if (text.contains(QLatin1Char('_')) && candidate.startsWith(text)) // It was cut off.
            return candidate;
    }
    return nearest(text, candidates);
}

IntendedLine intendedLine(const QString &text)
{
    // Dashes come from word processors, the others from spreadsheets.
    static const QRegularExpression sign(QStringLiteral("[=:;,\uFF1A\uFF1D\u2013\u2014\t]"));
    const int longest = 100;
    IntendedLine result;
    for (int i = text.indexOf(sign); i >= 0 && i < longest; i = text.indexOf(sign, i + 1)) {
        result.key = intendedKey(text.left(i));
        result.sign = i;
        if (!result.key.isEmpty())
            break;
    }
    const int space = text.indexOf(QLatin1Char(' '));
    if (result.key.isEmpty() && space < 0)
        return {intendedKey(text.left(longest)), QStringLiteral("<value>"), -1, {}, false};
    if (result.key.isEmpty() && isKey(text.left(space))) {
        result.key = text.left(space);
        result.sign = space;
    }
    const QString before = text.left(result.sign).trimmed();
    const bool isWhole = withoutQuotes(text) != text && withoutQuotes(before) == before;
    static const QRegularExpression surplus(QStringLiteral("^[^\\p{L}\\p{N}]+"));
    result.surplus = surplus.match(before).captured();
    result.isQuoted = isWhole || withoutQuotes(before) != before;
    result.value =
        text.mid(result.sign + 1, isWhole ? text.size() - result.sign - 2 : -1).trimmed();
    if (result.value.startsWith(QLatin1String("3D"))) // "=" in a quoted-printable mail
        result.value.remove(0, 2);
    result.value = withoutCodes(withoutQuotes(result.value));
    return result;
}

QString withoutQuotes(const QString &value)
{
    static const QString opening =
        QStringLiteral("\"'\u201E\u201C\u201D\u2018\u201A\u00AB\u00BB\u300C");
    static const QString closing = QStringLiteral("\"'\u201C\u201D\u2019\u2018\u00BB\u00AB\u300D");
    if (value.size() < 2 || !opening.contains(value.at(0))
        || !closing.contains(value.at(value.size() - 1)))
        return value;
    return value.mid(1, value.size() - 2).trimmed();
}

QString withoutComment(const QString &value)
{
    // A semicolon at the end of a character reference is part of it.
    static const QRegularExpression reference(QStringLiteral("(&#?[0-9A-Za-z]{2,8});"));
    const QChar placeholder(0xFFFF);
    QString text = QString(value).replace(reference, QStringLiteral("\\1\uFFFF"));
    int end = text.size();
    for (const char *const start : {";", "#", "//"}) {
        const QLatin1String mark(start);
        const bool isLetter = *start == '#'; // As in "C#"
        for (int i = text.indexOf(mark, 1); i > 0; i = text.indexOf(mark, i + 1)) {
            const bool spaceBefore = text.at(i - 1).isSpace();
            const bool spaceAfter = text.mid(i + mark.size(), 1).trimmed().isEmpty();
            const bool atEnd = i + mark.size() == text.size();
            if (spaceBefore || (!isLetter && spaceAfter && (!atEnd || *start == ';')))
                end = std::min(end, i);
        }
    }
    static const QRegularExpression tail(QStringLiteral("[;,\\s]+$")); // From a spreadsheet
    text = text.left(end).remove(tail).trimmed();
    return text.replace(placeholder, QLatin1Char(';'));
}

int intendedNumber(const QString &value)
{
    QString text = plain(value).toUpper();
    text.replace(QRegularExpression(QStringLiteral("^O(?=[0-9])")), QString());
    static const QRegularExpression digits(QStringLiteral("[0-9]+"));
    const QRegularExpressionMatch match = digits.match(text);
    bool ok = false;
    const int number = match.captured().toInt(&ok);
    return ok ? number : -1;
}

bool mixesScripts(const QString &text)
{
    bool latin = false;
    bool similar = false;
    for (const QChar c : text) {
        latin = latin || c.script() == QChar::Script_Latin;
        similar =
            similar || c.script() == QChar::Script_Cyrillic || c.script() == QChar::Script_Greek;
        if (!c.isLetter() && !c.isMark()) { // Another word may be in another script.
            latin = false;
            similar = false;
        }
        if (latin && similar)
            return true;
    }
    return false;
}
