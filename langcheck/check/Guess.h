#pragma once

#include <QString>
#include <QStringList>

// Guesses what somebody meant to write.

/// Returns @p text with look-alikes of ASCII characters replaced with ASCII, without invisible
/// characters, and trimmed.
QString plain(const QString &text);

/// Returns @p text without characters that can't be seen, except spaces and what scripts need to
/// join letters or to change their direction for one character.
QString withoutInvisible(const QString &text);

/// Returns the candidate that differs from @p text in at most two characters, the nearest first;
/// empty if there is none. Case is ignored.
QString nearest(const QString &text, const QStringList &candidates);

/// Returns the key that the plug-in knows and that @p key was probably meant to be; empty if it
/// resembles none.
QString intendedKey(const QString &key);

/// What a line of the catalogue was probably meant to be.
struct IntendedLine
{
    QString key; ///< That the plug-in knows; empty if the line resembles none.
    QString value;
    int sign = -1;         ///< The index of what stands for "="
    QString surplus;       ///< What precedes the key, if it is no letter or digit
    bool isQuoted = false; ///< The key or the line is in quotation marks.
};

/// Returns what @p text was probably meant to be, whatever precedes or surrounds its key.
IntendedLine intendedLine(const QString &text);

/// Returns @p value without the quotation marks and the comment that are part of it; @p value
/// itself if it has none.
QString withoutQuotes(const QString &value);
QString withoutComment(const QString &value);

/// Returns the number that @p value was probably meant to be; -1 if it contains none.
int intendedNumber(const QString &value);

/// Returns true if a word has Latin letters and others, most of which look like them.
bool mixesScripts(const QString &text);
