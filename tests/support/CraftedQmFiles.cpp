#include "support/CraftedQmFiles.h"

#include "lang/SourceTexts.h"

#include <QMultiMap>
#include <QString>
#include <QtEndian>

namespace {

enum BlockTag {
    Contexts = 0x2f,
    Hashes = 0x42,
    Messages = 0x69,
    Dependencies = 0x96,
    Other = 0x10
};
enum FieldTag { End = 1, Translation = 3, Obsolete = 5, Source = 6, Context = 7, Comment = 8 };

template<typename Number>
QByteArray bigEndian(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray utf16(const QByteArray &text)
{
    QByteArray bytes;
    for (const QChar c : QString::fromUtf8(text))
        bytes += bigEndian(c.unicode());
    return bytes;
}

QByteArray tagged(int tag, const QByteArray &content, quint32 length)
{
    return bigEndian(static_cast<quint8>(tag)) + bigEndian(length) + content;
}

/// Returns a block of the file or a field of a record: both are tag, length and content.
QByteArray tagged(int tag, const QByteArray &content)
{
    return tagged(tag, content, static_cast<quint32>(content.size()));
}

QByteArray field(FieldTag tag, const char *content)
{
    return tagged(tag, QByteArray(content));
}

QByteArray translation(const char *text)
{
    return tagged(Translation, utf16(text));
}

const QByteArray end = bigEndian(quint8 {End});
const QByteArray sourceChange = field(Source, "Change");
const QByteArray contextPage = field(Context, "PageSetLang");

QByteArray record(const char *context, const char *text, const char *translated)
{
    return translation(translated) + field(Comment, "") + field(Source, text)
        + field(Context, context) + end;
}

QByteArray recordOfChange(const char *translated)
{
    return record("PageSetLang", "Change", translated);
}

/// A record whose translation leads back to its own start
const QByteArray endlessRecord = tagged(Translation, "", static_cast<quint32>(-5)) + end;

/// The ELF hash function, which Qt uses for texts and contexts.
quint32 hashOf(const char *text)
{
    quint32 hash = 0;
    for (const char c : QByteArray(text)) {
        hash = (hash << 4) + static_cast<uchar>(c);
        const quint32 top = hash & 0xf0000000U;
        hash = (hash ^ (top >> 24)) & 0x0fffffffU;
    }
    return hash;
}

QByteArray entry(quint32 hash, int offset)
{
    return bigEndian(hash) + bigEndian(static_cast<quint32>(offset));
}

QByteArray entryOfChange(int offset)
{
    return entry(hashOf("Change"), offset);
}

const QByteArray magic = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");

/// Returns a file with these blocks and an end that makes Qt read all of them.
QByteArray file(const QByteArray &blocks)
{
    return magic + blocks + tagged(Other, "any") + tagged(0, "");
}

/// Returns a file with the blocks in @p further and then "Change" alone, in the record at the start
/// of @p messages.
QByteArray fileOfChange(const QByteArray &messages, const QByteArray &further = QByteArray())
{
    return file(further + tagged(Hashes, entryOfChange(0)) + tagged(Messages, messages));
}

/// Returns the same with nothing after the record.
QByteArray fileThatEndsWith(const QByteArray &messages)
{
    return magic + tagged(Hashes, entryOfChange(0)) + tagged(Messages, messages);
}

/// Returns a table of contexts: the number of buckets, their offsets and then @p lists.
QByteArray contextTable(const QVector<quint16> &buckets, const QByteArray &lists)
{
    QByteArray content = bigEndian(static_cast<quint16>(buckets.size()));
    for (const quint16 offset : buckets)
        content += bigEndian(offset);
    return tagged(Contexts, content + lists);
}

QByteArray contextName(const char *name)
{
    return bigEndian(static_cast<quint8>(qstrlen(name))) + name;
}

/// Returns entries, sorted by hash, and records for the plug-in's texts and @p others more.
QByteArray blocksOfAllTexts(int others)
{
    QByteArray messages;
    QMultiMap<quint32, int> offsets;
    const auto add = [&](const char *context, const QByteArray &text) {
        offsets.insert(hashOf(text.constData()), messages.size());
        messages += record(context, text.constData(), text.toUpper().constData());
    };
    for (const SourceText &text : kSourceTexts)
        add(text.context, text.text);
    for (int i = 0; i < others; ++i)
        add("MainWindow", "A text of the host, number " + QByteArray::number(i));
    QByteArray hashes;
    for (auto it = offsets.constBegin(); it != offsets.constEnd(); ++it)
        hashes += entry(it.key(), it.value());
    return tagged(Hashes, hashes) + tagged(Messages, messages);
}

/// Returns @p count empty fields, with which any record can begin.
QByteArray chain(int count)
{
    return tagged(Obsolete, "", 0).repeated(count);
}

QByteArray fileOfSharedRecord(int entries, int fields)
{
    return file(tagged(Hashes, entryOfChange(0).repeated(entries))
                + tagged(Messages, chain(fields) + field(Source, "other") + end));
}

} // namespace

QByteArray completeQmFile(const QByteArray &further)
{
    return file(further + blocksOfAllTexts(0));
}

QByteArray dependenciesBlock(const QList<QByteArray> &names)
{
    QByteArray content;
    for (const QByteArray &name : names) {
        const QByteArray text = utf16(name);
        content += bigEndian(static_cast<quint32>(text.size())) + text;
    }
    return tagged(Dependencies, content);
}

QByteArray endlessQmFile()
{
    return fileOfChange(endlessRecord);
}

QByteArray slowQmFile()
{
    return fileOfSharedRecord(250000, 400000);
}

QVector<CraftedQmFile> craftedQmFiles()
{
    const QByteArray bothContexts = contextName("DlgSettings") + contextName("PageSetLang");
    // The smallest offset that is not 0 is two bytes after the buckets.
    const QByteArray gap(2, '\0');
    const QByteArray good = recordOfChange("found");

    QVector<CraftedQmFile> files {
        {"complete", completeQmFile(), true, "CHANGE"},
        {"no texts", file(""), true},

        // Blocks
        {"block after another one", completeQmFile(tagged(Other, "x")), true, "CHANGE"},
        {"blocks after tag 0 are not read", completeQmFile(tagged(0, "")), true},
        {"blocks after an empty one are not read", completeQmFile(tagged(Other, "")), true},
        {"last block of a kind counts",
         file(tagged(Hashes, "rubbish!") + tagged(Hashes, entryOfChange(0))
              + tagged(Messages, good)),
         true, "found"},

        // Table of contexts
        {"contexts, list ended by 0", completeQmFile(contextTable({1}, gap + bothContexts + '\0')),
         true, "CHANGE"},
        {"contexts, list ended by the block", completeQmFile(contextTable({1}, gap + bothContexts)),
         true, "CHANGE"},
        {"contexts, name with terminating null",
         completeQmFile(contextTable({1},
                                     gap
                                         + QByteArray("\x0c"
                                                      "DlgSettings\0"
                                                      "\x0c"
                                                      "PageSetLang\0",
                                                      26))),
         true, "CHANGE"},
        {"contexts, not listed", completeQmFile(contextTable({1}, gap + contextName("A") + '\0')),
         true},
        {"contexts, not listed, endless record",
         fileOfChange(endlessRecord, contextTable({1}, gap + contextName("A") + '\0')), true},
        {"contexts, empty bucket", completeQmFile(contextTable({0}, gap)), true},
        {"contexts, empty bucket, endless record",
         fileOfChange(endlessRecord, contextTable({0}, gap)), true},
        {"contexts, no buckets (Qt divides by their number)", completeQmFile(contextTable({}, gap)),
         false},
        {"contexts, list after the end of the file", completeQmFile(contextTable({0x7fff}, gap)),
         false},
        {"contexts, list that runs past the end of the file",
         magic + tagged(Hashes, entryOfChange(0)) + contextTable({1}, gap + '\xff'), false},
        {"contexts, list without end at the end of the file",
         magic + tagged(Hashes, entryOfChange(0)) + contextTable({1}, gap + contextName("A")),
         false},
        {"contexts, incomplete number at the end of the file",
         magic + tagged(Hashes, entryOfChange(0)) + tagged(Contexts, QByteArray(1, '\0')), false},
        {"contexts, damaged, but nothing to look up",
         file(tagged(Contexts, QByteArray(2, '\0')) + tagged(Messages, good)), true},

        // Hashes
        {"hashes, incomplete last entry",
         file(tagged(Hashes, entryOfChange(0) + "1234") + tagged(Messages, good)), true, "found"},
        {"hashes, incomplete only entry", file(tagged(Hashes, "1234567") + tagged(Messages, good)),
         true},
        {"hashes, unsorted",
         file(tagged(Hashes, entry(0x0fffffff, 0) + entryOfChange(0) + entry(1, 0))
              + tagged(Messages, good)),
         true, "found"},
        {"hashes, equal ones, the second matches",
         file(
             tagged(Hashes, entryOfChange(0) + entryOfChange(record("X", "Change", "wrong").size()))
             + tagged(Messages, record("X", "Change", "wrong") + good)),
         true, "found"},
        {"hashes, equal ones, the first matches",
         file(tagged(Hashes, entryOfChange(0) + entryOfChange(good.size()))
              + tagged(Messages, good + endlessRecord)),
         true, "found"},
        {"hashes, equal ones past the end of the file",
         magic + tagged(Messages, end)
             + tagged(Hashes, entryOfChange(0) + bigEndian(hashOf("Change"))),
         false},

        // Records
        {"record after the end of the messages",
         file(tagged(Hashes, entryOfChange(1 << 30)) + tagged(Messages, good)), true},
        {"record without messages", file(tagged(Hashes, entryOfChange(0))), true},
        {"record without end", fileOfChange(good.left(good.size() - 1)), true},
        {"record of another program, damaged",
         file(tagged(Hashes, entryOfChange(0) + entry(0x0fffffff, good.size()))
              + tagged(Messages, good + "\x03\xff\xff\xff\xff")),
         true, "found"},
        {"record with an unknown field", fileOfChange("\x02" + good), true},
        {"empty record", fileOfChange(end), true},
        {"plural forms, the first is used",
         fileOfChange(translation("one") + translation("many") + sourceChange + contextPage + end),
         true, "one"},
        {"empty translation, found",
         file(tagged(Hashes, entryOfChange(0) + entryOfChange(good.size() - 10))
              + tagged(Messages, recordOfChange("") + endlessRecord)),
         true},
        {"translation of an odd number of bytes",
         fileOfChange(tagged(Translation, utf16("odd") + 'x') + sourceChange + end), true, "odd"},
        {"translation longer than the file",
         fileOfChange(tagged(Translation, utf16("a"), 1 << 20) + sourceChange + end), true},
        {"translation that loops back to itself", endlessQmFile(), false},
        {"translation that jumps back to the end of a record",
         fileOfChange(sourceChange + end + tagged(Translation, "", static_cast<quint32>(-6)))
             .replace(bigEndian(hashOf("Change")) + bigEndian(0U),
                      entryOfChange(sourceChange.size() + 1)),
         false},
        {"translation that jumps back to where there is no field",
         fileOfChange(tagged(Translation, "", static_cast<quint32>(-2))), true},
        {"translation that jumps back to before the file",
         fileOfChange(tagged(Translation, "", 0x80000000U)), false},
        {"source text that runs past the end of the file",
         fileOfChange(translation("a") + tagged(Source, "Change", 0x7fffffff)), false},
        {"source text of different length",
         fileOfChange(translation("a") + tagged(Source, "Change", 3)), true},
        {"source text with terminating null",
         fileOfChange(translation("a") + tagged(Source, QByteArray("Change\0", 7)) + end), true,
         "a"},
        {"context that runs past the end of the file",
         fileOfChange(translation("a") + sourceChange + tagged(Context, "", 0xfffffff0U)), false},
        {"different comment", fileOfChange(field(Comment, "b") + good), true},
        {"comment that runs past the end of the file",
         fileOfChange(tagged(Comment, "b", 0x10000000) + good), false},
        {"comment that starts with null and runs past the end of the file",
         fileOfChange(tagged(Comment, QByteArray(1, '\0'), 0x10000000) + good), true},
        {"comment at the end of the file", fileThatEndsWith(tagged(Comment, "")), false},
        {"incomplete length at the end of the file",
         fileThatEndsWith(translation("a") + '\x06' + '\0'), false},
        {"missing length at the end of the messages", fileOfChange(translation("a") + '\x05'),
         true},
        {"long record", fileOfChange(chain(10000) + good), true, "found"},
        {"record shared by many entries", fileOfSharedRecord(350, 350), true},
        {"long record shared by very many entries", slowQmFile(), false},
    };
    return files;
}

QByteArray largeQmFile()
{
    return file(blocksOfAllTexts(25000));
}

QVector<CraftedQmFile> costlyQmFiles()
{
    const QByteArray gap(2, '\0');
    QByteArray entriesOfAllTexts;
    QMap<quint32, int> ordered;
    for (const SourceText &text : kSourceTexts)
        ordered.insert(hashOf(text.text), 0);
    for (auto it = ordered.constBegin(); it != ordered.constEnd(); ++it)
        entriesOfAllTexts += entry(it.key(), 0);
    const QByteArray other = field(Source, "other") + end;
    return {
        {"1,000 entries, one record of 1,000 fields", fileOfSharedRecord(1000, 1000), true},
        {"many entries, one short record",
         file(tagged(Hashes, entryOfChange(0).repeated(500000)) + tagged(Messages, other)), true},
        {"many entries, one long record", slowQmFile(), false},
        {"few entries, one long record",
         file(tagged(Hashes, entriesOfAllTexts) + tagged(Messages, chain(800000) + other)), true},
        {"one long list of contexts",
         completeQmFile(contextTable({1}, gap + contextName("A").repeated(2000000) + '\0')), true},
        {"many buckets, one long list of contexts",
         completeQmFile(contextTable(QVector<quint16>(65535, 1),
                                     gap + contextName("A").repeated(1900000) + '\0')),
         true},
        {"endless", endlessQmFile() + QByteArray(4 << 20, 'x'), false},
    };
}
