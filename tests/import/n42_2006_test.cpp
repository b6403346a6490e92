// Files of the form of 2006: spectra at every level, calibrations.
#include <string>

#include <gmock/gmock.h>

#include "import/n42_support.h"

using namespace uxtest;
using testing::HasSubstr;
using testing::Not;

namespace {

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
    EXPECT_EQ(
        import.tree.text(),
        tree_text("<t><n42><RadMeasurements FileDataDimsVector='1'>"
                  "<RadMeasurement Label='RadMeasurement_1'>"
                  "<Spectrum CalibrationIDs='none c' Type='PHA' Label='Spectrum_0' "
                  "FileDataDimsVector='1'>"
                  "<StartTime Label='StartTime'>10:00</StartTime>"
                  "<SampleRealTime Label='SampleRealTime'>PT9S</SampleRealTime>"
                  "<LiveTime Label='LiveTime'>PT0.9S</LiveTime>"
                  "<SourceType Label='SourceType'>Item</SourceType>"
                  "<DetectorType Label='DetectorType'>Gamma</DetectorType>"
                  "<Coordinates Label='Coordinates'>1 2 3</Coordinates>"
                  "<Energy FileDataDimsVector='3' Label='Energy' id='c' ColDesignation='3' "
                  "Comment='0 3' Unit='keV'>3 6 9</Energy>"
                  "<ChannelData_0 Label='ChannelData_0' FileDataDimsVector='3'>0 0 "
                  "5</ChannelData_0></Spectrum></RadMeasurement></RadMeasurements></n42></t>"));
    EXPECT_EQ(import.infoTree.text(), tree_text("<info/>"));
}

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
        EXPECT_EQ(
            import.channels("RadMeasurement/Spectrum[" + std::to_string(i) + "]/ChannelData_0"),
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
    const std::string sample = "<SampleRealTime Label=\"SampleRealTime\">PT1S</SampleRealTime>";

    EXPECT_THAT(import.spectrum(0),
                HasSubstr("<StartTime Label=\"StartTime\">own</StartTime>" + sample +
                          "<DetectorType Label=\"DetectorType\">X</DetectorType>"
                          "<ChannelData_0"));
    // Its own real time is nearer than the sample's.
    EXPECT_THAT(import.spectrum(1),
                HasSubstr("<StartTime Label=\"StartTime\">inner</StartTime>"
                          "<SampleRealTime Label=\"SampleRealTime\">PT8S</SampleRealTime>"
                          "<ChannelData_0"));
    EXPECT_THAT(import.spectrum(2), HasSubstr(sample + "<DetectorType Label=\"DetectorType\">Y"
                                                       "</DetectorType><ChannelData_0"));
}

TEST(VCTree_n42_, OwnRealTimeStandsInForAMissingSampleRealTime) {
    const Import import(
        in_2006("<Measurement><Spectrum><RealTime>PT8S</RealTime><RealTime>no</RealTime>"
                "<ChannelData>2</ChannelData></Spectrum></Measurement>"));

    EXPECT_THAT(import.spectrum(),
                HasSubstr("<SampleRealTime Label=\"SampleRealTime\">PT8S</SampleRealTime>"));
}

TEST(VCTree_n42_, TheNearestRealTimeOf2006Wins) {
    const Import import(in_2006(
        "<Measurement><SampleRealTime>PT1S</SampleRealTime><DetectorData><RealTime>PT2S</RealTime>"
        "<RealTime>no</RealTime><DetectorMeasurement><SampleRealTime/><SpectrumMeasurement>"
        "<SampleRealTime>PT3S</SampleRealTime><RealTime>PT4S</RealTime>" +
        spectrum_of("1") + "</SpectrumMeasurement>" + spectrum_of("2") +
        "</DetectorMeasurement></DetectorData>" + spectrum_of("3") + "</Measurement>"));
    const auto sample = [](const char* time) {
        return HasSubstr(std::string("<SampleRealTime Label=\"SampleRealTime\">") + time +
                         "</SampleRealTime>");
    };

    EXPECT_THAT(import.spectrum(0), sample("PT3S"));
    EXPECT_THAT(import.spectrum(1), sample("PT2S"));
    EXPECT_THAT(import.spectrum(2), sample("PT1S"));
}

TEST(VCTree_n42_, OwnSampleRealTimeWinsOverTheOthers) {
    const Import import(
        in_2006("<Measurement><SampleRealTime>PT1S</SampleRealTime><Spectrum>"
                "<RealTime>PT8S</RealTime><SampleRealTime>PT3S</SampleRealTime>"
                "<SampleRealTime>no</SampleRealTime><ChannelData>2</ChannelData></Spectrum>"
                "</Measurement>"));

    EXPECT_THAT(import.spectrum(),
                HasSubstr("<SampleRealTime Label=\"SampleRealTime\">PT3S</SampleRealTime>"));
    EXPECT_THAT(import.spectrum(), Not(HasSubstr("PT1S")));
    EXPECT_THAT(import.spectrum(), Not(HasSubstr("PT8S")));
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
    return import.energies();
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
    EXPECT_THAT(with_own_calibration(calibration_2006(" Type='energy'", "1 2")),
                HasSubstr(">3 5<"));
    EXPECT_THAT(with_own_calibration(calibration_2006(" Type=' ENERGY '", "1 2")),
                HasSubstr(">3 5<"));
    EXPECT_EQ(with_own_calibration(calibration_2006(" Type=''", "1 2")), "");
    EXPECT_EQ(with_own_calibration(calibration_2006(" Type='Energy width'", "1 2")), "");
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

}  // namespace
