#include "uxtree/import/n42.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using uxtest::string_list;
using uxtest::TemporaryFolder;
using uxtest::TestTree;
using uxtest::texts;
using uxtest::to_text;

constexpr DWORD kPreview = 0x10000;

std::string repeated(const std::string& text, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += text;
    return out;
}

// A file with the content, imported into the tree "<t><old/></t>" with the information tree
// "<info/>".
class Import {
public:
    explicit Import(const std::string& content, const std::vector<std::string>& selection = {},
                    DWORD flags = 0)
        : detectors(string_list(selection)) {
        UXXmlWrapperBase root = tree.root();
        UXXmlWrapperBase info = infoTree.root();
        const std::string path = folder_.write("spectra.n42", content);
        result = VCTree_n42_(&root, path.c_str(), &detectors, &info, flags);
    }
    // The element "RadMeasurements" as text.
    std::string measurements() const { return to_text(tree.at("n42/RadMeasurements")); }
    std::string spectrum() const {
        return to_text(tree.at("n42/RadMeasurements/RadMeasurement/Spectrum"));
    }
    std::string channels(const char* path) const {
        UXXmlWrapperBase node = tree.at((std::string("n42/RadMeasurements/") + path).c_str());
        CStringUTF8 text;
        node.NodeValue(text, 1, 1, nullptr);
        return static_cast<const char*>(text);
    }

    TestTree tree{"<t><old/></t>"};
    TestTree infoTree{"<info/>"};
    CWBOStringArray detectors;
    int result = 0;

private:
    TemporaryFolder folder_;
};

std::string in_2011(const std::string& content) {
    return "<RadInstrumentData>" + content + "</RadInstrumentData>";
}
// A foreground measurement.
std::string measured(const std::string& content) {
    return "<RadMeasurement><MeasurementClassCode>F</MeasurementClassCode>" + content +
           "</RadMeasurement>";
}
std::string spectrum_of(const std::string& channels, const std::string& attributes = "") {
    return "<Spectrum><ChannelData" + attributes + ">" + channels + "</ChannelData></Spectrum>";
}
std::string in_2006(const std::string& content) {
    return "<N42InstrumentData>" + content + "</N42InstrumentData>";
}

// The channels of a single spectrum as text.
std::string read_channels(const std::string& channels, const std::string& attributes = "") {
    const Import import(in_2011(measured(spectrum_of(channels, attributes))));
    EXPECT_EQ(import.result, 0);
    return import.channels("RadMeasurement/Spectrum/ChannelData_0");
}
const char* const kCounted = " compressionCode='CountedZeroes'";

const char* const kNothing = "<t><old></old></t>";

// ---- the whole tree
// ------------------------------------------------------------------------------

TEST(VCTree_n42_, WritesOneTreeOf2011) {
    const Import import(
        in_2011("<RadDetectorInformation id='D1'/>"
                "<EnergyCalibration id='E1'><CoefficientValues> 1 2 0.5\n</CoefficientValues>"
                "</EnergyCalibration>"
                "<RadMeasurement id='M'><MeasurementClassCode>Foreground</MeasurementClassCode>"
                "<StartDateTime>2026-01-02T03:04:05Z</StartDateTime>"
                "<RealTimeDuration>PT2S</RealTimeDuration>"
                "<Spectrum id='S' energyCalibrationReference='E1'>"
                "<LiveTimeDuration>PT1.5S</LiveTimeDuration>"
                "<ChannelData compressionCode='None'>1 0\t2\r\n3</ChannelData></Spectrum>"
                "<GrossCounts id='G' radDetectorInformationReference='D1'>"
                "<LiveTimeDuration>PT1.5S</LiveTimeDuration><CountData>42</CountData>"
                "</GrossCounts></RadMeasurement>"));

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(),
              "<t><n42><RadMeasurements FileDataDimsVector=\"1\">"
              "<RadMeasurement Label=\"RadMeasurement_1\">"
              "<Spectrum id=\"S\" energyCalibrationReference=\"E1\" Label=\"Spectrum_0\""
              " FileDataDimsVector=\"1\">"
              "<MeasurementClassCode Label=\"MeasurementClassCode\">Foreground"
              "</MeasurementClassCode>"
              "<StartDateTime Label=\"StartDateTime\">2026-01-02T03:04:05Z</StartDateTime>"
              "<RealTimeDuration Label=\"RealTimeDuration\">PT2S</RealTimeDuration>"
              "<LiveTimeDuration Label=\"LiveTimeDuration\">PT1.5S</LiveTimeDuration>"
              "<Energy FileDataDimsVector=\"4\" Label=\"Energy\" id=\"E1\" ColDesignation=\"3\""
              " Comment=\" 1 2 0.5&#10;\">3.5 7 11.5 17</Energy>"
              "<ChannelData_0 Label=\"ChannelData_0\" FileDataDimsVector=\"4\">1 0 2 3"
              "</ChannelData_0></Spectrum></RadMeasurement>"
              "<GrossCounts FileDataDimsVector=\"1\">"
              "<RadMeasurement Label=\"RadMeasurement_0\" id=\"G\">42"
              "<MeasurementClassCode Label=\"MeasurementClassCode\">Foreground"
              "</MeasurementClassCode>"
              "<StartDateTime Label=\"StartDateTime\">2026-01-02T03:04:05Z</StartDateTime>"
              "<LiveTimeDuration Label=\"LiveTimeDuration\">1.5 S</LiveTimeDuration>"
              "</RadMeasurement></GrossCounts></RadMeasurements></n42></t>");
}

