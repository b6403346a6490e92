// Entries that fill the tree in and read it.
void fill(Tree@ t) {
    t["Method"].value = "Mean";
    t["Points"].set_integer(5);
    t["Method"].data_id = 1;
    t["Points"].data_id = 2;
}

void report(Tree@ t) {
    array<int> ids;
    array<string> values;
    string problem;
    int n = uxtree_get_values_with_ids(t, ids, values, 1, 0, 0, none, 0, problem);
    print(application(), n, ids, values);
}
