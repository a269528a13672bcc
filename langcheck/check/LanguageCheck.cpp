#include "langcheck/check/LanguageCheck.h"

#include "lang/CTranslatorMgr.h"
#include "langcheck/Deployment.h"
#include "langcheck/Texts.h"
#include "langcheck/Translation.h"
#include "langcheck/check/Guess.h"
#include "langcheck/draw/TextFit.h"
#include "ui/DlgSettings.h"

#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace {

bool isInt(const QString &value)
{
    bool ok = false;
    QStringRef(&value).toInt(&ok);
    return ok;
}

class LanguageCheck
{
public:
    LanguageCheck(Report &report, CatalogueLines &lines)
        : m_report(report)
        , m_lines(lines)
    {
    }

    void check()
    {
        listHidden();
        if (!m_lines.hasSection)
            return;
        if (!m_report.listed.isEmpty())
            checkLost();
        checkShown();
        checkDefault();
        checkNumbers();
        checkNames();
        if (m_report.listed.isEmpty() && m_report.count(Finding::Error) == 0 && !explainEmptyList())
            addNoLanguages();
    }

private:
    /// If no key is recognised, adds that consequence to the finding that says why, and returns
    /// true.
    bool explainEmptyList()
    {
        int first = m_report.findings.size();
        for (const int index : qAsConst(m_lines.findings)) {
            const FindingKind kind = m_report.findings.at(index).kind;
            if (kind >= FindingKind::NoKey && kind <= FindingKind::UnknownKey)
                first = std::min(first, index);
        }
        if (first == m_report.findings.size())
            return false;
        m_report.findings[first].consequences += QStringLiteral("the operator's list is empty");
        m_report.findings[first].severity = Finding::Error;
        return true;
    }

    void addNoLanguages()
    {
        const auto isComplete = [](const HiddenLanguage &language) {
            return !language.name.isEmpty() && !language.folder.isEmpty();
        };
        if (std::any_of(m_report.hidden.cbegin(), m_report.hidden.cend(), isComplete)) {
            m_report.addLine(FindingKind::NoLanguages, 0,
                             {QStringLiteral("all languages are hidden"),
                              QStringLiteral("write SHOW=1 for each language that is to be "
                                             "offered, and the number of one of them after "
                                             "DEFAULT=")});
        } else {
            m_report.addLine(FindingKind::NoLanguages, 0,
                             {QStringLiteral("no language has a name, a folder and SHOW=1"),
                              QStringLiteral("write all three for at least one language")});
        }
    }

    void listHidden()
    {
        for (auto it = m_lines.languages.begin(); it != m_lines.languages.end(); ++it) {
            const bool listed = std::any_of(
                m_report.listed.cbegin(), m_report.listed.cend(),
                [number = it.key()](const LangEntry &lang) { return lang.id == number; });
            if (!listed)
                m_report.hidden += {it.key(), it->name.value, it->folder.value, it->first()};
        }
    }

    /// A language of which no line is recognised isn't even hidden.
    void checkLost()
    {
        static const QRegularExpression key(QStringLiteral("^LANG([0-9]+)_"));
        QMap<int, int> lost; // A finding of each language
        for (auto it = m_lines.findings.cbegin(); it != m_lines.findings.cend(); ++it) {
            const QRegularExpressionMatch match = key.match(it.key());
            const int number = match.captured(1).toInt();
            const bool isRead = !it.key().endsWith(QLatin1String("_ID"));
            if (match.hasMatch() && isRead && !m_lines.languages.contains(number))
                lost.insert(number, std::min(it.value(), lost.value(number, it.value())));
        }
        for (auto it = lost.cbegin(); it != lost.cend(); ++it) {
            Finding &finding = m_report.findings[it.value()];
            finding.consequences += QStringLiteral("language %1 isn't offered").arg(it.key());
            finding.severity = Finding::Error;
        }
    }