TEST(VCTree_n42_, WritesOneTreeOf2006) {
    const Import import(
        in_2006("<Measurement UUID='u'><MeasuredItemInformation><MeasurementLocation>"
                "<Coordinates>1 2 3</Coordinates></MeasurementLocation></MeasuredItemInformation>"
                "<DetectorData><StartTime>10:00</StartTime><SampleRealTime>PT1S</SampleRealTime>"
                "<DetectorMeasurement Detector='A' DetectorType='Gamma'><SpectrumMeasurement>"
                "<Spectrum CalibrationIDs='none c' Type='PHA'><RealTime>PT9S</RealTime>"
                "<LiveTime>PT0.9S</LiveTime><SourceType>Item</SourceType>"
                "<ChannelData Compression='CountedZeroes'>0 2 5</ChannelData></Spectrum>"
                "</SpectrumMeasurement></DetectorMeasurement></DetectorData></Measurement>"
                "<Calibration ID='c' Type='Energy' EnergyUnits='keV'><Equation Model='Polynomial'>"
                "<Coefficients>0 3</Coefficients></Equation></Calibration>"));

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(),
              "<t><n42><RadMeasurements FileDataDimsVector=\"1\">"
              "<RadMeasurement Label=\"RadMeasurement_1\">"
              "<Spectrum CalibrationIDs=\"none c\" Type=\"PHA\" Label=\"Spectrum_0\""
              " FileDataDimsVector=\"1\">"
              "<StartTime Label=\"StartTime\">10:00</StartTime>"
              "<SampleRealTime Label=\"SampleRealTime\">PT1S</SampleRealTime>"
              "<LiveTime Label=\"LiveTime\">PT0.9S</LiveTime>"
              "<SourceType Label=\"SourceType\">Item</SourceType>"
              "<DetectorType Label=\"DetectorType\">Gamma</DetectorType>"
              "<Coordinates Label=\"Coordinates\">1 2 3</Coordinates>"
              "<Energy FileDataDimsVector=\"3\" Label=\"Energy\" id=\"c\" ColDesignation=\"3\""
              " Comment=\"0 3\" Unit=\"keV\">3 6 9</Energy>"
              "<ChannelData_0 Label=\"ChannelData_0\" FileDataDimsVector=\"3\">0 0 5"
              "</ChannelData_0></Spectrum></RadMeasurement></RadMeasurements></n42></t>");
    EXPECT_EQ(import.infoTree.text(), "<info></info>");
}

// ---- channels
// ------------------------------------------------------------------------------------

struct ChannelCase {
    const char* text;
    const char* counted;
    const char* plain;
};
class ChannelLists : public testing::TestWithParam<ChannelCase> {};
INSTANTIATE_TEST_SUITE_P(
    VCTree_n42_, ChannelLists,
    testing::Values(ChannelCase{"5 0 3 7", "5 0 0 0 7", "5 0 3 7"}, ChannelCase{"4 0", "4", "4 0"},
                    ChannelCase{"1 0 0 2", "1 2", "1 0 0 2"},
                    ChannelCase{"1 0 2.4 3", "1 0 0 3", "1 0 2.4 3"},
                    ChannelCase{"1 0 2.5 3", "1 0 0 0 3", "1 0 2.5 3"},
                    ChannelCase{"1 0 0.4 3", "1 3", "1 0 0.4 3"},
                    ChannelCase{"1 0 -4 3", "1 3", "1 0 -4 3"},
                    ChannelCase{"1 0.0 2 3", "1 0 0 3", "1 0 2 3"},
                    ChannelCase{"1 x 2 3", "1 0 0 3", "1 0 2 3"},
                    ChannelCase{"1 nan 1 inf 1 0x10 1", "1 0 0 0", "1 0 1 0 1 0 1"},
                    ChannelCase{"2.38062e+06 -1.5 1e999 2", "2380620 -1.5 0 0", "2380620 -1.5 0 2"},
                    ChannelCase{"+7 .5 5. 12345678901234567890", "7 0.5 5 12345678901234567000",
                                "7 0.5 5 12345678901234567000"},
                    ChannelCase{" \t1\r\n\r\n2  ", "1 2", "1 2"},
                    ChannelCase{"123456789012345 0.000001 1234.5678",
                                "123456789012345 1e-06 "
                                "1234.5678",
                                "123456789012345 1e-06 1234.5678"}));
TEST_P(ChannelLists, PlainAndCompressed) {
    const auto as_numbers = [](const std::string& text) {
        TestTree tree(("<n>" + text + "</n>").c_str());
        CArray<double, double> values;
        UXXmlWrapperBase node = tree.root();
        node.NodeValue(values, 1);
        return uxtest::numbers(values);
    };
    EXPECT_EQ(as_numbers(read_channels(GetParam().text, kCounted)), as_numbers(GetParam().counted));
    EXPECT_EQ(as_numbers(read_channels(GetParam().text)), as_numbers(GetParam().plain));
}

TEST(VCTree_n42_, CompressionIsKnownUnderBothAttributeNames) {
    EXPECT_EQ(read_channels("0 3", " Compression='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='None' Compression='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='None'"), "0 3");
    EXPECT_EQ(read_channels("0 3", " compressionCode='countedzeroes'"), "0 3");
    EXPECT_EQ(read_channels("0 3", " Code='CountedZeroes'"), "0 3");
}

TEST(VCTree_n42_, RunsStopAtTheLongestListAndEndIt) {
    const Import import(in_2011(measured(spectrum_of("7 0 2000000000 8", kCounted))));
    UXXmlWrapperBase column =
        import.tree.at("n42/RadMeasurements/RadMeasurement/Spectrum/ChannelData_0");
    CArray<double, double> counts;

    ASSERT_EQ(column.NodeValue(counts, 1), 1);

    EXPECT_EQ(counts.GetSize(), 1 << 20);
    EXPECT_EQ(counts[0], 7);
    EXPECT_EQ(counts[counts.GetSize() - 1], 0);
}

TEST(VCTree_n42_, WrittenValuesAreKeptBeyondTheLongestList) {
    const std::string many = repeated("1 ", (1 << 20) + 5);
    const Import import(in_2011(measured(spectrum_of(many + "0 1 9", kCounted))));
    UXXmlWrapperBase column =
        import.tree.at("n42/RadMeasurements/RadMeasurement/Spectrum/ChannelData_0");
    CArray<double, double> counts;

    ASSERT_EQ(column.NodeValue(counts, 1), 1);

    EXPECT_EQ(counts.GetSize(), (1 << 20) + 5);
}

