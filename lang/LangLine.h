#pragma once

#include <QRegularExpression>
#include <QString>

/// One line of the catalogue, told apart by its form and by the section that it stands in. The
/// reader acts on it, langcheck explains it. Key and value are parts of the line's text, which must
/// outlive them.
struct LangLine
{
    /// What a line is.
    enum Kind {
        Blank,
        Comment,
        Header,   ///< [key]
        Outside,  ///< Anything else outside the section LANG_MGR
        NoKey,    ///< No "=", or nothing before it
        OtherKey, ///< A key without a meaning
        Default,  ///< DEFAULT=value
        Id,       ///< LANGn_ID=value, and so on
        Name,
        Folder,
        Show
    };

    Kind kind = Blank; ///< What the line is.
    QStringRef key;    ///< Left of the first "="; of a header, the text between its brackets.
    QStringRef value;  ///< All that is right of it.
    int langId = 0;    ///< The n of an Id, Name, Folder or Show; 0 if it does not fit into an int.

    /// Returns whether this is a key line of the language langId.
    bool isLanguageKey() const { return kind >= Id; }
};

/// Reads the lines of one catalogue, in order: a header decides what the lines after it mean.
class LangLineReader
{
public:
    /// Reads the next line. The result refers to @p text.
    LangLine read(const QString &text);
    LangLine read(QString &&text) = delete;

private:
    QString m_currentSection;
    QRegularExpression m_languageKey {QLatin1String("^LANG(\\d+)_(ID|NAME|FOLDER|SHOW)$")};
};
