#include "CatalogueModel.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>

using namespace std::string_view_literals;

namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kReplacement = 0xFFFD;

std::uint32_t byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

void append(std::u16string &text, std::uint32_t codePoint)
{
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
    } else {
        // Qt does the same with numbers above the last code point.
        text += static_cast<char16_t>((codePoint >> 10U) + 0xD7C0);
        text += static_cast<char16_t>(0xDC00 + (codePoint & 0x3FFU));
    }
}

/// Decodes units of 2 or 4 bytes. An incomplete unit at the end is dropped.
std::u16string decodeUnits(std::string_view bytes, std::size_t unit, bool littleEndian)
{
    std::u16string text;
    for (std::size_t at = 0; at + unit <= bytes.size(); at += unit) {
        std::uint32_t code = 0;
        for (std::size_t i = 0; i < unit; ++i)
            code = code << 8U | byteAt(bytes, littleEndian ? at + unit - 1 - i : at + i);
        append(text, code);
    }
    return text;
}

bool continues(std::string_view tail)
{
    return std::all_of(tail.begin(), tail.end(), [](char c) { return (c & 0xC0) == 0x80; });
}

/// Returns the code point of a sequence of 2 to 4 bytes, or nothing if it is invalid.
std::optional<std::uint32_t> decodeSequence(std::string_view sequence)
{
    constexpr std::uint32_t leastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = sequence.size();
    if (!continues(sequence.substr(1)))
        return {};
    std::uint32_t code = byteAt(sequence, 0) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
        code = code << 6U | (byteAt(sequence, i) & 0x3FU);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < leastOfLength[length] || surrogate || code > 0x10FFFF)
        return {};
    return code;
}

/// Decodes UTF-8 from position @p at like Qt. An invalid byte becomes U+FFFD, and an incomplete
/// sequence at the end of the file is dropped. Qt decodes in blocks: if a sequence is cut by a
/// block's end and turns out to be invalid, its whole part in that block becomes a single U+FFFD.
std::u16string decodeUtf8(std::string_view file, std::size_t at)
{
    constexpr std::size_t kBlock = 16384;

    std::u16string text;
    while (at < file.size()) {
        const std::uint32_t lead = byteAt(file, at);
        if (lead < 0x80) {
            append(text, lead);
            ++at;
            continue;
        }
        if (lead < 0xC2 || lead > 0xF4) {
            text += kReplacement;
            ++at;
            continue;
        }
        const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        const std::string_view sequence = file.substr(at, length);
        const std::size_t blockEnd = (at / kBlock + 1) * kBlock;
        const std::string_view first = sequence.substr(0, blockEnd - at);
        if (first.size() < length && !continues(first.substr(1))) {
            text += kReplacement;
            ++at;
            continue;
        }
        if (sequence.size() < length && continues(sequence.substr(1)))
            break;

        std::optional<std::uint32_t> code;
        if (sequence.size() == length)
            code = decodeSequence(sequence);
        if (code) {
            append(text, *code);
            at += length;
        } else {
            text += kReplacement;
            at += first.size() < length ? first.size() : 1;
        }
    }
    return text;
}

/// Decodes "GB2312" with the same ICU converter as Qt on Linux, "GBK", because its table isn't what
/// is tested. An incomplete sequence at the end of the file is dropped.
std::u16string decodeGb2312(std::string_view bytes)
{
    UErrorCode error = U_ZERO_ERROR;
    static const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open("GBK", &error), &ucnv_close);
    if (!converter)
        std::abort();
    ucnv_resetToUnicode(converter.get());

    std::u16string text(bytes.size(), u'\0'); // At most one unit per byte
    char16_t *target = text.data();
    const char *source = bytes.data();
    ucnv_toUnicode(converter.get(), &target, target + text.size(), &source, source + bytes.size(),
                   nullptr, false, &error);
    if (U_FAILURE(error))
        std::abort();
    text.resize(static_cast<std::size_t>(target - text.data()));
    return text;
}

bool startsWith(std::string_view bytes, std::string_view bom)
{
    return bytes.substr(0, bom.size()) == bom;
}

std::u16string decode(std::string_view file)
{
    if (startsWith(file, "\0\0\xFE\xFF"sv))
        return decodeUnits(file.substr(4), 4, false);
    if (startsWith(file, "\xFE\xFF"sv))
        return decodeUnits(file.substr(2), 2, false);
    if (startsWith(file, "\xEF\xBB\xBF"sv))
        return decodeUtf8(file, 3);
    if (startsWith(file, "\xFF\xFE"sv)) {
        std::u16string text = startsWith(file, "\xFF\xFE\0\0"sv)
            ? decodeUnits(file.substr(4), 4, true)
            : decodeUnits(file.substr(2), 2, true);
        // setCatalogueCodec() skips a second BOM, but only after this one.
        if (!text.empty() && text.front() == kByteOrderMark)
            text.erase(0, 1);
        return text;
    }
    return decodeGb2312(file);
}

bool isSpace(char16_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680
        || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F
        || c == 0x3000;
}

