#!/usr/bin/env python3
"""selftest.py CPACK BUILD-FOLDER PACKAGE MISBEHAVE [LAUNCHER]

Packs the self-test and runs a few of its tests from a folder with spaces and Chinese in its name.
Fails unless the exit code and both reports are right: for tests that pass, with a damaged plug-in,
and with a program that crashes, hangs or fails. LAUNCHER starts Windows programs.
"""

import hashlib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree
import zipfile

import pefile

cpack, build, package, misbehave, *launcher = sys.argv[1:]
work = pathlib.Path(build, "tests/selftest/unpacked")
root = work / "自检 of Zendel"


def run(expected, *names):
    """Runs tests, and returns the text report and the suites of the XML report."""
    command = [*launcher, "cmd", "/c", "selftest.cmd", *names]
    # A file, because the desktop that Wine may start would keep a pipe open.
    with tempfile.TemporaryFile() as output:
        status = subprocess.run(command, cwd=root, stdin=subprocess.DEVNULL, stdout=output,
                                stderr=subprocess.STDOUT, check=False).returncode
        output.seek(0)
        printed = output.read().decode("utf-8", "replace")
    report = (root / "report.txt").read_text("utf-8-sig")
    print(report)
    assert status == expected, f"exit code {status}, not {expected}:\n{printed}"
    assert not (root / "temp").exists(), "the folder temp was not removed"
    for number, name in enumerate(names, 1):
        assert f"{number} of {len(names)}  {name}" in printed, printed
    suites = xml.etree.ElementTree.parse(root / "report.xml").getroot().findall("testsuite")
    assert [suite.get("name") for suite in suites] == list(names), "report.xml"
    return report, suites


def attributes(suite):
    return tuple(int(suite.get(name)) for name in ("failures", "errors"))


shutil.rmtree(work, ignore_errors=True)
work.mkdir(parents=True)
subprocess.run([cpack, "--config", f"{build}/CPackConfig.cmake", "-B", work, "-D",
                "CPACK_COMPONENTS_ALL=selftest"], check=True, stdout=subprocess.DEVNULL)
zipfile.ZipFile(work / package).extractall(root)

notices = (root / "THIRD-PARTY-NOTICES").read_text("utf-8")
named = {name for line in notices.splitlines() if line.startswith("  Files:")
         for name in line.split()}
dlls = {path.name for path in root.rglob("*.dll")}
own = {"Zendel.dll", "plugin_without_functions.dll", "plugin_without_release.dll"}
assert dlls - own <= named and "Qt5Core.dll" in named, f"not in the notices: {dlls - own - named}"
# For MSVC, the package has the official DLLs.
hashes = {name: digest for digest, name in re.findall(r"^  SHA-256:  (\w+)  (\S+)$", notices,
                                                      re.MULTILINE)}
assert ("Qt5Core.dll" in hashes) == ("msvc" in package), f"hashes of {list(hashes)}"
for path in root.rglob("*.dll"):
    if path.name in hashes:
        digest = hashlib.sha256(path.read_bytes()).hexdigest()
        assert digest == hashes[path.name], f"{path} was changed"

for path in root.rglob("*"):
    assert path.is_dir() or build.encode() not in path.read_bytes(), f"{path} contains {build}"

for name in ("Zendel.dll", "langcheck.exe", "zendel-host.exe", "selftest.exe"):
    resource = pefile.PE(root / "bin" / name).FileInfo[0]
    strings = {key: value for part in resource if part.Key == b"StringFileInfo"
               for table in part.StringTable for key, value in table.entries.items()}
    assert strings[b"OriginalFilename"].decode() == name, f"version resource of {name}: {strings}"

report, suites = run(0, "tst_Catalogue", "tst_CZendelIns_scaled")
assert "2 of 2 tests passed" in report, report
for line in ("Windows", "Plug-in", "Qt", "Screen", "Code page"):
    assert f"\n{line.ljust(10)}" in report, f"no line {line}"
for suite in suites:
    assert attributes(suite) == (0, 0), "failures"
    assert len(suite.findall("testcase")) == int(suite.get("tests")) > 3, "tests"
    assert len(suite.findall("properties/property")) == 5, "properties"

# A plug-in without functions
shutil.copy(root / "bin/plugin_without_functions.dll", root / "bin/Zendel.dll")
report, suites = run(1, "tst_Catalogue", "tst_Zendel")
assert "1 of 2 tests passed" in report and "FAILED  tst_Zendel " in report, report
assert "== tst_Zendel: " in report and "m_newInterface" in report, "the log is not in report.txt"
assert attributes(suites[0]) == (0, 0) and sum(attributes(suites[1])) > 0, "report.xml"

shutil.copy(misbehave, root / "tests")
with open(root / "tests/tests.txt", "a", encoding="utf-8") as file:
    for name in ("crash", "hang", "alone", "fail", "failcrash", "peek", "pass"):
        file.write(f"{name} {pathlib.Path(misbehave).name} ZENDEL_LIMIT=6 {name}\n")
report, suites = run(1, "crash", "hang", "alone", "fail", "failcrash", "peek", "pass")
assert "3 of 7 tests passed" in report, report
for text in ("crashed with code 0xc0000005", "stopped after 6 seconds", "failed with exit code 1",
             "'x & y'", "skipped misbehave::third(): Not here"):
    assert text in report, f"not in the report: {text}"
assert [attributes(suite) for suite in suites] == [
    (0, 1), (0, 1), (0, 0), (1, 0), (1, 1), (0, 0), (0, 0)], "report.xml"
assert [suite.get("skipped") for suite in suites] == [*"0000001"], "report.xml"
failed = suites[3].findall("testcase")[1]
assert failed.get("name") == "misbehave::second(a < b)", failed.get("name")
assert "'x & y' returned FALSE." in failed.find("failure").text, failed.find("failure").text
# What is left if Windows freezes during a test
report = (root / "peek.txt").read_text("utf-8-sig")
assert "1 of 7 tests passed" in report, report
assert re.search("FAILED  peek .*, did not end\n.*FAILED  pass .*, not run\n", report, re.S), report
suites = xml.etree.ElementTree.parse(root / "peek.xml").getroot().findall("testsuite")
assert [attributes(suite) for suite in suites[5:]] == [(0, 1), (0, 1)], "peek.xml"
