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
    const Row done{.good = 1, .bad = 0};
    const Row emptied{.good = 1, .bad = 0, .clearsOutputs = true};
    const Row names{.good = 2, .bad = 0};
    const Row leaves{.good = 2, .bad = -1};

    sweep.add(UX_ENTRY(vctree_XDE_XML_get_attributes), done, strings(), strings().optional(),
              node("a"), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_XDE_get_attributes), done, strings(), strings().optional(), node("a"),
              DWORD{0});
    sweep.add(UX_ENTRY(vctree_XDE_treenode_path_array_to_string), names, string(),
              strings({"a", "b"}), true);
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_path_array_to_string), names, string(),
              strings({"a", "b"}), true);
    sweep.add(UX_ENTRY(vctree_XDE_treenode_path_string_to_array), emptied, strings({"x"}),
              text("a|b"), true);
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_path_string_to_array), emptied, strings({"x"}),
              text("a|b"), true);
    sweep.add(UX_ENTRY(VCTreeXDETreenodeOnePathAsArrayToString), names, string(),
              strings({"a", "b"}));
    sweep.add(UX_ENTRY(uxtree_XDE_treenode_one_path_as_array_to_string), names, string(),
              strings({"a", "b"}));
    sweep.add(UX_ENTRY(vctree_get_XDE_treenode_string_for_path_in_tree), done, string(), node("a"));
    sweep.add(UX_ENTRY(uxtree_get_XDE_treenode_string_for_path_in_tree), done, string(), node("a"));
    sweep.add(UX_ENTRY(vctree_find_XDE_treenode_from_path_in_tree), done, out(), node(),
              strings({"R", "A"}), 0, 0, strings().optional(), 0);
    sweep.add(UX_ENTRY(uxtree_find_XDE_treenode_from_path_in_tree), done, out(), node(),
              strings({"R", "A"}), 0, 0, strings().optional(), 0);
    sweep.add(UX_ENTRY(VCTreeXDEConvertTreeValToString), emptied, string(), node());
    sweep.add(UX_ENTRY(uxtree_XDE_convert_tree_val_to_string), emptied, string(), node());
    sweep.add(UX_ENTRY(uxtree_XDE_convert_whole_tree_val_to_string), emptied, string(),
              node("b/c"));
    sweep.add(UX_ENTRY(VCTreeXDEDatNavPrepareStandardSourceTree), leaves, node(),
              strings().optional(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_XDE_DatNav_prepare_standard_source_tree), leaves, node(),
              strings().optional(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_save_XDE_array_info), done, node("a"), 3, 0);
    sweep.add(UX_ENTRY(uxtree_set_XDE_file_info_data_id), done, node("a"), 3);
}

}  // namespace

void add_outline_rows(Sweep& sweep) {
    // A tree is outlined without looking at the file name, and a file when there is no tree.
    const Row outlined{.good = 0, .bad = 1, .shortage = {5}};
    for (const char* name : {"SAXTreeLayout", "uxtree_layout"}) {
        const auto entry = name[0] == 'S' ? &SAXTreeLayout : &uxtree_layout;
        sweep.add(name, entry, outlined, node().invalid(2), other().optional().invalid(3),
                  text(plain_file()).optional(), DWORD{0});
        sweep.add(name, entry, outlined, node().invalid(2), nullptr, text(plain_file()), DWORD{0});
        sweep.add(name, entry, outlined, node().invalid(2), nullptr, text(plain_file()), DWORD{1});
    }
    sweep.add(UX_ENTRY(TreeEvalXPath), {.good = 0, .bad = 1}, strings(),
              value(CArray<unsigned int>()), strings(), node().invalid(5),
              text("unused").optional(), text("/r|a"), false);
    sweep.add(UX_ENTRY(uxtree_xpath), {.good = 0, .bad = 1}, strings(), ints(), strings(),
              node().invalid(5), text("unused").optional(), text("/r|a"), true);
}

void add_import_rows(Sweep& sweep) {
    add_path_rows(sweep);

    sweep.add(UX_ENTRY(uxtree_XDE_prepare_XML),
              {.good = 0, .bad = -2017, .shortage = {-2018, -2016}}, node(),
              text(plain_file()).null(-2019), DWORD{0});

    const Row imported{.good = 0, .bad = -9096, .shortage = {-9093}};
    const Row preview{.good = 0, .bad = -1, .shortage = {-9093, -9096}};
    constexpr DWORD kPreview = 0x10000;
    sweep.add(UX_ENTRY(VCTree_n42_), imported, node(), text(spectrum_file()).null(-9093),
              strings().optional(), other().optional().may_be_invalid(), DWORD{0});
    sweep.add(UX_ENTRY(VCTree_n42_), preview, node().optional().may_be_invalid(),
              text(spectrum_file()).null(-9093), strings(), other().optional().may_be_invalid(),
              kPreview);
    sweep.add(UX_ENTRY(uxtree_n42), imported, node(), text(spectrum_file()).null(-9093),
              strings().optional().wrong_type(-1).throwing(-9096),
              other().optional().may_be_invalid(), DWORD{0});
    sweep.add(UX_ENTRY(uxtree_n42), preview, node().optional().may_be_invalid(),
              text(spectrum_file()).null(-9093), strings().throwing(-9096),
              other().optional().may_be_invalid(), kPreview);
    sweep.add(UX_ENTRY(VCTree_n42_parse_LiveTimeDuration), {.good = 3, .bad = 0}, -1);
}

}  // namespace uxtest
