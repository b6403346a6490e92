// Lists what a dialog hides, and with the word "show" shows it again: hidden.as FILE [show]
void main(array<string>@ args) {
    Tree t;
    t.load_for_editing(args[0]);
    array<Tree@>@ hidden = t.select("//*[@Show='0']");
    for (uint i = 0; i < hidden.length(); ++i) print(hidden[i].path, "(" + hidden[i].label + ")");
    if (args.length() < 2 || args[1] != "show") return;
    for (uint i = 0; i < hidden.length(); ++i) hidden[i].remove_attribute("Show");
    t.save_with_layout(args[0]);
    print(hidden.length(), "shown");
}
