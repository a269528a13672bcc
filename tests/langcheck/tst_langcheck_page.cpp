// Tests langcheck's page and pictures: the page is valid HTML, whatever the deployment contains,
// and the pictures show the dialog in each language, with marks where a text is missing or clipped.

#include "lang/SourceTexts.h"
#include "langcheck/check/DeploymentCheck.h"
#include "langcheck/write/Output.h"
#include "ui/DlgSettings.h"

#include "CheckedPage.h"
#include "GoodDeployment.h"
#include "LangcheckProcess.h"

#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>

namespace {

using CheckedPage::readFile;
using GoodDeployment::catalogueWith;
using GoodDeployment::check;
using GoodDeployment::kCatalogue;

const QString kHtml = QStringLiteral("--html");
const QString kPictures = QStringLiteral("--pictures");

const QRgb kMissing = qRgb(0xC0, 0, 0);
const QRgb kClipped = qRgb(0xB8, 0x50, 0);

const QRegularExpression
    kProgress(QStringLiteral("^(folder checked|\\d+ of \\d+ languages drawn|page written|"
                             "\\d+ of \\d+ pictures written)\n"),
              QRegularExpression::MultilineOption);

int pixels(const QImage &image, QRgb color, const QRect &rect)
{
    const QRect inside = rect & image.rect();
    int result = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            result += image.pixel(x, y) == color ? 1 : 0;
    }
    return result;
}

int pixels(const QImage &image, QRgb color)
{
    return pixels(image, color, image.rect());
}

bool isBlank(const QImage &image)
{
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    return colors.size() < 10;
}

/// Returns the spaces of label, button, tab and title in a picture of the dialog, which has a frame
/// of one pixel and a title bar.
QVector<QRect> spaces()
{
    DlgSettings dialog;
    dialog.grab();
    QVector<QRect> result;
    const QVector<ShownText> texts = dialogTexts(dialog);
    for (const ShownText &text : texts)
        result += text.space.translated(1, 1 + kTitleBarHeight);
    return result;
}

/// Runs langcheck on a machine that may be so busy that drawing two languages takes more than a
/// second.
QByteArray runWithoutProgress(const QStringList &arguments, int exitCode)
{
    return QString::fromUtf8(runLangcheck(arguments, exitCode)).remove(kProgress).toUtf8();
}

/// Returns the page after validating it.
QByteArray validPage(const Report &report)
{
    QByteArray bytes = CheckedPage::make(report);
    CheckedPage::validate(bytes);
    return bytes;
}

/// UTF-16 with a BOM, which can contain any character.
QByteArray utf16(const QString &text)
{
    return Deployment::utf16(QChar(QChar::ByteOrderMark) + text);
}

} // namespace

/// Counts how often a window is exposed.
class ExposureCounter : public QObject
{
public:
    ExposureCounter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Expose ? 1 : 0;
        return false;
    }

    int count = 0;
};

/// Receives the files that would be opened in the browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened += url; }
};

class tst_langcheck_page : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { GoodDeployment::prepareTests(); }
    void init() { GoodDeployment::install(); }

    void everyKindOfFindingIsShown();
    void deploymentsAreShown_data();
    void deploymentsAreShown();
    void startIsNotPromisedIfTheHostFails();
    void languagesHaveTheirScript();
    void hostileTextsStayTexts_data();
    void hostileTextsStayTexts();
    void hostileTranslationsStayTexts();
    void picturesOfAGoodDeploymentHaveNoMarks();
    void missingTextsAreMarked();
    void clippedTextsAreMarked();
    void clippedNameIsMarked();
    void missingFileShowsTheFallback();
    void startIsShownInItsOwnLanguage();
    void noWindowIsShown();
    void pictureFilesOfTheSample();
    void manyLanguages();
    void lastLanguageIsOnTheSheet();
    void pageOpensInTheBrowser();
    void errorsNameTheFileAndTheReason();
    void failedWriteLeavesTheOldPage();
};

