#!/usr/bin/env python3
"""qt_tools.py BUILD-FOLDER SOURCE-FOLDER LAUNCHER...

Fails unless Qt's own programs for Windows work with the project's files: lrelease writes the same
compiled translations as Debian's, and windeployqt finds what the plug-in needs. LAUNCHER starts
Windows programs.
"""

import pathlib
import subprocess
import sys

build, source, *launcher = sys.argv[1:]
tools = subprocess.run([f"{source}/toolchain/qt-msvc.sh", "tools"], check=True,
                       stdout=subprocess.PIPE, text=True).stdout.strip()
folder = pathlib.Path(build, "tests/qt_tools")
folder.mkdir(exist_ok=True)


def run(program, *arguments):
    return subprocess.run([*launcher, f"{tools}/bin/{program}.exe", *arguments], check=True,
                          cwd=folder, stdout=subprocess.PIPE, text=True).stdout


sources = sorted(pathlib.Path(source, "translations").glob("*.ts"))
assert sources, "no translation sources"
for path in sources:
    run("lrelease", "-silent", f"Z:{path}", "-qm", f"{path.stem}.qm")
    expected = pathlib.Path(build, "bin/Lang", path.stem, "Zendel.qm").read_bytes()
    assert (folder / f"{path.stem}.qm").read_bytes() == expected, f"{path} is compiled differently"

# Programs for OpenGL aren't needed.
output = run("windeployqt", "--dry-run", "--no-translations", "--no-angle", "--no-opengl-sw",
             "--no-compiler-runtime", "--list", "relative", "--dir", "out",
             f"Z:{build}/bin/Zendel.dll")
listed = {line.strip().rsplit("out\\", 1)[-1] for line in output.splitlines() if ".dll" in line}
assert listed == {"Qt5Core.dll", "Qt5Gui.dll", "Qt5Widgets.dll", "platforms\\qwindows.dll",
                  "styles\\qwindowsvistastyle.dll"}, output
print(f"{len(sources)} translations, {len(listed)} DLLs")
