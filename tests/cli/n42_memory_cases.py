"""Exports of files which take more memory than there is, as numbers or as texts.

Sanitizers leave no room for such a limit, so CMakeLists.txt tries these with what is released alone.
"""
import resource
import subprocess

SPECTRA, CHANNELS = 2500, 8192  # 164 MB as numbers
LIMIT = 150 << 20  # of addresses, of which the libraries take 20 MB


def count_at(spectrum, channel):
    """Each spectrum has one channel that is not 0."""
    return spectrum + 1 if channel == spectrum % 1000 else 0


def export(tool, *args):
    export_file(tool, "".join(
        '<Spectrum><ChannelData compressionCode="CountedZeroes">'
        + (f"0 {i % 1000} " if i % 1000 else "") + f"{i + 1} 0 {CHANNELS - 1 - i % 1000}"
        + "</ChannelData></Spectrum>" for i in range(SPECTRA)), LIMIT, *args)


def export_file(tool, spectra, limit, *args):
    tool.write("s.n42", "<RadInstrumentData><RadMeasurement><MeasurementClassCode>Foreground"
               f"</MeasurementClassCode>{spectra}</RadMeasurement></RadInstrumentData>")
    done = subprocess.run(
        [tool.program, "n42", "export", *args, "s.n42"], cwd=tool.folder, capture_output=True,
        timeout=120, env=tool.environment({}),
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
    assert done.returncode == 0, done.stderr.decode()


def test_columns_take_no_memory_of_the_size_of_the_file(tool):
    export(tool, "-o", "s.csv")
    with open(tool.path("s.csv")) as lines:
        for number, line in enumerate(lines, -1):
            if number in (0, 499, 999, 1000, CHANNELS - 1):
                channel, *counts = map(int, line.split(","))
                assert channel == number + 1
                assert counts == [count_at(i, number) for i in range(SPECTRA)], number
    assert number == CHANNELS - 1
    assert not list(tool.folder.glob("uxtree-*")), "a temporary file is left"


def test_sums_take_no_memory_of_the_size_of_the_file(tool):
    export(tool, "--sum", "-o", "sum.csv")
    rows = [line.split(",") for line in tool.path("sum.csv").read_text().splitlines()[1:]]
    assert [int(row[1]) for row in rows[:1001]] \
        == [sum(count_at(i, channel) for i in range(SPECTRA)) for channel in range(1001)]


def test_texts_take_no_memory_of_the_size_of_the_file(tool):
    counts = [10_000 + i % 90_000 for i in range(CHANNELS)]
    text = " ".join(map(str, counts))
    spectra, limit = 600, 56 << 20  # 29 MB of text
    channels = "<Spectrum><ChannelData>" + text + "</ChannelData></Spectrum>"
    export_file(tool, channels * spectra, limit, "--sum", "-o", "sum.csv")
    rows = [line.split(",") for line in tool.path("sum.csv").read_text().splitlines()[1:]]
    assert [int(row[1]) for row in rows] == [spectra * count for count in counts]
    assert not list(tool.folder.glob("uxtree-*")), "a temporary file is left"


CASES = []
