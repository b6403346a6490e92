"""What all commands share: names, help, exit codes, inputs and outputs."""
import json
import os
import pathlib
import re
import select
import subprocess

from harness import case

CASES = [
    case("PrintsTheVersion", ["--version"], out="uxtree 0.2.0\n"),
    case("PrintsTheVersionByALetter", ["-V"], out="uxtree 0.2.0\n"),
    case("HelpNamesCommandsExamplesAndExitCodes", ["--help"],
         contains=["\n  list ", "\n  outline ", "\n  query ", "\n  show ", "Examples:\n",
                   "Exit codes: 0 done, 1 nothing found"]),
    case("HelpOfACommandHasExamples", ["show", "--help"],
         contains=["Usage: uxtree show [OPTIONS] FILE", "Examples:\n  uxtree show tree.xml"]),
    case("HelpIsACommandToo", ["help", "show"], contains=["Usage: uxtree show"]),
    case("HelpAloneIsTheGeneralOne", ["help"], contains=["Commands:"]),
    case("NoCommandIsAUsageError", [], code=2, err=["Usage: uxtree COMMAND"]),
    case("SuggestsTheNearestCommand", ["shwo"], code=2,
         err=["uxtree: unknown command 'shwo'\n", "did you mean 'uxtree show'?"]),
    case("SuggestsTheListForWildGuesses", ["xyzzy"], code=2, err=["'uxtree list' shows all"]),
    case("RefusesUnknownGlobalOptions", ["--frob", "show", "-"], code=2, err=["--frob"]),
    case("RefusesUnknownOptions", ["show", "--frob", "-"], code=2, err=["--frob"]),
    case("SuggestsTheNearestOption", ["check", "--quite", "a.xml"], code=2,
         err=["uxtree: unknown option '--quite'\nhint: did you mean '--quiet'?\n"]),
    case("SuggestsAnOptionOfAnEdit", ["edit", "a.xml", "sort", "--buy", "x"], code=2,
         err=["uxtree: unknown option '--buy'\nhint: did you mean '--by'?\n"]),
    case("SaysHowToNameAFileThatBeginsWithADash", ["check", "-x.xml"], files={"-x.xml": "<r/>"},
         code=2, err=["unknown option '-x.xml'\nhint: the file of that name is ./-x.xml\n"]),
    case("TellsOfFilesInOneLine", ["edit", "--select", "//b", "delete", "-n", "a\nb", "c"],
         files={"a\nb": "<r/>", "c": "<r/>"}, code=1,
         err=["note: a\\nb: nothing matches\nnote: c: nothing matches\n"]),
    case("RefusesAMissingFile", ["show"], code=2, err=["FILE is required"]),
    case("RefusesAnotherArgument", ["show", "a.xml", "b.xml"], code=2, err=["b.xml"]),
    case("TakesAFileNamedLikeACommand", ["show", "list"], files={"list": "<r/>"}, out="r\n"),
    case("TakesAFileThatBeginsWithADash", ["show", "--", "-x.xml"], files={"-x.xml": "<r/>"},
         out="r\n"),
    case("SaysThatAFileIsMissing", ["show", "none.xml"], code=3,
         err=["none.xml: No such file or directory\n"]),
    case("SaysThatAFolderIsNoFile", ["show", "."], code=3, err=[".: Is a directory\n"]),
    case("SaysThatAnEmptyNameIsNoFile", ["show", ""], code=3, err=["No such file"]),
    case("SaysThatAnEmptyFileIsNotXml", ["show", "e.xml"], files={"e.xml": ""}, code=3,
         err=["e.xml:1:1: "]),
    case("SaysWhereTagsDoNotMatch", ["show", "b.xml"], files={"b.xml": "<a>\n  <b></c>\n</a>\n"},
         code=3, err=["b.xml:2:", "hint: "]),
    case("ShowsThePlaceThatIsBroken", ["show", "-"], code=3,
         stdin='<r>\n  <größe\ta="1" b=2>\n</r>', err=["""stdin:2:18: not well-formed (invalid token)
    <größe\\ta="1" b=2>
                    ^
hint: """]),
    case("ShowsAPlaceInALongLine", ["show", "-"], code=3,
         stdin="<r>" + "x" * 100000 + "&a;" + "y" * 100000,
         err=["\n  " + "x" * 60 + "&a;" + "y" * 37 + "\n" + " " * 62 + "^\n"]),
    case("ShowsNoPlaceInAnEmptyFile", ["show", "e.xml"], files={"e.xml": ""}, code=3,
         err=["e.xml:1:1: no element found\nhint: the file is empty\n"]),
    case("SaysWhereStandardInputIsBroken", ["show", "-"], stdin="<a>\n<a>\n<", code=3,
         err=["stdin:3:"]),
    case("SaysThatABinaryFileIsNotXml", ["show", "b"], files={"b": bytes(range(256))}, code=3,
         err=["b: this is no XML: a binary file\n"]),
    case("WritesIntoAFile", ["show", "-", "--output", "o.txt"], stdin="<r/>",
         after={"o.txt": "r\n"}),
    case("TakesADashAsStandardOutput", ["show", "-", "-o", "-"], stdin="<r/>", out="r\n"),
    case("KeepsTheOldFileWhenTheInputIsBroken", ["show", "-", "-o", "o.txt"], stdin="<r>",
         files={"o.txt": "old"}, code=3, err=["stdin:1:"], after={"o.txt": "old"}),
    case("RefusesAFolderAsOutput", ["show", "-", "-o", "."], stdin="<r/>", code=4,
         err=[".: Is a directory"]),
    case("RefusesAMissingFolderForTheOutput", ["show", "-", "-o", "no/o.txt"], stdin="<r/>", code=4,
         err=["no/o.txt: No such file"]),
    case("SaysThatTheDiskIsFull", ["show", "-"], stdin="<r/>", stdout_to="/dev/full", code=4,
         err=["stdout: No space left on device"]),
    case("SaysThatTheOutputDeviceIsFull", ["show", "-", "-o", "/dev/full"], stdin="<r/>", code=4,
         err=["/dev/full: No space left on device"]),
    case("ListsCommandsAsText", ["list"], contains=["command", "show  ", "\nlist  "]),
    case("RefusesAnUnknownFormat", ["list", "-f", "yaml"], code=2,
         err=["yaml not in {text,csv,json}"]),
]


