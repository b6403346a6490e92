from harness import case

DIALOG = """<Options Label="Fit options">
  <Range DataID="12" RepeatID="3" Label="Range"><Start DataID="13">1.5</Start></Range>
  <Weights DataID="20" RepeatNodeID="4" NodeID="7" Use="1" OldValue="None">Poisson</Weights>
  <Secret Show="0">x</Secret>
  <Empty/>
</Options>
"""

CASES = [
    case("ShowsTagsIdsLabelsAndValues", ["show", "t.xml"], files={"t.xml": DIALOG}, out="""\
Options  "Fit options"
├── Range  id 12  repeat 3  "Range"
│   └── Start  id 13  = 1.5
├── Weights  id 20  repeat node 4  node id 7  = Poisson  (was "None")
├── Secret  = x  (hidden)
└── Empty
"""),
    case("ShowsTheElementsOwnId", ["show", "-"], stdin="<r><a _ux_id='5'/></r>",
         out="r\n└── a  #5\n"),
    case("ShowsOtherAttributesOnRequest", ["show", "-a", "-"],
         stdin="<r b='2' a='1'><c DataID='1' Label='L' x=''/></r>",
         out='r  @b="2"  @a="1"\n└── c  id 1  "L"  @x=""\n'),
    case("StopsAtADepth", ["show", "-d", "1", "-"], stdin="<r><a><b/><c/></a><d/></r>",
         out="r\n├── a  (2 below)\n└── d\n"),
    case("StopsAtTheRoot", ["show", "--depth=0", "-"], stdin="<r><a/></r>", out="r  (1 below)\n"),
    case("CutsLongTexts", ["show", "-"], stdin="<r>" + "é" * 100 + "</r>",
         out="r  = " + "é" * 71 + "…\n"),
    case("KeepsTextsThatJustFit", ["show", "-"], stdin="<r>" + "é" * 72 + "</r>",
         out="r  = " + "é" * 72 + "\n"),
    case("ShowsLongTextsWholeOnRequest", ["show", "--full", "-"], stdin="<r>" + "x" * 5000 + "</r>",
         out="r  = " + "x" * 5000 + "\n"),
    case("WritesControlCharactersVisibly", ["show", "-"], stdin="<r>a&#10;b&#9;c&#13;\x7f</r>",
         out="r  = a\\nb\\tc\\r\\x7f\n"),
    case("ShowsMixedContentAsTheElementsOwnText", ["show", "-"], stdin="<r>x<a/>y</r>",
         out="r  = xy\n└── a\n"),
    case("ReadsUtf16", ["show", "-"], stdin="<r>ü</r>".encode("utf-16"), out="r  = ü\n"),
    case("ReadsDeclaredLatin1", ["show", "-"],
         stdin='<?xml version="1.0" encoding="ISO-8859-1"?><r>ü</r>'.encode("latin-1"),
         out="r  = ü\n"),
    case("ColoursOnRequest", ["show", "--color=always", "-"], stdin="<r Label='L'/>",
         out='\x1b[1;34mr\x1b[0m  \x1b[32m"L"\x1b[0m\n'),
    case("TakesColourBeforeTheCommand", ["--color", "always", "show", "-"], stdin="<r/>",
         out="\x1b[1;34mr\x1b[0m\n"),
    case("LeavesColourOutOfPipes", ["show", "-"], stdin="<r/>", out="r\n"),
    case("LeavesColourOutOfFiles", ["show", "-", "-o", "out.txt"], stdin="<r/>",
         after={"out.txt": "r\n"}),
    case("RefusesAnUnknownColourChoice", ["show", "--color", "red", "-"], code=2,
         err=["--color", "uxtree show --help"]),
    case("RefusesANegativeDepth", ["show", "-d", "-1", "-"], code=2, err=["-1"]),
    case("SaysWhatADepthIs", ["show", "-d", "x", "-"], code=2,
         err=["--depth: Value x not in range 0 to 2147483647\n"]),
    case("ShowsWhatIsSelected", ["show", "--select", "//b[@i]", "-"],
         stdin="<r><a><b i='1'>x</b><b/></a><b i='2'><c/></b></r>", out="b  = x\nb\n└── c\n"),
    case("SaysThatNothingIsSelected", ["show", "--select", "//c", "-"], stdin="<r><b/></r>", code=1,
         err=["nothing matches '//c'", "no element is called 'c'"]),
]


def test_DrawsADeepTreeInLinearSpace(tool):
    depth = 9000
    result = tool.run(["show", "-"], stdin="<a>" * depth + "</a>" * depth)
    assert result.code == 0, result.err
    lines = result.out.splitlines()
    assert len(lines) == depth
    assert lines[2] == "    └── a"
    assert lines[depth - 1].endswith(f"[{depth - 1}] └── a"), lines[depth - 1]
    assert max(map(len, lines)) < 200


def test_ShowsAWideTree(tool):
    result = tool.run(["show", "-"], stdin="<r>" + "<a/>" * 20000 + "</r>")
    assert result.out.count("├── a\n") == 19999
    assert result.out.endswith("└── a\n")
