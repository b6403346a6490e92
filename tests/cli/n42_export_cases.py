"""uxtree n42 export with sums, backgrounds, rates and other channels; sizes of imports."""
from harness import case

TWO = """<RadInstrumentData>
<EnergyCalibration id="E"><CoefficientValues>1 2</CoefficientValues></EnergyCalibration>
<EnergyCalibration id="W"><CoefficientValues>1 4</CoefficientValues></EnergyCalibration>
<RadMeasurement><MeasurementClassCode>Background</MeasurementClassCode>
<RealTimeDuration>PT4S</RealTimeDuration>
<Spectrum radDetectorInformationReference="A" energyCalibrationReference="E">
<LiveTimeDuration>PT4S</LiveTimeDuration><ChannelData>4 4 8 8</ChannelData></Spectrum>
<Spectrum radDetectorInformationReference="B" energyCalibrationReference="W">
<LiveTimeDuration>PT2S</LiveTimeDuration><ChannelData>1 0</ChannelData></Spectrum>
</RadMeasurement>
<RadMeasurement><MeasurementClassCode>Foreground</MeasurementClassCode>
<StartDateTime>2026-11-22T01:02:03.5+01:00</StartDateTime>
<RealTimeDuration>PT3S</RealTimeDuration>
<Spectrum radDetectorInformationReference="A" energyCalibrationReference="E">
<LiveTimeDuration>PT2S</LiveTimeDuration><ChannelData>10 20 30 40</ChannelData></Spectrum>
<Spectrum radDetectorInformationReference="B" energyCalibrationReference="W">
<LiveTimeDuration>PT2S</LiveTimeDuration><ChannelData>3 3</ChannelData></Spectrum>
</RadMeasurement>
<RadDetectorInformation id="A"/><RadDetectorInformation id="B"/></RadInstrumentData>
"""
TIMELESS = """<N42InstrumentData><Measurement><Spectrum Detector="A"><ChannelData>1 2</ChannelData>
</Spectrum></Measurement></N42InstrumentData>
"""
CLASSES = "<N42InstrumentData><Measurement>" + "".join(
    f"<Spectrum>{kind}<ChannelData>{counts}</ChannelData></Spectrum>" for kind, counts in (
        ("<SourceType>Item</SourceType>", "1 2"), ("", "10 20"),
        ("<SourceType>Background</SourceType>", "100 200"),
        ("<SourceType>Item</SourceType>", "1000 2000"))) + "</Measurement></N42InstrumentData>"
FILES = {"two.n42": TWO, "t.n42": TIMELESS, "classes.n42": CLASSES, "d/a.n42": TWO, "d/b.n42": TWO,
         "none.n42": "<RadInstrumentData/>"}
SPE = """$SPEC_ID:
2.0 Foreground A
$SPEC_REM:
File: two.n42
Detector: A
Class: Foreground
Start: 2026-11-22T01:02:03.5+01:00
Time zone of the date: +01:00
$DATE_MEA:
11/22/2026 01:02:03
$MEAS_TIM:
2 3
$DATA:
0 3
10
20
30
40
$ROI:
0
$ENER_FIT:
1 2
$MCA_CAL:
3
1 2 0 keV
"""


def export(name, args, out=None, **how):
    return case(name, ["n42", "export", *args], out=out, files=FILES, **how)


