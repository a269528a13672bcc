#!/usr/bin/env python3
"""Lists the third-party code in the packages.

third_party.py notices CONFIG ARCHIVE FOLDER: writes THIRD-PARTY-NOTICES to the folder, which is
packed as the archive.
third_party.py finish CONFIG FOLDER ARCHIVE...: gives the archives' entries a fixed order, date and
permissions, and writes an SBOM for each, in SPDX format, and SHA256SUMS to the folder, to which
CPack then copies the archives.

CONFIG is third-party.json in the build folder, see ZendelPackage.cmake. The versions and licence
texts come from the installed Debian packages and from Debian's source package of Qt, from which
toolchain/qt-mingw.sh and toolchain/qt-msvc.sh copied them to Qt's folder. official-qt.txt lists the
contents of the official DLLs.
"""

import datetime
import hashlib
import json
import pathlib
import posixpath
import re
import subprocess
import sys
import urllib.parse
import zipfile

# The licences of Debian's source packages and of some packages, limited to the code that gets into
# ours
LICENCES = {
    "gcc-12": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "gcc-mingw-w64": "GPL-3.0-or-later WITH GCC-exception-3.1",
    # With fast_float and Ryu, see below
    "gcc-mingw-w64-x86-64-posix-runtime":
        "GPL-3.0-or-later WITH GCC-exception-3.1 AND MIT AND BSL-1.0",
    "glibc": "LGPL-2.1-or-later",
    "libxcb": "X11",
    "linux": "GPL-2.0-only WITH Linux-syscall-note",
    "llvm-toolchain-19": "Apache-2.0 WITH LLVM-exception",
    "mingw-w64": "ZPL-2.1 AND MIT AND BSD-3-Clause AND LGPL-2.1-or-later AND LicenseRef-gdtoa",
    # BSD: the start of programs
    "qtbase-opensource-src": "LGPL-3.0-only AND BSD-3-Clause",
    "qtbase5-dev": "LGPL-3.0-only",
    "qtx11extras-opensource-src": "LGPL-3.0-only",
    "wine": "LGPL-2.1-or-later",
}
# What the compiler takes from Debian packages for our own files: headers, import libraries, and the
# start-up objects of programs and DLLs. Qt for MinGW is added below.
COMPILED_FROM = {
    "mingw": {
        "g++-mingw-w64-x86-64-posix": "headers of the C++ library",
        "gcc-mingw-w64-x86-64-posix": "headers of the compiler, parts of libgcc",
        "mingw-w64-common": "headers of C and of Windows",
        "mingw-w64-x86-64-dev": "start-up objects, import libraries, functions of C, gdtoa",
    },
    "msvc": {
        "libclang-common-19-dev": "headers of the compiler",
        "libwine-dev": "headers of C and of Windows",
        "mingw-w64-x86-64-dev": "objects for thread-local storage, import libraries",
        "qtbase5-dev": "headers with inline functions",
    },
    "linux": {
        "libc6-dev": "headers, start-up objects",
        "libgcc-12-dev": "headers of the compiler, parts of libgcc",
        "libqt5x11extras5-dev": "headers",
        "libstdc++-12-dev": "headers of the C++ library",
        "libxcb1-dev": "headers",
        "linux-libc-dev": "headers",
        "qtbase5-dev": "headers with inline functions",
    },
}
# The folders of Qt for MinGW whose code ends up in its DLLs; that of testlib only in Qt5Test.dll
QT_FOLDERS = re.compile(r"3rdparty/.*|corelib|gui|widgets|testlib|platformsupport/.*|"
                        r"plugins/platforms/windows|plugins/styles/windowsvista")
OFFICIAL_QT = "5.15.2"
OFFICIAL_QT_SOURCE = ("https://download.qt.io/archive/qt/5.15/5.15.2/submodules/"
                      "qtbase-everywhere-src-5.15.2.tar.xz")
