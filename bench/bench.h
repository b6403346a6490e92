// What the benchmarks share: timing, ratios in one run, and inputs made on the spot.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include <sys/mman.h>

namespace uxbench {

// Touches memory that a run is about to use and gives it back. On a virtual machine the first touch
// of memory that its host has taken away costs fifteen times a later one, and whoever is measured
// first would pay for it.
inline void touch_memory(std::size_t bytes) {
    if (bytes == 0) return;
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    madvise(memory, bytes, MADV_HUGEPAGE);  // kept whole, it serves small and large pages alike
    std::memset(memory, 1, bytes);
    munmap(memory, bytes);
}

// The path of the running program, to start it again.
inline std::string this_program() {
    return std::filesystem::read_symlink("/proc/self/exe").string();
}

// Seconds of the fastest of several runs: the others were disturbed. Memory of the given size is
// made ready before each.
template <typename Body>
double best_of(int runs, Body&& body, std::size_t memory = 0) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        touch_memory(memory);
        const auto start = std::chrono::steady_clock::now();
        body();
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        best = std::min(best, time.count());
    }
    return best;
}

// One row: how many times as fast as the peer.
inline void report(const char* what, double seconds, const char* peer, double peerSeconds) {
    std::printf("| %-30s | %10.3f ms | %-32s | %10.3f ms | %6.2f |\n", what, seconds * 1e3, peer,
                peerSeconds * 1e3, peerSeconds / seconds);
    std::fflush(stdout);
}
inline void report_header() {
    std::printf("| %-30s | %13s | %-32s | %13s | %6s |\n", "operation", "ours", "peer", "peer's",
                "ratio");
    std::printf("|---|---|---|---|---|\n");
}

// A small deterministic generator of numbers.
class Random {
public:
    explicit Random(unsigned long long seed) : state_(seed * 2862933555777941757ULL + 1) {}
    unsigned below(unsigned n) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<unsigned>(state_ >> 33) % n;
    }

private:
    unsigned long long state_;
};

// An option tree of n leaves with identifier, label and value, 50 in each branch.
inline std::string option_tree(int leaves) {
    static const char* const kWords[] = {"peak",  "area",   "width", "baseline", "scale",
                                         "error", "weight", "range", "channel",  "offset"};
    Random random(1);
    const auto word = [&] { return kWords[random.below(10)]; };
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OptionTree>\n";
    for (int i = 0; i < leaves; ++i) {
        if (i % 50 == 0) {
            const std::string number = std::to_string(i / 50);
            text += "<Branch" + std::to_string(i / 50 % 40) + " Label=\"" + word() + " " + number +
                    "\">\n";
        }
        const std::string tag = word();
        text += "<" + tag + " DataID=\"" + std::to_string(i + 1) + "\" Label=\"" + word() + " " +
                word() + "\">" + std::to_string(random.below(100000000) / 1000.0) + "</" + tag +
                ">\n";
        if (i % 50 == 49 || i + 1 == leaves) {
            text += "</Branch" + std::to_string(i / 50 % 40) + ">\n";
        }
    }
    return text + "</OptionTree>\n";
}

}  // namespace uxbench
