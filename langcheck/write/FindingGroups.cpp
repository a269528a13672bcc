#include "langcheck/write/FindingGroups.h"

#include "lang/CTranslatorMgr.h"
#include "langcheck/Texts.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace {

/// Returns @p text with only letters, digits and "-._~", as addresses have them.
QString addressPart(QString text)
{
    text.replace(QLatin1Char(' '), QLatin1Char('-'));
    return QString::fromLatin1(text.left(40).toUtf8().toPercentEncoding({}, {}, '_'));
}

/// Returns the anchor of the group: the kind and, unless the file is the catalogue, the folder of
/// the translation or the name of the file.
QString groupAnchor(const Finding &finding)
{
    if (finding.file == kCatalogueFile)
        return finding.id();
    const QString folders = QStringLiteral("Lang/");
    const QString translation = QLatin1Char('/') + kQmFileName;
    QString name = finding.file;
    if (name.startsWith(folders) && name.endsWith(translation))
        name = name.mid(folders.size()).chopped(translation.size());
    return finding.id() + QLatin1Char('-') + addressPart(name);
}

QString findingAnchor(const Finding &finding)
{
    QString anchor = groupAnchor(finding);
    if (finding.line > 0)
        anchor += QStringLiteral("-line-%1").arg(finding.line);
    // Files may have several of these, which differ in the English text.
    switch (finding.kind) {
    case FindingKind::TextBlank:
    case FindingKind::TextAmpersand:
    case FindingKind::TextHtml:
    case FindingKind::TextGarbled:
        return anchor + QLatin1Char('-') + addressPart(finding.values.at(0));
    case FindingKind::TextClipped:
        return anchor + QLatin1Char('-') + addressPart(finding.values.at(1));
    default:
        return anchor;
    }
}

/// Returns the numbers of the languages that a finding is about: those that it names, and those of
/// the keys in its lines.
QVector<int> languagesOf(const Finding &finding, const QHash<int, QString> &lines)
{
    QVector<int> result;
    const auto add = [&result](int language) {
        if (!result.contains(language))
            result += language;
    };
    for (const int language : finding.languages)
        add(language);
    static const QRegularExpression key(QStringLiteral("^\\s*LANG(\\d{1,9})_"));
    const QVector<int> numbers = linesOf(finding);
    for (const int number : numbers) {
        const QRegularExpressionMatch match = key.match(lines.value(number, finding.quote));
        if (match.hasMatch())
            add(match.captured(1).toInt());
    }
    return result;
}

} // namespace

FindingGroups::FindingGroups(const Report &report)
{
    QHash<QString, int> groupOfKey;
    QHash<QString, int> uses;
    const auto unique = [&uses](const QString &anchor) {
        const int use = ++uses[anchor];
        return use == 1 ? anchor : QStringLiteral("%1-%2").arg(anchor).arg(use);
    };
    QHash<int, QString> lines;
    for (int i = 0; i < report.lines.size(); ++i)
        lines.insert(report.lineNumbers.at(i), report.lines.at(i));
    for (int i = 0; i < report.findings.size(); ++i) {
        const Finding &finding = report.findings.at(i);
        const QString key =
            withValues("%1 %2 %3", {finding.id(), severityName(finding.severity), finding.file});
        if (!groupOfKey.contains(key)) {
            groupOfKey.insert(key, groups.size());
            groups += FindingGroup();
        }
        groups[groupOfKey.value(key)].findings += i;
        anchors += unique(findingAnchor(finding));
        languages += languagesOf(finding, lines);
        for (const int language : qAsConst(languages.last()))
            ofLanguage[language] += i;
        if (finding.file == kCatalogueFile) {
            const QVector<int> numbers = linesOf(finding);
            for (const int line : numbers)
                ofLine[line] += i;
        }
    }
    for (FindingGroup &group : groups) {
        const int first = group.findings.first();
        group.anchor = group.findings.size() == 1 ? anchors.at(first)
                                                  : unique(groupAnchor(report.findings.at(first)));
    }
}

QVector<int> linesOf(const Finding &finding)
{
    if (!finding.lines.isEmpty())
        return finding.lines;
    return finding.line > 0 ? QVector<int> {finding.line} : QVector<int>();
}
