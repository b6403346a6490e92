// Compares the import of real spectrum files with an independent reading of each.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "uxtree/import/n42.h"

#include "frame/walk.h"
#include "support/test_tree.h"

namespace {

using nlohmann::json;
using ux::children;

const std::filesystem::path kFolder = UXTREE_N42_SAMPLES;
constexpr DWORD kPreview = 0x10000;

std::string tag_of(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    node.GetTagName(tag);
    return static_cast<const char*>(tag);
}
std::string attribute(const UXXmlWrapperBase& node, const char* name) {
    CStringUTF8 value;
    node.GetPropertyValue(name, value, 0);
    return static_cast<const char*>(value);
}
std::string text_of(UXXmlWrapperBase node) {
    CStringUTF8 text;
    node.NodeValue(text, 1, 1, nullptr);
    return static_cast<const char*>(text);
}
std::string child_text(const UXXmlWrapperBase& node, const char* tag) {
    UXXmlWrapperBase child;
    return node.FindChild(tag, &child, 1) ? text_of(child) : std::string();
}
std::string text_or_empty(const json& value) {
    return value.is_string() ? value.get<std::string>() : std::string();
}

json column_facts(UXXmlWrapperBase node) {
    CArray<double, double> counts;
    EXPECT_EQ(node.NodeValue(counts, 1), 1);
    double sum = 0;
    double weighted = 0;
    int zeroes = 0;
    json first = json::array();
    json last = json::array();
    for (int i = 0; i < counts.GetSize(); ++i) {
        sum += counts[i];
        weighted += (i + 1) * counts[i];
        if (counts[i] == 0) ++zeroes;
        if (i < 8) first.push_back(counts[i]);
        if (i >= counts.GetSize() - 4) last.push_back(counts[i]);
    }
    return {{"n", counts.GetSize()}, {"sum", sum},      {"wsum", weighted},
            {"zeroes", zeroes},      {"first8", first}, {"last4", last}};
}

class Sample : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        path_ = (kFolder / GetParam()).string();
        std::ifstream file(kFolder / "truth" / (GetParam() + ".json"));
        if (file) truth_ = json::parse(file);
    }
    bool Is2006() const { return truth_["root"] == "N42InstrumentData"; }

    void CheckSpectrum(const UXXmlWrapperBase& group, const json& expected);
    void CheckEnergies(UXXmlWrapperBase energies, const json& expected, int channels);
    std::vector<json> WrittenSpectra() const;

    std::string path_;
    json truth_;
};

// The 2011 form writes spectra of measurements with a class code only.
std::vector<json> Sample::WrittenSpectra() const {
    std::vector<json> out;
    for (const json& spectrum : truth_["spectra"]) {
        if (Is2006() || !text_or_empty(spectrum["classCode"]).empty()) out.push_back(spectrum);
    }
    return out;
}

void Sample::CheckEnergies(UXXmlWrapperBase energies, const json& expected, int channels) {
    const auto find = [&](const std::string& id) -> json {
        for (const json& calibration : truth_["calibrations"]) {
            if (calibration["id"] == id) return calibration;
        }
        return {};
    };
    const json& attributes = expected["attributes"];
    std::string reference = attributes.value("energyCalibrationReference", "");
    reference = attributes.value("CalibrationIDs", reference);
    const json calibration = find(reference);
    std::string comment = calibration.is_null() ? "" : text_or_empty(calibration["coefficients"]);
    if (expected.contains("inlineCoefficients") && expected["inlineCoefficients"].is_string() &&
        !attributes.contains("CalibrationIDs") &&
        GetParam() != "derived__NuclideIdentifier_as2006.n42") {  // lower edges, no polynomial
        comment = expected["inlineCoefficients"];
    }
    const int boundaries = calibration.is_null() ? 0 : calibration.value("boundaries", 0);
    if (comment.empty() && boundaries > 0) comment = "EnergyBoundaryValues";
    EXPECT_EQ(attribute(energies, "Comment"), comment);
    ASSERT_EQ(energies.IsNodeValid() != 0, !comment.empty());
    if (comment.empty()) return;

    CArray<double, double> values;
    ASSERT_EQ(energies.NodeValue(values, 1), 1);
    int size = 0;
    ASSERT_EQ(energies.LoadXDEArraySize(&size), 1);
    EXPECT_EQ(size, channels);
    ASSERT_EQ(values.GetSize(), boundaries > 0 ? boundaries : channels);
    if (boundaries > 0) return;
    double sum = 0;  // the first channel has the number 1
    const char* at = comment.c_str();
    for (char* end = nullptr;; at = end) {
        const double coefficient = std::strtod(at, &end);
        if (end == at) break;
        sum += coefficient;
    }
    EXPECT_NEAR(values[0], sum, 1e-9 * std::abs(sum) + 1e-12);
}

