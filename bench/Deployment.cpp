#include "bench/Deployment.h"

#include "lang/ApplicationDir.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <map>
#include <utility>

namespace {

QString currentFolder;

bool write(const QString &folder, int languages, const QByteArray &encoding)
{
    const QString translationFolder = QStringLiteral("%1/Lang/folder%2").arg(folder).arg(languages);
    QFile file(folder + QStringLiteral("/Lang/Lang.ini"));
    if (!QDir().mkpath(translationFolder)
        || !QFile::copy(QStringLiteral(TRANSLATION_FILE),
                        translationFolder + QStringLiteral("/Zendel.qm"))
        || !file.open(QIODevice::WriteOnly)) {
        return false;
    }

    QTextStream out(&file);
    out.setCodec(encoding.constData());
    out.setGenerateByteOrderMark(true);
    out << QStringLiteral("[LANG_MGR]\r\nDEFAULT=%1\r\n").arg(languages);
    for (int n = 1; n <= languages; ++n) {
        out << QStringLiteral("LANG%1_ID=%1\r\n"
                              "LANG%1_NAME=\u8bed\u8a00 %1\r\n"
                              "LANG%1_FOLDER=folder%1\r\n"
                              "LANG%1_SHOW=1\r\n")
                   .arg(n);
    }
    out.flush();
    return out.status() == QTextStream::Ok;
}

} // namespace

QString useDeployment(int languages, const QByteArray &encoding)
{
    static std::map<std::pair<int, QByteArray>, QTemporaryDir> folders;
    const auto [it, isNew] = folders.try_emplace({languages, encoding});
    const QTemporaryDir &folder = it->second;
    if (isNew && (!folder.isValid() || !write(folder.path(), languages, encoding)))
        return QString();
    currentFolder = folder.path();
    return currentFolder + QStringLiteral("/Lang/Lang.ini");
}

QString applicationDir()
{
    return currentFolder;
}
