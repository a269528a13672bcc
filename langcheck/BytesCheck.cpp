#include "langcheck/BytesCheck.h"

#include <QTextCodec>

#include <algorithm>

namespace {

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

bool isHalfOfGb2312(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0xA1 && code <= 0xFE;
}

bool looksLikeUtf8(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return !std::all_of(bytes.begin(), bytes.end(), isAscii) && state.invalidChars == 0
        && state.remainingChars == 0;
}

/// What GB2312 makes of a line, without its end.
struct Decoding
{
    bool invalid = false; ///< It holds a byte that is no half of a character, or one half alone.
    bool endsInHalf = false;
};

Decoding decode(const QByteArray &line)
{
    Decoding result;
    for (int i = 0; i < line.size(); ++i) {
        if (isAscii(line.at(i)))
            continue;
        const bool last = i + 1 == line.size();
        if (isHalfOfGb2312(line.at(i)) && (last || isHalfOfGb2312(line.at(i + 1)))) {
            result.endsInHalf = last;
            result.invalid = result.invalid || last;
            ++i;
        } else {
            result.invalid = true;
        }
    }
    return result;
}

/// The table of Qt takes the second half for granted, that of ICU looks at it first.
bool lineEndsAreSwallowed()
{
    const QTextCodec *const codec = QTextCodec::codecForName("GB2312");
    return codec && !codec->toUnicode("\xD6\n").contains(QLatin1Char('\n'));
}

} // namespace

bool looksLikeUtf16(const QByteArray &bytes)
{
    return bytes.count('\0') > bytes.size() / 4;
}

void checkUnmarkedBytes(const QByteArray &bytes, QList<Finding> &findings)
{
    const auto add = [&findings](int line, Finding::Severity severity, const char *kind,
                                 const QString &text) {
        findings.append(
            {QStringLiteral("Lang/Lang.ini"), line, severity, QLatin1String(kind), text});
    };
    const bool utf8 = looksLikeUtf8(bytes);
    bool onlyComments = true;
    int number = 0;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines) {
        ++number;
        const QByteArray trimmed = line.trimmed();
        const bool comment = trimmed.startsWith(';') || trimmed.startsWith('#');
        const Decoding decoding = decode(line);
        onlyComments = onlyComments && (comment || std::all_of(line.begin(), line.end(), isAscii));
        if (decoding.endsInHalf && number < lines.size()) {
            add(number, Finding::Error, "swallowed-line",
                QStringLiteral("ends in half a character, which swallows the end of the line: the "
                               "next line is lost; save the file as UTF-8 or UTF-16 with a mark"));
        } else if (decoding.invalid && !utf8) {
            add(number, comment ? Finding::Warning : Finding::Error, "undecodable",
                QStringLiteral("holds bytes that are no GB2312, as which a file without a mark is "
                               "read; save the file as UTF-8 or UTF-16 with a mark"));
        }
    }
    if (utf8) {
        add(0, onlyComments ? Finding::Warning : Finding::Error, "utf8-without-mark",
            QStringLiteral("looks like UTF-8 but has no mark, so it is read as GB2312, and all but "
                           "English letters %1; save it with its mark (\"UTF-8 with BOM\")")
                .arg(onlyComments ? QStringLiteral("would be wrong, though only comments have any")
                                  : QStringLiteral("are wrong")));
    }
}

QVector<int> unmarkedLineNumbers(const QByteArray &bytes)
{
    const bool swallowed = lineEndsAreSwallowed();
    QVector<int> result;
    bool joined = false;
    int number = 0;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines) {
        ++number;
        if (!joined)
            result += number;
        joined = swallowed && decode(line).endsInHalf;
    }
    return result;
}
