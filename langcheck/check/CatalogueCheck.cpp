#include "langcheck/check/CatalogueCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"
#include "lang/LangLine.h"
#include "lang/OpenFile.h"
#include "langcheck/Texts.h"
#include "langcheck/check/BytesCheck.h"

#include <QFile>
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
        for (auto it = m_repetitions.constBegin(); it != m_repetitions.constEnd(); ++it) {
            if (it.key() != kNoLanguage && addSeveralLanguages(it.key(), *it))
                continue;
            for (const Repetition &one : *it) {
                addRepeatedKey(
                    one, one.field ? m_lines.languages[it.key()].*one.field : m_lines.defaultKey);
            }
        }
        for (const DifferentId &id : qAsConst(m_differentIds))
            addIdDiffers(id);
    }

    void check(const QString &text)
    {
        m_line = m_numbers.value(m_count, m_count + 1);
        ++m_count;
        if (m_count <= kMostLines) {
            m_report.lines += shortened(text, kQuoteLength);
            m_report.lineNumbers += m_line;
        }
        const int found = m_report.findings.size();
        const QString trimmed = text.trimmed();
        if (trimmed.contains(QLatin1Char('\r')))
            add(FindingKind::CarriageReturn);
        m_undecodable = !m_decodable && m_numbers.isEmpty()
            && text.contains(QChar(QChar::ReplacementCharacter));
        if (m_undecodable)
            add(FindingKind::Undecodable, {m_report.encoding});
        if (text.startsWith(QChar(QChar::ByteOrderMark)))
            add(FindingKind::SecondBom);
        const LangLine line = m_reader.read(text);
        checkLine(line, trimmed);
        // Later checks may report lines with these keys.
        if (m_report.findings.size() > found || m_reported.contains(m_line)
            || line.kind == LangLine::Default || line.isLanguageKey()) {
            m_lines.texts.insert(m_line, shortened(text, kQuoteLength));
        }
    }

