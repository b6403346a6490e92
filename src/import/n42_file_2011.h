// The reader of the 2011 form.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "import/n42_file.h"

namespace ux {

// The detectors that an import is limited to; none given: no limit.
class N42Selection {
public:
    explicit N42Selection(const CWBOStringArray* detectors);
    bool Given() const { return !names_.empty(); }
    bool Has(const CStringUTF8& name) const;

private:
    std::unordered_set<std::string> names_;
};

class CVCn42File : public CVCn42FileBase {
public:
    using CVCn42FileBase::CVCn42FileBase;
    int Read(CWBOStringArray* detectors) override;
    N42About AboutSpectrum(std::size_t spectrum) override;
    N42AboutGross AboutGrossCounts(std::size_t gross) override;
    std::vector<N42Dose> DosesOf(const N42Part& part) override;
    std::vector<N42Place> PlacesOf(const N42Part& part) override;

private:
    struct GrossCounts {
        CStringUTF8 id;
        CStringUTF8 detector;
        double count = 0;
        CStringUTF8 liveTime;  // as the file has it
    };
    // What a measurement says of its spectra and counts; entry i belongs to part i.
    struct Words {
        CStringUTF8 classCode;
        CStringUTF8 startDateTime;
        CStringUTF8 realTime;
    };

    // Of the measurement whose range has the record.
    const Words& WordsOf(N42Range N42Part::*range, std::size_t record) const;
    std::size_t Records() const override { return spectra_.size() + grossCounts_.size(); }
    int CheckRoot(bool known, Q_n42_ID root) const override;
    N42Calibration* CalibrationOf(const N42Spectrum& spectrum) override;
    int ReadSelected(const N42Selection& selection);
    void ReadDetector(UXXmlWrapperBase& element, const N42Selection& selection);
    bool ReadCalibration(const UXXmlWrapperBase& element);
    void ReadMeasurement(const UXXmlWrapperBase& element, const N42Selection& selection);
    void NoteEmpty(const UXXmlWrapperBase& element);
    void NoteRest(UXXmlWrapperBase calibration);
    void ReadSpectrum(const UXXmlWrapperBase& element);
    void ReadGrossCounts(const UXXmlWrapperBase& element, const N42Selection& selection);
    void CollectValues(std::size_t spectrum, N42Values& values) override;
    int WriteGrossCounts(UXXmlWrapperBase& measurements) override;
    int WriteGrossCount(UXXmlWrapperBase& group, std::size_t place);

    std::vector<Words> words_;
    std::vector<GrossCounts> grossCounts_;
    CStringUTF8 liveTime_;  // of the spectrum that is being written
};

}  // namespace ux
