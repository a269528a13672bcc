#pragma once

#include "support/Deployment.h"
#include "support/Operator.h"

/// The message boxes for failures to load the translation, as Operator::takeBoxes() returns them.
namespace TranslationBoxes {

inline QString openFailed()
{
    return Operator::box("warning", QStringLiteral("Warning"),
                         QStringLiteral("Failed to open INI file:")
                             + Deployment::path(QStringLiteral("Lang/Lang.ini")));
}

/// @p path is that of the default language; empty if it has none or is hidden.
inline QString notFound(const QString &path)
{
    return Operator::box("critical", QStringLiteral("Error"),
                         QStringLiteral("Cannot find the \"") + path + QStringLiteral("\" file"));
}

/// @p below is the path below the application directory.
inline QString loadFailed(const QString &below)
{
    return Operator::box("warning", QStringLiteral("Warning"),
                         QStringLiteral("Load translator file") + Deployment::path(below)
                             + QStringLiteral("failed!"));
}

} // namespace TranslationBoxes
