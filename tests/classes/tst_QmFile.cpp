// The plug-in refuses a compiled translation only if Qt would crash or hang when loading it or when
// looking up one of the plug-in's texts.

#include "lang/QmFile.h"
#include "lang/SourceTexts.h"

#include "support/CraftedQmFiles.h"
#include "support/TestFile.h"
#ifdef Q_OS_UNIX
#    include "support/Interpose.h"
#    include "support/QmOracle_unix.h"

#    include <sys/resource.h>
#endif

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QVersionNumber>
#include <QXmlStreamReader>

#include <new>

#ifdef Q_OS_UNIX
static bool canMap = true;

INTERPOSE(uchar *, map,
          (QFileDevice * self, qint64 offset, qint64 size, QFileDevice::MemoryMapFlags flags))
{
    return canMap ? ORIGINAL(map)(self, offset, size, flags) : nullptr;
}
#endif

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
    void initTestCase();
    void craftedFiles_data();
    void craftedFiles();
    void costlyFilesAreRefused();
    void loadedTranslationIsReplaced();
    void delimitersInAFolderCountToo();
    void dependencies_data();
    void dependencies();
    void dependencyOfADependencyIsFoundInTheSameFolder();
    void dependenciesAreThoseThatQtLoads_data();
    void dependenciesAreThoseThatQtLoads();
    void endlessDependenciesAreRefused_data();
    void endlessDependenciesAreRefused();
    void manyDependenciesAreFollowed_data();
    void manyDependenciesAreFollowed();
#ifdef Q_OS_UNIX
    void hugeBlocks_data();
    void hugeBlocks();
    void filesThatCannotBeMapped();
