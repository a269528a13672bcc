#pragma once

#include <QString>

/// One language of the catalogue.
struct LangEntry
{
    int id = -1;       ///< The number n of its LANGn_ keys; -1 only in a default-made entry.
    bool show = false; ///< Whether the operator is offered the language.
    QString name;      ///< Display name, in the language's own script.
    QString folder;    ///< Name of its folder below Lang.
    QString qmPath;    ///< Full path of its translation file, composed when the folder is read.
};
