// Tests the plug-in with links, pipes, unreadable files and a huge catalogue: what the operator
// sees of each, and that the host survives.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#include "support/PluginTest.h"
#include "support/TranslationBoxes.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>

using Change = std::function<void()>;
Q_DECLARE_METATYPE(Change)

namespace {

using TranslationBoxes::loadFailed;
using TranslationBoxes::notFound;
using TranslationBoxes::openFailed;

const QString langFolder = QStringLiteral("Lang");
const QString iniFile = QStringLiteral("Lang/Lang.ini");
const QString qmFile = QStringLiteral("Lang/first/Zendel.qm");
const QString chsFile = QStringLiteral("Lang/chs/Zendel.qm");

QString path(const QString &below)
{
    return Deployment::path(below);
}

/// Returns the target of dangling links. It is in the test's own folder, where a file that is
/// opened for writing would be found.
QString nowhere()
{
    return path(QStringLiteral("Nowhere"));
}

void remove(const QString &below)
{
    const QFileInfo info(path(below));
    QVERIFY(info.isDir() ? QDir(info.filePath()).removeRecursively()
                         : QFile::remove(info.filePath()));
}

Change replaceByLink(const QString &below, const QString &target)
{
    return [below, target] {
        remove(below);
        QVERIFY(QFile::link(target, path(below)));
    };
}

Change replaceByPipe(const QString &below)
{
    return [below] {
        remove(below);
        QCOMPARE(mkfifo(qPrintable(path(below)), 0600), 0);
    };
}

Change denyAccess(const QString &below)
{
    return [below] { QCOMPARE(chmod(qPrintable(path(below)), 0), 0); };
}

/// Makes file modes apply to root, too. Has no effect for other users.
void dropPrivileges()
{
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2] {};
    QCOMPARE(syscall(SYS_capset, &header, none), 0L);
}

/// Removes what a test has made of the deployment.
void clear()
{
    QFile::remove(path(langFolder)); // If it is a link
    chmod(qPrintable(path(langFolder)), 0755);
    chmod(qPrintable(path(QStringLiteral("Lang/first"))), 0755);
    Deployment::clear();
    QDir(path(QStringLiteral("Elsewhere"))).removeRecursively();
    QFile::remove(nowhere());
}

