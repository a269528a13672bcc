#include "langcheck/CatalogueCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/Catalogue.h"
#include "lang/LangLine.h"
#include "lang/OpenFile.h"
#include "langcheck/BytesCheck.h"

#include <QFile>
#include <QSet>
#include <QTextCodec>
#include <QTextStream>

namespace {

const int kQuoteLength = 300;

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
    /// @p numbers are the lines' numbers; empty if they are consecutive.
    LineCheck(Report &report, const QVector<int> &numbers)
        : m_report(report)
        , m_numbers(numbers)
    {
        for (const Finding &finding : qAsConst(report.findings))
            m_reported.insert(finding.line);
    }

    const CatalogueLines &lines() const { return m_lines; }

    void check(const QString &text)
    {
        m_line = m_numbers.value(m_count, m_count + 1);
        ++m_count;
        const int found = m_report.findings.size();
        const QString trimmed = text.trimmed();
        if (trimmed.contains(QLatin1Char('\r')))
            add(FindingKind::CarriageReturn);
        if (m_numbers.isEmpty() && text.contains(QChar(QChar::ReplacementCharacter)))
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
            checkRepetition(m_lines.defaultLine, line);
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
            checkRepetition(language.id, line);
            if (!isNumber(line.value) || line.value.toInt() != line.langId)
                addValue(FindingKind::IdDiffers, line, {QString::number(line.langId)});
        } else if (line.kind == LangLine::Name) {
            checkRepetition(language.name, line);
            checkText(line);
            language.hasName = !line.value.isEmpty();
        } else if (line.kind == LangLine::Folder) {
            checkRepetition(language.folder, line);
            checkText(line);
            checkFolder(line);
            language.hasFolder = !line.value.isEmpty();
        } else {
            checkRepetition(language.show, line);
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

    void checkFolder(const LangLine &line)
    {
        const QString path = line.value.toString().replace(QLatin1Char('\\'), QLatin1Char('/'));
        if (path.split(QLatin1Char('/')).contains(QLatin1String("..")))
            addValue(FindingKind::FolderDots, line);
        const bool drive = path.size() > 1 && path.at(1) == QLatin1Char(':');
        if (drive || path.startsWith(QLatin1Char('/')))
            addValue(FindingKind::FolderAbsolute, line);
        if (line.value.contains(QLatin1Char('%')))
            addValue(FindingKind::FolderPercent, line);
    }

    /// Reports a repeated key. @p earlier is the previous one's line number and becomes this one's.
    void checkRepetition(int &earlier, const LangLine &line)
    {
        if (earlier > 0) {
            add(FindingKind::RepeatedKey,
                {line.key.toString(), QString::number(earlier), quoted(line.value.toString())});
        }
        earlier = m_line;
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
    QSet<int> m_reported; ///< The lines with findings about their bytes
    int m_count = 0;
    int m_line = 0;
    LangLineReader m_reader;
    CatalogueLines m_lines {true, false, 0, {}, {}};
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

QString shortened(const QString &text, int most)
{
    return text.size() > most ? text.left(most) + QLatin1String("...") : text;
}

QString quoted(const QString &text)
{
    QString shown = shortened(text, 60);
    return QLatin1Char('"') + shown.replace(QLatin1Char('\r'), QLatin1Char(' ')) + QLatin1Char('"');
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
    if (report.encoding.startsWith(QLatin1String("UTF"))) {
        const int length = report.encoding == QLatin1String("UTF-8") ? 3
            : report.encoding.startsWith(QLatin1String("UTF-16"))    ? 2
                                                                     : 4;
        report.encodingReason =
            QStringLiteral("it starts with the BOM %1")
                .arg(QString::fromLatin1(bytes.left(length).toHex(' ').toUpper()));
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

    LineCheck lines(report, numbers);
    if (!bytes.isEmpty())
        lines.check(text);
    while (in.readLineInto(&text))
        lines.check(text);
    return lines.lines();
}
