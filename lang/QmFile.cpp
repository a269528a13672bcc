#include "lang/QmFile.h"

#include "lang/SourceTexts.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTranslator>
#include <QtEndian>

#include <algorithm>
#include <climits>
#include <cstring>
#include <list>

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

/// Returns the file that QTranslator::load() finds for @p name. Qt tries the name with and without
/// the suffix ".qm", then removes what follows the last "_" or "." and starts again.
QString findFile(const QString &name, const QString &directory)
{
    const QString prefix = QFileInfo(name).isRelative() ? directory + QLatin1Char('/') : QString();
    QString fileName;
    int length = name.size();
    do {
        fileName = prefix + name.left(length);
        if (isReadableFile(fileName + QLatin1String(".qm")))
            return fileName + QLatin1String(".qm");
        length = std::max(name.leftRef(length).lastIndexOf(QLatin1Char('_')),
                          name.leftRef(length).lastIndexOf(QLatin1Char('.')));
    } while (!isReadableFile(fileName) && length > 0); // GCOV_EXCL_BR_LINE: Qt has found it.
    return fileName;
}

/// The state shared by a file and its dependencies.
struct Check
{
    QHash<QString, QByteArray> files; ///< By name, because a file may be a dependency many times.
    qint64 stepsLeft = 150000;
    bool failed = false;
};

/// Looks up texts in a compiled translation with the same reads as QTranslator::translate() of
/// Qt 5.15. A read outside the file, which Qt would not notice, fails and returns 0. So does every
/// read after more steps than a file without overlapping lists and records needs. A 0 ends each of
/// the loops below.
class QmFile
{
public:
    /// Reads a file that Qt has just loaded. Its dependencies are searched for in @p directory.
    QmFile(Check &check, const QString &fileName, const QString &directory)
        : m_check(check)
    {
        if (!check.files.contains(fileName)) {
            QFile file(fileName);
            // A QByteArray can't hold a larger file. No test has one, or a file that vanishes after
            // Qt has loaded it.
            if (!file.open(QIODevice::ReadOnly) || file.size() >= INT_MAX) // GCOV_EXCL_BR_LINE
                check.failed = true;                                       // GCOV_EXCL_LINE
            else
                check.files.insert(fileName, file.readAll());
            // Records written by tools have at least 9 bytes per step.
            check.stepsLeft += check.files.value(fileName).size() / 8;
        }
        m_bytes = check.files.value(fileName);
        m_data = m_bytes.constData();
        m_size = m_bytes.size();
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
        if (position < 0 || position > m_size - qint64(sizeof(Number))) {
            fail();
            return 0;
        }
        return qFromBigEndian<Number>(m_data + position);
    }

    void fail()
    {
        m_check.failed = true;
        m_size = 0; // So that all further reads fail.
    }

    /// Counts an iteration of a loop whose length depends on the file's content.
    void takeStep()
    {
        if (--m_check.stepsLeft < 0)
            fail();
    }

    bool matches(qint64 position, quint32 length, const char *text)
    {
        if (length > 0 && number<quint8>(position + length - 1) == 0)
            --length;
        return m_size > 0 && length == std::strlen(text)
            && std::memcmp(m_data + position, text, length) == 0;
    }

    void readBlocks(const QString &directory)
    {
        enum Tag { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69, Dependencies = 0x96 };

        qint64 position = 16; // After the magic number
        while (position < m_size - 5) {
            const int tag = number<quint8>(position);
            const Block block {position + 5, number<quint32>(position + 1)};
            position = block.start + block.length;
            if (tag == 0 || block.length == 0)
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
            m_bytes.mid(static_cast<int>(block.start), static_cast<int>(block.length)));
        QString name;
        while (!stream.atEnd()) {
            stream >> name;
            m_dependencies.emplace_back(m_check, findFile(name, directory), directory);
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
            takeStep();
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

        while (entry != m_hashes.start && number<quint32>(entry) == number<quint32>(entry - 8))
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
            takeStep();
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

    Check &m_check;
    QByteArray m_bytes;
    const char *m_data = nullptr; ///< The data of m_bytes
    qint64 m_size = 0;            ///< The size of m_bytes; 0 after a failure
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
    if (!translator.load(fileName))
        return false;

    Check check;
    QmFile file(check, translator.filePath(), QFileInfo(translator.filePath()).absolutePath());
    for (const SourceText &text : kSourceTexts)
        file.lookUp(text);
    if (!check.failed)
        return true;
    translator.load(nullptr, 0); // Empties it.
    return false;
}
