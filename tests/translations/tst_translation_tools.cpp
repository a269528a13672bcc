// Everything that the tools of translators write is accepted: a compiled translation that Qt can
// read is never refused. And of files that were damaged afterwards, those are refused with which Qt
// crashes or hangs, and no others.
//
// ZENDEL_STEPS is the number of damaged files, ZENDEL_SEED the seed.

#include "lang/QmFile.h"
#include "lang/SourceTexts.h"

#include "support/CraftedQmFiles.h"
#include "support/Damage.h"
#include "support/QmOracle_unix.h"
#include "support/Settings.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <random>

namespace {

QByteArray read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(fileName));
    return file.readAll();
}

void write(const QString &fileName, const QByteArray &bytes)
{
    // Qt may still have the old one mapped into memory.
    QFile::remove(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(fileName));
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    QVERIFY2(process.waitForFinished(120000), qPrintable(process.errorString()));
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             process.readAll().constData());
}

QByteArray message(const QByteArray &source, const QByteArray &inside = QByteArray())
{
    return "<message><source>" + source + "</source>" + inside + "<translation>translated " + source
        + "</translation></message>\n";
}

/// Of two messages with the same id, lrelease takes the first alone.
QByteArray withId(const QByteArray &message, const QByteArray &id)
{
    return QByteArray(message).replace("<message>", "<message id=\"" + id + "\">");
}

QByteArray context(const QByteArray &name, const QByteArray &messages)
{
    return "<context><name>" + name + "</name>\n" + messages + "</context>\n";
}

/// What our sources do not have, but others do.
QByteArray otherContexts(bool plurals)
{
    QByteArray result = context("", withId(message("in no context"), "none"))
        + context(QByteArray(255, 'c'), message("in a context of 255 bytes"))
        + context(QByteArray(300, 'd'), withId(message("in a context of 300 bytes"), "long"))
        + context("DlgSettings", message("Language", "<comment>of the program</comment>"))
        + context("Other",
                  message("Change") + message("Open", "<comment>file</comment>")
                      + "<message><source>Unfinished</source>"
                        "<translation type=\"unfinished\"></translation></message>"
                        "<message><source>Same</source><translation>Same</translation></message>");
    if (plurals) {
        result += context("PageSetLang",
                          "<message numerus=\"yes\"><source>%n language(s)</source><translation>"
                          "<numerusform>%n</numerusform></translation></message>");
    }
    return result;
}

QByteArray manyMessages(int contexts, int messagesEach, int length)
{
    QByteArray result;
    for (int i = 0; i < contexts; ++i) {
        QByteArray messages;
        for (int j = 0; j < messagesEach; ++j)
            messages += message(QByteArray::number(j) + QByteArray(length, 'x'));
        result += context("Context" + QByteArray::number(i), messages);
    }
    return result;
}

} // namespace

class tst_translation_tools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whatToolsWriteIsAccepted_data();
    void whatToolsWriteIsAccepted();
    void whatMsgfmtWritesIsAccepted();
    void compressedFilesWithAnyOtherContextsAreAccepted();
    void translationsOfQtAreAccepted();
    void craftedFilesAreUsableWhereQtAnswers();
    void damagedFilesAreRefusedWhereQtFails();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder;
    QStringList m_plain;        ///< Our sources, by path.
    QStringList m_rich;         ///< The same with further contexts.
    QStringList m_richNoNumber; ///< Without plural forms.
};

void tst_translation_tools::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QDirIterator sources(QStringLiteral(SAMPLE_SOURCES), {QStringLiteral("*.ts")});
    while (sources.hasNext())
        m_plain += sources.next();
    m_plain.sort(); // So that a seed means the same on every machine.
    QVERIFY(m_plain.size() >= 22);

    for (const QString &source : qAsConst(m_plain)) {
        const QString name = QFileInfo(source).baseName();
        const auto with = [&source](const QByteArray &contexts) {
            return read(source).replace("</TS>", contexts + "</TS>");
        };
        m_rich += path(name + QStringLiteral("-rich.ts"));
        write(m_rich.constLast(), with(otherContexts(true)));
        m_richNoNumber += path(name + QStringLiteral("-po.ts"));
        write(m_richNoNumber.constLast(), with(otherContexts(false)));
        if (name == QLatin1String("de")) {
            m_rich += path(QStringLiteral("de-6MB.ts"));
            write(m_rich.constLast(), with(manyMessages(100, 300, 50)));
            m_rich += path(QStringLiteral("de-50000-contexts.ts")); // Too many for a table of them
            write(m_rich.constLast(), with(manyMessages(50000, 1, 0)));
            m_rich += path(QStringLiteral("de-10000-contexts.ts"));
            write(m_rich.constLast(), with(manyMessages(10000, 1, 0)));
            // Each has a text of ours too, so that it takes many steps to find the right one.
            m_rich += path(QStringLiteral("de-Error-everywhere.ts"));
            write(m_rich.constLast(),
                  with(manyMessages(50000, 1, 0)
                           .replace("<source>0</source>", "<source>Error</source>")));
        }
    }
}

