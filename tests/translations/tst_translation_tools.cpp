// Tests that loadQmFile() accepts whatever the translators' tools write and Qt can read, and that
// of damaged files it refuses exactly those that Qt can't read or with which it crashes or hangs.
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

#include <algorithm>
#include <iterator>
#include <random>

namespace {

QByteArray read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Can't read %s", qPrintable(fileName));
    return file.readAll();
}

void write(const QString &fileName, const QByteArray &bytes)
{
    // Removed first, because Qt may still have the old file mapped into memory.
    QFile::remove(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(fileName));
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

/// Compiles a translation source.
void release(const QString &source, const QString &qm, const QStringList &options = {})
{
    run(QStringLiteral(LRELEASE),
        options + QStringList {QStringLiteral("-silent"), source, QStringLiteral("-qm"), qm});
}

void convert(const QString &from, const QString &to, const QStringList &options = {})
{
    run(QStringLiteral(LCONVERT),
        options + QStringList {QStringLiteral("-i"), from, QStringLiteral("-o"), to});
}

bool hasAllTexts(const QTranslator &translator)
{
    return std::none_of(std::begin(kSourceTexts), std::end(kSourceTexts), [&](const auto &text) {
        return translator.translate(text.context, text.text).isEmpty();
    });
}

QByteArray message(const QByteArray &source, const QByteArray &inside = QByteArray())
{
    return "<message><source>" + source + "</source>" + inside + "<translation>translated " + source
        + "</translation></message>\n";
}

/// Sets the message's id. Of two messages with the same id, lrelease uses only the first.
QByteArray withId(const QByteArray &message, const QByteArray &id)
{
    return QByteArray(message).replace("<message>", "<message id=\"" + id + "\">");
}

QByteArray context(const QByteArray &name, const QByteArray &messages)
{
    return "<context><name>" + name + "</name>\n" + messages + "</context>\n";
}

/// Returns contexts and messages of kinds that only other sources have.
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
    void outputOfToolsIsAccepted_data();
    void outputOfToolsIsAccepted();
    void outputOfMsgfmtIsAccepted();
    void compressedFilesWithRandomContextsAreAccepted();
    void translationsOfQtAreAccepted();
    void craftedFilesAreUsableWhereQtAnswers();
    void damagedFilesAreRefusedWhereQtFails();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    const QTemporaryDir m_folder;
    QStringList m_plain;              ///< Paths of our sources
    QStringList m_rich;               ///< With otherContexts()
    QStringList m_richWithoutPlurals; ///< The same without plural forms
};

void tst_translation_tools::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QDirIterator sources(QStringLiteral(SAMPLE_SOURCES), {QStringLiteral("*.ts")});
    while (sources.hasNext())
        m_plain += sources.next();
    m_plain.sort(); // Makes seeds portable.
    QVERIFY(m_plain.size() >= 22);

    for (const QString &source : qAsConst(m_plain)) {
        const QString name = QFileInfo(source).baseName();
        const auto add = [&](QStringList &list, const char *suffix, const QByteArray &contexts) {
            list += path(name + QLatin1String(suffix));
            write(list.constLast(), read(source).replace("</TS>", contexts + "</TS>"));
        };
        add(m_rich, "-rich.ts", otherContexts(true));
        add(m_richWithoutPlurals, "-po.ts", otherContexts(false));
        if (name == QLatin1String("de")) {
            add(m_rich, "-6MB.ts", manyMessages(100, 300, 50));
            add(m_rich, "-10000-contexts.ts", manyMessages(10000, 1, 0));
            // Too many for a table of contexts
            const QByteArray many = manyMessages(50000, 1, 0);
            add(m_rich, "-50000-contexts.ts", many);
            // Each context has one of our texts, so finding the right one takes many steps.
            add(m_rich, "-Error-everywhere.ts",
                QByteArray(many).replace("<source>0</source>", "<source>Error</source>"));
        }
    }
}

