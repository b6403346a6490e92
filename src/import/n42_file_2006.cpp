#include "import/n42_file_2006.h"

#include <string_view>

#include "frame/guards.h"
#include "frame/walk.h"

namespace ux {
namespace {

constexpr std::string_view kRealTime = "RealTime";  // no name of the table

// Levels from the outside in; 0 for an element that is no level. A level may be left out, as many
// instruments do, but never stands inside one further in.
int rank_of(int id) {
    switch (id) {
        case kN42Measurement:
            return 1;
        case kN42DetectorData:
            return 2;
        case kN42DetectorMeasurement:
            return 3;
        case kN42SpectrumMeasurement:
            return 4;
        default:
            return 0;
    }
}

}  // namespace

int CVCn42File2006::CheckRoot(bool known, Q_n42_ID root) const {
    return known && root == kN42InstrumentData2006 ? kN42Ok : kN42UnknownRoot;
}

int CVCn42File2006::Read(CWBOStringArray* detectors) {
    previewed_ = Preview() ? detectors : nullptr;
    for (UXXmlWrapperBase& child : children(Root())) {
        const int id = IdOf(child);
        if (id == kN42Measurement) {
            const std::size_t first = spectra_.size();
            ReadLevel(child, kN42Measurement, -1);
            if (spectra_.size() > first) measurements_.push_back({first, spectra_.size()});
        } else if (id == kN42Calibration && !Preview()) {
            EnergyCalibration calibration;
            if (ReadCalibration(child, calibration)) {
                calibrations_.push_back(std::move(calibration));
            }
        }
    }
    return kN42Ok;
}

// Reads the spectra of a level and of the levels inside it, in document order. A level lies inside
// three others at most, so this does not nest any deeper.
void CVCn42File2006::ReadLevel(const UXXmlWrapperBase& element, Q_n42_ID id, int outer) {
    const std::size_t before = spectra_.size();
    const int level = AddLevel(element, outer);
    for (UXXmlWrapperBase& child : children(element)) {
        const int childId = IdOf(child);
        if (childId == kN42Spectrum) {
            Preview() ? PreviewSpectrum(child, level) : ReadSpectrum(child, level);
        } else if (rank_of(childId) > rank_of(id)) {
            ReadLevel(child, static_cast<Q_n42_ID>(childId), level);
        }
    }
    // Nothing refers to a level without spectra, and a file may have a million of them.
    if (spectra_.size() == before) levels_.resize(static_cast<std::size_t>(level));
}

int CVCn42File2006::AddLevel(const UXXmlWrapperBase& element, int outer) {
    DataAtLevel level;
    level.outer = outer;
    level.detector = Attribute(element, kN42Detector);
    level.detectorType = Attribute(element, kN42DetectorType);
    for (UXXmlWrapperBase& child : children(element)) {
        switch (Preview() ? 0 : IdOf(child)) {
            case kN42StartTime:
                if (!level.startTime) level.startTime = Text(child);
                break;
            case kN42SampleRealTime:
                if (!level.sampleRealTime) level.sampleRealTime = Text(child);
                break;
            case kN42MeasuredItemInformation:
                if (!level.coordinates) level.coordinates = ReadCoordinates(child);
                break;
            default:
                break;
        }
    }
    levels_.push_back(std::move(level));
    return static_cast<int>(levels_.size()) - 1;
}

CStringUTF8 CVCn42File2006::ReadCoordinates(const UXXmlWrapperBase& itemInformation) {
    const UXXmlWrapperBase location = Child(itemInformation, kN42MeasurementLocation);
    return usable(location) ? ChildText(location, kN42Coordinates) : CStringUTF8();
}

// The form has no list of detectors; they are known by their spectra.
void CVCn42File2006::PreviewSpectrum(const UXXmlWrapperBase& element, int level) {
    const CStringUTF8 detector =
        Nearest(Attribute(element, kN42Detector), level, &DataAtLevel::detector);
    if (!detector.IsEmpty() && previewedNames_.insert(static_cast<const char*>(detector)).second) {
        previewed_->Add(detector);
    }
}

void CVCn42File2006::ReadSpectrum(const UXXmlWrapperBase& element, int level) {
    Spectrum spectrum;
    ONEDATA data;
    for (UXXmlWrapperBase& child : children(element)) ReadChildOfSpectrum(child, spectrum, data);
    if (spectrum.channels.empty()) return;
    data.level = level;
    if (!data.detectorType) data.detectorType = Attribute(element, kN42DetectorType);
    spectrum.element = element;
    spectrum.liveTime = data.liveTime.value_or("");
    spectra_.push_back(std::move(spectrum));
    data_.push_back(std::move(data));
}

void CVCn42File2006::ReadChildOfSpectrum(const UXXmlWrapperBase& child, Spectrum& spectrum,
                                         ONEDATA& data) {
    switch (IdOf(child)) {  // the first of repeated texts counts
        case kN42ChannelData:
            ReadChannels(child, spectrum);
            break;
        case kN42Calibration:
            if (spectrum.calibration < 0) spectrum.calibration = OwnCalibration(child);
            break;
        case kN42LiveTime:
            if (!data.liveTime) data.liveTime = Text(child);
            break;
        case kN42StartTime:
            if (!data.startTime) data.startTime = Text(child);
            break;
        case kN42SampleRealTime:
            if (!data.sampleRealTime) data.sampleRealTime = Text(child);
            break;
        case kN42SourceType:
            if (!data.sourceType) data.sourceType = Text(child);
            break;
        case kN42DetectorType:
            if (!data.detectorType) data.detectorType = Text(child);
            break;
        default: {
            CStringUTF8 tag;
            child.GetTagName(tag);
            if (tag != kRealTime.data()) NormalizeTag(tag);
            if (tag == kRealTime.data() && !data.realTime) data.realTime = Text(child);
        }
    }
}

// Reads a calibration of energies; false for one of another kind, as of peak widths.
bool CVCn42File2006::ReadCalibration(const UXXmlWrapperBase& element,
                                     EnergyCalibration& calibration) {
    CStringUTF8 type = GetName(kN42Energy);
    element.GetPropertyValue("Type", type, 0);
    if (type != GetName(kN42Energy)) return false;
    calibration.id = Attribute(element, kN42Id2006);
    calibration.unit = Attribute(element, kN42EnergyUnits);
    for (UXXmlWrapperBase& child : children(element)) {
        if (IdOf(child) != kN42Equation) continue;
        CStringUTF8 model = GetName(kN42Polynomial);
        child.GetPropertyValue(GetName(kN42Model), model, 0);
        if (model != GetName(kN42Polynomial)) continue;
        SetCoefficients(calibration, ChildText(child, kN42Coefficients));
        break;
    }
    return true;
}

// The record of a calibration inside a spectrum, -1 when it is none of energies. The spectra of
// a detector repeat theirs word for word; one record serves all of them.
int CVCn42File2006::OwnCalibration(const UXXmlWrapperBase& element) {
    EnergyCalibration calibration;
    if (!ReadCalibration(element, calibration)) return -1;
    const char separator = '\n';  // XML attributes hold no plain line feeds
    const CStringUTF8 words =
        calibration.id + separator + calibration.unit + separator + calibration.coefficientText;
    const auto [known, isNew] = ownCalibrations_.emplace(static_cast<const char*>(words),
                                                         static_cast<int>(calibrations_.size()));
    if (isNew) calibrations_.push_back(std::move(calibration));
    return known->second;
}

// Intended: a spectrum that names calibrations, but none that is known, has no energies; its own
// calibration counts only when it names none.
CVCn42FileBase::EnergyCalibration* CVCn42File2006::CalibrationOf(const Spectrum& spectrum) {
    CStringUTF8 references;
    if (!spectrum.element.GetPropertyValue(GetName(kN42CalibrationIds), references, 0)) {
        if (spectrum.calibration < 0) return nullptr;
        return &calibrations_[static_cast<std::size_t>(spectrum.calibration)];
    }
    CWBOStringArray ids;
    UXGetTokens(ids, references, ' ', 0);
    for (int i = 0; i < ids.GetSize(); ++i) {
        if (EnergyCalibration* found = FindCalibration(ids[i])) return found;
    }
    return nullptr;
}

// The spectrum's own word, else the one of the nearest level that has any.
CStringUTF8 CVCn42File2006::Nearest(const Word& own, int level, Word DataAtLevel::*word) const {
    if (own && !own->IsEmpty()) return *own;
    while (level >= 0) {
        const DataAtLevel& around = levels_[static_cast<std::size_t>(level)];
        if (around.*word && !(around.*word)->IsEmpty()) return *(around.*word);
        level = around.outer;
    }
    return {};
}

CVCn42File2006::Words CVCn42File2006::WordsOf(const ONEDATA& data) const {
    Words words;
    words.startTime = Nearest(data.startTime, data.level, &DataAtLevel::startTime);
    words.sampleRealTime = Nearest(data.sampleRealTime, data.level, &DataAtLevel::sampleRealTime);
    // Files without levels have no other time than the spectrum's own.
    if (words.sampleRealTime.IsEmpty()) words.sampleRealTime = data.realTime.value_or("");
    words.sourceType = data.sourceType.value_or("");
    words.detectorType = Nearest(data.detectorType, data.level, &DataAtLevel::detectorType);
    words.coordinates = Nearest({}, data.level, &DataAtLevel::coordinates);
    return words;
}

int CVCn42File2006::Build(UXXmlWrapperBase& parent) {
    UXXmlWrapperBase measurements;
    if (!AddMeasurements(parent, measurements)) return kN42CannotAdd;
    Words words;
    const auto valuesOf = [&](std::size_t index, Values& values) {
        words = WordsOf(data_[index]);
        const std::pair<Q_n42_ID, const CStringUTF8*> candidates[] = {
            {kN42StartTime, &words.startTime},         {kN42SampleRealTime, &words.sampleRealTime},
            {kN42LiveTime, &spectra_[index].liveTime}, {kN42SourceType, &words.sourceType},
            {kN42DetectorType, &words.detectorType},   {kN42Coordinates, &words.coordinates}};
        for (const auto& [name, text] : candidates) {
            if (!text->IsEmpty()) values.push_back({GetName(name), text});
        }
    };
    int written = 0;
    for (const SpectrumRange& spectra : measurements_) {
        const int result = WriteMeasurement(measurements, ++written, spectra, valuesOf);
        if (result != kN42Ok) return result;
    }
    if (written > 0) measurements.SaveXDEArraySize(written);
    return kN42Ok;
}

}  // namespace ux