# Code in the official DLLs that no file in Debian's source package of Qt describes, in the format
# of those files. Debian leaves out Wintab; the database is the same as in Debian's source package.
NOT_DESCRIBED = {
    "src/3rdparty/wintab": {
        "Id": "wintab",
        "Name": "Wintab API",
        "License": "LCS-Telegraphics License: The text and information contained in this file may "
                   "be freely used, copied, or distributed without compensation or licensing "
                   "restrictions.",
        "Copyright": "Copyright 1991-1998 by LCS/Telegraphics.",
    },
    "src/corelib/mimetypes/mime/packages": {
        "Id": "shared-mime-info",
        "Name": "Shared MIME-info Database",
        "LicenseId": "GPL-2.0-or-later",
        "License": "GNU General Public License, version 2 or any later version",
        "LicenseFile": "../../../../../LICENSE.GPL2",
        "Copyright": "Copyright (C) 2002, 2003 Thomas Leonard and others.",
    },
}

# Statements that licences require next to the files of a component
NOTES = {
    "Qt": """\
Qt is used under the GNU Lesser General Public License, version 3, as separate DLLs. They were built
from the source package by qt/qt-mingw.sh, whose function patch_source changes some lines of it. To
use a changed Qt 5.15, build it for the same compiler family and replace the DLLs. Zendel.dll and
the programs needn't be linked again. You may reverse engineer them to debug such changes.
""",
    f"Qt {OFFICIAL_QT}": """\
Copyright (C) 2020 The Qt Company Ltd. and other contributors.

Qt is used under the GNU Lesser General Public License, version 3, as separate DLLs. They are
unchanged files that The Qt Company built for MSVC 2019 and signed: the signer is The Qt Company Oy.
They were taken from the Python package PyQt5 5.15.2. The Qt Company publishes the source, see
above. To use a changed Qt 5.15, build it with Microsoft's compiler and replace the DLLs. Zendel.dll
and the programs needn't be linked again. You may reverse engineer them to debug such changes.

The texts for Qt and for the code in its DLLs are those in Debian's source package of Qt, which is
newer.
""",
    "Freetype 2 2.10.1": """\
Portions of this software are copyright (C) 1996-2019 The FreeType Project (www.freetype.org). All
rights reserved.
""",
    "Freetype 2": """\
Portions of this software are copyright (C) 1996-2020 The FreeType Project (www.freetype.org). All
rights reserved.
""",
    "gcc-mingw-w64-x86-64-posix-runtime": """\
libstdc++-6.dll contains Ryu, Copyright 2018 Ulf Adams, under the Boost Software License 1.0, and
fast_float, Copyright (c) 2021 The fast_float authors:

Permission is hereby granted, free of charge, to any person obtaining a copy of this software and
associated documentation files (the "Software"), to deal in the Software without restriction,
including without limitation the rights to use, copy, modify, merge, publish, distribute,
sublicense, and/or sell copies of the Software, and to permit persons to whom the Software is
furnished to do so, subject to the following conditions: The above copyright notice and this
permission notice shall be included in all copies or substantial portions of the Software.

THE SOFTWARE IS PROVIDED "AS IS", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR IMPLIED, INCLUDING BUT
NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY, FITNESS FOR A PARTICULAR PURPOSE AND
NONINFRINGEMENT. IN NO EVENT SHALL THE AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES
OR OTHER LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, ARISING FROM, OUT OF OR IN
CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE SOFTWARE.
""",
}
SOURCES = """\
Debian has the source packages that are given below. "apt-get source NAME=VERSION" fetches one;
older versions are in Debian's snapshot archive.
"""


