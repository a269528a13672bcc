// Tests the reader of DLLs with files from DllWriter, and with damaged ones.

#include "langcheck/check/Dll.h"

#include "DllWriter.h"
#include "support/Settings.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QTest>
#include <QtEndian>

#include <random>

Q_DECLARE_METATYPE(CompilerFamily)
Q_DECLARE_METATYPE(DllContents)

namespace {

const char *const kMsvcName = "??0QString@@QEAA@XZ";
const char *const kMinGwName = "_ZN7QStringC1Ev";

Dll read(QByteArray bytes, Dll (*reader)(QIODevice &) = readDll)
{
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    return reader(file);
}

DllContents goodContents()
{
    DllContents contents;
    contents.exports = {"qt_startup_hook", kMsvcName, "qt_version_tag"};
    contents.imports = {{"libstdc++-6.dll", {"_ZSt9terminatev"}},
                        {"Qt5Core.dll", {"", "qt_version_tag", kMsvcName}}};
    contents.version = QVersionNumber(5, 15, 8);
    return contents;
}

QString imports(const Dll &dll)
{
    QStringList result;
    for (const DllImport &import : dll.imports)
        result += import.dll + QLatin1Char(' ') + QString::fromLatin1(import.function);
    return result.join(QLatin1String(", "));
}

/// Counts how often it is read.
class CountingBuffer : public QBuffer
{
public:
    int count = 0;

protected:
    qint64 readData(char *data, qint64 most) override
    {
        ++count;
        return QBuffer::readData(data, most);
    }
};

} // namespace

class tst_langcheck_dll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void cleanup() { QCOMPARE(Warnings::take(), QStringList()); }

    void familyIsRecognized_data();
    void familyIsRecognized();
    void programsAreRead();
    void functionsAreRead();
    void longNamesAreRead_data();
    void longNamesAreRead();
    void versionIsRead();
    void defectsAreNamed_data();
    void defectsAreNamed();
    void sectionWithoutBytesIsSkipped();
    void cutOffFilesAreDefective();
    void damagedFilesAreSurvived();
    void damagedNumbersAreSurvived();
    void namesAreLimited();
    void readingIsLimited();
};

void tst_langcheck_dll::familyIsRecognized_data()
{
    QTest::addColumn<DllContents>("contents");
    QTest::addColumn<CompilerFamily>("exports");
    QTest::addColumn<CompilerFamily>("imports");

    using Names = QList<QByteArray>;
    const CompilerFamily unknown = CompilerFamily::Unknown;
    const auto exports = [unknown](const char *name, const Names &names, CompilerFamily family) {
        DllContents contents;
        contents.exports = names;
        QTest::newRow(name) << contents << family << unknown;
    };
    const auto imports = [unknown](const char *name, const Names &names, CompilerFamily family,
                                   const char *from = "Qt5Core.dll") {
        DllContents contents;
        contents.imports = {{"libstdc++-6.dll", {"_ZSt9terminatev"}}, {from, names}};
        QTest::newRow(name) << contents << unknown << family;
    };
    exports("no exports", {}, unknown);
    exports("only C", {"Z", "_", "_z", "qt_startup_hook"}, unknown);
    exports("MSVC", {kMsvcName}, CompilerFamily::Msvc);
    exports("MSVC, after C", {"NewInterface", "_z", kMsvcName}, CompilerFamily::Msvc);
    exports("MinGW", {kMinGwName}, CompilerFamily::MinGw);
    exports("MinGW, before C", {kMinGwName, "qt_startup_hook"}, CompilerFamily::MinGw);
    imports("no imports", {}, unknown);
    imports("imports only C", {"qt_version_tag"}, unknown);
    imports("imports only by ordinal", {"", ""}, unknown);
    imports("imports, MSVC", {kMsvcName}, CompilerFamily::Msvc);
    imports("imports, MinGW", {kMinGwName}, CompilerFamily::MinGw);
    imports("imports after others", {"", "qt_version_tag", kMsvcName}, CompilerFamily::Msvc);
    imports("from another DLL of Qt", {kMsvcName}, CompilerFamily::Msvc, "qt5widgets.dll");
    imports("from a DLL not of Qt", {kMsvcName}, unknown, "msvcp140.dll");
}

