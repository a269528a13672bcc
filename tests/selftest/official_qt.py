#!/usr/bin/env python3
"""official_qt.py BUILD-FOLDER SOURCE-FOLDER VERSION LAUNCHER...

Installs the self-test and replaces its Qt with that official version. Fails unless the tests of the
built plug-in pass on it. LAUNCHER starts Windows programs.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

TESTS = ("tst_Zendel", "tst_Zendel_win32", "tst_c_host", "tst_runtime_win32")

build, source, version, *launcher = sys.argv[1:]
root = pathlib.Path(build, f"tests/selftest/qt-{version}")

qt = subprocess.run([f"{source}/toolchain/qt-msvc.sh", version], check=True, stdout=subprocess.PIPE,
                    text=True).stdout.strip()
shutil.rmtree(root, ignore_errors=True)
subprocess.run(["cmake", "--install", build, "--component", "selftest", "--prefix", root],
               check=True, stdout=subprocess.DEVNULL)
for path in (root / "bin").rglob("q*.dll"):
    path.unlink()
for path in (root / "bin").glob("Qt5*.dll"):
    path.unlink()
for folder in ("bin", "plugins"):
    shutil.copytree(pathlib.Path(qt, folder), root / "bin", dirs_exist_ok=True)

# A file, because the desktop that Wine may start would keep a pipe open.
with tempfile.TemporaryFile() as output:
    status = subprocess.run([*launcher, root / "bin/selftest.exe", *TESTS], check=False,
                            stdin=subprocess.DEVNULL, stdout=output,
                            stderr=subprocess.STDOUT).returncode
    output.seek(0)
    printed = output.read().decode("utf-8", "replace")
report = root / "report.txt"
assert report.exists(), printed
text = report.read_text("utf-8-sig")
print(text)
assert status == 0, f"exit code {status}:\n{printed}"
assert f"{len(TESTS)} of {len(TESTS)} tests passed" in text, "not all tests ran"
assert f"\nQt        {version}\n" in text, f"not on Qt {version}"
