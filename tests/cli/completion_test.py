#!/usr/bin/env python3
"""Completion as a user has it: keys typed into bash and zsh in a terminal.

Usage: completion_test.py UXTREE

Ends with 77 where a shell or python3-pexpect is missing.
"""

import os
import pathlib
import re
import shutil
import sys
import tempfile

try:
    import pexpect
except ImportError:
    print("python3-pexpect is missing")
    sys.exit(77)

PROGRAM = pathlib.Path(sys.argv[1]).resolve()

# What is typed before TAB, and what stands on the line afterwards. Two TABs list what there is.
LINES = [
    ("uxtree sho", "uxtree show "),
    ("uxtree edit my", r"uxtree edit my\ tree.xml "),
    ("uxtree edit tree.xml so", "uxtree edit tree.xml sort "),
    ("uxtree edit tree.xml sort --desc", "uxtree edit tree.xml sort --descending "),
    ("uxtree edit -o out.xml tree.xml sort --as n", "uxtree edit -o out.xml tree.xml sort --as number "),
    ("uxtree list --format js", "uxtree list --format json "),
    ("uxtree list --format=js", "uxtree list --format=json "),
    ("uxtree theme sa", "uxtree theme save "),
    ("uxtree show --color al", "uxtree show --color always "),
    ("uxtree show -o su", "uxtree show -o sub/"),
    ("uxtree completion z", "uxtree completion zsh "),
]
LISTS = [
    ("uxtree theme ", ["apply", "save", "show"]),
    ("uxtree edit tree.xml sort --as ", ["number", "text"]),
]


def start(shell, folder):
    environment = {
        "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}", "HOME": str(folder), "TERM": "dumb",
        "LC_ALL": "C.UTF-8", "ZDOTDIR": str(folder), "LSAN_OPTIONS": "detect_leaks=0",
    }
    options = {"bash": ["--norc", "--noprofile", "-i"], "zsh": ["-f", "-i"]}[shell]
    terminal = pexpect.spawn(shell, options, cwd=folder, env=environment, encoding="utf-8",
                             dimensions=(50, 200), timeout=30)
    setup = {
        "bash": "bind 'set enable-bracketed-paste off'; bind 'set completion-query-items 0';"
                " . ./uxtree.bash",
        "zsh": "unsetopt zle_bracketed_paste; autoload -Uz compinit; compinit -u; . ./_uxtree;"
               " bindkey -e; PROMPT_EOL_MARK=; setopt nolistambiguous",
    }[shell]
    terminal.sendline(f"{setup}; PS1='READY''> '; PS2=; RPS1=")
    terminal.expect_exact("READY> ")
    return terminal


def plain(text):
    """Text without the control sequences of a line editor."""
    text = re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[=>]|\a|\r", "", text)
    while "\b" in text:
        text = re.sub(r"[^\b]?\b", "", text, count=1)
    return text


def typed(terminal, keys, wanted):
    """What the terminal shows once the keys are typed and what is wanted stands there."""
    terminal.send(keys)
    shown = ""
    while wanted not in plain(shown):
        try:
            shown += terminal.read_nonblocking(4096, timeout=5)
        except pexpect.TIMEOUT:
            break
    terminal.send("\x03")  # drops the line
    terminal.expect_exact("READY> ")
    return plain(shown)


def problems_of(shell, folder):
    terminal = start(shell, folder)
    for keys, wanted in LINES:
        shown = typed(terminal, keys + "\t", wanted)
        if wanted not in shown:
            yield f"{shell}: {keys!r} becomes {shown!r}, not {wanted!r}"
    for keys, words in LISTS:
        wanted = re.compile(r"\s+".join(words))
        terminal.send(keys + "\t\t")
        shown = ""
        while not wanted.search(plain(shown)):
            try:
                shown += terminal.read_nonblocking(4096, timeout=5)
            except pexpect.TIMEOUT:
                yield f"{shell}: {keys!r} lists {plain(shown)!r}, not {words}"
                break
        terminal.send("\x03")
        terminal.expect_exact("READY> ")
    terminal.close(force=True)


def main():
    missing = [shell for shell in ("bash", "zsh") if shutil.which(shell) is None]
    if missing:
        print(f"{' and '.join(missing)} missing")
        return 77
    problems = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for file in ("tree.xml", "my tree.xml"):
            (folder / file).write_text("<r/>")
        (folder / "sub").mkdir()
        for shell, file in (("bash", "uxtree.bash"), ("zsh", "_uxtree")):
            os.system(f"'{PROGRAM}' completion {shell} -o '{folder / file}'")
            problems += problems_of(shell, folder)
    print("\n".join(problems) or f"completion: {len(LINES)} lines and {len(LISTS)} lists in two shells")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
