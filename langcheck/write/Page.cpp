#include "langcheck/write/Page.h"

#include "lang/SourceTexts.h"
#include "langcheck/draw/WindowPicture.h"
#include "langcheck/write/FindingGroups.h"
#include "langcheck/write/Html.h"
#include "langcheck/write/PageStyle.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFontInfo>
#include <QHash>
#include <QStyle>
#include <QSysInfo>

#include <algorithm>
#include <iterator>

namespace {

const int kMostLinks = 30;  // In a finding's list of languages
const int kMostQuotes = 20; // Before the others are folded

QString programName()
{
    return QCoreApplication::applicationName() + QLatin1Char(' ')
        + QCoreApplication::applicationVersion();
}

QString sentence(const QString &text)
{
    return text.left(1).toUpper() + text.mid(1) + QLatin1Char('.');
}

QString lineAnchor(int line)
{
    return QStringLiteral("line-%1").arg(line);
}

class Page
{
public:
    Page(const Report &report, const StartPictures &start,
         const QVector<LanguagePictures> &pictures)
        : m_report(report)
        , m_start(start)
        , m_pictures(pictures)
        , m_groups(report)
    {
        for (int i = 0; i < report.lines.size(); ++i)
            m_lines.insert(report.lineNumbers.at(i), report.lines.at(i));
        for (const HiddenLanguage &language : report.hidden)
            m_languages.insert(language.number, {language.name, {}, rowAnchor(language.number)});
        for (int i = 0; i < report.listed.size(); ++i) {
            const LangEntry &language = report.listed.at(i);
            const QString tag = i < pictures.size() ? pictures.at(i).tag : QString();
            m_languages.insert(language.id, {language.name, tag, pictureAnchor(language.id)});
        }
    }

    QByteArray write()
    {
        writeHead();
        m_out.open("body");
        m_out.open("header");
        m_out.element("h1", QStringLiteral("What the operator will see"));
        writeVerdict();
        writeNavigation();
        m_out.close();
        m_out.open("main");
        openSection("overview", QStringLiteral("Overview"));
        writeOverview();
        m_out.close();
        openSection("findings", QStringLiteral("Findings"));
        writeFindings();
        m_out.close();
        openSection("start", QStringLiteral("At start-up"));
        writeStart();
        m_out.close();
        openSection("languages", QStringLiteral("Languages"));
        writeLanguages();
        m_out.close();
        if (!m_report.lines.isEmpty()) {
            openSection("lines", QStringLiteral("Lang/Lang.ini, line by line"));
            writeLines();
            m_out.close();
        }
        openSection("computer", QStringLiteral("Catalogue and computer"));
        writeComputer();
        m_out.close();
        m_out.close();
        m_out.close();
        return m_out.finish();
    }

private:
    /// How a language of the catalogue is referred to
    struct Reference
    {
        QString name;
        QString tag; ///< Its name in HTML, if known
        QString anchor;
    };

    void writeHead()
    {
        m_out.open("head");
        m_out.openVoid("meta");
        m_out.attribute("charset", QStringLiteral("utf-8"));
        m_out.meta("viewport", QStringLiteral("width=device-width, initial-scale=1"));
        m_out.meta("generator", programName());
        m_out.element("title", printable(QStringLiteral("langcheck: ") + m_report.applicationDir));
        // No script and no network, even if a text of the deployment was not escaped.
        m_out.openVoid("meta");
        m_out.attribute("http-equiv", QStringLiteral("Content-Security-Policy"));
        m_out.attribute("content",
                        QStringLiteral("default-src 'none'; img-src data:; "
                                       "style-src 'unsafe-inline'"));
        m_out.element("style", QLatin1String(kPageStyle));
        m_out.close();
    }

