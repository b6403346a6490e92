// What spectrum files hold, as records that refer to the elements of the loaded document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "uxtree/host/host.h"

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

struct N42Calibration {
    CStringUTF8 id;
    CStringUTF8 coefficientText;
    std::vector<double> coefficients;
    std::vector<double> boundaries;
    CStringUTF8 unit;
    UXXmlWrapperBase column;  // the last energy column that was written from it
    int columnChannels = 0;
    bool empty() const { return coefficients.empty() && boundaries.empty(); }
};

struct N42ChannelList {
    UXXmlWrapperBase element;
    bool compressed = false;
};
// A spectrum with at least one channel value.
struct N42Spectrum {
    UXXmlWrapperBase element;
    std::vector<N42ChannelList> channels;
    int calibration = -1;  // its own in the file; -1: found by reference
};

// Records first to last, without the last one.
struct N42Range {
    std::size_t first = 0;
    std::size_t last = 0;
    bool empty() const { return first == last; }
    std::size_t size() const { return last - first; }
};
// A measurement with spectra or gross counts; an import leaves the spectra out of one that is not
// written.
struct N42Part {
    UXXmlWrapperBase element;
    N42Range spectra;
    N42Range gross;
    bool written = true;
};

// The texts about a spectrum, "" where the file has none.
struct N42About {
    CStringUTF8 id;
    CStringUTF8 detector;
    CStringUTF8 kind;  // class code or source type
    CStringUTF8 start;
    CStringUTF8 realTime;
    CStringUTF8 liveTime;
    CStringUTF8 position;  // latitude, longitude and perhaps more, separated by blanks
    bool namesCalibration = false;
};
struct N42AboutGross {
    CStringUTF8 id;
    CStringUTF8 detector;
    CStringUTF8 kind;
    CStringUTF8 start;
    CStringUTF8 liveTime;
    double count = 0;
};
struct N42Dose {
    CStringUTF8 detector;  // "" for the measurement as a whole
    CStringUTF8 unit;      // "" where the file tells none
    double value = 0;
};
struct N42Place {
    CStringUTF8 detector;  // "" for the instrument
    CStringUTF8 position;
};

}  // namespace ux
