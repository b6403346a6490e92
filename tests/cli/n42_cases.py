import json
import pathlib
import re
import subprocess

from harness import case

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLE = (ROOT / "examples" / "spectrum.n42").read_text()

SMALL = """<RadInstrumentData>
<RadDetectorInformation id="D1"/><RadDetectorInformation id="N1"/>
<EnergyCalibration id="E1"><CoefficientValues>0 2</CoefficientValues></EnergyCalibration>
<RadMeasurement><MeasurementClassCode>Background</MeasurementClassCode>
<Spectrum radDetectorInformationReference="D1" energyCalibrationReference="E1">
<LiveTimeDuration>PT1M2.5S</LiveTimeDuration><ChannelData>1 2.5 3</ChannelData></Spectrum>
<Spectrum id="raw"><ChannelData>7 8</ChannelData></Spectrum>
<GrossCounts id="g" radDetectorInformationReference="N1"><CountData>4</CountData></GrossCounts>
</RadMeasurement></RadInstrumentData>
"""
OLD = """<N42InstrumentData><Measurement><Spectrum Detector="A" ID="s"><StartTime>noon</StartTime>
<SourceType>Item</SourceType><Calibration EnergyUnits="MeV"><Equation><Coefficients>0 1
</Coefficients></Equation></Calibration><ChannelData>5</ChannelData></Spectrum></Measurement>
</N42InstrumentData>
"""
FILES = {"s.n42": SMALL, "old.n42": OLD, "none.n42": "<RadInstrumentData/>", "x.xml": "<r/>",
         "cut.n42": SMALL[:200]}

CASES = [
    case("TellsWhatFilesContain", ["n42", "info", "s.n42", "old.n42", "none.n42"], files=FILES,
         out="""\
file      form  detectors  measurements  spectra  channels  calibrations  counts  gross  gross counts
s.n42     2011          2             1        2  2-3                  1    21.5      1             4
old.n42   2006          1             1        1  1                    1       5      0             0
none.n42  2011          0             0        0                       0       0      0             0
""", err=["none.n42 has no spectra and no gross counts\n", "none.n42: no measurement in the file\n"]),
    case("TellsThatNoFileHasAnything", ["n42", "info", "-f", "csv", "none.n42"], files=FILES,
         code=1, contains=["none.n42,2011,0,"], err=["no measurement in the file"]),
    case("TellsItAsJson", ["n42", "info", "-f", "json", "old.n42"], files=FILES,
         json=[{"file": "old.n42", "form": "2006", "detectors": 1, "measurements": 1, "spectra": 1,
                "channels": "1", "calibrations": 1, "counts": 5.0, "gross": 0,
                "gross counts": 0.0}]),
    case("GoesOnAfterAFileThatIsNone", ["n42", "info", "-f", "csv", "x.xml", "old.n42"],
         files=FILES, code=3, contains=["old.n42,2006,1,1,1,1,1,5,0,0"],
         err=['x.xml: no N42 file: the root element is "r"', "RadInstrumentData"]),
    case("SaysWhereAFileIsBroken", ["n42", "info", "cut.n42"], files=FILES, code=3,
         err=["cut.n42:", "ends"]),
    case("PrintsNoHeadingAlone", ["n42", "list", "cut.n42", "x.xml"], files=FILES, code=3,
         err=["cut.n42:", "x.xml: no N42 file"]),
    case("KeepsTheHeadingForPrograms", ["n42", "info", "-f", "csv", "x.xml"], files=FILES, code=3,
         out="file,form,detectors,measurements,spectra,channels,calibrations,counts,gross,gross counts\n",
         err=["x.xml: no N42 file"]),
    case("ListsDetectors", ["n42", "detectors", "s.n42"], files=FILES, out="D1\nN1\n"),
    case("ListsDetectorsOfStandardInput", ["n42", "detectors", "-"], stdin=OLD, out="A\n"),
    case("FindsNoDetectors", ["n42", "detectors", "none.n42"], files=FILES, code=1,
         err=["none.n42 lists no detectors: it has no RadDetectorInformation with an id"]),
    case("ImportsATree", ["n42", "import", "old.n42"], files=FILES, out="""\
<?xml version="1.0" encoding="UTF-8"?><Import><n42><RadMeasurements FileDataDimsVector="1">\
<RadMeasurement Label="RadMeasurement_1"><Spectrum Detector="A" ID="s" Label="Spectrum_0" \
FileDataDimsVector="1"><StartTime Label="StartTime">noon</StartTime>\
<SourceType Label="SourceType">Item</SourceType><Energy FileDataDimsVector="1" Label="Energy" \
ColDesignation="3" Comment="0 1&#xA;" Unit="MeV">1</Energy><ChannelData_0 \
Label="ChannelData_0" FileDataDimsVector="1">5</ChannelData_0></Spectrum></RadMeasurement>\
</RadMeasurements></n42></Import>\n""".replace("&#xA;", "&#10;")),
    case("ImportsGrossCountsOfOneDetector", ["n42", "import", "-d", "D1", "s.n42", "-o", "t.xml"],
         files=FILES),
    case("RefusesAnUnknownDetector", ["n42", "import", "-d", "d1", "s.n42"], files=FILES, code=2,
         err=['s.n42: no detector "d1"', 'did you mean "D1"?']),
    case("ImportsNothing", ["n42", "import", "none.n42", "-o", "t.xml"], files=FILES, code=1,
         err=["none.n42 has no spectra and no gross counts"], after={"t.xml": None}),
    case("ExportsColumnsBehindTheirEnergies", ["n42", "export", "s.n42"], files=FILES, out="""\
channel,1.1 Background,energy (keV) E1,1.0 Background D1
1,7,2,1
2,8,4,2.5
3,,6,3
"""),
    case("NamesTheUnitOfEnergies", ["n42", "export", "old.n42"], files=FILES,
         out="channel,energy (MeV),1.0 Item A\n1,1,5\n"),
    case("ExportsObjects", ["n42", "export", "-f", "json", "s.n42"], files=FILES, json=[
        {"file": "s.n42", "name": "1.0 Background D1", "measurement": 1, "spectrum": 0, "id": None,
         "detector": "D1", "kind": "Background", "start": None, "realTime": None,
         "liveTime": "PT1M2.5S", "realSeconds": None, "liveSeconds": 62.5, "unit": "keV",
         "calibration": "0 2", "energies": [2, 4, 6], "counts": [1, 2.5, 3]},
        {"file": "s.n42", "name": "1.1 Background", "measurement": 1, "spectrum": 1, "id": "raw",
         "detector": None, "kind": "Background", "start": None, "realTime": None, "liveTime": None,
         "realSeconds": None, "liveSeconds": None, "unit": None, "calibration": None,
         "energies": None, "counts": [7, 8]}]),
    case("ExportsNothing", ["n42", "export", "none.n42"], files=FILES, code=1,
         err=["none.n42 has no spectra"]),
    case("RefusesAnUnknownSpectrum", ["n42", "plot", "-s", "1.2", "s.n42"], files=FILES, code=2,
         err=['no spectrum "1.2"', "such as 1.0"]),
    case("DrawsNothing", ["n42", "plot", "none.n42"], files=FILES, code=1, err=["no spectra"]),
]


