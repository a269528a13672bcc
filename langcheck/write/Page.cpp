#include "langcheck/write/Page.h"

#include "lang/SourceTexts.h"
#include "langcheck/Texts.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFontInfo>
#include <QHash>
#include <QStyle>
#include <QSysInfo>
#include <QXmlStreamWriter>

namespace {

// Without quotation marks and "<", which the writer would escape. The browser shows 430 of the 702
// pixels of a dialog's picture on a narrow screen; the rest can be scrolled to.
const char *const kStyle = R"(
html { font: 16px/1.45 sans-serif; color: #1b1f24; background: #fff; }
body { max-width: 72rem; margin: 0 auto; padding: 1rem; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: 0 0 .5rem; }
h2 { font-size: 1.25rem; margin: 2rem 0 .5rem; border-bottom: 1px solid #c8ced6; }
h3 { font-size: 1.05rem; margin: 0 0 .4rem; }
a { color: #0b57a4; }
p { margin: .4rem 0; }
table { border-collapse: collapse; }
th, td { text-align: start; vertical-align: top; padding: .2rem .8rem .2rem 0; }
th { font-weight: 600; }
code { font: .9em/1.4 monospace; background: #f1f3f6; padding: .1em .3em; white-space: pre-wrap; }
.verdict { padding: .6rem .9rem; border-left: .5rem solid; font-size: 1.1rem; }
.good { border-color: #1a7f37; background: #e6f4ea; }
.warning { border-color: #9a6700; background: #fff6dc; }
.error { border-color: #c00000; background: #fdeaea; }
.finding, .language { break-inside: avoid; margin: 0 0 1rem; }
.finding { padding: .5rem .9rem; border-left-style: solid; border-left-width: .3rem; }
.finding h3 a { font-weight: normal; font-size: .85rem; margin-inline-start: 1rem; }
.finding:target { outline: 3px solid #0b57a4; }
.label { font-weight: 700; }
.none { color: #c00000; }
.windows { display: flex; flex-wrap: wrap; gap: .6rem; align-items: flex-start; }
.windows div { max-width: 100%; overflow-x: auto; }
.windows img { display: block; max-width: 100%; height: auto; }
details { margin: .4rem 0; }
@media (max-width: 720px) {
    .windows .dialog img { width: 163%; max-width: none; }
    .computer th, .computer td { display: block; padding-right: 0; }
    .computer td { padding-bottom: .5rem; }
}
@media print {
    html { font-size: 12px; }
    body { max-width: none; padding: 0; }
    h2, h3, p { break-after: avoid; }
    .windows .dialog img { width: auto; max-width: 100%; }
    .windows img { zoom: .62; }
    * { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
    a { color: inherit; text-decoration: none; }
}
)";

QString count(int number, const char *noun)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(noun)
        + QLatin1String(number == 1 ? "" : "s");
}

class Page
{
public:
    Page(const Report &report, const QImage &start, const QVector<LanguagePictures> &pictures)
        : m_report(report)
        , m_start(start)
        , m_pictures(pictures)
        , m_out(&m_bytes)
    {
    }

    QByteArray write()
    {
        m_out.writeDTD(QStringLiteral("<!DOCTYPE html>\n"));
        open("html");
        m_out.writeAttribute(QStringLiteral("lang"), QStringLiteral("en"));
        writeHead();
        open("body");
        element("h1", QStringLiteral("What the operator will see"));
        writeVerdict();
        writeFindings();
        writeStart();
        writeLanguages();
        writeComputer();
        close();
        close();
        m_out.writeEndDocument();
        return m_bytes;
    }

private:
    void writeHead()
    {
        open("head");
        m_out.writeEmptyElement(QStringLiteral("meta"));
        m_out.writeAttribute(QStringLiteral("charset"), QStringLiteral("utf-8"));
        meta("viewport", QStringLiteral("width=device-width, initial-scale=1"));
        meta("generator", programName());
        element("title", printable(QStringLiteral("langcheck: ") + m_report.applicationDir));
        // No script and no network, even if a text of the deployment was not escaped.
        m_out.writeEmptyElement(QStringLiteral("meta"));
        m_out.writeAttribute(QStringLiteral("http-equiv"),
                             QStringLiteral("Content-Security-Policy"));
        m_out.writeAttribute(
            QStringLiteral("content"),
            QStringLiteral("default-src 'none'; img-src data:; style-src 'unsafe-inline'"));
        element("style", QLatin1String(kStyle));
        close();
    }

    void writeVerdict()
    {
        const char *const classes[] = {"verdict good", "verdict warning", "verdict error"};
        const char *const verdicts[] = {
            "Nothing wrong was found.",
            "There are warnings, but the operator doesn't see any errors.",
            "There are errors that the operator will see."};
        open("p", classes[m_report.exitCode()]);
        span("label",
             QLatin1String(m_report.hostFails
                               ? "The host may not start, or may not load the plug-in."
                               : verdicts[m_report.exitCode()]));
        text(QLatin1Char(' ') + count(m_report.count(Finding::Error), "error")
             + QStringLiteral(", ") + count(m_report.count(Finding::Warning), "warning")
             + QStringLiteral(
                 ". Check below that the languages, their order and the default are as you "
                 "want them."));
        close();
        open("p");
        foreignText("code", m_report.applicationDir);
        if (!m_report.applicationDirReason.isEmpty())
            text(QStringLiteral(", ") + printable(m_report.applicationDirReason, kLongestFinding));
        text(QStringLiteral(", checked on ")
             + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm"))
             + QStringLiteral(" by ") + programName() + QStringLiteral(", the deployment checker"));
        close();
        open("p");
        link(QStringLiteral("findings"), QStringLiteral("Findings"));
        text(QStringLiteral(" \u00b7 "));
        link(QStringLiteral("start"), QStringLiteral("At start-up"));
        text(QStringLiteral(" \u00b7 "));
        link(QStringLiteral("languages"), QStringLiteral("Languages"));
        text(QStringLiteral(" \u00b7 "));
        link(QStringLiteral("computer"), QStringLiteral("Catalogue and computer"));
        close();
    }

    void writeFindings()
    {
        heading("findings", QStringLiteral("Findings"));
        if (m_report.findings.isEmpty())
            element("p", QStringLiteral("None."));
        QHash<QString, int> uses;
        for (const Finding &finding : m_report.findings) {
            QString anchor = finding.id();
            if (finding.line > 0)
                anchor += QStringLiteral("-line-%1").arg(finding.line);
            const int use = ++uses[anchor];
            writeFinding(finding, use == 1 ? anchor : QStringLiteral("%1-%2").arg(anchor).arg(use));
        }
    }

    void writeFinding(const Finding &finding, const QString &anchor)
    {
        const bool error = finding.severity == Finding::Error;
        open("div", error ? "finding error" : "finding warning");
        m_out.writeAttribute(QStringLiteral("id"), anchor);
        open("h3");
        text(error ? QStringLiteral("Error: ") : QStringLiteral("Warning: "));
        foreignText("bdi", finding.file);
        if (finding.line > 0)
            text(QStringLiteral(", line %1").arg(finding.line));
        text(QStringLiteral(" "));
        link(anchor, QLatin1Char('#') + anchor);
        close();
        if (!finding.quote.isEmpty()) {
            open("p");
            foreignText("code", finding.quote);
            close();
        }
        foreignText("p", sentence(finding.problem() + QStringLiteral("; ") + finding.effect()), {},
                    kLongestFinding);
        open("p");
        span("label", QStringLiteral("What to do: "));
        foreignText("bdi", sentence(finding.remedy()), {}, kLongestFinding);
        close();
        close();
    }

    void writeStart()
    {
        heading("start", QStringLiteral("At start-up"));
        if (m_report.hostFails) {
            element("p",
                    QStringLiteral("The host may not start, or may not load the plug-in, because "
                                   "of its DLLs. The rest of this page applies once it does."));
        } else if (m_report.boxes.isEmpty()) {
            element("p", QStringLiteral("No message box appears."));
        }
        for (const Box &box : m_report.boxes) {
            open("div", "language");
            open("p");
            text(QStringLiteral("Message box (%1): ").arg(box.icon));
            foreignText("bdi", box.title);
            text(QStringLiteral(": "));
            foreignText("bdi", box.text);
            close();
            open("div", "windows");
            picture("box", QStringLiteral("Message box at start-up"), box.picture);
            close();
            close();
        }
        open("div", "language");
        element("p",
                (m_report.hostFails ? QStringLiteral("Once it does, the dialog opens ")
                                    : QStringLiteral("The dialog then opens "))
                    + (m_report.listed.isEmpty() ? QStringLiteral("with an empty list:")
                                                 : QStringLiteral("like this:")));
        open("div", "windows");
        picture("dialog", QStringLiteral("The dialog at start-up"), m_start);
        close();
        close();
    }

    void writeLanguages()
    {
        heading("languages", QStringLiteral("Languages"));
        element("p",
                QStringLiteral(
                    "This shows the dialog in each language of the operator's list, in the "
                    "list's order, and the message boxes after a successful and a failed "
                    "change, with this computer's fonts. The title bars are only indicated, "
                    "and the empty lower part of the dialog is left out. Missing and clipped "
                    "texts are marked."));
        if (m_pictures.size() < m_report.listed.size()) {
            element("p",
                    QStringLiteral("The list has %1; only the first %2 are drawn.")
                        .arg(count(m_report.listed.size(), "language"))
                        .arg(m_pictures.size()));
        }
        if (m_report.listed.isEmpty())
            element("p", QStringLiteral("None; the operator's list is empty."));
        for (int i = 0; i < m_report.listed.size(); ++i)
            writeLanguage(i);
    }

    void writeLanguage(int index)
    {
        const LangEntry &language = m_report.listed.at(index);
        open("div", "language");
        m_out.writeAttribute(QStringLiteral("id"), QStringLiteral("language-%1").arg(language.id));
        const bool drawn = index < m_pictures.size();
        const QString tag = drawn ? m_pictures.at(index).tag : QString();
        open("h3");
        text(QStringLiteral("%1 ").arg(language.id));
        foreignText("bdi", language.name, tag);
        if (index == m_report.selected)
            text(QStringLiteral(" (selected)"));
        close();
        if (drawn)
            writePictures(m_pictures.at(index));
        close();
    }

    void writePictures(const LanguagePictures &pictures)
    {
        open("p");
        foreignText("bdi", m_report.relative(pictures.language.qmPath));
        if (pictures.fallback)
            text(QStringLiteral(" doesn't exist"));
        if (pictures.translation.isEmpty())
            span("none", QStringLiteral("; no translation is loaded, so all texts are empty"));
        else if (pictures.fallback)
            text(QStringLiteral("; the texts are those of the fallback, Lang/chs/Zendel.qm"));
        close();
        open("div", "windows");
        picture("dialog", QStringLiteral("The dialog"), pictures.dialog);
        picture("box", QStringLiteral("Message box after a successful change"), pictures.success);
        picture("box", QStringLiteral("Message box after a failed change"), pictures.failure);
        close();
        open("details");
        element("summary", QStringLiteral("Texts and fonts"));
        open("table");
        for (int i = 0; i < pictures.texts.size(); ++i) {
            open("tr");
            element("th", QLatin1String(kSourceTexts[i].text));
            if (pictures.texts.at(i).isEmpty())
                element("td", QStringLiteral("missing"), "none");
            else
                foreignText("td", pictures.texts.at(i), pictures.tag);
            close();
        }
        open("tr");
        element("th", QStringLiteral("Fonts"));
        element("td", printable(pictures.fonts.join(QStringLiteral(", "))));
        close();
        close();
        close();
    }

    void writeComputer()
    {
        heading("computer", QStringLiteral("Catalogue and computer"));
        open("table", "computer");
        row("Folder", m_report.applicationDir);
        row("Catalogue",
            m_report.encoding.isEmpty() ? QStringLiteral("Lang/Lang.ini, can't be opened")
                                        : QStringLiteral("Lang/Lang.ini, read as %1 because %2")
                                              .arg(m_report.encoding)
                                              .arg(m_report.encodingReason));
        row("Default", QString::number(m_report.defaultLangId));
        row("Translation",
            m_report.translation.isEmpty() ? QStringLiteral("none; all texts are empty")
                                           : m_report.relative(m_report.translation)
                    + (m_report.fallback ? QStringLiteral(", the fallback") : QString()));
        if (m_report.hostQt)
            row("Host\u2019s Qt", m_report.hostQt->description());
        row("Checked by", programName() + QStringLiteral(", with Qt ") + QLatin1String(qVersion()));
        row("System", QSysInfo::prettyProductName());
        const QFont font = QApplication::font();
        row("Font and style",
            QStringLiteral("%1, %2 points; %3")
                .arg(QFontInfo(font).family())
                .arg(font.pointSize())
                .arg(QApplication::style()->objectName()));
        QStringList fonts;
        for (const LanguagePictures &pictures : m_pictures)
            fonts += pictures.fonts;
        fonts.removeDuplicates();
        fonts.sort();
        row("Fonts used", fonts.join(QStringLiteral(", ")));
        close();
    }

    void row(const char *header, const QString &value)
    {
        open("tr");
        element("th", QString::fromUtf8(header));
        foreignText("td", value);
        close();
    }

    void meta(const char *name, const QString &content)
    {
        m_out.writeEmptyElement(QStringLiteral("meta"));
        m_out.writeAttribute(QStringLiteral("name"), QLatin1String(name));
        m_out.writeAttribute(QStringLiteral("content"), content);
    }

    void heading(const char *anchor, const QString &title)
    {
        open("h2");
        m_out.writeAttribute(QStringLiteral("id"), QLatin1String(anchor));
        text(title);
        close();
    }

    void picture(const char *className, const QString &description, const QImage &image)
    {
        const QSize size = image.size() / image.devicePixelRatio();
        open("div", className);
        m_out.writeEmptyElement(QStringLiteral("img"));
        m_out.writeAttribute(QStringLiteral("alt"), description);
        m_out.writeAttribute(QStringLiteral("width"), QString::number(size.width()));
        m_out.writeAttribute(QStringLiteral("height"), QString::number(size.height()));
        m_out.writeAttribute(QStringLiteral("src"),
                             QStringLiteral("data:image/png;base64,")
                                 + QString::fromLatin1(toPng(image).toBase64()));
        close();
    }

    void link(const QString &anchor, const QString &title)
    {
        open("a");
        m_out.writeAttribute(QStringLiteral("href"), QLatin1Char('#') + anchor);
        text(title);
        close();
    }

    void span(const char *className, const QString &content)
    {
        element("span", content, className);
    }

    /// Writes a text of the deployment, in its own direction.
    void foreignText(const char *name, const QString &content, const QString &tag = {},
                     int most = kLongestText)
    {
        open(name);
        m_out.writeAttribute(QStringLiteral("dir"), QStringLiteral("auto"));
        if (!tag.isEmpty())
            m_out.writeAttribute(QStringLiteral("lang"), tag);
        text(printable(content, most));
        close();
    }

    void element(const char *name, const QString &content, const char *className = nullptr)
    {
        open(name, className);
        text(content);
        close();
    }

    void open(const char *name, const char *className = nullptr)
    {
        m_out.writeStartElement(QLatin1String(name));
        if (className)
            m_out.writeAttribute(QStringLiteral("class"), QLatin1String(className));
    }

    void text(const QString &content) { m_out.writeCharacters(content); }

    void close()
    {
        text({}); // Otherwise an element without contents would be closed in its start tag.
        m_out.writeEndElement();
    }

    static QString programName()
    {
        return QCoreApplication::applicationName() + QLatin1Char(' ')
            + QCoreApplication::applicationVersion();
    }

    static QString sentence(const QString &text)
    {
        return text.left(1).toUpper() + text.mid(1) + QLatin1Char('.');
    }

    const Report &m_report;
    const QImage &m_start;
    const QVector<LanguagePictures> &m_pictures;
    QByteArray m_bytes;
    QXmlStreamWriter m_out;
};

} // namespace

QByteArray makePage(const Report &report, const QImage &start,
                    const QVector<LanguagePictures> &pictures)
{
    return Page(report, start, pictures).write();
}