void tst_langcheck_dll::familyIsRecognized()
{
    QFETCH(DllContents, contents);
    QFETCH(CompilerFamily, exports);
    QFETCH(CompilerFamily, imports);

    const Dll dll = read(makeDll(contents));
    QCOMPARE(dll.defect, QString());
    QCOMPARE(dll.exports, exports);
    QCOMPARE(dll.qtImports, imports);
}

void tst_langcheck_dll::programsAreRead()
{
    DllContents contents = goodContents();
    QCOMPARE(read(makeDll(contents), readProgram).defect, QStringLiteral("it is a DLL"));
    contents.characteristics = 0x0022;
    const Dll program = read(makeDll(contents), readProgram);
    QCOMPARE(program.defect, QString());
    QCOMPARE(program.qtImports, CompilerFamily::Msvc);
}

/// Those of 32-bit files, too, because they show what the host is.
void tst_langcheck_dll::functionsAreRead()
{
    DllContents contents = goodContents();
    Dll dll = read(makeDll(contents));
    QCOMPARE(dll.exportedFunctions,
             QSet<QByteArray>({"#1", "#2", "#3", "qt_startup_hook", kMsvcName, "qt_version_tag"}));
    const QString expected = QStringLiteral("libstdc++-6.dll _ZSt9terminatev, qt5core.dll #1, "
                                            "qt5core.dll qt_version_tag, qt5core.dll ")
        + QLatin1String(kMsvcName);
    QCOMPARE(imports(dll), expected);
    contents.machine = 0x014C;
    dll = read(makeDll(contents));
    QVERIFY(dll.is32Bit);
    QCOMPARE(imports(dll), expected);

    // The address of the first table of libstdc++-6.dll, of which some linkers write only the copy
    QByteArray bytes = makeDll(goodContents());
    const int descriptor = bytes.indexOf("libstdc++-6.dll") / 0x200 * 0x200;
    QVERIFY(bytes.at(descriptor) != 0);
    bytes.replace(descriptor, 4, QByteArray(4, '\0'));
    QCOMPARE(imports(read(bytes)), expected);
}

void tst_langcheck_dll::longNamesAreRead_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("read");

    QTest::newRow("short") << 255 << true;
    QTest::newRow("longer") << 256 << true;
    QTest::newRow("longest") << 0x1FFF << true;
    QTest::newRow("too long") << 0x2000 << false;
}

void tst_langcheck_dll::longNamesAreRead()
{
    QFETCH(int, length);
    QFETCH(bool, read);

    DllContents contents;
    contents.exports = {QByteArray(length, 'x')};
    QCOMPARE(::read(makeDll(contents)).exportedFunctions.contains(contents.exports.first()), read);
}

void tst_langcheck_dll::versionIsRead()
{
    QCOMPARE(read(makeDll(goodContents())).version, QVersionNumber(5, 15, 8));
    QVERIFY(read(makeDll({})).version.isNull());

    const QByteArray good = makeDll(goodContents());
    const int signature = good.indexOf("\xBD\x04\xEF\xFE");
    QVERIFY(signature > 0);
    QByteArray other = good;
    other[signature] = 0;
    QVERIFY(read(other).version.isNull());
    const int numberOfTypes = signature - 0x88 + 14;
    QCOMPARE(good.at(numberOfTypes), char(2)); // The version is the second.
    other = good;
    other[numberOfTypes] = 1;
    QVERIFY(read(other).version.isNull());
}

void tst_langcheck_dll::defectsAreNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("defect");

    const auto row = [](const char *name, const QByteArray &bytes, const char *defect) {
        QTest::newRow(name) << bytes << QString::fromLatin1(defect);
    };
    const auto machine = [](quint16 number) {
        DllContents contents = goodContents();
        contents.machine = number;
        return makeDll(contents);
    };
    const auto with = [](int offset, const char *bytes) {
        return makeDll(goodContents()).replace(offset, int(qstrlen(bytes)), bytes);
    };
    DllContents program = goodContents();
    program.characteristics = 0x0022;

    row("empty", "", "it has no PE header");
    row("text", QByteArray(1000, 'x'), "it has no PE header");
    row("no MZ", with(0, "ZM"), "it has no PE header");
    row("no PE", with(0x40, "NE"), "it has no PE header");
    row("32-bit", machine(0x014C), "it is for 32-bit x86");
    row("ARM64", machine(0xAA64), "it is for machine type 0xaa64");
    row("program", makeDll(program), "it is a program");
    row("header of 32-bit", with(0x58, "\x0B\x01"), "its header is damaged");
    row("too many sections", with(0x46, "\x61"), "its header is damaged");
    row("cut off", makeDll(goodContents()).chopped(1), "it is cut off");
}

