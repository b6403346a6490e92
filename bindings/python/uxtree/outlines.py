"""Outlines: which elements and attributes occur where, of one document or of very many."""

import functools

from . import _core
from .tree import files_of, from_string


class Outline:
    """The outline of some documents. Outlines are joined with |, in whatever groups as long as the
    order of the documents is kept; they are compared, and travel between processes."""

    def __init__(self, tree=None):
        """Of none, or of the entries "Node" below a tree, as the library writes them."""
        self._tree = tree if tree is not None else from_string("<Outline/>", layout=False)

    @property
    def tree(self):
        """The outline as a tree of elements "Node" and "Attr", with names as labels."""
        return self._tree

    def __or__(self, other):
        if not isinstance(other, Outline):
            return NotImplemented
        joined = Outline(self._tree.copy())
        joined |= other
        return joined

    def __ior__(self, other):
        if not isinstance(other, Outline):
            return NotImplemented
        _core.merge_outline(self._tree, other._tree)
        return self

    @staticmethod
    def union(first, second):
        """The outline of the documents of both; for folds."""
        return first | second

    @staticmethod
    def union_all(outlines):
        """The outline of all; what is folded is copied once."""
        return functools.reduce(Outline.__ior__, outlines, Outline())

    def paths(self):
        """A path for each element and attribute: "/a", "/a/b", "/a/b/@x"."""
        found = []
        todo = [("", node) for node in reversed(self._tree.children)]
        while todo:
            above, node = todo.pop()
            path = f"{above}/{node.attribute('Label')}"
            found.append(path)
            if node.tag == "Node":
                todo += [(path, child) for child in reversed(node.children)]
        return found

    def __eq__(self, other):
        return self._tree.xml() == other._tree.xml() if isinstance(other, Outline) else NotImplemented

    __hash__ = None

    def __bool__(self):
        return len(self._tree) > 0

    def __reduce__(self):
        return _of_bytes, (self._tree.to_bytes(form="plain"),)

    def __str__(self):
        return "\n".join(self.paths())

    def __repr__(self):
        return f"<outline of {len(self.paths())} paths>"

    def _repr_html_(self):
        from .display import tree_html
        return tree_html(self._tree)


def _of_bytes(data):
    return Outline(from_string(data, layout=False))


def outline(files):
    """The outline of a file, of a list of files, or of those that a pattern matches, in their order.
    Other threads go on meanwhile, and memory does not grow with the files. Raises LoadError."""
    return Outline(_core.outline_files(files_of(files)))
