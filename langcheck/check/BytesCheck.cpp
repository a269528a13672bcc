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

/// Returns the bytes that Windows-1252 or Latin-1 reads as @p name; none if neither does.
QByteArray toWindows1252(const QString &name)
{
    // The characters of the bytes 0x80 to 0x9F. Latin-1 reads all of them as controls.
    static const QString upper = QStringLiteral(
        "\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D"
        "\u008F\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D"
        "\u017E\u0178");
    QByteArray bytes;
    for (const QChar c : name) {
        const int index = upper.indexOf(c);
        if (index < 0 && c.unicode() > 0xFF)
            return {};
        bytes += static_cast<char>(index < 0 ? c.unicode() : 0x80 + index);
    }
    return bytes;
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

bool isTransferredAsText(const QByteArray &bytes)
{
    const int most = bytes.count('\n');
    return most > 1 && bytes.count("\r\n") > most / 2;
}

Misread misread(const QString &name)
{
    const QByteArray bytes = toWindows1252(name);
    const QString utf8 = decodedUtf8(bytes);
    if (!utf8.isEmpty())
        return {utf8, "UTF-8 that was read as Windows-1252 or Latin-1"};
    const QTextCodec *const gbk = QTextCodec::codecForName("GB18030");
    if (gbk && gbk->canEncode(name)) {
        const QString western = decodedUtf8(gbk->fromUnicode(name));
        if (!western.isEmpty())
            return {western, "UTF-8 that was read as GBK"};
    }
    return {};
}

void checkBytesWithoutBom(const QByteArray &bytes, Report &report)
{
    const bool utf8 = !decodedUtf8(bytes).isEmpty();
    bool onlyComments = true;
    bool damaged = false;
    int firstName = 0;
    QVector<int> swallowing; // Lines that end in half a GB2312 character
    int number = 0;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines) {
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
