// Selections against the XPath engines of pugixml and libxml2, over an option tree, and against a
// bare walk. Argument: the number of leaves (default 1000000).
#include "uxtree/kit/select.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <pugixml.hpp>

#include "bench.h"

namespace {

using uxbench::best_of;
using uxbench::report;

constexpr int kRuns = 5;

void check(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

// Every element once, by the steps that every caller has.
std::size_t bare_walk(const UXXmlWrapperBase& top) {
    std::size_t count = 0;
    UXXmlWrapperBase node = top;
    UXXmlWrapperBase next;
    for (;;) {
        ++count;
        if (node.FirstChild(&next) != 0) {
            node = std::move(next);
            continue;
        }
        while (node.NextSibling(&next) == 0) {
            if (node.GetParent(&node) == 0 || node == top) return count;
        }
        node = std::move(next);
    }
}

// A tree of rows with an attribute, and children of their own.
std::string rows(int leaves) {
    std::string text = "<r>";
    for (int i = 0; i < leaves / 3; ++i) {
        if (i % 100 == 0) text += i == 0 ? "<g>" : "</g><g>";
        const std::string number = std::to_string(i % 1000);
        text += "<b a='" + number + "' n='x'><c>" + number + "</c><d>text</d></b>";
    }
    return text + "</g></r>";
}

}  // namespace

int main(int argc, char** argv) {
    const int leaves = argc > 1 ? std::atoi(argv[1]) : 1000000;
    const std::string xml = rows(leaves);
    UXXmlWrapperBase root;
    check(root.LoadFromMemory(xml.data(), xml.size()) != 0, "load");
    pugi::xml_document pugi;
    check(pugi.load_buffer(xml.data(), xml.size()), "pugixml load");
    xmlDoc* document =
        xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "", nullptr, XML_PARSE_HUGE);
    check(document != nullptr, "libxml2 load");
    xmlXPathContext* context = xmlXPathNewContext(document);

    std::printf("\n%zu elements\n\n", bare_walk(root));
    uxbench::report_header();
    const double walk = best_of(kRuns, [&] { bare_walk(root); });
    for (const char* expression : {"//b[@a='7']", "/r/g/b/c", "/r/g/b[c='7']", "//g/b[2]",
                                   "//b[../b/c>5]", "//*[.='7text']", "/r/g[1]/b[last()]"}) {
        UXSelection selection;
        check(selection.compile(expression), expression);
        std::size_t count = 0;
        const double ours = best_of(kRuns, [&] {
            UXSelected result;
            check(selection.run(root, result) == UXSelectOutcome::kDone, expression);
            count = result.size();
        });
        const pugi::xpath_query query(expression);
        const double pugis = best_of(
            kRuns, [&] { check(pugi.select_nodes(query).size() == count, "pugixml's count"); });
        report(expression, ours, "pugixml", pugis);
        xmlXPathCompExpr* compiled = xmlXPathCompile(reinterpret_cast<const xmlChar*>(expression));
        const double libxml2s = best_of(kRuns, [&] {
            xmlXPathObject* found = xmlXPathCompiledEval(compiled, context);
            check(static_cast<std::size_t>(xmlXPathNodeSetGetLength(found->nodesetval)) == count,
                  "libxml2's count");
            xmlXPathFreeObject(found);
        });
        report("", ours, "libxml2", libxml2s);
        if (std::strcmp(expression, "//b[@a='7']") == 0) report("", ours, "bare walk", walk);
        xmlXPathFreeCompExpr(compiled);
    }
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
    return 0;
}
