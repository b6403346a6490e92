#!/usr/bin/env python3
"""Writes include/uxtree/uxtree_c.h: the script entry points for C, out of the C++ headers.

Usage: tools/dev/make_c_header.py [--check] SOURCE_FOLDER

With --check nothing is written; fails when the file is not what would be written.
"""

import re
import sys
import textwrap

from makers import derived_file_options, tell, write_or_compare
from public_headers import read_headers

HEAD = """\
// The script entry points for C. Written by tools/dev/make_c_header.py: do not edit.
//
// What each of them does stands in the header named above it. Handles of nodes, strings and script
// arrays are made and read with the functions of uxtree/kit/c.h.
#ifndef UXTREE_C_H
#define UXTREE_C_H

#include "uxtree/kit/c.h"

#ifdef __cplusplus
// A C++ compiler sees both sets of declarations, and refuses this header where they differ.
#include "uxtree/uxtree_Utils.h"
extern "C" {
#else

"""

TAIL = """
#ifdef __cplusplus
}
#endif
#endif
"""

# Types that C knows by name, and its pointers to them.
KNOWN = re.compile(
    r"(const )?(void|bool|char|unsigned char|int|unsigned int|unsigned short|double|DWORD"
    r"|UXXmlWrapperBase|UXScriptObject|CStringUTF8|tagDescStatResults|tagHistogramStatsResult)"
    r"\*?$"
)
VALUES_OF_CLASSES = {"UXXmlWrapperBase", "UXScriptObject", "CStringUTF8"}


def split_declaration(text):
    match = re.match(r"(.+?)\s*(\w+)\((.*)\);$", text)
    result, name, parameters = match.groups()
    return result, name, [each.strip() for each in parameters.split(",") if each.strip()]


def c_declaration(text):
    """The declaration for C; None when a type cannot be passed."""
    result, name, parameters = split_declaration(text)
    parameters = [each.split(" = ")[0] for each in parameters]
    types = [result] + [re.sub(r"\s*\w+$", "", each) for each in parameters]
    if any(not KNOWN.match(each) or each in VALUES_OF_CLASSES for each in types):
        return None
    start = f"{result} {name}("
    unbroken = [each.replace(" ", "\0") for each in parameters] or ["void"]
    code = start.replace(" ", "\0") + ", ".join(unbroken) + ");"
    lines = textwrap.wrap(code, 100, subsequent_indent="    ")
    return "\n".join(lines).replace("\0", " ")


def record(name, text):
    body = re.sub(r"^struct \w+ ", "", text)
    return f"typedef struct {name} {body[:-1]} {name};\n"


def c_header(headers):
    parts = [HEAD]
    for header in headers:
        for name, text in header.structs.items():
            if re.match(r"tag\w+Result", name):
                parts.append(record(name, text) + "\n")
    parts.append("#endif  // __cplusplus\n")
    for header in headers:
        scripts = [each for each in header.declarations() if each.is_script]
        if not scripts:
            continue
        parts.append(f"\n// --- {header.path}\n\n")
        for each in scripts:
            code = c_declaration(each.text)
            if code is None:
                parts.append(f"// {each.name} passes a class by value, so C cannot call it.\n")
            else:
                parts.append(code + "\n")
    return "".join(parts) + TAIL


def main():
    options = derived_file_options(__doc__)
    include = options.source / "include"
    target = include / "uxtree" / "uxtree_c.h"
    return tell(write_or_compare(target, c_header(read_headers(include)), options.check))


if __name__ == "__main__":
    sys.exit(main())
