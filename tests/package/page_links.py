#!/usr/bin/env python3
"""page_links.py FOLDER: fails if a page links to or mentions a file or heading that is missing.

page_links.py --package FOLDER: the same for an unpacked package, but only for links.
"""

import pathlib
import re
import sys

package = sys.argv[1] == "--package"
root = pathlib.Path(sys.argv[-1])
# Paths in a build, in a package or on a machine
ELSEWHERE = re.compile(r"^(/|(Lang|build|include|lib|packages|platforms|plugins|styles)/)|[<>*~]")
SOURCE = re.compile(r"\.(cmake|cpp|h|ini|md|py|sh)$")

names = {path.name for path in root.rglob("*")
         if not ELSEWHERE.match(path.relative_to(root).as_posix())}


def read(page):
    return re.sub(r"^```.*?^```", "", page.read_text("utf-8"), flags=re.DOTALL | re.MULTILINE)


def is_there(link, page):
    file, _, anchor = link.partition("#")
    # That page moves to the package's root.
    folder = root if page.parent.name == "packaging" else page.parent
    target = folder / file if file else page
    return target.exists() and (not anchor or anchor in {
        re.sub(r"[^a-z0-9 _-]", "", heading.lower()).replace(" ", "-")
        for heading in re.findall(r"^#+ (.*)", read(target), re.MULTILINE)})


failures = []
checked = 0
for page in [page for folder in ("", "bench/", "docs/", "packaging/")
             for page in sorted(root.glob(f"{folder}*.md"))]:
    text = read(page)
    links = [link for link in re.findall(r"\]\(([^)\s]+)\)", text)
             if not re.match(r"[a-z]+:", link)]
    missing = [f"links to {link}" for link in links if not is_there(link, page)]
    checked += len(links)
    if not package:
        # In code, a path is a word with a slash or with the suffix of a source file.
        words = [word for code in re.findall(r"`([^`\n]+)`", text)
                 for word in re.findall(r"[A-Za-z0-9_.~/<>*-]+", code)
                 if ("/" in word or SOURCE.search(word)) and not ELSEWHERE.search(word)]
        missing += [f"mentions {word}" for word in words
                    if not ((root / word).exists() if "/" in word else word in names)]
        checked += len(words)
    failures += [f"{page.relative_to(root)} {what}, which doesn't exist" for what in missing]
if failures or checked < 10:
    sys.exit("\n".join(failures) or f"found only {checked} links and paths")
print(f"{checked} links and paths")
