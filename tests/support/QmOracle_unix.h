#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

/// Tries in child processes what Qt does with compiled translations.
namespace QmOracle {

enum Verdict : char {
    Died,      ///< Qt read outside the file, crashed otherwise or ran too long.
    NotLoaded, ///< QTranslator::load() returned false.
    Answered   ///< Every text of the plug-in was looked up.
};

/// Makes Qt look up the plug-in's texts in each file, for a second of processor time each. The
/// bytes are once directly before 4 GB of inaccessible memory and once directly after 2 GB, so that
/// any read outside the file that a 32-bit length or offset can cause is fatal. Dependencies are
/// looked for in @p directory.
QVector<Verdict> ask(const QList<QByteArray> &files, const QString &directory = QString());

} // namespace QmOracle