def test_ListsEveryCommandAsJsonWithASummary(tool):
    rows = json.loads(tool.run(["list", "-f", "json"]).out)
    assert [row["command"] for row in rows] == sorted(row["command"] for row in rows)
    assert {"list", "outline", "query", "show"} <= {row["command"] for row in rows}
    for row in rows:
        assert row["summary"] and not row["summary"].endswith("."), row


def test_EveryCommandHasHelpWithExamplesOfItself(tool):
    for row in json.loads(tool.run(["list", "-f", "json"]).out):
        result = tool.run([*row["command"].split(), "--help"])
        assert result.code == 0 and result.err == "", row
        assert row["summary"] in result.out, row
        assert "Examples:\n" in result.out, row
        assert "uxtree " + row["command"] in result.out.split("Examples:")[1], row


def test_EveryCommandRefusesAnUnknownOption(tool):
    for row in json.loads(tool.run(["list", "-f", "json"]).out):
        result = tool.run([*row["command"].split(), "--no-such-option"])
        assert (result.code, result.out) == (2, ""), row
        assert "hint: uxtree " + row["command"] in result.err, row


def test_EveryCommandHasItsManualPage(tool):
    folder = pathlib.Path(tool.folder)
    assert tool.run(["man", "--all", "."]).code == 0
    rows = json.loads(tool.run(["list", "-f", "json"]).out)
    assert len(rows) > 30
    for row in rows:
        words = row["command"].split()
        page = (folder / ("-".join(["uxtree", *words]) + ".1")).read_text().replace("\\-", "-")
        assert " ".join(page.split()).count(row["summary"]) == 1, row
        assert page == tool.run(["man", *words]).out.replace("\\-", "-")
        options = re.findall(r"^ +(-[^ ]*)", tool.run([*words, "--help"]).out, re.M)
        for name in (name for group in options for name in group.split(",")):
            assert re.search(rf"^\.B.*{re.escape(name)}[,\s]", page, re.M), (row, name)
    assert "uxtree edit [OPTIONS] [FILE...] sort" in (folder / "uxtree-edit-sort.1").read_text()
    assert tool.run(["man", "no", "such"]).code == 2


