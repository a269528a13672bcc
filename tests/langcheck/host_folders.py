#!/usr/bin/env python3
"""host_folders.py BUILD-FOLDER SOURCE-FOLDER VERSION... -- LAUNCHER...

Makes folders of a host with the official DLLs of these versions of Qt for MSVC, whole and damaged,
and checks each with langcheck. Fails unless langcheck finds what is wrong and nothing else, and the
folder is right after its remedies were applied. What is wrong isn't only written here but also
found by a reading of the files with pefile, because under Wine a missing function is a stub that
goes unnoticed until it is called. LAUNCHER starts Windows programs.
"""

import configparser
import functools
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import pefile

QT = ("Qt5Core.dll", "Qt5Gui.dll", "Qt5Widgets.dll")
HOST, PLUGIN, PLATFORM = "zendel-host.exe", "Zendel.dll", "platforms/qwindows.dll"
RUNTIME = ("vcruntime140.dll", "vcruntime140_1.dll", "msvcp140.dll", "msvcp140_1.dll")

build, source, *rest = sys.argv[1:]
versions, launcher = rest[:rest.index("--")], rest[rest.index("--") + 1:]
binaries = pathlib.Path(build, "bin").resolve()
system = pathlib.Path(os.environ.get("WINEPREFIX", ""), "drive_c/windows/system32")
failures = []
cases = []


@functools.lru_cache(None)
def kit(version):
    """Returns the folder of an official Qt."""
    command = [f"{source}/toolchain/qt-msvc.sh", version]
    return pathlib.Path(subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True)
                        .stdout.strip())


@functools.lru_cache(None)
def read(path):
    """Returns the machine, the imports by DLL, the exports and the version of a file; None if it
    isn't a program or DLL."""
    try:
        # Without pefile's limit of 8192
        file = pefile.PE(path, fast_load=True, max_symbol_exports=0x10000)
        end = max(part.PointerToRawData + part.SizeOfRawData for part in file.sections)
        if end > os.path.getsize(path):
            return None
        file.parse_data_directories([pefile.DIRECTORY_ENTRY[f"IMAGE_DIRECTORY_ENTRY_{name}"]
                                     for name in ("IMPORT", "EXPORT", "RESOURCE")])
    except (pefile.PEFormatError, ValueError):
        return None
    imports = {entry.dll.decode().lower(): [function.name for function in entry.imports
                                            if function.name]
               for entry in getattr(file, "DIRECTORY_ENTRY_IMPORT", [])}
    table = getattr(file, "DIRECTORY_ENTRY_EXPORT", None)
    exports = {symbol.name for symbol in table.symbols} if table else set()
    version = None
    if hasattr(file, "VS_FIXEDFILEINFO"):
        info = file.VS_FIXEDFILEINFO[0]
        version = (info.FileVersionMS >> 16, info.FileVersionMS & 0xFFFF, info.FileVersionLS >> 16)
    return file.FILE_HEADER.Machine, imports, exports, version


def find(folder, name):
    """Returns a file of a folder, whatever the case of its name; None if there is none."""
    for part in name.split("/"):
        entries = os.listdir(folder) if folder.is_dir() else []
        match = [entry for entry in entries if entry.lower() == part.lower()]
        if not match:
            return None
        folder = folder / match[0]
    return folder.resolve()


def loads(folder, path, seen):
    """Returns whether Windows can load a file and all that it imports."""
    if path is None or path.is_dir():
        return False
    if path in seen:
        return True
    seen.add(path)
    file = read(path)
    if file is None or file[0] != 0x8664:
        return False
    for name, functions in file[1].items():
        ours = name.startswith("qt5")
        if not ours and name not in RUNTIME:
            continue
        dll = find(folder, name) or (None if ours else find(system, name))
        if not loads(folder, dll, seen) or not set(functions) <= read(dll)[2]:
            return False
    return True


