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

/// Whether the record at @p position of the messages comes to its end, through fields that lie
/// inside the block.
bool isWholeRecord(const QByteArray &messages, quint32 position)
{
    enum Tag { End = 1, Translation = 3, Obsolete = 5, SourceText = 6, Context = 7, Comment = 8 };

    const auto size = quint32(messages.size());
    while (position < size) {
        const int tag = uchar(messages.at(int(position++)));
        if (tag == Obsolete) {
            position += 4;
            continue;
        }
        if (tag != Translation && tag != SourceText && tag != Context && tag != Comment)
            return true;
        if (size - position <= 4)
            return false;
        const quint32 length = number(messages, int(position));
        position += 4;
        if (length >= size - position)
            return false;
        position += length;
    }
    return true;
}

} // namespace

bool staysInside(const QByteArray &bytes)
{
    enum Tag { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69, Dependencies = 0x96 };

    // The two blocks that no file of ours has, and damage rarely makes.
    const QMap<int, QByteArray> found = blocks(bytes);
    if (found.contains(Contexts) || found.contains(Dependencies))
        return false;

    const QByteArray hashes = found.value(Hashes);
    if (hashes.size() % 8 != 0)
        return false;
    for (int position = 0; position < hashes.size(); position += 8) {
        if (!isWholeRecord(found.value(Messages), number(hashes, position + 4)))
            return false;
    }
    return true;
}