    void checkShown()
    {
        for (auto it = m_lines.languages.begin(); it != m_lines.languages.end(); ++it) {
            if (it->tooLong)
                continue;
            if (it->show.line == 0
                && !isExplained(languageKey(it.key(), "SHOW"),
                                QStringLiteral("language %1 is hidden").arg(it.key()))) {
                m_report.addLine(FindingKind::ShowMissing, it->first(),
                                 {QString::number(it.key())});
            }
            if (it->shown && it->name.value.isEmpty())
                addIncomplete(it->name.line, it->show.line, it.key(), "NAME", "<name>");
            if (it->shown && it->folder.value.isEmpty())
                addIncomplete(it->folder.line, it->show.line, it.key(), "FOLDER", "<folder>");
        }
    }

    /// Reports the line with the empty key, if there is one, or else the SHOW line.
    void addIncomplete(int line, int showLine, int number, const char *field, const char *value)
    {
        const QString key = languageKey(number, field);
        const QString consequence =
            QStringLiteral("language %1 has no %2 and isn't offered")
                .arg(number)
                .arg(QLatin1String(field).size() == 4 ? QStringLiteral("name")
                                                      : QStringLiteral("folder"));
        if (line == 0 && isExplained(key, consequence))
            return;
        m_report.addLine(FindingKind::Incomplete, line > 0 ? line : showLine,
                         {key, QLatin1String(value)});
    }

    /// If a finding says why the key is missing, adds the consequence to it and returns true.
    bool isExplained(const QString &key, const QString &consequence)
    {
        const int index = m_lines.findings.value(key, -1);
        if (index < 0)
            return false;
        Finding &finding = m_report.findings[index];
        finding.consequences += consequence;
        finding.severity = Finding::Error;
        return true;
    }

    void checkDefault()
    {
        const int id = m_report.defaultLangId;
        if (m_report.listed.isEmpty())
            return;
        const QString effect = QStringLiteral("the dialog ") + fallbackEffect(m_report);
        const CatalogueKey &key = m_lines.defaultKey;
        const bool isNumber = isInt(key.value);
        if (m_lines.languages.value(id).shown) {
            if (key.line > 0 && !isNumber) {
                m_report
                    .addLine(FindingKind::DefaultNumber, key.line,
                             {quotedAscii(key.value), QStringLiteral("language 0 is the default"),
                              numbers(key.value)})
                    .severity = Finding::Warning;
            }
        } else if (key.line == 0) {
            if (!isExplained(QStringLiteral("DEFAULT"), effect))
                m_report.addLine(FindingKind::DefaultMissing, 0, {effect, numbers(key.value)});
        } else if (isNumber && isExplained(QStringLiteral("DEFAULT"), effect)) {
            return; // Another line has changed it.
        } else if (!isNumber) {
            m_report.addLine(FindingKind::DefaultNumber, key.line,
                             {quotedAscii(key.value), effect, numbers(key.value)});
        } else if (m_lines.languages.contains(id)) {
            if (!isExplained(languageKey(id, "SHOW"), effect)) {
                m_report.addLine(FindingKind::DefaultHidden, key.line,
                                 {QString::number(id), effect, numbers({})});
            }
        } else {
            m_report.addLine(FindingKind::DefaultUnknown, key.line,
                             {QString::number(id), effect, numbers({})});
        }
    }

    /// Returns the number that DEFAULT was probably meant to have, or all that are possible.
    QString numbers(const QString &value) const
    {
        const int meant = intendedNumber(value);
        QStringList all;
        for (const LangEntry &lang : m_report.listed) {
            if (lang.id == meant || lang.name.compare(value, Qt::CaseInsensitive) == 0)
                return QString::number(lang.id);
            all += QStringLiteral("%1 for %2").arg(lang.id).arg(shortened(lang.name, 30));
        }
        const int most = 30;
        if (all.size() > most)
            all = all.mid(0, most) + QStringList {QStringLiteral("and so on")};
        return m_report.listed.size() == 1
            ? QString::number(m_report.listed.first().id)
            : QStringLiteral("<number>: ") + all.join(QStringLiteral(", "));
    }

