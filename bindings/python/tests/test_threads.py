"""Several threads at once: handles are copied under the lock, files are read without it."""

import sys
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
    begin, went_on = threading.Event(), []

    def other():
        begin.wait()
        went_on.append(True)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)  # seconds: none is interrupted who keeps the lock
    thread = threading.Thread(target=other)
    try:
        thread.start()
        begin.set()
        for _ in range(100):  # a machine at work may not wake it within one
            uxtree.load(path, layout=False)
            if went_on:
                break
        assert went_on
    finally:
        sys.setswitchinterval(interval)
        thread.join()
