#include "langcheck/Deployment.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "langcheck/draw/MessageBoxes.h"

namespace {

QString checkedDir;

} // namespace

QString applicationDir()
{
    return checkedDir;
}

Deployment::Deployment(const QString &applicationDir)
{
    checkedDir = applicationDir;
    const MessageBoxes recorded;
    CTranslatorMgr::instance()->loadTranslator();
    m_boxes = recorded.seen();
}

Deployment::~Deployment()
{
    checkedDir.clear();
}

QString fallbackPath(const QString &applicationDir)
{
    return applicationDir + QLatin1String("/Lang/chs/") + kQmFileName;
}
