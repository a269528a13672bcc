// How the bytes of a catalogue become languages: its encodings, its lines, its keys.

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

// The library's look-ups of codecs come here.
INTERPOSE(QTextCodec *, _ZN10QTextCodec12codecForNameERK10QByteArray, (const QByteArray &name))
{
    codecAskedFor = name;
    return codecsAreMissing ? nullptr
                            : ORIGINAL(_ZN10QTextCodec12codecForNameERK10QByteArray)(name);
}

namespace {

/// 简体中文 in GB2312.
const QByteArray simplifiedChinese = QByteArrayLiteral("\xBC\xF2\xCC\xE5\xD6\xD0\xCE\xC4");

/// A catalogue of one shown language, up to the name and behind it.
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
    void langEntryFieldsInDeclaredOrder();

private:
    static QString dump();
    static QMap<int, LangEntry> read(int &defaultLangId);
    static bool answersAsTheFileSays(const CTranslatorMgr &mgr);
};

void tst_Catalogue::cleanup()
{
    QCOMPARE(Warnings::take(), QStringList());
    Deployment::clear();
}

/// The default and all records of the catalogue, hidden ones too: "2 | 1+One:one 2-:two" for
/// number, shown or hidden, name and folder.
QString tst_Catalogue::dump()
{
    int defaultLangId = 0;
    const QMap<int, LangEntry> langMap = read(defaultLangId);
    QStringList words {QString::number(defaultLangId), QStringLiteral("|")};
    for (auto it = langMap.constBegin(); it != langMap.constEnd(); ++it) {
        if (it.key() != it->id)
            words += QStringLiteral("WRONG-ID");
        words += QString::number(it->id) + QLatin1Char(it->show ? '+' : '-') + it->name
            + QLatin1Char(':') + it->folder;
    }
    return words.join(QLatin1Char(' '));
}

/// Reads the catalogue with the manager's own functions, but not through a manager.
QMap<int, LangEntry> tst_Catalogue::read(int &defaultLangId)
{
    QMap<int, LangEntry> langMap;
    QFile file(Deployment::path(QStringLiteral("Lang/Lang.ini")));
    if (!file.open(QIODevice::ReadOnly))
        return langMap;
    QTextStream in(&file);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&file));
    readCatalogue(in, defaultLangId, langMap);
    return langMap;
}

