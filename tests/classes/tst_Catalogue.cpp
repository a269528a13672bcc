#include "lang/Catalogue.h"

#include "lang/CTranslatorMgr.h"

#include "support/Deployment.h"
#include "support/Interpose.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QFile>
#include <QTest>
#include <QTextCodec>
#include <QTextStream>

namespace {

QByteArray codecAskedFor;
bool codecsAreMissing = false;

} // namespace

// Replaces the plug-in's look-ups of codecs.
INTERPOSE(QTextCodec *, codecForName, (const QByteArray &name))
{
    codecAskedFor = name;
    return codecsAreMissing ? nullptr : ORIGINAL(codecForName)(name);
}

namespace {

/// 简体中文 in GB2312.
const QByteArray simplifiedChinese = QByteArrayLiteral("\xBC\xF2\xCC\xE5\xD6\xD0\xCE\xC4");

/// A catalogue with one shown language, before and after the language's name.
const QByteArray beforeName = QByteArrayLiteral("[LANG_MGR]\r\nLANG1_NAME=");
const QByteArray afterName = QByteArrayLiteral("\r\nLANG1_FOLDER=a\r\nLANG1_SHOW=1\r\n");

QByteArray utf32(const QString &text)
{
    QByteArray bytes;
    for (const QChar c : text)
        bytes +=
            QByteArray {} + static_cast<char>(c.cell()) + static_cast<char>(c.row()) + '\0' + '\0';
    return bytes;
}

} // namespace

class tst_Catalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::collect(); }
    void cleanup();

    void catalogue_data();
    void catalogue();
    void encodingByFirstBytes_data();
    void encodingByFirstBytes();
    void missingCodecLeavesTheCatalogueReadable();
    void langEntryDefaults();
    void langEntryFieldsAreInOrder();

private:
    static QString dump();
};

void tst_Catalogue::cleanup()
{
    QCOMPARE(Warnings::take(), QStringList());
    Deployment::clear();
}

/// Reads the catalogue with the functions that the manager uses, but without a manager. Returns the
/// default and all records, such as "2 | 1+One:one 2-:two": number, shown (+) or hidden (-), name
/// and folder.
QString tst_Catalogue::dump()
{
    QFile file(Deployment::path(QStringLiteral("Lang/Lang.ini")));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be read");
    QTextStream in(&file);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&file));
    int defaultLangId = 0;
    QMap<int, LangEntry> langMap;
    readCatalogue(in, defaultLangId, langMap);

    QStringList words {QString::number(defaultLangId), QStringLiteral("|")};
    for (auto it = langMap.constBegin(); it != langMap.constEnd(); ++it) {
        if (it.key() != it->id)
            words += QStringLiteral("WRONG-ID");
        words += QString::number(it->id) + QLatin1Char(it->show ? '+' : '-') + it->name
            + QLatin1Char(':') + it->folder;
    }
    return words.join(QLatin1Char(' '));
}

