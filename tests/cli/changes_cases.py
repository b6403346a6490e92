"""uxtree changes for files without identifiers."""
from harness import case

OLD = """<shelf>
  <book id="1" lang="en"><title>Emma</title><price>20</price></book>
  <book id="2"><title>Nana</title></book>
  <note>first</note><note>second</note>
</shelf>"""
NEW = """<shelf>
  <book id="2" lang="fr"><title>Nana</title><year>1880</year></book>
  <book id="1"><title>Emma</title><price>21</price></book>
  <book id="3"><title>Aden</title></book>
  <note>first</note>
</shelf>"""
FILES = {"old.xml": OLD, "new.xml": NEW}


def changes(*rows):
    names = ("change", "node", "what", "old", "new")
    return [dict(zip(names, row)) for row in rows]


CASES = [
    case("ComparesAnyXmlByKeys", ["changes", "new.xml", "--against", "old.xml", "-f", "json"],
         files=FILES, json=changes(
             ("moved", "/shelf", "order", None, None),
             ("added", "/shelf/book[@id='2']", "@lang", None, "fr"),
             ("added", "/shelf/book[@id='2']/year", "element", None, "1880"),
             ("removed", "/shelf/book[@id='1']", "@lang", "en", None),
             ("changed", "/shelf/book[@id='1']/price", "text", "20", "21"),
             ("added", "/shelf/book[@id='3']", "element", None, None),
             ("removed", "/shelf/note[2]", "element", "second", None))),
    case("ComparesByPosition",
         ["changes", "new.xml", "--against", "old.xml", "--by", "position", "-f", "csv"],
         files={"old.xml": "<r><a id='1'>x</a><b/></r>", "new.xml": "<r><a id='2'>x</a><b>t</b></r>"},
         out="change,node,what,old,new\nchanged,/r/a,@id,1,2\nchanged,/r/b,text,,t\n"),
    case("ComparesByAChosenKey",
         ["changes", "new.xml", "--against", "old.xml", "--key", "isbn", "-f", "csv"],
         files={"old.xml": "<r><a isbn='7' id='1'/></r>", "new.xml": "<r><a/><a isbn='7' id='2'/></r>"},
         out="change,node,what,old,new\nadded,/r/a[1],element,,\nchanged,/r/a[@isbn='7'],@id,1,2\n"),
    case("KeysThatStandTwiceGoByTheirOrder", ["changes", "n.xml", "--against", "o.xml", "-f", "csv"],
         files={"o.xml": "<r><a id='1'>x</a><a id='1'>y</a></r>",
                "n.xml": "<r><a id='1'>x</a><a id='1'>z</a></r>"},
         out="change,node,what,old,new\nchanged,/r/a[2],text,y,z\n"),
    case("SaysThatTheRootIsAnother", ["changes", "n.xml", "--against", "o.xml", "-f", "csv"],
         files={"o.xml": "<a/>", "n.xml": "<b/>"},
         out="change,node,what,old,new\nchanged,/b,name,a,b\n"),
    case("FindsNoChange", ["changes", "o.xml", "--against", "n.xml"],
         files={"o.xml": "<r> <a  k='1'/></r>", "n.xml": "<r><a k=\"1\"/><!-- c --></r>"}, code=1),
    case("GoesByIdentifiersWhereBothHaveThem", ["changes", "n.xml", "--against", "o.xml", "-f", "csv"],
         files={"o.xml": "<r><a DataID='1'>x</a><b>1</b></r>",
                "n.xml": "<r><a DataID='1'>y</a><b>2</b></r>"},
         out="id,label,old,new,node\n1,a,x,y,r.a\n"),
    case("GoesByPositionOnRequest",
         ["changes", "n.xml", "--against", "o.xml", "-f", "csv", "--by", "position"],
         files={"o.xml": "<r><a DataID='1'>x</a><b>1</b></r>",
                "n.xml": "<r><a DataID='1'>y</a><b>2</b></r>"},
         out="change,node,what,old,new\nchanged,/r/a,text,x,y\nchanged,/r/b,text,1,2\n"),
    case("MarksByIdentifierOnly",
         ["changes", "new.xml", "--against", "old.xml", "--by", "key", "--mark"], files=FILES,
         code=2, err=["--mark"]),
]


def test_PlacesAreSelections(tool):
    rows = tool.run(["changes", "new.xml", "--against", "old.xml", "-f", "csv"], files=FILES).out
    for row in rows.splitlines()[1:]:
        change, node = row.split(",")[:2]
        file = "old.xml" if change == "removed" and "note" in node else "new.xml"
        assert tool.run(["show", "--select", node, file]).code == 0, row


def test_ManyChildrenAndDepthAreQuick(tool):
    def wide(value):
        return "<r>" + "".join(f"<a id='{i}'>{value}</a>" for i in range(50000)) + "</r>"

    result = tool.run(["changes", "n.xml", "--against", "o.xml", "-f", "csv"],
                      files={"o.xml": wide("x"), "n.xml": wide("y")}, timeout=60)
    assert result.out.count("\n") == 50001, result.err
    deep = "<a>" * 900 + "{}" + "</a>" * 900
    result = tool.run(["changes", "n.xml", "--against", "o.xml", "-f", "csv"],
                      files={"o.xml": deep.format("x"), "n.xml": deep.format("y")}, timeout=60)
    assert result.out.splitlines()[1] == "changed," + "/a" * 900 + ",text,x,y", result.err
