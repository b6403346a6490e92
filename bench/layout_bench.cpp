// Changing a file that people wrote, with its layout kept: what loading for editing and saving cost,
// against plain loading and saving, a plain copy of the file, pugixml, xmlstarlet and lxml.
//
//   layout_bench [leaves|flat|programs]    without an argument all tables
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <pugixml.hpp>
#include <unistd.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "bench.h"

namespace {

std::string input;
std::string output;

void check(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

UXXmlWrapperBase loaded_for_editing() {
    UXXmlWrapperBase tree;
    check(UXLoadForEditing(&tree, input.c_str()) == 1, "load for editing");
    return tree;
}

std::string content_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// What a save cannot do without: the bytes on the disk, under the old name.
void copy_plainly() {
    const std::string bytes = content_of(input);
    const std::string temporary = output + ".tmp";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(file, bytes.data() + written, bytes.size() - written);
        check(count > 0, "write");
        written += static_cast<std::size_t>(count);
    }
    check(fsync(file) == 0 && close(file) == 0, "fsync");
    check(std::rename(temporary.c_str(), output.c_str()) == 0, "rename");
}

double seconds_of(clockid_t clock) {
    struct timespec time {};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Way {
    std::string name;
    std::function<void()> prepare;
    std::function<void()> run;
    std::vector<double> wall;
    std::vector<double> processor;
};

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// One after the other in each round, so that a disturbance meets all alike. The table compares
// medians of the time that passes, and of the processor's, with those of the first way.
void compare(const char* title, std::vector<Way> ways, int rounds, std::size_t memory) {
    for (int round = 0; round < rounds; ++round) {
        for (Way& way : ways) {
            if (way.prepare) way.prepare();
            uxbench::touch_memory(memory);
            const double wall = seconds_of(CLOCK_MONOTONIC);
            const double processor = seconds_of(CLOCK_PROCESS_CPUTIME_ID);
            way.run();
            way.processor.push_back(seconds_of(CLOCK_PROCESS_CPUTIME_ID) - processor);
            way.wall.push_back(seconds_of(CLOCK_MONOTONIC) - wall);
        }
    }
    std::printf("\n| %s | time, ms | times the first | processor, ms | times the first |\n", title);
    std::printf("|---|---|---|---|---|\n");
    const double firstWall = median(ways.front().wall);
    const double firstProcessor = median(ways.front().processor);
    for (const Way& way : ways) {
        const double wall = median(way.wall);
        const double processor = median(way.processor);
        std::printf("| %s | %.3f | %.2f | %.3f | %.2f |\n", way.name.c_str(), wall * 1e3,
                    wall / firstWall, processor * 1e3, processor / firstProcessor);
    }
    std::fflush(stdout);
}

void compare_loads(int rounds, std::size_t memory) {
    UXXmlWrapperBase tree;
    const auto release = [&] { tree = UXXmlWrapperBase(); };
    compare("load",
            {{"plainly",
              release,
              [&] { check(tree.load(input.c_str(), 0, false) == 1, "load"); },
              {},
              {}},
             {"for editing", release, [&] { tree = loaded_for_editing(); }, {}, {}},
             {"pugixml load_file",
              release,
              [&] {
                  pugi::xml_document document;
                  check(static_cast<bool>(document.load_file(input.c_str())), "pugixml");
              },
              {},
              {}}},
            rounds, memory);
}

UXXmlWrapperBase leaf_of(const UXXmlWrapperBase& root, int branch) {
    UXXmlWrapperBase node;
    root.GetChild(&node, branch);
    node.GetChild(&node, node.GetNodeCount() / 2);
    check(node.IsNodeValid() != 0, "leaf");
    return node;
}

void save(const UXXmlWrapperBase& tree) {
    check(UXSaveAs(&tree, output.c_str(), UXSaveOptions{}, nullptr) == 1, "save");
}

void compare_saves(int rounds, std::size_t memory) {
    const UXXmlWrapperBase unchanged = loaded_for_editing();
    const UXXmlWrapperBase changed = loaded_for_editing();
    leaf_of(changed, changed.GetNodeCount() / 2).SetPropertyValue("Label", CStringUTF8("other"));
    UXXmlWrapperBase removed = loaded_for_editing();
    leaf_of(removed, removed.GetNodeCount() / 3).RemoveNode();
    UXXmlWrapperBase all = loaded_for_editing();
    UXXmlWrapperBase node = all;
    while (node.NextBelow(all, nullptr, &node) != 0) {
        node.SetPropertyValue("Label", CStringUTF8("other"));
    }
    compare("save",
            {{"plain copy, fsync, rename", {}, copy_plainly, {}, {}},
             {"unchanged", {}, [&] { save(unchanged); }, {}, {}},
             {"one attribute changed", {}, [&] { save(changed); }, {}, {}},
             {"one leaf removed", {}, [&] { save(removed); }, {}, {}},
             {"every label changed", {}, [&] { save(all); }, {}, {}},
             {"the tree alone (Save)",
              {},
              [&] { check(unchanged.Save(output.c_str(), 0) == 1, "save"); },
              {},
              {}}},
            rounds, memory);
}

void compare_leaves(int leaves) {
    const std::string text = uxbench::option_tree(leaves);
    std::ofstream(input, std::ios::binary) << text;
    std::printf("\n%d leaves, %.3f MB\n", leaves, static_cast<double>(text.size()) / 1e6);
    const int rounds = leaves <= 1000 ? 301 : leaves <= 10000 ? 51 : 7;
    compare_loads(rounds, text.size() * 4);
    compare_saves(std::min(rounds, 51), text.size() * 4);
}

// One of very many children of one parent is removed.
void compare_flat(int children) {
    std::string text = "<r>\n";
    for (int i = 0; i < children; ++i) {
        text += "  <c n=\"" + std::to_string(i) + "\">" + std::to_string(i % 97) + "</c>\n";
    }
    std::ofstream(input, std::ios::binary) << text << "</r>\n";
    const UXXmlWrapperBase unchanged = loaded_for_editing();
    UXXmlWrapperBase removed = loaded_for_editing();
    UXXmlWrapperBase child;
    removed.GetChild(&child, children / 2);
    child.RemoveNode();
    std::printf("\n%d children of one parent, %.1f MB\n", children,
                static_cast<double>(text.size()) / 1e6);
    compare("save",
            {{"plain copy, fsync, rename", {}, copy_plainly, {}, {}},
             {"unchanged", {}, [&] { save(unchanged); }, {}, {}},
             {"one child removed", {}, [&] { save(removed); }, {}, {}}},
            7, text.size() * 4);
}

// --- other programs ------------------------------------------------------------------------------

int diff_lines(const std::string& path) {
    FILE* const pipe = popen(("diff " + input + " " + path + " | grep -c '^[<>]'").c_str(), "r");
    int lines = -1;
    check(std::fscanf(pipe, "%d", &lines) == 1, "diff");
    pclose(pipe);
    return lines;
}

// The same edit by programs: the attribute of one element, in a file with comments.
void compare_programs(int records) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- settings -->\n<list>\n";
    for (int i = 0; i < records; ++i) {
        text += "  <!-- the record of " + std::to_string(i) + " -->\n  <record DataID='" +
                std::to_string(i) + "'\n          status=\"ok\">\n    <empty></empty><e />\n";
        text += "    <title>A &gt; B</title>\n  </record>\n\n";
    }
    std::ofstream(input, std::ios::binary) << text << "</list>\n";
    const std::string wanted = std::to_string(records / 2);
    struct Program {
        const char* name;
        std::string command;
    };
    const std::string path = "/list/record[@DataID='" + wanted + "']/@status";
    const std::string python = std::string(UXTREE_PYTHON) +
                               " -c \"import lxml.etree as e; t = e.parse('" + input +
                               "'); t.xpath('/list/record[@DataID=\\\"" + wanted +
                               "\\\"]')[0].set('status', 'new'); t.write('" + output +
                               "', encoding='UTF-8', xml_declaration=True)\"";
    const std::vector<Program> programs = {
        {"uxtree attr set", std::string(UXTREE_TOOL) + " attr " + input + " set status new --ids " +
                                wanted + " -o " + output},
        {"xmlstarlet ed -P",
         "xmlstarlet ed -P -u \"" + path + "\" -v new " + input + " > " + output},
        {"xmlstarlet ed", "xmlstarlet ed -u \"" + path + "\" -v new " + input + " > " + output},
        {"lxml", python},
    };
    std::printf("\nOne attribute in a file of %.1f MB\n\n", static_cast<double>(text.size()) / 1e6);
    std::printf("| program | seconds | lines of diff |\n|---|---|---|\n");
    for (const Program& program : programs) {
        std::remove(output.c_str());
        const double seconds = uxbench::best_of(
            3, [&] { check(std::system(program.command.c_str()) == 0, program.name); });
        std::printf("| %s | %.3f | %d |\n", program.name, seconds, diff_lines(output));
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = std::filesystem::temp_directory_path().string();
    input = folder + "/uxtree_layout_bench.xml";
    output = folder + "/uxtree_layout_bench.out.xml";
    const std::string only = argc > 1 ? argv[1] : "";
    if (only.empty() || only == "leaves") {
        for (const int leaves : {100, 1000, 10000, 1000000}) compare_leaves(leaves);
    }
    if (only.empty() || only == "flat") {
        for (const int children : {10000, 100000, 1000000}) compare_flat(children);
    }
    if (only.empty() || only == "programs") compare_programs(100000);
    std::remove(input.c_str());
    std::remove(output.c_str());
    return 0;
}
