// Gives all elements of a tag a new one with a number: rename.as FILE FROM TO
void main(array<string>@ args) {
    Tree t;
    t.load_for_editing(args[0]);
    array<Tree@>@ found = t.walk(args[1]);
    for (uint i = 0; i < found.length(); ++i) {
        string before = found[i].path;
        found[i].tag = args[2] + (i + 1);
        print(before, "->", found[i].path);
    }
    t.save_with_layout(args[0]);
}
