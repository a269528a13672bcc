#include "langcheck/check/NearbyFiles.h"

#include "lang/CTranslatorMgr.h"
#include "langcheck/Texts.h"
#include "langcheck/check/Guess.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

/// Returns the file in a folder whose name is the nearest to that of a copy or an unfinished step:
/// "Lang (1).ini", "Lang.ini.txt", "lang.ini".
QString similarFile(const QString &folder, const QString &name)
{
    const QFileInfo wanted(name);
    const QRegularExpression similar(
        withValues("^%1([ _-].*)?\\.%2(\\.[a-z]+)?$",
                   {QRegularExpression::escape(wanted.baseName()), wanted.suffix()}),
        QRegularExpression::CaseInsensitiveOption);
    const QStringList files = QDir(folder).entryList(QDir::Files, QDir::Name);
    for (const QString &file : files) {
        if (file != name && similar.match(file).hasMatch())
            return QDir(folder).filePath(file);
    }
    const QString found = nearest(name, files);
    return found.isEmpty() || found == name ? QString() : QDir(folder).filePath(found);
}

} // namespace

NearbyCatalogue nearbyCatalogue(const QString &applicationDir)
{
    const QDir dir(applicationDir);
    const QString lang = QStringLiteral("Lang");
    const QString ini = QStringLiteral("Lang.ini");
    if (QFileInfo(dir.filePath(QStringLiteral("Lang/Lang/Lang.ini"))).isFile()) {
        return {QStringLiteral("Lang/Lang/Lang.ini"),
                QStringLiteral("move the contents of Lang/Lang to Lang")};
    }
    const QString similar = similarFile(dir.filePath(lang), ini);
    if (!similar.isEmpty()) {
        const QString name = dir.relativeFilePath(similar);
        return {name, QStringLiteral("rename %1 to Lang/Lang.ini").arg(name)};
    }
    const QStringList folders = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &folder : folders) {
        const bool isOnly = !QFileInfo::exists(dir.filePath(lang))
            && QFileInfo(dir.filePath(folder + QLatin1Char('/') + ini)).isFile();
        if (isOnly || (folder != lang && folder.compare(lang, Qt::CaseInsensitive) == 0)) {
            return {QStringLiteral("a folder ") + folder,
                    QStringLiteral("rename the folder %1 to Lang").arg(folder)};
        }
    }
    if (QFileInfo(dir.filePath(ini)).isFile())
        return {ini, QStringLiteral("move Lang.ini into the folder Lang")};
    const QString archive = QStringLiteral("Lang.zip");
    if (QFileInfo(dir.filePath(archive)).isFile())
        return {archive, QStringLiteral("unpack Lang.zip, so that there is Lang/Lang.ini")};
    if (dir.exists(lang))
        return {};
    return {{},
            QStringLiteral("put the folder Lang there, with the catalogue and the translations")};
}

QString nearbyTranslation(const QString &path)
{
    const QFileInfo wanted(path);
    const QDir folder = wanted.dir();
    QString similar = similarFile(folder.path(), wanted.fileName());
    if (!similar.isEmpty())
        return similar;
    QString nested = folder.filePath(folder.dirName() + QLatin1Char('/') + kQmFileName);
    if (QFileInfo(nested).isFile())
        return nested;
    const QStringList others = folder.entryList(
        {QStringLiteral("*.qm"), QStringLiteral("*.qm.*"), QStringLiteral("*.ts")}, QDir::Files);
    if (!others.isEmpty())
        return folder.filePath(others.first());
    const QString above = QDir::cleanPath(folder.filePath(QStringLiteral("../") + kQmFileName));
    return QFileInfo(above).isFile() ? above : QString();
}

QString nearbyFolder(const QString &applicationDir, const QString &value, const QStringList &unused)
{
    const QStringList folders = QDir(applicationDir + QLatin1String("/Lang"))
                                    .entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    QString path = plain(withoutQuotes(withoutComment(value)));
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QStringList parts = partsOf(path, QLatin1Char('/'));
    parts.removeAll(QString());
    parts.removeAll(kQmFileName);
    QString name = parts.isEmpty() ? QString() : parts.last().trimmed();
    if (name.isEmpty())
        return {};
    if (folders.contains(name))
        return name;
    for (const QString &folder : folders) { // From a Mac, which decomposes letters
        if (folder.normalized(QString::NormalizationForm_C)
            == name.normalized(QString::NormalizationForm_C))
            return folder;
    }
    for (const QString &folder : folders) {
        if (folder.trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return folder;
    }
    return nearest(name, unused);
}

bool isFolderName(const QString &name)
{
    static const QRegularExpression reserved(
        QStringLiteral("^(CON|PRN|AUX|NUL|COM[0-9]|LPT[0-9])(\\..*)?$|[\\x00-\\x1F<>:\"/\\\\|?*%]|"
                       "^\\.+$|[. ]$|^ "),
        QRegularExpression::CaseInsensitiveOption);
    return !name.isEmpty() && !reserved.match(name).hasMatch();
}
