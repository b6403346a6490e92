// Importing radiation spectrum files, against reading them with a plain DOM: pugixml loads the
// file and from_chars reads every channel into vectors that are kept. Arguments: spectrum files.
// The memory columns are the peaks of processes of their own, each doing one thing once.
#include "uxtree/import/n42.h"

#include <charconv>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench.h"

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

// The peak memory, in MB, of a fresh process that does nothing else: this program again, told what
// to do. A fork of this one would begin with its memory.
double peak_of(const char* what, const char* file) {
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "n42_bench", what, file, static_cast<char*>(nullptr));
        _exit(1);
    }
    int status = 0;
    struct rusage usage {};
    if (wait4(child, &status, 0, &usage) != child || status != 0) std::exit(1);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

void measure(const char* file) {
    constexpr int kRuns = 3;
    const double ourPeak = peak_of("--import", file);
    const double peerPeak = peak_of("--peer", file);
    const auto memory = static_cast<std::size_t>(std::max(ourPeak, peerPeak) * (1 << 20));
    std::size_t channels = 0;
    const double peer = uxbench::best_of(
        kRuns, [&] { channels = read_with_peer(file); }, memory);
    const double ours = uxbench::best_of(
        kRuns, [&] { import_file(file); }, memory);
    const double preview = uxbench::best_of(
        kRuns, [&] { preview_file(file); }, memory);
    const double megabytes = static_cast<double>(std::filesystem::file_size(file)) / (1 << 20);
    const double doubles = static_cast<double>(channels) * sizeof(double) / (1 << 20);
    const std::string name = std::filesystem::path(file).filename().string();
    std::printf("| %-10s | %7.0f | %7.0f | %7.2f | %7.0f | %7.0f | %7.0f | %7.0f | %7.0f |\n",
                name.c_str(), ours * 1e3, peer * 1e3, ours / peer, preview * 1e3, ourPeak,
                doubles + 2 * megabytes, peerPeak, doubles);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc == 3 ? argv[1] : "";
    if (what == "--import") return import_file(argv[2]), 0;
    if (what == "--preview") return preview_file(argv[2]), 0;
    if (what == "--peer") return read_with_peer(argv[2]) > 0 ? 0 : 1;
    if (argc < 2) {
        std::fprintf(stderr, "usage: n42_bench FILE.n42...\n");
        return 2;
    }
    std::printf("| %-10s | %7s | %7s | %7s | %7s | %7s | %7s | %7s | %7s |\n", "file", "ours ms",
                "peer ms", "ratio", "preview", "peak MB", "bound", "peer MB", "doubles");
    std::printf("|---|---|---|---|---|---|---|---|---|\n");
    for (int i = 1; i < argc; ++i) measure(argv[i]);
    return 0;
}
