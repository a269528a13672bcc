#pragma once

#include "support/Deployment.h"

#include <QApplication>
#include <QFont>

/// A deployment without findings, which tests then spoil.
namespace GoodDeployment {

/// Two shown languages, in lines 1 to 8.
inline const char *const kCatalogue = "[LANG_MGR]\n"
                                      "DEFAULT=1\n"
                                      "LANG1_NAME=One\n"
                                      "LANG1_FOLDER=first\n"
                                      "LANG1_SHOW=1\n"
                                      "LANG2_NAME=Two\n"
                                      "LANG2_FOLDER=second\n"
                                      "LANG2_SHOW=1\n";

/// Sets the font with which the program measures texts.
inline void setFont()
{
#ifndef Q_OS_WIN
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9));
#endif
}

/// Replaces the folder Lang by one with kCatalogue and its translations.
inline void install()
{
    Deployment::clear();
    Deployment::writeCatalogue(kCatalogue);
    for (const char *const folder : {"first", "second", "chs"})
        Deployment::installTranslation(QLatin1String(folder), QStringLiteral("first"));
}

} // namespace GoodDeployment
