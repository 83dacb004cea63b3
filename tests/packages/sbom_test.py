#!/usr/bin/env python3
"""Checks the list of parts in a package's folder and the licence texts beside it.

sbom_test.py FOLDER PRODUCT    PRODUCT is linux, windows or installer
"""
import json
import re
import sys
from pathlib import Path

PARTS = {
    "linux": {"nlohmann-json", "libstdc++", "libgcc", "glibc"},
    "windows": {"nlohmann-json", "libstdc++", "libgcc", "winpthreads", "mingw-w64 CRT"},
}
PARTS["installer"] = PARTS["windows"] | {"NSIS"}


def main(folder, product):
    folder = Path(folder)
    document = json.loads((folder / "sbom.spdx.json").read_text(encoding="utf-8"))
    assert document["spdxVersion"] == "SPDX-2.3" and document["dataLicense"] == "CC0-1.0"
    assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", document["creationInfo"]["created"])
    packages = {package["SPDXID"]: package for package in document["packages"]}
    assert len(packages) == len(document["packages"]), "identifiers are not unique"
    for identifier, package in packages.items():
        assert re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", identifier), identifier
        for field in ("name", "versionInfo", "downloadLocation", "licenseConcluded", "licenseDeclared"):
            assert package[field], (identifier, field)
    names = {package["name"] for package in packages.values()}
    assert names == PARTS[product] | {"Tessary"}, names
    related = {relation["relatedSpdxElement"] for relation in document["relationships"]}
    assert related == set(packages), related ^ set(packages)
    # The only part that asks something of those who pass the program on.
    told = {package["name"] for package in packages.values() if "comment" in package}
    assert told == names & {"glibc"}, told
    for package in packages.values():
        source = package.get("sourceInfo")
        if source:
            text = folder / "licenses" / f"{source.removeprefix('Debian package ')}.txt"
            assert text.stat().st_size > 500, text


if __name__ == "__main__":
    main(*sys.argv[1:])
