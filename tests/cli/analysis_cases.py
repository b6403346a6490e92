from harness import case

RANGES = """<Dialog><InputData>
  <Range1 Label="Range 1" RepeatID="128">
    <X Label="Time" DataID="51" Auto="1|Auto|1">Col(A)</X>
    <Y Label="Signal" DataID="52">Col(B)</Y>
  </Range1>
  <Range2 RepeatID="144"/>
  <Range3><X Auto="0|Fit|2">Col(C)</X></Range3>
</InputData></Dialog>
"""

FIT = """<Fit>
  <Weight WeightMethod="8" Weight_A="1" Weight_B="2.5" Weight_C="-3">Col(W)</Weight>
  <Data><W2 WeightMethod="99"/></Data>
  <Shown><WeightMethod>6</WeightMethod><WeightData/><WeightA>4</WeightA><WeightB>5</WeightB>
    <WeightC>6</WeightC></Shown>
  <Broken><WeightMethod>6</WeightMethod></Broken>
  <Params DataID="2900"><Share DataID="5000"><Value1>1</Value1><Value2>0</Value2></Share>
    <Fixed/></Params>
</Fit>
"""

STATS = """<Stats>
  <Bin><Min>0</Min><Max>10</Max><StepBy>1</StepBy></Bin>
  <Sum>3.5</Sum>
  <Result_1_2><Results><N>7</N><Mean>0.5</Mean></Results><Counts>1 2 3</Counts></Result_1_2>
  <Result><Details><Q1>2</Q1></Details></Result>
</Stats>
"""

CASES = [
    case("RangesShowsEverySubRange", ["ranges", "show", "r.xml", "--at", "InputData"],
         files={"r.xml": RANGES}, out="""\
range  tag     repeat  sub-range  label   id  auto       value
    1  Range1  128     X          Time    51  on Auto 1  Col(A)
    1  Range1  128     Y          Signal  52             Col(B)
    3  Range3          X                      off Fit 2  Col(C)
"""),
    case("RangesDividesAFlatTreeAtSeparators", ["ranges", "show", "-", "-f", "csv"],
         stdin="<r><S/><X>1</X><Y>2</Y><S/><X>3</X></r>", out="""\
range,tag,repeat,sub-range,label,id,auto,value
1,,,X,,,,1
1,,,Y,,,,2
2,,,X,,,,3
"""),
    case("RangesGivesJson", ["ranges", "show", "-", "-f", "json"], stdin="<r><X>1</X></r>",
         json=[{"range": 1, "tag": None, "repeat": None, "sub-range": "X", "label": None,
                "id": None, "auto": None, "value": "1"}]),
    case("RangesOfSeparatorsOnlyAreNone", ["ranges", "show", "-"], stdin="<r><S/><S/></r>",
         code=1, out="range  tag  repeat  sub-range  label  id  auto  value\n"),
    case("RangesSaysWhichNodeIsMissing", ["ranges", "show", "r.xml", "--at", "Input/Data"],
         files={"r.xml": RANGES}, code=1, err=['r.xml: no node at "Input/Data"']),
    case("RangesRefusesBrokenXml", ["ranges", "show", "-"], stdin="<r>", code=3,
         err=["stdin:1:4: "]),

    case("FitterShowsWeightsAndSettings", ["fitter", "show", "f.xml"], files={"f.xml": FIT},
         out="""\
node     form      item    value
Weight   compact   method  8 Data Power Variance
Weight   compact   data    Col(W)
Weight   compact   a       1
Weight   compact   b       2.5
Weight   compact   c       -3
Data/W2  compact   method  99 (unknown)
Shown    expanded  method  6 Linear Variance
Shown    expanded  a       4
Shown    expanded  b       5
Params   settings  Share   1, 0
"""),
    case("FitterGivesJson", ["fitter", "show", "-", "-f", "json"],
         stdin="<W WeightMethod='11' Weight_A='0.1'/>",
         json=[{"node": ".", "form": "compact", "item": "method",
                "value": "11 Fitted Linear Variance"},
               {"node": ".", "form": "compact", "item": "a", "value": 0.1},
               {"node": ".", "form": "compact", "item": "b", "value": 0}]),
    case("FitterFindsNothingElsewhere", ["fitter", "show", "-"], stdin="<r><a/></r>", code=1,
         out="node  form  item  value\n"),

    case("StatsShowsSettingsAndResults", ["stats", "show", "s.xml"], files={"s.xml": STATS},
         out="""\
where           item          value
settings        bins          automatic
settings        bins by       number of intervals
settings        Bin/Min       0
settings        Bin/Max       10
settings        Bin/StepBy    1
settings        Sum           3.5
row 1 column 2  Results/N     7
row 1 column 2  Results/Mean  0.5
row 1 column 2  Counts        1 2 3
Result          Details/Q1    2
"""),
    case("StatsReadsANodeBelowTheRoot", ["stats", "show", "-", "--at", "a/b", "-f", "json"],
         stdin="<r><a><b><Sum>1</Sum></b></a></r>",
         json=[{"where": "settings", "item": "Sum", "value": "1"}]),
    case("StatsFindsNothingInAnEmptyTree", ["stats", "show", "-"], stdin="<r/>", code=1,
         out="where  item  value\n"),
]


def test_ReadsADeepTree(tool):
    depth = 9000
    xml = "<a>" * depth + "<W WeightMethod='0'/>" + "</a>" * depth
    result = tool.run(["fitter", "show", "-", "-f", "json"], stdin=xml)
    assert result.code == 0, result.err
    assert '"0 None"' in result.out
