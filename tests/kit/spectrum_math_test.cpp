// Calculating with spectra.
#include "uxtree/kit/spectrum_math.h"

#include <cmath>
#include <limits>
#include <random>

#include <gmock/gmock.h>

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using uxkit::EnergyCalibration;
using uxkit::Rebinning;
using uxkit::Spectrum;
using uxkit::SpectrumProblem;

namespace {

EnergyCalibration polynomial(std::vector<double> coefficients) {
    EnergyCalibration out;
    out.coefficients = std::move(coefficients);
    out.unit = "keV";
    return out;
}
EnergyCalibration bounded(std::vector<double> boundaries) {
    EnergyCalibration out;
    out.boundaries = std::move(boundaries);
    out.unit = "keV";
    return out;
}
Spectrum measured_spectrum(std::vector<double> counts, double live = 2,
                           std::vector<double> coefficients = {0, 1}) {
    Spectrum out;
    out.counts = std::move(counts);
    out.liveSeconds = live;
    out.realSeconds = live < 0 ? -1 : 2 * live;
    if (!coefficients.empty()) {
        out.calibration =
            std::make_shared<const EnergyCalibration>(polynomial(std::move(coefficients)));
    }
    return out;
}

TEST(import_energies, TakeChannelOneFirst) {
    EXPECT_THAT(uxkit::import_energies(polynomial({1, 2, 10}), 3), ElementsAre(13, 45, 97));
    EXPECT_THAT(uxkit::import_energies(bounded({0, 3, 9}), 2), ElementsAre(0, 3, 9));
}
TEST(channel_edges, TakeChannelZeroFirstAndEndWithTheLastEdge) {
    EXPECT_THAT(uxkit::channel_edges(polynomial({1, 2, 10}), 2), ElementsAre(1, 13, 45));
    EXPECT_THAT(uxkit::channel_edges(bounded({0, 3, 9}), 2), ElementsAre(0, 3, 9));
    EXPECT_THAT(uxkit::channel_edges(bounded({0, 3, 9}), 3), ElementsAre(0, 3, 9, 15));
    EXPECT_THAT(uxkit::channel_edges(bounded({0, 3, 9}), 4), IsEmpty());
    EXPECT_THAT(uxkit::channel_edges(bounded({0}), 1), IsEmpty());
}
TEST(ascends, WantsFiniteValuesThatGrow) {
    EXPECT_TRUE(uxkit::ascends({1, 2, 3}));
    EXPECT_FALSE(uxkit::ascends({1, 1}));
    EXPECT_FALSE(uxkit::ascends({2, 1}));
    EXPECT_FALSE(uxkit::ascends({1, std::numeric_limits<double>::infinity()}));
    EXPECT_FALSE(uxkit::ascends({std::nan("")}));
}

TEST(rate_of, IsPerSecondOfLiveTime) {
    EXPECT_EQ(uxkit::rate_of(measured_spectrum({1, 2, 5})), 4);
    EXPECT_LT(uxkit::rate_of(measured_spectrum({1}, 0)), 0);
    EXPECT_LT(uxkit::rate_of(measured_spectrum({1}, -1)), 0);
}
TEST(dead_percent, NeedsBothTimes) {
    EXPECT_EQ(uxkit::dead_percent(measured_spectrum({})), 50);
    Spectrum odd = measured_spectrum({});
    odd.realSeconds = 1;
    EXPECT_LT(uxkit::dead_percent(odd), 0);
    EXPECT_LT(uxkit::dead_percent(measured_spectrum({}, -1)), 0);
}

TEST(join_channels, LosesNoCountAndKeepsEdges) {
    Spectrum spectrum = measured_spectrum({1, 2, 3, 4, 5}, 2, {1, 2, 3});
    const std::vector<double> before = uxkit::channel_edges(*spectrum.calibration, 5);
    ASSERT_EQ(uxkit::join_channels(spectrum, 2), SpectrumProblem::kNone);
    EXPECT_THAT(spectrum.counts, ElementsAre(3, 7, 5));
    const std::vector<double> after = uxkit::channel_edges(*spectrum.calibration, 3);
    EXPECT_THAT(after, ElementsAre(before[0], before[2], before[4], testing::_));
    spectrum.calibration = std::make_shared<const EnergyCalibration>(bounded({0, 1, 3, 6}));
    ASSERT_EQ(uxkit::join_channels(spectrum, 2), SpectrumProblem::kNone);
    EXPECT_THAT(spectrum.counts, ElementsAre(10, 5));
    EXPECT_THAT(spectrum.calibration->boundaries, ElementsAre(0, 3, 6));
    EXPECT_EQ(uxkit::join_channels(spectrum, 0), SpectrumProblem::kBadFactor);
    EXPECT_EQ(uxkit::join_channels(spectrum, 1), SpectrumProblem::kNone);
    EXPECT_THAT(spectrum.counts, ElementsAre(10, 5));
}

TEST(rebin, DividesByOverlap) {
    std::vector<double> out;
    double outside = -1;
    ASSERT_EQ(uxkit::rebin({4, 8}, {0, 2, 4}, {-1, 1, 3}, out, outside), SpectrumProblem::kNone);
    EXPECT_THAT(out, ElementsAre(2, 6));
    EXPECT_EQ(outside, 4);
    ASSERT_EQ(uxkit::rebin({4}, {0, 2}, {5, 6}, out, outside), SpectrumProblem::kNone);
    EXPECT_THAT(out, ElementsAre(0));
    EXPECT_EQ(outside, 4);
    out = {7};
    EXPECT_EQ(uxkit::rebin({4}, {0, 0}, {5, 6}, out, outside),
              SpectrumProblem::kEnergiesDoNotAscend);
    EXPECT_EQ(uxkit::rebin({4}, {}, {5, 6}, out, outside), SpectrumProblem::kEnergiesDoNotAscend);
    EXPECT_THAT(out, ElementsAre(7));
}
// What goes in comes out, whatever the channels are.
TEST(rebin, KeepsTheSum) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> width(0.01, 3);
    for (int round = 0; round < 300; ++round) {
        const auto edges = [&](std::size_t count) {
            std::vector<double> out{width(random) - 1.5};
            while (out.size() < count) out.push_back(out.back() + width(random));
            return out;
        };
        const std::vector<double> from = edges(2 + random() % 60);
        const std::vector<double> to = edges(2 + random() % 60);
        std::vector<double> counts(from.size() - 1);
        for (double& count : counts) count = static_cast<double>(random() % 1000);
        std::vector<double> out;
        double outside = 0;
        ASSERT_EQ(uxkit::rebin(counts, from, to, out, outside), SpectrumProblem::kNone);
        ASSERT_THAT(uxkit::total(out) + outside, DoubleNear(uxkit::total(counts), 1e-6));
    }
}

