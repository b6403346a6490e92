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

int CVCn42File::CheckRoot(bool known, Q_n42_ID root) const {
    if (known && root == kN42RadInstrumentData) return kN42Ok;
    return known && root == kN42InstrumentData2006 ? kN42IsOtherForm : kN42UnknownRoot;
}

int CVCn42File::Read(CWBOStringArray* detectors) {
    if (!Preview()) return ReadSelected(Selection(detectors));
    for (UXXmlWrapperBase& child : children(Root())) {
        CStringUTF8 id;
        if (IdOf(child) == kN42RadDetectorInformation &&
            child.GetPropertyValue(GetName(kN42Id), id, 0)) {
            detectors->Add(id);
        }
    }
    return kN42Ok;
}

int CVCn42File::ReadSelected(const Selection& selection) {
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
void CVCn42File::ReadDetector(UXXmlWrapperBase& element, const Selection& selection) {
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
    EnergyCalibration calibration;
    calibration.coefficientText = ChildText(element, kN42CoefficientValues);
    ReadCoefficients(calibration);
    if (calibration.coefficients.empty()) {
        calibration.boundaries = NumbersOf(Child(element, kN42EnergyBoundaryValues));
    }
    const bool hasId = element.GetPropertyValue(GetName(kN42Id), calibration.id, 0) != 0;
    NoteShared(calibration.id);
    calibrations_.push_back(std::move(calibration));
    return hasId;
}

void CVCn42File::ReadMeasurement(const UXXmlWrapperBase& element, const Selection& selection) {
    std::optional<CStringUTF8> classCode;
    std::optional<CStringUTF8> start;
    std::optional<CStringUTF8> realTime;
    RadMeasurement measurement;
    measurement.element = element;
    measurement.spectra.first = spectra_.size();
    measurement.gross.first = grossCounts_.size();
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
    measurement.spectra.last = spectra_.size();
    measurement.gross.last = grossCounts_.size();
    if (measurement.spectra.empty() && measurement.gross.empty()) return NoteEmpty(element);
    measurement.classCode = classCode.value_or(CStringUTF8());
    measurement.startDateTime = start.value_or(CStringUTF8());
    measurement.realTime = realTime.value_or(CStringUTF8());
    if (measurement.classCode.IsEmpty()) {
        losses_.spectraWithoutClass += measurement.spectra.size();
    }
    NoteShared(measurement.classCode);
    NoteShared(measurement.startDateTime);
    NoteShared(measurement.realTime);
    measurements_.push_back(std::move(measurement));
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
    Spectrum spectrum;
    for (UXXmlWrapperBase& child : children(element)) {
        const int id = IdOf(child);
        if (id == kN42ChannelData) ReadChannels(child, spectrum);
        if (id == kN42LiveTimeDuration && !usable(spectrum.liveTime)) spectrum.liveTime = child;
    }
    if (spectrum.channels.empty()) {
        ++losses_.spectraWithoutChannels;
        return;
    }
    spectrum.element = element;
    spectra_.push_back(std::move(spectrum));
}

void CVCn42File::ReadGrossCounts(const UXXmlWrapperBase& element, const Selection& selection) {
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

CVCn42FileBase::EnergyCalibration* CVCn42File::CalibrationOf(const Spectrum& spectrum) {
    return FindCalibration(Attribute(spectrum.element, kN42EnergyCalibrationReference));
}

// ---- what the file tells of a spectrum --------------------------------------------------------

std::vector<CVCn42FileBase::Part> CVCn42File::Parts() const {
    std::vector<Part> out;
    out.reserve(measurements_.size());
    for (const RadMeasurement& measurement : measurements_) {
        out.push_back({measurement.element, measurement.spectra, measurement.gross,
                       !measurement.classCode.IsEmpty()});
    }
    return out;
}

// The measurements stand in the order of their spectra and of their counts.
const CVCn42File::RadMeasurement& CVCn42File::MeasurementOf(SpectrumRange RadMeasurement::*range,
                                                            std::size_t record) const {
    return *std::partition_point(
        measurements_.begin(), measurements_.end(),
        [&](const RadMeasurement& measurement) { return (measurement.*range).last <= record; });
}

CVCn42FileBase::About CVCn42File::AboutSpectrum(std::size_t spectrum) {
    const RadMeasurement& measurement = MeasurementOf(&RadMeasurement::spectra, spectrum);
    const Spectrum& record = spectra_[spectrum];
    About about;
    about.id = Attribute(record.element, kN42Id);
    about.detector = Attribute(record.element, kN42RadDetectorInformationReference);
    about.kind = measurement.classCode;
    about.start = measurement.startDateTime;
    about.realTime = measurement.realTime;
    about.liveTime = TextOf(record.liveTime);
    about.namesCalibration = !Attribute(record.element, kN42EnergyCalibrationReference).IsEmpty();
    return about;
}

CVCn42FileBase::AboutGross CVCn42File::AboutGrossCounts(std::size_t gross) {
    const RadMeasurement& measurement = MeasurementOf(&RadMeasurement::gross, gross);
    const GrossCounts& counts = grossCounts_[gross];
    return {counts.id,       counts.detector, measurement.classCode, measurement.startDateTime,
            counts.liveTime, counts.count};
}

// Some files follow the instrument, others detectors one by one.
std::vector<CVCn42FileBase::Place> CVCn42File::PlacesOf(const Part& part) {
    std::vector<Place> out;
    for (UXXmlWrapperBase& child : children(part.element)) {
        const bool instrument = IdOf(child) == kN42RadInstrumentState;
        if (!instrument && !HasLocalName(child, kRadDetectorState)) continue;
        const UXXmlWrapperBase point = Child(Child(child, kN42StateVector), kN42GeographicPoint);
        if (!usable(point)) continue;
        Place place;
        if (!instrument) place.detector = Attribute(child, kN42RadDetectorInformationReference);
        if (!instrument && place.detector.IsEmpty()) continue;
        place.position =
            ChildText(point, kN42LatitudeValue) + ' ' + ChildText(point, kN42LongitudeValue);
        out.push_back(std::move(place));
    }
    return out;
}

std::vector<CVCn42FileBase::Dose> CVCn42File::DosesOf(const Part& part) {
    std::vector<Dose> out;
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

int CVCn42File::Build(UXXmlWrapperBase& parent) {
    UXXmlWrapperBase measurements;
    if (!AddMeasurements(parent, measurements)) return kN42CannotAdd;
    const int result = spectra_.empty() ? kN42Ok : BuildSpectra(measurements);
    if (result != kN42Ok || grossCounts_.empty()) return result;
    return BuildGrossCounts(measurements);
}

int CVCn42File::BuildSpectra(UXXmlWrapperBase& measurements) {
    int written = 0;
    CStringUTF8 liveTime;
    for (const RadMeasurement& measurement : measurements_) {
        if (measurement.spectra.empty()) continue;
        // Intended: spectra need a class code to be written.
        if (measurement.classCode.IsEmpty()) {
            PassOver(measurement.spectra);
            continue;
        }
        const auto valuesOf = [&](std::size_t index, Values& values) {
            values = {{GetName(kN42MeasurementClassCode), &measurement.classCode},
                      {GetName(kN42StartDateTime), &measurement.startDateTime},
                      {GetName(kN42RealTimeDuration), &measurement.realTime}};
            liveTime = TextOf(spectra_[index].liveTime);
            if (!liveTime.IsEmpty()) values.push_back({GetName(kN42LiveTimeDuration), &liveTime});
        };
        const int result =
            WriteMeasurement(measurements, written + 1, measurement.spectra, valuesOf);
        if (result != kN42Ok) return result;
        ++written;
    }
    if (written > 0) measurements.SaveXDEArraySize(written);
    return kN42Ok;
}

int CVCn42File::BuildGrossCounts(UXXmlWrapperBase& measurements) {
    UXXmlWrapperBase group;
    if (!measurements.AddNode(&group, GetName(kN42GrossCounts), -1)) return kN42CannotAdd;
    for (const RadMeasurement& measurement : measurements_) {
        for (std::size_t i = measurement.gross.first; i < measurement.gross.last; ++i) {
            const int result =
                WriteGrossCounts(group, measurement, grossCounts_[i], static_cast<int>(i));
            if (result != kN42Ok) return result;
        }
    }
    group.SaveXDEArraySize(static_cast<int>(grossCounts_.size()));
    return kN42Ok;
}

int CVCn42File::WriteGrossCounts(UXXmlWrapperBase& group, const RadMeasurement& measurement,
                                 const GrossCounts& counts, int place) {
    UXXmlWrapperBase node;
    if (!group.AddNode(&node, GetName(kN42RadMeasurement), -1)) return kN42CannotAdd;
    double count = counts.count;
    node.NodeValue(count, 0);
    CStringUTF8 label;
    label.Format("%s_%d", GetName(kN42RadMeasurement), place);
    node.SetLabel(label);
    if (!counts.id.IsEmpty() && !node.SetPropertyValue(GetName(kN42Id), counts.id)) {
        return kN42CannotSetAttribute;
    }
    Values values{{GetName(kN42MeasurementClassCode), &measurement.classCode},
                  {GetName(kN42StartDateTime), &measurement.startDateTime}};
    const CStringUTF8 liveTime = cleaned_live_time(counts.liveTime, LiveTimeOption());
    if (!liveTime.IsEmpty()) values.push_back({GetName(kN42LiveTimeDuration), &liveTime});
    for (const Value& value : values) {
        if (const int result = AddValue(node, value); result != kN42Ok) return result;
    }
    return kN42Ok;
}

}  // namespace ux
