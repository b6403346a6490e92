"""Trees as Python sees them."""

import copy
import gc
import pickle

import numpy
import pytest

import uxtree

XML = """<?xml version="1.0"?>
<!-- kept -->
<r DataID='1'>
  <a  k="v">x</a>
  <a>y</a>
  <b><c DataID="7">1.5</c></b>
</r>
"""


@pytest.fixture
def tree():
    return uxtree.from_string(XML)


def test_paths_and_positions(tree):
    assert tree["a"].value == "x"
    assert tree["a[2]"].value == "y"
    assert tree["b/c"].value == "1.5"
    assert tree[-1] == tree["b"] == tree[2]
    assert tree.get("b/x") is None and tree.get("b/x", 5) == 5
    assert "b/c" in tree and "b/d" not in tree and tree["b"] in tree
    assert [node.path for node in tree.walk()] == ["", "a", "a[2]", "b", "b/c"]
    assert all(tree[node.path] == node for node in tree.walk() if node.path)
    assert tree["b/c"].root == tree and tree["b/c"].parent == tree["b"]
    assert tree["a"].next == tree["a[2]"] and tree["a"].previous is None
    for wrong, error in (("x", KeyError), (3, IndexError), (-4, IndexError), (1.5, TypeError),
                         ("a[0]", ValueError), ("a[x]", ValueError), ("a[1", ValueError)):
        with pytest.raises(error):
            tree[wrong]


def test_loops(tree):
    assert [node.tag for node in tree] == ["a", "a", "b"]
    assert [node.value for node in tree.walk("a")] == ["x", "y"]
    for node in tree:  # may be removed
        node.remove()
    assert tree.xml() == '<r DataID="1"></r>'


def test_loops_notice_that_their_way_is_gone(tree):
    with pytest.raises(RuntimeError):
        for _ in tree:
            tree["a[2]"].remove() if tree.get("a[2]") else None
    loop = tree.walk()
    next(loop)
    next(loop).remove()
    with pytest.raises(RuntimeError):
        next(loop)


def test_values(tree):
    node = tree["a"]
    for given, text in (("t", "t"), (3, "3"), (2.5, "2.5"), (True, "1"), (None, ""), ("", ""),
                        ([1, 2.5], "1 2.5"), (["p", "q|r"], "p|q\\|r"),
                        (numpy.array([1.0, 2.0]), "1 2"), (numpy.array([1, 2], "int32"), "1 2"),
                        (numpy.float64(0.5), "0.5"), (numpy.int64(4), "4"), ((), "")):
        node.value = given
        assert node.value == text
    node.value = "12"
    assert (node.as_int(), node.as_float(), node.as_bool()) == (12, 12.0, True)
    node.value = "x"
    assert (node.as_int(), node.as_float(7), node.vector) == (None, 7, None)
    node.value = float("nan")
    assert numpy.isnan(node.as_float())
    for wrong, error in ((object(), TypeError), (2**40, OverflowError), ([object()], TypeError),
                         ("a\0b", ValueError), ("\ud800", ValueError), ({1: 2}, TypeError)):
        with pytest.raises(error):
            node.value = wrong
    tree["b/c"] = 4
    assert tree["b/c"].value == "4"
    del tree["b/c"]
    assert "b/c" not in tree


def test_vectors_are_copies_that_outlive_the_tree():
    tree = uxtree.Tree("r")
    tree.value = numpy.arange(5) / 2
    vector = tree.vector
    tree.value = [7.0]
    del tree
    gc.collect()
    assert vector.tolist() == [0.0, 0.5, 1.0, 1.5, 2.0]
    assert vector.dtype == numpy.float64
    tree = uxtree.Tree("r")
    tree.value = numpy.array([3, 4], dtype="int32")
    assert tree.int_vector.dtype == numpy.int32 and tree.int_vector.tolist() == [3, 4]


def test_attributes(tree):
    attrs = tree["a"].attrs
    attrs["n"] = 4
    attrs["f"] = 0.5
    assert dict(attrs) == {"k": "v", "n": "4", "f": "0.5"} and len(attrs) == 3
    del attrs["k"]
    assert "k" not in attrs and attrs.get("k") is None
    for wrong in ("k", "zz"):
        with pytest.raises(KeyError):
            del attrs[wrong]
    with pytest.raises(ValueError):
        attrs["a b"] = "x"
    tree["a"].label = "L"
    assert (tree["a"].label, tree["b"].label) == ("L", "b")
    assert tree.data_id == 1 and tree["a"].data_id is None
    tree["a"].node_id = 5
    assert tree["a"].node_id == 5


def test_changes_of_structure(tree):
    node = tree.add("n", 5, {"k": "1"})
    assert node.xml() == '<n k="1">5</n>'
    assert node.insert_before("m").next == node
    assert tree.append_copy(tree["b"]).xml() == tree["b"].xml()
    assert tree.ensure("p/q").path == "p/q"
    before = tree.xml()
    for wrong in ("a b", "", "<"):
        with pytest.raises(ValueError):
            tree.add(wrong)
    with pytest.raises(TypeError):
        tree.add("ok", "text", {"k": object()})
    assert tree.xml() == before
    tree.sort(reverse=True)
    assert [node.tag for node in tree] == ["p", "n", "m", "b", "b", "a", "a"]
    tree.sort(key=lambda node: len(node))
    assert [node.tag for node in tree] == ["n", "m", "a", "a", "p", "b", "b"]
    assert tree.find(7).value == "1.5" and tree.find(8) is None and tree.find(8, 1) == 1