class Component:
    """Third-party code: its name, version, SPDX licence expression, source, use and texts. The
    archive contains it or, if not "contained", was only compiled from it."""

    def __init__(self, name, version, licence, purl, use, *, files=(), contained=True, source="",
                 texts=(), supplier="", originals=()):
        self.name, self.version, self.licence, self.purl = name, version, licence, purl
        self.use, self.files, self.contained, self.source = use, list(files), contained, source
        self.texts = [text.strip("\n") for text in texts]
        # Who built the files, and the files themselves, if the archive contains them unchanged
        self.supplier, self.originals = supplier, sorted(originals)

    @property
    def note(self):
        return self.contained and (NOTES.get(f"{self.name} {self.version}") or NOTES.get(self.name))

    @property
    def spdx_id(self):
        name = re.sub(r"[^A-Za-z0-9.-]+", "-", f"{self.name}-{self.version}").rstrip("-")
        return f"SPDXRef-{name}"


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def sha1(data):
    return hashlib.sha1(data).hexdigest()


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def read(path):
    return pathlib.Path(path).read_text("utf-8", errors="replace")


def debian_purl(package, version, architecture):
    version = urllib.parse.quote(version, safe=":.~-")
    return f"pkg:deb/debian/{urllib.parse.quote(package)}@{version}?arch={architecture}"


def debian_component(package, use, files=()):
    """Describes an installed package."""
    version, architecture, source, source_version, built_using = run(
        "dpkg-query", "-W", "-f", "${Version}\n${Architecture}\n${source:Package}\n"
        "${source:Version}\n${Built-Using}.\n",
        package).split("\n")[:5]  # There may be others for i386.
    texts = [read(f"/usr/share/doc/{package}/copyright")]
    # The copyright file refers to these.
    names = re.findall(r"/usr/share/common-licenses/([A-Za-z]+(?:-[0-9.]*[0-9])?)", texts[0])
    texts += [read(f"/usr/share/common-licenses/{name}") for name in sorted(set(names))]
    sources = f"{source}={source_version}"
    if built_using != ".":
        sources += ", " + re.sub(r" \(= ([^)]+)\)", r"=\1", built_using[:-1])
    return Component(package, version, LICENCES.get(package) or LICENCES[source],
                     debian_purl(package, version, architecture), use, files=files,
                     contained=bool(files), source=sources, texts=texts)


def qt_texts(doc):
    return [read(doc / name) for name in ("LICENSE.LGPL3", "LICENSE.GPL3", "copyright")]


def qt_component(folder, dlls):
    """Describes the Qt that toolchain/qt-mingw.sh built."""
    doc = folder / "share/doc"
    source, version = read(doc / "source").split()
    use = "headers with inline functions"
    return Component("Qt", version, LICENCES[source], debian_purl(source, version, "source"),
                     f"DLLs, {use}" if dlls else use, files=[dll.name for dll in dlls],
                     contained=bool(dlls), source=f"{source}={version}", texts=qt_texts(doc))


def official_qt_component(folder, dlls):
    """Describes the Qt that toolchain/qt-msvc.sh fetched."""
    return Component("Qt", OFFICIAL_QT, "LGPL-3.0-only",
                     f"pkg:generic/qtbase@{OFFICIAL_QT}?download_url={OFFICIAL_QT_SOURCE}", "DLLs",
                     files=[dll.name for dll in dlls], source=OFFICIAL_QT_SOURCE,
                     texts=qt_texts(folder / "share/doc"), supplier="The Qt Company Oy",
                     originals=dlls)


def licence_expression(attribution):
    """Returns Qt's identifier of a licence as an SPDX expression."""
    words = attribution.get("LicenseId", "").replace("(", " ( ").replace(")", " ) ").split()
    spdx = {"or": "OR", "and": "AND", "GPL-2.0": "GPL-2.0-only"}
    words = [spdx.get(word, word) for word in words]
    if not words or any(word in ("OR", "AND") for word in words[::2]) \
            or any(word not in ("OR", "AND") for word in words[1::2]):
        return f"LicenseRef-{attribution['Id']}"
    return " ".join(words)


def attributions(doc):
    """Yields Qt's descriptions of third-party code, each with the folder of its file."""
    for file in sorted(doc.rglob("qt_attribution.json")):
        # Some have line breaks in strings.
        entries = json.loads(read(file), strict=False)
        for entry in entries if isinstance(entries, list) else [entries]:
            yield file.parent, entry


