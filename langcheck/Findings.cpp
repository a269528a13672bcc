#include "langcheck/Findings.h"

#include "langcheck/Texts.h"

#include <QHash>

#include <algorithm>
#include <tuple>

using Kind = FindingKind;

namespace {

constexpr FindingTexts kNone = {nullptr, nullptr, nullptr};

const int kHow = 4;           ///< How a name was garbled
const int kMostWritten = 600; ///< Characters of what is to be written that are shown

} // namespace

constexpr std::array<FindingDescription, static_cast<std::size_t>(Kind::Count)> kFindings = {{
    // The file
    {Kind::CatalogueMissing,
     "catalogue-missing",
     Finding::Error,
     {"the file doesn't exist%1", "the operator's list is empty", "%2"},
     kNone},
    {Kind::CatalogueUnreadable,
     "catalogue-unreadable",
     Finding::Error,
     {"the file can't be read: %1", "the operator's list is empty", "%2"},
     kNone},
    {Kind::CatalogueEmpty,
     "catalogue-empty",
     Finding::Error,
     {"the file has no lines apart from comments", "the operator's list is empty",
      "restore it from a backup, or write [LANG_MGR], DEFAULT and the keys of each language"},
     kNone},
    {Kind::CatalogueNotText,
     "catalogue-not-text",
     Finding::Error,
     {"the file isn't text: %1", "the operator's list is empty", "%2"},
     kNone},
    {Kind::CatalogueForeign,
     "catalogue-foreign",
     Finding::Error,
     {"the file has no language keys", "the operator's list is empty",
      "replace it with the right catalogue; this one is probably another program's"},
     kNone},
    {Kind::ZeroTail,
     "zero-tail",
     Finding::Warning,
     {"the file ends with %1, as after a power failure", "%2",
      "delete them, and make sure that no lines are missing at the end"},
     kNone},
    {Kind::OddByte,
     "odd-byte",
     Finding::Warning,
     {"the file has an odd number of bytes, although each character in UTF-16 has two or four",
      "the last byte is ignored, and the file was probably cut off",
      "make sure that no lines are missing at the end, and save the file again"},
     kNone},
    {Kind::TextTransfer,
     "text-transfer",
     Finding::Error,
     {"the file was transferred in text mode, which has put a carriage return byte before each "
      "line feed byte",
      "most of its characters are wrong",
      "transfer the folder Lang again in binary mode, or restore it from a backup"},
     kNone},
    {Kind::Utf16WithoutBom,
     "utf16-without-bom",
     Finding::Error,
     {"the file is UTF-16 without a BOM", "it is read as GB2312, and all lines are ignored",
      "open it as UTF-16, make sure that all names look right, and only then save it as \"UTF-8 "
      "with BOM\""},
     kNone},
    {Kind::Utf8WithoutBom,
     "utf8-without-bom",
     Finding::Error,
     {"the file is UTF-8 without a BOM",
      "it is read as GB2312, and all non-ASCII characters are wrong",
      "open the file as UTF-8, correct any names that have lost letters, and only then save it as "
      "\"UTF-8 with BOM\""},
     kNone},
    {Kind::NoBom,
     "no-bom",
     Finding::Warning,
     {"the file has no BOM, but contains a name that isn't only ASCII",
      "it is read as GB2312; if it was saved in another encoding, such as EUC-KR or EUC-JP, the "
      "names become wrong Chinese characters",
      "look at the picture of the list, open the file in the encoding in which all names look "
      "right, and only then save it as \"UTF-8 with BOM\""},
     kNone},
    {Kind::SecondBom, "second-bom", Finding::Error, {"the line %1", "%2", "%3"}, kNone},
    {Kind::Undecodable,
     "undecodable",
     Finding::Error,
     {"the line isn't valid %1", "some of its characters are wrong, at least on Windows",
      "open the file in the encoding in which all names look right, correct any names that have "
      "lost letters, and only then save it as \"UTF-8 with BOM\""},
     {"%0 aren't valid %1", "some of their characters are wrong, at least on Windows",
      "open the file in the encoding in which all names look right, correct any names that have "
      "lost letters, and only then save it as \"UTF-8 with BOM\""}},
    {Kind::HalfCharacter,
     "half-character",
     Finding::Error,
     {"the line contains half of a UTF-16 character: %1",
      "the operator sees a replacement character", "type the text again, and save the file"},
     kNone},
    {Kind::AppendedBytes,
     "appended-bytes",
     Finding::Error,
     {"the line was written in %2: %1", "it is misread and ignored",
      "open the file %3, delete the line, type its keys again, each on a line of its own, and save "
      "the file"},
     {"%0 were written in %2", "they are misread and ignored",
      "open the file %3, delete the lines, type their keys again, each on a line of its own, and "
      "save the file"}},
    {Kind::SwallowedLine,
     "swallowed-line",
     Finding::Error,
     {"the line ends in half a GB2312 character: 0x%1", "the next line is lost",
      "open the file in the encoding in which all names look right, correct any names that have "
      "lost letters, and only then save it as "
      "\"UTF-8 with BOM\""},
     {"%0 end in half a GB2312 character", "the line after each of them is lost",
      "open the file in the encoding in which all names look right, correct any names that have "
      "lost letters, and only then save it as "
      "\"UTF-8 with BOM\""}},
    {Kind::CarriageReturn,
     "carriage-return",
     Finding::Warning,
     {"the line contains a carriage return without a line feed",
      "the text after it is part of the same line", "end lines with CR LF or LF"},
     {"%0 contain a carriage return without a line feed",
      "the text after it is part of the same line", "end lines with CR LF or LF"}},

    // Sections and keys
    {Kind::NoSection,
     "no-section",
     Finding::Error,
     {"the section header [LANG_MGR] is missing",
      "all lines are ignored, and the operator's list is empty",
      "insert a line with [LANG_MGR] before line %1"},
     kNone},
    {Kind::Header,
     "header",
     Finding::Warning,
     {"the section header is %1 instead of [LANG_MGR]", "%2",
      "write [LANG_MGR] on this line, with nothing before or after it"},
     kNone},
    {Kind::OutsideSection,
     "outside-section",
     Finding::Error,
     {"%0, with a key of the catalogue, is %1 and so outside the section [LANG_MGR]",
      "it is ignored", "%2"},
     {"%0, with keys of the catalogue, are %1 and so outside the section [LANG_MGR]",
      "they are ignored", "%2"}},
    {Kind::TwoKeys,
     "two-keys",
     Finding::Error,
     {"the line contains a second key: %1", "it is part of the value",
      "write %1 on a line of its own"},
     kNone},
    {Kind::NoKey,
     "no-key",
     Finding::Warning,
     {"the line isn't a key with a value: %1", "it is ignored", "%2%3%4"},
     {"%0 aren't keys with values: %1 and so on", "they are ignored", "%5%2%3%4"}},
    {Kind::KeyCase,
     "key-case",
     Finding::Warning,
     {"the key %1 isn't in upper case", "it is ignored", "write %2"},
     {"the keys on %0 aren't in upper case", "they are ignored", "write all keys in upper case"}},
    {Kind::UnknownKey,
     "unknown-key",
     Finding::Warning,
     {"the key %1 is unknown", "it is ignored", "%2%3%4"},
     {"the keys on %0 are unknown: %1 and so on", "they are ignored", "%5%2%3%4"}},
    {Kind::RepeatedKey,
     "repeated-key",
     Finding::Warning,
     {"%1 is set on line %2 to %3 and on line %4 to %5", "only the last one, on line %6, applies",
      "delete all but the right one"},
     {"%0 set keys that earlier lines have already set", "only the last line of each key applies",
      "delete the lines that are wrong or superfluous"}},
    {Kind::RepeatedLanguage,
     "repeated-language",
     Finding::Error,
     {"more than one language has the number %1: %2 and %3",
      "only the last one applies, and the operator's list lacks %4",
      "give each language its own number, name and folder, or delete the lines of those that you "
      "don't want"},
     kNone},

    // Numbers of languages
    {Kind::NumberTooLong,
     "number-too-long",
     Finding::Error,
     {"the number in %1 is too large",
      "it counts as 0, so the line is read as one of language 0, and the machine is asked for 0",
      "use a number up to 255 in all keys of the language"},
     {"the numbers in the keys on %0 are too large",
      "they count as 0, so the lines are read as those of language 0, and the machine is asked for "
      "0",
      "use a number up to 255 in all keys of the language"}},
    {Kind::NumberAbove255,
     "number-above-255",
     Finding::Error,
     {"the language number %1 is above 255", "the machine is asked for language %2 instead",
      "use a number up to 255 in all keys of the language%3, and in DEFAULT if it is the default"},
     kNone},
    {Kind::SameMachineNumber,
     "same-machine-number",
     Finding::Error,
     {"the language numbers %1 and %2 have the same low 8 bits",
      "the machine is asked for language %3 in both cases",
      "use an unused number up to 255 in all keys of language %4, and in DEFAULT if it is the "
      "default"},
     kNone},
    {Kind::IdDiffers,
     "id-differs",
     Finding::Warning,
     {"%1 is set to %2, which isn't the number in its key",
      "the value is never read, because the number in the keys determines the place in the list, "
      "what DEFAULT means and what the machine receives",
      "%3"},
     {"the IDs on %0 aren't the numbers in their keys",
      "the IDs are never read, because the number in the keys determines the place in the list, "
      "what DEFAULT means and what the machine receives",
      "find out which numbers the control software uses; write those in the keys, the IDs and "
      "DEFAULT"}},

    // Names and folders
    {Kind::QuotedValue,
     "quoted-value",
     Finding::Warning,
     {"%1 is in quotation marks: %2", "they are part of the value", "write %1=%3"},
     kNone},
    {Kind::CommentInValue,
     "comment-in-value",
     Finding::Warning,
     {"%1 has a comment after its value: %2", "the comment is part of the value",
      "write %1=%3, and the comment on a line of its own"},
     {"the values on %0 have commas, semicolons or comments after them",
      "these are part of the values",
      "delete what follows the values, or write the comments on lines of their own"}},
    {Kind::LostLetters,
     "lost-letters",
     Finding::Warning,
     {"%1 contains a question mark or a replacement character: %2",
      "the operator sees it, and letters were probably lost when the file was saved in an encoding "
      "that lacks them",
      "%3type this name again, and save the file as \"UTF-8 with BOM\""},
     {"the names on %0 contain question marks or replacement characters",
      "the operator sees them, and letters were probably lost when the file was saved in an "
      "encoding that lacks them",
      "%3type these names again, and save the file as \"UTF-8 with BOM\""}},
    {Kind::GarbledName,
     "garbled-name",
     Finding::Warning,
     {"%1 looks like %5: %2", "the operator sees these letters, although %3 was probably meant",
      "write %4, correct any other wrong names, and save the file as \"UTF-8 with BOM\""},
     {"the names on %0 look like %5", "the operator sees wrong letters",
      "write %4, correct any other wrong names, and save the file as \"UTF-8 with BOM\""}},
    {Kind::EscapedName,
     "escaped-name",
     Finding::Warning,
     {"%1 contains codes for characters: %2", "the operator sees the codes", "write %1=%3"},
     kNone},
    {Kind::MixedScripts,
     "mixed-scripts",
     Finding::Warning,
     {"%1 mixes Latin letters (%3) with others that look the same: %2",
      "searches and comparisons treat the name as a different one",
      "type the name again in one script"},
     kNone},
    {Kind::NameScript,
     "name-script",
     Finding::Error,
     {"%1 has no character of the script of %2, the language of the translation: %3",
      "the operator probably sees letters that were read in a wrong encoding", "write %1=%4"},
     kNone},
    {Kind::NameInvisible,
     "name-invisible",
     Finding::Warning,
     {"%1 contains characters that can't be seen: %2",
      "the operator may see an empty line, gaps, or letters in another order",
      "type the name again, without them: %1=%3"},
     kNone},
    {Kind::SameName,
     "same-name",
     Finding::Error,
     {"%1 is also the name of language %2: %3", "the operator can't tell the two apart",
      "use another name, or hide one of the two with LANG%4_SHOW=0"},
     kNone},
    {Kind::NameClipped,
     "name-clipped",
     Finding::Error,
     {"%1 is too %2 for the operator's list: %3 needs %4 pixels but has %5",
      "part of it is cut off", "%6"},
     kNone},
    {Kind::FolderDots,
     "folder-dots",
     Finding::Warning,
     {"%1 contains \"..\": %2", "the path leaves the folder Lang%3", "%4"},
     kNone},
    {Kind::FolderAbsolute,
     "folder-absolute",
     Finding::Warning,
     {"%1 is a path from the root of a drive: %2", "it is read as a folder below Lang%3", "%4"},
     kNone},
    {Kind::FolderPercent,
     "folder-percent",
     Finding::Warning,
     {"%1 contains a percent sign before a digit: %2", "the path changes%3", "%4"},
     kNone},
    {Kind::FolderCase,
     "folder-case",
     Finding::Warning,
     {"%1 is %2, which differs in case from the folder on disk", "Linux doesn't find the folder",
      "write %1=%3"},
     kNone},
    {Kind::SameFolder,
     "same-folder",
     Finding::Error,
     {"%1 is also the folder of language %2: %3", "both languages have the same texts",
      "use a separate folder for each, or hide one of the two with LANG%4_SHOW=0"},
     kNone},

    // Shown languages and the default
    {Kind::ShowNumber,
     "show-number",
     Finding::Error,
     {"%1 isn't a number: %2", "the language is hidden", "write %1=%3"},
     {"the values on %0 aren't numbers", "the languages are hidden",
      "write 1 to show a language, or 0 to hide it"}},
    {Kind::ShowOther,
     "show-other",
     Finding::Error,
     {"%1 is neither 0 nor 1: %2", "the language is hidden",
      "write %1=1 to show it, or %1=0 to hide it"},
     {"the values on %0 are neither 0 nor 1", "the languages are hidden",
      "write 1 to show a language, or 0 to hide it"}},
    {Kind::ShowMissing,
     "show-missing",
     Finding::Warning,
     {"LANG%1_SHOW is missing", "the language is hidden",
      "write LANG%1_SHOW=1 to show it, or LANG%1_SHOW=0 to hide it"},
     kNone},
    {Kind::Incomplete,
     "incomplete",
     Finding::Error,
     {"%1 is missing or empty", "despite SHOW=1, the language isn't offered", "write %1=%2"},
     kNone},
    {Kind::NoLanguages,
     "no-languages",
     Finding::Error,
     {"%1", "the operator's list is empty", "%2"},
     kNone},
    {Kind::DefaultMissing,
     "default-missing",
     Finding::Error,
     {"DEFAULT is missing", "%1", "below [LANG_MGR], write DEFAULT=%2"},
     kNone},
    {Kind::DefaultNumber,
     "default-number",
     Finding::Error,
     {"DEFAULT isn't a number: %1", "%2", "write DEFAULT=%3"},
     kNone},
    {Kind::DefaultUnknown,
     "default-unknown",
     Finding::Error,
     {"the default language, %1, isn't in the catalogue", "%2",
      "write DEFAULT=%3, or add language %1"},
     kNone},
    {Kind::DefaultHidden,
     "default-hidden",
     Finding::Error,
     {"the default language, %1, is hidden", "%2", "write LANG%1_SHOW=1, or DEFAULT=%3"},
     kNone},

    // Folders and translations
    {Kind::ApplicationFolder,
     "application-folder",
     Finding::Error,
     {"the path of the host's folder contains a percent sign: %1",
      "the paths of the translations change", "rename the folder"},
     kNone},
    {Kind::FolderMissing,
     "folder-missing",
     Finding::Error,
     {"%1 names a folder that doesn't exist in Lang: %2", "a dialog that needs the translation %3",
      "%4"},
     {"the folders on %0 don't exist in Lang", "a dialog that needs one of their translations %3",
      "copy Lang again if it was copied incompletely, or write the names of existing folders"}},
    {Kind::FolderUnreadable,
     "folder-unreadable",
     Finding::Error,
     {"the folder can't be read", "a dialog that needs the translation in it %1",
      "correct the folder's permissions"},
     kNone},
    {Kind::QmMissing,
     "qm-missing",
     Finding::Error,
     {"the file doesn't exist%1", "a dialog that needs it %2", "%3"},
     kNone},
    {Kind::QmUnreadable,
     "qm-unreadable",
     Finding::Error,
     {"the file can't be read: %1", "a dialog that needs it %2", "%3"},
     kNone},
    {Kind::QmSource,
     "qm-source",
     Finding::Error,
     {"the file is a translation source that wasn't compiled",
      "a dialog that uses it has empty texts",
      "rename this file to Zendel.ts, and compile it with \"lrelease Zendel.ts -qm Zendel.qm\""},
     kNone},
    {Kind::QmDamaged,
     "qm-damaged",
     Finding::Error,
     {"the compiled translation is damaged: %1", "a dialog that uses it has empty texts", "%2"},
     kNone},
    {Kind::QmForeign,
     "qm-foreign",
     Finding::Error,
     {"the file isn't a compiled translation of the plug-in's texts",
      "a dialog that uses it has empty texts",
      "replace it with the plug-in's translation, compiled with lrelease from the plug-in's "
      "translated .ts file"},
     kNone},
    {Kind::QmLanguage,
     "qm-language",
     Finding::Error,
     {"the translation is for %1%2, and not for %3",
      "an operator who selects %4 probably sees texts in another language",
      "%5, or, if the texts are right, set language=\"%6\" in the .ts file and compile it again"},
     kNone},
    {Kind::NameLanguage,
     "name-language",
     Finding::Error,
     {"%1 is a name for %2, but the translation in the folder is for %3",
      "an operator who selects it probably sees texts in another language",
      "write %4=%5 if number %6 is %3 in the control software, or else %7"},
     kNone},
    {Kind::QmEnglish,
     "qm-english",
     Finding::Error,
     {"the texts in the folder %1 are the English ones",
      "an operator who selects %2 probably sees texts in another language",
      "replace the file with the translation for %1"},
     kNone},
    {Kind::SameTexts,
     "same-texts",
     Finding::Warning,
     {"all texts are the same as in %1",
      "an operator who selects one of the two languages probably sees texts in another one",
      "replace whichever of the two files is wrong with the right translation"},
     kNone},
    {Kind::TextMissing,
     "text-missing",
     Finding::Error,
     {"%1 translated", "%2 empty on the machine",
      "translate %3 in the language's .ts file, and compile that file, or replace this one with a "
      "complete translation"},
     kNone},
    {Kind::TextBlank,
     "text-blank",
     Finding::Error,
     {"the translation of the text \"%1\" in the context %2 consists only of spaces",
      "the operator sees nothing",
      "translate it in the language's .ts file, or in one made with \"lconvert Zendel.qm -o "
      "Zendel.ts\", and compile that file"},
     kNone},
    {Kind::TextAmpersand,
     "text-ampersand",
     Finding::Warning,
     {"the text \"%1\" in the context %2 is translated as %3, with an \"&\" before %4",
      "the \"&\" isn't shown",
      "write \"&&\" in Linguist, or \"&amp;&amp;\" in a text editor, and compile the file"},
     kNone},
    {Kind::TextHtml,
     "text-html",
     Finding::Warning,
     {"the text \"%1\" in the context %2 is translated as %3, with tags", "%4",
      "write the text without tags in the .ts file, and compile it"},
     kNone},
    {Kind::TextGarbled,
     "text-garbled",
     Finding::Error,
     {"%1 letters were lost or read in a wrong encoding", "the operator sees wrong letters", "%2"},
     kNone},
    {Kind::TextClipped,
     "text-clipped",
     Finding::Error,
     {"the text is too %1 for %8: \"%2\" in the context %3 is translated as %4, which needs %5 "
      "pixels but has %6",
      "part of it is cut off", "%7"},
     kNone},

    // The DLLs next to the host's executable
    {Kind::Host32Bit,
     "host-32-bit",
     Finding::Error,
     {"%1", "Windows refuses to load the plug-in, which is for 64-bit programs, with error 193",
      "use a 64-bit host"},
     kNone},
    {Kind::QtOther,
     "qt-other",
     Finding::Error,
     {"the host uses %1", "the plug-in can't use this Qt, only the release version of Qt 5",
      "use a host that was built with the release version of Qt 5.6 to 5.15"},
     kNone},
    {Kind::HostFolder,
     "host-folder",
     Finding::Warning,
     {"Qt's DLLs are in this folder instead of the checked one above it: %1",
      "a host in this folder looks for Lang here",
      "check this folder instead, and move Lang into it"},
     kNone},
    {Kind::QtMissing,
     "qt-missing",
     Finding::Error,
     {"the folder of the host's executable lacks %1",
      "Windows refuses to start the host, or to load the plug-in, with error 126",
      "copy %1 from %2"},
     kNone},
    {Kind::DllUnreadable,
     "dll-unreadable",
     Finding::Error,
     {"the file can't be read: %1", "the host can't load it either", "%2"},
     kNone},
    {Kind::DllUnusable,
     "dll-unusable",
     Finding::Error,
     {"the file isn't a DLL for 64-bit x86: %1", "the host can't load it", "%2"},
     kNone},
    {Kind::QtFamily,
     "qt-family",
     Finding::Error,
     {"the file is built for %1, but %3 is built for %2", "Windows refuses to start the host",
      "replace it with %4"},
     kNone},
    {Kind::QtVersionsDiffer,
     "qt-versions-differ",
     Finding::Error,
     {"the version is %1, but that of %3 is %2", "Qt ends the host at start-up, or crashes",
      "replace it with %4"},
     kNone},
    {Kind::FunctionMissing,
     "function-missing",
     Finding::Error,
     {"the file uses %1, which isn't in %2", "Windows refuses to load the file, and the host fails",
      "copy all of Qt's DLLs, and its folder platforms, from the Qt that the host was built with"},
     kNone},
    {Kind::PluginMissing,
     "plugin-missing",
     Finding::Warning,
     {"the plug-in isn't next to the host's executable",
      "unless the host loads it from another folder, there are no settings",
      "copy it next to the executable"},
     kNone},
    {Kind::PluginForeign,
     "plugin-foreign",
     Finding::Error,
     {"the file isn't the plug-in, because it lacks %1", "the host can't use it",
      "replace it with %2"},
     kNone},
    {Kind::PluginFamily,
     "plugin-family",
     Finding::Error,
     {"the plug-in is built for %1, but %3 is built for %2",
      "Windows refuses to load the plug-in, with error 126 or 127",
      "use a plug-in that is built for %2"},
     kNone},
    {Kind::PluginFunctions,
     "plugin-functions",
     Finding::Error,
     {"the plug-in uses %1, which isn't in %2",
      "Windows refuses to load the plug-in, with error 127",
      "use a host with a complete Qt 5.6 to 5.15"},
     kNone},
    {Kind::PlatformMissing,
     "platform-missing",
     Finding::Warning,
     {"the file doesn't exist",
      "unless the host itself knows where Qt's plug-ins are, it exits at start-up",
      "copy it from the folder plugins of %1"},
     kNone},
    {Kind::PlatformPath,
     "platform-path",
     Finding::Error,
     {"the folder of plug-ins that the file sets, %1, has no platforms/qwindows.dll",
      "Qt finds no plug-in for Windows, and the host exits at start-up",
      "copy the folder platforms from %2 to the host's folder"},
     kNone},
    {Kind::RuntimeMissing,
     "runtime-missing",
     Finding::Warning,
     {"a file that the host or the plug-in needs wasn't found: %1",
      "unless it is elsewhere in the search path, Windows refuses to start the host, or to load "
      "the plug-in, with error 126",
      "%2"},
     kNone},
    {Kind::RuntimeOld,
     "runtime-old",
     Finding::Error,
     {"the file lacks %1, which %2 uses",
      "Windows refuses to start the host, or to load the plug-in, with error 127", "%3"},
     kNone},
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

const FindingDescription &description(FindingKind kind)
{
    return kFindings[static_cast<std::size_t>(kind)];
}

const FindingTexts &texts(const Finding &finding)
{
    const FindingDescription &found = description(finding.kind);
    return finding.lines.size() > 1 && found.many.problem ? found.many : found.one;
}

QString filled(const char *text, const Finding &finding)
{
    return withValues(
        text, finding.values,
        linesText(finding.lines.isEmpty() ? QVector<int> {finding.line} : finding.lines));
}

bool isIgnoredLine(const Finding &finding)
{
    return finding.kind == FindingKind::NoKey || finding.kind == FindingKind::UnknownKey;
}

/// Returns the index of the value that says what is to be written; -1 if there is none.
int indexOfWritten(const Finding &finding)
{
    if (isIgnoredLine(finding) && !finding.values.at(2).isEmpty())
        return 2;
    return finding.kind == FindingKind::GarbledName ? 3 : -1;
}

/// Returns what findings that may become one have in common: their kind and, for lines that aren't
/// recognised, how they are to be repaired.
QString groupOf(const Finding &finding)
{
    if (isIgnoredLine(finding))
        return finding.id() + finding.values.at(1) + finding.values.at(3) + finding.values.at(4);
    // Each is about another section.
    return finding.kind == FindingKind::OutsideSection ? finding.id() + finding.problem()
                                                       : QString(finding.id());
}

/// Returns true if so many findings of this kind become one. Two of the encoding say the same about
/// the whole file; guesses at several keys are better read one by one.
bool isMerged(const Finding &finding, int count)
{
    if (!description(finding.kind).many.problem || finding.line == 0)
        return false;
    if (isIgnoredLine(finding) && indexOfWritten(finding) >= 0)
        return count > 3;
    return count >= 3 || (count == 2 && finding.kind < FindingKind::CarriageReturn);
}

void merge(Finding &first, const Finding &other)
{
    if (first.lines.isEmpty())
        first.lines += first.line;
    first.lines += other.lines.isEmpty() ? QVector<int> {other.line} : other.lines;
    for (const int language : other.languages) {
        if (!first.languages.contains(language))
            first.languages += language;
    }
    if (first.kind == FindingKind::RepeatedKey && other.values.at(2) != other.values.at(4))
        first.consequences += withValues("%1 changes from %3 to %5", other.values);
    if (first.kind == FindingKind::GarbledName && first.values.at(kHow) != other.values.at(kHow))
        first.values[kHow] = QStringLiteral("texts that were read in wrong encodings");
    const int written = indexOfWritten(first);
    const QString rest = QStringLiteral(", and correct the others in the same way");
    if (written >= 0 && first.values.at(written).size() < kMostWritten)
        first.values[written] += QLatin1String(", ") + other.values.at(written);
    else if (isIgnoredLine(first) && written >= 0 && !first.values.at(written).endsWith(rest))
        first.values[written] += rest;
    for (const QString &consequence : other.consequences) {
        if (!first.consequences.contains(consequence))
            first.consequences += consequence;
    }
    first.severity = std::max(first.severity, other.severity);
}

} // namespace

Finding Finding::make(FindingKind kind, const QString &file, int line, const QStringList &values)
{
    return {kind, file, line, values, description(kind).severity, {}, {}, {}, {}};
}

QLatin1String Finding::id() const
{
    return QLatin1String(description(kind).id);
}

QString Finding::problem() const
{
    return filled(texts(*this).problem, *this);
}

QString Finding::effect() const
{
    QStringList effects = consequences;
    effects.prepend(filled(texts(*this).effect, *this));
    const int most = 6;
    if (effects.size() > most)
        effects = effects.mid(0, most) + QStringList {QStringLiteral("so on")};
    const QString last = effects.takeLast();
    return effects.isEmpty() ? last
                             : effects.join(QStringLiteral(", ")) + QLatin1String(", and ") + last;
}

QString Finding::remedy() const
{
    return filled(texts(*this).remedy, *this);
}

QString Finding::text() const
{
    return QStringList {problem(), effect(), remedy()}.join(QStringLiteral("; "));
}

QString severityName(Finding::Severity severity)
{
    return severity == Finding::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

void arrange(QList<Finding> &findings)
{
    QHash<QString, int> counts;
    for (const Finding &finding : qAsConst(findings))
        ++counts[groupOf(finding)];
    QList<Finding> result;
    QHash<QString, int> merged; // Indexes into the result
    for (const Finding &finding : qAsConst(findings)) {
        const QString group = groupOf(finding);
        if (!isMerged(finding, counts.value(group))) {
            result += finding;
        } else if (merged.contains(group)) {
            merge(result[merged.value(group)], finding);
        } else {
            merged.insert(group, result.size());
            result += finding;
        }
    }
    const QString catalogue = QStringLiteral("Lang/Lang.ini");
    const auto rank = [&catalogue](const Finding &finding) {
        return std::make_tuple(finding.severity == Finding::Error ? 0 : 1,
                               finding.kind >= FindingKind::Host32Bit ? 0 : 1,
                               finding.file == catalogue ? 0 : 1, finding.line);
    };
    std::stable_sort(
        result.begin(), result.end(),
        [&rank](const Finding &one, const Finding &other) { return rank(one) < rank(other); });
    for (Finding &finding : result)
        std::sort(finding.lines.begin(), finding.lines.end());
    findings = result;
}
