// Spectrum files in a few words for the tests of the kit.
#pragma once

#include <string>
#include <vector>

#include "uxtree/kit/spectra.h"

#include "support/n42_text.h"
#include "support/test_tree.h"

namespace uxtest {

inline std::string kit_spectrum(const std::string& channels, const std::string& content = "",
                                const std::string& attributes = "") {
    return "<Spectrum " + attributes + ">" + content + "<ChannelData>" + channels +
           "</ChannelData></Spectrum>";
}

// All that a reader tells of a file with the content.
class ReadFile {
public:
    explicit ReadFile(const std::string& content, const std::vector<std::string>& detectors = {})
        : path(folder_.write("spectra.n42", content)) {
        opening = reader.open(path.c_str(), detectors);
        uxkit::Spectrum spectrum;
        while (reader.next(spectrum)) spectra.push_back(spectrum);
    }
    // "no-class-code 2: 2 spectra ..." for each.
    std::vector<std::string> notes() const {
        std::vector<std::string> out;
        for (const uxkit::SpectrumNote& note : reader.notes()) {
            out.push_back(note.id + " " + std::to_string(note.count) + ": " + note.text);
        }
        return out;
    }

private:
    TemporaryFolder folder_;

public:
    std::string path;
    uxkit::SpectrumReader reader;
    uxkit::SpectrumOpening opening{};
    std::vector<uxkit::Spectrum> spectra;
};

}  // namespace uxtest