CASES = [
    export("TakesChosenSpectra", ["-s", "2.0", "two.n42"], "channel,energy (keV) E,"
           "2.0 Foreground A\n1,3,10\n2,5,20\n3,7,30\n4,9,40\n"),
    export("TakesTheLowerEdges", ["-s", "2.0", "--energy", "lower", "two.n42"],
           "channel,lower edge (keV) E,2.0 Foreground A\n1,1,10\n2,3,20\n3,5,30\n4,7,40\n"),
    export("TakesADetectorWithoutEnergies", ["-d", "B", "--energy", "none", "two.n42"],
           "channel,1.1 Background B,2.1 Foreground B\n1,1,3\n2,0,3\n"),
    export("WritesRates", ["-s", "2.0", "--rate", "--energy", "none", "two.n42"],
           "channel,2.0 Foreground A (1/s)\n1,5\n2,10\n3,15\n4,20\n"),
    export("RefusesRatesWithoutLiveTime", ["--rate", "t.n42", "-o", "x.csv"], code=4,
           err=["t.n42: 1.0 A as rates: it has no live time"], after={"x.csv": None}),
    export("RefusesABackgroundWithoutLiveTime", ["--background", "t.n42:1.0", "two.n42"], code=4,
           err=["less the background 1.0 A: it has no live time"]),
    export("AddsUp", ["-s", "1.0", "-s", "2.0", "--sum", "--energy", "none", "two.n42"],
           "channel,sum of 2 spectra\n1,14\n2,24\n3,38\n4,48\n",
           err=["the sum is of spectra of different classes: Background, Foreground\n"]),
    export("AddsUpAllClassesAndNamesEachOnce", ["--sum", "classes.n42"],
           "channel,sum of 4 spectra\n1,1111\n2,2222\n",
           err=["the sum is of spectra of different classes: Background, Item, no class\n"]),
    export("AddsUpOneClassInSilence", ["-s", "1.0", "-s", "1.3", "--sum", "classes.n42"],
           "channel,sum of 2 spectra\n1,1001\n2,2002\n"),
    export("AddsUpNothingWithAndWithoutEnergies", ["--sum", "two.n42", "classes.n42", "-o", "x.csv"],
           code=4, err=["classes.n42: 1.0 Item in one sum with 1.0 Background A: one has energies and "
                        "the other none"], after={"x.csv": None}),
    export("AddsUpByOverlapAndSaysSo", ["-s", "2", "--sum", "--energy", "lower", "two.n42"],
           "channel,lower edge (keV) E,sum of 2 spectra\n1,1,11.5\n2,3,21.5\n3,5,31.5\n4,7,41.5\n",
           err=["1 spectrum has other channels than 2.0 Foreground A: counts are divided by "
                "overlap, and 0 lie outside\n"]),
    export("TakesTheBackgroundOfTheSameDetector", ["--background", "1", "--energy", "none",
                                                   "two.n42"],
           "channel,2.0 Foreground A,2.1 Foreground B\n1,8,2\n2,18,3\n3,26,\n4,36,\n"),
    export("TakesOneBackgroundForAll", ["--background", "two.n42:1.0", "-d", "B", "--energy",
                                        "none", "-s", "2", "two.n42"],
           "channel,2.1 Foreground B\n1,-1\n2,-5\n",
           err=["1 spectrum has other channels than the background: counts are divided by overl"]),
    export("KnowsTheFileOfTheBackgroundByAnyName",
           ["--background", "./two.n42:1", "-d", "A", "--energy", "none", "two.n42"],
           "channel,2.0 Foreground A\n1,8\n2,18\n3,26\n4,36\n"),
    export("RefusesAnAmbiguousBackground", ["--background", "1", "d/a.n42", "d/b.n42"], code=2,
           err=["which file is it in?"]),
    export("RefusesAnUnknownBackground", ["--background", "3", "two.n42"], code=2,
           err=['no spectrum "3"']),
    export("SaysThatAChosenSpectrumIsOfAnotherDetector", ["-s", "2.0", "-d", "B", "two.n42"], "",
           code=1, err=["no spectrum was chosen"]),
    export("JoinsChannels", ["-s", "2.0", "--rebin", "3", "--energy", "lower", "two.n42"],
           "channel,lower edge (keV) E,2.0 Foreground A\n1,1,60\n2,7,40\n",
           err=["1 spectrum: the last channel joins fewer than 3"]),
    export("RefusesToJoinNothing", ["--rebin", "0", "two.n42"], code=2, err=["--rebin"]),
    export("CommentsOnTheColumns", ["-s", "2.0", "--comments", "--energy", "lower", "two.n42"],
           "# energies: lower edges of the channels by the standard: channel 1 has c0\n"
           "# values: counts per channel\n"
           "# 2.0 Foreground A: start 2026-11-22T01:02:03.5+01:00, live time 2 s, real time 3 s, "
           "energies 1 2\n"
           "channel,lower edge (keV) E,2.0 Foreground A\n1,1,10\n2,3,20\n3,5,30\n4,7,40\n"),
    export("NamesTheFileOfEachColumn", ["-s", "2.1", "d"],
           "channel,energy (keV) W,d/a.n42: 2.1 Foreground B,d/b.n42: 2.1 Foreground B\n"
           "1,5,3,3\n2,9,3,3\n"),
    export("AddsUpOverFiles", ["-s", "2.0", "--sum", "--energy", "none", "d"],
           "channel,sum of 2 spectra\n1,20\n2,40\n3,60\n4,80\n"),
    export("WritesRatesAndEdgesAsObjects",
           ["-f", "json", "-s", "2.1", "--rate", "--energy", "lower", "two.n42"],
           json=[{"file": "two.n42", "name": "2.1 Foreground B", "measurement": 2, "spectrum": 1,
                  "id": None, "detector": "B", "kind": "Foreground",
                  "start": "2026-11-22T01:02:03.5+01:00", "realTime": "PT3S", "liveTime": "PT2S",
                  "realSeconds": 3, "liveSeconds": 2, "unit": "keV", "calibration": "1 4",
                  "edges": [1, 5, 9], "rates": [1.5, 1.5]}]),
    export("RefusesAnUnknownSpectrum", ["-s", "7", "two.n42", "-o", "x.csv"], code=2,
           err=['two.n42: no spectrum "7"'], after={"x.csv": None}),
    export("RefusesAnUnknownDetector", ["-d", "C", "two.n42"], code=2,
           err=['two.n42: no detector "C"']),
    export("StopsAtAFileThatIsNone", ["two.n42", "x.n42", "-o", "x.csv"], code=3,
           err=["x.n42: No such file"], after={"x.csv": None}),
    export("PassesOverFilesWithoutSpectra", ["-s", "2.1", "none.n42", "two.n42"],
           contains=["two.n42: 2.1"], err=["none.n42 has no spectra", "no measurement"]),
    export("WritesSpe", ["-f", "spe", "-s", "2.0", "two.n42"],
           out=SPE.replace("\n", "\r\n")),
    export("RefusesSeveralSpectraInOneSpe", ["-f", "spe", "two.n42", "-o", "x.spe"], code=2,
           err=["SPE holds one spectrum", "-o FOLDER/"], after={"x.spe": None}),
    export("RefusesRatesInSpe", ["-f", "spe", "--rate", "-s", "2.0", "two.n42"], code=2,
           err=["SPE holds counts"]),
    export("SaysWhatSpeCannotHold", ["-f", "spe", "t.n42"],
           "$SPEC_ID:\r\n1.0 A\r\n$SPEC_REM:\r\nFile: t.n42\r\nDetector: A\r\n$DATA:\r\n0 1\r\n"
           "1\r\n2\r\n$ROI:\r\n0\r\n", err=["no start is known", "neither is written",
                                            "no energies"]),
]


