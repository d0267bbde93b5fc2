"""Writes what the pages say about members, and the descriptions of classes, from the comments in the installed headers.
Structs of plain data are classes whose members are variables.

A comment (//!) serves the function below it with its overloads and its setter. One that begins with "Each", or is the first
and only one between two blank lines, serves all functions below it. Functions that read or write a property are part of
the property's entry. A page fetches the first sentence about its class with `\\include briefs.qdocinc NAME`, and the rest
with `\\include classes.qdocinc NAME`."""
import itertools
import re

CLASS = re.compile(r"(?:class|struct) (?:\w+_EXPORT )?(\w+)\b(?!.*;)")
COMMENT = re.compile(r"\s*//! ?(.*)")
ACCESS = re.compile(r"(public|protected|private|signals|Q_SIGNALS)\b[\w ]*:$")
PROPERTY = re.compile(r"Q_PROPERTY\(.*?(\w+) READ (\w+)(?: WRITE (\w+))?")
FUNCTION = re.compile(r"(?:(?:explicit|virtual|static|inline|Q_INVOKABLE|\w+_EXPORT|\[\[\w+\]\]) )*"
                      r"(.*?)(~?\w+)\((.*)\)( const)?(?: noexcept)?(?: override)?(?: = 0| = default)?(?:;| ?\{.*\})$")
VARIABLE = re.compile(r"(.*?\W)(\w+)(?: = .*)?;$")
ENUMERATION = re.compile(r"((?:^ *//!.*\n)*)( *)enum class (\w+)\n *\{\n((?:.*\n)*?) *\};", re.M)
FREE_FUNCTION = re.compile(r"((?:^//!.*\n)*)\w+_EXPORT (.*\w )(\w+)(\(.*\));", re.M)
# Qt documents what is overridden; the others are not for hosts.
EXEMPT = re.compile(r"^[^~]*\boverride\b|= delete|^(friend|using|class|struct|enum|QT_|Q_(?!PROPERTY|INVOKABLE))")


def installed_headers(folder):
    """The headers of the engine's interfaces, of templates, and those with an exported class or a struct with exports."""
    build = (folder / "Host/CMakeLists.txt").read_text(encoding="utf-8")
    templates = re.search(r"ORVEK_HOST_TEMPLATES ([^)]*)", build)[1]
    return [path for path in sorted(folder.rglob("*.h"))
            if path.relative_to(folder).parts[0] in ("Base", "CrossPlatform") or path.stem in templates.split()
            or re.search(r"^class \w+_EXPORT |^struct \w+\n(?s:.*)_EXPORT ", path.read_text(encoding="utf-8"), re.M)]


def serves_block(lines, first):
    """Whether the comment that begins there is for all functions below it."""
    if lines[first].strip().startswith("//! Each "):
        return True

    def ends(line):
        return not line.strip() or ACCESS.match(line.strip())
    declared = itertools.dropwhile(COMMENT.match, itertools.takewhile(lambda line: not ends(line), lines[first:]))
    return ends(lines[first - 1]) and not any(map(COMMENT.match, declared))


