#pragma once

#include <QString>

// Prepares texts of a deployment, which may contain anything, for people.

/// Returns @p text, cut off if it has more than @p most characters.
QString shortened(const QString &text, int most);

/// Returns @p text in quotation marks, shortened if it is long, and without carriage returns.
QString quoted(const QString &text);

inline constexpr int kLongestText = 300;
inline constexpr int kLongestFinding = 1000; ///< Findings quote several texts, each shortened.

/// Replaces what neither HTML nor a console should contain: control characters except tab and line
/// feed by their pictures, lone surrogates and noncharacters by the replacement character. Shortens
/// the text as shortened() does.
QString printable(const QString &text, int most = kLongestText);
