"""Several files at once: order, broken ones among them, and one outline of all."""
from harness import case

FILES = {f"{i}.xml": f"<r a{i % 3}='{i}'><x>{i}</x></r>" for i in range(30)}
NAMES = list(FILES)
MIXED = {**FILES, "13.xml": "<r><x></r>", "21.xml": "<other/>"}


def same_for_any_number(name, args, code):
    def check(tool):
        alone, many = (tool.run([*args, "-j", jobs, *NAMES], files=MIXED) for jobs in ("1", "8"))
        assert alone.code == code and many.code == code, (alone.code, many.code, alone.err)
        assert alone.out == many.out and len(alone.out) > 100, many.out
        assert alone.err == many.err, many.err
        assert "13.xml:1:9: mismatched tag" in many.err, many.err
        places = [many.out.find(f"{i}.xml") for i in (10, 11, 12, 14, 15, 16, 29)]
        assert -1 not in places and places == sorted(places), many.out

    check.__name__ = name
    return check


CASES = [
    case("MergesOutlines", ["outline", "--merge", *NAMES, "-f", "paths"], files=FILES,
         out="/r\n/r|@a0\n/r|@a1\n/r|@a2\n/r|x\n"),
    case("MergesOutlinesOfOtherRoots", ["outline", "--merge", "20.xml", "21.xml", "-f", "json"],
         files=MIXED,
         json=[{"file": "", "name": "r", "attributes": ["a2"],
                "children": [{"name": "x", "attributes": [], "children": []}]},
               {"file": "", "name": "other", "attributes": [], "children": []}]),
    case("MergesWhatCanBeRead", ["outline", "--merge", "-f", "paths", "12.xml", "13.xml", "14.xml"],
         files=MIXED, code=3, out="/r\n/r|@a0\n/r|@a2\n/r|x\n", err=["13.xml:1:9: mismatched tag"]),
    case("LenientOutlinesAreNotMerged", ["outline", "--merge", "--lenient", "1.xml"], files=FILES,
         code=2, err=["--lenient"]),
    case("WantsAJob", ["query", "-j", "0", "//x", "1.xml"], files=FILES, code=2, err=["-j"]),
    case("LeavesOutAColumnWithoutTexts", ["query", "-t", "//x", "t.xml"],
         files={"t.xml": "<r><x a='1'/><x a='2'/></r>"}, out="@a\n1\n2\n"),
    case("KeepsAColumnWithAText", ["query", "-t", "-f", "csv", "//x", "t.xml"],
         files={"t.xml": "<r><x a='1'/><x a='2'>t</x></r>"}, out="@a,.\n1,\n2,t\n"),
    case("KeepsTheOnlyColumn", ["query", "-t", "-f", "json", "//x", "t.xml"],
         files={"t.xml": "<r><x/></r>"}, json=[{"file": "t.xml", "values": {".": ""}}]),
    same_for_any_number("OutlinesComeInOrder", ["outline"], 3),
    same_for_any_number("OutlinesAsJsonComeInOrder", ["outline", "-f", "json"], 3),
    same_for_any_number("PartialOutlinesComeInOrder", ["outline", "--partial"], 3),
    same_for_any_number("AnswersComeInOrder", ["query", "//x"], 3),
    same_for_any_number("TablesComeInOrder", ["query", "-t", "-f", "csv", "//x"], 3),
    same_for_any_number("AnswersOfStepsComeInOrder", ["query", "/r|x"], 3),
]


def test_LenientOutlinesComeInOrder(tool):
    alone, many = (tool.run(["outline", "--lenient", "-j", jobs, *NAMES], files=MIXED)
                   for jobs in ("1", "8"))
    assert alone.code == many.code == 0, alone.err
    assert alone.out == many.out and alone.err == many.err and "13.xml:1:9: " in many.err, many.err
