"""Files and names that other people chose: on terminals, in messages, and what is no XML."""
import gzip
import os
import pty
import select
import signal
import subprocess
import time

from harness import case

NASTY = "<r><a t='&#x9b;31m'>x&#x202e;y&#x85;z</a></r>"


def binary(name, content, *err):
    return case(name, ["show", "f.xml"], files={"f.xml": content}, code=3, err=list(err))


CASES = [
    binary("NamesCompressedFiles", gzip.compress(b"<r/>"), "f.xml: compressed (gzip): unpack it first",
           "zcat"),
    binary("NamesArchives", b"PK\x03\x04" + bytes(40), "compressed (zip): unpack it first"),
    binary("NamesPictures", b"\x89PNG\r\n\x1a\n" + bytes(40), "this is no XML: a PNG file"),
    case("TellsThatATextIsNoXml", ["show", "t.json"], files={"t.json": "\n{\"a\": 1}"}, code=3,
         err=["t.json:2:1: ", "hint: this is no XML file: those begin with <"]),
    binary("NamesBinaryFiles", bytes(range(256)) * 4, "this is no XML: a binary file"),
    binary("NamesTheLikelyEncoding", "<r>grün</r>".encode("latin-1"), "f.xml:1:6",
           "the bytes are no UTF-8, probably ISO-8859-1", "iconv -f ISO-8859-1"),
    binary("NamesTheLikelyWindowsEncoding", "<r>“grün”</r>".encode("cp1252"),
           "probably windows-1252"),
    binary("KeepsToItsAdviceOnBrokenMarkup", "<r>a < b</r>", "write &lt; for <"),
    case("ReadsADeclaredEncoding", ["query", "/r", "-"],
         stdin="<?xml version='1.0' encoding='ISO-8859-1'?><r>grün</r>".encode("latin-1"),
         out="grün\n"),
    case("KeepsBytesInAPipe", ["query", "//a", "-"], stdin=NASTY, out="x\u202ey\u0085z\n"),
]


def on_terminal(tool, *args):
    """What a terminal would get to see of both outputs."""
    controller, terminal = pty.openpty()
    with subprocess.Popen([tool.program, *args], cwd=tool.folder, stdin=subprocess.DEVNULL,
                          stdout=terminal, stderr=terminal,
                          env={**os.environ, "TERM": "xterm"}) as process:
        os.close(terminal)
        seen = b""
        while True:
            ready, _, _ = select.select([controller], [], [], 20)
            try:
                block = os.read(controller, 65536) if ready else b""
            except OSError:
                block = b""
            if not block:
                break
            seen += block
        process.wait(20)
    os.close(controller)
    return seen.decode("utf-8", "surrogateescape")


def check_shown(text):
    assert "\u202e" not in text and "\u0085" not in text and "\u009b" not in text, repr(text)


def test_ShowsWhatSteersATerminal(tool):
    tool.write("t.xml", NASTY)
    tool.write("raw.xml", "<r><a t='\u009b31m'>x\u202ey\u0085z</a></r>")
    for args in (["show", "-a", "t.xml"], ["query", "//a", "t.xml"],
                 ["query", "--xml", "//a", "raw.xml"],
                 ["attr", "t.xml", "get", "t"], ["query", "-t", "//a", "t.xml"],
                 ["query", "-f", "csv", "//@t", "t.xml"]):
        seen = on_terminal(tool, *args)
        check_shown(seen)
        assert "\\u{9b}" in seen or "\\u{202e}" in seen, (args, repr(seen))


def test_ShowsNamesInMessages(tool):
    seen = on_terminal(tool, "show", "no\x1b[31m\u202efile\u009b.xml")
    check_shown(seen)
    assert "no\\e[31m\\u{202e}file\\u{9b}.xml" in seen, repr(seen)


def test_KeepsItsOwnColours(tool):
    tool.write("t.xml", "<r>grün</r>")
    seen = on_terminal(tool, "show", "--color", "always", "t.xml")
    assert "\x1b[1;34mr\x1b[0m" in seen and "grün" in seen, repr(seen)


def begun(tool):
    """Files that a save has begun."""
    return [path for path in tool.folder.iterdir() if ".tmp" in path.name]


def stopped_while_saving(tool, number):
    """The tool, ended by a signal while it writes into t.xml; yields how it ended."""
    os.mkfifo(tool.path("more.xml"))
    with subprocess.Popen([tool.program, "query", "//a", "t.xml", "more.xml", "-o", "out.txt"],
                          cwd=tool.folder, stderr=subprocess.PIPE) as process:
        for _ in range(2000):
            if begun(tool):
                break
            time.sleep(0.01)
        assert begun(tool), "nothing was begun"
        process.send_signal(number)
        process.wait(20)
        return process.returncode


def check_signal(tool, number):
    tool.write("t.xml", NASTY)
    tool.write("out.txt", "old")
    assert stopped_while_saving(tool, number) == -number
    assert not begun(tool), begun(tool)
    assert tool.path("out.txt").read_text() == "old"


def test_LeavesNothingBehindAfterAnInterrupt(tool):
    check_signal(tool, signal.SIGINT)


def test_LeavesNothingBehindAfterATermination(tool):
    check_signal(tool, signal.SIGTERM)


def test_LeavesNothingBehindAfterAHangup(tool):
    check_signal(tool, signal.SIGHUP)


def test_ABackupReplacesALinkAndDoesNotFollowIt(tool):
    tool.write("t.xml", "<r><a o='2'/><b o='1'/></r>")
    tool.write("victim", "precious")
    tool.path("t.xml.bak").symlink_to("victim")
    result = tool.run(["edit", "t.xml", "-i.bak", "sort", "-a", "o"])
    assert result.code == 0, result.err
    assert tool.path("victim").read_text() == "precious"
    assert not tool.path("t.xml.bak").is_symlink()
    assert tool.path("t.xml.bak").read_text() == "<r><a o='2'/><b o='1'/></r>"
    assert tool.path("t.xml").read_text() == "<r><b o='1'/><a o='2'/></r>"
    result = tool.run(["edit", "t.xml", "-i.bak", "sort", "-d", "-a", "o"])  # another time
    assert result.code == 0, result.err
    assert tool.path("t.xml.bak").read_text() == "<r><b o='1'/><a o='2'/></r>"
    assert not begun(tool)


def test_ADanglingLinkStaysALink(tool):
    tool.write("t.xml", "<r>1</r>")
    tool.path("folder").mkdir()
    tool.path("link").symlink_to("folder/new")
    result = tool.run(["query", "/r", "t.xml", "-o", "link"])
    assert result.code == 0, result.err
    assert tool.path("link").is_symlink() and tool.path("folder/new").read_text() == "1\n"


def test_EditingInPlaceKeepsOwnerAndMode(tool):
    file = tool.write("t.xml", "<r><a o='2'/><b o='1'/></r>")
    file.chmod(0o640)
    if os.geteuid() == 0:
        os.chown(file, 65534, 65534)
    before = file.stat()
    result = tool.run(["edit", "t.xml", "-i.bak", "sort", "-a", "o"])
    assert result.code == 0 and not result.err, result.err
    for name in ("t.xml", "t.xml.bak"):
        now = tool.path(name).stat()
        assert (now.st_uid, now.st_gid, now.st_mode) == (before.st_uid, before.st_gid,
                                                         before.st_mode), name