TEST(VCTree_n42_, RunsOfAFileShareOneAllowance) {
    // Seventeen runs of a million zeros; the allowance covers sixteen and what the bytes add.
    const std::string file = in_2011(measured(repeated(spectrum_of("0 1048576", kCounted), 17) +
                                              spectrum_of("0 2 3 0 5 4", kCounted)));
    const Import import(file);
    const auto size_of = [&](int place) {
        UXXmlWrapperBase column = import.tree.at(("n42/RadMeasurements/RadMeasurement/Spectrum[" +
                                                  std::to_string(place) + "]/ChannelData_0")
                                                     .c_str());
        int size = 0;
        column.LoadXDEArraySize(&size);
        return size;
    };

    for (int i = 0; i < 16; ++i) EXPECT_EQ(size_of(i), 1 << 20);
    // Each full run added 1,048,574 values, two less than the allowance holds per run.
    EXPECT_EQ(size_of(16), 16 * 2 + 16 * static_cast<int>(file.size()) + 2);
    // A run of two adds nothing and still fits; the next one is cut and ends its list.
    EXPECT_EQ(import.channels("RadMeasurement/Spectrum[17]/ChannelData_0"), "0 0 3 0 0");
}

TEST(VCTree_n42_, RunsOfSpectraThatAreNotWrittenCountToo) {
    const std::string unwritten =
        "<RadMeasurement>" + repeated(spectrum_of("0 1048576", kCounted), 16) + "</RadMeasurement>";
    const std::string file = in_2011(unwritten + measured(spectrum_of("0 1048576", kCounted)));
    const Import import(file);
    UXXmlWrapperBase column =
        import.tree.at("n42/RadMeasurements/RadMeasurement/Spectrum/ChannelData_0");
    int size = 0;

    column.LoadXDEArraySize(&size);

    EXPECT_EQ(size, 16 * 2 + 16 * static_cast<int>(file.size()) + 2);
}

TEST(VCTree_n42_, SeveralChannelListsOfASpectrumAreColumns) {
    const Import import(in_2011(measured(
        "<Spectrum><ChannelData>1 2</ChannelData><ChannelData/><ChannelData>3</ChannelData>"
        "</Spectrum>")));

    EXPECT_THAT(import.spectrum(),
                HasSubstr("<ChannelData_0 Label=\"ChannelData_0\" FileDataDimsVector=\"2\">1 2"
                          "</ChannelData_0><ChannelData_1 Label=\"ChannelData_1\""
                          " FileDataDimsVector=\"1\">3</ChannelData_1></Spectrum>"));
    EXPECT_THAT(import.spectrum(), HasSubstr("FileDataDimsVector=\"2\"><MeasurementClassCode"));
}

// ---- measurements and spectra
// --------------------------------------------------------------------

TEST(VCTree_n42_, MeasurementsCountFromOneAndOnlyThoseWritten) {
    const Import import(in_2011("<RadMeasurement/>" + measured(spectrum_of("1")) +
                                "<RadMeasurement>" + spectrum_of("2") + "</RadMeasurement>" +
                                measured("<Spectrum/>") + measured(spectrum_of("3"))));

    EXPECT_THAT(import.measurements(), HasSubstr("<RadMeasurements FileDataDimsVector=\"2\">"));
    EXPECT_EQ(import.channels("RadMeasurement[0]/Spectrum/ChannelData_0"), "1");
    EXPECT_EQ(import.channels("RadMeasurement[1]/Spectrum/ChannelData_0"), "3");
    EXPECT_THAT(to_text(import.tree.at("n42/RadMeasurements/RadMeasurement[1]")),
                HasSubstr("<RadMeasurement Label=\"RadMeasurement_2\">"));
}

TEST(VCTree_n42_, SeveralSpectraGetNumberedEnergies) {
    const Import import(in_2011(
        "<EnergyCalibration id='e'><CoefficientValues>0 1</CoefficientValues></EnergyCalibration>" +
        measured("<Spectrum energyCalibrationReference='e'><ChannelData>1</ChannelData></Spectrum>"
                 "<Spectrum/><Spectrum energyCalibrationReference='e'><ChannelData>1 2"
                 "</ChannelData></Spectrum>")));

    EXPECT_THAT(import.measurements(), HasSubstr("<Energy_0 FileDataDimsVector=\"1\" "
                                                 "Label=\"Energy\" id=\"e\" "
                                                 "ColDesignation=\"3\" Comment=\"0 1\">1<"));
    EXPECT_THAT(import.measurements(), HasSubstr("<Spectrum energyCalibrationReference=\"e\" "
                                                 "Label=\"Spectrum_1\""));
    EXPECT_THAT(import.measurements(), HasSubstr("<Energy_1 FileDataDimsVector=\"2\" "
                                                 "Label=\"Energy\" id=\"e\" "
                                                 "ColDesignation=\"3\" Comment=\"0 1\">1 2<"));
}

TEST(VCTree_n42_, SpectrumWithoutClassCodeIsNotWrittenButClearsTheTree) {
    const Import import(in_2011("<RadMeasurement>" + spectrum_of("1") + "</RadMeasurement>"));

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(), "<t><n42><RadMeasurements></RadMeasurements></n42></t>");
}

TEST(VCTree_n42_, TextsAreKeptAsReadAndTheFirstOfRepeatedOnesWins) {
    const Import import(
        in_2011("<RadMeasurement><MeasurementClassCode> A </MeasurementClassCode>"
                "<MeasurementClassCode>B</MeasurementClassCode><StartDateTime/>"
                "<StartDateTime>late</StartDateTime>"
                "<Spectrum><LiveTimeDuration>PT5s</LiveTimeDuration><LiveTimeDuration>x"
                "</LiveTimeDuration><ChannelData>1</ChannelData></Spectrum></RadMeasurement>"));

    EXPECT_THAT(import.spectrum(),
                HasSubstr("<MeasurementClassCode Label=\"MeasurementClassCode\"> A "
                          "</MeasurementClassCode><StartDateTime Label=\"StartDateTime\">"
                          "</StartDateTime><RealTimeDuration Label=\"RealTimeDuration\">"
                          "</RealTimeDuration><LiveTimeDuration Label=\"LiveTimeDuration\">PT5s"
                          "</LiveTimeDuration>"));
}

TEST(VCTree_n42_, ElementsCountOnlyInTheirPlaces) {
    const std::string elsewhere = "<DerivedData><MeasurementClassCode>F</MeasurementClassCode>" +
                                  spectrum_of("1") + "</DerivedData><AnalysisResults>" +
                                  measured(spectrum_of("1")) + "</AnalysisResults>";
    const Import import(in_2011(elsewhere + spectrum_of("1")));

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(), kNothing);
}

// ---- energies
// ------------------------------------------------------------------------------------