def attributed_component(doc, folder, entry, version, use):
    """Describes code with such a description."""
    copyrights = entry.get("Copyright", "")
    if isinstance(copyrights, list):
        copyrights = "\n".join(copyrights)
    texts = [f"{entry.get('License', '')}\n\n{copyrights}"]
    if "LicenseFile" in entry:
        # Some are relative to a folder of the source that was not copied.
        texts.append(read(posixpath.normpath(folder / entry["LicenseFile"])))
    # FreeType's refers to these.
    texts += [read(doc / "src/3rdparty/freetype/docs" / name) for name in ("FTL.TXT", "GPLv2.TXT")
              if "FTL" in entry.get("LicenseId", "")]
    purl = f"pkg:generic/{urllib.parse.quote(entry['Id'])}"
    if re.fullmatch(r"[\w.+-]+", version):
        purl += f"@{urllib.parse.quote(version)}"
    base = folder.relative_to(doc) / entry.get("Path", "")
    return Component(entry["Name"], version, licence_expression(entry), purl, use,
                     source=f"{base} in the source package of Qt", texts=texts)


def code_in_qt(folder, dlls):
    """Describes the third-party code that was compiled into Qt for MinGW."""
    doc = folder / "share/doc"
    has_test = "Qt5Test.dll" in [dll.name for dll in dlls]
    compiled = set()
    for line in read(doc / "compiled").splitlines():
        built_folder, path = line.split(" ", 1)
        if QT_FOLDERS.fullmatch(built_folder) and (built_folder != "testlib" or has_test):
            compiled.add(posixpath.normpath(path))
    # webgradients.css is stored as webgradients.binaryjson.
    compiled |= {posixpath.splitext(path)[0] + ".css"
                 for path in compiled if path.endswith(".binaryjson")}
    result = []
    for source, entry in attributions(doc):
        base = source.relative_to(doc) / entry.get("Path", "")
        names = [str(base / name) for name in re.split(r"[\s,]+", entry.get("Files", "")) if name]
        if any(path in names if names else path == str(base) or path.startswith(f"{base}/")
               for path in compiled):
            result.append(attributed_component(doc, source, entry, entry.get("Version", ""),
                                               "in Qt's DLLs"))
    return result


def contains(dll, text):
    """Returns whether a DLL contains a text or, as \\x{...}, the bytes given in official-qt.txt."""
    data = dll.read_bytes()
    wanted = re.sub(rb"\\x{([0-9a-f]+)}", lambda match: bytes.fromhex(match[1].decode()),
                    text.encode())
    return wanted in data or text.encode("utf-16-le") in data


def code_in_official_qt(folder, dlls):
    """Describes the third-party code in the official DLLs, from official-qt.txt."""
    doc = folder / "share/doc"
    described = [*attributions(doc),
                 *((doc / path, entry) for path, entry in NOT_DESCRIBED.items())]
    dlls = {dll.name: dll for dll in dlls}
    known, users, versions = set(), {}, {}
    for line in read(pathlib.Path(__file__).with_name("official-qt.txt")).splitlines():
        if not line or line.startswith("#"):
            continue
        name, code, rest = line.split(maxsplit=2)
        known.add(code)
        if name not in dlls:
            continue
        versions[code], text = rest.split(maxsplit=1)
        if not contains(dlls[name], text):
            sys.exit(f"{name} isn't the one from Qt {OFFICIAL_QT}: it lacks {text}, the evidence "
                     f"of {code}")
        users.setdefault(code, []).append(name)
    ids = {entry["Id"] for _, entry in described}
    if ids != known:
        sys.exit(f"official-qt.txt and the source of Qt differ: {' '.join(sorted(ids ^ known))}")
    result = []
    for source, entry in described:
        code = entry["Id"]
        if code in users:
            version = {"=": entry.get("Version", ""), "-": ""}.get(versions[code], versions[code])
            result.append(attributed_component(doc, source, entry, version,
                                               f"in {' and '.join(users[code])}"))
    return result


