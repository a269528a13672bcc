// Files that are not what a deployment should hold: links, pipes, files that may not be read, a
// catalogue without measure. What the operator sees of each, and that the host goes on.

#include "support/Deployment.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTest>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>

using Spoil = std::function<void()>;
Q_DECLARE_METATYPE(Spoil)

namespace {

using TranslationBoxes::loadFailed;
using TranslationBoxes::notFound;
using TranslationBoxes::openFailed;

const QString iniFile = QStringLiteral("Lang/Lang.ini");
const QString qmFile = QStringLiteral("Lang/first/Zendel.qm");
const QString chsFile = QStringLiteral("Lang/chs/Zendel.qm");

QString path(const QString &below)
{
    return Deployment::path(below);
}

/// Not outside the test's own folder, where a file that is opened for writing would be left behind.
QString nowhere()
{
    return path(QStringLiteral("Nowhere"));
}

void remove(const QString &below)
{
    QVERIFY(QFile::remove(path(below)));
}

/// From now on root may not read what a file's mode denies. Nobody else notices.
void dropPrivileges()
{
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2] {};
    QCOMPARE(syscall(SYS_capset, &header, none), 0L);
}

/// Removes whatever a test has made of the deployment.
void clear()
{
    QFile::remove(path(QStringLiteral("Lang"))); // Where it is a link
    chmod(qPrintable(path(QStringLiteral("Lang"))), 0755);
    chmod(qPrintable(path(QStringLiteral("Lang/first"))), 0755);
    Deployment::clear();
    QDir(path(QStringLiteral("Elsewhere"))).removeRecursively();
    QFile::remove(nowhere());
}

/// Names, sizes, times and contents of all that the deployment holds.
QStringList everyFile()
{
    QStringList result;
    QDirIterator files(path(QStringLiteral("Lang")),
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        const QFileInfo info = files.fileInfo();
        QFile file(info.filePath());
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        result += info.filePath() + info.lastModified().toString(Qt::ISODateWithMs)
            + QString::fromLatin1(bytes.toHex());
    }
    result.sort();
    return result;
}

/// The most memory that the program has had so far, in MB.
long peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int start = text.indexOf("VmHWM:") + 6;
    return text.mid(start, text.indexOf(" kB", start) - start).trimmed().toLong() / 1024;
}

} // namespace

class tst_odd_files : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void folderMayBeASymbolicLink();
    void filesMayBeSymbolicLinks();
    void whatTheOperatorSees_data();
    void whatTheOperatorSees();
    void pipeAsCatalogueIsRefused();
    void pipeAsTranslationIsRefused();
    void translationThatIsReplacedStaysLoaded();
    void catalogueWithoutMeasureIsReadToItsEnd();
    void filesNeedNotBeWritable();
    void nothingIsEverWritten();

private:
    QStringList dialogTexts();

    Plugin m_plugin {QStringLiteral(PLUGIN_FILE)};
    IZendelMgr *m_mgr = nullptr;
    RecordingMachine m_machine;
    Operator m_operator;
};

void tst_odd_files::initTestCase()
{
    Warnings::collect();
    dropPrivileges();
}

void tst_odd_files::init()
{
    clear(); // Of a run that was aborted
    Deployment::installTwoLanguages();
    m_operator.onDialog = nullptr;
    m_plugin.load();
    m_mgr = m_plugin.newInterface();
}

void tst_odd_files::cleanup()
{
    m_plugin.releaseInterface(m_mgr);
    m_plugin.unload();
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    Warnings::take();
    clear();
}

/// The title and the languages of the dialog.
QStringList tst_odd_files::dialogTexts()
{
    QStringList result;
    m_operator.onDialog = [&result](const QDialog &dialog) {
        result += dialog.windowTitle();
        const auto &box = *dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
        for (int i = 0; i < box.count(); ++i)
            result += box.itemText(i);
    };
    m_mgr->ShowSettingsDlg(nullptr);
    m_operator.takeDialogs();
    return result;
}