void tst_translation_tools::whatToolsWriteIsAccepted_data()
{
    QTest::addColumn<QString>("program"); // Other than lrelease, one that takes -i and -o
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("hasOurTexts");

    const QString lrelease = QStringLiteral(LRELEASE);
    const QString lconvert = QStringLiteral(LCONVERT);
    const auto row = [](const char *name, const QString &program, const QStringList &options,
                        bool hasOurTexts = true) {
        QTest::newRow(name) << program << options << hasOurTexts;
    };
    row("lrelease", lrelease, {});
    row("lrelease -compress", lrelease, {QStringLiteral("-compress")});
    row("lrelease -idbased", lrelease, {QStringLiteral("-idbased")}, false);
    row("lrelease -removeidentical", lrelease, {QStringLiteral("-removeidentical")});
    row("lrelease -nounfinished", lrelease, {QStringLiteral("-nounfinished")});
    row("lrelease -markuntranslated", lrelease,
        {QStringLiteral("-markuntranslated"), QStringLiteral("#")});
    row("lrelease -compress -removeidentical", lrelease,
        {QStringLiteral("-compress"), QStringLiteral("-removeidentical")});
    row("lconvert from .ts", lconvert, {QStringLiteral("-of"), QStringLiteral("qm")});
    row("lconvert from .qm", lconvert, {QStringLiteral("-of"), QStringLiteral("qm")});
}

void tst_translation_tools::whatToolsWriteIsAccepted()
{
    QFETCH(QString, program);
    QFETCH(QStringList, options);
    QFETCH(bool, hasOurTexts);

    const QString qm = path(QStringLiteral("Zendel.qm"));
    const bool mayLackSome = options.contains(QLatin1String("-removeidentical"));
    const QStringList sources = m_plain + m_rich;
    for (QString source : sources) {
        if (program == QLatin1String(LRELEASE)) {
            run(program,
                options
                    + QStringList {QStringLiteral("-silent"), source, QStringLiteral("-qm"), qm});
        } else {
            if (qstrcmp(QTest::currentDataTag(), "lconvert from .qm") == 0) {
                run(QStringLiteral(LRELEASE),
                    {QStringLiteral("-silent"), source, QStringLiteral("-qm"),
                     path(QStringLiteral("input.qm"))});
                source = path(QStringLiteral("input.qm"));
            }
            run(program,
                options + QStringList {QStringLiteral("-i"), source, QStringLiteral("-o"), qm});
        }
        QTranslator translator;
        QVERIFY2(translator.load(qm), qPrintable(source));
        const qint64 size = QFileInfo(qm).size();
        QVERIFY2(!source.contains(QLatin1String("6MB")) || !hasOurTexts || size > 6000000,
                 qPrintable(QString::number(size)));
        QVERIFY2(!source.contains(QLatin1String("50000")) || !hasOurTexts || size > 2000000,
                 qPrintable(QString::number(size)));
        QVERIFY2(loadQmFile(translator, qm), qPrintable(source));
        for (const SourceText &text : kSourceTexts) {
            const bool found = !translator.translate(text.context, text.text).isEmpty();
            // "Language:" is translated otherwise in all but English.
            const bool mayLack = mayLackSome
                && (qstrcmp(text.text, "Language:") != 0 || source.contains(QLatin1String("/en")));
            QVERIFY2(found == hasOurTexts || mayLack, qPrintable(source));
        }
        QFile::remove(qm);
    }
}

/// From the .po files that lconvert writes, with the contexts as msgfmt understands them; it knows
/// no plural forms.
void tst_translation_tools::whatMsgfmtWritesIsAccepted()
{
    const QString po = path(QStringLiteral("Zendel.po"));
    const QString qm = path(QStringLiteral("Zendel.qm"));
    const QStringList sources = m_plain + m_richNoNumber;
    for (const QString &source : sources) {
        run(QStringLiteral(LCONVERT), {QStringLiteral("-i"), source, QStringLiteral("-o"), po});
        write(po, read(po).replace("|\"\nmsgid", "\"\nmsgid"));
        run(QStringLiteral(MSGFMT), {QStringLiteral("--qt"), QStringLiteral("-o"), qm, po});
        QTranslator translator;
        QVERIFY2(loadQmFile(translator, qm), qPrintable(source));
        for (const SourceText &text : kSourceTexts)
            QVERIFY2(!translator.translate(text.context, text.text).isEmpty(), qPrintable(source));
    }
}

