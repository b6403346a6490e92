#include "import/n42_file_2011.h"

#include <optional>

#include "frame/guards.h"
#include "frame/walk.h"

namespace ux {
namespace {

constexpr int kInfoNodeId = 0x10000000;

enum LiveTimeOption { kStripPrefix = 1, kSpaceBeforeUnit = 2 };

// PT12.5S becomes 12.5 S; each of the two steps can be switched off.
CStringUTF8 cleaned_live_time(const CStringUTF8& text) {
    CStringUTF8 out = text;
    const int option = n42_live_time_option();
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
                if (!ReadCalibration(child)) return kN42Ok;
                break;
            case kN42RadMeasurement:
                ReadMeasurement(child, selection);
                break;
            default:
                break;
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
    measurement.spectra.first = spectra_.size();
    measurement.firstGross = grossCounts_.size();
    for (UXXmlWrapperBase& child : children(element)) {
        switch (IdOf(child)) {  // the first of repeated texts counts
            case kN42MeasurementClassCode:
                if (!classCode) classCode = Text(child);
                break;
            case kN42StartDateTime:
                if (!start) start = Text(child);
                break;
            case kN42RealTimeDuration:
                if (!realTime) realTime = Text(child);
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
    measurement.lastGross = grossCounts_.size();
    if (measurement.spectra.empty() && measurement.firstGross == measurement.lastGross) return;
    measurement.classCode = classCode.value_or(CStringUTF8());
    measurement.startDateTime = start.value_or(CStringUTF8());
    measurement.realTime = realTime.value_or(CStringUTF8());
    NoteShared(measurement.classCode);
    NoteShared(measurement.startDateTime);
    NoteShared(measurement.realTime);
    measurements_.push_back(std::move(measurement));
}

void CVCn42File::ReadSpectrum(const UXXmlWrapperBase& element) {
    Spectrum spectrum;
    for (UXXmlWrapperBase& child : children(element)) {
        const int id = IdOf(child);
        if (id == kN42ChannelData) ReadChannels(child, spectrum);
        if (id == kN42LiveTimeDuration && !usable(spectrum.liveTime)) spectrum.liveTime = child;
    }
    if (spectrum.channels.empty()) return;
    spectrum.element = element;
    spectra_.push_back(std::move(spectrum));
}

void CVCn42File::ReadGrossCounts(const UXXmlWrapperBase& element, const Selection& selection) {
    CStringUTF8 detector;
    const bool refers =
        element.GetPropertyValue(GetName(kN42RadDetectorInformationReference), detector, 0) != 0;
    if (selection.Given() && !(refers && selection.Has(detector))) return;
    GrossCounts counts;
    counts.id = Attribute(element, kN42Id);
    const UXXmlWrapperBase data = Child(element, kN42CountData);
    if (usable(data)) counts.count = leading_number(Text(data));
    counts.liveTime = cleaned_live_time(ChildText(element, kN42LiveTimeDuration));
    grossCounts_.push_back(std::move(counts));
}

CVCn42FileBase::EnergyCalibration* CVCn42File::CalibrationOf(const Spectrum& spectrum) {
    return FindCalibration(Attribute(spectrum.element, kN42EnergyCalibrationReference));
}

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
            liveTime = usable(spectra_[index].liveTime) ? Text(spectra_[index].liveTime) : "";
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
        for (std::size_t i = measurement.firstGross; i < measurement.lastGross; ++i) {
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
    if (!counts.liveTime.IsEmpty()) {
        values.push_back({GetName(kN42LiveTimeDuration), &counts.liveTime});
    }
    for (const Value& value : values) {
        if (const int result = AddValue(node, value); result != kN42Ok) return result;
    }
    return kN42Ok;
}

}  // namespace ux