def components(config, names):
    """Lists what a package with files of these names contains, and what they are compiled from."""
    flavour, qt = config["flavour"], pathlib.Path(config["qt"])
    dlls, shipped, result = [], {}, []
    if flavour != "linux":
        dlls = sorted(path for folder in ("bin", "plugins") for path in (qt / folder).rglob("*.dll")
                      if path.name in names)
    for path in map(pathlib.Path, config["runtime"]):
        if path.name in names:
            shipped.setdefault(run("dpkg", "-S", str(path)).split(":")[0], []).append(path.name)
    if flavour == "mingw":
        result.append(qt_component(qt, dlls))
        if dlls:
            result += code_in_qt(qt, dlls)
    if flavour == "msvc":
        if dlls:
            result += [official_qt_component(qt, dlls), *code_in_official_qt(qt, dlls)]
        doc = pathlib.Path(config["sysroot"], "doc")
        source, version = read(doc / "llvm-source").split()
        result.append(Component(
            "libc++ and compiler-rt", version, LICENCES[source],
            debian_purl(source, version, "source"),
            "C++ library and, where functions need it, stack probe, linked into DLLs and programs",
            source=f"{source}={version}", texts=[read(doc / "LLVM-LICENSE.TXT")]))
    for name, use in COMPILED_FROM[flavour].items():
        result.append(debian_component(name, use, shipped.pop(name, ())))
    for name, files in shipped.items():
        result.append(debian_component(name, "run-time library", files))
    return result


def notices(config, archive, names):
    """Returns THIRD-PARTY-NOTICES: a list, then each text once."""
    texts, lines = [], []
    for component in components(config, names):
        numbers = []
        for text in component.texts:
            if text not in texts:
                texts.append(text)
            number = str(texts.index(text) + 1)
            if number not in numbers:
                numbers.append(number)
        lines += [f"{component.name} {component.version}".rstrip(), f"  Use:      {component.use}",
                  f"  Licence:  {component.licence}", f"  Source:   {component.source}"]
        if component.files:
            lines.append(f"  Files:    {' '.join(sorted(component.files))}")
        lines += [f"  SHA-256:  {sha256(path)}  {path.name}" for path in component.originals]
        lines += [f"  Texts:    {', '.join(numbers)}", ""]
        if component.note:
            lines += ["  " + line for line in component.note.splitlines()] + [""]
    result = [f"Third-party code that {archive} contains or was compiled from", "", SOURCES, *lines]
    for number, text in enumerate(texts, 1):
        result += ["=" * 80, f"Text {number}", "=" * 80, "", text, ""]
    return "\n".join(line.rstrip() for line in "\n".join(result).splitlines()) + "\n"


def source_date(config):
    """Returns the time of the commit, or without a repository 1980-01-01."""
    if (pathlib.Path(config["source"]) / ".git").exists():
        log = subprocess.run(["git", "-C", config["source"], "log", "-1", "--format=%ct"],
                             capture_output=True, text=True, check=False)
        if log.returncode == 0:
            return int(log.stdout)
    return 315532800


def sort_entries(archive, date):
    """Writes the archive again, independent of its entries' order, dates and owners."""
    with zipfile.ZipFile(archive) as file:
        entries = {entry.filename: (file.read(entry), entry.external_attr >> 16 & 0o100)
                   for entry in file.infolist() if not entry.is_dir()}
    with zipfile.ZipFile(archive, "w") as file:
        for name, (data, executable) in sorted(entries.items()):
            entry = zipfile.ZipInfo(name, date.timetuple()[:6])
            entry.create_system = 3  # Unix, so that permissions are used
            entry.external_attr = (0o100755 if executable else 0o100644) << 16
            file.writestr(entry, data, zipfile.ZIP_DEFLATED, 9)
    return {posixpath.basename(name) for name in entries}


