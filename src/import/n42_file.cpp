// Opening spectrum files, calibrations and columns: what both forms share.
#include "import/n42_file.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "frame/guards.h"
#include "frame/walk.h"

namespace ux {
namespace {

constexpr int kReadPermission = 4;
constexpr int kColumnOfX = 3;                          // the column designation of energies
constexpr const char* kCountedZeros = "CountedZeros";  // as some instruments spell it
constexpr char kBinding[] = "xmlns:";
constexpr std::size_t kBindingLength = sizeof kBinding - 1;
constexpr const char* kFromBoundaries = "EnergyBoundaryValues";

std::uint64_t file_size(const CStringUTF8& path) {
    const auto* text = reinterpret_cast<const char8_t*>(static_cast<const char*>(path));
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(std::filesystem::path(text), failed);
    return failed ? 0 : size;
}

// An address whose last segment that is not empty names one of the two forms.
bool is_n42_namespace(std::string_view address) {
    while (!address.empty() && address.back() == '/') address.remove_suffix(1);
    const std::string_view last = address.substr(address.rfind('/') + 1);
    return equal_no_case(last, "N42") || equal_no_case(last, "ANSIN4242");
}

CStringUTF8 indexed(const char* name, int index) {
    CStringUTF8 out = name;
    out += '_';
    out += std::to_string(index).c_str();
    return out;
}

}  // namespace

CVCn42FileBase::Selection::Selection(const CWBOStringArray* detectors) {
    if (detectors == nullptr) return;
    for (int i = 0; i < detectors->GetSize(); ++i) {
        names_.insert(static_cast<const char*>(detectors->GetAt(i)));
    }
}
bool CVCn42FileBase::Selection::Has(const CStringUTF8& name) const {
    return names_.count(static_cast<const char*>(name)) != 0;
}

CVCn42FileBase::CVCn42FileBase(const char* path, DWORD flags)
    : path_(path), flags_(flags), fileBytes_(file_size(path_)), allowance_(fileBytes_) {}

// ---- opening ----------------------------------------------------------------------------------

int CVCn42FileBase::Open() {
    if (UXAccess(path_, kReadPermission) != 0) return kN42CannotRead;
    if (!document_.load(path_, 0, false)) return kN42CannotLoad;
    return OpenDocument();
}

int CVCn42FileBase::OpenLoaded(const CVCn42FileBase& other) {
    document_ = other.document_;
    return OpenDocument();
}

int CVCn42FileBase::OpenDocument() {
    CollectPrefixes();
    std::string_view tag;
    document_.GetTagView(tag);
    Q_n42_ID root{};
    const bool known = GetID(tag, root);
    return CheckRoot(known, root);
}

void CVCn42FileBase::CollectPrefixes() {
    prefixes_ = {"n42"};
    CWBOStringArray names;
    CWBOStringArray values;
    document_.GetPropertyNamesAndValues(names, &values, nullptr);
    for (int i = 0; i < names.GetSize(); ++i) {
        const std::string_view name = static_cast<const char*>(names[i]);
        if (name.substr(0, kBindingLength) != kBinding) continue;
        if (is_n42_namespace(static_cast<const char*>(values[i]))) {
            prefixes_.emplace(name.substr(kBindingLength));
        }
    }
}

// Names are remembered with what this makes of them, so it knows no places.
bool CVCn42FileBase::NormalizeTag(CStringUTF8& tag) {
    const std::string_view name = view_of(tag);
    const std::string_view local = WithoutPrefix(name);
    if (local.size() == name.size()) return false;
    tag = tag.Mid(static_cast<int>(name.size() - local.size()));
    return true;
}

std::string_view CVCn42FileBase::WithoutPrefix(std::string_view tag) const {
    const std::size_t colon = tag.find(':');
    if (colon == std::string_view::npos || !IsKnown(tag.substr(0, colon))) return tag;
    return tag.substr(colon + 1);
}

bool CVCn42FileBase::IsKnown(std::string_view prefix) const {
    return prefixes_.count(std::string(prefix)) != 0;
}

// The tag of the element; without its prefix, when the nearest binding of that, at the element or
// around it, is below the root and names an N42 namespace.
std::string_view CVCn42FileBase::TagOf(const UXXmlWrapperBase& element) const {
    std::string_view tag;
    element.GetTagView(tag);
    const std::size_t colon = tag.find(':');
    if (colon == std::string_view::npos || IsKnown(tag.substr(0, colon))) return tag;
    const std::string name = kBinding + std::string(tag.substr(0, colon));
    const UXNameKey binding(name.c_str());
    std::string_view address;
    for (UXXmlWrapperBase at = element; usable(at) && !(at == document_); at.GetParent(&at)) {
        if (!at.GetPropertyView(binding, address)) continue;
        return is_n42_namespace(address) ? tag.substr(colon + 1) : tag;
    }
    return tag;
}

// ---- reading ----------------------------------------------------------------------------------

int CVCn42FileBase::IdOf(const UXXmlWrapperBase& element) {
    Q_n42_ID id{};
    return GetID(TagOf(element), id) ? id : 0;
}

bool CVCn42FileBase::HasLocalName(const UXXmlWrapperBase& element, std::string_view name) const {
    return WithoutPrefix(TagOf(element)) == name;
}

CStringUTF8 CVCn42FileBase::TextOf(const UXXmlWrapperBase& element) const {
    CStringUTF8 text;
    element.GetNodeStringWithBlobInfo(text, 0);
    return text;
}

std::string_view CVCn42FileBase::TextView(const UXXmlWrapperBase& element) {
    std::string_view text;
    element.NodeValueView(text, text_);
    return text;
}

CStringUTF8 CVCn42FileBase::Attribute(const UXXmlWrapperBase& element, Q_n42_ID name) {
    CStringUTF8 value;
    element.GetPropertyValue(GetName(name), value, 0);
    return value;
}

UXXmlWrapperBase CVCn42FileBase::Child(const UXXmlWrapperBase& element, Q_n42_ID name) {
    for (UXXmlWrapperBase& child : children(element)) {
        if (IdOf(child) == name) return child;
    }
    return {};
}

std::size_t CVCn42FileBase::CountChildren(const UXXmlWrapperBase& element, Q_n42_ID name) {
    std::size_t count = 0;
    for (const UXXmlWrapperBase& child : children(element)) count += IdOf(child) == name ? 1U : 0U;
    return count;
}

CStringUTF8 CVCn42FileBase::ChildText(const UXXmlWrapperBase& element, Q_n42_ID name) {
    return TextOf(Child(element, name));
}

std::vector<double> CVCn42FileBase::NumbersOf(const UXXmlWrapperBase& element) {
    Note(read_numbers(TextView(element), numbers_));
    return {numbers_.data(), numbers_.data() + numbers_.size()};
}

void CVCn42FileBase::Note(const NumberLosses& losses) {
    losses_.unreadableNumbers += losses.unreadable;
    losses_.listsWithUnreadable += losses.unreadable != 0 ? 1 : 0;
    losses_.cutLists += losses.cut != 0 ? 1 : 0;
    losses_.cutZeros += losses.cut;
}

void CVCn42FileBase::NoteShared(const CStringUTF8& text) {
    longestShared_ = std::max(longestShared_, static_cast<std::uint64_t>(text.GetLength()));
}

bool CVCn42FileBase::TextsFit() const {
    return longestShared_ <= output_allowance(fileBytes_) / std::max<std::size_t>(Records(), 1);
}

// A text that is only white space counts as none. Leading zeros of the polynomial change nothing
// and are left out.
void CVCn42FileBase::ReadCoefficients(EnergyCalibration& calibration) {
    Note(read_numbers(view_of(calibration.coefficientText), numbers_));
    if (numbers_.size() == 0) {
        calibration.coefficientText.Empty();
        return;
    }
    NoteShared(calibration.coefficientText);
    calibration.coefficients.assign(numbers_.data(), numbers_.data() + numbers_.size());
    while (calibration.coefficients.size() > 1 && calibration.coefficients.back() == 0) {
        calibration.coefficients.pop_back();
    }
}

void CVCn42FileBase::ReadChannels(const UXXmlWrapperBase& element, Spectrum& spectrum) {
    // Real files write the code under either name in both forms.
    const auto counts_zeroes = [&](Q_n42_ID name) {
        const CStringUTF8 code = Attribute(element, name);
        return is_word(code, GetName(kN42CountedZeroes)) || is_word(code, kCountedZeros);
    };
    ChannelList list;
    list.compressed = counts_zeroes(kN42CompressionCode) || counts_zeroes(kN42Compression);
    const std::string_view text = TextView(element);
    if (!(list.compressed ? has_counted_zeroes(text) : has_numbers(text))) return;
    list.element = element;
    spectrum.channels.push_back(std::move(list));
}

CVCn42FileBase::EnergyCalibration* CVCn42FileBase::FindCalibration(const CStringUTF8& id) {
    for (; calibrationsIndexed_ < calibrations_.size(); ++calibrationsIndexed_) {
        const CStringUTF8& own = calibrations_[calibrationsIndexed_].id;
        if (own.IsEmpty()) continue;  // an empty reference matches nothing
        calibrationsById_.emplace(static_cast<const char*>(own), calibrationsIndexed_);
    }
    const auto known = calibrationsById_.find(static_cast<const char*>(id));
    return known == calibrationsById_.end() ? nullptr : &calibrations_[known->second];
}

// ---- building ---------------------------------------------------------------------------------

int CVCn42FileBase::WriteInto(UXXmlWrapperBase& tree) {
    if (Records() == 0) return kN42Ok;
    if (!TextsFit()) return kN42CannotAdd;
    tree.RemoveAllChildren();
    UXXmlWrapperBase top;
    if (!tree.AddNode(&top, GetName(kN42Output), -1)) return kN42CannotAdd;
    return Build(top);
}

bool CVCn42FileBase::AddMeasurements(UXXmlWrapperBase& parent, UXXmlWrapperBase& measurements) {
    return parent.AddNode(&measurements, GetName(kN42OutputMeasurements), -1) != 0;
}

int CVCn42FileBase::WriteMeasurement(
    UXXmlWrapperBase& measurements, int number, SpectrumRange spectra,
    const std::function<void(std::size_t index, Values& values)>& valuesOf) {
    UXXmlWrapperBase measurement;
    if (!measurements.AddNode(&measurement, GetName(kN42RadMeasurement), -1)) return kN42CannotAdd;
    measurement.SetLabel(indexed(GetName(kN42RadMeasurement), number));
    Values values;
    for (std::size_t i = spectra.first; i < spectra.last; ++i) {
        values.clear();
        valuesOf(i, values);
        const int place = static_cast<int>(i - spectra.first);
        const int result =
            WriteSpectrum(measurement, spectra_[i], place, spectra.size() == 1, values);
        if (result != kN42Ok) return result;
    }
    return kN42Ok;
}

void CVCn42FileBase::PassOver(SpectrumRange spectra) {
    for (std::size_t i = spectra.first; i < spectra.last; ++i) {
        for (const ChannelList& list : spectra_[i].channels) {
            if (list.compressed) Expand(list);
        }
    }
}

int CVCn42FileBase::AddValue(UXXmlWrapperBase& parent, const Value& value) {
    UXXmlWrapperBase node;
    if (!parent.AddTextNode(&node, value.name, *value.text, -1, 0, nullptr)) return kN42CannotAdd;
    node.SetLabel(value.name);
    return kN42Ok;
}

void CVCn42FileBase::Expand(const ChannelList& list) {
    const std::string_view text = TextView(list.element);
    Note(list.compressed ? read_counted_zeroes(text, allowance_, numbers_)
                         : read_numbers(text, numbers_));
}

const NumberList& CVCn42FileBase::ReadColumn(std::size_t spectrum, std::size_t column) {
    Expand(spectra_[spectrum].channels[column]);
    return numbers_;
}

void CVCn42FileBase::StartAgain() {
    allowance_ = RunAllowance(fileBytes_);
}

std::string CVCn42FileBase::RootName() const {
    std::string_view tag;
    document_.GetTagView(tag);
    return std::string(tag);
}

std::size_t CVCn42FileBase::SpectraAnywhere() const {
    std::size_t count = 0;
    visit_below(document_, [&](const UXXmlWrapperBase& node) {
        std::string_view name;
        node.GetTagView(name);
        count += name.substr(name.rfind(':') + 1) == "Spectrum" ? 1U : 0U;
    });
    return count;
}

int CVCn42FileBase::WriteSpectrum(UXXmlWrapperBase& measurement, Spectrum& spectrum, int place,
                                  bool alone, const Values& values) {
    UXXmlWrapperBase group;
    if (!measurement.AddNode(&group, GetName(kN42Spectrum), -1)) return kN42CannotAdd;
    UXXmlWrapperBase element = spectrum.element;
    if (!group.CopyAllAttributes(element, 1)) return kN42CannotSetAttribute;
    group.SetLabel(indexed(GetName(kN42Spectrum), place));
    for (const Value& value : values) {
        if (const int result = AddValue(group, value); result != kN42Ok) return result;
    }
    return WriteColumns(group, spectrum, alone ? -1 : place);
}

int CVCn42FileBase::WriteColumns(UXXmlWrapperBase& group, Spectrum& spectrum, int energyIndex) {
    int written = 0;
    for (ChannelList& list : spectrum.channels) {
        Expand(list);
        list.element.ResetValue();  // its text makes room for its numbers
        if (written == 0) {
            const int result = WriteEnergies(group, spectrum, energyIndex);
            if (result != kN42Ok) return result;
        }
        const CStringUTF8 name = indexed(GetName(kN42ChannelData), written);
        UXXmlWrapperBase column;
        if (!group.AddNode(&column, name, -1)) return kN42CannotAdd;
        column.SetLabel(name);
        column.NodeValue(numbers_.array(), 0);
        column.SaveXDEArraySize(numbers_.size());
        ++written;
    }
    group.SaveXDEArraySize(written);
    return kN42Ok;
}

// The energies of the channels in numbers_, as a column of the spectrum.
int CVCn42FileBase::WriteEnergies(UXXmlWrapperBase& group, const Spectrum& spectrum, int index) {
    EnergyCalibration* calibration = CalibrationOf(spectrum);
    if (calibration == nullptr) return kN42Ok;
    if (calibration->coefficients.empty() && calibration->boundaries.empty()) return kN42Ok;
    if (!withEnergies_ && !calibration->coefficients.empty()) return kN42Ok;
    const char* base = GetName(kN42OutputEnergy);
    const CStringUTF8 name = index < 0 ? CStringUTF8(base) : indexed(base, index);
    const int channels = numbers_.size();
    const bool fits = calibration->columnChannels == channels || calibration->coefficients.empty();
    if (fits && usable(calibration->column)) {
        return CopyEnergies(group, *calibration, name, channels);
    }
    return AddEnergies(group, *calibration, name, channels);
}

// Most spectra of a file share their calibration, and a copy shares the storage of its values.
int CVCn42FileBase::CopyEnergies(UXXmlWrapperBase& group, EnergyCalibration& calibration,
                                 const CStringUTF8& name, int channels) {
    UXXmlWrapperBase column;
    if (!group.AddNodeCopy(&calibration.column, 1, &column)) return kN42CannotAdd;
    column.SetTagName(name);
    column.SaveXDEArraySize(channels);
    return kN42Ok;
}

void CVCn42FileBase::FillEnergies(const EnergyCalibration& calibration, int channels,
                                  NumberList& out) {
    out.clear();
    if (calibration.coefficients.empty()) {
        // Boundaries are written as given: files hold one more of them than there are channels.
        for (const double boundary : calibration.boundaries) out.push(boundary);
        return;
    }
    // Intended: channel numbers count from 1.
    for (int i = 1; i <= channels; ++i) out.push(polynomial_at(calibration.coefficients, i));
}

int CVCn42FileBase::AddEnergies(UXXmlWrapperBase& group, EnergyCalibration& calibration,
                                const CStringUTF8& name, int channels) {
    UXXmlWrapperBase column;
    if (!group.AddNode(&column, name, -1)) return kN42CannotAdd;
    const bool fromBoundaries = calibration.coefficients.empty();
    FillEnergies(calibration, channels, energies_);
    column.NodeValue(energies_.array(), 0);
    column.SaveXDEArraySize(channels);
    column.SetLabel(GetName(kN42OutputEnergy));
    const CStringUTF8 comment =
        fromBoundaries ? CStringUTF8(kFromBoundaries) : calibration.coefficientText;
    bool set = true;
    if (!calibration.id.IsEmpty()) {
        set = column.SetPropertyValue(GetName(kN42Id), calibration.id) != 0;
    }
    set = column.SetPropertyValue("ColDesignation", kColumnOfX) != 0 && set;
    set = column.SetPropertyValue("Comment", comment) != 0 && set;
    if (!calibration.unit.IsEmpty()) {
        set = column.SetPropertyValue("Unit", calibration.unit) != 0 && set;
    }
    calibration.column = column;
    calibration.columnChannels = channels;
    return set ? kN42Ok : kN42CannotSetAttribute;
}

}  // namespace ux