std::string with_calibration(const std::string& calibration, const std::string& reference = "e",
                             const std::string& channels = "1 2") {
    const Import import(
        in_2011(measured("<Spectrum energyCalibrationReference='" + reference + "'><ChannelData>" +
                         channels + "</ChannelData></Spectrum>") +
                calibration));
    EXPECT_EQ(import.result, 0);
    const std::string text = import.spectrum();
    const std::size_t from = text.find("<Energy");
    return from == std::string::npos ? "" : text.substr(from, text.find("<ChannelData_0") - from);
}

TEST(VCTree_n42_, EnergiesAreTakenFromCalibrationsBehindTheMeasurements) {
    EXPECT_EQ(with_calibration("<EnergyCalibration id='e'><CoefficientValues>-1.5 2 0.25 0 0"
                               "</CoefficientValues></EnergyCalibration>"),
              "<Energy FileDataDimsVector=\"2\" Label=\"Energy\" id=\"e\" ColDesignation=\"3\""
              " Comment=\"-1.5 2 0.25 0 0\">0.75 3.5</Energy>");
}

TEST(VCTree_n42_, BoundariesAreWrittenAsGivenWithTheSizeOfTheChannels) {
    EXPECT_EQ(with_calibration("<EnergyCalibration id='e'><CoefficientValues> \n"
                               "</CoefficientValues><EnergyBoundaryValues>1 2.5 4"
                               "</EnergyBoundaryValues></EnergyCalibration>"),
              "<Energy FileDataDimsVector=\"2\" Label=\"Energy\" id=\"e\" ColDesignation=\"3\""
              " Comment=\"EnergyBoundaryValues\">1 2.5 4</Energy>");
}

TEST(VCTree_n42_, BoundariesAreReadOnlyWithoutCoefficients) {
    EXPECT_THAT(with_calibration("<EnergyCalibration id='e'><EnergyBoundaryValues>8 9"
                                 "</EnergyBoundaryValues><CoefficientValues>0 1"
                                 "</CoefficientValues></EnergyCalibration>"),
                HasSubstr("Comment=\"0 1\">1 2</Energy>"));
}

TEST(VCTree_n42_, UnknownOrEmptyCalibrationsGiveNoEnergies) {
    const std::string e =
        "<EnergyCalibration id='e'><CoefficientValues>0 1</CoefficientValues></EnergyCalibration>";
    EXPECT_EQ(with_calibration(e, "other"), "");
    EXPECT_EQ(with_calibration(e, ""), "");
    EXPECT_EQ(with_calibration("<EnergyCalibration id=''><CoefficientValues>0 1"
                               "</CoefficientValues></EnergyCalibration>",
                               ""),
              "");
    EXPECT_EQ(with_calibration("<EnergyCalibration id='e'/>"), "");
    EXPECT_EQ(with_calibration("<FWHMCalibration id='e'><CoefficientValues>0 1"
                               "</CoefficientValues></FWHMCalibration>"),
              "");
}

TEST(VCTree_n42_, FirstCalibrationWithTheIdWins) {
    EXPECT_THAT(with_calibration("<EnergyCalibration id='e'><CoefficientValues>0 1"
                                 "</CoefficientValues></EnergyCalibration><EnergyCalibration "
                                 "id='e'><CoefficientValues>0 9</CoefficientValues>"
                                 "</EnergyCalibration>"),
                HasSubstr(">1 2</Energy>"));
}

TEST(VCTree_n42_, NothingIsReadAfterACalibrationWithoutId) {
    const std::string nameless =
        "<EnergyCalibration><CoefficientValues>0 1</CoefficientValues></EnergyCalibration>";
    const Import before(
        in_2011(measured(spectrum_of("1")) + nameless + measured(spectrum_of("2"))));
    const Import after(in_2011(nameless + measured(spectrum_of("1"))));

    EXPECT_THAT(before.measurements(), HasSubstr("<RadMeasurements FileDataDimsVector=\"1\">"));
    EXPECT_EQ(after.result, 0);
    EXPECT_EQ(after.tree.text(), kNothing);
}

TEST(VCTree_n42_, EndlessCoefficientsTakeNoTime) {
    const auto start = std::chrono::steady_clock::now();

    with_calibration("<EnergyCalibration id='e'><CoefficientValues>" + repeated("1e-300 ", 200000) +
                         "</CoefficientValues></EnergyCalibration>",
                     "e", repeated("1 ", 20000));

    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

// ---- gross counts
// --------------------------------------------------------------------------------

std::string gross(const std::string& detector, const std::string& content = "") {
    return "<GrossCounts" +
           (detector.empty() ? "" : " radDetectorInformationReference='" + detector + "'") + ">" +
           content + "</GrossCounts>";
}

TEST(VCTree_n42_, GrossCountsNeedNoClassCode) {
    const Import import(in_2011("<RadMeasurement><StartDateTime>s</StartDateTime>" + gross("") +
                                "</RadMeasurement>" +
                                measured(gross("",
                                               "<CountData>7 8 9"
                                               "</CountData>"))));

    EXPECT_EQ(import.measurements(),
              "<RadMeasurements><GrossCounts FileDataDimsVector=\"2\">"
              "<RadMeasurement Label=\"RadMeasurement_0\">0"
              "<MeasurementClassCode Label=\"MeasurementClassCode\"></MeasurementClassCode>"
              "<StartDateTime Label=\"StartDateTime\">s</StartDateTime></RadMeasurement>"
              "<RadMeasurement Label=\"RadMeasurement_1\">7"
              "<MeasurementClassCode Label=\"MeasurementClassCode\">F</MeasurementClassCode>"
              "<StartDateTime Label=\"StartDateTime\"></StartDateTime></RadMeasurement>"
              "</GrossCounts></RadMeasurements>");
}

struct CountCase {
    const char* text;
    const char* count;
};
class CountTexts : public testing::TestWithParam<CountCase> {};
INSTANTIATE_TEST_SUITE_P(VCTree_n42_, CountTexts,
                         testing::Values(CountCase{"5 22 200", "5"}, CountCase{" \n 3.5x", "3.5"},
                                         CountCase{"", "0"}, CountCase{"x5", "0"},
                                         CountCase{"-2e2", "-200"}, CountCase{"+4", "4"},
                                         CountCase{"+-4", "0"}, CountCase{"0x10", "0"},
                                         CountCase{"nan", "0"}, CountCase{"-inf", "0"},
                                         CountCase{"1e999", "0"}, CountCase{".5", "0.5"},
                                         CountCase{".", "0"}, CountCase{"5e", "5"}));
TEST_P(CountTexts, GiveTheirLeadingNumber) {
    const Import import(in_2011(
        measured(gross("", std::string("<CountData>") + GetParam().text + "</CountData>"))));
    UXXmlWrapperBase node = import.tree.at("n42/RadMeasurements/GrossCounts/RadMeasurement");
    CStringUTF8 count;
    node.NodeValue(count, 1, 1, nullptr);

    EXPECT_EQ(count, GetParam().count);
}

TEST(VCTree_n42_, SelectionFiltersGrossCountsAndDetectorsButNoSpectra) {
    const std::string file = in_2011(
        "<RadDetectorInformation id='A'/><RadDetectorInformation id='B'/>"
        "<RadDetectorInformation/>" +
        measured("<Spectrum id='s' radDetectorInformationReference='A'><ChannelData>1"
                 "</ChannelData></Spectrum>" +
                 gross("A", "<CountData>1</CountData>") + gross("B", "<CountData>2</CountData>") +
                 gross("", "<CountData>3</CountData>")));
    const Import import(file, {"B", "b"});

    EXPECT_THAT(import.measurements(), HasSubstr("<Spectrum id=\"s\""));
    EXPECT_THAT(import.measurements(), HasSubstr("<GrossCounts FileDataDimsVector=\"1\">"
                                                 "<RadMeasurement Label=\"RadMeasurement_0\">2"));
    EXPECT_EQ(import.infoTree.text(),
              "<info><n42 Branch=\"1\" _ux_id=\"268435456\"><Detectors>"
              "<RadDetectorInformation id=\"B\" Label=\"B\"></RadDetectorInformation>"
              "</Detectors></n42></info>");
    EXPECT_THAT(texts(import.detectors), ElementsAre("B", "b"));
}

TEST(VCTree_n42_, SelectionOfOtherDetectorsImportsNoGrossCountsAndNoDetectors) {
    const Import import(in_2011("<RadDetectorInformation id='A'/>" + measured(gross("A"))), {"C"});

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(), kNothing);
    EXPECT_EQ(import.infoTree.text(), "<info></info>");
}

