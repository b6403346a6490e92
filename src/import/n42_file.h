// What the readers of both N42 forms share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "uxtree/host/host.h"

#include "base/ascii.h"
#include "base/text_view.h"
#include "import/n42_names.h"
#include "import/n42_numbers.h"

namespace ux {

inline constexpr int kN42Ok = 0;
inline constexpr int kN42IsOtherForm = 10;  // the 2011 reader was given a 2006 file
inline constexpr int kN42NoDetectorArray = -1;
inline constexpr int kN42NoForm = -9093;
inline constexpr int kN42CannotSetAttribute = -9095;
inline constexpr int kN42CannotAdd = -9096;
inline constexpr int kN42UnknownRoot = -9097;
inline constexpr int kN42CannotLoad = -9098;
inline constexpr int kN42CannotRead = -9099;

inline constexpr DWORD kN42Preview = 0x10000;

// How live times of gross counts are cleaned; see VCTree_n42_parse_LiveTimeDuration.
inline constexpr int kN42CleanLiveTimes = 3;

// What a reader met and left out, counted while it reads. Elements count where they stand in the
// place that the format gives them.
struct N42Losses {
    std::size_t spectraWithoutChannels = 0;
    std::size_t spectraWithoutClass = 0;  // 2011: in measurements without class code
    std::size_t derivedSpectra = 0;       // 2011: in "DerivedData"
    bool endedAtCalibration = false;      // 2011: at one without id
    std::size_t measurementsBehind = 0;   // that calibration
    std::size_t spectraBehind = 0;
    std::size_t emptyMeasurements = 0;      // neither spectra nor gross counts
    std::size_t emptyWithDose = 0;          // of these, with a dose rate
    std::size_t otherModels = 0;            // 2006: energy calibrations that are no polynomials
    std::size_t grossOfOtherForm = 0;       // 2006: gross counts, which are not read
    std::size_t grossOfOtherDetectors = 0;  // left out by the selection
    std::size_t grossWithoutNumber = 0;     // read as 0
    std::size_t grossWithMore = 0;          // several values, of which the first is read
    std::uint64_t unreadableNumbers = 0;    // read as 0
    std::size_t listsWithUnreadable = 0;    // lists that had any
    std::size_t cutLists = 0;               // channel lists that a bound ended
    std::uint64_t cutZeros = 0;  // channels that they lack, as far as their last run tells
};

// Is the text the word, in any case and with any blanks around it?
inline bool is_word(const CStringUTF8& text, const char* word) {
    return equal_no_case(trimmed(view_of(text)), word);
}

// A reader of one N42 file. Open it, Read it, Build the tree from what was read. The loaded
// document lives as long as the reader, and records refer to its elements: the channels of a
// spectrum are first turned into numbers when they are written into the tree, so that no second
// copy of them exists at any time.
class CVCn42FileBase : public CQXMLFileAccess<Q_n42_ID, 0> {
public:
    CVCn42FileBase(const char* path, DWORD flags);

    // Takes off the prefix "n42", and any that the root element binds to an N42 namespace. Those
    // that are bound at an element, or around it, are taken off when the element is read. Other
    // prefixes stay, so that an instrument's own extensions never pass for standard elements.
    bool NormalizeTag(CStringUTF8& tag) override;

    // Loads the file and looks at its root. 0, or -9099 when the file cannot be read, -9098 when
    // it is no XML, 10 when the 2011 reader meets the 2006 form, -9097 for any other root.
    int Open();
    // The same with the document of a reader of the other form.
    int OpenLoaded(const CVCn42FileBase& other);
    void SetInfoTree(UXXmlWrapperBase* infoTree) { infoTree_ = infoTree; }

    // Fills the records. In preview detectors receives the names of the file's detectors; else
    // it is the selection, which may be null.
    virtual int Read(CWBOStringArray* detectors) = 0;
    // Writes the output tree under parent.
    virtual int Build(UXXmlWrapperBase& parent) = 0;
    // How many spectra and counts were read that can be imported.
    virtual std::size_t Records() const { return spectra_.size(); }
    // Can the texts that records share be written for each of them? A megabyte of class code
    // before a million spectra is no recording.
    bool TextsFit() const;
    // Empties tree and builds "n42" below it. With nothing read, 0 and tree stays as it is.
    int WriteInto(UXXmlWrapperBase& tree);
    void SetLiveTimeOption(int option) { liveTimeOption_ = option; }
    // Energies that are calculated are not written; boundaries, which the file lists, are.
    void LeaveOutEnergies() { withEnergies_ = false; }