    void writeVerdict()
    {
        const char *const classes[] = {"verdict good", "verdict warning", "verdict error"};
        const char *const verdicts[] = {
            "Nothing wrong was found.",
            "There are warnings, but the operator doesn't see any errors.",
            "There are errors that the operator will see."};
        m_out.open("p", classes[m_report.exitCode()]);
        span("label",
             QLatin1String(m_report.hostFails
                               ? "The host may not start, or may not load the plug-in."
                               : verdicts[m_report.exitCode()]));
        m_out.text(QLatin1Char(' ') + countText(m_report.count(Finding::Error), "error")
                   + QStringLiteral(", ") + countText(m_report.count(Finding::Warning), "warning")
                   + QStringLiteral(". Check below that the languages, their order and the "
                                    "default are as you want them."));
        m_out.close();
        m_out.open("p");
        m_out.foreignText("code", m_report.applicationDir);
        if (!m_report.applicationDirReason.isEmpty()) {
            m_out.text(QStringLiteral(", ")
                       + printable(m_report.applicationDirReason, kLongestFinding));
        }
        m_out.text(QStringLiteral(", checked on ")
                   + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm"))
                   + QStringLiteral(" by ") + programName()
                   + QStringLiteral(", the deployment checker"));
        m_out.close();
    }

    void writeNavigation()
    {
        m_out.open("nav");
        m_out.attribute("aria-label", QStringLiteral("Sections"));
        m_out.open("ul");
        const auto item = [this](const char *anchor, const char *title) {
            m_out.open("li");
            m_out.link(QLatin1String(anchor), QLatin1String(title));
            m_out.close();
        };
        item("overview", "Overview");
        item("findings", "Findings");
        item("start", "At start-up");
        item("languages", "Languages");
        if (!m_report.lines.isEmpty())
            item("lines", "Line by line");
        item("computer", "Catalogue and computer");
        m_out.close();
        m_out.close();
    }

    void writeOverview()
    {
        if (m_languages.isEmpty()) {
            m_out.element("p", QStringLiteral("The catalogue has no languages."));
        } else {
            m_out.open("table", "rows languages");
            m_out.open("thead");
            m_out.open("tr");
            for (const char *const title :
                 {"Number", "Name", "Folder", "Sent to the machine", "Status", "Findings"})
                columnHeader(title);
            m_out.close();
            m_out.close();
            m_out.open("tbody");
            for (int i = 0; i < m_report.listed.size(); ++i) {
                const LangEntry &language = m_report.listed.at(i);
                writeOverviewRow(language.id, language.folder, shownStatus(i));
            }
            for (const HiddenLanguage &language : m_report.hidden)
                writeOverviewRow(language.number, language.folder, hiddenStatus(language));
            m_out.close();
            m_out.close();
        }
        if (!m_languages.contains(m_report.defaultLangId)) {
            m_out.element("p",
                          QStringLiteral("The default, language %1, isn't in the catalogue.")
                              .arg(m_report.defaultLangId));
        }
        if (!m_report.unusedFolders.isEmpty()) {
            m_out.element("p",
                          QStringLiteral("Folders in Lang with a translation that no language of "
                                         "the catalogue uses:"));
            m_out.open("ul", "folders");
            for (const QString &folder : m_report.unusedFolders)
                m_out.foreignText("li", folder);
            m_out.close();
        }
    }

    QString shownStatus(int index) const
    {
        const LangEntry &language = m_report.listed.at(index);
        QStringList result {QStringLiteral("shown")};
        if (language.id == m_report.defaultLangId)
            result += QStringLiteral("default");
        if (index == m_report.selected)
            result += QStringLiteral("selected at start-up");
        const QFileInfo file(language.qmPath);
        if (!file.dir().exists())
            result += QStringLiteral("folder missing");
        else if (!file.exists())
            result += QStringLiteral("translation missing");
        return result.join(QStringLiteral(", "));
    }

    QString hiddenStatus(const HiddenLanguage &language) const
    {
        QStringList result {QStringLiteral("hidden")};
        if (language.number == m_report.defaultLangId)
            result += QStringLiteral("default");
        if (language.name.isEmpty())
            result += QStringLiteral("no name");
        if (language.folder.isEmpty())
            result += QStringLiteral("no folder");
        return result.join(QStringLiteral(", "));
    }