void tst_langcheck_page::everyKindOfFindingIsShown()
{
    Report report = check();
    QStringList values;
    for (int i = 1; i < 10; ++i)
        values += QStringLiteral("value %1; <&\">").arg(i);
    for (const FindingDescription &kind : kFindings) {
        report.findings += Finding::make(kind.kind, QStringLiteral("a & b"), 7, values);
        report.findings.last().quote = QStringLiteral("line of ") + QLatin1String(kind.id);
        report.findings += Finding::make(kind.kind, QStringLiteral("a & b"), 7, values);
        report.findings += Finding::make(kind.kind, QStringLiteral("a & b"), 0, values);
    }
    const QByteArray bytes = validPage(report);
    const CheckedPage::Contents contents = CheckedPage::read(bytes);
    for (const FindingDescription &kind : kFindings) {
        const QString id = QLatin1String(kind.id);
        for (const char *const anchor : {"%1-line-7", "%1-line-7-2", "%1"})
            QVERIFY(contents.anchors.contains(QString::fromLatin1(anchor).arg(id)));
        QVERIFY(contents.texts.contains(QStringLiteral("line of ") + id));
        const Finding finding = Finding::make(kind.kind, {}, 0, values);
        const auto contains = [&contents](const QString &text) {
            return std::any_of(contents.texts.begin(), contents.texts.end(),
                               [&text](const QString &shown) {
                                   return shown.compare(text, Qt::CaseInsensitive) == 0;
                               });
        };
        QVERIFY2(contains(finding.remedy() + QLatin1Char('.')), qPrintable(finding.remedy()));
        QVERIFY(contains(finding.problem() + QStringLiteral("; ") + finding.effect()
                         + QLatin1Char('.')));
    }
    QVERIFY(bytes.contains("Error: ") && bytes.contains("Warning: "));
}

void tst_langcheck_page::deploymentsAreShown_data()
{
    QTest::addColumn<QByteArray>("catalogue"); // Null for none
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QByteArray &catalogue, const char *verdict,
                        const char *text) {
        QTest::newRow(name) << catalogue << QString::fromLatin1(verdict)
                            << QString::fromLatin1(text);
    };
    const QByteArray good = kCatalogue;
    const char *const errors = "There are errors that the operator will see.";
    row("good", good, "Nothing wrong was found.", "None.");
    row("warning", good + "LANG2_NAME=Deux\n",
        "There are warnings, but the operator doesn't see any errors.", "LANG2_NAME=Deux");
    row("error", catalogueWith("DEFAULT=1", "DEFAULT=77"), errors, "DEFAULT=77");
    row("empty list", "[LANG_MGR]\n", errors, "None; the operator's list is empty.");
    row("no catalogue", {}, errors, "Lang/Lang.ini, can't be opened");
    row("half a character", good + ";\xD6\n;\n", errors,
        "Lang/Lang.ini, read as GB2312 because it has no BOM");
}

void tst_langcheck_page::deploymentsAreShown()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QString, verdict);
    QFETCH(QString, text);

    if (catalogue.isNull())
        QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/Lang.ini"))));
    else
        Deployment::writeCatalogue(catalogue);
    const Report report = check();
    const QByteArray bytes = validPage(report);
    const CheckedPage::Contents contents = CheckedPage::read(bytes);
    QVERIFY(contents.texts.contains(verdict));
    QVERIFY2(contents.texts.contains(text), bytes.left(20000).constData());
    QCOMPARE(bytes.count("<img "),
             report.boxes.size() + 1 + (report.listed.isEmpty() ? 0 : 1)
                 + 3 * report.listed.size());
    for (const Finding &finding : report.findings) {
        QVERIFY(
            std::any_of(contents.anchors.begin(), contents.anchors.end(),
                        [&](const QString &anchor) { return anchor.startsWith(finding.id()); }));
    }
}

void tst_langcheck_page::startIsNotPromisedIfTheHostFails()
{
    const QString noBox = QStringLiteral("No message box appears.");
    const QString dialog = QStringLiteral("The dialog then opens like this:");
    Report report = check();
    QStringList texts = CheckedPage::read(CheckedPage::make(report)).texts;
    QVERIFY(texts.contains(noBox) && texts.contains(dialog));
    report.hostFails = true;
    const QByteArray bytes = validPage(report);
    texts = CheckedPage::read(bytes).texts;
    QVERIFY(!texts.contains(noBox) && !texts.contains(dialog));
    QVERIFY(texts.contains(QStringLiteral("The host may not start, or may not load the plug-in.")));
    QVERIFY(bytes.contains(
        ">The host may not start, or may not load the plug-in, because of its DLLs. "));
    QVERIFY(texts.contains(QStringLiteral("Once it does, the dialog opens like this:")));
}

void tst_langcheck_page::languagesHaveTheirScript()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("page.html"));
    runLangcheck({kHtml, file}, 0);
    const QByteArray bytes = readFile(file);
    CheckedPage::validate(bytes);
    const QString text = QString::fromUtf8(bytes);
    QVERIFY(text.contains(QStringLiteral("<bdi dir=\"auto\" lang=\"ar\">العربية</bdi>")));
    QVERIFY(text.contains(QStringLiteral("<bdi dir=\"auto\" lang=\"zh-CN\">简体中文</bdi>")));
    QCOMPARE(bytes.count("<img "), 2 + 22 * 3);
}

