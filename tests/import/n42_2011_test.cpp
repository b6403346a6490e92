// Files of the form of 2011: measurements, energies, gross counts.
#include <chrono>
#include <string>

#include <gmock/gmock.h>

#include "import/n42_support.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

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
    EXPECT_EQ(
        import.tree.text(),
        tree_text(
            "<t><n42><RadMeasurements FileDataDimsVector='1'>"
            "<RadMeasurement Label='RadMeasurement_1'>"
            "<Spectrum id='S' energyCalibrationReference='E1' Label='Spectrum_0' "
            "FileDataDimsVector='1'>"
            "<MeasurementClassCode Label='MeasurementClassCode'>Foreground</MeasurementClassCode>"
            "<StartDateTime Label='StartDateTime'>2026-01-02T03:04:05Z</StartDateTime>"
            "<RealTimeDuration Label='RealTimeDuration'>PT2S</RealTimeDuration>"
            "<LiveTimeDuration Label='LiveTimeDuration'>PT1.5S</LiveTimeDuration>"
            "<Energy FileDataDimsVector='4' Label='Energy' id='E1' ColDesignation='3' Comment=' 1 "
            "2 0.5&#10;'>3.5 7 11.5 17</Energy>"
            "<ChannelData_0 Label='ChannelData_0' FileDataDimsVector='4'>1 0 2 "
            "3</ChannelData_0></Spectrum></RadMeasurement>"
            "<GrossCounts FileDataDimsVector='1'>"
            "<RadMeasurement Label='RadMeasurement_0' id='G'>42"
            "<MeasurementClassCode Label='MeasurementClassCode'>Foreground</MeasurementClassCode>"
            "<StartDateTime Label='StartDateTime'>2026-01-02T03:04:05Z</StartDateTime>"
            "<LiveTimeDuration Label='LiveTimeDuration'>1.5 "
            "S</LiveTimeDuration></RadMeasurement></GrossCounts></RadMeasurements></n42></t>"));
}

TEST(VCTree_n42_, MeasurementsCountFromOneAndOnlyThoseWritten) {
    const Import import(in_2011("<RadMeasurement/>" + measured(spectrum_of("1")) +
                                "<RadMeasurement>" + spectrum_of("2") + "</RadMeasurement>" +
                                measured("<Spectrum/>") + measured(spectrum_of("3"))));

    EXPECT_THAT(import.measurements(), HasSubstr("<RadMeasurements FileDataDimsVector=\"2\">"));
    EXPECT_EQ(import.channels("RadMeasurement[0]/Spectrum/ChannelData_0"), "1");
    EXPECT_EQ(import.channels("RadMeasurement[1]/Spectrum/ChannelData_0"), "3");
    EXPECT_THAT(to_text(import.node("RadMeasurement[1]")),
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
    EXPECT_EQ(import.tree.text(), tree_text("<t><n42><RadMeasurements/></n42></t>"));
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

std::string with_calibration(const std::string& calibration, const std::string& reference = "e",
                             const std::string& channels = "1 2") {
    const Import import(
        in_2011(measured("<Spectrum energyCalibrationReference='" + reference + "'><ChannelData>" +
                         channels + "</ChannelData></Spectrum>") +
                calibration));
    EXPECT_EQ(import.result, 0);
    return import.energies();
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
    // A text without any number is one, too.
    EXPECT_EQ(with_calibration("<EnergyCalibration id='e'><CoefficientValues>;</CoefficientValues>"
                               "<EnergyBoundaryValues>8 9</EnergyBoundaryValues>"
                               "</EnergyCalibration>"),
              "");
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
              tree_text("<info><n42 Branch='1' _ux_id='268435456'><Detectors>"
                        "<RadDetectorInformation id='B' Label='B'/></Detectors></n42></info>"));
    EXPECT_THAT(texts(import.detectors), ElementsAre("B", "b"));
}

TEST(VCTree_n42_, SelectionOfOtherDetectorsImportsNoGrossCountsAndNoDetectors) {
    const Import import(in_2011("<RadDetectorInformation id='A'/>" + measured(gross("A"))), {"C"});

    EXPECT_EQ(import.result, 0);
    EXPECT_EQ(import.tree.text(), kNothing);
    EXPECT_EQ(import.infoTree.text(), tree_text("<info/>"));
}

}  // namespace
