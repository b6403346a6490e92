// Loading documents of several kinds against pugixml and a bare expat pass, and loading odd ones:
// processor time of a child process, and its peak memory.
//
//   load_bench [FILE...]    with files, the first table for them alone
//   load_bench odd [NAME]   the second table alone, or its rows of this name
#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>
#include <fcntl.h>
#include <pugixml.hpp>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "uxtree/host/host.h"

#include "bench.h"
#include "documents.h"

namespace {

bool load_ours(const std::string& path) {
    UXXmlWrapperBase tree;
    return tree.load(path.c_str(), 0, false) == 1;
}
bool load_pugixml(const std::string& path) {
    pugi::xml_document document;
    return static_cast<bool>(document.load_file(path.c_str()));
}
bool pass_expat(const std::string& path) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    const int file = open(path.c_str(), O_RDONLY);
    bool good = file >= 0;
    for (ssize_t size = 1; good && size > 0;) {
        size = read(file, XML_GetBuffer(parser, 65536), 65536);
        good = size >= 0 && XML_ParseBuffer(parser, static_cast<int>(size), size == 0) != 0;
    }
    close(file);
    XML_ParserFree(parser);
    return good;
}

double processor_seconds() {
    struct timespec time {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Measure {
    double seconds = 1e300;
    double megabytes = 0;  // of memory at the peak
    bool good = true;
};

// Runs in a child: three times, of which the fastest counts, so that memory is reused as in a
// program that loads more than once.
void measure_in_child(Measure& measure, int runs, std::size_t memory,
                      const std::function<bool()>& body) {
    struct Shared {
        double seconds;
        bool good;
    };
    void* const page =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* const shared = static_cast<Shared*>(page);
    *shared = {1e300, false};
    const pid_t child = fork();
    if (child == 0) {
        bool good = true;
        for (int i = 0; i < runs; ++i) {
            uxbench::touch_memory(memory);
            const double start = processor_seconds();
            good = body() && good;
            shared->seconds = std::min(shared->seconds, processor_seconds() - start);
        }
        shared->good = good;
        _exit(0);
    }
    int status = 0;
    struct rusage usage {};
    wait4(child, &status, 0, &usage);
    measure.good = measure.good && shared->good && status == 0;
    measure.seconds = std::min(measure.seconds, shared->seconds);
    measure.megabytes = std::max(measure.megabytes, static_cast<double>(usage.ru_maxrss) / 1024);
    munmap(page, sizeof(Shared));
}

void compare(const std::string& path, int rounds) {
    std::array<Measure, 3> found;
    const std::array<bool (*)(const std::string&), 3> ways{load_ours, load_pugixml, pass_expat};
    const auto size = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    const int runs = size < 1 ? 15 : size < 10 ? 7 : 3;
    for (int round = 0; round < rounds; ++round) {  // side by side: a disturbance meets all alike
        for (std::size_t way = 0; way < ways.size(); ++way) {
            measure_in_child(found[way], runs, static_cast<std::size_t>(size * 4e6),
                             [&] { return ways[way](path); });
        }
    }
    const auto& [ours, pugixml, expat] = found;
    std::printf("| %-34s | %8.2f | %9.3f | %9.3f | %9.3f | %5.2f | %5.3f |%s\n",
                std::filesystem::path(path).filename().c_str(), size, ours.seconds * 1e3,
                pugixml.seconds * 1e3, expat.seconds * 1e3, ours.seconds / pugixml.seconds,
                ours.seconds / expat.seconds,
                ours.good && pugixml.good && expat.good ? "" : " one of them failed |");
    std::fflush(stdout);
}

void compare_all(const std::vector<std::string>& paths, int rounds) {
    std::printf(
        "| document | MB | ours, ms | pugixml | expat pass | ours / pugixml | ours / expat |\n"
        "|---|---|---|---|---|---|---|\n");
    for (const std::string& path : paths) compare(path, rounds);
}

std::vector<std::string> make_documents() {
    std::vector<std::string> paths;
    for (const int leaves : {10000, 100000, 1000000}) {
        paths.push_back(std::filesystem::temp_directory_path() /
                        ("load_leaves_" + std::to_string(leaves) + ".xml"));
        std::ofstream(paths.back(), std::ios::binary) << uxbench::option_tree(leaves);
    }
    uxbench::DocumentWriter writer("load", 50'000'000);
    paths.push_back(writer.records());
    // Which the parser reads, for the reference.
    const char* const opening = "<!DOCTYPE list [<!ENTITY e \"x\">]>\n<list>&e;\n";
    paths.push_back(writer.records("records_with_entity", opening));
    paths.push_back(writer.attributes());
    paths.push_back(writer.text());
    return paths;
}

// --- odd documents -----------------------------------------------------------------------------

// A document that is one token, or has very many of something, of about so many bytes. start stands
// before the root, finish behind it.
using MakeOdd =
    std::function<std::string(unsigned long long size, const char* start, const char* finish)>;
struct Odd {
    const char* name;
    MakeOdd make;
};

std::string make_odd(unsigned long long size, const std::string& opening,
                     const std::string& closing,
                     const std::function<std::string(int number)>& part) {
    uxbench::DocumentWriter writer("load", size);
    int number = 0;
    return writer.file("odd", opening, closing, [&] { writer.add(part(number++)); });
}
MakeOdd repeated(const char* opening, const char* closing, std::function<std::string(int)> part) {
    return [=](unsigned long long size, const char* start, const char* finish) {
        return make_odd(size, std::string(start) + opening, std::string(closing) + finish, part);
    };
}
// Elements that are each the only child of the one before.
std::string make_levels(unsigned long long size, const char* start, const char* finish) {
    std::string path = std::filesystem::temp_directory_path() / "load_odd.xml";
    std::ofstream out(path, std::ios::binary);
    out << start;
    for (unsigned long long i = 0; i < size / 7; ++i) out << "<a>";
    for (unsigned long long i = 0; i < size / 7; ++i) out << "</a>";
    out << finish;
    return path;
}
std::vector<Odd> odd_documents() {
    const auto always = [](const char* text) { return [text](int) { return std::string(text); }; };
    const auto numbered = [](const char* before, const char* behind, int most) {
        return [=](int number) {
            std::string text(before);
            text += std::to_string(number % most);
            return text += behind;
        };
    };
    // Each number once, as scattered as they get.
    const auto scattered = [](const char* before, const char* behind) {
        return [=](int number) {
            std::string text(before);
            text += std::to_string(static_cast<unsigned>(number) * 2654435769U);
            return text += behind;
        };
    };
    const auto namedElement = [](int number) {
        const std::string name = "a" + std::to_string(number);
        return "<" + name + " x=\"1\" label=\"some text\">value 12345</" + name + ">\n";
    };
    constexpr int kAll = 1 << 30;
    return {
        {"ordinary elements",
         repeated("<r>", "</r>", always("<a x=\"1\" label=\"some text\">value 12345</a>\n"))},
        {"one attribute", repeated("<r a=\"", "\"/>", always("value "))},
        {"one name", repeated("<n", "/>", always("name"))},
        {"one text", repeated("<r>", "</r>", always("12345 "))},
        {"one comment", repeated("<r><!-- ", " --></r>", always("remark "))},
        {"one instruction", repeated("<r><?p ", " ?></r>", always("remark "))},
        {"one section", repeated("<r><![CDATA[", "]]></r>", always("<b>& "))},
        {"a value of lines", repeated("<r a=\"", "\"/>", always("a\n"))},
        {"a value of references", repeated("<r a=\"", "\"/>", always("&#65;"))},
        {"a text of brackets", repeated("<r>", "</r>", always("]a"))},
        {"a text of two-byte letters", repeated("<r>", "</r>", always("\xC3\xA9\xC3\xA9 a "))},
        {"one inside the other", make_levels},
        // No reader can foresee these, nor keep them at hand.
        {"20,000 names in turn", repeated("<r>", "</r>", numbered("<n", "/>", 20000))},
        // Chosen to collide in the reader, which finds names again by their first bytes.
        {"names of one beginning",
         repeated("<r>", "</r>", numbered("<sixteen_in_common", "/>", 20000))},
        {"names, each once", repeated("<r>", "</r>", numbered("<n", "/>", kAll))},
        {"names in no order", repeated("<r>", "</r>", scattered("<n", "/>"))},
        {"ordinary, each a name", repeated("<r>", "</r>", namedElement)},
        // As many elements and attributes without as many names.
        {"elements of one name", repeated("<r>", "</r>", always("<n1234567/>"))},
        {"attributes of few names",
         repeated("<r>", "</r>",
                  always("<e a123456=\"\" b123456=\"\" c123456=\"\" d123456=\"\" "
                         "e123456=\"\" f123456=\"\" g123456=\"\" h123456=\"\"/>"))},
        {"attributes of one element", repeated("<r", "/>", numbered(" a", "=\"\"", kAll))},
    };
}

// Writes a document of ASCII again, in UTF-16.
void widen(const std::string& path) {
    const std::string wide = path + ".wide";
    std::ifstream in(path, std::ios::binary);
    std::ofstream out(wide, std::ios::binary);
    out << "\xFF\xFE";
    std::vector<char> block(std::size_t{1} << 16);
    std::string text;
    while (in.read(block.data(), static_cast<std::streamsize>(block.size())), in.gcount() > 0) {
        text.clear();
        for (std::streamsize i = 0; i < in.gcount(); ++i) {
            text += block[static_cast<std::size_t>(i)];
            text += '\0';
        }
        out << text;
    }
    std::filesystem::rename(wide, path);
}

// How an odd document is written.
struct Form {
    const char* name;
    const char* start;
    const char* finish;
    bool isWide;
};
constexpr std::array<Form, 5> kForms{{
    {"UTF-8", "", "", false},
    {"ISO-8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?>", "", false},
    {"UTF-16", "", "", true},
    {"DOCTYPE", "<!DOCTYPE r>", "", false},
    {"error", "", "x", false},
}};

// Nanoseconds of processor time a byte at two sizes, and the peak of memory at the larger one.
void measure_odd(const Odd& odd, const Form& form) {
    constexpr std::array<unsigned long long, 2> kSizes{20'000'000, 200'000'000};
    std::array<double, 2> nanoseconds{};
    double megabytes = 0;
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        const std::string path =
            odd.make(form.isWide ? kSizes[i] / 2 : kSizes[i], form.start, form.finish);
        if (form.isWide) widen(path);
        const auto size = static_cast<double>(std::filesystem::file_size(path));
        uxbench::touch_memory(20 * kSizes[i]);
        Measure measure;
        measure_in_child(measure, 1, 0, [&] { return load_ours(path) == (*form.finish == '\0'); });
        nanoseconds[i] = measure.good ? measure.seconds / size * 1e9 : -1;
        megabytes = measure.megabytes;
        std::filesystem::remove(path);
    }
    std::printf("| %-26s | %-10s | %6.2f | %6.2f | %5.2f | %6.0f |\n", odd.name, form.name,
                nanoseconds[0], nanoseconds[1], nanoseconds[1] / nanoseconds[0], megabytes);
    std::fflush(stdout);
}

void measure_odd_documents(std::string_view wanted) {
    UXGetHostServices().maxNesting = 1 << 30;
    std::printf(
        "\n| odd documents | form | ns a byte, 20 MB | 200 MB | growth | peak MB |\n"
        "|---|---|---|---|---|---|\n");
    for (const Odd& odd : odd_documents()) {
        if (!wanted.empty() && odd.name != wanted) continue;
        for (const Form& form : kForms) measure_odd(odd, form);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "odd") {
        measure_odd_documents(argc > 2 ? argv[2] : "");
        return 0;
    }
    if (argc > 1) {
        compare_all({argv + 1, argv + argc}, 5);
        return 0;
    }
    const std::vector<std::string> made = make_documents();
    compare_all(made, 5);
    for (const std::string& path : made) std::filesystem::remove(path);
    measure_odd_documents("");
    return 0;
}
