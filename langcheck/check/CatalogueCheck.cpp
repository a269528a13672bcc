#include "langcheck/check/CatalogueCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"
#include "lang/LangLine.h"
#include "lang/OpenFile.h"
#include "langcheck/Texts.h"
#include "langcheck/check/BytesCheck.h"
#include "langcheck/check/Guess.h"
#include "langcheck/check/Misread.h"
#include "langcheck/check/NearbyFiles.h"
#include "langcheck/check/SectionCheck.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTextCodec>
#include <QTextStream>
#include <QVector>

#include <algorithm>

namespace {

const int kQuoteLength = 300;
const int kNoLanguage = -1;

bool isNumber(const QStringRef &value)
{
    bool ok = false;
    value.toInt(&ok);
    return ok;
}

/// Returns true if the text has controls of Latin-1, which are parts of letters in other encodings.
bool hasControls(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() >= 0x80 && c.unicode() < 0xA0; });
}

/// Returns the index of the first surrogate without its other half; -1 if there is none.
int indexOfHalfCharacter(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            return i;
    }
    return -1;
}

/// Checks the lines one by one.
class LineCheck
{
public:
    /// @p numbers are the lines' numbers; empty if they are consecutive. @p decodable is false if
    /// the catalogue may have bytes that are not valid in its encoding.
    LineCheck(Report &report, const QVector<int> &numbers, bool decodable)
        : m_report(report)
        , m_numbers(numbers)
        , m_decodable(decodable)
    {
        for (const Finding &finding : qAsConst(report.findings))
            m_reported.insert(finding.line);
    }

    const CatalogueLines &lines() const { return m_lines; }

    /// Checks what a line by itself doesn't show. To be called after the last line.
    void finish()
    {
        if (!explainSingleLine())
            m_sections.finish(m_report, m_lines);
        QSet<int> several; // Their IDs differ for the same reason.
        for (auto it = m_repetitions.constBegin(); it != m_repetitions.constEnd(); ++it) {
            if (it.key() != kNoLanguage && addSeveralLanguages(it.key(), *it)) {
                several += it.key();
                continue;
            }
            for (const Repetition &one : *it) {
                addRepeatedKey(
                    one, one.field ? m_lines.languages[it.key()].*one.field : m_lines.defaultKey);
                if (!one.field)
                    rememberIntended(QStringLiteral("DEFAULT"));
            }
        }
        for (const DifferentId &id : qAsConst(m_differentIds)) {
            if (id.langId <= 255 && !several.contains(id.langId)
                && !m_lines.languages.value(id.langId).tooLong)
                addIdDiffers(id);
        }
    }

    void check(const QString &text)
    {
        m_line = m_numbers.value(m_count, m_count + 1);
        m_isReported = false;
        ++m_count;
        if (m_count <= kMostLines) {
            m_report.lines += shortened(text, kQuoteLength);
            m_report.lineNumbers += m_line;
        }
        const int found = m_report.findings.size();
        if (checkAppended(text)) {
            m_lines.texts.insert(m_line, shortened(text, kQuoteLength));
            return;
        }
        checkCharacters(text);
        const int bom = text.lastIndexOf(QChar(QChar::ByteOrderMark));
        if (bom > 0 || (bom == 0 && m_inSection)) // Others are in SectionCheck.
            addSecondCatalogue();
        m_isReported = m_isReported || text.endsWith(QChar(QChar::Null)); // See checkEnd().
        const LangLine line = m_reader.read(text);
        if (line.kind == LangLine::Header)
            m_inSection = line.key == QLatin1String("LANG_MGR");
        m_lines.hasSection = m_lines.hasSection || (line.kind == LangLine::Header && m_inSection);
        m_sections.add(text.trimmed(), m_line, line.kind == LangLine::Header, m_inSection);
        checkLine(line, text.trimmed());
        // Later checks may report lines with these keys, or outside the section.
        if (m_report.findings.size() > found || m_reported.contains(m_line)
            || line.kind == LangLine::Default || line.isLanguageKey()
            || m_lines.texts.size() < kMostLines) {
            m_lines.texts.insert(m_line, shortened(text, kQuoteLength));
        }
    }

private:
    using Field = CatalogueKey LanguageLines::*;

