#!/usr/bin/env python3
"""ratios.py catalogue.json translation.json dialog.json load.json: prints the results as ratios.

The times are medians of the repetitions, in processor time. "!" marks a ratio that misses its goal.
"""

import json
import statistics
import sys


def read_medians(path):
    """Returns the median time, in microseconds, or ratio of each benchmark in a file."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    times = {}
    for run in runs:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run["run_type"] != "iteration":
            continue
        # Benchmarks that measure their time themselves report it as real time.
        name, manual, _ = run["run_name"].partition("/iterations:")
        name, manual2, _ = name.partition("/manual_time")
        time = run["real_time" if manual or manual2 else "cpu_time"]
        times.setdefault(name, []).append(time / {"ns": 1000, "us": 1}[run["time_unit"]])
        if "bareDialog" in run:  # A ratio already
            times.setdefault(f"{name} to bareDialog", []).append(run["bareDialog"])
    return {name: statistics.median(values) for name, values in times.items()}


def ratio(part, whole, goal=None):
    suffix = "!" if goal is not None and part / whole > goal else " "
    return f"{part / whole:.2f}{suffix}"


def print_table(title, header, rows):
    print(f"\n{title}")
    for row in [header] + rows:
        print("  ".join(f"{cell:>13}" for cell in row))


def print_catalogue(times):
    rows = []
    sizes = [10, 100, 1000, 10000, 100000]
    for size in sizes:
        def time(name, n=size):
            return times[f"{name}/UTF-8/{n}"]

        load = time("loadTranslator")
        rows.append([
            str(size), f"{load:.0f} us",
            ratio(load, time("splitLines"), 6),
            ratio(load, time("QSettings"), 0.85 if size >= 100 else None),
            ratio(load, time("loadTranslator", size // 10), 11) if size > sizes[0] else "",
            ratio(load, time("splitInPlace")),
            ratio(load, time("matchInPlace")),
            ratio(load, time("decode")),
        ])
    print_table("Reading the catalogue: loadTranslator() compared with",
                ["languages", "time", "splitLines", "QSettings", "a tenth", "splitInPlace",
                 "matchInPlace", "decode"], rows)
    for encoding in ["UTF-16LE", "GB2312"]:
        other = ratio(times[f"loadTranslator/{encoding}/10000"],
                      times["loadTranslator/UTF-8/10000"])
        print(f"10000 languages in {encoding} compared with UTF-8: {other}")


def print_translation(times):
    plain = times["load/4 MB"]
    if max(times.values()) > 25 * plain:
        missed.append("a crafted translation takes more than 25 times as long as a plain one")
    print_table("Loading a translation: loadLangConfig() and loadQmFile() compared with",
                ["file", "time", "plain 4 MB"],
                [[name.partition("/")[2], f"{time:.0f} us", ratio(time, plain, 25)]
                 for name, time in times.items()])


def print_dialog(times):
    rows = []
    for size in [10, 57, 255, 10000]:
        name = f"ShowSettingsDlg/{size}"
        rows.append([str(size), f"{times[name]:.0f} us",
                     ratio(times[f"{name} to bareDialog"], 1, 1 if size <= 255 else 2)])
    print_table("Opening: ShowSettingsDlg() until the first paint compared with",
                ["languages", "time", "bareDialog"], rows)


def print_load(times):
    rows = []
    for loaded, text in [("all", "all"), ("widgets", "Qt Widgets"), ("none", "nothing")]:
        ours, bare = times[f"Zendel/{loaded}"], times[f"bareModule/{loaded}"]
        rows.append([text, f"{ours:.0f} us", ratio(ours, bare)])
    print_table("Loading: until NewInterface() has returned compared with",
                ["loaded before", "time", "bareModule"], rows)
    libraries = ["Qt5Core", "Qt5Gui", "Qt5Widgets", "Qt5X11Extras"]
    print("Loading each library together with its dependencies: "
          + ", ".join(f"{library} {times[library]:.0f} us" for library in libraries))


missed = []
print_catalogue(read_medians(sys.argv[1]))
print_translation(read_medians(sys.argv[2]))
print_dialog(read_medians(sys.argv[3]))
print_load(read_medians(sys.argv[4]))
if missed:
    sys.exit("\n".join(missed))
