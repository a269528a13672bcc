#pragma once

#include <QLocale>
#include <QString>

// Guesses what a text was before it was read in a wrong encoding, or its letters became codes.

/// A text that was read in a wrong encoding.
struct Misread
{
    QString original;
    QString how; ///< For the sentence "the text looks like ..."
};

/// Returns what a text was if it was read in a wrong encoding, once or twice, before it was saved;
/// an empty text if it wasn't.
Misread misread(const QString &text);

/// Returns @p text with the characters instead of their codes, as in HTML, JSON, mails or URLs.
QString withoutCodes(const QString &text);

/// Returns the language that has this name in itself or in English; C if none or several have.
QLocale::Language languageNamed(const QString &name);

/// Returns a name such as "Deutsch (Österreich)" or "日本語 / Japanese" without what follows.
QString withoutAddition(const QString &name);
