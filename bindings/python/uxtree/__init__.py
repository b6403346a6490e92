"""Option and data trees in XML: load, edit, save without damage, tables, spectra, outlines.

    import uxtree
    t = uxtree.load("dialog.xml")
    t["Input/Range1/X"].value = "[Book2]Sheet1!A"
    t.save("out.xml")

uxtree.raw has every entry point of the library as the headers declare it.
"""

from ._core import raw, version as __version__
from .errors import CodeError, LoadError, SaveError, SelectError, TreeError, ValuesError
from .tree import Attributes, Selection, Tree, edit, from_string, load
from .outlines import Outline, outline
from .table import Table
from .theme import Theme
from . import analyses, many, n42

__all__ = [
    "Attributes", "CodeError", "LoadError", "Outline", "SaveError", "SelectError", "Selection",
    "Table", "Theme", "Tree", "TreeError", "ValuesError", "analyses", "edit", "from_string", "load",
    "many", "n42", "outline", "raw",
]