void tst_langcheck_dll::defectsAreNamed()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, defect);

    const Dll dll = read(bytes);
    QCOMPARE(dll.defect, defect);
    QVERIFY(dll.version.isNull());
    QCOMPARE(dll.exports, CompilerFamily::Unknown);
    QCOMPARE(dll.qtImports, dll.is32Bit ? CompilerFamily::Msvc : CompilerFamily::Unknown);
}

/// Some linkers write the size of such a section, but no offset.
void tst_langcheck_dll::sectionWithoutBytesIsSkipped()
{
    QByteArray bytes = makeDll(goodContents());
    const int sections = 0x148;
    bytes[0x46] = char(bytes.at(0x46) + 1);
    bytes.replace(sections + 40 * 3 + 16, 4, "\xFF\xFF\xFF\x7F");
    const Dll dll = read(bytes);
    QCOMPARE(dll.defect, QString());
    QCOMPARE(dll.version, QVersionNumber(5, 15, 8));
}

void tst_langcheck_dll::cutOffFilesAreDefective()
{
    const QByteArray good = makeDll(goodContents());
    QCOMPARE(read(good).defect, QString());
    for (int size = 0; size < good.size(); ++size)
        QVERIFY2(!read(good.left(size)).defect.isEmpty(), qPrintable(QString::number(size)));
}

void tst_langcheck_dll::damagedFilesAreSurvived()
{
    const QByteArray good = makeDll(goodContents());
    std::mt19937 random(Settings::seed());
    int different = 0;
    for (int i = 0; i < good.size(); ++i) {
        QByteArray bytes = good;
        bytes[i] = char(uchar(bytes.at(i)) ^ (1 + random() % 255));
        const Dll dll = read(bytes);
        if (!dll.defect.isEmpty() || dll.version != QVersionNumber(5, 15, 8)
            || dll.exports != CompilerFamily::Msvc || dll.qtImports != CompilerFamily::Msvc) {
            ++different;
        }
    }
    QVERIFY(different > 50); // Proves that bytes that matter were changed.
}

/// Sets each number of 32 bits to extreme values.
void tst_langcheck_dll::damagedNumbersAreSurvived()
{
    const QByteArray good = makeDll(goodContents());
    for (const quint32 value : {0U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        for (int i = 0; i + 4 <= good.size(); i += 2) {
            QByteArray bytes = good;
            qToLittleEndian(value, bytes.data() + i);
            read(bytes);
        }
    }
}

/// Names that are much longer than those of any library don't fill the memory.
void tst_langcheck_dll::namesAreLimited()
{
    DllContents contents;
    for (int i = 0; i < 4200; ++i)
        contents.exports += QByteArray::number(i).rightJustified(0x1FFF, 'x');
    const Dll dll = read(makeDll(contents));
    QVERIFY(dll.exportedFunctions.contains(contents.exports.first()));
    QVERIFY(!dll.exportedFunctions.contains(contents.exports.last()));
}

/// Tables whose entries all refer to the same, long tables don't multiply the time.
void tst_langcheck_dll::readingIsLimited()
{
    DllContents contents;
    contents.imports = {{"a.dll", {}}};
    for (int i = 0; i < 200000; ++i) {
        contents.exports += "c";
        contents.imports[0].functions += "";
    }
    contents.importRepetitions = 200000;
    CountingBuffer file;
    file.setData(makeDll(contents));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    const Dll dll = readDll(file);
    QCOMPARE(dll.defect, QString());
    QCOMPARE(dll.exports, CompilerFamily::Unknown);
    QCOMPARE(dll.qtImports, CompilerFamily::Unknown);
    QVERIFY2(file.count > 0x10000 && file.count < 0x40000, qPrintable(QString::number(file.count)));
}

QTEST_GUILESS_MAIN(tst_langcheck_dll)
#include "tst_langcheck_dll.moc"
