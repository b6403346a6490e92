#!/usr/bin/env python3
"""The outline of many files, made by the workers of a Dask cluster.

Usage: dask_outline.py FILE... | PATTERN

Here the cluster is two processes of this machine; Client("tcp://scheduler:8786") is another one.
"""

import sys

from dask.distributed import Client, LocalCluster

import uxtree.dask


def main():
    files = sys.argv[1:] if len(sys.argv) > 2 else sys.argv[1]
    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
        with Client(cluster):
            outline, problems = uxtree.dask.outline(files, errors="collect")
    print(outline)
    for problem in problems:
        print(problem, file=sys.stderr)
    return 3 if problems else 0


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sys.exit(main())