void tst_Catalogue::catalogue_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    const auto file = [](const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << bytes << QString::fromUtf8(expected);
    };
    const auto lines = [&file](const char *name, const QByteArray &bytes, const char *expected) {
        file(name, "[LANG_MGR]\n" + bytes, expected);
    };

    file("empty file", "", "0 |");
    file("one byte", "[", "0 |");
    file("two bytes", "[]", "0 |");

    // Encodings
    file("GB2312 without a BOM", beforeName + simplifiedChinese + afterName, "0 | 1+简体中文:a");
    file("UTF-8 without a BOM is read as GB2312", beforeName + "é" + afterName, "0 | 1+茅:a");
    file("UTF-8 with BOM", "\xEF\xBB\xBF" + beforeName + "简体中文" + afterName,
         "0 | 1+简体中文:a");
    file("UTF-16LE with BOM",
         Deployment::utf16(
             QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体中文\r\nLANG1_FOLDER=a\r\n")),
         "0 | 1-简体中文:a");
    file("UTF-16LE with two BOMs",
         Deployment::utf16(QStringLiteral("\uFEFF\uFEFF[LANG_MGR]\r\nLANG1_NAME=日本語")),
         "0 | 1-日本語:");
    file("UTF-16LE with the BOM of UTF-16BE after its own",
         Deployment::utf16(QStringLiteral("\uFEFF\uFFFE[LANG_MGR]\nDEFAULT=7")), "0 |");
    file("UTF-16LE, first line empty",
         Deployment::utf16(QStringLiteral("\uFEFF\n[LANG_MGR]\nLANG1_NAME=日本語")),
         "0 | 1-日本語:");
    file("UTF-16LE BOM alone", "\xFF\xFE", "0 |");
    file("UTF-16LE, half a character at the end",
         Deployment::utf16(QStringLiteral("\uFEFF[LANG_MGR]\nDEFAULT=7\n")) + "x", "7 |");
    file("UTF-16BE with BOM",
         Deployment::utf16(QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体中文\r\n"), false),
         "0 | 1-简体中文:");
    file("UTF-16BE with two BOMs",
         Deployment::utf16(QStringLiteral("\uFEFF\uFEFF[LANG_MGR]\nDEFAULT=7"), false), "0 |");
    file("UTF-32LE with BOM, which starts with that of UTF-16LE",
         QByteArray("\xFF\xFE\0\0", 4)
             + utf32(QStringLiteral("[LANG_MGR]\nDEFAULT=7\nLANG1_NAME=日本語\n")),
         "7 | 1-日本語:");
    file("UTF-8 BOM alone", "\xEF\xBB\xBF", "0 |");
    file("UTF-8 with two BOMs", "\xEF\xBB\xBF\xEF\xBB\xBF[LANG_MGR]\nDEFAULT=7", "0 |");
    file("incomplete UTF-8 BOM spoils the first header", "\xEF\xBB[LANG_MGR]\nDEFAULT=7", "0 |");

    // Line endings and white space
    lines("LF", "DEFAULT=1\nLANG1_NAME=a\n", "1 | 1-a:");
    lines("CR LF", "DEFAULT=1\r\nLANG1_NAME=a\r\n", "1 | 1-a:");
    lines("no line ending after the last line", "DEFAULT=1\nLANG1_NAME=a", "1 | 1-a:");
    file("CR alone does not end a line", "[LANG_MGR]\rDEFAULT=1\rLANG1_NAME=a\r", "0 |");
    lines("CR alone inside a value stays",
          "DEFAULT=1\nLANG1_NAME=a\rDEFAULT=2\nLANG1_FOLDER=b\nLANG1_SHOW=1\n",
          "1 | 1+a\rDEFAULT=2:b");
    lines("spaces around key and value", " \t LANG1_NAME \t =  a b \t\n", "0 | 1-a b:");
    file("Unicode white space around lines and values",
         "\xEF\xBB\xBF\u3000[LANG_MGR]\u00A0\n\u2003LANG1_NAME\u3000=\u3000a\u00A0\n", "0 | 1-a:");
    lines("lines of white space only", "\n   \n\t\nDEFAULT=1\n\n", "1 |");

    // Comments
    lines("lines that start with ; or #", ";DEFAULT=1\n#DEFAULT=2\n  ; DEFAULT=3\n  # [X]\n",
          "0 |");
    lines("no comments after a value", "LANG1_NAME=English ; main\nLANG2_NAME=a # b\n",
          "0 | 1-English ; main: 2-a # b:");
    lines("headers in comments", ";[OTHER]\nDEFAULT=1\n#[OTHER]\nLANG1_NAME=a", "1 | 1-a:");

    // Sections
    file("key lines before the first header", "DEFAULT=1\nLANG1_NAME=a\n", "0 |");
    file("key lines under another header", "[LANG]\nDEFAULT=1\n[LANG_MGR2]\nDEFAULT=1\n", "0 |");
    file("header in lower case", "[lang_mgr]\nDEFAULT=1\n", "0 |");
    file("header with spaces inside", "[ LANG_MGR ]\nDEFAULT=1\n[LANG_MGR ]\nDEFAULT=2", "0 |");
    file("header with spaces around", "  [LANG_MGR]\t\nDEFAULT=1\n", "1 |");
    file("header with brackets in its name",
         "[[LANG_MGR]]\nDEFAULT=1\n[LANG_MGR]]\nDEFAULT=2\n[LANG_MGR] [a]\nDEFAULT=3\n", "0 |");
    file("header with a comment in its name",
         "[LANG_MGR;a]\nDEFAULT=1\n[LANG_MGR # a]\nDEFAULT=2\n", "0 |");
    lines("another header ends the section", "DEFAULT=1\n[OTHER]\nDEFAULT=2\nLANG1_NAME=a", "1 |");
    lines("two sections merge",
          "DEFAULT=1\nLANG1_NAME=a\nLANG2_NAME=d\n[OTHER]\nLANG1_NAME=b\n[LANG_MGR]\n"
          "LANG1_FOLDER=c\nLANG3_NAME=e\n",
          "1 | 1-a:c 2-d: 3-e:");
    lines("empty header ends the section", "[]\nDEFAULT=1\n", "0 |");
    lines("lone [ is not a header", "[\nDEFAULT=1\n", "1 |");
    lines("[ without ] at the end is not a header", "[OTHER\n[OTHER] x\n[=]x\nDEFAULT=1\n", "1 |");
    lines("[ ... ] with = is a header", "[LANG1_NAME=a]\nDEFAULT=1\n", "0 |");

    // Key lines
    lines("first = splits", "LANG1_NAME=A=B\nLANG2_NAME==\n", "0 | 1-A=B: 2-=:");
    lines("line that starts with =", "=\n=DEFAULT=1\n = 3\n", "0 |");
    lines("line without =", "DEFAULT\nDEFAULT 1\nLANG1_NAME\n", "0 |");
    lines("quotes and backslashes stay", "LANG1_NAME=\"a\\n\"\n", "0 | 1-\"a\\n\":");
    lines("repeated key, last wins",
          "DEFAULT=1\nDEFAULT=2\nLANG1_NAME=a\nLANG1_NAME=b\nLANG1_FOLDER=a\nLANG1_FOLDER=b\n"
          "LANG1_SHOW=0\nLANG1_SHOW=1\n",
          "2 | 1+b:b");
    lines("repeated key can empty a field",
          "LANG1_NAME=a\nLANG1_NAME=\nLANG1_SHOW=1\nLANG1_SHOW=\n", "0 | 1-:");
    lines("keys are case-sensitive",
          "default=1\nDefault=1\nlang1_NAME=a\nLANG1_name=a\nLang1_Name=a\n", "0 |");
    lines("unknown keys",
          "LANG1_ICON=a\nLANG_NAME=a\nLANG1NAME=a\nLANG12NAME=a\nLANG1-NAME=a\nLANG-1_NAME=a\n"
          "LANG+1_NAME=a\nLANG1_NAMES=a\nXLANG1_NAME=a\nLANG1_NAME_ID=a\nLANG 1_NAME=a\n"
          "DEFAULT2=1\n[LANG1_NAME=a\n",
          "0 |");
    file("only ASCII digits match in a key",
         "\xEF\xBB\xBF[LANG_MGR]\nLANG\u0661_NAME=a\nLANG\uFF11_NAME=b\nLANG1\u0662_NAME=c\n",
         "0 |");
    lines("ID alone creates the record and is not read", "LANG2_ID=7\n", "0 | 2-:");
    lines("ID changes nothing in a record", "LANG2_NAME=a\nLANG2_ID=7\n", "0 | 2-a:");
    lines("SHOW alone creates the record", "LANG2_SHOW=1\n", "0 | 2+:");
    lines("leading zeros make no difference",
          "LANG01_NAME=a\nLANG1_FOLDER=b\nLANG" + QByteArray(1000, '0') + "1_SHOW=1\n",
          "0 | 1+a:b");
    lines("numbers in keys are decimal", "LANG010_NAME=a\nLANG10_FOLDER=b\nLANG08_NAME=c\n",
          "0 | 8-c: 10-a:b");
    lines("largest number", "LANG2147483647_NAME=a\n", "0 | 2147483647-a:");
    lines("numbers that are too large all mean record 0",
          "LANG2147483648_NAME=a\nLANG99999999999999999999_FOLDER=b\nLANG0_SHOW=1\n", "0 | 0+a:b");
    lines("records in ascending order",
          "LANG10_NAME=c\nLANG9_NAME=b\nLANG2_NAME=a\nLANG100_NAME=d\n",
          "0 | 2-a: 9-b: 10-c: 100-d:");
    lines("DEFAULT needs no record", "DEFAULT=9\nLANG1_NAME=a\n", "9 | 1-a:");

    // Values
    const auto replaced = [&lines](const char *first, const QByteArray &second,
                                   const char *expected) {
        lines(second.constData(), first + ("\n" + second) + "\n", expected);
    };
    replaced("DEFAULT=5", "DEFAULT=+1", "1 |");
    replaced("DEFAULT=5", "DEFAULT=-3", "-3 |");
    replaced("DEFAULT=5", "DEFAULT=010", "10 |");
    replaced("DEFAULT=5", "DEFAULT= \t7 ", "7 |");
    replaced("DEFAULT=5", "DEFAULT=2147483647", "2147483647 |");
    for (const QByteArray value :
         {"2147483648", "99999999999999999999", "1.0", "1,000", "0x1", "one", "1 ; main", ""})
        replaced("DEFAULT=5", "DEFAULT=" + value, "0 |");
    for (const QByteArray value : {"1", "01", "+1", "  1\t"})
        replaced("LANG1_SHOW=0", "LANG1_SHOW=" + value, "0 | 1+:");
    for (const QByteArray value : {"0", "2", "-1", "true", "yes", "1.0", "0x1", "4294967297", ""})
        replaced("LANG1_SHOW=1", "LANG1_SHOW=" + value, "0 | 1-:");
}

void tst_Catalogue::catalogue()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    Deployment::writeCatalogue(bytes);
    QCOMPARE(dump(), expected);
}

