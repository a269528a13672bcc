#pragma once

#include <QString>

/// A language in the catalogue.
struct LangEntry
{
    int id = -1;       ///< The number n in its LANGn_ keys; -1 only after default construction.
    bool show = false; ///< Whether the operator can choose the language.
    QString name;      ///< The name in the operator's list.
    QString folder;    ///< The folder of its translation, relative to Lang.
    QString qmPath;    ///< The full path of its translation, composed when the folder is read.
};
