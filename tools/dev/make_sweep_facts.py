#!/usr/bin/env python3
"""Writes what the annotations say for the sweep of bad arguments: a header with one specialisation
per declared function, by the type of the function.

Usage: tools/dev/make_sweep_facts.py SOURCE_FOLDER OUTPUT
"""

from makers import write_for_build
from public_headers import read_headers

HEAD = """\
// Made by tools/dev/make_sweep_facts.py.
#pragma once

#include "frame/calls/facts.h"
#include "uxtree/uxtree_Utils.h"

namespace uxtest::facts {
"""

DIRECTIONS = {
    "": "kByValue",
    "in": "kIn",
    "edits": "kEdits",
    "out": "kOut",
    "out_released": "kReleased",
    "inout": "kInOut",
    "appends": "kAppends",
    "getset": "kGetSet",
}
ELEMENTS = {"": "kNone", "int": "kInts", "double": "kDoubles", "bool": "kBools", "string": "kStrings"}


def parameter(each):
    flags = (each.optional, each.may_be_invalid)
    constant_reference = each.type.startswith("const ") and each.type.endswith("&")
    direction = DIRECTIONS["in" if constant_reference else each.direction]
    return f"{{Direction::{direction}, Element::{ELEMENTS[each.element]}, " + ", ".join(
        str(flag).lower() for flag in flags
    ) + "}"


def specialisation(each):
    types = ", ".join(parameter.type for parameter in each.parameters)
    named = [parameter(each) for each in each.parameters if each.name != "..."]
    codes = [str(value) for _, value in each.returns.codes if value is not None]
    further = any(value is None for _, value in each.returns.codes)
    kind = "".join(word.capitalize() for word in each.returns.kind.split("_"))
    lines = [
        "template <>",
        f"struct {each.name}<{each.result}({types})> {{",
        f"    static constexpr Kind kKind = Kind::k{kind};",
        f"    static constexpr bool kFurtherCodes = {str(further).lower()};",
        f"    static constexpr std::array<long long, {len(codes)}> kCodes{{{', '.join(codes)}}};",
        f"    static constexpr std::array<Parameter, {len(named)}> kParameters{{{{",
        *(f"        {each}," for each in named),
        "    }};",
        "};",
    ]
    return "\n".join(lines) + "\n"


def facts(headers):
    parts, named = [HEAD], set()
    for header in headers:
        for each in header.declarations():
            if each.is_class():
                continue
            if each.name not in named:
                named.add(each.name)
                parts.append(f"\ntemplate <typename Function>\nstruct {each.name};\n")
            parts.append(specialisation(each))
            types = [parameter.type for parameter in each.parameters]
            if any(type in ("...", "va_list") or "function<" in type for type in types):
                parts.append(
                    f"using only_{each.name} = {each.name}<{each.result}({', '.join(types)})>;\n"
                )
    return "".join(parts) + "\n}  // namespace uxtest::facts\n"


if __name__ == "__main__":
    write_for_build(__doc__, lambda include: facts(read_headers(include)))