    /// If carriage returns make the file a single line, adds what that costs to the finding about
    /// them and returns true.
    bool explainSingleLine()
    {
        if (m_count != 1 || m_lines.hasSection || m_report.findings.isEmpty()
            || m_report.findings.last().kind != FindingKind::CarriageReturn)
            return false;
        m_report.findings.last().severity = Finding::Error;
        m_report.findings.last().consequences += QStringLiteral("the operator's list is empty");
        return true;
    }

    struct Repetition
    {
        QString key;
        Field field; ///< Null for DEFAULT.
        CatalogueKey earlier;
        CatalogueKey later;
    };

    struct DifferentId
    {
        QString key;
        int langId;
        CatalogueKey id;
    };

    /// Reports that two files were joined, and so nothing else about this line.
    void addSecondCatalogue()
    {
        add(FindingKind::SecondBom,
            {QStringLiteral("contains a second BOM, because another catalogue was appended here"),
             QStringLiteral("the line is wrong, and of each key in both catalogues, only the later "
                            "line applies"),
             QStringLiteral("keep one of the two catalogues")});
        m_isReported = true;
    }

    /// If the line was appended in an encoding of another width, reports it and returns true.
    bool checkAppended(const QString &text)
    {
        const bool isWide = m_report.encoding.startsWith(QLatin1String("UTF-16"));
        const bool isUtf8 = m_report.encoding == QLatin1String("UTF-8");
        const QString original = isWide ? readAgainAsBytes(text.trimmed()) : readAgainAsUtf16(text);
        // After a line in UTF-16, its end or an empty line
        const bool isEnd = m_isAppended && !isWide && text.contains(QChar(QChar::Null))
            && QString(text).remove(QChar(QChar::Null)).trimmed().isEmpty();
        m_isAppended = isEnd || (!original.isEmpty() && text.size() >= 3);
        if (!m_isAppended)
            return false;
        add(FindingKind::AppendedBytes,
            {quoted(original),
             isWide ? QStringLiteral("an 8-bit encoding into a UTF-16 file")
                    : QStringLiteral("UTF-16 into a file in an 8-bit encoding"),
             isWide       ? QStringLiteral("as UTF-16")
                 : isUtf8 ? QStringLiteral("as UTF-8")
                          : QStringLiteral("in the encoding in which the other names look right")});
        static const QRegularExpression key(QStringLiteral("LANG[0-9]+_[A-Z]+|DEFAULT"));
        for (auto it = key.globalMatch(original); it.hasNext();)
            rememberIntended(it.next().captured());
        return true;
    }

    void checkCharacters(const QString &text)
    {
        if (text.trimmed().contains(QLatin1Char('\r')))
            add(FindingKind::CarriageReturn);
        m_undecodable = !m_decodable && m_numbers.isEmpty()
            && text.contains(QChar(QChar::ReplacementCharacter));
        if (m_undecodable) {
            add(FindingKind::Undecodable, {m_report.encoding});
            const QString trimmed = text.trimmed();
            if (trimmed.startsWith(QLatin1Char(';')) || trimmed.startsWith(QLatin1Char('#')))
                m_report.findings.last().severity =
                    Finding::Warning; // The operator doesn't see it.
        }
        const int half = indexOfHalfCharacter(text);
        if (half >= 0) {
            add(FindingKind::HalfCharacter,
                {QStringLiteral("U+%1").arg(
                    QString::number(text.at(half).unicode(), 16).toUpper())});
        }
    }

