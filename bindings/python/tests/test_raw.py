"""uxtree.raw: every entry point is there, and every argument is checked."""

import ast
import os
import pathlib
import sys

import numpy
import pytest

import uxtree
from uxtree import raw

SOURCE = pathlib.Path(os.environ["UXTREE_SOURCE"])
STUBS = ast.parse((pathlib.Path(uxtree.__file__).parent / "raw.pyi").read_text())
FUNCTIONS = {each.name: each for each in STUBS.body if isinstance(each, ast.FunctionDef)}

sys.path.insert(0, str(SOURCE / "tools/dev"))
from public_headers import read_headers  # noqa: E402

# Handles that a function may bind to a tree, and so take without one.
TAKE_INVALID = {(declaration.name, parameter.name)
                for header in read_headers(SOURCE / "include")
                for declaration in header.declarations()
                for parameter in declaration.parameters if parameter.may_be_invalid}

# State of the process, which later tests would see.
SETTINGS = {"uxtree_set_default_code_page", "VCTreeAccessBlockLocalization",
            "VCTree_n42_parse_LiveTimeDuration"}


def rows():
    text = (SOURCE / "docs/entry_points.txt").read_text()
    return [line.split("\t") for line in text.splitlines() if line]


def test_has_every_entry_point():
    scripts = {row[1] for row in rows() if row[0] == "script"}
    assert len(scripts) == 157
    assert scripts <= set(dir(raw))
    natives = [row for row in rows() if row[0] == "native"]
    assert {row[1] for row in natives} <= set(dir(raw))
    # An overload has a name of its own.
    overloads = [name for name in dir(raw) if name.startswith("VCTreeGetChanged")
                 or name.startswith("vctree_save_values_with_ids")
                 or name.startswith("vctree_stats_get_set_bin_info")]
    assert len(overloads) == 6


def test_stubs_name_what_is_there():
    classes = {each.name for each in STUBS.body if isinstance(each, ast.ClassDef)}
    assert set(FUNCTIONS) | classes == {name for name in dir(raw) if not name.startswith("_")}
    for name, stub in FUNCTIONS.items():
        function = getattr(raw, name)
        given = [each.arg for each in stub.args.args + stub.args.kwonlyargs]
        said = function.__text_signature__.strip("()").split(", ") if given else []
        assert [each.split("=")[0] for each in said if each and each != "*"] == given
        assert function.__doc__.strip()
        assert function.__module__ == "uxtree.raw"


def good(stub):
    """An argument of the type that a stub names, and the tree that it holds."""
    first = stub.split(" | ")[0]
    if first == "Node":
        return uxtree.from_string("<r DataID='1'><a DataID='2'>x</a><b><c>1</c></b></r>")
    if first.startswith("Sequence"):
        return [good(first[9:-1])]
    return {"str": "a", "int": 1, "float": 1.0, "bool": False, "tuple[int, int]": (0, 0),
            "dict[str, float]": {}, "Callable[[Node], bool]": lambda node: False}[first]


def removed():
    tree = uxtree.from_string("<r><a/></r>")
    node = tree["a"]
    node.remove()
    return node


def bad(stub):
    """(argument, exception) of what a type refuses."""
    alternatives = stub.split(" | ")
    first = alternatives[0]
    if "None" not in alternatives:
        yield None, TypeError
    if first == "Node":
        yield "text", TypeError
    elif first.startswith("Sequence"):
        element = first[9:-1]
        yield "text" if "str" not in alternatives else 7, TypeError
        yield 7, TypeError
        yield [object()], TypeError
        yield {1: 2}, TypeError
        if element == "int":
            yield [2**40], OverflowError
            yield numpy.array([1.5]), TypeError
        if element in ("int", "bool"):
            yield ["1"], TypeError
        if element == "str":
            yield [None], TypeError
            yield ["a\0b"], ValueError
    elif first == "str":
        yield 7 if "Sequence[str]" not in alternatives else object(), TypeError
        yield "a\0b", ValueError
    elif first in ("int", "bool"):
        yield "1", TypeError
        yield 1.5, TypeError
        yield 2**40, OverflowError
    elif first == "float":
        yield "1", TypeError
        yield object(), TypeError
    elif first.startswith("Callable"):
        pass
    else:
        yield "text", TypeError


def arguments_of(stub):
    return [(each.arg, ast.unparse(each.annotation)) for each in stub.args.args]


