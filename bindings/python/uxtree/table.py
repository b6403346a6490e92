"""Tables out of trees."""

from ._core import raw
from .tree import Selection, check


def pandas():
    """The package, which is asked for only where its types are wanted."""
    try:
        import pandas as package
    except ImportError:
        raise ImportError("this needs pandas (Debian: python3-pandas)") from None
    return package


def frame_of(names, rows):
    """A DataFrame of rows; names may repeat."""
    frame = pandas().DataFrame(list(rows), columns=range(len(names)))
    frame.columns = names
    return frame


class Table:
    """Columns with names, both of texts or numbers; names may repeat."""

    def __init__(self, names, columns):
        self.names = list(names)
        self.columns = [list(column) for column in columns]

    def rows(self):
        """The rows as tuples."""
        return list(zip(*self.columns))

    def column(self, name):
        """The column of a name; KeyError when there is none, ValueError when there are several."""
        if self.names.count(name) > 1:
            raise ValueError(f"there are {self.names.count(name)} columns {name!r}")
        if name not in self.names:
            raise KeyError(name)
        return self.columns[self.names.index(name)]

    def to_frame(self):
        """A DataFrame."""
        return frame_of(self.names, self.rows())

    @staticmethod
    def concatenated(tables):
        """One below the other: columns of the same name and number among those of that name are one;
        None where a table lacks a column. The order of first appearance is kept."""
        tables = list(tables)
        height = sum(map(len, tables))
        columns, top = {}, 0
        for table in tables:
            for key, column in zip(table._keys(), table.columns):
                if key not in columns:
                    columns[key] = [None] * height
                columns[key][top:top + len(column)] = column
            top += len(table)
        return Table([name for name, _ in columns], columns.values())

    def _keys(self):
        """The names, each with its number among those of the same name."""
        seen = {}
        for name in self.names:
            seen[name] = seen.get(name, 0) + 1
            yield name, seen[name]

    def __len__(self):
        return len(self.columns[0]) if self.columns else 0

    def __eq__(self, other):
        if not isinstance(other, Table):
            return NotImplemented
        return (self.names, self.columns) == (other.names, other.columns)

    __hash__ = None

    def __repr__(self):
        return f"<table of {len(self)} rows: {', '.join(map(str, self.names))}>"

    def _repr_html_(self):
        from .display import table_html
        return table_html(self)


def query_table(tree, path):
    code, texts, offsets, names = raw.uxtree_xpath([], [], tree, None, path, True)
    check("uxtree_xpath", code, code == 0)
    columns = [texts[begin:end] for begin, end in zip(offsets, offsets[1:])]
    return Table(names, columns)


def select_table(tree, rows, columns):
    cells = {name: Selection(path) for name, path in columns.items()}
    found = [[] for _ in cells]
    for node in Selection(rows)(tree):
        if isinstance(node, str):
            raise ValueError(f"{rows!r} selects attributes or texts, not elements")
        for column, selection in zip(found, cells.values()):
            texts = selection.texts(node)
            column.append(texts[0] if texts else None)
    return Table(cells, found)