    void checkLine(const LangLine &line, const QString &text)
    {
        switch (line.kind) {
        case LangLine::Blank:
        case LangLine::Comment:
        case LangLine::Header:
        case LangLine::Outside: // See SectionCheck.
            break;
        case LangLine::NoKey:
            checkNoKey(text);
            break;
        case LangLine::OtherKey:
            checkOtherKey(line, text);
            break;
        case LangLine::Default:
            setKey(m_lines.defaultKey, line, nullptr);
            break;
        case LangLine::Id:
        case LangLine::Name:
        case LangLine::Folder:
        case LangLine::Show:
            checkLanguageKey(line);
            break;
        }
    }

    /// Returns true if the line was probably meant to be a comment.
    static bool resemblesComment(const QString &text)
    {
        return plain(text).startsWith(QLatin1Char(';')) || text.startsWith(QLatin1String("//"))
            || text.startsWith(QLatin1String("--")) || text.startsWith(QLatin1Char('\''));
    }

    void checkNoKey(const QString &text)
    {
        static const QRegularExpression conflict(QStringLiteral("^(<{7}|={7}|>{7}|\\|{7})(\\s|$)"));
        const IntendedLine meant = intendedLine(text);
        QString remedy;
        if (SectionCheck::resemblesHeader(text)) {
            remedy = QStringLiteral("delete the line, or write [LANG_MGR]");
        } else if (conflict.match(text).hasMatch()) {
            remedy = QStringLiteral("resolve the merge conflict: delete these lines, and keep one "
                                    "of the two versions, or both with different numbers if each "
                                    "adds a language");
        } else if (meant.sign > 0 && text.left(meant.sign).trimmed() == meant.key) {
            remedy = QStringLiteral("write \"=\" instead of ")
                + (text.at(meant.sign) == QLatin1Char('\t') ? QStringLiteral("the tab")
                                                            : quotedAscii(text.mid(meant.sign, 1)));
        } else {
            addIgnored(FindingKind::NoKey, text, quoted(text),
                       QStringLiteral("write KEY=value, or start a comment with \";\""));
            return;
        }
        add(FindingKind::NoKey, {quoted(text), remedy, {}, {}, {}});
        if (conflict.match(text).hasMatch() && !m_isReported)
            explainConflict(text);
        rememberIntended(meant.sign > 0 ? meant.key : QString());
    }

    /// Keys in both versions are reported as a part of the conflict that the line belongs to.
    void explainConflict(const QString &text)
    {
        m_report.findings.last().consequences +=
            QStringLiteral("of each key in both versions, only the later line applies");
        m_report.findings.last().severity = Finding::Error;
        if (text.startsWith(QLatin1Char('<')))
            m_conflict = m_line;
        else if (text.startsWith(QLatin1Char('>')))
            m_conflict = 0;
    }

    void checkOtherKey(const LangLine &line, const QString &text)
    {
        const QString key = line.key.toString();
        const QString intended = intendedKey(key);
        if (intended == key.toUpper()) {
            add(FindingKind::KeyCase, {quoted(key), intended});
            rememberIntended(intended);
        } else {
            addIgnored(FindingKind::UnknownKey, text, quotedAscii(key),
                       QStringLiteral("use DEFAULT or LANG<n>_ID, _NAME, _FOLDER or _SHOW"));
        }
    }

    /// Reports a line with what it was probably meant to be, or else with the remedy
    /// @p otherwise.
    void addIgnored(FindingKind kind, const QString &text, const QString &shown,
                    const QString &otherwise)
    {
        const IntendedLine meant = intendedLine(text);
        const QString comment = QStringLiteral("start the comment with \";\"");
        const bool isComment = resemblesComment(text);
        if (meant.key.isEmpty()) {
            add(kind, {shown, isComment ? comment : otherwise, {}, {}, {}});
            static const QRegularExpression any(QStringLiteral("LANG.*[0-9]"),
                                                QRegularExpression::CaseInsensitiveOption);
            if (any.match(text).hasMatch())
                rememberIntended(QStringLiteral("LANG")); // It may be why there is no language.
        } else {
            const QString surplus = meant.isQuoted ? QStringLiteral("delete the quotation marks: ")
                                                   : QStringLiteral("delete %1 before each key: ")
                                                         .arg(quoted(meant.surplus.trimmed()));
            add(kind,
                {shown, QStringLiteral("write "),
                 withValues("%1=%2", {meant.key, shortened(meant.value, kQuoteLength)}),
                 isComment ? QStringLiteral(", or ") + comment : QString(),
                 meant.surplus.isEmpty() || isComment ? QString() : surplus});
            rememberIntended(meant.key);
        }
    }

