"""Trees: nodes with paths, attributes, values, and everything that is done with a whole tree."""

import collections
import collections.abc
import contextlib
import os

from . import _core
from ._core import raw
from .errors import CodeError, ValuesError


def check(function, code, good):
    """Raises CodeError with the meaning of a code unless it is good."""
    if not good:
        raise CodeError(function, code, _core.code_name(function, code),
                        _core.describe(function, code))


def value_text(value):
    """A value as trees hold it: numbers in their shortest form, nan as the missing value."""
    if isinstance(value, str):
        return value
    return _core.value_text(value)


class Attributes(collections.abc.MutableMapping):
    """The attributes of a node, in their order. Values are texts; numbers may be assigned."""

    __slots__ = ("_node",)

    def __init__(self, node):
        self._node = node

    def __getitem__(self, name):
        value = self._node.attribute(name)
        if value is None:
            raise KeyError(name)
        return value

    def __setitem__(self, name, value):
        if value is None:
            raise TypeError("an attribute cannot be None; del removes it")
        self._node.set_attribute(name, value)

    def __delitem__(self, name):
        self[name]
        self._node.set_attribute(name, None)

    def __iter__(self):
        return iter([name for name, _ in self._node.attribute_items()])

    def __len__(self):
        return len(self._node.attribute_items())

    def __repr__(self):
        return repr(dict(self))


def load(path, *, layout=True):
    """Loads an XML file and yields its root.

    layout: keep comments, white space and the like for saving; False takes less memory. Other
    threads go on meanwhile. Raises LoadError with the place.
    """
    return _core.load(path, layout)


def from_string(text, *, layout=True):
    """The tree of XML text, or of bytes in the encoding that they declare."""
    data = text.encode() if isinstance(text, str) else bytes(text)
    return _core.load_bytes(data, layout)


def _restore(data, layout):
    return _core.load_bytes(data, layout)


