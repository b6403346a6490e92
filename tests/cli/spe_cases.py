"""Spectra written as SPE, read back by a reader that knows the form alone."""
import datetime
import json
import pathlib

from harness import case
from spe_reader import SpeError, read_spe

HAND_MADE = pathlib.Path(__file__).parent / "spe"
CHANNELS = [(i * 7919) % 1013 for i in range(1024)]
N42 = f"""<RadInstrumentData>
<EnergyCalibration id="q"><CoefficientValues>-3.25 2.96875 1.5e-05</CoefficientValues>
</EnergyCalibration>
<EnergyCalibration id="s"><CoefficientValues>0.5 3</CoefficientValues></EnergyCalibration>
<RadMeasurement><MeasurementClassCode>Foreground</MeasurementClassCode>
<StartDateTime>2026-03-09T14:05:59-05:00</StartDateTime><RealTimeDuration>PT10M</RealTimeDuration>
<Spectrum id="long" radDetectorInformationReference="NaI" energyCalibrationReference="q">
<LiveTimeDuration>PT9M58.25S</LiveTimeDuration>
<ChannelData>{" ".join(map(str, CHANNELS))}</ChannelData></Spectrum>
<Spectrum id="short" radDetectorInformationReference="HPGe" energyCalibrationReference="s">
<LiveTimeDuration>PT300S</LiveTimeDuration>
<ChannelData compressionCode="CountedZeroes">5 0 3 2.5 0 1</ChannelData></Spectrum>
</RadMeasurement><RadDetectorInformation id="NaI"/><RadDetectorInformation id="HPGe"/>
</RadInstrumentData>
"""

CASES = [
    case("HoldsOneSpectrum", ["n42", "export", "-f", "spe", "s.n42"], files={"s.n42": N42}, code=2,
         err=["s.n42: SPE holds one spectrum, and there are several\n"]),
]


def written(tool, detector):
    result = tool.run(["n42", "export", "-f", "spe", "-d", detector, "s.n42"], files={"s.n42": N42})
    assert result.code == 0, result.err
    return read_spe(result.out), result.out


def test_reads_files_that_were_written_by_hand(tool):
    plain = read_spe((HAND_MADE / "plain.spe").read_bytes().decode())
    assert plain.counts == [12, 40, 163, 75, 31, 9, 2, 0]
    assert (plain.live, plain.real, plain.regions) == (598.25, 600, [(1, 4)])
    assert plain.start == datetime.datetime(2026, 3, 9, 14, 5, 59)
    assert plain.line == (1.5, 3) and plain.energy(2) == 7.5 and plain.unit == "keV"
    sparse = read_spe((HAND_MADE / "sparse.spe").read_bytes().decode())
    assert (sparse.name, sparse.counts) == ("Nothing but counts", [0, 1, 0, 7, 3])
    assert sparse.start is None and sparse.energy(1) is None
    curved = read_spe((HAND_MADE / "curved.spe").read_bytes().decode())
    assert (curved.first, curved.counts) == (10, [0.25, 1.5, -2, 1000])
    assert len(curved.remarks) == 3 and curved.unit == "MeV"
    assert curved.coefficients == [0.002, 0.0004, 1e-09]


def test_refuses_what_is_none(tool):
    for text in ("", "words\n$DATA:\n0 0\n1\n", "$SPEC_ID:\nx\n", "$DATA:\n0 1\n1\n",
                 "$DATA:\n0 0\nx\n", "$DATA:\n0 0\n1\n$DATA:\n0 0\n1\n"):
        try:
            read_spe(text)
        except SpeError:
            continue
        raise AssertionError(f"read without a word: {text!r}")


def test_gives_back_what_the_spectrum_file_holds(tool):
    spectrum, text = written(tool, "NaI")
    assert spectrum.counts == CHANNELS and spectrum.first == 0
    assert (spectrum.live, spectrum.real) == (598.25, 600)
    assert spectrum.start == datetime.datetime(2026, 3, 9, 14, 5, 59)
    assert spectrum.coefficients == [-3.25, 2.96875, 1.5e-05] and spectrum.unit == "keV"
    assert spectrum.line is None and spectrum.regions == []
    assert "Time zone of the date: -05:00" in spectrum.remarks
    assert spectrum.name == "1.0 Foreground NaI"
    assert text.count("\r\n") == text.count("\n")


def test_gives_back_a_straight_line_and_fractions(tool):
    spectrum, _ = written(tool, "HPGe")
    assert spectrum.counts == [5, 0, 0, 0, 2.5, 0]
    assert spectrum.line == (0.5, 3) and spectrum.coefficients == [0.5, 3, 0]
    assert [spectrum.energy(x) for x in (0, 1, 5)] == [0.5, 3.5, 15.5]


def test_agrees_with_the_export_as_json(tool):
    for detector in ("NaI", "HPGe"):
        spectrum, _ = written(tool, detector)
        result = tool.run(["n42", "export", "-f", "json", "-d", detector, "s.n42"])
        exported = json.loads(result.out)[0]
        assert exported["counts"] == spectrum.counts, exported
