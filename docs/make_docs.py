#!/usr/bin/env python3
"""Makes the documentation: HTML and a Qt help file. Fails when QDoc says anything, when a link or picture is missing,
when a picture has no text in its place, when a class has no page, or when a member has no comment in its header.
scripts/docs calls it."""
import argparse
import html.parser
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.parse

import header_comments
import pages

DOCS = pathlib.Path(__file__).resolve().parent
HEADERS = DOCS.parent / "Orvek"


class Page(html.parser.HTMLParser):
    """The anchors, links and text of a page."""

    def __init__(self, path):
        super().__init__()
        self.anchors = set()
        self.links = []
        self.text = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("id", "name") and value:
                self.anchors.add(value)
            elif name in ("href", "src") and value:
                self.links.append(value)

    handle_startendtag = handle_starttag

    def handle_data(self, data):
        self.text.append(data)


def run_qdoc(options, html_dir, generated):
    """Runs both of QDoc's phases and returns what it complained about."""
    complaints = []
    command = [options.qdoc, "-outputdir", str(html_dir)]
    command += [f"-I{path}" for path in (generated, *options.include)]
    for phase in ("-prepare", "-generate"):
        result = subprocess.run(command + [phase, str(DOCS / "orvekqtwidgets.qdocconf")], text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, errors="replace",
                                env={**os.environ, "ORVEK_HEADER_COMMENTS": generated})
        # The members of a template take name and member all alike, which is said once.
        complaints += [line for line in result.stdout.splitlines() if line and not line.startswith("qt.qdoc: ")
                       and not re.search(r"Undocumented parameter '\w+' in orvek::host::Descri", line)]
        if result.returncode != 0:
            complaints.append(f"qdoc {phase} ended with {result.returncode}")
    return complaints


def dead_links(html_dir):
    parsed = {path.name: Page(path) for path in html_dir.glob("*.html")}
    dead = []
    for name, page in sorted(parsed.items()):
        for link in page.links:
            target = urllib.parse.urlsplit(link)
            if target.scheme or target.netloc:
                continue
            file = urllib.parse.unquote(target.path) or name
            if not (html_dir / file).is_file():
                dead.append(f"{name}: no file for {link}")
            elif target.fragment and file in parsed and target.fragment not in parsed[file].anchors:
                dead.append(f"{name}: no anchor for {link}")
    used = {urllib.parse.unquote(urllib.parse.urlsplit(link).path) for page in parsed.values() for link in page.links}
    dead += [f"{name}: no page leads to it" for name in sorted(parsed) if name != "index.html" and name not in used]
    return dead


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--qdoc", required=True)
    parser.add_argument("--qhelpgenerator", required=True)
    parser.add_argument("--output", required=True, type=pathlib.Path, help="gets html/ and orvekqtwidgets.qch")
    parser.add_argument("--include", nargs="+", default=[], help="include paths of the library and of Qt")
    options = parser.parse_args()

    html_dir = options.output / "html"
    shutil.rmtree(html_dir, ignore_errors=True)
    options.output.mkdir(parents=True, exist_ok=True)
    # Not below the output folder: QDoc reads its path from the environment as Latin-1.
    with tempfile.TemporaryDirectory() as generated:
        classes, complaints = header_comments.write(HEADERS, pathlib.Path(generated))
        complaints += run_qdoc(options, html_dir, generated)
        # To fix a comment one needs the member's name, not a line of a temporary file.
        lines = (pathlib.Path(generated) / "members.qdoc").read_text(encoding="utf-8").splitlines()
        complaints = [re.sub(r"^\S+members\.qdoc:(\d+)", lambda match: lines[int(match.group(1))], line)
                      for line in complaints]
    complaints += [f"{name}: no page" for name in classes
                   if not (html_dir / f"{name.lower().replace('::', '-')}.html").is_file()]
    if not complaints:
        shutil.copy(DOCS / "search.js", html_dir)
        complaints = pages.finish(html_dir) + dead_links(html_dir)
    if complaints:
        sys.exit("\n".join(complaints))
    help_file = options.output / "orvekqtwidgets.qch"
    result = subprocess.run([options.qhelpgenerator, str(html_dir / "orvekqtwidgets.qhp"), "-o", str(help_file)],
                            text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    if result.returncode != 0 or not help_file.is_file():
        sys.exit(result.stdout)
    print(f"{len(list(html_dir.glob('*.html')))} pages in {html_dir}, and {help_file}")


if __name__ == "__main__":
    main()
