#!/usr/bin/env python3
"""Writes the sources of the Python module uxtree.raw, which has every entry point, and its stubs.

Usage: tools/dev/make_python_door.py SOURCE_FOLDER OUTPUT_FOLDER

Out of the annotated declarations come raw_ROOM.cpp, with one function for each entry point, and
raw.pyi. What a function takes and yields follows these rules:

- Arguments keep the order of the header. Outputs are no arguments: they follow the result in a
  tuple, in the order of the header. Without outputs the result stands alone.
- A handle is a Node, a script array a sequence (or a numpy array), a record a dict.
- None is null where the header allows null, and else a TypeError.
- What is read or written as another argument says is an argument and an output; None begins empty.
- An output that may be null is asked for by an argument of its name, which is True when left out.
"""

import pathlib
import re
import sys
import textwrap

from public_headers import ROOMS, read_headers

# Overloads, which Python does not have: all but the first one take a name of their own.
OVERLOADS = {
    ("VCTreeGetChanged", 1): "VCTreeGetChanged_first",
    ("vctree_save_values_with_ids", 1): "vctree_save_values_with_ids_file",
    ("vctree_stats_get_set_bin_info", 1): "vctree_stats_get_set_bin_info_intervals",
}
# These are classes, made by hand in bindings/python/src/iterators.cpp.
BY_HAND = {"VCRangeTreeIterator", "VCSubRangeTreeIterator"}

NUMBERS = {"int": "int", "DWORD": "DWORD", "unsigned int": "unsigned int",
           "unsigned short": "unsigned short", "unsigned char": "unsigned char"}
ARRAYS = {"int": "Ints", "double": "Doubles", "bool": "Bools", "string": "Texts"}
NATIVE_ARRAYS = {
    "CArray<int, int>": "Ints", "CArray<double, double>": "Doubles", "CWBOStringArray": "Texts",
    "CArray<unsigned int>": "CArray<unsigned int>",
    "CArray<__int64, __int64>": "CArray<__int64, __int64>", "UXVectorDesc": "Doubles",
}
STUBS = {"Ints": "list[int]", "Doubles": "numpy.ndarray", "Bools": "list[bool]",
         "Texts": "list[str]", "CArray<unsigned int>": "list[int]",
         "CArray<__int64, __int64>": "list[int]"}
SEQUENCES = {"Ints": "Sequence[int]", "Doubles": "Sequence[float]", "Bools": "Sequence[bool]",
             "Texts": "Sequence[str]"}
KEYWORDS = {"from": "from_", "in": "in_", "is": "is_", "not": "not_", "pass": "pass_"}
ASSIGNED = ("getset", "inout")
YIELDED = ("out", "out_released", "appends") + ASSIGNED
# A path's tags behind the first, and the null that ends them.
PATH_TAGS = ", ".join(f"p_name.tags[{i}]" for i in range(1, 24)) + ", nullptr"


class Unknown(Exception):
    """A type that has no rule."""


class Argument:
    """A Python argument: how it is named, annotated and given when it is left out."""

    def __init__(self, name, stub, default=None, by_name=False):
        self.name = KEYWORDS.get(name, name)
        self.stub = stub
        self.default = default
        self.by_name = by_name


