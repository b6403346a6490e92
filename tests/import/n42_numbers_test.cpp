// The numbers in spectrum files: channels, counts, live times.
#include "import/n42_numbers.h"

#include <array>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "uxtree/import/n42.h"

#include "import/n42_support.h"

using namespace uxtest;
using testing::HasSubstr;

namespace {

// The channels of a single spectrum as text.
std::string read_channels(const std::string& channels, const std::string& attributes = "") {
    const Import import(in_2011(measured(spectrum_of(channels, attributes))));
    EXPECT_EQ(import.result, 0);
    return import.channels("RadMeasurement/Spectrum/ChannelData_0");
}

// Lists of every length, with tokens on both sides of any boundary, against reading one by one.
TEST(read_numbers, ReadsEveryTokenWhereverItStands) {
    std::mt19937 random(3);
    static constexpr std::array<const char*, 12> kTokens{
        "0", "7", "42", "999", "12345678", "123456789", "1.5", "-3", "1e3", "x", "99999999", ".25"};
    static constexpr std::array<const char*, 8> kBlanks{" ",      "\n", "  ", "\t\r\n",
                                                        "      ", ",",  ";",  " ,\n; "};
    ux::NumberList list;
    for (int round = 0; round < 3000; ++round) {
        std::string text = random() % 2 == 0 ? "" : kBlanks[random() % kBlanks.size()];
        std::vector<double> expected;
        for (auto i = random() % 60; i > 0; --i) {
            const char* const token = kTokens[random() % kTokens.size()];
            text += std::string(token) +
                    (i > 1 || random() % 2 == 0 ? kBlanks[random() % kBlanks.size()] : "");
            expected.push_back(std::strtod(token, nullptr));
        }
        ux::read_numbers(text.c_str(), list);
        ASSERT_EQ(std::vector<double>(list.data(), list.data() + list.size()), expected) << text;
        ASSERT_EQ(ux::has_numbers(text.c_str()), !expected.empty()) << text;
    }
}

// Compressed lists of the same kind, long ones among them, and with allowances that cut.
TEST(read_counted_zeroes, ExpandsEveryTokenWhereverItStands) {
    std::mt19937 random(5);
    static constexpr std::array<const char*, 12> kTokens{
        "0", "0", "7", "42", "999", "12345678", "3", "1.5", "0.4", "123456789", "-3", "x"};
    ux::NumberList list;
    for (int round = 0; round < 200; ++round) {
        std::string text;
        std::vector<double> tokens;
        const bool isPlain = random() % 2 == 0;
        for (auto i = random() % 200; i > 0; --i) {
            const char* const token = kTokens[random() % (isPlain ? 5 : kTokens.size())];
            text += std::string(token) + (random() % 9 == 0 ? "\r\n" : " ");
            tokens.push_back(std::strtod(token, nullptr));
        }
        const std::uint64_t fileBytes = random() % 3 == 0 ? 0 : 1U << 30;
        ux::RunAllowance allowance(fileBytes);
        ux::RunAllowance other(fileBytes);
        std::vector<double> expected;
        std::uint64_t cut = 0;
        for (std::size_t i = 0; i < tokens.size() && cut == 0; ++i) {
            if (tokens[i] != 0) {
                expected.push_back(tokens[i]);
            } else if (++i < tokens.size()) {
                const int run = tokens[i] < 0.5 ? 0 : static_cast<int>(tokens[i] + 0.5);
                const int taken = other.take(static_cast<int>(expected.size()), run);
                expected.resize(expected.size() + static_cast<std::size_t>(taken));
                cut = static_cast<std::uint64_t>(run - taken);
            }
        }
        const ux::NumberLosses losses = ux::read_counted_zeroes(text, allowance, list);
        ASSERT_EQ(std::vector<double>(list.data(), list.data() + list.size()), expected) << text;
        ASSERT_EQ(losses.cut, cut) << text;
        ASSERT_EQ(allowance.room(0), other.room(0)) << text;
        ASSERT_EQ(ux::has_counted_zeroes(text), !expected.empty()) << text;
    }
}

TEST(read_counted_zeroes, CutsTheRunThatFillsTheList) {
    std::string text;
    for (int i = 0; i < 120; ++i) text += "3 0 9999 ";
    ux::RunAllowance allowance(1U << 30);
    ux::NumberList list;

    const ux::NumberLosses losses = ux::read_counted_zeroes(text, allowance, list);

    std::vector<double> expected(ux::RunAllowance::kLongestList);
    for (std::size_t i = 0; i < expected.size(); i += 10000) expected[i] = 3;
    EXPECT_TRUE(std::vector<double>(list.data(), list.data() + list.size()) == expected);
    EXPECT_EQ(losses.cut, 105 * 10000U - expected.size());
    EXPECT_EQ(losses.unreadable, 0U);
}

struct ChannelCase {
    const char* text;
    const char* counted;
    const char* plain;
};
class ChannelLists : public testing::TestWithParam<ChannelCase> {};
INSTANTIATE_TEST_SUITE_P(
    VCTree_n42_, ChannelLists,
    testing::Values(
        ChannelCase{"5 0 3 7", "5 0 0 0 7", "5 0 3 7"}, ChannelCase{"4 0", "4", "4 0"},
        ChannelCase{"1 0 0 2", "1 2", "1 0 0 2"}, ChannelCase{"1 0 2.4 3", "1 0 0 3", "1 0 2.4 3"},
        ChannelCase{"1 0 2.5 3", "1 0 0 0 3", "1 0 2.5 3"},
        ChannelCase{"1 0 0.4 3", "1 3", "1 0 0.4 3"}, ChannelCase{"1 0 -4 3", "1 3", "1 0 -4 3"},
        ChannelCase{"1 0.0 2 3", "1 0 0 3", "1 0 2 3"},
        ChannelCase{"1 x 2 3", "1 0 0 3", "1 0 2 3"},
        ChannelCase{"1 nan 1 inf 1 0x10 1", "1 0 0 0", "1 0 1 0 1 0 1"},
        ChannelCase{"2.38062e+06 -1.5 1e999 2", "2380620 -1.5 0 0", "2380620 -1.5 0 2"},
        ChannelCase{"+7 .5 5. 12345678901234567890", "7 0.5 5 12345678901234567000",
                    "7 0.5 5 12345678901234567000"},
        ChannelCase{" \t1\r\n\r\n2  ", "1 2", "1 2"},
        ChannelCase{"123456789012345 0.000001 1234.5678", "123456789012345 1e-06 1234.5678",
                    "123456789012345 1e-06 1234.5678"}));
TEST_P(ChannelLists, PlainAndCompressed) {
    const auto as_numbers = [](const std::string& text) {
        TestTree tree(("<n>" + text + "</n>").c_str());
        CArray<double, double> values;
        tree.NodeValue(values, 1);
        return numbers(values);
    };
    EXPECT_EQ(as_numbers(read_channels(GetParam().text, kCounted)), as_numbers(GetParam().counted));
    EXPECT_EQ(as_numbers(read_channels(GetParam().text)), as_numbers(GetParam().plain));
}

TEST(VCTree_n42_, CompressionIsKnownUnderBothAttributeNames) {
    EXPECT_EQ(read_channels("0 3", " Compression='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='None' Compression='CountedZeroes'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " compressionCode='None'"), "0 3");
    EXPECT_EQ(read_channels("0 3", " compressionCode=' countedzeroes '"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " Compression='CountedZeros'"), "0 0 0");
    EXPECT_EQ(read_channels("0 3", " Compression='CountedZero'"), "0 3");
    EXPECT_EQ(read_channels("0 3", " Compression='Counted Zeroes'"), "0 3");
    EXPECT_EQ(read_channels("0 3", " Code='CountedZeroes'"), "0 3");
}

TEST(VCTree_n42_, CommasAndSemicolonsSeparateNumbers) {
    EXPECT_EQ(read_channels("1,2;3, 4 ;\n5"), "1 2 3 4 5");
    EXPECT_EQ(read_channels("1.5e1,-2,x,,3"), "15 -2 0 3");
    EXPECT_EQ(read_channels("7,0,2,8", kCounted), "7 0 0 8");
}

TEST(VCTree_n42_, RunsStopAtTheLongestListAndEndIt) {
    const Import import(in_2011(measured(spectrum_of("7 0 2000000000 8", kCounted))));
    UXXmlWrapperBase column = import.node("RadMeasurement/Spectrum/ChannelData_0");
    CArray<double, double> counts;

    ASSERT_EQ(column.NodeValue(counts, 1), 1);

    EXPECT_EQ(counts.GetSize(), 1 << 20);
    EXPECT_EQ(counts[0], 7);
    EXPECT_EQ(counts[counts.GetSize() - 1], 0);
}

TEST(VCTree_n42_, WrittenValuesAreKeptBeyondTheLongestList) {
    const std::string many = repeated("1 ", (1 << 20) + 5);
    const Import import(in_2011(measured(spectrum_of(many + "0 1 9", kCounted))));
    UXXmlWrapperBase column = import.node("RadMeasurement/Spectrum/ChannelData_0");
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
        UXXmlWrapperBase column =
            import.node("RadMeasurement/Spectrum[" + std::to_string(place) + "]/ChannelData_0");
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
    UXXmlWrapperBase column = import.node("RadMeasurement/Spectrum/ChannelData_0");
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

    EXPECT_EQ(import.channels("GrossCounts/RadMeasurement"), GetParam().count);
}

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

}  // namespace
