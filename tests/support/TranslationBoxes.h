#pragma once

#include "support/Deployment.h"
#include "support/Operator.h"

/// The boxes that tell of failures to set up the translation, as Operator::takeBoxes() gives them.
namespace TranslationBoxes {

inline QString openFailed()
{
    return Operator::box("warning", QStringLiteral("Warning"),
                         QStringLiteral("Failed to open INI file:")
                             + Deployment::path(QStringLiteral("Lang/Lang.ini")));
}

/// @p path is the one that the catalogue gives, empty if it gives none.
inline QString notFound(const QString &path)
{
    return Operator::box("critical", QStringLiteral("Error"),
                         QStringLiteral("Cannot find the \"") + path + QStringLiteral("\" file"));
}

/// @p below is the file's path below the application directory.
inline QString loadFailed(const QString &below)
{
    return Operator::box("warning", QStringLiteral("Warning"),
                         QStringLiteral("Load translator file") + Deployment::path(below)
                             + QStringLiteral("failed!"));
}

} // namespace TranslationBoxes
