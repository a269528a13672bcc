#include "langcheck/check/BytesCheck.h"

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

/// Returns the text if the bytes are UTF-8 and not only ASCII; otherwise an empty string.
QString decodedUtf8(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), isAscii);
    return ascii || state.invalidChars > 0 || state.remainingChars > 0 ? QString() : text;
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

QString readAgainAsUtf8(const QString &name)
{
    // The characters of the bytes 0x80 to 0x9F. Windows reads unassigned bytes as controls.
    static const QString upper = QStringLiteral(
        "\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D"
        "\u008F\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D"
        "\u017E\u0178");
    QByteArray bytes;
    for (const QChar c : name) {
        const int index = upper.indexOf(c);
        if (index < 0 && (c.unicode() > 0xFF || (c.unicode() >= 0x80 && c.unicode() < 0xA0)))
            return {};
        bytes += static_cast<char>(index < 0 ? c.unicode() : 0x80 + index);
    }
    return decodedUtf8(bytes);
}

void checkBytesWithoutBom(const QByteArray &bytes, Report &report)
{
    const bool utf8 = !decodedUtf8(bytes).isEmpty();
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
                           {QString::fromLatin1(line.right(1).toHex().toUpper()),
                            utf8
                                ? QStringLiteral("as UTF-8")
                                : QStringLiteral("in the encoding in which all names look right")});
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
