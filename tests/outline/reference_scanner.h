// The scanner's rules once more, one character at a time and without regard to speed: what the
// real one must agree with.
#pragma once

#include <string>
#include <string_view>

namespace uxtest {

// Events in the notation of EventRecorder, of a file read in blocks (decoded) or mapped (bytes).
std::string reference_streamed_events(std::string_view text);
std::string reference_mapped_events(std::string_view text);

// The decoded characters up to where the input ends, in their shortest UTF-8 form.
std::string reference_decoded(std::string_view text);

}  // namespace uxtest