def platform_plugin(folder, version):
    """Returns Qt's plug-in for Windows, as Qt 5 looks for it."""
    places = []
    conf = find(folder, "qt.conf")
    if conf:
        parser = configparser.ConfigParser()
        parser.read_string(conf.read_text("ascii"))
        paths = parser["Paths"] if "Paths" in parser else {}
        places.append(f"{paths.get('prefix', '.')}/{paths.get('plugins', 'plugins')}")
    elif version >= (5, 14):
        places.append("plugins")
    for place in [*places, "."]:
        path = pathlib.Path(os.path.normpath(folder / place), PLATFORM)
        if path.exists() and b"QTMETADATA" in path.read_bytes():
            return path.resolve()
    return None


def works(folder):
    """Returns whether the host starts and the plug-in can be loaded."""
    host = find(folder, HOST)
    qt = [find(folder, name) for name in QT]
    plugin = find(folder, PLUGIN)
    # Classes of one of these DLLs check the version of the other at run time.
    if not all(loads(folder, path, set()) for path in (*qt, plugin)):
        return False
    found = {read(path)[3] for path in qt}
    if len(found) != 1 or (host and not loads(folder, host, set())):
        return False
    if not {b"NewInterface", b"ReleaseInterface"} <= read(plugin)[2]:
        return False
    version = found.pop()
    platform = platform_plugin(folder, version)
    return loads(folder, platform, set()) and read(platform)[3][:2] == version[:2]


def put(target, origin):
    """Replaces a file with a link."""
    target.parent.mkdir(parents=True, exist_ok=True)
    target.unlink(missing_ok=True)
    target.symlink_to(origin)


def official(version, name):
    return kit(version) / (f"plugins/{name}" if "/" in name else f"bin/{name}")


def make(folder, version):
    """Makes the folder of a host that works."""
    for name in (*QT, PLATFORM):
        put(folder / name, official(version, name))
    for name in (HOST, PLUGIN):
        put(folder / name, binaries / name)


def write(path, data):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.unlink(missing_ok=True)
    path.write_bytes(data)


def check(folders):
    """Returns langcheck's reports about the DLLs in folders. A start under Wine takes longer than a
    check."""
    reports = []
    for start in range(0, len(folders), 100):
        # Two at least, because for one folder the report isn't in a list. A file, because a pipe
        # would stay open as long as the desktop that Wine may start.
        some = folders[start:start + 100]
        paths = [f"Z:{folder}" for folder in (*some, some[0])]
        with tempfile.TemporaryFile() as output:
            subprocess.run([*launcher, binaries / "langcheck.exe", "--json", *paths],
                           check=False, stdin=subprocess.DEVNULL, stdout=output)
            output.seek(0)
            reports += json.loads(output.read())[:-1]
    for report in reports:
        report["findings"] = [finding for finding in report["findings"]
                              if not finding["file"].startswith("Lang")]
    return reports


def repair(folder, finding):
    """Does what the finding says. Returns false if that isn't something about the folder."""
    remedy = finding["remedy"]
    target = folder / finding["file"]
    if match := re.fullmatch(r"replace it with the same file of Qt ([\d.]+) for MSVC", remedy):
        put(target, official(match[1], re.sub(r"^.*(?=platforms/)", "", finding["file"])))
    elif match := re.fullmatch(r"copy it from the folder plugins of Qt ([\d.]+) for MSVC", remedy):
        put(target, official(match[1], PLATFORM))
    elif match := re.match(r"copy the folder platforms from Qt ([\d.]+) for MSVC", remedy):
        put(folder / PLATFORM, official(match[1], PLATFORM))
    elif match := re.fullmatch(r"copy (.*) from Qt ([\d.]+) for MSVC", remedy):
        for name in match[1].split(", "):
            put(folder / name, official(match[2], name))
    elif match := re.fullmatch(r"copy (.*) from the folder bin", remedy):
        for name in match[1].split(", "):
            put(folder / name, (folder / "bin" / name).resolve())
    elif remedy.startswith("delete it, and install"):
        target.unlink()
    elif "the plug-in that is built for MSVC" in remedy or finding["kind"] == "plugin-missing":
        put(folder / PLUGIN, binaries / PLUGIN)
    else:
        return False
    return True