    /// Remembers that the latest finding is the reason why a key is missing or wrong.
    void rememberIntended(const QString &key)
    {
        if (!key.isEmpty() && !m_isReported)
            m_lines.addReason(key, m_report);
    }

    void checkLanguageKey(const LangLine &line)
    {
        LanguageLines &language = m_lines.languages[line.langId];
        checkSecondKey(line);
        if (!isNumber(line.key.mid(4, line.key.indexOf(QLatin1Char('_')) - 4))) {
            language.tooLong = true;
            add(FindingKind::NumberTooLong, {line.key.toString()});
        }
        if (line.kind == LangLine::Id) {
            setKey(language.id, line, &LanguageLines::id);
            if (withoutComment(language.id.value) == QString::number(line.langId))
                checkText(line);
            else if (!isNumber(line.value) || line.value.toInt() != line.langId)
                m_differentIds += {line.key.toString(), line.langId, language.id};
        } else if (line.kind == LangLine::Name) {
            setKey(language.name, line, &LanguageLines::name);
            if (!checkText(line))
                checkLetters(line);
        } else if (line.kind == LangLine::Folder) {
            setKey(language.folder, line, &LanguageLines::folder);
            checkText(line);
            checkFolder(line);
        } else {
            setKey(language.show, line, &LanguageLines::show);
            checkShow(line);
            language.shown = line.value.toInt() == 1;
        }
    }

    /// Finds a key within the value, after a line end was lost.
    void checkSecondKey(const LangLine &line)
    {
        static const QRegularExpression key(
            QStringLiteral("(^|\\s)((LANG[0-9]+_(ID|NAME|FOLDER|SHOW)|DEFAULT)\\s*=.*)$"));
        const QRegularExpressionMatch match = key.match(line.value.toString());
        if (!match.hasMatch())
            return;
        add(FindingKind::TwoKeys, {shortened(match.captured(2), kQuoteLength)});
        rememberIntended(match.captured(3));
        rememberIntended(line.key.toString());
    }

    void checkShow(const LangLine &line)
    {
        if (m_lines.findings.contains(line.key.toString()) && !m_report.findings.isEmpty()
            && m_report.findings.last().kind == FindingKind::TwoKeys)
            return;
        const QString value = line.value.toString();
        if (isNumber(line.value)) {
            if (value.toInt() != 0 && value.toInt() != 1) {
                addValue(FindingKind::ShowOther, line);
                rememberIntended(line.key.toString());
            }
            return;
        }
        static const QStringList no {QStringLiteral("no"), QStringLiteral("false"),
                                     QStringLiteral("off"), QStringLiteral("nein")};
        static const QStringList yes {QStringLiteral("yes"), QStringLiteral("true"),
                                      QStringLiteral("on"), QStringLiteral("ja")};
        const QString bare = withoutComment(value);
        const QString meant = plain(withoutQuotes(bare));
        bool isDecimal = false;
        const double number = meant.toDouble(&isDecimal);
        const bool isHidden = (isDecimal && number == 0) || no.contains(meant, Qt::CaseInsensitive);
        const bool isShown = (isDecimal && number == 1) || yes.contains(meant, Qt::CaseInsensitive);
        if (bare == QLatin1String("0") || bare == QLatin1String("1")) {
            checkText(line);
            if (isShown && !m_isReported) {
                m_report.findings.last().severity = Finding::Error;
                m_report.findings.last().consequences +=
                    QStringLiteral("language %1 is hidden").arg(line.langId);
            }
            return;
        }
        add(FindingKind::ShowNumber,
            {line.key.toString(), quotedAscii(value),
             isHidden ? QStringLiteral("0")
                 : isShown
                 ? QStringLiteral("1")
                 : withValues("1 to show it, or %1=0 to hide it", {line.key.toString()})});
        rememberIntended(line.key.toString());
        if (isHidden && !m_isReported) // As it was meant
            m_report.findings.last().severity = Finding::Warning;
    }

