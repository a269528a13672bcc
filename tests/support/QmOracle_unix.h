#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

/// Tries in child processes what Qt does with compiled translations.
namespace QmOracle {

enum Verdict : char {
    Died,      ///< Qt read outside the file, crashed for another reason or ran too long.
    NotLoaded, ///< QTranslator::load() returned false.
    Answered   ///< Every text of the plug-in was looked up.
};

/// Makes Qt look up the plug-in's texts in each file, with a limit of one second of processor time.
/// The bytes are once directly before 4 GB of inaccessible memory and once directly after 2 GB, so
/// that any read outside the file that a 32-bit length or offset can cause is fatal. Dependencies
/// are searched for in @p directory.
QVector<Verdict> ask(const QList<QByteArray> &files, const QString &directory = QString());

} // namespace QmOracle
