#include "langcheck/check/Guess.h"

#include "lang/LangLine.h"
#include "langcheck/Texts.h"

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
        const bool isNeeded = c.isSpace() || (c.unicode() >= 0x200C && c.unicode() <= 0x200F);
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
        if (distance < least && 2 * distance <= std::min(text.size(), candidate.size())) {
            least = distance;
            result = candidate;
        }
    }
    return result;
}

QString intendedKey(const QString &key)
{
    const QString text = plain(key).remove(QLatin1Char(' ')).toUpper();
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
    return nearest(text, candidates);
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
    int end = value.size();
    for (const char *const start : {";", "#", "//"}) {
        const QLatin1String mark(start);
        const bool isLetter = *start == '#'; // As in "C#"
        for (int i = value.indexOf(mark, 1); i > 0; i = value.indexOf(mark, i + 1)) {
            const bool spaceBefore = value.at(i - 1).isSpace();
            const bool spaceAfter = value.mid(i + mark.size(), 1).trimmed().isEmpty();
            if (spaceBefore || (!isLetter && spaceAfter && i + mark.size() < value.size()))
                end = std::min(end, i);
        }
    }
    return value.left(end).trimmed();
}
