// Files that are broken, of another kind, or meant to do harm.
#include <cstddef>
#include <string>

#include <gmock/gmock.h>

#include "uxtree/import/n42.h"

#include "import/n42_support.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class RefusedFiles : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(VCTree_n42_, RefusedFiles,
                         testing::Values("", "no xml", "<RadInstrumentData>",
                                         "<RadInstrumentData/><x/>", "<Other/>",
                                         "<radinstrumentdata/>", "<x:RadInstrumentData/>",
                                         "<Other><RadInstrumentData/></Other>"));
TEST_P(RefusedFiles, AreOfNeitherForm) {
    for (const DWORD flags : {DWORD{0}, kPreview}) {
        const Import import(GetParam(), {"kept"}, flags);
        EXPECT_EQ(import.result, -9093);
        EXPECT_EQ(import.tree.text(), kNothing);
        EXPECT_EQ(import.infoTree.text(), "<info></info>");
        EXPECT_THAT(texts(import.detectors), ElementsAre("kept"));
    }
}

TEST(VCTree_n42_, TruncatedFilesAreRefusedAtEveryByte) {
    const std::string whole =
        "<?xml version='1.0'?><RadInstrumentData xmlns:n='x'><!-- c --><RadDetectorInformation "
        "id='A'/><EnergyCalibration id='e'><CoefficientValues>0 1</CoefficientValues>"
        "</EnergyCalibration>" +
        measured(spectrum_of("1 0 5", kCounted)) + "</RadInstrumentData>";
    const TemporaryFolder folder;
    TestTree tree("<t><old/></t>");
    UXXmlWrapperBase root = tree.root();

    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string path = folder.write("cut.n42", whole.substr(0, length));
        ASSERT_EQ(VCTree_n42_(&root, path.c_str(), nullptr, nullptr, 0), -9093) << length;
    }
    EXPECT_EQ(tree.text(), kNothing);
}

TEST(VCTree_n42_, MegabytesOfAttributeAndMillionsOfNothingArePassedOver) {
    const std::string huge(1 << 20, 'x');
    const Import attribute(
        in_2011("<RadDetectorInformation id='" + huge + "'/>" +
                measured("<Spectrum id='" + huge + "'><ChannelData>1</ChannelData></Spectrum>")));
    const Import nothing(in_2011(repeated("<RadMeasurement/>", 300000)));
    const Import nothing2006(in_2006(repeated("<Measurement/>", 300000)));

    EXPECT_EQ(attribute.result, 0);
    EXPECT_THAT(attribute.spectrum(), HasSubstr("<Spectrum id=\"" + huge + "\""));
    EXPECT_EQ(nothing.result, 0);
    EXPECT_EQ(nothing.tree.text(), kNothing);
    EXPECT_EQ(nothing2006.result, 0);
    EXPECT_EQ(nothing2006.tree.text(), kNothing);
}

TEST(VCTree_n42_, LevelsInLevelsCostNoMachineStack) {
    const Import import(in_2006("<Measurement>" + repeated("<DetectorData>", 5000) +
                                spectrum_of("1") + repeated("</DetectorData>", 5000) +
                                "</Measurement>"));

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(), kNothing);
}

}  // namespace
