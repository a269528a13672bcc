#!/usr/bin/env python3
"""symbols.py NM LIBRARY... -- FUNCTION...

Prints the symbol of each C++ function, for example of "QWidget::winId() const", in libraries of any
C++ ABI. A test that replaces a function needs it for the linker, and writes it as C++ does.
"""

import re
import subprocess
import sys


def demangle(symbols):
    """Returns the C++ names of symbols, which are all of one ABI, in one spelling for all ABIs."""
    if any(symbol.startswith("?") for symbol in symbols):
        command = ["llvm-undname-19", "--no-access-specifier", "--no-calling-convention",
                   "--no-member-type", "--no-return-type", "--no-variable-type"]
        lines = iter(subprocess.run(command, input="".join(f"{symbol}\n" for symbol in symbols), check=True,
                                    capture_output=True, text=True).stdout.splitlines())
        # It prints each symbol, its name in the next line, and in some cases an empty line.
        output = [next(lines) for line in lines if line.startswith("?")]
    else:
        output = subprocess.run(["c++filt"], input="".join(f"{symbol}\n" for symbol in symbols), check=True,
                                capture_output=True, text=True).stdout.splitlines()
    return [normalize(name) for name in output]


def normalize(name):
    name = re.sub(r"\b(class|struct|enum|union) |__cdecl|__ptr64", "", name).replace("(void)", "()")
    return name.replace(" ", "")


def exported(nm, library):
    """Returns the C++ symbols that a shared library or an import library has."""
    options = ["-D"] if ".so" in library else []
    output = subprocess.run([nm, *options, "--defined-only", library], check=True,
                            capture_output=True, text=True).stdout
    symbols = {line.split()[-1] for line in output.splitlines() if line.strip()}
    # In a Linux library a version follows the name.
    return sorted({symbol.split("@")[0] for symbol in symbols if symbol.startswith("_Z")}
                  | {symbol for symbol in symbols if symbol.startswith("?")})


def main():
    separator = sys.argv.index("--")
    nm, *libraries = sys.argv[1:separator]
    symbols = {}
    for library in libraries:
        names = exported(nm, library)
        for name, symbol in zip(demangle(names), names):
            symbols.setdefault(name, symbol) # Of a constructor's two, the first one: C1 is whole.
    for function in sys.argv[separator + 1:]:
        symbol = symbols.get(normalize(function))
        if not symbol:
            sys.exit(f"{function} is not in {' '.join(libraries)}")
        print(symbol)


if __name__ == "__main__":
    main()
