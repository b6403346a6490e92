// Loads every file named on standard input below a folder, and prints its name, the verdict and a
// hash of its tree: what a conformance suite's documents come to. Fails when the strict reader makes
// another thing of one than the parser alone.
//
//   xml_conformance FOLDER < NAMES
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "base/input_file.h"
#include "host/loader.h"
#include "host/node_detail.h"

namespace {

struct Outcome {
    std::string text;  // of the tree, or the reason
    bool accepted = false;
};

Outcome outcome_of(const std::string& path, bool parserAlone) {
    const ux::RegularFile file(path.c_str());
    const ux::xml::ByteSource source{
        [&](char* buffer, std::size_t size) { return file.read(buffer, size); },
        [&](std::uint64_t offset) { file.seek(offset); }};
    uxhost::LoadOptions options;
    options.parserAlone = parserAlone;
    UXFileError error;
    const auto document = uxhost::load_document(source, file.size(), options, error);
    if (document == nullptr) {
        return {std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
                    std::string(error.message),
                false};
    }
    UXXmlWrapperBase root;
    uxhost::bind(root, document->document, (*document)->root());
    CStringUTF8 text;
    root.GetString(text);
    return {std::string(text), true};
}

std::uint64_t hash_of(const std::string& text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    return hash;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    bool agree = true;
    for (std::string name; std::getline(std::cin, name);) {
        const std::string path = std::string(argv[1]) + "/" + name;
        const Outcome both = outcome_of(path, false);
        const Outcome parser = outcome_of(path, true);
        if (both.accepted != parser.accepted || both.text != parser.text) {
            std::fprintf(stderr, "%s: the reader and the parser differ\n", path.c_str());
            agree = false;
        }
        std::printf("%s %s %016llx\n", name.c_str(), both.accepted ? "accepted" : "refused",
                    static_cast<unsigned long long>(both.accepted ? hash_of(both.text) : 0));
    }
    return agree ? 0 : 1;
}
