"""The pages of the documentation, run as a reader would."""

import ast
import os
import pathlib
import re
import shutil

import pytest

SOURCE = pathlib.Path(os.environ["UXTREE_SOURCE"])


@pytest.mark.parametrize("page", ["README.md", "docs/python.md", "docs/scale.md"])
def test_page(page, capsys):
    for example in ("dialog.xml", "smooth.xml", "spectrum.n42"):
        shutil.copy(SOURCE / "examples" / example, example)
    for folder, example in (("spectra", "spectrum.n42"), ("dialogs", "dialog.xml")):
        os.mkdir(folder)
        for number in range(4):
            shutil.copy(SOURCE / "examples" / example, f"{folder}/{number}{example[-4:]}")
    text = (SOURCE / page).read_text()
    blocks = re.findall(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    assert blocks
    names = {}
    for block in blocks:
        ast.parse(block)
        exec(compile(block, page, "exec"), names)
    if page == "docs/python.md":
        out = (pathlib.Path("out.xml")).read_text()
        assert "[Book2]Sheet1!A" in out and "<!--" in out
        assert capsys.readouterr().out.startswith("[Book1]Sheet1!A\n")
    if page == "README.md":
        before = (SOURCE / "examples/smooth.xml").read_text().splitlines()
        after = pathlib.Path("smooth.xml").read_text().splitlines()
        changed = [new for old, new in zip(before, after, strict=True) if old != new]
        assert changed == ['  <Points Label="Points of Window" DataID="2">7</Points>']
