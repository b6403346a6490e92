#!/usr/bin/env python3
"""Writes a C program that calls every function of uxtree_c.h with every bad argument.

Usage: tools/dev/make_c_sweep.py SOURCE_FOLDER OUTPUT

Each pointer is null in turn, each handle invalid or of a removed node, each array of another type,
each number negative and huge, each text not UTF-8. What must fail has to give one of the codes that
the annotations name and leave the trees alone; what may be missing must do no harm. Functions of the
kit are called once more for each of their allocations, which fails: so must they.
"""

from make_c_header import c_declaration
from makers import write_for_build
from public_headers import read_headers, read_kit_headers

HANDLE = "UXXmlWrapperBase*"
NUMBERS = {
    "int": ("-1", "INT_MAX", "INT_MIN"),
    "unsigned int": ("UINT_MAX",),
    "DWORD": ("0xFFFFFFFFU",),
}
PLAIN = {"int": "1", "unsigned int": "0", "DWORD": "0", "bool": "false", "char": "'a'",
         "unsigned char": "1", "unsigned short": "1", "double": "1.0", "size_t": "4"}
# What a world has one of.
SINGLE = {"tagDescStatResults*": "&w.statistics", "tagHistogramStatsResult*": "&w.histogram",
          "UXSelection*": "w.selection", "UXSelected*": "w.selected"}
FREES = {HANDLE: "ux_node_free", "CStringUTF8*": "ux_string_free",
         "UXScriptObject*": "ux_array_free", "UXSelection*": "ux_select_free",
         "UXSelected*": "ux_selected_free"}
# Counts of things to make: a huge one is a request for so much memory and time.
MAKES = {("uxtree_nlsf_add_params_node_DataID", "count")}
# What is refused, changes nothing, and is reported as done all the same.
REPORTED_AS_DONE = {
    ("uxtree_check_add_all_enumerated_nodes", "prefix"),
    ("uxtree_check_get_node_by_dataid", "tag"),
    ("report_get_escaped_data_string_ex", "labelRows"),
}
ARRAYS = {"int": "ints", "double": "doubles", "bool": "bools", "string": "strings", "any": "ints"}


class Arguments:
    """Good arguments of a call, each object handed out once."""

    def __init__(self):
        self.used = {}

    def next(self, pool):
        number = self.used.get(pool, 0)
        self.used[pool] = number + 1
        return f"w.{pool}[{number}]"

    def good(self, each):
        kind = each.type.removeprefix("const ")
        if kind == HANDLE:
            return self.next("outs" if each.direction.startswith("out") else "nodes")
        if each.element:
            return self.next(ARRAYS[each.element])
        if kind == "CStringUTF8*":
            return self.next("texts")
        if kind in SINGLE:
            return SINGLE[kind]
        if each.type == "const int*":
            return "w.number"
        if each.type == "const double*":
            return "w.real"
        if each.type == "const bool*":
            return "w.flag"
        if kind == "int*":
            return "&" + self.next("number")
        if kind == "double*":
            return "&" + self.next("real")
        if each.name == "bytes":
            return '"<r/>"'
        if each.file:
            return "kFile"
        if each.type == "const char*":
            return '"a"'
        return PLAIN[each.type]


def bad_forms(function, each):
    """(how, expression, must it fail) of a parameter."""
    kind = each.type.removeprefix("const ")
    if each.type.endswith("*"):
        yield "null", "NULL", not each.optional
    if kind == HANDLE and each.direction not in ("out", "out_released"):
        must = not each.may_be_invalid
        yield "an invalid handle", "w.invalid", must
        yield "a removed node", "w.removed", must
    if each.element and each.element != "any":
        for other in ("int", "double", "bool", "string"):
            if other != each.element:
                yield f"an array of {other}s", f"w.{ARRAYS[other]}[3]", True
    if each.type == "const char*" and each.name != "bytes":
        checked = function.startswith("ux_") and each.name != "function"
        yield "not UTF-8", '"\\xff\\xfe\\x80"', checked
    for value in NUMBERS.get(each.type, ()):
        counts = each.name == "count" and function.startswith("ux_array_set")
        if (function, each.name) not in MAKES and not (counts and value != "-1"):
            yield value, value, False
    if each.type == "size_t":
        yield "huge", "(size_t)-1", True


