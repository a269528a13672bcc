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

/// Counts how often a window appears.
class ExposureCounter : public QObject
{
public:
    ExposureCounter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *const widget = qobject_cast<QWidget *>(watched);
        const bool isShown = event->type() == QEvent::Show && widget && widget->isWindow()
            && !widget->testAttribute(Qt::WA_DontShowOnScreen);
        count += isShown || event->type() == QEvent::Expose ? 1 : 0;
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
    void findingsOfAKindShareABox();
    void manyLinesAreFolded();
    void overviewListsAllLanguages();
    void findingsLeadToTheirLanguages();
    void linesOfTheCatalogueAreShown();
    void onlyTheFirstLinesAreShown();
    void sectionsAreLandmarks();
    void picturesAreDescribed_data();
    void picturesAreDescribed();
    void openListIsShown_data();
    void openListIsShown();
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
    const QString file = QStringLiteral("Lang/a & b/Zendel.qm");
    for (const FindingDescription &kind : kFindings) {
        report.findings += Finding::make(kind.kind, file, 7, values);
        report.findings.last().quote = QStringLiteral("line of ") + QLatin1String(kind.id);
        report.findings += Finding::make(kind.kind, file, 7, values);
        report.findings += Finding::make(kind.kind, QStringLiteral("b"), 0, values);
    }
    const QByteArray bytes = validPage(report);
    const CheckedPage::Contents contents = CheckedPage::read(bytes);
    for (const FindingDescription &kind : kFindings) {
        const QString id = QLatin1String(kind.id);
        // Those of two findings and of their box
        QCOMPARE(contents.anchors.filter(id + QStringLiteral("-a-_26-b")).size(), 3);
        QCOMPARE(contents.anchors
                     .filter(QRegularExpression(QLatin1Char('^') + id + QStringLiteral("-b")))
                     .size(),
                 1);
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

/// Lists the untranslated texts in one box, with what they have in common.
void tst_langcheck_page::findingsOfAKindShareABox()
{
    Report report = check();
    for (const SourceText &source : kSourceTexts) {
        report.findings +=
            Finding::make(FindingKind::TextBlank, QStringLiteral("Lang/second/Zendel.qm"), 0,
                          {QLatin1String(source.text), QLatin1String(source.context)});
    }
    const QByteArray bytes = validPage(report);
    QCOMPARE(bytes.count("<article class=\"finding"), 1);
    QVERIFY(bytes.contains("</bdi>, 8 times <a href=\"#text-blank-second\">"));
    QCOMPARE(bytes.count("he operator sees nothing"), 1);
    QCOMPARE(bytes.count(">What to do: <"), 1);
    for (const char *const text : {"Language", "Settings", "Language_3A", "Change-successful_21"})
        QVERIFY(bytes.contains(QByteArray("<li id=\"text-blank-second-") + text + "\">"));

    // Another file, another severity, and another remedy
    report.findings += report.findings.first();
    report.findings.last().file = QStringLiteral("Lang/first/Zendel.qm");
    report.findings += report.findings.first();
    report.findings.last().severity = Finding::Warning;
    QCOMPARE(validPage(report).count("<article class=\"finding"), 3);
    Deployment::installTwoLanguages();
    QVERIFY(QDir(Deployment::path(QStringLiteral("Lang/first"))).removeRecursively());
    Deployment::writeCatalogue(GoodDeployment::catalogueWith("=second", "=CON"));
    report = check();
    const auto isMissing = [](const Finding &finding) {
        return finding.kind == FindingKind::FolderMissing;
    };
    QCOMPARE(std::count_if(report.findings.begin(), report.findings.end(), isMissing), 2);
    QVERIFY(report.findings.first().remedy() != report.findings.at(1).remedy());
    const QStringList texts = CheckedPage::read(validPage(report)).texts;
    for (const Finding &finding : qAsConst(report.findings))
        QCOMPARE(texts.filter(finding.remedy().mid(1)).size(), 1);
}

/// Shows the lines of one finding, the first 20 at once.
void tst_langcheck_page::manyLinesAreFolded()
{
    QByteArray catalogue = kCatalogue;
    for (int i = 0; i < 25; ++i)
        catalogue += "LANG1_COLOUR" + QByteArray::number(i) + "=red\n";
    Deployment::writeCatalogue(catalogue);
    const QByteArray bytes = validPage(check());
    QCOMPARE(bytes.count("<article class=\"finding"), 1);
    QVERIFY(bytes.contains("</bdi>, lines 9 to 33 <a"));
    const int first = bytes.indexOf(">LANG1_COLOUR0=red<");
    const int folded = bytes.indexOf("<details><summary>5 lines more</summary>");
    QVERIFY(first > 0 && folded > bytes.indexOf(">LANG1_COLOUR19=red<"));
    QVERIFY(folded < bytes.indexOf(">LANG1_COLOUR20=red<"));
}

void tst_langcheck_page::overviewListsAllLanguages()
{
    Deployment::installTranslation(QStringLiteral("left over"), QStringLiteral("second"));
    Deployment::writeCatalogue(QByteArray(kCatalogue)
                               + "LANG5_NAME=Five\nLANG5_SHOW=0\n"
                                 "LANG258_NAME=Big\nLANG258_FOLDER=none\nLANG258_SHOW=1\n"
                                 "LANG3_NAME=Three\nLANG3_FOLDER=empty\nLANG3_SHOW=1\n");
    QVERIFY(QDir().mkdir(Deployment::path(QStringLiteral("Lang/empty"))));
    QByteArray page = validPage(check());
    page.truncate(page.indexOf("id=\"findings\""));
    // The cells of each row, without the elements in them
    QStringList rows;
    const QStringList parts =
        QString::fromUtf8(page).split(QStringLiteral("<tr id=\"overview-")).mid(1);
    for (QString row : parts) {
        row.truncate(row.indexOf(QStringLiteral("</tr>")));
        row = row.mid(row.indexOf(QLatin1Char('>')) + 1);
        row.replace(QStringLiteral("</t"), QStringLiteral("|<"));
        rows += row.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
    }
    const QStringList expected {
        QStringLiteral("1|One|first|1|shown, default, selected at start-up|no findings|"),
        QStringLiteral("2|Two|second|2|shown|1 error: same-machine-number|"),
        QStringLiteral("3|Three|empty|3|shown, translation missing|1 error: qm-missing|"),
        QStringLiteral("258|Big|none|2|shown, folder missing|"
                       "2 errors: same-machine-number, folder-missing|"),
        QStringLiteral("5|Five||5|hidden, no folder|no findings|"),
    };
    for (const QString &row : expected)
        QVERIFY2(rows.contains(row), qPrintable(rows.join(QLatin1Char('\n'))));
    QCOMPARE(rows.size(), expected.size());
    QVERIFY(page.contains("<li dir=\"auto\">left over</li>"));
    QVERIFY(!page.contains("isn't in the catalogue"));

    Deployment::writeCatalogue(catalogueWith("DEFAULT=1", "DEFAULT=77"));
    QVERIFY(validPage(check()).contains("The default, language 77, isn't in the catalogue."));
}

/// Links findings in a file and in a line to the languages and back.
void tst_langcheck_page::findingsLeadToTheirLanguages()
{
    Deployment::installTranslation(QStringLiteral("second"), QStringLiteral("one_text"));
    Deployment::writeCatalogue(QByteArray(kCatalogue) + "LANG2_COLOUR=red\nLANG7_SHOW=0\n");
    const QByteArray bytes = validPage(check());
    const QByteArray two = "<a href=\"#language-2\"><bdi dir=\"auto\" lang=\"en\">Two</bdi></a>";
    QCOMPARE(bytes.count(">Language: </span>" + two + "</p></article>"), 2);
    const QByteArray back =
        "1 error, 1 warning: <a href=\"#text-missing-second\">text-missing</a>, "
        "<a href=\"#unknown-key-line-9\">unknown-key</a>";
    QCOMPARE(bytes.count(back), 2); // In the overview, and above the pictures
    const int pictures = bytes.indexOf("<article class=\"language\" id=\"language-2\">");
    QVERIFY(pictures > 0 && bytes.indexOf(back, pictures) > 0);
    // In the overview
    QVERIFY(bytes.contains("<td data-label=\" \">" + two));
    // Languages without a key that is read have no entry.
    Deployment::writeCatalogue(QByteArray(kCatalogue)
                               + "+LANG7_NAME=x\n+LANG7_FOLDER=x\n+LANG7_SHOW=1\n+LANG8_SHOW=1\n");
    QVERIFY(validPage(check()).contains(">Languages: </span>7, 8</p>"));
}

void tst_langcheck_page::linesOfTheCatalogueAreShown()
{
    Deployment::writeCatalogue(catalogueWith("LANG2_SHOW=1", "LANG2_SHOW=yes\n\n; the end"));
    QByteArray bytes = validPage(check());
    const int section = bytes.indexOf("<h2 id=\"lines\">");
    QVERIFY(section > 0);
    QVERIFY(bytes.left(section).contains("<p><a href=\"#line-8\">Line 8</a> <code"));
    bytes = bytes.mid(section);
    QVERIFY(bytes.contains("<tr id=\"line-3\"><th scope=\"row\">3</th>"
                           "<td><code dir=\"auto\">LANG1_NAME=One</code></td></tr>"));
    QVERIFY(bytes.contains("<a href=\"#show-number-line-8\">show-number</a></p></td></tr>"));
    QVERIFY(bytes.contains("<th scope=\"row\">9</th><td></td>"));
    QVERIFY(bytes.contains(">; the end<"));
    QVERIFY(bytes.contains("<h2 id=\"computer\">"));

    // A line break may be part of a damaged character.
    Report report = check();
    report.lines.removeAt(3);
    report.lineNumbers.remove(3);
    QVERIFY(validPage(report).contains("<tr id=\"line-3\"><th scope=\"row\">3\u20134</th>"));

    QVERIFY(QFile::remove(Deployment::path(QStringLiteral("Lang/Lang.ini"))));
    QVERIFY(!validPage(check()).contains("#lines"));
}

void tst_langcheck_page::onlyTheFirstLinesAreShown()
{
    const QByteArray limit = ">Only the first 2000 lines are shown.<";
    Deployment::writeCatalogue(kCatalogue + QByteArray(";\n").repeated(1000));
    QVERIFY(!validPage(check()).contains(limit));
    Deployment::writeCatalogue(kCatalogue + QByteArray(";\n").repeated(2000) + "text\n");
    const QByteArray bytes = validPage(check());
    QVERIFY(bytes.contains(limit));
    QVERIFY(bytes.contains("<p>Line 2009 <code dir=\"auto\">text</code></p>"));
}

void tst_langcheck_page::sectionsAreLandmarks()
{
    const QByteArray bytes = validPage(check());
    for (const char *const element :
         {"<header><h1>", "<nav aria-label=\"Sections\">", "</header><main><section "})
        QVERIFY2(bytes.contains(element), element);
    const QStringList titles = {QStringLiteral("overview"), QStringLiteral("findings"),
                                QStringLiteral("start"),    QStringLiteral("languages"),
                                QStringLiteral("lines"),    QStringLiteral("computer")};
    int last = 0;
    for (const QString &title : titles) {
        const QString start = QStringLiteral("<section aria-labelledby=\"%1\"><h2 id=\"%1\">");
        const int position = bytes.indexOf(start.arg(title).toUtf8());
        QVERIFY2(position > last, qPrintable(title));
        QVERIFY(bytes.contains("<a href=\"#" + title.toUtf8() + "\">"));
        last = position;
    }
}

void tst_langcheck_page::picturesAreDescribed_data()
{
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("description");

    const auto row = [](const char *name, const char *translation, const char *description) {
        QTest::newRow(name) << QString::fromLatin1(translation) << QString::fromLatin1(description);
    };
    row("good", "first", "The dialog in Two");
    row("missing", "one_text", "The dialog in Two; missing: Language:, Language, Settings");
    row("clipped", "long_texts", "The dialog in Two; clipped: Change");
    row("box", "one_text",
        "The message box after a failed change in Two; missing: the title, the text");
}

void tst_langcheck_page::picturesAreDescribed()
{
    QFETCH(QString, translation);
    QFETCH(QString, description);

    Deployment::installTranslation(QStringLiteral("second"), translation);
    QVERIFY2(validPage(check()).contains("alt=\"" + description.toUtf8() + '"'),
             qPrintable(description));
}

void tst_langcheck_page::openListIsShown_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("no language") << 0;
    QTest::newRow("some languages") << 5;
    QTest::newRow("more than the screen holds") << 200;
}

void tst_langcheck_page::openListIsShown()
{
    QFETCH(int, count);

    QByteArray catalogue = "[LANG_MGR]\nDEFAULT=3\n";
    for (int i = 1; i <= count; ++i) {
        catalogue += QByteArray("LANG%_NAME=Name %\nLANG%_FOLDER=first\nLANG%_SHOW=1\n")
                         .replace('%', QByteArray::number(i));
    }
    Deployment::writeCatalogue(catalogue);
    const Report report = check();
    const ExposureCounter exposures;
    const StartPictures start = drawStart(report);
    QCoreApplication::processEvents();
    QCOMPARE(exposures.count, 0);
    const QByteArray bytes = makePage(report, start, {});
    CheckedPage::validate(bytes);
    QCOMPARE(start.list.isNull(), count == 0);
    QCOMPARE(bytes.contains("list, when opened"), count > 0);
    if (count == 0)
        return;
    QVERIFY(!isBlank(start.list));
    QVERIFY(start.list.height() >= 10 * start.rows);
    QVERIFY(start.list.width() >= 150);
    if (count < 10) {
        QCOMPARE(start.rows, count);
        QVERIFY(bytes.contains("alt=\"The open list: Name 1, Name 2, Name 3, Name 4, Name 5\""));
    } else {
        QVERIFY(start.rows >= 10 && start.rows < 100);
        QVERIFY(bytes.contains(QStringLiteral("Its list, when opened, shows %1 of the 200 "
                                              "languages. The operator scrolls to the others:")
                                   .arg(start.rows)
                                   .toUtf8()));
    }
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
    row("other direction", QStringLiteral("\u202Eabc\u2066"),
        QStringLiteral("<U+202E>abc<U+2066>"));
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
