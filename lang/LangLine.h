#pragma once

#include <QRegularExpression>
#include <QString>

/// A line of the catalogue. Key and value refer to the line's text, which must outlive them.
struct LangLine
{
    /// The kinds of lines.
    enum Kind {
        Blank,
        Comment,
        Header,   ///< [key]
        Outside,  ///< Anything else outside the section LANG_MGR
        NoKey,    ///< Without "=", or with nothing before it
        OtherKey, ///< An unknown key
        Default,  ///< DEFAULT=value
        Id,       ///< LANGn_ID=value, and so on
        Name,
        Folder,
        Show
    };

    Kind kind = Blank; ///< The line's kind.
    QStringRef key;    ///< Before the first "="; in a header, between the brackets.
    QStringRef value;  ///< After the first "=".
    int langId = 0;    ///< The n in Id, Name, Folder or Show; 0 if it does not fit into an int.

    /// Returns true if the line is about the language langId.
    bool isLanguageKey() const { return kind >= Id; }
};

/// Reads the lines of a catalogue in order, because a header decides what the lines below it mean.
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
