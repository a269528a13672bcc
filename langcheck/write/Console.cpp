#include "langcheck/write/Console.h"

#include "langcheck/Texts.h"

#include <QTextStream>

#include <algorithm>

namespace {

const int kLabelWidth = 14;

/// Keeps a text of the deployment, which may be the name of a file, from starting a line of its
/// own.
QString inOneLine(const QString &text, int most = kLongestText)
{
    QString result = printable(text, most);
    return result.replace(QLatin1Char('\n'), QLatin1Char(' '))
        .replace(QLatin1Char('\t'), QLatin1Char(' '));
}

/// What the operator sees, by label.
struct Row
{
    QLatin1String label;
    QStringList values;
};

QString hiddenLanguage(const HiddenLanguage &language)
{
    QString text = QString::number(language.number);
    if (!language.name.isEmpty())
        text += QLatin1Char(' ') + inOneLine(language.name);
    if (!language.folder.isEmpty())
        text += QLatin1String(", in Lang/") + inOneLine(language.folder);
    return text;
}

QVector<Row> summary(const Report &report)
{
    QString folder = inOneLine(report.applicationDir, kLongestFinding);
    if (!report.applicationDirReason.isEmpty())
        folder += QLatin1String(", ") + inOneLine(report.applicationDirReason, kLongestFinding);
    const QString catalogue = report.encoding.isEmpty()
        ? QStringLiteral("can't be opened")
        : withValues("read as %1 because %2", {report.encoding, report.encodingReason});
    QStringList languages;
    for (int i = 0; i < report.listed.size(); ++i) {
        languages += QString::number(report.listed.at(i).id) + QLatin1Char(' ')
            + inOneLine(report.listed.at(i).name)
            + QLatin1String(i == report.selected ? " (selected)" : "");
    }
    if (languages.isEmpty())
        languages += QStringLiteral("none; the operator's list is empty");
    QStringList hidden;
    for (const HiddenLanguage &language : report.hidden)
        hidden += hiddenLanguage(language);
    QString translation = report.translation.isEmpty()
        ? QStringLiteral("none; all texts are empty")
        : inOneLine(report.relative(report.translation));
    if (report.fallback)
        translation += QLatin1String(", the fallback");
    QStringList unused;
    for (const QString &name : report.unusedFolders)
        unused += QLatin1String("Lang/") + inOneLine(name);
    QStringList boxes;
    for (const Box &box : report.boxes) {
        boxes += withValues("%1, \"%2\": ", {box.icon, inOneLine(box.title)})
            + inOneLine(box.text, kLongestFinding);
    }
    if (boxes.isEmpty())
        boxes += QStringLiteral("none");

    QVector<Row> rows {
        {QLatin1String("Folder:"), {folder}},
        {QLatin1String("Catalogue:"), {QLatin1String("Lang/Lang.ini, ") + catalogue}},
        {QLatin1String("Languages:"), languages},
        {QLatin1String("Hidden:"), hidden},
        {QLatin1String("Default:"), {QString::number(report.defaultLangId)}},
        {QLatin1String("Translation:"), {translation}},
        {QLatin1String("Unused:"), unused},
        {QLatin1String("Messages:"), boxes}};
    if (report.hostQt)
        rows += {QLatin1String("Host's Qt:"), {inOneLine(report.hostQt->description())}};
    rows += {QLatin1String("Host's DLLs:"), {inOneLine(report.hostChecked, kLongestFinding)}};
    if (report.hostFails) {
        rows += {QLatin1String("Host:"),
                 {QStringLiteral("may not start, or may not load the plug-in, because of its DLLs; "
                                 "the lines above apply once it does")}};
    }
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [](const Row &row) { return row.values.isEmpty(); }),
               rows.end());
    return rows;
}

/// Returns how many columns of a terminal a character fills.
int columns(uint c)
{
    const QChar::Category category = QChar::category(c);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing
        || category == QChar::Other_Format)
        return 0;
    // Chinese, Japanese and Korean characters, full-width forms and emoji
    const bool wide = (c >= 0x1100 && c < 0x1160) || (c >= 0x2E80 && c < 0xA4D0)
        || (c >= 0xAC00 && c < 0xD7A4) || (c >= 0xF900 && c < 0xFB00) || (c >= 0xFE30 && c < 0xFE70)
        || (c >= 0xFF00 && c < 0xFF61) || (c >= 0xFFE0 && c < 0xFFE7)
        || (c >= 0x1F300 && c < 0x1FA00) || (c >= 0x20000 && c < 0x3FFFE);
    return wide ? 2 : 1;
}