def case(name, version, damage, *expected, checked=True, repairable=True):
    """Makes a folder that is to be checked. DAMAGE changes a good one; EXPECTED has the lines
    "KIND FILE"."""
    folder = root / str(len(cases)) / "host"
    make(folder, version)
    damage(folder)
    cases.append((folder, f"Qt {version}, {name}", expected, checked, repairable and expected))


def check_cases():
    """Checks all folders, repairs them, and checks them again."""
    repaired = []
    for (folder, where, expected, checked, repairable), report in zip(
            cases, check([folder for folder, *_ in cases])):
        found = [f"{finding['kind']} {finding['file']}" for finding in report["findings"]]
        print(f"{where}: {found}", flush=True)
        if sorted(found) != sorted(expected):
            failures.append(f"{where}: {found} instead of {list(expected)}")
        if checked != report["hostChecked"].startswith("checked: "):
            failures.append(f"{where}: {report['hostChecked']}")
        if checked and works(folder) == report["hostFails"]:
            failures.append(f"{where}: the host {'works' if report['hostFails'] else 'fails'}")
        if not repairable:
            continue
        if all(repair(folder, finding) for finding in report["findings"]):
            repaired.append((folder, where))
        else:
            failures.append(f"{where}: can't be repaired: {report['findings']}")
    for (folder, where), report in zip(repaired, check([folder for folder, _ in repaired])):
        if report["findings"] or not works(folder):
            failures.append(f"{where}: after the repair: {report['findings']}")


def remove(*names):
    return lambda folder: [(folder / name).unlink() for name in names]


def rename(names):
    return lambda folder: [(folder / one).rename(folder / other) for one, other in names.items()]


def both(*steps):
    return lambda folder: [step(folder) for step in steps]


def swap(name, version):
    return lambda folder: put(folder / name, official(version, name))


def data(name, contents):
    return lambda folder: write(folder / name, contents)


def patched(name, change):
    """Replaces a file with a changed copy."""
    return lambda folder: write(folder / name, change((folder / name).read_bytes()))


def for_32_bit(contents):
    header = int.from_bytes(contents[0x3C:0x40], "little")
    return contents[:header + 4] + b"\x4C\x01" + contents[header + 6:]


def other_function(contents):
    function = b"?applicationDirPath@QCoreApplication@"
    assert function in contents
    return contents.replace(function, function.replace(b"DirPath", b"DirPats"))


def move_platform(place):
    def move(folder):
        (folder / place).mkdir(parents=True)
        (folder / PLATFORM).rename(folder / place / "qwindows.dll")
    return move


