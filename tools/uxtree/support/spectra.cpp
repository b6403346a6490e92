#include "support/spectra.h"

#include <charconv>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "uxtree/import/n42.h"

#include "support/failure.h"
#include "support/tree.h"

namespace uxtool {
namespace {

constexpr DWORD kPreview = 0x10000;
constexpr int kNeitherForm = -9093;

// The tag without its prefix.
std::string local_tag(const UXXmlWrapperBase& node) {
    const std::string tag = tag_of(node);
    return tag.substr(tag.find(':') + 1);
}

// Throws what is wrong with a file that the library refused. Reading it as XML tells where it is
// broken, when it is.
[[noreturn]] void throw_refused(const SpectrumInput& file) {
    const UXXmlWrapperBase root = open_tree(file.input.path(), file.name);
    throw Failure(kUnreadable, file.name,
                  fmt::format("no N42 file: the root element is \"{}\"", tag_of(root)),
                  "N42 files have the root RadInstrumentData or N42InstrumentData");
}

void check_result(int result, const SpectrumInput& file) {
    if (result == 0) return;
    if (result == kNeitherForm) throw_refused(file);
    throw Failure(kRefused, file.name, fmt::format("cannot be imported ({})", result));
}

std::optional<UXXmlWrapperBase> child_of(const UXXmlWrapperBase& node, const char* tag) {
    UXXmlWrapperBase child;
    if (node.FindChild(tag, &child, 1) == 0) return std::nullopt;
    return child;
}
// The text of the first child with one of the tags, which differ between the two forms.
std::string text_of_child(const UXXmlWrapperBase& node, const char* tag, const char* otherTag) {
    for (const char* candidate : {tag, otherTag}) {
        if (const auto child = child_of(node, candidate)) return value_of(*child);
    }
    return "";
}

std::vector<double> vector_of(UXXmlWrapperBase node) {
    CArray<double, double> values;
    if (node.NodeValue(values, 1) == 0) return {};
    return {values.GetData(), values.GetData() + values.GetSize()};
}

class Reader {
public:
    SpectrumFile read(const UXXmlWrapperBase& import) {
        const auto top = child_of(import, "n42");
        const auto measurements = top ? child_of(*top, "RadMeasurements") : std::nullopt;
        if (!measurements) return {};
        for_each_child(*measurements, [&](const UXXmlWrapperBase& node) {
            if (tag_of(node) == "GrossCounts") {
                for_each_child(node, [&](const UXXmlWrapperBase& count) { add_gross(count); });
            } else {
                ++out_.measurements;
                int place = 0;
                for_each_child(
                    node, [&](const UXXmlWrapperBase& group) { add_spectrum(group, place++); });
            }
        });
        return std::move(out_);
    }

private:
    void add_gross(UXXmlWrapperBase node) {
        GrossCount count;
        count.id = attribute_of(node, "id").value_or("");
        count.kind = text_of_child(node, "MeasurementClassCode", "SourceType");
        count.start = text_of_child(node, "StartDateTime", "StartTime");
        count.liveTime = text_of_child(node, "LiveTimeDuration", "LiveTime");
        node.NodeValue(count.count, 1);
        out_.grossCounts.push_back(std::move(count));
    }

    void add_spectrum(const UXXmlWrapperBase& group, int place) {
        SpectrumData spectrum;
        spectrum.measurement = out_.measurements;
        spectrum.place = place;
        spectrum.id = attribute_of(group, "id").value_or(attribute_of(group, "ID").value_or(""));
        spectrum.detector = attribute_of(group, "radDetectorInformationReference")
                                .value_or(attribute_of(group, "Detector").value_or(""));
        spectrum.kind = text_of_child(group, "MeasurementClassCode", "SourceType");
        spectrum.start = text_of_child(group, "StartDateTime", "StartTime");
        spectrum.realTime = text_of_child(group, "RealTimeDuration", "SampleRealTime");
        spectrum.liveTime = text_of_child(group, "LiveTimeDuration", "LiveTime");
        spectrum.name = fmt::format("{}.{}", spectrum.measurement, place);
        for (const std::string* part : {&spectrum.kind, &spectrum.detector}) {
            if (!part->empty()) spectrum.name += " " + *part;
        }
        add_columns(group, spectrum);
    }

    void add_columns(const UXXmlWrapperBase& group, const SpectrumData& common) {
        std::shared_ptr<const EnergyAxis> axis;
        int columns = 0;
        for_each_child(group, [&](const UXXmlWrapperBase& node) {
            const std::string tag = tag_of(node);
            if (tag.starts_with("Energy")) axis = axis_of(node);
            if (!tag.starts_with("ChannelData_")) return;
            SpectrumData spectrum = common;
            if (columns++ > 0) spectrum.name += fmt::format(" ({})", columns);
            spectrum.counts = vector_of(node);
            // Further columns of a spectrum may be longer than the first, which has the energies.
            if (axis && axis->values.size() >= spectrum.counts.size()) spectrum.axis = axis;
            out_.spectra.push_back(std::move(spectrum));
        });
    }

    std::shared_ptr<const EnergyAxis> axis_of(const UXXmlWrapperBase& node) {
        EnergyAxis axis;
        axis.values = vector_of(node);
        axis.id = attribute_of(node, "id").value_or("");
        axis.comment = attribute_of(node, "Comment").value_or("");
        axis.unit = attribute_of(node, "Unit").value_or("");
        auto& known = axes_[axis.id + "\n" + axis.comment + "\n" + axis.unit];
        for (const auto& candidate : known) {
            if (candidate->values == axis.values) return candidate;
        }
        known.push_back(std::make_shared<const EnergyAxis>(std::move(axis)));
        return known.back();
    }

    SpectrumFile out_;
    std::map<std::string, std::vector<std::shared_ptr<const EnergyAxis>>> axes_;
};

}  // namespace

UXXmlWrapperBase import_spectrum_file(const SpectrumInput& file,
                                      const std::vector<std::string>& detectors) {
    const Progress progress("importing " + file.name);
    CWBOStringArray selection;
    for (const std::string& detector : detectors) selection.Add(detector.c_str());
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "Import");
    const int result = VCTree_n42_(&tree, file.input.path().c_str(), &selection, nullptr, 0);
    check_result(result, file);
    return tree;
}

std::vector<std::string> detectors_of_file(const SpectrumInput& file) {
    CWBOStringArray names;
    const int result = VCTree_n42_(nullptr, file.input.path().c_str(), &names, nullptr, kPreview);
    check_result(result, file);
    return to_strings(names);
}

std::string form_of_file(const SpectrumInput& file) {
    const std::string root = local_tag(open_tree(file.input.path(), file.name));
    return root == "N42InstrumentData" ? "2006" : "2011";
}

SpectrumFile read_spectra(const UXXmlWrapperBase& import) {
    return Reader().read(import);
}

double seconds_of(const std::string& duration) {
    constexpr double kNone = -1;
    std::string_view rest = duration;
    if (!rest.starts_with("PT")) return kNone;
    rest.remove_prefix(2);
    double seconds = 0;
    while (!rest.empty()) {
        double number = 0;
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
        if (error != std::errc() || end == rest.data() + rest.size()) return kNone;
        const double unit = *end == 'H' ? 3600 : *end == 'M' ? 60 : *end == 'S' ? 1 : 0;
        if (unit == 0) return kNone;
        seconds += unit * number;
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()) + 1);
    }
    return seconds;
}

}  // namespace uxtool
