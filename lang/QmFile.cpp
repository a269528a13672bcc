#include "lang/QmFile.h"

#include <QMap>
#include <QtEndian>

namespace {

const int magicLength = 16;

quint32 number(const QByteArray &bytes, int position)
{
    return qFromBigEndian<quint32>(bytes.constData() + position);
}

/// The blocks of the file by their tags, as far as Qt reads them.
QMap<int, QByteArray> blocks(const QByteArray &bytes)
{
    QMap<int, QByteArray> result;
    int position = magicLength;
    while (position < bytes.size() - 5) {
        const int tag = uchar(bytes.at(position));
        const quint32 length = number(bytes, position + 1);
        position += 5;
        if (!tag || !length || length > quint32(bytes.size() - position))
            break;
        result[tag] = bytes.mid(position, int(length));
        position += int(length);
    }
    return result;
}

/// Whether the table of contexts has places, and each names lengths and texts that come to an end
/// inside the block.
bool areWholeContexts(const QByteArray &contexts)
{
    if (contexts.isEmpty())
        return true;
    if (contexts.size() < 2)
        return false;
    const int places = qFromBigEndian<quint16>(contexts.constData());
    const int texts = 2 + 2 * places;
    if (places == 0 || contexts.size() < texts)
        return false;
    for (int place = 2; place < texts; place += 2) {
        const int offset = qFromBigEndian<quint16>(contexts.constData() + place);
        int position = texts + 2 * offset;
        int length = offset > 0 ? 1 : 0;
        while (length > 0) {
            if (position >= contexts.size())
                return false;
            length = uchar(contexts.at(position));
            position += 1 + length;
        }
    }
    return true;
}

/// Whether the record at @p position of the messages comes to its end, through fields that lie
/// inside the block.
bool isWholeRecord(const QByteArray &messages, quint32 position)
{
    enum Tag { Translation = 3, Obsolete = 5, SourceText = 6, Context = 7, Comment = 8 };

    const quint32 noText = 0xFFFFFFFF;
    const auto size = quint32(messages.size());
    while (position < size) {
        const int tag = uchar(messages.at(int(position++)));
        if (tag == Obsolete) {
            position += 4;
            continue;
        }
        if (tag != Translation && tag != SourceText && tag != Context && tag != Comment)
            return true; // The end of the record, or what Qt takes for it.
        if (size - position <= 4)
            return false;
        const quint32 length = number(messages, int(position));
        if (tag == Translation && length == noText)
            return true; // Qt takes the last byte of this length for the next tag and gives up.
        position += 4;
        if (length >= size - position)
            return false;
        position += length;
    }
    return true;
}

} // namespace

bool isSoundQmFile(const QByteArray &bytes)
{
    enum Tag { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69 };

    const QMap<int, QByteArray> found = blocks(bytes);
    if (!areWholeContexts(found.value(Contexts)))
        return false;
    const QByteArray hashes = found.value(Hashes);
    const QByteArray messages = found.value(Messages);
    if (hashes.size() % 8 != 0)
        return false;
    for (int position = 0; position < hashes.size(); position += 8) {
        if (!isWholeRecord(messages, number(hashes, position + 4)))
            return false;
    }
    return true;
}
