#!/usr/bin/env python3
"""json_schema.py LANGCHECK SCHEMA

Fails unless what langcheck prints with --json matches the schema and is UTF-8 that strict parsers
accept: for the sample, for a deployment with many errors, and for several folders. The schema
allows keys of later versions, but here it must describe each key.
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

langcheck, schema_file = sys.argv[1:]
sample = str(pathlib.Path(langcheck).parent)

WORST = """[LANG_MGR]
DEFAULT=9
LANG1_NAME=\ud83d\x1b"<&>
LANG1_FOLDER=../de
LANG1_SHOW=1
LANG1_SHOW=1
LANG257_NAME=English ; comment
LANG257_FOLDER=en
LANG257_SHOW=1
LANG2_SHOW=yes
LANG3_NAME=Three
LANG3_FOLDER=en
lang3_show=1
[OTHER]
"""


def closed(schema):
    """Returns the schema with all properties required to be described."""
    if isinstance(schema, dict):
        result = {key: closed(value) for key, value in schema.items()}
        if "properties" in schema:
            result["additionalProperties"] = False
        return result
    return [closed(item) for item in schema] if isinstance(schema, list) else schema


def refuse(constant):
    raise ValueError(constant)


def report(*folders, exit_code):
    """Returns langcheck's validated report."""
    result = subprocess.run([langcheck, "--json", *folders], capture_output=True, check=False)
    assert result.returncode == exit_code, f"exit code {result.returncode}\n{result.stderr}"
    value = json.loads(result.stdout.decode("utf-8"), parse_constant=refuse)
    json.dumps(value, ensure_ascii=False).encode("utf-8")  # Fails for lone surrogates.
    validator.validate(value)
    return value


with open(schema_file, encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(closed(schema))

with tempfile.TemporaryDirectory() as folder:
    lang = pathlib.Path(folder, "Lang")
    english = pathlib.Path(sample, "Lang/en/Zendel.qm").read_bytes()
    for name in ("en", "old"):
        (lang / name).mkdir(parents=True)
        (lang / name / "Zendel.qm").write_bytes(english)
    (lang / "Lang.ini").write_bytes(b"\xff\xfe" + WORST.encode("utf-16-le", "surrogatepass"))
    pathlib.Path(folder, "Qt5Core.dll").write_bytes(b"")

    good = report(sample, exit_code=0)
    assert len(good["languages"]) == 22 and not good["findings"] and good["verdict"] == "good"
    worst = report(folder, exit_code=2)
    assert worst["verdict"] == "errors" and "hostQt" in worst, worst
    # Otherwise parts of the schema aren't tested.
    for key in ("languages", "hidden", "unusedFolders", "boxes", "findings"):
        assert worst[key], f"{key} is empty"
    assert len(worst["findings"]) >= 10, worst["findings"]
    assert report(sample, folder, exit_code=2) == [good, worst]
    assert report(f"{folder}/Lang/en", exit_code=2)["encoding"] == ""

    # The schema isn't just a permission for everything.
    for change in ({"formatVersion": 1}, {"verdict": "fine"}, {"errors": "0"}, {"more": 1}):
        assert not validator.is_valid({**good, **change}), change
    for key in good:
        assert not validator.is_valid({name: good[name] for name in good if name != key}), key