class Wrapper:
    """Collects what the C++ function of one entry point is made of."""

    def __init__(self, declaration, name, structs):
        self.declaration = declaration
        self.name = name
        self.structs = structs
        self.arguments = []
        self.before = []  # statements in front of the call
        self.passed = []  # what the call is given
        self.yielded = []  # expressions, and their stubs
        self.handles = []  # conditions under which handles are missing
        self.optional_outputs = [p for p in declaration.parameters
                                 if p.optional and p.direction in ("out", "appends")]
        for parameter in declaration.parameters:
            try:
                self.take(parameter)
            except Unknown as problem:
                sys.exit(f"{name}: parameter {parameter.name}: no rule for {problem}")
        for parameter in self.optional_outputs:
            self.arguments.append(Argument(parameter.name, "bool", "True", by_name=True))
        self.number()

    def number(self):
        """Puts the final places of the arguments in: optional outputs come behind all others."""
        places = {argument.name: i for i, argument in enumerate(self.arguments)}
        def place(match):
            name = KEYWORDS.get(match.group(1), match.group(1))
            return str(places[name])
        pattern = re.compile(r"@(\w+)@")
        self.before = [pattern.sub(place, each) for each in self.before]
        self.passed = [pattern.sub(place, each) for each in self.passed]
        self.yielded = [(pattern.sub(place, each), stub) for each, stub in self.yielded]
        self.handles = [pattern.sub(place, each) for each in self.handles]

    def argument(self, parameter, stub):
        default = parameter.default.replace("nullptr", "None").replace("true", "True")
        default = default.replace("false", "False").replace("'\\0'", "''")
        self.arguments.append(Argument(parameter.name, stub, default or None))
        return f"@{parameter.name}@"

    def take(self, parameter):
        type = parameter.type.removeprefix("const ")
        base = type.rstrip("*& ")
        if type == "...":
            self.passed.append(PATH_TAGS)
            return
        if parameter.type == "va_list":
            return  # the function in between makes the list
        if type.startswith("std::function"):
            place = self.argument(parameter, "Callable[[Node], bool] | None")
            self.passed.append(f"a.predicate({place})")
        elif base == "_SETVALUESBYIDS":
            self.passed.append("nullptr")
        elif base == "UXXmlWrapperBase":
            self.take_handle(parameter, type)
        elif base in self.structs:
            self.take_record(parameter, type, base)
        elif parameter.element or base in NATIVE_ARRAYS:
            self.take_array(parameter, base)
        elif base == "CStringUTF8":
            self.take_string(parameter, type)
        elif type == "char*":
            self.take_text(parameter)
        elif base in NUMBERS or base in ("double", "bool", "char"):
            self.take_number(parameter, type, base)
        else:
            raise Unknown(parameter.type)

    def take_handle(self, parameter, type):
        name = "p_" + parameter.name
        star = "*" if type.endswith("&") or not type.endswith("*") else ""
        if parameter.direction in ("out", "out_released"):
            self.before.append(f"UXXmlWrapperBase {name};")
            if parameter.optional:
                self.yield_optional(parameter, name, "Node | None", f"&{name}")
            else:
                self.passed.append(name if star else "&" + name)
                self.yielded.append((name, "Node | None"))
            return
        if parameter.direction == "inout" and parameter.may_be_invalid:
            # A place in an enumeration: None begins, and the next one is yielded.
            place = self.argument(parameter, "Node | None")
            self.before.append(f"UXXmlWrapperBase {name};")
            self.before.append(f"if (!a.is_none({place})) {name} = *a.any_node({place});")
            self.passed.append(name if star else "&" + name)
            self.yielded.append((name, "Node | None"))
            return
        if parameter.direction == "inout":  # the argument stays what it is
            place = self.argument(parameter, "Node | None" if parameter.optional else "Node")
            self.before.append(f"UXXmlWrapperBase {name};")
            given = f"if (!a.is_none({place})) " if parameter.optional else ""
            self.before.append(f"{given}{name} = *a.node({place});")
            passed = name if star else "&" + name
            self.passed.append(f"a.is_none({place}) ? nullptr : {passed}" if given else passed)
            self.yielded.append((name, "Node | None"))
            return
        get = "any_node" if parameter.may_be_invalid else "node"
        if parameter.optional:
            get += "_or_null"
        place = self.argument(parameter, "Node | None" if parameter.optional else "Node")
        self.handles.append(f"a.is_none({place})" if parameter.optional else "false")
        self.before.append(f"UXXmlWrapperBase* const {name} = a.{get}({place});")
        self.passed.append(star + name)

    def yield_optional(self, parameter, name, stub, passed):
        wanted = f"a.wants(@{parameter.name}@)"
        self.before.append(f"const bool w_{parameter.name} = {wanted};")
        self.passed.append(f"w_{parameter.name} ? {passed} : nullptr")
        self.yielded.append((f"Wanted<decltype({name})>{{w_{parameter.name}, {name}}}",
                             stub if "None" in stub else stub + " | None"))

    def take_record(self, parameter, type, base):
        name = "p_" + parameter.name
        stub = "tuple[int, int]" if base == "tagPOINT" else "dict[str, float]"
        self.before.append(f"{base} {name}{{}};")
        if not parameter.direction or parameter.direction in ASSIGNED:
            optional = " | None" if parameter.direction else ""
            place = self.argument(parameter, stub + optional)
            self.before.append(f"read_record(a.object({place}), a.place({place}), {name}, "
                               f"{'true' if optional else 'false'});")
        passed = f"&{name}" if type.endswith("*") else name
        if parameter.direction == "out" and parameter.optional:
            self.yield_optional(parameter, name, stub, passed)
            return
        self.passed.append(passed)
        if parameter.direction in YIELDED:
            self.yielded.append((name, stub))

    def take_array(self, parameter, base):
        name = "p_" + parameter.name
        array = ARRAYS[parameter.element] if parameter.element else NATIVE_ARRAYS[base]
        simple = not parameter.element and base == "UXVectorDesc"
        self.before.append(f"Given<{array}> {name};")
        if parameter.direction in ("in", "") + ASSIGNED:
            optional = parameter.optional or parameter.direction == "getset"
            stub = SEQUENCES[array]
            place = self.argument(parameter, stub + " | None" if optional else stub)
            how = ("array_or_null" if parameter.optional
                   else "array_or_start" if optional else "array")
            self.before.append(f"a.{how}({place}, {name});")
        passed = f"{name}.script()" if parameter.element else f"{name}.native()"
        if simple:
            self.before.append(f"UXVectorDesc v_{parameter.name}(*{name}.native());")
            passed = "v_" + parameter.name
        elif parameter.type.endswith("&"):
            passed = "*" + passed
        stub = STUBS[array]
        if parameter.optional and parameter.direction in ("out", "appends"):
            self.yield_optional(parameter, name, stub, passed)
            return
        self.passed.append(passed)
        if parameter.direction in YIELDED:
            self.yielded.append((name, stub + " | None" if parameter.optional else stub))

    def take_string(self, parameter, type):
        name = "p_" + parameter.name
        if parameter.direction in ("in", "") + ASSIGNED:
            start = parameter.direction == "getset"
            place = self.argument(parameter, "str | None" if start else "str")
            get = "string_or_empty" if start else "string"
            self.before.append(f"CStringUTF8 {name} = a.{get}({place});")
        else:
            self.before.append(f"CStringUTF8 {name};")
        passed = f"&{name}" if type.endswith("*") else name
        if parameter.direction == "out" and parameter.optional:
            self.yield_optional(parameter, name, "str", passed)
            return
        self.passed.append(passed)
        if parameter.direction in YIELDED:
            self.yielded.append((name, "str"))

    def take_text(self, parameter):
        stub = "str | os.PathLike[str]" if parameter.file else "str"
        place = self.argument(parameter, stub + " | None" if parameter.optional else stub)
        if any(each.type in ("...", "va_list") for each in self.declaration.parameters):
            # The tags of a path, which C takes one by one.
            self.arguments[-1].stub = "str | Sequence[str] | None"
            self.before.append(f"const Path p_name = a.path({place});")
            self.passed.append("p_name.tags[0]")
            if self.declaration.parameters[-1].type == "va_list":
                self.passed.append(PATH_TAGS)
            return
        get = "file" if parameter.file else "text"
        get += "_or_null" if parameter.optional else ""
        self.before.append(f"const char* const p_{parameter.name} = a.{get}({place});")
        self.passed.append("p_" + parameter.name)

    def take_number(self, parameter, type, base):
        name = "p_" + parameter.name
        stub = {"double": "float", "bool": "bool", "char": "str"}.get(base, "int")
        get = {"double": "number", "bool": "truth", "char": "character"}.get(
            base, f"integer<{NUMBERS.get(base)}>")
        if not parameter.direction:
            place = self.argument(parameter, stub)
            fallback = f", {parameter.default}" if parameter.default else ""
            self.before.append(f"const {base} {name} = a.{get}({place}{fallback});")
            self.passed.append(name)
            return
        if parameter.direction == "in" and base == "double":
            place = self.argument(parameter, "float | None")
            self.before.append(f"std::optional<double> {name} = a.number_or_null({place});")
            self.passed.append(f"{name} ? &*{name} : nullptr")
            return
        if parameter.direction in ASSIGNED:
            starts = parameter.direction == "getset"
            place = self.argument(parameter, stub + " | None" if starts else stub)
            if starts:
                get = {"double": "number_or_start", "bool": "truth"}.get(
                    base, f"integer_or_start<{NUMBERS.get(base)}>")
            if base == "bool":
                self.before.append(f"bool {name} = !a.is_missing({place}) && a.truth({place});")
            else:
                self.before.append(f"{base} {name} = a.{get}({place});")
            passed = f"&{name}" if type.endswith("*") else name
            if parameter.optional and base == "bool":
                passed = f"a.is_missing({place}) ? nullptr : {passed}"
        else:
            initial = "UXMissingValue()" if base == "double" else f"{base}()"
            self.before.append(f"{base} {name} = {initial};")
            passed = f"&{name}" if type.endswith("*") else name
            if parameter.optional:
                self.yield_optional(parameter, name, stub, passed)
                return
        self.passed.append(passed)
        self.yielded.append((name, stub))

    # --- what is written ---

    def required(self):
        return sum(1 for each in self.arguments if each.default is None)

    def positional(self):
        return sum(1 for each in self.arguments if not each.by_name)

    def called(self):
        if self.declaration.parameters and self.declaration.parameters[-1].type == "va_list":
            return "with_list"
        return "::" + self.declaration.name

    def code(self):
        call = f"{self.called()}({', '.join(self.passed)})"
        values = [value for value, _ in self.yielded]
        lines = list(self.before)
        result = self.declaration.result
        if self.declaration.blocks and "false" not in self.handles and result != "void":
            # Without a tree at hand nothing is touched that Python could reach meanwhile.
            condition = " && ".join(self.handles) or "true"
            lines.append(f"auto r = unlocked({condition}, [&] {{ return {call}; }});")
            values.insert(0, "r")
        elif result == "void":
            lines.append(f"{call};")
        else:
            lines.append(f"auto r = {call};")
            values.insert(0, "r")
        lines.append(f"return results({', '.join(values)});")
        names = ", ".join(f'"{each.name}"' for each in self.arguments) or "nullptr"
        body = "\n".join("        " + line for line in lines)
        count = len(self.arguments)
        return (
            f"PyObject* call_{self.name}(PyObject*, PyObject* const* given, Py_ssize_t count,\n"
            f"    PyObject* keywords) {{\n"
            f"    static const char* const names[] = {{{names}}};\n"
            f'    static const Signature signature{{"{self.name}", names, {count}, '
            f"{self.required()}, {self.positional()}}};\n"
            f"    return guarded([&]() -> PyObject* {{\n"
            f"        [[maybe_unused]] Arguments<{count}> a(signature, given, count, keywords);\n"
            f"{body}\n    }});\n}}\n")

    def result_stub(self):
        first = {"void": None, "bool": "bool", "CStringUTF8": "str"}.get(
            self.declaration.result, "int")
        stubs = ([first] if first else []) + [stub for _, stub in self.yielded]
        if not stubs:
            return "None"
        return stubs[0] if len(stubs) == 1 else f"tuple[{', '.join(stubs)}]"

    def signature(self, stubs):
        parts = []
        for each in self.arguments:
            if each.by_name and "*" not in parts:
                parts.append("*")
            text = f"{each.name}: {each.stub}" if stubs else each.name
            if each.default is not None:
                text += f" = {each.default}" if stubs else f"={each.default}"
            parts.append(text)
        return ", ".join(parts)

    def doc(self, comment):
        names = [p.name for p in self.declaration.parameters if p.direction in YIELDED]
        text = "\n".join(comment).strip()
        first = "" if self.declaration.result == "void" else "result"
        yielded = ", ".join(filter(None, [first] + names))
        told = f"\n\nYields {yielded}." if names else ""
        bits = "".join(
            f"\n{p.name}: " + ", ".join(f"{n} = {v:#x}" for n, v in p.bits)
            for p in self.declaration.parameters if p.bits)
        return text + told + bits

    def entry(self, comment):
        doc = f"{self.name}({self.signature(False)})\n--\n\n{self.doc(comment)}"
        return (f'    {{"{self.name}", method(call_{self.name}), METH_FASTCALL | METH_KEYWORDS,\n'
                f"     {c_text(doc)}}},\n")

    def stub(self, comment):
        doc = textwrap.indent(self.doc(comment).replace("\\", "\\\\"), "    ")
        return (f"def {self.name}({self.signature(True)}) -> {self.result_stub()}:\n"
                f'    """{doc.strip()}\n    """\n')


