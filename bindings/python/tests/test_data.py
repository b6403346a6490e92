"""Values, themes, changes, tables, outlines, spectra and analyses."""

import datetime
import os
import pathlib
import pickle
import subprocess
import sys

import numpy
import pytest

import uxtree
from uxtree import analyses, n42

EXAMPLES = pathlib.Path(os.environ["UXTREE_SOURCE"]) / "examples"


@pytest.fixture
def dialog():
    return uxtree.load(EXAMPLES / "dialog.xml")


def test_values(dialog):
    values = dialog.values()
    assert len(values) == 30 and values[65587] == "[Book1]Sheet1!A"
    assert dialog.set_values({65587: "A", 22: 9, 12345: "no node"}) == 2
    assert dialog["Input/Range1/X"].value == "A" and dialog["Baseline/Points"].as_int() == 9
    before = dialog.xml()
    for wrong, code, id in (([(1, "a"), (1, "b")], "duplicate_id", 1),):
        with pytest.raises(uxtree.ValuesError) as error:
            dialog.set_values(wrong)
        assert (error.value.code, error.value.id) == (code, id)
    with pytest.raises(uxtree.ValuesError) as error:
        dialog.set_values({1: "x", 12345: "y"}, strict=True)
    assert (error.value.code, error.value.id) == ("missing_id", 12345)
    assert dialog.xml() == before and dialog.set_values({}) == 0
    twice = uxtree.from_string("<r><a DataID='1'>x</a><b DataID='1'>y</b></r>")
    assert twice.value_pairs() == [(1, "x"), (1, "y")]
    with pytest.raises(uxtree.ValuesError, match="identifier 1 repeats"):
        twice.values()
    broken = uxtree.from_string("<r RepeatID='1'><a RepeatID='32767'><b DataID='1'>x</b></a></r>")
    with pytest.raises(uxtree.ValuesError) as error:
        broken.values()
    assert error.value.code == "repeat_out_of_range" and error.value.place == "a"


def test_theme(dialog, tmp_path):
    theme = uxtree.Theme.of(dialog, comment="mine")
    theme.save(tmp_path / "m.xml")
    again = uxtree.Theme.load(tmp_path / "m.xml")
    assert again == theme and again.comment == "mine" and len(again) == 30
    dialog.clear_values()
    assert again.apply(dialog) == 30
    assert uxtree.Theme.of(dialog, comment="mine") == theme
    assert pickle.loads(pickle.dumps(theme)) == theme
    assert uxtree.Theme({1: 2.5}, labels=["L"]).tree().xml() == (
        '<Settings>Settings<node1 Label="L">2.5</node1></Settings>')


def test_changes(dialog):
    before = dialog.copy()
    dialog["Input/Range1/X"].value = "B"
    dialog["Input/Range1"].attrs["k"] = "1"
    dialog["Find"].remove()
    rows = dialog.change_rows(before)
    assert rows[:2] == [("Input/Range1@k", None, "1"),
                        ("Input/Range1/X", "[Book1]Sheet1!A", "B")]
    assert all(new is None and path.startswith("Find") for path, _, new in rows[2:])
    frame = dialog.changes_since(before)
    assert list(frame.columns) == ["path", "old", "new"] and len(frame) == len(rows)
    same = before.copy()
    same["Input/Range1/X"].value = "B"
    assert same.mark_changes(before) == 1
    assert same["Input/Range1/X"].attrs["OldValue"] == "[Book1]Sheet1!A"


