"""Many files: groups on processes and on a cluster yield what one process yields."""

import os
import pathlib
import random
import shutil
import subprocess
import sys

import pytest

import uxtree
from uxtree import many

EXAMPLES = pathlib.Path(os.environ["UXTREE_SOURCE"]) / "examples"


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    """40 documents that differ in structure and values, one of them broken."""
    folder = tmp_path_factory.mktemp("many")
    chance = random.Random(5)
    for number in range(40):
        tree = uxtree.Tree("dialog")
        tree.attrs["Label"] = f"Dialog {number}"
        for _ in range(chance.randrange(3, 12)):
            node = tree.add(f"n{chance.randrange(20)}", chance.randrange(1000))
            node.attrs[f"a{chance.randrange(4)}"] = 1
            leaf = node.add("deep").add(f"d{chance.randrange(3)}", chance.random())
            leaf.data_id = chance.randrange(1, 30)
        tree.save(folder / f"{number:02}.xml", form="indented")
    (folder / "17.xml").write_text("<dialog>\n<a></dialog>")
    return folder


JOBS = {
    "outline": ((), {}),
    "values": ((), {}),
    "query": (("/dialog|n1",), {}),
}


def comparable(result):
    outcome, errors = result
    return outcome, [str(error) for error in errors]


@pytest.mark.parametrize("job", JOBS)
def test_groups_do_not_matter(folder, job):
    arguments, options = JOBS[job]
    function = getattr(many, job)
    whole = function(str(folder / "*.xml"), *arguments, errors="collect", **options)
    assert [error.path for error in whole[1]] == [str(folder / "17.xml")]
    assert whole[0]
    again = function(str(folder / "*.xml"), *arguments, processes=2, errors="collect", **options)
    assert comparable(again) == comparable(whole)
    with pytest.raises(uxtree.LoadError, match="17.xml:2:"):
        function(str(folder / "*.xml"), *arguments, processes=2)
    with pytest.raises(ValueError):
        function([], *arguments, errors="ignore")


def test_broken_files_are_told_in_their_order(tmp_path):
    files = []
    for number in range(9):
        files.append(str(tmp_path / f"{number}.xml"))
        broken = number in (0, 3, 4, 8)
        pathlib.Path(files[-1]).write_text("<r>" if broken else f"<r><n{number}/></r>")
    outline, errors = many.outline([*files, files[3]], errors="collect")
    assert str(outline) == "/r\n/r/n1\n/r/n2\n/r/n5\n/r/n6\n/r/n7"
    assert [error.path for error in errors] == [files[0], files[3], files[4], files[8], files[3]]


def test_values_of_files_are_their_values(folder):
    table, _ = many.values(folder / "*.xml", errors="collect")
    assert f"<th>{table.names[1]}</th>" in table._repr_html_()
    assert repr(table).startswith(f"<table of 39 rows: file, {table.names[1]}, ")
    assert len(table) == 39 and table.names[0] == "file"
    for row in table.rows():
        pairs = uxtree.load(row[0]).value_pairs()
        assert sorted((id, text) for id, text in zip(table.names[1:], row[1:])
                      if text is not None) == sorted(pairs)


def test_spectra(tmp_path):
    for number in range(3):
        shutil.copy(EXAMPLES / "spectrum.n42", tmp_path / f"{number}.n42")
    table = many.spectra(tmp_path / "*.n42")
    assert len(table) == 12 and table == many.spectra(tmp_path / "*.n42", processes=2)
    assert table.column("counts")[0] == 577840.0
    assert "<td>577840.0</td>" in table._repr_html_()


def test_a_cluster_of_two_workers(folder, tmp_path):
    pytest.importorskip("distributed")
    from dask.distributed import Client, LocalCluster
    import uxtree.dask
    files = str(folder / "*.xml")
    for number in range(3):
        shutil.copy(EXAMPLES / "spectrum.n42", tmp_path / f"{number}.n42")
    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
        with Client(cluster) as client:
            assert len(client.scheduler_info()["workers"]) == 2
            for job, (arguments, options) in JOBS.items():
                found = getattr(uxtree.dask, job)(files, *arguments, partitions=19,
                                                  errors="collect", **options)
                expected = getattr(many, job)(files, *arguments, errors="collect", **options)
                assert comparable(found) == comparable(expected)
            assert (uxtree.dask.spectra(str(tmp_path / "*.n42"))
                    == many.spectra(str(tmp_path / "*.n42")))
            with pytest.raises(uxtree.LoadError, match="17.xml:2:"):
                uxtree.dask.outline(files)
            assert uxtree.dask.outline([]) == uxtree.Outline()


@pytest.mark.parametrize("program", ["dask_outline.py", "processes_outline.py"])
def test_examples(folder, program):
    if program.startswith("dask"):
        pytest.importorskip("distributed")
    files = sorted(str(path) for path in folder.glob("*.xml"))
    start = ["2"] if program.startswith("processes") else []
    done = subprocess.run([sys.executable, EXAMPLES / program, *start, *files],
                          capture_output=True, text=True)
    expected, _ = many.outline(files, errors="collect")
    assert done.stdout == f"{expected}\n", done.stderr
    assert "17.xml:2:" in done.stderr and done.returncode == 3
