"""Files that people wrote, before and after a command that rewrites them."""
from harness import case

SAME = object()
SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<!-- Settings of the lab -->
<Settings>
  <!-- the detector -->
  <Gain DataID="1" Use="1" Label="Gain">10</Gain>
  <Offset DataID="2" Use='0' Label='Offset'>0.5</Offset>  <!-- keV -->

  <!-- display -->
  <Color DataID="3" Use="1">red</Color>
  <Width DataID="4" Use="0">2</Width>
</Settings>
"""


def changed(*changes):
    """SETTINGS with each of the (old, new), where every old stands once."""
    text = SETTINGS
    for old, new in changes:
        assert text.count(old) == 1, old
        text = text.replace(old, new)
    return text


def keeps(name, args, before, after, from_xml=None, values_csv=None, code=0):
    """The command prints the file t.xml as it is to be afterwards."""

    def check(tool):
        tool.write("t.xml", before)
        for file, content in (("from.xml", from_xml), ("values.csv", values_csv)):
            if content is not None:
                tool.write(file, content)
        wanted = before if after is SAME else after
        wanted = wanted if isinstance(wanted, bytes) else wanted.encode()
        result = tool.run([*args, "-o", "o.xml"])
        assert result.code == code, result.err
        actual = tool.path("o.xml").read_bytes()
        assert actual == wanted, f"{actual!r}\nexpected\n{wanted!r}"
        tool.run(args, stdout_to=tool.path("stdout.xml"))
        actual = tool.path("stdout.xml").read_bytes()
        assert actual == wanted, f"standard output: {actual!r}\nexpected\n{wanted!r}"

    check.__name__ = name
    return check


CASES = [
    # --- what stays ------------------------------------------------------------------------------
    keeps("RenamingToTheSameTagChangesNoByte",
          ['edit', 't.xml', 'rename', 'Settings'],
          SETTINGS,
          SAME),
    keeps("ProloguesSectionsAndOddTagsStay",
          ['edit', 't.xml', 'rename', 'r'],
          "<?xml version='1.0' standalone='yes' ?>\n"
          '<!DOCTYPE r [ <!ELEMENT r ANY> <!-- > ] --> <!ENTITY e "x>y"> ]>\n'
          "<?xml-stylesheet href='a.css'?>\n"
          '\n'
          '\n'
          '<r  a = \'1\'\tb="&#65;&gt;&apos;"\n'
          '><x /><y ></y  ><![CDATA[a<b]]>&#x41;&amp;<?pi  data?><!----></r >\n'
          '\n'
          '<!-- end --><?last?>',
          SAME),
    keeps("TheSameValueAgainKeepsItsReferences",
          ['attr', 't.xml', 'set', 'Label', 'a & b', '--ids', '1'],
          "<r><a DataID='1' Label='a &#38; b'>&#49;</a></r>\n",
          SAME),
    keeps("ByteOrderMarkAndLineEndsStay",
          ['edit', 't.xml', 'rename', 'r'],
          b'\xef\xbb\xbf<?xml version="1.0"?>\r\n<r>\r\n\t<a>x\r\ny</a>\r\n</r>',
          SAME),
    keeps("Utf16Stays",
          ['edit', 't.xml', 'rename', 'r'],
          b'\xff\xfe<\x00?\x00x\x00m\x00l\x00 \x00v\x00e\x00r\x00s\x00i\x00o\x00n\x00=\x00"\x001\x00.\x000\x00"\x00 \x00e\x00n\x00c\x00o\x00d\x00i\x00n\x00g\x00=\x00"\x00U\x00T\x00F\x00-\x001\x006\x00"\x00?\x00>\x00\n\x00<\x00r\x00>\x00\n\x00 \x00 \x00<\x00a\x00>\x00\xe4\x00\xac 4\xd8\x1e\xdd<\x00/\x00a\x00>\x00\n\x00<\x00/\x00r\x00>\x00\n\x00',
          SAME),
    keeps("AChangedAttributeKeepsItsPlace",
          ['attr', 't.xml', 'set', 'Label', 'Sigma', '--ids', '1'],
          SETTINGS,
          changed(('Label="Gain"', 'Label="Sigma"'))),
    keeps("AChangedAttributeKeepsSingleQuotes",
          ['attr', 't.xml', 'set', 'Label', 'Sigma', '--ids', '2'],
          SETTINGS,
          changed(("Label='Offset'", "Label='Sigma'"))),
    keeps("AnApostropheBecomesAReferenceInSingleQuotes",
          ['attr', 't.xml', 'set', 'Label', "it's", '--ids', '2'],
          SETTINGS,
          changed(("Label='Offset'", "Label='it&apos;s'"))),
    keeps("NewAttributesComeLastWithTheQuotesOfTheLast",
          ['attr', 't.xml', 'set', 'Show', '0', '--ids', '1', '2'],
          SETTINGS,
          changed(('Label="Gain"', 'Label="Gain" Show="0"'),
                  ("Label='Offset'", "Label='Offset' Show='0'"))),
    keeps("NewAttributesComeBeforeTheEndOfTheTag",
          ['attr', 't.xml', 'set', 'Show', '0'],
          '<r>\n'
          '  <a/>\n'
          '  <b />\n'
          '  <c x="1"/>\n'
          "  <d x='1' />\n"
          '  <e></e >\n'
          '</r>\n',
          '<r Show="0">\n'
          '  <a Show="0"/>\n'
          '  <b Show="0" />\n'
          '  <c x="1" Show="0"/>\n'
          "  <d x='1' Show='0' />\n"
          '  <e Show="0"></e >\n'
          '</r>\n'),
    keeps("NewAttributesTakeLinesOfTheirOwn",
          ['attr', 't.xml', 'set', 'Show', '0', '--ids', '1'],
          '<r>\n'
          '  <a DataID="1"\n'
          '     Use="1"\n'
          '     Label="x"\n'
          '  >1</a>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1"\n'
          '     Use="1"\n'
          '     Label="x"\n'
          '     Show="0"\n'
          '  >1</a>\n'
          '</r>\n'),
    keeps("TheOnlyAttributeOnItsLineGivesTheForm",
          ['attr', 't.xml', 'set', 'Show', '0', '--ids', '1'],
          '<r>\n'
          '  <a\n'
          '    DataID="1">1</a>\n'
          '</r>\n',
          '<r>\n'
          '  <a\n'
          '    DataID="1"\n'
          '    Show="0">1</a>\n'
          '</r>\n'),
    keeps("ARemovedAttributeTakesTheBlankBefore",
          ['attr', 't.xml', 'remove', 'Use'],
          SETTINGS,
          changed(('Use="1" Label="Gain"', 'Label="Gain"'),
                  ("Use='0' Label='Offset'", "Label='Offset'"),
                  ('DataID="3" Use="1"', 'DataID="3"'),
                  ('DataID="4" Use="0"', 'DataID="4"'))),
    keeps("RemovedAttributesTakeTheirLines",
          ['edit', 't.xml', 'strip'],
          '<r>\n'
          '  <a\n'
          '    DataID="1"\n'
          '    Use="1"\n'
          '    Label="x"\n'
          '  />\n'
          '</r>\n',
          '<r>\n'
          '  <a\n'
          '    DataID="1"\n'
          '  />\n'
          '</r>\n'),
    keeps("ARenamedAttributeComesLast",
          ['attr', 't.xml', 'store', 'Use'],
          '<r>\n'
          '  <a Use="1" DataID="1" Label=\'l\'/>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1" Label=\'l\' StorePrefixUse=\'1\'/>\n'
          '</r>\n'),
    keeps("LineBreaksAndTabsInAttributesBecomeReferences",
          ['attr', 't.xml', 'set', 'Label', 'a\tb\nc', '--ids', '1'],
          '<r>\n'
          '  <a DataID="1" Label="x"/>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1" Label="a&#9;b&#10;c"/>\n'
          '</r>\n'),
    keeps("OnlyTheTextOfALeafChanges",
          ['values', 'import', 't.xml', 'values.csv'],
          SETTINGS,
          changed(('10', '12')),
          values_csv='id,label,value,node\n'
          '1,,12,\n'),
    keeps("AnEmptyElementIsOpenedForText",
          ['values', 'import', 't.xml', 'values.csv'],
          '<r>\n'
          '  <a DataID="1"/>\n'
          '  <b DataID="2" />\n'
          '  <c DataID="3"></c>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1">x</a>\n'
          '  <b DataID="2">y</b>\n'
          '  <c DataID="3">z</c>\n'
          '</r>\n',
          values_csv='id,label,value,node\n'
          '1,,x,\n'
          '2,,y,\n'
          '3,,z,\n'),
    keeps("ASectionStaysASection",
          ['values', 'import', 't.xml', 'values.csv'],
          '<r>\n'
          '  <a DataID="1"><![CDATA[if (a<b)]]></a>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1"><![CDATA[if (a<c)]]></a>\n'
          '</r>\n',
          values_csv='id,label,value,node\n'
          '1,,if (a<c),\n'),
    keeps("MixedContentKeepsItsOtherText",
          ['copy', '--by', 'shape', 'from.xml', 't.xml'],
          '<r>\n'
          '  <p>Hello <b>big</b> world</p>\n'
          '</r>\n',
          '<r>\n'
          '  <p>Hello <b>small</b> world</p>\n'
          '</r>\n',
          from_xml='<r><p>Hello <b>small</b> world</p></r>'),
    keeps("CarriageReturnsStay",
          ['attr', 't.xml', 'set', 'Use', '5', '--ids', '1'],
          SETTINGS.replace("\n", "\r\n"),
          changed(('Use="1" Label="Gain"', 'Use="5" Label="Gain"')).replace("\n", "\r\n")),
    keeps("ACommentAboveSeveralElementsStays",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '1'],
          SETTINGS,
          changed(('  <Gain DataID="1" Use="1" Label="Gain">10</Gain>\n', ''),
                  ('  <Color DataID="3" Use="1">red</Color>\n', ''))),
    keeps("ACommentBehindAnElementGoesWithIt",
          ['edit', 't.xml', 'delete', '-a', 'DataID', '-v', '2'],
          SETTINGS,
          changed(('  <Offset DataID="2" Use=\'0\' Label=\'Offset\'>0.5</Offset>  <!-- keV -->\n', ''))),
    keeps("ACommentAboveABlankLineStays",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <!-- about the file -->\n'
          '\n'
          '  <a Use="0"/>\n'
          '  <b Use="1"/>\n'
          '</r>\n',
          '<r>\n'
          '  <!-- about the file -->\n'
          '\n'
          '  <b Use="1"/>\n'
          '</r>\n'),
    keeps("BlankLinesOnBothSidesBecomeThoseAbove",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <a Use="1"/>\n'
          '\n'
          '  <b Use="0"/>\n'
          '\n'
          '  <c Use="1"/>\n'
          '</r>\n',
          '<r>\n'
          '  <a Use="1"/>\n'
          '\n'
          '  <c Use="1"/>\n'
          '</r>\n'),
    keeps("NoBlankLineIsLeftBeforeTheEndTag",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <b Use="1"/>\n'
          '\n'
          '  <c Use="0"/>\n'
          '</r>\n',
          '<r>\n'
          '  <b Use="1"/>\n'
          '</r>\n'),
    keeps("WithoutChildrenNoWhiteSpaceIsLeft",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0', '--everywhere'],
          '<r>\n'
          '  <g Use="1">\n'
          '    <b Use="0"/>\n'
          '  </g>\n'
          '  <h Use="1">\n'
          '    <!-- kept -->\n'
          '\n'
          '    <b Use="0"/>\n'
          '  </h>\n'
          '</r>\n',
          '<r>\n'
          '  <g Use="1"></g>\n'
          '  <h Use="1"><!-- kept --></h>\n'
          '</r>\n'),
    keeps("AnElementWithinALineTakesTheBlankBefore",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r> <a Use="1"/> <b Use="0"/> <c Use="1"/> </r>\n',
          '<r> <a Use="1"/> <c Use="1"/> </r>\n'),
    keeps("RemovingFromMixedContentLeavesTheText",
          ['edit', 't.xml', '--at', 'p', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <p>Hello <b Use="0">big</b> <i>old</i> world</p>\n'
          '</r>\n',
          '<r>\n'
          '  <p>Hello <i>old</i> world</p>\n'
          '</r>\n'),
    keeps("InstructionsStay",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <?include a?>\n'
          '  <a Use="0"/>\n'
          '  <?include b?>\n'
          '  <b Use="1"/>\n'
          '</r>\n',
          '<r>\n'
          '  <?include a?>\n'
          '  <?include b?>\n'
          '  <b Use="1"/>\n'
          '</r>\n'),
    keeps("NeighboursGoTogether",
          ['edit', 't.xml', 'prune'],
          '<r>\n'
          '  <a/>\n'
          '  <b></b>\n'
          '\n'
          '  <c>1</c>\n'
          '  <d/>\n'
          '</r>\n',
          '<r>\n'
          '  <c>1</c>\n'
          '</r>\n'),
    keeps("ANewChildStandsAsItsSiblings",
          ['edit', 't.xml', 'append', 'from.xml'],
          '<r>\n'
          '\t<a>1</a>\n'
          '\t<b/>\n'
          '</r>\n',
          '<r>\n'
          '\t<a>1</a>\n'
          '\t<b/>\n'
          '\t<c>3</c>\n'
          '</r>\n',
          from_xml='<x><c>3</c></x>'),
    keeps("AFirstChildIsOneStepDeeper",
          ['edit', 't.xml', '--at', 'g/h', 'append', 'from.xml'],
          '<r>\n'
          '    <g>\n'
          '        <h/>\n'
          '    </g>\n'
          '</r>\n',
          '<r>\n'
          '    <g>\n'
          '        <h>\n'
          '            <c>3</c>\n'
          '            <d>\n'
          '                <e/>\n'
          '            </d>\n'
          '        </h>\n'
          '    </g>\n'
          '</r>\n',
          from_xml='<x><c>3</c><d><e/></d></x>'),
    keeps("AFirstChildInAFileOfCarriageReturns",
          ['edit', 't.xml', '--at', 'h', 'append', 'from.xml'],
          '<r>\r\n\t<g>1</g>\r\n\t<h></h>\r\n</r>\r\n',
          '<r>\r\n\t<g>1</g>\r\n\t<h>\r\n\t\t<c>3</c>\r\n\t</h>\r\n</r>\r\n',
          from_xml='<x><c>3</c></x>'),
    keeps("ANewChildInMixedContentComesLast",
          ['edit', 't.xml', '--at', 'p', 'append', 'from.xml'],
          '<r>\n'
          '  <p>Hello <b>big</b> world</p>\n'
          '</r>\n',
          '<r>\n'
          '  <p>Hello <b>big</b> world<c>3</c></p>\n'
          '</r>\n',
          from_xml='<x><c>3</c></x>'),
    keeps("ANewChildBehindText",
          ['edit', 't.xml', '--at', 'a', 'append', 'from.xml'],
          '<r>\n'
          '  <a>text</a>\n'
          '</r>\n',
          '<r>\n'
          '  <a>text<c>3</c></a>\n'
          '</r>\n',
          from_xml='<x><c>3</c></x>'),
    keeps("BlankTextOfALeafBecomesReferences",
          ['kv', 'from', 't.xml', 'k=v', '--at', 'b'],
          '<r>\n'
          '  <b>\n'
          '  </b>\n'
          '</r>\n',
          '<r>\n'
          '  <b>&#10;&#32;&#32;<k>v</k></b>\n'
          '</r>\n'),
    keeps("NewChildrenStandWhereTheOldOnesDid",
          ['kv', 'from', 't.xml', 'k=1;l=2', '--at', 'Options'],
          '<r>\n'
          '   <Options>\n'
          '      <k>0</k>\n'
          '      <m>5</m>\n'
          '   </Options> <!-- o -->\n'
          '</r>\n',
          '<r>\n'
          '   <Options>\n'
          '      <k>1</k>\n'
          '      <l>2</l>\n'
          '   </Options> <!-- o -->\n'
          '</r>\n'),
    keeps("SortingTakesCommentsAlong",
          ['edit', 't.xml', 'sort', '-a', 'DataID'],
          '<r>\n'
          '  <!-- three -->\n'
          '  <c DataID="3"/>\n'
          '  <b DataID="2"/> <!-- two -->\n'
          '\n'
          '  <!-- one -->\n'
          '  <a DataID="1"/>\n'
          '</r>\n',
          '<r>\n'
          '  <!-- one -->\n'
          '  <a DataID="1"/>\n'
          '  <b DataID="2"/> <!-- two -->\n'
          '\n'
          '  <!-- three -->\n'
          '  <c DataID="3"/>\n'
          '</r>\n'),
    keeps("SortingWhatIsSortedChangesNothing",
          ['edit', 't.xml', 'sort', '-a', 'DataID'],
          '<r>\n'
          '\n'
          '  <a DataID="1"/>\n'
          "  <b  DataID='2'/>\n"
          '\n'
          '</r>',
          SAME),
    keeps("MovingTakesTheCommentAlong",
          ['edit', 't.xml', 'move', '--from', '0', '--to', '2'],
          '<r>\n'
          '  <!-- about a -->\n'
          "  <a  x='1' ><![CDATA[1]]></a>\n"
          '\n'
          '  <b/>\n'
          '  <c/>\n'
          '</r>\n',
          '<r>\n'
          '  <b/>\n'
          '  <c/>\n'
          '  <!-- about a -->\n'
          "  <a  x='1' ><![CDATA[1]]></a>\n"
          '</r>\n'),
    keeps("RenamingChangesBothTags",
          ['edit', 't.xml', '--at', 'a', 'rename', 'b'],
          '<r>\n'
          "  <a  x='1'\n"
          '  >1<!-- c --></a >\n'
          '</r>\n',
          '<r>\n'
          "  <b  x='1'\n"
          '  >1<!-- c --></b >\n'
          '</r>\n'),
    keeps("CharactersThatAnEncodingLacksBecomeReferences",
          ['attr', 't.xml', 'set', 'Label', 'ü€', '--ids', '1'],
          b'<?xml version="1.0" encoding="ISO-8859-1"?>\n<r>\n  <a DataID="1" Label="\xe4"/><!-- \xf6 -->\n</r>\n',
          b'<?xml version="1.0" encoding="ISO-8859-1"?>\n<r>\n  <a DataID="1" Label="\xfc&#8364;"/><!-- \xf6 -->\n</r>\n'),
    keeps("SeveralRemovalsAtOnce",
          ['edit', 't.xml', 'keep', '-a', 'Use', '--take-attr'],
          changed(('DataID="4" Use="0"', 'DataID="4"')),
          changed(('Use="1" Label="Gain"', 'Label="Gain"'),
                  ("Use='0' Label='Offset'", "Label='Offset'"),
                  ('DataID="3" Use="1"', 'DataID="3"'),
                  ('  <Width DataID="4" Use="0">2</Width>\n', ''))),
    keeps("CopiedValuesChangeTextsOnly",
          ['copy', 'from.xml', 't.xml'],
          SETTINGS,
          changed(('Use="0">2', 'Use="0">9')),
          from_xml='<x><q DataID="4">9</q><q DataID="1">10</q></x>'),
    keeps("AMovedBranchIsIndentedAnew",
          ['edit', 't.xml', 'move', '--from', '1', '--to', '-1'],
          '<r>\n'
          '  <g>\n'
          '    <!-- about a -->\n'
          '    <a>\n'
          '      <b x="1"\n'
          '         y="2"/> <!-- b -->\n'
          '\n'
          '      <c>1</c>\n'
          '    </a>\n'
          '    <k/>\n'
          '  </g>\n'
          '  <z/>\n'
          '</r>\n',
          '<r>\n'
          '  <g>\n'
          '    <k/>\n'
          '  </g>\n'
          '  <z/>\n'
          '  <!-- about a -->\n'
          '  <a>\n'
          '    <b x="1"\n'
          '       y="2"/> <!-- b -->\n'
          '\n'
          '    <c>1</c>\n'
          '  </a>\n'
          '</r>\n'),
    keeps("ACommentStaysWithTheElementThatIsLeft",
          ['edit', 't.xml', 'delete', '-a', 'Use', '-v', '0'],
          '<r>\n'
          '  <!-- old ones -->\n'
          '  <a Use="0"/>\n'
          '  <b Use="1"/>\n'
          '  <c Use="0"/>\n'
          '</r>\n',
          '<r>\n'
          '  <!-- old ones -->\n'
          '  <b Use="1"/>\n'
          '</r>\n'),
    keeps("TheRootKeepsItsBlanks",
          ['attr', 't.xml', 'bits', 'Use', '--set', '4'],
          '<r Use = "1" ><!-- c --><a/></r >\n',
          '<r Use = "5" ><!-- c --><a/></r >\n'),
    keeps("FilteredElementsTakeTheirLines",
          ['edit', 't.xml', 'filter', '--id', '1', '-a', 'Label', '--find', 'x'],
          '<r>\n'
          '  <a DataID="1" Label="x">1</a> <!-- x -->\n'
          '  <b DataID="1" Label="y">1</b> <!-- y -->\n'
          '  <c>free</c>\n'
          '</r>\n',
          '<r>\n'
          '  <a DataID="1" Label="x">1</a> <!-- x -->\n'
          '  <c>free</c>\n'
          '</r>\n'),

    # --- more of values --------------------------------------------------------------------------
    keeps("TheNextAttributeTakesThePlaceOfTheFirst", ["attr", "t.xml", "remove", "DataID"],
          '<r><a   DataID="1" Use="2"  k="x"\n  Label="l"/></r>',
          '<r><a   Use="2"  k="x"\n  Label="l"/></r>'),
    keeps("AClearedLeafKeepsItsComments", ["values", "import", "t.xml", "values.csv"],
          '<r>\n  <a DataID="1">x<!-- c --></a>\n  <b DataID="2"><![CDATA[z]]></b>\n</r>',
          '<r>\n  <a DataID="1"><!-- c --></a>\n  <b DataID="2"></b>\n</r>',
          values_csv="id,value\n1,\n2,\n"),
    keeps("TheEndMarkIsSplitOverTwoSections", ["values", "import", "t.xml", "values.csv"],
          '<r><a DataID="1"><![CDATA[x]]></a></r>',
          '<r><a DataID="1"><![CDATA[a]]]]><![CDATA[>b]]></a></r>',
          values_csv="id,value\n1,a]]>b\n"),
    keeps("ADifferenceOverSeveralRunsGoesIntoTheFirst", ["values", "import", "t.xml", "values.csv"],
          '<r><a DataID="1">one<!-- c -->two<!-- d -->three</a></r>',
          '<r><a DataID="1">oX<!-- c --><!-- d -->ree</a></r>',
          values_csv="id,value\n1,oXree\n"),
    keeps("ReferencesBesideTheDifferenceStay", ["values", "import", "t.xml", "values.csv"],
          '<r><a DataID="1">a &amp; b &#60; c</a></r>',
          '<r><a DataID="1">a &amp; B &#60; c</a></r>',
          values_csv="id,value\n1,a & B < c\n"),
    keeps("AsciiFilesGetReferences", ["values", "import", "t.xml", "values.csv"],
          '<?xml version="1.0" encoding="US-ASCII"?>\n<r><a DataID="1"/></r>\n',
          '<?xml version="1.0" encoding="US-ASCII"?>\n<r><a DataID="1">&#252;</a></r>\n',
          values_csv="id,value\n1,\u00fc\n"),
    keeps("BytesBehindTheEndStay", ["attr", "t.xml", "set", "k", "1", "--children"],
          b"<r>\n <a/>\n</r>\n\0\0\0", b'<r>\n <a k="1"/>\n</r>\n\0\0\0'),

    # --- more of lines ---------------------------------------------------------------------------
    keeps("ACommentAboveNothingElseGoes", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
          '<r>\n  <a Use="1"/>\n\n  <!-- of b -->\n  <b Use="0"/>\n\n  <c Use="1"/>\n</r>',
          '<r>\n  <a Use="1"/>\n\n  <c Use="1"/>\n</r>'),
    keeps("ACommentAboveAnotherCommentGoes", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
          '<r>\n  <!-- one -->\n  <a Use="0"/>\n  <!-- two -->\n  <b Use="1"/>\n</r>',
          '<r>\n  <!-- two -->\n  <b Use="1"/>\n</r>'),
    keeps("AnElementThatIsLeftKeepsTheLine", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
          '<r>\n  <a Use="0"/> <b/> <!-- c -->\n  <c Use="0"/> <!-- gone -->\n</r>',
          '<r>\n  <b/> <!-- c -->\n</r>'),
    keeps("AnElementBeforeTheEndTagTakesItsLine", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
          '<r>\n  <a/>\n  <b Use="0"/></r>', '<r>\n  <a/></r>'),
    keeps("PreservedWhiteSpaceStays", ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
          '<r xml:space="preserve">\n  <a Use="0"/>\n  <b/>\n</r>',
          '<r xml:space="preserve">\n  \n  <b/>\n</r>'),
    keeps("WithoutLineBreaksNoneComes", ["edit", "t.xml", "append", "from.xml"],
          "<r><a/><b/></r>", "<r><a/><b/><c>3</c><d><e/></d></r>",
          from_xml="<x><c>3</c><d><e/></d></x>"),
    keeps("WhereNeighboursAreSeparatedByABlankSoAreNewOnes", ["edit", "t.xml", "append", "from.xml"],
          "<r> <a/> <b/> </r>", "<r> <a/> <b/> <c>3</c> </r>", from_xml="<x><c>3</c></x>"),
    keeps("NewChildrenComeBeforeLooseComments", ["edit", "t.xml", "append", "from.xml"],
          "<r>\n  <a/> <!-- a -->\n\n  <!-- end -->\n</r>",
          "<r>\n  <a/> <!-- a -->\n  <c>3</c>\n\n  <!-- end -->\n</r>",
          from_xml="<x><c>3</c></x>"),
    keeps("CopiedBranchesAreIndented", ["edit", "t.xml", "copy", "from.xml"],
          "<r>\n\t<a/>\n</r>", '<r>\n\t<a/>\n\t<c k="1">3</c>\n\t<d>\n\t\t<e>4</e>\n\t</d>\n</r>',
          from_xml="<x><c k='1'>3</c><d><e>4</e></d></x>"),
    keeps("SortingTwoKeepsTheBlankLine", ["edit", "t.xml", "sort", "-a", "k"],
          '<r>\n  <b k="2"/> <!-- b -->\n\n  <!-- about a -->\n  <a k="1"/>\n</r>',
          '<r>\n  <!-- about a -->\n  <a k="1"/>\n\n  <b k="2"/> <!-- b -->\n</r>'),
    keeps("SortingKeepsLooseComments", ["edit", "t.xml", "sort", "-a", "k"],
          '<r>\n  <!-- loose -->\n\n  <b k="2"/>\n  <c k="3"/>\n  <!-- about a -->\n  <a k="1"/>\n'
          '  <!-- end -->\n</r>',
          '<r>\n  <!-- loose -->\n\n  <!-- about a -->\n  <a k="1"/>\n  <b k="2"/>\n  <c k="3"/>\n'
          '  <!-- end -->\n</r>'),
    keeps("SortingWithinALine", ["edit", "t.xml", "sort", "-a", "k"],
          '<r> <b k="2"/> <a k="1"/> </r>', '<r> <a k="1"/> <b k="2"/> </r>'),
    keeps("MovingIntoABranchLeavesValuesAlone", ["edit", "t.xml", "move", "--from", "0", "--to", "3"],
          "<r>\n  <!-- x -->\n  <x>\n    <y>multi\n  line</y>\n  </x>\n  <g>\n    <h/>\n  </g>\n</r>",
          "<r>\n  <g>\n    <h/>\n    <!-- x -->\n    <x>\n      <y>multi\n  line</y>\n    </x>\n"
          "  </g>\n</r>"),

    # --- what a DTD declares ---------------------------------------------------------------------
    keeps("ReferencesToEntitiesStay", ["attr", "t.xml", "set", "k", "2", "--ids", "5"],
          "<!DOCTYPE r [<!ENTITY e \"x<b/>y\"><!ENTITY t 'text'><!ATTLIST r a NMTOKEN #IMPLIED>]>\n"
          '<r a=" n " b="1&t;"><q>&e; z</q><c DataID="5">a &t; b</c></r>\n',
          "<!DOCTYPE r [<!ENTITY e \"x<b/>y\"><!ENTITY t 'text'><!ATTLIST r a NMTOKEN #IMPLIED>]>\n"
          '<r a=" n " b="1&t;"><q>&e; z</q><c DataID="5" k="2">a &t; b</c></r>\n'),
    keeps("TextBesideAReferenceChanges", ["values", "import", "t.xml", "values.csv"],
          "<!DOCTYPE r [<!ENTITY t 'text'>]>\n<r><c DataID='5'>a &t; b</c></r>\n",
          "<!DOCTYPE r [<!ENTITY t 'text'>]>\n<r><c DataID='5'>a &t; c</c></r>\n",
          values_csv="id,value\n5,a text c\n"),
    case("RefusesToChangeTheTextOfAnEntity", ["attr", "t.xml", "set", "b", "2"],
         files={"t.xml": "<!DOCTYPE r [<!ENTITY t 'text'>]><r><q b='&t;'/></r>"}, code=4,
         err=["/r/q[1]/@b: the text of the entity reference &t; has changed"]),
    case("RefusesToChangeTheElementsOfAnEntity", ["edit", "-i", "t.xml", "--at", "q/b", "rename", "c"],
         files={"t.xml": "<!DOCTYPE r [<!ENTITY e '<b/>'>]><r><q>&e;</q></r>"}, code=4,
         err=["/r/q[1]: what the entity reference &e; stands for has changed"],
         after={"t.xml": "<!DOCTYPE r [<!ENTITY e '<b/>'>]><r><q>&e;</q></r>"}),
    case("RefusesANameThatTheEncodingLacks", ["edit", "t.xml", "-i", "--at", "a", "rename", "\u00fc"],
         files={"t.xml": '<?xml version="1.0" encoding="US-ASCII"?><r><a/></r>'}, code=4,
         err=["t.xml: /r/\u00fc[1]: the file's encoding lacks a character of the name"],
         after={"t.xml": '<?xml version="1.0" encoding="US-ASCII"?><r><a/></r>'}),
]
