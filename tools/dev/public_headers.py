"""Reads the declarations of the public headers, for the scripts that derive files from them.

A header starts with a comment about its topic. Declarations stand in groups: a comment, and the
declarations up to the next comment or blank line. A group is about all its declarations.

Declarations bear the annotations of include/uxtree/frame/annotate.h. They are cut off first, and
become the parameters and the result of a declaration. One that is missing or contradicts the type
is an error.
"""

import pathlib
import re
import sys
from dataclasses import dataclass, field

ROOMS = ["frame", "tree", "data", "outline", "import", "analysis", "report"]
EXPORT = "UXTREE_API"
KIT_ROOMS = ["kit"]
KIT_EXPORT = "UXKIT_API"
VOCABULARY = "uxtree/frame/annotate.h"

DIRECTIONS = {
    "UX_IN": "in",
    "UX_EDITS": "edits",
    "UX_OUT": "out",
    "UX_OUT_RELEASED": "out_released",
    "UX_INOUT": "inout",
    "UX_APPENDS": "appends",
    "UX_GETSET": "getset",
}
ELEMENTS = {
    "UX_INTS": "int",
    "UX_DOUBLES": "double",
    "UX_BOOLS": "bool",
    "UX_STRINGS": "string",
    "UX_ANY": "any",
}
FLAGS = {
    "UX_OPT": "optional",
    "UX_NULL_COUNTS": "null_counts",
    "UX_MAY_BE_INVALID": "may_be_invalid",
    "UX_FILE": "file",
}
KINDS = {
    "done", "yes", "count", "zero", "stored", "number", "says_nothing", "text", "handle", "borrowed"
}
HANDLES = {"UXXmlWrapperBase"}
ARRAYS = ("CArray<", "CWBOStringArray", "UXScriptObject", "UXVectorDesc")


class Contradiction(Exception):
    """An annotation that is missing, unknown or at odds with its declaration."""


@dataclass
class Parameter:
    type: str
    name: str
    default: str = ""
    direction: str = ""  # "" for what is passed by value
    element: str = ""  # of a script array
    optional: bool = False  # may be null
    null_counts: bool = False  # and null does not mean the same as ""
    may_be_invalid: bool = False
    file: bool = False
    bits: list = field(default_factory=list)  # (name, value)

    def is_output(self):
        return self.direction not in ("", "in", "edits")


@dataclass
class Returns:
    kind: str  # "nothing" without a result
    codes: list = field(default_factory=list)  # (name, value); None as value: any other code


@dataclass
class Declaration:
    name: str
    text: str  # one line, without the marks of the library and without annotations
    is_script: bool
    result: str = ""
    parameters: list = field(default_factory=list)
    returns: Returns = field(default_factory=lambda: Returns("nothing"))
    blocks: bool = False
    native_only: str = ""
    lines: list = field(default_factory=list)  # of a class, as written in the header

    def is_class(self):
        return self.text.startswith("class ")


@dataclass
class Group:
    comment: list  # lines without "// "
    declarations: list = field(default_factory=list)


@dataclass
class Header:
    path: str  # as it is included
    about: list  # the topic's comment
    groups: list = field(default_factory=list)
    structs: dict = field(default_factory=dict)  # name: text

    def declarations(self):
        return [each for group in self.groups for each in group.declarations]


# --- annotations --------------------------------------------------------------------------------


def split_outside(text, separator=","):
    """The parts of a list whose entries may hold brackets of their own."""
    parts, depth, start = [], 0, 0
    for at, character in enumerate(text):
        depth += (character in "(<[{") - (character in ")>]}")
        if character == separator and depth == 0:
            parts.append(text[start:at])
            start = at + 1
    parts.append(text[start:])
    return [part.strip() for part in parts if part.strip()]


def cut_call(text, macro):
    """The text without macro(...), and what stood in the brackets; None when it is not there."""
    match = re.search(rf"\s*\b{macro}\(", text)
    if not match:
        return text, None
    depth = 1
    for end in range(match.end(), len(text)):
        depth += (text[end] == "(") - (text[end] == ")")
        if depth == 0:
            return text[: match.start()] + text[end + 1 :], text[match.end() : end]
    raise Contradiction(f"{macro} has no end")


def named_values(text):
    """The entries "name = value" of a list."""
    pairs = []
    for entry in split_outside(text):
        name, equals, value = (part.strip() for part in entry.partition("="))
        if not equals or not re.fullmatch(r"[a-z]\w*", name):
            raise Contradiction(f'expected name = value, not "{entry}"')
        pairs.append((name, None if value == "other" else int(value, 0)))
    return pairs


def outer_type(type):
    return re.sub(r"<.*>", "<>", type)


def is_handle(type):
    return type.removeprefix("const ").rstrip("*& ") in HANDLES


