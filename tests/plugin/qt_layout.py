#!/usr/bin/env python3
"""qt_layout.py OUR_QT FULL_QT FORMS SOURCE_DIR CLANG [OPTION...]

Fails unless the DLL can run on a host's Qt 5.15 with any configuration: every class that compiling
the plug-in lays out, and every virtual table of a Qt class that it includes, must be the same with
the headers of our Qt for Windows (OUR_QT) as with those of a Qt with every feature (FULL_QT). Clang
and its options lay out both for Windows, so the platform makes no difference. FORMS is the folder
with the headers generated from the forms.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

our_qt, full_qt, forms, source_dir, *clang = sys.argv[1:]
if os.path.samefile(our_qt, full_qt):
    sys.exit(f"{our_qt}: cannot be compared with itself")

# Class templates, whose instances are compared in the plug-in's code, and headers without a class
NOT_CLASSES = {"QHash", "QList", "QMap", "QPointer", "QtEndian"}

PROBE = """
struct Probe_{name} : {name}
{{
    virtual void probe();
}};
void Probe_{name}::probe() {{}}
"""


def library_sources():
    return sorted(path for folder in ("lang", "plugin", "ui")
                  for path in pathlib.Path(source_dir, folder).iterdir()
                  if path.suffix in (".cpp", ".h") and not path.stem.endswith(("_unix", "_xcb")))


def probes(sources):
    """Returns C++ that derives from every Qt class that the sources include."""
    headers = set()
    for path in sources + sorted(pathlib.Path(forms).glob("ui_*.h")):
        headers |= set(re.findall(r"#include <(?:Qt\w+/)?(Q\w+)>", path.read_text("utf-8")))
    if len(headers) < 20:
        sys.exit(f"found only {len(headers)} Qt headers")
    return ("".join(f"#include <{header}>\n" for header in sorted(headers))
            + "".join(PROBE.format(name=name) for name in sorted(headers - NOT_CLASSES)))


def layouts(source, qt):
    """Compiles a source and returns the layouts that Clang dumps, by class name."""
    include = [f"{qt}/{module}" for module in (".", "QtCore", "QtGui", "QtWidgets")]
    arguments = [f"-isystem{folder}" for folder in include]
    arguments += ["-I", source_dir, "-I", forms, "-std=c++17", "-O0", "-w", "-c", "-o", "/dev/null"]
    arguments += ["-DQT_DISABLE_DEPRECATED_BEFORE=0x050f00", "-Xclang", "-fdump-record-layouts",
                  "-Xclang", "-fdump-vtable-layouts"]
    dump = subprocess.run([*clang, *arguments, source],
                          check=True, stdout=subprocess.PIPE, text=True).stdout
    dump = dump.replace(qt, "<Qt>")
    result = {}
    for block in re.split(r"\n\s*\n", dump):
        name = re.search(r"^\s+0 \| (.+?)(?: \(empty\))?$|^(V.+ for .+) \(\d+ entr", block,
                         re.MULTILINE)
        if name:
            result[name[1] or name[2]] = block.strip()
    return result


def main():
    sources = library_sources()
    failures = []
    classes = set()
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        probe = pathlib.Path(folder, "probes.cpp")
        probe.write_text(probes(sources), "utf-8")
        compiled = [str(path) for path in sources if path.suffix == ".cpp"] + [str(probe)]
        ours_of = pool.map(lambda source: layouts(source, our_qt), compiled)
        full_of = pool.map(lambda source: layouts(source, full_qt), compiled)
        for ours, full in zip(ours_of, full_of):
            classes |= ours.keys()
            failures += [f"== ours\n{ours[name]}\n== full\n{full.get(name)}"
                         for name in ours if ours[name] != full.get(name)]
    # The ABIs name the tables differently, by the class alone or by its bases as well.
    for name in ("class QString", "class QMap<int, struct LangEntry>", "V.*'DlgSettings'",
                 "V.*'Probe_QTranslator'"):
        if not any(re.fullmatch(name, found) for found in classes):
            failures.append(f"{name} was not compared")
    if failures:
        sys.exit("\n".join(failures))
    print(f"{len(classes)} classes and virtual tables are the same")


main()