private:
    using Field = CatalogueKey LanguageLines::*;

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

    void checkLine(const LangLine &line, const QString &text)
    {
        switch (line.kind) {
        case LangLine::Blank:
        case LangLine::Comment:
            break;
        case LangLine::Header:
            checkHeader(line, text);
            break;
        case LangLine::Outside:
            checkOutside(text);
            break;
        case LangLine::NoKey:
            add(FindingKind::NoKey, {quoted(text)});
            break;
        case LangLine::OtherKey:
            checkOtherKey(line);
            break;
        case LangLine::Default:
            setKey(m_lines.defaultKey, line, nullptr);
            if (!isNumber(line.value))
                add(FindingKind::DefaultNumber, {quoted(line.value.toString())});
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
        if (!text.startsWith(QLatin1Char('[')))
            add(FindingKind::OutsideSection, {quoted(text)});
        else if (!text.contains(QLatin1Char('\r')))
            add(FindingKind::Header, {quoted(text)});
    }

    void checkHeader(const LangLine &line, const QString &text)
    {
        const QLatin1String section("LANG_MGR");
        m_lines.hasSection = m_lines.hasSection || line.key == section;
        if (line.key != section && line.key.trimmed().compare(section, Qt::CaseInsensitive) == 0)
            add(FindingKind::Header, {quoted(text)});
    }

    void checkOtherKey(const LangLine &line)
    {
        const QString key = line.key.toString();
        // The plug-in's own reader decides whether the key is known in upper case.
        const QString corrected = key.toUpper() + QLatin1Char('=');
        if (LangLineReader(m_reader).read(corrected).kind != LangLine::OtherKey)
            add(FindingKind::KeyCase, {quoted(key), key.toUpper()});
        else
            add(FindingKind::UnknownKey, {quoted(key)});
    }

    void checkLanguageKey(const LangLine &line)
    {
        if (!isNumber(line.key.mid(4, line.key.indexOf(QLatin1Char('_')) - 4)))
            add(FindingKind::NumberTooLong, {line.key.toString()});

        LanguageLines &language = m_lines.languages[line.langId];
        if (line.kind == LangLine::Id) {
            setKey(language.id, line, &LanguageLines::id);
            if (!isNumber(line.value) || line.value.toInt() != line.langId)
                m_differentIds += {line.key.toString(), line.langId, language.id};
        } else if (line.kind == LangLine::Name) {
            setKey(language.name, line, &LanguageLines::name);
            checkText(line);
            checkLetters(line);
        } else if (line.kind == LangLine::Folder) {
            setKey(language.folder, line, &LanguageLines::folder);
            checkText(line);
            checkFolder(line);
        } else {
            setKey(language.show, line, &LanguageLines::show);
            if (!isNumber(line.value))
                addValue(FindingKind::ShowNumber, line);
            else if (line.value.toInt() != 0 && line.value.toInt() != 1)
                addValue(FindingKind::ShowOther, line);
            language.shown = line.value.toInt() == 1;
        }
    }

    /// Checks for quotation marks and comments, which are part of the value here.
    void checkText(const LangLine &line)
    {
        const QStringRef text = line.value;
        const QLatin1Char mark('"');
        if (text.size() > 1 && text.startsWith(mark) && text.endsWith(mark))
            add(FindingKind::QuotedValue, {line.key.toString(), text.toString()});
        if (text.contains(QLatin1String(" ;")) || text.contains(QLatin1String(" #")))
            addValue(FindingKind::CommentInValue, line);
    }

    /// Checks for traces of a wrong encoding in a name. Those of the present one are reported
    /// already, for the line or for the whole file.
    void checkLetters(const LangLine &line)
    {
        const QString name = line.value.toString();
        const QString original = readAgainAsUtf8(name);
        if (!original.isEmpty()) {
            addValue(FindingKind::GarbledName, line, {shortened(original, 60)});
        } else if (!m_reported.contains(m_line) && !m_undecodable
                   && (name.contains(QLatin1Char('?'))
                       || (m_decodable && name.contains(QChar(QChar::ReplacementCharacter))))) {
            addValue(FindingKind::LostLetters, line);
        }
    }

    void checkFolder(const LangLine &line)
    {
        const QString path = line.value.toString().replace(QLatin1Char('\\'), QLatin1Char('/'));
        if ((QLatin1Char('/') + path + QLatin1Char('/')).contains(QLatin1String("/../")))
            addValue(FindingKind::FolderDots, line);
        const bool drive = path.size() > 1 && path.at(1) == QLatin1Char(':');
        if (drive || path.startsWith(QLatin1Char('/')))
            addValue(FindingKind::FolderAbsolute, line);
        if (line.value.contains(QLatin1Char('%')))
            addValue(FindingKind::FolderPercent, line);
    }

    /// Sets @p key, which is @p field of a language or DEFAULT, to the line's value.
    void setKey(CatalogueKey &key, const LangLine &line, Field field)
    {
        const CatalogueKey earlier = key;
        key = {m_line, line.value.toString()};
        if (earlier.line > 0) {
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
        m_report.addLine(kind, m_line, values);
    }

    Report &m_report;
    const QVector<int> m_numbers;
    const bool m_decodable;
    QSet<int> m_reported; ///< The lines with findings about their bytes
    int m_count = 0;
    int m_line = 0;
    bool m_undecodable = false; ///< The line has bytes that its encoding lacks.
    LangLineReader m_reader;
    CatalogueLines m_lines {true, false, {}, {}, {}};
    QMap<int, QVector<Repetition>> m_repetitions; ///< By language, or kNoLanguage for DEFAULT.
    QVector<DifferentId> m_differentIds;
};

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

CatalogueLines checkCatalogue(Report &report)
{
    QFile file(applicationDir() + QLatin1String("/Lang/Lang.ini"));
    if (!openForReading(file)) {
        report.addLine(FindingKind::CatalogueUnreadable, 0);
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
    } else {
        report.encoding = QStringLiteral("GB2312"); // Its codec may have the name of a superset.
        report.encodingReason = QStringLiteral("it has no BOM");
        if (looksLikeUtf16(bytes)) {
            report.addLine(FindingKind::Utf16WithoutBom, 0);
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
    return lines.lines();
}
