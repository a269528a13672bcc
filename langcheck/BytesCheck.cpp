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

/// The result of decoding a line, without its line end, as GB2312.
struct Decoding
{
    bool invalid = false; ///< A byte is not part of a character, or half of one is missing.
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

/// Returns true for Qt's own codec, which accepts any second half of a character, unlike ICU's.
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

void checkBytesWithoutBom(const QByteArray &bytes, Report &report)
{
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
            report.addLine(FindingKind::SwallowedLine, number,
                           {QString::fromLatin1(line.right(1).toHex().toUpper())});
        } else if (decoding.invalid && !utf8) {
            Finding &finding =
                report.addLine(FindingKind::Undecodable, number, {QStringLiteral("GB2312")});
            if (comment) // The operator does not see it.
                finding.severity = Finding::Warning;
        }
    }
    if (utf8) {
        Finding &finding = report.addLine(FindingKind::Utf8WithoutBom, 0);
        if (onlyComments) // The operator does not see the wrong characters.
            finding.severity = Finding::Warning;
    }
}

QVector<int> lineNumbersWithoutBom(const QByteArray &bytes)
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