def test_tables(dialog):
    table = dialog.query_table("/PeakAnalysis|Input|Range1")
    assert table.names == ["X", "Y", "Weight"][: len(table.names)]
    frame = dialog.query("/PeakAnalysis|Input|Range1")
    assert frame.iloc[0, 0] == "[Book1]Sheet1!A" and len(frame) == len(table)
    repeated = uxtree.from_string("<r><x><a>1</a><a>2</a></x><x><a>3</a></x></r>")
    frame = repeated.query("/r|x")
    assert list(frame.columns) == ["a", "a"] and frame.values.tolist() == [["1", "2"], ["3", ""]]
    with pytest.raises(ValueError):
        repeated.query_table("/r|x").column("a")
    with pytest.raises(uxtree.CodeError) as error:
        repeated.query("/other|x")
    assert error.value.name == "wrong_root"
    chosen = repeated.select_table("x", {"first": "a", "none": "@k"})
    assert chosen.rows() == [("1", None), ("3", None)]
    joined = uxtree.Table.concatenated([chosen, uxtree.Table(["new", "first"], [["n"], ["f"]])])
    assert joined.names == ["first", "none", "new"]
    assert joined.rows() == [("1", None, None), ("3", None, None), ("f", None, "n")]
    assert "<th>first</th>" in joined._repr_html_()


OTHER_LIBRARIES = {
    "the kit": ("int ux_version_fits(const char* v) { return 0; }\n"
                'const char* ux_version(void) { return "9.8.7"; }\n',
                f"uxtree was built for version {uxtree.__version__} of its libraries, and finds "
                "version 9.8.7"),
    "the product": ('const char* UXVersion(void) { return "9.8.7"; }\n',
                    f"libuxtree_Utils 9.8.7 does not fit libuxtree_kit {uxtree.__version__}"),
    "the host": ("int _Z17UXGetHostContractv(void) { return 1; }\n",
                 f"libuxtree_Utils {uxtree.__version__} works with hosts of contract 2, not of "
                 "contract 1"),
}


@pytest.mark.parametrize("library", OTHER_LIBRARIES)
def test_libraries_that_do_not_fit_are_refused(library, tmp_path):
    code, reason = OTHER_LIBRARIES[library]
    source = tmp_path / "other.c"
    source.write_text(code)
    other = tmp_path / "other.so"
    subprocess.run(["cc", "-shared", "-fPIC", "-o", other, source], check=True)
    preload = f"{os.environ.get('LD_PRELOAD', '')} {other}"
    folder = str(pathlib.Path(uxtree.__file__).resolve().parent.parent)
    done = subprocess.run([sys.executable, "-c", "import uxtree"], capture_output=True, text=True,
                          env={**os.environ, "LD_PRELOAD": preload, "PYTHONPATH": folder})
    assert done.returncode == 1
    assert done.stderr.endswith(f"ImportError: {reason}\n")


def test_outlines(dialog, tmp_path):
    whole = uxtree.from_string("<r><a x='1'/><b><c/></b></r>").outline()
    assert str(whole) == "/r\n/r/a\n/r/a/@x\n/r/b\n/r/b/c"
    parts = [uxtree.from_string(xml).outline() for xml in
             ("<r><a/></r>", "<r><a x='1'/><b/></r>", "<r><b><c/></b></r>")]
    left = (parts[0] | parts[1]) | parts[2]
    right = parts[0] | (parts[1] | parts[2])
    assert left == right == whole == uxtree.Outline.union_all(parts)
    assert str(parts[0]) == "/r\n/r/a"  # is as it was
    assert pickle.loads(pickle.dumps(left)) == left
    assert not uxtree.Outline() and (uxtree.Outline() | left) == left
    files = []
    for number in range(3):
        files.append(tmp_path / f"{number}.xml")
        files[-1].write_text(f"<r><n{number}/></r>")
    assert str(uxtree.outline(files)) == "/r\n/r/n0\n/r/n1\n/r/n2"
    assert uxtree.outline(str(tmp_path / "*.xml")) == uxtree.outline(files)
    files[1].write_text("<r>")
    with pytest.raises(uxtree.LoadError) as error:
        uxtree.outline(files)
    assert error.value.path == str(files[1])


