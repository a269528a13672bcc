#pragma once

#include <QByteArray>
#include <QVector>

/// A compiled translation written by hand, with one peculiarity.
struct CraftedQmFile
{
    const char *name;
    QByteArray bytes;
    /// Whether Qt can look up all texts of the plug-in in the file, according to the format. A test
    /// compares this with Qt itself, using QmOracle.
    bool usable;
    /// The translation of "Change"; empty if the file doesn't contain it.
    const char *change = "";
};

QVector<CraftedQmFile> craftedQmFiles();

/// Returns a file with the blocks in @p further (tag, length, content) and then all texts of the
/// plug-in, each translated to upper case.
QByteArray completeQmFile(const QByteArray &further = QByteArray());

/// Returns a block that makes Qt load the files with these names, in UTF-8, too.
QByteArray dependenciesBlock(const QList<QByteArray> &names);

/// Returns a file in which looking up "Change" never ends.
QByteArray endlessQmFile();

/// Returns a file of 4 MB in which Qt would take minutes to look up "Change", because all of its
/// many entries share one long record.
QByteArray slowQmFile();

/// Returns a file of 4 MB as lrelease writes it, with the plug-in's texts among 25,000 others.
QByteArray largeQmFile();

/// Returns files, most of about 4 MB, that keep a reader busy. The plug-in refuses them all, even
/// those that Qt could use (usable): no tool writes lists and records that overlap like this, or
/// so many contexts.
QVector<CraftedQmFile> costlyQmFiles();
