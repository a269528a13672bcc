// Reads the fuzzer's input as the catalogue, with the plug-in's reader and with the model, and
// aborts if the two disagree.

#include "CatalogueModel.h"
#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTextStream>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace std::string_view_literals;

namespace {

/// The application's folder is part of the paths, and its name may contain placeholders.
constexpr const char16_t *kFolderNames[] = {u"application", u"50%1", u"%L2 %3 %04 %", u"机器%٢%²"};
constexpr std::size_t kFolderCount = std::size(kFolderNames);

/// A folder with a catalogue, and links to it with all of kFolderNames.
class Deployment
{
public:
    Deployment()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // For file names
        bool good = m_folder.isValid() && QDir(m_folder.path()).mkpath(QStringLiteral("real/Lang"));
        for (const char16_t *name : kFolderNames) {
            m_paths.push_back(m_folder.filePath(QString::fromUtf16(name)));
            good = good && QFile::link(QStringLiteral("real"), m_paths.back());
        }
        m_catalogue.setFileName(m_folder.filePath(QStringLiteral("real/Lang/Lang.ini")));
        if (!good || !m_catalogue.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            std::cerr << "Cannot create the catalogue\n";
            std::abort();
        }
    }

    QString path(std::size_t folder) const { return m_paths[folder]; }

    void writeCatalogue(const std::string &bytes)
    {
        const auto size = static_cast<qint64>(bytes.size());
        if (!m_catalogue.seek(0) || m_catalogue.write(bytes.data(), size) != size
            || !m_catalogue.resize(size))
            std::abort();
    }

private:
    QTemporaryDir m_folder;
    std::vector<QString> m_paths;
    QFile m_catalogue;
};

Deployment &deployment()
{
    static Deployment theDeployment;
    return theDeployment;
}

std::size_t currentFolder = 0;

/// Returns the input with a comment after its BOM, so long that one of Qt's read blocks ends at or
/// near position @p boundary of the input.
std::string withLongComment(std::string_view input, std::size_t boundary)
{
    constexpr std::size_t kBlock = 16384;
    std::size_t bomSize = 0;
    std::string_view newLine = "\n";
    for (const auto &[bom, lineFeed] : {
             std::pair {"\0\0\xFE\xFF"sv, "\0\0\0\n"sv},
             std::pair {"\xFF\xFE\0\0"sv, "\n\0\0\0"sv},
             std::pair {"\xFE\xFF"sv, "\0\n"sv},
             std::pair {"\xFF\xFE"sv, "\n\0"sv},
             std::pair {"\xEF\xBB\xBF"sv, "\n"sv},
         }) {
        if (input.substr(0, bom.size()) == bom) {
            bomSize = bom.size();
            newLine = lineFeed;
            break;
        }
    }

    const std::size_t unit = newLine.size();
    const std::size_t units = (kBlock - std::max(boundary, bomSize) % kBlock) / unit;
    std::string comment;
    comment.reserve(kBlock);
    for (std::size_t i = 0; i + 1 < units; ++i) {
        for (const char c : newLine)
            comment += c == '\n' ? ';' : '\0';
    }
    return std::string(input.substr(0, bomSize)) + comment + std::string(newLine)
        + std::string(input.substr(bomSize));
}

CatalogueModel::Record toRecord(const LangEntry &entry)
{
    return {entry.id, entry.show, entry.name.toStdU16String(), entry.folder.toStdU16String(),
            entry.qmPath.toStdU16String()};
}

void describe(std::u16string &outcome, std::u16string_view what,
              const CatalogueModel::Record &record)
{
    // No value contains a line feed.
    outcome += what;
    outcome += QString::number(record.id).toStdU16String();
    outcome += record.show ? u" shown" : u" hidden";
    for (const std::u16string &text : {record.name, record.folder, record.qmPath}) {
        outcome += u"\n  ";
        outcome += text;
    }
    outcome += u'\n';
}

std::u16string outcomeOfModel(std::string_view file)
{
    const CatalogueModel model = readCatalogue(file, applicationDir().toStdU16String());
    std::u16string outcome =
        u"default " + QString::number(model.defaultId).toStdU16String() + u'\n';
    for (const CatalogueModel::Record &record : model.records) {
        describe(outcome, u"record ", record);
        outcome += u"file ";
        outcome += record.show ? record.qmPath : u"";
        outcome += u'\n';
    }
    for (const CatalogueModel::Record &record : model.visible)
        describe(outcome, u"visible ", record);
    return outcome;
}

/// Reads the bytes twice: as a file with CTranslatorMgr, and from memory for the hidden records.
std::u16string outcomeOfLibrary(std::string_view file)
{
    static CTranslatorMgr manager;
    manager.loadLangConfig();
    std::u16string outcome =
        u"default " + QString::number(manager.defaultLangId()).toStdU16String() + u'\n';

    QByteArray bytes = QByteArray::fromRawData(file.data(), static_cast<int>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QTextStream in(&buffer);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&buffer));
    int defaultLangId = 0;
    QMap<int, LangEntry> records;
    readCatalogue(in, defaultLangId, records);
    if (defaultLangId != manager.defaultLangId())
        return u"a different default from memory";
    for (auto it = records.cbegin(); it != records.cend(); ++it) {
        describe(outcome, u"record ", toRecord(*it));
        outcome += u"file ";
        outcome += manager.langFilePath(it.key()).toStdU16String();
        outcome += u'\n';
    }
    const QList<LangEntry> visible = manager.visibleLanguages();
    for (const LangEntry &entry : visible)
        describe(outcome, u"visible ", toRecord(entry));
    return outcome;
}

/// Escapes everything except printable ASCII and line feeds, with that many hexadecimal digits.
template<typename Text>
std::string escaped(const Text &text, const char *prefix, int digits)
{
    std::ostringstream result;
    result << std::hex << std::uppercase << std::setfill('0');
    for (const auto c : text) {
        const auto code = static_cast<std::make_unsigned_t<std::remove_const_t<decltype(c)>>>(c);
        if (code == '\n' || (code >= ' ' && code < 0x7F))
            result << static_cast<char>(code);
        else
            result << prefix << std::setw(digits) << static_cast<unsigned>(code);
    }
    return result.str();
}

} // namespace

QString applicationDir()
{
    return deployment().path(currentFolder);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const std::size_t sum = std::accumulate(data, data + size, std::size_t {0});
    currentFolder = sum % kFolderCount;
    const bool large = sum / kFolderCount % 16 == 0;
    const std::string file =
        large ? withLongComment(input, sum / kFolderCount / 16 % (size + 1)) : std::string(input);

    deployment().writeCatalogue(file);
    const std::u16string expected = outcomeOfModel(file);
    const std::u16string actual = outcomeOfLibrary(file);
    if (actual != expected) {
        std::cerr << "== Input, " << size << " bytes\n"
                  << QByteArray(input.data(), static_cast<int>(size)).toHex(' ').toStdString()
                  << '\n'
                  << escaped(input, "\\x", 2) << '\n';
        if (large)
            std::cerr << "== Read after a comment of " << file.size() - size << " bytes\n";
        std::cerr << "== Model\n"
                  << escaped(expected, "\\u", 4) << "== Library\n"
                  << escaped(actual, "\\u", 4);
        std::abort();
    }
    return 0;
}
