#include "tools/langcheck/CatalogueCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"
#include "lang/LangLine.h"
#include "lang/OpenFile.h"
#include "tools/langcheck/BytesCheck.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>

namespace {

QString quoted(const QStringRef &text)
{
    return QLatin1Char('"') + text.toString() + QLatin1Char('"');
}

bool isNumber(const QStringRef &value)
{
    bool ok = false;
    value.toInt(&ok);
    return ok;
}

/// Tells of single lines, in their order.
class LineCheck
{
public:
    /// The numbers of the lines, where they are not 1, 2, 3.
    LineCheck(QList<Finding> &findings, const QVector<int> &numbers)
        : m_findings(findings)
        , m_numbers(numbers)
    {
    }

    const CatalogueLines &lines() const { return m_lines; }

    void check(const QString &text)
    {
        m_line = m_numbers.value(m_count, m_count + 1);
        ++m_count;
        const QString trimmed = text.trimmed();
        if (trimmed.contains(QLatin1Char('\r'))) {
            warn(
                "carriage-return",
                QStringLiteral("holds a carriage return with no line feed behind it, which ends no "
                               "line: all that follows it here is part of this line; end the "
                               "lines with CR LF or LF"));
        }
        if (m_numbers.isEmpty() && text.contains(QChar(QChar::ReplacementCharacter))) {
            add("undecodable", Finding::Error,
                QStringLiteral("holds bytes that the encoding of the file does not know"));
        }
        if (text.startsWith(QChar(QChar::ByteOrderMark))) {
            warn("second-mark",
                 QStringLiteral("starts with a byte-order mark that is not the file's own, and "
                                "makes the line another one than it seems; delete it"));
        }
        checkLine(m_reader.read(text), trimmed);
    }

private:
    void checkLine(const LangLine &line, const QString &text)
    {
        switch (line.kind) {
        case LangLine::Blank:
        case LangLine::Comment:
            break;
        case LangLine::Header:
            checkHeader(line);
            break;
        case LangLine::Outside:
            checkOutside(text);
            break;
        case LangLine::NoKey:
            warn("no-key",
                 QStringLiteral("is ignored: it has no \"=\" with a key in front of it; "
                                "begin a comment with ;"));
            break;
        case LangLine::OtherKey:
            checkOtherKey(line);
            break;
        case LangLine::Default:
            checkDefault(line);
            break;
        case LangLine::Id:
        case LangLine::Name:
        case LangLine::Folder:
        case LangLine::Show:
            checkLanguageKey(line);
            break;
        }
    }

    void checkOutside(const QString &text)
    {
        if (!text.startsWith(QLatin1Char('['))) {
            warn("outside-section",
                 QStringLiteral("is ignored: it stands outside the section [LANG_MGR]"));
        } else if (!text.contains(QLatin1Char('\r'))) {
            warn("header",
                 QStringLiteral("is ignored: a header must end with its \"]\"; write "
                                "[LANG_MGR] and nothing behind it"));
        }
    }

    void checkHeader(const LangLine &line)
    {
        m_lines.hasSection = m_lines.hasSection || line.key == QLatin1String("LANG_MGR");
        const QString name = line.key.trimmed().toString();
        if (name.compare(QLatin1String("LANG_MGR"), Qt::CaseInsensitive) == 0
            && line.key != QLatin1String("LANG_MGR")) {
            warn(
                "header",
                QStringLiteral("opens the section [%1], whose lines are ignored; write [LANG_MGR], "
                               "in upper case and without blanks")
                    .arg(line.key));
        }
    }

    void checkOtherKey(const LangLine &line)
    {
        // The reader itself is asked whether the key would do in upper case.
        const QString upper = line.key.toString().toUpper();
        const QString corrected = upper + QLatin1Char('=');
        if (LangLineReader(m_reader).read(corrected).kind != LangLine::OtherKey) {
            warn("key-case",
                 QStringLiteral("is ignored: keys are written in upper case; write %1").arg(upper));
        } else {
            warn("unknown-key",
                 QStringLiteral(
                     "is ignored: there is no key %1; the keys are DEFAULT and LANG<n>_ID, "
                     "_NAME, _FOLDER and _SHOW")
                     .arg(quoted(line.key)));
        }
    }

    void checkDefault(const LangLine &line)
    {
        checkRepetition(m_lines.defaultLine);
        if (!isNumber(line.value)) {
            warn("default-number",
                 QStringLiteral("makes 0 the default: %1 is no number that can be read")
                     .arg(quoted(line.value)));
        }
    }

    void checkLanguageKey(const LangLine &line)
    {
        const QStringRef digits = line.key.mid(4, line.key.indexOf(QLatin1Char('_')) - 4);
        if (!isNumber(digits)) {
            warn("number-too-long",
                 QStringLiteral("belongs to language 0: the number %1 is too long to be read")
                     .arg(digits));
        }

        LanguageLines &language = m_lines.languages[line.langId];
        if (line.kind == LangLine::Id) {
            checkRepetition(language.id);
            checkId(line);
        } else if (line.kind == LangLine::Name) {
            checkRepetition(language.name);
            checkText(line);
        } else if (line.kind == LangLine::Folder) {
            checkRepetition(language.folder);
            checkFolder(line);
        } else {
            checkRepetition(language.show);
            checkShow(line);
            language.shown = line.value.toInt() == 1;
        }
    }

