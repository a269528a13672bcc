#include "langcheck/check/SectionCheck.h"

#include "langcheck/Texts.h"
#include "langcheck/check/Guess.h"

#include <algorithm>

namespace {

const int kMost = 10000; ///< Sections and keys that are remembered; damaged files may have more.

} // namespace

void SectionCheck::add(const QString &text, int line, bool isHeader, bool inside)
{
    const bool isComment = text.startsWith(QLatin1Char(';')) || text.startsWith(QLatin1Char('#'));
    if (text.isEmpty() || isComment)
        return;
    m_isEmpty = false;
    const bool resembles = !inside && resemblesHeader(text);
    if ((isHeader || resembles) && m_sections.size() < kMost) {
        m_sections += Section();
        m_sections.last().header = text;
        m_sections.last().line = line;
        m_sections.last().resembles = resembles;
    } else if (!inside) {
        Section &section = m_sections.last();
        ++section.ignored;
        if (section.keys.size() < kMost && m_anyKey.match(plain(text)).hasMatch())
            section.keys += line;
        const QRegularExpressionMatch match = m_key.match(text);
        if (section.exactKeys.size() < kMost && match.hasMatch())
            section.exactKeys.insert(line, match.captured(1));
    }
}

bool SectionCheck::resemblesHeader(const QString &text)
{
    if (text.size() > 50 || text.contains(QLatin1Char('=')))
        return false;
    QString letters;
    const QString withoutBrackets = plain(withoutComment(text));
    for (const QChar c : withoutBrackets) {
        if (c.isLetterOrNumber())
            letters += c;
    }
    return !nearest(letters, {QStringLiteral("LANGMGR")}).isEmpty();
}

/// Returns the section in which most keys are.
const SectionCheck::Section &SectionCheck::first() const
{
    return *std::max_element(m_sections.begin(), m_sections.end(),
                             [](const Section &one, const Section &other) {
                                 return one.keys.size() < other.keys.size();
                             });
}

QString SectionCheck::costs(const Section &section, bool hasSection)
{
    if (section.ignored == 0)
        return QStringLiteral("it isn't recognised");
    QString result = section.ignored == 1
        ? QStringLiteral("the line below it is ignored")
        : QStringLiteral("the %1 lines below it are ignored").arg(section.ignored);
    if (!hasSection)
        result += QStringLiteral(", and the operator's list is empty");
    return result;
}

/// Reports the keys that should be in the section and those that it has already. DEFAULT alone may
/// be another program's.
void SectionCheck::addOutside(Report &report, CatalogueLines &lines, const Section &section)
{
    const QString header = quotedAscii(section.header);
    const QString place = section.line == 0 ? QStringLiteral("before the first section header")
                                            : QStringLiteral("below ") + header;
    const QString above = section.line == 0 ? QString() : QStringLiteral(" and above ") + header;
    for (const bool isSet : {false, true}) {
        QVector<int> found;
        for (auto it = section.exactKeys.cbegin(); it != section.exactKeys.cend(); ++it) {
            const bool isForeign =
                isSet && section.exactKeys.size() == 1 && *it == QLatin1String("DEFAULT");
            if (lines.keys.contains(*it) == isSet && !isForeign)
                found += it.key();
        }
        if (found.isEmpty())
            continue;
        const QString these = found.size() == 1 ? QStringLiteral("it") : QStringLiteral("them");
        const QString remedy = isSet
            ? QStringLiteral("delete %1 if no longer needed, because the section has the same keys")
            : QStringLiteral("move %1 below [LANG_MGR]");
        Finding &finding = report.addLine(FindingKind::OutsideSection, found.first(),
                                          {place, remedy.arg(these) + (isSet ? QString() : above)});
        finding.lines = found;
        if (isSet)
            finding.severity = Finding::Warning;
        for (const int line : qAsConst(found)) {
            if (!isSet)
                lines.addReason(section.exactKeys.value(line), report);
        }
    }
}

void SectionCheck::finish(Report &report, CatalogueLines &lines) const
{
    const bool hasSection = lines.hasSection;
    if (m_isEmpty) {
        report.addLine(FindingKind::CatalogueEmpty, 0);
        return;
    }
    const Section &most = first();
    for (const Section &section : m_sections) {
        const bool only = !hasSection && &section == &most;
        if (!hasSection && !only)
            continue;
        const bool bom = section.header.startsWith(QChar(QChar::ByteOrderMark));
        if (only && section.keys.isEmpty() && !section.resembles) {
            report.addLine(FindingKind::CatalogueForeign, 0);
        } else if (section.line == 0 && only) {
            const int line = section.keys.value(0, 1);
            report.addLine(FindingKind::NoSection, line, {QString::number(line)});
        } else if (section.line > 0 && bom) {
            report.addLine(FindingKind::SecondBom, section.line,
                           {QStringLiteral("starts with a second BOM"), costs(section, hasSection),
                            QStringLiteral("delete the BOM")});
        } else if (section.resembles || only) {
            Finding &finding =
                report.addLine(FindingKind::Header, section.line,
                               {quotedAscii(section.header), costs(section, hasSection)});
            if (!section.keys.isEmpty() || !hasSection)
                finding.severity = Finding::Error;
        } else if (!section.exactKeys.isEmpty()) {
            addOutside(report, lines, section);
        }
    }
}
