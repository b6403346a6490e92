// Spectrum files: what each spectrum tells, with its counts as a numpy array.
#include "uxtree/kit/spectra.h"

#include <map>
#include <optional>

#include "uxtree/kit/spectrum_math.h"

#include "arrays.h"
#include "parts.h"
#include "support.h"

namespace uxpy {
namespace {

using uxkit::EnergyCalibration;
using uxkit::GrossCount;
using uxkit::Spectrum;
using uxkit::SpectrumNote;
using uxkit::SpectrumOpening;
using uxkit::SpectrumReader;

py::object seconds(double value) {
    if (value < 0) return py::none();
    return py::float_(value);
}

// Made once for all spectra that share it.
class Calibrations {
public:
    py::object object(const std::shared_ptr<const EnergyCalibration>& calibration) {
        if (calibration == nullptr) return py::none();
        const auto known = objects_.find(calibration.get());
        if (known != objects_.end()) return known->second;
        py::dict fields;
        fields["id"] = text_object(calibration->id);
        fields["unit"] = text_object(calibration->unit);
        fields["text"] = text_object(calibration->text);
        fields["coefficients"] = numpy_of(std::vector<double>(calibration->coefficients));
        fields["boundaries"] = numpy_of(std::vector<double>(calibration->boundaries));
        return objects_[calibration.get()] = fields;
    }

private:
    std::map<const EnergyCalibration*, py::object> objects_;
};

py::dict fields_of(Spectrum& spectrum, Calibrations& calibrations) {
    py::dict fields;
    fields["name"] = text_object(spectrum.name);
    fields["measurement"] = spectrum.measurement;
    fields["id"] = text_object(spectrum.id);
    fields["detector"] = text_object(spectrum.detector);
    fields["kind"] = text_object(spectrum.kind);
    fields["start_text"] = text_object(spectrum.start);
    fields["real"] = seconds(spectrum.realSeconds);
    fields["live"] = seconds(spectrum.liveSeconds);
    fields["calibration"] = calibrations.object(spectrum.calibration);
    fields["position"] = py::none();
    if (spectrum.position) {
        fields["position"] =
            py::make_tuple(spectrum.position->latitude, spectrum.position->longitude);
    }
    fields["dose"] = py::none();
    if (spectrum.dose) {
        fields["dose"] = py::make_tuple(spectrum.dose->value, text_object(spectrum.dose->unit));
    }
    fields["gross"] = py::none();
    if (spectrum.grossCounts) fields["gross"] = *spectrum.grossCounts;
    fields["counts"] = numpy_of(std::move(spectrum.counts));
    return fields;
}

py::dict fields_of(const GrossCount& gross) {
    py::dict fields;
    fields["measurement"] = gross.measurement;
    fields["has_spectrum"] = gross.hasSpectrum;
    fields["id"] = text_object(gross.id);
    fields["detector"] = text_object(gross.detector);
    fields["kind"] = text_object(gross.kind);
    fields["start_text"] = text_object(gross.start);
    fields["live"] = seconds(gross.liveSeconds);
    fields["count"] = gross.count;
    return fields;
}

struct Contents {
    SpectrumReader reader;
    SpectrumOpening opening = SpectrumOpening::kUnreadable;
    LoadFailure failure;
    std::vector<Spectrum> spectra;
    std::vector<SpectrumNote> notes;

    void read(const std::string& path, const std::vector<std::string>& detectors) {
        opening = reader.open(path.c_str(), detectors);
        if (opening != SpectrumOpening::kOpened) {
            failure = LoadFailure::last();
            return;
        }
        for (Spectrum spectrum; reader.next(spectrum); spectrum = Spectrum()) {
            spectra.push_back(std::move(spectrum));
        }
        notes = reader.notes();
    }
};

py::dict read_spectra(const py::object& path, const py::list& detectors) {
    const std::string name = file_name(path);
    std::vector<std::string> wanted;
    for (const py::handle each : detectors) wanted.emplace_back(text_of(each.ptr(), "a detector"));
    Contents contents;
    {
        const py::gil_scoped_release release;
        contents.read(name, wanted);
    }
    if (contents.opening == SpectrumOpening::kNoMemory || contents.reader.failed()) {
        throw std::bad_alloc();
    }
    if (contents.opening == SpectrumOpening::kOtherRoot) {
        const std::string root = contents.reader.root_name();
        raise_ours("LoadError", text_object("no spectrum file: its root is " + root), path, 0, 0);
    }
    if (contents.opening != SpectrumOpening::kOpened) contents.failure.raise(path);

    py::dict file;
    Calibrations calibrations;
    py::list spectra;
    for (Spectrum& spectrum : contents.spectra) spectra.append(fields_of(spectrum, calibrations));
    py::list gross;
    for (const GrossCount& count : contents.reader.gross_counts()) gross.append(fields_of(count));
    py::list notes;
    for (const SpectrumNote& note : contents.notes) {
        notes.append(py::make_tuple(note.id, note.count, text_object(note.text)));
    }
    py::list names;
    for (const std::string& detector : contents.reader.detectors()) {
        names.append(text_object(detector));
    }
    file["form"] = contents.reader.form();
    file["detectors"] = names;
    file["measurements"] = contents.reader.measurement_count();
    file["spectra"] = spectra;
    file["gross_counts"] = gross;
    file["notes"] = notes;
    return file;
}

EnergyCalibration calibration_of(const std::vector<double>& coefficients,
                                 const std::vector<double>& boundaries) {
    EnergyCalibration calibration;
    calibration.coefficients = coefficients;
    calibration.boundaries = boundaries;
    return calibration;
}

std::vector<double> vector_of(const py::object& values, const char* what) {
    Doubles array;
    fill(array, values.ptr(), what);
    return {array.GetData(), array.GetData() + array.GetSize()};
}

}  // namespace

void add_spectra(py::module_& core) {
    core.def("read_spectra", &read_spectra);
    core.def("energies", [](const py::object& coefficients, const py::object& boundaries,
                            std::size_t channels) {
        return numpy_of(
            uxkit::import_energies(calibration_of(vector_of(coefficients, "coefficients"),
                                                  vector_of(boundaries, "boundaries")),
                                   channels));
    });
    core.def("edges", [](const py::object& coefficients, const py::object& boundaries,
                         std::size_t channels) {
        return numpy_of(uxkit::channel_edges(calibration_of(vector_of(coefficients, "coefficients"),
                                                            vector_of(boundaries, "boundaries")),
                                             channels));
    });
    core.def("region", [](const py::object& counts, std::size_t first, std::size_t last) {
        const uxkit::Region region = uxkit::region_of(vector_of(counts, "counts"), first, last);
        return py::make_tuple(region.gross, region.background, region.net, region.centroid);
    });
}

}  // namespace uxpy