// ---- the information tree
// ------------------------------------------------------------------------

TEST(VCTree_n42_, InformationTreeGetsEveryDetectorOnEveryImport) {
    const TemporaryFolder folder;
    const std::string path =
        folder.write("f.n42", in_2011("<RadDetectorInformation id='A'><Kind k='1'>NaI</Kind>"
                                      "</RadDetectorInformation><RadDetectorInformation/>"));
    TestTree tree("<t><old/></t>");
    TestTree info("<info><n42 Branch='0'/></info>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase infoRoot = info.root();
    const std::string copies =
        "<RadDetectorInformation id=\"A\" Label=\"A\"><Kind k=\"1\">NaI</Kind>"
        "</RadDetectorInformation><RadDetectorInformation Label=\"\"></RadDetectorInformation>";

    EXPECT_EQ(VCTree_n42_(&root, path.c_str(), nullptr, &infoRoot, 0), 0);
    EXPECT_EQ(info.text(),
              "<info><n42 Branch=\"1\"><Detectors>" + copies + "</Detectors></n42></info>");
    EXPECT_EQ(VCTree_n42_(&root, path.c_str(), nullptr, &infoRoot, 0), 0);
    EXPECT_EQ(info.text(), "<info><n42 Branch=\"1\"><Detectors>" + copies + copies +
                               "</Detectors></n42></info>");
    EXPECT_EQ(tree.text(), kNothing);
}

TEST(VCTree_n42_, InformationTreeMayBeMissingOrInvalid) {
    const TemporaryFolder folder;
    const std::string path = folder.write(
        "f.n42", in_2011("<RadDetectorInformation id='A'/>" + measured(spectrum_of("1"))));
    TestTree tree("<t/>");
    UXXmlWrapperBase root = tree.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(VCTree_n42_(&root, path.c_str(), nullptr, nullptr, 0), 0);
    EXPECT_EQ(VCTree_n42_(&root, path.c_str(), nullptr, &invalid, 0), 0);
    EXPECT_FALSE(invalid.IsNodeValid());
}

// ---- preview
// -------------------------------------------------------------------------------------

TEST(VCTree_n42_, PreviewListsDetectorsInFileOrderAndLeavesTheTreesAlone) {
    const Import import(in_2011("<RadDetectorInformation id='C'/><RadDetectorInformation/>" +
                                measured(spectrum_of("1")) +
                                "<RadDetectorInformation id='A'/><RadDetectorInformation id='C'/>"),
                        {"before"}, kPreview);

    EXPECT_EQ(import.result, 0);
    EXPECT_THAT(texts(import.detectors), ElementsAre("C", "A", "C"));
    EXPECT_EQ(import.tree.text(), kNothing);
    EXPECT_EQ(import.infoTree.text(), "<info></info>");
}

TEST(VCTree_n42_, PreviewPassesCalibrationsWithoutId) {
    const Import import(in_2011("<EnergyCalibration/><RadDetectorInformation id='A'/>"), {},
                        kPreview);
    EXPECT_THAT(texts(import.detectors), ElementsAre("A"));
}

TEST(VCTree_n42_, PreviewOf2006ListsTheDistinctDetectorsOfSpectra) {
    const Import import(
        in_2006("<Measurement Detector='M'><Spectrum Detector='B'/><Spectrum/>"
                "<DetectorData><DetectorMeasurement Detector='A'><SpectrumMeasurement><Spectrum/>"
                "<Spectrum Detector='B'/></SpectrumMeasurement></DetectorMeasurement>"
                "<DetectorMeasurement Detector='none'/></DetectorData></Measurement>"
                "<Measurement><Spectrum/><Spectrum Detector=''/></Measurement>"),
        {"before"}, kPreview);

    EXPECT_EQ(import.result, 0);
    EXPECT_THAT(texts(import.detectors), ElementsAre("B", "M", "A"));
    EXPECT_EQ(import.tree.text(), kNothing);
}

// ---- 2006
// ----------------------------------------------------------------------------------------

TEST(VCTree_n42_, SpectraOf2006AreTakenAtEveryLevelInDocumentOrder) {
    const Import import(in_2006("<Measurement>" + spectrum_of("1") + "<DetectorData>" +
                                spectrum_of("2") + "<DetectorMeasurement>" + spectrum_of("3") +
                                "<SpectrumMeasurement>" + spectrum_of("4") +
                                "</SpectrumMeasurement></DetectorMeasurement>" + spectrum_of("5") +
                                "</DetectorData><SpectrumMeasurement>" + spectrum_of("6") +
                                "</SpectrumMeasurement><AnalysisResults>" + spectrum_of("7") +
                                "</AnalysisResults><CountDoseData>" + spectrum_of("8") +
                                "</CountDoseData></Measurement>" + spectrum_of("9")));
    const std::string text = import.measurements();

    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(import.channels(
                      ("RadMeasurement/Spectrum[" + std::to_string(i) + "]/ChannelData_0").c_str()),
                  std::to_string(i + 1));
    }
    EXPECT_THAT(text, HasSubstr("Spectrum_5"));
    EXPECT_THAT(text, Not(HasSubstr("Spectrum_6")));
}