    void writeOverviewRow(int number, const QString &folder, const QString &status)
    {
        m_out.open("tr", nullptr, rowAnchor(number));
        m_out.open("th");
        m_out.attribute("scope", QStringLiteral("row"));
        m_out.text(QString::number(number));
        m_out.close();
        openCell(" ");
        const Reference language = m_languages.value(number);
        if (language.anchor != rowAnchor(number))
            linkLanguage(number);
        else if (!language.name.isEmpty())
            m_out.foreignText("bdi", language.name);
        m_out.close();
        openCell(", folder ");
        if (!folder.isEmpty())
            m_out.foreignText("bdi", folder);
        m_out.close();
        openCell(", machine\u2019s number ");
        m_out.text(QString::number(number & 0xFF));
        m_out.close();
        openCell(", ");
        m_out.text(status);
        m_out.close();
        openCell(". ");
        linkFindings(m_groups.ofLanguage.value(number), QStringLiteral("no findings"));
        m_out.close();
        m_out.close();
    }

    /// Links to findings, with their numbers.
    void linkFindings(const QVector<int> &findings, const QString &none = {})
    {
        if (findings.isEmpty()) {
            m_out.text(none);
            return;
        }
        const auto isError = [this](int finding) {
            return m_report.findings.at(finding).severity == Finding::Error;
        };
        const auto errors =
            static_cast<int>(std::count_if(findings.begin(), findings.end(), isError));
        const int warnings = findings.size() - errors;
        QStringList numbers;
        if (errors > 0)
            numbers += countText(errors, "error");
        if (warnings > 0)
            numbers += countText(warnings, "warning");
        m_out.text(numbers.join(QStringLiteral(", ")) + QStringLiteral(": "));
        QStringList ids;
        for (const int index : findings) {
            const QString id = m_report.findings.at(index).id();
            if (ids.contains(id)) // The first leads to the box with all of them.
                continue;
            if (!ids.isEmpty())
                m_out.text(QStringLiteral(", "));
            m_out.link(m_groups.anchors.at(index), id);
            ids += id;
        }
    }

    void linkLanguage(int number)
    {
        const Reference language = m_languages.value(number);
        m_out.openLink(language.anchor);
        const QVector<uint> characters = language.name.toUcs4();
        if (std::all_of(characters.begin(), characters.end(), isInvisible))
            m_out.text(QStringLiteral("language %1").arg(number));
        else
            m_out.foreignText("bdi", language.name, language.tag);
        m_out.close();
    }

    void writeFindings()
    {
        if (m_report.findings.isEmpty())
            m_out.element("p", QStringLiteral("None."));
        for (const FindingGroup &group : m_groups.groups)
            writeGroup(group);
    }

    void writeGroup(const FindingGroup &group)
    {
        const auto sameInAll = [this, &group](QString (Finding::*part)() const) {
            const QString first = (finding(group.findings.first()).*part)();
            return std::all_of(group.findings.begin(), group.findings.end(),
                               [&](int index) { return (finding(index).*part)() == first; });
        };
        const Finding &first = finding(group.findings.first());
        const bool several = group.findings.size() > 1;
        const bool sameProblem = sameInAll(&Finding::problem);
        const bool sameEffect = sameInAll(&Finding::effect);
        const bool sameRemedy = sameInAll(&Finding::remedy);

        const bool error = first.severity == Finding::Error;
        m_out.open("article", error ? "finding error" : "finding warning", group.anchor);
        m_out.open("h3");
        m_out.text(error ? QStringLiteral("Error: ") : QStringLiteral("Warning: "));
        m_out.foreignText("bdi", first.file);
        if (several)
            m_out.text(QStringLiteral(", %1 times").arg(group.findings.size()));
        else if (!linesOf(first).isEmpty())
            m_out.text(QStringLiteral(", ") + linesText(linesOf(first)));
        m_out.text(QStringLiteral(" "));
        m_out.link(group.anchor, QLatin1Char('#') + group.anchor);
        m_out.close();
        if (!several)
            writeQuotes(first);
        if (sameProblem)
            explain(sameEffect ? first.problem() + QStringLiteral("; ") + first.effect()
                               : first.problem());
        if (several) {
            m_out.open("ul");
            for (const int index : group.findings) {
                const Finding &one = finding(index);
                m_out.open("li", nullptr, m_groups.anchors.at(index));
                writeQuotes(one);
                QStringList own;
                if (!sameProblem)
                    own += one.problem();
                if (!sameEffect)
                    own += one.effect();
                if (!own.isEmpty())
                    explain(own.join(QStringLiteral("; ")));
                if (!sameRemedy)
                    explain(one.remedy(), "What to do: ");
                m_out.close();
            }
            m_out.close();
        }
        if (!sameProblem && sameEffect)
            explain(first.effect(), "Effect: ");
        if (sameRemedy)
            explain(first.remedy(), "What to do: ");
        writeLanguagesOf(group);
        m_out.close();
    }

