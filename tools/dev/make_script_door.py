#!/usr/bin/env python3
"""Writes the table of the functions that scripts can call, out of the annotated public headers.

Usage: tools/dev/make_script_door.py SOURCE_FOLDER OUTPUT

All script entry points, and those native operations that have no script form. A native one that
cannot be called from scripts bears UX_NATIVE_ONLY with the reason; anything else that this script
does not know how to pass is an error.
"""

import itertools
import sys

from makers import write_for_build
from public_headers import Contradiction, read_headers, twins

# Words of the language that are names of parameters in the headers.
KEYWORDS = {"out": "result", "in": "source"}
NUMBERS = {
    "int": "int",
    "bool": "bool",
    "char": "uint8",
    "unsigned char": "uint8",
    "unsigned short": "uint16",
    "unsigned int": "uint",
    "DWORD": "uint",
    "double": "double",
}
RECORDS = {"tagDescStatResults", "tagHistogramStatsResult", "tagPOINT"}
OBJECTS = {"UXXmlWrapperBase": "Tree", **{name: name for name in RECORDS}}
ARRAYS = {  # script type, name of the array in C++
    "int": ("int", "Ints"),
    "double": ("double", "Doubles"),
    "bool": ("bool", "Bools"),
    "string": ("string", "Strings"),
}
NATIVE_ARRAYS = {
    "CArray<int, int>": "int",
    "CArray<double, double>": "double",
    "CWBOStringArray": "string",
}
USES = {"": "kIn", "in": "kIn", "appends": "kAppends"}  # others are read and written
RESULTS = {"CStringUTF8": "string", "void": "void", **{k: NUMBERS[k] for k in ("int", "bool")}}


def script_default(parameter):
    default = parameter.default
    if default == "nullptr":
        return "null" if parameter.element else "none"
    if len(default) == 3 and default[0] == default[2] == "'":
        return str(ord(default[1]))
    return default


def indirect(each):
    """The type behind a pointer or a reference, and which of the two; ("", "") for a value."""
    bare = each.type.removeprefix("const ")
    return (bare[:-1], bare[-1]) if bare.endswith(("*", "&")) else ("", "")


def passing(each):
    """(type for scripts, converter in C++) of a parameter."""
    if each.type in NUMBERS:
        return NUMBERS[each.type], f"Number<{each.type}>"
    target, mark = indirect(each)
    reference = "Reference" if mark == "&" else ""
    use = USES.get(each.direction, "kInOut")
    if each.type == "const char*":
        return "const text &in", "Text"
    if each.element in ARRAYS:
        script, native = ARRAYS[each.element]
        return f"array<{script}>@", f"ArrayArgument<{native}, Use::{use}>"
    if target in NATIVE_ARRAYS:
        script, native = ARRAYS[NATIVE_ARRAYS[target]]
        return f"array<{script}>@", f"Array{reference or 'Pointer'}<{native}, Use::{use}>"
    if target in OBJECTS:
        const = "const " if use == "kIn" else ""
        return f"{const}{OBJECTS[target]}@", f"Object{reference}<{target}>"
    if target == "CStringUTF8":
        if use == "kIn":
            return "const string &in", f"StringRead{reference}"
        return "string &inout", f"String{reference}"
    if target in NUMBERS and use != "kIn":
        return f"{NUMBERS[target]} &inout", f"Variable{reference}<{target}>"
    if target in NUMBERS:
        return NUMBERS[target], f"Pointed<{target}>"
    raise Contradiction(f"parameter {each.name}: scripts cannot pass {each.type}")


def may_be_left_out(each):
    """An output, or a number that is pointed at: where C++ passes null, scripts pass none."""
    target, mark = indirect(each)
    if not each.optional or mark != "*" or each.type == "const char*":
        return False
    return target == "CStringUTF8" or target in NUMBERS


def forms(declaration):
    """The declarations for scripts with their converters.

    Each of up to two outputs may be none; of more than two, any number of the last.
    """
    optional = [i for i, each in enumerate(declaration.parameters) if may_be_left_out(each)]
    if len(optional) > 2:
        left_out = [optional[given:] for given in range(len(optional), -1, -1)]
    else:
        left_out = [
            chosen for count in range(len(optional) + 1)
            for chosen in itertools.combinations(optional, count)
        ]
    for each in left_out:
        yield one_form(declaration, set(each))


def one_form(declaration, missing):
    shown, converters = [], []
    for place, each in enumerate(declaration.parameters):
        type, converter = passing(each)
        if place in missing:
            type, converter = "const text &in", f"Nothing<{indirect(each)[0]}>"
        default = f" = {script_default(each)}" if each.default else ""
        shown.append(f"{type} {KEYWORDS.get(each.name, each.name)}{default}")
        converters.append(converter)
    return f"{RESULTS[declaration.result]} {declaration.name}({', '.join(shown)})", converters


def script_functions(headers):
    """The declarations that scripts see: (header, declaration), in the order of the headers."""
    twinned = twins(headers)
    for header in headers:
        for each in header.declarations():
            if each.is_class() or each.native_only:
                continue
            if each.is_script or each.name not in twinned:
                yield header, each


def signature(each):
    types = ", ".join(parameter.type for parameter in each.parameters)
    return f"{each.result} (*)({types})"


def table(headers):
    rows = []
    for _, each in script_functions(headers):
        try:
            for declaration, converters in forms(each):
                arguments = "".join(f", {converter}" for converter in converters)
                function = f"static_cast<{signature(each)}>(&::{each.name})"
                rows.append(f'    {{"{declaration}",\n     &call<{function}{arguments}>}},\n')
        except Contradiction as problem:
            sys.exit(f"{each.name}: {problem}")
    return (
        "// script/rows: the functions that scripts can call. Made by tools/dev/make_script_door.py.\n"
        '#include "call.h"\n\nnamespace uxscript {\n\nconst Row kRows[] = {\n'
        + "".join(rows)
        + "};\nconst std::size_t kRowCount = std::size(kRows);\n\n}  // namespace uxscript\n"
    )


if __name__ == "__main__":
    write_for_build(__doc__, lambda include: table(read_headers(include)))
