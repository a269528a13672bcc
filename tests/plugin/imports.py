#!/usr/bin/env python3
"""imports.py PLUGIN PAGE PUBLISHED UNPUBLISHED QT-FOLDER LINUX-LIBRARY...

With Microsoft's ABI, a function that the plug-in needs must have the same name in the Qt of every
host. Fails unless each function that PLUGIN imports from Qt is
- in the list of PAGE, which host developers can compare with their Qt, and nothing else is;
- exported by our Qt, in QT-FOLDER;
- in the file PUBLISHED, which lists what an official build exports, or in UNPUBLISHED, which names
  those that such a listing leaves out;
- exported by Qt's LINUX-LIBRARYs, so that the name isn't one of our compiler's alone;
- without a type of the C++ standard library, because those differ between compilers.
"""

import pathlib
import re
import sys

import pefile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "support"))
from symbols import demangle, exported  # noqa: E402

# Inline functions that the header defines outside their class. Microsoft's compiler exports such a
# function from an exported class, others compile it into each program.
INLINE = {
    "QWidget::resize(int,int)",
    "QWidget::setMaximumSize(QSizeconst&)",
    "QWidget::setMinimumSize(QSizeconst&)",
}


def read(path):
    """Returns the lines "DLL function" of a file, without indentation."""
    lines = pathlib.Path(path).read_text("utf-8").splitlines()
    return [line.strip() for line in lines if re.match(r" *Qt5\w+\.dll ", line)]


def imports(plugin):
    """Returns the functions that it imports from Qt, as lines "DLL function"."""
    entries = pefile.PE(plugin).DIRECTORY_ENTRY_IMPORT
    return [f"{entry.dll.decode()} {function.name.decode()}" for entry in entries
            if entry.dll.startswith(b"Qt5") for function in entry.imports]


def without_sizes(name):
    """Spells the integer types of both platforms alike."""
    name = name.replace("unsigned__int64", "size_t").replace("__int64", "int64")
    return name.replace("unsignedlong", "size_t").replace("longlong", "int64")


def main():
    plugin, page, published, unpublished, qt, *linux_libraries = sys.argv[1:]
    lines = sorted(imports(plugin))
    failures = []
    for line in sorted(set(lines) ^ set(read(page))):
        failures.append(f"{line}: {'not in' if line in lines else 'only in'} {page}")

    ours = {f"{dll.name} {name}" for dll in pathlib.Path(qt).glob("Qt5*.dll")
            for name in exported(str(dll))}
    symbols = [line.split()[1] for line in lines]
    names = demangle(symbols)
    linux = set()
    for library in linux_libraries:
        linux |= {without_sizes(name) for name in demangle(exported(library))}
    # Of most functions the listing has the name alone, as it is without parameters.
    listed = set(read(published))
    left_out = set(read(unpublished))
    for line, symbol, name in zip(lines, symbols, names):
        dll = line.split()[0]
        plain = f"{dll} {re.sub(r'[(].*', '', name)}"
        if line not in ours:
            failures.append(f"{line}: not exported by our Qt")
        if (plain in listed or line in listed) == (line in left_out):
            failures.append(f"{line}: {'also' if line in left_out else 'not'} published")
        if (without_sizes(name) in linux) == (name in INLINE):
            failures.append(f"{line}: {'also' if name in INLINE else 'not'} in Qt for Linux")
        if re.search(r"\bstd::", name):
            failures.append(f"{line}: has a type of the C++ standard library")
    if failures or not lines:
        sys.exit("\n".join(failures) or f"{plugin} imports nothing from Qt")
    print(f"{len(lines)} functions")


main()