#endif
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
        qFatal("Can't write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void tst_QmFile::initTestCase()
{
    // Older versions of Qt search for dependencies here.
    QVERIFY(QDir::setCurrent(m_folder.path()));
#ifdef Q_OS_UNIX
    // The host may have almost as many files open as it can.
    rlimit limit {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = 50;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
#endif
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
    // Qt loads all of them, but before 5.12 none without texts.
    const bool loadedByQt = translator.load(fileName);
    QVERIFY(loadedByQt
            || QVersionNumber::fromString(QString::fromLatin1(qVersion())) < QVersionNumber(5, 12));
    QCOMPARE(loadQmFile(translator, fileName), loadedByQt && usable);
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
    QCOMPARE(translator.translate("PageSetLang", "Change"), QStringLiteral("CHANGE"));
    QVERIFY(!loadQmFile(translator, write("two.qm", endlessQmFile())));
    QVERIFY(translator.isEmpty());
    QVERIFY(!loadQmFile(translator, m_folder.filePath(QStringLiteral("none"))));
    QVERIFY(translator.isEmpty());
}

// Qt is given the whole path as the file name, without a directory.
void tst_QmFile::delimitersInAFolderCountToo()
{
    write("cut.qm", completeQmFile());
    for (const char *const name : {"cut.d/Zendel.qm", "cut_d/Zendel.qm"}) {
        QTranslator translator;
        QVERIFY2(loadQmFile(translator, m_folder.filePath(QString::fromLatin1(name))), name);
        QCOMPARE(translator.translate("PageSetLang", "Change"), QStringLiteral("CHANGE"));
    }
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
    row("the last of those named", fileWithDependencies({"other.qm", "other.qm", "complete.qm"}),
        true, true, "CHANGE");
    row("endless dependency", fileWithDependencies({"endless.qm"}), true, false, "");
    row("endless dependency without suffix", fileWithDependencies({"endless"}), true, false, "");
    row("endless dependency with a longer name, _", fileWithDependencies({"endless_x"}), true,
        false, "");
    row("endless dependency with a longer name, .", fileWithDependencies({"endless.x"}), true,
        false, "");
    row("endless dependency of another suffix", fileWithDependencies({"other.suffix"}), true, false,
        "");
    row("endless dependency with an absolute path",
        fileWithDependencies({m_folder.filePath(QStringLiteral("endless.qm")).toUtf8()}), true,
        false, "");
    row("endless dependency after one that has all texts",
        fileWithDependencies({"complete.qm", "endless.qm"}), true, true, "CHANGE");
    row("endless dependency of a complete file", completeQmFile(dependenciesBlock({"endless.qm"})),
        true, true, "CHANGE");
    row("endless dependency of a file that excludes the contexts",
        completeQmFile(dependenciesBlock({"endless.qm"}) + noContexts), true, true, "");
    row("dependency in a resource", fileWithDependencies({":/translations/first.qm"}), true, true,
        "1 Change");
    row("missing dependency", completeQmFile(dependenciesBlock({"none.qm"})), false, false, "");
    row("missing dependency before the file itself",
        completeQmFile(dependenciesBlock({"none.qm", "Zendel.qm"})), false, false, "");
    row("empty dependency", completeQmFile(dependenciesBlock({"zero.qm"})), false, false, "");
    row("dependencies that run past the end of the file",
        completeQmFile(QByteArray::fromHex("9640000000")), false, false, "");
    row("nameless dependency", completeQmFile(dependenciesBlock({""})), false, false, "");
}

void tst_QmFile::dependencies()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loadedByQt);
    QFETCH(bool, usable);
    QFETCH(QString, change);

    write("complete.qm", completeQmFile());
    write("other.qm", completeQmFile().replace("Change", "Chance"));
    write("zero.qm", QByteArray());
    write("endless.qm", endlessQmFile());
    write("other.suffix", endlessQmFile());
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

void tst_QmFile::dependenciesAreThoseThatQtLoads_data()
{
    QTest::addColumn<QString>("current");

    QTest::newRow("the file's folder is the current one") << m_folder.path();
    QTest::newRow("another folder is") << m_folder.filePath(QStringLiteral("below"));
}

void tst_QmFile::dependenciesAreThoseThatQtLoads()
{
    QFETCH(QString, current);

    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("below")));
    const QString fileName = write("Zendel.qm", fileWithDependencies({"part"}));
    const QByteArray part = completeQmFile();
    const QByteArray other = QByteArray(part).replace(QByteArray("\0C\0H\0A\0N\0G\0E", 12),
                                                      QByteArray("\0O\0T\0H\0E\0R\0S", 12));
    QVERIFY(QDir::setCurrent(current));
    write("part.qm", part);
    write("below/part.qm", other);
    QTranslator qt;
    QVERIFY(qt.load(fileName));
    const QString change = qt.translate("PageSetLang", "Change");
    const bool besideFile = change == QLatin1String("CHANGE");
    QVERIFY(besideFile || change == QLatin1String("OTHERS"));
    QVERIFY(besideFile || current != m_folder.path());

    write(besideFile ? "below/part.qm" : "part.qm", endlessQmFile());
    QTranslator translator;
    const bool accepted = loadQmFile(translator, fileName);
    write(besideFile ? "part.qm" : "below/part.qm", endlessQmFile());
    const bool acceptedEndless = loadQmFile(qt, fileName);
    QVERIFY(QDir::setCurrent(m_folder.path()));
    QVERIFY(accepted);
    QCOMPARE(translator.translate("PageSetLang", "Change"), change);
    QVERIFY(!acceptedEndless);
}

void tst_QmFile::endlessDependenciesAreRefused_data()
{
    QTest::addColumn<QList<QByteArray>>("names");

    const auto row = [](const char *name, const QList<QByteArray> &names) {
        QTest::newRow(name) << names;
    };
    row("the file itself", {"Zendel.qm"});
    row("the file itself, for want of another one", {"Zendel_base"});
    row("the file itself, spelled differently", {"./Zendel"});
    row("the file itself before a missing one", {"Zendel.qm", "none.qm"});
    row("a file that names this one", {"back.qm"});
    row("a file that names itself", {"itself.qm"});
    row("each of 25 files names the next one twice", {"twice0.qm"});
#ifdef Q_OS_UNIX
    row("a link to the file", {"link.qm"});
#endif
}

void tst_QmFile::endlessDependenciesAreRefused()
{
    QFETCH(QList<QByteArray>, names);

    write("back.qm", fileWithDependencies({"Zendel.qm"}));
    write("itself.qm", fileWithDependencies({"itself.qm"}));
    for (int i = 0; i < 25; ++i) {
        const QByteArray next = "twice" + QByteArray::number(i + 1);
        write("twice" + QByteArray::number(i) + ".qm", fileWithDependencies({next, next}));
    }
    write("twice25.qm", completeQmFile());
    const QByteArray bytes = completeQmFile(dependenciesBlock(names));
    const QString fileName = write("Zendel.qm", bytes);
    QTranslator translator;
    QVERIFY(translator.load(write("one.qm", completeQmFile())));
#ifdef Q_OS_UNIX
    QFile::link(fileName, m_folder.filePath(QStringLiteral("link.qm")));
    QVERIFY(QmOracle::ask({bytes}, m_folder.path()).constFirst() == QmOracle::Died);
#endif
    QVERIFY(!loadQmFile(translator, fileName));
    QVERIFY(translator.isEmpty());
}

