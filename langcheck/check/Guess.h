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

/// Returns @p value without the quotation marks and the comment that are part of it; @p value
/// itself if it has none.
QString withoutQuotes(const QString &value);
QString withoutComment(const QString &value);

/// Returns the number that @p value was probably meant to be; -1 if it contains none.
int intendedNumber(const QString &value);

/// Returns true if a word has Latin letters and others, most of which look like them.
bool mixesScripts(const QString &text);