    /// Checks for quotation marks and comments, which are part of the value here. Returns true if
    /// there are any.
    bool checkText(const LangLine &line)
    {
        const QString text = line.value.toString();
        const QString value = withoutComment(text);
        if (value != text)
            addText(FindingKind::CommentInValue, line, withoutQuotes(value));
        else if (withoutQuotes(text) != text)
            addText(FindingKind::QuotedValue, line, withoutQuotes(text));
        else
            return false;
        return true;
    }

    void addText(FindingKind kind, const LangLine &line, const QString &value)
    {
        add(kind,
            {line.key.toString(), quoted(line.value.toString()), shortened(value, kQuoteLength)});
        rememberIntended(line.key.toString());
    }

    /// Checks for traces of a wrong encoding in a name. Those of the present one are reported
    /// already, for the line or for the whole file.
    void checkLetters(const LangLine &line)
    {
        const QString name = line.value.toString();
        const bool isLineReported = m_reported.contains(m_line) || m_undecodable;
        const bool isReported = isLineReported || m_reported.contains(0); // For the whole file
        const Misread original = isReported ? Misread() : misread(name);
        const QString decoded = withoutCodes(name).trimmed();
        if (!original.original.isEmpty()) {
            const QString shown = shortened(original.original, 60);
            addValue(FindingKind::GarbledName, line,
                     {shown, line.key.toString() + QLatin1Char('=') + shown, original.how});
            rememberIntended(line.key.toString());
        } else if (decoded != name) {
            addText(FindingKind::EscapedName, line, decoded);
        } else if (mixesScripts(name)) {
            QStringList latin;
            for (const QChar c : name) {
                if (c.script() == QChar::Script_Latin && !latin.contains(c))
                    latin += c;
            }
            add(FindingKind::MixedScripts,
                {line.key.toString(), quotedAscii(name), latin.join(QStringLiteral(", "))});
        } else if (!isLineReported
                   && (name.contains(QLatin1Char('?'))
                       || (m_decodable && name.contains(QChar(QChar::ReplacementCharacter))))) {
            addValue(FindingKind::LostLetters, line,
                     {m_report.encoding.startsWith(QLatin1String("UTF"))
                          ? QString()
                          : QStringLiteral("open the file in the encoding in which all other names "
                                           "look right, ")});
            rememberIntended(line.key.toString());
        } else if (withoutInvisible(name) != name) {
            const QString visible = withoutInvisible(name);
            addText(FindingKind::NameInvisible, line,
                    visible.isEmpty() || hasControls(name) ? QStringLiteral("<name>") : visible);
        }
    }

    void checkFolder(const LangLine &line)
    {
        const QString path = line.value.toString().replace(QLatin1Char('\\'), QLatin1Char('/'));
        static const QRegularExpression placeholder(QStringLiteral("%L?\\p{Nd}")); // QString::arg()
        const bool isChanged = placeholder.match(line.value.toString()).hasMatch();
        const QStringList values {
            line.key.toString(), quotedAscii(line.value.toString()), QString(),
            isChanged ? QStringLiteral("rename the folder, and write its new name "
                                       "after %1=")
                            .arg(line.key.toString())
                      : QStringLiteral("write the name of a folder in Lang after %1=")
                            .arg(line.key.toString())};
        const bool drive = path.size() > 1 && path.at(1) == QLatin1Char(':');
        if (isChanged)
            add(FindingKind::FolderPercent, values);
        else if (drive || path.startsWith(QLatin1Char('/')))
            add(FindingKind::FolderAbsolute, values);
        else if ((QLatin1Char('/') + path + QLatin1Char('/')).contains(QLatin1String("/../")))
            add(FindingKind::FolderDots, values);
        else
            return;
        rememberIntended(line.key.toString());
    }

