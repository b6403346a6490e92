// Outlines of XML files, strict, and forgiving both streamed and mapped, against a minimal expat
// program that folds the same way: time of a whole child process and its peak memory.
//
//   outline_bench [FILE...]    without files, inputs of 200 and 500 MB are made and removed again
#include "uxtree/kit/outline.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "uxtree/outline/layout.h"

#include "bench.h"
#include "documents.h"

namespace {

// --- the peer ----------------------------------------------------------------------------------

struct Entry {
    std::string name;
    std::set<std::string, std::less<>> attributes;
    std::vector<std::unique_ptr<Entry>> children;
};

struct Folder {
    Entry root;
    std::vector<Entry*> open;

    Entry* entry(std::string_view name) {
        if (open.empty()) {
            root.name = name;
            return &root;
        }
        auto& children = open.back()->children;
        for (const auto& child : children) {
            if (child->name == name) return child.get();
        }
        children.push_back(std::make_unique<Entry>());
        children.back()->name = name;
        return children.back().get();
    }
};

void XMLCALL on_start(void* data, const char* name, const char** attributes) {
    Folder& folder = *static_cast<Folder*>(data);
    Entry* const entry = folder.entry(name);
    for (; *attributes != nullptr; attributes += 2) {
        const std::string_view attribute(*attributes);
        if (entry->attributes.find(attribute) == entry->attributes.end()) {
            entry->attributes.emplace(attribute);
        }
    }
    folder.open.push_back(entry);
}
void XMLCALL on_end(void* data, const char* /*name*/) {
    static_cast<Folder*>(data)->open.pop_back();
}

int write_entry(UXXmlWrapperBase& parent, const Entry& entry) {
    UXXmlWrapperBase node;
    int written = parent.AddNode(&node, "Node", -1);
    node.SetLabel(entry.name.c_str());
    for (const std::string& attribute : entry.attributes) {
        UXXmlWrapperBase added;
        node.AddNode(&added, "Attr", -1);
        added.SetLabel(("@" + attribute).c_str());
    }
    for (const auto& child : entry.children) written += write_entry(node, *child);
    return written;
}

bool outline_with_expat(UXXmlWrapperBase& target, const char* path) {
    constexpr int kBlock = 65536;
    const XML_Parser parser = XML_ParserCreate(nullptr);
    Folder folder;
    XML_SetUserData(parser, &folder);
    XML_SetElementHandler(parser, on_start, on_end);
    const int file = open(path, O_RDONLY);
    bool good = file >= 0;
    for (ssize_t size = 1; good && size > 0;) {
        size = read(file, XML_GetBuffer(parser, kBlock), kBlock);
        good = size >= 0 && XML_ParseBuffer(parser, static_cast<int>(size), size == 0) != 0;
    }
    close(file);
    XML_ParserFree(parser);
    return write_entry(target, folder.root) > 0 && good;
}

// --- measuring ---------------------------------------------------------------------------------

struct Measure {
    double seconds = 1e300;
    long peakKilobytes = 0;
    bool good = true;
};

void run_in_child(Measure& measure, const std::function<bool(UXXmlWrapperBase&)>& outline) {
    const double seconds = uxbench::best_of(1, [&] {
        const pid_t child = fork();
        if (child == 0) {
            UXXmlWrapperBase target;
            target.CreateNew(0, "outline");
            _exit(outline(target) ? 0 : 1);
        }
        int status = 0;
        struct rusage usage {};
        wait4(child, &status, 0, &usage);
        measure.good = measure.good && status == 0;
        measure.peakKilobytes = std::max(measure.peakKilobytes, usage.ru_maxrss);
    });
    measure.seconds = std::min(measure.seconds, seconds);
}

void compare(const char* path, int rounds) {
    Measure strict;
    Measure streamed;
    Measure mapped;
    Measure peer;
    for (int i = 0; i < rounds; ++i) {  // side by side, so that a disturbance meets all alike
        run_in_child(strict, [path](UXXmlWrapperBase& target) {
            return UXOutlineFile(&target, path, false) == 1;
        });
        run_in_child(streamed, [path](UXXmlWrapperBase& target) {
            return SAXTreeLayout(&target, nullptr, path, 0) == 0;
        });
        run_in_child(mapped, [path](UXXmlWrapperBase& target) {
            return SAXTreeLayout(&target, nullptr, path, 1) == 0;
        });
        run_in_child(peer,
                     [path](UXXmlWrapperBase& target) { return outline_with_expat(target, path); });
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    const auto row = [&](const char* what, const Measure& measure) {
        std::printf("| %-24s | %-8s | %8.1f ms | %6.0f MB/s | %6.1f | %6.1f MB |%s\n",
                    std::filesystem::path(path).filename().c_str(), what, measure.seconds * 1e3,
                    megabytes / measure.seconds, peer.seconds / measure.seconds,
                    static_cast<double>(measure.peakKilobytes) / 1024,
                    measure.good ? "" : " not read to its end |");
    };
    row("strict", strict);
    row("streamed", streamed);
    row("mapped", mapped);
    row("expat", peer);
    std::fflush(stdout);
}

// --- inputs ------------------------------------------------------------------------------------

std::vector<std::string> make_inputs() {
    uxbench::DocumentWriter writer("outline", 200'000'000);
    std::vector<std::string> paths{writer.records(), writer.attributes(), writer.text()};
    uxbench::DocumentWriter large("outline", 500'000'000);
    paths.push_back(
        large.file("one_comment", "<r><!-- ", " --><a/></r>\n", [&] { large.add("remark - "); }));
    paths.push_back(
        large.file("one_value", "<r a=\"", "\"><a/></r>\n", [&] { large.add("value > "); }));
    return paths;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> made = argc > 1 ? std::vector<std::string>() : make_inputs();
    std::vector<std::string> paths(argv + 1, argv + argc);
    paths.insert(paths.end(), made.begin(), made.end());
    std::printf("| file | way | time | speed | times as fast as expat | peak memory |\n");
    std::printf("|---|---|---|---|---|---|\n");
    for (const std::string& path : paths) compare(path.c_str(), 7);
    for (const std::string& path : made) std::filesystem::remove(path);
    return 0;
}
