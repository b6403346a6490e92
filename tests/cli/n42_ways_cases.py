"""The same numbers whichever way they come out: the library's import, the exports read back, the data
of the pages, the table, and Python (the module of this build, which CMakeLists.txt puts in the path)."""
import csv
import io
import json
import pathlib

from spe_reader import read_spe
from uxtree import n42

LONG = [(i * 7919) % 1013 if i % 5 else 0 for i in range(300)]


def counted(counts):
    """A list with counted zeroes."""
    out, zeros = [], 0
    for count in [*counts, None]:
        if count == 0:
            zeros += 1
            continue
        out += [0, zeros] if zeros else []
        out += [] if count is None else [count]
        zeros = 0
    return " ".join(map(str, out))


def polynomial(coefficients, channels):
    """As an import has it: channels count from 1."""
    return [sum(c * x**power for power, c in enumerate(coefficients))
            for x in range(1, channels + 1)]


NEW = f"""<RadInstrumentData>
<EnergyCalibration id="p"><CoefficientValues>-3.5 2.75 0.0078125</CoefficientValues>
</EnergyCalibration>
<EnergyCalibration id="b"><EnergyBoundaryValues>0.5 1.5 4 9</EnergyBoundaryValues>
</EnergyCalibration>
<RadMeasurement><MeasurementClassCode>Background</MeasurementClassCode>
<StartDateTime>2026-01-02T03:04:05Z</StartDateTime><RealTimeDuration>PT1M1S</RealTimeDuration>
<Spectrum id="a" radDetectorInformationReference="A" energyCalibrationReference="p">
<LiveTimeDuration>PT60.25S</LiveTimeDuration>
<ChannelData compressionCode="CountedZeroes">{counted(LONG)}</ChannelData></Spectrum>
<Spectrum id="b" radDetectorInformationReference="B" energyCalibrationReference="b">
<LiveTimeDuration>PT59S</LiveTimeDuration><ChannelData>1.25 0 1e-3</ChannelData></Spectrum>
<GrossCounts id="g" radDetectorInformationReference="N"><CountData>17</CountData></GrossCounts>
</RadMeasurement></RadInstrumentData>
"""
OLD = f"""<N42InstrumentData><Measurement><DetectorData>
<StartTime>2026-01-02T03:04:05</StartTime><SampleRealTime>PT3S</SampleRealTime>
<DetectorMeasurement Detector="A"><SpectrumMeasurement><Spectrum>
<LiveTime>PT2.5S</LiveTime><SourceType>Item</SourceType>
<Calibration Type="Energy" EnergyUnits="MeV"><Equation Model="Polynomial">
<Coefficients>0.125 0.5</Coefficients></Equation></Calibration>
<ChannelData Compression="CountedZeroes">{counted(LONG[:50])}</ChannelData>
</Spectrum></SpectrumMeasurement></DetectorMeasurement>
<DetectorMeasurement Detector="B"><SpectrumMeasurement><Spectrum>
<ChannelData>123456789012 0 4</ChannelData>
</Spectrum></SpectrumMeasurement></DetectorMeasurement>
</DetectorData></Measurement></N42InstrumentData>
"""

# What the files hold: counts, energies, live and real seconds, detector.
EXPECTED = {
    "new.n42": [(LONG, polynomial([-3.5, 2.75, 0.0078125], 300), 60.25, 61, "A"),
                ([1.25, 0, 0.001], [0.5, 1.5, 4, 9], 59, 61, "B")],
    "old.n42": [(LONG[:50], polynomial([0.125, 0.5], 50), 2.5, 3, "A"),
                ([123456789012, 0, 4], None, None, 3, "B")],
}


def run(tool, *args):
    result = tool.run(["n42", *args])
    assert result.code == 0, result.err
    return result.out


def by_import(path):
    tree, _ = n42.import_tree(path)
    out = []
    for spectrum in tree.select("//RadMeasurement/Spectrum"):
        energies = [node.vector.tolist() for node in spectrum if node.tag.startswith("Energy")]
        out.append((spectrum["ChannelData_0"].vector.tolist(), *(energies or [None])))
    return out


def by_python(path):
    return [(s.counts.tolist(), None if s.energy is None else s.energy.tolist(), s.live, s.real,
             s.detector) for s in n42.read(path).spectra]