int columns(const QString &text)
{
    int result = 0;
    const QVector<uint> codes = text.toUcs4();
    for (const uint c : codes)
        result += columns(c);
    return result;
}

/// Returns the first characters of the text that fit.
QString fitting(const QString &text, int width)
{
    QString result;
    int filled = 0;
    const QVector<uint> codes = text.toUcs4();
    for (const uint c : codes) {
        filled += columns(c);
        if (filled > width)
            break;
        result += QString::fromUcs4(&c, 1);
    }
    return result;
}

/// Breaks a text into lines, at spaces where that is possible.
QStringList wrapped(const QString &text, int width)
{
    QStringList lines {QString()};
    const QStringList words = partsOf(text, QLatin1Char(' '));
    for (QString word : words) {
        const QString sameLine =
            lines.last().isEmpty() ? word : lines.last() + QLatin1Char(' ') + word;
        if (columns(sameLine) <= width) {
            lines.last() = sameLine;
            continue;
        }
        if (!lines.last().isEmpty())
            lines += QString();
        while (columns(word) > width) {
            const QString start = fitting(word, width);
            lines.last() = start;
            lines += QString();
            word.remove(0, start.size());
        }
        lines.last() = word;
    }
    return lines;
}

/// Where the quoted line is wrong.
struct Mark
{
    int start = 0;
    int size = 0; ///< 0 if that isn't known.
};

/// Looks for the finding's values, which are in quotation marks, and for its keys, which aren't.
Mark markIn(const QString &quote, const Finding &finding)
{
    const int equals = quote.indexOf(QLatin1Char('='));
    const QString key = quote.left(std::max(equals, 0)).trimmed();
    const QString whole = quote.mid(equals + 1).trimmed();
    Mark result;
    for (const QString &value : finding.values) {
        const QString text = inOneLine(value);
        const bool isQuoted =
            text.size() > 2 && text.startsWith(QLatin1Char('"')) && text.endsWith(QLatin1Char('"'));
        const QString inner = isQuoted ? text.mid(1, text.size() - 2) : text;
        if (!whole.isEmpty() && (text == whole || (isQuoted && inner == whole)))
            return {quote.indexOf(whole, equals + 1), whole.size()};
        if (!key.isEmpty() && inner == key)
            result = {quote.indexOf(key), key.size()};
    }
    return result;
}

/// Formats the report for a terminal.
class TerminalText
{
public:
    TerminalText(const Report &report, int width, bool colours)
        : m_report(report)
        , m_width(std::max(width, 40))
        , m_colours(colours)
        , m_out(&m_text)
    {
    }

    QString write()
    {
        const QVector<Row> rows = summary(m_report);
        for (const Row &row : rows)
            writeRow(row);
        QStringList files;
        for (const Finding &finding : m_report.findings)
            files += finding.file;
        files.removeDuplicates();
        for (const QString &file : qAsConst(files))
            writeFile(file);
        const char *const verdicts[] = {kGood, kWarning, kError};
        m_out << '\n'
              << styled(verdicts[m_report.exitCode()],
                        countedFindings(m_report.count(Finding::Error),
                                        m_report.count(Finding::Warning)))
              << '\n';
        return m_text;
    }

private:
    // Parameters of the escape sequence
    static constexpr const char *kBold = "1";
    static constexpr const char *kFaint = "2";
    static constexpr const char *kGood = "1;32";
    static constexpr const char *kWarning = "1;33";
    static constexpr const char *kError = "1;31";

    QString styled(const char *style, const QString &text) const
    {
        return m_colours && !text.isEmpty()
            ? withValues("\x1B[%1m%2\x1B[0m", {QLatin1String(style), text})
            : text;
    }

    void writeRow(const Row &row)
    {
        QString label = row.label;
        for (const QString &value : row.values) {
            const QStringList lines = wrapped(value, m_width - kLabelWidth);
            for (const QString &line : lines) {
                m_out << styled(kBold, label)
                      << QString(kLabelWidth - label.size(), QLatin1Char(' ')) << line << '\n';
                label.clear();
            }
        }
    }