void tst_langcheck_page::hostileTextsStayTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    const auto row = [](const char *name, const QString &text, const QString &shown) {
        QTest::newRow(name) << text << shown;
    };
    const auto same = [&row](const char *name, const QString &text) { row(name, text, text); };
    same("script", QStringLiteral("<script>alert(1)</script>"));
    same("end of everything", QStringLiteral("</bdi></style></table></body></html>\"'>"));
    same("quotation marks", QStringLiteral("\"a' onload='b\" x"));
    same("entities", QStringLiteral("&lt; &#0; & &amp"));
    same("comment", QStringLiteral("<!-- a -- b ]]> <![CDATA["));
    same("outside the BMP", QStringLiteral("\U0001F600"));
    same("other direction", QStringLiteral("\u202Eabc\u2066"));
    row("NUL", QStringLiteral("a") + QChar(0) + QStringLiteral("b"), QStringLiteral("a\u2400b"));
    row("controls",
        QStringLiteral("a\x01\x1B\x7F\x85"
                       "b"),
        QStringLiteral("a\u2401\u241B\u2421\uFFFDb"));
    for (const ushort code : {0xFFFE, 0xFFFF, 0xFDD0, 0xD800, 0xDC00}) {
        row(qPrintable(QString::number(code, 16)),
            QStringLiteral("a") + QChar(code) + QLatin1Char('b'), QStringLiteral("a\uFFFDb"));
    }
    row("noncharacter outside the BMP", QStringLiteral("a\U0001FFFEb"), QStringLiteral("a\uFFFDb"));
    row("100,000 letters", QString(100000, QLatin1Char('x')),
        QString(300, QLatin1Char('x')) + QStringLiteral("..."));
    row("cut in a pair", QString(299, QLatin1Char('x')) + QStringLiteral("\U0001F600y"),
        QString(299, QLatin1Char('x')) + QStringLiteral("\uFFFD..."));
}

void tst_langcheck_page::hostileTextsStayTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);

    Deployment::writeCatalogue(utf16(QStringLiteral("[LANG_MGR]\nDEFAULT=1\nLANG1_NAME=%1\n"
                                                    "LANG1_FOLDER=%1\nLANG1_SHOW=1\n%1\n%1=%1\n")
                                         .arg(text)));
    const Report report = check();
    QCOMPARE(report.listed.size(), 1);
    QCOMPARE(report.listed.first().name, text);
    const QByteArray bytes = validPage(report);
    const QStringList texts = CheckedPage::read(bytes).texts;
    QVERIFY(texts.contains(shown));
    for (const QString &one : texts)
        QVERIFY(one.size() < 5000); // The longest is the style.
}

void tst_langcheck_page::hostileTranslationsStayTexts()
{
    Deployment::writeTranslation(QStringLiteral("second"), QByteArray());
    const Report report = check();
    QVector<LanguagePictures> pictures = drawLanguages(report);
    for (QString &text : pictures.first().texts)
        text = QStringLiteral("</td><script>");
    const QByteArray bytes = makePage(report, drawStart(report), pictures);
    CheckedPage::validate(bytes);
    QCOMPARE(CheckedPage::read(bytes).texts.count(QStringLiteral("</td><script>")), 8);
    QVERIFY(bytes.contains("no translation is loaded"));
}

void tst_langcheck_page::picturesOfAGoodDeploymentHaveNoMarks()
{
    const Report report = check();
    const LanguagePictures pictures = drawLanguages(report).at(1);
    QCOMPARE(pictures.texts.size(), 8);
    QVERIFY(!pictures.fonts.isEmpty());
    for (const QImage &image : {pictures.dialog, pictures.success, pictures.failure}) {
        QVERIFY(!isBlank(image));
        QCOMPARE(pixels(image, kMissing), 0);
        QCOMPARE(pixels(image, kClipped), 0);
    }
    QCOMPARE(pictures.dialog.width(), 702);
    QVERIFY(pictures.success != pictures.failure);
}

