#include "frame/calls/calls.h"

namespace uxtest {

UXXmlWrapperBase Scene::removed() const {
    UXXmlWrapperBase handle = aside_.at("victim/child");
    aside_.at("victim").RemoveNode();
    return handle;
}

std::string Scene::outputs() const {
    std::string all;
    for (const auto& output : outputs_) all += output() + "\n";
    return all + to_text(aside_.root());
}

const Sweep& all_calls() {
    static const Sweep whole = [] {
        Sweep rows;
        add_frame_rows(rows);
        add_lookup_rows(rows);
        add_tree_rows(rows);
        add_data_rows(rows);
        add_label_rows(rows);
        add_outline_rows(rows);
        add_import_rows(rows);
        add_analysis_rows(rows);
        add_stats_rows(rows);
        add_report_rows(rows);
        return rows;
    }();
    return whole;
}

}  // namespace uxtest
