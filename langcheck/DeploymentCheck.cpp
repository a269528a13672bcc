#include "langcheck/DeploymentCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/QmFile.h"
#include "lang/SourceTexts.h"
#include "langcheck/CatalogueCheck.h"
#include "langcheck/MessageBoxes.h"
#include "langcheck/TextFit.h"
#include "ui/DlgSettings.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTranslator>

#include <algorithm>
#include <iterator>

namespace {

QString checkedDir;

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
        checkApplicationDir();
        checkShown();
        checkDefault();
        checkNumbers();
        checkNames();
        checkTranslations();
    }

private:
    void checkApplicationDir()
    {
        const LangEntry any = m_report.listed.value(0);
        const QString plain =
            checkedDir + QLatin1String("/Lang/") + any.folder + QLatin1Char('/') + kQmFileName;
        if (!any.folder.contains(QLatin1Char('%')) && !any.qmPath.isEmpty()
            && any.qmPath != plain) {
            addFile(checkedDir, "application-folder", Finding::Error,
                    QStringLiteral("the percent sign in the name of this folder makes another path "
                                   "of each translation's; rename the folder"));
        }
    }

    void checkShown()
    {
        for (auto it = m_lines.languages.begin(); it != m_lines.languages.end(); ++it) {
            const bool listed =
                std::any_of(m_report.listed.begin(), m_report.listed.end(),
                            [&it](const LangEntry &lang) { return lang.id == it.key(); });
            if (it->show == 0) {
                addLine(it->first(), "show-missing", Finding::Warning,
                        QStringLiteral("language %1 is hidden, for no line says that it is shown; "
                                       "write LANG%1_SHOW=1, or 0")
                            .arg(it.key()));
            } else if (it->shown && !listed) {
                addLine(it->show, "incomplete", Finding::Error,
                        QStringLiteral("language %1 is shown but not listed: it lacks a name or a "
                                       "folder; write LANG%1_NAME and LANG%1_FOLDER")
                            .arg(it.key()));
            }
        }
        if (!m_lines.hasSection) {
            addLine(0, "no-section", Finding::Error,
                    QStringLiteral("the operator's list is empty: there is no line [LANG_MGR], and "
                                   "only what stands below it counts"));
        } else if (m_report.listed.isEmpty()) {
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

    void checkNumbers()
    {
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
        }
    }

    void checkNames()
    {
        QHash<QString, int> idOfName;
        const DlgSettings dialog;
        for (int i = 0; i < m_report.listed.size(); ++i) {
            const LangEntry &lang = m_report.listed.at(i);
            const int line = m_lines.languages.value(lang.id).name;
            if (idOfName.contains(lang.name)) {
                addLine(line, "same-name", Finding::Error,
                        QStringLiteral("language %1 has the name of language %2, and the operator "
                                       "cannot tell them apart")
                            .arg(lang.id)
                            .arg(idOfName.value(lang.name)));
            }
            idOfName.insert(lang.name, lang.id);
            if (nameIsClipped(dialog, i)) {
                addLine(line, "name-clipped", Finding::Error,
                        QStringLiteral("the name is wider than the list; find a shorter one"));
            }
        }
    }

    /// Of the languages that can be chosen, of the default, and the fallback.
    void checkTranslations()
    {
        QSet<QString> checked {QString()};
        const auto checkOnce = [this, &checked](const QString &path, Finding::Severity severity,
                                                const QString &whenMissing) {
            if (checked.contains(path))
                return;
            checked.insert(path);
            m_severity = severity;
            checkTranslation(path, whenMissing);
        };
        const QString chsIsSpoken =
            QStringLiteral("is missing: with this language as default the dialog speaks that of "
                           "the folder chs; put the compiled translation there");
        for (const LangEntry &lang : qAsConst(m_report.listed))
            checkOnce(lang.qmPath, Finding::Error, chsIsSpoken);
        const QString own = CTranslatorMgr::instance()->langFilePath(m_report.defaultLangId);
        checkOnce(own, Finding::Error, chsIsSpoken);

        const bool inUse = !QFileInfo::exists(own);
        checkOnce(
            checkedDir + QLatin1String("/Lang/chs/") + kQmFileName,
            inUse ? Finding::Error : Finding::Warning,
            inUse ? QStringLiteral("is missing, and so is the default's translation: all texts "
                                   "are empty")
                  : QStringLiteral("is missing: should the default's translation ever be missing "
                                   "too, all texts are empty"));
    }

    void checkTranslation(const QString &path, const QString &whenMissing)
    {
        QFile file(path);
        if (!QFileInfo::exists(path)) {
            addFile(path, "qm-missing", m_severity, whenMissing);
        } else if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
            addFile(path, "qm-unreadable", m_severity,
                    QStringLiteral("is no file that can be read: where it is needed, all texts are "
                                   "empty"));
        } else if (!loadQmFile(*CTranslatorMgr::instance()->translator(), path)) {
            addFile(path, "qm-foreign", m_severity,
                    QStringLiteral("is no compiled translation, or a damaged one: where it is "
                                   "needed, all texts are empty; compile the .ts file with "
                                   "lrelease"));
        } else {
            checkTexts(path);
        }
    }

    void checkTexts(const QString &path)
    {
        const auto isMissing = [](const SourceText &text) {
            return CTranslatorMgr::instance()
                ->translator()
                ->translate(text.context, text.text)
                .isEmpty();
        };
        if (std::all_of(std::begin(kSourceTexts), std::end(kSourceTexts), isMissing)) {
            addFile(path, "qm-foreign", m_severity,
                    QStringLiteral("holds no text of this plug-in: where it is needed, all are "
                                   "empty; is it another program's?"));
            return;
        }
        for (const SourceText &text : kSourceTexts) {
            if (isMissing(text)) {
                addFile(path, "text-missing", m_severity,
                        QStringLiteral("lacks \"%1\" of %2, which shows empty; translate it and "
                                       "compile again")
                            .arg(QLatin1String(text.text), QLatin1String(text.context)));
            }
        }
        const QStringList clipped = clippedTexts(DlgSettings());
        for (const QString &text : clipped) {
            addFile(path, "text-clipped", m_severity,
                    QStringLiteral("\"%1\" is wider than its place in the dialog; find a shorter "
                                   "word")
                        .arg(text));
        }
    }

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
    Finding::Severity m_severity = Finding::Error; ///< Of what is wrong with a translation.
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
        && !QFileInfo::exists(manager->langFilePath(report.defaultLangId));
    report.selected =
        DlgSettings().findChild<QComboBox *>(QStringLiteral("comboBox_language"))->currentIndex();

    const CatalogueLines lines = checkCatalogue(report);
    if (lines.readable)
        LanguageCheck(report, lines).check();
    return report;
}
