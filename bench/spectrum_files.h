// Radiation spectrum files of any size: the inputs of the import's benchmark.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace uxbench {

struct SpectrumFileKind {
    const char* name;
    bool form2011;
    bool compressed;       // counted zeroes
    bool boundaries;       // energies by channel instead of a polynomial
    bool ownCalibrations;  // 2006: in every spectrum instead of once for each detector
    int grossCounters;     // neutron counters beside the detectors
    int detectors;
    int channels;
    int counts;  // of one spectrum
};

inline constexpr std::array<SpectrumFileKind, 5> kSpectrumFileKinds{{
    {"2011, counted zeroes, 1024 channels", true, true, false, false, 2, 8, 1024, 4000},
    {"2011, plain, 1024 channels, boundaries", true, false, true, false, 0, 4, 1024, 4000},
    {"2006, counted zeroes, 1024 channels", false, true, false, false, 0, 4, 1024, 4000},
    {"2006, counted zeroes, 16384 sparse channels", false, true, false, true, 0, 8, 16384, 600},
    {"2011, plain, 8192 dense channels", true, false, false, false, 0, 4, 8192, 60000},
}};

// Writes measurements until the file has the size.
class SpectrumFileWriter {
public:
    SpectrumFileWriter(const SpectrumFileKind& kind, const std::string& path, std::size_t bytes)
        : kind_(kind), file_(path, std::ios::binary) {
        // Some different spectra serve all measurements.
        for (int i = 0; i < 64; ++i) spectra_.push_back(channel_text());
        write_head();
        for (int i = 1; written_ < bytes; ++i) {
            kind_.form2011 ? write_measurement_2011(i) : write_measurement_2006(i);
        }
        put(kind_.form2011 ? "</RadInstrumentData>\n" : "</N42InstrumentData>\n");
    }

private:
    void put(const std::string& text) {
        file_ << text;
        written_ += text.size();
    }

    // A falling continuum with lines on it, each channel with the scatter of counting.
    std::string channel_text() {
        std::string text;
        int zeros = 0;
        int onLine = 0;
        const auto add = [&](long count) {
            text += std::to_string(count);
            text += ++onLine % 32 == 0 ? '\n' : ' ';
        };
        const auto end_run = [&] {
            if (zeros == 0) return;
            add(0);
            add(zeros);
            zeros = 0;
        };
        for (int i = 0; i < kind_.channels; ++i) {
            const double x = static_cast<double>(i) / kind_.channels;
            double density = 6 * std::exp(-6 * x);
            for (const double line : {0.08, 0.2, 0.45, 0.8}) {
                density += 4 * std::exp(-std::pow((x - line) / 0.01, 2));
            }
            std::poisson_distribution<long> scatter(density * kind_.counts / kind_.channels);
            const long count = scatter(random_);
            if (kind_.compressed && count == 0) {
                ++zeros;
                continue;
            }
            end_run();
            add(count);
        }
        end_run();
        return text;
    }
    const std::string& next_spectrum() { return spectra_[next_++ % spectra_.size()]; }