    /// Sets @p key, which is @p field of a language or DEFAULT, to the line's value.
    void setKey(CatalogueKey &key, const LangLine &line, Field field)
    {
        const CatalogueKey earlier = key;
        key = {m_line, line.value.toString()};
        m_lines.keys.insert(line.key.toString());
        const bool isInConflict = m_conflict > 0 && earlier.line > m_conflict;
        if (earlier.line > 0 && !isInConflict) {
            m_repetitions[field ? line.langId : kNoLanguage] +=
                {line.key.toString(), field, earlier, key};
        }
    }

    void addRepeatedKey(const Repetition &repetition, const CatalogueKey &last)
    {
        m_report.addLine(FindingKind::RepeatedKey, repetition.later.line,
                         {repetition.key, QString::number(repetition.earlier.line),
                          quoted(repetition.earlier.value), QString::number(repetition.later.line),
                          quoted(repetition.later.value), QString::number(last.line)});
    }

    /// Reports a number whose keys are repeated, unless that may be a mistake in one line: at least
    /// two keys are repeated, one of them a different name or folder. Returns true if it is
    /// reported.
    bool addSeveralLanguages(int langId, const QVector<Repetition> &repetitions)
    {
        const auto differs = [&repetitions](Field field) {
            return std::any_of(
                repetitions.begin(), repetitions.end(), [field](const Repetition &one) {
                    return one.field == field && !one.earlier.value.isEmpty()
                        && !one.later.value.isEmpty() && one.earlier.value != one.later.value;
                });
        };
        const bool oneKey = std::all_of(repetitions.begin(), repetitions.end(),
                                        [&repetitions](const Repetition &one) {
                                            return one.field == repetitions.first().field;
                                        });
        const bool names = differs(&LanguageLines::name);
        if (oneKey || (!names && !differs(&LanguageLines::folder)))
            return false;

        const LanguageLines &language = m_lines.languages[langId];
        const Field field = names ? &LanguageLines::name : &LanguageLines::folder;
        const CatalogueKey last = language.*field;
        QStringList missing;
        QStringList missingWithLines;
        bool shown = true;
        for (const Repetition &one : repetitions) {
            if (one.field == field && one.earlier.value != last.value
                && !missing.contains(quoted(one.earlier.value))) {
                missing += quoted(one.earlier.value);
                missingWithLines += withLine(one.earlier);
            }
            if (one.field == &LanguageLines::show)
                shown = shown && one.earlier.value.toInt() == 1;
        }
        const QString separator = QStringLiteral(", ");
        Finding &finding = m_report.addLine(
            FindingKind::RepeatedLanguage, last.line,
            {QString::number(langId), shortened(missingWithLines.join(separator), kQuoteLength),
             withLine(last), shortened(missing.join(separator), kQuoteLength)});
        if (!shown) // The operator would not see it anyway.
            finding.severity = Finding::Warning;
        return true;
    }

    static QString withLine(const CatalogueKey &key)
    {
        return QStringLiteral("%1 on line %2").arg(quoted(key.value)).arg(key.line);
    }

    void addIdDiffers(const DifferentId &id)
    {
        const QString &value = id.id.value;
        const int wanted = value.toInt();
        QString remedy = QStringLiteral("write %1=%2").arg(id.key).arg(id.langId);
        if (isNumber(QStringRef(&value)) && wanted >= 0 && wanted <= 255) {
            remedy += QStringLiteral(" or, to give the language the number %1, rename its keys to "
                                     "LANG%1_ID, LANG%1_NAME and so on")
                          .arg(wanted);
            if (m_lines.languages.contains(wanted))
                remedy +=
                    QStringLiteral(", and give the present language %1 another number").arg(wanted);
            if (m_report.defaultLangId == id.langId)
                remedy +=
                    QStringLiteral(", and write DEFAULT=%1 to keep it the default").arg(wanted);
        }
        m_report.addLine(FindingKind::IdDiffers, id.id.line, {id.key, quoted(value), remedy});
    }