TEST(add_spectrum, AddsCountsAndTimes) {
    Spectrum sum = measured_spectrum({1, 2});
    sum.detector = "A";
    sum.kind = "F";
    sum.liveTime = "PT2S";
    Spectrum more = measured_spectrum({10, 20}, 3);
    more.detector = "B";
    more.kind = "F";
    Rebinning rebinning;
    ASSERT_EQ(uxkit::add_spectrum(sum, more, rebinning), SpectrumProblem::kNone);
    EXPECT_FALSE(rebinning.needed);
    EXPECT_THAT(sum.counts, ElementsAre(11, 22));
    EXPECT_EQ(sum.liveSeconds, 5);
    EXPECT_EQ(sum.realSeconds, 10);
    EXPECT_EQ(sum.detector, "");
    EXPECT_EQ(sum.kind, "F");
    EXPECT_EQ(sum.liveTime, "");
    ASSERT_EQ(uxkit::add_spectrum(sum, measured_spectrum({0, 0}, -1), rebinning),
              SpectrumProblem::kNone);
    EXPECT_LT(sum.liveSeconds, 0);
}
TEST(add_spectrum, RebinsOtherChannels) {
    Spectrum sum = measured_spectrum({1, 1});
    Rebinning rebinning;
    ASSERT_EQ(uxkit::add_spectrum(sum, measured_spectrum({8, 8}, 2, {0, 2}), rebinning),
              SpectrumProblem::kNone);
    EXPECT_TRUE(rebinning.needed);
    EXPECT_EQ(rebinning.outside, 8);
    EXPECT_THAT(sum.counts, ElementsAre(5, 5));
}
TEST(add_spectrum, RefusesWhatCannotBeCompared) {
    Spectrum sum = measured_spectrum({1, 1});
    Rebinning rebinning;
    EXPECT_EQ(uxkit::add_spectrum(sum, measured_spectrum({8, 8}, 2, {}), rebinning),
              SpectrumProblem::kNoCalibration);
    EXPECT_EQ(uxkit::add_spectrum(sum, measured_spectrum({8, 8}, 2, {0, -2}), rebinning),
              SpectrumProblem::kEnergiesDoNotAscend);
    Spectrum other = measured_spectrum({8}, 2, {0, 2});
    EnergyCalibration mega = polynomial({0, 2});
    mega.unit = "MeV";
    other.calibration = std::make_shared<const EnergyCalibration>(mega);
    EXPECT_EQ(uxkit::add_spectrum(sum, other, rebinning), SpectrumProblem::kDifferentUnits);
    EXPECT_THAT(sum.counts, ElementsAre(1, 1));
    Spectrum bare = measured_spectrum({1, 1}, 2, {});
    EXPECT_EQ(uxkit::add_spectrum(bare, measured_spectrum({8}, 2, {}), rebinning),
              SpectrumProblem::kDifferentChannels);
    EXPECT_EQ(uxkit::add_spectrum(bare, measured_spectrum({8, 9}, 2, {}), rebinning),
              SpectrumProblem::kNone);
    EXPECT_THAT(bare.counts, ElementsAre(9, 10));
}

