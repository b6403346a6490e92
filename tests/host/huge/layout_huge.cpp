// Documents far larger and deeper than people write, loaded for editing, edited and saved. Run by the
// step huge of scripts/test, in a build without sanitizers: each row has bounds of time and memory,
// and where it says so must grow no faster than its document.
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

namespace {

bool good = true;

void require(bool holds, const char* what) {
    if (holds) return;
    std::printf("  wrong: %s; %s %s\n", what, static_cast<const char*>(UXGetLastLoadError()),
                static_cast<const char*>(UXGetLastSaveError()));
    good = false;
}

UXXmlWrapperBase loaded(const std::string& bytes) {
    UXXmlWrapperBase root;
    require(UXLoadForEditingFromMemory(&root, bytes.data(), bytes.size()) == 1, "load");
    return root;
}
std::string saved(const UXXmlWrapperBase& root) {
    CStringUTF8 out;
    require(UXSaveToMemory(&root, &out, {}, nullptr) == 1, "save");
    return {static_cast<const char*>(out), static_cast<std::size_t>(out.GetLength())};
}
// Reads back as the tree, compared as the plain form.
void require_same_tree(const UXXmlWrapperBase& root, const std::string& bytes) {
    CStringUTF8 expected;
    CStringUTF8 found;
    UXXmlWrapperBase again;
    require(again.LoadFromMemory(bytes.data(), bytes.size()) == 1, "load what was saved");
    require(root.GetString(expected) == 1 && again.GetString(found) == 1, "serialise");
    require(expected == found, "the tree read back");
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string out;
    out.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) out += text;
    return out;
}

// --- documents and what is done to them ----------------------------------------------------------

void million_levels() {
    UXGetHostServices().maxNesting = 2'000'000;
    const std::string bytes =
        "<!-- deep -->\n" + repeated("<a>", 1'000'000) + repeated("</a>", 1'000'000) + "\n";
    UXXmlWrapperBase root = loaded(bytes);
    require(saved(root) == bytes, "the same bytes");
    UXXmlWrapperBase node = root;
    for (int i = 0; i < 500'000; ++i) node.FirstChild(&node);
    node.SetPropertyValue("k", 1);
    const std::string edited = saved(root);
    require(edited.size() == bytes.size() + 6, "one attribute more");
    require_same_tree(root, edited);
    node.SetTagName("b");
    node.AddNode(nullptr, "c", -1);
    require_same_tree(root, saved(root));
    UXSaveOptions indented;
    indented.form = UXSaveForm::kIndented;
    indented.indent = 0;
    CStringUTF8 out;
    require(UXSaveToMemory(&root, &out, indented, nullptr) == 1, "indent");
}

std::string records(std::size_t count) {
    std::string text = "<?xml version=\"1.0\"?>\n<!-- records -->\n<list>\n";
    for (std::size_t i = 0; i < count; ++i) {
        text +=
            "  <!-- number " + std::to_string(i) + " -->\n  <record n='" + std::to_string(i) +
            "' status=\"ok\">\n    <title>A &amp; B</title>\n    <empty></empty>\n  </record>\n";
    }
    return text + "</list>\n";
}

void two_hundred_megabytes() {
    const std::string bytes = records(2'000'000);
    require(bytes.size() > 200'000'000, "size");
    UXXmlWrapperBase root = loaded(bytes);
    require(saved(root) == bytes, "the same bytes");
    UXXmlWrapperBase node;
    root.GetChild(&node, 1'000'000);
    node.SetPropertyValue("status", CStringUTF8("no"));
    require(saved(root).size() == bytes.size(), "one value");
    node.RemoveNode();
    const std::string edited = saved(root);
    require(edited.size() < bytes.size() && edited.size() + 200 > bytes.size(), "one record less");
}

// A hundred thousand edits of all kinds before one save.
void hundred_thousand_edits() {
    UXXmlWrapperBase root = loaded(records(200'000));
    UXXmlWrapperBase node;
    UXXmlWrapperBase next;
    root.FirstChild(&node);
    for (int i = 0; node.IsNodeValid() != 0; ++i) {
        next = node;
        next.NextSibling(&next);
        if (i % 2 == 0) {
            node = next;
            continue;
        }
        UXXmlWrapperBase child;
        node.FirstChild(&child);
        switch (i / 2 % 6) {
            case 0:
                node.SetPropertyValue("status", CStringUTF8("<new>"));
                break;
            case 1:
                child.SetString("C & D");
                break;
            case 2:
                child.RemoveNode();
                break;
            case 3:
                node.AddNode(nullptr, "added", -1);
                break;
            case 4:
                node.RemoveNode();
                break;
            default:
                node.SetTagName("renamed");
                break;
        }
        node = next;
    }
    const std::string edited = saved(root);
    require_same_tree(root, edited);
    require(saved(root) == edited, "the same again");
}

// A hundred thousand insertions, moves and copies below one parent.
void hundred_thousand_moves() {
    UXXmlWrapperBase root = loaded(records(100'000));
    UXXmlWrapperBase node;
    root.FirstChild(&node);
    for (int i = 0; i < 50'000 && node.IsNodeValid() != 0; ++i) {
        UXXmlWrapperBase next = node;
        next.NextSibling(&next);
        root.InsertNodeBefore(node, "before", -1, nullptr);
        if (i % 5 == 0) root.AddNodeCopy(&node, 1, nullptr);
        if (i % 7 == 0) node.RemoveNode();
        node = next;
    }
    CArray<int, int> order;
    for (int i = root.GetNodeCount() - 1; i >= 0; --i) order.Add(i);
    const std::string edited = saved(root);
    require_same_tree(root, edited);
    require(root.ArrangeChildContents(order) == 1, "turn around");
    require_same_tree(root, saved(root));
}

void wide_utf16() {
    std::string bytes = "\xFF\xFE";
    const std::string text = records(200'000);
    for (const char c : text) {
        bytes += c;
        bytes += '\0';
    }
    UXXmlWrapperBase root = loaded(bytes);
    require(saved(root) == bytes, "the same bytes");
    UXXmlWrapperBase node;
    root.GetChild(&node, 100'000);
    node.SetPropertyValue("status", CStringUTF8("no"));
    require(saved(root).size() == bytes.size(), "one value");
}

struct Row {
    const char* name;
    void (*run)();
    int seconds;
    rlim_t mebibytes;
};

const std::vector<Row> kRows = {
    {"a million levels", million_levels, 30, 2000},
    {"200 MB", two_hundred_megabytes, 60, 4000},
    {"a hundred thousand edits at once", hundred_thousand_edits, 30, 2000},
    {"a hundred thousand moves and copies", hundred_thousand_moves, 30, 2000},
    {"40 MB of UTF-16", wide_utf16, 30, 2000},
};

// In a process of its own, so that one that is too large or too slow ends alone.
bool passes(const Row& row) {
    std::printf("%s\n", row.name);
    std::fflush(stdout);
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const rlimit memory{row.mebibytes << 20, row.mebibytes << 20};
        setrlimit(RLIMIT_AS, &memory);
        alarm(static_cast<unsigned>(row.seconds));
        row.run();
        std::fflush(stdout);
        _exit(good ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("  %s, %.1f s\n", status == 0 ? "ok" : "FAILED", took.count());
    return status == 0;
}

}  // namespace

int main() {
    bool all = true;
    for (const Row& row : kRows) all = passes(row) && all;
    return all ? 0 : 1;
}
