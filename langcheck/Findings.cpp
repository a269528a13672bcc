#include "langcheck/Findings.h"

using Kind = FindingKind;

constexpr std::array<FindingDescription, static_cast<std::size_t>(Kind::Count)> kFindings = {{
    // The file
    {Kind::CatalogueUnreadable, "catalogue-unreadable", Finding::Error,
     "the file is missing or can't be read", "the operator's list is empty",
     "put the catalogue there, or correct its permissions"},
    {Kind::Utf16WithoutBom, "utf16-without-bom", Finding::Error, "the file is UTF-16 without a BOM",
     "it is read as GB2312, and all lines are ignored",
     "open it as UTF-16, make sure that all names look right, and only then save it as \"UTF-8 "
     "with BOM\""},
    {Kind::Utf8WithoutBom, "utf8-without-bom", Finding::Error, "the file is UTF-8 without a BOM",
     "it is read as GB2312, and all non-ASCII characters are wrong",
     "open the file as UTF-8, correct any names that have lost letters, and only then save it as "
     "\"UTF-8 with BOM\""},
    {Kind::SecondBom, "second-bom", Finding::Warning, "the line starts with a second BOM",
     "its key or header isn't recognised", "delete the BOM"},
    {Kind::Undecodable, "undecodable", Finding::Error, "the line isn't valid %1",
     "some of its characters are wrong",
     "open the file in the encoding in which all names look right, correct any names that have "
     "lost letters, and only then save it as \"UTF-8 with BOM\""},
    {Kind::SwallowedLine, "swallowed-line", Finding::Error,
     "the line ends in half a GB2312 character: 0x%1", "the next line is lost",
     "open the file %2, correct any names that have lost letters, and only then save it as \"UTF-8 "
     "with BOM\""},
    {Kind::CarriageReturn, "carriage-return", Finding::Warning,
     "the line contains a carriage return without a line feed",
     "the text after it is part of the same line", "end lines with CR LF or LF"},

    // Sections and keys
    {Kind::NoSection, "no-section", Finding::Error, "the section header [LANG_MGR] is missing",
     "all lines are ignored, and the operator's list is empty", "write [LANG_MGR] above the keys"},
    {Kind::Header, "header", Finding::Warning, "the section header is %1 instead of [LANG_MGR]",
     "the lines below it are ignored", "write [LANG_MGR], with nothing after it"},
    {Kind::OutsideSection, "outside-section", Finding::Warning,
     "the line isn't in the section [LANG_MGR]: %1", "it is ignored", "move it below [LANG_MGR]"},
    {Kind::NoKey, "no-key", Finding::Warning, "the line isn't a key with a value: %1",
     "it is ignored", "write KEY=value, or start a comment with \";\""},
    {Kind::KeyCase, "key-case", Finding::Warning, "the key %1 isn't in upper case", "it is ignored",
     "write %2"},
    {Kind::UnknownKey, "unknown-key", Finding::Warning, "the key %1 is unknown", "it is ignored",
     "use DEFAULT or LANG<n>_ID, _NAME, _FOLDER or _SHOW"},
    {Kind::RepeatedKey, "repeated-key", Finding::Warning,
     "%1 is set on line %2 to %3 and on line %4 to %5", "only the last one, on line %6, applies",
     "delete all but the right one"},
    {Kind::RepeatedLanguage, "repeated-language", Finding::Error,
     "more than one language has the number %1: %2 and %3",
     "only the last one applies, and the operator's list lacks %4",
     "give each language its own number, name and folder, or delete the lines of those that you "
     "don't want"},

    // Numbers of languages
    {Kind::NumberTooLong, "number-too-long", Finding::Warning, "the number in %1 is too large",
     "the line is read as one for language 0", "use a number up to 255"},
    {Kind::NumberAbove255, "number-above-255", Finding::Warning,
     "the language number %1 is above 255", "the machine is asked for language %2 instead",
     "use a number up to 255"},
    {Kind::SameMachineNumber, "same-machine-number", Finding::Error,
     "the language numbers %1 and %2 have the same low 8 bits",
     "the machine is asked for language %3 in both cases", "use numbers up to 255"},
    {Kind::IdDiffers, "id-differs", Finding::Warning,
     "%1 is set to %2, which isn't the number in its key",
     "the value is never read, because the number in the keys determines the place in the list, "
     "what DEFAULT means and what the machine receives",
     "%3"},

    // Names and folders
    {Kind::QuotedValue, "quoted-value", Finding::Warning, "%1 is in quotation marks: %2",
     "they are part of the value", "delete them"},
    {Kind::CommentInValue, "comment-in-value", Finding::Warning,
     "%1 has a comment after its value: %2", "the comment is part of the value",
     "move it to a line of its own"},
    {Kind::LostLetters, "lost-letters", Finding::Warning,
     "%1 contains a question mark or a replacement character: %2",
     "the operator sees it, and letters were probably lost when the file was saved in an encoding "
     "that lacks them",
     "open the file in the encoding in which all other names look right, type this one again, and "
     "save the file as \"UTF-8 with BOM\""},
    {Kind::GarbledName, "garbled-name", Finding::Warning,
     "%1 looks like UTF-8 that was read as Windows-1252: %2",
     "the operator sees these letters, although %3 was probably meant",
     "write %1=%3, correct the other names, and save the file as \"UTF-8 with BOM\""},
    {Kind::SameName, "same-name", Finding::Error, "%1 is also the name of language %2: %3",
     "the operator can't tell the two apart", "use another name"},
    {Kind::NameClipped, "name-clipped", Finding::Error,
     "%1 is too %2 for the operator's list: %3 needs %4 pixels but has %5", "part of it is cut off",
     "%6"},
    {Kind::FolderDots, "folder-dots", Finding::Warning, "%1 contains \"..\": %2",
     "the path leaves the folder Lang", "use the name of a folder in Lang"},
    {Kind::FolderAbsolute, "folder-absolute", Finding::Warning, "%1 is an absolute path: %2",
     "it is read as a folder below Lang", "use only the folder's name"},
    {Kind::FolderPercent, "folder-percent", Finding::Warning, "%1 contains a percent sign: %2",
     "if a digit follows it, the path changes", "rename the folder"},
    {Kind::FolderCase, "folder-case", Finding::Warning,
     "%1 differs in case from the folder on disk: %2", "Linux doesn't find the folder",
     "write %1=%3"},
    {Kind::SameFolder, "same-folder", Finding::Error, "%1 is also the folder of language %2: %3",
     "both languages have the same texts", "use a separate folder for each"},

    // Shown languages and the default
    {Kind::ShowNumber, "show-number", Finding::Warning, "%1 isn't a number: %2",
     "the language is hidden", "use 1 to show it"},
    {Kind::ShowOther, "show-other", Finding::Warning, "%1 is neither 0 nor 1: %2",
     "the language is hidden", "use 1 to show it"},
    {Kind::ShowMissing, "show-missing", Finding::Warning, "LANG%1_SHOW is missing",
     "the language is hidden", "write LANG%1_SHOW=1 to show it, or LANG%1_SHOW=0 to hide it"},
    {Kind::Incomplete, "incomplete", Finding::Error, "%1 is missing or empty",
     "despite SHOW=1, the language isn't offered", "write %1=%2"},
    {Kind::NoLanguages, "no-languages", Finding::Error,
     "no language has a name, a folder and SHOW=1", "the operator's list is empty",
     "write all three for at least one language"},
    {Kind::DefaultNumber, "default-number", Finding::Warning, "DEFAULT isn't a number: %1",
     "the default language is 0", "use the number of a language that is shown"},
    {Kind::DefaultUnknown, "default-unknown", Finding::Error,
     "the default language, %1, isn't in the catalogue", "the dialog uses Lang/chs/Zendel.qm",
     "set DEFAULT to the number of a language that is shown"},
    {Kind::DefaultHidden, "default-hidden", Finding::Error, "the default language, %1, is hidden",
     "the dialog uses Lang/chs/Zendel.qm", "write LANG%1_SHOW=1 or another DEFAULT"},

    // Folders and translations
    {Kind::ApplicationFolder, "application-folder", Finding::Error,
     "the path of the host's folder contains a percent sign: %1",
     "the paths of the translations change", "rename the folder"},
    {Kind::FolderMissing, "folder-missing", Finding::Error,
     "%1 names a folder that doesn't exist in Lang: %2",
     "a dialog that needs the translation uses Lang/chs/Zendel.qm, or has empty texts if that is "
     "missing too",
     "%3"},
    {Kind::QmMissing, "qm-missing", Finding::Error, "the file doesn't exist",
     "a dialog that needs it %1", "put the compiled translation there"},
    {Kind::QmUnreadable, "qm-unreadable", Finding::Error, "the file can't be read",
     "a dialog that uses it has empty texts", "replace it, or correct its permissions"},
    {Kind::QmSource, "qm-source", Finding::Error,
     "the file is a translation source that wasn't compiled",
     "a dialog that uses it has empty texts",
     "rename this file to Zendel.ts, and compile it with \"lrelease Zendel.ts -qm Zendel.qm\""},
    {Kind::QmDamaged, "qm-damaged", Finding::Error,
     "the compiled translation is damaged or cut off", "a dialog that uses it has empty texts",
     "replace it with an undamaged copy"},
    {Kind::QmForeign, "qm-foreign", Finding::Error,
     "the file isn't a compiled translation of the plug-in's texts",
     "a dialog that uses it has empty texts",
     "replace it with the plug-in's translation, compiled with lrelease from the plug-in's "
     "translated .ts file"},
    {Kind::QmLanguage, "qm-language", Finding::Warning,
     "the translation is for %1, the language of the folder %2, and not for %3",
     "an operator who selects %4 probably sees texts in another language", "%5"},
    {Kind::TextMissing, "text-missing", Finding::Error,
     "the text \"%1\" in the context %2 isn't translated", "it is empty in the dialog",
     "translate it in the language's .ts file, or in one made with \"lconvert Zendel.qm -o "
     "Zendel.ts\", and compile that file"},
    {Kind::TextClipped, "text-clipped", Finding::Error,
     "the text is too %1 for the dialog: \"%2\" in the context %3 is translated as %4, which needs "
     "%5 pixels but has %6",
     "part of it is cut off", "%7"},

    // The DLLs next to the host's executable
    {Kind::DllUnusable, "dll-unusable", Finding::Error, "the file isn't a DLL for 64-bit x86: %1",
     "a 64-bit host, which the plug-in needs, can't load it",
     "replace it with %2, and use a 64-bit host if this isn't one"},
    {Kind::QtVersion, "qt-version", Finding::Error,
     "the host's Qt isn't a version from 5.6 to 5.15: %1",
     "the plug-in can't be loaded, or crashes", "use a host with Qt 5.6 to 5.15"},
    {Kind::QtVersionUnknown, "qt-version-unknown", Finding::Warning,
     "the file has no version resource",
     "if it isn't from Qt 5.6 to 5.15, the plug-in can't be loaded, or crashes",
     "make sure that it is"},
    {Kind::QtFamily, "qt-family", Finding::Error,
     "the file is built for %1, but %3 is built for %2", "Windows refuses to start the host",
     "replace it with %4"},
    {Kind::QtVersionsDiffer, "qt-versions-differ", Finding::Warning,
     "the version is %1, but that of %3 is %2", "DLLs of different versions may not work together",
     "copy all of Qt's DLLs, and its folder platforms, from the Qt that the host was built with"},
    {Kind::PluginFamily, "plugin-family", Finding::Error,
     "the plug-in is built for %1, but %3 is built for %2",
     "Windows refuses to load the plug-in, with error 126 or 127",
     "use a plug-in that is built for %2"},
    {Kind::PlatformMissing, "platform-missing", Finding::Warning, "the file doesn't exist",
     "unless the host itself knows where Qt's plug-ins are, it exits at start-up",
     "copy %1 from Qt's folder plugins, or give that folder in a qt.conf"},
    {Kind::RuntimeMissing, "runtime-missing", Finding::Warning, "the file doesn't exist",
     "unless it is elsewhere in the search path, Windows refuses to start the host, or to load the "
     "plug-in, with error 126",
     "%1"},
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

/// Replaces the placeholders in one pass, because a value may contain a percent sign.
QString withValues(const char *text, const QStringList &values)
{
    QString result;
    for (const char *c = text; *c != '\0'; ++c) {
        if (*c == '%')
            result += values.at(*++c - '1');
        else
            result += QLatin1Char(*c);
    }
    return result;
}

} // namespace

Finding Finding::make(FindingKind kind, const QString &file, int line, const QStringList &values)
{
    return {kind, file, line, values, description(kind).severity, {}, {}, {}};
}

QLatin1String Finding::id() const
{
    return QLatin1String(description(kind).id);
}

QString Finding::problem() const
{
    return withValues(description(kind).problem, values);
}

QString Finding::effect() const
{
    return withValues(description(kind).effect, values);
}

QString Finding::remedy() const
{
    return withValues(description(kind).remedy, values);
}

QString Finding::text() const
{
    return QStringList {problem(), effect(), remedy()}.join(QStringLiteral("; "));
}

QString severityName(Finding::Severity severity)
{
    return severity == Finding::Error ? QStringLiteral("error") : QStringLiteral("warning");
}
