// The reader of spectrum files that builds no tree.
#include "uxtree/kit/spectra.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "uxtree/host/embedded.h"
#include "uxtree/import/n42.h"

#include "base/decimal.h"
#include "frame/guards.h"
#include "import/n42_file_2006.h"
#include "import/n42_file_2011.h"
#include "kit/spectra_notes.h"

namespace uxkit {
namespace {

using Core = ux::CVCn42FileBase;

constexpr int kReadPermission = 4;
constexpr const char* kUnitOf2011 = "keV";

std::string to_text(const CStringUTF8& text) {
    return static_cast<const char*>(text);
}

// "46.28628 -119.27439 137"; nothing but two numbers at the start is a position.
std::optional<Position> position_of(std::string_view text) {
    std::array<double, 2> numbers{};
    for (double& number : numbers) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n,"), text.size()));
        const ux::DecimalRead read = ux::read_decimal(text, number);
        if (read.length == 0 || read.range != ux::DecimalRange::kInside) return std::nullopt;
        text.remove_prefix(read.length);
    }
    return Position{numbers[0], numbers[1]};
}

template <typename Value>
std::optional<Value> value_in(const std::unordered_map<std::string, Value>& values,
                              const std::string& name) {
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

// The length of a number's shortest text.
std::size_t text_length(double value) {
    std::array<char, 64> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() ? static_cast<std::size_t>(end - text.data()) : text.size();
}

double text_length(const double* values, int count) {
    double length = 0;
    for (int i = 0; i < count; ++i) length += static_cast<double>(text_length(values[i])) + 1;
    return length;
}

}  // namespace

struct [[gnu::visibility("hidden")]] SpectrumReader::State {
    SpectrumOpening open(const char* path, const std::vector<std::string>& wanted);
    void list_detectors(const char* path);
    void list_gross_counts();
    bool next(Spectrum & out);
    int import_into(UXXmlWrapperBase & tree, bool withEnergies);
    std::vector<SpectrumNote> notes() const;

    std::string root;
    std::string form;
    std::vector<std::string> detectors;
    std::vector<GrossCount> gross;
    std::size_t measurements = 0;
    bool failed = false;
    ImportSize size;

private:
    bool go_to_next_column();
    void enter_part();
    void describe(Spectrum & out);
    void add_surroundings(Spectrum & out) const;
    void measure(const ux::NumberList& numbers);
    void note_size_of_texts(const Spectrum& spectrum);
    std::shared_ptr<const EnergyCalibration> calibration_of(std::size_t spectrum);

