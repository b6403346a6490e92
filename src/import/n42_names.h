// The element and attribute names of N42 files, and access to them by number.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "uxtree/host/string.h"

namespace ux {

// Access to the names of an XML format by numeric identifiers. One class per format: Id is the
// enumeration of its names, and IDSNAMES the table of them, ended by a row without name.
template <class Id, int N>
class CQXMLFileAccess {
public:
    struct IDNAME {
        const char* name;
        int id;
    };
    static const IDNAME IDSNAMES[];

    CQXMLFileAccess() = default;
    CQXMLFileAccess(const CQXMLFileAccess&) = delete;
    CQXMLFileAccess& operator=(const CQXMLFileAccess&) = delete;
    virtual ~CQXMLFileAccess() = default;
    // May rewrite a tag that is not in the table, for instance without its prefix; true when it
    // did, so that the table is asked again.
    virtual bool NormalizeTag(CStringUTF8& /*tag*/) { return false; }
    virtual const IDNAME* GetIDsNames() const { return IDSNAMES; }

    // The name of an identifier, "" when it has none.
    const char* GetName(Id id) {
        const auto known = rows_.find(id);
        if (known != rows_.end()) return known->second->name;
        for (const IDNAME* row = GetIDsNames(); row->name != nullptr; ++row) {
            if (row->id != id) continue;
            rows_.emplace(id, row);
            return row->name;
        }
        return "";
    }
    // The identifier (above 0) of a tag; false when it is none of the format's names. Of two
    // identifiers with one name the first in the table wins. Case counts.
    bool GetID(std::string_view tag, Id& id) {
        auto known = ids_.find(tag);
        if (known == ids_.end()) {
            const std::string name(tag);
            known = ids_.emplace(name, Find(name.c_str())).first;
        }
        if (known->second == kUnknown) return false;
        id = known->second;
        return true;
    }

private:
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };

    static constexpr Id kUnknown = Id{};

    Id Find(CStringUTF8 tag) {
        const Id id = FindInTable(tag);
        return id == kUnknown && NormalizeTag(tag) ? FindInTable(tag) : id;
    }
    Id FindInTable(const CStringUTF8& tag) const {
        for (const IDNAME* row = GetIDsNames(); row->name != nullptr; ++row) {
            if (tag == row->name) return static_cast<Id>(row->id);
        }
        return kUnknown;
    }

    std::unordered_map<int, const IDNAME*> rows_;
    // Of every tag that was asked for, those of other names too: a file repeats them.
    std::unordered_map<std::string, Id, TextHash, std::equal_to<>> ids_;
};

// Names of the 2011 form, of the 2006 form, and of output nodes.
enum Q_n42_ID : int {
    kN42RadInstrumentData = 1,
    kN42RadInstrumentInformation = 2,
    kN42RadDetectorInformation = 3,
    kN42EnergyCalibration = 4,
    kN42EnergyCalibrationReference = 5,
    kN42CoefficientValues = 6,
    kN42EnergyBoundaryValues = 7,
    kN42RadMeasurement = 8,
    kN42Spectrum = 9,
    kN42GrossCounts = 10,
    kN42GrossCountId = 11,
    kN42CountData = 12,
    kN42MeasurementClassCode = 13,
    kN42StartDateTime = 14,
    kN42RealTimeDuration = 15,
    kN42ChannelData = 16,
    kN42CompressionCode = 17,
    kN42None = 18,
    kN42CountedZeroes = 19,
    kN42Id = 20,
    kN42LiveTimeDuration = 21,
    kN42RadDetectorInformationReference = 22,
    kN42RadInstrumentState = 23,
    kN42StateVector = 24,
    kN42GeographicPoint = 25,
    kN42LatitudeValue = 26,
    kN42LongitudeValue = 27,

    kN42InstrumentData2006 = 28,
    kN42Id2006 = 29,
    kN42Measurement = 30,
    kN42DetectorData = 31,
    kN42DetectorMeasurement = 32,
    kN42SpectrumMeasurement = 33,
    kN42MeasuredItemInformation = 34,
    kN42MeasurementLocation = 35,
    kN42Coordinates = 36,
    kN42StartTime = 37,
    kN42SampleRealTime = 38,
    kN42Uuid = 39,
    kN42Detector = 40,
    kN42DetectorType = 41,
    kN42Energy = 42,
    kN42Calibration = 43,
    kN42CalibrationIds = 44,
    kN42EnergyUnits = 45,
    kN42Equation = 46,
    kN42Model = 47,
    kN42Polynomial = 48,
    kN42Coefficients = 49,
    kN42LiveTime = 50,
    kN42SourceType = 51,
    kN42Compression = 52,

    kN42Output = 256,
    kN42OutputMeasurements = 257,
    kN42OutputEnergy = 258,
};

template <>
const CQXMLFileAccess<Q_n42_ID, 0>::IDNAME CQXMLFileAccess<Q_n42_ID, 0>::IDSNAMES[];

}  // namespace ux
