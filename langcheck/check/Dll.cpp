#include "langcheck/check/Dll.h"

#include <QByteArray>
#include <QIODevice>
#include <QVector>
#include <QtEndian>

namespace {

/// A part of the file and where Windows loads it. Addresses are relative to the DLL's.
struct Section
{
    qint64 address = 0;
    qint64 size = 0;
    qint64 offset = 0; ///< In the file.
};

/// Follows the headers and tables of a PE file. They aren't trusted: reading beyond the end of the
/// file gives zeros, and every loop has a limit.
class DllReader
{
public:
    DllReader(QIODevice &file, bool isProgram)
        : m_file(file)
        , m_size(file.size())
        , m_isProgram(isProgram)
    {
    }

    Dll read()
    {
        Dll dll;
        dll.defect = readHeaders();
        dll.is32Bit = m_machine == kX86;
        if (dll.is32Bit)
            dll.defect = QStringLiteral("it is for 32-bit x86");
        if (dll.defect.isEmpty() || dll.is32Bit)
            readImports(dll);
        if (dll.defect.isEmpty()) {
            dll.version = version();
            readExports(dll);
        }
        return dll;
    }

private:
    enum Directory { ExportTable, ImportTable, ResourceTable };

    /// Returns a number in the file; 0 beyond its end.
    template<typename Number>
    Number number(qint64 offset)
    {
        const QByteArray data = bytes(offset, sizeof(Number));
        return data.isEmpty() ? Number(0) : qFromLittleEndian<Number>(data.constData());
    }

    /// Returns bytes of the file; none if they aren't all there.
    QByteArray bytes(qint64 offset, int count)
    {
        if (offset < 0 || offset > m_size - count || !m_file.seek(offset))
            return {};
        const QByteArray data = m_file.read(count);
        return data.size() == count ? data : QByteArray();
    }

    /// Returns the bytes up to a zero byte; none if there is no such byte in reach.
    QByteArray name(qint64 offset)
    {
        if (offset < 0 || offset >= m_size || !m_file.seek(offset))
            return {};
        // Most names are short. Peeking keeps the file's buffer, in which the next name usually is.
        for (const int most : {256, kLongestName}) {
            const QByteArray data = m_file.peek(qMin(most, m_bytesLeft));
            const int end = data.indexOf('\0');
            if (end >= 0) {
                m_bytesLeft -= end;
                return data.left(end);
            }
        }
        return {};
    }

    /// Returns where the byte at an address is in the file; the end of the file if it isn't there,
    /// so that reading it gives zeros.
    qint64 offsetOf(qint64 address) const
    {
        for (const Section &section : m_sections) {
            if (address >= section.address && address < section.address + section.size)
                return section.offset + address - section.address;
        }
        return m_size;
    }

    /// Reads the headers and returns what is wrong with them.
    QString readHeaders()
    {
        const qint64 header = number<quint32>(0x3C);
        if (bytes(0, 2) != "MZ" || bytes(header, 4) != QByteArray("PE\0\0", 4))
            return QStringLiteral("it has no PE header");

        m_machine = number<quint16>(header + 4);
        if (m_machine != kX64 && m_machine != kX86)
            return QStringLiteral("it is for machine type 0x%1").arg(m_machine, 4, 16, QChar(u'0'));
        const quint16 isDll = 0x2000;
        const bool isProgram = (number<quint16>(header + 22) & isDll) == 0;
        if (isProgram != m_isProgram)
            return isProgram ? QStringLiteral("it is a program") : QStringLiteral("it is a DLL");

        m_optionalHeader = header + 24;
        const int sectionCount = number<quint16>(header + 6);
        const int mostSections = 96; // Windows' own limit
        const quint16 format = m_machine == kX86 ? 0x010B : 0x020B;
        if (number<quint16>(m_optionalHeader) != format || sectionCount > mostSections)
            return QStringLiteral("its header is damaged");

        const qint64 sections = m_optionalHeader + number<quint16>(header + 20);
        if (sections + qint64(40) * sectionCount > m_size)
            return QStringLiteral("it is cut off");
        for (int i = 0; i < sectionCount; ++i) {
            const qint64 entry = sections + qint64(40) * i;
            const Section section = {number<quint32>(entry + 12), number<quint32>(entry + 16),
                                     number<quint32>(entry + 20)};
            if (section.offset == 0) // Has no bytes in the file.
                continue;
            if (section.offset + section.size > m_size)
                return QStringLiteral("it is cut off");
            m_sections += section;
        }
        return {};
    }

    /// Returns a table's offset in the file; the end of the file if there is none.
    qint64 table(Directory directory)
    {
        const int tables = m_machine == kX86 ? 96 : 112;
        return offsetOf(number<quint32>(m_optionalHeader + tables + qint64(8) * directory));
    }