void tst_langcheck_page::missingTextsAreMarked()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("one_text"));
    const LanguagePictures pictures = drawLanguages(check()).at(1);
    const QVector<QRect> places = spaces();
    QVERIFY(pixels(pictures.dialog, kMissing, places.at(0)) > 0); // Label
    QCOMPARE(pixels(pictures.dialog, kMissing, places.at(1)), 0); // Button
    QVERIFY(pixels(pictures.dialog, kMissing, places.at(2)) > 0); // Tab
    QVERIFY(pixels(pictures.dialog, kMissing, places.at(3)) > 0); // Title
    QCOMPARE(pixels(pictures.dialog, kClipped), 0);
    for (const QImage &image : {pictures.success, pictures.failure}) {
        const QRect title(0, 0, image.width(), kTitleBarHeight);
        QVERIFY(pixels(image, kMissing, title) > 0);
        QVERIFY(pixels(image, kMissing, image.rect().adjusted(0, kTitleBarHeight + 1, 0, 0)) > 0);
    }
}

void tst_langcheck_page::clippedTextsAreMarked()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("long_texts"));
    const LanguagePictures pictures = drawLanguages(check()).at(1);
    const QVector<QRect> places = spaces();
    QCOMPARE(pixels(pictures.dialog, kClipped, places.at(0)), 0);
    QVERIFY(pixels(pictures.dialog, kClipped, places.at(1)) > 0);
    QCOMPARE(pixels(pictures.dialog, kClipped, places.at(2)), 0);
    QCOMPARE(pixels(pictures.dialog, kClipped, places.at(3)), 0);
    QCOMPARE(pixels(pictures.dialog, kMissing), 0);
}

void tst_langcheck_page::clippedNameIsMarked()
{
    Deployment::writeCatalogue(
        catalogueWith("=Two", "=A language with a name that no list can hold"));
    const Report report = check();
    QCOMPARE(pixels(drawLanguages(report).at(0).dialog, kClipped), 0);
    QVERIFY(pixels(drawLanguages(report).at(1).dialog, kClipped) > 0);
}

/// Shows the second language with the texts of the fallback.
void tst_langcheck_page::missingFileShowsTheFallback()
{
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("second"));
    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/second/Zendel.qm"))));
    const Report report = check();
    const LanguagePictures pictures = drawLanguages(report).at(1);
    QVERIFY(pictures.fallback);
    QCOMPARE(pictures.texts.first(), QStringLiteral("2 Language"));
    const QByteArray bytes = validPage(report);
    QVERIFY(bytes.contains("; the texts are those of the fallback"));

    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/chs/Zendel.qm"))));
    QCOMPARE(drawLanguages(report).at(1).texts.count(QString()), 8);
}

/// Draws the start in that language, not in the one that was checked or drawn last.
void tst_langcheck_page::startIsShownInItsOwnLanguage()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("second"));
    const Report report = check();
    const QImage start = drawStart(report).dialog;
    QVERIFY(start == drawLanguages(report).at(0).dialog);
    QVERIFY(start != drawLanguages(report).at(1).dialog);
    QVERIFY(start == drawStart(report).dialog);
}

void tst_langcheck_page::noWindowIsShown()
{
    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/chs/Zendel.qm"))));
    Deployment::writeCatalogue(catalogueWith("DEFAULT=1", "DEFAULT=9"));
    const ExposureCounter exposures;
    const QByteArray bytes = CheckedPage::make(check());
    QCOMPARE(bytes.count("<img "), 2 + 2 + 6);
    QCoreApplication::processEvents();
    QCOMPARE(exposures.count, 0);
}

void tst_langcheck_page::pictureFilesOfTheSample()
{
    const QTemporaryDir folder;
    runLangcheck({kPictures, folder.path()}, 0);
    const QDir dir(folder.path());
    const QStringList names = dir.entryList(QDir::Files);
    QCOMPARE(names.size(), 22 + 1);
    QCOMPARE(names.first(), QStringLiteral("language-001.png"));
    QCOMPARE(names.last(), QStringLiteral("languages.png"));
    QSet<QByteArray> different;
    for (const QString &name : names) {
        const QImage image(dir.filePath(name));
        QVERIFY2(!isBlank(image), qPrintable(name));
        QVERIFY(image.width() > 702 && image.height() > 100);
        QVERIFY(image.height() < 400 || name == QLatin1String("languages.png"));
        different.insert(readFile(dir.filePath(name)));
    }
    QCOMPARE(different.size(), names.size());
    const QImage one(dir.filePath(names.first()));
    const QImage all(dir.filePath(names.last()));
    QVERIFY(all.width() >= 2 * one.width() && all.height() >= 11 * one.height());
}

