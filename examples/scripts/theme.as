// Applies a theme to every file named: theme.as THEME FILE...
// A file keeps its layout, and one that takes no value is not written.
int main(array<string>@ args) {
    if (args.length() < 2) {
        print("usage: theme.as THEME FILE...");
        return 2;
    }
    array<int> ids;
    array<string> values;
    string comment;
    if (uxtree_tree_read_values_with_ids(args[0], ids, values, comment) != 1) {
        print(args[0], "is no theme");
        return 3;
    }
    for (uint i = 1; i < args.length(); ++i) {
        Tree t;
        t.load_for_editing(args[i]);
        string problem;
        int written = uxtree_set_values_by_ids(t, ids, values, 0, none, 0, none, problem);
        if (written < 0) {
            print(args[i] + ":", problem);
            return 4;
        }
        if (written > 0) t.save_with_layout(args[i]);
        print(args[i] + ":", written, "values");
    }
    return 0;
}