/// Returns the names, times and contents of all files and folders of the deployment.
QStringList everyFile()
{
    QStringList result;
    QDirIterator files(path(langFolder),
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

/// Returns the program's peak memory use so far, in MB.
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

class tst_odd_files : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void usableFiles_data();
    void usableFiles();
    void unusableFiles_data();
    void unusableFiles();
    void replacedTranslationStaysLoaded();
    void hugeCatalogueIsReadToItsEnd();
    void nothingIsWritten();

private:
    QStringList dialogTexts();
};

void tst_odd_files::initTestCase()
{
    PluginTest::initTestCase();
    dropPrivileges();
}

void tst_odd_files::init()
{
    clear(); // After an aborted run
    PluginTest::init();
}

void tst_odd_files::cleanup()
{
    PluginTest::cleanup();
    clear();
}

/// Returns the title and the languages of the dialog.
QStringList tst_odd_files::dialogTexts()
{
    QStringList result;
    m_operator.onDialog = [&result](const QDialog &dialog) {
        result = QStringList(dialog.windowTitle()) + DialogWidgets::languages(dialog);
    };
    m_mgr->ShowSettingsDlg(nullptr);
    m_operator.takeDialogs();
    return result;
}

void tst_odd_files::usableFiles_data()
{
    QTest::addColumn<Change>("change");

    QTest::newRow("folder is a link") << Change([] {
        const QString elsewhere = path(QStringLiteral("Elsewhere"));
        QVERIFY(QDir().rename(path(langFolder), elsewhere));
        QVERIFY(QFile::link(elsewhere, path(langFolder)));
    });
    QTest::newRow("files are links") << Change([] {
        for (const QString &file : {iniFile, qmFile}) {
            QVERIFY(QFile::rename(path(file), path(file) + QStringLiteral(".real")));
            QVERIFY(QFile::link(path(file) + QStringLiteral(".real"), path(file)));
        }
    });
    QTest::newRow("nothing is writable") << Change([] {
        for (const QString &file : {iniFile, qmFile})
            QCOMPARE(chmod(qPrintable(path(file)), 0444), 0);
        for (const QString &folder : {QStringLiteral("Lang/first"), langFolder})
            QCOMPARE(chmod(qPrintable(path(folder)), 0555), 0);
    });
}

void tst_odd_files::usableFiles()
{
    QFETCH(Change, change);

    change();
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(
        dialogTexts(),
        QStringList({QStringLiteral("1 Settings"), QStringLiteral("One"), QStringLiteral("Two")}));
}

void tst_odd_files::unusableFiles_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("texts");

    const QStringList nothing {QString()};
    const QStringList noFiles {openFailed(), notFound(QString()), loadFailed(chsFile)};
    QTest::newRow("folder: link to nowhere")
        << replaceByLink(langFolder, nowhere()) << noFiles << nothing;
    QTest::newRow("folder: link to itself")
        << replaceByLink(langFolder, path(langFolder)) << noFiles << nothing;
    QTest::newRow("folder: a file") << Change([] {
        remove(langFolder);
        QVERIFY(QFile(path(langFolder)).open(QIODevice::WriteOnly));
    }) << noFiles << nothing;
    QTest::newRow("folder: access denied") << denyAccess(langFolder) << noFiles << nothing;

    // The messages are the same if only the catalogue is missing, because there is no folder chs.
    const QStringList emptyCatalogue {notFound(QString()), loadFailed(chsFile)};
    QTest::newRow("catalogue: a folder") << Change([] {
        remove(iniFile);
        QVERIFY(QDir().mkpath(path(iniFile)));
    }) << noFiles << nothing;
    QTest::newRow("catalogue: link to nowhere")
        << replaceByLink(iniFile, nowhere()) << noFiles << nothing;
    QTest::newRow("catalogue: link to itself")
        << replaceByLink(iniFile, path(iniFile)) << noFiles << nothing;
    QTest::newRow("catalogue: access denied") << denyAccess(iniFile) << noFiles << nothing;
    // Opening a pipe would block until somebody opens its other end.
    QTest::newRow("catalogue: pipe") << replaceByPipe(iniFile) << noFiles << nothing;
    QTest::newRow("catalogue: device, read as an empty file")
        << replaceByLink(iniFile, QStringLiteral("/dev/null")) << emptyCatalogue << nothing;

    const QStringList noTranslation {notFound(path(qmFile)), loadFailed(chsFile)};
    const QStringList translationRefused {loadFailed(qmFile)};
    const QStringList untranslated {QString(), QStringLiteral("One"), QStringLiteral("Two")};
    QTest::newRow("translation: link to nowhere")
        << replaceByLink(qmFile, nowhere()) << noTranslation << untranslated;
    QTest::newRow("translation: link to itself")
        << replaceByLink(qmFile, path(qmFile)) << noTranslation << untranslated;
    QTest::newRow("translation: access denied")
        << denyAccess(qmFile) << translationRefused << untranslated;
    // Qt loads translations from regular files only and doesn't even open a pipe.
    QTest::newRow("translation: pipe")
        << replaceByPipe(qmFile) << translationRefused << untranslated;
    QTest::newRow("translation: endless device")
        << replaceByLink(qmFile, QStringLiteral("/dev/zero")) << translationRefused << untranslated;
    QTest::newRow("translation: access to the folder denied")
        << denyAccess(QStringLiteral("Lang/first")) << noTranslation << untranslated;
}

void tst_odd_files::unusableFiles()
{
    QFETCH(Change, change);
    QFETCH(QStringList, boxes);
    QFETCH(QStringList, texts);

    QVERIFY(m_mgr->Init(&m_machine)); // So that there is something to lose
    change();
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), boxes);
    QCOMPARE(dialogTexts(), texts);
}

/// The file is removed and created again. Overwriting it in place would crash the process on Linux,
/// because Qt maps it into memory.
void tst_odd_files::replacedTranslationStaysLoaded()
{
    QVERIFY(m_mgr->Init(&m_machine));
    Deployment::writeTranslation(QStringLiteral("first"), "broken");
    QCOMPARE(dialogTexts().constFirst(), QStringLiteral("1 Settings"));
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(m_operator.takeBoxes(), QStringList(loadFailed(qmFile)));
}

void tst_odd_files::hugeCatalogueIsReadToItsEnd()
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

void tst_odd_files::nothingIsWritten()
{
    const QStringList before = everyFile();
    QCOMPARE(before.size(), 5);
    QVERIFY(m_mgr->Init(&m_machine));
    m_operator.onDialog = DialogWidgets::pressChange;
    for (const bool accepts : {true, false}) {
        m_machine.accepts = accepts;
        QCOMPARE(m_mgr->ShowSettingsDlg(nullptr), accepts);
    }
    takeAll();
    QVERIFY(m_mgr->Init(&m_machine));
    QCOMPARE(everyFile(), before);
}

QTEST_MAIN(tst_odd_files)
#include "tst_odd_files.moc"
