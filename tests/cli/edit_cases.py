from harness import ANY, case

TREE = """<r Label="R">
  <Plots><Plot1 _ux_id="4" Order="3">x</Plot1><Plot2 _ux_id="7" Order="1"/></Plots>
  <Fit DataID="12" Use="0" Label="peak one"><a Use="0"/><b Use="1">2</b></Fit>
  <Fit DataID="12" Use="1" Label="other"/>
  <Empty><Inner/></Empty>
</r>
"""
FILES = {"t.xml": TREE, "new.xml": "<s><Plot9>new</Plot9><Other/></s>"}
START = '<?xml version="1.0" encoding="UTF-8"?>'


def ended(xml):
    """As a pipe gets it."""
    return xml if xml.endswith("\n") else xml + "\n"


def edit(name, args, stdin, out, err=None, command="edit", plain=None, **more):
    """An edit of standard input, written to standard output: with the layout of the input, and with
    --plain, where plain is what is written behind the declaration, out when it is not given."""
    kept = case(name, [command, "-", *args], stdin=stdin, out=ended(out), err=err or [], **more)
    bare = case(name, [command, "-", "--plain", *args], stdin=stdin,
                out=ended(START + (plain or out)), err=err or [], **more)

    def check(tool):
        kept(tool)
        bare(tool)

    check.__name__ = name
    return check


def attr(name, args, stdin, out, **more):
    return edit(name, args, stdin, out, command="attr", **more)


