// Reads the fuzzer's input as the catalogue, with the plug-in's reader and with the model, and
// aborts if the two disagree.

#include "CatalogueModel.h"
#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"

#include <QBuffer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTextStream>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <numeric>

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
            m_paths += m_folder.filePath(QString::fromUtf16(name));
            good = good && QFile::link(QStringLiteral("real"), m_paths.constLast());
        }
        m_catalogue.setFileName(m_folder.filePath(QStringLiteral("real/Lang/Lang.ini")));
        if (!good || !m_catalogue.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
            qFatal("Can't create the catalogue");
    }

    QString path(std::size_t folder) const { return m_paths.at(int(folder)); }

    void writeCatalogue(const QByteArray &bytes)
    {
        if (!m_catalogue.seek(0) || m_catalogue.write(bytes) != bytes.size()
            || !m_catalogue.resize(bytes.size()))
            qFatal("Can't write the catalogue");
    }

private:
    QTemporaryDir m_folder;
    QStringList m_paths;
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
QByteArray withLongComment(const QByteArray &input, std::size_t boundary)
{
    constexpr int kBlock = 16384;
    const CatalogueEncoding &encoding = catalogueEncoding(input);
    const int bomSize = encoding.bom.size();
    const int unit = encoding.lineFeed.size();
    const int units = (kBlock - qMax(static_cast<int>(boundary), bomSize) % kBlock) / unit;
    const QByteArray semicolon = QByteArray(encoding.lineFeed).replace('\n', ';');
    return input.left(bomSize) + semicolon.repeated(units - 1) + encoding.lineFeed
        + input.mid(bomSize);
}

QString described(const char *what, const LangEntry &entry)
{
    // No value contains a line feed.
    return QStringLiteral("%1 %2 %3\n  ")
               .arg(QLatin1String(what))
               .arg(entry.id)
               .arg(entry.show ? QLatin1String("shown") : QLatin1String("hidden"))
        + QStringList {entry.name, entry.folder, entry.qmPath}.join(QLatin1String("\n  "))
        + QLatin1Char('\n');
}

/// Returns all that was read. @p file returns the path that a language's number leads to.
template<typename File>
QString described(const CatalogueModel &catalogue, File file)
{
    QString result = QStringLiteral("default %1\n").arg(catalogue.defaultId);
    for (const LangEntry &record : catalogue.records)
        result +=
            described("record", record) + QLatin1String("file ") + file(record) + QLatin1Char('\n');
    for (const LangEntry &record : catalogue.visible)
        result += described("visible", record);
    return result;
}

QString outcomeOfModel(const QByteArray &file)
{
    return described(readCatalogue(file, applicationDir()), [](const LangEntry &record) {
        return record.show ? record.qmPath : QString();
    });
}

/// Reads the bytes twice: as a file with CTranslatorMgr, and from memory for the hidden records.
QString outcomeOfLibrary(QByteArray file)
{
    static CTranslatorMgr manager;
    manager.loadLangConfig();

    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    QTextStream in(&buffer);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&buffer));
    CatalogueModel catalogue;
    readCatalogue(in, catalogue.defaultId, catalogue.records);
    if (catalogue.defaultId != manager.defaultLangId())
        return QStringLiteral("a different default from memory");
    catalogue.visible = manager.visibleLanguages();
    return described(catalogue,
                     [](const LangEntry &record) { return manager.langFilePath(record.id); });
}

/// Prints the lines escaped.
void print(const char *title, const QString &text)
{
    qWarning("== %s", title);
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        qWarning() << line;
}

} // namespace

QString applicationDir()
{
    return deployment().path(currentFolder);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const std::size_t sum = std::accumulate(data, data + size, std::size_t {0});
    currentFolder = sum % kFolderCount;
    const bool large = sum / kFolderCount % 16 == 0;
    const QByteArray file =
        large ? withLongComment(input, sum / kFolderCount / 16 % (size + 1)) : input;

    deployment().writeCatalogue(file);
    const QString expected = outcomeOfModel(file);
    const QString actual = outcomeOfLibrary(file);
    if (actual != expected) {
        print("Input", QString::fromLatin1(input.constData(), input.size()));
        qWarning("Read after a comment of %d bytes", file.size() - input.size());
        print("Model", expected);
        print("Library", actual);
        std::abort();
    }
    return 0;
}