class Tree(raw.Node):
    """A node of a tree, and the tree below it. Tree("tag") makes a new tree.

    tree["a/b[2]"] is the node at the end of a path of tags, tree[0] a child, len(tree) the number of
    children; a loop goes over them. Nodes are equal when they are the same node. A node keeps its
    whole tree alive; once it was removed, using it raises ReferenceError.
    """

    __slots__ = ()

    # --- the parts of a node

    @property
    def attrs(self):
        """The attributes as a mapping."""
        return Attributes(self)

    @property
    def children(self):
        """The children as a list."""
        return list(self)

    def __setitem__(self, path, value):
        """Sets the value of the node at the end of a path, which must be there."""
        self[path].value = value

    def __delitem__(self, path):
        """Removes the node at the end of a path."""
        self[path].remove()

    def __contains__(self, path):
        """Is there a node at the end of the path? A node is asked for among the children."""
        if isinstance(path, raw.Node):
            return any(child == path for child in self)
        return self.get(path) is not None

    def add(self, tag, value=None, attrs=None):
        """Appends a child and yields it."""
        node = super().add(tag)
        try:
            if value is not None:
                node.value = value
            for name, text in (attrs or {}).items():
                node.set_attribute(name, text)
        except BaseException:
            node.remove()
            raise
        return node

    def ensure(self, path):
        """The node at the end of a path of tags; what is missing on the way is made."""
        steps = path.split("/") if path else []
        code, node = raw.wbxfu_tree_check_get_node(self, steps or None)
        check("wbxfu_tree_check_get_node", code, code == 1)
        return node

    def sort(self, key=None, reverse=False):
        """Sorts the children, by tag and value unless a key is given. Nodes below a child that moved
        raise ReferenceError afterwards."""
        key = key or (lambda node: (node.tag, node.value))
        keys = [key(child) for child in self]
        self.arrange(sorted(range(len(keys)), key=keys.__getitem__, reverse=reverse))

    def sort_by_attribute(self, name, reverse=False):
        """Sorts the children by the text of an attribute; those without it come first."""
        self.sort(key=lambda node: node.attribute(name) or "", reverse=reverse)

    # --- looking for nodes

    def select(self, expression):
        """What a path in XPath's short form reaches (docs/selection.md): elements as trees,
        attributes and texts as str. Raises SelectError."""
        return Selection(expression)(self)

    def select_texts(self, expression):
        """The same, everything as text."""
        return Selection(expression).texts(self)

    # --- values by identifier

    def value_pairs(self, *, recursive=True, changed_only=False, repeat=0, id_attribute=None,
                    branches=False):
        """[(identifier, text)] of the nodes below, in the order of the document; an identifier may
        stand there several times. Raises ValuesError where identifiers break their rules."""
        return list(zip(*self._collect(recursive, changed_only, repeat, id_attribute, branches)))

    def values(self, *, recursive=True, changed_only=False, repeat=0, id_attribute=None,
               branches=False):
        """{identifier: text} of the nodes below. Raises ValuesError when an identifier repeats:
        value_pairs() has them all.

        changed_only: those whose attribute OldValue differs. repeat: the RepeatID under which this
        node stands. branches: also those without "Use".
        """
        found = self._values(recursive, changed_only, repeat, id_attribute, branches)
        if found is not None:
            return found
        ids, _ = self._collect(recursive, changed_only, repeat, id_attribute, branches)
        twice = next(id for id, times in collections.Counter(ids).items() if times > 1)
        raise ValuesError("duplicate_id", twice,
                          f"identifier {twice} repeats; value_pairs() has all values")

    def _collect(self, recursive, changed_only, repeat, id_attribute, branches):
        count, ids, texts, error = raw.uxtree_get_values_with_ids(
            self, recursive, changed_only, repeat, id_attribute, branches)
        check("uxtree_get_values_with_ids", count, count >= 0)
        if error:
            self._raise_problem(0, id_attribute, repeat, error)
        return ids, texts

    def _raise_problem(self, setting, id_attribute, repeat, error):
        code, node, id = _core.values_problem(self, setting, id_attribute, repeat)
        name = _core.code_name("ux_values_problem", code) if code else "broken_repeat_rule"
        raise ValuesError(name, id, error.strip(), node.path if node is not None else None)

    def set_values(self, values, *, repeat=0, mode=0, id_attribute=None, strict=False):
        """Writes values, a mapping or pairs of identifier and value, into the nodes below, and yields
        how many were written. All nodes of an identifier are written.

        strict: an identifier that no node bears is a ValuesError, and nothing is written then; else
        it is passed over, and the number tells. Repeated identifiers are a ValuesError.
        """
        pairs = list(values.items() if hasattr(values, "items") else values)
        if not pairs:
            return 0
        ids = [id for id, _ in pairs]
        texts = [value_text(value) for _, value in pairs]
        if strict:
            known = {id for id, _ in self.value_pairs(repeat=repeat, id_attribute=id_attribute,
                                                      branches=True)}
            missing = [id for id in ids if id not in known]
            if missing:
                raise ValuesError("missing_id", missing[0],
                                  f"no node has the identifiers {missing[:10]}")
        count, twice, error = raw.uxtree_set_values_by_ids(self, ids, texts, repeat, mode,
                                                           id_attribute)
        if count == -4:
            raise ValuesError("duplicate_id", twice, f"identifier {twice} repeats")
        if count == -5:
            self._raise_problem(1, id_attribute, repeat, error)
        check("uxtree_set_values_by_ids", count, count >= 0)
        return count

    def clear_values(self):
        """Empties the values of all leaves below."""
        raw.uxtree_clear_all_value(self)

    # --- changes

    def changes_since(self, before):
        """What differs from an earlier copy, as a DataFrame with the columns path, old and new: values
        and attributes ("path@name"), None where there was or is none."""
        from .table import frame_of
        return frame_of(["path", "old", "new"], self.change_rows(before))

    def change_rows(self, before):
        """The same as a list of tuples."""
        old, new = _facts(before), _facts(self)
        rows = [(path, old.get(path), text) for path, text in new.items() if old.get(path) != text]
        rows += [(path, text, None) for path, text in old.items() if path not in new]
        return rows

    def mark_changes(self, before):
        """Marks the nodes below whose values differ from those of an earlier copy of the same shape
        with the attribute OldValue, and yields their number."""
        _, old = raw.VCTreeGetValues(before, False)
        count = raw.uxtree_update_changes(self, old[1:])
        check("uxtree_update_changes", count, count >= 0)
        return count

    # --- labels

    def label_text(self, mode=1):
        """The label: mode 0 the tag, 1 the attribute Label or else the tag, 2 tag, label and the
        headings below it."""
        return raw.uxtree_get_node_label(self, mode)

    def replace_in_labels(self, old, new):
        """Replaces a text in the labels of the branch; yields the number of labels changed."""
        return raw.uxtree_recursively_replace_label_attributes(self, old, new)

    # --- outlines, tables

    def outline(self):
        """Which elements and attributes occur where, with repetitions folded: an Outline."""
        from .outlines import Outline
        return Outline(_core.outline_tree(self))

    def query(self, path):
        """The table that a path of tags reaches, as in "/dialog|Input|Range1", as a DataFrame;
        repeated column names are kept. Needs pandas; query_table() does not."""
        return self.query_table(path).to_frame()

    def query_table(self, path):
        """The same as a Table."""
        from .table import query_table
        return query_table(self, path)

    def select_table(self, rows, columns):
        """A Table with a row for each node that the path rows selects, and a column for each entry of
        columns: {name: path from the row's node}. A cell is the first text found, None without."""
        from .table import select_table
        return select_table(self, rows, columns)

    # --- saving

    def save(self, path, *, form="layout", ids=None, indent=2):
        """Saves the node as the root of a file; a failed save leaves the old file whole.

        form: "layout" keeps everything of the file it was loaded from but what changed, "plain" writes
        one line, "indented" lines of their own. ids: True writes the IDs of nodes, False leaves them
        out, None writes them when the file had some. Yields what was left out, as a dict.
        """
        return _core.save(self, path, form, ids, indent)

    def to_bytes(self, *, form="layout", ids=None, indent=2):
        """The bytes of the file that save() would write."""
        return _core.save_bytes(self, form, ids, indent)

    @property
    def keeps_layout(self):
        """Was the tree loaded with its layout?"""
        return _core.keeps_layout(self)

    def __reduce__(self):
        # A root travels with its layout; any other node as the root of a tree of its own.
        layout = self.parent is None and self.keeps_layout
        form = "layout" if layout else "plain"
        return _restore, (self.to_bytes(form=form, ids=None if layout else True), layout)

    def __copy__(self):
        return self.copy()

    def __deepcopy__(self, memo):
        return self.copy()

    def __str__(self):
        return self.to_bytes(form="indented").decode()

    def _repr_html_(self):
        from .display import tree_html
        return tree_html(self)