void tst_QmFile::manyDependenciesAreFollowed_data()
{
    QTest::addColumn<QList<QByteArray>>("names");
    QTest::addColumn<bool>("accepted");

    const auto row = [](const char *name, const QList<QByteArray> &names, bool accepted) {
        QTest::newRow(name) << names << accepted;
    };
    QList<QByteArray> many;
    for (int i = 0; i < 499; ++i)
        many += "last.qm";
    row("499 dependencies", many, true);
    row("500 dependencies", many << "last.qm", false);
    row("a chain of 499", {"chain498.qm"}, true);
    row("a chain of 500", {"chain499.qm"}, false);
    row("2 + 4 + 8 + 16 + 32 + 64 + 128", {"pair5.qm", "pair5.qm"}, true);
}

void tst_QmFile::manyDependenciesAreFollowed()
{
    QFETCH(QList<QByteArray>, names);
    QFETCH(bool, accepted);

    write("last.qm", completeQmFile());
    QByteArray chained = "last.qm";
    QByteArray paired = "last.qm";
    for (int i = 0; i < 500; ++i) {
        const QByteArray number = QByteArray::number(i) + ".qm";
        write("pair" + number, fileWithDependencies({paired, paired}));
        write("chain" + number, i == 0 ? completeQmFile() : fileWithDependencies({chained}));
        paired = "pair" + number;
        chained = "chain" + number;
    }
    const QString fileName = write("Zendel.qm", fileWithDependencies(names));
    QTranslator translator;
    QVERIFY(translator.load(fileName)); // Qt loads them all.
    QCOMPARE(loadQmFile(translator, fileName), accepted);
    QCOMPARE(translator.translate("PageSetLang", "Change"),
             accepted ? QStringLiteral("CHANGE") : QString());
}

#ifdef Q_OS_UNIX

void tst_QmFile::hugeBlocks_data()
{
    QTest::addColumn<int>("tag");

    QTest::newRow("unknown") << 0x10;
    // Qt 5.15 copies it to a string, which can't be that long.
    QTest::newRow("language") << 0xa7;
}

void tst_QmFile::hugeBlocks()
{
    QFETCH(int, tag);

    const int length = 1500000000;
    const QByteArray blocks = completeQmFile().mid(16);
    QFile file(write("Zendel.qm",
                     completeQmFile().left(16) + char(tag)
                         + QByteArray::fromHex("59682f00"))); // The length
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(file.size() + length)); // Needs no space on the disk.
    QVERIFY(file.seek(file.size()));
    QCOMPARE(file.write(blocks), qint64(blocks.size()));
    file.close();

    QTranslator translator;
    bool loadedByQt = false;
    try {
        loadedByQt = translator.load(file.fileName());
    } catch (const std::bad_alloc &) {
    }
    rusage before {};
    getrusage(RUSAGE_SELF, &before);
    QCOMPARE(loadQmFile(translator, file.fileName()), loadedByQt);
    rusage after {};
    getrusage(RUSAGE_SELF, &after);
    QVERIFY(after.ru_maxrss - before.ru_maxrss < 10000); // KB
    QCOMPARE(translator.translate("PageSetLang", "Change"),
             loadedByQt ? QStringLiteral("CHANGE") : QString());
    QCOMPARE(translator.isEmpty(), !loadedByQt);
    QVERIFY(file.remove());
}

void tst_QmFile::filesThatCannotBeMapped()
{
    canMap = false;
    QTranslator translator;
    const bool accepted = loadQmFile(translator, write("one.qm", completeQmFile()));
    const bool acceptedEndless = loadQmFile(translator, write("two.qm", endlessQmFile()));
    canMap = true;
    QVERIFY(accepted);
    QVERIFY(!acceptedEndless);
}

#endif

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
