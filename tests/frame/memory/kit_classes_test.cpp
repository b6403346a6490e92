// The classes and functions of the kit in C++ with every one of their allocations failing in turn.
#include <functional>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"
#include "uxtree/kit/c.h"
#include "uxtree/kit/outline.h"
#include "uxtree/kit/select.h"
#include "uxtree/kit/spectra.h"
#include "uxtree/kit/spectrum_math.h"
#include "uxtree/kit/values.h"

#include "frame/memory/failing_new.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

using namespace uxkit;

constexpr int kThrown = -99;
constexpr int kN42CannotAdd = -9096;

// A call on things of its own, made anew for every allocation that is to fail.
struct Stage {
    std::function<int()> call;
    std::function<std::string()> seen;  // all that can be told of these things
    // What a call without memory may answer, and what is seen then. Without the latter, anything
    // may be seen that the same call completes later.
    std::set<int> failures;
    std::set<std::string> left;
};

int answer_of(const Stage& stage) {
    try {
        return stage.call();
    } catch (const std::bad_alloc&) {
        return kThrown;
    }
}

void fail_each_allocation(const std::function<Stage()>& make) {
    const Stage complete = make();
    const int answer = complete.call();
    const std::string whole = complete.seen();
    long index = 0;
    for (bool more = true; more && !testing::Test::HasFailure(); ++index) {
        SCOPED_TRACE("allocation " + std::to_string(index));
        const Stage stage = make();
        failed = false;
        untilFailure = index;
        const int got = answer_of(stage);
        untilFailure = -1;
        more = failed;
        const std::string seen = stage.seen();
        if (!failed || (got == answer && seen == whole)) {
            EXPECT_EQ(got, answer);
            EXPECT_EQ(seen, whole);
            continue;
        }
        EXPECT_THAT(stage.failures, testing::Contains(got));
        if (!stage.left.empty()) {
            EXPECT_THAT(stage.left, testing::Contains(seen));
        }
        EXPECT_EQ(stage.call(), answer);
        EXPECT_EQ(stage.seen(), whole);
    }
    EXPECT_GT(index, 1) << "nothing was allocated";
}

std::string found_by(const UXSelected& found) {
    std::string all;
    for (std::size_t i = 0; i < found.size(); ++i) {
        CStringUTF8 text;
        if (!found.text(i, text)) text = "?";
        all += tag_text(found.node(i)) + "/@" + found.attribute(i) + "=" + std::string(text) + "\n";
    }
    return all;
}

// ---- selections -------------------------------------------------------------------------------

constexpr const char* kShelf = "<r><a x='1'>t<b>u</b>v</a><a x='2'><b>u</b></a><c y='3'/></r>";

UXXmlWrapperBase shelf_with_layout() {
    UXXmlWrapperBase root;
    UXLoadForEditingFromMemory(&root, kShelf, std::char_traits<char>::length(kShelf));
    return root;
}

Stage compiling() {
    const auto selection = std::make_shared<UXSelection>();
    selection->compile("c/@y");
    return {[=] {
                UXSelectFault fault;
                if (selection->compile("//a[contains(b, 'u') and not(@x = 1)]/@x", &fault))
                    return 1;
                return fault.message == "out of memory" ? 0 : -1;
            },
            [=] {
                const TestTree tree(kShelf);
                UXSelected found;
                selection->run(tree, found);
                return found_by(found);
            },
            {0},
            {"c/@y=3\n"}};
}

Stage selecting(const char* expression) {
    const UXXmlWrapperBase root = shelf_with_layout();
    const auto selection = std::make_shared<UXSelection>();
    selection->compile(expression);
    const auto found = std::make_shared<UXSelected>();
    return {[=] { return static_cast<int>(selection->run(root, *found)); },
            [=] { return found_by(*found) + to_text(root); },
            {static_cast<int>(UXSelectOutcome::kOutOfMemory)},
            {to_text(root)}};
}

Stage selecting_in_c() {
    const UXXmlWrapperBase root = shelf_with_layout();
    const auto selection = std::make_shared<UXSelection>();
    selection->compile("//a[contains(., 'tu')]");
    const auto found = std::make_shared<UXSelected>();
    return {[=] { return ux_select_run(selection.get(), &root, found.get(), nullptr); },
            [=] { return found_by(*found); },
            {-1},
            {""}};
}

Stage telling_a_text() {
    const UXXmlWrapperBase root = shelf_with_layout();
    UXSelection selection;
    selection.compile("//a");
    const auto found = std::make_shared<UXSelected>();
    selection.run(root, *found);
    const auto text = std::make_shared<CStringUTF8>();
    return {[=] { return found->text(0, *text) ? 1 : 0; },
            [=] { return std::string(*text); },
            {kThrown},
            {""}};
}

