#include "langcheck/Findings.h"

using Kind = FindingKind;

constexpr std::array<FindingDescription, static_cast<std::size_t>(Kind::Count)> kFindings = {{
    // The file
    {Kind::CatalogueUnreadable, "catalogue-unreadable", Finding::Error,
     "missing or not a readable file; the operator's list is empty; put the catalogue there or "
     "correct its permissions"},
    {Kind::Utf16WithoutBom, "utf16-without-bom", Finding::Error,
     "UTF-16 without a BOM; the file is read as GB2312 and all lines are ignored; open it as "
     "UTF-16, make sure that all names look right, and only then save it as \"UTF-8 with BOM\""},
    {Kind::Utf8WithoutBom, "utf8-without-bom", Finding::Error,
     "UTF-8 without a BOM; the file is read as GB2312 and all non-ASCII characters are wrong; open "
     "the file as UTF-8, correct names that have lost letters, and only then save it as \"UTF-8 "
     "with BOM\""},
    {Kind::SecondBom, "second-bom", Finding::Warning,
     "line starts with a second BOM; its key or header is not recognised; delete the BOM"},
    {Kind::Undecodable, "undecodable", Finding::Error,
     "line is not valid %1; some of its characters are wrong; open the file in the encoding in "
     "which all names look right, correct names that have lost letters, and only then save it as "
     "\"UTF-8 with BOM\""},
    {Kind::SwallowedLine, "swallowed-line", Finding::Error,
     "line ends in half a GB2312 character: 0x%1; the next line is lost; open the file %2, correct "
     "names that have lost letters, and only then save it as \"UTF-8 with BOM\""},
    {Kind::CarriageReturn, "carriage-return", Finding::Warning,
     "line contains a carriage return without a line feed; the text after it is part of the same "
     "line; end lines with CR LF or LF"},

    // Sections and keys
    {Kind::NoSection, "no-section", Finding::Error,
     "section header [LANG_MGR] is missing; all lines are ignored and the operator's list is "
     "empty; write [LANG_MGR] above the keys"},
    {Kind::Header, "header", Finding::Warning,
     "section header is not [LANG_MGR]: %1; the lines below it are ignored; write [LANG_MGR] and "
     "nothing after it"},
    {Kind::OutsideSection, "outside-section", Finding::Warning,
     "line is not in the section [LANG_MGR]: %1; it is ignored; move it below [LANG_MGR]"},
    {Kind::NoKey, "no-key", Finding::Warning,
     "line is not a key with a value: %1; it is ignored; write KEY=value, or start a comment with "
     "\";\""},
    {Kind::KeyCase, "key-case", Finding::Warning,
     "key is not in upper case: %1; it is ignored; write %2"},
    {Kind::UnknownKey, "unknown-key", Finding::Warning,
     "key is unknown: %1; it is ignored; use DEFAULT or LANG<n>_ID, _NAME, _FOLDER or _SHOW"},
    {Kind::RepeatedKey, "repeated-key", Finding::Warning,
     "%1 is in line %2 with %3 and in line %4 with %5; only the last line with the key, line %6, "
     "counts; delete one of the two, so that the right value remains"},
    {Kind::RepeatedLanguage, "repeated-language", Finding::Error,
     "number %1 belongs to more than one language: %2 and %3; only the last counts, and this is "
     "missing from the operator's list: %4; give each of them a number, a name and a folder of its "
     "own, or delete the lines of those that are not wanted"},

    // Numbers of languages
    {Kind::NumberTooLong, "number-too-long", Finding::Warning,
     "%1 has a number that is too large; the line is read as one for language 0; use a number up "
     "to 255"},
    {Kind::NumberAbove255, "number-above-255", Finding::Warning,
     "language number is above 255: %1; the machine is asked for language %2; use a number up to "
     "255"},
    {Kind::SameMachineNumber, "same-machine-number", Finding::Error,
     "language number has the same low 8 bits as %2: %1; the machine is asked for language %3 in "
     "both cases; use numbers up to 255"},
    {Kind::IdDiffers, "id-differs", Finding::Warning,
     "%1 is not the number in its key: %2; the value is never read, and the number in the keys "
     "decides the place in the list, what DEFAULT means and what the machine receives; %3"},

    // Names and folders
    {Kind::QuotedValue, "quoted-value", Finding::Warning,
     "%1 is in quotation marks: %2; they are part of the value; delete them"},
    {Kind::CommentInValue, "comment-in-value", Finding::Warning,
     "%1 has a comment after its value: %2; the comment is part of the value; move it to a line of "
     "its own"},
    {Kind::LostLetters, "lost-letters", Finding::Warning,
     "%1 contains a question mark or a replacement character: %2; the operator sees it, and "
     "letters were probably lost when the file was saved in an encoding that lacks them; open the "
     "file in the encoding in which all other names look right, write this one again, and save the "
     "file as \"UTF-8 with BOM\""},
    {Kind::GarbledName, "garbled-name", Finding::Warning,
     "%1 looks like UTF-8 that was read as Windows-1252: %2; the operator sees these letters, "
     "where %3 was probably meant; write %1=%3, correct the other names, and save the file as "
     "\"UTF-8 with BOM\""},
    {Kind::SameName, "same-name", Finding::Error,
     "%1 is also the name of language %2: %3; the operator cannot tell them apart; use another "
     "name"},
    {Kind::NameClipped, "name-clipped", Finding::Error,
     "%1 is too %2 for the operator's list: %3 has %4 pixels, and there is room for %5; a part of "
     "it is cut off; %6"},
    {Kind::FolderDots, "folder-dots", Finding::Warning,
     "%1 contains \"..\": %2; the path leaves the folder Lang; use the name of a folder in Lang"},
    {Kind::FolderAbsolute, "folder-absolute", Finding::Warning,
     "%1 is an absolute path: %2; it is read as a folder below Lang; use the folder's name alone"},
    {Kind::FolderPercent, "folder-percent", Finding::Warning,
     "%1 contains a percent sign: %2; if a digit follows it, the path changes; rename the folder"},
    {Kind::FolderCase, "folder-case", Finding::Warning,
     "%1 differs in case from the folder on disk: %2; Linux does not find the folder; write %1=%3"},
    {Kind::SameFolder, "same-folder", Finding::Error,
     "%1 is also the folder of language %2: %3; both languages have the same texts; use a folder "
     "for each"},

    // Shown languages and the default
    {Kind::ShowNumber, "show-number", Finding::Warning,
     "%1 is not a number: %2; the language is hidden; use 1 to show it"},
    {Kind::ShowOther, "show-other", Finding::Warning,
     "%1 is not 0 or 1: %2; the language is hidden; use 1 to show it"},
    {Kind::ShowMissing, "show-missing", Finding::Warning,
     "LANG%1_SHOW is missing; the language is hidden; write LANG%1_SHOW=1 to show it or "
     "LANG%1_SHOW=0 to hide it"},
    {Kind::Incomplete, "incomplete", Finding::Error,
     "%1 is missing or empty; the language is shown but not in the operator's list; write %1=%2"},
    {Kind::NoLanguages, "no-languages", Finding::Error,
     "catalogue does not have a language with a name, a folder and SHOW=1; the operator's list is "
     "empty; write all three for a language"},
    {Kind::DefaultNumber, "default-number", Finding::Warning,
     "DEFAULT is not a number: %1; the default language is 0; use the number of a shown language"},
    {Kind::DefaultUnknown, "default-unknown", Finding::Error,
     "default language is not in the catalogue: %1; the dialog uses Lang/chs/Zendel.qm; write "
     "DEFAULT= with the number of a shown language"},
    {Kind::DefaultHidden, "default-hidden", Finding::Error,
     "default language is hidden: %1; the dialog uses Lang/chs/Zendel.qm; write LANG%1_SHOW=1 or "
     "another DEFAULT"},

    // Folders and translations
    {Kind::ApplicationFolder, "application-folder", Finding::Error,
     "application folder contains a percent sign: %1; the paths of the translations change; rename "
     "the folder"},
    {Kind::FolderMissing, "folder-missing", Finding::Error,
     "%1 is not a folder in Lang: %2; a dialog that needs the translation uses Lang/chs/Zendel.qm, "
     "or has empty texts if that is missing, too; %3"},
    {Kind::QmMissing, "qm-missing", Finding::Error,
     "file does not exist; a dialog that needs it %1; put the compiled translation there"},
    {Kind::QmUnreadable, "qm-unreadable", Finding::Error,
     "not a readable file; a dialog that uses it has empty texts; replace it or correct its "
     "permissions"},
    {Kind::QmSource, "qm-source", Finding::Error,
     "file is a translation source that was not compiled; a dialog that uses it has empty texts; "
     "rename this very file to Zendel.ts and compile it: lrelease Zendel.ts -qm Zendel.qm"},
    {Kind::QmDamaged, "qm-damaged", Finding::Error,
     "compiled translation is damaged or cut off; a dialog that uses it has empty texts; copy it "
     "again from where it came from"},
    {Kind::QmForeign, "qm-foreign", Finding::Error,
     "not a compiled translation of the plug-in's texts; a dialog that uses it has empty texts; "
     "replace it by the plug-in's translation, compiled with lrelease from the plug-in's .ts file "
     "after that was translated"},
    {Kind::QmLanguage, "qm-language", Finding::Warning,
     "translation is for %1, like the folder %2, and not for %3; an operator who chooses %4 "
     "probably sees texts in another language; %5"},
    {Kind::TextMissing, "text-missing", Finding::Error,
     "text is not translated: \"%1\" of %2; it is empty in the dialog; translate it in the "
     "language's .ts file, or in one made by \"lconvert Zendel.qm -o Zendel.ts\", and compile it"},
    {Kind::TextClipped, "text-clipped", Finding::Error,
     "text is too %1 for the dialog: \"%2\" of %3 is translated as %4, which has %5 pixels, and "
     "there is room for %6; a part of it is cut off; %7"},

    // The DLLs next to the host's executable
    {Kind::DllUnusable, "dll-unusable", Finding::Error,
     "not a DLL for 64-bit x86: %1; a 64-bit host, which the plug-in needs, cannot load it; "
     "replace it by %2, and use a 64-bit host if this one is not"},
    {Kind::QtVersion, "qt-version", Finding::Error,
     "host's Qt is not one of 5.6 to 5.15: %1; the plug-in cannot be loaded or crashes; use a host "
     "with Qt 5.6 to 5.15"},
    {Kind::QtVersionUnknown, "qt-version-unknown", Finding::Warning,
     "file has no version resource; if it is not of Qt 5.6 to 5.15, the plug-in cannot be loaded "
     "or crashes; make sure that it is"},
    {Kind::QtFamily, "qt-family", Finding::Error,
     "built for %1, but %3 for %2; Windows refuses to start the host; replace it by %4"},
    {Kind::QtVersionsDiffer, "qt-versions-differ", Finding::Warning,
     "version is %1, but that of %3 is %2; the DLLs of different versions may not work together; "
     "copy all DLLs of Qt, and its folder platforms, from the Qt that the host was built with"},
    {Kind::PluginFamily, "plugin-family", Finding::Error,
     "plug-in is built for %1, but %3 for %2; Windows refuses to load the plug-in with error 126 "
     "or 127; use a plug-in that is built for %2"},
    {Kind::PlatformMissing, "platform-missing", Finding::Warning,
     "file does not exist; unless the host itself knows where Qt's plug-ins are, it ends at its "
     "start; copy %1, from its folder plugins, or name that folder in a qt.conf"},
    {Kind::RuntimeMissing, "runtime-missing", Finding::Warning,
     "file does not exist; unless it is elsewhere in the search path, Windows refuses to start the "
     "host, or to load the plug-in with error 126; %1"},
}};

namespace {

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < kFindings.size(); ++i) {
        if (static_cast<std::size_t>(kFindings[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(isInOrder());

} // namespace

Finding makeFinding(FindingKind kind, const QString &file, int line, const QStringList &values)
{
    const FindingDescription &description = kFindings[static_cast<std::size_t>(kind)];
    // In one pass, because a value may contain a percent sign or a semicolon.
    QString text;
    int remedy = 0;
    for (const char *c = description.text; *c != '\0'; ++c) {
        if (*c == '%')
            text += values.at(*++c - '1');
        else
            text += QLatin1Char(*c);
        if (c[0] == ';' && c[1] == ' ')
            remedy = text.size() + 1;
    }
    return {file, line, description.severity, QLatin1String(description.id), text, text.mid(remedy),
            {}};
}
