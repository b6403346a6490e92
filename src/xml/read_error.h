// Why an input is not read.
#pragma once

#include <string>

namespace ux::xml {

struct ReadError {
    std::string message;
    long long line = 0;    // from 1; 0: the whole input is meant
    long long column = 0;  // from 1, in characters of the input's encoding as the parser counts
};

}  // namespace ux::xml
