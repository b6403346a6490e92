from harness import case

DIALOG = """<Dialog><InputData>
  <Range1>
    <X Label="Time">Col(A)</X>
    <Y Label="Signal">Col(B)<W WeightMethod="8" Weight_A="1" Weight_B="2.5" Weight_C="-3"/></Y>
  </Range1>
  <Range2/>
  <Range3><Y>Col(C)<Weight WeightMethod="6" Weight_A="0.1" Weight_B="7"/></Y></Range3>
</InputData></Dialog>
"""

CASES = [
    case("StringIsPlainByDefault", ["report", "string", "3"], out="?$OP:A=3\n"),
    case("StringTakesEveryPart",
         ["report", "string", "3", "--type", "P", "--flags", "1", "--separator", "d", "--suffix",
          "X", "--tail", "2"], out="?$OP:P G=d3X2\n"),
    case("StringMayBeDotted", ["report", "string", "3", "--dotted"], out="?$OP:A=.3\n"),
    case("StringNeedsOneCharacter", ["report", "string", "3", "--type", "PQ"], code=2,
         err=["one ASCII character"]),
    case("StringNeedsANumber", ["report", "string", "three"], code=2, err=["INDEX"]),
    case("LabelNamesARow", ["report", "label", "4", "--row", "2"], out="?$OP:E2=4\n"),
    case("LabelTakesAName", ["report", "label", "4", "--name", "Units", "--type", "B"],
         out='?$OP:E"Units"=B4\n'),
    case("LabelNeedsOneOfBoth", ["report", "label", "4"], code=2, err=["--row,--name"]),
    case("RetypeReplacesTheType", ["report", "retype", "?$OP:A G=3", "B"], out="?$OP:B=3\n"),
    case("RetypeRefusesOtherTexts", ["report", "retype", "A=3", "B"], code=4,
         err=["not a reference string: A=3"]),
    case("StringWritesAFile", ["report", "string", "3", "-o", "out.txt"],
         after={"out.txt": "?$OP:A=3\n"}),

    case("TableHasARowForEveryVariable", ["report", "table", "d.xml", "--at", "InputData"],
         files={"d.xml": DIALOG}, out="""\
variable  role   data      range     weight               weight data  a    b    c
Time      Indep  ?$OP:P=1  ?$OP:G=1  None
Signal    Dep    ?$OP:P=2  ?$OP:G=2  Data Power Variance  ?$OP:P=2W2   1    2.5  -3
Y         Dep    ?$OP:P=3  ?$OP:G=3  Linear Variance                   0.1  7
"""),
    case("TableGivesJson", ["report", "table", "-", "-f", "json"], stdin="<r><X/></r>",
         json=[{"variable": "X", "role": "Indep", "data": "?$OP:P=1", "range": "?$OP:G=1",
                "weight": "None", "weight data": None, "a": None, "b": None, "c": None}]),
    case("TableOfNoRangesIsEmpty", ["report", "table", "-", "-f", "csv"], stdin="<r/>", code=1,
         out="variable,role,data,range,weight,weight data,a,b,c\n"),
]
