#include "lang/CTranslatorMgr.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>
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
        strLangFilePath =
            QCoreApplication::applicationDirPath() + QLatin1String("/Lang/chs/") + kQmFileName;
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
    if (!m_translator->load(strLangFilePath)) {
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

    const QString configPath =
        QCoreApplication::applicationDirPath() + QLatin1String("/Lang/Lang.ini");
    QFile file(configPath);
    if (!file.open(QIODevice::ReadOnly)) {
        // No blank before the path, deliberately.
        QMessageBox::warning(nullptr, QLatin1String("Warning"),
                             QLatin1String("Failed to open INI file:") + configPath,
                             QMessageBox::Ok);
        return;
    }

    // A Qt without the codec leaves the stream at its default one.
    QTextCodec *const codec = detectCodec(&file);
    QTextStream in(&file);
    in.setCodec(codec);
    if (codec && codec->name() == "UTF-16LE") {
        // Whether the stream has swallowed the mark or not: a mark that comes out is dropped, and
        // anything else is put back.
        QChar bom;
        in >> bom;
        if (bom != QChar(QChar::ByteOrderMark))
            in.seek(0);
    }

    QString currentSection;
    bool inLangMgr = false;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char(';'))
            || line.startsWith(QLatin1Char('#'))) {
            continue;
        }

        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            currentSection = line.mid(1, line.size() - 2);
            inLangMgr = currentSection == QLatin1String("LANG_MGR");
            continue;
        }

        const int equals = line.indexOf(QLatin1Char('='));
        if (inLangMgr && equals > 0)
            readKeyLine(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
    }

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

void CTranslatorMgr::readKeyLine(const QString &key, const QString &value)
{
    if (key == QLatin1String("DEFAULT")) {
        m_defaultLangId = value.toInt();
        return;
    }

    static const QRegularExpression pattern(QLatin1String("^LANG(\\d+)_(ID|NAME|FOLDER|SHOW)$"));
    const QRegularExpressionMatch match = pattern.match(key);
    if (!match.hasMatch())
        return;

    // Digits that no int can hold give 0, and the line goes to record 0.
    const int langId = match.capturedRef(1).toInt();
    const QStringRef field = match.capturedRef(2);

    // Any field creates the record, ID too; the value of ID itself is deliberately never read.
    LangEntry &lang = m_langMap[langId];
    lang.id = langId;
    if (field == QLatin1String("NAME")) {
        lang.name = value;
    } else if (field == QLatin1String("FOLDER")) {
        lang.folder = value;
        // One after the other: a placeholder inside the directory or the folder is replaced too.
        lang.qmPath = QString(QLatin1String("%1/Lang/%2/%3"))
                          .arg(QCoreApplication::applicationDirPath())
                          .arg(value)
                          .arg(kQmFileName);
    } else if (field == QLatin1String("SHOW")) {
        lang.show = value.toInt() == 1;
    }
}
