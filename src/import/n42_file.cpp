// Reading channel lists and coefficients, and writing what was read: what both forms share.
#include "import/n42_file.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "frame/guards.h"

namespace ux {
namespace {

constexpr const char* kCountedZeros = "CountedZeros";  // as some instruments spell it

}  // namespace

CVCn42FileBase::CVCn42FileBase(const char* path, DWORD flags)
    : N42Document(path), flags_(flags), allowance_(FileBytes()) {}

// ---- reading ----------------------------------------------------------------------------------

void CVCn42FileBase::Note(const NumberLosses& losses) {
    losses_.unreadableNumbers += losses.unreadable;
    losses_.listsWithUnreadable += losses.unreadable != 0 ? 1 : 0;
    losses_.cutLists += losses.cut != 0 ? 1 : 0;
    losses_.cutZeros += losses.cut;
}

void CVCn42FileBase::NoteShared(const CStringUTF8& text) {
    longestShared_ = std::max(longestShared_, static_cast<std::uint64_t>(text.GetLength()));
}

std::vector<double> CVCn42FileBase::NumbersOf(const UXXmlWrapperBase& element) {
    Note(read_numbers(TextView(element), numbers_));
    return {numbers_.data(), numbers_.data() + numbers_.size()};
}

// A text that is only white space counts as none. Leading zeros of the polynomial change nothing
// and are left out.
void CVCn42FileBase::ReadCoefficients(N42Calibration& calibration) {
    if (trimmed(view_of(calibration.coefficientText)).empty()) {
        calibration.coefficientText.Empty();
        return;
    }
    Note(read_numbers(view_of(calibration.coefficientText), numbers_));
    NoteShared(calibration.coefficientText);
    calibration.coefficients.assign(numbers_.data(), numbers_.data() + numbers_.size());
    while (calibration.coefficients.size() > 1 && calibration.coefficients.back() == 0) {
        calibration.coefficients.pop_back();
    }
}

void CVCn42FileBase::ReadChannels(const UXXmlWrapperBase& element, N42Spectrum& spectrum) {
    // Real files write the code under either name in both forms.
    const auto countsZeroes = [&](Q_n42_ID name) {
        const CStringUTF8 code = Attribute(element, name);
        return is_word(code, GetName(kN42CountedZeroes)) || is_word(code, kCountedZeros);
    };
    const bool compressed = countsZeroes(kN42CompressionCode) || countsZeroes(kN42Compression);
    const std::string_view text = TextView(element);
    if (!(compressed ? has_counted_zeroes(text) : has_numbers(text))) return;
    spectrum.channels.push_back({element, compressed});
}

void CVCn42FileBase::Expand(const N42ChannelList& list) {
    const std::string_view text = TextView(list.element);
    Note(list.compressed ? read_counted_zeroes(text, allowance_, numbers_)
                         : read_numbers(text, numbers_));
}

const NumberList& CVCn42FileBase::ReadColumn(std::size_t spectrum, std::size_t column) {
    Expand(spectra_[spectrum].channels[column]);
    return numbers_;
}

void CVCn42FileBase::PassOver(N42Range spectra) {
    for (std::size_t i = spectra.first; i < spectra.last; ++i) {
        for (const N42ChannelList& list : spectra_[i].channels) {
            if (list.compressed) Expand(list);
        }
    }
}

// ---- writing ----------------------------------------------------------------------------------

int CVCn42FileBase::WriteInto(UXXmlWrapperBase& tree) {
    if (Records() == 0) return kN42Ok;
    if (!TextsFit()) return kN42CannotAdd;
    tree.RemoveAllChildren();
    UXXmlWrapperBase top;
    UXXmlWrapperBase measurements;
    if (!tree.AddNode(&top, GetName(kN42Output), -1) ||
        !top.AddNode(&measurements, GetName(kN42OutputMeasurements), -1)) {
        return kN42CannotAdd;
    }
    const int result = WriteSpectra(measurements);
    return result == kN42Ok ? WriteGrossCounts(measurements) : result;
}

// Can the texts that records share be written for each of them? A megabyte of class code before a
// million spectra is no recording.
bool CVCn42FileBase::TextsFit() const {
    return longestShared_ <= output_allowance(FileBytes()) / Records();
}

int CVCn42FileBase::WriteSpectra(UXXmlWrapperBase& measurements) {
    int written = 0;
    for (const N42Part& part : parts_) {
        if (!part.written) PassOver(part.spectra);
        if (!part.written || part.spectra.empty()) continue;
        const int result = WriteMeasurement(measurements, ++written, part.spectra);
        if (result != kN42Ok) return result;
    }
    if (written > 0) measurements.SaveXDEArraySize(written);
    return kN42Ok;
}

int CVCn42FileBase::WriteMeasurement(UXXmlWrapperBase& measurements, int number, N42Range spectra) {
    UXXmlWrapperBase measurement;
    int result = tree_.AddMeasurement(measurements, number, measurement);
    for (std::size_t i = spectra.first; i < spectra.last && result == kN42Ok; ++i) {
        values_.clear();
        CollectValues(i, values_);
        const int place = static_cast<int>(i - spectra.first);
        UXXmlWrapperBase group;
        result = tree_.AddSpectrum(measurement, spectra_[i].element, place, values_, group);
        if (result != kN42Ok) return result;
        result = WriteColumns(group, spectra_[i], spectra.size() == 1 ? -1 : place);
    }
    return result;
}

int CVCn42FileBase::WriteColumns(UXXmlWrapperBase& group, N42Spectrum& spectrum, int energyIndex) {
    int written = 0;
    for (N42ChannelList& list : spectrum.channels) {
        Expand(list);
        list.element.ResetValue();  // its text makes room for its numbers
        int result = written == 0 ? WriteEnergies(group, spectrum, energyIndex) : kN42Ok;
        if (result == kN42Ok) result = tree_.AddChannels(group, written, numbers_);
        if (result != kN42Ok) return result;
        ++written;
    }
    group.SaveXDEArraySize(written);
    return kN42Ok;
}

// The energies of the channels in numbers_, as a column of the spectrum.
int CVCn42FileBase::WriteEnergies(UXXmlWrapperBase& group, const N42Spectrum& spectrum, int index) {
    N42Calibration* const calibration = CalibrationOf(spectrum);
    if (calibration == nullptr || calibration->empty()) return kN42Ok;
    if (!withEnergies_ && !calibration->coefficients.empty()) return kN42Ok;
    return tree_.AddEnergies(group, *calibration, index, numbers_.size());
}

}  // namespace ux
