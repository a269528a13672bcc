#include "langcheck/check/TranslationCheck.h"

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/SourceTexts.h"
#include "langcheck/Deployment.h"
#include "langcheck/Texts.h"
#include "langcheck/Translation.h"
#include "langcheck/check/Guess.h"
#include "langcheck/check/LanguageCheck.h"
#include "langcheck/check/Misread.h"
#include "langcheck/check/NearbyFiles.h"
#include "langcheck/draw/MessageBoxes.h"
#include "langcheck/draw/TextFit.h"
#include "ui/DlgSettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QTextDocument>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>

namespace {

// Indexes of titles in kSourceTexts
const int kSuccess = 5;
const int kError = 7;

const QString kTextTransfer = QStringLiteral("it was transferred in text mode");

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

/// Returns the language for which a folder is named: its code, or Windows' old one for Chinese.
QLocale localeOf(const QString &folder)
{
    if (folder.compare(QLatin1String("chs"), Qt::CaseInsensitive) == 0)
        return QLocale(QStringLiteral("zh_CN"));
    if (folder.compare(QLatin1String("cht"), Qt::CaseInsensitive) == 0)
        return QLocale(QStringLiteral("zh_TW"));
    return QLocale(folder);
}

/// Returns the name of the language in itself, without that of a country.
QString nativeName(const QLocale &locale)
{
    const QString name = locale.nativeLanguageName();
    if (locale.language() == QLocale::English)
        return QStringLiteral("English");
    const QString first = name.section(QLatin1Char(' '), 0, 0);
    const QString result = locale.language() == QLocale::Spanish ? first : name;
    return result.left(1).toUpper() + result.mid(1);
}

/// Returns the code to be set in the .ts file of a folder's translation.
QString codeOf(const QString &folder)
{
    const bool isOld = localeOf(folder) != QLocale(folder);
    return isOld ? localeOf(folder).name()
                 : QString(folder).replace(QLatin1Char('-'), QLatin1Char('_'));
}

/// Returns true for a code such as "de", "pt_BR" or "zh-Hant".
bool isLanguageCode(const QString &text)
{
    static const QRegularExpression code(
        QStringLiteral("^[A-Za-z]{2,3}([_-][A-Za-z]{4})?([_-]([A-Za-z]{2}|[0-9]{3}))?$"));
    return code.match(text).hasMatch() && localeOf(text).language() != QLocale::C;
}

/// Returns true if a folder of this name is for the language with this code: it is named for the
/// language, with another country only if one of the two has none, or for the country.
bool isNamedFor(const QString &folder, const QString &code)
{
    const QLocale language(code);
    if (folder.compare(language.name().section(QLatin1Char('_'), 1), Qt::CaseInsensitive) == 0)
        return true;
    const QLocale own = localeOf(folder);
    return isLanguageCode(folder) && own.language() == language.language()
        && own.script() == language.script()
        && (folder.size() <= 3 || code.size() <= 3 || own.country() == language.country());
}

/// Returns the finding for a file that can't be loaded, by its first bytes.
FindingKind kindOfInvalidFile(const QByteArray &start)
{
    static const QByteArray magic(
        "\x3C\xB8\x64\x18\xCA\xEF\x9C\x95\xCD\x21\x1C\xBF\x60\xA1\xBD\xDD", 16);
    const bool isSavedAsText = start.startsWith('<') && start.left(6).contains("d\x18");
    if (start.startsWith(magic) || magic.startsWith(start) || isSavedAsText
        || start.count('\0') == start.size())
        return FindingKind::QmDamaged;
    QXmlStreamReader reader(start);
    return reader.readNextStartElement() && reader.name() == QLatin1String("TS")
        ? FindingKind::QmSource
        : FindingKind::QmForeign;
}

/// Returns what has happened to a translation, as far as its bytes show it.
QString damageOf(const QByteArray &bytes)
{
    const int fewZeros = 16;
    const int zeros = int(std::distance(
        bytes.crbegin(),
        std::find_if(bytes.crbegin(), bytes.crend(), [](char byte) { return byte != '\0'; })));
    if (bytes.isEmpty())
        return QStringLiteral("it is empty");
    if (zeros == bytes.size())
        return QStringLiteral("it contains only zero bytes, as after a power failure");
    if (zeros >= fewZeros)
        return QStringLiteral("it ends with %1 zero bytes, as after a power failure").arg(zeros);
    const int lines = bytes.count('\n');
    return lines > 1 && bytes.count("\r\n") == lines ? kTextTransfer : QString();
}

class TranslationCheck
{
public:
    TranslationCheck(Report &report, const CatalogueLines &lines)
        : m_report(report)
        , m_lines(lines)
    {
    }

