"""Commands that read a file piece by piece need no more memory for a large one."""
import os
import subprocess

KILOBYTES = 3000  # of 9 MB, more than for a small file; format holds a byte for each element


def peak(tool, *args):
    """The exit code and the largest memory of a run, in kilobytes."""
    with open(os.devnull, "wb") as nowhere:
        child = subprocess.Popen([tool.program, *args], cwd=tool.folder, stdout=nowhere, stderr=nowhere)
        _, status, used = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    return child.returncode, used.ru_maxrss


def test_MemoryDoesNotGrowWithTheFile(tool):
    book = "<book id='{0}'><!-- {0} --><title>Title {0}</title><price>{0}.50</price></book>\n"
    for name, count, end in (("small", 4, "</r>"), ("large", 120_000, "</r>"),
                             ("small_broken", 4, "</s>"), ("large_broken", 120_000, "</s>")):
        tool.write(name + ".xml", "<r>" + "".join(book.format(i) for i in range(count)) + end)
    for args, file in ((["check"], ""), (["check"], "_broken"), (["outline"], ""), (["format"], "")):
        small, large = (peak(tool, *args, size + file + ".xml") for size in ("small", "large"))
        assert small[0] == large[0] == (3 if file else 0), (args, small, large)
        assert large[1] < small[1] + KILOBYTES, (args, file, small, large)
