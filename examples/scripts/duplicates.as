// Names what stands under one identifier twice: duplicates.as FILE...   Exit code 1 when something
// does. Ranges have one identifier in common and differ in their RepeatID, which is looked at too.
int main(array<string>@ args) {
    int code = 0;
    for (uint i = 0; i < args.length(); ++i) {
        Tree t;
        t.load(args[i]);
        dictionary seen;
        array<Tree@>@ nodes = t.walk();
        for (uint n = 0; n < nodes.length(); ++n) {
            if (!nodes[n].has_attribute("DataID")) continue;
            string key = "" + nodes[n].data_id;
            for (Tree@ above = nodes[n]; above !is null; @above = above.parent) {
                if (above.has_attribute("RepeatID")) key += "/" + above.attribute("RepeatID");
            }
            string first;
            if (seen.get(key, first)) {
                print(args[i] + ": " + key + ": " + first + " and " + nodes[n].path);
                code = 1;
            } else {
                seen.set(key, nodes[n].path);
            }
        }
    }
    return code;
}
