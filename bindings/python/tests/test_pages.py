"""The pages of the documentation, run as a reader would."""

import ast
import os
import pathlib
import re
import shutil

import pytest

SOURCE = pathlib.Path(os.environ["UXTREE_SOURCE"])


@pytest.mark.parametrize("page", ["python.md", "scale.md"])
def test_page(page, capsys):
    shutil.copy(SOURCE / "examples/dialog.xml", "dialog.xml")
    shutil.copy(SOURCE / "examples/spectrum.n42", "spectrum.n42")
    for folder, example in (("spectra", "spectrum.n42"), ("dialogs", "dialog.xml")):
        os.mkdir(folder)
        for number in range(4):
            shutil.copy(SOURCE / "examples" / example, f"{folder}/{number}{example[-4:]}")
    text = (SOURCE / "docs" / page).read_text()
    blocks = re.findall(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    assert blocks
    names = {}
    for block in blocks:
        ast.parse(block)
        exec(compile(block, page, "exec"), names)
    if page == "python.md":
        out = (pathlib.Path("out.xml")).read_text()
        assert "[Book2]Sheet1!A" in out and "<!--" in out
        assert capsys.readouterr().out.startswith("[Book1]Sheet1!A\n")