def declarations(path):
    """Yields line number, class, declaration and comment of each class (without a declaration) and of each property and
    public or protected member. Declarations that share a comment share the list."""
    name = statement = served = ""
    namespaces, comment, in_comment, for_block, visible, in_body = [], [], False, False, False, False
    lines = path.read_text(encoding="utf-8").splitlines()
    for number, line in enumerate(lines, 1):
        if in_body or line.startswith("template <"):
            in_body = in_body and line.rstrip(";") != "    }"
            continue
        said = COMMENT.match(line)
        if said and not in_comment:
            comment, served, for_block = [], "", serves_block(lines, number - 1)
        in_comment = bool(said)
        if said:
            comment.append(said.group(1))
        if said or line == "{":
            continue
        in_body = bool(name) and line == "    {"
        # What is defined in the class ends where its body begins.
        statement += ";" if in_body else f" {line.split('//')[0].strip()}"
        statement = re.sub(r"\) : \w.*\{\}$", ");", statement.strip())
        ends = ":;})" if statement.startswith("Q") else ":;}"
        if name and statement and statement[-1] not in ends and statement != "Q_OBJECT":
            continue
        if CLASS.match(line):
            name, visible = "::".join([*namespaces, CLASS.match(line).group(1)]), line.startswith("struct")
            yield number, name, "", comment
        elif line.startswith("namespace "):
            namespaces.append(line.split()[1])
        elif line.startswith("};"):
            name = ""
        elif line.startswith("}") and namespaces:
            namespaces.pop()
        elif ACCESS.match(statement):
            visible = not statement.startswith("private")
        elif name and statement and not EXEMPT.search(statement):
            function, prop = FUNCTION.match(statement), PROPERTY.match(statement)
            member = function.group(2) if function else ""
            setter = "set" + re.sub("^(is|has)(?=[A-Z])", "", served)
            if not served or member == served or member.lower() == setter.lower() or for_block and member[:1].isalpha():
                shared = comment
            else:
                shared = []
            if visible or prop:
                yield number, name, statement, shared
            served, statement = served or member or "property", ""
            continue
        statement, served, comment = "", "", []


def others(path):
    """Yields a block and a name for each enumeration, and for each function beside the class that the header is named
    after; the block is empty where there is no comment."""
    text = path.read_text(encoding="utf-8")
    scope = "::".join(re.findall(r"^namespace ([\w:]+)", text, re.M))
    relates = f"\\relates {scope}::{path.stem}"
    for comment, indent, name, body in ENUMERATION.findall(text):
        values = re.findall(r"^ *(\w+)\b,?(?: *//!< (.*))?", body, re.M)
        yield comment and "\n".join([
            f"\\enum {scope}::{path.stem}::{name}" if indent else f"\\enum {scope}::{name}\n{relates}",
            marked_up(re.findall("//! ?(.*)", comment)), "",
            *(f"\\value {value} {meaning}" for value, meaning in values)]), name
    for comment, returns, function, parameters in FREE_FUNCTION.findall(text):
        names = ", ".join(f"\\a {name}" for name in re.findall(r"(\w+)(?=[,)])", parameters))
        text = re.sub("^Whether", "Returns whether", marked_up(re.findall("//! ?(.*)", comment)))
        # QDoc wants all of them named.
        yield comment and "\n".join([
            f"\\fn {returns}{scope}::{function}{parameters}", relates, text, "", f"Parameters: {names}."]), function


def marked_up(comment, parameters=()):
    """The comment for QDoc, with a line for each paragraph."""
    text = "\n".join(comment).replace("\\", "\\\\").replace("*/", "* /")
    text = "\n\n".join(part.replace("\n", " ") for part in text.split("\n\n"))
    for parameter in parameters:
        text = re.sub(rf'(?<![\w"])(?<!\\a ){parameter}\b(?![\w"(])', rf"\\a {parameter}", text)
    return text


def of_template(name, parameters, returns):
    """The name of a class template and what stands before a member's, as \\fn wants them outside of the class."""
    arguments = ", ".join(re.findall(r"\w+ (\w+)", parameters))
    inner, returns = re.match(r"(template <.*?> )?(.*)", returns).groups(default="")
    short = name.rpartition("::")[2]
    returns = re.sub(rf"^{short} ", f"{short}<{arguments}> ", returns)
    return f"{name}<{arguments}>", f"template <{parameters}> {re.sub(' = [^,>]+', '', inner)}{returns}"


