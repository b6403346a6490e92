"""Scripts that want memory without end are ended within the limit.

Sanitizers leave no room for such a limit, so CMakeLists.txt tries these with what is released alone.
"""


def test_EndsHungerForMemory(tool):
    for code in ("array<array<int>> a; while (true) { array<int> b(100000); a.insertLast(b); }",
                 "string s = \"x\"; while (true) s = s + s;",
                 "Tree t(\"r\"); while (true) t.add(\"a\", \"0123456789\");",
                 "array<Tree@> a; Tree t(\"r\"); while (true) a.insertLast(t.copy());",
                 "dictionary d; int i = 0; while (true) d.set(\"k\" + i++, i);"):
        done = tool.run(["run", "--memory", "200", "-e", code])
        assert done.code == 4, (code, done.code, done.err)
        assert "memory" in done.err.lower(), (code, done.err)


def test_UsesMemoryAgain(tool):
    code = """
        array<array<string>> kept;
        for (int turn = 0; turn < 60; ++turn) {
            array<string> texts(100000);
            for (uint i = 0; i < texts.length(); ++i) texts[i] = turn + i;
            texts.resize(50000 + turn);
            if (turn % 20 == 0) kept.insertLast(texts);
        }
        for (uint i = 0; i < kept.length(); ++i) print(kept[i].length(), kept[i][0], kept[i][49999]);
    """
    done = tool.run(["run", "--memory", "200", "-e", code])
    assert (done.code, done.err) == (0, ""), done.err
    assert done.out == "50000 0 49999\n50020 20 50019\n50040 40 50039\n"
