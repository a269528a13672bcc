#include "langcheck/check/Misread.h"

#include "langcheck/Texts.h"

#include <QHash>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextDocumentFragment>

#include <algorithm>
#include <vector>

namespace {

/// An encoding in which texts are written, or read by mistake.
class Encoding
{
public:
    explicit Encoding(const char *name)
        : m_name(name)
        , m_codec(QTextCodec::codecForName(name))
    {
        const bool isSingleByte = m_codec && m_codec->toUnicode("\xE0\xA1\xA1").size() == 3;
        for (int i = 0x80; isSingleByte && i < 0x100; ++i) {
            const auto byte = static_cast<char>(i);
            const QString c = m_codec->toUnicode(&byte, 1);
            // Windows reads bytes without a letter as the controls of Latin-1.
            const bool isLetter = c.size() == 1 && c != QChar(QChar::ReplacementCharacter);
            m_upper += isLetter ? c : QString(QChar(i));
        }
    }

    QString name() const { return QLatin1String(m_name); }

    /// Returns the bytes that are read as @p text; none if no bytes are.
    QByteArray encoded(const QString &text) const
    {
        QByteArray bytes;
        if (m_upper.isEmpty()) {
            bytes = m_codec && m_codec->canEncode(text) ? m_codec->fromUnicode(text) : bytes;
            return m_codec && m_codec->toUnicode(bytes) == text ? bytes : QByteArray();
        }
        for (const QChar c : text) {
            const int index = m_upper.indexOf(c);
            if (index < 0 && c.unicode() >= 0xA0)
                return {};
            bytes += static_cast<char>(index < 0 ? c.unicode() : 0x80 + index);
        }
        return bytes;
    }

    /// Returns what is read; an empty string if something is lost.
    QString decoded(const QByteArray &bytes) const
    {
        const QString text = m_codec ? m_codec->toUnicode(bytes) : QString();
        return encoded(text) == bytes ? text : QString();
    }

private:
    const char *m_name;
    QTextCodec *m_codec;
    QString m_upper; ///< The characters of the bytes from 0x80; empty if some need two bytes.
};

/// Returns encodings that Qt knows without ICU: UTF-8, then those as which it is often read.
const std::vector<Encoding> &encodings()
{
    static const std::vector<Encoding> all = [] {
        std::vector<Encoding> result;
        for (const char *const name :
             {"UTF-8", "Windows-1252", "GBK", "Windows-1250", "Windows-1251", "IBM850", "IBM866",
              "TIS-620", "Windows-1253", "Windows-1254", "Windows-1255", "Windows-1256",
              "Windows-1257", "Windows-1258", "Shift-JIS", "Big5", "EUC-KR"})
            result.emplace_back(name);
        return result;
    }();
    return all;
}

bool isName(const QString &text)
{
    return !text.isEmpty() && languageNamed(text) != QLocale::C;
}

bool isAscii(QChar c)
{
    return c.unicode() < 0x80;
}

QString readAs(const Encoding &written, const Encoding &read)
{
    return withValues("%1 that was read as %2", {written.name(), read.name()});
}

/// Returns what a text was if the result is the name of a language, which is no coincidence.
Misread misreadName(const QString &text, int times)
{
    if (isName(text) || std::all_of(text.begin(), text.end(), isAscii))
        return {};
    std::vector<QByteArray> bytes; // That each encoding reads as the text
    for (const Encoding &read : encodings())
        bytes.push_back(read.encoded(text));
    for (const Encoding &written : encodings()) {
        const bool isUtf8 = &written == &encodings().front();
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const QString original = bytes[i].isEmpty() ? QString() : written.decoded(bytes[i]);
            if (original.isEmpty() || original == text)
                continue;
            const QString how = readAs(written, encodings()[i]);
            if (isName(original))
                return {original, how};
            if (times == 1 || !isUtf8)
                continue;
            const Misread again = misreadName(original, times - 1);
            if (!again.original.isEmpty())
                return {again.original, again.how == how ? how + QStringLiteral(", twice") : how};
        }
    }
    return {};
}

/// Returns false if the text contains what valid UTF-8 has by chance: rare letters, and those of
/// another script than their neighbours.
bool isPlausible(const QString &text)
{
    static const QRegularExpression odd(
        QStringLiteral("(?![\u01A0\u01A1\u01AF\u01B0\u0218-\u021B])[\u0180-\u036F]|\\p{C}"
                       "|[A-Za-z][\\x{370}-\\x{7FF}]|[\\x{370}-\\x{7FF}][A-Za-z]"));
    return !odd.match(text).hasMatch();
}

