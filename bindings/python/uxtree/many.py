"""One result of many files: outlines, values, queries and summaries of spectra.

Each function takes a list of files or a pattern, and yields what the files have together, in their
order. processes spreads the work over processes of this machine; uxtree.dask does the same on several
machines. The results are merged in groups, which changes nothing in them.

errors="raise" ends with the error of the first broken file. errors="collect" goes on and yields a pair:
the result of the others, and the errors.
"""

import concurrent.futures
import os

from . import n42
from .errors import LoadError, TreeError
from .outlines import Outline, outline as outline_files
from .table import Table, query_table
from .tree import files_of, load


class Part:
    """What some of the files yield, and their errors. Parts are joined in their order."""

    __slots__ = ("result", "errors")

    def __init__(self, result, errors=()):
        self.result, self.errors = result, list(errors)

    def __reduce__(self):
        return Part, (self.result, self.errors)


class Job:
    """What a file yields, of_file, and how such results become one, merge. Jobs travel to other
    processes."""

    def part(self, files):
        """The part of some files: the result of each, merged; broken files are told."""
        results, errors = [], []
        for file in files:
            try:
                results.append(self.of_file(file))
            except TreeError as error:
                errors.append(error)
        return Part(self.merge(results), errors)

    def joined(self, parts):
        """The part that parts make together."""
        parts = list(parts)
        return Part(self.merge([part.result for part in parts]),
                    [error for part in parts for error in part.errors])


def finished(part, errors):
    """What a caller gets."""
    if errors == "collect":
        return part.result, part.errors
    if errors != "raise":
        raise ValueError(f"errors must be 'raise' or 'collect', not {errors!r}")
    if part.errors:
        raise part.errors[0]
    return part.result


def run(job, files, processes, errors):
    """Runs a job over the files in contiguous groups, which keep their order."""
    files = files_of(files)
    processes = min(processes or os.cpu_count() or 1, max(len(files), 1))
    if processes == 1:
        return finished(job.part(files), errors)
    # A few groups for each process, so that none waits for another one with large files.
    size = -(-len(files) // (processes * 4))
    groups = [files[at:at + size] for at in range(0, len(files), size)]
    with concurrent.futures.ProcessPoolExecutor(processes) as pool:
        parts = list(pool.map(job.part, groups))
    return finished(job.joined(parts), errors)


# --- the jobs


class OutlineJob(Job):
    """The outline of all files."""

    READ_TOGETHER = 200  # takes a fraction of the time, and can still be interrupted

    merge = staticmethod(Outline.union_all)

    def part(self, files):
        files = list(files)
        groups = [files[at:at + self.READ_TOGETHER]
                  for at in range(0, len(files), self.READ_TOGETHER)]
        return self.joined(map(self._of_group, groups))

    def _of_group(self, files):
        parts = []
        while files:
            try:
                parts.append(Part(outline_files(files)))
                break
            except LoadError as error:
                at = files.index(error.path)
                parts += [self._of_group(files[:at]), Part(Outline(), [error])]
                files = files[at + 1:]
        return self.joined(parts)


class _TableJob(Job):
    """Tables one below the other, with the name of the file in the first column."""

    merge = staticmethod(Table.concatenated)


class ValuesJob(_TableJob):
    """A row for each file, a column for each identifier; of repeated identifiers several."""

    def __init__(self, how):
        self.how = how

    def of_file(self, file):
        pairs = load(file, layout=False).value_pairs(**self.how)
        return Table(["file", *(id for id, _ in pairs)], [[file], *([text] for _, text in pairs)])


class QueryJob(_TableJob):
    """The rows that a query finds in each file."""

    def __init__(self, path):
        self.path = path

    def of_file(self, file):
        table = query_table(load(file, layout=False), self.path)
        return Table(["file", *table.names], [[file] * len(table), *table.columns])


class SpectraJob(_TableJob):
    """A row for each spectrum."""

    def __init__(self, detectors):
        self.detectors = detectors

    def of_file(self, file):
        rows = n42.read(file, self.detectors).summary_rows()
        columns = [list(column) for column in zip(*rows)]
        return Table(n42.SpectrumFile.SUMMARY, columns or [[] for _ in n42.SpectrumFile.SUMMARY])


def outline(files, *, processes=1, errors="raise"):
    """The Outline of all files."""
    return run(OutlineJob(), files, processes, errors)


def values(files, *, processes=1, errors="raise", **how):
    """A Table with a row for each file and a column for each identifier, as Tree.value_pairs collects
    them; None where a file lacks one."""
    return run(ValuesJob(how), files, processes, errors)


def query(files, path, *, processes=1, errors="raise"):
    """A Table of what Tree.query_table finds in each file, with the file in the first column."""
    return run(QueryJob(path), files, processes, errors)


def spectra(files, *, detectors=(), processes=1, errors="raise"):
    """A Table with a row for each spectrum of the files; the columns are n42.SpectrumFile.SUMMARY."""
    return run(SpectraJob(detectors), files, processes, errors)
