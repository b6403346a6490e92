// The reader of the 2006 form.
#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "import/n42_file.h"

namespace ux {

class CVCn42File2006 : public CVCn42FileBase {
public:
    using CVCn42FileBase::CVCn42FileBase;
    int Read(CWBOStringArray* detectors) override;
    N42About AboutSpectrum(std::size_t spectrum) override;
    std::vector<N42Dose> DosesOf(const N42Part& part) override;

private:
    // The first element of the file that says something; invalid when none does. Its text is first
    // read when it is written.
    using Word = UXXmlWrapperBase;

    // What one level of a measurement says of the spectra below it: the measurement, its detector
    // data, a detector's measurement, a spectrum measurement. A level knows only its own words;
    // whoever asks goes outwards until one has any.
    struct DataAtLevel {
        int outer = -1;  // index of the level around it
        UXXmlWrapperBase element;
        Word startTime;
        Word sampleRealTime;
        Word realTime;
        Word itemInformation;
    };
    // What a spectrum itself says.
    struct ONEDATA {
        Word startTime;
        Word sampleRealTime;
        Word realTime;
        Word liveTime;
        Word sourceType;
        Word detectorType;
    };
    // The words of one spectrum as they are written.
    struct Words {
        CStringUTF8 startTime;
        CStringUTF8 sampleRealTime;
        CStringUTF8 liveTime;
        CStringUTF8 sourceType;
        CStringUTF8 detectorType;
        CStringUTF8 coordinates;
    };

    int CheckRoot(bool known, Q_n42_ID root) const override;
    N42Calibration* CalibrationOf(const N42Spectrum& spectrum) override;
    void CollectValues(std::size_t spectrum, N42Values& values) override;
    void ReadLevel(const UXXmlWrapperBase& element, Q_n42_ID id, int outer);
    void ReadChildOfLevel(const UXXmlWrapperBase& child, Q_n42_ID levelId, int level);
    void ReadSpectrum(const UXXmlWrapperBase& element, int level);
    ONEDATA DataOf(const UXXmlWrapperBase& spectrum);
    void NoteEmpty(const UXXmlWrapperBase& measurement);
    void PreviewSpectrum(const UXXmlWrapperBase& element, int level);
    bool ReadCalibration(const UXXmlWrapperBase& element, N42Calibration& calibration);
    int OwnCalibration(const UXXmlWrapperBase& element);
    CStringUTF8 CoordinatesOf(const Word& itemInformation);
    // The text that a level says, with reads telling how to get it; else one further out.
    CStringUTF8 DetectorOf(const UXXmlWrapperBase& spectrum, int level);
    void AddDose(const UXXmlWrapperBase& countDose, std::vector<N42Dose>& doses);
    template <typename Reads>
    CStringUTF8 Nearest(int level, Reads&& reads);
    void CollectWords(std::size_t spectrum);

    std::deque<DataAtLevel> levels_;
    std::vector<int> levelOf_;  // by spectrum
    Words words_;               // of the spectrum that is being written
    std::unordered_map<std::string, int> ownCalibrations_;
    CWBOStringArray* previewed_ = nullptr;  // receives the detectors in preview
    std::unordered_set<std::string> previewedNames_;
};

}  // namespace ux