void tst_odd_files::folderMayBeASymbolicLink()
{
    const QString elsewhere = path(QStringLiteral("Elsewhere"));
    QVERIFY(QDir().rename(path(QStringLiteral("Lang")), elsewhere));
    QVERIFY(QFile::link(elsewhere, path(QStringLiteral("Lang"))));
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(
        dialogTexts(),
        QStringList({QStringLiteral("1 Settings"), QStringLiteral("One"), QStringLiteral("Two")}));
}

void tst_odd_files::filesMayBeSymbolicLinks()
{
    for (const QString &file : {iniFile, qmFile}) {
        QVERIFY(QFile::rename(path(file), path(file) + QStringLiteral(".real")));
        QVERIFY(QFile::link(path(file) + QStringLiteral(".real"), path(file)));
    }
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(
        dialogTexts(),
        QStringList({QStringLiteral("1 Settings"), QStringLiteral("One"), QStringLiteral("Two")}));
}

void tst_odd_files::whatTheOperatorSees_data()
{
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("texts");

    const auto row = [](const char *name, const Spoil &spoil, const QStringList &boxes,
                        const QStringList &texts) {
        QTest::newRow(name) << spoil << boxes << texts;
    };
    const QStringList nothing {QString()};
    const QStringList silentLanguages {QString(), QStringLiteral("One"), QStringLiteral("Two")};
    // Where the catalogue alone is missing too: there is no folder chs.
    const QStringList noFiles {openFailed(), notFound(QString()), loadFailed(chsFile)};
    const QStringList emptyCatalogue {notFound(QString()), loadFailed(chsFile)};
    const QStringList noTranslation {notFound(path(qmFile)), loadFailed(chsFile)};
    const QStringList translationRefused {loadFailed(qmFile)};

    row(
        "folder: link to nowhere",
        [] {
            Deployment::clear();
            QFile::link(nowhere(), path(QStringLiteral("Lang")));
        },
        noFiles, nothing);
    row(
        "folder: link to itself",
        [] {
            Deployment::clear();
            QFile::link(path(QStringLiteral("Lang")), path(QStringLiteral("Lang")));
        },
        noFiles, nothing);
    row(
        "folder: a file",
        [] {
            Deployment::clear();
            QFile file(path(QStringLiteral("Lang")));
            QVERIFY(file.open(QIODevice::WriteOnly));
        },
        noFiles, nothing);
    row(
        "folder: may not be entered", [] { chmod(qPrintable(path(QStringLiteral("Lang"))), 0); },
        noFiles, nothing);

    row(
        "catalogue: a folder",
        [] {
            remove(iniFile);
            QDir().mkpath(path(iniFile));
        },
        noFiles, nothing);
    row(
        "catalogue: link to nowhere",
        [] {
            remove(iniFile);
            QFile::link(nowhere(), path(iniFile));
        },
        noFiles, nothing);
    row(
        "catalogue: link to itself",
        [] {
            remove(iniFile);
            QFile::link(path(iniFile), path(iniFile));
        },
        noFiles, nothing);
    row(
        "catalogue: may not be read", [] { chmod(qPrintable(path(iniFile)), 0); }, noFiles,
        nothing);
    row(
        "catalogue: device, read as an empty file",
        [] {
            remove(iniFile);
            QFile::link(QStringLiteral("/dev/null"), path(iniFile));
        },
        emptyCatalogue, nothing);

    row(
        "translation: link to nowhere",
        [] {
            remove(qmFile);
            QFile::link(nowhere(), path(qmFile));
        },
        noTranslation, silentLanguages);
    row(
        "translation: link to itself",
        [] {
            remove(qmFile);
            QFile::link(path(qmFile), path(qmFile));
        },
        noTranslation, silentLanguages);
    row(
        "translation: may not be read", [] { chmod(qPrintable(path(qmFile)), 0); },
        translationRefused, silentLanguages);
    row(
        "translation: device without end",
        [] {
            remove(qmFile);
            QFile::link(QStringLiteral("/dev/zero"), path(qmFile));
        },
        translationRefused, silentLanguages);
    row(
        "translation: folder may not be entered",
        [] { chmod(qPrintable(path(QStringLiteral("Lang/first"))), 0); }, noTranslation,
        silentLanguages);
}