def by_json(tool, name):
    return [(s["counts"], s["energies"], s["liveSeconds"], s["realSeconds"], s["detector"])
            for s in json.loads(run(tool, "export", "-f", "json", name))]


def by_csv(tool, name):
    """By the name of the spectrum; energies stand in front of those that have them."""
    rows = list(csv.reader(io.StringIO(run(tool, "export", name))))
    energies, out = None, {}
    for place, title in enumerate(rows[0][1:], 1):
        values = [float(row[place]) for row in rows[1:] if row[place]]
        if title.startswith("energy"):
            energies = values
        else:
            out[title] = (values, energies)
    return out


def by_spe(tool, name):
    run(tool, "export", "-f", "spe", "-o", name + ".spe/", name)
    spectra = [read_spe(path.read_bytes().decode()) for path in tool.path(name + ".spe").iterdir()]
    return {spectrum.name: spectrum for spectrum in spectra}


def page_data(page):
    start = page.index('{"title":')
    return json.JSONDecoder().raw_decode(page[start:].replace("<\\/", "</"))[0]


def pages(tool, name):
    yield page_data(run(tool, "plot", "-f", "html", name))
    assert tool.run(["view", "--no-open", name, "-o", "view.html"]).code == 0
    yield page_data(tool.path("view.html").read_text())


def near(one, other, relative):
    return len(one) == len(other) and all(
        abs(a - b) <= relative * max(abs(a), abs(b)) for a, b in zip(one, other))


def test_all_ways_give_the_same_numbers(tool):
    tool.write("new.n42", NEW)
    tool.write("old.n42", OLD)
    for name, expected in EXPECTED.items():
        path = str(tool.path(name))
        assert by_python(path) == expected, name
        assert by_json(tool, name) == expected, name
        assert by_import(path) == [spectrum[:2] for spectrum in expected], name
        names = [spectrum.name for spectrum in n42.read(path).spectra]
        columns, spe = by_csv(tool, name), by_spe(tool, name)
        assert sorted(columns) == sorted(spe) == sorted(names), name
        for title, (counts, energies, live, real, _) in zip(names, expected):
            # A column of energies ends with the channels: boundaries have one value more.
            shown = energies and energies[:len(counts)]
            assert columns[title] == (counts, shown), title
            assert spe[title].counts == counts, title
            assert live is None or (spe[title].live, spe[title].real) == (live, real), title
            if spe[title].coefficients:
                by_coefficients = [spe[title].energy(x + 1) for x in range(len(counts))]
                assert near(by_coefficients, energies, 1e-15), title
        table = [row for row in json.loads(run(tool, "list", "-f", "json", name))
                 if row["spectrum"] is not None]
        assert [(row["counts"], row["live s"], row["real s"], row["detector"]) for row in table] \
            == [(sum(counts), live, real, detector)
                for counts, _, live, real, detector in expected], name
        for data in pages(tool, name):
            assert [curve["y"] for curve in data["curves"]] == [each[0] for each in expected], name
            assert [curve["live"] for curve in data["curves"]] == [each[2] for each in expected]
            # A page draws energies when all curves have them, with as many digits as pixels need.
            for curve, (counts, energies, *_) in zip(data["curves"], expected):
                axis = data["axes"][curve["axis"]][:len(counts)]
                if data["energies"]:
                    assert near(axis, energies[:len(counts)], 1e-6), name
                else:
                    assert axis == list(range(1, len(counts) + 1)), name


def test_gross_counts_agree(tool):
    tool.write("new.n42", NEW)
    path = str(tool.path("new.n42"))
    tree, _ = n42.import_tree(path)
    imported = [node.as_float() for node in tree["n42/RadMeasurements/GrossCounts"]]
    listed = [row["gross"] for row in json.loads(run(tool, "list", "-f", "json", "new.n42"))
              if row["spectrum"] is None]
    told = json.loads(run(tool, "info", "-f", "json", "new.n42"))[0]["gross counts"]
    assert imported == listed == [each.count for each in n42.read(path).gross_counts] == [17]
    assert told == 17


def test_the_example_agrees_with_its_exports(tool):
    example = pathlib.Path(__file__).resolve().parents[2] / "examples" / "spectrum.n42"
    assert by_json(tool, str(example)) == by_python(str(example))
    assert by_import(str(example)) == [each[:2] for each in by_python(str(example))]


CASES = []
