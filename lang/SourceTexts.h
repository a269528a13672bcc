#pragma once

/// A text of the plug-in, as translations name it.
struct SourceText
{
    const char *context; ///< The name of the class that shows it.
    const char *text;    ///< In English.
};

/// All texts that the plug-in asks its translator for, those of a context together.
inline constexpr SourceText kSourceTexts[] = {
    {"DlgSettings", "Language"},           //
    {"DlgSettings", "Settings"},           //
    {"PageSetLang", "Change"},             //
    {"PageSetLang", "Language:"},          //
    {"PageSetLang", "Change successful!"}, //
    {"PageSetLang", "Success"},            //
    {"PageSetLang", "Change failed!"},     //
    {"PageSetLang", "Error"},
};