def write(folder, output):
    """Writes what QDoc reads besides the pages: members.qdoc, the descriptions for \\include, and the header with all
    headers. Returns the names of the classes, and complaints about members without a comment."""
    classes, properties, accessors, functions, missing = {}, {}, {}, {}, []
    for path in installed_headers(folder):
        header = path.read_text(encoding="utf-8")
        templates = {f"orvek::host::{name}": re.sub(" = [^,]+", "", arguments)
                     for arguments, name in re.findall(r"^template <(.*)>\nclass (\w+)", header, re.M)}
        # What a class makes public of its base is described with the class.
        for base, member in re.findall(r"^    using (\w+)::(\w+);", header, re.M):
            for _, name, statement, comment in declarations(path.with_name(f"{base}.h")):
                if re.search(rf"\b{member}\(", statement):
                    classes[f"{name}::{member}"] = "", marked_up(comment)
        for number, name, statement, comment in declarations(path):
            short = name.rpartition("::")[2]
            prop, function = PROPERTY.match(statement), FUNCTION.match(statement)
            returns, member, parameters, const = function.groups(default="") if function else ("", statement, "", "")
            if prop:
                member = prop.group(1)
                properties[name, member] = [marked_up(comment)]
                accessors.update({(name, accessor): (name, member) for accessor in prop.groups()[1:]})
            elif not statement:
                # The first sentence is what lists of classes say.
                brief, _, text = re.sub(r"\.(?:\s+(?=[A-Z])|$)", ".\0", marked_up(comment), count=1).partition("\0")
                classes[name] = brief, text
            elif (name, member) in accessors and "," not in parameters:
                texts, text = properties[accessors[name, member]], marked_up(comment)
                if text and text not in texts:
                    texts.append(f"\\c {{{member}()}}: {text}" if member.startswith("set") else text)
                continue
            elif function:
                qualified = name
                if name in templates:
                    qualified, returns = of_template(name, templates[name], returns)
                if member == f"~{short}" and not comment:
                    continue
                if member == short and "parent" in parameters:
                    comment = [*(comment or [f"Makes a {short}."]), "It is a child of parent."]
                parameters = re.sub(" = [^,]+", "", parameters)
                lines, _, names = functions.setdefault(id(comment), ([], comment, []))
                lines.append(f"\\fn {returns}{qualified}::{member}({parameters}){const}")
                names += re.findall(r"(\w+)(?:,|$)", parameters)
            elif VARIABLE.match(statement):
                member = VARIABLE.match(statement).group(2)
                functions.setdefault(id(comment), ([], comment, []))[0].append(f"\\variable {name}::{member}")
            if not comment:
                missing.append(f"{path}:{number}: no comment for {name}{'::' if member else ''}{member}")
    blocks = []
    for lines, comment, names in functions.values():
        # QDoc expects all parameters and a "returns" only if an entry is for one function.
        text = marked_up(comment, names if len(lines) == 1 else ())
        if len(lines) == 1 and lines[0].startswith("\\fn bool "):
            text = re.sub("^Whether", "Returns whether", text)
        blocks.append("\n".join([*lines, text]))
    for (name, member), texts in properties.items():
        texts[0] = re.sub(r"\. (?=[A-Z])", ".\n\n", texts[0], count=1)
        blocks.append("\n\n".join([f"\\property {name}::{member}\n\\brief {texts[0]}", *texts[1:]]))
    for path in installed_headers(folder):
        for block, name in others(path):
            blocks.append(block)
            if not block:
                missing.append(f"{path}: no comment for {name}")
    # QDoc takes the first name that begins with the one it looks for.
    classes = dict(sorted(classes.items()))
    files = {"members.qdoc": [f"/*!\n{block}\n*/" for block in blocks],
             "briefs.qdocinc": [f"//! [{name}]\n\\brief {brief}\n//! [{name}]" for name, (brief, _) in classes.items()],
             "classes.qdocinc": [f"//! [{name}]\n{text}\n//! [{name}]" for name, (_, text) in classes.items()],
             "module.h": [f"#include <{path.relative_to(folder.parent)}>" for path in installed_headers(folder)]}
    for name, parts in files.items():
        (output / name).write_text("\n".join(parts) + "\n", encoding="utf-8")
    return [name for name, (brief, _) in classes.items() if brief], missing