    /// Writes the lines that a finding is about, folded if they are many.
    void writeQuotes(const Finding &finding)
    {
        const QVector<int> lines = linesOf(finding);
        for (int i = 0; i < lines.size(); ++i) {
            if (i == kMostQuotes) {
                m_out.open("details");
                m_out.element("summary",
                              QStringLiteral("%1 more").arg(countText(lines.size() - i, "line")));
            }
            writeQuote(finding, lines.at(i));
        }
        if (lines.size() > kMostQuotes)
            m_out.close();
    }

    void writeQuote(const Finding &finding, int line)
    {
        m_out.open("p");
        if (m_lines.contains(line) && finding.file == kCatalogueFile)
            m_out.link(lineAnchor(line), QStringLiteral("Line %1").arg(line));
        else
            m_out.text(QStringLiteral("Line %1").arg(line));
        const QString quote = line == finding.line ? finding.quote : m_lines.value(line);
        if (!quote.isEmpty()) {
            m_out.text(QStringLiteral(" "));
            m_out.foreignText("code", quote);
        }
        m_out.close();
    }

    void explain(const QString &text, const char *label = nullptr)
    {
        if (!label) {
            m_out.foreignText("p", sentence(text), {}, kLongestFinding);
            return;
        }
        m_out.open("p");
        span("label", QLatin1String(label));
        m_out.foreignText("bdi", sentence(text), {}, kLongestFinding);
        m_out.close();
    }

    void writeLanguagesOf(const FindingGroup &group)
    {
        QVector<int> numbers;
        for (const int index : group.findings) {
            for (const int number : m_groups.languages.at(index)) {
                if (!numbers.contains(number))
                    numbers += number;
            }
        }
        if (numbers.isEmpty())
            return;
        m_out.open("p");
        span("label",
             numbers.size() == 1 ? QStringLiteral("Language: ") : QStringLiteral("Languages: "));
        for (int i = 0; i < std::min(numbers.size(), kMostLinks); ++i) {
            if (i > 0)
                m_out.text(QStringLiteral(", "));
            if (m_languages.contains(numbers.at(i)))
                linkLanguage(numbers.at(i));
            else
                m_out.text(QString::number(numbers.at(i)));
        }
        if (numbers.size() > kMostLinks)
            m_out.text(QStringLiteral(" and %1 more").arg(numbers.size() - kMostLinks));
        m_out.close();
    }

    void writeStart()
    {
        if (m_report.hostFails) {
            m_out.element("p",
                          QStringLiteral("The host may not start, or may not load the plug-in, "
                                         "because of its DLLs. The rest of this page applies "
                                         "once it does."));
        } else if (m_report.boxes.isEmpty()) {
            m_out.element("p", QStringLiteral("No message box appears."));
        }
        for (const Box &box : m_report.boxes) {
            m_out.open("div", "language");
            m_out.open("p");
            m_out.text(QStringLiteral("Message box (%1): ").arg(box.icon));
            m_out.foreignText("bdi", box.title);
            m_out.text(QStringLiteral(": "));
            m_out.foreignText("bdi", box.text);
            m_out.close();
            m_out.open("div", "windows");
            picture(QStringLiteral("The message box at start-up: ") + box.text, box.picture);
            m_out.close();
            m_out.close();
        }
        m_out.open("div", "language");
        m_out.element("p",
                      (m_report.hostFails ? QStringLiteral("Once it does, the dialog opens ")
                                          : QStringLiteral("The dialog then opens "))
                          + (m_report.listed.isEmpty() ? QStringLiteral("with an empty list:")
                                                       : QStringLiteral("like this:")));
        m_out.open("div", "windows");
        picture(QStringLiteral("The dialog at start-up"), m_start.dialog);
        m_out.close();
        m_out.close();
        if (!m_start.list.isNull())
            writeOpenList();
    }

