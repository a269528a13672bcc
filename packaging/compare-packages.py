#!/usr/bin/env python3
"""compare-packages.py PACKAGE PACKAGE: compares two packages, or two other files, byte by byte and
prints the first difference. The exit code is 0 if they are identical, otherwise 1."""

import pathlib
import sys
import zipfile


def describe_entry(entry):
    """Returns what a zip stores about a file."""
    date = "{:04}-{:02}-{:02} {:02}:{:02}:{:02}".format(*entry.date_time)
    return f"dated {date}, mode {entry.external_attr >> 16:o}, {entry.file_size} bytes"


def first_difference(name, one, other):
    """Describes the first byte that differs, with the bytes around it."""
    length = min(len(one), len(other))
    offset = next((i for i in range(length) if one[i] != other[i]), length)
    begin = max(offset - 16, 0)
    return (f"{name} differs at byte {offset:#x}; sizes {len(one)} and {len(other)}\n"
            f"  {one[begin:offset + 32]}\n  {other[begin:offset + 32]}")


def compare_zips(one, other):
    """Returns the first difference between two archives, or None if only their bytes differ."""
    one_names, other_names = one.namelist(), other.namelist()
    for name in one_names:
        if name not in other_names:
            return f"{name} is only in the first"
    for name in other_names:
        if name not in one_names:
            return f"{name} is only in the second"
    for name in one_names:
        if one.read(name) != other.read(name):
            return first_difference(name, one.read(name), other.read(name))
    for name in one_names:
        descriptions = [describe_entry(archive.getinfo(name)) for archive in (one, other)]
        if descriptions[0] != descriptions[1]:
            return f"{name} is\n  {descriptions[0]}\n  {descriptions[1]}"
    if one_names != other_names:
        return "The order of the entries differs"
    return None


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    paths = [pathlib.Path(argument) for argument in sys.argv[1:]]
    one, other = [path.read_bytes() for path in paths]
    if one == other:
        print("Identical")
        return
    difference = None
    if all(zipfile.is_zipfile(path) for path in paths):
        with zipfile.ZipFile(paths[0]) as first, zipfile.ZipFile(paths[1]) as second:
            difference = compare_zips(first, second)
    print(difference or first_difference(paths[0].name, one, other))
    print(f"For details: diffoscope {paths[0]} {paths[1]}")
    sys.exit(1)


main()