def c_text(text):
    escaped = text.replace("\\", "\\\\").replace('"', '\\"')
    return "\n     ".join(f'"{line}\\n"' for line in escaped.split("\n"))


def wrappers_of(header, structs):
    """(wrapper, comment) of the functions of a header."""
    seen = {}
    for group in header.groups:
        for declaration in group.declarations:
            if declaration.is_class():
                if declaration.name not in BY_HAND:
                    sys.exit(f"{declaration.name}: a class that uxtree.raw does not have")
                continue
            number = seen.get(declaration.name, 0)
            seen[declaration.name] = number + 1
            name = OVERLOADS.get((declaration.name, number), declaration.name)
            if number and name == declaration.name:
                sys.exit(f"{name}: an overload without a name of its own")
            yield Wrapper(declaration, name, structs), group.comment


def record_code(name, text):
    """Reading and writing of a record: a dict by name, a place as two numbers."""
    fields = []
    body = re.sub(r"//[^\n]*", "", text[text.index("{") + 1 : text.rindex("}")])
    for row in filter(None, (" ".join(each.split()) for each in body.split(";"))):
        type, _, names = row.partition(" ")
        fields += [(type, each.strip()) for each in names.split(",")]
    rows = "".join(f"    field(\"{field}\", record.{field});\n" for _, field in fields)
    return (f"template <typename Field>\nvoid each_field({name}& record, Field&& field) {{\n"
            f"{rows}}}\n")


