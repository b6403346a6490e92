// Collects the results of statistics into a table, one row a result: statistics.as FILE...
void main(array<string>@ args) {
    print("file,row,column,panel,N,mean,sd");
    for (uint i = 0; i < args.length(); ++i) {
        Tree t, result;
        t.load(args[i]);
        int row = 0, column = 0;
        while (uxtree_stats_enum_result_node(t, result, row, column) == 1) {
            tagHistogramStatsResult details;
            if (uxtree_stats_result_get_set_details(result, details, 1) != 1) continue;
            string panel;
            vctree_stats_result_get_set_panel_name(result, panel, 1);
            print(args[i] + "," + row + "," + column + "," + panel + "," + details.N + "," +
                  details.Mean + "," + details.SD);
        }
    }
}
