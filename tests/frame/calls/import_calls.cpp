// Bad arguments of outlines, path queries and imports.
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

const TemporaryFolder& import_folder() {
    static const TemporaryFolder whole;
    return whole;
}
std::string plain_file() {
    static const std::string path = import_folder().write("plain.xml", "<r><a>1</a><a>2</a></r>");
    return path;
}
std::string spectrum_file() {
    static const std::string path = import_folder().write(
        "spectrum.n42",
        "<RadInstrumentData><RadDetectorInformation id='D1'/>"
        "<RadMeasurement id='M1'><MeasurementClassCode>Foreground</MeasurementClassCode>"
        "<Spectrum id='S1' radDetectorInformationReference='D1'>"
        "<ChannelData>1 2 3</ChannelData></Spectrum></RadMeasurement></RadInstrumentData>");
    return path;
}

void add_path_rows(Sweep& sweep) {
    constexpr Row done{.good = 1, .bad = 0};
    constexpr Row emptied{.good = 1, .bad = 0, .clearsOutputs = true};
    constexpr Row names{.good = 2, .bad = 0};
    constexpr Row leaves{.good = 2, .bad = -1};

    sweep.add(UX_ENTRY(vctree_XDE_XML_get_attributes), done, strings().appends(),
              strings().optional().appends(), node("a"), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_XDE_get_attributes), done, strings().appends(),
              strings().optional().appends(), node("a"), DWORD{0});
    sweep.add(UX_ENTRY(vctree_XDE_treenode_path_array_to_string), names, string().out(),
              strings({"a", "b"}), true);
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_path_array_to_string), names, string().out(),
              strings({"a", "b"}), true);
    sweep.add(UX_ENTRY(vctree_XDE_treenode_path_string_to_array), emptied, strings({"x"}).out(),
              text("a|b"), true);
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_path_string_to_array), emptied, strings({"x"}).out(),
              text("a|b"), true);
    sweep.add(UX_ENTRY(VCTreeXDETreenodeOnePathAsArrayToString), names, string().out(),
              strings({"a", "b"}));
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_one_path_as_array_to_string), names, string().out(),
              strings({"a", "b"}));
    sweep.add(UX_ENTRY(vctree_get_XDE_treenode_string_for_path_in_tree), done, string().out(),
              node("a"));
    sweep.add(UX_ENTRY(uxtree_get_XDE_treenode_string_for_path_in_tree), done, string().out(),
              node("a"));
    sweep.add(UX_ENTRY(vctree_find_XDE_treenode_from_path_in_tree), done, out(), node(),
              strings({"R", "A"}).inout(), 0, 0, strings().optional().out(), 0);
    sweep.add(UX_ENTRY(uxtree_find_XDE_treenode_from_path_in_tree), done, out(), node(),
              strings({"R", "A"}).inout(), 0, 0, strings().optional().out(), 0);
    sweep.add(UX_ENTRY(VCTreeXDEConvertTreeValToString), emptied, string().out(), node());
    sweep.add(UX_ENTRY(uxtree_XDE_convert_tree_val_to_string), emptied, string().out(), node());
    sweep.add(UX_ENTRY(uxtree_XDE_convert_whole_tree_val_to_string), emptied, string().out(),
              node("b/c"));
    sweep.add(UX_ENTRY(VCTreeXDEDatNavPrepareStandardSourceTree), leaves, node(),
              strings().optional().appends(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_XDE_DatNav_prepare_standard_source_tree), leaves, node(),
              strings().optional().appends(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_save_XDE_array_info), done, node("a"), 3, 0);
    sweep.add(UX_ENTRY(uxtree_set_XDE_file_info_data_id), done, node("a"), 3);
}

}  // namespace

void add_outline_rows(Sweep& sweep) {
    // A tree is outlined without looking at the file name, and a file when there is no tree.
    constexpr Row outlined{.good = 0, .bad = 1, .shortage = {5}};
    sweep.add(UX_ENTRY(SAXTreeLayout), outlined, node().invalid(2), other().optional().invalid(3),
              text(plain_file()).optional(), DWORD{0});
    for (const DWORD flags : {0U, 1U}) {
        sweep.add(UX_ENTRY(SAXTreeLayout), outlined, node().invalid(2), nullptr,
                  text(plain_file()).needed_here(), flags);
    }
    sweep.add(UX_ENTRY(uxtree_layout), outlined, node().invalid(2), other().optional().invalid(3),
              text(plain_file()).optional(), DWORD{0});
    for (const DWORD flags : {0U, 1U}) {
        sweep.add(UX_ENTRY(uxtree_layout), outlined, node().invalid(2), nullptr,
                  text(plain_file()).needed_here(), flags);
    }
    sweep.add(UX_ENTRY(TreeEvalXPath), Row{.good = 0, .bad = 1}, strings().inout(),
              value(CArray<unsigned int>()).out(), strings().inout(), node().invalid(5),
              text("unused").optional(), text("/r|a"), false);
    sweep.add(UX_ENTRY(uxtree_xpath), Row{.good = 0, .bad = 1}, strings().inout(), ints().out(),
              strings().inout(), node().invalid(5), text("unused").optional(), text("/r|a"), true);
}

void add_import_rows(Sweep& sweep) {
    add_path_rows(sweep);

    sweep.add(UX_ENTRY(uxtree_XDE_prepare_XML),
              Row{.good = 0, .bad = -2017, .shortage = {-2018, -2016}}, node(),
              text(plain_file()).null(-2019), DWORD{0});

    constexpr Row imported{.good = 0, .bad = -9096, .shortage = {-9093}};
    constexpr Row preview{.good = 0, .bad = -1, .shortage = {-9093, -9096}};
    constexpr DWORD kPreview = 0x10000;
    sweep.add(UX_ENTRY(VCTree_n42_), imported, node().needed_here(),
              text(spectrum_file()).null(-9093), strings().optional().getset(),
              other().optional().may_be_invalid(), DWORD{0});
    sweep.add(UX_ENTRY(VCTree_n42_), preview, node().optional().may_be_invalid(),
              text(spectrum_file()).null(-9093), strings().getset().needed_here(),
              other().optional().may_be_invalid(), kPreview);
    sweep.add(UX_ENTRY(uxtree_n42), imported, node().needed_here(),
              text(spectrum_file()).null(-9093),
              strings().optional().wrong_type(-1).throwing(-9096).getset(),
              other().optional().may_be_invalid(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_n42), preview, node().optional().may_be_invalid(),
              text(spectrum_file()).null(-9093), strings().throwing(-9096).getset().needed_here(),
              other().optional().may_be_invalid(), kPreview);
    sweep.add(UX_ENTRY(VCTree_n42_parse_LiveTimeDuration), Row{.good = 3, .bad = 0}, -1);
}

}  // namespace uxtest
