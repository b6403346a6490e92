// Spectrum files in a few words.
#pragma once

#include <string>

namespace uxtest {

inline std::string in_2011(const std::string& content) {
    return "<RadInstrumentData>" + content + "</RadInstrumentData>";
}
inline std::string in_2006(const std::string& content) {
    return "<N42InstrumentData>" + content + "</N42InstrumentData>";
}
// A measurement of a class, as a rule in the foreground; "" is none.
inline std::string measured(const std::string& content, const std::string& code = "F") {
    return "<RadMeasurement>" +
           (code.empty() ? "" : "<MeasurementClassCode>" + code + "</MeasurementClassCode>") +
           content + "</RadMeasurement>";
}

}  // namespace uxtest
