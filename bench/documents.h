// Documents that the benchmarks write to files.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include "bench.h"

namespace uxbench {

inline constexpr const char* kDocumentWords[] = {"signal",  "baseline",
                                                 "peak",    "width",
                                                 "channel", "Gr\xC3\xB6\xC3\x9F\x65",
                                                 "error",   "weight",
                                                 "column",  "\xE6\xB8\xA9\xE5\xBA\xA6",
                                                 "scale",   "residual"};

// Writes documents of about so many bytes to temporary files, and yields their paths.
class DocumentWriter {
public:
    DocumentWriter(std::string prefix, unsigned long long size)
        : random_(1), prefix_(std::move(prefix)), size_(size) {}

    // Calls body for one piece of the text after the other until there is enough.
    std::string file(const std::string& name, std::string_view opening, std::string_view closing,
                     const std::function<void()>& body) {
        const std::string path =
            std::filesystem::temp_directory_path() / (prefix_ + "_" + name + ".xml");
        std::ofstream out(path, std::ios::binary);
        out << opening;
        for (unsigned long long written = 0; written < size_; written += text_.size()) {
            text_.clear();
            while (text_.size() < 65536) body();
            out << text_;
        }
        out << closing;
        return path;
    }
    void add(std::string_view text) { text_ += text; }
    void add_number() { text_ += std::to_string(random_.below(100000)); }
    void add_words(unsigned count) {
        for (; count > 0; --count) {
            text_ += kDocumentWords[random_.below(std::size(kDocumentWords))];
            text_ += ' ';
        }
    }
    unsigned below(unsigned bound) { return random_.below(bound); }

    // Records of a few fields, some of them with attributes.
    std::string records(const char* name = "records", const char* opening = "<list>\n") {
        return file(name, opening, "</list>\n", [this] {
            add("  <record id=\"");
            add_number();
            add("\" status=\"ok\">\n    <title lang=\"en\">");
            add_words(3 + below(6));
            add("</title>\n");
            if (below(3) == 0) add("    <operator first=\"A\" last=\"B\"/>\n");
            for (unsigned i = below(4); i > 0; --i) {
                add("    <channel index=\"");
                add_number();
                add("\" low=\"0\"><fit a=\"1.25\" b=\"0\"/></channel>\n");
            }
            if (below(5) == 0) add("    <!-- checked twice -->\n");
            add("  </record>\n");
        });
    }
    // Points of a map: hardly anything but attributes.
    std::string attributes() {
        return file("attributes", "<map>\n", "</map>\n", [this] {
            add("<node id=\"");
            add_number();
            add("\" lat=\"");
            add_number();
            add("\" lon=\"");
            add_number();
            add("\" v=\"1\"><tag k=\"kind\" v=\"");
            add_number();
            add("\"/></node>\n");
        });
    }
    // Long paragraphs.
    std::string text() {
        return file("text", "<book>\n", "</book>\n", [this] {
            add("<p>");
            for (int i = 0; i < 500; ++i) {
                add(i % 25 == 0 ? kDocumentWords[5] : kDocumentWords[below(5)]);
                add(" ");
            }
            add("</p>\n");
        });
    }

private:
    Random random_;
    std::string prefix_;
    unsigned long long size_;
    std::string text_;
};

}  // namespace uxbench
