"""What may not be read or written: the file and the reason are told, and nothing changes.

Root is bound by the modes of its own files here, as everybody is.
"""
import os
import pathlib
import subprocess

from harness import ANY, Skip, Tool

XML = "<r><b/><a>1</a></r>\n"
N42 = (pathlib.Path(__file__).parents[2] / "examples/spectrum.n42").read_bytes()
FILES = {"t.xml": XML, "secret.xml": XML, "fixed.xml": XML, "closed/t.xml": XML, "open/t.xml": XML,
         "s.n42": N42, "secret.n42": N42, "blind/s.n42": N42,
         "s.as": "void main(array<string>@ args) { Tree t; t.load(args[0]); t.save(args[1]); }",
         "secret.as": "void main() {}"}
MODES = {"secret.xml": 0o200, "secret.n42": 0o200, "secret.as": 0o200, "fixed.xml": 0o444,
         "closed": 0o555, "blind": 0o311}
REASON = "Permission denied"
DELETE = ["--select", "//a", "delete"]
PLACE = "hint: the file and its folder must be writable, since it is replaced as a whole\n"


class Bound(Tool):
    def command(self):
        bound = ["setpriv", "--bounding-set=-dac_override,-dac_read_search,-fowner"]
        return [*bound, self.program] if os.geteuid() == 0 else [self.program]


def content(folder):
    return {str(path.relative_to(folder)): (path.stat().st_ino, path.read_bytes())
            for path in folder.rglob("*") if path.is_file()}


def refused(name, args, code, err, stdin="", out=""):
    """Tells err and writes out; every file stays as it was, and no other appears."""

    def check(tool):
        if os.geteuid() == 0 and subprocess.run(
                [*Bound("true", tool.folder).command()], check=False, capture_output=True).returncode:
            raise Skip("root may not be bound here")
        for file, text in FILES.items():
            tool.write(file, text)
        before = content(tool.folder)
        for file, mode in MODES.items():
            tool.path(file).chmod(mode)
        try:
            result = Bound(tool.program, tool.folder).run(args, stdin, env={"TMPDIR": "closed"})
        finally:
            for file in MODES:
                tool.path(file).chmod(0o755)
        assert result.code == code, (result.code, result.err)
        assert err is ANY or result.err == err, result.err
        assert result.out == out, result.out
        after = content(tool.folder)
        assert after == before, sorted(after.items() ^ before.items())

    check.__name__ = name
    return check


def unreadable(name, args, out=""):
    return refused(name, args, 3, f"{args[-1]}: {REASON}\n", out=out)


def unwritable(name, args, file):
    return refused(name, args, 4, f"{file}: {REASON}\n{PLACE}")


CASES = [
    unreadable("Check", ["check", "secret.xml"]),
    unreadable("CheckGoesOn", ["check", "t.xml", "secret.xml"], out="t.xml: well-formed\n"),
    unreadable("CheckOfAFolder", ["check", "blind"]),
    unreadable("Outline", ["outline", "secret.xml"]),
    unreadable("OutlineLenient", ["outline", "--lenient", "secret.xml"]),
    unreadable("Format", ["format", "secret.xml"]),
    unreadable("FormatInPlace", ["format", "-i", "secret.xml"]),
    unreadable("Show", ["show", "secret.xml"]),
    unreadable("Query", ["query", "//a", "secret.xml"]),
    unreadable("Changes", ["changes", "t.xml", "--against", "secret.xml"]),
    unreadable("Edit", ["edit", *DELETE, "-i", "secret.xml"]),
    unreadable("N42Export", ["n42", "export", "secret.n42"]),
    unreadable("N42ExportOfAFolder", ["n42", "export", "blind"]),
    unwritable("CheckOutput", ["check", "t.xml", "-o", "closed/new"], "closed/new"),
    unwritable("OutlineOutput", ["outline", "t.xml", "-o", "fixed.xml"], "fixed.xml"),
    unwritable("FormatOutput", ["format", "t.xml", "-o", "closed/new"], "closed/new"),
    unwritable("FormatInAFolder", ["format", "-i", "closed/t.xml"], "closed/t.xml"),
    unwritable("FormatOfAFile", ["format", "-i.bak", "fixed.xml"], "fixed.xml"),
    unwritable("EditInAFolder", ["edit", *DELETE, "-i", "closed/t.xml"], "closed/t.xml"),
    unwritable("EditOfAFile", ["edit", *DELETE, "-i.bak", "fixed.xml"], "fixed.xml"),
    unwritable("N42ExportOutput", ["n42", "export", "s.n42", "-o", "closed/new"], "closed/new"),
    refused("EditOutput", ["edit", *DELETE, "t.xml", "-o", "closed/new"], 4, ANY),
    refused("EditAllOrNone", ["edit", *DELETE, "-i.bak", "--all-or-none", "open/t.xml",
                              "closed/t.xml", "t.xml"], 4,
            f"closed/t.xml: {REASON}\n{PLACE}note: 3 files: 0 changed, 2 as before, 1 failed; "
            "nothing was written\n"),
    refused("Spool", ["check", "-"], 4, ANY, stdin=XML),
]
