#include "lang/CTranslatorMgr.h"

#include "lang/ApplicationDir.h"
#include "lang/Catalogue.h"
#include "lang/OpenFile.h"
#include "lang/QmFile.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextCodec>
#include <QTextStream>
#include <QTranslator>

// The plug-in uses QLatin1String instead of QStringLiteral because Qt may keep a string after the
// plug-in has been unloaded, so strings must not refer to the plug-in's read-only data.
const QString kQmFileName = QLatin1String("Zendel.qm");

CTranslatorMgr::CTranslatorMgr(QObject *parent)
    : QObject(parent)
    , m_translator(new QTranslator)
{
}

CTranslatorMgr::~CTranslatorMgr()
{
    delete m_translator; // GCOV_EXCL_BR_LINE: Never null.
    m_translator = nullptr;
}

CTranslatorMgr *CTranslatorMgr::instance()
{
    static CTranslatorMgr translatorMgr;
    return &translatorMgr;
}

void CTranslatorMgr::loadTranslator()
{
    loadLangConfig();

    QString strLangFilePath = langFilePath(defaultLangId());
    if (!QFileInfo::exists(strLangFilePath)) {
        strLangFilePath = applicationDir() + QLatin1String("/Lang/chs/") + kQmFileName;
        if (!QFileInfo::exists(strLangFilePath)) {
            // Deliberate: shows the default language's file, not the fallback, because that is the
            // one that the machine lacks.
            QMessageBox::critical(nullptr, QLatin1String("Error"),
                                  QLatin1String("Cannot find the \"")
                                      + langFilePath(defaultLangId()) + QLatin1String("\" file"),
                                  QMessageBox::Ok);
        }
    }

    // Deliberate: a missing file is loaded too, because that empties the translator, and the
    // message has no spaces around the path, because it is looked up and matched by its exact text.
    if (!loadQmFile(*m_translator, strLangFilePath)) {
        QMessageBox::warning(nullptr, QLatin1String("Warning"),
                             QLatin1String("Load translator file") + strLangFilePath
                                 + QLatin1String("failed!"),
                             QMessageBox::Ok);
    }
}

int CTranslatorMgr::defaultLangId() const
{
    return m_loaded ? m_defaultLangId : 0;
}

QString CTranslatorMgr::langFilePath(int langId) const
{
    const auto entry = m_langMap.constFind(langId);
    if (!m_loaded || entry == m_langMap.constEnd() || !entry->show)
        return QString();
    return entry->qmPath;
}

QList<LangEntry> CTranslatorMgr::visibleLanguages() const
{
    QList<LangEntry> result;
    if (!m_loaded)
        return result;

    for (const LangEntry &entry : m_langMap) {
        if (entry.show && !entry.name.isEmpty() && !entry.folder.isEmpty())
            result.append(entry);
    }
    return result;
}

void CTranslatorMgr::loadLangConfig()
{
    m_langMap.clear();
    m_loaded = false;
    m_defaultLangId = 0;

    const QString configPath = applicationDir() + QLatin1String("/Lang/Lang.ini");
    QFile file(configPath);
    if (!openForReading(file)) {
        // Deliberate: no space before the path, as in the message about the translator file.
        QMessageBox::warning(nullptr, QLatin1String("Warning"),
                             QLatin1String("Failed to open INI file:") + configPath,
                             QMessageBox::Ok);
        return;
    }

    QTextStream in(&file);
    setCatalogueCodec(in, detectCodec(&file));
    readCatalogue(in, m_defaultLangId, m_langMap);

    file.close();
    m_loaded = true;
}

QTextCodec *CTranslatorMgr::detectCodec(QIODevice *device)
{
    const QByteArray header = device->peek(3);
    if (header.startsWith("\xFF\xFE"))
        return QTextCodec::codecForName("UTF-16LE");
    if (header.startsWith("\xEF\xBB\xBF"))
        return QTextCodec::codecForName("UTF-8");
    return QTextCodec::codecForName("GB2312");
}
