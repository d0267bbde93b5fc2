"""What QDoc's pages still lack: the picture, the example and the description come first and the members below, pictures
have their size, plain code is coloured, each page leads to the next, and the search field has an index."""
import html
import html.parser
import json
import re
import struct

MEMBERS_FIRST = re.compile(r'(?P<brief><!-- \$\$\$\S+-brief -->\n.*?<!-- @@@\S+ -->\n)'
                           r'(?P<facts>(?:<div class="table"><table class="alignedsummary">\n<tr><td class="memItemLeft '
                           r'rightAlign topAlign"> Header:.*?</table></div>)?)'
                           r'(?P<members>.*?)'
                           r'(?P<description>(?:<a name="details"></a>\n)?<!-- \$\$\$\S+-description -->\n.*?<!-- @@@\S+ -->\n)',
                           re.S)
SIDEBAR = re.compile(r'<div class="sidebar">(?:\n<div class="toc">\n<h3><a name="toc">Contents</a></h3>\n<ul>\n(.*?)</ul>\n</div>\n)?'
                     r'<div class="sidebar-content" id="sidebar-content"></div></div>\n(<h1 class="title">.*?</h1>\n)', re.S)
PLAIN_CODE = re.compile(r'<pre class="cpp(?: plain)?">((?:(?!</pre>|<span).)*)</pre>', re.S)
TOKEN = re.compile(r'(?P<comment>(?:^|(?<=\s))#(?![0-9a-f]{6})[^\n]*)|(?P<string>&quot;&quot;&quot;.*?&quot;&quot;&quot;|&quot;.*?&quot;)'
                   r'|\b(?P<keyword>def|return|if|is|not|None|raise|lambda|for|in|import|from|true|false|null)\b', re.S)
IMAGE = re.compile(r'<img src="([^"]+\.png)"')


def picture_size(file, page):
    """The widgets' own size for pictures with two pixels for each of theirs, two thirds of that on the start page, and a
    page's width for those of whole programs. In the text, as not all viewers can scale by a style sheet."""
    width, height = struct.unpack(">II", file.read_bytes()[16:24])
    wanted = 800 if width > 960 else width // 2
    if page == "index.html" and width <= 960:
        wanted = wanted * 2 // 3
    return wanted, height * wanted // width


def description_first(match):
    brief = re.sub(r' <a href="#details">More\.\.\.</a>', "", match["brief"])
    description = re.sub(r'<h2 id="details">Detailed Description</h2>\n', "", match["description"])
    # Its headings were below the one that is gone.
    description = re.sub(r"<(/?)h3\b", r"<\1h2", description)
    return f'<div class="facts">{match["facts"]}</div>\n{brief}{description}{match["members"]}'


def title_first(match):
    entries = (match[1] or "").splitlines()
    # Those after the description's own entry are its sections.
    details = [number for number, entry in enumerate(entries) if 'href="#details"' in entry]
    if details:
        entries = [entry.replace("level2", "level1") for entry in entries[details[0] + 1:]] + entries[:details[0]]
    if len(entries) < 2:
        return match[2]
    return "\n".join([match[2] + '<details class="toc"><summary>On this page</summary>\n<ul>', *entries,
                      "</ul>\n</details>\n"])


def described_properties(text):
    """Beside each property its type, and what its entry begins with."""
    def rows(match):
        made = []
        for link, name, kind in re.findall(r'<li class="fn">(<b><a href="[^"#]*#(\w+)-prop">.*?</a></b>) : (.*?)</li>', match[0]):
            entry = re.search(rf'<h3 class="fn" id="{name}-prop">.*?</h3>\n<p>(.*?)</p>\n(?:<p>(Default .*?)</p>)?', text)
            about = re.sub("^This property holds whether", "Whether", entry[1])
            default = re.match(r"Default .*?\.(?= [A-Z]|$)", entry[2] or "")
            made.append(f'<tr><td>{link}<br /><small>{kind}</small></td><td>{about} {default[0] if default else ""}</td></tr>\n')
        return '<table class="generic">\n' + "".join(made) + "</table>"

    return re.sub(r'(?<=<h2 id="properties">Properties</h2>\n<div class="table">)<table class="propsummary">\n.*?</table>', rows,
                  text, flags=re.S)


def coloured(match):
    def token(found):
        return f'<span class="{found.lastgroup}">{found[0]}</span>'
    return f'<pre class="cpp">{TOKEN.sub(token, match[1])}</pre>'


def reading_order(html_dir):
    """The pages that the start page lists, in its order. The same for all readers, who go through them by "next"."""
    text = (html_dir / "index.html").read_text(encoding="utf-8")
    names = re.findall(r'href="([\w-]+\.html)"', text[text.index('class="descr"'):])
    return ["index.html", *(name for name in dict.fromkeys(names) if name != "index.html")]


def listed(texts, order):
    """The start page's lists with what each page is about, from QDoc's tables, and the guides' table in the same order."""
    row = re.compile(r'<tr class="\w+ topAlign"><td class="tblName"><p><a href="([^"]+)">.*?</a></p></td>'
                     r'<td class="tblDescr"><p>(.*?)\.?</p></td></tr>\n')
    tables = ("guides.html", "orvekqtwidgets-module.html", "orvekqthost-module.html")
    about = {match[1]: match[2] for table in tables for match in row.finditer(texts[table])}
    texts["index.html"] = re.sub(r'(<li><a href="([^"]+)">[^<]+</a>)</li>',
                                 lambda link: f"{link[1]}: {about[link[2]]}</li>" if link[2] in about else link[0],
                                 texts["index.html"])
    rows = sorted(row.finditer(texts["guides.html"]), key=lambda match: order.index(match[1]))
    texts["guides.html"] = re.sub(r"(?s)(?<=<table class=\"annotated\">\n).*?(?=</table>)",
                                  lambda _: "".join(match[0] for match in rows), texts["guides.html"], count=1)


