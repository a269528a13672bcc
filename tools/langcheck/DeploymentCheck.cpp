#include "tools/langcheck/DeploymentCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "tools/langcheck/CatalogueCheck.h"
#include "tools/langcheck/MessageBoxes.h"
#include "tools/langcheck/TextFit.h"
#include "ui/DlgSettings.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTranslator>

#include <algorithm>
#include <utility>

namespace {

QString checkedDir;

/// All texts of the plug-in, by context.
const std::pair<const char *, const char *> kTexts[] = {
    {"DlgSettings", "Language"},
    {"DlgSettings", "Settings"},
    {"PageSetLang", "Change"},
    {"PageSetLang", "Language:"},
    {"PageSetLang", "Change successful!"},
    {"PageSetLang", "Success"},
    {"PageSetLang", "Change failed!"},
    {"PageSetLang", "Error"},
};

/// Tells of the catalogue as a whole and of the files that it names.
class LanguageCheck
{
public:
    LanguageCheck(Report &report, const CatalogueLines &lines)
        : m_report(report)
        , m_lines(lines)
    {
    }

    void check()
    {
        checkShown();
        checkDefault();
        checkListed();
        checkTranslations();
        checkFallback();
    }

private:
    void checkShown()
    {
        for (auto it = m_lines.languages.begin(); it != m_lines.languages.end(); ++it) {
            const bool listed =
                std::any_of(m_report.listed.begin(), m_report.listed.end(),
                            [&it](const LangEntry &lang) { return lang.id == it.key(); });
            if (it->shown && !listed) {
                addLine(it->show, "incomplete", Finding::Error,
                        QStringLiteral("language %1 is shown but not listed: it lacks a name or a "
                                       "folder; write LANG%1_NAME and LANG%1_FOLDER")
                            .arg(it.key()));
            }
        }
        if (m_report.listed.isEmpty()) {
            addLine(0, "no-languages", Finding::Error,
                    QStringLiteral("the operator's list is empty: no language has a name, a folder "
                                   "and SHOW=1"));
        }
    }

    void checkDefault()
    {
        const int id = m_report.defaultLangId;
        if (m_report.listed.isEmpty())
            return;
        if (!m_lines.languages.contains(id)) {
            addLine(m_lines.defaultLine, "default-unknown", Finding::Error,
                    (m_lines.defaultLine > 0
                         ? QStringLiteral("the default, %1, is no language of the catalogue")
                         : QStringLiteral("no line tells the default, so it is %1, which is no "
                                          "language of the catalogue"))
                            .arg(id)
                        + QStringLiteral(": the dialog speaks the language of the folder chs; "
                                         "write DEFAULT= with the number of a shown language"));
        } else if (!m_lines.languages.value(id).shown) {
            addLine(m_lines.defaultLine, "default-hidden", Finding::Error,
                    QStringLiteral("the default, language %1, is hidden: the dialog speaks the "
                                   "language of the folder chs; show it with LANG%1_SHOW=1")
                        .arg(id));
        }
    }

    void checkListed()
    {
        QHash<QString, int> idOfName;
        QHash<int, int> idOfMachineNumber;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const LanguageLines lines = m_lines.languages.value(lang.id);
            const int machineNumber = lang.id & 0xFF;
            if (idOfMachineNumber.contains(machineNumber)) {
                addLine(lines.first(), "same-machine-number", Finding::Error,
                        QStringLiteral("the machine cannot tell language %1 from language %2: it "
                                       "takes the low 8 bits of a number, and is asked for %3; "
                                       "choose another number")
                            .arg(lang.id)
                            .arg(idOfMachineNumber.value(machineNumber))
                            .arg(machineNumber));
            } else if (machineNumber != lang.id) {
                addLine(lines.first(), "number-above-255", Finding::Warning,
                        QStringLiteral("the machine takes numbers up to 255: for language %1 it is "
                                       "asked for %2; choose a smaller number")
                            .arg(lang.id)
                            .arg(machineNumber));
            }
            idOfMachineNumber.insert(machineNumber, lang.id);
            if (idOfName.contains(lang.name)) {
                addLine(lines.name, "same-name", Finding::Error,
                        QStringLiteral("language %1 has the name of language %2, and the operator "
                                       "cannot tell them apart")
                            .arg(lang.id)
                            .arg(idOfName.value(lang.name)));
            }
            idOfName.insert(lang.name, lang.id);
        }
    }

