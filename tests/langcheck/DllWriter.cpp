#include "DllWriter.h"

#include <QtEndian>

namespace {

const quint16 k32Bit = 0x014C;
const int kHeadersSize = 0x400;
const quint32 kFileAlignment = 0x200;
const quint32 kSectionAlignment = 0x1000;

template<typename Number>
void set(QByteArray &bytes, int offset, Number value)
{
    Q_ASSERT(offset + int(sizeof(Number)) <= bytes.size());
    qToLittleEndian(value, bytes.data() + offset);
}

quint32 aligned(quint32 size, quint32 alignment)
{
    return (size + alignment - 1) / alignment * alignment;
}

quint32 sizeOf(const QByteArray &bytes)
{
    return quint32(bytes.size());
}

/// Writes the export table with its address: the directory, the addresses of functions and names,
/// the ordinals and the names.
QByteArray exportTable(const QList<QByteArray> &names, quint32 address)
{
    const auto count = quint32(names.size());
    const quint32 functions = 40;
    const quint32 pointers = functions + 4 * count;
    const quint32 ordinals = pointers + 4 * count;
    QByteArray table(int(ordinals + 2 * count), '\0');
    set(table, 12, address + sizeOf(table));
    table += QByteArray("test.dll") + '\0';
    set<quint32>(table, 16, 1); // The first ordinal
    set(table, 20, count);
    set(table, 24, count);
    set(table, 28, address + functions);
    set(table, 32, address + pointers);
    set(table, 36, address + ordinals);
    for (quint32 i = 0; i < count; ++i) {
        set(table, int(functions + 4 * i), address);
        set(table, int(pointers + 4 * i), address + sizeOf(table));
        set(table, int(ordinals + 2 * i), quint16(i));
        table += names.at(int(i)) + '\0';
    }
    return table;
}

/// Writes the import table: the descriptors of the DLLs, then for each the addresses of its
/// functions' names, and the names.
QByteArray importTable(const DllContents &contents, quint32 address)
{
    const int count = contents.imports.size() * contents.importRepetitions;
    QByteArray table(20 * (count + 1), '\0');
    int descriptor = 0;
    for (const ImportedDll &dll : contents.imports) {
        const int first = table.size();
        const int size = contents.machine == k32Bit ? 4 : 8;
        table.append(size * (dll.functions.size() + 1), '\0');
        for (int i = 0; i < dll.functions.size(); ++i) {
            const QByteArray &function = dll.functions.at(i);
            const bool byNumber = function.isEmpty();
            if (size == 4)
                set(table, first + 4 * i, byNumber ? 0x80000001 : address + sizeOf(table));
            else
                set(table, first + 8 * i,
                    byNumber ? Q_UINT64_C(0x8000000000000001) : quint64(address) + sizeOf(table));
            if (!byNumber)
                table += QByteArray(2, '\0') + function + '\0';
        }
        for (int i = 0; i < contents.importRepetitions; ++i, descriptor += 20) {
            set(table, descriptor, address + quint32(first));
            set(table, descriptor + 12, address + sizeOf(table));
            set(table, descriptor + 16, address + quint32(first));
        }
        table += dll.name + '\0';
    }
    return table;
}

/// Writes the resources: an icon group without contents and the version.
QByteArray resources(const QVersionNumber &version, quint32 address)
{
    const quint32 isFolder = 0x80000000;
    const int names = 0x20;
    const int languages = 0x38;
    const int entry = 0x50;
    const int data = 0x60;
    QByteArray table(data + 40 + 52, '\0');
    set<quint16>(table, 14, 2);
    set<quint32>(table, 16, 14); // Icon group
    set<quint32>(table, 20, isFolder + languages);
    set<quint32>(table, 24, 16); // Version
    set<quint32>(table, 28, isFolder + names);
    set<quint16>(table, names + 14, 1);
    set<quint32>(table, names + 16, 1);
    set<quint32>(table, names + 20, isFolder + languages);
    set<quint16>(table, languages + 14, 1);
    set<quint32>(table, languages + 16, 0x0409);
    set<quint32>(table, languages + 20, entry);
    set(table, entry, address + data);
    set<quint32>(table, entry + 4, 40 + 52);

    set<quint16>(table, data, 40 + 52);
    set<quint16>(table, data + 2, 52);
    const QByteArray key = "VS_VERSION_INFO";
    for (int i = 0; i < key.size(); ++i)
        set(table, data + 6 + 2 * i, quint16(key.at(i)));
    const int info = data + 40;
    set<quint32>(table, info, 0xFEEF04BD);
    set<quint32>(table, info + 4, 0x00010000);
    set(table, info + 8, quint16(version.minorVersion()));
    set(table, info + 10, quint16(version.majorVersion()));
    set(table, info + 14, quint16(version.microVersion()));
    return table;
}

} // namespace

QByteArray makeDll(const DllContents &contents)
{
    const int header = 0x40;
    const int optionalHeader = header + 24;
    const int optionalHeaderSize = 240;
    QByteArray file(kHeadersSize, '\0');
    file.replace(0, 2, "MZ");
    set<quint32>(file, 0x3C, header);
    file.replace(header, 2, "PE");
    set(file, header + 4, contents.machine);
    set<quint16>(file, header + 20, optionalHeaderSize);
    set(file, header + 22, contents.characteristics);
    set<quint16>(file, optionalHeader, contents.machine == k32Bit ? 0x010B : 0x020B);
    set<quint64>(file, optionalHeader + 24, 0x180000000); // Preferred address
    set(file, optionalHeader + 32, kSectionAlignment);
    set(file, optionalHeader + 36, kFileAlignment);
    set<quint32>(file, optionalHeader + 60, kHeadersSize);
    const int tables = optionalHeader + (contents.machine == k32Bit ? 96 : 112);
    set<quint32>(file, tables - 4, 16); // Their number

    quint16 sectionCount = 0;
    quint32 address = kSectionAlignment;
    const auto addSection = [&](const char *name, int directory, QByteArray data) {
        const quint32 size = sizeOf(data);
        data.append(int(aligned(size, kFileAlignment) - size), '\0');
        const int section = optionalHeader + optionalHeaderSize + 40 * sectionCount;
        file.replace(section, int(qstrlen(name)), name);
        set(file, section + 8, size);
        set(file, section + 12, address);
        set(file, section + 16, sizeOf(data));
        set(file, section + 20, sizeOf(file));
        set(file, section + 36, quint32(0x40000040)); // Readable, initialized data
        set(file, tables + 8 * directory, address);
        set(file, tables + 4 + 8 * directory, size);
        file += data;
        address += aligned(size, kSectionAlignment);
        ++sectionCount;
    };
    addSection(".edata", 0, exportTable(contents.exports, address));
    addSection(".idata", 1, importTable(contents, address));
    if (!contents.version.isNull())
        addSection(".rsrc", 2, resources(contents.version, address));
    set(file, header + 6, sectionCount);
    set(file, optionalHeader + 56, address); // Size in memory
    return file;
}
