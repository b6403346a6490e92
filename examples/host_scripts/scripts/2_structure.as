// Entries that change the structure, and two that go wrong.
void tidy(Tree@ t) {
    print(uxtree_remove_empty_child_nodes(t, true), "kept");
}

void wrong(Tree@ t) {
    t["Missing"].value = "1";
}

void endless(Tree@ t) {
    while (true) {
    }
}
