// script/string_type: the type string and the functions of numbers beside it.
#pragma once

#include "registrar.h"

namespace uxscript {

// As the add-on of the language has them, with std::string as the value, so that its other types fit.
// A number becomes the text that a node has as its value: the least digits that read back, from 15
// on (float: 6 on). Numbers in texts are read without regard to the locale; what does not fit is no
// number.
void register_strings(Registrar& registrar);
// split and join, for engines that have the array as well. Splitting takes linear time, and ends with
// an empty separator, by an exception.
void register_splitting(Registrar& registrar);

}  // namespace uxscript