def failure_test(returns):
    """A condition on r that holds for failures; None when the result does not tell."""
    if returns.kind in ("handle", "borrowed"):
        return "r == NULL"
    numbers = [value for _, value in returns.codes if value is not None]
    if returns.kind in ("nothing", "says_nothing", "stored", "number", "text") or not numbers:
        return None
    if any(value is None for _, value in returns.codes):
        return None
    return " || ".join(f"r == {value}" for value in numbers)


def call(declaration, place=None, expression=None):
    arguments = Arguments()
    parts = [arguments.good(each) for each in declaration.parameters]
    if place is not None:
        parts[place] = expression
    return f"{declaration.name}({', '.join(parts)})"


def trial(declaration, place, how, expression, must):
    result = declaration.result
    each = declaration.parameters[place]
    test = failure_test(declaration.returns) if must else None
    if test and (declaration.name, each.name) in REPORTED_AS_DONE:
        test = "r == 1"
    code = call(declaration, place, expression)
    lines = ["    {", "        World w = make_world();"]
    lines.append(f"        {code};" if result == "void" else f"        {result} r = {code};")
    if result != "void":
        free = f"{FREES.get(result, '(void)')}(r)"
    name = f'"{declaration.name}", "{each.name}", "{how}"'
    if test:
        lines.append(f"        expect({test}, {name});")
    if must:
        lines.append(f"        expect_unchanged(&w, {name});")
    if result != "void":
        lines.append(f"        {free};")
    lines += ["        free_world(&w, " + name + ");", "    }"]
    return "\n".join(lines)


def shortage(declaration):
    """A function that makes a good call in which an allocation fails."""
    result, test = declaration.result, failure_test(declaration.returns)
    code = call(declaration)
    lines = [f"static bool shortage_{declaration.name}(long allocation) {{",
             "    World w = make_world();", "    bool short_of_memory;"]
    lines += [f"    {result} r;"] if result != "void" else []
    lines += ["    run_short(allocation);",
              f"    {code};" if result == "void" else f"    r = {code};",
              "    short_of_memory = ran_short();"]
    name = f'"{declaration.name}"'
    if test:
        lines.append(f"    if (short_of_memory) expect_shortage({test}, {name});")
    if result != "void":
        lines.append(f"    {FREES.get(result, '(void)')}(r);")
    lines += [f'    free_world(&w, {name}, "memory", "short");', "    return short_of_memory;", "}\n"]
    return "\n".join(lines)


def program(headers):
    functions, names = [], []
    for header in headers:
        for each in header.declarations():
            if not each.is_script or c_declaration(each.text) is None:
                continue
            names.append(each.name)
            frees = each.name.endswith("_free")
            trials = [
                trial(each, place, how, expression, must)
                for place, parameter in enumerate(each.parameters)
                for how, expression, must in bad_forms(each.name, parameter)
                if not frees or expression == "NULL"
            ]
            if each.name.startswith("ux_") and not frees:
                functions.append(shortage(each))
                trials.append(f"    {{ long n = 0; while (shortage_{each.name}(n)) ++n; }}")
            body = "\n".join(trials) or "    (void)0;"
            functions.append(f"static void sweep_{each.name}(void) {{\n{body}\n}}\n")
    calls = "".join(f"    sweep_{name}();\n" for name in names)
    scripts = sum(1 for name in names if not name.startswith("ux_") or name == "ux_is_same")
    return (
        '/* Made by tools/dev/make_c_sweep.py. */\n#include "c_sweep.h"\n\n'
        + "\n".join(functions)
        + f"\nint main(void) {{\n{calls}    return report({len(names)}, {scripts});\n}}\n"
    )


if __name__ == "__main__":
    write_for_build(__doc__, lambda include: program(read_headers(include) + read_kit_headers(include)))
