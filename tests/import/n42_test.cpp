// What every import shares: arguments and results, preview, information tree, names of elements.
#include "uxtree/import/n42.h"

#include <string>

#include <gmock/gmock.h>

#include "import/n42_support.h"

using namespace uxtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

TEST(VCTree_n42_, FileIsTestedBeforeEverythingElse) {
    const TemporaryFolder folder;
    TestTree tree("<t/>");

    EXPECT_EQ(VCTree_n42_(nullptr, nullptr, nullptr, nullptr, kPreview), -9093);
    EXPECT_EQ(VCTree_n42_(nullptr, "", nullptr, nullptr, 0), -9093);
    EXPECT_EQ(VCTree_n42_(&tree, folder.path("missing").c_str(), nullptr, nullptr, 0), -9093);
    EXPECT_EQ(VCTree_n42_(&tree, folder.path("").c_str(), nullptr, nullptr, 0), -9093);
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
    UXXmlWrapperBase invalid;

    EXPECT_EQ(VCTree_n42_(nullptr, path.c_str(), nullptr, &info, 0), -9096);
    EXPECT_EQ(VCTree_n42_(&invalid, path.c_str(), nullptr, &info, 0), -9096);
    EXPECT_EQ(info.text(), tree_text("<info/>"));
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
    auto detectors = script_texts({});

    EXPECT_EQ(uxtree_n42(nullptr, path.c_str(), &detectors, nullptr, kPreview), 0);
    EXPECT_THAT(texts(detectors.array()), ElementsAre("A"));
    EXPECT_EQ(uxtree_n42(&tree, path.c_str(), nullptr, nullptr, 0), 0);
    EXPECT_THAT(tree.text(), HasSubstr("<ChannelData_0"));
    EXPECT_EQ(uxtree_n42(&tree, nullptr, nullptr, nullptr, 0), -9093);
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

TEST(VCTree_n42_, PreviewListsDetectorsInFileOrderAndLeavesTheTreesAlone) {
    const Import import(in_2011("<RadDetectorInformation id='C'/><RadDetectorInformation/>" +
                                measured(spectrum_of("1")) +
                                "<RadDetectorInformation id='A'/><RadDetectorInformation id='C'/>"),
                        {"before"}, kPreview);

    EXPECT_EQ(import.result, 0);
    EXPECT_THAT(texts(import.detectors), ElementsAre("C", "A", "C"));
    EXPECT_EQ(import.tree.text(), kNothing);
    EXPECT_EQ(import.infoTree.text(), tree_text("<info/>"));
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

TEST(VCTree_n42_, InformationTreeGetsEveryDetectorOnEveryImport) {
    const TemporaryFolder folder;
    const std::string path =
        folder.write("f.n42", in_2011("<RadDetectorInformation id='A'><Kind k='1'>NaI</Kind>"
                                      "</RadDetectorInformation><RadDetectorInformation/>"));
    TestTree tree("<t><old/></t>");
    TestTree info("<info><n42 Branch='0'/></info>");
    const std::string copies =
        "<RadDetectorInformation id=\"A\" Label=\"A\"><Kind k=\"1\">NaI</Kind>"
        "</RadDetectorInformation><RadDetectorInformation Label=\"\"></RadDetectorInformation>";

    EXPECT_EQ(VCTree_n42_(&tree, path.c_str(), nullptr, &info, 0), 0);
    EXPECT_EQ(info.text(),
              "<info><n42 Branch=\"1\"><Detectors>" + copies + "</Detectors></n42></info>");
    EXPECT_EQ(VCTree_n42_(&tree, path.c_str(), nullptr, &info, 0), 0);
    EXPECT_EQ(info.text(), "<info><n42 Branch=\"1\"><Detectors>" + copies + copies +
                               "</Detectors></n42></info>");
    EXPECT_EQ(tree.text(), kNothing);
}

TEST(VCTree_n42_, InformationTreeMayBeMissingOrInvalid) {
    const TemporaryFolder folder;
    const std::string path = folder.write(
        "f.n42", in_2011("<RadDetectorInformation id='A'/>" + measured(spectrum_of("1"))));
    TestTree tree("<t/>");
    UXXmlWrapperBase invalid;

    EXPECT_EQ(VCTree_n42_(&tree, path.c_str(), nullptr, nullptr, 0), 0);
    EXPECT_EQ(VCTree_n42_(&tree, path.c_str(), nullptr, &invalid, 0), 0);
    EXPECT_FALSE(invalid.IsNodeValid());
}

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

TEST(VCTree_n42_, PrefixesBoundBelowTheRootAreTakenOffWhereTheyHold) {
    constexpr char kN42[] = " xmlns:p='http://physics.nist.gov/N42/2011/N42/'";
    constexpr char kOther[] = " xmlns:p='http://example.org/extension'";
    const auto imported = [](const std::string& atMeasurement, const std::string& atSpectrum) {
        const Import import(
            in_2011("<RadMeasurement" + atMeasurement +
                    "><MeasurementClassCode>F</MeasurementClassCode><p:Spectrum" + atSpectrum +
                    "><p:ChannelData>5</p:ChannelData></p:Spectrum></RadMeasurement>"
                    "<RadMeasurement><MeasurementClassCode>F</MeasurementClassCode>"
                    "<p:Spectrum><ChannelData>6</ChannelData></p:Spectrum></RadMeasurement>"));
        EXPECT_EQ(import.result, 0);
        // The second measurement stands outside of any binding.
        EXPECT_THAT(import.tree.text(), Not(HasSubstr("6</ChannelData_0>")));
        return import.tree.text().find(">5</ChannelData_0>") != std::string::npos;
    };

    EXPECT_TRUE(imported(kN42, ""));
    EXPECT_TRUE(imported("", kN42));
    EXPECT_TRUE(imported(kOther, kN42));
    EXPECT_FALSE(imported(kN42, kOther));
    EXPECT_FALSE(imported("", ""));
    EXPECT_FALSE(imported("", kOther));
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

}  // namespace