void tst_odd_files::whatTheOperatorSees()
{
    QFETCH(Spoil, spoil);
    QFETCH(QStringList, boxes);
    QFETCH(QStringList, texts);

    QVERIFY(m_mgr->Init(&m_machine)); // So that there is something to lose.
    spoil();
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), boxes);
    QCOMPARE(dialogTexts(), texts);
}

/// To open one would last until there is someone at the other end.
void tst_odd_files::pipeAsCatalogueIsRefused()
{
    remove(iniFile);
    QCOMPARE(mkfifo(qPrintable(path(iniFile)), 0600), 0);
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(),
             QStringList({openFailed(), notFound(QString()), loadFailed(chsFile)}));
}

/// Qt takes no translation from anything but a file, and does not even open a pipe.
void tst_odd_files::pipeAsTranslationIsRefused()
{
    remove(qmFile);
    QCOMPARE(mkfifo(qPrintable(path(qmFile)), 0600), 0);
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), QStringList(loadFailed(qmFile)));
}

/// A file to be exchanged at run time must be removed or renamed: Qt has it mapped into memory on
/// Linux, and the process dies if it is cut and written anew in its place.
void tst_odd_files::translationThatIsReplacedStaysLoaded()
{
    QVERIFY(m_mgr->Init(&m_machine));
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    QCOMPARE(dialogTexts().constFirst(), QStringLiteral("1 Settings"));
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), QStringList(loadFailed(qmFile)));
}

void tst_odd_files::catalogueWithoutMeasureIsReadToItsEnd()
{
#ifdef __SANITIZE_ADDRESS__
    const qint64 size = 10 << 20;
#else
    const qint64 size = 100 << 20;
#endif
    QFile file(path(iniFile));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=One\n");
    for (qint64 line = 0; file.pos() < size; ++line)
        file.write("LANG" + QByteArray::number(2 + line % 1000) + "_NAME=Name in line "
                   + QByteArray::number(line)
                   + "\n; A comment that has nothing to say, but at length\n");
    file.write("LANG1_FOLDER=first\nLANG1_SHOW=1\n");
    file.close();

    const long memoryBefore = peakMemory();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_mgr->Init(&m_machine));
    qInfo("%lld MB read in %lld ms with %ld MB of memory", size >> 20, timer.elapsed(),
          peakMemory() - memoryBefore);
    QCOMPARE(dialogTexts(), QStringList({QStringLiteral("1 Settings"), QStringLiteral("One")}));
}

void tst_odd_files::filesNeedNotBeWritable()
{
    for (const QString &file : {iniFile, qmFile})
        QCOMPARE(chmod(qPrintable(path(file)), 0444), 0);
    for (const char *folder : {"Lang/first", "Lang"})
        QCOMPARE(chmod(qPrintable(path(QLatin1String(folder))), 0555), 0);
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(
        dialogTexts(),
        QStringList({QStringLiteral("1 Settings"), QStringLiteral("One"), QStringLiteral("Two")}));
}

void tst_odd_files::nothingIsEverWritten()
{
    const QStringList before = everyFile();
    QCOMPARE(before.size(), 5);
    QVERIFY(m_mgr->Init(&m_machine));
    for (const bool accepts : {true, false}) {
        m_machine.accepts = accepts;
        m_operator.onDialog = [](const QDialog &dialog) {
            dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->click();
        };
        QCOMPARE(m_mgr->ShowSettingsDlg(nullptr), accepts);
    }
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(everyFile(), before);
}

QTEST_MAIN(tst_odd_files)
#include "tst_odd_files.moc"