std::u16string_view trimmed(std::u16string_view text)
{
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

/// Converts a trimmed string to a 32-bit number, or to 0 if it isn't one. The minus sign may be the
/// mathematical one.
std::int32_t toInt(std::u16string_view text)
{
    bool negative = false;
    if (!text.empty() && (text.front() == u'-' || text.front() == u'\u2212')) {
        negative = true;
        text.remove_prefix(1);
    } else if (!text.empty() && text.front() == u'+') {
        text.remove_prefix(1);
    }

    using Limits = std::numeric_limits<std::int32_t>;
    std::int64_t number = 0;
    for (const char16_t c : text) {
        if (!isDigit(c))
            return 0;
        number = number * 10 + (negative ? u'0' - c : c - u'0');
        if (number < Limits::min() || number > Limits::max())
            return 0;
    }
    return static_cast<std::int32_t>(number);
}

/// Returns the value of a digit in a placeholder, which may be of any script, circled or
/// superscript, or -1 if it isn't a digit.
int digitValue(char16_t c)
{
    const int type = u_getIntPropertyValue(c, UCHAR_NUMERIC_TYPE);
    if (type != U_NT_DECIMAL && type != U_NT_DIGIT)
        return -1;
    return static_cast<int>(u_getNumericValue(c));
}

/// Replaces all placeholders with the lowest number. A placeholder is a percent sign, an optional
/// L, and one or two digits.
std::u16string replaceLowest(std::u16string_view format, std::u16string_view value)
{
    struct Placeholder
    {
        std::size_t begin;
        std::size_t end;
        int number;
    };
    std::vector<Placeholder> found;
    int lowest = std::numeric_limits<int>::max();
    for (std::size_t at = 0; (at = format.find(u'%', at)) != std::u16string_view::npos;) {
        const std::size_t begin = at++;
        if (at < format.size() && format[at] == u'L')
            ++at;
        int number = -1;
        for (int digits = 0; digits < 2 && at < format.size(); ++digits, ++at) {
            const int digit = digitValue(format[at]);
            if (digit < 0)
                break;
            number = std::max(number, 0) * 10 + digit;
        }
        if (number >= 0) {
            found.push_back({begin, at, number});
            lowest = std::min(lowest, number);
        }
    }

    std::u16string result;
    std::size_t copied = 0;
    for (const Placeholder &placeholder : found) {
        if (placeholder.number != lowest)
            continue;
        result += format.substr(copied, placeholder.begin - copied);
        result += value;
        copied = placeholder.end;
    }
    result += format.substr(copied);
    return result;
}

/// Composes a path. The values are inserted one by one, so placeholders in earlier ones count.
std::u16string translationPath(std::u16string_view applicationDir, std::u16string_view folder)
{
    std::u16string path = u"%1/Lang/%2/%3";
    for (const std::u16string_view value : {applicationDir, folder, u"Zendel.qm"sv})
        path = replaceLowest(path, value);
    return path;
}

struct LanguageKey
{
    std::int32_t id;
    std::u16string_view field;
};

/// Parses a key of the form LANG<number>_<field>.
std::optional<LanguageKey> languageKey(std::u16string_view key)
{
    constexpr std::u16string_view prefix = u"LANG";
    if (key.substr(0, prefix.size()) != prefix)
        return {};
    key.remove_prefix(prefix.size());
    const auto end = std::find_if_not(key.begin(), key.end(), isDigit);
    const auto digits = static_cast<std::size_t>(end - key.begin());
    if (digits == 0 || digits == key.size() || *end != u'_')
        return {};
    const std::u16string_view field = key.substr(digits + 1);
    for (const std::u16string_view known : {u"ID"sv, u"NAME"sv, u"FOLDER"sv, u"SHOW"sv}) {
        if (field == known)
            return LanguageKey {toInt(key.substr(0, digits)), field};
    }
    return {};
}

} // namespace

CatalogueModel readCatalogue(std::string_view file, const std::u16string &applicationDir)
{
    CatalogueModel catalogue;
    std::map<std::int32_t, CatalogueModel::Record> records;
    bool inside = false;

    const std::u16string text = decode(file);
    for (std::u16string_view rest = text; !rest.empty();) {
        const std::size_t length = std::min(rest.find(u'\n'), rest.size());
        const std::u16string_view line = trimmed(rest.substr(0, length));
        rest.remove_prefix(std::min(length + 1, rest.size()));

        if (line.empty() || line.front() == u';' || line.front() == u'#')
            continue;
        if (line.size() > 1 && line.front() == u'[' && line.back() == u']') {
            inside = line == u"[LANG_MGR]";
            continue;
        }
        const std::size_t equals = line.find(u'=');
        if (!inside || equals == std::u16string_view::npos || equals == 0)
            continue;

        const std::u16string_view key = trimmed(line.substr(0, equals));
        const std::u16string_view value = trimmed(line.substr(equals + 1));
        if (key == u"DEFAULT")
            catalogue.defaultId = toInt(value);
        const std::optional<LanguageKey> language = languageKey(key);
        if (!language)
            continue;

        CatalogueModel::Record &record = records[language->id];
        record.id = language->id;
        if (language->field == u"NAME") {
            record.name = value;
        } else if (language->field == u"FOLDER") {
            record.folder = value;
            record.qmPath = translationPath(applicationDir, value);
        } else if (language->field == u"SHOW") {
            record.show = toInt(value) == 1;
        }
    }

    for (const auto &[id, record] : records) {
        catalogue.records.push_back(record);
        if (record.show && !record.name.empty() && !record.folder.empty())
            catalogue.visible.push_back(record);
    }
    return catalogue;
}
