"""The functions of uxtree.many on Dask: on the machines of a cluster, or on processes of this one.

With a dask.distributed.Client at hand the work goes to its workers, which need uxtree and see the
files under the same names. The groups are merged in a tree of merges, eight at a time, so that no
machine ever holds more than a few of them.
"""

import dask.bag

from . import many

MERGED_AT_ONCE = 8


def _run(job, files, partitions, errors):
    files = many.files_of(files)
    if not files:
        return many.finished(job.part([]), errors)
    bag = dask.bag.from_sequence(files, npartitions=min(partitions or 100, len(files)))
    whole = bag.reduction(job.part, job.joined, split_every=MERGED_AT_ONCE)
    return many.finished(whole.compute(), errors)


def outline(files, *, partitions=None, errors="raise"):
    """The Outline of all files; partitions is the number of groups, 100 unless given."""
    return _run(many.OutlineJob(), files, partitions, errors)


def values(files, *, partitions=None, errors="raise", **how):
    """As uxtree.many.values."""
    return _run(many.ValuesJob(how), files, partitions, errors)


def query(files, path, *, partitions=None, errors="raise"):
    """As uxtree.many.query."""
    return _run(many.QueryJob(path), files, partitions, errors)


def spectra(files, *, detectors=(), partitions=None, errors="raise"):
    """As uxtree.many.spectra."""
    return _run(many.SpectraJob(detectors), files, partitions, errors)
