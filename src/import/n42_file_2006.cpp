// The reader of the 2006 form.
#include "import/n42_file_2006.h"

#include "frame/guards.h"
#include "frame/walk.h"

namespace ux {
namespace {

// No names of the table.
constexpr const char* kRealTime = "RealTime";
constexpr const char* kGrossCountMeasurement = "GrossCountMeasurement";
constexpr const char* kCountDoseData = "CountDoseData";
constexpr const char* kDoseRate = "DoseRate";
constexpr const char* kAbsorbedDoseRate = "AbsorbedDoseRate";
constexpr const char* kUnits = "Units";

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
            if (spectra_.size() > first) {
                parts_.push_back({child, {first, spectra_.size()}, {}, true});
            } else {
                NoteEmpty(child);
            }
        } else if (id == kN42Calibration && !Preview()) {
            N42Calibration calibration;
            if (ReadCalibration(child, calibration)) {
                ReadCoefficients(calibration);
                calibrations_.Add(std::move(calibration));
            }
        }
    }
    return kN42Ok;
}

// Reads the spectra of a level and of the levels inside it, in document order. A level lies inside
// three others at most, so this does not nest any deeper.
void CVCn42File2006::ReadLevel(const UXXmlWrapperBase& element, Q_n42_ID id, int outer) {
    const std::size_t before = spectra_.size();
    const int level = static_cast<int>(levels_.size());
    levels_.push_back({outer, element, {}, {}, {}, {}});
    NoteShared(Attribute(element, kN42DetectorType));
    for (UXXmlWrapperBase& child : children(element)) ReadChildOfLevel(child, id, level);
    // Nothing refers to a level without spectra, and a file may have a million of them.
    if (spectra_.size() == before) levels_.resize(static_cast<std::size_t>(level));
}

void CVCn42File2006::ReadChildOfLevel(const UXXmlWrapperBase& child, Q_n42_ID levelId, int level) {
    DataAtLevel& data = levels_[static_cast<std::size_t>(level)];
    const auto note = [&](Word& word, const CStringUTF8& text) {
        if (usable(word)) return;
        word = child;
        NoteShared(text);
    };
    switch (const int id = IdOf(child)) {
        case kN42StartTime:
            note(data.startTime, TextOf(child));
            break;
        case kN42SampleRealTime:
            note(data.sampleRealTime, TextOf(child));
            break;
        case kN42MeasuredItemInformation:
            note(data.itemInformation, CoordinatesOf(child));
            break;
        case kN42Spectrum:
            Preview() ? PreviewSpectrum(child, level) : ReadSpectrum(child, level);
            break;
        default:
            if (rank_of(id) > rank_of(levelId)) {
                ReadLevel(child, static_cast<Q_n42_ID>(id), level);
            } else if (HasLocalName(child, kRealTime)) {
                note(data.realTime, TextOf(child));
            } else if (HasLocalName(child, kGrossCountMeasurement)) {
                ++losses_.grossOfOtherForm;
            }
    }
}

// The form has no list of detectors; they are known by their spectra.
void CVCn42File2006::PreviewSpectrum(const UXXmlWrapperBase& element, int level) {
    const CStringUTF8 detector = DetectorOf(element, level);
    if (!detector.IsEmpty() && previewedNames_.insert(static_cast<const char*>(detector)).second) {
        previewed_->Add(detector);
    }
}

CStringUTF8 CVCn42File2006::DetectorOf(const UXXmlWrapperBase& spectrum, int level) {
    CStringUTF8 detector = Attribute(spectrum, kN42Detector);
    if (!detector.IsEmpty()) return detector;
    return Nearest(
        level, [&](const DataAtLevel& around) { return Attribute(around.element, kN42Detector); });
}

void CVCn42File2006::NoteEmpty(const UXXmlWrapperBase& measurement) {
    ++losses_.emptyMeasurements;
    if (!DosesOf({measurement, {}, {}, true}).empty()) ++losses_.emptyWithDose;
}

void CVCn42File2006::ReadSpectrum(const UXXmlWrapperBase& element, int level) {
    N42Spectrum spectrum;
    for (UXXmlWrapperBase& child : children(element)) {
        const int id = IdOf(child);
        if (id == kN42ChannelData) ReadChannels(child, spectrum);
        if (id == kN42Calibration && spectrum.calibration < 0) {
            spectrum.calibration = OwnCalibration(child);
        }
    }
    if (spectrum.channels.empty()) {
        ++losses_.spectraWithoutChannels;
        return;
    }
    spectrum.element = element;
    spectra_.push_back(std::move(spectrum));
    levelOf_.push_back(level);
}

