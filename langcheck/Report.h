#pragma once

#include "lang/LangEntry.h"

#include <QJsonObject>
#include <QList>
#include <QString>

/// Something that the author of the deployment probably did not mean.
struct Finding
{
    enum Severity {
        Warning, ///< Has no effect, or another one than it seems to have.
        Error    ///< The operator would see something go wrong.
    };

    QString file; ///< Path below the application directory.
    int line = 0; ///< From 1; 0 for the file as a whole.
    Severity severity = Warning;
    QString kind; ///< The same word for all findings of one kind.
    QString text; ///< What happens, and what to do.
};

/// A message box that the operator gets.
struct Box
{
    QString icon; ///< "warning" or "critical".
    QString title;
    QString text;
};

/// What the plug-in does with a deployment, and what is wrong with it.
struct Report
{
    QString applicationDir;
    QString encoding;        ///< Empty if the catalogue cannot be read.
    QString encodingReason;  ///< Why this encoding.
    QList<LangEntry> listed; ///< The operator's list, in its order.
    int selected = -1;       ///< Index into the list; -1 if it is empty.
    int defaultLangId = 0;   ///< As the catalogue names it.
    QString translation;     ///< The file that is loaded; empty for none.
    bool fallback = false;   ///< Whether that is the fallback's file and not the default's own.
    QList<Box> boxes;        ///< At start, in order.
    QList<Finding> findings;

    /// 0 for no finding, 1 for warnings alone, 2 if there is an error.
    int exitCode() const;

    /// For people: the verdict, then a line a finding.
    QString toText() const;
    /// For programs: the same content.
    QJsonObject toJson() const;
};