// ---- values and outlines ----------------------------------------------------------------------

Stage finding_value_nodes() {
    const auto tree = std::make_shared<TestTree>(
        "<r><a RepeatID='2'><b DataID='5'>x</b></a><c DataID='7' Use='1'><d/></c></r>");
    const auto nodes = std::make_shared<std::vector<UXValueNode>>();
    return {[=] {
                *nodes = UXValueNodes(*tree);
                return 1;
            },
            [=] {
                std::string all;
                for (const UXValueNode& value : *nodes) {
                    all += tag_text(value.node) + std::to_string(value.id) + " ";
                }
                return all + tree->text();
            },
            {kThrown},
            {tree->text()}};
}

struct Files {
    TemporaryFolder folder;
    std::string one = folder.write("one.xml", "<r><a x='1'/><b><c/></b></r>");
    std::string two = folder.write("two.xml", "<r><b><d y='1'/></b></r>");
};

Stage outlining_a_file() {
    const auto files = std::make_shared<Files>();
    const auto target = std::make_shared<TestTree>("<t><kept/></t>");
    return {[=] { return UXOutlineFile(target.get(), files->one.c_str(), false); },
            [=] { return target->text(); },
            {0},
            {target->text()}};
}

Stage outlining_files() {
    const auto files = std::make_shared<Files>();
    const auto target = std::make_shared<TestTree>("<t><kept/></t>");
    return {[=] {
                const char* const paths[] = {files->one.c_str(), files->two.c_str()};
                return UXOutlineFiles(target.get(), paths, 2, nullptr);
            },
            [=] { return target->text(); },
            {0},
            {target->text()}};
}

Stage merging_outlines() {
    const auto target =
        std::make_shared<TestTree>("<t><Node Label='r'><Node Label='a'/></Node></t>");
    const auto source = std::make_shared<TestTree>(
        "<s><Node Label='r'><Attr Label='@x'/><Node Label='b'><Node Label='c'/></Node></Node></s>");
    return {[=] { return UXMergeOutline(target.get(), source.get()); },
            [=] { return target->text() + source->text(); },
            {0},
            {}};
}

// ---- spectra ----------------------------------------------------------------------------------

constexpr const char* kSpectra =
    "<RadInstrumentData><RadDetectorInformation id='A'/>"
    "<EnergyCalibration id='E'><CoefficientValues>1 2</CoefficientValues></EnergyCalibration>"
    "<RadMeasurement><MeasurementClassCode>Foreground</MeasurementClassCode>"
    "<StartDateTime>2026-11-22T01:02:03Z</StartDateTime><RealTimeDuration>PT10S</RealTimeDuration>"
    "<Spectrum id='s' radDetectorInformationReference='A' energyCalibrationReference='E'>"
    "<LiveTimeDuration>PT9.5S</LiveTimeDuration>"
    "<ChannelData compressionCode='CountedZeroes'>4 0 2 7</ChannelData></Spectrum>"
    "<GrossCounts id='g' "
    "radDetectorInformationReference='A'><CountData>50</CountData></GrossCounts>"
    "<DoseRate radDetectorInformationReference='A'><DoseRateValue>0.25</DoseRateValue></DoseRate>"
    "</RadMeasurement></RadInstrumentData>";

struct OpenFile {
    TemporaryFolder folder;
    std::string path = folder.write("f.n42", kSpectra);
    SpectrumReader reader;
    Spectrum spectrum;
};

std::string seen_of(const Spectrum& spectrum) {
    std::string all = spectrum.name + "," + spectrum.id + "," + spectrum.detector + "," +
                      spectrum.kind + "," + spectrum.start + "," + spectrum.realTime + "," +
                      spectrum.liveTime + "," + std::to_string(spectrum.realSeconds) + "," +
                      std::to_string(spectrum.liveSeconds) + ":";
    if (spectrum.calibration) {
        for (const double c : spectrum.calibration->coefficients) all += std::to_string(c) + " ";
        for (const double b : spectrum.calibration->boundaries) all += std::to_string(b) + " ";
    }
    if (spectrum.dose) all += spectrum.dose->unit;
    if (spectrum.grossCounts) all += " gross " + std::to_string(*spectrum.grossCounts);
    all += ":";
    for (const double count : spectrum.counts) all += " " + std::to_string(count);
    return all;
}

Stage opening_spectra() {
    const auto file = std::make_shared<OpenFile>();
    return {
        [=] { return static_cast<int>(file->reader.open(file->path.c_str(), {})); },
        [=] {
            const SpectrumReader& reader = file->reader;
            return reader.root_name() + reader.form() + std::to_string(reader.measurement_count()) +
                   std::to_string(reader.gross_counts().size()) +
                   std::to_string(reader.detectors().size()) +
                   std::to_string(reader.notes().size());
        },
        {static_cast<int>(SpectrumOpening::kNoMemory), static_cast<int>(SpectrumOpening::kNoXml)},
        {"0000"}};
}

