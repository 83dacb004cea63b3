#!/usr/bin/env python3
"""Writes what a package has to tell about the software that is linked into its programs.

sbom.py PRODUCT VERSION FOLDER    PRODUCT is linux, windows or installer

In FOLDER: sbom.spdx.json (SPDX 2.3), and licenses/ with the copyright file of each Debian package
that something comes from, and the general licences that these refer to. What is linked in is asked
of the compilers, so that versions are those of the machine that builds. SOURCE_DATE_EPOCH is the
time of the document.
"""
import datetime
import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import uuid
from pathlib import Path

GCC_RUNTIME = "GPL-3.0-or-later WITH GCC-exception-3.1"
NATIVE = "g++"
CROSS = ("x86_64-w64-mingw32-g++-posix", "i686-w64-mingw32-g++-posix")
HEADERS = [
    ("nlohmann-json", "/usr/include/nlohmann/json.hpp", "MIT"),
]
# What a licence asks of those who pass the program on.
COMMENTS = {
    "glibc": "Linked statically. Who passes the program on offers the sources of this library (the Debian source "
             "package glibc of this version) and the object files of the program; see the file copyright.",
}
LINUX_LIBRARIES = [
    ("libstdc++", "libstdc++.a", GCC_RUNTIME),
    ("libgcc", "libgcc.a", GCC_RUNTIME),
    ("glibc", "libc.a", "LGPL-2.1-or-later"),
]
WINDOWS_LIBRARIES = [
    ("libstdc++", "libstdc++.a", GCC_RUNTIME),
    ("libgcc", "libgcc.a", GCC_RUNTIME),
    ("winpthreads", "libwinpthread.a", "MIT AND BSD-3-Clause"),
    ("mingw-w64 CRT", "libmingw32.a", "ZPL-2.1"),
]


def ask(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def debian_package(file):
    """Name and version of the Debian package that holds a file."""
    name = ask("dpkg", "-S", os.path.realpath(file)).split(":")[0]
    return name, ask("dpkg-query", "-W", "-f=${Version}\n", name).splitlines()[0]


def linked_in(product):
    """(name, Debian package, its version, licence) of everything, once each."""
    compilers, libraries = ((NATIVE,), LINUX_LIBRARIES) if product == "linux" else (CROSS, WINDOWS_LIBRARIES)
    found = [(name, *debian_package(file), licence) for name, file, licence in HEADERS]
    for compiler in compilers:
        for name, file, licence in libraries:
            found.append((name, *debian_package(ask(compiler, f"-print-file-name={file}")), licence))
    if product == "installer":
        found.append(("NSIS", *debian_package("/usr/share/nsis/Stubs/zlib-x86-unicode"), "Zlib"))
    return list(dict.fromkeys(found))


def spdx_package(identifier, name, version, licence, **more):
    return {
        "SPDXID": f"SPDXRef-{identifier}",
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
        **more,
    }


def document(product, version, parts):
    root = spdx_package("Tessary", "Tessary", version, "NOASSERTION", primaryPackagePurpose="APPLICATION",
                        supplier="NOASSERTION")
    packages = [root]
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", root["SPDXID"])]
    for name, package, package_version, licence in parts:
        identifier = re.sub(r"[^A-Za-z0-9.-]", "-", f"{name}-{package}")
        packages.append(spdx_package(
            identifier, name, package_version, licence, supplier="Organization: Debian",
            sourceInfo=f"Debian package {package}",
            **({"comment": COMMENTS[name]} if name in COMMENTS else {}),
            externalRefs=[{
                "referenceCategory": "PACKAGE-MANAGER",
                "referenceType": "purl",
                "referenceLocator": f"pkg:deb/debian/{package.replace('+', '%2B')}@{package_version.replace('+', '%2B')}",
            }]))
        relation = "CONTAINS" if name in ("NSIS", "nlohmann-json") else "STATIC_LINK"
        relations.append((root["SPDXID"], relation, f"SPDXRef-{identifier}"))
    content = hashlib.sha256(json.dumps(packages, sort_keys=True).encode()).hexdigest()
    created = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"Tessary-{version}-{product}",
        "documentNamespace": uuid.uuid5(uuid.NAMESPACE_OID, f"tessary {product} {content}").urn,
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: sbom.py"]},
        "packages": packages,
        "relationships": [
            {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
            for one, kind, other in relations
        ],
    }


def copy_licences(parts, folder):
    folder.mkdir(parents=True, exist_ok=True)
    general = set()
    for package in sorted({package for _, package, _, _ in parts}):
        text = Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8", errors="replace")
        (folder / f"{package}.txt").write_text(text, encoding="utf-8")
        general |= set(re.findall(r"/usr/share/common-licenses/([A-Za-z]+(?:-[0-9.]*[0-9])?)", text))
    for name in sorted(general):
        shutil.copyfile(f"/usr/share/common-licenses/{name}", folder / f"{name}.txt")


def main(product, version, folder):
    parts = linked_in(product)
    folder = Path(folder)
    copy_licences(parts, folder / "licenses")
    text = json.dumps(document(product, version, parts), indent=2) + "\n"
    (folder / "sbom.spdx.json").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
