"""What Python costs: calls against C++, common jobs against ElementTree and lxml.

Usage: python_bench.py SOURCE_FOLDER FUNCTION=NANOSECONDS...   (python_bench calls it)
"""

import os
import shutil
import sys
import tempfile
import time
import timeit
import xml.etree.ElementTree as ElementTree

import numpy

import uxtree
from uxtree import raw

try:
    import lxml.etree as lxml
except ImportError:
    lxml = None

SOURCE = sys.argv[1]
DIALOG = os.path.join(SOURCE, "examples/dialog.xml")


def seconds(job, number=None):
    """Of one run: the fastest of some rounds."""
    timer = timeit.Timer(job)
    number = number or max(1, int(0.05 / max(min(timer.repeat(3, 1)), 1e-9)))
    return min(timer.repeat(7, number)) / number


def table(title, names, rows):
    print(f"\n{title}\n\n| {' | '.join(names)} |\n|{'---|' * len(names)}")
    for row in rows:
        print(f"| {' | '.join(row)} |")
    print()


def calls():
    native = dict(each.split("=") for each in sys.argv[2:])
    tree = uxtree.load(DIALOG)
    node = tree["Find/Limit/Count"]
    arguments = {
        "uxtree_tree_get_theme_type": (tree,),
        "uxtree_find_node": (tree, "DataID", 36, True, 0, 0),
        "uxtree_get_level": (node, None, 0),
        "uxtree_get_node_label": (node, 1),
        "uxtree_get_values_with_ids": (tree, 1, 0, 0, None, 0),
    }
    rows = []
    for name, given in arguments.items():
        function, one = getattr(raw, name), float(native[name])
        own = 1e9 * seconds(lambda: function(*given))
        bound = 4 * one + 200
        rows.append((f"`{name}`", f"{one:.0f} ns", f"{own:.0f} ns", f"{bound:.0f} ns",
                     "yes" if own <= bound else "no"))
    table("Calls", ("function", "C++", "Python", "4 x C++ + 200 ns", "within"), rows)


def by_id(root, id):
    for node in root.iter():
        if node.get("DataID") == id:
            return node
    return None


def et_values(root):
    """The values of the leaves by identifier, as the bare minimum by hand."""
    found = {}
    for node in root.iter():
        id = node.get("DataID")
        if id is not None and len(node) == 0:
            found[int(id)] = node.text or ""
    return found


def jobs():
    tree = uxtree.load(DIALOG)
    peers = {"ElementTree": (ElementTree, ElementTree.parse(DIALOG).getroot())}
    if lxml is not None:
        peers["lxml"] = (lxml, lxml.parse(DIALOG).getroot())
    large_file = tempfile.NamedTemporaryFile(suffix=".xml")
    large_file.write(("<r>" + "".join(f"<b><n DataID='{i + 1}'>v{i}</n></b>" for i in range(1000))
                      + "</r>").encode())
    large_file.flush()
    large = uxtree.load(large_file.name)
    large_roots = [peer.parse(large_file.name).getroot() for peer, _ in peers.values()]
    # 30 leaves with values, and nothing that would take one of the two longer.
    small = "<r>" + "".join(f"<b{i}><n DataID='{i + 1}'>v{i}</n></b{i}>" for i in range(30)) + "</r>"
    ours = uxtree.from_string(small)
    rows = []

    def row(what, own, asked, *theirs):
        cells = [what, f"{own * 1e9:.0f} ns", asked]
        for peer in theirs:
            cells.append(f"{peer * 1e9:.0f} ns ({peer / own:.1f})")
        rows.append(tuple(cells))

    roots = [root for _, root in peers.values()]
    row("find by DataID", seconds(lambda: tree.find(36)), "10",
        *[seconds(lambda: by_id(root, "36")) for root in roots])
    row("find by DataID, their XPath", seconds(lambda: tree.find(36)), "10",
        *[seconds(lambda: root.find(".//*[@DataID='36']")) for root in roots])
    row("find by DataID, last of 1,000", seconds(lambda: large.find(1000)), "10",
        *[seconds(lambda: by_id(root, "1000")) for root in large_roots])
    row("path", seconds(lambda: tree["Find/Limit/Count"]), "5",
        *[seconds(lambda: root.find("Find/Limit/Count")) for root in roots])
    row("load", seconds(lambda: uxtree.load(DIALOG, layout=False)), "5",
        *[seconds(lambda: peer.parse(DIALOG)) for peer, _ in peers.values()])
    row("load of 1,000", seconds(lambda: uxtree.load(large_file.name, layout=False)), "5",
        *[seconds(lambda: peer.parse(large_file.name)) for peer, _ in peers.values()])
    parsed = [peer.fromstring(small) for peer, _ in peers.values()]
    row("30 values by id", seconds(lambda: ours.values()), "1 and 5",
        *[seconds(lambda: et_values(root)) for root in parsed])
    table("Jobs (in brackets: how many times as fast)",
          ("job", "uxtree", "asked", *peers), rows)


def vectors():
    tree = uxtree.Tree("r")
    values = numpy.random.default_rng(1).random(1_000_000)
    write = seconds(lambda: setattr(tree, "value", values), 1)
    read = seconds(lambda: tree.vector, 1)
    copy = seconds(lambda: values.copy(), 1)
    print(f"\n1e6 doubles: written in {write * 1e3:.2f} ms, read in {read * 1e3:.2f} ms; "
          f"numpy copies them in {copy * 1e3:.2f} ms\n")


def spectra():
    example = os.path.join(SOURCE, "examples/spectrum.n42")
    with tempfile.TemporaryDirectory() as folder:
        for number in range(1000):
            shutil.copy(example, f"{folder}/{number:04}.n42")
        times = {}
        for _ in range(3):
            for processes in (1, 2):
                start = time.perf_counter()
                assert len(uxtree.many.spectra(f"{folder}/*.n42", processes=processes)) == 4000
                took = time.perf_counter() - start
                times[processes] = min(times.get(processes, took), took)
    print(f"\n1,000 spectrum files: {times[1]:.2f} s in one process, {times[2]:.2f} s in two "
          f"({times[2] / times[1]:.2f})\n")


if __name__ == "__main__":
    calls()
    jobs()
    vectors()
    spectra()
