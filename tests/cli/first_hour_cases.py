"""The commands of docs/first_hour.md do what the page shows."""
import os
import pathlib
import re
import shlex
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "first_hour.md").read_text()


def steps():
    """(command, what it answers) of all blocks of the page."""
    out = []
    for block in re.findall(r"^```\n(.*?)^```$", PAGE, re.DOTALL | re.MULTILINE):
        for line in block.splitlines(keepends=True):
            if line.startswith("$ "):
                out.append([line[2:].rstrip("\n"), ""])
            else:
                out[-1][1] += line
    return out


def test_EveryCommandOfThePageAnswersAsShown(tool):
    tool.write("spectrum.n42", (ROOT / "examples" / "spectrum.n42").read_bytes())
    tried = steps()
    assert len(tried) >= 12
    for command, answer in tried:
        line = re.sub(r"^uxtree ", shlex.quote(tool.program) + " ", command)
        done = subprocess.run(["sh", "-c", line], cwd=tool.folder, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=120,
                              env=tool.environment({"PATH": os.environ["PATH"]}))
        told = done.stdout.decode().replace("\r\n", "\n")
        told += f"(exit code {done.returncode})\n" if done.returncode else ""
        assert told == answer, f"$ {command}\n{told}"
