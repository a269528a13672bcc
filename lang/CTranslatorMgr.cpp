#include "lang/CTranslatorMgr.h"

#include "lang/ApplicationDir.h"
#include "lang/LangLine.h"
#include "lang/QmFile.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextCodec>
#include <QTextStream>
#include <QTranslator>

// QLatin1String and not QStringLiteral, here and everywhere: Qt may keep a text longer than the
// plug-in stays loaded, so no text may share the plug-in's read-only data.
const QString kQmFileName = QLatin1String("Zendel.qm");

CTranslatorMgr::CTranslatorMgr(QObject *parent)
    : QObject(parent)
    , m_translator(std::make_unique<QTranslator>())
{
}

CTranslatorMgr::~CTranslatorMgr() = default;

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
            // Names the file that the catalogue promised, not the fallback that is missing too.
            QMessageBox::critical(nullptr, QLatin1String("Error"),
                                  QLatin1String("Cannot find the \"")
                                      + langFilePath(defaultLangId()) + QLatin1String("\" file"),
                                  QMessageBox::Ok);
        }
    }

    // Loading a missing file is tried all the same: that empties the translator. The message has
    // no blanks around the path, deliberately.
    if (!loadFile(strLangFilePath)) {
        QMessageBox::warning(nullptr, QLatin1String("Warning"),
                             QLatin1String("Load translator file") + strLangFilePath
                                 + QLatin1String("failed!"),
                             QMessageBox::Ok);
    }
}

bool CTranslatorMgr::loadFile(const QString &fileName)
{
    if (!m_translator->load(fileName))
        return false;

    // Qt would crash or hang over a damaged file at the first text, and the host with it.
    QFile file(m_translator->filePath());
    if (file.open(QIODevice::ReadOnly)) {
        if (isSoundQmFile(file.readAll()))
            return true;
    }
    m_translator->load(nullptr, 0); // Empties it.
    return false;
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
    // To open what is no file may last for ever: a named pipe waits for someone at its other end.
    const bool isFile = QFileInfo(file).isFile();
    if (!isFile || !file.open(QIODevice::ReadOnly)) {
        // No blank before the path, deliberately.
        QMessageBox::warning(nullptr, QLatin1String("Warning"),
                             QLatin1String("Failed to open INI file:") + configPath,
                             QMessageBox::Ok);
        return;
    }

    QTextStream in(&file);
    setEncoding(in);

    // The directory first, and only then the folder and the file name: a placeholder inside the
    // directory or the folder is replaced too.
    const QString pathTemplate = QString(QLatin1String("%1/Lang/%2/%3")).arg(applicationDir());
    QString currentSection;
    QString text;
    while (in.readLineInto(&text)) {
        const LangLine line = LangLine::read(text, currentSection);
        if (line.kind == LangLine::Default)
            m_defaultLangId = line.value.toInt();
        else if (line.kind >= LangLine::Id)
            readKeyLine(line, pathTemplate);
    }

    file.close();
    m_loaded = true;
}

void CTranslatorMgr::setEncoding(QTextStream &in)
{
    // A Qt without the codec leaves the stream at its default one.
    QTextCodec *const codec = detectCodec(in.device());
    in.setCodec(codec);
    if (codec && codec->name() == "UTF-16LE") {
        // Whether the stream has swallowed the mark or not: a mark that comes out is dropped, and
        // anything else is put back.
        QChar bom;
        in >> bom;
        if (bom != QChar(QChar::ByteOrderMark))
            in.seek(0);
    }
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

void CTranslatorMgr::readKeyLine(const LangLine &line, const QString &pathTemplate)
{
    // Any field creates the record, ID too; the value of ID itself is deliberately never read.
    LangEntry &lang = m_langMap[line.langId];
    lang.id = line.langId;
    if (line.kind == LangLine::Name) {
        lang.name = line.value.toString();
    } else if (line.kind == LangLine::Folder) {
        lang.folder = line.value.toString();
        lang.qmPath = pathTemplate.arg(lang.folder).arg(kQmFileName);
    } else if (line.kind == LangLine::Show) {
        lang.show = line.value.toInt() == 1;
    }
}
