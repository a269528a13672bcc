// Reads what the fuzzer makes up as the language catalogue, by the library and by the model, and
// stops where the two disagree.

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

/// The name of the application's folder takes part in the paths, and may hold placeholders.
constexpr const char16_t *kFolderNames[] = {u"application", u"50%1", u"%L2 %3 %04 %", u"机器%٢%²"};
constexpr std::size_t kFolderCount = std::size(kFolderNames);

/// All names stand for one folder, with one catalogue.
class Deployment
{
public:
    Deployment()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // Of file names
        bool good = m_folder.isValid() && QDir(m_folder.path()).mkpath(QStringLiteral("real/Lang"));
        for (const char16_t *name : kFolderNames) {
            m_paths.push_back(m_folder.filePath(QString::fromUtf16(name)));
            good = good && QFile::link(QStringLiteral("real"), m_paths.back());
        }
        m_catalogue.setFileName(m_folder.filePath(QStringLiteral("real/Lang/Lang.ini")));
        if (!good || !m_catalogue.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            std::cerr << "No folder for the catalogue\n";
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

/// The input with a comment behind its mark, so long that the end of a block in which Qt reads lies
/// at @p boundary in the input, or close to it.
std::string behindLongComment(std::string_view input, std::size_t boundary)
{
    constexpr std::size_t kBlock = 16384;
    std::size_t markSize = 0;
    std::string_view newLine = "\n";
    for (const auto &[mark, lineFeed] : {
             std::pair {"\0\0\xFE\xFF"sv, "\0\0\0\n"sv},
             std::pair {"\xFF\xFE\0\0"sv, "\n\0\0\0"sv},
             std::pair {"\xFE\xFF"sv, "\0\n"sv},
             std::pair {"\xFF\xFE"sv, "\n\0"sv},
             std::pair {"\xEF\xBB\xBF"sv, "\n"sv},
         }) {
        if (input.substr(0, mark.size()) == mark) {
            markSize = mark.size();
            newLine = lineFeed;
            break;
        }
    }

    const std::size_t unit = newLine.size();
    const std::size_t units = (kBlock - std::max(boundary, markSize) % kBlock) / unit;
    std::string comment;
    comment.reserve(kBlock);
    for (std::size_t i = 0; i + 1 < units; ++i) {
        for (const char c : newLine)
            comment += c == '\n' ? ';' : '\0';
    }
    return std::string(input.substr(0, markSize)) + comment + std::string(newLine)
        + std::string(input.substr(markSize));
}

std::u16string_view view(const QString &text)
{
    return {reinterpret_cast<const char16_t *>(text.utf16()),
            static_cast<std::size_t>(text.size())};
}

std::u16string number(int value)
{
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

void describe(std::u16string &outcome, std::u16string_view what, int id, bool show,
              std::u16string_view name, std::u16string_view folder, std::u16string_view qmPath)
{
    // Nothing that was read has a line feed in it.
    outcome += what;
    outcome += number(id);
    outcome += show ? u" shown" : u" hidden";
    for (const std::u16string_view text : {name, folder, qmPath}) {
        outcome += u"\n  ";
        outcome += text;
    }
    outcome += u'\n';
}

void describe(std::u16string &outcome, std::u16string_view what, const LangEntry &entry)
{
    describe(outcome, what, entry.id, entry.show, view(entry.name), view(entry.folder),
             view(entry.qmPath));
}

void describe(std::u16string &outcome, std::u16string_view what,
              const CatalogueModel::Record &record)
{
    describe(outcome, what, record.id, record.show, record.name, record.folder, record.qmPath);
}

std::u16string outcomeOfModel(std::string_view file)
{
    const std::u16string folder(view(applicationDir()));
    const CatalogueModel model = readCatalogue(file, folder);
    std::u16string outcome = u"default " + number(model.defaultId) + u'\n';
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

/// The bytes are read twice: as a file by the manager, for what it answers, and from memory, for
/// the records that it does not show.
std::u16string outcomeOfLibrary(std::string_view file)
{
    static CTranslatorMgr manager;
    manager.loadLangConfig();
    std::u16string outcome = u"default " + number(manager.defaultLangId()) + u'\n';

    QByteArray bytes = QByteArray::fromRawData(file.data(), static_cast<int>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QTextStream in(&buffer);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&buffer));
    int defaultLangId = 0;
    QMap<int, LangEntry> records;
    readCatalogue(in, defaultLangId, records);
    if (defaultLangId != manager.defaultLangId())
        return u"another default from memory";
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        describe(outcome, u"record ", *record);
        outcome += u"file ";
        outcome += view(manager.langFilePath(record.key()));
        outcome += u'\n';
    }
    const QList<LangEntry> visible = manager.visibleLanguages();
    for (const LangEntry &entry : visible)
        describe(outcome, u"visible ", entry);
    return outcome;
}

/// Line feeds and what is printable as it is, the rest as its number of so many hexadecimal digits.
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

std::string hexadecimal(std::string_view bytes)
{
    return QByteArray(bytes.data(), static_cast<int>(bytes.size())).toHex(' ').toStdString();
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
        large ? behindLongComment(input, sum / kFolderCount / 16 % (size + 1)) : std::string(input);

    deployment().writeCatalogue(file);
    const std::u16string expected = outcomeOfModel(file);
    const std::u16string actual = outcomeOfLibrary(file);
    if (actual != expected) {
        std::cerr << "== Input, " << size << " bytes\n"
                  << hexadecimal(input) << '\n'
                  << escaped(input, "\\x", 2) << '\n';
        if (large)
            std::cerr << "== Read behind a comment of " << file.size() - size << " bytes\n";
        std::cerr << "== Model\n"
                  << escaped(expected, "\\u", 4) << "== Library\n"
                  << escaped(actual, "\\u", 4);
        std::abort();
    }
    return 0;
}
