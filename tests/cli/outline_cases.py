import json

from harness import case

BOOKS = """<?xml version="1.0"?>
<!DOCTYPE r [ <!ELEMENT r ANY> ]>
<r><a x="1"/><b/><a y="2" x="3"><c>text</c></a><!-- <d/> --></r>
"""
TREE = """\
r
├── a  @x @y
│   └── c
└── b
"""
NESTED = {"name": "r", "attributes": [], "children": [
    {"name": "a", "attributes": ["x", "y"],
     "children": [{"name": "c", "attributes": [], "children": []}]},
    {"name": "b", "attributes": [], "children": []}]}

CASES = [
    case("FoldsRepetitionsIntoATree", ["outline", "b.xml"], files={"b.xml": BOOKS}, out=TREE),
    case("ReadsThroughAMapping", ["outline", "--lenient", "--mmap", "b.xml"], files={"b.xml": BOOKS}, out=TREE),
    case("ReadsStandardInput", ["outline", "-"], stdin=BOOKS, out=TREE),
    case("MapsStandardInputToo", ["outline", "--lenient", "--mmap", "-"], stdin=BOOKS, out=TREE),
    case("PrintsPathsThatQueriesTake", ["outline", "-f", "paths", "-"], stdin=BOOKS,
         out="/r\n/r|a\n/r|a|@x\n/r|a|@y\n/r|a|c\n/r|b\n"),
    case("PrintsXml", ["outline", "-f", "xml", "-"], stdin=BOOKS, out="""\
<?xml version="1.0" encoding="UTF-8"?>
<Outline>
  <Document Name="stdin">
    <Node Label="r">
      <Node Label="a">
        <Attr Label="@x"/>
        <Attr Label="@y"/>
        <Node Label="c"/>
      </Node>
      <Node Label="b"/>
    </Node>
  </Document>
</Outline>
"""),
    case("PrintsJsonAsAListForOneFile", ["outline", "-f", "json", "-"], stdin=BOOKS,
         json=[{"file": "stdin", **NESTED}]),
    case("PrintsJsonAsAListForTwoFiles", ["outline", "-f", "json", "a.xml", "b.xml"],
         files={"a.xml": "<e/>", "b.xml": BOOKS},
         json=[{"file": "a.xml", "name": "e", "attributes": [], "children": []},
               {"file": "b.xml", **NESTED}]),
    case("PrintsAnEmptyJsonListWhenNothingCouldBeRead", ["outline", "-f", "json", "none.xml"],
         json=[], code=3, err=["none.xml: No such file or directory"]),
    case("HeadsEachOfSeveralFiles", ["outline", "a.xml", "b.xml"],
         files={"a.xml": "<e/>", "b.xml": "<f/>"}, out="a.xml:\ne\n\nb.xml:\nf\n"),
    case("PrefixesThePathsOfSeveralFiles", ["outline", "-f", "paths", "a.xml", "b.xml"],
         files={"a.xml": "<e/>", "b.xml": "<f g=''/>"},
         out="a.xml: /e\nb.xml: /f\nb.xml: /f|@g\n"),
    case("AFileThatFailsDoesNotKeepTheOthersFromBeingRead",
         ["outline", "none.xml", "a.xml"], files={"a.xml": "<e/>"}, code=3, out="a.xml:\ne\n",
         err=["none.xml: No such file or directory"]),
    case("AFileThatFailsKeepsTheOldOutput", ["outline", "-o", "o.txt", "none.xml", "a.xml"],
         files={"a.xml": "<e/>", "o.txt": "old"}, code=3, err=["none.xml: "],
         after={"o.txt": "old"}),
    case("WritesIntoAFile", ["outline", "-o", "o.txt", "-"], stdin="<e/>", after={"o.txt": "e\n"}),
    case("SaysThatAnEmptyFileIsNotXml", ["outline", "e.xml"], files={"e.xml": ""}, code=3,
         err=["e.xml:1:1: ", "hint: "]),
    case("SaysThatTextIsNotXml", ["outline", "-"], stdin="hello\n", code=3, err=["stdin:1:"]),
    case("RefusesAFolder", ["outline", "."], code=3, err=[".: Is a directory"]),
    case("ShowsNothingOfABrokenFileAndSaysWhere", ["outline", "-"], stdin="<r><a><b/>\n</r>",
         code=3, out="", err=["stdin:2:3: mismatched tag: expected </a>"]),
    case("ShowsACutFileUpToTheCutAndSaysWhere", ["outline", "--partial", "-"], stdin="<r>\n<a><b/>\n<c x='",
         code=3, out="r\n└── a\n    └── b\n", err=["stdin:3:"]),
    case("TellsACutBehindAnEndTag", ["outline", "--partial", "-"], stdin="<r>\n<a></a>\n", code=3,
         out="r\n└── a\n", err=["stdin:3:1: the input ends before </r>"]),
    case("TellsACutRoot", ["outline", "-"], stdin="<r x='' y='", code=3, err=["stdin:1:1: "]),
    case("TakesCommentsBehindTheRoot", ["outline", "-"], stdin="<r><a/></r>\n<!-- </b> -->\n",
         out="r\n└── a\n"),
    case("IsForgivingOnRequest", ["outline", "--lenient", "-"], stdin="<r><a></b></a></r>",
         out="r\n└── a\n", err=["stdin:1:9: mismatched tag: expected </a>; the outline is what"]),
    case("KnowsTheEncodingsThatTheLoaderKnows", ["outline", "-"],
         stdin="<?xml version='1.0' encoding='ISO-8859-1'?><gr\xF6\xDFe \xE9=''/>".encode("latin-1"),
         out="größe  @é\n"),
    case("ReadsBehindADoctypeWithBracketsInQuotes", ["outline", "-"],
         stdin="<!DOCTYPE r [<!ENTITY e ']><x/>'>]><r a='x'><b/></r>", out="r  @a\n└── b\n"),
    case("RefusesWhatLooksFoldable", ["outline", "-"], stdin="<a><b x=1/></a>", code=3, out="",
         err=["stdin:1:9: not well-formed"]),
    case("LeavesNumericIdsOut", ["outline", "-"], stdin="<r _ux_id='7'><a _ux_id='x'/></r>",
         out="r\n└── a  @_ux_id\n"),
    case("RefusesAPipeThatIsTooLarge", ["outline", "--max-spool", "1KB", "-"],
         stdin="<r>" + "x" * 2000 + "</r>", code=4, err=["stdin: more than 1000 bytes", "hint: "]),
    case("MappingIsForTheForgivingScan", ["outline", "--mmap", "-"], stdin="<r/>", code=2,
         err=["--mmap requires --lenient"]),
    case("ChecksOnRequest", ["outline", "--check", "-"], stdin="<r><a></b></a></r>", code=3,
         err=["stdin:1:"]),
    case("GoesOnBehindCharactersBeyondTheFirstPlane", ["outline", "-"],
         stdin="<r><a>\U0001F600</a><b/></r>", out="r\n├── a\n└── b\n"),
    case("ReadsUtf16ThroughTheLoader", ["outline", "-"], stdin="<r><a x=''/></r>".encode("utf-16"),
         out="r\n└── a  @x\n"),
    case("KeepsNamesOfOtherScripts", ["outline", "-"], stdin="<größe 単位=''/>",
         out="größe  @単位\n"),
    case("ColoursOnRequest", ["outline", "--color", "always", "-"], stdin="<r x=''/>",
         out="\x1b[1;34mr\x1b[0m  \x1b[35m@x\x1b[0m\n"),
    case("NeedsAFile", ["outline"], code=2, err=["FILE is required", "uxtree outline --help"]),
    case("IsListedAndSuggested", ["outlin", "x.xml"], code=2,
         err=["did you mean 'uxtree outline'?"]),
    case("EscapesFileNamesInXml", ["outline", "-f", "xml", 'a"&<b.xml'],
         files={'a"&<b.xml': "<e/>"}, contains=['<Document Name="a&quot;&amp;&lt;b.xml">']),
]


