// The plug-in refuses a compiled translation only if Qt would crash or hang when looking up one of
// the plug-in's texts.

#include "lang/QmFile.h"
#include "lang/SourceTexts.h"

#include "support/CraftedQmFiles.h"
#include "support/TestFile.h"
#ifdef Q_OS_UNIX
#    include "support/QmOracle_unix.h"
#endif

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

/// Returns a file that contains only dependencies.
QByteArray fileWithDependencies(const QList<QByteArray> &names)
{
    return completeQmFile().left(16) + dependenciesBlock(names) + QByteArray(8, '\0');
}

} // namespace

class tst_QmFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void craftedFiles_data();
    void craftedFiles();
    void costlyFilesAreRefused();
    void loadedTranslationIsReplaced();
    void dependencies_data();
    void dependencies();
    void dependencyOfADependencyIsFoundInTheSameFolder();
    void longChainOfDependenciesIsFollowed();
    void sourceTextsAreThoseThatLupdateFinds();

private:
    QString write(const QByteArray &name, const QByteArray &bytes) const;

    const QTemporaryDir m_folder;
};

QString tst_QmFile::write(const QByteArray &name, const QByteArray &bytes) const
{
    QFile file(m_folder.filePath(QString::fromLatin1(name)));
    // Qt may have mapped the old file into memory.
    if ((file.exists() && !file.remove()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void tst_QmFile::craftedFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("usable");
    QTest::addColumn<QString>("change");

    for (const CraftedQmFile &file : craftedQmFiles())
        QTest::newRow(file.name) << file.bytes << file.usable << QString::fromLatin1(file.change);
}

void tst_QmFile::craftedFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, usable);
    QFETCH(QString, change);

    QTranslator translator;
    const QString fileName = write("Zendel.qm", bytes);
    QVERIFY(translator.load(fileName)); // Qt loads all of them.
    QCOMPARE(loadQmFile(translator, fileName), usable);
    QVERIFY(usable || translator.isEmpty());
    QCOMPARE(translator.translate("PageSetLang", "Change"), change);
}

void tst_QmFile::costlyFilesAreRefused()
{
    const QVector<CraftedQmFile> files = costlyQmFiles();
    for (const CraftedQmFile &file : files) {
        QTranslator translator;
        QVERIFY2(!loadQmFile(translator, write("Zendel.qm", file.bytes)), file.name);
    }
    QTranslator translator;
    QVERIFY(loadQmFile(translator, write("Zendel.qm", largeQmFile())));
    QCOMPARE(translator.translate("PageSetLang", "Change"), QStringLiteral("CHANGE"));
}

void tst_QmFile::loadedTranslationIsReplaced()
{
    QTranslator translator;
    QVERIFY(loadQmFile(translator, write("one.qm", completeQmFile())));
    QCOMPARE(translator.filePath(), m_folder.filePath(QStringLiteral("one.qm")));
    QVERIFY(!loadQmFile(translator, write("two.qm", endlessQmFile())));
    QVERIFY(translator.isEmpty());
    QCOMPARE(translator.filePath(), QString());
    QVERIFY(!loadQmFile(translator, m_folder.filePath(QStringLiteral("none"))));
    QVERIFY(translator.isEmpty());
}

