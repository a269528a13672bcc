#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The contents of a catalogue, read by an independent implementation without Qt.
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
    std::vector<Record> records; ///< All, in ascending order of their numbers
    std::vector<Record> visible; ///< Those that the operator is offered
};

/// Reads the catalogue's bytes. The paths of the translations begin with @p applicationDir.
CatalogueModel readCatalogue(std::string_view file, const std::u16string &applicationDir);
