"""Commands that --select tells which nodes they are about, and edits of several files."""
import os
import subprocess

from harness import case

BOOKS = """<?xml version="1.0"?>
<!-- the shelf -->
<shelf>
  <book lang="fr" id="3"><title>Nana</title><price>9.5</price></book>
  <!-- the second -->
  <book lang="en" id="1"><title>Emma</title><price>20</price></book>
  <book lang="fr" id="2"><title>Aden</title><price>7</price></book>
</shelf>
"""
FILES = {"b.xml": BOOKS}
DIALOG = """<d Label="all">
  <a DataID="1" Label="old a">1</a>
  <g><b DataID="2" Label="old b">2</b><c DataID="3" Label="old c"/></g>
</d>
"""


def replaced(*pairs):
    text = BOOKS
    for old, new in pairs:
        assert old in text, old
        text = text.replace(old, new)
    return text


def edit(name, path, args, after, err=(), command="edit"):
    return case(name, [command, "b.xml", "--select", path, *args, "-i"], files=FILES,
                after={"b.xml": after}, err=err)


FIRST, SECOND, THIRD = (line + "\n" for line in BOOKS.splitlines() if "<book" in line)

CASES = [
    # --- edit ------------------------------------------------------------------------------------
    edit("DeletesElements", "//book[@lang='fr']", ["delete"], replaced((FIRST, ""), (THIRD, "")),
         ["note: 2 nodes removed"]),
    edit("DeletesByText", "//book[title='Emma']", ["delete"],
         replaced(("  <!-- the second -->\n", "  <!-- the second -->\n"), (SECOND, "")),
         ["note: 1 node removed"]),
    edit("DeletesAttributes", "//book/@lang", ["delete"],
         replaced((' lang="fr"', ""), (' lang="en"', "")), ["note: 3 attributes removed"]),
    edit("DeletesTexts", "//book[1]/title/text()", ["delete"], replaced(("Nana", "")),
         ["note: 1 text removed"]),
    edit("DeletesNodesWithinEachOther", "//*[title or . = 'Emma']", ["delete"],
         '<?xml version="1.0"?>\n<!-- the shelf -->\n<shelf></shelf>\n', ["note: 4 nodes removed"]),
    edit("DeletesByAttributeInSelectedBranches", "//book", ["delete", "-a", "x", "-v", "0"], BOOKS,
         ["note: 0 nodes removed"]),
    edit("SetsTexts", "//book[2]/price", ["set", "1 < 2"],
         replaced((">20<", ">1 &lt; 2<")), ["note: 1 node set"]),
    edit("RenamesElements", "//book[@lang = 'fr']", ["rename", "livre"],
         replaced(('<book lang="fr"', '<livre lang="fr"'), ("9.5</price></book>", "9.5</price></livre>"),
                  ("7</price></book>", "7</price></livre>")), ["note: 2 nodes renamed"]),
    edit("SetsAttributeValues", "//book[@lang='fr']/@lang", ["set", "de"],
         replaced(('lang="fr"', 'lang="de"')), ["note: 2 attributes set"]),
    edit("RenamesAttributesInTheirPlace", "//book/@lang", ["rename", "language"],
         replaced((" lang=", " language=")), ["note: 3 attributes renamed"]),
    edit("TakesATextThatIsCalledLikeAnEdit", "//title", ["set", "delete"],
         replaced(("Nana", "delete"), ("Emma", "delete"), ("Aden", "delete")),
         ["note: 3 nodes set"]),
    edit("InsertsBefore", "//book[2]", ["insert", "<book id='0'/><x/>", "--before"],
         replaced((FIRST, FIRST + '  <book id="0"/>\n  <x/>\n')), ["note: 2 nodes inserted"]),
    edit("InsertsAfter", "//book[3]", ["insert", "<x/>", "--after"],
         replaced((THIRD, THIRD + "  <x/>\n")), ["note: 1 node inserted"]),
    edit("InsertsInto", "//book[@lang='fr']", ["insert", "<x>1</x>"],
         replaced(("9.5</price>", "9.5</price><x>1</x>"), ("7</price>", "7</price><x>1</x>")),
         ["note: 2 nodes inserted"]),
    edit("SortsSelectedNodesByNumber", "//book", ["sort", "--by", "price", "--as", "number"],
         replaced((SECOND + THIRD, SECOND), (FIRST, THIRD + FIRST))),
    edit("SortsSelectedNodesByText", "//book", ["sort", "--by", "title"],
         replaced((FIRST, THIRD), ("7</price></book>\n</", "7</price></book>\n@</"),
                  (THIRD + "@", FIRST))),
    edit("SortsSomeOfTheSiblings", "//book[@lang='fr']", ["sort", "-a", "id"],
         replaced((FIRST, "@"), (THIRD, FIRST), ("@", THIRD))),
    case("SortsInnermostParentsFirst",
         ["edit", "-", "--select", "//x", "sort", "-a", "k", "-d"],
         stdin="<r><x k='1'><x k='3'/><x k='4'/></x><y/><x k='2'/></r>",
         out="<r><x k='2'/><y/><x k='1'><x k='4'/><x k='3'/></x></r>\n"),
    case("EqualKeysKeepTheirOrder", ["edit", "-", "sort", "--by", "@k"],
         stdin="<r><a k='2'/><b k='1'/><c k='2'/><d/><e k='1'/></r>",
         out="<r><b k='1'/><e k='1'/><a k='2'/><d/><c k='2'/></r>\n",
         err=["note: 1 of 5 nodes keep their places: '@k' is missing there"]),
    case("WorksInSelectedBranches", ["edit", "-", "--select", "/r/*", "prune"],
         stdin="<r><a><x/><y>1</y></a><b><x/></b><x/></r>",
         out="<r><a><y>1</y></a><b></b><x/></r>\n", err=["note: 1 node kept"]),
    case("InsertsTheRootOfAFile", ["edit", "b.xml", "--select", "/shelf", "insert", "n.xml", "-n"],
         files={**FILES, "n.xml": "<new><!-- c --><a/></new>"}, out="""\
--- b.xml
+++ b.xml
@@ -5,4 +5,7 @@
   <!-- the second -->
   <book lang="en" id="1"><title>Emma</title><price>20</price></book>
   <book lang="fr" id="2"><title>Aden</title><price>7</price></book>
+  <new>
+    <a/>
+  </new>
 </shelf>
""", err=["note: n.xml: its comments and instructions are left out", "note: 1 node inserted"]),

    # --- refusals --------------------------------------------------------------------------------
    case("SaysThatNothingMatches", ["edit", "b.xml", "--select", "//bok", "delete"], files=FILES,
         code=1, err=["b.xml: nothing matches '//bok'", "did you mean 'book'?"]),
    case("RefusesATextBesideChildren", ["edit", "b.xml", "--select", "//book", "set", "x", "-i"],
         files=FILES, code=4, err=["set: /shelf/book[1] has children"], after=FILES),
    case("RefusesToRemoveTheRoot", ["edit", "b.xml", "--select", "/*", "delete", "-i"],
         files=FILES, code=4, err=["would remove the whole tree"], after=FILES),
    case("RefusesToInsertBesideTheRoot", ["edit", "b.xml", "--select", "/*", "insert", "<x/>",
                                          "--after", "-i"],
         files=FILES, code=4, err=["nothing stands beside the root"], after=FILES),
    case("RefusesBrokenXmlToInsert", ["edit", "b.xml", "--select", "/*", "insert", "<x>"],
         files=FILES, code=2, err=["insert: the XML is broken: "]),
    case("RefusesCommentsToInsert", ["edit", "b.xml", "insert", "<x><!-- c --></x>"],
         files=FILES, code=4, err=["comments and instructions cannot be inserted"]),
    case("RefusesATextToInsert", ["edit", "b.xml", "insert", "<x/>text"], files=FILES, code=2,
         err=["only elements are inserted"]),
    case("RefusesAnAttributeThatIsThere", ["edit", "b.xml", "--select", "//@lang", "rename", "id",
                                           "-i"],
         files=FILES, code=4, err=["/shelf/book[1] has an attribute 'id' already"], after=FILES),
    case("RefusesAttributesWhereElementsAreMeant",
         ["edit", "b.xml", "--select", "//@id", "prune"], files=FILES, code=2,
         err=["--select: this edit is about elements"]),
    case("RefusesAPathItDoesNotKnow", ["edit", "b.xml", "--select", "//book[", "delete"],
         files=FILES, code=2, err=["the path is not understood at character 8"]),
    case("DeleteWantsToKnowWhat", ["edit", "b.xml", "delete"], files=FILES, code=2,
         err=["delete: say what to delete", "--select PATH"]),
    case("SortWantsToKnowByWhat", ["edit", "b.xml", "sort"], files=FILES, code=2,
         err=["sort: say what to sort by"]),
    case("SortRefusesWhenNothingHasTheKey", ["edit", "b.xml", "--select", "//book", "sort", "--by",
                                             "isbn"], files=FILES, code=4,
         err=["sort: no node has 'isbn'"]),
    case("TakesOnePlaceOnly", ["edit", "b.xml", "--at", "book", "--select", "//book", "delete"],
         files=FILES, code=2, err=["--select"]),
    case("HelpsWithOneEdit", ["edit", "sort", "--help"],
         contains=["uxtree edit sort [OPTIONS]", "--by PATH", "{number,text}"]),
    case("WantsAFile", ["edit", "sort", "-a", "k"], code=2, err=["FILE is required"]),
    case("ProposesAnEdit", ["edit", "b.xml", "delet", "-n"], files=FILES, code=2,
         err=["'delet' is no edit and no file", "did you mean 'delete'?"]),
    case("HelpsWithTheEditThatLacksAWord", ["edit", "b.xml", "--select", "//book", "set"], files=FILES,
         code=2, err=["TEXT is required", "uxtree edit set --help"]),
    case("SaysThatAWordIsNoFile", ["edit", "b.xml", "--select", "//book", "set", "k", "v"],
         files=FILES, code=2, err=["'v' is no edit and no file"], after=FILES),
    case("KnowsWhatRemovesNodes", ["edit", "b.xml", "--select", "//book", "remove"], files=FILES,
         code=2, err=["did you mean 'delete'?"], after=FILES),

    # --- several files ---------------------------------------------------------------------------
    case("EditsSeveralFiles", ["edit", "b.xml", "r.xml", "bad.xml", "-i", "--select", "//book[1]",
                               "delete"],
         files={**FILES, "r.xml": "<r/>", "bad.xml": "<r>"}, code=3,
         after={"b.xml": replaced((FIRST, "")), "r.xml": "<r/>", "bad.xml": "<r>"},
         err=["note: b.xml: 1 node removed", "note: r.xml: nothing matches", "bad.xml:1:4: ",
              "note: 3 files: 1 changed, 1 without a match, 1 failed"]),
    case("WritesAllFilesOrNone", ["edit", "b.xml", "bad.xml", "-i", "--all-or-none", "--select",
                                  "//book[1]", "delete"],
         files={**FILES, "bad.xml": "<r>"}, code=3, after={**FILES, "bad.xml": "<r>"},
         err=["note: 2 files: 0 changed, 1 as before, 1 failed; nothing was written"]),
    case("WritesNoFileTwice", ["edit", "b.xml", "./b.xml", "-i", "--all-or-none", "--select",
                               "//book[1]", "delete"],
         files=FILES, code=2, after=FILES, err=["./b.xml: it is named twice\n", "nothing was written"]),
    case("WritesAllFiles", ["edit", "a.xml", "b.xml", "-i.bak", "--all-or-none", "--select",
                            "//book[1]", "delete"],
         files={"a.xml": BOOKS, **FILES},
         after={"a.xml": replaced((FIRST, "")), "b.xml": replaced((FIRST, "")), "a.xml.bak": BOOKS,
                "b.xml.bak": BOOKS},
         err=["note: 2 files: 2 changed\n"]),
    # The folder for the second backup is missing, which shows when both files are in their places.
    case("PutsAllFilesBackWhenABackupFails",
         ["edit", "a.xml", "b.xml", "-i.old/copy", "--all-or-none", "--select", "//book[1]", "delete"],
         files={"a.xml": BOOKS, **FILES, "a.xml.old/copy": "older"}, code=4,
         after={"a.xml": BOOKS, **FILES, "a.xml.old/copy": "older"},
         err=["b.xml.old/copy: No such file or directory\n",
              "note: 2 files: 0 changed, 2 as before; nothing was written\n"]),
    case("SeveralFilesAreEditedInPlace", ["edit", "b.xml", "b.xml", "--select", "//book", "delete"],
         files=FILES, code=2, err=["several files are edited in place"], after=FILES),
    case("PrintsWhatSeveralFilesWouldChange", ["edit", "a.xml", "b.xml", "-n", "rename", "s"],
         files={"a.xml": "<a/>\n", "b.xml": "<s/>\n"},
         out="--- a.xml\n+++ a.xml\n@@ -1 +1 @@\n-<a/>\n+<s/>\n",
         err=["note: nothing would change", "note: 2 files: 1 would change, 1 as before"]),

    # --- attr, label, values, kv -----------------------------------------------------------------
    edit("SetsAnAttributeOnSelectedNodesAlone", "//book[price > 8]", ["set", "dear", "1"],
         replaced(('id="3"', 'id="3" dear="1"'), ('id="1"', 'id="1" dear="1"')),
         ["note: 2 nodes set"], command="attr"),
    edit("RemovesAnAttributeFromSelectedNodesAlone", "//book[2]", ["remove", "lang"],
         replaced((' lang="en"', "")), ["note: 1 attribute changed"], command="attr"),
    edit("StoresAnAttributeOfSelectedNodesAlone", "//book[2]", ["store", "id"],
         replaced((' id="1"', ' StorePrefixid="1"')), ["note: 1 attribute changed"],
         command="attr"),
    edit("SetsBitsOfSelectedNodes", "//book[2]", ["bits", "id", "--set", "4"],
         replaced(('id="1"', 'id="5"')), [], command="attr"),
    case("PrintsAnAttributeOfSelectedNodes",
         ["attr", "b.xml", "--select", "//book[price < 10]", "get", "id"], files=FILES,
         out="tag   id\nbook  3\nbook  2\n"),
    case("OnePlaceSaysWhichNodes", ["attr", "b.xml", "--select", "//book", "set", "k", "1",
                                    "--children"], files=FILES, code=2, err=["--select says"]),
    case("ListsLabelsOfSelectedNodes", ["label", "list", "d.xml", "--select", "//*[@DataID > 1]"],
         files={"d.xml": DIALOG}, out="node   label\nd.g.b  old b\nd.g.c  old c\n"),
    case("ReplacesInLabelsOfSelectedNodes",
         ["label", "replace", "d.xml", "old", "new", "--select", "//g/b", "-i"],
         files={"d.xml": DIALOG}, after={"d.xml": DIALOG.replace("old b", "new b")},
         err=["note: 1 label changed"]),
    case("ListsValuesOfSelectedNodes", ["values", "list", "-f", "json", "d.xml", "--select", "//g/*"],
         files={"d.xml": DIALOG},
         json=[{"id": 2, "label": "old b", "value": "2", "node": "d.g.b"},
               {"id": 3, "label": "old c", "value": "", "node": "d.g.c"}]),
    case("SetsValuesOfSelectedNodes",
         ["values", "import", "d.xml", "v.csv", "--select", "//g//*", "-i"],
         files={"d.xml": DIALOG, "v.csv": "id,value\n1,x\n3,z\n9,q\n"},
         after={"d.xml": DIALOG.replace('"old c"/>', '"old c">z</c>')},
         err=["note: 1 value written", "no node has the identifier 9"]),
    case("WritesPairsOfEachSelectedBranch", ["kv", "to", "b.xml", "--select", "//book[price < 10]"],
         files=FILES, out="title=Nana;price=9.5;\ntitle=Aden;price=7;\n"),
    case("ReplacesEachSelectedBranchByPairs",
         ["kv", "from", "-", "a=1", "--select", "/r/*", "--plain"],
         stdin="<r><x/><y><z/></y></r>",
         out='<?xml version="1.0" encoding="UTF-8"?><r><x><a>1</a></x><y><a>1</a></y></r>\n'),
]


