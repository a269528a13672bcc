// Tests langcheck with a console of its own, as Explorer starts it: it opens its page in the
// browser. From a command prompt it doesn't, but prints to the console.

#include "CheckedPage.h"
#include "support/TestFile.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <windows.h>

namespace {

bool isWine()
{
    return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version");
}

} // namespace

class tst_langcheck_explorer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void pageOpensInTheBrowser_data();
    void pageOpensInTheBrowser();
    void droppedFoldersAreRefused();
    void commandPromptShowsTheReport();
    void consoleShowsAllScripts();

private:
    /// Starts a program with a console of its own and returns its exit code. Closes its message
    /// boxes.
    static int runInNewConsole(const QString &program, const QStringList &arguments);

    QTemporaryDir m_folder;
    const QString m_opened = m_folder.filePath(QStringLiteral("opened.txt"));
    const QString m_page = QDir::temp().filePath(QStringLiteral("langcheck.html"));
    QSettings m_classes {QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Classes"),
                         QSettings::NativeFormat};
};

void tst_langcheck_explorer::initTestCase()
{
    if (!isWine())
        QSKIP("Under Windows itself, this would change which browser opens pages.");

    // The "browser" writes down what it is asked to open, with "/u" in UTF-16.
    m_classes.setValue(QStringLiteral(".html/."), QStringLiteral("zendeltest"));
    m_classes.setValue(QStringLiteral("zendeltest/shell/open/command/."),
                       QStringLiteral("cmd /u /c echo %1>\"") + QDir::toNativeSeparators(m_opened)
                           + QLatin1Char('"'));
    m_classes.sync();
}

void tst_langcheck_explorer::cleanupTestCase()
{
    if (!isWine()) // Called even if the tests are skipped.
        return;
    m_classes.remove(QStringLiteral(".html"));
    m_classes.remove(QStringLiteral("zendeltest"));
}

int tst_langcheck_explorer::runInNewConsole(const QString &program, const QStringList &arguments)
{
    // Not with QProcess: its setCreateProcessArgumentsModifier() takes a std::function, whose
    // layout in Qt's DLL is that of Microsoft's library.
    QString line = QLatin1Char('"') + QDir::toNativeSeparators(program) + QLatin1Char('"');
    for (const QString &argument : arguments)
        line += argument.contains(QLatin1Char(' ')) ? QStringLiteral(" \"%1\"").arg(argument)
                                                    : QLatin1Char(' ') + argument;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, reinterpret_cast<wchar_t *>(line.data()), nullptr, nullptr, FALSE,
                        CREATE_NEW_CONSOLE, nullptr, nullptr, &startup, &process))
        return -1;
    for (int i = 0; i < 600 && WaitForSingleObject(process.hProcess, 100) == WAIT_TIMEOUT; ++i) {
        if (const HWND box = FindWindowW(nullptr, L"langcheck"))
            PostMessageW(box, WM_CLOSE, 0, 0);
    }
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode); // STILL_ACTIVE after a timeout
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}

void tst_langcheck_explorer::pageOpensInTheBrowser_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("checked");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("exitCode");

    const QFileInfo langcheck(testFile(QStringLiteral(LANGCHECK_FILE)));
    QTest::newRow("double-click") << QStringList() << langcheck.canonicalPath() << "" << 0;
    const QDir folder(m_folder.path());
    QVERIFY(folder.mkdir(QStringLiteral("\u673A \u5668")));
    const QString dropped = folder.filePath(QStringLiteral("\u673A \u5668"));
    QTest::newRow("dropped folder")
        << QStringList {QDir::toNativeSeparators(dropped)} << dropped << "" << 2;
    QVERIFY(QDir(dropped).mkdir(QStringLiteral("Lang")));
    const QString lang = QDir::toNativeSeparators(dropped + QStringLiteral("/Lang"));
    QTest::newRow("dropped Lang") << QStringList {lang} << dropped
                                  << QStringLiteral("to which &quot;%1&quot; belongs, ").arg(lang)
                                  << 2;
}

