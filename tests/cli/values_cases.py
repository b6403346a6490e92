"""uxtree values, theme, copy, changes, kv and label."""
import csv
import io
import json

from harness import ANY, case

XML = '<?xml version="1.0" encoding="UTF-8"?>'
TREE = ('<r><g Label="First" RepeatID="1" DataID="5" Use="1"><a Label="A" DataID="1">x, "y"</a></g>'
        '<h RepeatID="2"><a DataID="1">z</a></h></r>')
THEME = (XML + '<Settings Comment="mine">Settings<node5 Label="First">0</node5>'
         '<node65537 Label="A">new</node65537></Settings>')
APPLIED = ('<r><g Label="First" RepeatID="1" DataID="5" Use="0"><a Label="A" DataID="1">new'
           '</a></g><h RepeatID="2"><a DataID="1">z</a></h></r>')
CONFLICT = '<r><Range1 RepeatID="2"><Range2 RepeatID="2" Label="in"><a DataID="1"/></Range2></Range1></r>'
TWICE = '<r><a DataID="12">x</a><b DataID="12">y</b></r>'
ROWS = [{"id": 5, "label": "First", "value": "1", "node": "r.g"},
        {"id": 65537, "label": "A", "value": 'x, "y"', "node": "r.g.a"},
        {"id": 131073, "label": "a", "value": "z", "node": "r.h.a"}]

