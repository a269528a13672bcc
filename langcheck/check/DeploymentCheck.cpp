#include "langcheck/check/DeploymentCheck.h"

#include "lang/CTranslatorMgr.h"
#include "langcheck/Deployment.h"
#include "langcheck/Translation.h"
#include "langcheck/check/CatalogueCheck.h"
#include "langcheck/check/HostCheck.h"
#include "langcheck/check/LanguageCheck.h"
#include "langcheck/check/TranslationCheck.h"
#include "ui/DlgSettings.h"

#include <QComboBox>
#include <QFileInfo>

Report checkDeployment(const QString &applicationDir)
{
    const Deployment deployment(applicationDir);
    const CTranslatorMgr &manager = *CTranslatorMgr::instance();
    Report report;
    report.applicationDir = applicationDir;
    report.boxes = deployment.boxes();
    report.listed = manager.visibleLanguages();
    report.defaultLangId = manager.defaultLangId();
    // Loaded again, to know the file.
    const QString own = manager.langFilePath(report.defaultLangId);
    const bool fallback = !QFileInfo::exists(own);
    if (const auto translation = loadTranslation(fallback ? fallbackPath(applicationDir) : own)) {
        report.translation = translation->fileName;
        report.fallback = fallback;
    }
    report.selected =
        DlgSettings().findChild<QComboBox *>(QStringLiteral("comboBox_language"))->currentIndex();

    CatalogueLines lines = checkCatalogue(report);
    if (lines.readable)
        checkLanguages(report, lines);
    checkTranslations(report, lines);
    for (Finding &finding : report.findings)
        finding.quote = lines.texts.value(finding.line);
    checkHost(report);
    arrange(report.findings);
    return report;
}