    void writeFile(const QString &file)
    {
        m_out << '\n' << styled(kBold, inOneLine(file)) << '\n';
        int last = 0;
        for (const Finding &finding : m_report.findings) {
            if (finding.file == file)
                last = std::max(last, finding.line);
        }
        for (const Finding &finding : m_report.findings) {
            if (finding.file == file)
                writeFinding(finding, last > 0 ? QString::number(last).size() : 0);
        }
    }

    void writeFinding(const Finding &finding, int numberWidth)
    {
        const char *const style = finding.severity == Finding::Error ? kError : kWarning;
        const QString number = finding.line > 0 ? QString::number(finding.line) : QString();
        m_indent = numberWidth > 0 ? numberWidth + 13 : 11;
        m_out << QString(2, QLatin1Char(' '));
        if (numberWidth > 0)
            m_out << number.rightJustified(numberWidth) << QString(2, QLatin1Char(' '));
        m_out << styled(style, severityName(finding.severity).leftJustified(9));
        writeParagraph(inOneLine(finding.problem(), kLongestFinding), QString(), false);
        writeQuote(finding, style);
        writeParagraph(inOneLine(finding.effect(), kLongestFinding), QStringLiteral("effect: "));
        writeParagraph(inOneLine(finding.remedy(), kLongestFinding), QStringLiteral("remedy: "));
        writeIndent();
        m_out << styled(kFaint, QLatin1Char('[') + finding.id() + QLatin1Char(']')) << '\n';
    }

    void writeIndent() { m_out << QString(m_indent, QLatin1Char(' ')); }

    void writeParagraph(const QString &text, const QString &label, bool indentFirst = true)
    {
        const QStringList lines = wrapped(text, m_width - m_indent - label.size());
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0 || indentFirst)
                writeIndent();
            m_out << (i == 0 ? label : QString(label.size(), QLatin1Char(' '))) << lines.at(i)
                  << '\n';
        }
    }

    /// Writes the line of the catalogue, and below it what is wrong.
    void writeQuote(const Finding &finding, const char *style)
    {
        if (finding.quote.isEmpty())
            return;
        const QString quote = inOneLine(finding.quote);
        const QString shown = fitting(quote, m_width - m_indent);
        writeIndent();
        m_out << shown << '\n';
        const Mark mark = markIn(quote, finding);
        const QString marked = shown.mid(mark.start, mark.size);
        if (marked.isEmpty())
            return;
        writeIndent();
        m_out << QString(columns(shown.left(mark.start)), QLatin1Char(' '))
              << styled(style,
                        QLatin1Char('^')
                            + QString(std::max(columns(marked) - 1, 0), QLatin1Char('~')))
              << '\n';
    }

    const Report &m_report;
    const int m_width;
    const bool m_colours;
    int m_indent = 0;
    QString m_text;
    QTextStream m_out;
};

} // namespace

QString countedFindings(int errors, int warnings)
{
    return countText(errors, "error") + QLatin1String(", ") + countText(warnings, "warning");
}

QString toLine(const Finding &finding)
{
    QString line = inOneLine(finding.file);
    if (finding.line > 0)
        line += QLatin1Char(':') + QString::number(finding.line);
    return line + QLatin1String(": ") + severityName(finding.severity) + QLatin1String(": ")
        + inOneLine(finding.text(), kLongestFinding) + QLatin1String(" [") + finding.id()
        + QLatin1Char(']');
}

QString toText(const Report &report)
{
    QString text;
    QTextStream out(&text);
    const QVector<Row> rows = summary(report);
    for (const Row &row : rows) {
        for (int i = 0; i < row.values.size(); ++i) {
            const QString label = i == 0 ? QString(row.label) : QString();
            out << label.leftJustified(kLabelWidth) << row.values.at(i) << '\n';
        }
    }
    out << '\n';
    for (const Finding &finding : report.findings)
        out << toLine(finding) << '\n';
    out << countedFindings(report.count(Finding::Error), report.count(Finding::Warning)) << '\n';
    return text;
}

QString toTerminalText(const Report &report, int width, bool colours)
{
    return TerminalText(report, width, colours).write();
}
