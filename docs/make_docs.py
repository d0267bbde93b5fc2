#!/usr/bin/env python3
"""Makes the documentation: HTML and a Qt help file. Fails when QDoc says anything, when a link or picture is missing, or
when a property, signal or function of a public class has no entry. scripts/docs calls it."""
import argparse
import html.parser
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import urllib.parse

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


def run_qdoc(options, html_dir):
    """Runs both of QDoc's phases and returns what it complained about."""
    complaints = []
    command = [options.qdoc, "-outputdir", str(html_dir)]
    command += [f"-I{path}" for path in options.include]
    for phase in ("-prepare", "-generate"):
        result = subprocess.run(command + [phase, str(DOCS / "orvekqtwidgets.qdocconf")], text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        complaints += [line for line in result.stdout.splitlines() if line and not line.startswith("qt.qdoc: ")]
        if result.returncode != 0:
            complaints.append(f"qdoc {phase} ended with {result.returncode}")
    return complaints


def set_image_sizes(html_dir):
    """Tells viewers the sizes, as not all can scale by a style sheet: the widgets' own for pictures with two pixels for
    each of theirs, two thirds of that on the index page, and a page's width for those of whole programs."""
    def size_of(file, page):
        width, height = struct.unpack(">II", file.read_bytes()[16:24])
        wanted = 800 if width > 960 else width // 2
        if page.name == "index.html":
            wanted = wanted * 2 // 3
        return wanted, height * wanted // width

    for page in html_dir.glob("*.html"):
        def sized(match, page=page):
            file = html_dir / match.group(1)
            if not file.is_file():
                return match.group(0)
            width, height = size_of(file, page)
            return f'<img src="{match.group(1)}" width="{width}" height="{height}"'

        text = page.read_text(encoding="utf-8")
        page.write_text(re.sub(r'<img src="([^"]+\.png)"', sized, text), encoding="utf-8")


def dead_links(html_dir):
    pages = {path.name: Page(path) for path in html_dir.glob("*.html")}
    dead = []
    for name, page in sorted(pages.items()):
        for link in page.links:
            target = urllib.parse.urlsplit(link)
            if target.scheme or target.netloc:
                continue
            file = urllib.parse.unquote(target.path) or name
            if not (html_dir / file).is_file():
                dead.append(f"{name}: no file for {link}")
            elif target.fragment and file in pages and target.fragment not in pages[file].anchors:
                dead.append(f"{name}: no anchor for {link}")
    used = {urllib.parse.unquote(urllib.parse.urlsplit(link).path) for page in pages.values() for link in page.links}
    dead += [f"{name}: no page leads to it" for name in sorted(pages) if name != "index.html" and name not in used]
    return dead


def public_members(header):
    """Class and member names in the public part of a header; overrides and slots for children are left out."""
    text = re.sub(r"//.*", "", header.read_text(encoding="utf-8"))
    for match in re.finditer(r"^class (?:\w+_EXPORT )?(\w+)[^;{]*\{(.*?)^\};", text, re.M | re.S):
        name, body = match.groups()
        public = True
        for line in body.splitlines():
            access = re.match(r"\s*(public|protected|private|Q_SIGNALS)\b.*:$", line)
            if access:
                public = access.group(1) in ("public", "Q_SIGNALS")
            prop = re.match(r"\s*Q_PROPERTY\(.*?(\w+) READ", line)
            function = re.match(r"\s*[\w:<>*& ]*?\b(~?\w+)\(.*(;|\{\}|= 0;)$", line)
            if prop:
                yield name, prop.group(1)
            elif public and function and "override" not in line and not re.match(r"on_|Reserved|Q_|~", function.group(1)):
                yield name, function.group(1)


def missing_entries(html_dir):
    pages = {}
    for path in html_dir.glob("*.html"):
        if not path.name.endswith("-members.html"):
            pages[path.name.rpartition("-")[2][:-len(".html")]] = Page(path).anchors
    missing = []
    for header in sorted(HEADERS.rglob("*.h")):
        text = header.read_text(encoding="utf-8")
        if "ORVEKQTWIDGETS_EXPORT" not in text and "PlugIns" in header.parts:
            continue
        for name, member in public_members(header):
            anchors = pages.get(name.lower())
            if anchors is None:
                missing.append(f"{name}: no page")
                continue
            # A property's page entry stands for its getter and setter.
            wanted = {member, f"{member}-prop"}
            setter = re.match(r"set(\w)(\w*)|is(\w)(\w*)", member)
            if setter:
                first, rest = (group for group in setter.groups() if group is not None)
                wanted.add(f"{first.lower()}{rest}-prop")
            if not wanted & anchors:
                missing.append(f"{name}::{member}: no entry")
    return missing


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
    complaints = run_qdoc(options, html_dir)
    if not complaints:
        set_image_sizes(html_dir)
        complaints = dead_links(html_dir) + missing_entries(html_dir)
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
