// Tests the example host as users start it, in its own folder with the sample deployment.

#include "examples/host/LanguageFile.h"

#include "support/TestFile.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

namespace {

/// Returns a path as the host prints it, in the system's code page, which may lack some letters.
QString printedPath(const QString &path)
{
    return QString::fromLocal8Bit(QDir::toNativeSeparators(path).toLocal8Bit());
}

} // namespace

class tst_host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void callsThatNeedNoDisplay_data();
    void callsThatNeedNoDisplay();
    void sampleCatalogueIsAsDescribed();
    void tourShowsEveryStageAndSwitchesTheLanguage();
    void secondTourSwitchesAgain();
    void tourWithoutAFolderFails();

private:
    void run(const QStringList &arguments, bool withDisplay = true);
    void runTour(const QString &folder);
    QString path(const QString &below) const { return m_folder.filePath(below); }
    int defaultLanguage() const;

    const QTemporaryDir m_folder;
    int m_exitCode = -1;
    QString m_output;
    QString m_errors;
};

void tst_host::initTestCase()
{
    QVERIFY(QFile::copy(testFile(QStringLiteral(HOST_FILE)), path(QStringLiteral("host.exe"))));
    const QDir sample(testFile(QStringLiteral(SAMPLE_DEPLOYMENT)));
    for (const QString &folder : sample.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QVERIFY(QDir().mkpath(path(QStringLiteral("Lang/") + folder)));
        QVERIFY(QFile::copy(sample.filePath(folder + QStringLiteral("/Zendel.qm")),
                            path(QStringLiteral("Lang/%1/Zendel.qm").arg(folder))));
    }
}

void tst_host::init()
{
    QFile::remove(path(QStringLiteral("Lang/Lang.ini")));
    QVERIFY(QFile::copy(testFile(QStringLiteral(SAMPLE_CATALOGUE)),
                        path(QStringLiteral("Lang/Lang.ini"))));
}

void tst_host::run(const QStringList &arguments, bool withDisplay)
{
    QProcess process;
    if (!withDisplay) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        process.setProcessEnvironment(environment);
    }
    process.start(path(QStringLiteral("host.exe")), arguments);
    QVERIFY2(process.waitForFinished(90000), qPrintable(process.errorString()));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    m_exitCode = process.exitCode();
    m_output = QString::fromLocal8Bit(process.readAllStandardOutput());
    m_errors = QString::fromLocal8Bit(process.readAllStandardError());
}

void tst_host::runTour(const QString &folder)
{
    run({QStringLiteral("--plugin"), testFile(QStringLiteral(PLUGIN_FILE)),
         QStringLiteral("--tour"), folder});
}

int tst_host::defaultLanguage() const
{
    LanguageFile languages(path(QStringLiteral("Lang/Lang.ini")));
    return languages.read() ? languages.defaultLanguage() : -1;
}

void tst_host::callsThatNeedNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QStringList>("named");

    const QString plugin = QStringLiteral("--plugin");
    const QString help = QStringLiteral("--help");
    const auto wrong = [](const char *name, const char *argument, const char *named) {
        QTest::newRow(name) << QStringList(QLatin1String(argument)) << 1
                            << QStringList(QLatin1String(named));
    };
    const auto unusable = [&plugin](const char *name, const QString &file, const char *reason) {
        QTest::newRow(name) << QStringList {plugin, file} << 1
                            << QStringList {printedPath(file), QLatin1String(reason)};
    };
    QTest::newRow("help") << QStringList(help) << 0
                          << QStringList {plugin, QStringLiteral("--tour"), help};
    wrong("unknown option", "--unknown", "unknown");
    wrong("--plugin without a file", "--plugin", "plugin");
    wrong("extra argument", "word", "word");
    unusable("missing", QStringLiteral("/no/such/plugin.so"), "the file doesn't exist");
    unusable("not a library", testFile(QStringLiteral(SAMPLE_CATALOGUE)), "cannot load");
    unusable("without NewInterface", testFile(QStringLiteral(PLUGIN_WITHOUT_FUNCTIONS)),
             "NewInterface");
    unusable("without ReleaseInterface", testFile(QStringLiteral(PLUGIN_WITHOUT_RELEASE)),
             "ReleaseInterface");
}

void tst_host::callsThatNeedNoDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QStringList, named);

    run(arguments, false);
    QCOMPARE(m_exitCode, exitCode);
    const QString &printed = exitCode == 0 ? m_output : m_errors;
    for (const QString &name : qAsConst(named))
        QVERIFY2(printed.contains(name, Qt::CaseInsensitive), qPrintable(printed));
}

void tst_host::sampleCatalogueIsAsDescribed()
{
    QFile file(testFile(QStringLiteral(SAMPLE_CATALOGUE)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("\xFF\xFE"));

    const QString text = QTextCodec::codecForName("UTF-16LE")->toUnicode(bytes);
    QStringList shown;
    LanguageFile languages(file.fileName());
    QVERIFY(languages.read());
    for (int number = 1; number <= 30; ++number) {
        if (text.contains(QStringLiteral("\nLANG%1_SHOW=1\r").arg(number)))
            shown += languages.languageName(number);
    }
    const QString names =
        QStringLiteral("简体中文, English, Deutsch, 日本語, Français, 繁體中文, Español, Italiano, "
                       "Português (Brasil), Nederlands, Polski, Čeština, Русский, Українська, "
                       "Türkçe, Magyar, Svenska, Suomi, 한국어, Tiếng Việt, ไทย, العربية");
    QCOMPARE(shown.mid(0, 22).join(QStringLiteral(", ")), names);
    for (const char *const key : {"_ID ", "_NAME ", "_FOLDER ", "_SHOW "})
        QVERIFY2(text.contains(QStringLiteral("\n; LANG<number>") + QLatin1String(key)), key);
}

void tst_host::tourShowsEveryStageAndSwitchesTheLanguage()
{
    QCOMPARE(defaultLanguage(), 2);
    const QDir screenshots(path(QStringLiteral("tour")));
    runTour(screenshots.path());
    QVERIFY2(m_exitCode == 0, qPrintable(m_errors));
    QCOMPARE(defaultLanguage(), 3);

    const QStringList names {QStringLiteral("1-host.png"), QStringLiteral("2-dialog.png"),
                             QStringLiteral("3-success.png"), QStringLiteral("4-new-language.png"),
                             QStringLiteral("5-failure.png")};
    QCOMPARE(screenshots.entryList(QDir::Files, QDir::Name), names);
    QImage previous;
    for (const QString &name : names) {
        const QImage screenshot(screenshots.filePath(name));
        QVERIFY2(screenshot.width() >= 700 && screenshot.height() >= 470, qPrintable(name));
        QVERIFY2(screenshot != previous, qPrintable(name));
        QVERIFY2(m_output.contains(name), qPrintable(m_output));
        previous = screenshot;
    }
}

void tst_host::secondTourSwitchesAgain()
{
    const QString folder = path(QStringLiteral("second"));
    runTour(folder);
    QCOMPARE(m_exitCode, 0);
    const int first = defaultLanguage();
    runTour(folder);
    QCOMPARE(m_exitCode, 0);
    QVERIFY(defaultLanguage() != first);
}

void tst_host::tourWithoutAFolderFails()
{
    const QString file = path(QStringLiteral("host.exe"));
    runTour(file);
    QCOMPARE(m_exitCode, 1);
    QVERIFY2(m_errors.contains(printedPath(file)), qPrintable(m_errors));
}

QTEST_MAIN(tst_host)
#include "tst_host.moc"
