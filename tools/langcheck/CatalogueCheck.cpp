#include "tools/langcheck/CatalogueCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/LangLine.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>

#include <algorithm>

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
    LineCheck(QList<Finding> &findings, bool decodable)
        : m_findings(findings)
        , m_decodable(decodable)
    {
    }

    const CatalogueLines &lines() const { return m_lines; }

    void check(const QString &text)
    {
        ++m_line;
        if (text.contains(QLatin1Char('\r'))) {
            warn(
                "carriage-return",
                QStringLiteral("holds a carriage return with no line feed behind it, which ends no "
                               "line: all that follows it here is part of this line; end the "
                               "lines with CR LF or LF"));
        }
        if (m_decodable && text.contains(QChar(QChar::ReplacementCharacter))) {
            add("undecodable", Finding::Error,
                QStringLiteral("holds bytes that the encoding of the file does not know; save the "
                               "file as UTF-8 or UTF-16 with a mark"));
        }
        checkLine(LangLine::read(text, m_currentSection), text.trimmed());
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
            if (text.startsWith(QLatin1Char('['))) {
                warn("header",
                     QStringLiteral("is ignored: the header lacks its \"]\"; write [LANG_MGR]"));
            } else {
                warn("outside-section",
                     QStringLiteral("is ignored: it stands outside the section [LANG_MGR]"));
            }
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

    void checkHeader(const LangLine &line)
    {
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
        QString section = m_currentSection;
        const QString upper = line.key.toString().toUpper();
        const QString corrected = upper + QLatin1Char('=');
        if (LangLine::read(corrected, section).kind != LangLine::OtherKey) {
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

    void checkFolder(const LangLine &line)
    {
        const QString path = line.value.toString().replace(QLatin1Char('\\'), QLatin1Char('/'));
        if (path.split(QLatin1Char('/')).contains(QLatin1String(".."))) {
            warn("folder-dots",
                 QStringLiteral("leads out of Lang: %1; name a folder that lies in it")
                     .arg(quoted(line.value)));
        }
        const bool drive = path.size() > 1 && path.at(1) == QLatin1Char(':');
        if (drive || path.startsWith(QLatin1Char('/'))) {
            warn("folder-absolute",
                 QStringLiteral("is no absolute path, it is taken for a folder below Lang: %1; "
                                "write the folder's name alone")
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
                 QStringLiteral("hides the language: %1 is no number; write 1 to show it or 0 to "
                                "hide it")
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
    const bool m_decodable; ///< Not if the encoding as a whole is the wrong one.
    int m_line = 0;
    QString m_currentSection;
    CatalogueLines m_lines {true, 0, {}};
};

bool looksLikeUtf8(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                   [](char byte) { return static_cast<signed char>(byte) >= 0; });
    return !ascii && state.invalidChars == 0 && state.remainingChars == 0;
}

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
    if (!file.open(QIODevice::ReadOnly)) {
        addError("catalogue-unreadable",
                 QStringLiteral("cannot be opened, so there are no languages: %1")
                     .arg(file.errorString()));
        return {};
    }
    const QByteArray bytes = file.readAll();
    file.seek(0);

    QTextCodec *const codec = CTranslatorMgr::detectCodec(&file);
    QTextStream in(&file);
    in.setCodec(codec);
    QString text = in.readLine();
    bool decodable = true;
    // The stream knows more marks than the plug-in, and takes the codec that they call for.
    report.encoding = QString::fromLatin1(in.codec()->name());
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
        if (bytes.contains('\0')) {
            addError(
                "utf16-without-mark",
                QStringLiteral("looks like UTF-16 but has no mark, so it is read as GB2312 and "
                               "nothing in it is understood; save it with its mark"));
            return {};
        }
        decodable = !looksLikeUtf8(bytes);
        if (!decodable) {
            addError("utf8-without-mark",
                     QStringLiteral("looks like UTF-8 but has no mark, so it is read as GB2312 and "
                                    "names show wrong characters; save it with its mark (\"UTF-8 "
                                    "with BOM\")"));
        }
    }

    // The stream has dropped one mark; the reader drops a second one of UTF-16.
    if (codec && codec->name() == "UTF-16LE" && text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    LineCheck lines(report.findings, decodable);
    if (!bytes.isEmpty())
        lines.check(text);
    while (in.readLineInto(&text))
        lines.check(text);
    return lines.lines();
}
