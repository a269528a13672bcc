#!/usr/bin/env python3
"""imports.py BUILD-FOLDER QT-FOLDER NEWER LIST
imports.py --mingw BUILD-FOLDER NEWER
imports.py --update QT-FOLDER... > NEWER

Official builds of Qt 5 are binary compatible, but only upwards, and programs find functions in them
by name. Fails unless what the plug-in and the programs in BUILD-FOLDER import from Qt
- is exported by Qt's DLLs in QT-FOLDER;
- is in the file LIST, which host developers can compare with their Qt, if the plug-in imports it,
  and nothing else is;
- is in each official version since 5.6, if it is imported by the plug-in or another program that
  runs on these: it isn't in the file NEWER, which --update makes from the DLLs of all versions,
  oldest first;
- has no type of the C++ standard library, because those differ between compilers, except for
  std::initializer_list, which has Microsoft's layout here.

There is no official build for MinGW to compare with. --mingw compares the C++ names of what the
plug-in, langcheck and the example host import with those of the functions in NEWER.
"""

import pathlib
import re
import sys

import pefile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "support"))
from symbols import demangle  # noqa: E402

# What runs on a host's Qt, and the tests that do on each version
ON_EVERY_QT = ["Zendel", "langcheck", "zendel-host", "selftest", "tst_Zendel", "tst_Zendel_win32",
               "tst_c_host", "tst_runtime_win32"]


def read(path):
    """Returns the lines "DLL function" of a file, without what is before the DLL."""
    return re.findall(r"\b(Qt5\w+\.dll \S+)$", pathlib.Path(path).read_text("utf-8"), re.MULTILINE)


def imports(path):
    """Returns what a program or DLL imports from Qt, as lines "DLL function"."""
    entries = getattr(pefile.PE(path), "DIRECTORY_ENTRY_IMPORT", [])
    return {f"{entry.dll.decode()} {function.name.decode()}" for entry in entries
            if entry.dll.startswith(b"Qt5") for function in entry.imports}


def exports(folder):
    """Returns what the DLLs of Qt in a folder export, as lines "DLL function"."""
    lines = set()
    for path in pathlib.Path(folder, "bin").glob("Qt5*.dll"):
        # Without pefile's limit of 8192
        dll = pefile.PE(path, fast_load=True, max_symbol_exports=0x10000)
        dll.parse_data_directories(pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"])
        lines |= {f"{path.name} {symbol.name.decode()}"
                  for symbol in dll.DIRECTORY_ENTRY_EXPORT.symbols}
    return lines


def update(folders):
    """Prints what the last version exports but not each one, with the version that added it."""
    names = [re.search(r"qt-msvc-([\d.]+)", folder)[1] for folder in folders]
    versions = [exports(folder) for folder in folders]
    print(f"Functions of Qt {names[-1]} for MSVC that an older official build lacks, after the "
          "version since")
    print(f"which they are in each one. Compared: {', '.join(names)}.\n")
    lines = []
    for line in versions[-1]:
        since = len(versions) - 1
        while since > 0 and line in versions[since - 1]:
            since -= 1
        if since > 0:
            lines.append((since, line))
    for since, line in sorted(lines):
        print(names[since], line)


def cpp_names(lines):
    """Returns the C++ names of functions, with the integer types of both ABIs spelt alike."""
    symbols = [symbol for _, symbol in map(str.split, lines) if symbol.startswith(("?", "_Z"))]
    return {re.sub("unsigned__int64|unsignedlonglong", "uint64", name)
            .replace("__int64", "int64").replace("longlong", "int64") for name in demangle(symbols)}


def check_mingw(build, newer):
    newer = cpp_names(read(newer))
    failures = []
    for name in ("Zendel.dll", "langcheck.exe", "zendel-host.exe"):
        names = cpp_names(imports(f"{build}/bin/{name}"))
        failures += [f"{name}: {function}: newer than Qt 5.6" for function in sorted(names & newer)]
        failures += [] if names else [f"{name} imports nothing"]
    if failures:
        sys.exit("\n".join(failures))


def main():
    if sys.argv[1] == "--update":
        return update(sys.argv[2:])
    if sys.argv[1] == "--mingw":
        return check_mingw(*sys.argv[2:])
    build, qt, newer, documented = sys.argv[1:]
    exported, newer = exports(qt), set(read(newer))
    programs = [path for pattern in ("bin/*.dll", "bin/*.exe", "tests/*/*.exe")
                for path in sorted(pathlib.Path(build).glob(pattern))]
    failures = []
    found = {}
    for path in programs:
        found[path.stem] = lines = imports(path)
        for line in sorted(lines):
            if line not in exported:
                failures.append(f"{path.name}: {line}: not exported by {qt}")
            if line in newer and path.stem in ON_EVERY_QT:
                failures.append(f"{path.name}: {line}: newer than Qt 5.6")
            if "@std@@" in line and "initializer_list@" not in line:
                failures.append(f"{path.name}: {line}: has a type of the C++ standard library")
    plugin = found["Zendel"]
    for line in sorted(plugin ^ set(read(documented))):
        failures.append(f"{line}: {'not in' if line in plugin else 'only in'} {documented}")
    failures += [f"{name}: not found, or imports nothing"
                 for name in ON_EVERY_QT if not found.get(name)]
    if not newer:
        failures.append("the list of newer functions is empty")
    if failures:
        sys.exit("\n".join(failures))
    print(f"{len(programs)} programs; the plug-in imports {len(plugin)} functions")


main()