TEST(VCTree_n42_, NearerWordsOf2006Win) {
    const Import import(in_2006(
        "<Measurement><StartTime>outer</StartTime><SampleRealTime>PT1S</SampleRealTime>"
        "<DetectorData><Spectrum><StartTime>own</StartTime><ChannelData>1</ChannelData>"
        "<DetectorType>X</DetectorType></Spectrum><Spectrum><StartTime/><RealTime>PT8S</RealTime>"
        "<ChannelData>2</ChannelData></Spectrum>"
        "<StartTime>inner</StartTime><DetectorMeasurement DetectorType='Y'>" +
        spectrum_of("3") + "</DetectorMeasurement></DetectorData></Measurement>"));
    const auto spectrum = [&](int place) {
        return to_text(import.tree.at(
            ("n42/RadMeasurements/RadMeasurement/Spectrum[" + std::to_string(place) + "]")
                .c_str()));
    };
    const std::string sample = "<SampleRealTime Label=\"SampleRealTime\">PT1S</SampleRealTime>";

    EXPECT_THAT(spectrum(0), HasSubstr("<StartTime Label=\"StartTime\">own</StartTime>" + sample +
                                       "<DetectorType Label=\"DetectorType\">X</DetectorType>"
                                       "<ChannelData_0"));
    EXPECT_THAT(spectrum(1), HasSubstr("<StartTime Label=\"StartTime\">inner</StartTime>" + sample +
                                       "<ChannelData_0"));
    EXPECT_THAT(spectrum(2), HasSubstr(sample + "<DetectorType Label=\"DetectorType\">Y"
                                                "</DetectorType><ChannelData_0"));
}

TEST(VCTree_n42_, OwnRealTimeStandsInForAMissingSampleRealTime) {
    const Import import(
        in_2006("<Measurement><Spectrum><RealTime>PT8S</RealTime><RealTime>no</RealTime>"
                "<ChannelData>2</ChannelData></Spectrum></Measurement>"));

    EXPECT_THAT(import.spectrum(),
                HasSubstr("<SampleRealTime Label=\"SampleRealTime\">PT8S</SampleRealTime>"));
}

TEST(VCTree_n42_, MeasurementsOf2006WithoutSpectraAreLeftOut) {
    const Import import(in_2006("<Measurement/><Measurement>" + spectrum_of("") +
                                "</Measurement><Measurement>" + spectrum_of("1") +
                                "</Measurement>"));

    EXPECT_EQ(import.measurements(),
              "<RadMeasurements FileDataDimsVector=\"1\"><RadMeasurement "
              "Label=\"RadMeasurement_1\"><Spectrum Label=\"Spectrum_0\" FileDataDimsVector=\"1\">"
              "<ChannelData_0 Label=\"ChannelData_0\" FileDataDimsVector=\"1\">1</ChannelData_0>"
              "</Spectrum></RadMeasurement></RadMeasurements>");
}

std::string with_own_calibration(const std::string& own, const std::string& attributes = "",
                                 const std::string& behind = "") {
    const Import import(in_2006("<Measurement><Spectrum" + attributes + ">" + own +
                                "<ChannelData>1 2</ChannelData></Spectrum></Measurement>" +
                                behind));
    const std::string text = import.spectrum();
    const std::size_t from = text.find("<Energy");
    return from == std::string::npos ? "" : text.substr(from, text.find("<ChannelData_0") - from);
}
std::string calibration_2006(const std::string& attributes, const std::string& coefficients,
                             const std::string& equation = " Model='Polynomial'") {
    return "<Calibration" + attributes + "><Equation" + equation + "><Coefficients>" +
           coefficients + "</Coefficients></Equation></Calibration>";
}

TEST(VCTree_n42_, OwnCalibrationOf2006IsUsedWithoutReferences) {
    const std::string own = calibration_2006(" Type='Energy' EnergyUnits='keV'", "1 2");
    const std::string energies =
        "<Energy FileDataDimsVector=\"2\" Label=\"Energy\" ColDesignation=\"3\" Comment=\"1 2\""
        " Unit=\"keV\">3 5</Energy>";

    EXPECT_EQ(with_own_calibration(own), energies);
    EXPECT_EQ(with_own_calibration(calibration_2006(" Type='FWHM'", "7 8") + own), energies);
    EXPECT_EQ(with_own_calibration(own, " CalibrationIDs='x'"), "");
    EXPECT_EQ(with_own_calibration(own, " CalibrationIDs=''"), "");
}

TEST(VCTree_n42_, CalibrationsOf2006NeedNoTypeAndNoModelButNoOtherOnes) {
    EXPECT_THAT(with_own_calibration(calibration_2006("", "1 2", "")), HasSubstr(">3 5<"));
    EXPECT_EQ(with_own_calibration(calibration_2006("", "1 2", " Model='LowerChannelEdge'")), "");
    EXPECT_EQ(with_own_calibration(calibration_2006(" Type='energy'", "1 2")), "");
    EXPECT_THAT(with_own_calibration("<Calibration><Equation Model='Other'><Coefficients>9"
                                     "</Coefficients></Equation><Equation><Coefficients>1 2"
                                     "</Coefficients></Equation></Calibration>"),
                HasSubstr(">3 5<"));
}

