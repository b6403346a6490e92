from harness import case

ROWS = "<r><a id='1'><x>1</x><y>2</y></a><a><x>3</x></a><n/></r>"
FILES = {"t.xml": ROWS}
SHOP = """<shop>
  <item sku="A1"><name>Tea, green</name><price>3.20</price></item>
  <item sku="B2"><name>He said "hi"</name><price>10</price></item>
  <item><name>お茶</name></item>
</shop>"""

MIXED = "<r><p>x<b>b</b>y</p></r>"

CASES = [
    case("ListsTheTextsBelowAPath", ["query", "/r|a", "t.xml"], files=FILES, out="1\n2\n3\n"),
    case("ListsAttributes", ["query", "/r|a|@id", "t.xml"], files=FILES, out="1\n"),
    case("TheRootAloneReachesAllTexts", ["query", "/r|", "t.xml"], files=FILES, out="1\n2\n3\n"),
    case("MakesATable", ["query", "-t", "/r|a", "t.xml"], files=FILES, out="x  y\n1  2\n3\n"),
    case("MakesATableAsCsv", ["query", "--table", "-f", "csv", "/r|a", "t.xml"], files=FILES,
         out="x,y\n1,2\n3,\n"),
    case("MakesATableAsJsonWithListsOfOneShape", ["query", "-t", "-f", "json", "/r|a", "t.xml"],
         files=FILES, json=[{"file": "t.xml", "values": {"x": ["1"], "y": ["2"]}},
                            {"file": "t.xml", "values": {"x": ["3"], "y": []}}]),
    case("KeepsSeveralChildrenOfOneNameInJson", ["query", "-t", "-f", "json", "/r|a", "-"],
         stdin="<r><a><x>1</x><x>2</x></a></r>",
         json=[{"file": "stdin", "values": {"x": ["1", "2"]}}]),
    case("ListsAsJsonOneObjectPerValue", ["query", "-f", "json", "/r|a", "t.xml"], files=FILES,
         json=[{"file": "t.xml", "value": v} for v in "123"]),
    case("ASingleValueIsAListInJsonToo", ["query", "-f", "json", "/r|a|@id", "t.xml"], files=FILES,
         json=[{"file": "t.xml", "value": "1"}]),
    case("ListsAsCsv", ["query", "-f", "csv", "/shop|item|name", "-"], stdin=SHOP,
         out='"Tea, green"\n"He said ""hi"""\nお茶\n'),
    case("AlignsByWidth", ["query", "-t", "/shop|item", "-"], stdin=SHOP, out="""\
name          price
Tea, green    3.20
He said "hi"  10
お茶
"""),
    case("TableOfAttributes", ["query", "-t", "/shop|item|@sku", "-"], stdin=SHOP,
         out="@sku\nA1\nB2\n\n"),
    case("NamesTheFilesWhenThereAreSeveral", ["query", "/r", "a.xml", "b.xml"],
         files={"a.xml": "<r>1</r>", "b.xml": "<r>2</r>"}, out="a.xml: 1\nb.xml: 2\n"),
    case("NamesTheFileOnRequest", ["query", "-H", "/r", "a.xml"], files={"a.xml": "<r>1</r>"},
         out="a.xml: 1\n"),
    case("LeavesNamesOutOnRequest", ["query", "--no-filename", "/r", "a.xml", "b.xml"],
         files={"a.xml": "<r>1</r>", "b.xml": "<r>2</r>"}, out="1\n2\n"),
    case("TablesOfSeveralFilesAreOneTable", ["query", "-t", "/r|a", "a.xml", "b.xml"],
         files={"a.xml": "<r><a><x>1</x></a></r>", "b.xml": "<r><a><x>2</x><y>3</y></a></r>"},
         out="file   x  y\na.xml  1\nb.xml  2  3\n"),
    case("WritesLineBreaksVisibly", ["query", "/r", "-"], stdin="<r>a\nb</r>", out="a\\nb\n"),
    case("KeepsLineBreaksInCsv", ["query", "-f", "csv", "/r", "-"], stdin="<r>a\nb</r>",
         out='"a\nb"\n'),
    case("SaysWhichStepFailed", ["query", "/r|b|x", "t.xml"], files=FILES, code=1,
         err=["t.xml: step 2, 'b': no 'r' has a child of that name", "children there: a, n"]),
    case("SuggestsTheNearestChild", ["query", "/shop|itme", "-"], stdin=SHOP, code=1,
         err=["did you mean 'item'?"]),
    case("SaysThatTheRootDiffers", ["query", "/s|a", "t.xml"], files=FILES, code=1,
         err=["t.xml: step 1, 's': the root element is 'r'", "try '/r|a'"]),
    case("SaysThatAnAttributeIsMissing", ["query", "/r|a|@idd", "t.xml"], files=FILES, code=1,
         err=["step 3, '@idd': none of 2 elements has that attribute", "did you mean 'id'?"]),
    case("SaysThatThereAreNoAttributes", ["query", "/r|n|@id", "t.xml"], files=FILES, code=1,
         err=["none of 1 element has", "there are no attributes"]),
    case("SaysThatNoTextIsThere", ["query", "/r|n", "t.xml"], files=FILES, code=1,
         err=["1 element matched, but none holds a text"]),
    case("ADoubledSeparatorMatchesNothing", ["query", "/r||a", "t.xml"], files=FILES, code=1,
         err=["step 2, '|a'"]),
    case("ASeparatorAtTheEndAddsNothing", ["query", "/r|a|", "t.xml"], files=FILES,
         out="1\n2\n3\n"),
    case("RefusesAPathWithoutASlash", ["query", "r|a", "t.xml"], files=FILES, code=2,
         err=["the path 'r|a' does not begin with /"]),
    case("AnEmptyJsonListWhenNothingWasFound", ["query", "-f", "json", "/r|b", "t.xml"],
         files=FILES, json=[], code=1, err=["step 2"]),
    case("OneFileWithoutMatchesIsNoFailureBesideOthers", ["query", "/r|x", "a.xml", "b.xml"],
         files={"a.xml": "<r><x>1</x></r>", "b.xml": "<r/>"}, out="a.xml: 1\n",
         err=["b.xml: step 2"]),
    case("ABrokenFileIsAFailureBesideOthers", ["query", "/r", "a.xml", "b.xml"],
         files={"a.xml": "<r>1</r>", "b.xml": "<r>"}, code=3, out="a.xml: 1\n", err=["b.xml:1:"]),
    case("SaysThatThePathComesFirst", ["query", "t.xml", "//a/x"], files=FILES, code=2,
         err=["the path comes first: 't.xml' is a file", "uxtree query '//a/x' t.xml"]),
    case("NeedsAPathAndAFile", ["query", "/r"], code=2, err=["FILE is required"]),
    case("RefusesContradictoryOptions", ["query", "-H", "--no-filename", "/r", "-"], code=2,
         err=["--no-filename"]),
    case("DoesNotExplainAcrossAttributeSteps", ["query", "/r|@q|x", "t.xml"], files=FILES,
         out="1\n2\n3\n"),
    # Selections.
    case("SelectsTexts", ["query", "//a/x", "t.xml"], files=FILES, out="1\n3\n"),
    case("SelectsAttributes", ["query", "/r/a/@id", "t.xml"], files=FILES, out="1\n"),
    case("SelectsByCondition", ["query", "//a[@id='1']/y", "t.xml"], files=FILES, out="2\n"),
    case("AnElementIsItsWholeText", ["query", "/r/a", "t.xml"], files=FILES, out="12\n3\n"),
    case("PrintsElementsAsXml", ["query", "--xml", "/r/a[2]", "t.xml"], files=FILES,
         out="<a><x>3</x></a>\n"),
    case("ABarInQuotesIsNoStep", ["query", "//a[x='|']", "t.xml"], files=FILES, code=1,
         err=["t.xml: nothing matches"]),
    case("SaysWhichNameIsNotThere", ["query", "//itme/name", "-"], stdin=SHOP, code=1,
         err=["no element is called 'itme': did you mean 'item'?"]),
    case("SaysWhichAttributeIsNotThere", ["query", "//item/@sko", "-"], stdin=SHOP, code=1,
         err=["no attribute is called 'sko': did you mean 'sku'?"]),
    case("PointsAtTheFault", ["query", "//a[b=", "t.xml"], files=FILES, code=2,
         err=["not understood at character 7: the path ends too early", "  //a[b=\n        ^"]),
    case("MixedTextIsReadInItsOrder", ["query", "//p[starts-with(., 'xb')]", "t.xml", "-"],
         files={"t.xml": MIXED}, stdin=MIXED, out="t.xml: xby\nstdin: xby\n"),
    case("MixedTextOfAnEntityHasNoOrder", ["query", "//p", "t.xml"],
         files={"t.xml": "<!DOCTYPE p [<!ENTITY e 'x<b/>y'>]><p>&e;</p>"}, code=4,
         err=["between the children of /p"]),
    case("ElementsAreXmlAsTheFileHasThem", ["query", "--xml", "//p", "-"],
         stdin="<r><p k='1'>x<!-- c --><b/>&lt;y</p></r>", out="<p k='1'>x<!-- c --><b/>&lt;y</p>\n"),
    case("ATableHasTheTextBesideChildren", ["query", "-t", "-f", "csv", "//s", "-"],
         stdin="<r><s>1<p>x<b>b</b>y</p></s><s><p>2</p></s></r>", out=".,p,p/b\n1,xy,b\n,2,\n"),
    case("ATableHasAttributesAndTexts", ["query", "-t", "//item", "-"], stdin=SHOP, out="""\
@sku  name          price
A1    Tea, green    3.20
B2    He said "hi"  10
      お茶
"""),
    case("ColumnsGoByName", ["query", "-t", "-f", "csv", "/r/a", "-"],
         stdin="<r><a><y>1</y></a><a><x>2</x><y/></a></r>", out="y,x\n1,\n,2\n"),
    case("MissingAndEmptyDifferInJson", ["query", "-t", "-f", "json", "/r/a", "-"],
         stdin="<r><a><y>1</y></a><a k=''><x>2</x><x>3</x></a><a><x>4</x></a></r>",
         json=[{"file": "stdin", "values": {"y": "1"}},
               {"file": "stdin", "values": {"@k": "", "x": ["2", "3"]}},
               {"file": "stdin", "values": {"x": ["4"]}}]),
    case("RepeatedColumnsAreNumbered", ["query", "-t", "-f", "csv", "/r/a", "-"],
         stdin="<r><a><x>1</x></a><a><x>2</x><x>3</x></a></r>", out="x[1],x[2]\n1,\n2,3\n"),
    case("PrintsTheColumns", ["query", "--schema", "-f", "csv", "/r/a", "-"],
         stdin="<r><a i='1'><x>1</x></a><a><x>2</x><x>3</x><g><h/></g></a></r>",
         out="column,rows,most\n@i,1,1\nx,2,2\ng/h,1,1\n"),
    case("TheSchemaIsOfSelections", ["query", "--schema", "/r|a", "t.xml"], files=FILES, code=2,
         err=["--schema and --xml want a path with /"]),
]
