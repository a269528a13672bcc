#include "CatalogueModel.h"

#include <QStringList>
#include <QTextCodec>

#include <algorithm>
#include <iterator>

namespace {

/// Decodes the file with Qt's codecs, in the blocks in which QTextStream reads, because what they
/// make of invalid bytes isn't what is tested. An incomplete character at the end is dropped.
QString decode(const QByteArray &file)
{
    constexpr int kBlock = 16384;
    const CatalogueEncoding &encoding = catalogueEncoding(file);
    QTextDecoder decoder(QTextCodec::codecForName(encoding.codec), QTextCodec::IgnoreHeader);
    QString text;
    for (int at = encoding.bom.size(); at < file.size();) {
        const int size = kBlock - at % kBlock;
        text += decoder.toUnicode(file.mid(at, size));
        at += size;
    }
    // setCatalogueCodec() skips a second BOM, but only of UTF-16LE and after that of UTF-32LE.
    if (encoding.bom.startsWith("\xFF\xFE") && text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    return text;
}

struct LanguageKey
{
    int id = 0;
    QString field; ///< Empty if the key has another form
};

/// Parses a key of the form LANG<number>_<field>.
LanguageKey languageKey(const QString &key)
{
    const QString prefix = QStringLiteral("LANG");
    if (!key.startsWith(prefix))
        return {};
    const auto *const digits = key.begin() + prefix.size();
    const auto *const end = std::find_if_not(
        digits, key.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    const int count = static_cast<int>(end - digits);
    const QString field = key.mid(prefix.size() + count);
    for (const char *const known : {"_ID", "_NAME", "_FOLDER", "_SHOW"}) {
        if (count > 0 && field == QLatin1String(known))
            return {key.mid(prefix.size(), count).toInt(), field};
    }
    return {};
}

} // namespace

const CatalogueEncoding &catalogueEncoding(const QByteArray &file)
{
    static const CatalogueEncoding encodings[] = {
        {QByteArray("\0\0\xFE\xFF", 4), "UTF-32BE", QByteArray("\0\0\0\n", 4)},
        {QByteArray("\xFF\xFE\0\0", 4), "UTF-32LE", QByteArray("\n\0\0\0", 4)},
        {QByteArray("\xFE\xFF", 2), "UTF-16BE", QByteArray("\0\n", 2)},
        {QByteArray("\xFF\xFE", 2), "UTF-16LE", QByteArray("\n\0", 2)},
        {"\xEF\xBB\xBF", "UTF-8", "\n"},
        {"", "GB2312", "\n"},
    };
    return *std::find_if(std::begin(encodings), std::end(encodings),
                         [&file](const auto &encoding) { return file.startsWith(encoding.bom); });
}

CatalogueModel readCatalogue(const QByteArray &file, const QString &applicationDir)
{
    CatalogueModel catalogue;
    bool inside = false;
    const QStringList lines = decode(file).split(QLatin1Char('\n'));
    for (const QString &text : lines) {
        const QString line = text.trimmed();
        if (line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            inside = line == QLatin1String("[LANG_MGR]");
            continue;
        }
        const int equals = line.indexOf(QLatin1Char('='));
        if (!inside || equals <= 0)
            continue;

        const QString key = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        if (key == QLatin1String("DEFAULT"))
            catalogue.defaultId = value.toInt();
        const LanguageKey language = languageKey(key);
        if (language.field.isEmpty())
            continue;

        LangEntry &record = catalogue.records[language.id];
        record.id = language.id;
        if (language.field == QLatin1String("_NAME")) {
            record.name = value;
        } else if (language.field == QLatin1String("_FOLDER")) {
            record.folder = value;
            // The values are inserted one by one, so placeholders in earlier ones count.
            record.qmPath = QStringLiteral("%1/Lang/%2/%3");
            for (const QString &part : {applicationDir, value, QStringLiteral("Zendel.qm")})
                record.qmPath = record.qmPath.arg(part);
        } else if (language.field == QLatin1String("_SHOW")) {
            record.show = value.toInt() == 1;
        }
    }
    for (const LangEntry &record : qAsConst(catalogue.records)) {
        if (record.show && !record.name.isEmpty() && !record.folder.isEmpty())
            catalogue.visible += record;
    }
    return catalogue;
}
