#pragma once

#include "langcheck/check/DeploymentCheck.h"

#include "support/Deployment.h"
#include "support/Operator.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QFont>

/// A deployment without findings, into which tests introduce errors.
namespace GoodDeployment {

/// Two visible languages, in lines 1 to 8.
inline const char *const kCatalogue = "[LANG_MGR]\n"
                                      "DEFAULT=1\n"
                                      "LANG1_NAME=One\n"
                                      "LANG1_FOLDER=first\n"
                                      "LANG1_SHOW=1\n"
                                      "LANG2_NAME=Two\n"
                                      "LANG2_FOLDER=second\n"
                                      "LANG2_SHOW=1\n";

inline const QByteArray kUtf8Bom = "\xEF\xBB\xBF";

/// Returns kCatalogue with a change.
inline QByteArray catalogueWith(const char *before, const QByteArray &after)
{
    QByteArray bytes = kCatalogue;
    if (!bytes.contains(before))
        qFatal("No %s", before);
    return bytes.replace(before, after);
}

/// Collects warnings and sets the font with which langcheck measures texts.
inline void prepareTests()
{
    Warnings::collect();
#ifndef Q_OS_WIN
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), 9));
#endif
}

/// Replaces the folder Lang with kCatalogue and its translations.
inline void install()
{
    Deployment::clear();
    Deployment::writeCatalogue(kCatalogue);
    for (const char *const name : {"first", "second"})
        Deployment::installTranslation(QLatin1String(name), QLatin1String(name));
    Deployment::installTranslation(QStringLiteral("chs"), QStringLiteral("third"));
}

inline Report check()
{
    return checkDeployment(QCoreApplication::applicationDirPath());
}

/// Returns the report's message boxes in the form of Operator::takeBoxes().
inline QStringList boxesOf(const Report &report)
{
    QStringList result;
    for (const Box &box : report.boxes)
        result += Operator::box(box.icon.toLatin1().constData(), box.title, box.text);
    return result;
}

} // namespace GoodDeployment
