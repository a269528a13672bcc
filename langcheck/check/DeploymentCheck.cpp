#include "langcheck/check/DeploymentCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/SourceTexts.h"
#include "langcheck/Deployment.h"
#include "langcheck/Texts.h"
#include "langcheck/Translation.h"
#include "langcheck/check/CatalogueCheck.h"
#include "langcheck/check/HostCheck.h"
#include "langcheck/draw/TextFit.h"
#include "ui/DlgSettings.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>
#include <optional>

namespace {

const int kStartLength = 10000; ///< Enough of a file to see what it is.

#ifdef Q_OS_WIN
const Qt::CaseSensitivity kFileNames = Qt::CaseInsensitive;
#else
const Qt::CaseSensitivity kFileNames = Qt::CaseSensitive;
#endif

/// Returns the name of a folder in Lang as it is on disk, where upper and lower case may differ;
/// empty if there is no such folder.
QString nameOnDisk(const QString &folder)
{
    const QStringList folders = QDir(applicationDir() + QLatin1String("/Lang"))
                                    .entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    if (folders.contains(folder))
        return folder;
    const auto it =
        std::find_if(folders.begin(), folders.end(), [&folder](const QString &candidate) {
            return candidate.compare(folder, Qt::CaseInsensitive) == 0;
        });
    return it == folders.end() ? QString() : *it;
}

/// Returns the code points of the characters that aren't ASCII, because some look like ASCII.
QStringList codePoints(const QString &text)
{
    QStringList result;
    const QVector<uint> codes = text.toUcs4();
    for (const uint code : codes) {
        if (code >= 0x80)
            result += QStringLiteral("U+%1").arg(QString::number(code, 16).toUpper(), 4, u'0');
    }
    return result;
}

/// Returns true for a code such as "de", "pt_BR" or "zh-Hant".
bool isLanguageCode(const QString &text)
{
    static const QRegularExpression code(
        QStringLiteral("^[A-Za-z]{2,3}([_-][A-Za-z]{4})?([_-]([A-Za-z]{2}|[0-9]{3}))?$"));
    return code.match(text).hasMatch() && QLocale(text).language() != QLocale::C;
}

/// Returns true if a folder of this name is for the language with this code: it is named for the
/// language, with another country only if one of the two has none, or for the country.
bool isNamedFor(const QString &folder, const QString &code)
{
    const QLocale language(code);
    if (folder.compare(language.name().section(QLatin1Char('_'), 1), Qt::CaseInsensitive) == 0)
        return true;
    const QLocale own(folder);
    return isLanguageCode(folder) && own.language() == language.language()
        && (folder.size() <= 3 || code.size() <= 3 || own.country() == language.country());
}

/// Returns the finding for a file that can't be loaded, by its first bytes.
FindingKind kindOfInvalidFile(const QByteArray &start)
{
    static const QByteArray magic(
        "\x3C\xB8\x64\x18\xCA\xEF\x9C\x95\xCD\x21\x1C\xBF\x60\xA1\xBD\xDD", 16);
    if (start.startsWith(magic) || magic.startsWith(start))
        return FindingKind::QmDamaged;
    QXmlStreamReader reader(start);
    return reader.readNextStartElement() && reader.name() == QLatin1String("TS")
        ? FindingKind::QmSource
        : FindingKind::QmForeign;
}

QString direction(const ShownText &text)
{
    return text.tooTall ? QStringLiteral("tall") : QStringLiteral("wide");
}

QString clippingRemedy(const ShownText &text, const char *remedyIfTooWide)
{
    return text.tooTall ? QStringLiteral("reduce the display's scaling or its font size")
                        : QLatin1String(remedyIfTooWide);
}

QString key(int langId, const char *field)
{
    return QStringLiteral("LANG%1_").arg(langId) + QLatin1String(field);
}

/// Checks the catalogue as a whole and the files that it names.
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
        listHidden();
        m_report.unusedFolders = unusedFolders();
        checkApplicationDir();
        checkShown();
        checkDefault();
        checkNumbers();
        checkNames();
        checkFolders();
        checkTranslations();
    }