def test_ImportsOnlyTheSelectedGrossCounts(tool):
    assert "<GrossCounts" in tool.run(["n42", "import", "-d", "N1", "s.n42"], files=FILES).out
    without = tool.run(["n42", "import", "-d", "D1", "s.n42"]).out
    assert "<GrossCounts" not in without and "<ChannelData_0" in without


def picture(tool, *args):
    result = tool.run(["n42", "plot", *args])
    assert result.code == 0, result.err
    return result.out


def test_DrawsChannelsWhereEnergiesAreMissing(tool):
    tool.write("s.n42", SMALL)
    assert ">Channel</text>" in picture(tool, "s.n42")
    assert ">Energy (keV)</text>" in picture(tool, "-s", "1.0", "s.n42")
    tool.write("old.n42", OLD)
    assert ">Energy (MeV)</text>" in picture(tool, "old.n42")


def test_PictureIsWellFormedAndHasEverySpectrum(tool):
    tool.write("e.n42", EXAMPLE)
    svg = picture(tool, "e.n42")
    tool.write("e.svg", svg)
    assert tool.run(["show", "-d", "0", "e.svg"]).code == 0
    assert len(re.findall(r'<path class="c s\d" d="M', svg)) == 4
    for name in ["1.0 Background NaI", "1.1 Background LaBr3", "2.0 Foreground NaI"]:
        assert name in svg
    assert "prefers-color-scheme:dark" in svg and "href" not in svg


def test_ScalesAreChosen(tool):
    tool.write("e.n42", EXAMPLE)
    assert 'class="grid fine"' in picture(tool, "e.n42")
    assert 'class="grid fine"' not in picture(tool, "--linear", "e.n42")


def test_ManySpectraAreSummedUnlessChosen(tool):
    spectrum = '<Spectrum radDetectorInformationReference="D"><LiveTimeDuration>PT2S' \
        "</LiveTimeDuration><ChannelData>1 2 3</ChannelData></Spectrum>"
    tool.write("m.n42", "<RadInstrumentData><RadMeasurement><MeasurementClassCode>F"
               "</MeasurementClassCode>" + spectrum * 9 + "</RadMeasurement></RadInstrumentData>")
    assert "F D<tspan class=\"sub\"> · 9 spectra, 18 s, 54 counts" in picture(tool, "m.n42")
    assert "9 spectra" not in picture(tool, "-s", "1.3", "m.n42")
    result = tool.run(["n42", "plot", "--each", "m.n42"])
    assert "9 curves; the 8 with most counts are drawn" in result.err
    assert "9 curves" not in tool.run(["n42", "plot", "--each", "-f", "html", "m.n42"]).err