_core.set_node_class(Tree)


def walk_with_paths(top):
    """(path from top, node) of everything below, in the order of the document."""
    open_loops = [("", iter(top), {})]
    while open_loops:
        prefix, loop, counts = open_loops[-1]
        node = next(loop, None)
        if node is None:
            open_loops.pop()
            continue
        tag = node.tag
        number = counts[tag] = counts.get(tag, 0) + 1
        step = tag if number == 1 else f"{tag}[{number}]"
        path = f"{prefix}/{step}" if prefix else step
        yield path, node
        if len(node):
            open_loops.append((path, iter(node), {}))


def _facts(tree):
    """{path: text} of the values and attributes of a tree."""
    facts = {f"@{name}": text for name, text in tree.attribute_items()}
    facts[""] = tree.value
    for path, node in walk_with_paths(tree):
        facts[path] = node.value
        for name, text in node.attribute_items():
            facts[f"{path}@{name}"] = text
    return facts


@contextlib.contextmanager
def edit(tree):
    """All or nothing: when the block raises, the tree has what it had before. Nodes below the tree
    that were at hand raise ReferenceError then."""
    before = tree.copy()
    try:
        yield tree
    except BaseException:
        tree.replace_with(before)
        raise


class Selection:
    """A path in XPath's short form, compiled once for many trees."""

    __slots__ = ("expression", "_compiled")

    def __init__(self, expression):
        self.expression = expression
        self._compiled = _core.Selection(expression)

    def __call__(self, tree):
        """Elements as trees, attributes and texts as str, in the order of the document."""
        return self._compiled.items(tree)

    def texts(self, tree):
        """The texts of what is found."""
        return self._compiled.texts(tree)

    def __reduce__(self):
        return Selection, (self.expression,)

    def __repr__(self):
        return f"Selection({self.expression!r})"


def files_of(files):
    """The names in a list, or those that a pattern matches, sorted."""
    if isinstance(files, (str, os.PathLike)):
        import glob
        pattern = os.fspath(files)
        return sorted(glob.glob(pattern, recursive=True)) if glob.has_magic(pattern) else [pattern]
    return [os.fspath(file) for file in files]
