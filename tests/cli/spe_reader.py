"""Reads spectra in the ASCII form SPE, as docs/spe.md tells it.

It was written from that page by somebody who had not seen what writes the files, so that both
sides of an exchange are told from the form and not from each other.
"""
import datetime
from dataclasses import dataclass, field


class SpeError(Exception):
    """What is wrong with a file, and in which block."""


@dataclass
class Spectrum:
    name: str = ""
    remarks: list = field(default_factory=list)
    start: datetime.datetime | None = None  # without a zone
    live: float | None = None  # seconds
    real: float | None = None  # seconds
    first: int = 0  # the number of the first channel
    counts: list = field(default_factory=list)
    regions: list = field(default_factory=list)  # (first, last) channel
    line: tuple | None = None  # offset and gain
    coefficients: list = field(default_factory=list)  # by ascending powers
    unit: str = ""

    def energy(self, channel):
        """Of a channel by its number; None without a calibration."""
        if self.coefficients:
            return sum(c * channel**power for power, c in enumerate(self.coefficients))
        return None if self.line is None else self.line[0] + self.line[1] * channel


def blocks_of(text):
    """The lines of each block by its keyword, which may occur once."""
    blocks, lines = {}, None
    for line in text.replace("\r\n", "\n").removesuffix("\n").split("\n"):
        if line.startswith("$") and line.endswith(":"):
            if line in blocks:
                raise SpeError(f"{line} occurs twice")
            lines = blocks[line] = []
        elif lines is None:
            raise SpeError("text before the first keyword")
        else:
            lines.append(line)
    return blocks


def numbers(block, line, kind, count=None):
    try:
        values = [kind(word) for word in line.split()]
    except ValueError:
        raise SpeError(f"{block}: no numbers: {line!r}") from None
    if count is not None and len(values) != count:
        raise SpeError(f"{block}: {count} numbers wanted: {line!r}")
    return values


def exactly(block, lines, count):
    if len(lines) != count:
        raise SpeError(f"{block}: {count} lines wanted, {len(lines)} found")
    return lines


def read_data(spectrum, lines):
    if not lines:
        raise SpeError("$DATA: is empty")
    first, last = numbers("$DATA", lines[0], int, 2)
    rows = exactly("$DATA", lines[1:], last - first + 1)
    spectrum.first = first
    spectrum.counts = [numbers("$DATA", row, float, 1)[0] for row in rows]


def read_regions(spectrum, lines):
    count = numbers("$ROI", lines[0], int, 1)[0] if lines else 0
    rows = exactly("$ROI", lines[1:], count)
    spectrum.regions = [tuple(numbers("$ROI", row, int, 2)) for row in rows]


def read_calibration(spectrum, lines):
    first, second = exactly("$MCA_CAL", lines, 2)
    count = numbers("$MCA_CAL", first, int, 1)[0]
    words = second.split()
    spectrum.coefficients = numbers("$MCA_CAL", " ".join(words[:count]), float, count)
    spectrum.unit = " ".join(words[count:])


def read_spe(text):
    blocks = blocks_of(text)
    if "$DATA:" not in blocks:
        raise SpeError("no $DATA:")
    spectrum = Spectrum(remarks=blocks.get("$SPEC_REM:", []))
    if "$SPEC_ID:" in blocks:
        spectrum.name = exactly("$SPEC_ID", blocks["$SPEC_ID:"], 1)[0]
    if "$DATE_MEA:" in blocks:
        line = exactly("$DATE_MEA", blocks["$DATE_MEA:"], 1)[0]
        spectrum.start = datetime.datetime.strptime(line, "%m/%d/%Y %H:%M:%S")
    if "$MEAS_TIM:" in blocks:
        line = exactly("$MEAS_TIM", blocks["$MEAS_TIM:"], 1)[0]
        spectrum.live, spectrum.real = numbers("$MEAS_TIM", line, float, 2)
    if "$ENER_FIT:" in blocks:
        line = exactly("$ENER_FIT", blocks["$ENER_FIT:"], 1)[0]
        spectrum.line = tuple(numbers("$ENER_FIT", line, float, 2))
    read_data(spectrum, blocks["$DATA:"])
    if "$ROI:" in blocks:
        read_regions(spectrum, blocks["$ROI:"])
    if "$MCA_CAL:" in blocks:
        read_calibration(spectrum, blocks["$MCA_CAL:"])
    return spectrum
