#include "support/Imports_win32.h"

#include <QtGlobal>

#include <cstring>
#include <utility>

#include <windows.h>

void **findImport(HMODULE module, const char *function)
{
    auto *const base = reinterpret_cast<char *>(module);
    const auto *const headers = reinterpret_cast<const IMAGE_NT_HEADERS *>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER *>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY &directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto *dll =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR *>(base + directory.VirtualAddress);
    for (; dll->Name; ++dll) {
        const auto *name =
            reinterpret_cast<const IMAGE_THUNK_DATA *>(base + dll->OriginalFirstThunk);
        auto *address = reinterpret_cast<IMAGE_THUNK_DATA *>(base + dll->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto *const import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME *>(base + name->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char *>(import->Name), function) == 0)
                return reinterpret_cast<void **>(&address->u1.Function);
        }
    }
    return nullptr;
}

void *replaceImport(HMODULE module, const char *function, void *replacement)
{
    void **const address = findImport(module, function);
    DWORD protection = 0;
    if (!address || !VirtualProtect(address, sizeof(void *), PAGE_READWRITE, &protection))
        return nullptr;
    return std::exchange(*address, replacement);
}

void *replaceOwnImport(const char *function, void *replacement)
{
    void *const original = replaceImport(GetModuleHandleW(nullptr), function, replacement);
    if (!original)
        qFatal("This program doesn't import %s, so the test can't replace it", function);
    return original;
}