    struct EnergyCalibration {
        CStringUTF8 id;
        CStringUTF8 coefficientText;
        std::vector<double> coefficients;
        std::vector<double> boundaries;
        CStringUTF8 unit;
        UXXmlWrapperBase column;  // the last energy column that was written from it
        int columnChannels = 0;
    };
    // Spectra first to last of the records, without the last one.
    struct SpectrumRange {
        std::size_t first = 0;
        std::size_t last = 0;
        bool empty() const { return first == last; }
        std::size_t size() const { return last - first; }
    };
    // For callers that want no tree. A measurement with spectra or gross counts; an import leaves
    // the spectra out of one that is not written.
    struct Part {
        UXXmlWrapperBase element;
        SpectrumRange spectra;
        SpectrumRange gross;
        bool written = true;
    };
    // The texts about a spectrum, "" where the file has none.
    struct About {
        CStringUTF8 id;
        CStringUTF8 detector;
        CStringUTF8 kind;  // class code or source type
        CStringUTF8 start;
        CStringUTF8 realTime;
        CStringUTF8 liveTime;
        CStringUTF8 position;  // latitude, longitude and perhaps more, separated by blanks
        bool namesCalibration = false;
    };
    struct AboutGross {
        CStringUTF8 id;
        CStringUTF8 detector;
        CStringUTF8 kind;
        CStringUTF8 start;
        CStringUTF8 liveTime;
        double count = 0;
    };
    struct Dose {
        CStringUTF8 detector;  // "" for the measurement as a whole
        CStringUTF8 unit;      // "" where the file tells none
        double value = 0;
    };
    virtual std::vector<Part> Parts() const = 0;  // in the order of the file
    virtual About AboutSpectrum(std::size_t spectrum) = 0;
    virtual AboutGross AboutGrossCounts(std::size_t /*gross*/) { return {}; }
    virtual std::vector<Dose> DosesOf(const Part& part) = 0;
    struct Place {
        CStringUTF8 detector;  // "" for the instrument
        CStringUTF8 position;
    };
    // What holds for all spectra of a measurement, where the form tells it that way.
    virtual std::vector<Place> PlacesOf(const Part& /*part*/) { return {}; }
    const EnergyCalibration* CalibrationOf(std::size_t spectrum) {
        return CalibrationOf(spectra_[spectrum]);
    }
    std::size_t Columns(std::size_t spectrum) const { return spectra_[spectrum].channels.size(); }
    // The channels of a spectrum's list, until the next call. Lists share what the file may expand
    // to, so each is read once and in the order of the file.
    const NumberList& ReadColumn(std::size_t spectrum, std::size_t column);
    // Spectra that nobody reads count against the allowance all the same.
    void PassOver(SpectrumRange spectra);
    // Channel lists may be read once more.
    void StartAgain();
    const N42Losses& Losses() const { return losses_; }
    std::string RootName() const;
    // How many elements of the whole document are called "Spectrum", whatever their prefix.
    std::size_t SpectraAnywhere() const;
    // The energies of channels as a list of its own.
    static void FillEnergies(const EnergyCalibration& calibration, int channels, NumberList& out);

protected:
    struct ChannelList {
        UXXmlWrapperBase element;
        bool compressed = false;
    };
    // A spectrum with at least one channel value.
    struct Spectrum {
        UXXmlWrapperBase element;
        UXXmlWrapperBase liveTime;  // the element that tells it
        std::vector<ChannelList> channels;
        int calibration = -1;  // its own in the file; -1: found by reference
    };
    // A value node of the output, named and labelled alike.
    struct Value {
        const char* name;
        const CStringUTF8* text;
    };
    using Values = std::vector<Value>;
    // The detectors that an import is limited to; empty: no limit.
    class Selection {
    public:
        explicit Selection(const CWBOStringArray* detectors);
        bool Given() const { return !names_.empty(); }
        bool Has(const CStringUTF8& name) const;

    private:
        std::unordered_set<std::string> names_;
    };

    virtual int CheckRoot(bool known, Q_n42_ID root) const = 0;

