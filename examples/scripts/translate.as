// Replaces labels by those of a word list, lines "old=new": translate.as WORDS FILE
void main(array<string>@ args) {
    array<string>@ lines = read_file(args[0]).split("\n");
    Tree t;
    t.load_for_editing(args[1]);
    int replaced = 0;
    for (uint i = 0; i < lines.length(); ++i) {
        array<string>@ words = lines[i].split("=");
        if (words.length() != 2) continue;
        array<Tree@>@ nodes = t.walk();
        for (uint n = 0; n < nodes.length(); ++n) {
            if (nodes[n].attribute("Label") != words[0]) continue;
            nodes[n].label = words[1];
            ++replaced;
        }
    }
    t.save_with_layout(args[1]);
    print(replaced, "labels");
}