def test_AClosedPipeEndsTheRunQuietly(tool):
    tool.write("wide.xml", "<r>" + "<a/>" * 100000 + "</r>")
    process = subprocess.Popen([tool.program, "show", "wide.xml"], cwd=tool.folder,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    assert process.stdout.readline() == b"r\n"
    process.stdout.close()
    err = process.stderr.read()
    assert process.wait() == 0
    assert err == b""


def test_AClosedStandardOutputIsRefused(tool):
    done = subprocess.run(f"'{tool.program}' list >&-", shell=True, capture_output=True)
    assert done.returncode == 4
    assert b"stdout: it is closed\n" in done.stderr


def test_AClosedStandardInputIsRefused(tool):
    done = subprocess.run(f"'{tool.program}' show - <&-", shell=True, capture_output=True)
    assert done.returncode == 3
    assert done.stderr == b"stdin: it is closed\n"


def test_ReadsANamedPipe(tool):
    os.mkfifo(tool.path("pipe"))
    writer = subprocess.Popen(f"printf '<r/>' > '{tool.path('pipe')}'", shell=True)
    result = tool.run(["show", "pipe"])
    writer.wait()
    assert (result.code, result.out) == (0, "r\n"), result.err


def test_AnOutputFileKeepsItsPermissionsAndItsLink(tool):
    tool.write("real.txt", "old").chmod(0o640)
    os.symlink("real.txt", tool.path("link.txt"))
    tool.run(["show", "-", "-o", "link.txt"], stdin="<r/>")
    assert tool.path("link.txt").is_symlink()
    assert tool.path("real.txt").read_text() == "r\n"
    assert tool.path("real.txt").stat().st_mode & 0o777 == 0o640


def test_ANewOutputFileObeysTheUmask(tool):
    before = os.umask(0o027)
    try:
        tool.run(["show", "-", "-o", "new.txt"], stdin="<r/>")
    finally:
        os.umask(before)
    assert tool.path("new.txt").stat().st_mode & 0o777 == 0o640


def test_NothingIsLeftBesideTheOutput(tool):
    tool.run(["show", "-", "-o", "o.txt"], stdin="<r/>")
    tool.run(["show", "-", "-o", "o.txt"], stdin="<r>")
    assert sorted(path.name for path in tool.folder.iterdir()) == ["o.txt"]


def run_on_terminal(tool, args, env=None, stdin=b""):
    """Standard output and error on a terminal; yields what appeared there."""
    import pty
    master, slave = pty.openpty()
    process = subprocess.Popen([tool.program, *args], cwd=tool.folder, stdin=subprocess.PIPE,
                               stdout=slave, stderr=slave, env=tool.environment(env))
    os.close(slave)
    process.stdin.write(stdin)
    process.stdin.close()
    seen = b""
    try:
        while block := os.read(master, 65536):
            seen += block
    except OSError:  # the other side is closed
        pass
    os.close(master)
    process.wait()
    return seen.decode()


def test_ColoursOnATerminal(tool):
    assert run_on_terminal(tool, ["show", "-"], stdin=b"<r/>") == "\x1b[1;34mr\x1b[0m\r\n"


def test_NoColorIsObeyedOnATerminal(tool):
    assert run_on_terminal(tool, ["show", "-"], {"NO_COLOR": "1"}, b"<r/>") == "r\r\n"


def test_ADumbTerminalGetsNoColour(tool):
    assert run_on_terminal(tool, ["show", "-"], {"TERM": "dumb"}, b"<r/>") == "r\r\n"


def test_AskingForColourBeatsNoColor(tool):
    seen = run_on_terminal(tool, ["show", "--color", "always", "-"], {"NO_COLOR": "1"}, b"<r/>")
    assert seen == "\x1b[1;34mr\x1b[0m\r\n"


def test_SlowWorkShowsProgressOnATerminalOnly(tool):
    import pty
    master, slave = pty.openpty()
    process = subprocess.Popen([tool.program, "show", "-"], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, stderr=slave, env=tool.environment(None))
    os.close(slave)
    seen = b""
    while not re.match(rb"\rreading stdin \.\.\. \d+\.\d s", seen):
        assert select.select([master], [], [], 20)[0], seen
        seen += os.read(master, 65536)
    process.stdin.write(b"<r/>")
    process.stdin.close()
    assert process.stdout.read() == b"r\n"
    try:
        while block := os.read(master, 65536):
            seen += block
    except OSError:
        pass
    process.wait()
    assert seen.endswith(b"\r\x1b[K"), seen  # the line is taken away
