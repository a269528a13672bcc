#include "langcheck/write/Output.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

namespace {

/// Repeats the attempt if only a part could be written, to learn why.
bool writeAll(QIODevice &file, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

QString writeFile(const QString &path, const QByteArray &bytes)
{
    const auto failure = [&path](QString reason) {
        if (reason.endsWith(QLatin1Char('.'))) // As Windows' reasons do
            reason.chop(1);
        return QStringLiteral("Can't write \"") + QDir::toNativeSeparators(path)
            + QStringLiteral("\": ") + reason + QLatin1Char('.');
    };
    // QSaveFile would replace a device.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return failure(QStringLiteral("it isn't a file"));
    QSaveFile file(path);
    // Flushed first, because commit() would forget why that failed.
    if (file.open(QIODevice::WriteOnly) && writeAll(file, bytes) && file.flush() && file.commit())
        return {};
    return failure(file.errorString());
}

} // namespace

QString writePage(const QString &path, const QByteArray &page)
{
    return writeFile(path, page);
}

QString writePicture(const QString &folder, const LanguagePictures &pictures)
{
    const QString name =
        QStringLiteral("language-%1.png").arg(pictures.language.id, 3, 10, QLatin1Char('0'));
    return writeFile(QDir(folder).filePath(name), toPng(combined(pictures)));
}

QString writeSheet(const QString &folder, const QVector<LanguagePictures> &all)
{
    return writeFile(QDir(folder).filePath(QStringLiteral("languages.png")), toPng(sheet(all)));
}

QString openPage(const QByteArray &page)
{
    const QString path = QDir::temp().filePath(QStringLiteral("langcheck.html"));
    QString error = writePage(path, page);
    if (!error.isEmpty() || QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return error;
    return QStringLiteral("The page was written, but it can't be opened in a browser: %1")
        .arg(QDir::toNativeSeparators(path));
}
