#include "lang/QmFile.h"

#include "lang/SourceTexts.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QTranslator>
#include <QVersionNumber>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <list>
#include <new>

namespace {

quint32 elfHash(const char *text)
{
    quint32 hash = 0;
    for (; *text != '\0'; ++text) {
        hash = (hash << 4) + static_cast<uchar>(*text);
        const quint32 high = hash & 0xf0000000U;
        hash ^= high >> 24;
        hash &= ~high;
    }
    return hash == 0 ? 1 : hash; // GCOV_EXCL_BR_LINE: None of the plug-in's texts has 0.
}

bool isReadableFile(const QString &fileName)
{
    const QFileInfo info(fileName);
    return info.isFile() && info.isReadable(); // GCOV_EXCL_BR_LINE: Root may read every file.
}

/// Returns the file that QTranslator::load() finds for @p name; empty if there is none. Qt tries
/// the name with and without the suffix ".qm", then removes what follows the last "_" or "." and
/// starts again.
QString findFile(QString name, const QString &directory)
{
    const bool isBelow = !directory.isEmpty() && QFileInfo(name).isRelative();
    const QString prefix = isBelow ? directory + QLatin1Char('/') : QString();
    for (;;) {
        for (const QString &fileName : {prefix + name + QLatin1String(".qm"), prefix + name}) {
            if (isReadableFile(fileName))
                return fileName;
        }
        const int length =
            std::max(name.lastIndexOf(QLatin1Char('_')), name.lastIndexOf(QLatin1Char('.')));
        if (length <= 0)
            return QString();
        name.truncate(length);
    }
}

/// Returns the folder in which Qt searches for the dependencies of @p fileName, at all depths.
QString dependenciesDirectory(const QString &fileName)
{
    // Qt uses the file's folder since 5.15.6, the current one before.
    if (QVersionNumber::fromString(QString::fromLatin1(qVersion())) < QVersionNumber(5, 15, 6))
        return QString();
    return QFileInfo(fileName).absolutePath();
}

/// What is left for a file and its dependencies together; negative if that was not enough.
struct Limits
{
    int loads = 500;
    qint64 reads = 300000;
};

/// Looks up texts in a compiled translation with the same reads as QTranslator::translate(). A read
/// outside the file, which Qt would not notice, and all further ones exceed the limit and return 0.
/// So does every read after more reads than a file without overlapping lists and records needs. A 0
/// ends each of the loops below.
class QmFile
{
public:
    /// Opens a file, and its dependencies in the order in which Qt loads them.
    QmFile(Limits &limits, const QString &fileName, const QString &directory)
        : m_limits(limits)
        , m_file(fileName)
    {
        if (--limits.loads < 0 || fileName.isEmpty() || !m_file.open(QIODevice::ReadOnly))
            return;
        m_size = m_file.size();
        m_data = reinterpret_cast<const char *>(m_file.map(0, m_size));
        if (m_data == nullptr) { // Compressed in a resource, for example
            m_bytes = m_file.readAll();
            m_data = m_bytes.constData();
            m_size = m_bytes.size();
        }
        m_file.close(); // The mapping stays. A process can't have many files open.
        limits.reads += m_size / 4;
        readBlocks(directory);
    }

    /// Returns true if the file or one of its dependencies contains @p text.
    bool lookUp(const SourceText &text)
    {
        if (m_hashes.length > 0) {
            if (isRuledOut(text.context))
                return false;
            if (findByHash(text))
                return true;
        }
        return std::any_of(m_dependencies.begin(), m_dependencies.end(),
                           [&text](QmFile &file) { return file.lookUp(text); });
    }

private:
    struct Block
    {
        qint64 start = 0;
        qint64 length = 0;
    };

    template<typename Number>
    Number number(qint64 position)
    {
        if (position < 0 || position > m_size - qint64(sizeof(Number)))
            fail();
        return --m_limits.reads < 0 ? Number(0) : qFromBigEndian<Number>(m_data + position);
    }

    void fail() { m_limits.reads = -1; }

    bool matches(qint64 position, quint32 length, const char *text)
    {
        if (length > 0 && number<quint8>(position + length - 1) == 0)
            --length;
        return m_limits.reads >= 0 && length == std::strlen(text)
            && std::memcmp(m_data + position, text, length) == 0;
    }

    void readBlocks(const QString &directory)
    {
        enum Tag { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69, Dependencies = 0x96 };

        qint64 position = 16; // After the magic number
        while (position < m_size - 5) {
            // Not limited, because Qt has read or will read the same.
            const int tag = qFromBigEndian<quint8>(m_data + position);
            const Block block {position + 5, qFromBigEndian<quint32>(m_data + position + 1)};
            position = block.start + block.length;
            if (tag == 0 || block.length == 0 || position > m_size)
                break;
            if (tag == Contexts)
                m_contexts = block;
            else if (tag == Hashes)
                m_hashes = block;
            else if (tag == Messages)
                m_messages = block;
            else if (tag == Dependencies)
                readDependencies(block, directory);
        }
    }

