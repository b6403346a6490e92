// Importing radiation spectrum files, against reading them with a plain DOM: pugixml loads the
// file and from_chars reads every channel into vectors that are kept. Times and peak memory are
// those of processes of their own, each doing one thing once; the fastest of five counts. Then the
// tool's table of many small files, one after another and two at a time.
//
// Usage: n42_bench [FILE.n42...]    without files: five kinds of 100 MB that it makes itself
#include "uxtree/import/n42.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "bench.h"
#include "spectrum_files.h"

namespace {

constexpr DWORD kPreview = 0x10000;

using Channels = std::vector<double>;

bool is_blank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

Channels read_channels(std::string_view text, bool counted) {
    Channels out;
    const char* at = text.data();
    const char* const end = at + text.size();
    bool inRun = false;
    for (;;) {
        while (at != end && is_blank(*at)) ++at;
        if (at == end) return out;
        double value = 0;
        const auto [next, error] = std::from_chars(at, end, value);
        if (error != std::errc()) return out;
        at = next;
        if (inRun) {
            out.resize(out.size() + static_cast<std::size_t>(value));
            inRun = false;
        } else if (counted && value == 0) {
            inRun = true;
        } else {
            out.push_back(value);
        }
    }
}

struct Collector : pugi::xml_tree_walker {
    std::vector<Channels> spectra;
    bool for_each(pugi::xml_node& node) override {
        if (std::strcmp(node.name(), "ChannelData") == 0) {
            const bool counted =
                std::strcmp(node.attribute("compressionCode").value(), "CountedZeroes") == 0 ||
                std::strcmp(node.attribute("Compression").value(), "CountedZeroes") == 0;
            spectra.push_back(read_channels(node.child_value(), counted));
        }
        return true;
    }
};

std::size_t read_with_peer(const char* file) {
    pugi::xml_document document;
    if (!document.load_file(file)) std::exit(1);
    Collector collector;
    document.traverse(collector);
    std::size_t channels = 0;
    for (const Channels& spectrum : collector.spectra) channels += spectrum.size();
    return channels;
}

void import_file(const char* file) {
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "Import");
    if (VCTree_n42_(&tree, file, nullptr, nullptr, 0) != 0) std::exit(1);
}
void preview_file(const char* file) {
    CWBOStringArray detectors;
    if (VCTree_n42_(nullptr, file, &detectors, nullptr, kPreview) != 0) std::exit(1);
}

struct Cost {
    double seconds = 1e300;
    double peakMegabytes = 0;
    std::size_t channels = 0;
};

// What a child prints: the seconds its work took, its peak memory in MB and the channels it read.
void print_cost(double seconds, std::size_t channels) {
    long kilobytes = 0;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) kilobytes = std::stol(line.substr(6));
    }
    std::printf("%.6f %.1f %zu\n", seconds, static_cast<double>(kilobytes) / 1024, channels);
}

// Does one thing once, in a process that has done nothing else: what an allocator keeps of one run
// would make the next one look cheaper than the work is.
Cost cost_of(const std::string& what, const std::string& file, double megabytes) {
    uxbench::touch_memory(static_cast<std::size_t>(megabytes * (1 << 20)));
    const std::string command = uxbench::this_program() + " " + what + " '" + file + "'";
    FILE* const output = popen(command.c_str(), "r");
    Cost cost;
    const bool told = output != nullptr && std::fscanf(output, "%lf %lf %zu", &cost.seconds,
                                                       &cost.peakMegabytes, &cost.channels) == 3;
    if (!told || pclose(output) != 0) std::exit(1);
    return cost;
}