def test_SafeCsvLeavesNumbersBelowZeroAlone(tool):
    tool.write("below.n42", TWO.replace(">1 2<", ">-3 2<"))
    safe = tool.run(["n42", "export", "--csv-safe", "below.n42"])
    assert safe.code == 0
    assert ",-1," in safe.out and '"' not in safe.out, safe.out
    assert safe.out == tool.run(["n42", "export", "below.n42"]).out


def test_WritesAFileForEachSpectrum(tool):
    result = tool.run(["n42", "export", "-f", "spe", "-s", "2", "-o", "out/", "d"], files=FILES)
    assert result.code == 0, result.err
    names = sorted(path.name for path in tool.path("out").iterdir())
    assert names == ["a_2.0.spe", "a_2.1.spe", "b_2.0.spe", "b_2.1.spe"]
    text = tool.path("out/b_2.0.spe").read_text()
    assert text == SPE.replace("two.n42", "d/b.n42")


def test_SpeFilesOfOneNameDoNotReplaceEachOther(tool):
    tool.write("d/e/a.n42", TWO)
    result = tool.run(["n42", "export", "-f", "spe", "-s", "2.0", "-o", "out/", "d"], files=FILES)
    assert result.code == 0, result.err
    names = sorted(path.name for path in tool.path("out").iterdir())
    assert names == ["a_2.0-2.spe", "a_2.0.spe", "b_2.0.spe"]


# 2 MB of counts, the energies of which take 130 MB.
def portal():
    spectrum = '<Spectrum energyCalibrationReference="E"><ChannelData ' \
        'compressionCode="CountedZeroes">0 16000 1</ChannelData></Spectrum>'
    return '<RadInstrumentData><EnergyCalibration id="E"><CoefficientValues>0.1 0.37123456789' \
        "</CoefficientValues></EnergyCalibration><RadMeasurement><MeasurementClassCode>F" \
        "</MeasurementClassCode>" + spectrum * 460 + "</RadMeasurement></RadInstrumentData>"


def test_ImportsSayTheSizeOfLargeTreesFirst(tool):
    tool.write("p.n42", portal())
    refused = tool.run(["n42", "import", "p.n42", "-o", "t.xml"])
    assert refused.code == 4 and not tool.path("t.xml").exists()
    assert "p.n42: the tree takes about 1" in refused.err and "--yes writes it" in refused.err
    assert "(--no-energy) it takes about 15 MB" in refused.err, refused.err
    small = tool.run(["n42", "import", "--no-energy", "p.n42", "-o", "t.xml"])
    assert (small.code, small.err) == (0, "")
    assert 14.5e6 < tool.path("t.xml").stat().st_size < 15.5e6
    large = tool.run(["n42", "import", "--yes", "p.n42", "-o", "t.xml"])
    assert large.code == 0 and "the tree takes about " in large.err
    told = float(large.err.split("about ")[1].split()[0]) * 1e6
    assert abs(tool.path("t.xml").stat().st_size - told) < 0.05 * told


def test_FractionsStayInSpeAndAreNamed(tool):
    result = tool.run(["n42", "export", "-f", "spe", "--background", "1.1", "-s", "2.0",
                       "two.n42"], files=FILES)
    assert result.code == 0 and "counts with fractions, which many" in result.err
    assert "\n9.5\r\n19.5\r\n30\r\n40\r\n" in result.out, result.out