TEST(subtract_background, ScalesByLiveTimes) {
    Spectrum spectrum = measured_spectrum({10, 3}, 2);
    Rebinning rebinning;
    ASSERT_EQ(uxkit::subtract_background(spectrum, measured_spectrum({8, 8}, 4), rebinning),
              SpectrumProblem::kNone);
    EXPECT_THAT(spectrum.counts, ElementsAre(6, -1));
    EXPECT_EQ(uxkit::subtract_background(spectrum, measured_spectrum({8, 8}, -1), rebinning),
              SpectrumProblem::kNoLiveTime);
    EXPECT_THAT(spectrum.counts, ElementsAre(6, -1));
}
TEST(make_rates, NeedALiveTime) {
    Spectrum spectrum = measured_spectrum({10, 3}, 2);
    ASSERT_EQ(uxkit::make_rates(spectrum), SpectrumProblem::kNone);
    EXPECT_THAT(spectrum.counts, ElementsAre(5, 1.5));
    Spectrum timeless = measured_spectrum({10}, 0);
    EXPECT_EQ(uxkit::make_rates(timeless), SpectrumProblem::kNoLiveTime);
    EXPECT_THAT(timeless.counts, ElementsAre(10));
}
TEST(text_of, HasWordsForEveryProblem) {
    const auto words = [](SpectrumProblem problem) { return std::string(uxkit::text_of(problem)); };
    EXPECT_EQ(words(SpectrumProblem::kNone), "");
    EXPECT_EQ(words(SpectrumProblem::kNoLiveTime), "it has no live time");
    EXPECT_EQ(words(SpectrumProblem::kNoCalibration), "one has energies and the other none");
    EXPECT_EQ(words(SpectrumProblem::kDifferentChannels),
              "different numbers of channels, and no energies to compare them by");
    EXPECT_EQ(words(SpectrumProblem::kEnergiesDoNotAscend), "its energies do not ascend");
    EXPECT_EQ(words(SpectrumProblem::kDifferentUnits), "energies of different units");
    EXPECT_EQ(words(SpectrumProblem::kBadFactor), "channels are joined by 1 or more");
    EXPECT_EQ(words(SpectrumProblem::kNoMemory), "no memory is left");
}

TEST(region_of, TakesTheBackgroundFromBothSides) {
    const std::vector<double> counts{9, 2, 2, 2, 10, 20, 10, 4, 4, 4, 9};
    const uxkit::Region peak = uxkit::region_of(counts, 4, 6);
    EXPECT_EQ(peak.gross, 40);
    EXPECT_DOUBLE_EQ(peak.background, 9);
    EXPECT_DOUBLE_EQ(peak.net, 31);
    EXPECT_NEAR(peak.centroid, 5, 0.05);
    EXPECT_LT(peak.centroid, 5);  // the background grows to the right
}
TEST(region_of, WorksAtTheEnds) {
    EXPECT_EQ(uxkit::region_of({1, 2, 3}, 0, 9).net, 6);  // no neighbours, no background
    EXPECT_EQ(uxkit::region_of({4, 1}, 0, 0).background, 1);
    EXPECT_EQ(uxkit::region_of({1, 1, 1}, 1, 1).centroid, 1);  // nothing above the background
    EXPECT_EQ(uxkit::region_of({}, 0, 0).gross, 0);
    EXPECT_EQ(uxkit::region_of({1}, 1, 1).gross, 0);
    EXPECT_EQ(uxkit::region_of({1, 2}, 1, 0).gross, 0);
}

}  // namespace
