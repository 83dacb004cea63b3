#!/usr/bin/env python3
"""Turns the documents for users into pages that every browser shows without a network.

guide.py DOCS OUTPUT    both folders; fails when a link of a page leads nowhere
"""
import html
import re
import shutil
import subprocess
import sys
from pathlib import Path
from urllib.parse import unquote

PAGES = {
    "bedienung": "de",
    "meldungen": "de",
    "build-server": "de",
    "com-reference": "en",
    "file-formats": "en",
    "json": "en",
    "../samples/README": "en",
}
# Where the other files of the samples lie beside the pages.
SAMPLES = "../Beispiele/"

FRAME = """<!DOCTYPE html>
<html lang="{language}">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Tessary: {title}</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ font: 1rem/1.55 "Segoe UI", "Liberation Sans", sans-serif; max-width: 52rem; margin: 2rem auto; padding: 0 1rem; }}
h1, h2, h3 {{ line-height: 1.25; margin: 1.8em 0 .5em; }}
code, pre {{ font: .92em/1.45 Consolas, "Liberation Mono", monospace; background: rgba(128, 128, 128, .14); border-radius: 3px; }}
code {{ padding: .1em .25em; }}
pre {{ padding: .7em .9em; overflow-x: auto; }}
pre code {{ padding: 0; background: none; font-size: 1em; }}
table {{ border-collapse: collapse; display: block; overflow-x: auto; }}
th, td {{ border: 1px solid rgba(128, 128, 128, .5); padding: .3em .6em; text-align: left; vertical-align: top; }}
img {{ max-width: 100%; height: auto; }}
</style>
</head>
<body>
{body}
</body>
</html>
"""


def page_name(document):
    return ("beispiele" if document == "../samples/README" else document) + ".html"


def page_link(target):
    """Where a link of a document leads when it has become a page."""
    file, mark, anchor = target.partition("#")
    file = file.removeprefix("../docs/")
    if file.endswith(".md") and file[:-3] in PAGES:
        file = page_name(file[:-3])
    elif file.startswith("../samples/"):
        file = SAMPLES + file.removeprefix("../samples/")
    return file + mark + anchor


def with_anchor(heading):
    """A heading with the name that links call it by."""
    text = html.unescape(re.sub(r"<[^>]*>", "", heading[2]))
    name = re.sub(r"[^\w\s-]", "", text).strip().lower().replace(" ", "-")
    return f'<h{heading[1]} id="{name}">{heading[2]}</h{heading[1]}>'


def make_page(source, language):
    text = source.read_text(encoding="utf-8")
    # Comments are for those who write, not for those who read.
    text = re.sub(r"^ *<!--.*?-->\n", "", text, flags=re.M | re.S)
    title = re.search(r"^# (.*)$", text, re.M).group(1)
    body = subprocess.run(["cmark-gfm", "--unsafe", "-e", "table", "-e", "autolink"], input=text, check=True,
                          capture_output=True, text=True, encoding="utf-8").stdout
    body = re.sub(r"<h([1-6])>(.*?)</h\1>", with_anchor, body)
    body = re.sub(r'(href|src)="(?![a-z]+:)([^"]*)"',
                  lambda found: f'{found[1]}="{html.escape(page_link(html.unescape(found[2])))}"', body)
    return FRAME.format(language=language, title=html.escape(title), body=body)


def check_links(folder):
    pages = {page.name: page.read_text(encoding="utf-8") for page in folder.glob("*.html")}
    for name, text in pages.items():
        for target in re.findall(r'(?:href|src)="(?![a-z]+:)([^"]*)"', text):
            file, _, anchor = unquote(html.unescape(target)).partition("#")
            if not (folder / file).exists():
                sys.exit(f"{name}: a link leads nowhere: {target}")
            if anchor and f'id="{anchor}"' not in pages.get(file or name, f'id="{anchor}"'):
                sys.exit(f"{name}: a link leads to no heading: {target}")


def main(docs, output):
    docs, output = Path(docs), Path(output)
    output.mkdir(parents=True)
    for name, language in PAGES.items():
        (output / page_name(name)).write_text(make_page(docs / f"{name}.md", language), encoding="utf-8")
    shutil.copytree(docs / "bilder", output / "bilder")
    check_links(output)


if __name__ == "__main__":
    main(*sys.argv[1:])
