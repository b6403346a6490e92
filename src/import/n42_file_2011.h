// The reader of the 2011 form.
#pragma once

#include "import/n42_file.h"

namespace ux {

class CVCn42File : public CVCn42FileBase {
public:
    using CVCn42FileBase::CVCn42FileBase;
    int Read(CWBOStringArray* detectors) override;
    int Build(UXXmlWrapperBase& parent) override;
    std::size_t Records() const override { return spectra_.size() + grossCounts_.size(); }
    std::vector<Part> Parts() const override;
    About AboutSpectrum(std::size_t spectrum) override;
    AboutGross AboutGrossCounts(std::size_t gross) override;
    std::vector<Dose> DosesOf(const Part& part) override;
    std::vector<Place> PlacesOf(const Part& part) override;

private:
    struct GrossCounts {
        CStringUTF8 id;
        CStringUTF8 detector;
        double count = 0;
        CStringUTF8 liveTime;  // as the file has it
    };
    struct RadMeasurement {
        UXXmlWrapperBase element;
        CStringUTF8 classCode;
        CStringUTF8 startDateTime;
        CStringUTF8 realTime;
        SpectrumRange spectra;
        SpectrumRange gross;
    };

    const RadMeasurement& MeasurementOf(SpectrumRange RadMeasurement::*range,
                                        std::size_t record) const;
    int CheckRoot(bool known, Q_n42_ID root) const override;
    EnergyCalibration* CalibrationOf(const Spectrum& spectrum) override;
    int ReadSelected(const Selection& selection);
    void ReadDetector(UXXmlWrapperBase& element, const Selection& selection);
    bool ReadCalibration(const UXXmlWrapperBase& element);
    void ReadMeasurement(const UXXmlWrapperBase& element, const Selection& selection);
    void NoteEmpty(const UXXmlWrapperBase& element);
    void NoteRest(UXXmlWrapperBase calibration);
    void ReadSpectrum(const UXXmlWrapperBase& element);
    void ReadGrossCounts(const UXXmlWrapperBase& element, const Selection& selection);
    int BuildSpectra(UXXmlWrapperBase& measurements);
    int BuildGrossCounts(UXXmlWrapperBase& measurements);
    int WriteGrossCounts(UXXmlWrapperBase& group, const RadMeasurement& measurement,
                         const GrossCounts& counts, int place);

    std::vector<RadMeasurement> measurements_;
    std::vector<GrossCounts> grossCounts_;
};

}  // namespace ux
