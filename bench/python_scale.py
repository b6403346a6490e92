"""What many files cost, for docs/scale.md: time per file, start of a cluster, size and time of merges.

Usage: PYTHONPATH=FOLDER_OF_THE_PACKAGE python_scale.py [FILES]
"""

import pickle
import random
import sys
import tempfile
import time

import uxtree
from uxtree import many


def documents(folder, count):
    """Dialogs that differ: about 300 settings of 800 kinds, 25 KB each."""
    chance = random.Random(3)
    for number in range(count):
        tree = uxtree.Tree("dialog")
        for place in sorted(chance.sample(range(40), 30)):
            branch = tree.add(f"branch{place}")
            for kind in sorted(chance.sample(range(20), chance.randrange(6, 14))):
                leaf = branch.add(f"n{kind}", chance.random())
                leaf.data_id = place * 100 + kind + 1
                leaf.attrs["Label"] = "Some label of a setting"
        tree.save(f"{folder}/{number:06}.xml", form="indented")


def took(job, clock=time.perf_counter):
    start = clock()
    result = job()
    return clock() - start, result


def work(job):
    """The same in processor time of this process."""
    return took(job, time.process_time)


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 2000
    from dask.distributed import Client, LocalCluster

    import uxtree.dask
    with tempfile.TemporaryDirectory() as folder:
        documents(folder, count)
        files = many.files_of(f"{folder}/*.xml")
        took(lambda: many.outline(files))  # the files are in memory from now on
        loads, _ = work(lambda: [uxtree.load(file, layout=False) and None for file in files])
        each, _ = work(lambda: [uxtree.outline(file) and None for file in files])
        together, whole = work(lambda: many.outline(files))
        print(f"processor time of a file: load {loads / count * 1e6:.0f} us, an outline of its own "
              f"{each / count * 1e6:.0f} us, that of all {together / count * 1e6:.0f} us")
        serial, _ = took(lambda: many.outline(files))
        two, _ = took(lambda: many.outline(files, processes=2))
        print(f"{count} files, outline, elapsed: {serial:.2f} s in one process, {two:.2f} s in two")
        parts = [many.outline(files[at::2]) for at in range(2)]
        merge, _ = work(lambda: parts[0] | parts[1])
        print(f"outline of all: {len(whole.paths())} entries, pickled {len(pickle.dumps(whole))} "
              f"bytes; merging two such: {merge * 1e3:.2f} ms")
        values, table = work(lambda: many.values(files[:200]))
        print(f"values: {values / 200 * 1e6:.0f} us a file, {len(pickle.dumps(table)) / 200:.0f} "
              f"bytes a file pickled")
        start, cluster = took(lambda: LocalCluster(n_workers=2, threads_per_worker=1,
                                                   dashboard_address=None))
        with cluster, Client(cluster):
            first, _ = took(lambda: uxtree.dask.outline(files[:2]))
            for partitions in (20, 200):
                time_, found = took(lambda: uxtree.dask.outline(files, partitions=partitions))
                assert found == whole
                print(f"Dask, two workers, {partitions} groups: {time_:.2f} s, "
                      f"{time_ / count * 1e6:.0f} us a file")
        print(f"start of the cluster: {start:.1f} s, first call {first:.1f} s")


if __name__ == "__main__":
    main()
