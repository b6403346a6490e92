"""uxtree format, check and show -f json."""
from harness import case

MESSY = "<?xml version='1.0'?><!-- c --><r><a>1</a>\n\n<b  k = 'v' ><c/></b></r>"
NEAT = """<?xml version='1.0'?>
<!-- c -->
<r>
  <a>1</a>
  <b k='v'>
    <c/>
  </b>
</r>
"""
BROKEN = "<r>\n  <a></b>\n</r>"
MIXED = "<p id='1'>Hello <b>big</b> <!-- x -->world<i/>!<!-- y --></p>"

CASES = [
    # --- format ----------------------------------------------------------------------------------
    case("Formats", ["format", "-"], stdin=MESSY, out=NEAT),
    case("IndentsByTabs", ["format", "--indent", "tab", "-"], stdin="<r><a/></r>",
         out="<r>\n\t<a/>\n</r>\n"),
    case("WritesNoLines", ["format", "--compact", "-"], stdin=NEAT,
         out="<?xml version='1.0'?><!-- c --><r><a>1</a><b k='v'><c/></b></r>\n"),
    case("FormatsInPlace", ["format", "a.xml", "b.xml", "bad.xml", "-i.bak"],
         files={"a.xml": MESSY, "b.xml": NEAT, "bad.xml": BROKEN}, code=3,
         err=["bad.xml:2:8: mismatched tag"],
         after={"a.xml": NEAT, "a.xml.bak": MESSY, "b.xml": NEAT, "b.xml.bak": None,
                "bad.xml": BROKEN}),
    case("ShowsWhatFormattingChanges", ["format", "-n", "a.xml"], files={"a.xml": "<r><a/></r>\n"},
         out="--- a.xml\n+++ a.xml\n@@ -1 +1,3 @@\n-<r><a/></r>\n+<r>\n+  <a/>\n+</r>\n"),
    case("FormatsIntoAFile", ["format", "a.xml", "-o", "o.xml"], files={"a.xml": MESSY},
         after={"o.xml": NEAT, "a.xml": MESSY}),
    case("SeveralFilesAreFormattedInPlace", ["format", "a.xml", "a.xml"], files={"a.xml": MESSY},
         code=2, err=["several files are formatted in place"]),
    case("FormatsNoStandardInputInPlace", ["format", "-", "-i"], stdin=MESSY, code=2,
         err=["standard input cannot be edited in place"]),
    case("WantsAnIndent", ["format", "--indent", "two", "-"], stdin=MESSY, code=2,
         err=["a number up to 16, or tab"]),
    case("RefusesToFormatWhatIsBroken", ["format", "-"], stdin=BROKEN, code=3,
         err=["stdin:2:8: mismatched tag", "<a></b>"]),

    case("KeepsTheOldFileWhenTheInputIsBroken", ["format", "a.xml", "-o", "o.xml"],
         files={"a.xml": BROKEN, "o.xml": "old"}, code=3, after={"o.xml": "old"},
         err=["a.xml:2:8: mismatched tag"]),

    case("FormatsNoPipeThatIsTooLarge", ["format", "--max-spool", "1KB", "-"],
         stdin="<r>" + " " * 2000 + "</r>", code=4, err=["more than 1000 bytes", "hint: --max-spool"]),

    # --- check -----------------------------------------------------------------------------------
    case("ChecksFiles", ["check", "a.xml", "bad.xml", "b.xml"],
         files={"a.xml": MESSY, "bad.xml": BROKEN, "b.xml": NEAT}, code=3,
         out="a.xml: well-formed\nb.xml: well-formed\n",
         err=["bad.xml:2:8: mismatched tag", "  <a></b>", "hint: an end tag"]),
    case("ChecksQuietly", ["check", "-q", "-"], stdin=NEAT),
    case("ChecksAsJson", ["check", "-f", "json", "a.xml", "bad.xml", "missing.xml"],
         files={"a.xml": MESSY, "bad.xml": BROKEN}, code=3,
         err=["bad.xml:2:8: ", "missing.xml: No such file"],
         json=[{"file": "a.xml", "line": None, "column": None, "error": None},
               {"file": "bad.xml", "line": 2, "column": 8,
                "error": "mismatched tag: expected </a>"},
               {"file": "missing.xml", "line": None, "column": None,
                "error": "No such file or directory"}]),
    # Of a long line, the surroundings of the place are shown, wherever blocks of the file end.
    case("ShowsThePlaceInALongLine", ["check", "a.xml"],
         files={"a.xml": "<r>\n<a>" + "é" * 100_000 + "</b>" + "z" * 100_000 + "</r>"}, code=3,
         err=["a.xml:2:100006: mismatched tag", "\n  " + "é" * 58 + "</b>" + "z" * 38 + "\n  " +
              " " * 60 + "^\n"]),
    case("GuessesAnEncodingFarIn", ["check", "a.xml"],
         files={"a.xml": b"<r>" + b"\xc3\xa9" * 40_000 + b"\n\x80</r>"}, code=3,
         err=["a.xml:2:1: not well-formed (invalid token)", "no UTF-8, probably windows-1252"]),
    case("ChecksNoPipeThatIsTooLarge", ["check", "--max-spool", "1KB", "-"],
         stdin="<r>" + " " * 2000 + "</r>", code=4, err=["more than 1000 bytes", "hint: --max-spool"]),
    case("ChecksAnyDepth", ["check", "-q", "-"], stdin="<a>" * 3000 + "</a>" * 3000),

    # --- show -f json ----------------------------------------------------------------------------
    case("ShowsJson", ["show", "-f", "json", "a.xml"],
         files={"a.xml": "<r k='1' _ux_id='7'><a> x </a><b/><c j=''><d>&lt;</d></c></r>"},
         json=[{"file": "a.xml", "name": "r", "attributes": {"k": "1", "_ux_id": "7"},
                "children": [{"name": "a", "attributes": {}, "text": " x "},
                             {"name": "b", "attributes": {}, "text": ""},
                             {"name": "c", "attributes": {"j": ""},
                              "children": [{"name": "d", "attributes": {}, "text": "<"}]}]}]),
    case("ShowsMixedContentInItsOrder", ["show", "-f", "json", "-"], stdin=MIXED,
         json=[{"file": "stdin", "name": "p", "attributes": {"id": "1"},
                "children": ["Hello ", {"name": "b", "attributes": {}, "text": "big"}, " world",
                             {"name": "i", "attributes": {}, "text": ""}, "!"]}]),
    case("ShowsSelectedNodesAsJson", ["show", "-f", "json", "--select", "//b | //b", "-"],
         stdin=MIXED, code=2, err=["not understood"]),
    case("ShowsEachSelectedNodeAsJson", ["show", "-f", "json", "--select", "/p/*", "-"],
         stdin=MIXED, json=[{"file": "stdin", "name": "b", "attributes": {}, "text": "big"},
                            {"file": "stdin", "name": "i", "attributes": {}, "text": ""}]),
    case("ShowsNoPartOfMixedContentInDoubt", ["show", "-f", "json", "-"],
         stdin="<!DOCTYPE r [<!ENTITY e 'in <f/> it'>]><r>a &e; b<c/></r>", code=4,
         err=["stdin: it is not known where the text of /r stands"]),
]


def test_DeepTreesAsJson(tool):
    result = tool.run(["show", "-f", "json", "-"], stdin="<a>" * 900 + "</a>" * 900)
    assert result.code == 0, result.err
    assert result.out.count('"name":"a"') == 900
    assert result.out.endswith("]}\n]\n"), result.out[-20:]