void tst_translation_tools::compressedFilesWithAnyOtherContextsAreAccepted()
{
    const quint32 seed = Settings::seed();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const QByteArray source = read(m_plain.constFirst());
    QStringList files;
    QHash<QString, QByteArray> lastContexts;
    for (int i = 0; i < 1000; ++i) {
        QByteArray contexts;
        for (quint32 count = 1 + random() % (i % 10 == 0 ? 400 : 20); count > 0; --count) {
            QByteArray name;
            for (quint32 length = 1 + random() % 40; length > 0; --length)
                name += static_cast<char>('a' + random() % 26);
            contexts += context(name, message("text"));
            lastContexts[path(QStringLiteral("random%1.ts").arg(i))] = name;
        }
        files += path(QStringLiteral("random%1.ts").arg(i));
        write(files.constLast(), QByteArray(source).replace("</TS>", contexts + "</TS>"));
    }
    run(QStringLiteral(LRELEASE),
        QStringList {QStringLiteral("-silent"), QStringLiteral("-compress")} + files);

    for (const QString &file : qAsConst(files)) {
        QTranslator translator;
        QVERIFY2(loadQmFile(translator,
                            QString(file).replace(QLatin1String(".ts"), QLatin1String(".qm"))),
                 qPrintable(file));
        for (const SourceText &text : kSourceTexts)
            QVERIFY2(!translator.translate(text.context, text.text).isEmpty(), qPrintable(file));
        QCOMPARE(translator.translate(lastContexts.value(file).constData(), "text"),
                 QStringLiteral("translated text"));
    }
}

/// Debian's package qttranslations5-l10n. One of them, qt_fa.qm, names a file that does not exist,
/// so Qt does not load it.
void tst_translation_tools::translationsOfQtAreAccepted()
{
    QDirIterator files(QLibraryInfo::location(QLibraryInfo::TranslationsPath),
                       {QStringLiteral("*.qm")});
    int count = 0;
    while (files.hasNext()) {
        const QString file = files.next();
        QTranslator translator;
        const bool loaded = translator.load(file);
        QVERIFY2(loadQmFile(translator, file) == loaded, qPrintable(file));
        count += loaded ? 1 : 0;
    }
    qInfo("%d files", count);
    QVERIFY(count > 300);
}

void tst_translation_tools::craftedFilesAreUsableWhereQtAnswers()
{
    const QVector<CraftedQmFile> files = craftedQmFiles() + costlyQmFiles();
    QList<QByteArray> bytes;
    for (const CraftedQmFile &file : files)
        bytes += file.bytes;
    const QVector<QmOracle::Verdict> verdicts = QmOracle::ask(bytes);
    for (int i = 0; i < files.size(); ++i) {
        QVERIFY2(verdicts.at(i) == (files.at(i).usable ? QmOracle::Answered : QmOracle::Died),
                 files.at(i).name);
    }
}

void tst_translation_tools::damagedFilesAreRefusedWhereQtFails()
{
    const quint32 seed = Settings::seed();
    const quint32 count = Settings::stepCount(20000);
    QList<QByteArray> originals; // Plain and compressed in turns
    const QString qm = path(QStringLiteral("Zendel.qm"));
    for (int i = 0; i < m_plain.size(); ++i) {
        const QString source = i % 4 == 0
            ? path(QFileInfo(m_plain.at(i)).baseName() + QStringLiteral("-rich.ts"))
            : m_plain.at(i);
        for (const QStringList &options :
             {QStringList(), QStringList(QStringLiteral("-compress"))}) {
            run(QStringLiteral(LRELEASE),
                options
                    + QStringList {QStringLiteral("-silent"), source, QStringLiteral("-qm"), qm});
            originals += read(qm);
        }
    }

    QList<QByteArray> files;
    std::mt19937 random(seed);
    for (quint32 i = 0; i < count; ++i)
        files += damaged(originals.at(int(i) % originals.size()), random);
    const QVector<QmOracle::Verdict> verdicts = QmOracle::ask(files);

    int died = 0;
    int notLoaded = 0;
    for (int i = 0; i < files.size(); ++i) {
        write(qm, files.at(i));
        QTranslator translator;
        const bool accepted = loadQmFile(translator, qm);
        const QmOracle::Verdict verdict = verdicts.at(i);
        died += verdict == QmOracle::Died ? 1 : 0;
        notLoaded += verdict == QmOracle::NotLoaded ? 1 : 0;
        if (accepted != (verdict == QmOracle::Answered)) {
            write(QCoreApplication::applicationDirPath() + QStringLiteral("/failed.qm"),
                  files.at(i));
            QFAIL(qPrintable(
                QStringLiteral("seed %1, file %2, kept as failed.qm: %3, verdict %4")
                    .arg(seed)
                    .arg(i)
                    .arg(accepted ? QStringLiteral("accepted") : QStringLiteral("refused"))
                    .arg(verdict)));
        }
    }
    QVERIFY(died > 0 && notLoaded > 0 && died + notLoaded < files.size());
    qInfo("seed %u: of %u files, Qt did not load %d and died of %d", seed, count, notLoaded, died);
}

QTEST_GUILESS_MAIN(tst_translation_tools)
#include "tst_translation_tools.moc"
