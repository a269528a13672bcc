// Tests a double click on langcheck in Explorer, which starts it without arguments and with a
// console of its own: it opens its page in the browser.

#include "CheckedPage.h"
#include "support/TestFile.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <windows.h>

class tst_langcheck_explorer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubleClickOpensTheBrowser();
};

void tst_langcheck_explorer::doubleClickOpensTheBrowser()
{
    if (!GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version"))
        QSKIP("Under Windows itself, this would change which browser opens pages.");

    // The "browser" writes down what it is asked to open, with "/u" in UTF-16.
    const QTemporaryDir folder;
    const QString opened = folder.filePath(QStringLiteral("opened.txt"));
    QSettings classes(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Classes"),
                      QSettings::NativeFormat);
    classes.setValue(QStringLiteral(".html/."), QStringLiteral("zendeltest"));
    classes.setValue(QStringLiteral("zendeltest/shell/open/command/."),
                     QStringLiteral("cmd /u /c echo %1>\"") + QDir::toNativeSeparators(opened)
                         + QLatin1Char('"'));
    classes.sync();

    const QString page = QDir::temp().filePath(QStringLiteral("langcheck.html"));
    QFile::remove(page);
    QProcess process;
    process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
        arguments->flags &= ~DWORD(CREATE_NO_WINDOW);
        arguments->flags |= CREATE_NEW_CONSOLE;
        arguments->startupInfo->dwFlags &= ~DWORD(STARTF_USESTDHANDLES);
    });
    process.start(testFile(QStringLiteral(LANGCHECK_FILE)), QStringList());
    QVERIFY2(process.waitForFinished(60000), qPrintable(process.errorString()));
    QCOMPARE(process.exitCode(), 0);
    QTRY_VERIFY(QFileInfo(opened).size() > 0);

    QFile file(opened);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const QString path = QDir::fromNativeSeparators(QString::fromUtf16(
        reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2));
    QCOMPARE(path.trimmed().toLower(), page.toLower());
    QFile written(page);
    QVERIFY(written.open(QIODevice::ReadOnly));
    CheckedPage::validate(written.readAll());

    classes.remove(QStringLiteral(".html"));
    classes.remove(QStringLiteral("zendeltest"));
}

QTEST_MAIN(tst_langcheck_explorer)
#include "tst_langcheck_explorer.moc"
