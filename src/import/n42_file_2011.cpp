// The reader of the 2011 form.
#include "import/n42_file_2011.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "frame/guards.h"
#include "frame/walk.h"

namespace ux {
namespace {

constexpr int kInfoNodeId = 0x10000000;
// No names of the table.
constexpr const char* kDerivedData = "DerivedData";
constexpr const char* kDoseRate = "DoseRate";
constexpr const char* kDoseRateValue = "DoseRateValue";
constexpr const char* kUnitOfDoseRates = "\xC2\xB5Sv/h";
constexpr const char* kRadDetectorState = "RadDetectorState";

enum LiveTimeOption { kStripPrefix = 1, kSpaceBeforeUnit = 2 };

// PT12.5S becomes 12.5 S; each of the two steps can be switched off.
CStringUTF8 cleaned_live_time(const CStringUTF8& text, int option) {
    CStringUTF8 out = text;
    if ((option & kStripPrefix) != 0 && out.GetLength() > 2 && out.Left(2) == "PT") {
        out.Delete(0, 2);
    }
    const int length = out.GetLength();
    if ((option & kSpaceBeforeUnit) == 0 || length < 2) return out;
    const char unit = out[length - 1];
    // Intended: "s" gets a space also when there is one already, "S" does not. Existing imports
    // show live times that way.
    if (unit == 's' || (unit == 'S' && out[length - 2] != ' ')) out.Insert(length - 1, ' ');
    return out;
}

}  // namespace

N42Selection::N42Selection(const CWBOStringArray* detectors) {
    if (detectors == nullptr) return;
    for (int i = 0; i < detectors->GetSize(); ++i) {
        names_.insert(static_cast<const char*>(detectors->GetAt(i)));
    }
}
bool N42Selection::Has(const CStringUTF8& name) const {
    return names_.count(static_cast<const char*>(name)) != 0;
}

int CVCn42File::CheckRoot(bool known, Q_n42_ID root) const {
    if (known && root == kN42RadInstrumentData) return kN42Ok;
    return known && root == kN42InstrumentData2006 ? kN42IsOtherForm : kN42UnknownRoot;
}

int CVCn42File::Read(CWBOStringArray* detectors) {
    if (!Preview()) return ReadSelected(N42Selection(detectors));
    for (UXXmlWrapperBase& child : children(Root())) {
        CStringUTF8 id;
        if (IdOf(child) == kN42RadDetectorInformation &&
            child.GetPropertyValue(GetName(kN42Id), id, 0)) {
            detectors->Add(id);
        }
    }
    return kN42Ok;
}

int CVCn42File::ReadSelected(const N42Selection& selection) {
    for (UXXmlWrapperBase& child : children(Root())) {
        switch (IdOf(child)) {
            case kN42RadDetectorInformation:
                ReadDetector(child, selection);
                break;
            case kN42EnergyCalibration:
                // Intended: nothing is read after a calibration that cannot be referred to.
                if (!ReadCalibration(child)) {
                    NoteRest(child);
                    return kN42Ok;
                }
                break;
            case kN42RadMeasurement:
                ReadMeasurement(child, selection);
                break;
            default:
                if (HasLocalName(child, kDerivedData)) {
                    losses_.derivedSpectra += CountChildren(child, kN42Spectrum);
                }
        }
    }
    return kN42Ok;
}

// Copies the description of a selected detector into the information tree.
void CVCn42File::ReadDetector(UXXmlWrapperBase& element, const N42Selection& selection) {
    const CStringUTF8 id = Attribute(element, kN42Id);
    if (selection.Given() && !selection.Has(id)) return;
    UXXmlWrapperBase top;
    UXXmlWrapperBase detectors;
    UXXmlWrapperBase copy;
    if (!usable(InfoTree()) || !InfoTree()->FindCreateNode(GetName(kN42Output), &top, kInfoNodeId,
                                                           nullptr, 0, 0, nullptr)) {
        return;
    }
    top.SetPropertyValue("Branch", 1);
    if (!top.FindCreateNode("Detectors", &detectors, -1, nullptr, 0, 0, nullptr)) return;
    if (detectors.AddNodeCopy(&element, 1, &copy)) copy.SetLabel(id);
}

// False when the calibration has no id.
bool CVCn42File::ReadCalibration(const UXXmlWrapperBase& element) {
    N42Calibration calibration;
    calibration.coefficientText = ChildText(element, kN42CoefficientValues);
    ReadCoefficients(calibration);
    if (calibration.coefficientText.IsEmpty()) {
        calibration.boundaries = NumbersOf(Child(element, kN42EnergyBoundaryValues));
    }
    const bool hasId = element.GetPropertyValue(GetName(kN42Id), calibration.id, 0) != 0;
    NoteShared(calibration.id);
    calibrations_.Add(std::move(calibration));
    return hasId;
}

void CVCn42File::ReadMeasurement(const UXXmlWrapperBase& element, const N42Selection& selection) {
    std::optional<CStringUTF8> classCode;
    std::optional<CStringUTF8> start;
    std::optional<CStringUTF8> realTime;
    N42Part part;
    part.element = element;
    part.spectra.first = spectra_.size();
    part.gross.first = grossCounts_.size();
    for (UXXmlWrapperBase& child : children(element)) {
        switch (IdOf(child)) {  // the first of repeated texts counts
            case kN42MeasurementClassCode:
                if (!classCode) classCode = TextOf(child);
                break;
            case kN42StartDateTime:
                if (!start) start = TextOf(child);
                break;
            case kN42RealTimeDuration:
                if (!realTime) realTime = TextOf(child);
                break;
            case kN42Spectrum:
                ReadSpectrum(child);
                break;
            case kN42GrossCounts:
                ReadGrossCounts(child, selection);
                break;
            default:
                break;
        }
    }
    part.spectra.last = spectra_.size();
    part.gross.last = grossCounts_.size();
    if (part.spectra.empty() && part.gross.empty()) return NoteEmpty(element);
    Words words{classCode.value_or(""), start.value_or(""), realTime.value_or("")};
    NoteShared(words.classCode);
    NoteShared(words.startDateTime);
    NoteShared(words.realTime);
    // Intended: spectra need a class code to be written.
    part.written = !words.classCode.IsEmpty();
    if (!part.written) losses_.spectraWithoutClass += part.spectra.size();
    parts_.push_back(part);
    words_.push_back(std::move(words));
}

void CVCn42File::NoteEmpty(const UXXmlWrapperBase& element) {
    ++losses_.emptyMeasurements;
    for (const UXXmlWrapperBase& child : children(element)) {
        if (!HasLocalName(child, kDoseRate)) continue;
        ++losses_.emptyWithDose;
        return;
    }
}

// What stands behind a calibration that ended the reading.
void CVCn42File::NoteRest(UXXmlWrapperBase calibration) {
    losses_.endedAtCalibration = true;
    for (UXXmlWrapperBase& at = calibration; at.NextSibling(&at) != 0;) {
        if (IdOf(at) != kN42RadMeasurement) continue;
        ++losses_.measurementsBehind;
        losses_.spectraBehind += CountChildren(at, kN42Spectrum);
    }
}

void CVCn42File::ReadSpectrum(const UXXmlWrapperBase& element) {
    N42Spectrum spectrum;
    for (UXXmlWrapperBase& child : children(element)) {
        if (IdOf(child) == kN42ChannelData) ReadChannels(child, spectrum);
    }
    if (spectrum.channels.empty()) {
        ++losses_.spectraWithoutChannels;
        return;
    }
    spectrum.element = element;
    spectra_.push_back(std::move(spectrum));
}

void CVCn42File::ReadGrossCounts(const UXXmlWrapperBase& element, const N42Selection& selection) {
    CStringUTF8 detector;
    const bool refers =
        element.GetPropertyValue(GetName(kN42RadDetectorInformationReference), detector, 0) != 0;
    if (selection.Given() && !(refers && selection.Has(detector))) {
        ++losses_.grossOfOtherDetectors;
        return;
    }
    GrossCounts counts;
    counts.id = Attribute(element, kN42Id);
    const CStringUTF8 text = ChildText(element, kN42CountData);
    const std::optional<double> count = leading_number(text);
    counts.count = count.value_or(0);
    losses_.grossWithMore += count_numbers(view_of(text)) > 1 ? 1U : 0U;
    losses_.grossWithoutNumber += count ? 0U : 1U;
    counts.detector = std::move(detector);
    counts.liveTime = ChildText(element, kN42LiveTimeDuration);
    grossCounts_.push_back(std::move(counts));
}

N42Calibration* CVCn42File::CalibrationOf(const N42Spectrum& spectrum) {
    return calibrations_.Find(Attribute(spectrum.element, kN42EnergyCalibrationReference));
}

// ---- what the file tells of a spectrum --------------------------------------------------------

// The measurements stand in the order of their spectra and of their counts.
const CVCn42File::Words& CVCn42File::WordsOf(N42Range N42Part::*range, std::size_t record) const {
    const auto part = std::partition_point(parts_.begin(), parts_.end(), [&](const N42Part& each) {
        return (each.*range).last <= record;
    });
    return words_[static_cast<std::size_t>(part - parts_.begin())];
}

N42About CVCn42File::AboutSpectrum(std::size_t spectrum) {
    const Words& words = WordsOf(&N42Part::spectra, spectrum);
    const N42Spectrum& record = spectra_[spectrum];
    N42About about;
    about.id = Attribute(record.element, kN42Id);
    about.detector = Attribute(record.element, kN42RadDetectorInformationReference);
    about.kind = words.classCode;
    about.start = words.startDateTime;
    about.realTime = words.realTime;
    about.liveTime = ChildText(record.element, kN42LiveTimeDuration);
    about.namesCalibration = !Attribute(record.element, kN42EnergyCalibrationReference).IsEmpty();
    return about;
}

N42AboutGross CVCn42File::AboutGrossCounts(std::size_t gross) {
    const Words& words = WordsOf(&N42Part::gross, gross);
    const GrossCounts& counts = grossCounts_[gross];
    return {counts.id,           counts.detector, words.classCode,
            words.startDateTime, counts.liveTime, counts.count};
}

// Some files follow the instrument, others detectors one by one.
std::vector<N42Place> CVCn42File::PlacesOf(const N42Part& part) {
    std::vector<N42Place> out;
    for (UXXmlWrapperBase& child : children(part.element)) {
        const bool instrument = IdOf(child) == kN42RadInstrumentState;
        if (!instrument && !HasLocalName(child, kRadDetectorState)) continue;
        const UXXmlWrapperBase point = Child(Child(child, kN42StateVector), kN42GeographicPoint);
        if (!usable(point)) continue;
        N42Place place;
        if (!instrument) place.detector = Attribute(child, kN42RadDetectorInformationReference);
        if (!instrument && place.detector.IsEmpty()) continue;
        place.position =
            ChildText(point, kN42LatitudeValue) + ' ' + ChildText(point, kN42LongitudeValue);
        out.push_back(std::move(place));
    }
    return out;
}

std::vector<N42Dose> CVCn42File::DosesOf(const N42Part& part) {
    std::vector<N42Dose> out;
    for (UXXmlWrapperBase& child : children(part.element)) {
        if (!HasLocalName(child, kDoseRate)) continue;
        for (UXXmlWrapperBase& value : children(child)) {
            if (!HasLocalName(value, kDoseRateValue)) continue;
            const std::optional<double> dose = leading_number(TextOf(value));
            if (!dose) break;
            // The form has no units of its own: dose rates are in microsieverts per hour.
            out.push_back(
                {Attribute(child, kN42RadDetectorInformationReference), kUnitOfDoseRates, *dose});
            break;
        }
    }
    return out;
}

// ---- building ---------------------------------------------------------------------------------

void CVCn42File::CollectValues(std::size_t spectrum, N42Values& values) {
    const Words& words = WordsOf(&N42Part::spectra, spectrum);
    liveTime_ = ChildText(spectra_[spectrum].element, kN42LiveTimeDuration);
    values.push_back({GetName(kN42MeasurementClassCode), &words.classCode});
    values.push_back({GetName(kN42StartDateTime), &words.startDateTime});
    values.push_back({GetName(kN42RealTimeDuration), &words.realTime});
    if (!liveTime_.IsEmpty()) values.push_back({GetName(kN42LiveTimeDuration), &liveTime_});
}

int CVCn42File::WriteGrossCounts(UXXmlWrapperBase& measurements) {
    if (grossCounts_.empty()) return kN42Ok;
    UXXmlWrapperBase group;
    if (!measurements.AddNode(&group, GetName(kN42GrossCounts), -1)) return kN42CannotAdd;
    for (std::size_t i = 0; i < grossCounts_.size(); ++i) {
        const int result = WriteGrossCount(group, i);
        if (result != kN42Ok) return result;
    }
    group.SaveXDEArraySize(static_cast<int>(grossCounts_.size()));
    return kN42Ok;
}

int CVCn42File::WriteGrossCount(UXXmlWrapperBase& group, std::size_t place) {
    const GrossCounts& counts = grossCounts_[place];
    const Words& words = WordsOf(&N42Part::gross, place);
    UXXmlWrapperBase node;
    if (!group.AddNode(&node, GetName(kN42RadMeasurement), -1)) return kN42CannotAdd;
    double count = counts.count;
    node.NodeValue(count, 0);
    CStringUTF8 label;
    label.Format("%s_%d", GetName(kN42RadMeasurement), static_cast<int>(place));
    node.SetLabel(label);
    if (!counts.id.IsEmpty() && !node.SetPropertyValue(GetName(kN42Id), counts.id)) {
        return kN42CannotSetAttribute;
    }
    N42Values values{{GetName(kN42MeasurementClassCode), &words.classCode},
                     {GetName(kN42StartDateTime), &words.startDateTime}};
    const CStringUTF8 liveTime = cleaned_live_time(counts.liveTime, LiveTimeOption());
    if (!liveTime.IsEmpty()) values.push_back({GetName(kN42LiveTimeDuration), &liveTime});
    return tree_.AddValues(node, values);
}

}  // namespace ux