def room_source(room, rows, headers):
    parts = [f"// Made by tools/dev/make_python_door.py.\n"
             f'#include "uxtree/uxtree_Utils.h"\n\n#include "raw.h"\n#include "raw_tables.h"\n']
    records = []
    for header in headers:
        for name, text in header.structs.items():
            if re.match(r"tag[A-Z]", name):
                records.append(record_code(name, text))
    if records:
        parts.append("\n" + "\n".join(records))
    parts.append("\nnamespace uxpy {\nnamespace {\n\n")
    parts.append("\n".join(wrapper.code() for wrapper, _ in rows))
    parts.append("\n}  // namespace\n\n")
    parts.append(f"const PyMethodDef {room}Methods[] = {{\n")
    parts += [wrapper.entry(comment) for wrapper, comment in rows]
    parts.append("    {nullptr, nullptr, 0, nullptr},\n};\n\n}  // namespace uxpy\n")
    return "".join(parts)


STUB_HEAD = '''\
"""Every entry point of the library as the headers declare it. Made of them: do not edit.

Arguments keep the order of the header. Outputs are no arguments: they follow the result in a tuple.
None is null where the header allows it. An output that may be null is left out with name=False.
"""
import os
from typing import Any, Callable, Iterator, Sequence

import numpy

'''


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    source, target = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    target.mkdir(parents=True, exist_ok=True)
    headers = read_headers(source / "include")
    structs = {name for header in headers for name in header.structs}
    stubs = [STUB_HEAD, (source / "bindings/python/src/node.pyi").read_text(encoding="utf-8")]
    for room in ROOMS:
        own = [header for header in headers if header.path.startswith(f"uxtree/{room}/")]
        rows = [row for header in own for row in wrappers_of(header, structs)]
        (target / f"raw_{room}.cpp").write_text(room_source(room, rows, own), encoding="utf-8")
        stubs += [wrapper.stub(comment) for wrapper, comment in rows]
    (target / "raw.pyi").write_text("\n".join(stubs), encoding="utf-8")
    tables = "".join(f"extern const PyMethodDef {room}Methods[];\n" for room in ROOMS)
    names = ", ".join(f"{room}Methods" for room in ROOMS)
    (target / "raw_tables.h").write_text(
        "// Made by tools/dev/make_python_door.py.\n#pragma once\n\n#include \"python.h\"\n\n"
        f"namespace uxpy {{\n{tables}"
        f"inline const PyMethodDef* const kRawTables[] = {{{names}}};\n}}  // namespace uxpy\n",
        encoding="utf-8")


if __name__ == "__main__":
    main()