def check_parameter(parameter, elements):
    type, direction = parameter.type, parameter.direction
    outer = outer_type(type)
    indirect = outer.endswith(("*", "&"))
    constant = type.startswith("const ")
    script = type == "UXScriptObject*"
    if not indirect:
        if direction or elements or parameter.optional:
            raise Contradiction("is passed by value, so no annotation fits it")
        return
    if not direction and not (constant and outer.endswith("&")):
        raise Contradiction("has no direction")
    if constant and direction not in ("", "in"):
        raise Contradiction(f'is constant, so it is not "{direction}"')
    if direction == "edits" and not is_handle(type):
        raise Contradiction("is no handle of a tree that could be edited")
    if direction == "out_released" and not is_handle(type):
        raise Contradiction("is no handle that could be released")
    if direction == "appends" and not type.startswith(ARRAYS):
        raise Contradiction("is no array that could be added to")
    if script != bool(elements):
        raise Contradiction("needs the type of its elements" if script else "is no script array")
    if parameter.optional and outer.endswith("&"):
        raise Contradiction("is a reference, which is never null")
    if parameter.null_counts and type != "const char*":
        raise Contradiction("is no text")
    if parameter.file and type != "const char*":
        raise Contradiction("is no name of a file")
    if parameter.may_be_invalid and not is_handle(type):
        raise Contradiction("is no handle")


def make_parameter(text):
    if text == "...":
        return Parameter("...", "...")
    text, bits = cut_call(text, "UX_BITS")
    marks = re.findall(r"\bUX_\w+", text)
    rest = " ".join(re.sub(r"\bUX_\w+", " ", text).split())
    rest, _, default = (part.strip() for part in rest.partition("="))
    match = re.fullmatch(r"(.+?)\s*(\w+)", rest)
    if not match:
        raise Contradiction(f'cannot be read: "{text}"')
    parameter = Parameter(match.group(1), match.group(2), default)
    elements = []
    for mark in marks:
        if mark in DIRECTIONS and not parameter.direction:
            parameter.direction = DIRECTIONS[mark]
        elif mark in ELEMENTS:
            elements.append(ELEMENTS[mark])
        elif mark in FLAGS:
            setattr(parameter, FLAGS[mark], True)
        else:
            raise Contradiction(f"parameter {parameter.name}: {mark} does not fit")
    if len(elements) > 1 or len(marks) != len(set(marks)):
        raise Contradiction(f"parameter {parameter.name}: annotated twice")
    if parameter.optional and parameter.null_counts:
        raise Contradiction(f"parameter {parameter.name}: UX_NULL_COUNTS says optional already")
    parameter.element = "".join(elements)
    parameter.optional |= parameter.null_counts
    text_marks = parameter.optional or parameter.file
    if not parameter.direction and (elements or (parameter.type == "const char*" and text_marks)):
        parameter.direction = "in"
    if bits is not None:
        parameter.bits = named_values(bits)
    try:
        check_parameter(parameter, elements)
    except Contradiction as problem:
        raise Contradiction(f"parameter {parameter.name} {problem}") from None
    return parameter


def make_returns(text, result, vocabulary):
    if text is None:
        if result != "void":
            raise Contradiction("the result has no UX_RETURNS")
        return Returns("nothing")
    if result == "void":
        raise Contradiction("there is no result for UX_RETURNS")
    kind, _, codes = (part.strip() for part in text.partition(","))
    if kind not in KINDS:
        raise Contradiction(f'"{kind}" is no kind of result')
    returns = Returns(kind, named_values(codes))
    unknown = [name for name, _ in returns.codes if name not in vocabulary]
    if unknown:
        raise Contradiction(f"{VOCABULARY} does not say what {unknown[0]} means")
    values = [value for _, value in returns.codes]
    if len(values) != len(set(values)):
        raise Contradiction("a code has two names")
    if not codes and kind in ("done", "yes", "count", "zero", "number"):
        raise Contradiction(f'"{kind}" needs the codes of failures')
    return returns


def read_vocabulary(include_folder):
    """The names of codes and what each means, out of the header of the annotations."""
    text = (pathlib.Path(include_folder) / VOCABULARY).read_text(encoding="utf-8")
    rows = text.split("// The names of codes:\n", 1)[1].split("#define", 1)[0]
    return dict(re.findall(r"^//   (\w+)  +(.+)$", rows, re.MULTILINE))


# --- declarations -------------------------------------------------------------------------------


def make_class(text, lines, is_script):
    text, reason = cut_call(text, "UX_NATIVE_ONLY")
    name = re.match(r"class (\w+)", text).group(1)
    lines = [line.rstrip() for line in lines]
    return Declaration(name, text, is_script, native_only=(reason or "").strip('"'), lines=lines)