TEST(VCTree_n42_, FirstReferenceOf2006ThatNamesAnEnergyCalibrationWins) {
    const std::string behind =
        calibration_2006("", "9 9") + calibration_2006(" ID='w' Type='FWHM'", "9 9") +
        calibration_2006(" ID='b'", "0 2") + calibration_2006(" ID='a'", "0 1");

    EXPECT_THAT(with_own_calibration("", " CalibrationIDs='  w  a\tb '", behind),
                HasSubstr("id=\"a\" ColDesignation=\"3\" Comment=\"0 1\">1 2<"));
    EXPECT_EQ(with_own_calibration("", "", behind), "");
}

TEST(VCTree_n42_, CalibrationsWithTheSameWordsServeEverySpectrum) {
    const std::string spectrum =
        "<Spectrum>" + calibration_2006("", "1 2") + "<ChannelData>1 2</ChannelData></Spectrum>";
    const std::string shorter =
        "<Spectrum>" + calibration_2006("", "1 2") + "<ChannelData>1</ChannelData></Spectrum>";
    const Import import(
        in_2006("<Measurement>" + spectrum + shorter + spectrum + "</Measurement>"));
    const auto energies = [](int place, const std::string& values, int size) {
        return "<Energy_" + std::to_string(place) + " FileDataDimsVector=\"" +
               std::to_string(size) + "\" Label=\"Energy\" ColDesignation=\"3\" Comment=\"1 2\">" +
               values + "</Energy_" + std::to_string(place) + ">";
    };

    EXPECT_THAT(import.measurements(), HasSubstr(energies(0, "3 5", 2)));
    EXPECT_THAT(import.measurements(), HasSubstr(energies(1, "3", 1)));
    EXPECT_THAT(import.measurements(), HasSubstr(energies(2, "3 5", 2)));
}

// ---- names and encodings
// -------------------------------------------------------------------------

TEST(VCTree_n42_, StandardPrefixesAreTakenOff) {
    const auto prefixed = [](const std::string& prefix, const std::string& root) {
        const std::string p = prefix + ":";
        const Import import("<" + p + "RadInstrumentData " + root + "><" + p + "RadMeasurement><" +
                            p + "MeasurementClassCode>F</" + p + "MeasurementClassCode><" + p +
                            "Spectrum><" + p + "ChannelData>5</" + p + "ChannelData></" + p +
                            "Spectrum></" + p + "RadMeasurement></" + p + "RadInstrumentData>");
        return import.result == 0 &&
               import.tree.text().find(">5</ChannelData_0>") != std::string::npos;
    };

    EXPECT_TRUE(prefixed("n42", ""));
    EXPECT_TRUE(prefixed("p", "xmlns:p='http://physics.nist.gov/N42/2011/N42'"));
    EXPECT_TRUE(prefixed("p", "xmlns:p='http://x/2005/AnsiN4242'"));
    EXPECT_TRUE(prefixed("p", "xmlns:p='n42'"));
    EXPECT_FALSE(prefixed("p", "xmlns:p='http://physics.nist.gov/N42/2011/other'"));
    EXPECT_FALSE(prefixed("p", "xmlns:p='http://physics.nist.gov/XN42'"));
    EXPECT_FALSE(prefixed("p", "xmlns:q='http://physics.nist.gov/N42/2011/N42'"));
    EXPECT_FALSE(prefixed("N42", ""));
}

TEST(VCTree_n42_, ExtensionsNeverPassForStandardElements) {
    const Import import(
        in_2011(measured("<x:Spectrum><ChannelData>1</ChannelData></x:Spectrum>"
                         "<spectrum><ChannelData>1</ChannelData></spectrum>" +
                         spectrum_of("2"))));

    EXPECT_EQ(import.channels("RadMeasurement/Spectrum/ChannelData_0"), "2");
    EXPECT_THAT(import.measurements(), Not(HasSubstr("Spectrum_1")));
}

TEST(VCTree_n42_, RealTimeOf2006MayHaveAPrefixToo) {
    const Import import(
        "<n42:N42InstrumentData><n42:Measurement><n42:Spectrum><n42:RealTime>PT1S"
        "</n42:RealTime><n42:ChannelData>1</n42:ChannelData></n42:Spectrum>"
        "</n42:Measurement></n42:N42InstrumentData>");

    EXPECT_THAT(import.spectrum(), HasSubstr("PT1S</SampleRealTime>"));
}

TEST(VCTree_n42_, EncodingsAndLineEndsDoNotMatter) {
    const std::string file = in_2011(measured(spectrum_of("1\n2\n")));
    std::string wide = "\xFF\xFE";
    for (const char c : file) (wide += c) += '\0';
    std::string lines = "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>\r\n" + file + "\r\n";

    EXPECT_EQ(Import(wide).tree.text(), Import(file).tree.text());
    EXPECT_EQ(Import(lines).tree.text(), Import(file).tree.text());
}

// ---- results
// -------------------------------------------------------------------------------------

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

TEST(VCTree_n42_, FileIsTestedBeforeEverythingElse) {
    const TemporaryFolder folder;
    TestTree tree("<t/>");
    UXXmlWrapperBase root = tree.root();

    EXPECT_EQ(VCTree_n42_(nullptr, nullptr, nullptr, nullptr, kPreview), -9093);
    EXPECT_EQ(VCTree_n42_(nullptr, "", nullptr, nullptr, 0), -9093);
    EXPECT_EQ(VCTree_n42_(&root, folder.path("missing").c_str(), nullptr, nullptr, 0), -9093);
    EXPECT_EQ(VCTree_n42_(&root, folder.path("").c_str(), nullptr, nullptr, 0), -9093);
}

TEST(VCTree_n42_, PreviewNeedsADetectorArrayButNoTree) {
    const TemporaryFolder folder;
    const std::string path = folder.write("f.n42", in_2011("<RadDetectorInformation id='A'/>"));
    const std::string path2006 = folder.write("g.n42", in_2006(""));
    CWBOStringArray detectors;

    EXPECT_EQ(VCTree_n42_(nullptr, path.c_str(), nullptr, nullptr, kPreview), -1);
    EXPECT_EQ(VCTree_n42_(nullptr, path2006.c_str(), nullptr, nullptr, kPreview), -1);
    EXPECT_EQ(VCTree_n42_(nullptr, path.c_str(), &detectors, nullptr, kPreview), 0);
    EXPECT_THAT(texts(detectors), ElementsAre("A"));
}

