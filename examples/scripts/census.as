// How often each tag occurs in all the files that match a pattern: census.as PATTERN
void main(array<string>@ args) {
    dictionary counts;
    array<string>@ names = files(args[0]);
    for (uint i = 0; i < names.length(); ++i) {
        Tree t;
        t.load(names[i]);
        array<Tree@>@ nodes = t.walk();
        for (uint n = 0; n < nodes.length(); ++n) {
            string tag = nodes[n].tag;
            counts.set(tag, counts.exists(tag) ? int(counts[tag]) + 1 : 1);
        }
    }
    array<string>@ tags = counts.getKeys();
    tags.sortAsc();
    for (uint i = 0; i < tags.length(); ++i) print(tags[i], int(counts[tags[i]]));
}