def test_SaysWhichThemeValuesFindNoNode(tool):
    tool.run(["theme", "save", "d.xml", "-o", "t.xml"], files={"d.xml": DIALOG})
    result = tool.run(["theme", "apply", "t.xml", "s.xml", "-i"],
                      files={"s.xml": '<d><a DataID="1"/></d>'})
    assert result.code == 0, result.err
    assert result.err == "note: 1 value written\nwarning: no node has the identifier 2, 3\n", result.err
    assert tool.path("s.xml").read_text() == '<d><a DataID="1">1</a></d>'


def test_AFileThatCannotBeWrittenLeavesTheOthersAsTheyWere(tool):
    """The second file is larger than the process may write: so fails a full disk, for root too."""
    large = BOOKS.replace("Nana", "N" * 100_000)
    files = {"a.xml": BOOKS, "b.xml": large, "c.xml": BOOKS}
    result = tool.run(["edit", *files, "-i.bak", "--all-or-none", "--select", "//book[1]/@id", "set", "4"],
                      files=files, largest_file=50_000)
    assert result.code == 4, result.code
    assert "b.xml: File too large\n" in result.err, result.err
    assert "note: 3 files: 0 changed, 2 as before, 1 failed; nothing was written\n" in result.err
    left = {path.name: path.read_text() for path in tool.folder.iterdir()}
    assert left == files, sorted(left)