void tst_translation_tools::outputOfToolsIsAccepted_data()
{
    QTest::addColumn<QString>("command");

    for (const char *const command :
         {"lrelease", "lrelease -compress", "lrelease -idbased", "lrelease -removeidentical",
          "lrelease -nounfinished", "lrelease -markuntranslated #",
          "lrelease -compress -removeidentical", "lconvert -of qm", "lrelease+lconvert -of qm"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void tst_translation_tools::outputOfToolsIsAccepted()
{
    QFETCH(QString, command);

    QStringList options = command.split(QLatin1Char(' '));
    const QString tool = options.takeFirst();
    const bool hasOurTexts = !options.contains(QLatin1String("-idbased"));
    const QString qm = path(QStringLiteral("Zendel.qm"));
    const bool mayLackSome = options.contains(QLatin1String("-removeidentical"));
    const QStringList sources = m_plain + m_rich;
    for (QString source : sources) {
        if (tool == QLatin1String("lrelease")) {
            release(source, qm, options);
        } else {
            if (tool == QLatin1String("lrelease+lconvert")) {
                release(source, path(QStringLiteral("input.qm")));
                source = path(QStringLiteral("input.qm"));
            }
            convert(source, qm, options);
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
            // The translation of "Language:" differs from the source in all languages but English.
            const bool mayLack = mayLackSome
                && (qstrcmp(text.text, "Language:") != 0 || source.contains(QLatin1String("/en")));
            QVERIFY2(found == hasOurTexts || mayLack, qPrintable(source));
        }
        QFile::remove(qm);
    }
}

/// Uses the .po files that lconvert writes, with the contexts in msgfmt's form. With --qt, msgfmt
/// doesn't support plural forms.
void tst_translation_tools::outputOfMsgfmtIsAccepted()
{
    const QString po = path(QStringLiteral("Zendel.po"));
    const QString qm = path(QStringLiteral("Zendel.qm"));
    const QStringList sources = m_plain + m_richWithoutPlurals;
    for (const QString &source : sources) {
        convert(source, po);
        write(po, read(po).replace("|\"\nmsgid", "\"\nmsgid"));
        run(QStringLiteral(MSGFMT), {QStringLiteral("--qt"), QStringLiteral("-o"), qm, po});
        QTranslator translator;
        QVERIFY2(loadQmFile(translator, qm), qPrintable(source));
        QVERIFY2(hasAllTexts(translator), qPrintable(source));
    }
}

void tst_translation_tools::compressedFilesWithRandomContextsAreAccepted()
{
    const quint32 seed = Settings::seed();
    qInfo("seed %u", seed);
    std::mt19937 random(seed);
    const QByteArray source = read(m_plain.constFirst());
    QStringList files;
    QHash<QString, QByteArray> lastContexts;
    for (int i = 0; i < 1000; ++i) {
        const QString file = path(QStringLiteral("random%1.ts").arg(i));
        QByteArray contexts;
        for (quint32 count = 1 + random() % (i % 10 == 0 ? 400 : 20); count > 0; --count) {
            QByteArray name;
            for (quint32 length = 1 + random() % 40; length > 0; --length)
                name += static_cast<char>('a' + random() % 26);
            contexts += context(name, message("text"));
            lastContexts[file] = name;
        }
        files += file;
        write(file, QByteArray(source).replace("</TS>", contexts + "</TS>"));
    }
    run(QStringLiteral(LRELEASE),
        QStringList {QStringLiteral("-silent"), QStringLiteral("-compress")} + files);

    for (const QString &file : qAsConst(files)) {
        QTranslator translator;
        QVERIFY2(loadQmFile(translator,
                            QString(file).replace(QLatin1String(".ts"), QLatin1String(".qm"))),
                 qPrintable(file));
        QVERIFY2(hasAllTexts(translator), qPrintable(file));
        QCOMPARE(translator.translate(lastContexts.value(file).constData(), "text"),
                 QStringLiteral("translated text"));
    }
}

/// They are in Debian's package qttranslations5-l10n. Qt doesn't load one of them, qt_fa.qm,
/// because it depends on a file that doesn't exist.
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
    QList<QByteArray> originals; // Alternately plain and compressed
    const QString qm = path(QStringLiteral("Zendel.qm"));
    for (int i = 0; i < m_plain.size(); ++i) {
        const QString source = i % 4 == 0
            ? path(QFileInfo(m_plain.at(i)).baseName() + QStringLiteral("-rich.ts"))
            : m_plain.at(i);
        for (const QStringList &options :
             {QStringList(), QStringList(QStringLiteral("-compress"))}) {
            release(source, qm, options);
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
                QStringLiteral("seed %1, file %2, saved as failed.qm: %3, verdict %4")
                    .arg(seed)
                    .arg(i)
                    .arg(accepted ? QStringLiteral("accepted") : QStringLiteral("refused"))
                    .arg(verdict)));
        }
    }
    QVERIFY(died > 0 && notLoaded > 0 && died + notLoaded < files.size());
    qInfo("seed %u: of %u files, Qt rejected %d and died with %d", seed, count, notLoaded, died);
}

QTEST_GUILESS_MAIN(tst_translation_tools)
#include "tst_translation_tools.moc"