Stage reading_a_spectrum() {
    const auto file = std::make_shared<OpenFile>();
    // A reader that lacked memory has failed for good, so the file is opened for each call.
    return {[=] {
                const long until = untilFailure;
                untilFailure = -1;
                file->reader.open(file->path.c_str());
                untilFailure = until;
                return file->reader.next(file->spectrum) ? 1 : file->reader.failed() ? 2 : 0;
            },
            [=] { return seen_of(file->spectrum); },
            {2},
            {}};
}

Stage importing_spectra() {
    const auto file = std::make_shared<OpenFile>();
    const auto tree = std::make_shared<TestTree>("<t><old/></t>");
    return {[=] {
                const long until = untilFailure;
                untilFailure = -1;
                file->reader.open(file->path.c_str());
                while (file->reader.next(file->spectrum)) {
                }
                untilFailure = until;
                return file->reader.import_into(*tree);
            },
            [=] { return to_text(*tree); },
            {kN42CannotAdd},
            {}};
}

Spectrum calibrated(std::vector<double> counts, std::vector<double> coefficients) {
    EnergyCalibration calibration;
    calibration.coefficients = std::move(coefficients);
    Spectrum spectrum;
    spectrum.counts = std::move(counts);
    spectrum.liveSeconds = 2;
    spectrum.calibration = std::make_shared<const EnergyCalibration>(std::move(calibration));
    return spectrum;
}

template <typename Change>
Stage calculating(Change change) {
    const auto spectrum = std::make_shared<Spectrum>(calibrated({1, 2, 3, 4}, {0, 1}));
    return {[=] { return static_cast<int>(change(*spectrum)); },
            [=] { return seen_of(*spectrum); },
            {static_cast<int>(SpectrumProblem::kNoMemory)},
            {seen_of(*spectrum)}};
}

Stage rebinning() {
    const auto out = std::make_shared<std::vector<double>>(1, 7.0);
    const std::vector<double> counts{4, 8}, edges{0, 2, 4}, newEdges{-1, 1, 3};
    return {[=] {
                double outside = 0;
                return static_cast<int>(rebin(counts, edges, newEdges, *out, outside));
            },
            [=] { return testing::PrintToString(*out); },
            {static_cast<int>(SpectrumProblem::kNoMemory)},
            {"{ 7 }"}};
}

Stage listing_energies() {
    EnergyCalibration calibration;
    calibration.coefficients = {1, 2, 10};
    const auto out = std::make_shared<std::vector<double>>();
    return {[=] {
                *out = channel_edges(calibration, 2);
                return out->empty() ? 0 : 1;
            },
            [=] { return testing::PrintToString(*out); },
            {0},
            {"{}"}};
}

Stage joining_channels() {
    return calculating([](Spectrum& spectrum) { return join_channels(spectrum, 2); });
}

Stage adding_a_spectrum() {
    return calculating([other = calibrated({5, 6}, {0, 2})](Spectrum& spectrum) {
        Rebinning note;
        return add_spectrum(spectrum, other, note);
    });
}

Stage subtracting_a_background() {
    return calculating([other = calibrated({5, 6}, {0, 2})](Spectrum& spectrum) {
        Rebinning note;
        return subtract_background(spectrum, other, note);
    });
}

struct Row {
    const char* name;
    std::function<Stage()> make;
};
const std::vector<Row> kRows{
    {"compile", compiling},
    {"select_children", [] { return selecting("a/@x"); }},
    {"select_by_text", [] { return selecting("//a[contains(., 'tu')]"); }},
    {"select_texts", [] { return selecting("//text()"); }},
    {"select_by_places", [] { return selecting("//a[../a[last()]/@x > 1][count(b) = 1]"); }},
    {"select_in_c", selecting_in_c},
    {"text", telling_a_text},
    {"value_nodes", finding_value_nodes},
    {"outline_file", outlining_a_file},
    {"outline_files", outlining_files},
    {"merge_outline", merging_outlines},
    {"open_spectra", opening_spectra},
    {"next_spectrum", reading_a_spectrum},
    {"import_spectra", importing_spectra},
    {"join_channels", joining_channels},
    {"add_spectrum", adding_a_spectrum},
    {"subtract_background", subtracting_a_background},
    {"rebin", rebinning},
    {"channel_edges", listing_energies},
};
class KitClasses : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(KitClasses, FailWholeOrDoAll) {
    fail_each_allocation(GetParam().make);
}
INSTANTIATE_TEST_SUITE_P(Each, KitClasses, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

}  // namespace uxtest