def make_declaration(lines, is_script, vocabulary, export=EXPORT):
    text = " ".join(" ".join(lines).split())
    text = text.replace(export + " ", "").replace(" UXTREE_SENTINEL", "")
    if text.startswith("class "):
        return make_class(text, lines, is_script)
    name = re.search(r"(\w+)\s*\(", text).group(1)
    try:
        text, returns = cut_call(text, "UX_RETURNS")
        text, native_only = cut_call(text, "UX_NATIVE_ONLY")
        text, blocks = re.subn(r" UX_BLOCKS\b", "", text)
        match = re.fullmatch(r"(.+?)\s*\b(\w+)\s*\((.*)\);", text)
        if not match:
            raise Contradiction("cannot be read")
        result, name, inside = match.groups()
        parameters = [make_parameter(each) for each in split_outside(inside) if each != "void"]
        made = make_returns(returns, result, vocabulary)
    except Contradiction as problem:
        raise Contradiction(f"{name}: {problem}") from None
    plain = ", ".join(plain_parameter(each) for each in parameters)
    return Declaration(
        name=name,
        text=f"{result} {name}({plain});",
        is_script=is_script,
        result=result,
        parameters=parameters,
        returns=made,
        blocks=blocks > 0,
        native_only=(native_only or "").strip('"'),
    )


def plain_parameter(parameter):
    if parameter.type == "...":
        return "..."
    default = f" = {parameter.default}" if parameter.default else ""
    return f"{parameter.type} {parameter.name}{default}"


def take_declaration(lines, start):
    """The lines of a declaration that starts there: to the first ";" outside braces."""
    depth = 0
    for end in range(start, len(lines)):
        code = lines[end].split("//")[0]
        depth += code.count("{") - code.count("}")
        if depth == 0 and code.rstrip().endswith(";"):
            return lines[start : end + 1]
    raise ValueError("declaration without an end: " + lines[start])


def comment_text(line):
    return line[3:] if line.startswith("// ") else line[2:]


def read_header(include_folder, path, vocabulary, export=EXPORT):
    text = (pathlib.Path(include_folder) / path).read_text(encoding="utf-8")
    return parse_header(text, path, vocabulary, export)


def parse_header(text, path, vocabulary, export=EXPORT):
    lines = text.splitlines()
    header = Header(path, [])
    at = 0
    while at < len(lines) and lines[at].startswith("//"):
        header.about.append(comment_text(lines[at]))
        at += 1

    comment, group, is_script = [], None, False
    while at < len(lines):
        line = lines[at]
        at += 1
        if line.startswith("//"):
            comment.append(comment_text(line))
            group = None
            continue
        if line.startswith((export, "class " + export)):
            taken = take_declaration(lines, at - 1)
            at += len(taken) - 1
            if export == KIT_EXPORT and not is_script:
                comment = []  # C++ functions of the kit are for C++ alone: nothing is made of them
                continue
            try:
                made = make_declaration(taken, is_script, vocabulary, export)
            except Contradiction as problem:
                raise Contradiction(f"{path}: {problem}") from None
            if group is None:
                group = Group(comment)
                header.groups.append(group)
            group.declarations.append(made)
            comment = []
            continue
        if line.startswith("struct "):
            taken = take_declaration(lines, at - 1)
            at += len(taken) - 1
            header.structs[line.split()[1]] = "\n".join(taken)
        elif line.startswith("enum "):
            at += len(take_declaration(lines, at - 1)) - 1
        elif line.startswith('extern "C" {'):
            is_script = True
        elif line.startswith("}"):
            is_script = False
        elif line.startswith("#"):
            continue  # conditional compilation around a declaration keeps its comment
        comment, group = [], None
    return header


def read_headers(include_folder, rooms=None, export=EXPORT):
    """The headers of all topics, room by room; ends with an error where annotations fail."""
    folder = pathlib.Path(include_folder)
    paths = [
        path.relative_to(folder).as_posix()
        for room in rooms or ROOMS
        for path in sorted((folder / "uxtree" / room).glob("*.h"))
    ]
    try:
        vocabulary = read_vocabulary(folder)
        headers = [read_header(folder, path, vocabulary, export) for path in paths]
    except (Contradiction, OSError) as problem:
        sys.exit(str(problem))
    return [header for header in headers if header.groups]


def read_kit_headers(include_folder):
    """The headers of the kit."""
    return read_headers(include_folder, KIT_ROOMS, KIT_EXPORT)


# Native operations whose script forms have other names.
TWINS = {
    "SAXTreeLayout": "uxtree_layout",
    "TreeEvalXPath": "uxtree_xpath",
    "VCTreeGetChanged": "uxget_changed",
    "VCTreeIsSame": "ux_is_same",
    "VCTree_n42_": "uxtree_n42",
    "vctree_XDE_XML_get_attributes": "uxtree_XDE_get_attributes",
}


def plain_name(name):
    """A name without what the names of native operations and of their script forms differ in."""
    name = name.lower().replace("_", "")
    for prefix in ("uxtree", "vctree", "vc", "tree"):
        name = name.removeprefix(prefix)
    return name


def twins(headers):
    """Native operation -> its script form, where it has one."""
    all = [each for header in headers for each in header.declarations()]
    scripts = {plain_name(each.name): each.name for each in all if each.is_script}
    names = {each.name for each in all if each.is_script}
    found = {name: twin for name, twin in TWINS.items() if twin in names}
    for each in all:
        if not each.is_script and plain_name(each.name) in scripts:
            found[each.name] = scripts[plain_name(each.name)]
    return found
