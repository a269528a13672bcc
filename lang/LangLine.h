#pragma once

#include <QString>

/// One line of the catalogue, told apart by its form and by the section that it stands in. The
/// reader acts on it, langcheck explains it. The texts are parts of the line that was given, which
/// must outlive them.
struct LangLine
{
    /// What a line is. From Id on, it is a key line of language langId.
    enum Kind {
        Blank,
        Comment,
        Header,   ///< [key]
        Outside,  ///< Anything else outside the section LANG_MGR
        NoKey,    ///< No "=", or nothing in front of it
        OtherKey, ///< A key of no meaning
        Default,  ///< DEFAULT=value
        Id,       ///< LANGn_ID=value, and so on
        Name,
        Folder,
        Show
    };

    Kind kind = Blank; ///< What the line is.
    QStringRef key;    ///< Left of the first "="; of a header, the text between its brackets.
    QStringRef value;  ///< All that is right of it.
    int langId = 0;    ///< The n of an Id, Name, Folder or Show; 0 if no int can hold the digits.

    /// Tells what @p text is after the headers so far; @p currentSection is the text between the
    /// brackets of the last one, and becomes that of this line if it is one.
    static LangLine read(const QString &text, QString &currentSection);
};