/// Draws as many as the machine can tell apart, and reports the progress if that takes long.
void tst_langcheck_page::manyLanguages()
{
    QByteArray catalogue = "[LANG_MGR]\nDEFAULT=1\n";
    for (int i = 0; i < 300; ++i) {
        catalogue += QByteArray("LANG%_NAME=Language %\nLANG%_FOLDER=first\nLANG%_SHOW=1\n")
                         .replace('%', QByteArray::number(i));
    }
    Deployment::writeCatalogue(catalogue);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("page.html"));
    QElapsedTimer timer;
    timer.start();
    const QByteArray progress = runLangcheck(
        {kHtml, file, kPictures, folder.path(), QCoreApplication::applicationDirPath()}, 2);
    QCOMPARE(QString::fromUtf8(progress).remove(kProgress), QString());
    QVERIFY(timer.elapsed() < 4000 || !progress.isEmpty());
    const QByteArray bytes = readFile(file);
    QCOMPARE(bytes.count("<img "), 2 + 256 * 3);
    QVERIFY(bytes.contains("The list has 300 languages; only the first 256 are drawn."));
    QVERIFY(bytes.contains(">Language 299<"));
    QCOMPARE(QDir(folder.path()).entryList({QStringLiteral("*.png")}).size(), 256 + 1);
    QVERIFY(!isBlank(QImage(folder.filePath(QStringLiteral("languages.png")))));
}

/// Draws message boxes so high that the picture would have more rows than Qt can paint.
void tst_langcheck_page::lastLanguageIsOnTheSheet()
{
    QImage image(400, 700, QImage::Format_RGB32);
    image.fill(Qt::blue);
    LanguagePictures pictures;
    pictures.dialog = pictures.success = pictures.failure = image;
    const QImage all = sheet(QVector<LanguagePictures>(256, pictures));
    QVERIFY(pixels(all, qRgb(0, 0, 255), {0, all.height() - 100, all.width(), 100}) > 0);
}

/// Does what a double-click in Explorer does, except for the console.
void tst_langcheck_page::pageOpensInTheBrowser()
{
    Browser browser;
    const QString file = QDir::temp().filePath(QStringLiteral("langcheck.html"));
    QDir().rmdir(file); // Left by a test that failed below
    QCOMPARE(openPage(CheckedPage::make(check())), QString());
    QCOMPARE(browser.opened, QList<QUrl> {QUrl::fromLocalFile(file)});
    CheckedPage::validate(readFile(file));

    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkdir(file));
    QCOMPARE(
        openPage(CheckedPage::make(check())),
        QStringLiteral("Can't write \"%1\": it isn't a file.").arg(QDir::toNativeSeparators(file)));
    QVERIFY(QDir().rmdir(file));
    QCOMPARE(browser.opened.size(), 1);
}

void tst_langcheck_page::errorsNameTheFileAndTheReason()
{
    const QString deployment = QCoreApplication::applicationDirPath();
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("no/such"));

    const QByteArray name = QDir::toNativeSeparators(missing).toUtf8();
    const QByteArray error = runWithoutProgress({kHtml, missing, deployment}, 3);
    QVERIFY2(error.startsWith("langcheck: Can't write \"" + name + "\": ")
                 && error.size() > name.size() + 40,
             error.constData());
    // The reasons of Windows end with a full stop, those of Linux don't.
    QVERIFY2(error.endsWith(".\n") && !error.endsWith("..\n"), error.constData());
    QCOMPARE(runWithoutProgress({kHtml, folder.path(), deployment}, 3),
             "langcheck: Can't write \"" + QDir::toNativeSeparators(folder.path()).toUtf8()
                 + "\": it isn't a file.\n");
    QVERIFY(QDir(folder.path()).isEmpty());
#ifdef Q_OS_UNIX
    QVERIFY(runLangcheck({kHtml, QStringLiteral("/dev/null"), deployment}, 3)
                .contains("it isn't a file"));
    QVERIFY(!QFileInfo(QStringLiteral("/dev/null")).isFile());
#endif
    // A folder is in the place of the first picture.
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("language-001.png")));
    QVERIFY(runLangcheck({kPictures, folder.path(), deployment}, 3)
                .contains("language-001.png\": it isn't"));
}

void tst_langcheck_page::failedWriteLeavesTheOldPage()
{
#ifdef Q_OS_WIN
    QSKIP("Windows has no limit for the size of files.");
#else
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("page.html"));
    runLangcheck({kHtml, file, QCoreApplication::applicationDirPath()}, 0);
    const QByteArray old = readFile(file);
    QVERIFY(!old.isEmpty());

    const QByteArray error =
        runLangcheck({kHtml, file, QCoreApplication::applicationDirPath()}, 3, onFullDisk());
    QVERIFY2(error.contains(QFile::encodeName(file) + "\": File too large"), error.constData());
    QCOMPARE(readFile(file), old);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
#endif
}

QTEST_MAIN(tst_langcheck_page)
#include "tst_langcheck_page.moc"
