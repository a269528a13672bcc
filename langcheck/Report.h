#pragma once

#include "lang/LangEntry.h"
#include "langcheck/Findings.h"

#include <QImage>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

/// A message box that the operator sees.
struct Box
{
    QString icon; ///< "information", "warning" or "critical".
    QString title;
    QString text;
    QImage picture;
    int titleWidth = 0; ///< The width that the title needs, in pixels
    int titleRoom = 0;  ///< The width that it has
};

/// A language of the catalogue that the operator can't choose.
struct HiddenLanguage
{
    int number = 0;
    QString name;   ///< Empty if it has none.
    QString folder; ///< Empty if it has none.
    int line = 0;   ///< The first of its lines
};

/// The Qt next to the host's executable.
struct HostQt
{
    QString version;  ///< Empty if not known.
    QString compiler; ///< "MSVC" or "MinGW-w64"; empty if not known.

    /// Returns both for people.
    QString description() const;
};

/// The most lines of the catalogue in a report, more than any list of languages needs
inline constexpr int kMostLines = 2000;

/// What the plug-in does with a deployment, and what is wrong with it.
struct Report
{
    QString applicationDir;
    QString applicationDirReason; ///< Why it is this folder; empty if it was given.
    QString encoding;             ///< The catalogue's; empty if it can't be read.
    QString encodingReason;       ///< Why it is read in this encoding.
    QList<LangEntry> listed;      ///< The operator's list, in its order.
    QList<HiddenLanguage> hidden; ///< The catalogue's other languages, by number.
    QStringList unusedFolders;    ///< Those in Lang with a translation that no language uses
    QStringList lines;            ///< The catalogue's first lines as they were read, shortened
    QVector<int> lineNumbers;     ///< Their numbers; lines may be lost in between.
    int selected = -1;            ///< Index into the list; -1 if it is empty.
    int defaultLangId = 0;        ///< The catalogue's DEFAULT.
    QString translation;          ///< The file that is loaded; empty for none.
    bool fallback = false;        ///< Whether that is the fallback.
    QList<Box> boxes;             ///< The message boxes at start-up, in order.
    QList<Finding> findings;

    /// Only if there is a Qt5Core.dll.
    std::optional<HostQt> hostQt;
    bool hostFails = false; ///< Whether the DLLs may keep the plug-in from running.

    /// Adds a finding about a line of the catalogue, or the whole file if it is 0, and returns it.
    Finding &addLine(FindingKind kind, int line, const QStringList &values = {});
    /// Adds a finding about the file @p path, and returns it.
    Finding &addFile(FindingKind kind, const QString &path, const QStringList &values = {});

    /// Returns how many findings have this severity.
    int count(Finding::Severity severity) const;
    /// Returns 0 without findings, 1 if all are warnings, 2 if there is an error.
    int exitCode() const;
    /// Returns unusedFolders without that of the fallback, which is needed.
    QStringList dispensableFolders() const;
    /// Returns a path for people: below the application directory, if it is there.
    QString relative(const QString &path) const;
};