    /// Adds a finding about the line's key and value, and further values.
    void addValue(FindingKind kind, const LangLine &line, const QStringList &further = {})
    {
        add(kind, QStringList {line.key.toString(), quoted(line.value.toString())} + further);
    }

    void add(FindingKind kind, const QStringList &values = {})
    {
        if (!m_isReported)
            m_report.addLine(kind, m_line, values);
    }

    Report &m_report;
    const QVector<int> m_numbers;
    const bool m_decodable;
    QSet<int> m_reported; ///< The lines with findings about their bytes
    int m_count = 0;
    int m_line = 0;
    int m_conflict = 0;         ///< The first line of the merge conflict that the line is part of
    bool m_undecodable = false; ///< The line has bytes that its encoding lacks.
    bool m_isAppended = false;  ///< The line is in another encoding than the catalogue.
    bool m_inSection = false;
    bool m_isReported = false; ///< The line is part of what is reported for the whole file.
    LangLineReader m_reader;
    SectionCheck m_sections;
    CatalogueLines m_lines {true, false, {}, {}, {}, {}, {}};
    QMap<int, QVector<Repetition>> m_repetitions; ///< By language, or kNoLanguage for DEFAULT.
    QVector<DifferentId> m_differentIds;
};

void addUnreadable(Report &report, const QFile &file)
{
    const QFileInfo info(file);
    const QString put = QStringLiteral("put the catalogue there");
    if (info.isDir()) {
        report.addLine(
            FindingKind::CatalogueUnreadable, 0,
            {QStringLiteral("it is a folder"), QStringLiteral("rename the folder, and ") + put});
    } else if (info.exists() || info.isSymLink()) {
        report.addLine(
            FindingKind::CatalogueUnreadable, 0,
            {file.errorString().toLower(),
             QStringLiteral("give the user who runs the host permission to read the file")});
    } else {
        const NearbyCatalogue found = nearbyCatalogue(report.applicationDir);
        const QString reason = !found.path.isEmpty()
            ? QStringLiteral(", but there is ") + found.path
            : !found.remedy.isEmpty() ? QStringLiteral(", because there is no folder Lang")
                                      : QString();
        report.addLine(FindingKind::CatalogueMissing, 0,
                       {reason, found.remedy.isEmpty() ? put : found.remedy});
    }
}

QString remedyForNoText(const QByteArray &bytes)
{
    return bytes.startsWith("{\\rtf")
        ? QStringLiteral("open it in a word processor, and save it as plain text in Unicode (in "
                         "WordPad, as \"Unicode text document\")")
        : QStringLiteral("restore it from a backup");
}

/// Checks for what a power failure leaves at the end, which the list of languages may survive.
void checkEnd(Report &report, const QByteArray &bytes, CatalogueLines &lines)
{
    const bool isWide = report.encoding.startsWith(QLatin1String("UTF-16"));
    const bool isAppended =
        std::any_of(report.findings.cbegin(), report.findings.cend(), [](const Finding &finding) {
            return finding.kind == FindingKind::AppendedBytes;
        });
    if (isWide && bytes.size() % 2 != 0 && !isAppended)
        report.addLine(FindingKind::OddByte, 0);
    const int zeros = zeroTail(bytes, report.encoding);
    if (zeros == 0 || (zeros == 1 && isAppended)) // The last byte of UTF-16
        return;
    const QByteArray end = bytes.chopped(zeros).right(isWide ? 2 : 1);
    const bool complete = end.contains('\n') || end.isEmpty();
    Finding &finding =
        report.addLine(FindingKind::ZeroTail, 0,
                       {countText(zeros, "zero byte"),
                        complete ? QStringLiteral("lines may be missing before them")
                                 : QStringLiteral("the last line before them is wrong")});
    if (complete)
        return;
    finding.severity = Finding::Error;
    // What the last language lacks was in the line that is wrong.
    int last = 0;
    int number = 0;
    for (auto it = lines.languages.cbegin(); it != lines.languages.cend(); ++it) {
        const int line = std::max({it->id.line, it->name.line, it->folder.line, it->show.line});
        if (line > last) {
            last = line;
            number = it.key();
        }
    }
    for (const char *const field : {"NAME", "FOLDER", "SHOW"}) {
        lines.addReason(QStringLiteral("LANG%1_").arg(number) + QLatin1String(field), report);
    }
}

} // namespace