    void checkTranslations()
    {
        QStringList checked;
        for (int i = 0; i < m_report.listed.size(); ++i) {
            const LangEntry &lang = m_report.listed.at(i);
            if (!checked.contains(lang.qmPath) && loadTranslation(lang.qmPath))
                checkTexts(lang.qmPath);
            checked += lang.qmPath;
            if (nameIsClipped(DlgSettings(), i)) {
                addLine(m_lines.languages.value(lang.id).name, "name-clipped", Finding::Error,
                        QStringLiteral("the name is wider than the list; find a shorter one"));
            }
        }
    }

    bool loadTranslation(const QString &path)
    {
        QFile file(path);
        if (!QFileInfo::exists(path)) {
            addFile(path, "qm-missing", Finding::Error,
                    QStringLiteral("is missing: with this language as default the dialog speaks "
                                   "that of the folder chs; put the compiled translation there"));
        } else if (!file.open(QIODevice::ReadOnly)) {
            addFile(path, "qm-unreadable", Finding::Error,
                    QStringLiteral("cannot be read, and with this language as default all texts "
                                   "are empty: %1")
                        .arg(file.errorString()));
        } else if (!CTranslatorMgr::instance()->loadFile(path)) {
            addFile(path, "qm-foreign", Finding::Error,
                    QStringLiteral("is no compiled translation, or a damaged one, and with this "
                                   "language as default "
                                   "all texts are empty; compile the .ts file with lrelease"));
        } else {
            return true;
        }
        return false;
    }

    void checkTexts(const QString &path)
    {
        const auto isMissing = [](const auto &text) {
            return translator()->translate(text.first, text.second).isEmpty();
        };
        if (std::all_of(std::begin(kTexts), std::end(kTexts), isMissing)) {
            addFile(path, "qm-foreign", Finding::Error,
                    QStringLiteral("holds no text of this plug-in, so that all are empty with this "
                                   "language as default; is it another program's?"));
            return;
        }
        for (const auto &text : kTexts) {
            if (isMissing(text)) {
                addFile(path, "text-missing", Finding::Error,
                        QStringLiteral("lacks \"%1\" of %2, which shows empty; translate it and "
                                       "compile again")
                            .arg(QLatin1String(text.second), QLatin1String(text.first)));
            }
        }
        const QStringList clipped = clippedTexts(DlgSettings());
        for (const QString &text : clipped) {
            addFile(path, "text-clipped", Finding::Error,
                    QStringLiteral("\"%1\" is wider than its place in the dialog; find a shorter "
                                   "word")
                        .arg(text));
        }
    }

    void checkFallback()
    {
        const QString path = checkedDir + QLatin1String("/Lang/chs/") + kQmFileName;
        const bool named =
            std::any_of(m_report.listed.begin(), m_report.listed.end(),
                        [&path](const LangEntry &lang) { return lang.qmPath == path; });
        if (!named && !QFileInfo::exists(path)) {
            addFile(path, "fallback-missing", Finding::Warning,
                    QStringLiteral("is missing: should the default's translation ever be missing "
                                   "too, all texts are empty"));
        }
    }

    static QTranslator *translator() { return CTranslatorMgr::instance()->translator(); }

    void addLine(int line, const char *kind, Finding::Severity severity, const QString &text)
    {
        m_report.findings.append(
            {QStringLiteral("Lang/Lang.ini"), line, severity, QLatin1String(kind), text});
    }

    void addFile(const QString &path, const char *kind, Finding::Severity severity,
                 const QString &text)
    {
        m_report.findings.append(
            {QDir(checkedDir).relativeFilePath(path), 0, severity, QLatin1String(kind), text});
    }

    Report &m_report;
    const CatalogueLines &m_lines;
};

} // namespace

QString applicationDir()
{
    return checkedDir;
}

Report checkDeployment(const QString &applicationDir)
{
    checkedDir = applicationDir;
    Report report;
    report.applicationDir = applicationDir;

    CTranslatorMgr *const manager = CTranslatorMgr::instance();
    MessageBoxes boxes;
    manager->loadTranslator();
    report.boxes = boxes.seen();
    report.listed = manager->visibleLanguages();
    report.defaultLangId = manager->defaultLangId();
    report.translation = manager->translator()->filePath();
    report.fallback = !report.translation.isEmpty()
        && report.translation != manager->langFilePath(report.defaultLangId);
    report.selected =
        DlgSettings().findChild<QComboBox *>(QStringLiteral("comboBox_language"))->currentIndex();

    const CatalogueLines lines = checkCatalogue(report);
    if (lines.readable)
        LanguageCheck(report, lines).check();
    return report;
}
