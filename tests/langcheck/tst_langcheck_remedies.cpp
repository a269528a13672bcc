// Applies the remedy of each kind of finding literally: afterwards there is no finding.

#include "GoodDeployment.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTest>

#include <functional>

using Step = std::function<void()>;
Q_DECLARE_METATYPE(Step)

namespace {

using GoodDeployment::catalogueWith;
using GoodDeployment::check;
using GoodDeployment::kCatalogue;
using GoodDeployment::kUtf8Bom;

const QByteArray kUtf16Bom = "\xFF\xFE";

QString langPath(const char *name)
{
    return QDir::cleanPath(Deployment::path(QStringLiteral("Lang/") + QString::fromUtf8(name)));
}

/// Returns a step that writes a catalogue.
Step catalogue(const QByteArray &bytes)
{
    return [bytes] { Deployment::writeCatalogue(bytes); };
}

QByteArray readCatalogue()
{
    QFile file(langPath("Lang.ini"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("No catalogue");
    return file.readAll();
}

/// Returns a step that replaces a line, numbered from 1; with a null text, it deletes the line.
Step line(int number, const char *text)
{
    return [number, text] {
        QList<QByteArray> lines = readCatalogue().split('\n');
        const bool bom = number == 1 && lines.first().startsWith(kUtf8Bom) && text;
        if (text)
            lines[number - 1] = (bom ? kUtf8Bom : QByteArray()) + text;
        else
            lines.removeAt(number - 1);
        Deployment::writeCatalogue(lines.join('\n'));
    };
}

/// Returns a step that replaces a text in the whole catalogue.
Step replace(const char *from, const char *to)
{
    return [from, to] {
        QByteArray bytes = readCatalogue();
        if (!bytes.contains(from))
            qFatal("No %s", from);
        Deployment::writeCatalogue(bytes.replace(from, to));
    };
}

/// Returns a step that renames or moves a file or folder in Lang.
Step move(const char *from, const char *to)
{
    return [from, to] {
        QDir().mkpath(QFileInfo(langPath(to)).path());
        if (!QDir().rename(langPath(from), langPath(to)))
            qFatal("Can't rename %s", from);
    };
}

/// Returns a step that installs a test translation.
Step translation(const char *folder, const char *name)
{
    return [folder, name] {
        Deployment::installTranslation(QString::fromUtf8(folder), QLatin1String(name));
    };
}

/// Returns a step that writes any bytes as a translation.
Step translationFile(const char *folder, const QByteArray &bytes)
{
    return [folder, bytes] { Deployment::writeTranslation(QString::fromUtf8(folder), bytes); };
}

Step deleted(const char *name)
{
    return [name] {
        if (!QFile::remove(langPath(name)))
            qFatal("Can't remove %s", name);
    };
}

Step both(const Step &first, const Step &second)
{
    return [first, second] {
        first();
        second();
    };
}

QString placeOf(const Finding &finding)
{
    return finding.line > 0 ? QStringLiteral("%1:%2").arg(finding.file).arg(finding.line)
                            : finding.file;
}

QByteArray utf16(const QByteArray &text)
{
    return Deployment::utf16(QChar(QChar::ByteOrderMark) + QString::fromUtf8(text));
}

QByteArray compiled(const char *name)
{
    QFile file(QStringLiteral(":/translations/%1.qm").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("No test translation %s", name);
    return file.readAll();
}

/// Returns a test translation with one of its texts, "2 Change" and so on, replaced with one that
/// is as long.
QByteArray withText(const QByteArray &from, const QString &to)
{
    const auto bigEndian = [](const QString &text) {
        QByteArray bytes;
        for (const QChar c : text) {
            bytes += static_cast<char>(c.unicode() >> 8);
            bytes += static_cast<char>(c.unicode() & 0xFF);
        }
        return bytes;
    };
    QByteArray bytes = compiled("second");
    // The length that precedes the text tells it from the beginning of another.
    const QByteArray length("\0\0\0", 3);
    const QByteArray text =
        length + static_cast<char>(2 * from.size()) + bigEndian(QString::fromLatin1(from));
    if (from.size() != to.size() || bytes.count(text) != 1)
        qFatal("No text %s", from.constData());
    return bytes.replace(text, text.left(4) + bigEndian(to));
}

/// Returns a step that makes @p bytes a translation into Russian in the second folder.
Step asRussian(QByteArray bytes)
{
    const QByteArray language("\xA7\0\0\0\x02"
                              "en",
                              7);
    if (bytes.count(language) != 1)
        qFatal("No language");
    return translationFile("second", bytes.replace(language, language.left(5) + "ru"));
}

} // namespace

class tst_langcheck_remedies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void init() { GoodDeployment::install(); }
    void cleanup();

    void remedyRepairs_data();
    void remedyRepairs();
    void everyKindHasARow();

private:
    QSet<QString> m_kinds;
};

/// Removes what a failed row leaves next to Lang.
void tst_langcheck_remedies::cleanup()
{
    QFile::remove(langPath("../Lang.ini"));
    QDir(langPath("../Language")).removeRecursively();
#ifndef Q_OS_WIN
    QDir(langPath("../LANG")).removeRecursively();
#endif
}

void tst_langcheck_remedies::remedyRepairs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<Step>("damage");
    QTest::addColumn<QString>("place"); // Of the only finding
    QTest::addColumn<QString>("remedy");
    QTest::addColumn<Step>("repair");

    const auto row = [](const char *kind, const char *name, const Step &damage, const char *place,
                        const QByteArray &remedy, const Step &repair) {
        QTest::addRow("%s: %s", kind, name)
            << QString::fromLatin1(kind) << damage << QStringLiteral("Lang/") + QLatin1String(place)
            << QString::fromUtf8(remedy) << repair;
    };
    const QByteArray good = kCatalogue;
    const auto with = [](const char *before, const QByteArray &after) {
        return catalogue(kUtf8Bom + catalogueWith(before, after));
    };
    const Step restore = catalogue(good);
    const Step save = catalogue(kUtf8Bom + good);
    const char *const ini = "Lang.ini";

    // The catalogue as a file
    row("catalogue-missing", "nothing like it", deleted(ini), ini, "put the catalogue there",
        restore);
    for (const char *const name : {"Lang.ini.txt", "Lang (1).ini", "Lang_old.ini", "Lagn.ini"}) {
        const QByteArray shown =
            QDir::cleanPath(QStringLiteral("Lang/") + QLatin1String(name)).toUtf8();
        row("catalogue-missing", name, move(ini, name), ini,
            "rename " + shown + " to Lang/Lang.ini", move(name, ini));
    }
    row(
        "catalogue-missing", "nested",
        [] {
            move("", "../Language")();
            move("../Language", "Lang")();
        },
        ini, "move the contents of Lang/Lang to Lang",
        [] {
            move("Lang", "../Language")();
            QDir().rmdir(langPath(""));
            move("../Language", "")();
        });
    row("catalogue-missing", "no folder", move("", "../Language"), ini,
        "rename the folder Language to Lang", move("../Language", ""));
    row(
        "catalogue-missing", "nothing", [] { QDir(langPath("")).removeRecursively(); }, ini,
        "put the folder Lang there, with the catalogue and the translations",
        [] { GoodDeployment::install(); });
    row("catalogue-missing", "one folder too high", move(ini, "../Lang.ini"), ini,
        "move Lang.ini into the folder Lang", move("../Lang.ini", ini));
#ifndef Q_OS_WIN
    row("catalogue-missing", "folder in upper case", move("", "../LANG"), ini,
        "rename the folder LANG to Lang", move("../LANG", ""));
#endif
    row("catalogue-unreadable", "folder",
        both(deleted(ini), [] { QDir().mkpath(langPath("Lang.ini")); }), ini,
        "rename the folder, and put the catalogue there", both(move(ini, "old"), restore));
    row("catalogue-empty", "no bytes", catalogue("; x\n"), ini,
        "restore it from a backup, or write [LANG_MGR], DEFAULT and the keys of each language",
        restore);
    row("catalogue-not-text", "zeros", catalogue(QByteArray(90, '\0')), ini,
        "restore it from a backup", restore);
    row("catalogue-foreign", "another program's", catalogue("[HOST]\nPORT=5\n"), ini,
        "replace it with the right catalogue; this one is probably another program's", restore);
    row("catalogue-not-text", "Rich Text", catalogue("{\\rtf1 [LANG_MGR]\\par\n}"), ini,
        "open it in a word processor, and save it as plain text in Unicode (in WordPad, as "
        "\"Unicode text document\")",
        catalogue(utf16(good)));
    row("zero-tail", "complete lines", catalogue(good + QByteArray(60, '\0')), ini,
        "delete them, and make sure that no lines are missing at the end", restore);
    row("odd-byte", "UTF-16", catalogue(utf16(good) + '\n'), ini,
        "make sure that no lines are missing at the end, and save the file again",
        catalogue(utf16(good)));
    row("utf16-without-bom", "little endian", catalogue(utf16(good).mid(2)), ini,
        "open it as UTF-16, make sure that all names look right, and only then save it as \"UTF-8 "
        "with BOM\"",
        save);
    const QByteArray utf8 = catalogueWith("=Two", "=中文");
    row("utf8-without-bom", "Chinese", catalogue(utf8), ini,
        "open the file as UTF-8, correct any names that have lost letters, and only then save it "
        "as \"UTF-8 with BOM\"",
        catalogue(kUtf8Bom + utf8));
    row("no-bom", "GB2312", catalogue(catalogueWith("=Two", "=\xD6\xD0\xCE\xC4")), "Lang.ini:6",
        "look at the picture of the list, open the file in the encoding in which all names look "
        "right, and only then save it as \"UTF-8 with BOM\"",
        catalogue(kUtf8Bom + utf8));
    row("second-bom", "header", catalogue(kUtf8Bom + kUtf8Bom + good), "Lang.ini:1",
        "delete the BOM", save);
    const char *const right = "open the file in the encoding in which all names look right, "
                              "correct any names that have lost letters, and only then save it as "
                              "\"UTF-8 with BOM\"";
    const Step spanish = catalogue(kUtf8Bom + catalogueWith("=Two", "=España"));
    row("undecodable", "Latin-1",
        catalogue(catalogueWith("=Two",
                                "=Espa\xF1"
                                "a")),
        "Lang.ini:6", right, spanish);
    row("swallowed-line", "comment", catalogue(good + ";\xD6\n;\n"), "Lang.ini:9", right, save);
    row("half-character", "name",
        catalogue(utf16(catalogueWith("=Two", "=T*")).replace(QByteArray("*\0", 2), "\x01\xD8")),
        "Lang.ini:6", "type the text again, and save the file", catalogue(utf16(good)));
    const char *const again = "open the file as UTF-16, delete the line, type its keys again, each "
                              "on a line of its own, and save the file";
    row("appended-bytes", "8 bits", catalogue(utf16(good) + "LANG2_SHOW=1\r\n"), "Lang.ini:9",
        again, catalogue(utf16(good)));
    row("carriage-return", "comment", catalogue(good + "; one\r; two\n"), "Lang.ini:9",
        "end lines with CR LF or LF", catalogue(good + "; one\n; two\n"));

    row("carriage-return", "whole file", catalogue(QByteArray(good).replace('\n', '\r')),
        "Lang.ini:1", "end lines with CR LF or LF", restore);
    row("text-transfer", "UTF-16", catalogue(utf16(good).replace("\n", "\r\n")), ini,
        "transfer the folder Lang again in binary mode, or restore it from a backup",
        catalogue(utf16(good)));
    row("appended-bytes", "UTF-8", catalogue(utf16(good) + "LANG3_NAME=Ελληνικά\nLANG3_SHOW=0\n"),
        "Lang.ini:9", again, catalogue(utf16(good + "LANG3_NAME=Ελληνικά\nLANG3_SHOW=0\n")));
    const QByteArray hiddenGreek = "LANG3_NAME=Ελληνικά\n\nLANG3_SHOW=0\n";
    row("appended-bytes", "UTF-16", catalogue(kUtf8Bom + good + utf16(hiddenGreek).mid(2)),
        "Lang.ini:9",
        "open the file as UTF-8, delete the lines, type their keys again, each on a line of its "
        "own, and save the file",
        catalogue(kUtf8Bom + good + hiddenGreek));
    row("appended-bytes", "UTF-16 with its BOM", catalogue(kUtf8Bom + good + utf16("; x\n; y\n")),
        "Lang.ini:9",
        "open the file as UTF-8, delete the lines, type their keys again, each on a line of its "
        "own, and save the file",
        catalogue(kUtf8Bom + good + "; x\n; y\n"));
    row("appended-bytes", "UTF-16 without a BOM",
        catalogue(good + utf16("; Ελληνικά\n; x\n").mid(2)), "Lang.ini:9",
        "open the file in the encoding in which the other names look right, delete the lines, type "
        "their keys again, each on a line of its own, and save the file",
        catalogue(good + "; Greek\n; x\n"));
    row("second-bom", "another catalogue", catalogue(kUtf8Bom + good + "; x" + kUtf8Bom + "\n"),
        "Lang.ini:9", "keep one of the two catalogues", save);

    // Sections and keys
    row("no-section", "keys only", catalogue(catalogueWith("[LANG_MGR]\n", "; x\n")), "Lang.ini:2",
        "insert a line with [LANG_MGR] before line 2", line(2, "[LANG_MGR]\nDEFAULT=1"));
    for (const char *const header : {"[LANGMGR]", "[LANG MGR]", "[[LANG_MGR]]", "LANG_MGR",
                                     "(LANG_MGR)", "[General]", "［LANG_MGR］"}) {
        row("header", header, with("[LANG_MGR]", header), "Lang.ini:1",
            "write [LANG_MGR] on this line, with nothing before or after it",
            line(1, "[LANG_MGR]"));
    }
    const QByteArray withoutShow = catalogueWith("LANG2_SHOW=1\n", "");
    row("outside-section", "another section",
        catalogue(withoutShow + "[HOST]\nPORT=5\nLANG2_SHOW=1\n"), "Lang.ini:10",
        "move it below [LANG_MGR] and above \"[HOST]\"", catalogue(good + "[HOST]\nPORT=5\n"));
    row("outside-section", "sorted lines",
        catalogue(QByteArray(good).replace("[LANG_MGR]\n", "") + "[LANG_MGR]\n"), "Lang.ini:1",
        "move them below [LANG_MGR]", restore);
    row("outside-section", "backup", catalogue(good + "[OLD]\nLANG2_NAME=x\nLANG2_SHOW=1\n"),
        "Lang.ini:10", "delete them if no longer needed, because the section has the same keys",
        restore);
    row("two-keys", "lost line end", catalogue(QByteArray(good).replace("second\n", "second ")),
        "Lang.ini:7", "write LANG2_SHOW=1 on a line of its own",
        line(7, "LANG2_FOLDER=second\nLANG2_SHOW=1"));
    row("no-key", "no sign", catalogue(good + "Deutsch\n"), "Lang.ini:9",
        "write KEY=value, or start a comment with \";\"", line(9, "; Deutsch"));
    row("no-key", "colon", catalogue(catalogueWith("LANG2_SHOW=", "LANG2_SHOW:")), "Lang.ini:8",
        "write \"=\" instead of \":\"", line(8, "LANG2_SHOW=1"));
    row("no-key", "all with colons", catalogue(QByteArray(good).replace('=', ':')), "Lang.ini:2",
        "write \"=\" instead of \":\"", replace(":", "="));
    row("no-key", "full-width sign", with("LANG2_NAME=", "LANG2_NAME＝"), "Lang.ini:6",
        "write \"=\" instead of \"＝\" (with U+FF1D)", line(6, "LANG2_NAME=Two"));
    row("no-key", "comment", catalogue(good + "// x\n"), "Lang.ini:9",
        "start the comment with \";\"", line(9, "; x"));
    row("no-key", "dash", with("LANG2_NAME=", "LANG2_NAME – "), "Lang.ini:6",
        "write \"=\" instead of \"–\" (with U+2013)", line(6, "LANG2_NAME=Two"));
    row("no-key", "tab", catalogue(catalogueWith("LANG2_NAME=", "LANG2_NAME\t")), "Lang.ini:6",
        "write \"=\" instead of the tab", line(6, "LANG2_NAME=Two"));
    const QByteArray three = "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SHOW=1\n";
    const QByteArray four = "LANG3_NAME=Four\nLANG3_FOLDER=chs\nLANG3_SHOW=1\n";
    row("no-key", "merge conflict",
        catalogue(good + "<<<<<<< HEAD\n" + three + "=======\n" + four + ">>>>>>> b\n"),
        "Lang.ini:9",
        "resolve the merge conflict: delete these lines, and keep one of the two versions, or both "
        "with different numbers if each adds a language",
        catalogue(good + three));
    row("no-key", "full-width key", with("LANG2_NAME=", "ＬＡＮＧ２＿ＮＡＭＥ＝"), "Lang.ini:6",
        "write LANG2_NAME=Two", line(6, "LANG2_NAME=Two"));
    row("no-key", "full-width comment", catalogue(kUtf8Bom + good + "；x\n"), "Lang.ini:9",
        "start the comment with \";\"", line(9, "; x"));
    row("no-key", "cut off", catalogue(good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SH"),
        "Lang.ini:11", "write LANG3_SHOW=<value>", catalogue(good + three));
    for (const char *const sign : {";", " "}) {
        row("no-key", sign, catalogue(QByteArray(good).replace("=", sign)), "Lang.ini:2",
            QByteArray("write \"=\" instead of \"") + sign + '"', restore);
    }
    // Spreadsheets put each line or each cell in quotation marks.
    const QByteArray quotation = "delete the quotation marks: write DEFAULT=1, LANG1_NAME=One, "
                                 "LANG1_FOLDER=first, LANG1_SHOW=1, LANG2_NAME=Two, "
                                 "LANG2_FOLDER=second, LANG2_SHOW=1";
    row("unknown-key", "quoted lines",
        catalogue(QByteArray(good).replace("\n", "\"\n\"").replace("]\"", "]").chopped(1)),
        "Lang.ini:2", quotation, restore);
    row("no-key", "quoted cells",
        catalogue(QByteArray(good)
                      .replace("\n", "\"\n\"")
                      .replace("]\"", "]")
                      .replace("=", "\",\"")
                      .chopped(1)),
        "Lang.ini:2", quotation, restore);
    row("unknown-key", "letter for a digit",
        catalogue(QByteArray(good).replace("LANG1_NAME", "LANGl_NAME")), "Lang.ini:3",
        "write LANG1_NAME=One", line(3, "LANG1_NAME=One"));
    row("unknown-key", "quoted mail", catalogue(QByteArray(good).replace("\nLANG", "\n> LANG")),
        "Lang.ini:3",
        "delete \">\" before each key: write LANG1_NAME=One, LANG1_FOLDER=first, LANG1_SHOW=1, "
        "LANG2_NAME=Two, LANG2_FOLDER=second, LANG2_SHOW=1",
        replace("> ", ""));
    row("unknown-key", "quoted-printable mail",
        catalogue(QByteArray(good)
                      .replace("=", "=3D")
                      .replace("\nLANG", "\n> LANG")
                      .replace("DEFAULT=3D", "DEFAULT=")),
        "Lang.ini:3",
        "delete \">\" before each key: write LANG1_NAME=One, LANG1_FOLDER=first, LANG1_SHOW=1, "
        "LANG2_NAME=Two, LANG2_FOLDER=second, LANG2_SHOW=1",
        restore);
    row("unknown-key", "line numbers", catalogue(QByteArray(good).replace("\nLANG", "\n9: LANG")),
        "Lang.ini:3",
        "write LANG1_NAME=One, LANG1_FOLDER=first, LANG1_SHOW=1, LANG2_NAME=Two, "
        "LANG2_FOLDER=second, LANG2_SHOW=1",
        restore);
    const QByteArray longName(300, 'x');
    row("unknown-key", "many lines",
        catalogue(QByteArray(good)
                      .replace("\nLANG", "\n+LANG")
                      .replace("=One", '=' + longName)
                      .replace("=Two", '=' + longName)),
        "Lang.ini:3",
        "delete \"+\" before each key: write LANG1_NAME=" + longName
            + ", LANG1_FOLDER=first, LANG1_SHOW=1, LANG2_NAME=" + longName
            + ", and correct the others in the same way",
        restore);
    row("key-case", "one", catalogue(catalogueWith("LANG2_SHOW", "Lang2_Show")), "Lang.ini:8",
        "write LANG2_SHOW", line(8, "LANG2_SHOW=1"));
    row("key-case", "all",
        catalogue(QByteArray(good).replace("LANG", "Lang").replace("[Lang", "[LANG")), "Lang.ini:3",
        "write all keys in upper case", both(replace("Lang", "LANG"), [] {}));
    row("unknown-key", "unlike any", catalogue(good + "LANG1_ICON=x\n"), "Lang.ini:9",
        "use DEFAULT or LANG<n>_ID, _NAME, _FOLDER or _SHOW", line(9, nullptr));
    row("unknown-key", "NANE", catalogue(catalogueWith("LANG2_NAME", "LANG2_NANE")), "Lang.ini:6",
        "write LANG2_NAME=Two", line(6, "LANG2_NAME=Two"));
    row("unknown-key", "FODLER", catalogue(catalogueWith("LANG2_FOLDER", "LANG2_FODLER")),
        "Lang.ini:7", "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("unknown-key", "no underscore", catalogue(catalogueWith("LANG2_SHOW", "LANG2SHOW")),
        "Lang.ini:8", "write LANG2_SHOW=1", line(8, "LANG2_SHOW=1"));
    row("unknown-key", "DEFUALT", catalogue(catalogueWith("DEFAULT", "DEFUALT")), "Lang.ini:2",
        "write DEFAULT=1", line(2, "DEFAULT=1"));
    row("unknown-key", "commented out", catalogue(catalogueWith("LANG2_SHOW", "// LANG2_SHOW")),
        "Lang.ini:8", "write LANG2_SHOW=1, or start the comment with \";\"",
        line(8, "LANG2_SHOW=1"));
    row("unknown-key", "all commented out",
        catalogue(QByteArray(good).replace("\nLANG2", "\n//LANG2") + "//LANG1_SHOW=1\n"),
        "Lang.ini:6",
        "write LANG2_NAME=Two, LANG2_FOLDER=second, LANG2_SHOW=1, LANG1_SHOW=1, or start the "
        "comment with \";\"",
        catalogue(QByteArray(good) + ";LANG1_SHOW=1\n"));
    row("unknown-key", "full-width digit", with("LANG2_NAME", "LANG２_NAME"), "Lang.ini:6",
        "write LANG2_NAME=Two", line(6, "LANG2_NAME=Two"));
    row("repeated-key", "SHOW", catalogue(good + "LANG2_SHOW=0\n"), "Lang.ini:9",
        "delete all but the right one", line(9, nullptr));
    row("repeated-language", "two of number 2",
        catalogue(good + "LANG2_NAME=Three\nLANG2_FOLDER=chs\nLANG2_SHOW=1\n"), "Lang.ini:9",
        "give each language its own number, name and folder, or delete the lines of those that you "
        "don't want",
        catalogue(good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SHOW=1\n"));

    // Numbers
    row("number-too-long", "all keys", catalogue(catalogueWith("LANG2_", "LANG99999999999_")),
        "Lang.ini:6", "use a number up to 255 in all keys of the language",
        replace("LANG99999999999_", "LANG2_"));
    row("number-above-255", "with an ID",
        catalogue(catalogueWith("LANG2_", "LANG300_") + "LANG300_ID=2\n"), "Lang.ini:6",
        "use a number up to 255 in all keys of the language, such as the 2 in its ID, and in "
        "DEFAULT if it is the default",
        replace("LANG300_", "LANG2_"));
    row("same-machine-number", "257 and 1", catalogue(catalogueWith("LANG2", "LANG257")),
        "Lang.ini:6",
        "use an unused number up to 255 in all keys of language 257, and in DEFAULT if it is the "
        "default",
        replace("LANG257", "LANG2"));
    row("id-differs", "used number", catalogue(good + "LANG2_ID=1\n"), "Lang.ini:9",
        "write LANG2_ID=2 or, to give the language the number 1, rename its keys to LANG1_ID, "
        "LANG1_NAME and so on, and give the present language 1 another number",
        line(9, "LANG2_ID=2"));

    // Names
    row("quoted-value", "typographic", with("=Two", "=„Two“"), "Lang.ini:6", "write LANG2_NAME=Two",
        line(6, "LANG2_NAME=Two"));
    row("comment-in-value", "tab", with("=Two", "=Two\t; 2"), "Lang.ini:6",
        "write LANG2_NAME=Two, and the comment on a line of its own",
        line(6, "; 2\nLANG2_NAME=Two"));
    row("lost-letters", "question mark", with("=Two", "=Fran?ois"), "Lang.ini:6",
        "type this name again, and save the file as \"UTF-8 with BOM\"",
        line(6, "LANG2_NAME=François"));
    row("lost-letters", "without a BOM", catalogue(catalogueWith("=Two", "=Fran?ois")),
        "Lang.ini:6",
        "open the file in the encoding in which all other names look right, type this name again, "
        "and save the file as \"UTF-8 with BOM\"",
        catalogue(kUtf8Bom + catalogueWith("=Two", "=François")));
    row("garbled-name", "French", with("=Two", "=FranÃ§ois"), "Lang.ini:6",
        "write LANG2_NAME=François, correct any other wrong names, and save the file as \"UTF-8 "
        "with "
        "BOM\"",
        line(6, "LANG2_NAME=François"));
    const auto garbled = [&row, &with](const char *name, const QString &text, const char *meant) {
        row("garbled-name", name, with("=Two", "=" + text.toUtf8()), "Lang.ini:6",
            QByteArray("write LANG2_NAME=") + meant
                + ", correct any other wrong names, and save the file as \"UTF-8 with BOM\"",
            catalogue(kUtf8Bom + catalogueWith("=Two", QByteArray("=") + meant)));
    };
    garbled("read as Latin-1", QString::fromLatin1("한글말"), "한글말");
    garbled("UTF-8 read as GBK", QStringLiteral("Fran莽ois"), "François");
    garbled("letters only", QStringLiteral("BaÅŸlat"), "Başlat");
    garbled("UTF-8 read as Windows-1250", QStringLiteral("FranĂ§ois"), "François");
    garbled("UTF-8 read as IBM850", QStringLiteral("Fran├ºois"), "François");
    row("escaped-name", "HTML", with("=Two", "=Fran&ccedil;ois"), "Lang.ini:6",
        "write LANG2_NAME=François", line(6, "LANG2_NAME=François"));
    row("escaped-name", "JSON", with("=Two", "=Fran\\u00e7ois"), "Lang.ini:6",
        "write LANG2_NAME=François", line(6, "LANG2_NAME=François"));
    for (const char *const codes : {"Fran=C3=A7ois", "Fran%C3%A7ois", "Fran\\xC3\\xA7ois",
                                    "Fran\\303\\247ois", "Fran<U+00E7>ois"}) {
        row("escaped-name", codes, with("=Two", QByteArray("=") + codes), "Lang.ini:6",
            "write LANG2_NAME=François", line(6, "LANG2_NAME=François"));
    }
    row("escaped-name", "reference at the end", with("=Two", "=Fran&ccedil;&#243;"), "Lang.ini:6",
        "write LANG2_NAME=Françó", line(6, "LANG2_NAME=Françó"));
    row("mixed-scripts", "Cyrillic", with("=Two", "=Tw\u043E"), "Lang.ini:6",
        "type the name again in one script", line(6, "LANG2_NAME=Two"));
    row("name-script", "transcribed",
        both(with("=Two", "=Rússkij"), asRussian(withText("2 Change", QStringLiteral("2 Русски")))),
        "Lang.ini:6", "write LANG2_NAME=Русский", line(6, "LANG2_NAME=Русский"));
    row("name-language", "German", with("=Two", "=Deutsch"), "Lang.ini:6",
        "write LANG2_NAME=English if number 2 is English in the control software, or else put the "
        "translation for German into a folder of its own, and write that after LANG2_FOLDER=",
        line(6, "LANG2_NAME=English"));
    row("name-language", "Russian, in the other folder",
        both(with("=One", "=Русский"), asRussian(withText("2 Change", QStringLiteral("2 Русски")))),
        "Lang.ini:3",
        "write LANG1_NAME=English if number 1 is English in the control software, or else write "
        "LANG1_FOLDER=second",
        line(3, "LANG1_NAME=English"));
    row("name-language", "with an addition", with("=Two", "=Deutsch (Österreich)"), "Lang.ini:6",
        "write LANG2_NAME=English if number 2 is English in the control software, or else put the "
        "translation for German into a folder of its own, and write that after LANG2_FOLDER=",
        line(6, "LANG2_NAME=English"));

    row("comment-in-value", "at the end", with("=Two", "=Two;"), "Lang.ini:6",
        "write LANG2_NAME=Two, and the comment on a line of its own", line(6, "LANG2_NAME=Two"));
    row("name-invisible", "zero-width space", with("=Two", "=Two\u200B"), "Lang.ini:6",
        "type the name again, without them: LANG2_NAME=Two", line(6, "LANG2_NAME=Two"));
    row("same-name", "One", catalogue(catalogueWith("=Two", "=One")), "Lang.ini:6",
        "use another name, or hide one of the two with LANG2_SHOW=0", line(6, "LANG2_NAME=Two"));
    row("name-clipped", "too wide",
        catalogue(catalogueWith("=Two", "=A language with a name that no list can hold")),
        "Lang.ini:6", "use a shorter name", line(6, "LANG2_NAME=Two"));

    // Folders
    row("folder-dots", "below Lang", catalogue(catalogueWith("=second", "=..\\Lang\\second")),
        "Lang.ini:7", "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("folder-absolute", "drive", catalogue(catalogueWith("=second", "=C:\\Host\\Lang\\second")),
        "Lang.ini:7", "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("folder-percent", "digit",
        both(catalogue(catalogueWith("=second", "=%1")), move("second", "%1")), "Lang.ini:7",
        "rename the folder, and write its new name after LANG2_FOLDER=",
        both(move("%1", "second"), line(7, "LANG2_FOLDER=second")));
    row("folder-case", "SECOND", catalogue(catalogueWith("=second", "=SECOND")), "Lang.ini:7",
        "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("same-folder", "first", catalogue(catalogueWith("=second", "=first")), "Lang.ini:7",
        "use a separate folder for each, or hide one of the two with LANG2_SHOW=0",
        line(7, "LANG2_FOLDER=second"));
    for (const char *const folder : {"second\\Zendel.qm", "Lang\\second", "secnod", "sесond"}) {
        row("folder-missing", folder,
            both(line(6, "LANG2_NAME=Two"),
                 catalogue(kUtf8Bom + catalogueWith("=second", QByteArray("=") + folder))),
            "Lang.ini:7", "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    }
    row("folder-missing", "variable", catalogue(catalogueWith("=second", "=%LANG%\\second")),
        "Lang.ini:7", "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("folder-missing", "file of that name",
        both(catalogue(catalogueWith("=second", "=xyz")), move("second/Zendel.qm", "xyz")),
        "Lang.ini:7",
        "rename the file with this name, and create the folder \"xyz\" in Lang and put the "
        "compiled "
        "translation into it",
        both(move("xyz", "xyz.old"), translation("xyz", "second")));
    row("folder-missing", "translation of that name",
        both(catalogue(catalogueWith("=second", "=xyz")), move("second/Zendel.qm", "xyz.qm")),
        "Lang.ini:7", "move Lang/xyz.qm to Lang/xyz/Zendel.qm", move("xyz.qm", "xyz/Zendel.qm"));
    row("quoted-value", "folder", catalogue(catalogueWith("=second", "=\"second\"")), "Lang.ini:7",
        "write LANG2_FOLDER=second", line(7, "LANG2_FOLDER=second"));
    row("comment-in-value", "folder", catalogue(catalogueWith("=second", "=second  # 2")),
        "Lang.ini:7", "write LANG2_FOLDER=second, and the comment on a line of its own",
        line(7, "# 2\nLANG2_FOLDER=second"));
    row("folder-missing", "no such name on Windows",
        both(catalogue(catalogueWith("=second", "=CON")), translation("third", "third")),
        "Lang.ini:7",
        "write the name of an existing folder after LANG2_FOLDER=, such as one that no language "
        "uses (second, third)",
        line(7, "LANG2_FOLDER=third"));
    row("folder-missing", "new folder", catalogue(catalogueWith("=second", "=klingon")),
        "Lang.ini:7",
        "write the name of an existing folder after LANG2_FOLDER=, such as one that no language "
        "uses (second), or create the folder \"klingon\" in Lang and put the compiled translation "
        "into "
        "it",
        translation("klingon", "second"));
#ifndef Q_OS_WIN
    row("folder-missing", "decomposed letter",
        both(catalogue(kUtf8Bom + catalogueWith("=second", "=se\u00E7")),
             move("second", "sec\u0327")),
        "Lang.ini:7",
        "rename the folder on disk, whose letters are decomposed as on a Mac (\"sec\u0327\" (with "
        "U+0327)), best to an ASCII name, and write that after LANG2_FOLDER=",
        both(move("sec\u0327", "sec"), line(7, "LANG2_FOLDER=sec")));
    row("folder-missing", "space on disk", move("second", "second "), "Lang.ini:7",
        "rename the folder \"second \" to second, without spaces", move("second ", "second"));
#endif

    // Shown languages and the default
    const Step third = catalogue(good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SHOW=1\n");
    const QByteArray hidden = good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\nLANG3_SHOW=";
    for (const char *const value : {"yes", "1.0", "１", "'1'"}) {
        row("show-number", value, catalogue(kUtf8Bom + hidden + value), "Lang.ini:11",
            "write LANG3_SHOW=1", line(11, "LANG3_SHOW=1"));
    }
    for (const char *const value : {"N", "x", "2.0", "O"}) {
        row("show-number", value, catalogue(hidden + value), "Lang.ini:11",
            "write LANG3_SHOW=1 to show it, or LANG3_SHOW=0 to hide it", line(11, "LANG3_SHOW=0"));
    }
    row("comment-in-value", "SHOW", catalogue(hidden + "1 ; shown"), "Lang.ini:11",
        "write LANG3_SHOW=1, and the comment on a line of its own", line(11, "LANG3_SHOW=1"));
    row("comment-in-value", "ID", catalogue(good + "LANG2_ID=2,,\n"), "Lang.ini:9",
        "write LANG2_ID=2, and the comment on a line of its own", line(9, "LANG2_ID=2"));
    row("show-number", "no", catalogue(hidden + "no"), "Lang.ini:11", "write LANG3_SHOW=0",
        line(11, "LANG3_SHOW=0"));
    row("show-number", "empty", catalogue(hidden), "Lang.ini:11",
        "write LANG3_SHOW=1 to show it, or LANG3_SHOW=0 to hide it", line(11, "LANG3_SHOW=1"));
    row("show-other", "2", catalogue(hidden + "2"), "Lang.ini:11",
        "write LANG3_SHOW=1 to show it, or LANG3_SHOW=0 to hide it", line(11, "LANG3_SHOW=1"));
    row("show-missing", "no line", catalogue(good + "LANG3_NAME=Three\nLANG3_FOLDER=chs\n"),
        "Lang.ini:9", "write LANG3_SHOW=1 to show it, or LANG3_SHOW=0 to hide it", third);
    row("incomplete", "no name", catalogue(good + "LANG3_FOLDER=chs\nLANG3_SHOW=1\n"),
        "Lang.ini:10", "write LANG3_NAME=<name>", third);
    row("no-languages", "section only", catalogue("[LANG_MGR]\nDEFAULT=1\n"), ini,
        "write all three for at least one language", restore);
    row("no-languages", "all hidden", catalogue(QByteArray(good).replace("SHOW=1", "SHOW=0")), ini,
        "write SHOW=1 for each language that is to be offered, and the number of one of "
        "them after DEFAULT=",
        restore);
    row("default-missing", "no line", catalogue(catalogueWith("DEFAULT=1\n", "")), ini,
        "below [LANG_MGR], write DEFAULT=<number>: 1 for One, 2 for Two",
        line(1, "[LANG_MGR]\nDEFAULT=1"));
    for (const char *const value :
         {"O2", "2 ; was 1", "２", "2 日本語", "2.0", "LANG2", "=2", "TWO"}) {
        row("default-number", value, with("DEFAULT=1", QByteArray("DEFAULT=") + value),
            "Lang.ini:2", "write DEFAULT=2", line(2, "DEFAULT=2"));
    }
    row("default-number", "no number", catalogue(catalogueWith("DEFAULT=1", "DEFAULT=x")),
        "Lang.ini:2", "write DEFAULT=<number>: 1 for One, 2 for Two", line(2, "DEFAULT=1"));
    row("default-unknown", "9", catalogue(catalogueWith("DEFAULT=1", "DEFAULT=9")), "Lang.ini:2",
        "write DEFAULT=<number>: 1 for One, 2 for Two, or add language 9", line(2, "DEFAULT=1"));
    row("default-hidden", "1", catalogue(catalogueWith("LANG1_SHOW=1", "LANG1_SHOW=0")),
        "Lang.ini:2", "write LANG1_SHOW=1, or DEFAULT=2", line(2, "DEFAULT=2"));
    row("show-number", "default", catalogue(catalogueWith("LANG1_SHOW=1", "LANG1_SHOW=O")),
        "Lang.ini:5", "write LANG1_SHOW=1 to show it, or LANG1_SHOW=0 to hide it",
        line(5, "LANG1_SHOW=1"));
    row("repeated-key", "DEFAULT", catalogue(good + "DEFAULT=9\n"), "Lang.ini:9",
        "delete all but the right one", line(9, nullptr));

    // Translations
    const char *const qm = "second/Zendel.qm";
    row("qm-missing", "nothing like it", deleted(qm), qm, "put the compiled translation there",
        translation("second", "second"));
    for (const char *const name :
         {"second/second.qm", "second/Zendel.qm.txt", "second/Zendel_fr.qm", "second/Zendel (1).qm",
          "second/second/Zendel.qm", "Zendel.qm"}) {
        row("qm-missing", name, move(qm, name), qm,
            QByteArray("if it is the translation for this folder, rename Lang/") + name
                + " to Lang/second/Zendel.qm",
            move(name, qm));
    }
    row("qm-missing", "source", move(qm, "second/Zendel.ts"), qm,
        "compile it with \"lrelease Lang/second/Zendel.ts -qm Lang/second/Zendel.qm\"",
        translation("second", "second"));
    row("qm-unreadable", "folder",
        both(deleted(qm), [] { QDir().mkpath(langPath("second/Zendel.qm")); }), qm,
        "rename the folder, and put the compiled translation there",
        both(move(qm, "second/old"), translation("second", "second")));
    row("qm-source", "TS", translationFile("second", "<!DOCTYPE TS>\n<TS version=\"2.1\">\n</TS>"),
        qm,
        "rename this file to Zendel.ts, and compile it with \"lrelease Zendel.ts -qm Zendel.qm\"",
        both(move(qm, "second/Zendel.ts"), translation("second", "second")));
    row("qm-damaged", "empty", translationFile("second", ""), qm,
        "replace it with an undamaged copy", translation("second", "second"));
    row("qm-damaged", "zeros", translationFile("second", QByteArray(900, '\0')), qm,
        "replace it with an undamaged copy", translation("second", "second"));
    const QByteArray second = compiled("second");
    row("qm-damaged", "zeros at its end",
        translationFile("second", second.chopped(20) + QByteArray(20, '\0')), qm,
        "replace it with an undamaged copy", translation("second", "second"));
    row("qm-damaged", "transferred in text mode",
        both(translationFile("first", compiled("first").replace("\n", "\r\n")),
             translationFile("second", compiled("second").replace("\n", "\r\n"))),
        "first/Zendel.qm", "transfer the folder Lang again in binary mode",
        both(translation("first", "first"), translation("second", "second")));
#ifndef Q_OS_WIN
    row("qm-unreadable", "broken link",
        both(deleted(qm),
             [] { QFile::link(QStringLiteral("none"), langPath("second/Zendel.qm")); }),
        qm, "delete the link, and put the compiled translation there",
        both(deleted(qm), translation("second", "second")));
#endif
    row("qm-foreign", "another program's", translation("second", "other_program"), qm,
        "replace it with the plug-in's translation, compiled with lrelease from the plug-in's "
        "translated .ts file",
        translation("second", "second"));
    const char *const compile = "the language's .ts file, or in one made with \"lconvert Zendel.qm "
                                "-o Zendel.ts\", and compile that file";
    row("text-missing", "seven", translation("second", "one_text"), qm,
        "translate them in the language's .ts file, and compile that file, or replace this one "
        "with a complete translation",
        translation("second", "second"));
    row("text-garbled", "lost",
        translationFile("second", withText("2 Change", QStringLiteral("??????\u00E9a"))), qm,
        "type the text again in the .ts file, save it as UTF-8, and compile it",
        translation("second", "second"));
    for (const char *const text : {"FranÃ§oi", "ParamĂ¨t", "Param├¿t", "Param\uFFFDtr"}) {
        row("text-garbled", text,
            translationFile("second", withText("2 Change", QString::fromUtf8(text))), qm,
            "type the text again in the .ts file, save it as UTF-8, and compile it",
            translation("second", "second"));
    }
    row("text-garbled", "whole file", asRussian(compiled("western")), qm,
        "replace the file with a translation whose .ts file was read and saved as UTF-8",
        translation("second", "second"));
    row("text-blank", "spaces",
        translationFile("second", withText("2 Change", QString(8, QChar(0xA0)))), qm,
        QByteArray("translate it in ") + compile, translation("second", "second"));
    row("text-ampersand", "space",
        translationFile("second", withText("2 Change", QStringLiteral("2 & Chan"))), qm,
        "write \"&&\" in Linguist, or \"&amp;&amp;\" in a text editor, and compile the file",
        translationFile("second", withText("2 Change", QStringLiteral("2 && Cha"))));
    row("text-html", "bold",
        translationFile("second", withText("2 Language:", QStringLiteral("<b>x</b> xx"))), qm,
        "write the text without tags in the .ts file, and compile it",
        translation("second", "second"));
    row("text-clipped", "button", translation("second", "long_texts"), qm,
        QByteArray("use a shorter translation in ") + compile, translation("second", "second"));
    row("qm-english", "in a German folder",
        both(catalogue(catalogueWith("=second", "=de")),
             both(move("second", "de"), translation("de", "english"))),
        "de/Zendel.qm", "replace the file with the translation for de",
        translation("de", "second"));
    row("same-texts", "copied", translation("second", "first"), qm,
        "replace whichever of the two files is wrong with the right translation",
        translation("second", "second"));
}

void tst_langcheck_remedies::remedyRepairs()
{
    QFETCH(QString, kind);
    QFETCH(Step, damage);
    QFETCH(QString, place);
    QFETCH(QString, remedy);
    QFETCH(Step, repair);

    damage();
    const QList<Finding> findings = check().findings;
    QStringList texts;
    for (const Finding &finding : findings)
        texts += placeOf(finding) + QLatin1Char(' ') + finding.text();
    QVERIFY2(findings.size() == 1, qPrintable(texts.join(QLatin1Char('\n'))));
    QCOMPARE(QString(findings.first().id()), kind);
    QCOMPARE(placeOf(findings.first()), place);
    QCOMPARE(findings.first().remedy(), remedy);
    m_kinds += kind;

    repair();
    texts.clear();
    const QList<Finding> left = check().findings;
    for (const Finding &finding : left)
        texts += placeOf(finding) + QLatin1Char(' ') + finding.text();
    QCOMPARE(texts.join(QLatin1Char('\n')), QString());
}

/// Those of the host's DLLs and three that need other deployments are tested elsewhere.
void tst_langcheck_remedies::everyKindHasARow()
{
    const QSet<QString> elsewhere {QStringLiteral("application-folder"),
                                   QStringLiteral("folder-unreadable"),
                                   QStringLiteral("qm-language")};
    QStringList missing;
    for (const FindingDescription &kind : kFindings) {
        const QString id = QLatin1String(kind.id);
        if (kind.kind < FindingKind::Host32Bit && !m_kinds.contains(id) && !elsewhere.contains(id))
            missing += id;
    }
    QCOMPARE(missing.join(QLatin1Char(' ')), QString());
}

QTEST_MAIN(tst_langcheck_remedies)
#include "tst_langcheck_remedies.moc"