def turning(name, order, titles):
    if name not in order:
        return ""
    place = order.index(name)
    links = [("prev", place - 1, "Previous"), ("next", place + 1, "Next")]
    return '<div class="turn">' + "\n".join(
        f'<a class="{kind}" rel="{kind}" href="{order[other]}"><small>{word}</small> {titles[order[other]]}</a>'
        for kind, other, word in links if 0 <= other < len(order)) + "</div>\n"


class Sections(html.parser.HTMLParser):
    """The headings of a page with the text below each: [anchor, heading, text]."""
    SKIPPED = ("breadcrumb", "toc", "title", "turn")

    def __init__(self, text):
        super().__init__()
        self.sections = [["", "", ""]]
        self.skipped = ""
        self.depth = 0
        self.heading = ""
        self.feed(text[text.index("<body>"):])

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if not self.skipped and attrs.get("class") in self.SKIPPED:
            self.skipped, self.depth = tag, 0
        if tag == self.skipped:
            self.depth += 1
        if tag in ("br", "li", "p", "pre", "td", "th") and not self.heading:
            self.sections[-1][2] += " "
        if tag in ("h2", "h3") and attrs.get("id") and not self.skipped:
            self.sections.append([attrs["id"], "", ""])
            self.heading = tag

    def handle_endtag(self, tag):
        if tag == self.skipped:
            self.depth -= 1
            if not self.depth:
                self.skipped = ""
        if tag == self.heading:
            self.heading = ""

    def handle_data(self, data):
        if not self.skipped:
            self.sections[-1][1 if self.heading else 2] += data


def write_index(html_dir, titles):
    """search-index.js: [address, page, heading, text] for each section."""
    index = []
    for name, title in sorted(titles.items()):
        if name.endswith("-members.html"):
            continue
        for anchor, heading, text in Sections((html_dir / name).read_text(encoding="utf-8")).sections:
            text = " ".join(text.split())
            if heading or text:
                index.append([f"{name}#{anchor}" if anchor else name, title, " ".join(heading.split()), text])
    lines = ",\n".join(json.dumps(entry, ensure_ascii=False, separators=(",", ":")) for entry in index)
    (html_dir / "search-index.js").write_text(f"window.searchIndex = [\n{lines}\n];\n", encoding="utf-8")


def style_help(html_dir):
    """Puts the style sheet into the help file, which QDoc does not, with the light colours for viewers without variables."""
    style = html_dir / "style/orvekqtwidgets.css"
    text = style.read_text(encoding="utf-8")
    light = dict(re.findall(r"--(\w+): (#\w+);", text[:text.index("@media")]))

    def resolved(match):
        return re.sub(r"var\(--(\w+)\)", lambda name: light[name[1]], match[0]) + " " + match[0]

    style.write_text(re.sub(r"[\w-]+: [^;{}]*var\([^;]*;", resolved, text), encoding="utf-8")
    help_project = html_dir / "orvekqtwidgets.qhp"
    text = help_project.read_text(encoding="utf-8")
    text = text.replace("<files>\n", "<files>\n<file>style/orvekqtwidgets.css</file>\n", 1)
    help_project.write_text(text, encoding="utf-8")


def finish(html_dir):
    """Returns complaints."""
    complaints = []
    order = reading_order(html_dir)
    texts = {path.name: path.read_text(encoding="utf-8") for path in html_dir.glob("*.html")}
    titles = {name: html.unescape(re.search(r"<title>(?:orvek::\w+::)?(.*?)(?: \| .*)?</title>", text)[1])
              for name, text in texts.items()}
    listed(texts, order)
    for name, text in texts.items():
        def sized(match, name=name):
            if not (html_dir / match[1]).is_file():
                return match[0] # the check of links names it
            return '<img src="{}" width="{}" height="{}"'.format(match[1], *picture_size(html_dir / match[1], name))

        # QDoc knows of one page with classes only.
        if name.startswith("orvek-host"):
            text = text.replace('<li><a href="orvekqtwidgets-module.html">Widgets and Interfaces</a></li>',
                                '<li><a href="orvekqthost-module.html">Host Library</a></li>')
        text = described_properties(text)
        text = SIDEBAR.sub(title_first, MEMBERS_FIRST.sub(description_first, text, count=1))
        text = IMAGE.sub(sized, PLAIN_CODE.sub(coloured, text))
        text = text.replace("</div>\n<script", f"{turning(name, order, titles)}</div>\n<script")
        (html_dir / name).write_text(text, encoding="utf-8")
        complaints += [f"{name}: no text in place of {picture}" for picture in re.findall(r"<img [^>]*>", text)
                       if not re.search(r'alt="[^"]', picture)]
    complaints += [f"{name}: the start page does not list it" for name in texts
                   if name not in order and not re.search(r"-members|^orvek(-\w+)?\.html|-module|guides\.html", name)]
    # QDoc sorts the guides by their titles.
    help_project = html_dir / "orvekqtwidgets.qhp"
    text = help_project.read_text(encoding="utf-8")
    guides = re.search(r'(?<=title="Guides">\n)(?:\s*<section ref="[^"]+" title="[^"]+"/>\n)+', text)
    lines = sorted(guides[0].splitlines(True), key=lambda line: order.index(re.search('ref="([^"]+)"', line)[1]))
    help_project.write_text(text.replace(guides[0], "".join(lines)), encoding="utf-8")
    style_help(html_dir)
    write_index(html_dir, titles)
    return complaints