CASES = [
    # --- values
    case("ListsValues", ["values", "list", "t.xml"], files={"t.xml": TREE},
         out="    id  label  value   node\n"
             "     5  First  1       r.g\n"
             " 65537  A      x, \"y\"  r.g.a\n"
             "131073  a      z       r.h.a\n"),
    case("ListsValuesAsJson", ["values", "list", "-f", "json", "t.xml"], files={"t.xml": TREE},
         json=ROWS),
    case("ListsValuesFromStandardInput", ["values", "list", "-f", "csv", "-"], stdin=TREE,
         out='id,label,value,node\n5,First,1,r.g\n65537,A,"x, ""y""",r.g.a\n131073,a,z,r.h.a\n'),
    case("FindsNoValues", ["values", "list", "-"], stdin="<r><a>x</a></r>", code=1,
         err=["stdin: no node has a value and a DataID"]),
    case("ListsLeadingSettingsAndTheirNodes", ["values", "list", "-f", "json", "-"],
         stdin='<r><b DataID="1" Auto="2"><a DataID="2" DynaFx="f">x</a></b></r>',
         json=[{"id": 1, "label": "b", "value": "::{Auto=2}-1", "node": "r.b"},
               {"id": 2, "label": "a", "value": "::{DynaFx=f}x", "node": "r.b.a"}]),
    case("ExportsADocument", ["values", "export", "t.xml", "-o", "v.xml"], files={"t.xml": TREE},
         after={"v.xml": XML + '<Settings>Settings<node5 Label="First">1</node5>'
                               '<node65537 Label="A">x, "y"</node65537>'
                               '<node131073 Label="a">z</node131073></Settings>'}),
    case("SaysWhereValuesBreakARule", ["values", "list", "-"], stdin=CONFLICT, contains=["131073"],
         err=['stdin: repeat ID conflict at Range2 "in"']),
    case("ImportsCsv", ["values", "import", "t.xml", "v.csv", "-i.bak"],
         files={"t.xml": TREE, "v.csv": 'id,value\n5,0\n65537,new\n'},
         err=["2 values written"], after={"t.xml": APPLIED, "t.xml.bak": TREE}),
    case("ImportsCsvColumnsInAnyOrder", ["values", "import", "t.xml", "v.csv", "-o", "o.xml"],
         files={"t.xml": '<r><a DataID="1"/></r>', "v.csv": 'id,label,value\r\n1,"L, 2","a\n""b"""\r\n'},
         err=["1 value written"],
         after={"o.xml": '<r><a DataID="1">a\n"b"</a></r>'}),
    case("ImportsJson", ["values", "import", "t.xml", "-", "-o", "o.xml"],
         stdin='[{"id": 5, "value": "0"}, {"id": "65537", "value": "new"}]',
         files={"t.xml": TREE}, err=["2 values written"], after={"o.xml": APPLIED}),
    case("ImportsADocument", ["values", "import", "t.xml", "v.xml", "-o", "o.xml"],
         files={"t.xml": TREE, "v.xml": THEME}, err=["2 values written"], after={"o.xml": APPLIED}),
    case("NamesUnknownIdentifiers", ["values", "import", "t.xml", "v.csv", "-o", "o.xml"],
         files={"t.xml": TREE, "v.csv": "id,value\n77,x\n"},
         err=["0 values written", "no node has the identifier 77"], after={"o.xml": TREE}),
    case("RefusesADuplicate", ["values", "import", "t.xml", "v.csv", "-i"],
         files={"t.xml": TREE, "v.csv": "id,value\n12,x\n5,x\n12,y\n"}, code=4,
         err=["t.xml: duplicate identifier 12"], after={"t.xml": TREE}),
    case("RefusesARepeatConflict", ["values", "import", "t.xml", "v.csv", "-i"],
         files={"t.xml": CONFLICT, "v.csv": "id,value\n1,x\n"}, code=4,
         err=['t.xml: repeat ID conflict at Range2 "in"'], after={"t.xml": CONFLICT}),
    case("RefusesATableWithoutColumns", ["values", "import", "t.xml", "v.csv"],
         files={"t.xml": TREE, "v.csv": "id,label\n1,x\n"}, code=3, err=["v.csv: row 2 lacks"]),
    case("RefusesAnIdentifierThatIsNoNumber", ["values", "import", "t.xml", "v.csv"],
         files={"t.xml": TREE, "v.csv": "id,value\nx1,x\n"}, code=3,
         err=['v.csv: "x1" is no identifier']),
    case("RefusesBrokenJson", ["values", "import", "t.xml", "v.json"],
         files={"t.xml": TREE, "v.json": '[{"id": 1'}, code=3, err=["v.json: not a JSON list"]),
    # --- themes
    case("SavesATheme", ["theme", "save", "t.xml", "-o", "m.xml", "--comment", "mine"],
         files={"t.xml": '<r><a Label="A" DataID="1">x</a></r>'}, err=["1 value saved"],
         after={"m.xml": XML + '<Settings Comment="mine">Settings<node1 Label="A">x</node1>'
                               '</Settings>'}),
    case("SavesNoThemeWithADuplicate", ["theme", "save", "t.xml", "-o", "m.xml"],
         files={"t.xml": TWICE, "m.xml": "old"}, code=4, err=["t.xml: duplicate identifier 12"],
         after={"m.xml": "old"}),
    case("SavesNoEmptyTheme", ["theme", "save", "-", "-o", "m.xml"], stdin="<r/>", code=4,
         err=["stdin: no values to save"], after={"m.xml": None}),
    case("ShowsATheme", ["theme", "show", "m.xml"], files={"m.xml": THEME},
         out="mine\n\n   id  label  value\n    5  First  0\n65537  A      new\n"),
    case("ShowsNothingButAThemes", ["theme", "show", "t.xml"], files={"t.xml": TREE}, code=4,
         err=["t.xml: not a theme: its root is <r>"]),
    case("SaysThatTheTreeComesFirst", ["values", "import", "v.csv", "t.xml"],
         files={"t.xml": TREE, "v.csv": "id,value\n1,x\n"}, code=4,
         err=["t.xml: not a theme: its root is <r>", "the tree comes first"]),
    case("SaysWhereAThemeIsNotXml", ["theme", "show", "m.xml"], files={"m.xml": "<Settings><node1>"},
         code=3, err=["m.xml:1:"]),
    case("AppliesATheme", ["theme", "apply", "m.xml", "t.xml", "-o", "o.xml"],
         files={"m.xml": THEME, "t.xml": TREE}, err=["2 values written"], after={"o.xml": APPLIED}),
    case("AppliesAThemeInPlace", ["theme", "apply", "m.xml", "t.xml", "-i"],
         files={"m.xml": THEME, "t.xml": TREE}, err=["2 values written"],
         after={"t.xml": APPLIED, "t.xml.bak": None}),
    case("AppliesNoThemeToABrokenTree", ["theme", "apply", "m.xml", "t.xml", "-o", "o.xml"],
         files={"m.xml": THEME, "t.xml": CONFLICT}, code=4, err=["repeat ID conflict at Range2"],
         after={"o.xml": None}),
    # --- copies
    case("CopiesById", ["copy", "a.xml", "b.xml", "-o", "o.xml"],
         files={"a.xml": '<r><a DataID="1">x</a><b DataID="2"/></r>',
                "b.xml": '<q><k DataID="2">o</k><k><k DataID="1"/></k></q>'},
         err=["2 values written"],
         after={"o.xml": '<q><k DataID="2"></k><k><k DataID="1">x</k></k></q>'}),
    case("CopiesByIdWithoutEmptyValues", ["copy", "--skip-empty", "a.xml", "b.xml", "-o", "o.xml"],
         files={"a.xml": '<r><a DataID="1">x</a><b DataID="2"/></r>',
                "b.xml": '<q><k DataID="2">o</k></q>'},
         err=["0 values written"], after={"o.xml": '<q><k DataID="2">o</k></q>'}),
    case("RefusesACopyOfDuplicates", ["copy", "a.xml", "b.xml", "-i"],
         files={"a.xml": TWICE, "b.xml": TREE}, code=4, err=["a.xml: duplicate identifier 12"],
         after={"b.xml": TREE}),
    case("CopiesByShape", ["copy", "--by", "shape", "a.xml", "b.xml", "-o", "o.xml"],
         files={"a.xml": "<r><a>1</a><b><c>2</c></b></r>", "b.xml": "<x><y/><z><w/></z></x>"},
         after={"o.xml": "<x><y>1</y><z><w>2</w></z></x>"}),
    case("RefusesAnotherShape", ["copy", "--by", "shape", "a.xml", "b.xml", "-i"],
         files={"a.xml": "<r><a>1</a><b>2</b></r>", "b.xml": "<x><y/></x>"}, code=4,
         err=["b.xml: fewer nodes than a.xml"], after={"b.xml": "<x><y/></x>"}),
    case("CopiesIdentifiersByTag", ["copy", "--by", "tag", "a.xml", "b.xml", "-o", "o.xml"],
         files={"a.xml": '<r><a DataID="7"/></r>', "b.xml": "<q><b/><A/></q>"},
         err=["1 identifier given"], after={"o.xml": '<q><b/><A DataID="7"/></q>'}),
    case("CopiesValuesIntoAttributes",
         ["copy", "--by", "attr", "--to-attr", "Hint", "a.xml", "b.xml", "-o", "o.xml"],
         files={"a.xml": '<r><a DataID="7">text</a></r>', "b.xml": '<q><b DataID="7"/></q>'},
         after={"o.xml": '<q><b DataID="7" Hint="text"/></q>'}),
    # --- changes
    case("ListsChanges", ["changes", "b.xml", "--against", "a.xml", "-f", "json"],
         files={"a.xml": '<r><a DataID="1">x</a><a DataID="2">y</a><a DataID="3">z</a></r>',
                "b.xml": '<r><a DataID="1">x</a><a DataID="2">Y</a><a DataID="4">w</a></r>'},
         json=[{"id": 2, "label": "a", "old": "y", "new": "Y", "node": "r.a"},
               {"id": 3, "label": "a", "old": "z", "new": None, "node": "r.a"},
               {"id": 4, "label": "a", "old": None, "new": "w", "node": "r.a"}]),
    case("FindsNoChanges", ["changes", "a.xml", "--against", "a.xml"], files={"a.xml": TREE},
         code=1),
    case("MarksChanges", ["changes", "b.xml", "--against", "a.xml", "--mark", "-o", "o.xml"],
         files={"a.xml": "<r><a>x</a><b>y</b></r>", "b.xml": "<r><a>x</a><b>z</b></r>"},
         err=["1 node marked"],
         after={"o.xml": '<r><a>x</a><b OldValue="y">z</b></r>'}),
    case("MarksNoOtherTree", ["changes", "b.xml", "--against", "a.xml", "--mark", "-i"],
         files={"a.xml": "<r><a/></r>", "b.xml": "<r><b/></r>"}, code=4,
         err=["b.xml: not the same nodes as in a.xml"], after={"b.xml": "<r><b/></r>"}),
    case("StripsUnchangedNodes", ["changes", "b.xml", "--against", "a.xml", "--strip", "-i.old"],
         files={"a.xml": '<r><g><a DataID="1">x</a></g><a DataID="2">y</a></r>',
                "b.xml": '<r><g><a DataID="1">x</a></g><a DataID="2">z</a></r>'},
         err=["2 nodes removed"],
         after={"b.xml": '<r><a DataID="2">z</a></r>',
                "b.xml.old": '<r><g><a DataID="1">x</a></g><a DataID="2">z</a></r>'}),
    # --- key-value text
    case("WritesPairs", ["kv", "to", "-"], stdin="<r><a>1</a><b>2</b></r>", out="a=1;b=2;\n"),
    case("WritesPairsOfABranch", ["kv", "to", "-", "--at", "x/y", "--key-separator", ":"],
         stdin="<r><x><y><a>1</a></y></x></r>", out="a:1;\n"),
    case("WritesNoPairsOfALeaf", ["kv", "to", "-"], stdin="<r/>", code=1),
    case("ReadsPairs", ["kv", "from", "t.xml", "a = 1 ; b=\"2;3\"", "--at", "x", "-o", "o.xml"],
         files={"t.xml": "<r><x><old/></x></r>"},
         after={"o.xml": "<r><x><a>1</a><b>2;3</b></x></r>"}),
    case("RefusesATextWithoutPairs", ["kv", "from", "t.xml", "nothing", "-i"],
         files={"t.xml": "<r><a/></r>"}, code=4, err=["no pair of a key and a value"],
         after={"t.xml": "<r><a/></r>"}),
    case("RefusesAMissingBranch", ["kv", "to", "t.xml", "--at", "a/b"],
         files={"t.xml": "<r><a/></r>"}, code=1, err=['t.xml: no node at "a/b"']),
    case("RefusesALongSeparator", ["kv", "to", "t.xml", "--pair-separator", ";;"],
         files={"t.xml": "<r/>"}, code=2, err=ANY),
    # --- labels
    case("ListsLabels", ["label", "list", "-"], stdin='<r Label="Root"><a SubHeader0="s"/></r>',
         out="node  label\nr     Root\nr.a   a\n"),
    case("ListsWholeLabels", ["label", "list", "--mode", "2", "-f", "csv", "-"],
         stdin='<r Label="Root" SubHeader0="s"/>', out="node,label\nr,r(Root)(s)\n"),
    case("CombinesLabels", ["label", "combine", "--prefix", "?$OP:A", "B"],
         out='?$OP:(A) (" - ") (B)\n'),
    case("JoinsLabelsPlainly", ["label", "combine", "--strict", "?$OP:A", "B"], out="?$OP:A - B\n"),
    case("ReplacesLabels", ["label", "replace", "t.xml", "our", "or", "-o", "o.xml"],
         files={"t.xml": '<r Label="Colour"><a Label="no"/></r>'}, err=["1 label changed"],
         after={"o.xml": '<r Label="Color"><a Label="no"/></r>'}),
    case("ReplacesNoLabel", ["label", "replace", "-", "x", "y", "-o", "o.xml"],
         stdin='<r Label="Colour"/>', code=1, err=["0 labels changed"]),
]


def test_ExportedTablesReadBack(tool):
    tool.write("t.xml", TREE)
    exported = tool.run(["values", "export", "-f", "csv", "t.xml"]).out
    rows = list(csv.DictReader(io.StringIO(exported)))
    assert [row["value"] for row in rows] == ["1", 'x, "y"', "z"]
    for form, name in (("csv", "v.csv"), ("json", "v.json"), ("xml", "v.xml")):
        tool.run(["values", "export", "-f", form, "t.xml", "-o", name])
        result = tool.run(["values", "import", "t.xml", name, "-o", "o.xml"])
        assert result.code == 0 and "3 values written" in result.err, (form, result.err)
        listed = tool.run(["values", "list", "-f", "json", "o.xml"]).out
        assert json.loads(listed) == ROWS, form
