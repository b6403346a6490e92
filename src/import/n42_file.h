// What the readers of both N42 forms share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "uxtree/host/host.h"

#include "base/ascii.h"
#include "base/text_view.h"
#include "import/n42_calibrations.h"
#include "import/n42_document.h"
#include "import/n42_numbers.h"
#include "import/n42_records.h"
#include "import/n42_tree.h"

namespace ux {

inline constexpr DWORD kN42Preview = 0x10000;

// How live times of gross counts are cleaned; see VCTree_n42_parse_LiveTimeDuration.
inline constexpr int kN42CleanLiveTimes = 3;

// Is the text the word, in any case and with any blanks around it?
inline bool is_word(const CStringUTF8& text, const char* word) {
    return equal_no_case(trimmed(view_of(text)), word);
}

// A reader of one N42 file. Open it, Read it, write the tree from what was read. The channels of a
// spectrum are first turned into numbers when they are written into the tree, so that no second copy
// of them exists at any time.
class CVCn42FileBase : public N42Document {
public:
    CVCn42FileBase(const char* path, DWORD flags);
    void SetInfoTree(UXXmlWrapperBase* infoTree) { infoTree_ = infoTree; }
    void SetLiveTimeOption(int option) { liveTimeOption_ = option; }
    // Energies that are calculated are not written; boundaries, which the file lists, are.
    void LeaveOutEnergies() { withEnergies_ = false; }

    // Fills the records. In preview detectors receives the names of the file's detectors; else
    // it is the selection, which may be null.
    virtual int Read(CWBOStringArray* detectors) = 0;
    // Empties tree and builds "n42" below it. With nothing read, 0 and tree stays as it is.
    int WriteInto(UXXmlWrapperBase& tree);

    // For callers that want no tree.
    const std::vector<N42Part>& Parts() const { return parts_; }  // in the order of the file
    virtual N42About AboutSpectrum(std::size_t spectrum) = 0;
    virtual N42AboutGross AboutGrossCounts(std::size_t /*gross*/) { return {}; }
    virtual std::vector<N42Dose> DosesOf(const N42Part& part) = 0;
    // What holds for all spectra of a measurement, where the form tells it that way.
    virtual std::vector<N42Place> PlacesOf(const N42Part& /*part*/) { return {}; }
    const N42Calibration* CalibrationOf(std::size_t spectrum) {
        return CalibrationOf(spectra_[spectrum]);
    }
    std::size_t Columns(std::size_t spectrum) const { return spectra_[spectrum].channels.size(); }
    // The channels of a spectrum's list, until the next call. Lists share what the file may expand
    // to, so each is read once and in the order of the file.
    const NumberList& ReadColumn(std::size_t spectrum, std::size_t column);
    // Spectra that nobody reads count against the allowance all the same.
    void PassOver(N42Range spectra);
    // Channel lists may be read once more.
    void StartAgain() { allowance_ = RunAllowance(FileBytes()); }
    const N42Losses& Losses() const { return losses_; }

protected:
    bool Preview() const { return (flags_ & kN42Preview) != 0; }
    UXXmlWrapperBase* InfoTree() const { return infoTree_; }
    int LiveTimeOption() const { return liveTimeOption_; }

    // How many spectra and counts were read that can be imported.
    virtual std::size_t Records() const { return spectra_.size(); }
    // The calibration of a spectrum, null when it is unknown.
    virtual N42Calibration* CalibrationOf(const N42Spectrum& spectrum) = 0;
    // Appends the values that are written for a spectrum; their texts stay until the next call.
    virtual void CollectValues(std::size_t spectrum, N42Values& values) = 0;
    virtual int WriteGrossCounts(UXXmlWrapperBase& /*measurements*/) { return kN42Ok; }

    // Notes a text that is written for more than one record.
    void NoteShared(const CStringUTF8& text);
    // Fills in the coefficients that the calibration's text lists.
    void ReadCoefficients(N42Calibration& calibration);
    std::vector<double> NumbersOf(const UXXmlWrapperBase& element);
    // Notes an element of channel data, when it has a value.
    void ReadChannels(const UXXmlWrapperBase& element, N42Spectrum& spectrum);

    N42Calibrations calibrations_;
    std::deque<N42Spectrum> spectra_;  // grows without moving what it holds
    std::vector<N42Part> parts_;
    N42Losses losses_;
    N42Tree tree_{*this};

private:
    void Note(const NumberLosses& losses);
    void Expand(const N42ChannelList& list);
    bool TextsFit() const;
    int WriteSpectra(UXXmlWrapperBase& measurements);
    int WriteMeasurement(UXXmlWrapperBase& measurements, int number, N42Range spectra);
    int WriteColumns(UXXmlWrapperBase& group, N42Spectrum& spectrum, int energyIndex);
    int WriteEnergies(UXXmlWrapperBase& group, const N42Spectrum& spectrum, int index);

    DWORD flags_;
    int liveTimeOption_ = kN42CleanLiveTimes;
    bool withEnergies_ = true;
    UXXmlWrapperBase* infoTree_ = nullptr;
    RunAllowance allowance_;
    std::uint64_t longestShared_ = 0;  // of the texts
    N42Values values_;                 // of the spectrum that is being written
    NumberList numbers_;
};

}  // namespace ux
