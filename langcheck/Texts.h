#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Prepares texts of a deployment, which may contain anything, for people.

/// Returns @p text, cut off if it has more than @p most characters.
QString shortened(const QString &text, int most);

/// Returns @p text in quotation marks, shortened if it is long, and without carriage returns.
/// Characters that can't be seen, or that look like ASCII, are followed by their code points.
QString quoted(const QString &text);

/// Returns the same for what should be ASCII, with the code points of all other characters.
QString quotedAscii(const QString &text);

/// Returns true for a character that takes no space or looks like one.
bool isInvisible(uint code);

/// Returns numbers from 1, in ascending order, as "line 3" or "lines 3 to 7 and 9".
QString linesText(const QVector<int> &lines);

/// Returns @p text with %1 to %9 replaced with @p values, and %0 with @p zero, in one pass, because
/// a value may contain a percent sign. QString::arg() does that only since Qt 5.14.
QString withValues(const char *text, const QStringList &values, const QString &zero = {});

/// Returns what is between separators, as QString::split() does, whose signature depends on Qt's
/// version.
QStringList partsOf(const QString &text, QChar separator);

/// Returns "1 line", "2 lines" and so on.
QString countText(int number, const char *noun);

inline constexpr int kLongestText = 300;
inline constexpr int kLongestFinding = 1000; ///< Findings quote several texts, each shortened.

/// Replaces what neither HTML nor a console should contain: control characters except tab and line
/// feed by their pictures, characters that reverse or break lines by their code points, lone
/// surrogates and noncharacters by the replacement character. Shortens the text as shortened()
/// does.
QString printable(const QString &text, int most = kLongestText);
