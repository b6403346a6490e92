"""Spectrum files (ANSI N42.42): spectra with numpy arrays, times in seconds and as datetime."""

import dataclasses
import datetime
import functools
import re

import numpy

from . import _core
from ._core import raw
from .tree import check


def parse_start(text):
    """A start time as datetime; None for a text that is none. Without a zone it has none."""
    match = re.fullmatch(r"(.+?)(\.\d+)?(Z|[+-]\d\d:?\d\d)?", text.strip())
    if not match:
        return None
    try:
        start = datetime.datetime.fromisoformat(match[1])
    except ValueError:
        return None
    if match[2]:
        start = start.replace(microsecond=int(match[2][1:7].ljust(6, "0")))
    if match[3] == "Z":
        return start.replace(tzinfo=datetime.timezone.utc)
    if match[3]:
        digits = match[3].replace(":", "")
        offset = datetime.timedelta(hours=int(digits[1:3]), minutes=int(digits[3:5]))
        zone = datetime.timezone(-offset if digits[0] == "-" else offset)
        return start.replace(tzinfo=zone)
    return start


class _WithStart:
    @property
    def start(self):
        """The start as datetime; None when the file tells none, or in a form that is no ISO time
        (start_text has it as written)."""
        return parse_start(self.start_text)


@dataclasses.dataclass(eq=False)
class Spectrum(_WithStart):
    """One list of channel counts with what the file tells about it; None where it tells nothing."""

    name: str
    measurement: int
    id: str
    detector: str
    kind: str
    start_text: str
    real: float | None  # seconds
    live: float | None  # seconds
    calibration: dict | None  # id, unit, text, coefficients, boundaries
    position: tuple | None  # latitude, longitude in degrees
    dose: tuple | None  # value, unit
    gross: float | None  # gross counts of the detector in the same measurement
    counts: numpy.ndarray

    @functools.cached_property
    def energy(self):
        """The energy of each channel as an import writes it: channels count from 1. None without a
        calibration."""
        return self._calibrated(_core.energies)

    @functools.cached_property
    def edges(self):
        """The lower edges of the channels and the upper edge of the last one; None without."""
        return self._calibrated(_core.edges)

    def _calibrated(self, function):
        if self.calibration is None:
            return None
        values = function(self.calibration["coefficients"], self.calibration["boundaries"],
                          len(self.counts))
        return values if len(values) else None

    @property
    def total(self):
        """The sum of the counts."""
        return float(self.counts.sum())

    @property
    def rate(self):
        """Counts per second of live time; None without a live time above 0."""
        return self.total / self.live if self.live else None

    def region(self, first, last):
        """(gross, background, net, centroid) of channels first to last, from 0, both included."""
        return _core.region(self.counts, first, last)

    def plot(self, axes=None, **how):
        """Draws the spectrum with matplotlib; yields the axes."""
        if axes is None:
            from matplotlib import pyplot
            axes = pyplot.gca()
        x, unit = self._axis()
        axes.plot(x, self.counts, drawstyle="steps-mid", label=self.name, **how)
        axes.set_xlabel(unit)
        axes.set_ylabel("counts")
        return axes

    def _axis(self):
        if self.energy is None:
            return numpy.arange(len(self.counts)), "channel"
        unit = self.calibration["unit"]
        return self.energy, f"energy ({unit})" if unit else "energy"

    def __repr__(self):
        return f"<spectrum {self.name!r}: {len(self.counts)} channels, {self.total:g} counts>"

    def _repr_html_(self):
        from .display import spectrum_html
        return spectrum_html(self)


@dataclasses.dataclass
class GrossCount(_WithStart):
    """Counts without a spectrum."""

    measurement: int
    has_spectrum: bool
    id: str
    detector: str
    kind: str
    start_text: str
    live: float | None
    count: float


@dataclasses.dataclass
class SpectrumFile:
    """What a file holds. notes tell what was left out, cut or guessed: (id, count, text)."""

    path: object
    form: str
    detectors: list
    measurements: int
    spectra: list
    gross_counts: list
    notes: list

    SUMMARY = ("file", "name", "detector", "kind", "start", "real", "live", "channels", "counts",
               "rate")

    def summary_rows(self):
        """A tuple for each spectrum, of what SUMMARY names."""
        return [(str(self.path), s.name, s.detector, s.kind, s.start_text, s.real, s.live,
                 len(s.counts), s.total, s.rate) for s in self.spectra]

    def summary(self):
        """The same as a DataFrame."""
        from .table import frame_of
        return frame_of(self.SUMMARY, self.summary_rows())

    def __repr__(self):
        return (f"<spectrum file {str(self.path)!r}: {len(self.spectra)} spectra, "
                f"{len(self.notes)} notes>")


def read(path, detectors=()):
    """Reads the spectra of a file; other threads go on meanwhile. detectors: gross counts of these
    only. Raises LoadError."""
    contents = _core.read_spectra(path, list(detectors))
    contents["spectra"] = [Spectrum(**each) for each in contents["spectra"]]
    contents["gross_counts"] = [GrossCount(**each) for each in contents["gross_counts"]]
    return SpectrumFile(path=path, **contents)


def import_tree(path, detectors=()):
    """The tree that an import makes of a file, and that of the descriptions of its detectors."""
    code, tree, information, _ = _core.import_n42(path, list(detectors), 0)
    check("uxtree_n42", code, code == 0)
    return tree, information


def detectors(path):
    """The names of the detectors of a file."""
    code, _, _, names = _core.import_n42(path, [], 0x10000)
    check("uxtree_n42", code, code == 0)
    return names