    /// Returns the language of two that is to be hidden: not the default.
    QString toBeHidden(int earlier, int later) const
    {
        return QString::number(earlier == m_report.defaultLangId ? later : earlier);
    }

    void checkNumbers()
    {
        QHash<int, int> idOfMachineNumber;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const LanguageLines &language = m_lines.languages[lang.id];
            const int machineNumber = lang.id & 0xFF;
            const QString number = QString::number(machineNumber);
            if (idOfMachineNumber.contains(machineNumber)) {
                const int other = idOfMachineNumber.value(machineNumber);
                add(FindingKind::SameMachineNumber, language.first(), lang.id,
                    {QString::number(lang.id), QString::number(other), number,
                     QString::number(std::max(lang.id, other))})
                    .languages += other;
            } else if (machineNumber != lang.id) {
                bool isNumber = false;
                const int meant = language.id.value.toInt(&isNumber);
                const bool isFree =
                    isNumber && meant >= 0 && meant <= 255 && !m_lines.languages.contains(meant);
                add(FindingKind::NumberAbove255, language.first(), lang.id,
                    {QString::number(lang.id), number,
                     isFree ? QStringLiteral(", such as the %1 in its ID").arg(meant) : QString()});
            }
            idOfMachineNumber.insert(machineNumber, lang.id);
        }
    }

    void checkNames()
    {
        QHash<QString, int> idOfName;
        const DlgSettings dialog;
        for (int i = 0; i < m_report.listed.size(); ++i) {
            const LangEntry &lang = m_report.listed.at(i);
            const int line = m_lines.languages.value(lang.id).name.line;
            const QString key = languageKey(lang.id, "NAME");
            // What is wrong with a name is seen by the operator.
            const int found = m_lines.findings.value(key, -1);
            const bool isWrong = found >= 0 && m_report.findings.at(found).line == line;
            if (isWrong)
                m_report.findings[found].severity = Finding::Error;
            if (idOfName.contains(lang.name) && !isWrong) {
                const int other = idOfName.value(lang.name);
                add(FindingKind::SameName, line, lang.id,
                    {key, QString::number(other), quoted(lang.name), toBeHidden(other, lang.id)})
                    .languages += other;
            }
            idOfName.insert(lang.name, lang.id);
            const ShownText name = languageName(dialog, i);
            if (name.clipped && !isWrong) {
                add(FindingKind::NameClipped, line, lang.id,
                    {key, QLatin1String(name.tooTall ? "tall" : "wide"), quoted(lang.name),
                     QString::number(name.size), QString::number(name.room),
                     name.tooTall ? QStringLiteral("reduce the display's scaling or its font size")
                                  : QStringLiteral("use a shorter name")});
            }
        }
    }

    Finding &add(FindingKind kind, int line, int number, const QStringList &values)
    {
        Finding &finding = m_report.addLine(kind, line, values);
        finding.languages += number;
        return finding;
    }

    Report &m_report;
    CatalogueLines &m_lines;
};

} // namespace

void checkLanguages(Report &report, CatalogueLines &lines)
{
    LanguageCheck(report, lines).check();
}

QString fallbackEffect(const Report &report)
{
    const QString path = fallbackPath(report.applicationDir);
    const QString name = report.relative(path);
    if (!QFileInfo::exists(path))
        return QStringLiteral("has empty texts, because the fallback, %1, doesn't exist").arg(name);
    return loadTranslation(path)
        ? QStringLiteral("uses the fallback, ") + name
        : QStringLiteral("has empty texts, because the fallback, %1, can't be loaded").arg(name);
}

QString languageKey(int number, const char *field)
{
    return QStringLiteral("LANG%1_").arg(number) + QLatin1String(field);
}
