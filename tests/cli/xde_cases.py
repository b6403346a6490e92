from harness import case

DESCRIPTION = """<Data><Name>run|1</Name><Point><x>1</x></Point><Point><x>2</x></Point></Data>"""
PREPARED = """<?xml version="1.0" encoding="UTF-8"?><Data><Name>run|1</Name>\
<Points FileDataDimsVector="2"><Point Label="Point_0"><x>1</x></Point><Point Label="Point_1">\
<x>2</x></Point></Points></Data>"""
TREE = """<Data Label="D|1"><Points><Point Label="Point_0"><x>1</x></Point>\
<Point Label="Point_1"><x>2</x></Point></Points><Counts>5</Counts></Data>"""

CASES = [
    case("PreparesADescription", ["xde", "prepare", "d.xml"], files={"d.xml": DESCRIPTION},
         out=PREPARED + "\n"),
    case("PreparesIntoAFile", ["xde", "prepare", "-", "-o", "t.xml"], stdin=DESCRIPTION,
         after={"t.xml": PREPARED}),
    case("PreviewsFiveElementsOfAnArray", ["xde", "prepare", "--preview", "-"],
         stdin="<r>" + "<p/>" * 9 + "</r>",
         contains=['<r FileDataDimsVector="9">', 'Label="p_4"/></r>']),
    case("SaysWhereADescriptionIsBroken", ["xde", "prepare", "d.xml"], files={"d.xml": "<r>"},
         code=3, err=["d.xml:1:4: "]),
    case("MissesADescription", ["xde", "prepare", "missing.xml"], code=3, err=["missing.xml"]),
    case("ListsPathsOfLeaves", ["xde", "paths", "-"], stdin=TREE, out="""\
D\\|1|Points|Point_0|x
D\\|1|Points|Point_1|x
D\\|1|Counts
"""),
    case("FindsAValue", ["xde", "find", "-", "D\\|1|Points|Point_1|x"], stdin=TREE, out="2\n"),
    case("FindsTheValuesOfABranch", ["xde", "find", "-", "D\\|1|Points"], stdin=TREE,
         out="1, 2\n"),
    case("TakesSelectionsOff", ["xde", "find", "-", "D\\|1|Counts[0:3]"], stdin=TREE, out="5\n"),
    case("KeepsSelectionsOnRequest", ["xde", "find", "-e", "-", "D\\|1|Counts[0:3]"], stdin=TREE,
         code=1, err=["stdin: no node at 'D\\|1|Counts[0:3]'"]),
    case("ComparesTagsOnRequest", ["xde", "find", "--tags", "-", "D\\|1|Points|Point_1"],
         stdin=TREE, code=1, err=["stdin: no node at"]),
    case("PrintsABranch", ["xde", "find", "--xml", "-", "D\\|1|Points|Point_0"], stdin=TREE,
         contains=['<Point Label="Point_0"><x>1</x></Point>']),
    case("FindsNothing", ["xde", "find", "-", "D\\|1|Point"], stdin=TREE, code=1,
         err=["stdin: no node at 'D\\|1|Point'\n", "uxtree xde paths lists"]),
]
