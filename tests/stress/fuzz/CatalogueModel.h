#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What a language catalogue says, read without Qt: a second reading to hold against the library's.
struct CatalogueModel
{
    struct Record
    {
        std::int32_t id = -1;
        bool show = false;
        std::u16string name;
        std::u16string folder;
        std::u16string qmPath;
    };

    std::int32_t defaultId = 0;
    std::vector<Record> records; ///< In ascending number, the hidden ones too.
    std::vector<Record> visible; ///< Those that an operator is offered.
};

/// @param file            the bytes of the catalogue
/// @param applicationDir  what the paths of the translations begin with
CatalogueModel readCatalogue(std::string_view file, const std::u16string &applicationDir);