    void writeOpenList()
    {
        const int count = m_report.listed.size();
        m_out.open("div", "language");
        m_out.element("p",
                      count == m_start.rows
                          ? QStringLiteral("Its list, when opened:")
                          : QStringLiteral("Its list, when opened, shows %1 of the %2 languages. "
                                           "The operator scrolls to the others:")
                                .arg(m_start.rows)
                                .arg(count));
        m_out.open("div", "windows");
        QStringList names;
        for (int i = m_start.firstRow; i < m_start.firstRow + m_start.rows; ++i)
            names += shortened(m_report.listed.at(i).name, 60);
        picture(QStringLiteral("The open list: ") + names.join(QStringLiteral(", ")), m_start.list);
        m_out.close();
        m_out.close();
    }

    void writeLanguages()
    {
        m_out.element("p",
                      QStringLiteral(
                          "This shows the dialog in each language of the operator's list, in the "
                          "list's order, and the message boxes after a successful and a failed "
                          "change, with this computer's fonts. The title bars are only indicated, "
                          "and the empty lower part of the dialog is left out. Missing and clipped "
                          "texts are marked."));
        if (m_pictures.size() < m_report.listed.size()) {
            m_out.element("p",
                          QStringLiteral("The list has %1; only the first %2 are drawn.")
                              .arg(countText(m_report.listed.size(), "language"))
                              .arg(m_pictures.size()));
        }
        if (m_report.listed.isEmpty())
            m_out.element("p", QStringLiteral("None; the operator's list is empty."));
        for (int i = 0; i < m_report.listed.size(); ++i)
            writeLanguage(i);
    }

    void writeLanguage(int index)
    {
        const LangEntry &language = m_report.listed.at(index);
        m_out.open("article", "language", pictureAnchor(language.id));
        const bool drawn = index < m_pictures.size();
        const QString tag = drawn ? m_pictures.at(index).tag : QString();
        m_out.open("h3");
        m_out.text(QStringLiteral("%1 ").arg(language.id));
        m_out.foreignText("bdi", language.name, tag);
        if (index == m_report.selected)
            m_out.text(QStringLiteral(" (selected)"));
        m_out.close();
        const QVector<int> findings = m_groups.ofLanguage.value(language.id);
        if (!findings.isEmpty()) {
            m_out.open("p");
            linkFindings(findings);
            m_out.close();
        }
        if (drawn)
            writePictures(m_pictures.at(index));
        m_out.close();
    }

    void writePictures(const LanguagePictures &pictures)
    {
        m_out.open("p");
        m_out.foreignText("bdi", m_report.relative(pictures.language.qmPath));
        if (pictures.fallback)
            m_out.text(QStringLiteral(" doesn't exist"));
        if (pictures.translation.isEmpty())
            span("none", QStringLiteral("; no translation is loaded, so all texts are empty"));
        else if (pictures.fallback)
            m_out.text(QStringLiteral("; the texts are those of the fallback, Lang/chs/Zendel.qm"));
        m_out.close();
        m_out.open("div", "windows");
        const QString name = QStringLiteral(" in ") + shortened(pictures.language.name, 60);
        picture(QStringLiteral("The dialog") + name, pictures.dialog);
        picture(QStringLiteral("The message box after a successful change") + name,
                pictures.success);
        picture(QStringLiteral("The message box after a failed change") + name, pictures.failure);
        m_out.close();
        m_out.open("details");
        m_out.element("summary", QStringLiteral("Texts and fonts"));
        m_out.open("table");
        for (int i = 0; i < pictures.texts.size(); ++i) {
            openRow(QLatin1String(kSourceTexts[i].text));
            if (pictures.texts.at(i).isEmpty())
                m_out.element("td", QStringLiteral("missing"), "none");
            else
                m_out.foreignText("td", pictures.texts.at(i), pictures.tag);
            m_out.close();
        }
        openRow(QStringLiteral("Fonts"));
        m_out.element("td", printable(pictures.fonts.join(QStringLiteral(", "))));
        m_out.close();
        m_out.close();
        m_out.close();
    }