void tst_Catalogue::encodingByFirstBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("codec");

    const auto row = [](const char *name, const QByteArray &bytes, const char *codec) {
        QTest::newRow(name) << bytes << QByteArray(codec);
    };
    row("FF FE", "\xFF\xFE", "UTF-16LE");
    row("FF FE and text", "\xFF\xFE[", "UTF-16LE");
    row("FF FE and a zero byte", QByteArray("\xFF\xFE\0", 3), "UTF-16LE");
    row("EF BB BF", "\xEF\xBB\xBF", "UTF-8");
    row("EF BB BF and text", "\xEF\xBB\xBF[", "UTF-8");
    row("EF BB", "\xEF\xBB", "GB2312");
    row("EF BB and another byte", "\xEF\xBB\xBE", "GB2312");
    row("FE FF", "\xFE\xFF", "GB2312");
    row("FF", "\xFF", "GB2312");
    row("EF", "\xEF", "GB2312");
    row("empty", "", "GB2312");
    row("text", "[LANG_MGR]", "GB2312");
}

void tst_Catalogue::encodingByFirstBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, codec);

    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    // Compares the requested name, because a codec's own name depends on how Qt was built.
    QVERIFY(CTranslatorMgr::detectCodec(&device));
    QCOMPARE(codecAskedFor, codec);
    QCOMPARE(device.pos(), 0);
}

