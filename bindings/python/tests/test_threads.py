"""Several threads at once: handles are copied under the lock, files are read without it."""

import threading

import uxtree


def run(*functions):
    failures = []

    def guarded(function):
        try:
            function()
        except BaseException as error:
            failures.append(error)

    threads = [threading.Thread(target=guarded, args=(each,)) for each in functions]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failures


def test_one_document_in_many_threads(tmp_path):
    tree = uxtree.from_string("<r>" + "<a><b>1</b></a>" * 50 + "</r>")
    path = tmp_path / "f.xml"
    path.write_text(tree.xml())

    def use():
        for _ in range(200):
            nodes = [node["b"] for node in tree]
            assert sum(node.as_int() for node in nodes) == 50
            del nodes

    def load():
        for _ in range(200):
            assert len(uxtree.load(path)) == 50
            assert len(uxtree.outline([path]).paths()) == 3

    run(use, use, load, load)
    assert len(tree) == 50


def test_others_go_on_while_a_file_is_read(tmp_path):
    path = tmp_path / "f.xml"
    path.write_text("<r>" + "<a b='c'>text</a>" * 200000 + "</r>")
    reading, counted = threading.Event(), []

    def read():
        reading.set()
        uxtree.load(path, layout=False)
        reading.clear()

    def count():
        reading.wait()
        number = 0
        while reading.is_set():
            number += 1
        counted.append(number)

    run(read, count)
    # A lock that is kept for the whole time lets the other thread come to its turn once or twice.
    assert counted[0] > 1000