    bool Preview() const { return (flags_ & kN42Preview) != 0; }
    const UXXmlWrapperBase& Root() const { return document_; }
    UXXmlWrapperBase* InfoTree() const { return infoTree_; }

    // The identifier of an element's tag; 0 when it is none of the format's names.
    int IdOf(const UXXmlWrapperBase& element);
    // Is the tag, without a prefix of the format, the name? For names that the table lacks.
    bool HasLocalName(const UXXmlWrapperBase& element, std::string_view name) const;
    // The texts of an invalid element, or of none that has the name, are "".
    CStringUTF8 TextOf(const UXXmlWrapperBase& element) const;
    // The same until the next call, without a copy where the host has the text as it is.
    std::string_view TextView(const UXXmlWrapperBase& element);
    CStringUTF8 Attribute(const UXXmlWrapperBase& element, Q_n42_ID name);
    // The first child with the name; invalid when there is none, or no element.
    UXXmlWrapperBase Child(const UXXmlWrapperBase& element, Q_n42_ID name);
    CStringUTF8 ChildText(const UXXmlWrapperBase& element, Q_n42_ID name);

    // How many children have the name.
    std::size_t CountChildren(const UXXmlWrapperBase& element, Q_n42_ID name);

    // Notes a text that is written for more than one record.
    void NoteShared(const CStringUTF8& text);
    // Fills in the coefficients that the calibration's text lists.
    void ReadCoefficients(EnergyCalibration& calibration);
    std::vector<double> NumbersOf(const UXXmlWrapperBase& element);
    void Note(const NumberLosses& losses);
    int LiveTimeOption() const { return liveTimeOption_; }
    // Notes an element of channel data, when it has a value.
    void ReadChannels(const UXXmlWrapperBase& element, Spectrum& spectrum);
    EnergyCalibration* FindCalibration(const CStringUTF8& id);

    // Adds "RadMeasurements" under parent; false when that fails.
    bool AddMeasurements(UXXmlWrapperBase& parent, UXXmlWrapperBase& measurements);
    // Writes a measurement with its spectra, the number counting from 1.
    int WriteMeasurement(UXXmlWrapperBase& measurements, int number, SpectrumRange spectra,
                         const std::function<void(std::size_t index, Values& values)>& valuesOf);
    int AddValue(UXXmlWrapperBase& parent, const Value& value);
    // The calibration of a spectrum, null when it is unknown.
    virtual EnergyCalibration* CalibrationOf(const Spectrum& spectrum) = 0;

    std::vector<EnergyCalibration> calibrations_;
    std::deque<Spectrum> spectra_;  // grows without moving what it holds
    N42Losses losses_;

private:
    int OpenDocument();
    void CollectPrefixes();
    bool IsKnown(std::string_view prefix) const;
    std::string_view WithoutPrefix(std::string_view tag) const;
    std::string_view TagOf(const UXXmlWrapperBase& element) const;
    void Expand(const ChannelList& list);
    int WriteSpectrum(UXXmlWrapperBase& measurement, Spectrum& spectrum, int place, bool alone,
                      const Values& values);
    int WriteColumns(UXXmlWrapperBase& group, Spectrum& spectrum, int energyIndex);
    int WriteEnergies(UXXmlWrapperBase& group, const Spectrum& spectrum, int index);
    int CopyEnergies(UXXmlWrapperBase& group, EnergyCalibration& calibration,
                     const CStringUTF8& name, int channels);
    int AddEnergies(UXXmlWrapperBase& group, EnergyCalibration& calibration,
                    const CStringUTF8& name, int channels);

    CStringUTF8 path_;
    DWORD flags_;
    int liveTimeOption_ = kN42CleanLiveTimes;
    bool withEnergies_ = true;
    UXXmlWrapperBase document_;
    UXXmlWrapperBase* infoTree_ = nullptr;
    std::uint64_t fileBytes_;
    RunAllowance allowance_;
    std::uint64_t longestShared_ = 0;  // of the texts
    std::unordered_set<std::string> prefixes_;
    std::unordered_map<std::string, std::size_t> calibrationsById_;
    std::size_t calibrationsIndexed_ = 0;
    CStringUTF8 text_;  // reused by TextView
    NumberList numbers_;
    NumberList energies_;
};

}  // namespace ux
