"""Scripts: uxtree run and uxtree repl."""
import os
import pty
import select
import subprocess
import time

from harness import ANY, case

TREE = "<r><a DataID='1'>x</a><b/></r>"


def run(name, script, *args, **how):
    return case(name, ["run", "-e", script, *args], **how)


CASES = [
    run("RunsCode", "print(1 + 2, args);", "x", "y", out="3 [x, y]\n"),
    case("RunsAFile", ["run", "s.as", "t.xml"],
         files={"t.xml": TREE, "s.as": "int main(array<string>@ a) { Tree t; t.load(a[0]); "
                                       "print(t.count); return 1; }"}, out="2\n", code=1),
    case("RunsStandardInput", ["run", "-"], stdin="void main() { print(\"in\"); }", out="in\n"),
    case("IncludesBesideTheScript", ["run", "d/s.as"],
         files={"d/s.as": "#include \"p.as\"\nvoid main() { print(f()); }",
                "d/p.as": "int f() { return 7; }"}, out="7\n"),
    case("TakesArgumentsThatBeginWithADash", ["run", "-e", "print(args);", "--", "-x"], out="[-x]\n"),
    case("SaysThatAFileIsMissing", ["run", "no.as"], code=3, err=["no.as: No such file"]),
    case("SaysThatAFolderIsNoScript", ["run", "."], code=3, err=[".: Is a directory\n"]),
    case("SaysThatAnIncludedFileIsMissing", ["run", "s.as"], code=2,
         files={"s.as": "#include \"no.as\"\nvoid main() {}"}, err=["no.as"]),
    case("WantsAScript", ["run"], code=2, err=["no script is named"]),
    case("WantsMain", ["run", "s.as"], files={"s.as": "void f() {}"}, code=2,
         err=["there is no function 'void main()'"]),
    run("TellsPlacesOfMistakes", "Tree t;\nt.lod(\"x\");", code=2,
        err=["-e:2:3: error: ", "did you mean 'load'?"]),
    run("TellsPlacesOfExceptions", "Tree t;\nt.value = \"1\";", code=4,
        err=["-e:2:1: error: the Tree refers to no node\n  in void main(array<string>@) at -e:2:1"]),
    run("TellsPlacesInFilesThatCannotBeRead", "Tree t; t.load(\"t.xml\");", code=4,
        files={"t.xml": "<r>\n<a></r>"}, err=["t.xml:2:"]),
    run("EndsALoop", "while (true) {}", "--time", "0.3", code=4,
        err=["stopped after 0.3 seconds", "hint: --time SECONDS allows more"]),
    case("EndsRecursion", ["run", "--depth", "20", "s.as"], code=4,
         files={"s.as": "void f() { f(); }\nvoid main() { f(); }"},
         err=["more than 20 calls inside each other", "  in void f() at s.as:1:"]),
    case("RefusesResultsThatAreNoExitCodes", ["run", "s.as"], files={"s.as": "int main() { return 256; }"},
         code=4, err=["no exit code from 0 to 255"]),
    case("RefusesWhatIsNestedTooDeeply", ["run", "s.as"], code=2,
         files={"s.as": "void main() {\n  int x = " + "(" * 1000000 + "1" + ")" * 1000000 + "; }"},
         err=["s.as:2:209: error: more than 200 brackets", "the script was not compiled"]),
    case("EndsACompilationThatTakesTooLong", ["run", "--time", "0.2", "-"], code=4,
         stdin="void main() { string s = " + '"a" ' * 1000000 + "; }", err=["in compiling"]),
    run("RefusesTimesThatAreNone", "print(1);", "--time", "-1", code=2, err=["--time"]),
    case("KeepsWhatWasPrintedBeforeAFailure", ["run", "-e", "print(1); Tree t; t.value = \"\";"],
         code=4, out="1\n", err=["no node"]),
    case("TalksLineByLine", ["repl"],
         stdin="1 + 2\nTree t\nt.parse(\"<r><a>1</a></r>\")\nt\nint f(int x) {\n return x * 2;\n}\nf(4)\n",
         out="3\nr\n└── a  = 1\n8\n"),
    case("GoesOnAfterAMistake", ["repl"], stdin="prnt(1)\n2\n", out="2\n", code=2,
         err=["line:1:1: error: No matching symbol 'prnt'; did you mean 'print'?"]),
    case("EndsLoopsInTheDialogue", ["repl", "--time", "0.3"], stdin="while (true) {}\n3\n", out="3\n",
         code=4, err=["stopped after 0.3 seconds"]),
    run("RefusesArraysThatAreTooLarge", "array<double> a(4000000000);", code=4,
        err=["-e:1:1: error: Too large array size\n  in void main"]),
    case("QuitsTheDialogue", ["repl"], stdin="1\nquit\n2\n", out="1\n"),
]


def test_PrintsIntoAPipeThatCloses(tool):
    first = subprocess.Popen([tool.program, "run", "-e", "while (true) print(1);"], cwd=tool.folder,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    first.stdout.read(100)
    first.stdout.close()
    assert first.wait(timeout=30) == 0, first.stderr.read()
    assert first.stderr.read() == b""


class Terminal:
    """The dialogue on a terminal."""

    def __init__(self, tool):
        self.child, self.descriptor = pty.fork()
        if self.child == 0:
            os.chdir(tool.folder)
            environment = tool.environment({"XDG_STATE_HOME": str(tool.folder)})
            os.execve(tool.program, [tool.program, "repl"], environment)
        self.seen = ""

    def wait_for(self, text, timeout=30):
        end = time.time() + timeout
        while text not in self.seen:
            ready, _, _ = select.select([self.descriptor], [], [], max(0, end - time.time()))
            assert ready, f"no {text!r} in {self.seen!r}"
            self.seen += os.read(self.descriptor, 4096).decode("utf-8", "replace")
        self.seen = self.seen.split(text, 1)[1]

    def type(self, text):
        os.write(self.descriptor, text.encode())

    def end(self):
        self.type("quit\n")
        _, status = os.waitpid(self.child, 0)
        os.close(self.descriptor)
        return os.waitstatus_to_exitcode(status)


def test_CompletesNamesAndRemembersLines(tool):
    terminal = Terminal(tool)
    terminal.wait_for("> ")
    terminal.type("Tree tree(\"abc\")\n")
    terminal.wait_for("> ")
    terminal.type("tree.ta\t\n")
    terminal.wait_for("\nabc")
    terminal.wait_for("> ")
    assert terminal.end() == 0
    again = Terminal(tool)
    again.wait_for("> ")
    again.type("\x1b[A\x1b[A\x1b[A\n")  # the line before the last but one
    again.wait_for("tree(\"abc\")")
    assert again.end() == 0
