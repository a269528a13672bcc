#pragma once

#include <QByteArray>
#include <QVector>

/// Compiled translations made by hand, byte for byte, each with one peculiarity.
struct CraftedQmFile
{
    const char *name;
    QByteArray bytes;
    /// Whether Qt can look up all texts of the plug-in in the file. Decided by hand; QmOracle
    /// compares it with Qt itself.
    bool usable;
    /// What then comes back for "Change"; empty if the file does not have it.
    const char *change = "";
};

QVector<CraftedQmFile> craftedQmFiles();

/// Returns a file with all texts of the plug-in, each translated as itself in upper case, with
/// @p further blocks (tag, length, content) before them.
QByteArray completeQmFile(const QByteArray &further = QByteArray());

/// Returns a block that names further files to load.
QByteArray dependenciesBlock(const QList<QByteArray> &names);

/// Returns a file whose look-up of "Change" never ends.
QByteArray endlessQmFile();

/// Returns a file of 4 MB in which Qt's look-up of "Change" would take minutes: each of its many
/// entries leads through the same long record.
QByteArray slowQmFile();

/// Returns a file of 4 MB as lrelease writes it: the texts of the plug-in among 25,000 others.
QByteArray largeQmFile();

/// Files, most of about 4 MB, that are made to keep a reader busy. All are refused for that, also
/// those with which Qt would come to an end: no tool writes lists and records that overlap so, or a
/// list of contexts so long. Usable means usable for Qt here.
QVector<CraftedQmFile> costlyQmFiles();