def test_removed_nodes_raise(tree):
    inner = tree["b/c"]
    tree["b"].remove()
    assert not inner.valid and not inner and repr(inner) == "<removed node>"
    for use in (lambda: inner.value, lambda: inner.tag, lambda: len(inner), lambda: inner["x"],
                lambda: list(inner), lambda: inner.add("x"), lambda: inner.copy(),
                lambda: inner.parent, lambda: inner.xml(), lambda: tree.append_copy(inner),
                lambda: setattr(inner, "value", 1), lambda: inner.attrs["k"], lambda: inner.path,
                lambda: inner.save("/tmp/x"), lambda: list(inner.walk()), lambda: inner.values(),
                lambda: inner.select("a"), lambda: uxtree.Tree().value):
        with pytest.raises(ReferenceError):
            use()
    with pytest.raises(TypeError):
        hash(tree)


def test_a_node_keeps_its_tree():
    node = uxtree.from_string(XML)["b/c"]
    gc.collect()
    assert node.root.tag == "r"


def test_saving(tree, tmp_path):
    path = tmp_path / "t.xml"
    tree.save(path)
    assert path.read_text() == XML
    tree["a"].value = "changed"
    tree.save(str(path))
    assert path.read_text() == XML.replace(">x<", ">changed<")
    assert tree.save(path, form="indented", indent=4)["comments_left_out"] == 1
    assert "    <a k=" in path.read_text() and "kept" not in path.read_text()
    assert uxtree.load(path).xml() == tree.xml()
    tree["a"].node_id = 3
    assert b"_ux_id" in tree.to_bytes(form="plain")
    assert b"_ux_id" not in tree.to_bytes(form="indented", ids=False)
    for wrong in (dict(form="x"), dict(indent=-1)):
        with pytest.raises(ValueError):
            tree.save(path, **wrong)
    whole = path.read_bytes()
    tree["b/c"].value = "\x01"  # XML cannot hold it
    with pytest.raises(uxtree.SaveError, match=r"/r/b\[1\]/c\[1\]"):
        tree.save(path)
    assert path.read_bytes() == whole
    tree["b/c"].value = None
    with pytest.raises(uxtree.SaveError) as error:
        tree.save(tmp_path / "no" / "t.xml")
    assert str(tmp_path) in str(error.value)


def test_load_errors_tell_the_place(tmp_path):
    path = tmp_path / "bad.xml"
    path.write_text("<a>\n<b></a>")
    with pytest.raises(uxtree.LoadError) as error:
        uxtree.load(path)
    assert (error.value.line, error.value.column, error.value.path) == (2, 6, path)
    assert str(error.value) == f"{path}:2:6: mismatched tag: expected </b>"
    with pytest.raises(uxtree.LoadError, match="No such file"):
        uxtree.load(tmp_path / "none.xml")
    with pytest.raises(uxtree.LoadError, match=r"\(text\):1:"):
        uxtree.from_string("<a")


def test_pickle_and_copy(tree):
    again = pickle.loads(pickle.dumps(tree))
    assert type(again) is uxtree.Tree and again.to_bytes() == XML.encode()
    inner = pickle.loads(pickle.dumps(tree["b"]))
    assert inner.parent is None and inner.xml() == tree["b"].xml()
    for made in (copy.copy(tree), copy.deepcopy(tree), tree.copy()):
        assert made != tree and made.xml() == tree.xml()
    for error in (uxtree.LoadError("m", "p", 1, 2), uxtree.ValuesError("c", 1, "m", "p"),
                  uxtree.CodeError("f", 1, "n", "m"), uxtree.SelectError("m", "e", 1)):
        assert str(pickle.loads(pickle.dumps(error))) == str(error)


def test_edit_is_all_or_nothing(tree):
    before = tree.xml()
    with pytest.raises(ZeroDivisionError):
        with uxtree.edit(tree):
            tree["a"].value = "changed"
            tree["b"].remove()
            1 / 0
    assert tree.xml() == before and tree.to_bytes() == XML.encode()
    with uxtree.edit(tree):
        tree["a"].value = "changed"
    assert tree["a"].value == "changed"


def test_select(tree):
    assert tree.select("//c") == [tree["b/c"]]
    assert tree.select("a/@k") == ["v"] and tree.select_texts("a") == ["x", "y"]
    both = uxtree.Selection("a")
    assert [node.value for node in pickle.loads(pickle.dumps(both))(tree)] == ["x", "y"]
    with pytest.raises(uxtree.SelectError) as error:
        tree.select("a[")
    assert error.value.position == 2
    mixed = uxtree.from_string("<a><b>x<c/>y</b></a>", layout=False)
    with pytest.raises(uxtree.SelectError) as error:
        mixed.select("//b/text()")
    assert error.value.node == mixed["b"]


def test_notebooks(tree):
    shown = tree._repr_html_()
    assert shown.count("<details") == 2 and "<b>c</b>" in shown and "&quot;v&quot;" in shown
    assert "<script" not in uxtree.from_string("<a k='&lt;script>'>&lt;script></a>")._repr_html_()
    wide = uxtree.Tree("r")
    for _ in range(3000):
        wide.add("n")
    assert wide._repr_html_().count("<b>n</b>") < 2100 and "not shown" in wide._repr_html_()
    assert repr(tree) == "<r with 3 children>" and repr(tree["a"]) == "<a 'x'>"
