#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Follows every link of the manual's pages: check_manual.py MARKDOWN HTML"""
import re
import sys
from html.parser import HTMLParser
from pathlib import Path

PICTURES_LIMIT = 3_000_000


class Page(HTMLParser):
    """A page's links and pictures, and the names that links may lead to."""

    def __init__(self, path):
        super().__init__()
        self.targets, self.names, self.title, self.language, self.scripts = [], set(), "", "", 0
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.targets += [values[key] for key in ("href", "src") if key in values]
        if "id" in values:
            self.names.add(values["id"])
        if tag == "html":
            self.language = values.get("lang", "")
        self.scripts += tag == "script"
        self.in_title = tag == "title"

    def handle_data(self, data):
        if getattr(self, "in_title", False):
            self.title += data
            self.in_title = False


def faults_of_html(folder):
    pages = {path.name: Page(path) for path in sorted(folder.glob("*.html"))}
    seen, waiting = set(), ["index.html"]
    while waiting:
        name = waiting.pop()
        if name in seen or name not in pages:
            continue
        seen.add(name)
        page = pages[name]
        if not page.title.endswith("Orbivue") or page.language != "en" or page.scripts:
            yield f"{name}: no title, no language, or a script"
        for target in page.targets:
            if target.startswith("https://"):
                continue
            path, _, part = target.partition("#")
            path = path or name
            if not (folder / path).is_file():
                yield f"{name}: {target} is not there"
            elif part and part not in pages[path].names:
                yield f"{name}: {target} leads to no heading"
            waiting.append(path)
    yield from (f"{name}: no link leads here" for name in pages.keys() - seen)


def faults_of_markdown(folder):
    """Links that the pages lose on their way to HTML, and pictures that no page shows."""
    used = set()
    for path in sorted(folder.glob("*.md")):
        for target in re.findall(r"\]\(([^)#\s]+)", path.read_text(encoding="utf-8")):
            if not target.startswith("https://") and not (folder / target).exists():
                yield f"{path.name}: {target} is not there"
            used.add(target)
    for path in sorted((folder / "pictures").iterdir()):
        if f"pictures/{path.name}" not in used:
            yield f"{path.name}: no page shows it"
    size = sum(path.stat().st_size for path in (folder / "pictures").iterdir())
    if size > PICTURES_LIMIT:
        yield f"the pictures have {size} bytes"


def main():
    markdown, html = (Path(argument) for argument in sys.argv[1:3])
    faults = dict.fromkeys([*faults_of_markdown(markdown), *faults_of_html(html)])
    sys.exit("\n".join(faults) if faults else 0)


if __name__ == "__main__":
    main()
