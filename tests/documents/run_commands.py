#!/usr/bin/env python3
"""Runs the commands in the documents, or checks their syntax where they are marked, and follows links.

run_commands.py TESSARY SOURCES                   "sh" blocks by bash; syntax of the others
run_commands.py --wine SOURCES DRIVE_C            "bat" and "vbs" blocks under Wine, with Tessary installed

A block is run unless the line before it is a comment "<!-- not run: REASON -->". The blocks of one
document run in order in one folder, which PREPARE fills. Languages that no tool here knows
(groovy, powershell) are only seen to be marked. Ends with "N passed, N failed".
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree
from pathlib import Path

# Folders as the documents call them.
PREPARE = """
cp -r "$SOURCES/samples" .
cp -r samples/hersteller/version3 samples/hersteller/version4 samples/kunde/Berichte .
mkdir -p Differenzen kunden/muster kunden/probe tmp
tessary diff-folder version3 version4 Differenzen --quiet
tessary diff-folder version4 samples/hersteller/version5 Differenzen --quiet
cp -r Berichte kunden/muster
cp -r Berichte kunden/probe
"""
# Two runs, so that there are older backups too.
PREPARE_BACKUPS = """
mkdir erste
cp Differenzen/3_4* erste
tessary convert-folder erste Berichte --quiet
tessary convert-folder Differenzen Berichte --quiet
"""
MARKED_LANGUAGES = {"groovy", "powershell"}
CHECKED_LANGUAGES = {"yaml", "json", "xml", "cmake"}
RUN_LANGUAGES = {"sh", "bat", "vbs"}
COMMAND = re.compile(r"^\s*(tessary|cmake|scripts/|cp|copy|mkdir|sudo|apt|git|parallel|export|regsvr32) ?", re.M)


class Block:
    def __init__(self, document, match):
        text = document.read_text(encoding="utf-8")
        self.line = text.count("\n", 0, match.start()) + 1
        self.name = f"{document.name}:{self.line}"
        self.language = match[2].strip()
        self.text = re.sub(f"^{match[1]}", "", match[3], flags=re.M)
        before = text[: match.start()].rstrip("\n").rsplit("\n", 1)[-1]
        self.marked = re.fullmatch(r"\s*<!-- not run: \S.* -->", before) is not None


def blocks_of(document):
    text = document.read_text(encoding="utf-8")
    return [Block(document, match) for match in
            re.finditer(r"^( *)```([^\n`]*)\n(.*?)^ *```$", text, re.M | re.S)]


def documents_of(sources):
    names = ["README.md", "CONTRIBUTING.md", "SECURITY.md", "samples/README.md"]
    return [sources / name for name in names] + sorted((sources / "docs").glob("*.md"))


def run(command, folder, **environment):
    subprocess.run(command, cwd=folder, env={**os.environ, **environment}, check=True, timeout=300,
                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def bash(script, folder, *, only_check=False, **environment):
    run(["bash", *(["-n"] if only_check else ["-euo", "pipefail"]), "-c", script], folder, **environment)


def check_syntax(block, folder):
    if block.language == "sh":
        bash(block.text, folder, only_check=True)
    elif block.language == "json":
        json.loads(block.text)
    elif block.language == "xml":
        xml.etree.ElementTree.fromstring(f"<text>{block.text}</text>")
    elif block.language == "cmake":
        # Unknown targets and packages are no errors of syntax.
        (folder / "check.cmake").write_text(f"function(never_called)\n{block.text}\nendfunction()\n")
        run(["cmake", "-P", "check.cmake"], folder)
    elif block.language == "yaml":
        try:
            import yaml
        except ImportError:
            print(f"{block.name}: not checked, there is no tool for YAML")
            return
        for job in yaml.safe_load(block.text)["jobs"].values():
            for step in job["steps"]:
                bash(step.get("run", ":"), folder, only_check=True)


def run_here(block, folder, tessary, sources):
    if block.language not in RUN_LANGUAGES | CHECKED_LANGUAGES | MARKED_LANGUAGES | {""}:
        raise ValueError(f"unknown language {block.language}")
    if not block.language and COMMAND.search(block.text):
        raise ValueError("commands without a language")
    if block.language in MARKED_LANGUAGES and not block.marked:
        raise ValueError("neither run nor marked")
    if block.language == "sh" and not block.marked:
        bash(block.text.replace("/tmp/", f"{folder}/tmp/"), folder, SOURCES=str(sources),
             PATH=f"{Path(tessary).parent}:{os.environ['PATH']}")
    else:
        check_syntax(block, folder)


def anchors_of(document):
    text = re.sub(r"^ *```.*?^ *```$", "", document.read_text(encoding="utf-8"), flags=re.M | re.S)
    return {re.sub(r"[^\w\s-]", "", heading).strip().lower().replace(" ", "-")
            for heading in re.findall(r"^#+ (.*)$", text, re.M)}


def broken_links(document):
    """The links of a document that lead to no file or no heading of the sources."""
    text = re.sub(r"^ *```.*?^ *```$", "", document.read_text(encoding="utf-8"), flags=re.M | re.S)
    for target in re.findall(r"\]\(([^)\s]+)\)|<img src=\"([^\"]+)\"", text):
        target = target[0] or target[1]
        if re.match(r"[a-z]+:", target):
            continue
        file, _, anchor = target.partition("#")
        path = (document.parent / file) if file else document
        if not path.exists() or (anchor and anchor not in anchors_of(path)):
            yield target


def old_versions(document, sources):
    """The names of packages in a document that are not those of this version."""
    version = re.search(r"project\(Tessary VERSION ([0-9.]+)", (sources / "CMakeLists.txt").read_text())[1]
    text = document.read_text(encoding="utf-8")
    for name, found in re.findall(r"(Tessary-([0-9.]+)-windows)", text) + re.findall(r"(tessary_([0-9.]+)_amd64)", text):
        if found != version:
            yield name


def prepare(document, folder, tessary, sources):
    environment = {"SOURCES": str(sources), "PATH": f"{Path(tessary).parent}:{os.environ['PATH']}"}
    bash(PREPARE, folder, **environment)
    if document.name == "bedienung.md":
        bash(PREPARE_BACKUPS, folder, **environment)
    (folder / "build/release").mkdir(parents=True)
    (folder / "build/release/tessary").symlink_to(tessary)


def run_under_wine(block, folder, drive):
    if block.marked:
        return
    if block.language == "bat":
        lines = [line + "\r\nif errorlevel 1 exit /b 1\r\n" for line in block.text.splitlines() if line.strip()]
        (folder / "block.bat").write_bytes("".join(lines).encode("cp1252"))
        run(["wine", "cmd", "/c", "block.bat"], folder)
    elif block.language == "vbs":
        # cscript tells of no error in a script; that there are backups shows that it has worked.
        product = drive / "Produkt"
        shutil.copytree(folder / "Berichte", product / "Berichte")
        shutil.copytree(folder / "Differenzen", product / "Differenz")
        (folder / "block.vbs").write_bytes(block.text.replace("\n", "\r\n").encode("cp1252"))
        try:
            run(["wine", "cscript", "//nologo", "block.vbs"], folder)
            if not (product / "BerichteBak/Rechnung.lst").exists():
                raise ValueError("the script has done nothing")
        finally:
            shutil.rmtree(product)


def main(arguments):
    wine = arguments[0] == "--wine"
    sources = Path(arguments[1]).resolve()
    tessary = str(sources / "build/release/tessary") if wine else str(Path(arguments[0]).resolve())
    passed = failed = 0
    for document in documents_of(sources):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            prepare(document, folder, tessary, sources)
            for target in [] if wine else broken_links(document):
                failed += 1
                print(f"{document.name}: a link leads nowhere: {target}")
            for package in old_versions(document, sources):
                failed += 1
                print(f"{document.name}: not this version: {package}")
            for block in blocks_of(document):
                if wine and block.language not in ("bat", "vbs"):
                    continue
                try:
                    if wine:
                        run_under_wine(block, folder, Path(arguments[2]))
                    else:
                        run_here(block, folder, tessary, sources)
                    passed += 1
                except (subprocess.SubprocessError, ValueError, SyntaxError, KeyError) as problem:
                    failed += 1
                    print(f"{block.name}: {problem}")
                    print((getattr(problem, "stdout", None) or b"").decode("utf-8", "replace"))
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