void tst_langcheck_explorer::pageOpensInTheBrowser()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, checked);
    QFETCH(QString, reason);
    QFETCH(int, exitCode);

    QFile::remove(m_page);
    QFile::remove(m_opened);
    QCOMPARE(runInNewConsole(testFile(QStringLiteral(LANGCHECK_FILE)), arguments), exitCode);
    QTRY_VERIFY(QFileInfo(m_opened).size() > 0);

    const QByteArray bytes = CheckedPage::readFile(m_opened);
    const QString path = QDir::fromNativeSeparators(QString::fromUtf16(
        reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2));
    QCOMPARE(path.trimmed().toLower(), m_page.toLower());
    const QByteArray page = CheckedPage::readFile(m_page);
    CheckedPage::validate(page);
    QVERIFY2(page.contains("<title>langcheck: " + checked.toUtf8() + "</title>"),
             page.left(5000).constData());
    QVERIFY2(page.contains("</code>, " + reason.toUtf8() + "checked on "),
             page.left(5000).constData());
}

void tst_langcheck_explorer::droppedFoldersAreRefused()
{
    QFile::remove(m_page);
    const QString folder = QDir::toNativeSeparators(m_folder.path());
    QCOMPARE(runInNewConsole(testFile(QStringLiteral(LANGCHECK_FILE)), {folder, folder}), 3);
    QVERIFY(!QFile::exists(m_page));
}

/// The prompt, too, is a process of the console. Very rarely, Wine doesn't count it.
void tst_langcheck_explorer::commandPromptShowsTheReport()
{
    const QStringList arguments {
        QStringLiteral("/c"), QDir::toNativeSeparators(testFile(QStringLiteral(LANGCHECK_FILE)))};
    for (int attempt = 0; attempt < 2; ++attempt) {
        QFile::remove(m_page);
        QFile::remove(m_opened);
        QCOMPARE(runInNewConsole(QStringLiteral("cmd"), arguments), 0);
        if (attempt > 0 || !QFile::exists(m_page))
            break;
        qWarning("Under Wine, the page was shown instead of the report; tried again");
        QTRY_VERIFY(QFileInfo(m_opened).size() > 0);
    }
    QVERIFY(!QFile::exists(m_page));
    QVERIFY(!QFile::exists(m_opened));
}

/// Other programs print in the console's encoding, which lacks most scripts.
void tst_langcheck_explorer::consoleShowsAllScripts()
{
    FreeConsole();
    QVERIFY(AllocConsole());
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    &inherited, OPEN_EXISTING, 0, nullptr);
    const COORD size = {100, 100};
    QVERIFY(SetConsoleScreenBufferSize(console, size));
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = console;
    startup.hStdError = console;
    PROCESS_INFORMATION process = {};
    QString line = QDir::toNativeSeparators(testFile(QStringLiteral(LANGCHECK_FILE)));
    line = QStringLiteral("\"%1\" \"%2\"").arg(line, QFileInfo(line).path());
    QVERIFY(CreateProcessW(nullptr, reinterpret_cast<wchar_t *>(line.data()), nullptr, nullptr,
                           TRUE, 0, nullptr, nullptr, &startup, &process));
    QCOMPARE(WaitForSingleObject(process.hProcess, 60000), DWORD {WAIT_OBJECT_0});
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);

    QString screen(size.X * size.Y, QLatin1Char(' '));
    DWORD read = 0;
    QVERIFY(ReadConsoleOutputCharacterW(console, reinterpret_cast<wchar_t *>(screen.data()),
                                        static_cast<DWORD>(screen.size()), {0, 0}, &read));
    CloseHandle(console);
    FreeConsole();
    for (const QString &text : {QStringLiteral("Folder:  "), QStringLiteral("12 \u010Ce\u0161tina"),
                                QStringLiteral("13 \u0420\u0443\u0441\u0441\u043A\u0438\u0439"),
                                QStringLiteral("0 errors, 0 warnings")}) {
        QVERIFY2(screen.contains(text), qPrintable(screen.simplified()));
    }
    QVERIFY2(!screen.contains(QLatin1String("[0m")), qPrintable(screen.simplified()));
}

QTEST_MAIN(tst_langcheck_explorer)
#include "tst_langcheck_explorer.moc"