CASES = [
    # --- what an edit does -----------------------------------------------------------------------
    edit("DeletesChildrenByAttribute", ["delete", "-a", "k", "-v", "1"],
         "<r><a k='1'/><b k='2'><c k='1'/></b></r>", "<r><b k='2'><c k='1'/></b></r>", plain='<r><b k="2"><c k="1"/></b></r>',
         err=["note: 1 node removed"]),
    edit("DeletesRecursivelyWithExceptions",
         ["delete", "-a", "k", "-v", "1", "-r", "--exempt", "stay"],
         "<r><a k='1' stay=''><c k='1'/></a><b k='1'/></r>", "<r><a k='1' stay=''></a></r>", plain='<r><a k="1" stay=""/></r>',
         err=["note: 2 nodes removed"]),
    edit("DeletesEverywhere", ["delete", "-a", "k", "-v", "1", "--everywhere"],
         "<r><b><c k='1'/></b></r>", "<r><b></b></r>", plain="<r><b/></r>", err=["note: 1 node removed"]),
    edit("KeepsMarkedNodes", ["keep", "-a", "k", "-r", "--take-attr"],
         "<r><a><x k=''/><y/></a><b/></r>", "<r><a><x/></a></r>",
         err=["note: 2 nodes removed"]),
    edit("KeepsWholeBranches", ["keep", "-a", "k", "-r", "--whole-branches"],
         "<r><a k=''><x/></a><b/></r>", "<r><a k=''><x/></a></r>", plain='<r><a k=""><x/></a></r>', err=["note: 1 node removed"]),
    edit("PrunesEmptyLeaves", ["prune", "-r"], "<r><a><b/></a><c>1</c></r>", "<r><c>1</c></r>",
         err=["note: 1 node kept"]),
    edit("HidesEmptyLeaves", ["hide", "-r", "--show-filled"], "<r><a><b/></a><c Show='0'>1</c></r>",
         '<r><a><b Show="0"/></a><c>1</c></r>', err=["note: 1 node hidden"]),
    edit("MovesANode", ["move", "--from", "0", "--to", "1"], "<r><a/><b/></r>", "<r><b/><a/></r>"),
    edit("MovesToTheEnd", ["move", "--from", "1", "--to", "-1"], "<r><a><x/></a><b/></r>",
         "<r><a></a><b/><x/></r>", plain="<r><a/><b/><x/></r>"),
    edit("Sorts", ["sort", "-a", "k"], "<r><a k='2'/><b k='1'/></r>",
         "<r><b k='1'/><a k='2'/></r>", plain='<r><b k="1"/><a k="2"/></r>'),
    edit("SortsDescendingBelowANode", ["--at", "p", "sort", "-a", "k", "-d"],
         "<r><p><a k='1'/><b k='2'/></p></r>", "<r><p><b k='2'/><a k='1'/></p></r>", plain='<r><p><b k="2"/><a k="1"/></p></r>'),
    edit("Appends", ["append", "new.xml", "--prefix", "plot"], "<r><Plot1 _ux_id='4'/></r>",
         '<r><Plot1 _ux_id=\'4\'/><Plot9 _ux_id="5">new</Plot9></r>', plain='<r><Plot1 _ux_id="4"/><Plot9 _ux_id="5">new</Plot9></r>', files=FILES,
         err=["note: the next ID is 6"]),
    edit("CopiesWhatHasValues", ["copy", "new.xml"], "<r/>", "<r><Plot9>new</Plot9></r>",
         files=FILES, err=["note: 1 branch copied"]),
    edit("CopiesSeveralBranches", ["copy", "two.xml"], "<r/>", "<r><a>1</a><b>2</b></r>",
         files={"two.xml": "<s><a>1</a><b>2</b></s>"}, err=["note: 2 branches copied"]),
    edit("FiltersByAText", ["filter", "--id", "9", "-a", "k", "--find", "X"],
         "<r><a DataID='9' k='ax'/><b DataID='9' k='y'/></r>", "<r><a DataID='9' k='ax'/></r>", plain='<r><a DataID="9" k="ax"/></r>'),
    edit("FiltersByAPattern", ["filter", "--id", "9", "-a", "k", "--match", "?y"],
         "<r><a DataID='9' k='ax'/><b DataID='9' k='ay'/></r>", "<r><b DataID='9' k='ay'/></r>", plain='<r><b DataID="9" k="ay"/></r>'),
    edit("FiltersByValues", ["filter", "--id", "9", "--value-id", "1", "--any", "p", "q"],
         "<r><a DataID='9'><v DataID='1'>Q</v></a><b DataID='9'/></r>",
         "<r><a DataID='9'><v DataID='1'>Q</v></a></r>", plain='<r><a DataID="9"><v DataID="1">Q</v></a></r>'),
    edit("FiltersByExcludedValues", ["filter", "--id", "9", "--except-id", "1", "--except-any", "q"],
         "<r><a DataID='9'><v DataID='1'>Q</v></a><b DataID='9'/></r>", "<r><b DataID='9'/></r>", plain='<r><b DataID="9"/></r>'),
    edit("Renames", ["--at", "a/b", "rename", "c"], "<r><a><b k='1'>x</b></a></r>",
         "<r><a><c k='1'>x</c></a></r>", plain='<r><a><c k="1">x</c></a></r>'),
    edit("RenamesWithAnAdaptedName", ["rename", "1 x", "--adapt"], "<r/>", "<_1_x/>"),
    edit("AddsNumberedChildren", ["add", "Set", "1.5", "2"], "<r/>",
         '<r><Set1 Label="Set1" _ux_id="536870913">1.5</Set1>'
         '<Set2 Label="Set2" _ux_id="536870914">2</Set2></r>', err=ANY),
    case("SaysWhichIdsItWrote", ["edit", "-", "add", "Set", "1.5", "2"], stdin="<r/>", out=ANY,
         err=["note: 2 new IDs written; --no-ids writes none"]),
    case("LeavesOutIdsOnRequest", ["edit", "-", "--no-ids", "add", "Set", "1.5"], stdin="<r/>",
         out='<r><Set1 Label="Set1">1.5</Set1></r>\n', err=["note: 1 new ID left out"]),
    case("FormatsAnew", ["edit", "-", "--indent", "3", "strip"],
         stdin="<r><a>1</a><b><c/>t</b><!-- c --><d><e k='1'/></d></r>",
         out=START + "\n<r>\n   <a>1</a>\n   <b>t<c/></b>\n   <d>\n      <e/>\n   </d>\n</r>\n",
         err=["note: 1 comment or instruction left out"]),
    edit("Strips", ["strip"], "<r Label='x'><a DataID='1' k='2'/></r>", "<r><a DataID='1'/></r>", plain='<r><a DataID="1"/></r>'),

    # --- where it goes ---------------------------------------------------------------------------
    case("WritesAFile", ["edit", "t.xml", "strip", "-o", "o.xml"], files={"t.xml": "<r k='1'/>"},
         after={"o.xml": "<r/>", "t.xml": "<r k='1'/>"}),
    case("EditsInPlace", ["edit", "t.xml", "-i", "strip"], files={"t.xml": "<r k='1'/>"},
         after={"t.xml": "<r/>"}),
    case("EditsInPlaceAndKeepsTheOldFile", ["edit", "t.xml", "strip", "-i.bak"],
         files={"t.xml": "<r k='1'/>"}, after={"t.xml": "<r/>", "t.xml.bak": "<r k='1'/>"}),

    # --- dry runs --------------------------------------------------------------------------------
    case("PrintsWhatWouldGo", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0", "-n"],
         files=FILES, after={"t.xml": TREE}, err=["note: 1 node removed"], out="""\
--- t.xml
+++ t.xml
@@ -1,6 +1,5 @@
 <r Label="R">
   <Plots><Plot1 _ux_id="4" Order="3">x</Plot1><Plot2 _ux_id="7" Order="1"/></Plots>
-  <Fit DataID="12" Use="0" Label="peak one"><a Use="0"/><b Use="1">2</b></Fit>
   <Fit DataID="12" Use="1" Label="other"/>
   <Empty><Inner/></Empty>
 </r>
"""),
    case("PrintsWhatWouldMove", ["edit", "t.xml", "--at", "Plots", "sort", "-a", "Order", "-n"],
         files=FILES, after={"t.xml": TREE}, out="""\
--- t.xml
+++ t.xml
@@ -1,5 +1,5 @@
 <r Label="R">
-  <Plots><Plot1 _ux_id="4" Order="3">x</Plot1><Plot2 _ux_id="7" Order="1"/></Plots>
+  <Plots><Plot2 _ux_id="7" Order="1"/><Plot1 _ux_id="4" Order="3">x</Plot1></Plots>
   <Fit DataID="12" Use="0" Label="peak one"><a Use="0"/><b Use="1">2</b></Fit>
   <Fit DataID="12" Use="1" Label="other"/>
   <Empty><Inner/></Empty>
"""),
    case("PutsOldAndNewLinesTogether", ["edit", "-", "strip", "--dry-run"],
         stdin="<r>\n<a k='1'/>\n<b DataID='2'/>\n<c/>\n<d/>\n<e/>\n<f/>\n<g/>\n<i/>\n<h j='2'/></r>",
         out="""\
--- stdin
+++ stdin
@@ -1,5 +1,5 @@
 <r>
-<a k='1'/>
+<a/>
 <b DataID='2'/>
 <c/>
 <d/>
@@ -7,4 +7,4 @@
 <f/>
 <g/>
 <i/>
-<h j='2'/></r>
\\ No newline at end of file
+<h/></r>
\\ No newline at end of file
"""),
    case("SaysWhenNothingWouldChange", ["edit", "-", "strip", "-n"], stdin="<r/>",
         err=["note: nothing would change"]),
    case("ADryRunLeavesTheFile", ["edit", "t.xml", "-i", "-n", "strip"],
         files={"t.xml": "<r k='1'/>"}, out=ANY, after={"t.xml": "<r k='1'/>"}),

    # --- refusals --------------------------------------------------------------------------------
    case("NeedsAnEdit", ["edit", "-"], stdin="<r/>", code=2,
         err=["say what to do after FILE", "uxtree edit --help"]),
    case("RefusesAnUnknownEdit", ["edit", "-", "sorty"], stdin="<r/>", code=2, err=["sorty"]),
    case("RefusesToRemoveTheWholeTree", ["edit", "-", "filter", "--id", "9", "-a", "k", "--find", "x"],
         stdin="<r DataID='9'/>", code=4, err=["stdin: the edit would remove the whole tree"]),
    case("RefusesABadName", ["edit", "-", "rename", "1x"], stdin="<r/>", code=4,
         err=["'1x' is no element name", "hint: --adapt"]),
    case("SaysWhenThereIsNoSuchNode", ["edit", "-", "move", "--from", "5", "--to", "0"],
         stdin="<r><a/></r>", code=1, err=["move: there is no node with that number"]),
    case("SaysWhenThereIsNoSuchPlace", ["edit", "-", "--at", "x", "strip"], stdin="<r/>", code=1,
         err=['stdin: no node at "x"']),
    case("SaysWhereTheOtherTreeIsBroken", ["edit", "-", "append", "b.xml"], stdin="<r/>",
         files={"b.xml": "<s>"}, code=3, err=["b.xml:1:4: "]),
    case("LeavesTheFileWhenRefused", ["edit", "t.xml", "-i", "rename", "1x"],
         files={"t.xml": "<r/>"}, code=4, err=ANY, after={"t.xml": "<r/>"}),

    # --- attr ------------------------------------------------------------------------------------
    case("PrintsAnAttribute", ["attr", "t.xml", "get", "Use"], files=FILES,
         out="tag  Use\nFit  0\na    0\nb    1\nFit  1\n"),
    case("PrintsAnAttributeAsJson", ["attr", "t.xml", "get", "Use", "--children", "-f", "json"],
         files=FILES, json=[{"tag": "Fit", "Use": "0"}, {"tag": "Fit", "Use": "1"}]),
    case("SaysWhenNoNodeHasTheAttribute", ["attr", "-", "get", "k"], stdin="<r/>", code=1,
         err=["no node below has the attribute 'k'; --select /* is about the root"]),
    attr("SetsAnAttributeEverywhere", ["set", "k", "v"], "<r><a/></r>", '<r k="v"><a k="v"/></r>'),
    attr("SetsAnAttributeByIdentifier", ["set", "k", "v", "--ids", "1", "2"],
         "<r><a DataID='1'/><b DataID='2'><c/></b><d/></r>",
         "<r><a DataID='1' k='v'/><b DataID='2' k='v'><c/></b><d/></r>", plain='<r><a DataID="1" k="v"/><b DataID="2" k="v"><c/></b><d/></r>', err=["note: 2 nodes set"]),
    attr("RemovesAnAttribute", ["remove", "k", "--self"], "<r k='1'><a k='1'/></r>",
         "<r><a/></r>", err=["note: 2 attributes changed"]),
    attr("StoresAnAttribute", ["store", "k"], "<r><a k='7'/></r>", "<r><a StorePrefixk='7'/></r>", plain='<r><a StorePrefixk="7"/></r>',
         err=["note: 1 attribute changed"]),
    attr("RestoresAnAttribute", ["restore", "k"], "<r><a StorePrefixk='7'/></r>",
         "<r><a k='7'/></r>", plain='<r><a k="7"/></r>', err=["note: 1 attribute changed"]),
    attr("SetsBits", ["bits", "k", "--set", "4", "--clear", "1"], "<r k='3'/>", "<r k='6'/>", plain='<r k="6"/>'),
    case("NeedsAnAttributeOperation", ["attr", "-"], stdin="<r/>", code=2,
         err=["say what to do after FILE"]),

    # --- names -----------------------------------------------------------------------------------
    case("PrintsTheTags", ["names", "-"], stdin="<r><a><b/></a><c/></r>", out="a\nb\nc\n"),
    case("PrintsTheTagsOfTheChildren", ["names", "--children", "-"],
         stdin="<r><a><b/></a><c/></r>", out="a\nc\n"),
    case("PrintsTheNextColumn", ["names", "-", "--next"], stdin="<r><A/><b/></r>", out="C\n"),
    case("PrintsTheNextNumberedName", ["names", "-", "--next-numbered"],
         stdin="<r><Set1/><Set3/></r>", out="Set2\n"),
    case("PrintsAFreeName", ["names", "-", "--free", "Set"], stdin="<r><Set/></r>", out="Set1\n"),
    case("SaysWhenThereIsNoFamily", ["names", "-", "--next-numbered"], stdin="<r><Set/></r>",
         code=1, err=["ends in no number"]),
    case("ATreeWithoutChildrenHasNoNames", ["names", "-"], stdin="<r/>", code=1),
]


def test_LargeDryRunsAreQuick(tool):
    rows = "".join(f"<n DataID='{i}' k='{i % 2}'/>\n" for i in range(20000))
    tool.write("big.xml", f"<r>\n{rows}</r>\n")
    result = tool.run(["edit", "big.xml", "delete", "-a", "k", "-v", "1", "-n"], timeout=60)
    assert result.code == 0, result.err
    lines = result.out.splitlines()[2:]
    assert sum(line.startswith("-") for line in lines) == 10000
    assert not any(line.startswith("+") for line in lines)
    result = tool.run(["attr", "big.xml", "set", "j", "1", "-n"], timeout=60)
    lines = result.out.splitlines()[2:]
    assert sum(line.startswith("-") for line in lines) == 20001
    assert lines[1] == "-<r>" and "+<r j=\"1\">" in lines, lines[:3]