def sbom(config, archive, names, date):
    """Returns the SPDX document of an archive with files of these names."""
    described = [{
        "SPDXID": "SPDXRef-archive", "name": archive.stem, "versionInfo": config["version"],
        "packageFileName": archive.name, "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
        "checksums": [{"algorithm": "SHA256", "checksumValue": sha256(archive)}],
        "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION", "primaryPackagePurpose": "ARCHIVE"}]
    extracted, files = {}, []
    relationships = [("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-archive")]
    for part in components(config, names):
        described.append({
            "SPDXID": part.spdx_id, "name": part.name,
            **({"versionInfo": part.version} if part.version else {}),
            **({"supplier": f"Organization: {part.supplier}"} if part.supplier else {}),
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "sourceInfo": part.source, "licenseConcluded": part.licence,
            "licenseDeclared": part.licence, "copyrightText": "NOASSERTION",
            "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                              "referenceLocator": part.purl}]})
        for licence in re.findall(r"LicenseRef-[\w.-]+", part.licence):
            extracted[licence] = "\n\n".join(part.texts)
        relationships.append(("SPDXRef-archive", "CONTAINS" if part.contained else "GENERATED_FROM",
                              part.spdx_id))
        for path in part.originals:
            files.append({
                "SPDXID": f"SPDXRef-File-{path.name}", "fileName": f"./{path.name}",
                "checksums": [{"algorithm": "SHA1", "checksumValue": sha1(path.read_bytes())},
                              {"algorithm": "SHA256", "checksumValue": sha256(path)}],
                "licenseConcluded": part.licence, "copyrightText": "NOASSERTION"})
            relationships.append((part.spdx_id, "CONTAINS", f"SPDXRef-File-{path.name}"))
        if part.originals:  # SPDX requires the code of packages that contain files.
            hashes = sorted(sha1(path.read_bytes()) for path in part.originals)
            described[-1].update(filesAnalyzed=True, packageVerificationCode={
                "packageVerificationCodeValue": sha1("".join(hashes).encode())})
    result = {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": archive.stem,
        "documentNamespace": f"https://spdx.org/spdxdocs/{archive.stem}-{sha256(archive)}",
        "creationInfo": {"created": date.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": [f"Tool: Zendel-{config['version']}"]},
        "packages": described,
        "relationships": [{"spdxElementId": a, "relationshipType": kind, "relatedSpdxElement": b}
                          for a, kind, b in relationships]}
    if files:
        result["files"] = files
    if extracted:
        result["hasExtractedLicensingInfos"] = [{"licenseId": name, "extractedText": text}
                                                for name, text in sorted(extracted.items())]
    return result


def finish(config, folder, archives):
    """Sorts the archives' entries, and writes their SBOMs and, for the whole folder, SHA256SUMS."""
    date = datetime.datetime.fromtimestamp(source_date(config), datetime.timezone.utc)
    for archive in archives:
        names = sort_entries(archive, date)
        document = json.dumps(sbom(config, archive, names, date), indent=2)
        (folder / f"{archive.stem}.spdx.json").write_text(f"{document}\n", "utf-8")
    files = {path.name: path for pattern in ("Zendel-*.spdx.json", "Zendel-*.zip")
             for path in folder.glob(pattern)}
    files.update({archive.name: archive for archive in archives})
    (folder / "SHA256SUMS").write_text(
        "".join(f"{sha256(path)}  {name}\n" for name, path in sorted(files.items())), "utf-8")


def main():
    action, config = sys.argv[1], json.loads(read(sys.argv[2]))
    if action == "notices":
        folder = pathlib.Path(sys.argv[4])
        names = {path.name for path in folder.rglob("*")}
        (folder / "THIRD-PARTY-NOTICES").write_text(notices(config, sys.argv[3], names), "utf-8")
    else:
        archives = [pathlib.Path(archive) for archive in sys.argv[4:]]
        finish(config, pathlib.Path(sys.argv[3]), archives)


if __name__ == "__main__":
    main()