def check_version(version):
    case("whole", version, lambda folder: None)
    case("no program", version, remove(HOST))
    case("lower case", version, rename({name: name.lower() for name in (*QT, PLUGIN)}))
    for name in QT:
        case(f"no {name}", version, remove(name), f"qt-missing {name}")
        case(f"half of {name}", version, patched(name, lambda data: data[:len(data) // 2]),
             f"dll-unusable {name}")
        case(f"32-bit {name}", version, patched(name, for_32_bit), f"dll-unusable {name}")
    case("no Qt5Gui and no Qt5Widgets", version, remove(*QT[1:]), "qt-missing Qt5Gui.dll")
    case("empty Qt5Core", version, data("Qt5Core.dll", b""), "dll-unusable Qt5Core.dll")
    case("folder Qt5Gui", version, both(remove(QT[1]), lambda folder: (folder / QT[1]).mkdir()),
         "dll-unreadable Qt5Gui.dll", repairable=False)
    case("32-bit Qt", version, both(remove(HOST), *(patched(name, for_32_bit) for name in QT)),
         "host-32-bit Qt5Core.dll", checked=False, repairable=False)

    case("no Qt", version, remove(*QT), checked=False)
    case("only languages", version, remove(*QT, HOST, PLUGIN), checked=False)
    debug = {name: name.replace(".dll", "d.dll") for name in QT}
    qt6 = {name: name.replace("5", "6") for name in QT}
    for name, names in (("debug", debug), ("Qt 6", qt6)):
        case(f"{name}, no program", version, both(remove(HOST), rename(names)),
             f"qt-other {names[QT[0]]}", checked=False, repairable=False)
        case(f"{name}, program", version, rename(names), "qt-missing Qt5Core.dll", checked=False,
             repairable=False)

    def to_bin(folder):
        (folder / "bin").mkdir()
        rename({name: f"bin/{name}" for name in QT})(folder)
    case("bin", version, to_bin, "qt-missing Qt5Core.dll", checked=False)
    case("bin, no program", version, both(remove(HOST), to_bin), "host-folder bin", checked=False,
         repairable=False)

    case("no plug-in", version, remove(PLUGIN), f"plugin-missing {PLUGIN}")
    case("other plug-in", version,
         lambda folder: put(folder / PLUGIN, binaries / "plugin_without_release.dll"),
         f"plugin-foreign {PLUGIN}")
    case("Qt as the plug-in", version,
         lambda folder: put(folder / PLUGIN, official(version, QT[1])), f"plugin-foreign {PLUGIN}")
    case("plug-in for another Qt", version, patched(PLUGIN, other_function),
         f"plugin-functions {PLUGIN}", repairable=False)
    case("program for another Qt", version, patched(HOST, other_function),
         f"function-missing {HOST}", repairable=False)

    for name in ("vcruntime140.dll", "msvcp140.dll"):
        case(f"good {name}", version, lambda folder, name=name:
             put(folder / name, kit("5.15.2") / "runtime" / name))
        case(f"empty {name}", version, data(name, b""), f"dll-unusable {name}")
        case(f"{name} without functions", version, lambda folder, name=name:
             put(folder / name, binaries / "plugin_without_release.dll"), f"runtime-old {name}")
        case(f"32-bit {name}", version,
             both(lambda folder, name=name: put(folder / name, kit("5.15.2") / "runtime" / name),
                  patched(name, for_32_bit)), f"dll-unusable {name}")

    check_plugin_folders(version)


def check_plugin_folders(version):
    new = tuple(map(int, version.split("."))) >= (5, 14)
    missing, wrong = f"platform-missing {PLATFORM}", "platform-path qt.conf"
    case("no platform", version, remove(PLATFORM), missing)
    case("empty platform", version, data(PLATFORM, b""), f"dll-unusable {PLATFORM}")
    case("32-bit platform", version, patched(PLATFORM, for_32_bit), f"dll-unusable {PLATFORM}")
    plugins = move_platform("plugins/platforms")
    case("plugins", version, plugins, *([] if new else [missing]))
    for name, place, conf, right in (
            ("empty, plugins", "plugins", "", True),
            ("empty, elsewhere", "other", "", False),
            ("prefix", "other/plugins", "[Paths]\nPrefix=other\n", True),
            ("plug-ins", "other", "[Paths]\nPlugins = ./other\n", True),
            ("both", "a/b", "[Paths]\nPrefix=a\nPlugins=b\n", True),
            ("above", "../plugins", "[Paths]\nPrefix=..\n", True),
            ("wrong", "plugins", "[Paths]\nPrefix=..\nPlugins=plugins\n", False)):
        case(f"qt.conf, {name}", version,
             both(move_platform(f"{place}/platforms"), data("qt.conf", conf.encode())),
             *([] if right else [wrong]))
    good = both(plugins, data("qt.conf", b""))
    case("qt.conf, 32-bit beside", version,
         both(good, swap(PLATFORM, version), patched(PLATFORM, for_32_bit)))
    case("qt.conf, 32-bit", version,
         both(good, patched(f"plugins/{PLATFORM}", for_32_bit)),
         f"dll-unusable plugins/{PLATFORM}")


def check_mixtures():
    for one in versions:
        for other in versions:
            if one == other:
                continue
            for name in QT:
                case(f"{name} {other}", one, swap(name, other), f"qt-versions-differ {name}")
            minor = one.split(".")[1] != other.split(".")[1]
            case(f"{PLATFORM} {other}", one, swap(PLATFORM, other),
                 *([f"qt-versions-differ {PLATFORM}"] if minor else []))


with tempfile.TemporaryDirectory() as temporary:
    root = pathlib.Path(temporary).resolve()
    for item in versions:
        check_version(item)
    check_mixtures()
    check_cases()
print(f"{len(cases)} folders, {len(failures)} failures")
if failures:
    sys.exit("\n".join(failures))
