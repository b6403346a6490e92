// What the reader of spectrum files tells, without a tree.
#include "uxtree/kit/spectra.h"

#include <utility>

#include <gmock/gmock.h>

#include "uxtree/import/n42.h"

#include "kit/spectra_support.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using uxkit::SpectrumOpening;

namespace {

constexpr const char* kRich =
    "<RadInstrumentData xmlns='http://physics.nist.gov/N42/2011/N42'>"
    "<RadDetectorInformation id='A'/><RadDetectorInformation id='B'/>"
    "<EnergyCalibration id='E'><CoefficientValues>1 2</CoefficientValues></EnergyCalibration>"
    "<RadMeasurement><MeasurementClassCode>Foreground</MeasurementClassCode>"
    "<StartDateTime>2026-11-22T01:02:03Z</StartDateTime>"
    "<RealTimeDuration>PT10S</RealTimeDuration>"
    "<Spectrum id='s' radDetectorInformationReference='A' energyCalibrationReference='E'>"
    "<LiveTimeDuration>PT9.5S</LiveTimeDuration>"
    "<ChannelData compressionCode='CountedZeroes'>4 0 2 7</ChannelData></Spectrum>"
    "<Spectrum radDetectorInformationReference='B'><ChannelData>1 2</ChannelData>"
    "<ChannelData>3</ChannelData></Spectrum>"
    "<GrossCounts id='g' radDetectorInformationReference='A'>"
    "<LiveTimeDuration>PT9S</LiveTimeDuration><CountData>50</CountData></GrossCounts>"
    "<GrossCounts radDetectorInformationReference='N'><CountData>5 6</CountData></GrossCounts>"
    "<DoseRate radDetectorInformationReference='A'><DoseRateValue>0.25</DoseRateValue></DoseRate>"
    "<DoseRate><DoseRateValue>0.5</DoseRateValue></DoseRate>"
    "<RadInstrumentState><StateVector><GeographicPoint><LatitudeValue>46.5</LatitudeValue>"
    "<LongitudeValue>-119.25</LongitudeValue></GeographicPoint></StateVector></RadInstrumentState>"
    "</RadMeasurement></RadInstrumentData>";

TEST(SpectrumReader, TellsEverythingAboutASpectrum) {
    const ReadFile file(kRich);
    ASSERT_EQ(file.opening, SpectrumOpening::kOpened);
    EXPECT_EQ(file.reader.form(), "2011");
    EXPECT_EQ(file.reader.root_name(), "RadInstrumentData");
    EXPECT_THAT(file.reader.detectors(), ElementsAre("A", "B"));
    EXPECT_EQ(file.reader.measurement_count(), 1U);
    ASSERT_EQ(file.spectra.size(), 3U);
    const uxkit::Spectrum& first = file.spectra[0];
    EXPECT_EQ(first.name, "1.0 Foreground A");
    EXPECT_EQ(first.measurement, 1U);
    EXPECT_EQ(first.id, "s");
    EXPECT_EQ(first.start, "2026-11-22T01:02:03Z");
    EXPECT_EQ(first.realSeconds, 10);
    EXPECT_EQ(first.liveSeconds, 9.5);
    ASSERT_TRUE(first.calibration);
    EXPECT_EQ(first.calibration->unit, "keV");
    EXPECT_THAT(first.calibration->coefficients, ElementsAre(1, 2));
    ASSERT_TRUE(first.position);
    EXPECT_EQ(first.position->latitude, 46.5);
    EXPECT_EQ(first.position->longitude, -119.25);
    ASSERT_TRUE(first.dose);
    EXPECT_EQ(first.dose->value, 0.25);
    EXPECT_EQ(first.dose->unit, "\xC2\xB5Sv/h");
    EXPECT_EQ(first.grossCounts, 50);
    EXPECT_THAT(first.counts, ElementsAre(4, 0, 0, 7));
}

TEST(SpectrumReader, GoesOnElsewhere) {
    const ReadFile file(kRich);
    uxkit::SpectrumReader first;
    ASSERT_EQ(first.open(file.path.c_str()), SpectrumOpening::kOpened);
    uxkit::Spectrum spectrum;
    ASSERT_TRUE(first.next(spectrum));
    uxkit::SpectrumReader second(std::move(first));
    ASSERT_TRUE(second.next(spectrum));
    EXPECT_EQ(spectrum.name, "1.1 Foreground B");
    uxkit::SpectrumReader third;
    third = std::move(second);
    ASSERT_TRUE(third.next(spectrum));
    EXPECT_EQ(spectrum.name, "1.1 Foreground B (2)");
    EXPECT_FALSE(third.next(spectrum));
}

TEST(SpectrumReader, TellsWhatTheOtherDetectorsHave) {
    const ReadFile file(kRich);
    ASSERT_EQ(file.spectra.size(), 3U);
    const uxkit::Spectrum& second = file.spectra[1];
    EXPECT_EQ(second.name, "1.1 Foreground B");
    EXPECT_EQ(second.liveSeconds, -1);
    EXPECT_FALSE(second.calibration);
    EXPECT_FALSE(second.grossCounts);
    ASSERT_TRUE(second.dose);
    EXPECT_EQ(second.dose->value, 0.5);  // that of the whole measurement
    EXPECT_EQ(file.spectra[2].name, "1.1 Foreground B (2)");
    EXPECT_EQ(file.spectra[2].column, 1U);
    EXPECT_THAT(file.spectra[2].counts, ElementsAre(3));
    ASSERT_EQ(file.reader.gross_counts().size(), 2U);
    EXPECT_TRUE(file.reader.gross_counts()[0].hasSpectrum);
    EXPECT_EQ(file.reader.gross_counts()[0].liveSeconds, 9);
    EXPECT_FALSE(file.reader.gross_counts()[1].hasSpectrum);
    EXPECT_EQ(file.reader.gross_counts()[1].count, 5);
    EXPECT_THAT(file.notes(), ElementsAre("gross-several-values 1: 1 gross count with several "
                                          "values, of which the first is taken"));
}

TEST(SpectrumReader, TakesThePositionOfTheDetectorBeforeThatOfTheInstrument) {
    const auto state = [](const std::string& tag, const std::string& latitude) {
        return "<" + tag + " radDetectorInformationReference='A'><StateVector><GeographicPoint>" +
               "<LatitudeValue>" + latitude + "</LatitudeValue><LongitudeValue>2</LongitudeValue>" +
               "</GeographicPoint></StateVector></" + tag + ">";
    };
    const ReadFile file(in_2011(measured(
        state("RadInstrumentState", "1") + state("RadDetectorState", "3") +
        kit_spectrum("1", "", "radDetectorInformationReference='A'") + kit_spectrum("1"))));
    ASSERT_EQ(file.spectra.size(), 2U);
    EXPECT_EQ(file.spectra[0].position->latitude, 3);
    EXPECT_EQ(file.spectra[1].position->latitude, 1);
}

TEST(SpectrumReader, TellsWhatTheLevelsOf2006Say) {
    const ReadFile file(in_2006(
        "<Measurement><MeasuredItemInformation><MeasurementLocation>"
        "<Coordinates>46.25 -119.5 137</Coordinates></MeasurementLocation>"
        "</MeasuredItemInformation><DetectorData><StartTime>noon</StartTime>"
        "<SampleRealTime>PT2S</SampleRealTime><DetectorMeasurement Detector='D'>"
        "<SpectrumMeasurement><Spectrum ID='x'><SourceType>Item</SourceType>"
        "<Calibration Type='Energy' EnergyUnits='MeV'><Equation Model='Polynomial'>"
        "<Coefficients>0 1</Coefficients></Equation></Calibration>"
        "<LiveTime>PT1S</LiveTime><ChannelData>5</ChannelData></Spectrum></SpectrumMeasurement>"
        "<GrossCountMeasurement/></DetectorMeasurement></DetectorData>"
        "<CountDoseData Detector='D'><AbsorbedDoseRate Units='uGy'>1</AbsorbedDoseRate>"
        "<DoseRate Units='uSv'>3</DoseRate></CountDoseData></Measurement>"));
    ASSERT_EQ(file.opening, SpectrumOpening::kOpened);
    EXPECT_EQ(file.reader.form(), "2006");
    ASSERT_EQ(file.spectra.size(), 1U);
    const uxkit::Spectrum& spectrum = file.spectra[0];
    EXPECT_EQ(spectrum.name, "1.0 Item D");
    EXPECT_EQ(spectrum.id, "x");
    EXPECT_EQ(spectrum.start, "noon");
    EXPECT_EQ(spectrum.realSeconds, 2);
    EXPECT_EQ(spectrum.liveSeconds, 1);
    EXPECT_EQ(spectrum.calibration->unit, "MeV");
    EXPECT_EQ(spectrum.position->latitude, 46.25);
    EXPECT_EQ(spectrum.dose->value, 3);
    EXPECT_EQ(spectrum.dose->unit, "uSv");
    EXPECT_THAT(file.notes(),
                ElementsAre("gross-2006 1: 1 gross count not read: the 2006 form's are not"));
}

TEST(SpectrumReader, TellsWhichFilesItCannotOpen) {
    EXPECT_EQ(ReadFile("<r/>").opening, SpectrumOpening::kOtherRoot);
    EXPECT_EQ(ReadFile("<r>").opening, SpectrumOpening::kNoXml);
    uxkit::SpectrumReader reader;
    EXPECT_EQ(reader.open("/no/such/file"), SpectrumOpening::kUnreadable);
    EXPECT_EQ(reader.open(""), SpectrumOpening::kUnreadable);
    EXPECT_EQ(reader.open(nullptr), SpectrumOpening::kUnreadable);
    uxkit::Spectrum spectrum;
    EXPECT_FALSE(reader.next(spectrum));
    EXPECT_THAT(reader.notes(), IsEmpty());
    EXPECT_EQ(ReadFile("<x:y xmlns:x='z'/>").reader.root_name(), "x:y");
}

// ---- reasons ----------------------------------------------------------------------------------

struct Reason {
    const char* name;
    std::string content;
    const char* note;
};
class SpectrumReasons : public testing::TestWithParam<Reason> {};
INSTANTIATE_TEST_SUITE_P(
    SpectrumReader, SpectrumReasons,
    testing::Values(
        Reason{"NoClassCode", in_2011(measured(kit_spectrum("1") + kit_spectrum("2"), "")),
               "no-class-code 2: 2 spectra left out: their measurement has no class code "
               "(MeasurementClassCode)"},
        Reason{"CalibrationWithoutId",
               in_2011("<EnergyCalibration/>" + measured(kit_spectrum("1")) + "<x/>" +
                       measured(kit_spectrum("1") + kit_spectrum("1"))),
               "calibration-without-id 3: an energy calibration without id ended the reading: 2 "
               "measurements with 3 spectra behind it not read"},
        Reason{"DerivedData", in_2011("<DerivedData>" + kit_spectrum("1") + "</DerivedData>"),
               "derived-data 1: 1 spectrum in DerivedData, which is not read"},
        Reason{"NoChannels", in_2011(measured(kit_spectrum(" "))),
               "no-channels 1: 1 spectrum without channel values left out"},
        Reason{"Doses", in_2011(measured("<DoseRate><DoseRateValue>1</DoseRateValue></DoseRate>")),
               "dose-rates-alone 1: 1 measurement with dose rates, but neither spectra nor gross "
               "counts"},
        Reason{"Empty", in_2006("<Measurement/><Measurement/>"),
               "empty-measurements 2: 2 measurements with neither spectra nor gross counts"},
        Reason{"Elsewhere", in_2011("<AnalysisResults>" + kit_spectrum("1") + "</AnalysisResults>"),
               "elsewhere 1: 1 element Spectrum in places where no spectra are looked for"},
        Reason{"Nothing", in_2006(""), "nothing 1: no measurement in the file"}),
    [](const auto& test) { return test.param.name; });

TEST_P(SpectrumReasons, AreToldWhereNothingComesOut) {
    const ReadFile file(GetParam().content);
    EXPECT_EQ(file.opening, SpectrumOpening::kOpened);
    EXPECT_THAT(file.spectra, IsEmpty());
    const auto notes = file.notes();
    ASSERT_FALSE(notes.empty());
    EXPECT_EQ(notes.front(), GetParam().note);
}

TEST(SpectrumReader, TellsWhatItChanged) {
    const ReadFile file(in_2011(measured(
        kit_spectrum("1 x 3 1e999", "", "energyCalibrationReference='none'") +
        "<Spectrum><ChannelData compressionCode='CountedZeroes'>1 0 2000000 5</ChannelData>"
        "</Spectrum><GrossCounts><CountData>many</CountData></GrossCounts>")));
    ASSERT_EQ(file.spectra.size(), 2U);
    EXPECT_THAT(file.spectra[0].counts, ElementsAre(1, 0, 3, 0));
    EXPECT_EQ(file.spectra[1].counts.size(), 1U << 20);
    EXPECT_THAT(
        file.notes(),
        ElementsAre("unknown-calibration 1: 1 spectrum without energies: it names a calibration "
                    "that the file lacks",
                    "unreadable-numbers 2: 2 values in 1 list became 0: no numbers",
                    "cut-lists 1: 1 channel list cut: it asks for more zeros than a file of this "
                    "size may have (951425 channels missing at least)",
                    "gross-no-number 1: 1 gross count became 0: no number"));
}

TEST(SpectrumReader, TellsOfCalibrationsThatAreNoPolynomials) {
    const ReadFile file(
        in_2006("<Measurement><Spectrum><Calibration><Equation Model='Other'>"
                "<Coefficients>0 1</Coefficients></Equation></Calibration>"
                "<ChannelData>5</ChannelData></Spectrum></Measurement>"));
    ASSERT_EQ(file.spectra.size(), 1U);
    EXPECT_FALSE(file.spectra[0].calibration);
    EXPECT_THAT(file.notes(),
                ElementsAre("other-model 1: 1 energy calibration not used: it is no polynomial"));
}

TEST(SpectrumReader, LeavesOutGrossCountsOfOtherDetectors) {
    const ReadFile file(kRich, {"N"});
    EXPECT_EQ(file.spectra.size(), 3U);
    ASSERT_EQ(file.reader.gross_counts().size(), 1U);
    EXPECT_EQ(file.reader.gross_counts()[0].detector, "N");
    EXPECT_EQ(file.notes().front(), "other-detectors 1: 1 gross count of other detectors left out");
}

// Spectra of measurements that are left out count against the bound of the file all the same.
TEST(SpectrumReader, CutsTheListsThatAnImportCuts) {
    const std::string huge =
        "<Spectrum><ChannelData compressionCode='CountedZeroes'>1 0 1000000 2</ChannelData>"
        "</Spectrum>";
    std::string out;
    for (int i = 0; i < 10; ++i) out += huge;
    const ReadFile file(in_2011(measured(out, "") + measured(out)));
    TestTree tree("<t/>");
    ASSERT_EQ(VCTree_n42_(&tree, file.path.c_str(), nullptr, nullptr, 0), 0);
    ASSERT_EQ(file.spectra.size(), 10U);
    for (int i = 0; i < 10; ++i) {
        UXXmlWrapperBase column = tree.at(
            ("n42/RadMeasurements/RadMeasurement/Spectrum[" + std::to_string(i) + "]/ChannelData_0")
                .c_str());
        CArray<double, double> counts;
        column.NodeValue(counts, 1);
        EXPECT_EQ(std::vector<double>(counts.GetData(), counts.GetData() + counts.GetSize()),
                  file.spectra[static_cast<std::size_t>(i)].counts);
    }
}

// ---- imports ----------------------------------------------------------------------------------

TEST(SpectrumReader, ImportsTheSameTree) {
    ReadFile file(kRich, {"A"});
    TestTree expected("<t><old/></t>");
    TestTree target("<t><old/></t>");
    CWBOStringArray names;
    names.Add("A");
    ASSERT_EQ(VCTree_n42_(&expected, file.path.c_str(), &names, nullptr, 0), 0);
    EXPECT_EQ(file.reader.import_into(target), 0);
    EXPECT_EQ(target.text(), expected.text());
    EXPECT_EQ(file.reader.import_into(target), -9093);
    EXPECT_EQ(target.text(), expected.text());
    uxkit::Spectrum spectrum;
    EXPECT_FALSE(file.reader.next(spectrum));
}

TEST(SpectrumReader, LeavesCalculatedEnergiesOutOfATree) {
    const std::string content = in_2011(
        "<EnergyCalibration id='P'><CoefficientValues>0 1</CoefficientValues></EnergyCalibration>"
        "<EnergyCalibration id='L'><EnergyBoundaryValues>0 9</EnergyBoundaryValues>"
        "</EnergyCalibration>" +
        measured(kit_spectrum("1", "", "energyCalibrationReference='P'") +
                 kit_spectrum("2", "", "energyCalibrationReference='L'")));
    ReadFile file(content);
    TestTree target("<t/>");
    ASSERT_EQ(file.reader.import_into(target, false), 0);
    EXPECT_THAT(target.text(), testing::Not(HasSubstr("Energy_0")));
    EXPECT_THAT(target.text(), HasSubstr("Energy_1"));
    UXXmlWrapperBase none;
    EXPECT_EQ(ReadFile(content).reader.import_into(none), -9096);
}

TEST(SpectrumReader, TellsTheSizeOfAnImport) {
    std::string channels;
    for (int i = 0; i < 4096; ++i) channels += std::to_string(i % 17 * 31) + " ";
    std::string content =
        "<EnergyCalibration id='E'><CoefficientValues>-0.3 0.731</CoefficientValues>"
        "</EnergyCalibration>";
    for (int i = 0; i < 20; ++i) {
        content += measured(kit_spectrum(channels, "", "energyCalibrationReference='E'"));
    }
    ReadFile file(in_2011(content));
    const uxkit::ImportSize size = file.reader.import_size();
    TestTree target("<t/>");
    ASSERT_EQ(file.reader.import_into(target), 0);
    const double saved = static_cast<double>(target.text().size());
    EXPECT_NEAR(size.bytes / saved, 1, 0.05);
    EXPECT_GT(size.energyBytes / size.bytes, 0.5);
}

TEST(seconds_of, ReadsDurations) {
    EXPECT_EQ(uxkit::seconds_of("PT12.5S"), 12.5);
    EXPECT_EQ(uxkit::seconds_of(" PT1M2.5S\n"), 62.5);
    EXPECT_EQ(uxkit::seconds_of("PT0H0M49.710S"), 49.71);
    EXPECT_EQ(uxkit::seconds_of("P1DT1H"), 90000);
    EXPECT_EQ(uxkit::seconds_of("P2D"), 172800);
    for (const char* text : {"", "P", "PT", "PT5", "5 s", "PT-5S", "P1DT", "PTS", "P5S", "PT1X",
                             "PTinfS", "T5S", "PT1S2"}) {
        EXPECT_LT(uxkit::seconds_of(text), 0) << text;
    }
}

}  // namespace