def test_BothVariantsAgreeAboutAWideDocument(tool):
    wide = "<r>" + "".join(f"<e{i} a{i}=''/>" for i in range(3000)) + "</r>"
    tool.write("wide.xml", wide)
    streamed = tool.run(["outline", "-f", "paths", "wide.xml"]).out
    assert streamed == "/r\n" + "".join(f"/r|e{i}\n/r|e{i}|@a{i}\n" for i in range(3000))
    assert tool.run(["outline", "--lenient", "--mmap", "-f", "paths", "wide.xml"]).out == streamed


def test_DrawsAVeryDeepDocument(tool):
    depth = 200000  # deeper than the loader accepts
    tool.write("deep.xml", "<a>" * depth + "</a>" * depth)
    for form, mark in (("tree", "\n"), ("xml", '<Node Label="a"'), ("json", '"name":"a"')):
        result = tool.run(["outline", "-f", form, "deep.xml"])
        assert result.code == 0 and result.err == "", result.err
        assert len(result.out) < 200 * depth
        assert result.out.count(mark) == depth
    mapped = tool.run(["outline", "-f", "json", "--lenient", "--mmap", "deep.xml"])
    assert mapped.out == result.out and mapped.code == 0


def test_JsonOfManyFilesIsOneList(tool):
    names = [f"{i}.xml" for i in range(5)]
    for name in names:
        tool.write(name, "<r/>")
    rows = json.loads(tool.run(["outline", "-f", "json", *names]).out)
    assert [row["file"] for row in rows] == names
