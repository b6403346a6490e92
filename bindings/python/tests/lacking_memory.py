"""Calls with one after another of the allocations in C++ failing: MemoryError, or the failure of
the function itself; trees stay sound, and the same call gives the same result afterwards.

Run by a test of its own, without sanitizers: the library that makes allocations fail comes before
all others. What Python allocates for itself does not fail.
"""

import ctypes
import os
import sys

HOOK = ctypes.CDLL(os.environ["UXTREE_FAILING_NEW"], ctypes.RTLD_GLOBAL)
UNTIL_FAILURE = ctypes.c_long.in_dll(HOOK, "untilFailure")
FAILED = ctypes.c_bool.in_dll(HOOK, "failed")

assert "uxtree" not in sys.modules and "numpy" not in sys.modules

import numpy  # noqa: E402
import pytest  # noqa: E402
from test_raw import FUNCTIONS, SETTINGS, SOURCE, arguments_of, good  # noqa: E402

import uxtree  # noqa: E402
from public_headers import read_headers  # noqa: E402
from uxtree import raw  # noqa: E402

EACH = 40  # so many fail one by one, of those behind every seventeenth
CODES = {declaration.name: {value for _, value in declaration.returns.codes}
         for header in read_headers(SOURCE / "include") for declaration in header.declarations()}


def plain(value):
    """What can be compared."""
    if isinstance(value, raw.Node):
        return value.xml() if value else "removed"
    if isinstance(value, numpy.ndarray):
        return repr(value.tolist())
    if isinstance(value, (list, tuple)):
        return [plain(each) for each in value]
    return "function" if callable(value) else repr(value)


def fail_each_allocation(make, call, is_failure=lambda result: False):
    """Calls with things made anew, until nothing fails; yields how often MemoryError was raised."""
    call(make())  # what is made once in a process
    given = make()
    result = call(given)
    whole = plain(result), plain(given)
    raised = index = 0
    while True:
        given = make()
        FAILED.value = False
        UNTIL_FAILURE.value = index
        try:
            result = call(given)
        except MemoryError:
            result = MemoryError
        finally:
            UNTIL_FAILURE.value = -1
        lacked = FAILED.value
        left = plain(result), plain(given)
        if not lacked:
            assert left == whole
            return raised
        if result is MemoryError:
            raised += 1
        else:
            assert left == whole or is_failure(result), (index, left, whole)
        for tree in given:
            if isinstance(tree, raw.Node) and tree:
                assert uxtree.from_string(tree.xml()).xml() == tree.xml()
        index += 1 if index < EACH else 17


LONG = "a text that is long enough to take memory"
NAME = LONG.replace(" ", "-")
TREE = f"<r><a DataID='3' k='{LONG}'>1 2 3</a><b DataID='4'>{LONG}</b><c><d/><d>{LONG}</d></c></r>"

# Arguments that give more than those that merely fit.
ARGUMENTS = {
    "uxtree_get_values_with_ids": (1, 0, 0, None, 0),
    "uxtree_set_values_by_ids": ([3, 4], [LONG, LONG], 0, 0, None),
    "wbxfu_tree_check_get_node": ([NAME, "b"],),
    "wbxfu_tree_node_vector_value": (None, 1, ["a"]),
}
# Further results without memory, as the sweep in C++ has them.
SHORTAGE = {"VCTokenizedStringToArrayOfDoubles": 0}


def fail_each_of_raw(name, make):
    declared = max((known for known in CODES if name.startswith(known)), key=len, default=None)
    codes = CODES.get(declared)

    def is_failure(result):
        code = result[0] if isinstance(result, tuple) else result
        if codes:
            return code in codes or code == SHORTAGE.get(name)
        return not code  # who has no codes gives nothing

    fail_each_allocation(make, lambda given: getattr(raw, name)(*given), is_failure)


@pytest.mark.parametrize("name", sorted(set(FUNCTIONS) - SETTINGS))
def test_raw(name):
    stubs = [stub for _, stub in arguments_of(FUNCTIONS[name])]
    fail_each_of_raw(name, lambda: [good(stub) for stub in stubs])


@pytest.mark.parametrize("name", ARGUMENTS)
def test_raw_with_a_tree(name):
    fail_each_of_raw(name, lambda: [uxtree.from_string(TREE), *ARGUMENTS[name]])


CALLS = {
    "from_string": lambda tree: uxtree.from_string(TREE),
    "new": lambda tree: uxtree.Tree(NAME),
    "xml": lambda tree: tree.xml(),
    "path": lambda tree: [node.path for node in tree.walk()],
    "set": lambda tree: setattr(tree["b"], "value", [1.5, 2.5] * 20),
    "vector": lambda tree: tree["a"].vector,
    "set attribute": lambda tree: tree["b"].attrs.update({NAME: LONG}),
    "save": lambda tree: tree.save("t.xml"),
    "copy": lambda tree: tree.copy(),
    "ranges": lambda tree: raw.VCRangeTreeIterator(tree).Get(),
    "select": lambda tree: list(tree.select("//d")),
}


@pytest.mark.parametrize("name", CALLS)
def test_raises_memory_error(name):
    raised = fail_each_allocation(lambda: [uxtree.from_string(TREE)],
                                  lambda given: CALLS[name](*given))
    assert raised > 0