void Sample::CheckSpectrum(const UXXmlWrapperBase& group, const json& expected) {
    json attributes = json::object();
    CWBOStringArray names;
    CWBOStringArray values;
    group.GetPropertyNamesAndValues(names, &values, nullptr);
    for (int i = 0; i < names.GetSize(); ++i) {
        if (names[i] == "Label" || names[i] == "FileDataDimsVector") continue;
        attributes[static_cast<const char*>(names[i])] = static_cast<const char*>(values[i]);
    }
    EXPECT_EQ(attributes, expected["attributes"]);
    EXPECT_EQ(child_text(group, Is2006() ? "SourceType" : "MeasurementClassCode"),
              text_or_empty(expected["classCode"]));
    EXPECT_EQ(child_text(group, Is2006() ? "StartTime" : "StartDateTime"),
              text_or_empty(expected["start"]));
    if (!Is2006()) {
        EXPECT_EQ(child_text(group, "RealTimeDuration"), text_or_empty(expected["real"]));
    }

    json columns = json::array();
    UXXmlWrapperBase energies;
    for (UXXmlWrapperBase& child : children(group)) {
        if (tag_of(child).rfind("ChannelData_", 0) == 0) columns.push_back(column_facts(child));
        if (tag_of(child).rfind("Energy", 0) == 0) energies = child;
    }
    EXPECT_EQ(columns, expected["columns"]);
    CheckEnergies(energies, expected, expected["columns"][0]["n"]);
}

TEST_P(Sample, DetectorsAgree) {
    CWBOStringArray detectors = uxtest::string_list({"before"});
    const int result = VCTree_n42_(nullptr, path_.c_str(), &detectors, nullptr, kPreview);
    if (truth_.is_null()) {
        EXPECT_EQ(result, -9093);
        EXPECT_THAT(uxtest::texts(detectors), testing::ElementsAre("before"));
        return;
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(json(uxtest::texts(detectors)), truth_["detectors"]);
}

TEST_P(Sample, SpectraAndGrossCountsAgree) {
    uxtest::TestTree tree("<t><old/></t>");
    const int result = VCTree_n42_(&tree, path_.c_str(), nullptr, nullptr, 0);
    if (truth_.is_null()) {
        EXPECT_EQ(result, -9093);
        EXPECT_EQ(tree.text(), uxtest::tree_text("<t><old/></t>"));
        return;
    }
    ASSERT_EQ(result, 0);
    if (truth_["spectra"].empty() && truth_["gross"].empty()) {
        EXPECT_EQ(tree.text(), uxtest::tree_text("<t><old/></t>"));
        return;
    }

    std::vector<UXXmlWrapperBase> spectra;
    std::vector<UXXmlWrapperBase> gross;
    const UXXmlWrapperBase measurements = tree.at("n42/RadMeasurements");
    for (UXXmlWrapperBase& measurement : children(measurements)) {
        const bool isGross = tag_of(measurement) == "GrossCounts";
        for (UXXmlWrapperBase& child : children(measurement)) {
            (isGross ? gross : spectra).push_back(child);
        }
    }
    const std::vector<json> expected = WrittenSpectra();
    ASSERT_EQ(spectra.size(), expected.size());
    for (std::size_t i = 0; i < spectra.size(); ++i) {
        SCOPED_TRACE("spectrum " + std::to_string(i));
        CheckSpectrum(spectra[i], expected[i]);
    }
    ASSERT_EQ(gross.size(), truth_["gross"].size());
    for (std::size_t i = 0; i < gross.size(); ++i) {
        const json& count = truth_["gross"][i];
        EXPECT_EQ(attribute(gross[i], "id"), text_or_empty(count["id"]));
        EXPECT_EQ(std::strtod(text_of(gross[i]).c_str(), nullptr),
                  std::strtod(count["text"].get<std::string>().c_str(), nullptr));
    }
}

std::vector<std::string> sample_names() {
    std::vector<std::string> out;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
        std::string extension = entry.path().extension().string();
        if (extension == ".n42" || extension == ".N42") out.push_back(entry.path().filename());
    }
    std::sort(out.begin(), out.end());
    return out;
}
std::string test_name(const testing::TestParamInfo<std::string>& info) {
    std::string out;
    for (const char c : info.param) out += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return out;
}
INSTANTIATE_TEST_SUITE_P(VCTree_n42_, Sample, testing::ValuesIn(sample_names()), test_name);

}  // namespace
