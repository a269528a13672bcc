#!/usr/bin/env python3
"""links.py SOURCE_DIR: fails unless every file and heading that a page links to or names exists."""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
# Paths in a build, in a package or on a machine
ELSEWHERE = re.compile(r"^(Lang|build|include|platforms|plugins)/|[<>*~]")
SOURCE = re.compile(r"\.(cmake|cpp|h|ini|md|py|sh)$")

names = {path.name for path in root.rglob("*") if not ELSEWHERE.match(path.relative_to(root).as_posix())}
failures = []
checked = 0
for page in sorted(root.glob("*.md")) + sorted(root.glob("docs/*.md")):
    text = re.sub(r"^```.*?^```", "", page.read_text("utf-8"), flags=re.DOTALL | re.MULTILINE)
    anchors = {re.sub(r"[^a-z0-9 _-]", "", heading.lower()).replace(" ", "-")
               for heading in re.findall(r"^#+ (.*)", text, re.MULTILINE)}
    missing = [link for link in re.findall(r"\]\(([^)\s]+)\)", text) if not re.match(r"[a-z]+:", link)
               and not (link[1:] in anchors if link.startswith("#")
                        else (page.parent / link.partition("#")[0]).exists())]
    # In code, a path is a word with a slash or with the suffix of a source file.
    words = [word for code in re.findall(r"`([^`\n]+)`", text)
             for word in re.findall(r"[A-Za-z0-9_.~/<>*-]+", code)
             if ("/" in word or SOURCE.search(word)) and not ELSEWHERE.search(word)]
    missing += [word for word in words
                if not ((root / word).exists() if "/" in word else word in names)]
    failures += [f"{page.relative_to(root)} names {what}, which does not exist" for what in missing]
    checked += len(words)
if failures or checked < 20:
    sys.exit("\n".join(failures) or f"found only {checked} file names")
print(f"{checked} file names")
