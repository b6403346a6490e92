#!/usr/bin/env python3
"""Compares how much of a file programs rewrite when they change one attribute of it.

Usage: tools/dev/diff_sizes.py LIBUXTREE_KIT FILE...

Each program changes the first attribute of the first element that has one, in every file, and the
lines of the difference are counted; two are the fewest possible. Ours also saves every file
unchanged, which must give the same bytes, and must read its own result as the same tree that it
changed. Files that one of the programs cannot read are left out, and counted. Prints a table; the
result is 1 when a file of ours is not kept.
"""
import ctypes
import pathlib
import statistics
import subprocess
import sys
import tempfile

import lxml.etree

LAYOUT = 1
NEW = "changed by one"


class Kit:
    """The few functions of the C interface that this takes."""

    def __init__(self, path):
        self.library = ctypes.CDLL(path)
        for name in ("ux_load", "ux_node_new", "ux_string_new"):
            getattr(self.library, name).restype = ctypes.c_void_p
        self.library.ux_string_text.restype = ctypes.c_char_p
        self.library.ux_last_error.restype = ctypes.c_char_p

    def load(self, path, flags=LAYOUT):
        return self.library.ux_load(str(path).encode(), flags)

    def save(self, tree, path):
        if self.library.ux_save(ctypes.c_void_p(tree), str(path).encode(), 0) != 1:
            raise OSError(self.library.ux_last_error().decode())

    def free(self, tree):
        self.library.ux_node_free(ctypes.c_void_p(tree))

    def xml(self, tree):
        text = ctypes.c_void_p(self.library.ux_string_new(b""))
        self.library.ux_node_xml(ctypes.c_void_p(tree), text)
        xml = self.library.ux_string_text(text)
        self.library.ux_string_free(text)
        return xml

    def set_attribute(self, tree, steps, name, value):
        node = ctypes.c_void_p(self.library.ux_node_new(None))
        self.library.ux_node_child(ctypes.c_void_p(tree), b"", node)
        for step in steps:
            if self.library.ux_node_child_at(node, step, node) != 1:
                raise OSError(f"no child {step}")
        if self.library.ux_node_set_attr(node, name.encode(), value.encode()) != 1:
            raise OSError(self.library.ux_last_error().decode())
        self.free(node.value)


def first_attribute(root):
    """Positions from the root down, a path for xmlstarlet, and the attribute's name."""
    for element in root.iter(lxml.etree.Element):
        names = [name for name in element.attrib if not name.startswith("{")]
        if not names or isinstance(element.tag, lxml.etree._Entity):
            continue
        steps, path, at = [], "", element
        while at is not None:
            parent = at.getparent()
            siblings = [at] if parent is None else list(parent.iterchildren(lxml.etree.Element))
            number = siblings.index(at)
            path = f"/*[{number + 1}]{path}"
            if parent is not None:
                steps.insert(0, number)
            at = parent
        return steps, f"{path}/@{names[0]}", names[0], element
    return None


def run_xmlstarlet(options, path, file, out):
    with open(out, "wb") as stream:
        subprocess.run(["xmlstarlet", "ed", *options, "-u", path, "-v", NEW, file], stdout=stream,
                       stderr=subprocess.DEVNULL, check=True)


def changed_lines(before, after):
    with tempfile.NamedTemporaryFile() as a, tempfile.NamedTemporaryFile() as b:
        a.write(before)
        b.write(after)
        a.flush()
        b.flush()
        out = subprocess.run(["diff", "-a", a.name, b.name], capture_output=True, check=False).stdout
    return sum(line[:1] in (b"<", b">") for line in out.split(b"\n"))


def main():
    kit, files = Kit(sys.argv[1]), [pathlib.Path(name) for name in sys.argv[2:]]
    counts = {"uxtree": [], "xmlstarlet ed -P": [], "xmlstarlet ed": [], "lxml": []}
    left_out, wrong = 0, 0
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out.xml"
        for file in files:
            before = file.read_bytes()
            tree = kit.load(file)
            try:
                document = lxml.etree.parse(str(file))
                found = first_attribute(document.getroot())
                if found is None or not tree:
                    raise ValueError("no attribute")
                steps, path, name, element = found
                results = {}
                for label, options in (("xmlstarlet ed -P", ["-P"]), ("xmlstarlet ed", [])):
                    run_xmlstarlet(options, path, file, out)
                    results[label] = changed_lines(before, out.read_bytes())
                element.set(name, NEW)
                document.write(str(out), encoding=document.docinfo.encoding,
                               xml_declaration=before.lstrip(b"\xef\xbb\xbf").startswith(b"<?xml"))
                results["lxml"] = changed_lines(before, out.read_bytes())
            except (ValueError, OSError, lxml.etree.Error, subprocess.CalledProcessError):
                left_out += 1
                if tree:
                    kit.free(tree)
                continue
            kit.save(tree, out)
            if out.read_bytes() != before:
                wrong += 1
                print(f"{file}: not the same bytes when it is unchanged", file=sys.stderr)
            kit.set_attribute(tree, steps, name, NEW)
            kit.save(tree, out)
            results["uxtree"] = changed_lines(before, out.read_bytes())
            again = kit.load(out, 0)
            if not again or kit.xml(again) != kit.xml(tree):
                wrong += 1
                print(f"{file}: does not read back as it was changed", file=sys.stderr)
            kit.free(again)
            kit.free(tree)
            for label, count in results.items():
                counts[label].append(count)
    print(f"{len(counts['uxtree'])} files, {left_out} left out\n")
    print("| program | median of changed lines | most | files with the fewest possible |")
    print("|---|---|---|---|")
    for label, lines in counts.items():
        ideal = sum(count == 2 for count in lines)
        print(f"| {label} | {statistics.median(lines):g} | {max(lines)} | {ideal} |")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
