// Reading N42 radiation spectrum files (ANSI N42.42) into trees, both the 2011 form with the root
// "RadInstrumentData" and the 2006 form with the root "N42InstrumentData".
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

// Imports a spectrum file below tree, or lists the detectors of the file.
//
//   tree       loses its children and gets
//                n42 > RadMeasurements > RadMeasurement > Spectrum > ChannelData_0
//              with the counts of one spectrum as a vector; a column "Energy" before it when the
//              energy calibration of the spectrum is known, and value nodes with its times. Gross
//              counts stand below RadMeasurements in "GrossCounts". Array sizes are saved on
//              RadMeasurements, Spectrum, the columns and GrossCounts.
//   detectors  the preview empties it and appends the names of the file's detectors. The import
//              takes it as a selection when it is given and not empty: gross counts and detector
//              descriptions of other detectors are left out; spectra are never left out.
//   infoTree   may be null; an import of the 2011 form appends the description of each selected
//              detector to n42 > Detectors below it, also when nothing is imported
//   flags      0x10000 selects the preview, which leaves both trees alone
//
// Energies are polynomials of the channel number, and channel numbers count from 1: the first
// channel has the energy c0 + c1 + c2 + ...
//
// Numbers of a list are separated by white space, commas and semicolons; what is no number is 0.
// Channel lists with the code "CountedZeroes" or "CountedZeros", in any case, are expanded. A list
// is expanded to 1,048,576 values at most, and the runs of a file to about 16 million zeros and 16
// for each of its bytes; a run beyond ends its list.
//
// In the 2006 form a calibration counts when its "Type" is absent or "Energy", in any case, and
// "SampleRealTime" in the output is the nearest real time: of the spectrum, else of what is around
// it, at each level "SampleRealTime" before "RealTime".
//
// Prefixes of tags are taken off when they are "n42" or bound to an N42 namespace, at the root or
// where the element stands.
//
// Returns 0, also when there is nothing to import and tree stays as it is, or
//   -1     preview without a detector array
//   -9093  path is null or empty, cannot be read, is no XML, or of neither form
//   -9095  an attribute could not be set
//   -9096  tree is null or invalid, or a node could not be added, or no memory is left, or a text
//          that every spectrum repeats would make the tree many times as large as the file
UXTREE_API int VCTree_n42_(UX_OPT UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* tree,
                           UX_FILE const char* path, UX_OPT UX_GETSET CWBOStringArray* detectors,
                           UX_OPT UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* infoTree,
                           DWORD flags UX_BITS(preview = 0x10000))
    UX_RETURNS(zero, no_array = -1, not_a_spectrum_file = -9093, not_set = -9095, not_added = -9096)
        UX_BLOCKS;

// How live times of gross counts are cleaned: the sum of 1, take a leading "PT" off, and 2, put a
// space before a trailing unit letter "s" or "S". One setting for the process, 3 at the start.
// A mode of 0 or more becomes the setting; returns the one before.
UXTREE_API int VCTree_n42_parse_LiveTimeDuration(int mode) UX_RETURNS(stored);

extern "C" {
// Script form; detectors is a string array or null. Returns -1 for any other object.
UXTREE_API int uxtree_n42(UX_OPT UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* tree,
                          UX_FILE const char* path,
                          UX_OPT UX_GETSET UX_STRINGS UXScriptObject* detectors,
                          UX_OPT UX_MAY_BE_INVALID UX_EDITS UXXmlWrapperBase* infoTree,
                          DWORD flags UX_BITS(preview = 0x10000))
    UX_RETURNS(zero, no_array = -1, not_a_spectrum_file = -9093, not_set = -9095, not_added = -9096)
        UX_BLOCKS;
}
