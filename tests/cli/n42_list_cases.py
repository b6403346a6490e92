"""uxtree n42 list, and the reasons that all commands give where something is missing."""
import json

from harness import case

RICH = """<RadInstrumentData>
<RadDetectorInformation id="A"/>
<EnergyCalibration id="E"><CoefficientValues>1 2</CoefficientValues></EnergyCalibration>
<RadMeasurement><MeasurementClassCode>Foreground</MeasurementClassCode>
<StartDateTime>2026-11-22T01:02:03Z</StartDateTime><RealTimeDuration>PT10S</RealTimeDuration>
<Spectrum radDetectorInformationReference="A" energyCalibrationReference="E">
<LiveTimeDuration>PT9S</LiveTimeDuration><ChannelData>4 5 6</ChannelData></Spectrum>
<GrossCounts radDetectorInformationReference="A"><CountData>50</CountData></GrossCounts>
<GrossCounts radDetectorInformationReference="N"><LiveTimeDuration>PT8S</LiveTimeDuration>
<CountData>7</CountData></GrossCounts>
<DoseRate><DoseRateValue>0.5</DoseRateValue></DoseRate>
<RadInstrumentState><StateVector><GeographicPoint><LatitudeValue>46.5</LatitudeValue>
<LongitudeValue>-119.25</LongitudeValue></GeographicPoint></StateVector></RadInstrumentState>
</RadMeasurement></RadInstrumentData>
"""
BARE = """<N42InstrumentData><Measurement><Spectrum><ChannelData>1 2</ChannelData></Spectrum>
</Measurement></N42InstrumentData>
"""
CLASSLESS = "<RadInstrumentData><RadMeasurement><Spectrum><ChannelData>1</ChannelData></Spectrum>" \
    "</RadMeasurement></RadInstrumentData>"
FILES = {"r.n42": RICH, "b.n42": BARE, "c.n42": CLASSLESS, "d/r.n42": RICH, "d/e/b.XML": BARE,
         "d/x.xml": "<r/>", "d/readme.txt": "text", "broken.n42": "<RadInstrumentData>",
         "empty/readme.txt": "text"}
REASON = "c.n42: 1 spectrum left out: its measurement has no class code (MeasurementClassCode)"
HEADING = "file,measurement,spectrum,detector,class,start,live s,real s,dead %,channels,counts," \
    "counts/s,gross,from,to,unit,latitude,longitude,dose,dose unit\n"
ROWS = "r.n42,1,0,A,Foreground,2026-11-22T01:02:03Z,9,10,10,3,15,1.6666666666666667,50,1,7,keV," \
    "46.5,-119.25,0.5,µSv/h\n" \
    "r.n42,1,,N,Foreground,2026-11-22T01:02:03Z,8,,,,,,7,,,,,,,\n"

CASES = [
    case("ListsEverythingThatAFileTells", ["n42", "list", "-f", "csv", "r.n42", "b.n42"],
         files=FILES, out=HEADING + ROWS + "b.n42,1,0,,,,,,,2,3,,,,,,,,,\n"),
    case("ShortensNumbersForPeople", ["n42", "list", "r.n42"], files=FILES,
         contains=["  1.66667  "]),
    case("ListsOneDetector", ["n42", "list", "-f", "csv", "-d", "N", "r.n42"], files=FILES,
         out=HEADING + ROWS.splitlines(True)[1]),
    case("FindsNoSpectraOfADetector", ["n42", "list", "-f", "csv", "-d", "X", "r.n42"],
         files=FILES, code=1, out=HEADING, err=["of the detectors chosen"]),
    case("WalksFolders", ["n42", "list", "-f", "csv", "d"], files=FILES,
         out=HEADING + "d/e/b.XML,1,0,,,,,,,2,3,,,,,,,,,\n" + ROWS.replace("r.n42,", "d/r.n42,"),
         err=["d: 1 file not ending in .n42 or .xml passed over\n",
              'd/x.xml passed over: no N42 file: the root element is "r"\n']),
    case("FindsNothingInAFolder", ["n42", "list", "-f", "csv", "empty"], files=FILES, code=1,
         out=HEADING, err=["empty has no files ending in .n42 or .xml"]),
    case("RefusesWhatTheUserNamed", ["n42", "list", "-f", "csv", "d/x.xml", "b.n42"], files=FILES,
         code=3, contains=["b.n42,1,0"], err=["d/x.xml: no N42 file"]),
    case("GoesOnBehindABrokenFile", ["n42", "list", "-f", "csv", "broken.n42", "b.n42"],
         files=FILES, code=3, contains=["b.n42,1,0"], err=["broken.n42:1:20"]),
    case("GivesTheReasonForAnEmptyList", ["n42", "list", "-f", "csv", "c.n42"], files=FILES,
         code=1, out=HEADING, err=["c.n42 has no spectra and no gross counts\n", REASON]),
    case("GivesTheReasonForNoInfo", ["n42", "info", "-f", "csv", "c.n42"], files=FILES, code=1,
         contains=["c.n42,2011"], err=["c.n42 has no spectra and no gross counts\n", REASON]),
    case("GivesTheReasonForNoExport", ["n42", "export", "c.n42", "-o", "x.csv"], files=FILES,
         code=1, err=["c.n42 has no spectra\n", REASON], after={"x.csv": None}),
    case("GivesTheReasonForNoPicture", ["n42", "plot", "c.n42", "-o", "x.svg"], files=FILES,
         code=1, err=["c.n42 has no spectra\n", REASON], after={"x.svg": None}),
    case("GivesTheReasonForNoDetectors2006", ["n42", "detectors", "b.n42"], files=FILES, code=1,
         err=["b.n42 lists no detectors: no spectrum names its detector"]),
    # Intended by the importer: such a file empties the tree, so there is nothing to save.
    case("GivesTheReasonForNoImport", ["n42", "import", "c.n42", "-o", "x.xml"], files=FILES,
         code=1, err=["c.n42 has no spectra and no gross counts\n", REASON],
         after={"x.xml": None}),
]


def test_SeveralFilesAtOnceGiveTheSameTable(tool):
    for i in range(40):
        tool.write(f"many/{i:02}.n42", RICH.replace("<CountData>7", f"<CountData>{i}"))
    tool.write("many/17.n42", CLASSLESS)
    tool.write("many/23.n42", "<RadInstrumentData>")
    one, two = (tool.run(["n42", "list", "-f", "json", "-j", jobs, "many"]) for jobs in "18")
    assert (one.out, one.err, one.code) == (two.out, two.err, two.code)
    assert one.code == 3 and len(json.loads(one.out)) == 76 and "many/17.n42: 1 spectrum" in one.err
