// The embedded host's node store against bare expat, pugixml and libxml2: loading, saving, copying,
// searching and querying an option tree. Arguments: numbers of leaves (default 10000 100000
// 1000000).
#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include <expat.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <malloc.h>
#include <pugixml.hpp>
#include <unistd.h>

#include "uxtree/host/host.h"
#include "uxtree/outline/xpath.h"

#include "bench.h"

namespace {

using uxbench::best_of;
using uxbench::report;

const char* const kInput = "/tmp/uxtree_store_bench.xml";
const char* const kOutput = "/tmp/uxtree_store_bench.out.xml";

void check(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

void bare_expat_pass() {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    const int file = open(kInput, O_RDONLY);
    for (;;) {
        void* block = XML_GetBuffer(parser, 65536);
        const auto got = static_cast<int>(read(file, block, 65536));
        check(XML_ParseBuffer(parser, got, got == 0) == XML_STATUS_OK, "expat");
        if (got == 0) break;
    }
    close(file);
    XML_ParserFree(parser);
}

// What our save does around the writing, for a fair comparison.
void save_pugixml(const pugi::xml_document& document) {
    const std::string temporary = std::string(kOutput) + ".tmp";
    check(document.save_file(temporary.c_str(), "", pugi::format_raw), "pugixml save");
    const int file = open(temporary.c_str(), O_WRONLY);
    fsync(file);
    close(file);
    check(std::rename(temporary.c_str(), kOutput) == 0, "rename");
}

std::size_t heap_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, FreeDocument>;

XmlDocument read_with_libxml2() {
    XmlDocument document(xmlReadFile(kInput, nullptr, XML_PARSE_NOBLANKS | XML_PARSE_HUGE));
    check(document != nullptr, "libxml2 load");
    return document;
}

std::vector<std::string> libxml2_texts(xmlDoc& document, const char* path) {
    xmlXPathContext* const context = xmlXPathNewContext(&document);
    xmlXPathObject* const found =
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(path), context);
    std::vector<std::string> texts;
    for (int i = 0; i < found->nodesetval->nodeNr; ++i) {
        xmlChar* const text = xmlNodeGetContent(found->nodesetval->nodeTab[i]);
        texts.emplace_back(reinterpret_cast<const char*>(text));
        xmlFree(text);
    }
    xmlXPathFreeObject(found);
    xmlXPathFreeContext(context);
    return texts;
}

void run(int leaves) {
    std::printf("\n%d leaves\n\n", leaves);
    std::ofstream(kInput, std::ios::binary) << uxbench::option_tree(leaves);
    const int runs = leaves > 300000 ? 5 : 15;
    const std::size_t memory = static_cast<std::size_t>(leaves) * 256;

    const double expat = best_of(runs, bare_expat_pass, memory);
    const double load = best_of(
        runs,
        [] {
            UXXmlWrapperBase tree;
            check(tree.load(kInput, 0, false) == 1, "load");
        },
        memory);
    // Two documents hold what memory the host keeps spare, so that what is measured is new.
    std::array<UXXmlWrapperBase, 2> others;
    for (UXXmlWrapperBase& other : others) check(other.load(kInput, 0, false) == 1, "load");
    const std::size_t before = heap_in_use();
    UXXmlWrapperBase tree;
    tree.load(kInput, 0, false);
    const std::size_t bytes = heap_in_use() - before;
    others = {};
    pugi::xml_document document;
    check(static_cast<bool>(document.load_file(kInput)), "pugixml load");

    uxbench::report_header();
    report("load", load, "expat, empty handlers", expat);
    const double pugiLoad = best_of(
        runs,
        [] {
            pugi::xml_document other;
            check(static_cast<bool>(other.load_file(kInput)), "pugixml load");
        },
        memory);
    report("load", load, "pugixml load_file", pugiLoad);
    report("load", load, "libxml2 xmlReadFile",
           best_of(
               runs, [] { read_with_libxml2(); }, memory));
    const double save = best_of(runs, [&] { check(tree.Save(kOutput, 0) == 1, "save"); });
    report("save", save, "pugixml save_file, fsync, rename",
           best_of(runs, [&] { save_pugixml(document); }));
    const double clone = best_of(
        runs,
        [&] {
            UXXmlWrapperBase copy;
            check(tree.Clone(&copy, 1) == 1, "clone");
        },
        memory);
    report("clone of the document", clone, "pugixml reset(other)",
           best_of(
               runs,
               [&] {
                   pugi::xml_document copy;
                   copy.reset(document);
               },
               memory));
    UXXmlWrapperBase target;
    const double copy = best_of(
        runs,
        [&] {
            target.CreateNew(0, "r");
            check(target.AddNodeCopy(&tree, 1, nullptr) == 1, "copy");
        },
        memory);
    report("copy into another document", copy, "pugixml append_copy",
           best_of(
               runs,
               [&] {
                   pugi::xml_document other;
                   other.append_copy(document.document_element());
               },
               memory));
    const std::string last = std::to_string(leaves);
    const double find = best_of(runs, [&] {
        UXXmlWrapperBase found;
        check(tree.FindNodeByAttribute(&found, "DataID", last.c_str(), 0, 1) == 1, "find");
    });
    report("find by attribute, last leaf", find, "pugixml find_node", best_of(runs, [&] {
               const pugi::xml_node found = document.find_node([&](const pugi::xml_node& node) {
                   return std::strcmp(node.attribute("DataID").value(), last.c_str()) == 0;
               });
               check(!found.empty(), "pugixml find");
           }));
    const double query = best_of(runs, [&] {
        CWBOStringArray values;
        CWBOStringArray names;
        CArray<unsigned int> offsets;
        TreeEvalXPath(&values, &offsets, &names, &tree, nullptr, "/OptionTree|Branch3|peak|@Label",
                      false);
        check(values.GetSize() > 0, "query");
    });
    report("path query", query, "pugixml select_nodes", best_of(runs, [&] {
               std::vector<std::string> values;
               for (const pugi::xpath_node& node :
                    document.select_nodes("/OptionTree/Branch3/peak/@Label")) {
                   values.emplace_back(node.attribute().value());
               }
               check(!values.empty(), "pugixml query");
           }));
    const XmlDocument libxmlTree = read_with_libxml2();
    report("path query", query, "libxml2 xmlXPathEvalExpression", best_of(runs, [&] {
               check(!libxml2_texts(*libxmlTree, "/OptionTree/Branch3/peak/@Label").empty(),
                     "libxml2 query");
           }));
    std::printf("\nmemory: %.1f bytes a leaf\n", static_cast<double>(bytes) / leaves);
    std::remove(kInput);
    std::remove(kOutput);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        for (const int leaves : {10000, 100000, 1000000}) run(leaves);
    }
    for (int i = 1; i < argc; ++i) run(std::atoi(argv[i]));
}
