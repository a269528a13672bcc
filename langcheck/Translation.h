#pragma once

#include <QString>

#include <optional>

/// What QTranslator has functions for since Qt 5.15.
struct Translation
{
    QString fileName; ///< With what Qt has added or left out to find it
    QString language; ///< The language that the file names
};

/// Loads a compiled translation as the plug-in does; empty if that fails.
std::optional<Translation> loadTranslation(const QString &fileName);
