#pragma once

#include "langcheck/check/CatalogueCheck.h"

#include <QRegularExpression>
#include <QVector>

/// Finds keys of the catalogue that aren't in the section LANG_MGR, and why.
class SectionCheck
{
public:
    /// Takes the next line, trimmed. @p isHeader is true for what the plug-in takes for a header,
    /// and @p inside for a line in the section, where it finds keys itself.
    void add(const QString &text, int line, bool isHeader, bool inside);

    /// Returns true if the line was probably meant to be the header [LANG_MGR].
    static bool resemblesHeader(const QString &text);

    /// Adds the findings, to be called after the last line. Without the section, there is one.
    void finish(Report &report, CatalogueLines &lines) const;

private:
    struct Section
    {
        QString header; ///< Empty before the first.
        int line = 0;
        int ignored = 0;              ///< The number of lines below it, apart from comments
        QVector<int> keys;            ///< The lines among them that resemble keys of the catalogue
        QMap<int, QString> exactKeys; ///< Those that are keys of languages or DEFAULT, by line
        bool resembles = false;
    };

    const Section &first() const;
    static QString costs(const Section &section, bool hasSection);
    static void addOutside(Report &report, CatalogueLines &lines, const Section &section);

    QVector<Section> m_sections {Section()};
    QRegularExpression m_anyKey {QLatin1String("\\b(DEFAULT|LANG[0-9]+_)"),
                                 QRegularExpression::CaseInsensitiveOption};
    QRegularExpression m_key {
        QLatin1String("^(LANG[0-9]+_(ID|NAME|FOLDER|SHOW)|DEFAULT(?=\\s*=\\s*[0-9]))\\s*=")};
    bool m_isEmpty = true;
};