void tst_Catalogue::missingCodecLeavesTheCatalogueReadable()
{
    codecsAreMissing = true;
    for (const QByteArray &bom : {QByteArray(), QByteArray("\xEF\xBB\xBF")}) {
        Deployment::writeCatalogue(bom + "[LANG_MGR]\nDEFAULT=7\nLANG1_NAME=a\n");
        QCOMPARE(dump(), QStringLiteral("7 | 1-a:"));
    }
    codecsAreMissing = false;
}

void tst_Catalogue::langEntryDefaults()
{
    const LangEntry entry;
    QCOMPARE(entry.id, -1);
    QCOMPARE(entry.show, false);
    QVERIFY(entry.name.isEmpty() && entry.folder.isEmpty() && entry.qmPath.isEmpty());
}

void tst_Catalogue::langEntryFieldsAreInOrder()
{
    const LangEntry entry;
    const auto &[id, show, name, folder, qmPath] = entry;
    QCOMPARE(&id, &entry.id);
    QCOMPARE(&show, &entry.show);
    QCOMPARE(&name, &entry.name);
    QCOMPARE(&folder, &entry.folder);
    QCOMPARE(&qmPath, &entry.qmPath);
}

QTEST_MAIN(tst_Catalogue)
#include "tst_Catalogue.moc"