/// Whether the manager's answers are those that the records of the catalogue lead to.
bool tst_Catalogue::answersAsTheFileSays(const CTranslatorMgr &mgr)
{
    int defaultLangId = 0;
    const QMap<int, LangEntry> langMap = read(defaultLangId);
    QStringList expected;
    for (const LangEntry &entry : langMap) {
        if (mgr.langFilePath(entry.id) != (entry.show ? entry.qmPath : QString()))
            return false;
        if (entry.show && !entry.name.isEmpty() && !entry.folder.isEmpty())
            expected += entry.name + entry.folder + entry.qmPath;
    }
    QStringList visible;
    const QList<LangEntry> languages = mgr.visibleLanguages();
    for (const LangEntry &entry : languages)
        visible += entry.name + entry.folder + entry.qmPath;
    return visible == expected && mgr.defaultLangId() == defaultLangId;
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
    file("GB2312 without a mark", beforeName + simplifiedChinese + afterName, "0 | 1+简体中文:a");
    file("UTF-8 with its mark", "\xEF\xBB\xBF" + beforeName + "简体中文" + afterName,
         "0 | 1+简体中文:a");
    file("UTF-16LE with its mark",
         Deployment::utf16(
             QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体中文\r\nLANG1_FOLDER=a\r\n")),
         "0 | 1-简体中文:a");
    file("UTF-16LE with two marks",
         Deployment::utf16(QStringLiteral("\uFEFF\uFEFF[LANG_MGR]\r\nLANG1_NAME=日本語")),
         "0 | 1-日本語:");
    file("UTF-16LE, first line empty",
         Deployment::utf16(QStringLiteral("\uFEFF\n[LANG_MGR]\nLANG1_NAME=日本語")),
         "0 | 1-日本語:");
    file("UTF-16LE, nothing behind the mark", "\xFF\xFE", "0 |");
    file("UTF-16LE, half a character at the end",
         Deployment::utf16(QStringLiteral("\uFEFF[LANG_MGR]\nDEFAULT=7\n")) + "x", "7 |");
    file("UTF-16BE with its mark",
         Deployment::utf16(QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体中文\r\n"), false),
         "0 | 1-简体中文:");
    file("UTF-32LE with its mark, which begins as that of UTF-16LE",
         QByteArray("\xFF\xFE\0\0", 4)
             + utf32(QStringLiteral("[LANG_MGR]\nDEFAULT=7\nLANG1_NAME=日本語\n")),
         "7 | 1-日本語:");
    file("UTF-8 mark alone", "\xEF\xBB\xBF", "0 |");
    file("cut UTF-8 mark spoils the first header", "\xEF\xBB[LANG_MGR]\nDEFAULT=7", "0 |");

    // Line ends and white space
    lines("LF", "DEFAULT=1\nLANG1_NAME=a\n", "1 | 1-a:");
    lines("CR LF", "DEFAULT=1\r\nLANG1_NAME=a\r\n", "1 | 1-a:");
    lines("no end at the last line", "DEFAULT=1\nLANG1_NAME=a", "1 | 1-a:");
    file("CR alone ends no line", "[LANG_MGR]\rDEFAULT=1\rLANG1_NAME=a\r", "0 |");
    lines("CR alone inside a value stays", "DEFAULT=1\nLANG1_NAME=a\rDEFAULT=2\n",
          "1 | 1-a\rDEFAULT=2:");
    lines("blanks around key and value", " \t LANG1_NAME \t =  a b \t\n", "0 | 1-a b:");
    file("Unicode white space around lines and values",
         "\xEF\xBB\xBF\u3000[LANG_MGR]\u00A0\n\u2003LANG1_NAME\u3000=\u3000a\u00A0\n", "0 | 1-a:");
    lines("empty and blank lines", "\n   \n\t\nDEFAULT=1\n\n", "1 |");

    // Comments
    lines("lines behind ; and #", ";DEFAULT=1\n#DEFAULT=2\n  ; DEFAULT=3\n  # [X]\n", "0 |");
    lines("no comment behind a value", "LANG1_NAME=English ; main\nLANG2_NAME=a # b\n",
          "0 | 1-English ; main: 2-a # b:");
    lines("comment before header kinds", ";[OTHER]\nDEFAULT=1\n#[OTHER]\nLANG1_NAME=a", "1 | 1-a:");

    // Sections
    file("key lines before the first header", "DEFAULT=1\nLANG1_NAME=a\n", "0 |");
    file("key lines under another header", "[LANG]\nDEFAULT=1\n[LANG_MGR2]\nDEFAULT=1\n", "0 |");
    file("header in lower case", "[lang_mgr]\nDEFAULT=1\n", "0 |");
    file("header with blanks inside", "[ LANG_MGR ]\nDEFAULT=1\n[LANG_MGR ]\nDEFAULT=2", "0 |");
    file("header with blanks around", "  [LANG_MGR]\t\nDEFAULT=1\n", "1 |");
    file("header with brackets in its name", "[[LANG_MGR]]\nDEFAULT=1\n", "0 |");
    lines("another header ends the section", "DEFAULT=1\n[OTHER]\nDEFAULT=2\nLANG1_NAME=a", "1 |");
    lines("two sections merge",
          "LANG1_NAME=a\n[OTHER]\nLANG1_NAME=b\n[LANG_MGR]\nLANG1_FOLDER=c\nLANG2_NAME=d\n",
          "0 | 1-a:c 2-d:");
    lines("header with nothing between its brackets ends the section", "[]\nDEFAULT=1\n", "0 |");
    lines("lone [ is no header", "[\nDEFAULT=1\n", "1 |");
    lines("[ without ] at the end is no header", "[OTHER\n[OTHER] x\n[=]x\nDEFAULT=1\n", "1 |");
    lines("[ ... ] with = is a header", "[LANG1_NAME=a]\nDEFAULT=1\n", "0 |");

    // Key lines
    lines("first = splits", "LANG1_NAME=A=B\nLANG2_NAME==\n", "0 | 1-A=B: 2-=:");
    lines("line that begins with =", "=\n=DEFAULT=1\n = 3\n", "0 |");
    lines("line without =", "DEFAULT\nDEFAULT 1\nLANG1_NAME\n", "0 |");
    lines("quotes and backslashes stay", "LANG1_NAME=\"a\\n\"\n", "0 | 1-\"a\\n\":");
    lines("repeated key, last wins",
          "DEFAULT=1\nDEFAULT=2\nLANG1_NAME=a\nLANG1_NAME=b\nLANG1_FOLDER=a\nLANG1_FOLDER=b\n"
          "LANG1_SHOW=0\nLANG1_SHOW=1\n",
          "2 | 1+b:b");
    lines("repeated key may empty a field",
          "LANG1_NAME=a\nLANG1_NAME=\nLANG1_SHOW=1\nLANG1_SHOW=\n", "0 | 1-:");
    lines("keys are case-sensitive",
          "default=1\nDefault=1\nlang1_NAME=a\nLANG1_name=a\nLang1_Name=a\n", "0 |");
    lines("unknown keys",
          "LANG1_ICON=a\nLANG_NAME=a\nLANG1NAME=a\nLANG-1_NAME=a\nLANG+1_NAME=a\nLANG1_NAMES=a\n"
          "XLANG1_NAME=a\nLANG1_NAME_ID=a\nLANG 1_NAME=a\nDEFAULT2=1\n[LANG1_NAME=a\n",
          "0 |");
    file("only ASCII digits match in a key",
         "\xEF\xBB\xBF[LANG_MGR]\nLANG\u0661_NAME=a\nLANG\uFF11_NAME=b\nLANG1\u0662_NAME=c\n",
         "0 |");
    lines("lone ID creates the record and is not read", "LANG2_ID=7\n", "0 | 2-:");
    lines("ID changes nothing in a record", "LANG2_NAME=a\nLANG2_ID=7\n", "0 | 2-a:");
    lines("lone SHOW creates the record", "LANG2_SHOW=1\n", "0 | 2+:");
    lines("leading zeros name the same record", "LANG01_NAME=a\nLANG1_FOLDER=b\nLANG001_SHOW=1\n",
          "0 | 1+a:b");
    lines("numbers in keys are decimal", "LANG010_NAME=a\nLANG10_FOLDER=b\nLANG08_NAME=c\n",
          "0 | 8-c: 10-a:b");
    lines("largest number", "LANG2147483647_NAME=a\n", "0 | 2147483647-a:");
    lines("overlong numbers share record 0",
          "LANG2147483648_NAME=a\nLANG99999999999999999999_FOLDER=b\nLANG0_SHOW=1\n", "0 | 0+a:b");
    lines("records in ascending number",
          "LANG10_NAME=c\nLANG9_NAME=b\nLANG2_NAME=a\nLANG100_NAME=d\n",
          "0 | 2-a: 9-b: 10-c: 100-d:");
    lines("DEFAULT needs no record", "DEFAULT=9\nLANG1_NAME=a\n", "9 | 1-a:");
}

void tst_Catalogue::catalogue()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    Deployment::writeCatalogue(bytes);
    QCOMPARE(dump(), expected);
    CTranslatorMgr mgr;
    mgr.loadLangConfig();
    QVERIFY(answersAsTheFileSays(mgr));
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
    row("EF BB BF", "\xEF\xBB\xBF", "UTF-8");
    row("EF BB BF and text", "\xEF\xBB\xBF[", "UTF-8");
    row("EF BB", "\xEF\xBB", "GB2312");
    row("EF BB and another byte", "\xEF\xBB\xBE", "GB2312");
    row("FE FF", "\xFE\xFF", "GB2312");
    row("FF", "\xFF", "GB2312");
    row("EF", "\xEF", "GB2312");
    row("no byte", "", "GB2312");
    row("text", "[LANG_MGR]", "GB2312");
}

void tst_Catalogue::encodingByFirstBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, codec);

    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    // By the name asked for: what the codec calls itself differs from one Qt to the other.
    QVERIFY(CTranslatorMgr::detectCodec(&device));
    QCOMPARE(codecAskedFor, codec);
    QCOMPARE(device.pos(), 0);
}

void tst_Catalogue::missingCodecLeavesTheCatalogueReadable()
{
    codecsAreMissing = true;
    for (const QByteArray &mark : {QByteArray(), QByteArray("\xEF\xBB\xBF")}) {
        Deployment::writeCatalogue(mark + "[LANG_MGR]\nDEFAULT=7\nLANG1_NAME=a\n");
        QCOMPARE(dump(), QStringLiteral("7 | 1-a:"));
        CTranslatorMgr mgr;
        mgr.loadLangConfig();
        QVERIFY(answersAsTheFileSays(mgr));
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

void tst_Catalogue::langEntryFieldsInDeclaredOrder()
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
