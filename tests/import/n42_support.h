// Spectrum files written in a few words, and what an import makes of them.
#pragma once

#include <string>
#include <vector>

#include "uxtree/import/n42.h"

#include "support/n42_text.h"
#include "support/test_tree.h"

namespace uxtest {

inline constexpr DWORD kPreview = 0x10000;
inline constexpr const char* kCounted = " compressionCode='CountedZeroes'";
// The tree of an Import that wrote nothing.
inline constexpr const char* kNothing = "<t><old></old></t>";

// A file with the content, imported into the tree "<t><old/></t>" with the information tree
// "<info/>".
class Import {
public:
    explicit Import(const std::string& content, const std::vector<std::string>& selection = {},
                    DWORD flags = 0)
        : detectors(string_list(selection)) {
        UXXmlWrapperBase root = tree;
        UXXmlWrapperBase info = infoTree;
        const std::string path = folder_.write("spectra.n42", content);
        result = VCTree_n42_(&root, path.c_str(), &detectors, &info, flags);
    }
    // A node below the element "RadMeasurements".
    UXXmlWrapperBase node(const std::string& path) const {
        return tree.at(("n42/RadMeasurements/" + path).c_str());
    }
    // The element "RadMeasurements" as text.
    std::string measurements() const { return to_text(tree.at("n42/RadMeasurements")); }
    std::string spectrum(int place = 0) const {
        return to_text(node("RadMeasurement/Spectrum[" + std::to_string(place) + "]"));
    }
    // The energies of the first spectrum as text; empty when it has none.
    std::string energies() const {
        const std::string text = spectrum();
        const std::size_t from = text.find("<Energy");
        if (from == std::string::npos) return "";
        return text.substr(from, text.find("<ChannelData_0") - from);
    }
    std::string channels(const std::string& path) const {
        CStringUTF8 text;
        node(path).NodeValue(text, 1, 1, nullptr);
        return static_cast<const char*>(text);
    }

    TestTree tree{"<t><old/></t>"};
    TestTree infoTree{"<info/>"};
    CWBOStringArray detectors;
    int result = 0;

private:
    TemporaryFolder folder_;
};

inline std::string spectrum_of(const std::string& channels, const std::string& attributes = "") {
    return "<Spectrum><ChannelData" + attributes + ">" + channels + "</ChannelData></Spectrum>";
}
inline std::string gross(const std::string& detector, const std::string& content = "") {
    return "<GrossCounts" +
           (detector.empty() ? "" : " radDetectorInformationReference='" + detector + "'") + ">" +
           content + "</GrossCounts>";
}

}  // namespace uxtest
