#include "langcheck/check/BytesCheck.h"

#include "langcheck/Texts.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>
#include <cctype>

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

QString reasonNotText(const QByteArray &bytes)
{
    if (bytes.startsWith("{\\rtf"))
        return QStringLiteral("it is a Rich Text document");
    if (!bytes.isEmpty() && bytes.count('\0') == bytes.size())
        return QStringLiteral("it contains only zero bytes");
    const auto isControl = [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return (code < 0x20 && code != '\0' && !isspace(code)) || code == 0x7F;
    };
    const auto controls = std::count_if(bytes.begin(), bytes.end(), isControl);
    return controls > bytes.size() / 20 ? QStringLiteral("it contains control characters")
                                        : QString();
}

bool looksLikeUtf16(const QByteArray &bytes)
{
    int zeros[2] = {0, 0};
    for (int i = 0; i < bytes.size(); ++i) {
        if (bytes.at(i) == '\0')
            ++zeros[i % 2];
    }
    const int more = std::max(zeros[0], zeros[1]);
    const int fewer = std::min(zeros[0], zeros[1]);
    return more > bytes.size() / 4 && fewer < more / 4;
}

int zeroTail(const QByteArray &bytes, const QString &encoding)
{
    if (encoding.startsWith(QLatin1String("UTF-32")))
        return 0;
    int end = bytes.size();
    while (end > 0 && bytes.at(end - 1) == '\0')
        --end;
    const int zeros = bytes.size() - end;
    // In UTF-16, the last character may contain one.
    if (encoding.startsWith(QLatin1String("UTF-16")))
        return zeros >= 3 ? zeros - zeros % 2 : 0;
    return zeros;
}

QString readAgainAsBytes(const QString &line)
{
    QByteArray bytes;
    for (const QChar c : line) {
        bytes += static_cast<char>(c.unicode() & 0xFF);
        bytes += static_cast<char>(c.unicode() >> 8);
    }
    // A key of the catalogue, or only ASCII, doesn't appear by chance.
    static const QRegularExpression key(QStringLiteral("LANG[0-9]+_[A-Z]+ *="));
    const QString text = QString::fromUtf8(bytes).trimmed();
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char byte) {
        return isAscii(byte) && (byte >= ' ' || std::isspace(byte));
    });
    return ascii || key.match(text).hasMatch() ? text : QString();
}

QString readAgainAsUtf16(const QString &line)
{
    // A BOM may precede the first line; half of the previous line's end precedes the others.
    static const QRegularExpression wide(QStringLiteral("^[^ -~]{0,2}([\\x{1}-\\x{7F}]\\x{0}){2}"));
    static const QRegularExpression ascii(QStringLiteral("[ -~]+"));
    const QString text = QString(line).remove(QChar(QChar::Null));
    return wide.match(line).hasMatch() ? ascii.match(text).captured().trimmed() : QString();
}

bool isTransferredAsText(const QByteArray &bytes)
{
    const int most = bytes.count('\n');
    return most > 1 && bytes.count("\r\n") > most / 2;
}

void checkBytesWithoutBom(const QByteArray &bytes, Report &report)
{
    QList<QByteArray> lines = bytes.split('\n');
    for (QByteArray &line : lines) { // Those in UTF-16 are reported later.
        if (!readAgainAsUtf16(QString::fromLatin1(line.constData(), line.size())).isEmpty())
            line.clear();
    }
    const bool utf8 = !decodedUtf8(lines.join('\n')).isEmpty();
    bool onlyComments = true;
    bool damaged = false;
    int firstName = 0;
    QVector<int> swallowing; // Lines that end in half a GB2312 character
    int number = 0;
    for (const QByteArray &line : qAsConst(lines)) {
        ++number;
        const QByteArray trimmed = line.trimmed();
        const bool comment = trimmed.startsWith(';') || trimmed.startsWith('#');
        const bool ascii = std::all_of(line.begin(), line.end(), isAscii);
        const Decoding decoding = decode(line);
        onlyComments = onlyComments && (comment || ascii);
        if (firstName == 0 && !ascii && !comment && trimmed.contains("_NAME"))
            firstName = number;
        if (decoding.endsInHalf && number < lines.size() && utf8) {
            swallowing += number;
        } else if (decoding.endsInHalf && number < lines.size()) {
            damaged = true;
            report.addLine(FindingKind::SwallowedLine, number,
                           {QString::fromLatin1(line.right(1).toHex().toUpper())});
        } else if (decoding.invalid && !utf8) {
            damaged = true;
            Finding &finding =
                report.addLine(FindingKind::Undecodable, number, {QStringLiteral("GB2312")});
            if (comment) // The operator does not see it.
                finding.severity = Finding::Warning;
        }
    }
    if (utf8) {
        Finding &finding = report.addLine(FindingKind::Utf8WithoutBom, 0);
        if (!swallowing.isEmpty()) {
            finding.consequences +=
                QStringLiteral("what follows %1 is lost").arg(linesText(swallowing));
        } else if (onlyComments) { // The operator does not see the wrong characters.
            finding.severity = Finding::Warning;
        }
    } else if (!damaged && firstName > 0) {
        report.addLine(FindingKind::NoBom, firstName);
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