    static CompilerFamily familyOf(const QByteArray &name)
    {
        if (name.startsWith('?'))
            return CompilerFamily::Msvc;
        return name.startsWith("_Z") ? CompilerFamily::MinGw : CompilerFamily::Unknown;
    }

    void readExports(Dll &dll)
    {
        const qint64 exports = table(ExportTable);
        const QByteArray functions = addresses(exports + 28, number<quint32>(exports + 20));
        const auto firstOrdinal = number<quint32>(exports + 16);
        for (int i = 0; i < functions.size() / 4; ++i) {
            if (addressAt(functions, i) != 0) // Numbers may have gaps.
                dll.exportedFunctions += '#' + QByteArray::number(firstOrdinal + quint32(i));
        }
        const QByteArray names = addresses(exports + 32, number<quint32>(exports + 24));
        for (int i = 0; i < names.size() / 4; ++i) {
            const QByteArray function = name(offsetOf(addressAt(names, i)));
            dll.exportedFunctions += function;
            if (dll.exports == CompilerFamily::Unknown)
                dll.exports = familyOf(function);
        }
    }

    /// Returns a table of addresses, to which the number at @p pointer refers.
    QByteArray addresses(qint64 pointer, qint64 count)
    {
        return bytes(offsetOf(number<quint32>(pointer)), int(4 * qMin(count, kMostNames)));
    }

    static quint32 addressAt(const QByteArray &addresses, int index)
    {
        return qFromLittleEndian<quint32>(addresses.constData() + qint64(4) * index);
    }

    void readImports(Dll &dll)
    {
        const int size = m_machine == kX86 ? 4 : 8;
        qint64 left = kMostNames; // In all DLLs together
        for (qint64 entry = table(ImportTable); left > 0; --left, entry += 20) {
            const auto dllName = number<quint32>(entry + 12);
            if (dllName == 0)
                break;
            const QString from = QString::fromLatin1(name(offsetOf(dllName)).toLower());
            const bool fromQt = from.startsWith(QLatin1String("qt5"));
            const auto names = number<quint32>(entry);
            // Some linkers write only the second table.
            qint64 import = offsetOf(names == 0 ? number<quint32>(entry + 16) : names);
            for (; left > 0; --left, import += size) {
                const quint64 value = size == 4 ? number<quint32>(import) : number<quint64>(import);
                if (value == 0)
                    break;
                // The highest bit is for a number. Before a name, there are 16 bits.
                const QByteArray function = value >> (8 * size - 1) != 0
                    ? '#' + QByteArray::number(quint16(value))
                    : name(offsetOf(qint64(value)) + 2);
                dll.imports += {from, function};
                if (fromQt && dll.qtImports == CompilerFamily::Unknown)
                    dll.qtImports = familyOf(function);
            }
        }
    }

    QVersionNumber version()
    {
        const qint64 resources = table(ResourceTable);
        // Three levels: the type, the name and the language. Of the latter two, the first counts.
        const quint32 versionType = 16;
        int left = number<quint16>(resources + 12) + number<quint16>(resources + 14);
        qint64 entry = resources + 16;
        for (; left > 0 && number<quint32>(entry) != versionType; --left)
            entry += 8;
        if (left == 0)
            return {};
        for (int level = 0; level < 2; ++level)
            entry = resources + (number<quint32>(entry + 4) & 0x7FFFFFFF) + 16;
        const qint64 data = resources + number<quint32>(entry + 4);

        // VS_FIXEDFILEINFO, after the key "VS_VERSION_INFO" in UTF-16
        const qint64 info = offsetOf(number<quint32>(data)) + 40;
        if (number<quint32>(info) != 0xFEEF04BD)
            return {};
        return QVersionNumber(number<quint16>(info + 10), number<quint16>(info + 8),
                              number<quint16>(info + 14));
    }

    static constexpr quint16 kX86 = 0x014C;
    static constexpr quint16 kX64 = 0x8664;
    static constexpr qint64 kMostNames = 0x10000; ///< A DLL can't export more.
    static constexpr int kLongestName = 0x2000;   ///< Compilers shorten names before.

    QIODevice &m_file;
    const qint64 m_size;
    const bool m_isProgram;
    quint16 m_machine = 0;
    int m_bytesLeft = 0x2000000; ///< For all names together, several times what Qt's DLLs have.
    qint64 m_optionalHeader = 0;
    QVector<Section> m_sections;
};

} // namespace

Dll readDll(QIODevice &file)
{
    return DllReader(file, false).read();
}

Dll readProgram(QIODevice &file)
{
    return DllReader(file, true).read();
}