    void write_head() {
        put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
        if (!kind_.form2011) {
            put("<N42InstrumentData>\n");
            for (int d = 1; d <= kind_.detectors && !kind_.ownCalibrations; ++d) {
                put(calibration_2006(" ID=\"E" + std::to_string(d) + "\""));
            }
            return;
        }
        put("<RadInstrumentData xmlns=\"http://physics.nist.gov/N42/2011/N42\">\n");
        for (int d = 1; d <= kind_.detectors; ++d) {
            put("<RadDetectorInformation id=\"D" + std::to_string(d) +
                "\"><RadDetectorCategoryCode>Gamma</RadDetectorCategoryCode>"
                "</RadDetectorInformation>\n<EnergyCalibration id=\"E" +
                std::to_string(d) + "\">" + energies_2011() + "</EnergyCalibration>\n");
        }
    }
    std::string energies_2011() const {
        if (!kind_.boundaries) return "<CoefficientValues>-1.5 2.9 1.2e-06</CoefficientValues>";
        std::string text;
        for (int i = 0; i <= kind_.channels; ++i) text += std::to_string(2.9 * i - 1.5) + " ";
        return "<EnergyBoundaryValues>" + text + "</EnergyBoundaryValues>";
    }
    void write_measurement_2011(int number) {
        std::string text = "<RadMeasurement id=\"M" + std::to_string(number) +
                           "\">\n<MeasurementClassCode>Foreground</MeasurementClassCode>\n"
                           "<StartDateTime>2024-01-01T00:00:00Z</StartDateTime>\n"
                           "<RealTimeDuration>PT1.000S</RealTimeDuration>\n";
        for (int d = 1; d <= kind_.detectors; ++d) {
            const std::string detector = std::to_string(d);
            text += "<Spectrum id=\"S" + std::to_string(number) + "-" + detector +
                    "\" radDetectorInformationReference=\"D" + detector +
                    "\" energyCalibrationReference=\"E" + detector +
                    "\">\n<LiveTimeDuration>PT0.985S</LiveTimeDuration>\n<ChannelData "
                    "compressionCode=\"" +
                    (kind_.compressed ? "CountedZeroes" : "None") + "\">\n" + next_spectrum() +
                    "</ChannelData>\n</Spectrum>\n";
        }
        for (int g = 1; g <= kind_.grossCounters; ++g) {
            text += "<GrossCounts id=\"G" + std::to_string(number) + "-" + std::to_string(g) +
                    "\" radDetectorInformationReference=\"N" + std::to_string(g) +
                    "\">\n<LiveTimeDuration>PT1.000S</LiveTimeDuration>\n<CountData>3</CountData>\n"
                    "</GrossCounts>\n";
        }
        put(text + "</RadMeasurement>\n");
    }
    static std::string calibration_2006(const std::string& id) {
        return "<Calibration Type=\"Energy\"" + id +
               " EnergyUnits=\"keV\"><Equation Model=\"Polynomial\"><Coefficients>-1.5 2.9 1.2e-06"
               "</Coefficients></Equation></Calibration>\n";
    }
    void write_measurement_2006(int number) {
        std::string text = "<Measurement UUID=\"" + std::to_string(number) +
                           "\">\n<DetectorData>\n<StartTime>2024-01-01T00:00:00Z</StartTime>\n"
                           "<SampleRealTime>PT1.000S</SampleRealTime>\n";
        for (int d = 1; d <= kind_.detectors; ++d) {
            text +=
                "<DetectorMeasurement Detector=\"D" + std::to_string(d) +
                "\" DetectorType=\"Gamma\">\n<SpectrumMeasurement>\n<SpectrumAvailable>true"
                "</SpectrumAvailable>\n<Spectrum" +
                (kind_.ownCalibrations ? "" : " CalibrationIDs=\"E" + std::to_string(d) + "\"") +
                ">\n<RealTime>PT1.000S</RealTime>\n<LiveTime>"
                "PT0.985S</LiveTime>\n<SourceType>Item</SourceType>\n<DetectorType>NaI"
                "</DetectorType>\n" +
                (kind_.ownCalibrations ? calibration_2006("") : "") +
                "<ChannelData Compression=\"CountedZeroes\">\n" + next_spectrum() +
                "</ChannelData>\n</Spectrum>\n</SpectrumMeasurement>\n"
                "</DetectorMeasurement>\n";
        }
        put(text + "</DetectorData>\n</Measurement>\n");
    }

    const SpectrumFileKind& kind_;
    std::ofstream file_;
    std::size_t written_ = 0;
    std::mt19937 random_{1};
    std::vector<std::string> spectra_;
    std::size_t next_ = 0;
};

}  // namespace uxbench
