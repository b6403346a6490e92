// Loading documents of several kinds against pugixml and a bare expat pass, and loading odd ones:
// processor time of a child process, and its peak memory.
//
//   load_bench [FILE...]    with files, the first table for them alone
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
    paths.push_back(writer.attributes());
    paths.push_back(writer.text());
    return paths;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        compare_all({argv + 1, argv + argc}, 5);
        return 0;
    }
    const std::vector<std::string> made = make_documents();
    compare_all(made, 5);
    for (const std::string& path : made) std::filesystem::remove(path);
    return 0;
}