    void readDependencies(const Block &block, const QString &directory)
    {
        QDataStream stream(
            QByteArray::fromRawData(m_data + block.start, static_cast<int>(block.length)));
        QString name;
        while (!stream.atEnd() && m_limits.loads >= 0) {
            stream >> name;
            m_dependencies.emplace_back(m_limits, findFile(name, directory), directory);
        }
    }

    /// Returns true if the file has a table of contexts that lacks @p context.
    bool isRuledOut(const char *context)
    {
        if (m_contexts.length == 0)
            return false;
        if (qstrcmp(context, m_context) == 0) // Same as for the previous text
            return m_contextIsRuledOut;

        m_context = context;
        m_contextIsRuledOut = true;
        const quint32 buckets = number<quint16>(m_contexts.start);
        if (buckets == 0) {
            fail(); // Qt would divide by 0.
            return true;
        }
        const qint64 bucket = m_contexts.start + 2 + 2 * qint64(elfHash(context) % buckets);
        const auto offset = number<quint16>(bucket);
        if (offset == 0)
            return true;
        qint64 position = m_contexts.start + 2 + 2 * qint64(buckets) + 2 * qint64(offset);
        while (const quint32 length = number<quint8>(position++)) {
            if (matches(position, length, context)) {
                m_contextIsRuledOut = false;
                break;
            }
            position += length;
        }
        return m_contextIsRuledOut;
    }

    bool findByHash(const SourceText &text)
    {
        const quint32 hash = elfHash(text.text);
        qint64 entry = m_hashes.start;
        qint64 last = m_hashes.start + m_hashes.length / 8 * 8 - 8;
        while (entry <= last) {
            const qint64 middle = entry + (last - entry) / 16 * 8;
            const auto found = number<quint32>(middle);
            if (found == hash) {
                entry = middle;
                break;
            }
            if (found < hash)
                entry = middle + 8;
            else
                last = middle - 8;
        }
        if (entry > last)
            return false;

        while (entry != m_hashes.start && number<quint32>(entry - 8) == hash)
            entry -= 8;
        for (; entry < m_hashes.start + m_hashes.length; entry += 8) {
            if (number<quint32>(entry) != hash)
                break;
            if (findInRecord(m_messages.start + number<quint32>(entry + 4), text))
                return true;
        }
        return false;
    }

    bool findInRecord(qint64 position, const SourceText &text)
    {
        enum Tag { End = 1, Translation = 3, Obsolete = 5, Source = 6, Context = 7, Comment = 8 };

        Block translation;
        for (;;) {
            const bool inBlock = position < m_messages.start + m_messages.length;
            const int tag = inBlock ? number<quint8>(position++) : 0;
            if (tag == End)
                break;
            if (tag == Obsolete) {
                position += 4;
                continue;
            }
            if (tag != Translation && tag != Source && tag != Context && tag != Comment)
                return false;

            const auto length = number<quint32>(position);
            position += 4;
            if (tag == Translation) {
                if (translation.start == 0)
                    translation = {position, length};
                position += static_cast<qint32>(length); // Qt reads it as signed: it may go back.
                continue;
            }
            if ((tag == Source && !matches(position, length, text.text))
                || (tag == Context && !matches(position, length, text.context))
                || (tag == Comment && number<quint8>(position) != 0
                    && !matches(position, length, "")))
                return false;
            position += length;
        }
        if (translation.start == 0)
            return false;
        if (translation.start + translation.length > m_size)
            fail();
        return true;
    }

    Limits &m_limits;
    QFile m_file;       ///< Owns the mapping.
    QByteArray m_bytes; ///< Of a file that can't be mapped
    const char *m_data = nullptr;
    qint64 m_size = 0;
    Block m_contexts;
    Block m_hashes;
    Block m_messages;
    const char *m_context = nullptr; ///< The context that m_contextIsRuledOut describes
    bool m_contextIsRuledOut = false;
    std::list<QmFile> m_dependencies;
};

} // namespace

QString findQmFile(const QString &fileName)
{
    return findFile(fileName, QString());
}

bool loadQmFile(QTranslator &translator, const QString &fileName)
{
    try {
        Limits limits;
        const QString found = findFile(fileName, QString());
        QmFile file(limits, found, dependenciesDirectory(found));
        if (limits.loads >= 0 && translator.load(fileName)) {
            for (const SourceText &text : kSourceTexts)
                file.lookUp(text);
            if (limits.reads >= 0)
                return true;
        }
    } catch (const std::bad_alloc &) {
        // Qt copies some blocks, and can't hold one of 1 GB. The host must not see exceptions.
    }
    translator.load(nullptr, 0); // Empties it.
    return false;
}
