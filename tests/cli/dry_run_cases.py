"""What -n prints, compared with diff -u."""
import random
import subprocess


def test_dry_runs_print_what_diff_prints(tool):
    """Random files of lines, and edits that touch few or many of them."""
    chance = random.Random(5)
    edits = [
        ["edit", "t.xml", "delete", "-a", "Use", "-v", "0"],
        ["edit", "t.xml", "sort", "-a", "k"],
        ["attr", "t.xml", "set", "Label", "new", "--ids", "3", "5", "40"],
        ["attr", "t.xml", "remove", "k"],
        ["edit", "t.xml", "keep", "-a", "k"],
        ["edit", "t.xml", "prune"],
    ]
    same = 0
    for number in range(60):
        rows = []
        for i in range(chance.randrange(2, 80)):
            rows += chance.choice([[], [], [], [""], ["  <!-- of %d -->" % i]])
            name = chance.choice("ab")
            rows.append(f'  <{name} DataID="{i}" Use="{chance.randrange(3)}" '
                        f'k="{chance.randrange(20)}">{chance.choice(["", "x"])}</{name}>')
        end = chance.choice(["\n", ""])
        tool.write("t.xml", "<r>\n" + "\n".join(rows) + "\n</r>" + end)
        edit = edits[number % len(edits)]
        shown = tool.run(edit[:2] + ["-n"] + edit[2:])
        written = tool.run(edit + ["-o", "o.xml"])
        assert written.code == shown.code, (written.err, shown.err)
        if not tool.path("o.xml").exists():
            assert shown.out == "", shown.out
            continue
        expected = subprocess.run(
            ["diff", "-u", "--label", "t.xml", "--label", "t.xml", "t.xml", "o.xml"],
            cwd=tool.folder, capture_output=True, text=True, check=False).stdout
        tool.path("o.xml").unlink()
        if shown.out == expected:
            same += 1
            continue
        # Of equally short differences diff may choose another one.
        counts = [sorted(line for line in text.splitlines() if line[:1] in "+-")
                  for text in (shown.out, expected)]
        assert len(counts[0]) <= len(counts[1]), f"{shown.out}\nexpected\n{expected}"
        assert apply(tool.path("t.xml").read_text(), shown.out) == \
            apply(tool.path("t.xml").read_text(), expected), shown.out
    assert same > 40, same


def apply(text, difference):
    """The text with a difference as diff -u prints it."""
    before, after, at = text.splitlines(True), [], 0
    lines = difference.splitlines(True)[2:]
    for number, line in enumerate(lines):
        if line.startswith("@@"):
            start, _, count = line.split()[1][1:].partition(",")
            start = int(start) - (0 if count == "0" else 1)
            after += before[at:start]
            at = start
            continue
        cut = number + 1 < len(lines) and lines[number + 1].startswith("\\")
        content = line[1:-1] if cut else line[1:]
        if line[0] in " -":
            assert before[at] == content, (before[at], content)
            at += 1
        if line[0] in " +":
            after.append(content)
    return "".join(after + before[at:])