// Read when it is asked for, since a file may have a million spectra.
CVCn42File2006::ONEDATA CVCn42File2006::DataOf(const UXXmlWrapperBase& spectrum) {
    ONEDATA data;
    for (UXXmlWrapperBase& child : children(spectrum)) {
        const auto note = [&](Word& word) {  // the first of repeated texts counts
            if (!usable(word)) word = child;
        };
        switch (IdOf(child)) {
            case kN42LiveTime:
                note(data.liveTime);
                break;
            case kN42StartTime:
                note(data.startTime);
                break;
            case kN42SampleRealTime:
                note(data.sampleRealTime);
                break;
            case kN42SourceType:
                note(data.sourceType);
                break;
            case kN42DetectorType:
                note(data.detectorType);
                break;
            default:
                if (HasLocalName(child, kRealTime)) note(data.realTime);
        }
    }
    return data;
}

// Reads a calibration of energies, its coefficients as text alone; false for one of another kind,
// as of peak widths.
bool CVCn42File2006::ReadCalibration(const UXXmlWrapperBase& element, N42Calibration& calibration) {
    CStringUTF8 type = GetName(kN42Energy);
    element.GetPropertyValue("Type", type, 0);
    if (!is_word(type, GetName(kN42Energy))) return false;
    calibration.id = Attribute(element, kN42Id2006);
    calibration.unit = Attribute(element, kN42EnergyUnits);
    NoteShared(calibration.id);
    NoteShared(calibration.unit);
    bool otherModel = false;
    for (UXXmlWrapperBase& child : children(element)) {
        if (IdOf(child) != kN42Equation) continue;
        CStringUTF8 model = GetName(kN42Polynomial);
        child.GetPropertyValue(GetName(kN42Model), model, 0);
        if (model != GetName(kN42Polynomial)) {
            otherModel = true;
            continue;
        }
        calibration.coefficientText = ChildText(child, kN42Coefficients);
        otherModel = false;
        break;
    }
    losses_.otherModels += otherModel ? 1U : 0U;
    return true;
}

// The record of a calibration inside a spectrum, -1 when it is none of energies. The spectra of
// a detector repeat theirs word for word; one record serves all of them.
int CVCn42File2006::OwnCalibration(const UXXmlWrapperBase& element) {
    N42Calibration calibration;
    if (!ReadCalibration(element, calibration)) return -1;
    const char separator = '\n';  // XML attributes hold no plain line feeds
    const CStringUTF8 words =
        calibration.id + separator + calibration.unit + separator + calibration.coefficientText;
    const auto [known, isNew] = ownCalibrations_.emplace(static_cast<const char*>(words), -1);
    if (isNew) {
        ReadCoefficients(calibration);
        known->second = calibrations_.Add(std::move(calibration));
    }
    return known->second;
}

// Intended: a spectrum that names calibrations, but none that is known, has no energies; its own
// calibration counts only when it names none.
N42Calibration* CVCn42File2006::CalibrationOf(const N42Spectrum& spectrum) {
    CStringUTF8 references;
    if (!spectrum.element.GetPropertyValue(GetName(kN42CalibrationIds), references, 0)) {
        return spectrum.calibration < 0 ? nullptr : &calibrations_.At(spectrum.calibration);
    }
    CWBOStringArray ids;
    UXGetTokens(ids, references, ' ', 0);
    for (int i = 0; i < ids.GetSize(); ++i) {
        if (N42Calibration* found = calibrations_.Find(ids[i])) return found;
    }
    return nullptr;
}

template <typename Reads>
CStringUTF8 CVCn42File2006::Nearest(int level, Reads&& reads) {
    while (level >= 0) {
        const DataAtLevel& around = levels_[static_cast<std::size_t>(level)];
        CStringUTF8 text = reads(around);
        if (!text.IsEmpty()) return text;
        level = around.outer;
    }
    return {};
}

CStringUTF8 CVCn42File2006::CoordinatesOf(const Word& itemInformation) {
    return ChildText(Child(itemInformation, kN42MeasurementLocation), kN42Coordinates);
}

