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
        EXPECT_EQ(import.infoTree.text(), tree_text("<info/>"));
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

    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string path = folder.write("cut.n42", whole.substr(0, length));
        ASSERT_EQ(VCTree_n42_(&tree, path.c_str(), nullptr, nullptr, 0), -9093) << length;
    }
    EXPECT_EQ(tree.text(), kNothing);
}

// A text that stands once in the file and in the tree with every spectrum.
class SharedTexts : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(
    VCTree_n42_, SharedTexts,
    testing::Values(
        "1<RadMeasurement><MeasurementClassCode>LONG</MeasurementClassCode>SPECTRA</"
        "RadMeasurement>",
        "1<RadMeasurement><MeasurementClassCode>c</MeasurementClassCode>"
        "<StartDateTime>LONG</StartDateTime>SPECTRA</RadMeasurement>",
        "1<RadMeasurement><MeasurementClassCode>c</MeasurementClassCode>"
        "<RealTimeDuration>LONG</RealTimeDuration>SPECTRA</RadMeasurement>",
        "1<RadMeasurement><MeasurementClassCode>LONG</MeasurementClassCode>COUNTS</RadMeasurement>",
        "1<EnergyCalibration id='e'><CoefficientValues>0 LONG</CoefficientValues>"
        "</EnergyCalibration><RadMeasurement><MeasurementClassCode>c</MeasurementClassCode>SPECTRA"
        "</RadMeasurement>",
        "1<EnergyCalibration id='LONG'><CoefficientValues>0 1</CoefficientValues>"
        "</EnergyCalibration><RadMeasurement><MeasurementClassCode>c</MeasurementClassCode>SPECTRA"
        "</RadMeasurement>",
        "2<Measurement><StartTime>LONG</StartTime>SPECTRA</Measurement>",
        "2<Measurement><SampleRealTime>LONG</SampleRealTime>SPECTRA</Measurement>",
        "2<Measurement><DetectorData DetectorType='LONG'>SPECTRA</DetectorData></Measurement>",
        "2<Measurement><MeasuredItemInformation><MeasurementLocation><Coordinates>LONG"
        "</Coordinates></MeasurementLocation></MeasuredItemInformation>SPECTRA</Measurement>",
        "2<Calibration Type='Energy' ID='e' EnergyUnits='LONG'><Equation Model='Polynomial'>"
        "<Coefficients>0 1</Coefficients></Equation></Calibration><Measurement>SPECTRA"
        "</Measurement>"));
TEST_P(SharedTexts, AreNotRepeatedWithoutEnd) {
    const auto file_with = [](int spectra) {
        std::string content = GetParam();
        const bool is2011 = content[0] == '1';
        content.erase(0, 1);
        const auto put = [&](const std::string& mark, const std::string& text) {
            const std::size_t at = content.find(mark);
            if (at != std::string::npos) content.replace(at, mark.size(), text);
        };
        put("LONG", std::string(1 << 20, '7'));
        put("SPECTRA", repeated("<Spectrum energyCalibrationReference='e' CalibrationIDs='e'>"
                                "<ChannelData>1</ChannelData></Spectrum>",
                                spectra));
        put("COUNTS", repeated("<GrossCounts><CountData>1</CountData></GrossCounts>", spectra));
        return is2011 ? in_2011(content) : in_2006(content);
    };
    const Import few(file_with(3));
    const Import many(file_with(60));

    EXPECT_EQ(few.result, 0);
    EXPECT_THAT(few.tree.text(), HasSubstr("<n42"));
    EXPECT_EQ(many.result, -9096);
    EXPECT_EQ(many.tree.text(), kNothing);
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