TEST(VCTree_n42_, ImportNeedsATreeBeforeAnythingIsRead) {
    const TemporaryFolder folder;
    const std::string path = folder.write(
        "f.n42", in_2011("<RadDetectorInformation id='A'/>" + measured(spectrum_of("1"))));
    TestTree info("<info/>");
    UXXmlWrapperBase infoRoot = info.root();
    UXXmlWrapperBase invalid;

    EXPECT_EQ(VCTree_n42_(nullptr, path.c_str(), nullptr, &infoRoot, 0), -9096);
    EXPECT_EQ(VCTree_n42_(&invalid, path.c_str(), nullptr, &infoRoot, 0), -9096);
    EXPECT_EQ(info.text(), "<info></info>");
}

TEST(VCTree_n42_, FileWithNothingToImportLeavesTheTreeAlone) {
    for (const std::string& content :
         {in_2011(""), in_2006(""), in_2011(measured("<Spectrum/>" + spectrum_of(" "))),
          in_2011(measured(spectrum_of("0 0 0", kCounted))),
          in_2006("<Measurement><Spectrum/></Measurement>")}) {
        const Import import(content);
        EXPECT_EQ(import.result, 0);
        EXPECT_EQ(import.tree.text(), kNothing);
    }
}

TEST(VCTree_n42_, OtherFlagsMeanNothing) {
    const std::string file = in_2011(measured(spectrum_of("1")));
    EXPECT_EQ(Import(file, {}, 0xFFFEFFFF).tree.text(), Import(file).tree.text());
}

TEST(uxtree_n42, ForwardsWithAStringArrayOrNull) {
    const TemporaryFolder folder;
    const std::string path = folder.write(
        "f.n42", in_2011("<RadDetectorInformation id='A'/>" + measured(spectrum_of("1"))));
    TestTree tree("<t/>");
    UXXmlWrapperBase root = tree.root();
    auto detectors = uxtest::script_texts({});
    auto numbers = uxtest::script_ints({});

    EXPECT_EQ(uxtree_n42(&root, path.c_str(), &numbers, nullptr, 0), -1);
    EXPECT_EQ(uxtree_n42(&root, path.c_str(), &numbers, nullptr, kPreview), -1);
    EXPECT_EQ(uxtree_n42(&root, path.c_str(), nullptr, nullptr, kPreview), -1);
    EXPECT_EQ(tree.text(), "<t></t>");
    EXPECT_EQ(uxtree_n42(nullptr, path.c_str(), &detectors, nullptr, kPreview), 0);
    EXPECT_THAT(texts(detectors.array()), ElementsAre("A"));
    EXPECT_EQ(uxtree_n42(&root, path.c_str(), nullptr, nullptr, 0), 0);
    EXPECT_THAT(tree.text(), HasSubstr("<ChannelData_0"));
    EXPECT_EQ(uxtree_n42(&root, nullptr, nullptr, nullptr, 0), -9093);
}

// ---- live times
// ----------------------------------------------------------------------------------

// Sets the option for the life of the object.
class LiveTimeOption {
public:
    explicit LiveTimeOption(int mode) : previous_(VCTree_n42_parse_LiveTimeDuration(mode)) {}
    ~LiveTimeOption() { VCTree_n42_parse_LiveTimeDuration(previous_); }
    LiveTimeOption(const LiveTimeOption&) = delete;
    LiveTimeOption& operator=(const LiveTimeOption&) = delete;

private:
    int previous_;
};

TEST(VCTree_n42_parse_LiveTimeDuration, YieldsThePreviousValueAndNegativeModesOnlyRead) {
    EXPECT_EQ(VCTree_n42_parse_LiveTimeDuration(-1), 3);
    EXPECT_EQ(VCTree_n42_parse_LiveTimeDuration(0), 3);
    EXPECT_EQ(VCTree_n42_parse_LiveTimeDuration(-7), 0);
    EXPECT_EQ(VCTree_n42_parse_LiveTimeDuration(3), 0);
    EXPECT_EQ(VCTree_n42_parse_LiveTimeDuration(-1), 3);
}

struct LiveTimeCase {
    int option;
    const char* text;
    const char* cleaned;
};
class LiveTimes : public testing::TestWithParam<LiveTimeCase> {};
INSTANTIATE_TEST_SUITE_P(
    VCTree_n42_parse_LiveTimeDuration, LiveTimes,
    testing::Values(LiveTimeCase{3, "PT300S", "300 S"}, LiveTimeCase{3, "PT300s", "300 s"},
                    LiveTimeCase{3, "PT", "PT"}, LiveTimeCase{3, "PT1", "1"},
                    LiveTimeCase{3, "12.5 s", "12.5  s"}, LiveTimeCase{3, "12.5 S", "12.5 S"},
                    LiveTimeCase{3, "S", "S"}, LiveTimeCase{3, "PTS", "S"},
                    LiveTimeCase{3, "pt5S", "pt5 S"}, LiveTimeCase{3, "5PTS", "5PT S"},
                    LiveTimeCase{3, "PT0H0M49.710S", "0H0M49.710 S"},
                    LiveTimeCase{3, " PT5S ", " PT5S "}, LiveTimeCase{1, "PT5S", "5S"},
                    LiveTimeCase{1, "PT5s", "5s"}, LiveTimeCase{2, "PT5S", "PT5 S"},
                    LiveTimeCase{2, "PT5 s", "PT5  s"}, LiveTimeCase{0, "PT5S", "PT5S"},
                    LiveTimeCase{4, "PT5S", "PT5S"}, LiveTimeCase{7, "PT5S", "5 S"}));
TEST_P(LiveTimes, OfGrossCountsAreCleaned) {
    const LiveTimeOption option(GetParam().option);
    const Import import(in_2011(measured(
        gross("", std::string("<LiveTimeDuration>") + GetParam().text + "</LiveTimeDuration>"))));

    EXPECT_THAT(import.measurements(),
                HasSubstr("<LiveTimeDuration Label=\"LiveTimeDuration\">" +
                          std::string(GetParam().cleaned) + "</LiveTimeDuration>"));
}

// ---- hostile files
// -------------------------------------------------------------------------------

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
