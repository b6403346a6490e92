"""Themes: values with identifiers, kept as a small document and applied to other trees."""

from ._core import raw
from .tree import Tree, check, value_text


class Theme:
    """Values by identifier with a comment and, perhaps, labels."""

    def __init__(self, pairs=(), comment=None, labels=None):
        pairs = list(pairs.items() if hasattr(pairs, "items") else pairs)
        self.pairs = [(int(id), value_text(value)) for id, value in pairs]
        self.comment = comment
        self.labels = list(labels) if labels is not None else None

    @classmethod
    def of(cls, tree, comment=None, **how):
        """The values of a tree, as Tree.value_pairs collects them."""
        return cls(tree.value_pairs(**how), comment)

    @classmethod
    def load(cls, path):
        """A saved theme."""
        from .tree import load
        return cls.from_tree(load(path, layout=False))

    @classmethod
    def from_tree(cls, document):
        """The theme that a document holds."""
        ids, texts, comment, labels = raw.uxtree_get_theme(document)
        has_comment = document.attribute("Comment") is not None
        return cls(zip(ids, texts), comment if has_comment else None,
                   labels if any(labels) else None)

    def tree(self):
        """The theme as a document."""
        document = Tree("Settings")
        ids, texts = [id for id, _ in self.pairs], [text for _, text in self.pairs]
        code = raw.uxtree_save_values_with_ids(document, ids, texts, self.comment, self.labels)
        check("uxtree_save_values_with_ids", code, code == 1)
        return document

    def save(self, path):
        """Saves the theme as a file."""
        self.tree().save(path, form="plain")

    def apply(self, tree, *, strict=False):
        """Writes the values into a tree and yields how many; see Tree.set_values."""
        return tree.set_values(self.pairs, strict=strict)

    def __len__(self):
        return len(self.pairs)

    def __eq__(self, other):
        if not isinstance(other, Theme):
            return NotImplemented
        return (self.pairs, self.comment, self.labels) == (other.pairs, other.comment, other.labels)

    __hash__ = None

    def __repr__(self):
        return f"<theme of {len(self)} values{f': {self.comment}' if self.comment else ''}>"
