#!/usr/bin/env python3
"""symbols.py LIBRARY... -- FUNCTION...

Prints the symbol of each C++ function, for example of "QWidget::winId() const", in libraries of any
C++ ABI. A test that replaces a function needs it for the linker or the import table, and writes it
as C++ does.
"""

import ctypes
import re
import shutil
import subprocess
import sys


def demangle(symbols):
    """Returns the C++ names of symbols, which are all of one ABI, in one spelling for all ABIs."""
    if not any(symbol.startswith("?") for symbol in symbols):
        return [normalize(name) for name in run(["c++filt"], symbols)]
    undname = shutil.which("llvm-undname-19") or shutil.which("llvm-undname")
    if not undname:
        return [normalize(undecorate(symbol)) for symbol in symbols]
    lines = iter(run([undname, "--no-access-specifier", "--no-calling-convention",
                      "--no-member-type", "--no-return-type", "--no-variable-type"], symbols))
    # It prints each symbol, its name in the next line, and in some cases an empty line.
    return [normalize(next(lines)) for line in lines if line.startswith("?")]


def run(command, lines=()):
    return subprocess.run(command, input="".join(f"{line}\n" for line in lines), check=True,
                          capture_output=True, text=True).stdout.splitlines()


def undecorate(symbol):
    """Returns the C++ name of a symbol of Microsoft's ABI. Works only on Windows."""
    no_return_type, no_access_specifier, no_member_type = 0x4, 0x80, 0x200
    name = ctypes.create_string_buffer(4096)
    ctypes.windll.dbghelp.UnDecorateSymbolName(
        symbol.encode(), name, len(name), no_return_type | no_access_specifier | no_member_type)
    return name.value.decode()


def normalize(name):
    name = re.sub(r"\b(class|struct|enum|union) |__cdecl|__ptr64", "", name).replace("(void)", "()")
    return name.replace(" ", "")


def exported(library):
    """Returns the C++ symbols that a DLL or a Linux library exports."""
    if library.endswith(".dll"):
        import pefile  # Not needed on Linux
        # Without pefile's limit of 8192, because Qt5Widgets.dll may export more.
        dll = pefile.PE(library, fast_load=True, max_symbol_exports=0x10000)
        dll.parse_data_directories(pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"])
        symbols = {symbol.name.decode()
                   for symbol in dll.DIRECTORY_ENTRY_EXPORT.symbols if symbol.name}
    else:
        # A version follows the name.
        symbols = {line.split()[-1].split("@")[0]
                   for line in run(["nm", "-D", "--defined-only", library])}
    return sorted(symbol for symbol in symbols if symbol.startswith(("_Z", "?")))


def main():
    separator = sys.argv.index("--")
    libraries = sys.argv[1:separator]
    symbols = {}
    for library in libraries:
        names = exported(library)
        for name, symbol in zip(demangle(names), names):
            symbols.setdefault(name, symbol)  # Of a constructor's two, the first one: C1 is whole.
    for function in sys.argv[separator + 1:]:
        symbol = symbols.get(normalize(function))
        if not symbol:
            sys.exit(f"{function} is not in {' '.join(libraries)}")
        print(symbol)


if __name__ == "__main__":
    main()