/// Returns what a text was if it is UTF-8 that was read in one of a few other encodings, which is
/// nearly certain even if it isn't a name.
Misread misreadUtf8(const QString &text)
{
    static const QRegularExpression ellipsis(QStringLiteral("\u2026$")); // Follows any letter.
    const QString body = QString(text).remove(ellipsis);
    const bool hasSymbol = std::any_of(body.begin(), body.end(), [](QChar c) {
        return !isAscii(c) && c.category() != QChar::Letter_Uppercase
            && c.category() != QChar::Letter_Lowercase;
    });
    const Encoding &utf8 = encodings().front();
    const std::size_t certain = 5; // The encodings after UTF-8
    for (std::size_t i = 1; i <= certain; ++i) {
        const QString original = utf8.decoded(encodings()[i].encoded(body));
        // In central and eastern Europe, two letters in a row may be UTF-8 by chance.
        if (!original.isEmpty() && original != body && (hasSymbol || i == 1)
            && isPlausible(original))
            return {original, readAs(utf8, encodings()[i])};
    }
    return {};
}

/// Returns the text of bytes that were written as codes, which is UTF-8 or Windows-1252. Sets
/// @p certain to false if it isn't certain that they were.
QString decodedCodes(const QString &codes, bool &certain)
{
    static const QRegularExpression code(
        QStringLiteral("[=%x]([0-9A-Fa-f]{2})|\\\\([0-3][0-7]{2})"));
    QByteArray bytes;
    for (auto it = code.globalMatch(codes); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const bool isHex = !match.captured(1).isEmpty();
        bytes += static_cast<char>(match.captured(isHex ? 1 : 2).toInt(nullptr, isHex ? 16 : 8));
    }
    const QString utf8 = encodings().front().decoded(bytes);
    certain = certain && !utf8.isEmpty() && utf8.size() < bytes.size();
    return utf8.isEmpty() ? encodings()[1].decoded(bytes) : utf8;
}

} // namespace

Misread misread(const QString &text)
{
    const Misread name = misreadName(text, 2);
    return name.original.isEmpty() ? misreadUtf8(text) : name;
}

QString withoutCodes(const QString &text)
{
    static const QRegularExpression entity(
        QStringLiteral("&(#[0-9]+|#x[0-9A-Fa-f]+|[A-Za-z]{2,8});"));
    static const QRegularExpression unicode(
        QStringLiteral("\\\\u([0-9A-Fa-f]{4})|<U\\+([0-9A-Fa-f]{4})>"));
    static const QRegularExpression bytes(
        QStringLiteral("([=%][0-9A-Fa-f]{2}|\\\\x[0-9A-Fa-f]{2}|\\\\[0-3][0-7]{2})+"));
    QString result = text;
    for (auto match = unicode.match(result); match.hasMatch(); match = unicode.match(result)) {
        result.replace(match.capturedStart(), match.capturedLength(),
                       QChar((match.captured(1) + match.captured(2)).toUShort(nullptr, 16)));
    }
    if (entity.match(result).hasMatch())
        result = QTextDocumentFragment::fromHtml(
                     result.toHtmlEscaped().replace(QLatin1String("&amp;"), QLatin1String("&")))
                     .toPlainText();
    QString decoded = result;
    bool certain = true;
    for (auto match = bytes.match(decoded); match.hasMatch();
         match = bytes.match(decoded, match.capturedStart() + 1)) {
        decoded.replace(match.capturedStart(), match.capturedLength(),
                        decodedCodes(match.captured(), certain));
    }
    const QString start = QStringLiteral("3D"); // The rest of "=3D" after the key
    if (decoded.startsWith(start) && isName(decoded.mid(start.size())))
        return decoded.mid(start.size());
    return (certain && isPlausible(decoded)) || isName(decoded) ? decoded : result;
}

QLocale::Language languageNamed(const QString &name)
{
    static const QHash<QString, QLocale::Language> languages = [] {
        QHash<QString, QLocale::Language> result;
        const QList<QLocale> all =
            QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
        for (const QLocale &locale : all) {
            for (const QString &known :
                 {locale.nativeLanguageName(), QLocale::languageToString(locale.language())}) {
                const QString key = known.toCaseFolded();
                const bool other = result.contains(key) && result.value(key) != locale.language();
                result.insert(key, other ? QLocale::C : locale.language());
            }
        }
        return result;
    }();
    const QString whole = name.toCaseFolded();
    return languages.contains(whole) ? languages.value(whole)
                                     : languages.value(withoutAddition(whole), QLocale::C);
}

QString withoutAddition(const QString &name)
{
    static const QRegularExpression addition(QStringLiteral(" *[(/\u2013\uFF08].*$"));
    return QString(name).remove(addition).trimmed();
}
