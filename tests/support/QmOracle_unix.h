#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

/// Tries out, in processes of their own, what Qt does with compiled translations.
namespace QmOracle {

enum Verdict : char {
    Died,      ///< Qt read outside the file, crashed otherwise, or did not come to an end.
    NotLoaded, ///< QTranslator::load() returned false.
    Answered   ///< Every text of the plug-in was looked up.
};

/// Asks Qt for the texts of each file. The bytes lie between pages that cannot be accessed, once
/// directly before 4 GB of them and once directly after 2 GB, so that any read outside the file is
/// fatal, as far as 32-bit lengths and offsets lead. A file gets a second of processor time.
/// Dependencies are looked for in @p directory.
QVector<Verdict> ask(const QList<QByteArray> &files, const QString &directory = QString());

} // namespace QmOracle
