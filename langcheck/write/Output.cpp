#include "langcheck/write/Output.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>
#include <QUrl>

namespace {

QString failure(const char *action, const QString &path, QString reason)
{
    if (reason.endsWith(QLatin1Char('.'))) // As Windows' reasons do
        reason.chop(1);
    return QStringLiteral("Can't ") + QLatin1String(action) + QStringLiteral(" \"")
        + QDir::toNativeSeparators(path) + QStringLiteral("\": ") + reason + QLatin1Char('.');
}

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

/// A mark in each picture, by which langcheck recognises its own.
const QString kSoftwareKey = QStringLiteral("Software");
const QString kSoftware = QStringLiteral("langcheck");
const QString kSheet = QStringLiteral("languages.png");

QString writePicture(const QString &path, QImage image)
{
    image.setText(kSoftwareKey, kSoftware);
    return writeFile(path, toPng(image));
}

/// Removes the pictures of an earlier run, for instance of a language that is hidden by now.
QString removeOthers(const QDir &folder, const QStringList &written)
{
    const QStringList names =
        folder.entryList({QStringLiteral("language-*.png"), kSheet}, QDir::Files);
    for (const QString &name : names) {
        const QString path = folder.filePath(name);
        if (written.contains(name) || QImageReader(path).text(kSoftwareKey) != kSoftware)
            continue;
        QFile file(path);
        if (!file.remove())
            return failure("remove", path, file.errorString());
    }
    return {};
}

} // namespace

QString writeFile(const QString &path, const QByteArray &bytes)
{
    // QSaveFile would replace a device.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return failure("write", path, QStringLiteral("it isn't a file"));
    QSaveFile file(path);
    // Unbuffered, because commit() would ignore that the buffer can't be written.
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && writeAll(file, bytes)
        && file.commit())
        return {};
    return failure("write", path, file.errorString());
}

QString writePictures(const QString &folder, const QVector<LanguagePictures> &all,
                      const std::function<void(int, int)> &progress)
{
    if (!QDir().mkpath(folder))
        return failure("create", folder, qt_error_string());
    const QDir dir(folder);
    QStringList written;
    for (const LanguagePictures &pictures : all) {
        written +=
            QStringLiteral("language-%1.png").arg(pictures.language.id, 3, 10, QLatin1Char('0'));
        QString error = writePicture(dir.filePath(written.last()), combined(pictures));
        if (!error.isEmpty())
            return error;
        if (progress)
            progress(written.size(), all.size());
    }
    if (!all.isEmpty()) {
        written += kSheet;
        QString error = writePicture(dir.filePath(kSheet), sheet(all));
        if (!error.isEmpty())
            return error;
    }
    return removeOthers(dir, written);
}

QString openPage(const QByteArray &page)
{
    const QString path = QDir::temp().filePath(QStringLiteral("langcheck.html"));
    QString error = writeFile(path, page);
    if (!error.isEmpty() || QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return error;
    return QStringLiteral("The page was written, but it can't be opened in a browser: %1")
        .arg(QDir::toNativeSeparators(path));
}
