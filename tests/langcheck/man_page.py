#!/usr/bin/env python3
"""man_page.py LANGCHECK PAGE MANDOC

Fails unless the man page is valid and describes each option that langcheck prints with --help.
"""

import re
import subprocess
import sys

langcheck, page, mandoc = sys.argv[1:]


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


options = re.findall(r"--[a-z]+(?= )", output(langcheck, "--help").split("\nOptions:\n")[1])
assert len(options) >= 6, options
lint = subprocess.run([mandoc, "-Tlint", "-Wall", page], check=False, stdout=subprocess.PIPE,
                      text=True)
assert lint.returncode == 0 and not lint.stdout, lint.stdout
text = output(mandoc, "-Tutf8", "-Owidth=100", page)
text = re.sub(".\b", "", text)  # Bold letters are printed twice.
for option in options:
    assert re.search(rf"^ +(-\w, )?{option}\b", text, re.MULTILINE), f"{option} isn't in\n{text}"
assert "\nNAME\n     langcheck - check deployments" in text.replace("       ", "     "), text
