"""What Python costs: calls against C++, common jobs against ElementTree and lxml.

Usage: python_bench.py SOURCE_FOLDER FUNCTION=NANOSECONDS...   (python_bench calls it)
"""

import functools
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


def seconds(*jobs):
    """Processor time of one run of each job: the fastest of some rounds, in which they take turns."""
    timers = [timeit.Timer(job, timer=time.process_time) for job in jobs]
    numbers = [max(1, int(0.02 / max(min(timer.repeat(3, 10)) / 10, 1e-9))) for timer in timers]
    rounds = [[timer.timeit(number) / number for timer, number in zip(timers, numbers)]
              for _ in range(9)]
    return [min(times) for times in zip(*rounds)]


def table(title, names, rows):
    print(f"\n{title}\n\n| {' | '.join(names)} |\n|{'---|' * len(names)}")
    for row in rows:
        print(f"| {' | '.join(row)} |")


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
        own = 1e9 * seconds(lambda: function(*given))[0]
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

    def row(what, asked, job, *theirs):
        own, *peers = [1e9 * each for each in seconds(job, *theirs)]
        rows.append((what, f"{own:.0f} ns", asked,
                     *(f"{peer:.0f} ns ({peer / own:.1f})" for peer in peers)))

    def each(roots, job):
        return [functools.partial(job, root) for root in roots]

    modules = [module for module, _ in peers.values()]
    roots = [root for _, root in peers.values()]
    parsed = [module.fromstring(small) for module in modules]
    row("find by DataID", "10", lambda: tree.find(36), *each(roots, lambda r: by_id(r, "36")))
    row("find by DataID, their XPath", "10", lambda: tree.find(36),
        *each(roots, lambda r: r.find(".//*[@DataID='36']")))
    row("find by DataID, last of 1,000", "10", lambda: large.find(1000),
        *each(large_roots, lambda r: by_id(r, "1000")))
    row("path", "5", lambda: tree["Find/Limit/Count"],
        *each(roots, lambda r: r.find("Find/Limit/Count")))
    row("load", "5", lambda: uxtree.load(DIALOG, layout=False),
        *each(modules, lambda m: m.parse(DIALOG)))
    row("load of 1,000", "5", lambda: uxtree.load(large_file.name, layout=False),
        *each(modules, lambda m: m.parse(large_file.name)))
    row("30 values by id", "1 and 5", lambda: ours.values(), *each(parsed, et_values))
    table("Jobs (in brackets: how many times as fast)",
          ("job", "uxtree", "asked", *peers), rows)


def vectors():
    tree = uxtree.Tree("r")
    values = numpy.random.default_rng(1).random(1_000_000)
    write, read, copy = seconds(lambda: setattr(tree, "value", values), lambda: tree.vector,
                                values.copy)
    print(f"\n1e6 doubles: written in {write * 1e3:.2f} ms, read in {read * 1e3:.2f} ms; "
          f"numpy copies them in {copy * 1e3:.2f} ms")


def spectra():
    example = os.path.join(SOURCE, "examples/spectrum.n42")
    with tempfile.TemporaryDirectory() as folder:
        for number in range(1000):
            shutil.copy(example, f"{folder}/{number:04}.n42")
        times = {}
        for _ in range(5):
            for processes in (1, 2):
                start = time.perf_counter()
                assert len(uxtree.many.spectra(f"{folder}/*.n42", processes=processes)) == 4000
                took = time.perf_counter() - start
                times[processes] = min(times.get(processes, took), took)
    print(f"\n1,000 spectrum files: {times[1]:.2f} s in one process, {times[2]:.2f} s in two "
          f"({times[2] / times[1]:.2f})")


if __name__ == "__main__":
    calls()
    jobs()
    vectors()
    spectra()
