#!/usr/bin/env python3
"""compare_packages.py SCRIPT: fails unless compare-packages.py finds each kind of difference."""

import pathlib
import subprocess
import sys
import tempfile
import zipfile

script = sys.argv[1]
OLD, NEW = (2026, 1, 1, 0, 0, 0), (2026, 1, 2, 0, 0, 0)
ENTRIES = [("a.txt", OLD, b"one"), ("b.txt", OLD, b"two")]

with tempfile.TemporaryDirectory() as folder:
    first, second = pathlib.Path(folder, "first.zip"), pathlib.Path(folder, "second.zip")

    def write(path, entries):
        with zipfile.ZipFile(path, "w") as archive:
            for name, date, content in entries:
                archive.writestr(zipfile.ZipInfo(name, date), content)

    def check(status, text):
        result = subprocess.run([sys.executable, script, first, second], capture_output=True,
                                text=True, check=False)
        assert (result.returncode, text in result.stdout) == (status, True), f"{text}: {result}"

    write(first, ENTRIES)
    for status, text, entries in (
            (0, "Identical", ENTRIES),
            (1, "b.txt differs at byte 0x2; sizes 3 and 3", [ENTRIES[0], ("b.txt", OLD, b"twi")]),
            (1, "b.txt differs at byte 0x3; sizes 3 and 4", [ENTRIES[0], ("b.txt", OLD, b"twos")]),
            (1, "b.txt is\n  dated 2026-01-01", [ENTRIES[0], ("b.txt", NEW, b"two")]),
            (1, "b.txt is only in the first", ENTRIES[:1]),
            (1, "c.txt is only in the second", [*ENTRIES, ("c.txt", OLD, b"")]),
            (1, "The order of the entries differs", ENTRIES[::-1])):
        write(second, entries)
        check(status, text)
    second.write_bytes(first.read_bytes() + b"x")  # Appended bytes are not part of an entry.
    check(1, "first.zip differs at byte ")
    second.write_bytes(b"no archive")
    check(1, "first.zip differs at byte 0x0; ")
