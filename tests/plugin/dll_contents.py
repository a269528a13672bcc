#!/usr/bin/env python3
"""dll_contents.py PLUGIN RUNTIME-DLL...

Fails unless the DLL is for x86-64, exports exactly two functions, imports only from Qt, the given
DLLs of the compiler and the system, has ASLR and non-executable data enabled and, with Microsoft's
ABI, no types of the C++ library that a host could catch by mistake.
"""

import re
import sys
from fnmatch import fnmatchcase

import pefile

plugin, *runtime = sys.argv[1:]
dll = pefile.PE(plugin)
failures = []

if dll.FILE_HEADER.Machine != pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"]:
    failures.append("is not for x86-64")

exports = sorted(symbol.name.decode() for symbol in dll.DIRECTORY_ENTRY_EXPORT.symbols)
if exports != ["NewInterface", "ReleaseInterface"]:
    failures.append(f"exports {exports}")

imports = {entry.dll.decode(): sorted(function.name.decode() for function in entry.imports)
           for entry in dll.DIRECTORY_ENTRY_IMPORT}
allowed = ["Qt5Core.dll", "Qt5Gui.dll", "Qt5Widgets.dll", "KERNEL32.dll", "USER32.dll", *runtime]
for name in imports:
    if not any(fnmatchcase(name, pattern) for pattern in allowed):
        failures.append(f"imports from {name}")

# Only WindowManager_win32.cpp calls USER32.dll, and only these four functions.
user32 = ["BringWindowToTop", "EnableWindow", "GetWindowRect", "SetForegroundWindow"]
if imports.get("USER32.dll") != user32:
    failures.append(f"imports {imports.get('USER32.dll')} from USER32.dll")

for flag in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
    value = pefile.DLL_CHARACTERISTICS[f"IMAGE_DLLCHARACTERISTICS_{flag}"]
    if not dll.OPTIONAL_HEADER.DllCharacteristics & value:
        failures.append(f"lacks {flag}")

# Only these have the same layout as Microsoft's, so that nothing else may be thrown into a host.
types = set(re.findall(rb"\.\?A[UV]([^\0]+@std@@)", dll.__data__[:]))
types -= {name + b"@std@@" for name in
          (b"exception", b"bad_alloc", b"bad_array_new_length", b"bad_cast", b"bad_typeid")}
if types:
    failures.append(f"has type information of {sorted(types)}")

if failures:
    sys.exit("\n".join(f"{plugin} {failure}" for failure in failures))