int LanguageLines::first() const
{
    int result = 0;
    for (const int line : {id.line, name.line, folder.line, show.line}) {
        if (line > 0 && (result == 0 || line < result))
            result = line;
    }
    return result;
}

void CatalogueLines::addReason(const QString &key, Report &report)
{
    findings.insert(key, report.findings.size() - 1);
    static const QRegularExpression language(QStringLiteral("^LANG([0-9]{1,9})_"));
    const QRegularExpressionMatch match = language.match(key);
    QVector<int> &numbers = report.findings.last().languages;
    if (match.hasMatch() && !numbers.contains(match.captured(1).toInt()))
        numbers += match.captured(1).toInt();
}

CatalogueLines checkCatalogue(Report &report)
{
    QFile file(applicationDir() + QLatin1String("/Lang/Lang.ini"));
    if (!openForReading(file)) {
        addUnreadable(report, file);
        return {};
    }
    const QByteArray bytes = file.readAll();
    file.seek(0);

    QTextStream in(&file);
    setCatalogueCodec(in, CTranslatorMgr::detectCodec(&file));
    QString text = in.readLine();
    // The stream recognises more BOMs than the plug-in and switches to their codecs.
    report.encoding = QString::fromLatin1(in.codec()->name());
    QVector<int> numbers;
    bool decodable = false; // Decided line by line without a BOM.
    if (report.encoding.startsWith(QLatin1String("UTF"))) {
        const int length = report.encoding == QLatin1String("UTF-8") ? 3
            : report.encoding.startsWith(QLatin1String("UTF-16"))    ? 2
                                                                     : 4;
        QByteArray bom = bytes.left(length).toHex().toUpper();
        for (int i = 2; i < bom.size(); i += 3)
            bom.insert(i, ' ');
        report.encodingReason =
            QStringLiteral("it starts with the BOM %1").arg(QString::fromLatin1(bom));
        const QChar replacement(QChar::ReplacementCharacter);
        decodable = length == 2
            || in.codec()->toUnicode(bytes).count(replacement)
                == bytes.count(QString(replacement).toUtf8());
        if (length == 2 && isTransferredAsText(bytes)) {
            report.addLine(FindingKind::TextTransfer, 0);
            return {};
        }
    } else {
        report.encoding = QStringLiteral("GB2312"); // Its codec may have the name of a superset.
        report.encodingReason = QStringLiteral("it has no BOM");
        if (looksLikeUtf16(bytes)) {
            report.addLine(FindingKind::Utf16WithoutBom, 0);
            return {};
        }
        const QString reason = report.listed.isEmpty() ? reasonNotText(bytes) : QString();
        if (!reason.isEmpty()) {
            report.addLine(FindingKind::CatalogueNotText, 0, {reason, remedyForNoText(bytes)});
            return {};
        }
        checkBytesWithoutBom(bytes, report);
        numbers = lineNumbersWithoutBom(bytes);
    }

    LineCheck lines(report, numbers, decodable);
    if (!bytes.isEmpty())
        lines.check(text);
    while (in.readLineInto(&text))
        lines.check(text);
    lines.finish();
    CatalogueLines result = lines.lines();
    checkEnd(report, bytes, result);
    return result;
}
