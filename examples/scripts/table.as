// A table out of any XML: table.as FILE ROWS COLUMN...   Rows and columns are selections.
void main(array<string>@ args) {
    Tree t;
    t.load_for_editing(args[0]);
    array<string> columns = args;
    columns.removeRange(0, 2);
    print(join(columns, ","));
    array<Tree@>@ rows = t.select(args[1]);
    for (uint r = 0; r < rows.length(); ++r) {
        array<string> cells;
        for (uint c = 0; c < columns.length(); ++c) {
            cells.insertLast(join(rows[r].select_texts(columns[c]), ";"));
        }
        print(join(cells, ","));
    }
}
