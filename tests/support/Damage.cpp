#include "support/Damage.h"

#include <QtGlobal>

#include <algorithm>

namespace {

void flip(char *bytes, int bit)
{
    bytes[bit / 8] = char(uchar(bytes[bit / 8]) ^ (1U << (bit % 8)));
}

} // namespace

QByteArray damaged(QByteArray bytes, std::mt19937 &random)
{
    const auto below = [&random](int limit) { return int(random() % quint32(limit)); };
    const int size = bytes.size();
    char *const data = bytes.data();

    switch (below(5)) {
    case 0: // Bits flipped
        for (int count = 1 + below(8); count > 0; --count)
            flip(data, below(size * 8));
        break;
    case 1: // Bytes overwritten
        for (int count = 1 + below(8); count > 0; --count)
            data[below(size)] = char(random());
        break;
    case 2: { // A run of zeros
        const int start = below(size);
        std::fill_n(data + start, qMin(1 + below(64), size - start), '\0');
        break;
    }
    case 3: { // Two blocks swapped
        const int length = 1 + below(size / 2);
        const int first = below(size - 2 * length + 1);
        const int second = first + length + below(size - 2 * length - first + 1);
        std::swap_ranges(data + first, data + first + length, data + second);
        break;
    }
    default: // Cut off
        bytes.truncate(below(size));
    }
    return bytes;
}
