#pragma once

/// A text of the plug-in, as translations identify it.
struct SourceText
{
    const char *context; ///< The name of the class that shows it.
    const char *text;    ///< The English text.
};

/// All texts that the plug-in asks its translator for, grouped by context.
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