def test_LegendStandsBelowTheCurvesAndNothingIsCut(tool):
    long = "Title of a measurement that is far too long for one line of a picture of spectra " * 3
    name = "".join(f"detector-{i}-" for i in range(12))
    tool.write("l.n42", SMALL.replace('"D1"', f'"{name}"'))
    svg = picture(tool, "--title", long, "l.n42")
    words = " ".join(re.findall(r'<text class="title"[^>]*>([^<]*)<', svg)).split()
    assert words == long.split()
    keys = re.findall(r'<text class="key" x="\d+" y="([\d.]+)">([^<]*)', svg)
    assert "".join(text for _, text in keys[:-1]).replace(" ", "") == \
        ("1.0 Background " + name).replace(" ", "")
    bottom = float(re.search(r'<path class="frame" d="M\S+ \S+V(\S+)H', svg).group(1))
    height = float(re.search(r' height="([\d.]+)"', svg).group(1))
    assert all(bottom < float(y) < height for y, _ in keys), (bottom, keys, height)
    assert "\u2026" not in svg and max(len(text) for _, text in keys) <= 50


def test_CurvesOfOneDetectorHaveDifferentNames(tool):
    spectra = "".join('<Spectrum radDetectorInformationReference="D"><ChannelData>'
                      + "1 " * count + "</ChannelData></Spectrum>" for count in [2, 2, 3, 3] * 3)
    tool.write("m.n42", "<RadInstrumentData><RadMeasurement><MeasurementClassCode>F"
               "</MeasurementClassCode>" + spectra + "</RadMeasurement></RadInstrumentData>")
    svg = picture(tool, "m.n42")
    assert re.findall(r'class="key"[^>]*>([^<]*)<', svg) == ["F D", "F D (2)"]


def test_RatesAreDrawnWhereTimesAreKnown(tool):
    tool.write("e.n42", EXAMPLE)
    svg = picture(tool, "--rate", "e.n42")
    assert ">Counts per second and channel</text>" in svg and "577.8k counts, 160.6/s" in svg
    page = picture(tool, "--rate", "-f", "html", "e.n42")
    assert '"rates":true' in page and '"live":3597.69' in page
    tool.write("s.n42", SMALL)
    for form in ["svg", "html"]:
        result = tool.run(["n42", "plot", "--rate", "-f", form, "s.n42"])
        assert result.code == 4 and "1.1 Background as rates: it has no live time" in result.err


def test_TextsOfAFileCannotBreakOut(tool):
    evil = '<Measurement><Spectrum Detector="&lt;/script&gt;&lt;b a=&quot;1&quot;&gt;&lt;!--">' \
        "<ChannelData>1 2</ChannelData></Spectrum></Measurement>"
    tool.write("e.n42", "<N42InstrumentData>" + evil + "</N42InstrumentData>")
    page = picture(tool, "-f", "html", "e.n42")
    assert page.count("</script>") == 2 and "<!--" not in page
    tool.write("e.svg", picture(tool, "e.n42"))
    assert tool.run(["show", "e.svg"]).code == 0


def test_DrawsHugeAndOddSpectra(tool):
    odd = "".join(f"<Measurement><Spectrum><ChannelData>{text}</ChannelData></Spectrum>"
                  "</Measurement>" for text in ["0", "-5 -1", "1e300 1e-300", "0.001 0.002", "7"])
    tool.write("o.n42", "<N42InstrumentData>" + odd + "</N42InstrumentData>")
    for args in [[], ["--linear"]]:
        svg = picture(tool, *args, "o.n42")
        assert "nan" not in svg and "inf" not in svg
    long = "<Measurement><Spectrum><ChannelData>" + "3 0 1 " * 20000 + \
        "</ChannelData></Spectrum></Measurement>"
    tool.write("l.n42", "<N42InstrumentData>" + long + "</N42InstrumentData>")
    assert len(picture(tool, "l.n42")) < 100000


def test_PageNeedsNothingFromOutside(tool):
    tool.write("e.n42", EXAMPLE)
    assert not re.search(r'(src|href)="(?!data:,")', picture(tool, "-f", "html", "e.n42"))


def test_ExampleIsWhatItsGeneratorWrites(tool):
    written = subprocess.run(["python3", str(ROOT / "tools" / "dev" / "make_spectrum.py")],
                             capture_output=True, check=True)
    assert written.stdout.decode() == EXAMPLE
    info = json.loads(tool.run(["n42", "info", "-f", "json", "-"], stdin=EXAMPLE).out)
    assert info[0]["spectra"] == 4 and info[0]["gross"] == 2
