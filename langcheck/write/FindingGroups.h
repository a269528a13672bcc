#pragma once

#include "langcheck/Report.h"

#include <QMap>

/// Findings of one kind in one file, which a page shows together.
struct FindingGroup
{
    QString anchor;        ///< That of the finding if there is only one.
    QVector<int> findings; ///< Indexes into those of the report, in its order
};

/// The report's findings as a page shows them, and what refers to them.
struct FindingGroups
{
    explicit FindingGroups(const Report &report);

    QVector<FindingGroup> groups; ///< In the order of their first findings
    QStringList anchors;          ///< Those of the findings, which don't depend on other findings
    QVector<QVector<int>> languages;    ///< The numbers of those that each finding is about
    QMap<int, QVector<int>> ofLanguage; ///< The findings about each language
    QMap<int, QVector<int>> ofLine;     ///< The findings about each line of the catalogue
};

/// The catalogue, as findings name it
inline const QLatin1String kCatalogueFile("Lang/Lang.ini");

/// Returns the lines of the catalogue that a finding is about.
QVector<int> linesOf(const Finding &finding);