// The fastest of several runs that take turns, so that whatever else goes on meets all alike.
void measure(const std::string& name, const std::string& file) {
    constexpr int kRuns = 5;
    Cost ours;
    Cost peer;
    Cost preview;
    const auto keep_best = [](Cost& best, const Cost& run) {
        if (run.seconds < best.seconds) best = run;
    };
    for (int i = 0; i < kRuns; ++i) {
        keep_best(peer, cost_of("--peer", file, peer.peakMegabytes));
        keep_best(ours, cost_of("--import", file, peer.peakMegabytes));
        keep_best(preview, cost_of("--preview", file, preview.peakMegabytes));
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(file)) / (1 << 20);
    const double doubles = static_cast<double>(peer.channels) * sizeof(double) / (1 << 20);
    std::printf("| %-44s | %7.0f | %7.0f | %7.2f | %7.0f | %7.0f | %7.0f | %7.0f | %7.0f |\n",
                name.c_str(), ours.seconds * 1e3, peer.seconds * 1e3, ours.seconds / peer.seconds,
                preview.seconds * 1e3, ours.peakMegabytes, doubles + 2 * megabytes,
                peer.peakMegabytes, doubles);
    std::fflush(stdout);
}

void measure_made_files() {
    constexpr std::size_t kBytes = 100'000'000;
    const std::string file = (std::filesystem::temp_directory_path() / "uxtree_bench.n42").string();
    for (const uxbench::SpectrumFileKind& kind : uxbench::kSpectrumFileKinds) {
        uxbench::SpectrumFileWriter(kind, file, kBytes);
        measure(kind.name, file);
    }
    std::filesystem::remove(file);
}

// The table of many small files by the tool, one after another and two at a time.
void measure_table() {
    namespace fs = std::filesystem;
    constexpr int kFiles = 1000;
    constexpr std::size_t kBytes = 20'000;
    const fs::path folder = fs::temp_directory_path() / "uxtree_bench_table";
    fs::remove_all(folder);
    fs::create_directory(folder);
    for (int i = 0; i < kFiles; ++i) {
        const std::string name = (folder / (std::to_string(i) + ".n42")).string();
        uxbench::SpectrumFileWriter(uxbench::kSpectrumFileKinds[0], name, kBytes);
    }
    double seconds[2] = {1e300, 1e300};
    for (int run = 0; run < 5; ++run) {
        for (int jobs = 1; jobs <= 2; ++jobs) {
            const std::string command = std::string(UXTREE_TOOL) + " n42 list -f csv -j " +
                                        std::to_string(jobs) + " '" + folder.string() +
                                        "' > /dev/null";
            const double time = uxbench::best_of(1, [&] {
                if (std::system(command.c_str()) != 0) std::exit(1);
            });
            seconds[jobs - 1] = std::min(seconds[jobs - 1], time);
        }
    }
    fs::remove_all(folder);
    std::printf(
        "\n| table of                                     | -j 1 ms | -j 2 ms |   ratio |\n");
    std::printf("|---|---|---|---|\n");
    std::printf("| %-44s | %7.0f | %7.0f | %7.2f |\n", "1,000 files of 20 KB", seconds[0] * 1e3,
                seconds[1] * 1e3, seconds[1] / seconds[0]);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc == 3 ? argv[1] : "";
    if (what.substr(0, 2) == "--") {
        std::size_t channels = 0;
        const double seconds = uxbench::best_of(1, [&] {
            if (what == "--import") import_file(argv[2]);
            if (what == "--peer") channels = read_with_peer(argv[2]);
            if (what == "--preview") preview_file(argv[2]);
        });
        print_cost(seconds, channels);
        return 0;
    }
    std::printf("| %-44s | %7s | %7s | %7s | %7s | %7s | %7s | %7s | %7s |\n", "file", "ours ms",
                "peer ms", "ratio", "preview", "peak MB", "bound", "peer MB", "doubles");
    std::printf("|---|---|---|---|---|---|---|---|---|\n");
    for (int i = 1; i < argc; ++i) {
        measure(std::filesystem::path(argv[i]).filename().string(), argv[i]);
    }
    if (argc < 2) measure_made_files();
    if (argc < 2) measure_table();
    return 0;
}