def test_spectra():
    file = n42.read(EXAMPLES / "spectrum.n42")
    assert (file.form, len(file.spectra), file.notes) == ("2011", 4, [])
    spectrum = file.spectra[0]
    assert spectrum.start == datetime.datetime(2026, 1, 2, 9, tzinfo=datetime.timezone.utc)
    assert spectrum.live == 3597.69 and spectrum.counts.dtype == numpy.float64
    assert len(spectrum.energy) == len(spectrum.counts) == len(spectrum.edges) - 1 == 1024
    assert spectrum.rate == spectrum.total / spectrum.live
    gross, background, net, _ = spectrum.region(10, 20)
    assert gross == spectrum.counts[10:21].sum() and net == gross - background
    again = pickle.loads(pickle.dumps(spectrum))
    assert again.name == spectrum.name and (again.counts == spectrum.counts).all()
    assert list(file.summary()["name"]) == [each.name for each in file.spectra]
    assert "<svg" in spectrum._repr_html_()
    from uxtree.display import plain_svg
    assert plain_svg(spectrum).count(",") == 640
    tree, information = n42.import_tree(EXAMPLES / "spectrum.n42")
    counts = tree.select("//ChannelData_0")[0].vector
    assert (counts == spectrum.counts).all()
    assert n42.detectors(EXAMPLES / "spectrum.n42") == file.detectors
    with pytest.raises(uxtree.LoadError, match="no spectrum file"):
        n42.read(EXAMPLES / "dialog.xml")


@pytest.mark.parametrize("text, expected", [
    ("2026-01-02T09:00:00Z", datetime.datetime(2026, 1, 2, 9, tzinfo=datetime.timezone.utc)),
    ("2026-01-02T09:00:00.5", datetime.datetime(2026, 1, 2, 9, 0, 0, 500000)),
    ("2026-01-02T09:00:00-0530", datetime.datetime.fromisoformat("2026-01-02T09:00:00-05:30")),
    ("2 January 2026", None), ("", None)])
def test_start_times(text, expected):
    assert n42.parse_start(text) == expected


def test_analyses(tmp_path):
    ranges = uxtree.Tree("InputData")
    for x, y in (("Col(A)", "Col(B)"), ("Col(C)", "Col(D)")):
        analyses.add_range(ranges, x, y)
    found = [[node.value for node in each] for each in analyses.ranges(ranges)]
    assert [each[:2] for each in found] == [["Col(A)", "Col(B)"], ["Col(C)", "Col(D)"]]
    ranges[0].remove()
    analyses.renumber_ranges(ranges)
    assert [node.tag for node in ranges] == ["Range1"]

    stored = uxtree.from_string("<Weight WeightMethod='8' Weight_A='1' Weight_B='2.5' Weight_C='-3'>"
                                "Col(W)</Weight>")
    assert analyses.weight(stored) == {"method": 8, "a": 1.0, "b": 2.5, "c": -3.0, "data": "Col(W)"}
    expanded = analyses.expand_weight(stored)
    assert analyses.store_weight(expanded).xml() == stored.xml()
    analyses.set_weight_method(expanded, 6, a=4.0)
    assert analyses.weight(analyses.store_weight(expanded))["a"] == 4.0
    assert len(analyses.weight_methods()) == 15
    assert analyses.weight_method(8)[1:] == (True, True, True, True)
    with pytest.raises(uxtree.CodeError):
        analyses.weight_method(99)

    statistics = uxtree.Tree("Statistics")
    analyses.add_result(statistics, 0, 1, {"N": 12, "Mean": 3.5}, low=1, high=2)
    (place, node), = analyses.results(statistics)
    fields = analyses.statistics(node)
    assert place == (0, 1) and (fields["N"], fields["Mean"], fields["max"]) == (12, 3.5, 2.0)
    assert numpy.isnan(fields["SD"])
    assert analyses.results_table(statistics)["Mean"].tolist() == [3.5]

    assert analyses.data_string(3) == "?$OP:A=3"
    assert analyses.label_string(3, 1) == "?$OP:E1=3"
    assert analyses.retype("?$OP:A=3", "F") == "?$OP:F=3"
    assert analyses.combine_labels(["?$OP:A", "?$OP:B"]) == '?$OP:(A) (" - ") (B)'
    assert analyses.path_names(analyses.path_text(["a", "b|c"])) == ["a", "b|c"]
    description = tmp_path / "d.xml"
    description.write_text("<f><v>1</v><v>2</v></f>")
    prepared = analyses.prepare_description(description)
    assert [node.label for node in prepared] == ["v_0", "v_1"]