private:
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

    void checkApplicationDir()
    {
        const LangEntry any = m_report.listed.value(0);
        const QString plain = m_report.applicationDir + QLatin1String("/Lang/") + any.folder
            + QLatin1Char('/') + kQmFileName;
        if (!any.folder.contains(QLatin1Char('%')) && !any.qmPath.isEmpty()
            && any.qmPath != plain) {
            m_report.addFile(FindingKind::ApplicationFolder, m_report.applicationDir,
                             {quoted(m_report.applicationDir)});
        }
    }

    void checkShown()
    {
        for (auto it = m_lines.languages.begin(); it != m_lines.languages.end(); ++it) {
            if (it->show.line == 0) {
                m_report.addLine(FindingKind::ShowMissing, it->first(),
                                 {QString::number(it.key())});
            }
            if (it->shown && it->name.value.isEmpty())
                addIncomplete(it->name.line, it->show.line, key(it.key(), "NAME"), "<name>");
            if (it->shown && it->folder.value.isEmpty())
                addIncomplete(it->folder.line, it->show.line, key(it.key(), "FOLDER"), "<folder>");
        }
        if (!m_lines.hasSection)
            m_report.addLine(FindingKind::NoSection, 0);
        else if (m_report.listed.isEmpty())
            m_report.addLine(FindingKind::NoLanguages, 0);
    }

    /// Reports the line with the empty key, if there is one, or else the SHOW line.
    void addIncomplete(int line, int showLine, const QString &key, const char *value)
    {
        m_report.addLine(FindingKind::Incomplete, line > 0 ? line : showLine,
                         {key, QLatin1String(value)});
    }

    void checkDefault()
    {
        const int id = m_report.defaultLangId;
        if (m_report.listed.isEmpty() || m_lines.languages.value(id).shown)
            return;
        m_report.addLine(m_lines.languages.contains(id) ? FindingKind::DefaultHidden
                                                        : FindingKind::DefaultUnknown,
                         m_lines.defaultKey.line, {QString::number(id)});
    }

    void checkNumbers()
    {
        QHash<int, int> idOfMachineNumber;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const int line = m_lines.languages.value(lang.id).first();
            const int machineNumber = lang.id & 0xFF;
            const QString number = QString::number(machineNumber);
            if (idOfMachineNumber.contains(machineNumber)) {
                m_report.addLine(FindingKind::SameMachineNumber, line,
                                 {QString::number(lang.id),
                                  QString::number(idOfMachineNumber.value(machineNumber)), number});
            } else if (machineNumber != lang.id) {
                m_report.addLine(FindingKind::NumberAbove255, line,
                                 {QString::number(lang.id), number});
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
            if (idOfName.contains(lang.name)) {
                m_report.addLine(FindingKind::SameName, line,
                                 {key(lang.id, "NAME"), QString::number(idOfName.value(lang.name)),
                                  quoted(lang.name)});
            }
            idOfName.insert(lang.name, lang.id);
            const ShownText name = languageName(dialog, i);
            if (name.clipped) {
                m_report.addLine(FindingKind::NameClipped, line,
                                 {key(lang.id, "NAME"), direction(name), quoted(lang.name),
                                  QString::number(name.size), QString::number(name.room),
                                  clippingRemedy(name, "use a shorter name")});
            }
        }
    }

    void checkFolders()
    {
        QHash<QString, int> idOfPath;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const int line = m_lines.languages.value(lang.id).folder.line;
            QString path = QDir::cleanPath(QDir::fromNativeSeparators(lang.qmPath));
            if (kFileNames == Qt::CaseInsensitive)
                path = path.toCaseFolded();
            if (idOfPath.contains(path)) {
                m_report.addLine(FindingKind::SameFolder, line,
                                 {key(lang.id, "FOLDER"), QString::number(idOfPath.value(path)),
                                  quoted(lang.folder)});
            }
            idOfPath.insert(path, lang.id);

            const QString onDisk = nameOnDisk(lang.folder);
            if (!onDisk.isEmpty() && onDisk != lang.folder) {
                Finding &finding =
                    m_report.addLine(FindingKind::FolderCase, line,
                                     {key(lang.id, "FOLDER"), quoted(lang.folder), onDisk});
                if (kFileNames == Qt::CaseSensitive) { // The translation is not found.
                    finding.severity = Finding::Error;
                    m_checked.insert(lang.qmPath);
                }
            }
        }
    }

    /// Checks the translations of the listed languages and of the default, and the fallback.
    void checkTranslations()
    {
        for (const LangEntry &lang : qAsConst(m_report.listed))
            checkOnce(lang.qmPath, lang.id);
        const QString own = CTranslatorMgr::instance()->langFilePath(m_report.defaultLangId);
        checkOnce(own, m_report.defaultLangId);
        m_unused = QFileInfo::exists(own);
        if (!m_checked.contains(fallbackPath(m_report.applicationDir)))
            checkTranslation(fallbackPath(m_report.applicationDir));
        checkLanguages();
    }

    /// Finds files that are in the folder of another listed language.
    void checkLanguages()
    {
        QSet<QString> swapped;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const QString code = m_codes.value(lang.qmPath);
            const QString folder = folderName(lang);
            if (!isLanguageCode(code) || !isLanguageCode(folder) || isNamedFor(folder, code)
                || swapped.contains(lang.qmPath))
                continue;
            const auto other = std::find_if(
                m_report.listed.constBegin(), m_report.listed.constEnd(),
                [&code](const LangEntry &one) { return isNamedFor(folderName(one), code); });
            if (other == m_report.listed.constEnd())
                continue;
            const QString otherFile = m_report.relative(other->qmPath);
            QString remedy = QStringLiteral("replace it with the translation for %1").arg(folder);
            if (isNamedFor(folder, m_codes.value(other->qmPath))) {
                swapped.insert(other->qmPath); // Once for both, because two swaps change nothing.
                remedy = QStringLiteral("swap it with ") + otherFile
                    + QStringLiteral(", which is for ") + m_codes.value(other->qmPath);
            }
            m_report.addFile(FindingKind::QmLanguage, lang.qmPath,
                             {code, folderName(*other), folder, quoted(lang.name), remedy});
        }
    }

    static QString folderName(const LangEntry &language)
    {
        return QFileInfo(language.qmPath).dir().dirName();
    }

    void checkOnce(const QString &path, int langId)
    {
        if (m_checked.contains(path))
            return;
        m_checked.insert(path);
        const CatalogueKey folder = m_lines.languages.value(langId).folder;
        // A percent sign may change the path, which is reported elsewhere.
        const QString folderPath = m_report.applicationDir + QLatin1String("/Lang/") + folder.value;
        const bool plain = path == folderPath + QLatin1Char('/') + kQmFileName;
        if (plain && !QFileInfo(folderPath).isDir())
            addFolderMissing(key(langId, "FOLDER"), folder);
        else
            checkTranslation(path);
    }

    void addFolderMissing(const QString &key, const CatalogueKey &folder)
    {
        QString name = quoted(folder.value);
        const QStringList codes = codePoints(shortened(folder.value, 20));
        if (!codes.isEmpty())
            name += QStringLiteral(" (with %1)").arg(codes.join(QStringLiteral(", ")));
        const QString unused = shortened(m_report.unusedFolders.join(QStringLiteral(", ")), 200);
        QString remedy =
            QStringLiteral("after %1=, type the name of an existing folder, ").arg(key);
        if (!unused.isEmpty())
            remedy += QStringLiteral("such as one that no language uses (%1), ").arg(unused);
        remedy += QStringLiteral("or create a folder with exactly this name and put the compiled "
                                 "translation into it");
        m_report.addLine(FindingKind::FolderMissing, folder.line, {key, name, remedy});
    }

    /// Returns the folders with a translation that no language uses, not even a hidden one.
    QStringList unusedFolders() const
    {
        QStringList used;
        for (const LanguageLines &language : m_lines.languages)
            used += language.folder.value;
        QStringList result;
        const QDir lang(m_report.applicationDir + QLatin1String("/Lang"));
        const QStringList folders = lang.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &folder : folders) {
            if (!used.contains(folder, kFileNames)
                && QFileInfo(lang.filePath(folder + QLatin1Char('/') + kQmFileName)).isFile())
                result += folder;
        }
        return result;
    }

    void checkTranslation(const QString &path)
    {
        QFile file(path);
        if (!QFileInfo::exists(path))
            addTranslation(FindingKind::QmMissing, path,
                           {path == fallbackPath(m_report.applicationDir)
                                ? QStringLiteral("has empty texts")
                                : QStringLiteral("uses Lang/chs/Zendel.qm, or has empty texts if "
                                                 "that is missing too")});
        else if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
            addTranslation(FindingKind::QmUnreadable, path);
        else if (const auto translation = loadTranslation(path))
            checkTexts(path, translation->language);
        else
            addTranslation(kindOfInvalidFile(file.read(kStartLength)), path);
    }

    void checkTexts(const QString &path, const QString &language)
    {
        const auto isMissing = [](const SourceText &text) {
            return CTranslatorMgr::instance()
                ->translator()
                ->translate(text.context, text.text)
                .isEmpty();
        };
        if (std::all_of(std::begin(kSourceTexts), std::end(kSourceTexts), isMissing)) {
            addTranslation(FindingKind::QmForeign, path);
            return;
        }
        m_codes.insert(path, language);
        for (const SourceText &text : kSourceTexts) {
            if (isMissing(text)) {
                addTranslation(FindingKind::TextMissing, path,
                               {QLatin1String(text.text), QLatin1String(text.context)});
            }
        }
        const QVector<ShownText> clipped = clippedTexts(DlgSettings());
        for (const ShownText &text : clipped) {
            addTranslation(FindingKind::TextClipped, path,
                           {direction(text), QLatin1String(text.source.text),
                            QLatin1String(text.source.context), quoted(text.text),
                            QString::number(text.size), QString::number(text.room),
                            clippingRemedy(text,
                                           "use a shorter translation in the language's .ts file, "
                                           "or in one made with \"lconvert Zendel.qm -o "
                                           "Zendel.ts\", and compile that file")});
        }
    }

    void addTranslation(FindingKind kind, const QString &path, const QStringList &values = {})
    {
        Finding &finding = m_report.addFile(kind, path, values);
        if (m_unused)
            finding.severity = Finding::Warning;
    }

    Report &m_report;
    const CatalogueLines &m_lines;
    QHash<QString, QString> m_codes;     ///< The language that each translation names.
    QSet<QString> m_checked {QString()}; ///< Paths of translations.
    bool m_unused = false; ///< Whether the fallback is checked although the default has a file.
};

} // namespace

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

    const CatalogueLines lines = checkCatalogue(report);
    if (lines.readable)
        LanguageCheck(report, lines).check();
    for (Finding &finding : report.findings)
        finding.quote = lines.texts.value(finding.line);
    checkHost(report);
    return report;
}