@pytest.mark.parametrize("name", sorted(FUNCTIONS))
def test_refuses_what_does_not_fit(name):
    function, arguments = getattr(raw, name), arguments_of(FUNCTIONS[name])
    for place, (_, stub) in enumerate(arguments):
        for wrong, expected in bad(stub):
            given = [good(each) for _, each in arguments]
            trees = [(each, each.xml()) for each in given if isinstance(each, raw.Node)]
            given[place] = wrong
            with pytest.raises(expected):
                function(*given)
            assert [(each, each.xml()) for each, _ in trees] == trees
        if stub.startswith("Node"):
            given = [good(each) for _, each in arguments]
            given[place] = removed()
            if stub_takes_invalid(name, place):
                function(*given)
            else:
                with pytest.raises(ReferenceError):
                    function(*given)
    if arguments:
        with pytest.raises(TypeError):
            function()
    with pytest.raises(TypeError):
        function(*[good(each) for _, each in arguments], 1)
    with pytest.raises(TypeError):
        function(*[good(each) for _, each in arguments], nothing_of_this_name=1)


def stub_takes_invalid(name, place):
    return (name, arguments_of(FUNCTIONS[name])[place][0]) in TAKE_INVALID


@pytest.mark.parametrize("name", sorted(set(FUNCTIONS) - SETTINGS))
def test_takes_what_fits_and_missing_options(name):
    function, arguments = getattr(raw, name), arguments_of(FUNCTIONS[name])
    function(*[good(stub) for _, stub in arguments])
    function(**{arg: None if "None" in stub.split(" | ") else good(stub) for arg, stub in arguments})
    left_out = {each.arg: False for each in FUNCTIONS[name].args.kwonlyargs}
    if left_out:
        yielded = function(*[good(stub) for _, stub in arguments], **left_out)
        assert yielded.count(None) >= len(left_out)


def test_outputs_follow_the_result():
    tree = uxtree.from_string("<r><a DataID='3'>x</a><b DataID='4'>y</b></r>")
    assert raw.uxtree_get_values_with_ids(tree, 1, 0, 0, None, 0) == (2, [3, 4], ["x", "y"], "")
    assert raw.uxtree_get_level(tree["b"], None, 0) == (1, "r.b", None)
    assert raw.uxtree_find_node(tree, "DataID", 4, True, 0, 0) == (1, tree["b"])
    assert raw.uxtree_find_node(tree, "DataID", 5, True, 0, 0) == (0, None)
    assert raw.uxtree_set_values_by_ids(tree, [3, 3], ["1", "2"], 0, 0, None)[:2] == (-4, 3)
    assert raw.uxtree_set_values_by_ids(tree, [3, 3], ["1", "2"], 0, 0, None,
                                        duplicate=False)[:2] == (1, None)
    assert tree.xml() == '<r><a DataID="3">1</a><b DataID="4">y</b></r>'


def test_none_and_empty_text_differ_where_they_do():
    tree = uxtree.from_string("<r OldValue='1'/>")
    assert raw.uxtree_node_changed(tree, 1, "") == 1
    assert tree.xml() == '<r OldValue=""></r>'
    assert raw.uxtree_node_changed(tree, 1, None) == 1
    assert tree.xml() == "<r></r>"


def test_missing_values_are_nan_both_ways():
    tree = uxtree.Tree("r")
    raw.vctree_stats_get_set_whisker_info(tree, float("nan"), 2.5, 0)
    assert tree.xml() == uxtree.from_string(tree.xml()).xml()
    top, bottom = raw.vctree_stats_get_set_whisker_info(tree, None, None, 1)
    assert numpy.isnan(top) and bottom == 2.5
    tree.value = [1.0, float("nan")]
    assert tree.value == "1 -1.23456789e-300"
    assert numpy.isnan(tree.vector).tolist() == [False, True]


def test_functions_of_python_may_raise():
    tree = uxtree.from_string("<r><a k='1'/><b k='2'><c k='3'/></b></r>")
    assert raw.VCTreeGetAttributes(tree, "k", False, lambda node: node.tag == "a") == (0, ["2", "3"])
    assert raw.VCTreeGetAttributes(tree, "k", False, None) == (0, ["1", "2", "3"])
    with pytest.raises(ZeroDivisionError):
        raw.VCTreeGetAttributes(tree, "k", False, lambda node: 1 / 0)


def test_paths_of_any_length():
    tree = uxtree.Tree("r")
    code, node = raw.wbxfu_tree_check_get_node(tree, ["a", "b"])
    assert (code, node) == (1, tree["a/b"])
    assert raw.wbxfu_tree_get_node(tree, "a") == (1, tree["a"])
    assert raw.wbxfu_tree_get_node(tree, ["a", "x"]) == (0, None)
    assert raw.wbxfu_tree_check_get_node_ex(tree, 1, ["c", "d"]) == (1, tree["c/d"])
    assert raw.wbxfu_tree_node_vector_value(tree, [1.5, 2], 0, ["v"])[0] == 1
    code, vector = raw.wbxfu_tree_node_vector_value(tree, None, 1, ["v"])
    assert (code, vector.tolist()) == (1, [1.5, 2.0])
    with pytest.raises(ValueError):
        raw.wbxfu_tree_get_node(tree, ["a"] * 24)
