// Writing measurements, spectra and columns into the tree of an import.
#include "import/n42_tree.h"

#include <string>

#include "frame/guards.h"
#include "import/n42_calibrations.h"

namespace ux {
namespace {

constexpr int kColumnOfX = 3;  // the column designation of energies
constexpr const char* kFromBoundaries = "EnergyBoundaryValues";

CStringUTF8 indexed(const char* name, int index) {
    CStringUTF8 out = name;
    out += '_';
    out += std::to_string(index).c_str();
    return out;
}

}  // namespace

int N42Tree::AddMeasurement(UXXmlWrapperBase& measurements, int number,
                            UXXmlWrapperBase& measurement) {
    const char* const name = names_.GetName(kN42RadMeasurement);
    if (!measurements.AddNode(&measurement, name, -1)) return kN42CannotAdd;
    measurement.SetLabel(indexed(name, number));
    return kN42Ok;
}

int N42Tree::AddSpectrum(UXXmlWrapperBase& measurement, UXXmlWrapperBase element, int place,
                         const N42Values& values, UXXmlWrapperBase& spectrum) {
    const char* const name = names_.GetName(kN42Spectrum);
    if (!measurement.AddNode(&spectrum, name, -1)) return kN42CannotAdd;
    if (!spectrum.CopyAllAttributes(element, 1)) return kN42CannotSetAttribute;
    spectrum.SetLabel(indexed(name, place));
    return AddValues(spectrum, values);
}

int N42Tree::AddValues(UXXmlWrapperBase& parent, const N42Values& values) {
    for (const auto& [name, text] : values) {
        UXXmlWrapperBase node;
        if (!parent.AddTextNode(&node, name, *text, -1, 0, nullptr)) return kN42CannotAdd;
        node.SetLabel(name);
    }
    return kN42Ok;
}

int N42Tree::AddChannels(UXXmlWrapperBase& spectrum, int index, NumberList& counts) {
    const CStringUTF8 name = indexed(names_.GetName(kN42ChannelData), index);
    UXXmlWrapperBase column;
    if (!spectrum.AddNode(&column, name, -1)) return kN42CannotAdd;
    column.SetLabel(name);
    column.NodeValue(counts.array(), 0);
    column.SaveXDEArraySize(counts.size());
    return kN42Ok;
}

int N42Tree::AddEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration, int index,
                         int channels) {
    const char* const base = names_.GetName(kN42OutputEnergy);
    const CStringUTF8 name = index < 0 ? CStringUTF8(base) : indexed(base, index);
    const bool fits = calibration.columnChannels == channels || calibration.coefficients.empty();
    return fits && usable(calibration.column)
               ? CopyEnergies(spectrum, calibration, name, channels)
               : AddNewEnergies(spectrum, calibration, name, channels);
}

// Most spectra of a file share their calibration, and a copy shares the storage of its values.
int N42Tree::CopyEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration,
                          const CStringUTF8& name, int channels) {
    UXXmlWrapperBase column;
    if (!spectrum.AddNodeCopy(&calibration.column, 1, &column)) return kN42CannotAdd;
    column.SetTagName(name);
    column.SaveXDEArraySize(channels);
    return kN42Ok;
}

int N42Tree::AddNewEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration,
                            const CStringUTF8& name, int channels) {
    UXXmlWrapperBase column;
    if (!spectrum.AddNode(&column, name, -1)) return kN42CannotAdd;
    fill_energies(calibration, channels, energies_);
    column.NodeValue(energies_.array(), 0);
    column.SaveXDEArraySize(channels);
    column.SetLabel(names_.GetName(kN42OutputEnergy));
    const auto set = [&column](const char* attribute, const char* text) {
        return *text == '\0' || column.SetPropertyValue(attribute, text) != 0;
    };
    const bool all = set(names_.GetName(kN42Id), calibration.id) &&
                     column.SetPropertyValue("ColDesignation", kColumnOfX) != 0 &&
                     set("Comment", calibration.coefficients.empty()
                                        ? kFromBoundaries
                                        : static_cast<const char*>(calibration.coefficientText)) &&
                     set("Unit", calibration.unit);
    calibration.column = column;
    calibration.columnChannels = channels;
    return all ? kN42Ok : kN42CannotSetAttribute;
}

}  // namespace ux