    void check()
    {
        m_report.unusedFolders = unusedFolders();
        if (!checkApplicationDir()) // The path of each translation is wrong.
            return;
        checkFolders();
        for (const LangEntry &lang : qAsConst(m_report.listed))
            checkOnce(lang.qmPath, lang.id);
        const QString own = CTranslatorMgr::instance()->langFilePath(m_report.defaultLangId);
        checkOnce(own, m_report.defaultLangId);
        m_unused = QFileInfo::exists(own);
        // Elsewhere with the catalogue, or lost with it
        const bool isCopied = std::any_of(m_report.findings.cbegin(), m_report.findings.cend(),
                                          [](const Finding &finding) {
                                              return finding.kind == FindingKind::CatalogueMissing
                                                  && !finding.values.first().isEmpty();
                                          });
        const bool isElsewhere = isCopied && !QFileInfo::exists(fallback());
        if (!m_checked.contains(fallback()) && !isElsewhere)
            checkTranslation(fallback());
        addTransferred();
        checkSameFolders();
        checkLanguages();
        checkNames();
        checkSameTexts();
    }

private:
    /// Returns false if translations aren't found because of the path of the host's folder.
    bool checkApplicationDir()
    {
        const LangEntry any = m_report.listed.value(0);
        const QString plainPath = m_report.applicationDir + QLatin1String("/Lang/") + any.folder
            + QLatin1Char('/') + kQmFileName;
        if (any.folder.contains(QLatin1Char('%')) || any.qmPath.isEmpty()
            || any.qmPath == plainPath)
            return true;
        m_report.addFile(FindingKind::ApplicationFolder, m_report.applicationDir,
                         {quoted(m_report.applicationDir)});
        return false;
    }

    /// Completes the remedy of a finding about the language's folder.
    void completeRemedy(const LangEntry &lang)
    {
        const QString key = languageKey(lang.id, "FOLDER");
        const int index = m_lines.findings.value(key, -1);
        const QString folder =
            nearbyFolder(m_report.applicationDir, lang.folder, m_report.unusedFolders);
        if (index < 0 || folder.isEmpty())
            return;
        Finding &finding = m_report.findings[index];
        const bool isFound = QFileInfo::exists(lang.qmPath);
        if (finding.kind == FindingKind::FolderDots || finding.kind == FindingKind::FolderAbsolute
            || (finding.kind == FindingKind::FolderPercent && !isFound && folder != lang.folder))
            finding.values[3] = withValues("write %1=%2", {key, folder});
        else if (finding.kind == FindingKind::QuotedValue
                 || finding.kind == FindingKind::CommentInValue)
            finding.values[2] = folder;
    }

    void checkFolders()
    {
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            completeRemedy(lang);
            const int line = m_lines.languages.value(lang.id).folder.line;
            const QString onDisk = nameOnDisk(lang.folder);
            if (!onDisk.isEmpty() && onDisk != lang.folder) {
                Finding &finding =
                    addLine(FindingKind::FolderCase, line, lang.id,
                            {languageKey(lang.id, "FOLDER"), quoted(lang.folder), onDisk});
                if (kFileNames == Qt::CaseSensitive) { // The translation is not found.
                    finding.severity = Finding::Error;
                    m_checked.insert(lang.qmPath);
                }
            }
        }
    }

