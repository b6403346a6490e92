// A script that does not compile is left out of the menu, and the others are there.
void broken(Tree@ t) {
    t.valu = "1";
}
