#!/usr/bin/env python3
"""headers_in_notices.py NINJA BUILD_DIR SOURCE_DIR: fails if what is packed includes a header of a
Debian package that is not in third_party.py's table."""

import importlib
import json
import pathlib
import re
import sys

ninja, build, source = sys.argv[1:]
sys.dont_write_bytecode = True
sys.path.append(f"{source}/packaging")
third_party = importlib.import_module("third_party")

PACKED = re.compile(r"(lang|langcheck|plugin|res|ui|examples)/")

config = json.loads(pathlib.Path(build, "third-party.json").read_text("utf-8"))
headers = set()
packed = False
for line in third_party.run(ninja, "-C", build, "-t", "deps").splitlines():
    if line.startswith(" "):
        headers.update([line.strip()] if packed else [])
    elif line:
        packed = bool(PACKED.match(line))
own = (f"{build}/", f"{source}/")
if config["flavour"] == "mingw":
    own += (f"{config['qt']}/",)
if config["flavour"] == "msvc":
    own += (f"{config['sysroot']}/",)
    # Copies of Debian's
    qt_headers = next(path.removesuffix("/QtCore/qglobal.h")
                      for path in third_party.run("dpkg", "-L", "qtbase5-dev").splitlines()
                      if path.endswith("/QtCore/qglobal.h"))
    headers = {header.replace(f"{config['qt']}/include/", f"{qt_headers}/") for header in headers}
headers = sorted(header for header in headers
                 if header.startswith("/") and not header.startswith(own))
owners = {}
for line in third_party.run("dpkg", "-S", *headers).splitlines():
    package, header = line.split(": ", 1)
    owners.setdefault(package.split(":")[0], header)
listed = third_party.COMPILED_FROM[config["flavour"]]
missing = [f"{package}, for example {header}" for package, header in owners.items()
           if package not in listed]
if missing or len(headers) < 50:
    sys.exit("\n".join(["Not in the notices:", *missing]) if missing
             else f"only {len(headers)} headers")
print(f"{len(headers)} headers of {', '.join(sorted(owners))}")