    void checkId(const LangLine &line)
    {
        if (!isNumber(line.value) || line.value.toInt() != line.langId) {
            warn("id-differs",
                 QStringLiteral("is never read: the language has the number of its keys, %1, and "
                                "not %2; write %1 here or rename the keys")
                     .arg(line.langId)
                     .arg(quoted(line.value)));
        }
    }

    /// A value is taken as it stands, which its author may not have thought.
    void checkText(const LangLine &line)
    {
        const QString text = line.value.toString();
        if (text.size() > 1 && text.startsWith(QLatin1Char('"'))
            && text.endsWith(QLatin1Char('"'))) {
            warn("quoted-value",
                 QStringLiteral("has quotation marks that are part of the value; delete them"));
        }
        if (text.contains(QLatin1String(" ;")) || text.contains(QLatin1String(" #"))) {
            warn("comment-in-value",
                 QStringLiteral(
                     "has a comment that is part of the value; give it a line of its own"));
        }
    }

    void checkFolder(const LangLine &line)
    {
        checkText(line);
        const QString path = line.value.toString().replace(QLatin1Char('\\'), QLatin1Char('/'));
        if (path.split(QLatin1Char('/')).contains(QLatin1String(".."))) {
            warn("folder-dots",
                 QStringLiteral("goes up with \"..\": %1; name a folder that lies in Lang itself")
                     .arg(quoted(line.value)));
        }
        const bool drive = path.size() > 1 && path.at(1) == QLatin1Char(':');
        if (drive || path.startsWith(QLatin1Char('/'))) {
            warn("folder-absolute",
                 QStringLiteral("is an absolute path, but taken for a folder below Lang: %1; write "
                                "the folder's name alone")
                     .arg(quoted(line.value)));
        }
        if (line.value.contains(QLatin1Char('%'))) {
            warn("folder-percent",
                 QStringLiteral("holds a percent sign: with a digit behind it, it becomes part of "
                                "another path; rename the folder: %1")
                     .arg(quoted(line.value)));
        }
    }

    void checkShow(const LangLine &line)
    {
        if (!isNumber(line.value)) {
            warn("show-number",
                 QStringLiteral("hides the language: %1 is no number that can be read; write 1 to "
                                "show it or 0 to hide it")
                     .arg(quoted(line.value)));
        } else if (line.value.toInt() != 0 && line.value.toInt() != 1) {
            warn("show-other",
                 QStringLiteral("hides the language: only 1 shows it; write 1 or 0, not %1")
                     .arg(line.value));
        }
    }

    /// Notes this line in place of the @p earlier one with the same key.
    void checkRepetition(int &earlier)
    {
        if (earlier > 0) {
            warn("repeated-key",
                 QStringLiteral("overwrites line %1; delete one of the two").arg(earlier));
        }
        earlier = m_line;
    }

    void warn(const char *kind, const QString &text) { add(kind, Finding::Warning, text); }

    void add(const char *kind, Finding::Severity severity, const QString &text)
    {
        m_findings.append(
            {QStringLiteral("Lang/Lang.ini"), m_line, severity, QLatin1String(kind), text});
    }

    QList<Finding> &m_findings;
    const QVector<int> m_numbers;
    int m_count = 0;
    int m_line = 0;
    LangLineReader m_reader;
    CatalogueLines m_lines {true, false, 0, {}};
};

} // namespace

int LanguageLines::first() const
{
    int result = 0;
    for (const int line : {id, name, folder, show}) {
        if (line > 0 && (result == 0 || line < result))
            result = line;
    }
    return result;
}

CatalogueLines checkCatalogue(Report &report)
{
    const auto addError = [&report](const char *kind, const QString &text) {
        report.findings.append(
            {QStringLiteral("Lang/Lang.ini"), 0, Finding::Error, QLatin1String(kind), text});
    };
    QFile file(applicationDir() + QLatin1String("/Lang/Lang.ini"));
    if (!openForReading(file)) {
        addError("catalogue-unreadable",
                 QStringLiteral("%1, so there are no languages")
                     .arg(file.exists() ? QStringLiteral("is no file that can be read")
                                        : QStringLiteral("is missing")));
        return {};
    }
    const QByteArray bytes = file.readAll();
    file.seek(0);

    QTextStream in(&file);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&file));
    QString text = in.readLine();
    // The stream knows more marks than the plug-in, and takes the codec that they call for.
    report.encoding = QString::fromLatin1(in.codec()->name());
    QVector<int> numbers;
    if (report.encoding.startsWith(QLatin1String("UTF"))) {
        const int length = report.encoding == QLatin1String("UTF-8") ? 3
            : report.encoding.startsWith(QLatin1String("UTF-16"))    ? 2
                                                                     : 4;
        report.encodingReason =
            QStringLiteral("it starts with the mark %1")
                .arg(QString::fromLatin1(bytes.left(length).toHex(' ').toUpper()));
    } else {
        report.encoding = QStringLiteral("GB2312"); // Its codec may have the name of a superset.
        report.encodingReason = QStringLiteral("it starts with no mark");
        if (looksLikeUtf16(bytes)) {
            addError(
                "utf16-without-mark",
                QStringLiteral("looks like UTF-16 but has no mark, so it is read as GB2312 and "
                               "nothing in it is understood; save it with its mark"));
            return {};
        }
        checkUnmarkedBytes(bytes, report.findings);
        numbers = unmarkedLineNumbers(bytes);
    }

    LineCheck lines(report.findings, numbers);
    if (!bytes.isEmpty())
        lines.check(text);
    while (in.readLineInto(&text))
        lines.check(text);
    return lines.lines();
}