def test_AFailedCommitLeavesNothingBeside(tool):
    files = {"a.xml": BOOKS, "b.xml": BOOKS, "b.xml.bak/x": "", "c.xml": BOOKS}
    result = tool.run(["edit", "a.xml", "b.xml", "c.xml", "-i.bak", "--all-or-none", "--select",
                       "//book[1]", "delete"], files=files)
    assert result.code == 4 and "b.xml.bak: Is a directory\n" in result.err, result.err
    left = {str(path.relative_to(tool.folder)): path.read_text()
            for path in tool.folder.rglob("*") if path.is_file()}
    assert left == files, sorted(left)
    assert all(tool.path(name).stat().st_nlink == 1 for name in files)


def test_AFailedReplacementPutsTheOthersBack(tool):
    """While the tool waits for the last file, what is to become the second one goes away."""
    files = {"a.xml": BOOKS, "b.xml": BOOKS}
    for name, content in files.items():
        tool.write(name, content)
    os.mkfifo(tool.path("last.xml"))
    with subprocess.Popen([tool.program, "edit", "a.xml", "b.xml", "last.xml", "-i", "--all-or-none",
                           "--select", "//book[1]", "delete"], cwd=tool.folder,
                          stderr=subprocess.PIPE, text=True) as process:
        with open(tool.path("last.xml"), "w") as last:  # opens when the tool does: both are written
            (begun,) = tool.folder.glob("b.xml.tmp*")
            begun.unlink()
            last.write("<r/>")
        _, told = process.communicate(timeout=60)
    assert process.returncode == 4, told
    assert told.endswith("b.xml: No such file or directory\n"
                         "note: 3 files: 0 changed, 2 as before, 1 without a match; "
                         "nothing was written\n"), told
    tool.path("last.xml").unlink()
    left = {path.name: path.read_text() for path in tool.folder.iterdir()}
    assert left == files, sorted(left)
    assert all(tool.path(name).stat().st_nlink == 1 for name in files)
