#!/usr/bin/env python3
"""sbom.py FILE...: fails unless the licences and references in the SPDX documents are valid."""

import json
import pathlib
import re
import sys

from license_expression import get_spdx_licensing

licensing = get_spdx_licensing()
errors = []
for file in map(pathlib.Path, sys.argv[1:]):
    document = json.loads(file.read_text("utf-8"))
    own = {info["licenseId"] for info in document.get("hasExtractedLicensingInfos", [])}
    for package in document["packages"]:
        for name in ("licenseDeclared", "licenseConcluded"):
            licence = re.sub(r"LicenseRef-[\w.-]+", lambda m: "MIT" if m[0] in own else m[0],
                             package[name])
            if licence != "NOASSERTION":
                errors += licensing.validate(licence).errors
        # The first package is the archive itself.
        if package is not document["packages"][0] and not package.get("externalRefs"):
            errors.append(f"no package URL: {package['name']}")
        for reference in package.get("externalRefs", []):
            if not re.fullmatch(r"pkg:(deb/debian|generic)/[\w.%-]+(@[\w.~:%-]+)?"
                                r"(\?arch=\w+|\?download_url=https://[\w./-]+)?",
                                reference["referenceLocator"]):
                errors.append(reference["referenceLocator"])
    ids = [document["SPDXID"]]
    ids += [part["SPDXID"] for part in document["packages"] + document.get("files", [])]
    if len(ids) != len(set(ids)) or not all(re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", spdx_id)
                                            for spdx_id in ids):
        errors.append(f"IDs are not unique or not valid: {ids}")
    for relationship in document["relationships"]:
        if not {relationship["spdxElementId"], relationship["relatedSpdxElement"]} <= set(ids):
            errors.append(f"no such element: {relationship}")
if errors:
    sys.exit("\n".join(errors))