void tst_QmFile::dependencies_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("loadedByQt");
    QTest::addColumn<bool>("usable");
    QTest::addColumn<QString>("change");

    const QByteArray noContexts = QByteArray::fromHex("2f0000000400010000");
    const auto row = [&](const char *name, const QByteArray &bytes, bool loadedByQt, bool usable,
                         const char *change) {
        QTest::newRow(name) << bytes << loadedByQt << usable << QString::fromLatin1(change);
    };
    row("found in the dependency", fileWithDependencies({"complete.qm"}), true, true, "CHANGE");
    row("named without suffix", fileWithDependencies({"complete"}), true, true, "CHANGE");
    row("named with a longer name", fileWithDependencies({"complete_de.x"}), true, true, "CHANGE");
    row("named with an absolute path",
        fileWithDependencies({m_folder.filePath(QStringLiteral("complete.qm")).toUtf8()}), true,
        true, "CHANGE");
    row("named twice", fileWithDependencies({"empty.qm", "empty.qm", "complete.qm"}), true, true,
        "CHANGE");
    row("endless dependency", fileWithDependencies({"endless.qm"}), true, false, "");
    row("endless dependency after one that has all texts",
        fileWithDependencies({"complete.qm", "endless.qm"}), true, true, "CHANGE");
    row("endless dependency of a complete file", completeQmFile(dependenciesBlock({"endless.qm"})),
        true, true, "CHANGE");
    row("endless dependency of a file that excludes the contexts",
        completeQmFile(dependenciesBlock({"endless.qm"}) + noContexts), true, true, "");
    row("missing dependency", completeQmFile(dependenciesBlock({"none.qm"})), false, false, "");
}

void tst_QmFile::dependencies()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loadedByQt);
    QFETCH(bool, usable);
    QFETCH(QString, change);

    write("complete.qm", completeQmFile());
    write("empty.qm", fileWithDependencies({}));
    write("endless.qm", endlessQmFile());
    const QString fileName = write("Zendel.qm", bytes);
    QTranslator translator;
    QCOMPARE(translator.load(fileName), loadedByQt);
    QCOMPARE(loadQmFile(translator, fileName), usable);
    QCOMPARE(translator.translate("PageSetLang", "Change"), change);
#ifdef Q_OS_UNIX
    const QmOracle::Verdict expected = usable ? QmOracle::Answered
        : loadedByQt                          ? QmOracle::Died
                                              : QmOracle::NotLoaded;
    QVERIFY(QmOracle::ask({bytes}, m_folder.path()).constFirst() == expected);
#endif
}

void tst_QmFile::dependencyOfADependencyIsFoundInTheSameFolder()
{
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("below")));
    write("last.qm", completeQmFile());
    write("below/middle.qm", fileWithDependencies({"last.qm"}));
    const QString fileName = write("Zendel.qm", fileWithDependencies({"below/middle.qm"}));
    QTranslator translator;
    QVERIFY(loadQmFile(translator, fileName));
    QCOMPARE(translator.translate("PageSetLang", "Change"), QStringLiteral("CHANGE"));

    write("last.qm", endlessQmFile());
    QVERIFY(!loadQmFile(translator, fileName));
}

void tst_QmFile::longChainOfDependenciesIsFollowed()
{
    const int length = 400;
    for (int i = 0; i < length; ++i) {
        write("chain" + QByteArray::number(i) + ".qm",
              fileWithDependencies({"chain" + QByteArray::number(i + 1)}));
    }
    write("chain" + QByteArray::number(length) + ".qm", completeQmFile());
    QTranslator translator;
    QVERIFY(loadQmFile(translator, m_folder.filePath(QStringLiteral("chain0.qm"))));
    QCOMPARE(translator.translate("PageSetLang", "Change"), QStringLiteral("CHANGE"));
}

void tst_QmFile::sourceTextsAreThoseThatLupdateFinds()
{
    QFile file(testFile(QStringLiteral(TEXTS_FILE)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    QStringList found;
    QString context;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("name"))
            context = reader.readElementText();
        else if (reader.isStartElement() && reader.name() == QLatin1String("source"))
            found += context + QLatin1String(": ") + reader.readElementText();
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));

    QStringList listed;
    for (const SourceText &text : kSourceTexts)
        listed += QLatin1String(text.context) + QLatin1String(": ") + QLatin1String(text.text);
    found.sort();
    listed.sort();
    QCOMPARE(listed, found);
}

QTEST_GUILESS_MAIN(tst_QmFile)
#include "tst_QmFile.moc"