    std::unique_ptr<Core> core_;
    std::size_t part_ = 0;    // of core_->Parts()
    std::size_t number_ = 0;  // of the written part
    bool entered_ = false;
    std::size_t spectrum_ = 0;
    std::size_t column_ = 0;
    std::size_t unknownCalibrations_ = 0;
    std::size_t read_ = 0;  // spectra
    Spectrum common_;       // what the columns of a spectrum share
    // Of the measurement, by detector; "" is the measurement as a whole.
    std::unordered_map<std::string, DoseRate> doses_;
    std::unordered_map<std::string, Position> places_;
    std::unordered_map<std::string, double> grossOfPart_;
    std::unordered_map<const void*, std::shared_ptr<const EnergyCalibration>> calibrations_;
    // The length of the energies' texts, by calibration and number of channels.
    std::unordered_map<const void*, std::pair<int, double>> energyLengths_;
};

// ---- opening ----------------------------------------------------------------------------------

SpectrumOpening SpectrumReader::State::open(const char* path,
                                            const std::vector<std::string>& wanted) {
    if (!ux::given(path)) return SpectrumOpening::kUnreadable;
    if (UXAccess(path, kReadPermission) != 0) return SpectrumOpening::kUnreadable;
    UXXmlWrapperBase document;
    if (UXLoadLean(&document, path) == 0) return SpectrumOpening::kNoXml;
    form = "2011";
    core_ = std::make_unique<ux::CVCn42File>(path, 0);
    int opened = core_->OpenLoaded(document);
    if (opened == ux::kN42IsOtherForm) {
        form = "2006";
        core_ = std::make_unique<ux::CVCn42File2006>(path, 0);
        opened = core_->OpenLoaded(document);
    }
    root = core_->RootName();
    if (opened != ux::kN42Ok) return SpectrumOpening::kOtherRoot;
    list_detectors(path);
    CWBOStringArray selection;
    for (const std::string& name : wanted) selection.Add(name.c_str());
    core_->SetLiveTimeOption(VCTree_n42_parse_LiveTimeDuration(-1));
    if (core_->Read(&selection) != ux::kN42Ok) return SpectrumOpening::kNoMemory;
    for (const ux::N42Part& part : core_->Parts()) {
        measurements += part.written && !part.spectra.empty() ? 1U : 0U;
    }
    list_gross_counts();
    return SpectrumOpening::kOpened;
}

// The preview of an import, on the document that is loaded already.
void SpectrumReader::State::list_detectors(const char* path) {
    CWBOStringArray names;
    std::unique_ptr<Core> preview;
    if (form == "2011") {
        preview = std::make_unique<ux::CVCn42File>(path, ux::kN42Preview);
    } else {
        preview = std::make_unique<ux::CVCn42File2006>(path, ux::kN42Preview);
    }
    if (preview->OpenLoaded(core_->Root()) != ux::kN42Ok) return;
    preview->Read(&names);
    for (int i = 0; i < names.GetSize(); ++i) detectors.push_back(to_text(names.GetAt(i)));
}

void SpectrumReader::State::list_gross_counts() {
    std::size_t number = 0;
    for (const ux::N42Part& part : core_->Parts()) {
        const bool written = part.written && !part.spectra.empty();
        number += written ? 1U : 0U;
        if (part.gross.empty()) continue;
        std::unordered_map<std::string, bool> withSpectrum;
        for (std::size_t i = part.spectra.first; written && i < part.spectra.last; ++i) {
            withSpectrum[to_text(core_->AboutSpectrum(i).detector)] = true;
        }
        for (std::size_t i = part.gross.first; i < part.gross.last; ++i) {
            const ux::N42AboutGross about = core_->AboutGrossCounts(i);
            GrossCount count;
            count.measurement = written ? number : 0;
            count.id = to_text(about.id);
            count.detector = to_text(about.detector);
            count.hasSpectrum = withSpectrum.count(count.detector) != 0;
            count.kind = to_text(about.kind);
            count.start = to_text(about.start);
            count.liveTime = to_text(about.liveTime);
            count.liveSeconds = seconds_of(count.liveTime);
            count.count = about.count;
            size.bytes += 250 + static_cast<double>(count.id.size() + count.kind.size() +
                                                    count.start.size() + count.liveTime.size());
            gross.push_back(std::move(count));
        }
    }
}

// ---- one spectrum after another ---------------------------------------------------------------

// Places part_, spectrum_ and column_ on a list that has not been read; false when none is left.
bool SpectrumReader::State::go_to_next_column() {
    const std::vector<ux::N42Part>& parts = core_->Parts();
    for (; part_ < parts.size(); ++part_, entered_ = false) {
        if (!entered_) enter_part();
        const ux::N42Part& part = parts[part_];
        if (!part.written) {
            core_->PassOver(part.spectra);
            continue;
        }
        while (spectrum_ < part.spectra.last) {
            if (column_ < core_->Columns(spectrum_)) return true;
            ++spectrum_;
            column_ = 0;
        }
    }
    return false;
}

void SpectrumReader::State::enter_part() {
    const ux::N42Part& part = core_->Parts()[part_];
    entered_ = true;
    spectrum_ = part.spectra.first;
    column_ = 0;
    if (!part.written || part.spectra.empty()) return;
    ++number_;
    doses_.clear();
    for (const ux::N42Dose& dose : core_->DosesOf(part)) {
        doses_.try_emplace(to_text(dose.detector), DoseRate{dose.value, to_text(dose.unit)});
    }
    places_.clear();
    for (const ux::N42Place& place : core_->PlacesOf(part)) {
        const std::optional<Position> position = position_of(to_text(place.position));
        if (position) places_.try_emplace(to_text(place.detector), *position);
    }
    grossOfPart_.clear();
    for (std::size_t i = part.gross.first; i < part.gross.last; ++i) {
        const ux::N42AboutGross about = core_->AboutGrossCounts(i);
        grossOfPart_[to_text(about.detector)] += about.count;
    }
}

bool SpectrumReader::State::next(Spectrum& out) {
    if (!core_ || !go_to_next_column()) return false;
    if (column_ == 0) describe(common_);
    out = common_;
    out.column = column_;
    if (column_ > 0) out.name += " (" + std::to_string(column_ + 1) + ")";
    const ux::NumberList& numbers = core_->ReadColumn(spectrum_, column_);
    out.counts.assign(numbers.data(), numbers.data() + numbers.size());
    measure(numbers);
    ++column_;
    ++read_;
    return true;
}

void SpectrumReader::State::describe(Spectrum& out) {
    const ux::N42About about = core_->AboutSpectrum(spectrum_);
    out = Spectrum();
    out.measurement = number_;
    out.place = spectrum_ - core_->Parts()[part_].spectra.first;
    out.id = to_text(about.id);
    out.detector = to_text(about.detector);
    out.kind = to_text(about.kind);
    out.start = to_text(about.start);
    out.realTime = to_text(about.realTime);
    out.liveTime = to_text(about.liveTime);
    out.realSeconds = seconds_of(out.realTime);
    out.liveSeconds = seconds_of(out.liveTime);
    out.position = position_of(to_text(about.position));
    out.calibration = calibration_of(spectrum_);
    if (about.namesCalibration && core_->CalibrationOf(spectrum_) == nullptr) {
        ++unknownCalibrations_;
    }
    out.name = std::to_string(out.measurement) + "." + std::to_string(out.place);
    for (const std::string* part : {&out.kind, &out.detector}) {
        if (!part->empty()) out.name += " " + *part;
    }
    add_surroundings(out);
    note_size_of_texts(out);
}

void SpectrumReader::State::add_surroundings(Spectrum& out) const {
    out.grossCounts = value_in(grossOfPart_, out.detector);
    out.dose = value_in(doses_, out.detector);
    if (!out.dose) out.dose = value_in(doses_, "");
    if (!out.position) out.position = value_in(places_, out.detector);
    if (!out.position) out.position = value_in(places_, "");
}

std::shared_ptr<const EnergyCalibration> SpectrumReader::State::calibration_of(
    std::size_t spectrum) {
    const ux::N42Calibration* known = core_->CalibrationOf(spectrum);
    if (known == nullptr || (known->coefficients.empty() && known->boundaries.empty())) return {};
    std::shared_ptr<const EnergyCalibration>& out = calibrations_[known];
    if (out) return out;
    EnergyCalibration calibration;
    calibration.id = to_text(known->id);
    calibration.text =
        known->coefficients.empty() ? "EnergyBoundaryValues" : to_text(known->coefficientText);
    calibration.unit = form == "2011" ? kUnitOf2011 : to_text(known->unit);
    calibration.coefficients = known->coefficients;
    calibration.boundaries = known->boundaries;
    out = std::make_shared<const EnergyCalibration>(std::move(calibration));
    return out;
}

// ---- the size of an import --------------------------------------------------------------------

void SpectrumReader::State::note_size_of_texts(const Spectrum& spectrum) {
    size.bytes += 520 + static_cast<double>(spectrum.id.size() + spectrum.detector.size() +
                                            spectrum.kind.size() + spectrum.start.size() +
                                            spectrum.realTime.size() + spectrum.liveTime.size());
}

// Adds the texts of a column, and of its spectrum's energies with the first.
void SpectrumReader::State::measure(const ux::NumberList& numbers) {
    size.bytes += 90 + text_length(numbers.data(), numbers.size());
    const ux::N42Calibration* known = core_->CalibrationOf(spectrum_);
    if (column_ > 0 || known == nullptr) return;
    auto& [channels, length] = energyLengths_[known];
    if (channels != numbers.size()) {
        channels = numbers.size();
        ux::NumberList energies;
        ux::fill_energies(*known, channels, energies);
        length = text_length(energies.data(), energies.size());
    }
    size.bytes += length;
    if (!known->coefficients.empty()) size.energyBytes += length;
}

int SpectrumReader::State::import_into(UXXmlWrapperBase& tree, bool withEnergies) {
    if (!core_) return ux::kN42NoForm;
    if (!ux::usable(tree)) return ux::kN42CannotAdd;
    if (!withEnergies) core_->LeaveOutEnergies();
    core_->StartAgain();
    const std::unique_ptr<Core> core = std::move(core_);
    return core->WriteInto(tree);
}

std::vector<SpectrumNote> SpectrumReader::State::notes() const {
    if (!core_) return {};
    const bool nothing = read_ == 0 && gross.empty();
    return notes_of(
        {core_->Losses(), unknownCalibrations_, nothing, nothing ? core_->SpectraAnywhere() : 0});
}

// ---- the public face --------------------------------------------------------------------------

SpectrumReader::SpectrumReader() = default;
SpectrumReader::~SpectrumReader() = default;
SpectrumReader::SpectrumReader(SpectrumReader&&) noexcept = default;
SpectrumReader& SpectrumReader::operator=(SpectrumReader&&) noexcept = default;

namespace {
const std::string kNoText;  // of a file that is not open
const std::vector<std::string> kNoNames;
const std::vector<GrossCount> kNoGrossCounts;
}  // namespace

SpectrumOpening SpectrumReader::open(const char* path, const std::vector<std::string>& wanted) {
    state_.reset();
    return ux::at_boundary(SpectrumOpening::kNoMemory, [&] {
        auto state = std::make_unique<State>();
        const SpectrumOpening opened = state->open(path, wanted);
        state_ = std::move(state);
        return opened;
    });
}

const std::string& SpectrumReader::root_name() const {
    return state_ ? state_->root : kNoText;
}
const std::string& SpectrumReader::form() const {
    return state_ ? state_->form : kNoText;
}
const std::vector<std::string>& SpectrumReader::detectors() const {
    return state_ ? state_->detectors : kNoNames;
}
std::size_t SpectrumReader::measurement_count() const {
    return state_ ? state_->measurements : 0;
}
const std::vector<GrossCount>& SpectrumReader::gross_counts() const {
    return state_ ? state_->gross : kNoGrossCounts;
}

bool SpectrumReader::next(Spectrum& out) {
    if (!state_ || state_->failed) return false;
    state_->failed = true;
    return ux::at_boundary(false, [&] {
        const bool found = state_->next(out);
        state_->failed = false;
        return found;
    });
}
bool SpectrumReader::failed() const {
    return state_ && state_->failed;
}

std::vector<SpectrumNote> SpectrumReader::notes() const {
    std::vector<SpectrumNote> out;
    if (state_) ux::at_boundary([&] { out = state_->notes(); });
    return out;
}
ImportSize SpectrumReader::import_size() const {
    return state_ ? state_->size : ImportSize();
}
int SpectrumReader::import_into(UXXmlWrapperBase& tree, bool withEnergies) {
    if (!state_) return ux::kN42NoForm;
    return ux::at_boundary(ux::kN42CannotAdd,
                           [&] { return state_->import_into(tree, withEnergies); });
}

namespace {

// The seconds of a unit of a duration; 0 for what none is called.
double seconds_of_unit(char mark, bool inTime) {
    if (!inTime) return mark == 'D' ? 86400 : 0;
    switch (mark) {
        case 'H':
            return 3600;
        case 'M':
            return 60;
        case 'S':
            return 1;
        default:
            return 0;
    }
}

}  // namespace

double seconds_of(const std::string& duration) {
    constexpr double kNone = -1;
    std::string_view rest = duration;
    const auto trimmed = [&] {
        const std::size_t from = std::min(rest.find_first_not_of(" \t\r\n"), rest.size());
        return rest.substr(from, rest.find_last_not_of(" \t\r\n") + 1 - from);
    };
    rest = trimmed();
    if (rest.size() < 3 || rest.front() != 'P') return kNone;
    rest.remove_prefix(1);
    bool inTime = false;
    double seconds = 0;
    while (!rest.empty()) {
        if (rest.front() == 'T' && !inTime) {
            inTime = true;
            rest.remove_prefix(1);
            if (rest.empty()) return kNone;
        }
        double number = 0;
        const ux::DecimalRead read = ux::read_decimal(rest, number);
        if (read.length == 0 || read.length == rest.size()) return kNone;
        if (read.range != ux::DecimalRange::kInside || std::signbit(number)) return kNone;
        const double unit = seconds_of_unit(rest[read.length], inTime);
        if (unit == 0) return kNone;
        seconds += unit * number;
        rest.remove_prefix(read.length + 1);
    }
    return seconds;
}

}  // namespace uxkit
