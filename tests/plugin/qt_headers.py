#!/usr/bin/env python3
"""qt_headers.py QT-FOLDER CLANG-CONFIG

The headers in QT-FOLDER are Debian's, whose Qt 5.15 is newer than the official DLLs next to them.
Fails unless the DLLs export every function that the headers declare and don't define, so that no
function is missing when it is used for the first time. Destructors are left out, because libclang
gives them another symbol.
"""

import pathlib
import sys

import pefile
from clang.cindex import AccessSpecifier, Config, CursorKind, Index

Config.set_library_file("/usr/lib/llvm-19/lib/libclang-19.so.1")

MODULES = ("QtCore", "QtGui", "QtWidgets", "QtTest")
FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.CONVERSION_FUNCTION)

qt, config = sys.argv[1:]


def exported():
    symbols = set()
    for path in pathlib.Path(qt, "bin").glob("Qt5*.dll"):
        # Without pefile's limit of 8192
        dll = pefile.PE(path, fast_load=True, max_symbol_exports=0x10000)
        dll.parse_data_directories(pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"])
        symbols |= {symbol.name.decode() for symbol in dll.DIRECTORY_ENTRY_EXPORT.symbols}
    return symbols


def is_imported(cursor):
    return any(child.kind == CursorKind.DLLIMPORT_ATTR for child in cursor.get_children())


def imported(scope, whole_class=False):
    """Yields the functions and variables of Qt's headers that are imported from a DLL."""
    for cursor in scope.get_children():
        if not cursor.location.file or not cursor.location.file.name.startswith(qt):
            continue
        if cursor.kind in (CursorKind.NAMESPACE, CursorKind.LINKAGE_SPEC):
            yield from imported(cursor)
        elif cursor.kind in (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL):
            yield from imported(cursor, is_imported(cursor))
        elif not whole_class and not is_imported(cursor):
            continue
        elif cursor.kind == CursorKind.VAR_DECL or (
                cursor.kind in FUNCTIONS and not cursor.get_definition()
                and not cursor.is_pure_virtual_method() and not cursor.is_deleted_method()
                and not cursor.is_default_method()
                and cursor.access_specifier != AccessSpecifier.PRIVATE):
            yield cursor


source = "".join(f"#include <{module}/{module}>\n" for module in MODULES)
options = [f"--config={config}", "-std=c++17", f"-isystem{qt}/include"]
options += [f"-isystem{qt}/include/{module}" for module in MODULES]
unit = Index.create().parse("all.cpp", args=options, unsaved_files=[("all.cpp", source)])
failures = [str(message) for message in unit.diagnostics if message.severity >= message.Error]
symbols = exported()
count = 0
for cursor in imported(unit.cursor):
    symbol = cursor.mangled_name
    # Of the macro Q_GADGET, which never defines it; with a type of libc++'s, test imports
    if "qt_check_for_QGADGET_macro" in symbol or "@__1@std@@" in symbol:
        continue
    count += 1
    if symbol not in symbols:
        failures.append(f"{cursor.location.file}:{cursor.location.line}: {cursor.displayname}: "
                        f"{symbol} is not exported")
if count < 13000:
    failures.append(f"only {count} functions were found")
if failures:
    sys.exit("\n".join(failures))
print(f"{count} functions")
