// The nodes that an import of a spectrum file writes.
#pragma once

#include <vector>

#include "uxtree/host/host.h"

#include "import/n42_names.h"
#include "import/n42_numbers.h"
#include "import/n42_records.h"

namespace ux {

// A value node, named and labelled alike.
struct N42Value {
    const char* name;
    const CStringUTF8* text;
};
using N42Values = std::vector<N42Value>;

// Each of these yields 0, -9096 when a node cannot be added, or -9095 for an attribute.
class N42Tree {
public:
    explicit N42Tree(CQXMLFileAccess<Q_n42_ID, 0>& names) : names_(names) {}

    // The number counts from 1.
    int AddMeasurement(UXXmlWrapperBase& measurements, int number, UXXmlWrapperBase& measurement);
    // With the attributes of the file's element.
    int AddSpectrum(UXXmlWrapperBase& measurement, UXXmlWrapperBase element, int place,
                    const N42Values& values, UXXmlWrapperBase& spectrum);
    int AddValues(UXXmlWrapperBase& parent, const N42Values& values);
    // index below 0: the only spectrum of its measurement.
    int AddEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration, int index,
                    int channels);
    int AddChannels(UXXmlWrapperBase& spectrum, int index, NumberList& counts);

private:
    int CopyEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration,
                     const CStringUTF8& name, int channels);
    int AddNewEnergies(UXXmlWrapperBase& spectrum, N42Calibration& calibration,
                       const CStringUTF8& name, int channels);

    CQXMLFileAccess<Q_n42_ID, 0>& names_;
    NumberList energies_;
};

}  // namespace ux
