#!/usr/bin/env python3
"""Writes docs/python_reference.md out of the docstrings of the Python package.

Usage: tools/dev/make_python_reference.py [--check] SOURCE_FOLDER

With --check nothing is written; fails when the file is not what would be written.
"""

import ast
import re
import sys

from makers import derived_file_options, tell, write_or_compare

MODULES = ["tree", "table", "theme", "outlines", "n42", "analyses", "many", "dask", "errors"]
HEAD = """\
# The Python package, name by name

Made by tools/dev/make_python_reference.py of the docstrings: do not edit. The guide is
[python.md](python.md). `uxtree.raw` has every entry point of the library under its own name: its
functions are those of the [reference](reference.md), with outputs in a tuple behind the result, and
`help(uxtree.raw.uxtree_get_values_with_ids)` shows each.
"""


def doc_of(node):
    return ast.get_docstring(node) or ""


def signature(function, cut_self):
    arguments = ast.unparse(function.args)
    if cut_self:
        arguments = re.sub(r"^(self|cls)(, )?", "", arguments)
    return f"{function.name}({arguments})"


def is_shown(node):
    return not node.name.startswith("_") and doc_of(node)


def entry(title, text):
    return f"**`{title}`**\n\n{text}\n"


def members(node):
    kinds = (ast.FunctionDef,)
    for each in node.body:
        if not isinstance(each, kinds) or not is_shown(each):
            continue
        names = {ast.unparse(decorator) for decorator in each.decorator_list}
        if names & {"property", "functools.cached_property"}:
            yield entry(each.name, doc_of(each))
        else:
            yield entry(signature(each, "staticmethod" not in names), doc_of(each))


# What trees inherit of the compiled part, whose docstrings stand in its source.
ROW = re.compile(r'\{"(\w+)",[^"]*?((?:"(?:[^"\\]|\\.)*"\s*)+)')


def native_members(source):
    for topic in ("values", "steps", "changes"):
        path = source / f"bindings/python/src/node_{topic}.cpp"
        text = path.read_text(encoding="utf-8")
        for name, literals in ROW.findall(text[text.index(f"void add_{topic}_of_node(") :]):
            if name.startswith("_"):
                continue
            joined = "".join(ast.literal_eval(each) for each in re.findall(r'"(?:[^"\\]|\\.)*"', literals))
            title, dashes, rest = joined.partition("\n--\n\n")
            yield entry(title, rest) if dashes else entry(name, joined)


def reference(source):
    parts = [HEAD]
    for module in MODULES:
        path = source / "bindings/python/uxtree" / f"{module}.py"
        tree = ast.parse(path.read_text(encoding="utf-8"))
        inside = module in ("n42", "analyses", "many", "dask")
        parts.append(f"\n## {'uxtree.' + module if inside else doc_of(tree).split(':')[0].rstrip('.')}\n")
        if inside or ":" in doc_of(tree):
            parts.append(doc_of(tree) + "\n")
        for node in tree.body:
            if isinstance(node, ast.FunctionDef) and is_shown(node):
                parts.append(entry(signature(node, False), doc_of(node)))
            elif isinstance(node, ast.ClassDef) and is_shown(node):
                parts.append(f"### {node.name}\n\n{doc_of(node)}\n")
                parts += members(node)
                if node.name == "Tree":
                    parts += native_members(source)
    return "\n".join(part if part.endswith("\n") else part + "\n" for part in parts)


def main():
    options = derived_file_options(__doc__)
    target = options.source / "docs/python_reference.md"
    return tell(write_or_compare(target, reference(options.source), options.check))


if __name__ == "__main__":
    sys.exit(main())
