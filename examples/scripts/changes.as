// What differs between the values of two files, by identifier: changes.as OLD NEW
void collect(const string &in file, dictionary@ values, array<int>@ order) {
    Tree t;
    t.load(file);
    array<string> texts;
    string problem;
    if (uxtree_get_values_with_ids(t, order, texts, 1, 0, 0, none, 0, problem) < 0) {
        throw(file + ": " + problem);
    }
    for (uint i = 0; i < order.length(); ++i) values.set("" + order[i], texts[i]);
}

int main(array<string>@ args) {
    dictionary before, after;
    array<int> oldIds, newIds;
    collect(args[0], before, oldIds);
    collect(args[1], after, newIds);
    int changes = 0;
    for (uint i = 0; i < oldIds.length(); ++i) {
        string key = "" + oldIds[i], was, now;
        before.get(key, was);
        if (after.get(key, now) && now == was) continue;
        print(key + ":", was, "->", after.exists(key) ? now : "(gone)");
        ++changes;
    }
    return changes == 0 ? 0 : 1;
}