    void checkSameFolders()
    {
        QHash<QString, const LangEntry *> earlier;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            QString path = QDir::cleanPath(QDir::fromNativeSeparators(lang.qmPath));
            if (kFileNames == Qt::CaseInsensitive)
                path = path.toCaseFolded();
            if (const LangEntry *const other = earlier.value(path))
                addSameFolder(*other, lang);
            earlier.insert(path, &lang);
        }
    }

    /// Reports the language whose folder is wrong, as far as names show that.
    void addSameFolder(const LangEntry &earlier, const LangEntry &later)
    {
        const bool isEarlierWrong = hasWrongName(earlier) && !hasWrongName(later);
        const LangEntry &wrong = isEarlierWrong ? earlier : later;
        const LangEntry &right = isEarlierWrong ? later : earlier;
        m_reportedNames += wrong.id;
        const LangEntry &hidden = wrong.id == m_report.defaultLangId ? right : wrong;
        addLine(FindingKind::SameFolder, m_lines.languages.value(wrong.id).folder.line, wrong.id,
                {languageKey(wrong.id, "FOLDER"), QString::number(right.id), quoted(wrong.folder),
                 QString::number(hidden.id)})
            .languages += right.id;
    }

    /// Returns true if the name is that of a language for which the translation isn't.
    bool hasWrongName(const LangEntry &lang) const
    {
        const QString code = m_codes.value(lang.qmPath);
        const QLocale::Language named = languageNamed(lang.name);
        const QLocale::Language own = QLocale(code).language();
        const bool isCantonese = named == QLocale::Cantonese && own == QLocale::Chinese;
        return named != QLocale::C && isLanguageCode(code) && own != named && !isCantonese;
    }

    void checkOnce(const QString &path, int langId)
    {
        if (m_checked.contains(path))
            return;
        m_checked.insert(path);
        const CatalogueKey folder = m_lines.languages.value(langId).folder;
        if (folder.value.isEmpty()) // Reported as incomplete
            return;
        const QString folderPath = m_report.applicationDir + QLatin1String("/Lang/") + folder.value;
        const bool isPlain = path == folderPath + QLatin1Char('/') + kQmFileName;
        if (QFileInfo::exists(path)) {
            checkTranslation(path);
        } else if (!isExplained(languageKey(langId, "FOLDER"), folder)) {
            if (!isPlain || QFileInfo(folderPath).isDir())
                checkTranslation(path);
            else
                addFolderMissing(langId, folder);
        }
    }

    /// If a finding says why the translation isn't found, completes it and returns true.
    bool isExplained(const QString &key, const CatalogueKey &folder)
    {
        const int index = m_lines.findings.value(key, -1);
        if (index < 0 || m_report.findings.at(index).line != folder.line)
            return false;
        Finding &finding = m_report.findings[index];
        finding.consequences +=
            QStringLiteral("a dialog that needs the translation ") + fallbackEffect(m_report);
        finding.severity = Finding::Error;
        return true;
    }

    void addFolderMissing(int langId, const CatalogueKey &folder)
    {
        const QString key = languageKey(langId, "FOLDER");
        const QString near =
            nearbyFolder(m_report.applicationDir, folder.value, m_report.unusedFolders);
        const QString path = m_report.applicationDir + QLatin1String("/Lang/") + folder.value;
        const QString create =
            withValues("create the folder %1 in Lang and put the compiled translation into it",
                       {quotedAscii(folder.value)});
        QString remedy;
        if (near != near.trimmed()) {
            remedy = withValues("rename the folder %1 to %2, without spaces",
                                {quoted(near), near.trimmed()});
        } else if (!near.isEmpty() && near != folder.value
                   && near.normalized(QString::NormalizationForm_C)
                       == folder.value.normalized(QString::NormalizationForm_C)) {
            remedy = withValues("rename the folder on disk, whose letters are decomposed as on "
                                "a Mac (%1), best to an ASCII name, and write that after %2=",
                                {quotedAscii(near), key});
        } else if (!near.isEmpty()) {
            remedy = withValues("write %1=%2", {key, near});
        } else if (QFileInfo(path).isFile()) {
            remedy = QStringLiteral("rename the file with this name, and ") + create;
        } else if (QFileInfo(path + QLatin1String(".qm")).isFile()) {
            remedy = QStringLiteral("move Lang/%1.qm to Lang/%1/Zendel.qm").arg(folder.value);
        } else {
            const QString unused =
                shortened(m_report.unusedFolders.join(QStringLiteral(", ")), 200);
            if (!unused.isEmpty())
                remedy = withValues("write the name of an existing folder after %1=, such as "
                                    "one that no language uses (%2)",
                                    {key, unused});
            if (isFolderName(folder.value))
                remedy += QLatin1String(remedy.isEmpty() ? "" : ", or ") + create;
            else if (remedy.isEmpty())
                remedy = QStringLiteral("write the name of an existing folder after %1=").arg(key);
        }
        addLine(FindingKind::FolderMissing, folder.line, langId,
                {key, quotedAscii(folder.value), fallbackEffect(m_report), remedy});
    }

    /// Returns the folders with a translation that no language uses, not even a hidden one.
    QStringList unusedFolders() const
    {
        QStringList used {QFileInfo(fallback()).dir().dirName()};
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
        const QFileInfo folder(QFileInfo(path).path());
        if (folder.isDir() && !(folder.isReadable() && folder.isExecutable()))
            addTranslation(FindingKind::FolderUnreadable, folder.filePath(), {effectFor(path)});
        else if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink())
            addMissing(path);
        else if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
            addUnreadable(path);
        else if (const auto translation = loadTranslation(path))
            checkTexts(path, translation->language, damageOf(file.readAll()));
        else
            addInvalid(path, file.readAll());
    }

    void addUnreadable(const QString &path)
    {
        const QFileInfo info(path);
        const QString copy = QStringLiteral("put the compiled translation there");
        QStringList values;
        if (!info.exists()) {
            values = QStringList {QStringLiteral("it is a link to a file that doesn't exist"),
                                  effectFor(path), QStringLiteral("delete the link, and ") + copy};
        } else if (info.isDir()) {
            values =
                QStringList {QStringLiteral("it is a folder"), QStringLiteral("has empty texts"),
                             QStringLiteral("rename the folder, and ") + copy};
        } else {
            values = QStringList {
                QStringLiteral("permission denied"), QStringLiteral("has empty texts"),
                QStringLiteral("give the user who runs the host permission to read the file")};
        }
        addTranslation(FindingKind::QmUnreadable, path, values);
    }

    /// Reports a file that can't be loaded, by its bytes.
    void addInvalid(const QString &path, const QByteArray &bytes)
    {
        const FindingKind kind = kindOfInvalidFile(bytes.left(kStartLength));
        const QString damage = damageOf(bytes);
        if (kind != FindingKind::QmDamaged)
            addTranslation(kind, path);
        else
            addDamaged(path,
                       damage.isEmpty() ? QStringLiteral("part of it is missing or was overwritten")
                                        : damage);
    }

    void addDamaged(const QString &path, const QString &damage)
    {
        if (damage == kTextTransfer)
            m_transferred += path; // See addTransferred().
        else
            addTranslation(FindingKind::QmDamaged, path,
                           {damage, QStringLiteral("replace it with an undamaged copy")});
    }

    /// Reports all files that were transferred in text mode at once: they have one cause.
    void addTransferred()
    {
        if (m_transferred.isEmpty())
            return;
        const QString first = m_transferred.takeFirst();
        QString damage = kTextTransfer;
        QStringList folders;
        for (const QString &path : qAsConst(m_transferred))
            folders += QFileInfo(path).dir().dirName();
        if (!folders.isEmpty())
            damage += QStringLiteral(", as were those in ") + folders.join(QStringLiteral(", "));
        addTranslation(FindingKind::QmDamaged, first,
                       {damage, QStringLiteral("transfer the folder Lang again in binary mode")});
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            if (m_transferred.contains(lang.qmPath)) {
                m_report.findings.last().languages += lang.id;
                m_report.findings.last().severity = Finding::Error;
            }
        }
    }

    QString effectFor(const QString &path) const
    {
        return path == fallback() ? QStringLiteral("has empty texts") : fallbackEffect(m_report);
    }

    void addMissing(const QString &path)
    {
        const QString found = nearbyTranslation(path);
        const QString name = m_report.relative(found);
        QString remedy = QStringLiteral("put the compiled translation there");
        if (found.endsWith(QLatin1String(".ts"))) {
            remedy = withValues("compile it with \"lrelease %1 -qm %2\"",
                                {name, m_report.relative(path)});
        } else if (!found.isEmpty()) {
            remedy = withValues("if it is the translation for this folder, rename %1 to %2",
                                {name, m_report.relative(path)});
        }
        addTranslation(FindingKind::QmMissing, path,
                       {found.isEmpty() ? QString() : QStringLiteral(", but there is ") + name,
                        effectFor(path), remedy});
    }

    /// Checks a file that is loaded; @p damage tells why texts may be missing.
    void checkTexts(const QString &path, const QString &language, const QString &damage)
    {
        QStringList texts;
        for (const SourceText &source : kSourceTexts)
            texts +=
                CTranslatorMgr::instance()->translator()->translate(source.context, source.text);
        if (texts.contains(QString()) && !damage.isEmpty()) {
            addDamaged(path, damage);
            return;
        }
        if (texts.count(QString()) == texts.size()) {
            addTranslation(FindingKind::QmForeign, path);
            return;
        }
        m_codes.insert(path, language);
        m_texts.insert(path, texts);
        const QLocale locale(language);
        if (std::all_of(texts.begin(), texts.end(),
                        [&locale](const QString &text) { return lacksScript(text, locale); })) {
            addTranslation(
                FindingKind::TextGarbled, path,
                {withValues("no text has a character of the script of %1, the language of "
                            "the translation, because",
                            {QLocale::languageToString(locale.language())}),
                 QStringLiteral("replace the file with a translation whose .ts file "
                                "was read and saved as UTF-8")});
            return;
        }
        for (int i = 0; i < texts.size(); ++i)
            checkText(path, kSourceTexts[i], texts.at(i));
        addMissingTexts(path, texts);
        const DlgSettings dialog;
        const QVector<ShownText> clipped = clippedTexts(dialog);
        for (const ShownText &text : clipped) {
            const bool isHtml = isShownAsHtml(text.source) && Qt::mightBeRichText(text.text);
            const bool isGarbled = isLost(text.text) || !misread(text.text).original.isEmpty();
            if (!isHtml && !isGarbled)
                addClipped(path, text, "the dialog");
        }
        checkTitle(path, dialog, kSourceTexts[kSuccess], texts.at(kSuccess), true);
        checkTitle(path, dialog, kSourceTexts[kError], texts.at(kError), false);
    }

    /// A message box grows with its title, but not without end.
    void checkTitle(const QString &path, const DlgSettings &dialog, const SourceText &source,
                    const QString &title, bool success)
    {
        const int narrow = 20; // Characters of a title that fits into each box
        if (title.size() < narrow)
            return;
        const Box box = boxAfterChange(dialog, success);
        if (box.titleWidth > box.titleRoom) {
            addClipped(path, {title, {}, true, false, box.titleWidth, box.titleRoom, source},
                       "the title of its message box");
        }
    }

    void addClipped(const QString &path, const ShownText &text, const char *place)
    {
        addTranslation(
            FindingKind::TextClipped, path,
            {QLatin1String(text.tooTall ? "tall" : "wide"), QLatin1String(text.source.text),
             QLatin1String(text.source.context), quoted(text.text), QString::number(text.size),
             QString::number(text.room),
             text.tooTall
                 ? QStringLiteral("reduce the display's scaling or its font size")
                 : QStringLiteral("use a shorter translation in the language's .ts file, or in one "
                                  "made with \"lconvert Zendel.qm -o Zendel.ts\", and compile "
                                  "that file"),
             QLatin1String(place)});
    }

    void checkText(const QString &path, const SourceText &source, const QString &text)
    {
        QStringList values {QLatin1String(source.text), QLatin1String(source.context),
                            quoted(text)};
        if (text.isEmpty()) // See addMissingTexts().
            return;
        if (plain(text).isEmpty()) {
            addTranslation(FindingKind::TextBlank, path, values);
        } else if (Qt::mightBeRichText(text)) {
            values += QLatin1String(isShownAsHtml(source)
                                        ? "Qt takes the text for HTML, and the operator doesn't "
                                          "see the tags"
                                        : "the operator sees the tags");
            addTranslation(FindingKind::TextHtml, path, values);
        } else if (!misread(text).original.isEmpty() || isLost(text)) {
            addTranslation(
                FindingKind::TextGarbled, path,
                {withValues("the text \"%1\" in the context %2 is translated as %3, in which",
                            values),
                 QStringLiteral("type the text again in the .ts file, save it as UTF-8, "
                                "and compile it")});
        } else if (isShownWithMnemonic(source)) {
            static const QRegularExpression vanishing(QStringLiteral("(?<!&)(&&)*&([ ]|$)"));
            const QRegularExpressionMatch match = vanishing.match(text);
            if (match.hasMatch()) {
                values += match.captured(2).isEmpty() ? QStringLiteral("the end")
                                                      : QStringLiteral("a space");
                addTranslation(FindingKind::TextAmpersand, path, values);
            }
        }
    }

    /// Returns true if a letter is a replacement character, or more than one a question mark.
    static bool isLost(const QString &text)
    {
        return text.contains(QChar(QChar::ReplacementCharacter))
            || text.count(QLatin1Char('?')) > 1;
    }

    void addMissingTexts(const QString &path, const QStringList &texts)
    {
        QStringList missing;
        for (int i = 0; i < texts.size(); ++i) {
            if (texts.at(i).isEmpty()) {
                missing += withValues(
                    "\"%1\" in the context %2",
                    {QLatin1String(kSourceTexts[i].text), QLatin1String(kSourceTexts[i].context)});
            }
        }
        if (missing.isEmpty())
            return;
        const bool one = missing.size() == 1;
        addTranslation(
            FindingKind::TextMissing, path,
            {QLatin1String(one ? "the text " : "the texts ") + missing.join(QStringLiteral(", "))
                 + QLatin1String(one ? " isn't" : " aren't"),
             QLatin1String(one ? "it is" : "they are"), QLatin1String(one ? "it" : "them")});
    }

    /// The label and the message boxes take a text with tags for HTML.
    static bool isShownAsHtml(const SourceText &source)
    {
        return qstrcmp(source.text, "Language:") == 0
            || QLatin1String(source.text).endsWith(QLatin1Char('!'));
    }

    /// The tab and the button underline the character after "&" instead of showing it.
    static bool isShownWithMnemonic(const SourceText &source)
    {
        return qstrcmp(source.text, "Language") == 0 || qstrcmp(source.text, "Change") == 0;
    }

    /// Finds files that are in the folder of another listed language.
    void checkLanguages()
    {
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const QString code = m_codes.value(lang.qmPath);
            const QString folder = folderName(lang);
            if (!isLanguageCode(code) || !isLanguageCode(folder) || isNamedFor(folder, code)
                || m_reportedLanguages.contains(lang.qmPath))
                continue;
            const QLocale::Language named = languageNamed(lang.name);
            const bool isNamedForFolder = named == localeOf(folder).language();
            if (named == QLocale(code).language() && !isNamedForFolder) // Only the folder differs.
                continue;
            const auto other = std::find_if(
                m_report.listed.constBegin(), m_report.listed.constEnd(),
                [&code](const LangEntry &one) { return isNamedFor(folderName(one), code); });
            const bool isOtherChinese = QLocale(code).language() == QLocale::Chinese
                && localeOf(folder).language() == QLocale::Chinese;
            if (other == m_report.listed.constEnd()) {
                if (isNamedForFolder || isOtherChinese)
                    addQmLanguage(lang, code, {},
                                  withValues("replace it with the translation for %1", {folder}));
                continue;
            }
            const QString otherFile = m_report.relative(other->qmPath);
            QString remedy = QStringLiteral("replace it with the translation for %1").arg(folder);
            if (isNamedFor(folder, m_codes.value(other->qmPath))) {
                m_reportedLanguages += other->qmPath; // Two swaps change nothing.
                remedy = QStringLiteral("swap it with ") + otherFile
                    + QStringLiteral(", which is for ") + m_codes.value(other->qmPath);
            }
            addQmLanguage(lang, code,
                          withValues(", the language of the folder %1", {folderName(*other)}),
                          remedy);
        }
    }

    void addQmLanguage(const LangEntry &lang, const QString &code, const QString &other,
                       const QString &remedy)
    {
        m_reportedLanguages += lang.qmPath;
        const QString folder = folderName(lang);
        addFile(FindingKind::QmLanguage, lang,
                {code, other, folder, quoted(lang.name), remedy, codeOf(folder)});
    }

    /// Finds names of languages with the translation for another one.
    void checkNames()
    {
        for (const Finding &finding : qAsConst(m_report.findings)) {
            if (finding.kind == FindingKind::RepeatedLanguage) // Says what to do.
                m_reportedNames += finding.values.first().toInt();
        }
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const QLocale own(m_codes.value(lang.qmPath));
            const int line = m_lines.languages.value(lang.id).name.line;
            const QString key = languageKey(lang.id, "NAME");
            if (m_reportedLanguages.contains(lang.qmPath) || m_reportedNames.contains(lang.id))
                continue;
            if (hasWrongName(lang)) {
                const QLocale::Language named = languageNamed(lang.name);
                const QString wanted = QLocale::languageToString(named);
                const QString folderKey = languageKey(lang.id, "FOLDER");
                QString otherwise = withValues("put the translation for %1 into a folder of its "
                                               "own, and write that after %2=",
                                               {wanted, folderKey});
                for (const LangEntry &other : qAsConst(m_report.listed)) {
                    const QString code = m_codes.value(other.qmPath);
                    if (isLanguageCode(code) && QLocale(code).language() == named) {
                        otherwise = withValues("write %1=%2", {folderKey, other.folder});
                        break;
                    }
                }
                addLine(FindingKind::NameLanguage, line, lang.id,
                        {quoted(lang.name), wanted, QLocale::languageToString(own.language()), key,
                         nativeName(own), QString::number(lang.id), otherwise});
                m_reportedLanguages += lang.qmPath;
            } else if (lacksScript(lang.name, own) && !m_lines.findings.contains(key)) {
                addLine(FindingKind::NameScript, line, lang.id,
                        {key, QLocale::languageToString(own.language()), quoted(lang.name),
                         nativeName(own)});
            }
        }
    }

    /// Returns true if the text has letters that aren't ASCII, but none of the language's script,
    /// which isn't Latin.
    static bool lacksScript(const QString &text, const QLocale &language)
    {
        if (language.language() == QLocale::C || language.script() == QLocale::LatinScript)
            return false;
        bool hasOther = false;
        for (const QChar c : text) {
            const bool isWestern = c.script() == QChar::Script_Latin
                || c.script() == QChar::Script_Common || c.script() == QChar::Script_Unknown
                || c.script() == QChar::Script_Inherited;
            if (!isWestern)
                return false;
            hasOther = hasOther || c.unicode() >= 0x80;
        }
        return hasOther;
    }

    /// Finds languages with the texts of another one, or in English.
    void checkSameTexts()
    {
        QStringList english;
        for (const SourceText &source : kSourceTexts)
            english += QLatin1String(source.text);
        QMap<QStringList, LangEntry> languageOfTexts;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            const QStringList texts = m_texts.value(lang.qmPath);
            if (texts.isEmpty() || m_reportedLanguages.contains(lang.qmPath))
                continue;
            const QString folder = folderName(lang);
            const LangEntry other = languageOfTexts.value(texts);
            const QString earlier = other.qmPath;
            if (texts == english && isLanguageCode(folder)
                && localeOf(folder).language() != QLocale::English
                && languageNamed(lang.name) != QLocale::English) {
                addFile(FindingKind::QmEnglish, lang, {folder, quoted(lang.name)});
            } else if (!earlier.isEmpty() && !isSamePath(earlier, lang.qmPath)
                       && !isSameLanguage(folder, folderName(other))
                       && withoutAddition(lang.name) != withoutAddition(other.name)
                       && !isVariant(m_codes.value(lang.qmPath), m_codes.value(earlier))) {
                addFile(FindingKind::SameTexts, lang,
                        {m_report.relative(earlier), quoted(lang.name)});
            }
            languageOfTexts.insert(texts, lang);
        }
    }

    static bool isSamePath(const QString &one, const QString &other)
    {
        return QDir::cleanPath(one).compare(QDir::cleanPath(other), kFileNames) == 0;
    }

    /// Returns true for codes such as "fr" and "fr_CA". The same code is that of a copied file.
    static bool isVariant(const QString &one, const QString &other)
    {
        return one != other && isSameLanguage(one, other);
    }

    static bool isSameLanguage(const QString &one, const QString &other)
    {
        return isLanguageCode(one) && isLanguageCode(other)
            && localeOf(one).language() == localeOf(other).language()
            && localeOf(one).script() == localeOf(other).script();
    }

    void addFile(FindingKind kind, const LangEntry &language, const QStringList &values)
    {
        m_report.addFile(kind, language.qmPath, values).languages += language.id;
    }

    static QString folderName(const LangEntry &language)
    {
        return QFileInfo(language.qmPath).dir().dirName();
    }

    Finding &addLine(FindingKind kind, int line, int langId, const QStringList &values)
    {
        Finding &finding = m_report.addLine(kind, line, values);
        finding.languages += langId;
        return finding;
    }

    void addTranslation(FindingKind kind, const QString &path, const QStringList &values = {})
    {
        Finding &finding = m_report.addFile(kind, path, values);
        if (m_unused)
            finding.severity = Finding::Warning;
        for (const LangEntry &lang : qAsConst(m_report.listed)) {
            if (lang.qmPath == path || QFileInfo(lang.qmPath).path() == path)
                finding.languages += lang.id;
        }
    }

    QString fallback() const { return fallbackPath(m_report.applicationDir); }

    Report &m_report;
    const CatalogueLines &m_lines;
    QHash<QString, QString> m_codes;     ///< The language that each translation is for
    QHash<QString, QStringList> m_texts; ///< The texts of each translation
    QSet<QString> m_reportedLanguages;   ///< Translations for a wrong language
    QStringList m_transferred;           ///< Translations that were transferred in text mode
    QSet<int> m_reportedNames;           ///< Languages with a wrong folder
    QSet<QString> m_checked {QString()}; ///< Paths of translations.
    bool m_unused = false; ///< Whether the fallback is checked although the default has a file.
};

} // namespace

void checkTranslations(Report &report, const CatalogueLines &lines)
{
    TranslationCheck(report, lines).check();
}
