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
        if (dll.defect.isEmpty()) {
            dll.version = version();
            dll.exports = exportedFamily();
            dll.qtImports = importedFamily();
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

        const auto machine = number<quint16>(header + 4);
        if (machine == 0x014C)
            return QStringLiteral("it is for 32-bit x86");
        if (machine != 0x8664)
            return QStringLiteral("it is for machine type 0x%1").arg(machine, 4, 16, QChar(u'0'));
        const quint16 isDll = 0x2000;
        const bool isProgram = (number<quint16>(header + 22) & isDll) == 0;
        if (isProgram != m_isProgram)
            return isProgram ? QStringLiteral("it is a program") : QStringLiteral("it is a DLL");

        m_optionalHeader = header + 24;
        const int sectionCount = number<quint16>(header + 6);
        const int mostSections = 96; // Windows' own limit
        const quint16 is64Bit = 0x020B;
        if (number<quint16>(m_optionalHeader) != is64Bit || sectionCount > mostSections)
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
        return offsetOf(number<quint32>(m_optionalHeader + 112 + qint64(8) * directory));
    }

    CompilerFamily familyOfName(qint64 offset)
    {
        const QByteArray start = bytes(offset, 2);
        if (start.startsWith('?'))
            return CompilerFamily::Msvc;
        return start == "_Z" ? CompilerFamily::MinGw : CompilerFamily::Unknown;
    }

    CompilerFamily exportedFamily()
    {
        const qint64 exports = table(ExportTable);
        const qint64 names = offsetOf(number<quint32>(exports + 32));
        const qint64 count = qMin(qint64(number<quint32>(exports + 24)), kMostNames);
        auto family = CompilerFamily::Unknown;
        for (qint64 i = 0; i < count && family == CompilerFamily::Unknown; ++i)
            family = familyOfName(offsetOf(number<quint32>(names + 4 * i)));
        return family;
    }

    CompilerFamily importedFamily()
    {
        qint64 left = kMostNames; // In all DLLs together
        auto family = CompilerFamily::Unknown;
        qint64 entry = table(ImportTable);
        for (; left > 0 && family == CompilerFamily::Unknown; --left, entry += 20) {
            const auto dllName = number<quint32>(entry + 12);
            if (dllName == 0)
                break;
            if (bytes(offsetOf(dllName), 3).toLower() != "qt5")
                continue;
            qint64 import = offsetOf(number<quint32>(entry));
            for (; left > 0 && family == CompilerFamily::Unknown; --left, import += 8) {
                const auto name = number<quint64>(import);
                if (name == 0)
                    break;
                // The name is after a number of 16 bits. An import by ordinal has the highest bit
                // set and so no address in the file.
                family = familyOfName(offsetOf(qint64(name)) + 2);
            }
        }
        return family;
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

    static constexpr qint64 kMostNames = 0x10000; ///< A DLL can't export more.

    QIODevice &m_file;
    const qint64 m_size;
    const bool m_isProgram;
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
