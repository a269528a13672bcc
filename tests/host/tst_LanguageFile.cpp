#include "examples/host/LanguageFile.h"

#include "support/Deployment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>

class tst_LanguageFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyTheDefaultNumberChanges_data();
    void onlyTheDefaultNumberChanges();
    void namesAreDecodedAsInThePlugin_data();
    void namesAreDecodedAsInThePlugin();
    void unusableFileIsReported();
    void fileIsReplacedNotOverwritten();

private:
    void write(const QByteArray &bytes);

    QTemporaryDir m_folder;
    const QString m_fileName = m_folder.filePath(QStringLiteral("Lang.ini"));
};

void tst_LanguageFile::write(const QByteArray &bytes)
{
    QFile file(m_fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void tst_LanguageFile::onlyTheDefaultNumberChanges_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after;
    };
    const auto number = [&row](const char *name, const QByteArray &text) {
        row(name, QByteArray(text).replace('@', "1"), QByteArray(text).replace('@', "42"));
    };
    number("LF", "[LANG_MGR]\nDEFAULT=@\nLANG1_NAME=a\n");
    number("CR LF", "; x\r\n[LANG_MGR]\r\nDEFAULT=@\r\n");
    number("spaces are kept", "[LANG_MGR]\n  DEFAULT =  @ \t\nX");
    number("no line end in the last line", "[LANG_MGR]\nDEFAULT=@");
    number("the last one counts", "[LANG_MGR]\nDEFAULT=1\nDEFAULT=@\n");
    number("comments and other sections don't count",
           "DEFAULT=0\n[LANG_MGR]\nDEFAULT=@\n;DEFAULT=2\n[OTHER]\nDEFAULT=3\n");
    number("UTF-8 with a BOM", "\xEF\xBB\xBF[LANG_MGR]\nLANG1_NAME=简\nDEFAULT=@\n");
    number("GB2312 and invalid bytes", "[LANG_MGR]\nLANG1_NAME=\xBC\xF2\xFF\x80\nDEFAULT=@\n");
    row("no value", "[LANG_MGR]\nDEFAULT=\n", "[LANG_MGR]\nDEFAULT=42\n");
    row("no DEFAULT", "[LANG_MGR]\nLANG1_NAME=a\n", "[LANG_MGR]\nDEFAULT=42\nLANG1_NAME=a\n");
    row("no DEFAULT and nothing after the header", "[LANG_MGR]", "[LANG_MGR]\r\nDEFAULT=42\r\n");
    row("no section", "[OTHER]\nDEFAULT=1\n", "[OTHER]\nDEFAULT=1\n[LANG_MGR]\nDEFAULT=42\n");
    row("empty file", "", "[LANG_MGR]\r\nDEFAULT=42\r\n");
    for (const bool littleEndian : {true, false}) {
        const auto encoded = [littleEndian](const char *value) {
            const QString loneSurrogate(QChar(0xD800));
            return Deployment::utf16(
                QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体%1\r\nDEFAULT=%2\r\n")
                    .arg(loneSurrogate, QLatin1String(value)),
                littleEndian);
        };
        const QByteArray name = littleEndian ? "UTF-16LE" : "UTF-16BE";
        row(name.constData(), encoded("1"), encoded("42"));
        row((name + " with an odd byte at the end").constData(), encoded("1") + 'x',
            encoded("42") + 'x');
    }
}

void tst_LanguageFile::onlyTheDefaultNumberChanges()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);

    write(before);
    LanguageFile languages(m_fileName);
    QVERIFY2(languages.setDefaultLanguage(42), qPrintable(languages.errorString()));
    QCOMPARE(languages.defaultLanguage(), 42);

    QFile file(m_fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), after);
    QVERIFY(languages.read());
    QCOMPARE(languages.defaultLanguage(), 42);
}

void tst_LanguageFile::namesAreDecodedAsInThePlugin_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const QString text = QStringLiteral("[LANG_MGR]\r\nDEFAULT=3\r\nLANG3_NAME = 中文 \r\n");
    QTest::newRow("GB2312") << QByteArray(
        "[LANG_MGR]\r\nDEFAULT=3\r\nLANG3_NAME = \xD6\xD0\xCE\xC4 \r\n");
    QTest::newRow("UTF-8") << "\xEF\xBB\xBF" + text.toUtf8();
    QTest::newRow("UTF-16LE") << Deployment::utf16(QChar(QChar::ByteOrderMark) + text);
    QTest::newRow("UTF-16BE") << Deployment::utf16(QChar(QChar::ByteOrderMark) + text, false);
}

void tst_LanguageFile::namesAreDecodedAsInThePlugin()
{
    QFETCH(QByteArray, bytes);

    write(bytes);
    LanguageFile languages(m_fileName);
    QVERIFY(languages.read());
    QCOMPARE(languages.defaultLanguage(), 3);
    QCOMPARE(languages.languageName(3), QStringLiteral("中文"));
    QCOMPARE(languages.languageName(4), QString());
}

/// The file is missing, or a folder.
void tst_LanguageFile::unusableFileIsReported()
{
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    for (const char *const name : {"no/Lang.ini", "folder"}) {
        const QString fileName = m_folder.filePath(QLatin1String(name));
        LanguageFile languages(fileName);
        QVERIFY(!languages.setDefaultLanguage(1));
        QVERIFY2(languages.errorString().startsWith(
                     QStringLiteral("Can't read %1: ").arg(QDir::toNativeSeparators(fileName))),
                 qPrintable(languages.errorString()));
    }
    QVERIFY(QFileInfo(m_folder.filePath(QStringLiteral("folder"))).isDir());
}

void tst_LanguageFile::fileIsReplacedNotOverwritten()
{
    // A hard link to the old file keeps its content, unless the file is overwritten.
    const QByteArray before = "[LANG_MGR]\nDEFAULT=1\n";
    write(before);
    const QString other = m_folder.filePath(QStringLiteral("other.ini"));
    std::filesystem::create_hard_link(m_fileName.toStdWString(), other.toStdWString());
    LanguageFile languages(m_fileName);
    QVERIFY(languages.setDefaultLanguage(42));
    QFile old(other);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), before);
}

QTEST_GUILESS_MAIN(tst_LanguageFile)
#include "tst_LanguageFile.moc"
