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
    void missingFileIsReported();
    void folderInsteadOfFileIsReported();
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
    row("LF", "[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=a\n", "[LANG_MGR]\nDEFAULT=42\nLANG1_NAME=a\n");
    row("CR LF", "; x\r\n[LANG_MGR]\r\nDEFAULT=1\r\n", "; x\r\n[LANG_MGR]\r\nDEFAULT=42\r\n");
    row("spaces are kept", "[LANG_MGR]\n  DEFAULT =  1 \t\nX", "[LANG_MGR]\n  DEFAULT =  42 \t\nX");
    row("no line end in the last line", "[LANG_MGR]\nDEFAULT=1", "[LANG_MGR]\nDEFAULT=42");
    row("no value", "[LANG_MGR]\nDEFAULT=\n", "[LANG_MGR]\nDEFAULT=42\n");
    row("the last one counts", "[LANG_MGR]\nDEFAULT=1\nDEFAULT=2\n",
        "[LANG_MGR]\nDEFAULT=1\nDEFAULT=42\n");
    row("comments and other sections don't count",
        "DEFAULT=0\n[LANG_MGR]\nDEFAULT=1\n;DEFAULT=2\n[OTHER]\nDEFAULT=3\n",
        "DEFAULT=0\n[LANG_MGR]\nDEFAULT=42\n;DEFAULT=2\n[OTHER]\nDEFAULT=3\n");
    row("no DEFAULT", "[LANG_MGR]\nLANG1_NAME=a\n", "[LANG_MGR]\nDEFAULT=42\nLANG1_NAME=a\n");
    row("no DEFAULT and nothing after the header", "[LANG_MGR]", "[LANG_MGR]\r\nDEFAULT=42\r\n");
    row("no section", "[OTHER]\nDEFAULT=1\n", "[OTHER]\nDEFAULT=1\n[LANG_MGR]\nDEFAULT=42\n");
    row("empty file", "", "[LANG_MGR]\r\nDEFAULT=42\r\n");
    row("UTF-8 with a BOM", "\xEF\xBB\xBF[LANG_MGR]\nLANG1_NAME=简\nDEFAULT=1\n",
        "\xEF\xBB\xBF[LANG_MGR]\nLANG1_NAME=简\nDEFAULT=42\n");
    row("GB2312 and invalid bytes", "[LANG_MGR]\nLANG1_NAME=\xBC\xF2\xFF\x80\nDEFAULT=1\n",
        "[LANG_MGR]\nLANG1_NAME=\xBC\xF2\xFF\x80\nDEFAULT=42\n");
    for (const bool littleEndian : {true, false}) {
        const auto encoded = [littleEndian](const char *number) {
            const QString loneSurrogate(QChar(0xD800));
            return Deployment::utf16(
                QStringLiteral("\uFEFF[LANG_MGR]\r\nLANG1_NAME=简体%1\r\nDEFAULT=%2\r\n")
                    .arg(loneSurrogate, QLatin1String(number)),
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

void tst_LanguageFile::missingFileIsReported()
{
    const QString fileName = m_folder.filePath(QStringLiteral("no/Lang.ini"));
    LanguageFile languages(fileName);
    QVERIFY(!languages.setDefaultLanguage(1));
    QVERIFY(languages.errorString().startsWith(
        QStringLiteral("Cannot read %1: ").arg(QDir::toNativeSeparators(fileName))));
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

void tst_LanguageFile::folderInsteadOfFileIsReported()
{
    const QString fileName = m_folder.filePath(QStringLiteral("folder"));
    QVERIFY(QDir().mkpath(fileName));
    LanguageFile languages(fileName);
    QVERIFY(!languages.setDefaultLanguage(1));
    QVERIFY(languages.errorString().contains(QDir::toNativeSeparators(fileName)));
    QVERIFY(QFileInfo(fileName).isDir());
}

QTEST_GUILESS_MAIN(tst_LanguageFile)
#include "tst_LanguageFile.moc"
