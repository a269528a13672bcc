#pragma once

#include <QString>

// Finds files that lie next to where they should be, or have a similar name.

/// What was probably meant to be Lang/Lang.ini.
struct NearbyCatalogue
{
    QString path; ///< Below the application directory; empty if there is nothing.
    QString remedy;
};

NearbyCatalogue nearbyCatalogue(const QString &applicationDir);

/// Returns the path of what was probably meant to be the translation @p path; empty if there is
/// none.
QString nearbyTranslation(const QString &path);

/// Returns the name of the folder in Lang that @p value, a language's folder, was probably meant to
/// be, or one of @p unused that has a similar name; empty if there is none.
QString nearbyFolder(const QString &applicationDir, const QString &value,
                     const QStringList &unused);

/// Returns true if Windows can have a folder of this name.
bool isFolderName(const QString &name);