// The spectrum's own words count before those of the nearest level that has any.
void CVCn42File2006::CollectWords(std::size_t spectrum) {
    const UXXmlWrapperBase& element = spectra_[spectrum].element;
    const ONEDATA data = DataOf(element);
    const int level = levelOf_[spectrum];
    const auto pick = [&](CStringUTF8&& own, auto&& reads) {
        return own.IsEmpty() ? Nearest(level, reads) : std::move(own);
    };
    words_.startTime = pick(TextOf(data.startTime),
                            [&](const DataAtLevel& around) { return TextOf(around.startTime); });
    // The nearest time of either name, since the live time of a spectrum belongs to that: an
    // enclosing one would give a wrong dead time.
    const auto realTimeOf = [&](const auto& around) {
        CStringUTF8 text = TextOf(around.sampleRealTime);
        return text.IsEmpty() ? TextOf(around.realTime) : text;
    };
    words_.sampleRealTime = pick(realTimeOf(data), realTimeOf);
    words_.liveTime = TextOf(data.liveTime);
    words_.sourceType = TextOf(data.sourceType);
    words_.detectorType = pick(
        usable(data.detectorType) ? TextOf(data.detectorType)
                                  : Attribute(element, kN42DetectorType),
        [&](const DataAtLevel& around) { return Attribute(around.element, kN42DetectorType); });
    words_.coordinates = Nearest(
        level, [&](const DataAtLevel& around) { return CoordinatesOf(around.itemInformation); });
}

// ---- what the file tells of a spectrum --------------------------------------------------------

N42About CVCn42File2006::AboutSpectrum(std::size_t spectrum) {
    CollectWords(spectrum);
    const UXXmlWrapperBase& element = spectra_[spectrum].element;
    N42About about;
    about.id = Attribute(element, kN42Id2006);
    about.detector = DetectorOf(element, levelOf_[spectrum]);
    about.kind = words_.sourceType;
    about.start = words_.startTime;
    about.realTime = words_.sampleRealTime;
    about.liveTime = words_.liveTime;
    about.position = words_.coordinates;
    about.namesCalibration = element.HasProperty(GetName(kN42CalibrationIds), 0) != 0;
    return about;
}

// Dose rates stand in the measurement, or beside the spectra of a spectrum measurement.
std::vector<N42Dose> CVCn42File2006::DosesOf(const N42Part& part) {
    std::vector<N42Dose> out;
    visit_below(part.element, [&](const UXXmlWrapperBase& node) {
        if (rank_of(IdOf(node)) > 0) return Step::kGoOn;
        if (HasLocalName(node, kCountDoseData)) AddDose(node, out);
        return Step::kOverBranch;
    });
    return out;
}

// A dose equivalent counts before an absorbed dose.
void CVCn42File2006::AddDose(const UXXmlWrapperBase& countDose, std::vector<N42Dose>& doses) {
    UXXmlWrapperBase found;
    for (UXXmlWrapperBase& child : children(countDose)) {
        const bool equivalent = HasLocalName(child, kDoseRate);
        if (!equivalent && !HasLocalName(child, kAbsorbedDoseRate)) continue;
        if (usable(found) && !equivalent) continue;
        if (leading_number(TextOf(child))) found = child;
        if (equivalent) break;
    }
    if (!usable(found)) return;
    N42Dose dose;
    dose.value = leading_number(TextOf(found)).value_or(0);
    dose.detector = Attribute(countDose, kN42Detector);
    found.GetPropertyValue(kUnits, dose.unit, 0);
    doses.push_back(std::move(dose));
}

// ---- building ---------------------------------------------------------------------------------

void CVCn42File2006::CollectValues(std::size_t spectrum, N42Values& values) {
    CollectWords(spectrum);
    for (const auto& [name, text] : {std::pair{kN42StartTime, &words_.startTime},
                                     {kN42SampleRealTime, &words_.sampleRealTime},
                                     {kN42LiveTime, &words_.liveTime},
                                     {kN42SourceType, &words_.sourceType},
                                     {kN42DetectorType, &words_.detectorType},
                                     {kN42Coordinates, &words_.coordinates}}) {
        if (!text->IsEmpty()) values.push_back({GetName(name), text});
    }
}

}  // namespace ux