    void writeLines()
    {
        if (m_report.lines.size() >= kMostLines)
            m_out.element(
                "p",
                QStringLiteral("Only the first %1 lines are shown.").arg(m_report.lines.size()));
        m_out.open("table", "rows lines");
        m_out.open("thead");
        m_out.open("tr");
        for (const char *const title : {"Line", "Text and findings"})
            columnHeader(title);
        m_out.close();
        m_out.close();
        m_out.open("tbody");
        for (auto line = m_lines.constBegin(); line != m_lines.constEnd(); ++line) {
            const QVector<int> findings = m_groups.ofLine.value(line.key());
            const bool error = std::any_of(findings.begin(), findings.end(), [this](int index) {
                return finding(index).severity == Finding::Error;
            });
            m_out.open("tr",
                       findings.isEmpty() ? nullptr
                           : error        ? "error"
                                          : "warning",
                       lineAnchor(line.key()));
            m_out.open("th");
            m_out.attribute("scope", QStringLiteral("row"));
            // A line break that is part of a damaged character doesn't end the line.
            const auto next = std::next(line);
            const int last = next == m_lines.constEnd() ? line.key() : next.key() - 1;
            m_out.text(QString::number(line.key())
                       + (last > line.key() ? QStringLiteral("\u2013%1").arg(last) : QString()));
            m_out.close();
            m_out.open("td");
            if (!line.value().isEmpty())
                m_out.foreignText("code", line.value());
            if (!findings.isEmpty()) {
                m_out.open("p");
                linkFindings(findings);
                m_out.close();
            }
            m_out.close();
            m_out.close();
        }
        m_out.close();
        m_out.close();
    }

    void writeComputer()
    {
        m_out.open("table", "computer");
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
        row("Host\u2019s DLLs", m_report.hostChecked);
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
        m_out.close();
    }

    void row(const char *header, const QString &value)
    {
        openRow(QString::fromUtf8(header));
        m_out.foreignText("td", value);
        m_out.close();
    }

    void openRow(const QString &header)
    {
        m_out.open("tr");
        m_out.open("th");
        m_out.attribute("scope", QStringLiteral("row"));
        m_out.text(header);
        m_out.close();
    }

    void columnHeader(const char *title)
    {
        m_out.open("th");
        m_out.attribute("scope", QStringLiteral("col"));
        m_out.text(QLatin1String(title));
        m_out.close();
    }

    /// Begins a cell that, on a narrow screen, follows the one before it after @p label.
    void openCell(const char *label)
    {
        m_out.open("td");
        m_out.attribute("data-label", QString::fromUtf8(label));
    }

    void openSection(const char *anchor, const QString &title)
    {
        m_out.open("section");
        m_out.attribute("aria-labelledby", QLatin1String(anchor));
        m_out.open("h2", nullptr, QLatin1String(anchor));
        m_out.text(title);
        m_out.close();
    }

    /// Writes a picture. Its alternative text also names the texts that it marks.
    void picture(QString description, const QImage &image)
    {
        const QString marks = image.text(kMarks);
        if (!marks.isEmpty())
            description += QStringLiteral("; ") + marks;
        const QSize size = image.size() / image.devicePixelRatio();
        m_out.openVoid("img");
        m_out.attribute("alt", printable(description, kLongestFinding));
        m_out.attribute("width", QString::number(size.width()));
        m_out.attribute("height", QString::number(size.height()));
        m_out.attribute("src",
                        QStringLiteral("data:image/png;base64,")
                            + QString::fromLatin1(toPng(image).toBase64()));
    }

    void span(const char *className, const QString &content)
    {
        m_out.element("span", content, className);
    }

    const Finding &finding(int index) const { return m_report.findings.at(index); }

    static QString rowAnchor(int language) { return QStringLiteral("overview-%1").arg(language); }

    static QString pictureAnchor(int language)
    {
        return QStringLiteral("language-%1").arg(language);
    }

    const Report &m_report;
    const StartPictures &m_start;
    const QVector<LanguagePictures> &m_pictures;
    const FindingGroups m_groups;
    QMap<int, QString> m_lines; ///< The catalogue's lines, by number
    QHash<int, Reference> m_languages;
    HtmlWriter m_out;
};

} // namespace

QByteArray makePage(const Report &report, const StartPictures &start,
                    const QVector<LanguagePictures> &pictures)
{
    return Page(report, start, pictures).write();
}
