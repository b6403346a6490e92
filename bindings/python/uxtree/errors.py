"""What can go wrong, with its place."""


class TreeError(Exception):
    """What uxtree raises beyond Python's own exceptions."""


class _WithFields(TreeError):
    """An exception that is made of its fields, so that it survives pickling."""

    def __reduce__(self):
        return type(self), self._fields


class LoadError(_WithFields):
    """A file that is not there or no well-formed XML.

    path is the file, None for a text in memory; line and column count from 1 and are 0 without a
    place. The text is "file:line:column: reason".
    """

    def __init__(self, message, path=None, line=0, column=0):
        place = [str(path) if path is not None else "(text)"]
        place += [str(number) for number in (line, column) if number]
        super().__init__(f"{':'.join(place)}: {message}")
        self._fields = (message, path, line, column)
        self.message, self.path, self.line, self.column = self._fields


class SaveError(_WithFields):
    """A file that could not be written; the old one is whole. The text names the node at fault."""

    def __init__(self, message, path=None):
        super().__init__(message)
        self._fields = (message, path)
        self.message, self.path = self._fields


class SelectError(_WithFields):
    """A path that is not understood (position: characters before the fault), or one whose answer
    depends on text between child elements (node: the element)."""

    def __init__(self, message, expression=None, position=None, node=None):
        place = f" at {position + 1} of {expression!r}" if position is not None else ""
        super().__init__(message + place)
        self._fields = (message, expression, position, node)
        self.message, self.expression, self.position, self.node = self._fields


class CodeError(_WithFields):
    """An entry point that refused: its name, its code, and the code's name and meaning."""

    def __init__(self, function, code, name=None, message=None):
        super().__init__(f"{function}: {message or 'failed'} ({name or code})")
        self._fields = (function, code, name, message)
        self.function, self.code, self.name, self.message = self._fields


class ValuesError(_WithFields):
    """Values that cannot be collected or set.

    code says why, as in "duplicate_id"; id is the identifier at fault, or None; place is the path of
    the node at fault, or None.
    """

    def __init__(self, code, id=None, message="", place=None):
        where = f" at {place!r}" if place is not None else ""
        super().__init__(f"{message}{where}")
        self._fields = (code, id, message, place)
        self.code, self.id, self.message, self.place = self._fields
